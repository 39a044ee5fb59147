#include "ChildProcess.h"
#include "QZEAtomicFileWriter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <memory>
#include <sys/stat.h>

// Replaces files whole or not at all: commits, abandoned writers, a full
// disk and refused destinations.
class tst_QZEAtomicFileWriter : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void commitReplacesTheFileWhole();
    void commitCreatesAMissingFile();
    void writerDroppedBeforeCommitLeavesTheFileAndNoOtherEntry();
    void fullDiskFailsWithTheReasonAndKeepsTheFile_data();
    void fullDiskFailsWithTheReasonAndKeepsTheFile();
    void directoryDestinationIsRefusedAtOpen();
    void missingFolderIsRefusedAtOpenWithTheReason();
    void permissionsSetAfterOpenAreTheCommittedFilesPermissions();

private:
    QString path() const { return _dir->filePath(QStringLiteral("target.spectral")); }
    void writeOld() const;

    std::unique_ptr<QTemporaryDir> _dir;
    const QByteArray _old = QByteArrayLiteral("old contents\n");
};

void tst_QZEAtomicFileWriter::init()
{
    _dir.reset(new QTemporaryDir);
    QVERIFY(_dir->isValid());
}

void tst_QZEAtomicFileWriter::writeOld() const
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(_old), qint64(_old.size()));
}

void tst_QZEAtomicFileWriter::commitReplacesTheFileWhole()
{
    writeOld();
    QZEAtomicFileWriter writer(path());

    QVERIFY(writer.open());
    QVERIFY(writer.write("new"));
    QVERIFY(writer.write(" contents"));
    QCOMPARE(fileBytes(path()), _old);
    QVERIFY(writer.commit());

    QCOMPARE(fileBytes(path()), QByteArray("new contents"));
}

void tst_QZEAtomicFileWriter::commitCreatesAMissingFile()
{
    QZEAtomicFileWriter writer(path());

    QVERIFY(writer.open());
    QVERIFY(writer.write("fresh"));
    QVERIFY(writer.commit());

    QCOMPARE(fileBytes(path()), QByteArray("fresh"));
}

void tst_QZEAtomicFileWriter::writerDroppedBeforeCommitLeavesTheFileAndNoOtherEntry()
{
    writeOld();
    {
        QZEAtomicFileWriter writer(path());
        QVERIFY(writer.open());
        QVERIFY(writer.write(QByteArray(100000, 'x')));
    }

    QCOMPARE(fileBytes(path()), _old);
    QCOMPARE(QDir(_dir->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList{QStringLiteral("target.spectral")});
}

void tst_QZEAtomicFileWriter::fullDiskFailsWithTheReasonAndKeepsTheFile_data()
{
    QTest::addColumn<int>("size");

    // The small content fits in a write buffer: only a flush would see the limit.
    QTest::newRow("small") << 200;
    QTest::newRow("large") << 1000000;
}

// The child answers 0 only when the write or the commit failed with the
// system's reason for a file over the size limit.
void tst_QZEAtomicFileWriter::fullDiskFailsWithTheReasonAndKeepsTheFile()
{
    QFETCH(int, size);
    writeOld();
    const QString target = path();

    const ChildResult result = runWithFileSizeLimit(100, [&] {
        QZEAtomicFileWriter writer(target);
        if (!writer.open())
            return 2;
        if (writer.write(QByteArray(size, 'x')) && writer.commit())
            return 3;
        return writer.errorString().contains(QStringLiteral("File too large")) ? 0 : 4;
    });

    QVERIFY(result.exited);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(fileBytes(path()), _old);
}

void tst_QZEAtomicFileWriter::directoryDestinationIsRefusedAtOpen()
{
    QVERIFY(QDir(_dir->path()).mkdir(QStringLiteral("target.spectral")));
    QZEAtomicFileWriter writer(path());

    QVERIFY(!writer.open());
    QVERIFY(!writer.errorString().isEmpty());
    QVERIFY(QFileInfo(path()).isDir());
}

void tst_QZEAtomicFileWriter::missingFolderIsRefusedAtOpenWithTheReason()
{
    QZEAtomicFileWriter writer(_dir->filePath(QStringLiteral("no/such/folder/out.spectral")));

    QVERIFY(!writer.open());
    QVERIFY2(writer.errorString().contains(QStringLiteral("No such file or directory")),
             qPrintable(writer.errorString()));
}

// The temporary file may have no name before the commit (O_TMPFILE), so
// what is checked is the committed file, made under a umask that would give
// it 0644 on its own.
void tst_QZEAtomicFileWriter::permissionsSetAfterOpenAreTheCommittedFilesPermissions()
{
    const mode_t previousMask = umask(022);
    QZEAtomicFileWriter writer(path());
    const bool written = writer.open()
        && writer.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
        && writer.write("private") && writer.commit();
    umask(previousMask);
    QVERIFY(written);

    struct stat committed {};
    QCOMPARE(stat(QFile::encodeName(path()).constData(), &committed), 0);
    QCOMPARE(committed.st_mode & 07777, mode_t(0600));
    QCOMPARE(fileBytes(path()), QByteArray("private"));
}

QTEST_APPLESS_MAIN(tst_QZEAtomicFileWriter)
#include "tst_QZEAtomicFileWriter.moc"
