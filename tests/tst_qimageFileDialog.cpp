#include "QZEImageFileDialog.h"
#include "QZEPushButton.h"
#include "zeImageMetaWriter.h"
#include "zePlatform.h"
#include "zeRenderSettings.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>
#include <QtTest>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

// The picker program run for real: through the browser's external entry
// point with a choice made by its test mode, its refusal of wrong
// arguments, and an answer that waits for a caller that reads late.
class tst_qimageFileDialog : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();
    void externalEntryPointGetsThePathAndTheMaskOfTheStampedFile();
    void externalEntryPointGetsMaskZeroForAFileWithoutRecord();
    void externalEntryPointWithoutMaskGetsThePathAlone();
    void cancelWritesNothingAndExitsWithZero();
    void wrongArgumentsExitWithStatus2AndAMessage_data();
    void wrongArgumentsExitWithStatus2AndAMessage();
    void answerArrivesWholeAndWaitsForALateReader();
    void unreadAnswerEndsThePickerAfterTheGracePeriod();

private:
    QString stamped() const { return _dir.filePath(QStringLiteral("stamped.png")); }
    QString plain() const { return _dir.filePath(QStringLiteral("plain.png")); }
    QStringList pickerArguments() const;

    QTemporaryDir _dir;
    QTemporaryDir _cache;
};

namespace {

const QString Program = QStringLiteral(QIMAGEFILEDIALOG_PATH);

// The picker started on a pipe of the test's own, so that the test sees
// when the answer has arrived and decides when to read it.
class SpawnedPicker
{
public:
    explicit SpawnedPicker(const QStringList& arguments)
    {
        int ends[2];
        if (pipe(ends) != 0)
            return;
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
        posix_spawn_file_actions_addclose(&actions, ends[0]);
        posix_spawn_file_actions_addclose(&actions, ends[1]);
        QList<QByteArray> bytes{QFile::encodeName(Program)};
        for (const QString& argument : arguments)
            bytes << argument.toLocal8Bit();
        std::vector<char*> argv;
        for (QByteArray& argument : bytes)
            argv.push_back(argument.data());
        argv.push_back(nullptr);
        if (posix_spawn(&_pid, argv[0], &actions, nullptr, argv.data(), environ) != 0)
            _pid = -1;
        posix_spawn_file_actions_destroy(&actions);
        close(ends[1]);
        _readEnd = ends[0];
    }
    ~SpawnedPicker()
    {
        if (_pid > 0 && !_reaped) {
            kill(_pid, SIGKILL);
            waitpid(_pid, nullptr, 0);
        }
        if (_readEnd >= 0)
            close(_readEnd);
    }
    SpawnedPicker(const SpawnedPicker&) = delete;
    SpawnedPicker& operator=(const SpawnedPicker&) = delete;

    bool started() const { return _pid > 0 && _readEnd >= 0; }

    // Bytes waiting in the pipe once any have arrived; 0 after timeoutMs.
    int waitForUnreadBytes(int timeoutMs) const
    {
        QElapsedTimer waited;
        waited.start();
        int unread = 0;
        while (ioctl(_readEnd, FIONREAD, &unread) == 0 && unread == 0
               && waited.elapsed() < timeoutMs)
            QThread::msleep(2);
        return unread;
    }

    bool isRunning()
    {
        if (_reaped)
            return false;
        _reaped = waitpid(_pid, nullptr, WNOHANG) == _pid;
        return !_reaped;
    }

    // Milliseconds until the picker has closed its output (when it stops
    // waiting for its answer to be read), or -1 after timeoutMs. Unread
    // bytes stay in the pipe.
    qint64 millisecondsUntilOutputCloses(int timeoutMs) const
    {
        QElapsedTimer waited;
        waited.start();
        pollfd end{_readEnd, POLLIN, 0};
        while (waited.elapsed() < timeoutMs) {
            if (poll(&end, 1, 5) > 0 && (end.revents & POLLHUP))
                return waited.elapsed();
        }
        return -1;
    }

