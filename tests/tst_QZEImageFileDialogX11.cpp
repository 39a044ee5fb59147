// The external picker's blocking window on a real X server: it must be
// mapped, and the host's windows must not take the clicks that arrive while
// the picker runs, neither at once nor after the picker has answered. The
// picker program's own window belongs to the window it was given.

#include "QZEImageFileDialog.h"

#include "FakePicker.h"
#include "PrivateServers.h"
#include "TestHelpers.h"

#include <QDialog>
#include <QDir>
#include <QFile>
#include <QMouseEvent>
#include <QProcess>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <QtTest>

#include <xcb/xcb.h>

#include <cstdlib>
#include <functional>

namespace {

class PressCounter : public QWidget
{
public:
    int presses = 0;

protected:
    void mousePressEvent(QMouseEvent* event) override
    {
        ++presses;
        QWidget::mousePressEvent(event);
    }
};

} // namespace

class tst_QZEImageFileDialogX11 : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    void clickOnTheParentReachesItWithoutPicker();
    void blockerIsMappedWhileThePickerRuns();
    void clickOnTheParentIsNotDeliveredWhileThePickerRuns();
    void pickerWindowIsTransientForTheCallersWindow();

private:
    void sendClick(QWidget* widget, const QPoint& local);
    bool isViewable(QWidget* window);
    xcb_window_t windowTransientFor(xcb_window_t parent);
    quint32 windowProperty(xcb_window_t window, xcb_atom_t property, xcb_atom_t type);
    QString runPicker(const std::function<void(QDialog*)>& whileBlocked);

    xcb_connection_t* _connection = nullptr;
    PressCounter* _host = nullptr;
};

void tst_QZEImageFileDialogX11::initTestCase()
{
    QZE_SKIP_WITHOUT_DISPLAY();
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    // A connection of our own: what it sends reaches the program through
    // the X server, as a user's click does.
    _connection = xcb_connect(nullptr, nullptr);
    QVERIFY(_connection && !xcb_connection_has_error(_connection));
}

void tst_QZEImageFileDialogX11::cleanupTestCase()
{
    if (_connection)
        xcb_disconnect(_connection);
}

void tst_QZEImageFileDialogX11::init()
{
    _host = new PressCounter;
    _host->setGeometry(200, 200, 300, 200);
    _host->show();
    QVERIFY(QTest::qWaitForWindowExposed(_host));
}

void tst_QZEImageFileDialogX11::cleanup()
{
    delete _host;
    _host = nullptr;
}

void tst_QZEImageFileDialogX11::sendClick(QWidget* widget, const QPoint& local)
{
    const qreal ratio = widget->devicePixelRatioF();
    const QPoint native = local * ratio;
    const QPoint global = widget->mapToGlobal(local) * ratio;
    xcb_button_press_event_t event{};
    event.detail = 1;
    event.time = XCB_CURRENT_TIME;
    event.root = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
    event.event = xcb_window_t(widget->winId());
    event.root_x = qint16(global.x());
    event.root_y = qint16(global.y());
    event.event_x = qint16(native.x());
    event.event_y = qint16(native.y());
    event.same_screen = 1;
    // No event mask: the event goes to the client that made the window.
    event.response_type = XCB_BUTTON_PRESS;
    xcb_send_event(_connection, false, event.event, 0, reinterpret_cast<const char*>(&event));
    event.response_type = XCB_BUTTON_RELEASE;
    event.state = XCB_BUTTON_MASK_1;
    xcb_send_event(_connection, false, event.event, 0, reinterpret_cast<const char*>(&event));
    xcb_flush(_connection);
}

bool tst_QZEImageFileDialogX11::isViewable(QWidget* window)
{
    const xcb_get_window_attributes_cookie_t cookie =
        xcb_get_window_attributes(_connection, xcb_window_t(window->winId()));
    xcb_get_window_attributes_reply_t* reply =
        xcb_get_window_attributes_reply(_connection, cookie, nullptr);
    const bool viewable = reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    std::free(reply);
    return viewable;
}

// Runs the external picker for _host with a fake that answers once it
// finds the file "go" beside itself; whileBlocked runs once the blocking
// window is shown (with null when none shows within a second), and the fake
// is told to go 300 ms later.
QString tst_QZEImageFileDialogX11::runPicker(const std::function<void(QDialog*)>& whileBlocked)
{
    FakePicker picker("while [ ! -e \"$here/go\" ]; do sleep 0.02; done\n"
                      "printf '/images/a.png\\n9\\n'\nexec sleep 30");
    if (!picker.isValid())
        return QStringLiteral("no fake picker");
    QTimer watch;
    watch.setInterval(10);
    int ticks = 0;
    connect(&watch, &QTimer::timeout, [&] {
        auto* blocker = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        if (!blocker && ++ticks < 100)
            return;
        watch.stop();
        whileBlocked(blocker);
        QTimer::singleShot(300, [&picker] {
            QFile go(picker.path(QStringLiteral("go")));
            go.open(QIODevice::WriteOnly);
        });
    });
    watch.start();
    int mask = 0;
    return QZEImageFileDialog::getOpenFileNameExternalProc(_host, "c", "/images", "*.png", &mask);
}

