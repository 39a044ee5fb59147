#include "QZEBoundedFileReader.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// Reads files, devices and missing names under small limits.
class tst_QZEBoundedFileReader : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void fileUpToTheLimitIsReadWhole_data();
    void fileUpToTheLimitIsReadWhole();
    void fileOneByteOverTheLimitIsTooLarge();
    void endlessDeviceIsTooLarge();
    void missingFileFailsToOpenWithTheReason();
    void directoryFailsToOpen();
    void limitAboveTheLargestCountsAsTheLargest();

private:
    QString write(const QString& name, const QByteArray& bytes) const;

    QTemporaryDir _dir;
};

void tst_QZEBoundedFileReader::initTestCase()
{
    QVERIFY(_dir.isValid());
}

QString tst_QZEBoundedFileReader::write(const QString& name, const QByteArray& bytes) const
{
    QFile file(_dir.filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    return file.fileName();
}

void tst_QZEBoundedFileReader::fileUpToTheLimitIsReadWhole_data()
{
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("short") << QByteArray("400 1\n");
    QTest::newRow("exactly the limit") << QByteArray(1000, 'x');
}

void tst_QZEBoundedFileReader::fileUpToTheLimitIsReadWhole()
{
    QFETCH(QByteArray, bytes);
    QZEBoundedFileReader reader(write(QStringLiteral("whole"), bytes), 1000);
    QByteArray read("stale");

    QCOMPARE(reader.read(read), QZEBoundedFileReader::Read);
    QCOMPARE(read, bytes);
}

void tst_QZEBoundedFileReader::fileOneByteOverTheLimitIsTooLarge()
{
    QZEBoundedFileReader reader(write(QStringLiteral("over"), QByteArray(1001, 'x')), 1000);
    QByteArray read("untouched");

    QCOMPARE(reader.read(read), QZEBoundedFileReader::TooLarge);
    QCOMPARE(read, QByteArray("untouched"));
}

void tst_QZEBoundedFileReader::endlessDeviceIsTooLarge()
{
    QZEBoundedFileReader reader(QStringLiteral("/dev/zero"), 300 * 1024);
    QByteArray read;

    QCOMPARE(reader.read(read), QZEBoundedFileReader::TooLarge);
}

void tst_QZEBoundedFileReader::missingFileFailsToOpenWithTheReason()
{
    QZEBoundedFileReader reader(_dir.filePath(QStringLiteral("missing")), 1000);
    QByteArray read;

    QCOMPARE(reader.read(read), QZEBoundedFileReader::OpenFailed);
    QVERIFY2(reader.errorString().contains(QStringLiteral("No such file or directory")),
             qPrintable(reader.errorString()));
}

void tst_QZEBoundedFileReader::directoryFailsToOpen()
{
    QZEBoundedFileReader reader(_dir.path(), 1000);
    QByteArray read;

    QCOMPARE(reader.read(read), QZEBoundedFileReader::OpenFailed);
    QVERIFY(!reader.errorString().isEmpty());
}

// A limit beyond what one QByteArray holds would overflow the buffer's size.
void tst_QZEBoundedFileReader::limitAboveTheLargestCountsAsTheLargest()
{
    QZEBoundedFileReader reader(write(QStringLiteral("small"), "1 2 3"),
                                std::numeric_limits<qint64>::max());
    QByteArray read;

    QCOMPARE(reader.read(read), QZEBoundedFileReader::Read);
    QCOMPARE(read, QByteArray("1 2 3"));
}

QTEST_APPLESS_MAIN(tst_QZEBoundedFileReader)
#include "tst_QZEBoundedFileReader.moc"