    QByteArray readAvailable() const
    {
        QByteArray bytes(4096, '\0');
        const ssize_t count = read(_readEnd, bytes.data(), size_t(bytes.size()));
        return count > 0 ? bytes.left(int(count)) : QByteArray();
    }

private:
    pid_t _pid = -1;
    int _readEnd = -1;
    bool _reaped = false;
};

} // namespace

void tst_qimageFileDialog::initTestCase()
{
    QVERIFY(_dir.isValid() && _cache.isValid());
    // Thumbnails the browser makes go to a cache of the test's own.
    qputenv("XDG_CACHE_HOME", QFile::encodeName(_cache.path()));
    QImage picture(64, 48, QImage::Format_RGB32);
    picture.fill(QColor(40, 120, 200));
    QVERIFY(picture.save(stamped(), "png") && picture.save(plain(), "png"));
    zeRenderSettings record;
    record.setSceneFile("atrium.scene");
    record.addSetting(zeRenderSettings::CameraSettings, "FieldOfView", "45");
    record.addSetting(zeRenderSettings::ImageSettings, "Width", "64");
    QCOMPARE(zeImageMetaWriter::stamp(stamped().toUtf8().constData(), record, false),
             zeImageMetaWriter::Stamped);
    zePlatform::setBinDir(QFileInfo(Program).absolutePath());
}

void tst_qimageFileDialog::cleanup()
{
    qunsetenv("QTCOLOR_PICKER_ACCEPT");
    qunsetenv("QTCOLOR_PICKER_CANCEL");
}

QStringList tst_qimageFileDialog::pickerArguments() const
{
    return {QStringLiteral("0"), QStringLiteral("Pick"), _dir.path(), QStringLiteral("*.png"),
            QStringLiteral("1")};
}

void tst_qimageFileDialog::externalEntryPointGetsThePathAndTheMaskOfTheStampedFile()
{
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(stamped()));
    int mask = -1;

    const QString chosen = QZEImageFileDialog::getOpenFileNameExternalProc(
        nullptr, QStringLiteral("Pick"), _dir.path(), QStringLiteral("*.png"), &mask);

    QCOMPARE(chosen, stamped());
    QCOMPARE(mask, zeRenderSettings::CameraSettings | zeRenderSettings::ImageSettings);
}

void tst_qimageFileDialog::externalEntryPointGetsMaskZeroForAFileWithoutRecord()
{
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(plain()));
    int mask = -1;

    const QString chosen = QZEImageFileDialog::getOpenFileNameExternalProc(
        nullptr, QStringLiteral("Pick"), _dir.path(), QStringLiteral("*.png"), &mask);

    QCOMPARE(chosen, plain());
    QCOMPARE(mask, 0);
}

// Without a mask the entry point only runs the picker when the triggering
// button was released with another button than the left one.
void tst_qimageFileDialog::externalEntryPointWithoutMaskGetsThePathAlone()
{
    QZEPushButton trigger;
    QTest::mouseClick(&trigger, Qt::RightButton);
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), Qt::RightButton);
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(stamped()));

    const QString chosen = QZEImageFileDialog::getOpenFileNameExternalProc(
        nullptr, QStringLiteral("Pick"), _dir.path(), QStringLiteral("*.png"), nullptr);

    QCOMPARE(chosen, stamped());
}

void tst_qimageFileDialog::cancelWritesNothingAndExitsWithZero()
{
    qputenv("QTCOLOR_PICKER_CANCEL", "1");
    QProcess picker;
    picker.start(Program, pickerArguments());
    QVERIFY(picker.waitForFinished(30000));

    QCOMPARE(picker.exitStatus(), QProcess::NormalExit);
    QCOMPARE(picker.exitCode(), 0);
    QCOMPARE(picker.readAllStandardOutput(), QByteArray());

    int mask = -1;
    QCOMPARE(QZEImageFileDialog::getOpenFileNameExternalProc(
                 nullptr, QStringLiteral("Pick"), _dir.path(), QStringLiteral("*.png"), &mask),
             QString());
}