// The probe itself: a click sent through the server arrives.
void tst_QZEImageFileDialogX11::clickOnTheParentReachesItWithoutPicker()
{
    sendClick(_host, QPoint(150, 100));
    QTRY_COMPARE(_host->presses, 1);
}

void tst_QZEImageFileDialogX11::blockerIsMappedWhileThePickerRuns()
{
    bool viewable = false;
    QSize size;
    QCOMPARE(runPicker([&](QDialog* blocker) {
                 QVERIFY(blocker);
                 QTRY_VERIFY(isViewable(blocker));
                 viewable = true;
                 size = blocker->size();
             }),
             QStringLiteral("/images/a.png"));
    QVERIFY(viewable);
    QCOMPARE(size, QSize(1, 1));
}

void tst_QZEImageFileDialogX11::clickOnTheParentIsNotDeliveredWhileThePickerRuns()
{
    int pressesWhileRunning = -1;
    QCOMPARE(runPicker([&](QDialog*) {
                 sendClick(_host, QPoint(150, 100));
                 // Counted from within the picker's poll, just before it
                 // answers; nothing here may run the user's input itself.
                 QTimer::singleShot(250, [&] { pressesWhileRunning = _host->presses; });
             }),
             QStringLiteral("/images/a.png"));
    QCOMPARE(pressesWhileRunning, 0);
    // Nor does it arrive late, once the picker has answered.
    QTest::qWait(300);
    QCOMPARE(_host->presses, 0);
    sendClick(_host, QPoint(150, 100));
    QTRY_COMPARE(_host->presses, 1);
}

// The 32-bit value of a window's property; 0 when it has none.
quint32 tst_QZEImageFileDialogX11::windowProperty(xcb_window_t window, xcb_atom_t property,
                                                  xcb_atom_t type)
{
    const xcb_get_property_cookie_t cookie =
        xcb_get_property(_connection, false, window, property, type, 0, 1);
    xcb_get_property_reply_t* reply = xcb_get_property_reply(_connection, cookie, nullptr);
    quint32 value = 0;
    if (reply && reply->format == 32 && xcb_get_property_value_length(reply) >= 4)
        value = *static_cast<const quint32*>(xcb_get_property_value(reply));
    std::free(reply);
    return value;
}

// The top-level window whose WM_TRANSIENT_FOR names parent; 0 when none.
xcb_window_t tst_QZEImageFileDialogX11::windowTransientFor(xcb_window_t parent)
{
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(_connection)).data->root;
    xcb_query_tree_reply_t* tree =
        xcb_query_tree_reply(_connection, xcb_query_tree(_connection, root), nullptr);
    if (!tree)
        return 0;
    xcb_window_t found = 0;
    const xcb_window_t* children = xcb_query_tree_children(tree);
    for (int i = 0; i < xcb_query_tree_children_length(tree) && !found; ++i) {
        if (windowProperty(children[i], XCB_ATOM_WM_TRANSIENT_FOR, XCB_ATOM_WINDOW) == parent)
            found = children[i];
    }
    std::free(tree);
    return found;
}

void tst_QZEImageFileDialogX11::pickerWindowIsTransientForTheCallersWindow()
{
#ifndef QIMAGEFILEDIALOG_PATH
    QSKIP("the picker program is built with the applications");
#else
    const xcb_window_t caller = xcb_window_t(_host->winId());
    QProcess picker;
    picker.start(QStringLiteral(QIMAGEFILEDIALOG_PATH),
                 {QString::number(caller), QStringLiteral("Pick"), QDir::tempPath(),
                  QStringLiteral("*.png"), QStringLiteral("0")});
    QVERIFY(picker.waitForStarted());
    xcb_window_t browser = 0;
    QTRY_VERIFY_WITH_TIMEOUT((browser = windowTransientFor(caller)) != 0, 15000);
    // The window is the picker's own, not one of this process.
    xcb_intern_atom_reply_t* pidAtom = xcb_intern_atom_reply(
        _connection, xcb_intern_atom(_connection, false, 11, "_NET_WM_PID"), nullptr);
    QVERIFY(pidAtom);
    const quint32 owner = windowProperty(browser, pidAtom->atom, XCB_ATOM_CARDINAL);
    std::free(pidAtom);
    QCOMPARE(qint64(owner), picker.processId());
    picker.terminate();
    QVERIFY(picker.waitForFinished(10000));
    QCOMPARE(picker.readAllStandardOutput(), QByteArray());
#endif
}

QZE_TEST_MAIN_WITH_PRIVATE_SERVERS(tst_QZEImageFileDialogX11, true)
#include "tst_QZEImageFileDialogX11.moc"
