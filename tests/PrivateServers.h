#ifndef PRIVATESERVERS_H
#define PRIVATESERVERS_H

// A test program's own message bus and, for tests that need a real X
// server, its own Xvfb: both started before the application object exists
// (Qt reads DISPLAY and the session bus address once) and stopped after it
// is gone. Whatever runs on the machine's own desktop stays untouched.
//
// When a server cannot start, the program still runs; its tests skip with
// the reason through QZE_SKIP_WITHOUT_BUS() or QZE_SKIP_WITHOUT_DISPLAY().

#include "ServerProcess.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

class PrivateServers
{
public:
    PrivateServers() { instanceSlot() = this; }
    ~PrivateServers() { instanceSlot() = nullptr; }
    PrivateServers(const PrivateServers&) = delete;
    PrivateServers& operator=(const PrivateServers&) = delete;

    static PrivateServers* instance() { return instanceSlot(); }

    // A bus that knows no services but those the test registers: no
    // service files, so nothing on the machine is started on demand.
    void startSessionBus()
    {
        if (!_busConfigDir.isValid() || !writeBusConfig()) {
            _busFailure = QStringLiteral("cannot write a configuration for dbus-daemon");
        } else if (_bus.start(QStringLiteral("dbus-daemon"),
                              {"--config-file=" + QFile::encodeName(busConfigPath()), "--nofork",
                               "--print-address={ready-fd}"},
                              10000)) {
            qputenv("DBUS_SESSION_BUS_ADDRESS", _bus.readyLine());
            return;
        } else {
            _busFailure = _bus.failure();
        }
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    }

    // One 1920 x 1200 screen, on a display number that Xvfb picks itself
    // among the free ones.
    void startDisplay()
    {
        if (_display.start(QStringLiteral("Xvfb"),
                           {"-displayfd", "{ready-fd}", "-nolisten", "tcp", "-screen", "0", "1920x1200x24"},
                           20000)) {
            qputenv("DISPLAY", ":" + _display.readyLine());
            qputenv("QT_QPA_PLATFORM", "xcb");
            return;
        }
        _displayFailure = _display.failure();
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }

    QString busFailure() const { return _busFailure; }
    QString displayFailure() const { return _displayFailure; }

private:
    static PrivateServers*& instanceSlot()
    {
        static PrivateServers* current = nullptr;
        return current;
    }

    QString busConfigPath() const { return _busConfigDir.filePath(QStringLiteral("bus.conf")); }

    bool writeBusConfig() const
    {
        QFile config(busConfigPath());
        if (!config.open(QIODevice::WriteOnly))
            return false;
        const QByteArray text =
            "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
            " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
            "<busconfig>\n"
            "  <type>session</type>\n"
            "  <listen>unix:tmpdir=/tmp</listen>\n"
            "  <auth>EXTERNAL</auth>\n"
            "  <policy context=\"default\">\n"
            "    <allow send_destination=\"*\" eavesdrop=\"true\"/>\n"
            "    <allow eavesdrop=\"true\"/>\n"
            "    <allow own=\"*\"/>\n"
            "  </policy>\n"
            "</busconfig>\n";
        return config.write(text) == text.size() && config.flush();
    }

    QTemporaryDir _busConfigDir;
    ServerProcess _bus;
    ServerProcess _display;
    QString _busFailure;
    QString _displayFailure;
};

// The device pixel ratio that QT_SCALE_FACTOR asks for; 1 without it.
inline double requestedScaleFactor()
{
    bool given = false;
    const double factor = qEnvironmentVariable("QT_SCALE_FACTOR").toDouble(&given);
    return given ? factor : 1.0;
}

#define QZE_SKIP_WITHOUT_BUS()                                                                   \
    do {                                                                                         \
        const QString qzeFailure = PrivateServers::instance()->busFailure();                     \
        if (!qzeFailure.isEmpty())                                                               \
            QSKIP(qPrintable(QStringLiteral("no private message bus: ") + qzeFailure));          \
    } while (false)

#define QZE_SKIP_WITHOUT_DISPLAY()                                                               \
    do {                                                                                         \
        const QString qzeFailure = PrivateServers::instance()->displayFailure();                 \
        if (!qzeFailure.isEmpty())                                                               \
            QSKIP(qPrintable(QStringLiteral("Xvfb could not start: ") + qzeFailure));            \
    } while (false)

// main() for a test program with its own message bus and, when withDisplay
// is true, its own Xvfb (otherwise the platform that CTest sets).
#define QZE_TEST_MAIN_WITH_PRIVATE_SERVERS(TestObject, withDisplay)                              \
    int main(int argc, char** argv)                                                              \
    {                                                                                            \
        PrivateServers servers;                                                                  \
        servers.startSessionBus();                                                               \
        if (withDisplay)                                                                         \
            servers.startDisplay();                                                              \
        QApplication app(argc, argv);                                                            \
        TestObject test;                                                                         \
        QTEST_SET_MAIN_SOURCE_PATH                                                               \
        return QTest::qExec(&test, argc, argv);                                                  \
    }

#endif // PRIVATESERVERS_H