void tst_qimageFileDialog::wrongArgumentsExitWithStatus2AndAMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    const QString dir = QDir::tempPath();
    const QString count = QStringLiteral("expected 5 arguments, got %1");
    const QString id = QStringLiteral("the window id \"%1\" is not a decimal number");
    const QString last = QStringLiteral("the last argument must be 1");

    QTest::newRow("none") << QStringList() << count.arg(0);
    QTest::newRow("four") << QStringList{"0", "Pick", dir, "*.png"} << count.arg(4);
    QTest::newRow("six") << QStringList{"0", "Pick", dir, "*.png", "1", "extra"} << count.arg(6);
    QTest::newRow("id with letters") << QStringList{"12ab", "Pick", dir, "*.png", "1"}
                                     << id.arg("12ab");
    QTest::newRow("negative id") << QStringList{"-5", "Pick", dir, "*.png", "1"} << id.arg("-5");
    QTest::newRow("empty id") << QStringList{"", "Pick", dir, "*.png", "1"} << id.arg("");
    QTest::newRow("id beyond 64 bits")
        << QStringList{"18446744073709551616", "Pick", dir, "*.png", "1"}
        << id.arg("18446744073709551616");
    QTest::newRow("mask flag 2") << QStringList{"0", "Pick", dir, "*.png", "2"} << last;
    QTest::newRow("mask flag yes") << QStringList{"0", "Pick", dir, "*.png", "yes"} << last;
}

// Run without any display: the arguments are refused before one is needed.
void tst_qimageFileDialog::wrongArgumentsExitWithStatus2AndAMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    QProcess picker;
    picker.setProcessEnvironment(environment);
    picker.start(Program, arguments);
    QVERIFY(picker.waitForFinished(30000));

    QCOMPARE(picker.exitStatus(), QProcess::NormalExit);
    QCOMPARE(picker.exitCode(), 2);
    QCOMPARE(picker.readAllStandardOutput(), QByteArray());
    const QString errors = QString::fromLocal8Bit(picker.readAllStandardError());
    QVERIFY2(errors.startsWith(QStringLiteral("qimageFileDialog: ") + message), qPrintable(errors));
    QVERIFY2(errors.contains(QStringLiteral("Usage: qimageFileDialog WINDOW-ID CAPTION")),
             qPrintable(errors));
}

// A caller that polls only now and then (the entry point stops polling once
// the picker has gone) still gets the answer: it arrives in one piece and the
// picker stays until it has been read, then goes at once.
void tst_qimageFileDialog::answerArrivesWholeAndWaitsForALateReader()
{
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(stamped()));
    const QByteArray expected = stamped().toUtf8() + "\n9\n";
    SpawnedPicker picker(pickerArguments());
    QVERIFY(picker.started());

    QCOMPARE(picker.waitForUnreadBytes(30000), expected.size());
    QThread::msleep(800);
    QVERIFY(picker.isRunning());
    QCOMPARE(picker.readAvailable(), expected);

    const qint64 closedAfter = picker.millisecondsUntilOutputCloses(5000);
    QVERIFY2(closedAfter >= 0 && closedAfter < 500, qPrintable(QString::number(closedAfter)));
}

void tst_qimageFileDialog::unreadAnswerEndsThePickerAfterTheGracePeriod()
{
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(plain()));
    SpawnedPicker picker(pickerArguments());
    QVERIFY(picker.started());
    QVERIFY(picker.waitForUnreadBytes(30000) > 0);

    const qint64 closedAfter = picker.millisecondsUntilOutputCloses(10000);

    QVERIFY2(closedAfter >= 1500 && closedAfter < 5000, qPrintable(QString::number(closedAfter)));
    QCOMPARE(picker.readAvailable(), plain().toUtf8() + "\n0\n");
}

QTEST_MAIN(tst_qimageFileDialog)
#include "tst_qimageFileDialog.moc"
