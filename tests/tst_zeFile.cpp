#include "zeFile.h"
#include "zeLog.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

#include <thread>

#include <thread>

#include <unistd.h>

namespace {

struct Report
{
    QString title;
    QString message;
};

QVector<Report> s_reports;

void recordReport(const QString& title, const QString& message)
{
    s_reports.append({title, message});
}

bool runningAsRoot()
{
    return geteuid() == 0;
}

constexpr char RootSkipMessage[] =
    "running as root: root bypasses permission bits, so a permission-denied case cannot be set up";

} // namespace

class tst_zeFile : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir _dir;

    QString pathOf(const QString& relative) const
    {
        return relative.isEmpty() ? QString() : _dir.filePath(relative);
    }

    // The native form of a path as the messages show it.
    QString shown(const QString& relative) const
    {
        return QDir::toNativeSeparators(pathOf(relative));
    }

    void makeFile(const QString& relative, QFileDevice::Permissions permissions = {})
    {
        QFile file(pathOf(relative));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("spectral1\n");
        file.close();
        if (permissions)
            QVERIFY(file.setPermissions(permissions));
    }

    void makeFolder(const QString& relative, QFileDevice::Permissions permissions = {})
    {
        QVERIFY(QDir(_dir.path()).mkdir(relative));
        if (permissions)
            QVERIFY(QFile::setPermissions(pathOf(relative), permissions));
    }

    void verifySingleReport(const QString& title, const QString& message)
    {
        QCOMPARE(s_reports.size(), 1);
        QCOMPARE(s_reports.first().title, title);
        QCOMPARE(s_reports.first().message, message);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(_dir.isValid());
        const auto readOnly = QFileDevice::ReadOwner | QFileDevice::ReadUser;
        makeFile("readable.spectral");
        makeFile("plain.txt");
        makeFile("unreadable.spectral", QFileDevice::WriteOwner | QFileDevice::WriteUser);
        makeFile("readonly.spectral", readOnly);
        makeFile(QString::fromUtf8("Tageslicht-\xc3\xa4.spectral"));
        makeFolder("folder");
        makeFolder("readonly-folder", readOnly | QFileDevice::ExeOwner | QFileDevice::ExeUser);
    }

    void cleanupTestCase()
    {
        // Lets QTemporaryDir remove what the permission cases locked.
        QFile::setPermissions(pathOf("readonly-folder"), QFileDevice::ReadOwner | QFileDevice::WriteOwner
                                                             | QFileDevice::ExeOwner);
    }

    void init()
    {
        s_reports.clear();
        zeFile::setReporter(recordReport);
    }

    void cleanup()
    {
        zeFile::setReporter(nullptr);
        zeLog::setWarningHandler(nullptr);
    }

    void readableFileIsAcceptedSilently()
    {
        QVERIFY(zeFile::checkRead(pathOf("readable.spectral")));
        QVERIFY(s_reports.isEmpty());
    }

    void checkReadRejectsAndReports_data()
    {
        QTest::addColumn<QString>("relativePath");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty path") << QString() << "No file name was given.";
        QTest::newRow("missing file") << "missing.spectral" << "The file \"%1\" does not exist.";
        QTest::newRow("folder") << "folder" << "\"%1\" is a folder, not a file.";
        QTest::newRow("file inside a plain file") << "plain.txt/inner.spectral"
                                                  << "The file \"%1\" does not exist.";
    }

    void checkReadRejectsAndReports()
    {
        QFETCH(QString, relativePath);
        QFETCH(QString, message);
        QVERIFY(!zeFile::checkRead(pathOf(relativePath)));
        verifySingleReport("Cannot Read File",
                           relativePath.isEmpty() ? message : message.arg(shown(relativePath)));
    }

    void unreadableFileIsRejected()
    {
        if (runningAsRoot())
            QSKIP(RootSkipMessage);
        QVERIFY(!zeFile::checkRead(pathOf("unreadable.spectral")));
        verifySingleReport("Cannot Read File",
                           QString("You do not have permission to read \"%1\".").arg(shown("unreadable.spectral")));
    }

    void writableTargetsAreAcceptedSilently_data()
    {
        QTest::addColumn<QString>("relativePath");
        QTest::newRow("existing file") << "readable.spectral";
        QTest::newRow("new file in a folder") << "folder/new.spectral";
        QTest::newRow("new file at the top") << "new.spectral";
    }

    void writableTargetsAreAcceptedSilently()
    {
        QFETCH(QString, relativePath);
        const bool existed = QFileInfo::exists(pathOf(relativePath));
        QVERIFY(zeFile::checkWrite(pathOf(relativePath)));
        QVERIFY(s_reports.isEmpty());
        QCOMPARE(QFileInfo::exists(pathOf(relativePath)), existed); // checking creates nothing
    }

    void checkWriteRejectsAndReports_data()
    {
        QTest::addColumn<QString>("relativePath");
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("message");
        QTest::newRow("empty path") << QString() << QString() << "No file name was given.";
        QTest::newRow("folder") << "folder" << QString() << "\"%1\" is a folder, not a file.";
        QTest::newRow("missing parent folder")
            << "missing/new.spectral" << "missing"
            << "Cannot create \"%1\": the folder \"%2\" does not exist.";
        QTest::newRow("parent is a plain file")
            << "plain.txt/new.spectral" << "plain.txt" << "Cannot create \"%1\": \"%2\" is not a folder.";
    }

    void checkWriteRejectsAndReports()
    {
        QFETCH(QString, relativePath);
        QFETCH(QString, folder);
        QFETCH(QString, message);
        QVERIFY(!zeFile::checkWrite(pathOf(relativePath)));
        if (!relativePath.isEmpty())
            message = message.arg(shown(relativePath));
        if (!folder.isEmpty())
            message = message.arg(shown(folder));
        verifySingleReport("Cannot Write File", message);
    }

    void permissionDeniedWritesAreRejected_data()
    {
        QTest::addColumn<QString>("relativePath");
        QTest::addColumn<QString>("message");
        QTest::newRow("read-only file") << "readonly.spectral"
                                        << QString("You do not have permission to write \"%1\".")
                                               .arg(shown("readonly.spectral"));
        QTest::newRow("new file in a read-only folder")
            << "readonly-folder/new.spectral"
            << QString("Cannot create \"%1\": you do not have permission to write in the folder \"%2\".")
                   .arg(shown("readonly-folder/new.spectral"), shown("readonly-folder"));
    }

    void permissionDeniedWritesAreRejected()
    {
        if (runningAsRoot())
            QSKIP(RootSkipMessage);
        QFETCH(QString, relativePath);
        QFETCH(QString, message);
        QVERIFY(!zeFile::checkWrite(pathOf(relativePath)));
        verifySingleReport("Cannot Write File", message);
    }

    void utf8PathsAreDecoded()
    {
        const QByteArray existing = pathOf(QString::fromUtf8("Tageslicht-\xc3\xa4.spectral")).toUtf8();
        QVERIFY(zeFile::checkRead(existing.constData()));
        QVERIFY(zeFile::checkWrite(existing.constData()));
        QVERIFY(s_reports.isEmpty());

        const QString missing = QString::fromUtf8("D65-\xc3\xb6.spectral");
        QVERIFY(!zeFile::checkRead(pathOf(missing).toUtf8().constData()));
        verifySingleReport("Cannot Read File", QString("The file \"%1\" does not exist.").arg(shown(missing)));
    }

    void nullCharPathIsRejected()
    {
        const char* none = nullptr;
        QVERIFY(!zeFile::checkRead(none));
        verifySingleReport("Cannot Read File", "No file name was given.");
        s_reports.clear();
        QVERIFY(!zeFile::checkWrite(none));
        verifySingleReport("Cannot Write File", "No file name was given.");
    }

    void setReporterReturnsPreviousReporter()
    {
        const zeFile::Reporter other = [](const QString&, const QString&) {};
        QVERIFY(zeFile::setReporter(other) == recordReport);
        QVERIFY(zeFile::setReporter(nullptr) == other);
        QVERIFY(zeFile::setReporter(nullptr) == nullptr);
    }

    void messageBoxOnlyOnTheGuiThread()
    {
        QVERIFY(zeFile::canShowMessageBox());
        bool fromWorker = true;
        // A plain thread: its join is visible to the thread sanitizer.
        std::thread worker([&] { fromWorker = zeFile::canShowMessageBox(); });
        worker.join();
        QVERIFY(!fromWorker);
    }

    void defaultReporterShowsWarningBoxInGui()
    {
        zeFile::setReporter(nullptr);
        QString title;
        QString text;
        QMessageBox::Icon icon = QMessageBox::NoIcon;
        // The box is modal: a timer inside its event loop reads and closes it.
        QTimer closer;
        closer.setInterval(10);
        connect(&closer, &QTimer::timeout, this, [&] {
            if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                title = box->windowTitle();
                text = box->text();
                icon = box->icon();
                box->done(QMessageBox::Ok);
            }
        });
        closer.start();
        QVERIFY(!zeFile::checkRead(pathOf("missing.spectral")));
        closer.stop();
        QCOMPARE(title, QString("Cannot Read File"));
        QCOMPARE(text, QString("The file \"%1\" does not exist.").arg(shown("missing.spectral")));
        QCOMPARE(icon, QMessageBox::Warning);
    }

    void defaultReporterWritesToLogWithoutGui()
    {
        zeFile::setReporter(nullptr);
        static QByteArray logged;
        logged.clear();
        zeLog::setWarningHandler([](const char* message) { logged = message; });
        const QString path = pathOf("folder");
        bool accepted = true;
        // Off the GUI thread no message box may be shown, just as without a QApplication.
        std::thread worker([&] { accepted = zeFile::checkWrite(path); });
        worker.join();
        QVERIFY(!accepted);
        QCOMPARE(QString::fromUtf8(logged),
                 QString("Cannot Write File: \"%1\" is a folder, not a file.").arg(shown("folder")));
    }
};

QTEST_MAIN(tst_zeFile)
#include "tst_zeFile.moc"
