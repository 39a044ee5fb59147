#include "PatternWindow.h"
#include "PrivateServers.h"
#include "TestHelpers.h"

#include <QZEScreenPicker.h>

#include <QCursor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QSignalSpy>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QtTest>

#include <limits>

namespace {

const char* const portalService = "org.freedesktop.portal.Desktop";
const char* const portalPath = "/org/freedesktop/portal/desktop";

QVariantMap colourResults(double red, double green, double blue)
{
    QDBusArgument colour;
    colour.beginStructure();
    colour << red << green << blue;
    colour.endStructure();
    return {{QStringLiteral("color"), QVariant::fromValue(colour)}};
}

} // namespace

Q_DECLARE_METATYPE(QZEScreenPicker::Method)

// Plays the desktop portal's Screenshot interface on the test's private bus:
// PickColor returns the Request object path built from the caller's
// handle_token, and the answer follows as that object's Response signal,
// the way the real portal does it.
class FakeScreenshotPortal : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Screenshot")
    Q_PROPERTY(uint version READ version)
public:
    explicit FakeScreenshotPortal(uint version) : _version(version) {}

    uint version() const { return _version; }

    // What the next PickColor is answered with; without answerPicks the
    // request is taken and never answered.
    uint response = 0;
    QVariantMap results;
    bool answerPicks = true;
    int picks = 0;

public slots:
    QDBusObjectPath PickColor(const QString& /*parentWindow*/, const QVariantMap& options,
                              const QDBusMessage& message)
    {
        ++picks;
        QString sender = message.service().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        const QString requestPath = QStringLiteral("%1/request/%2/%3")
                                        .arg(QLatin1String(portalPath), sender,
                                             options.value(QStringLiteral("handle_token")).toString());
        if (answerPicks) {
            QDBusMessage answer = QDBusMessage::createSignal(
                requestPath, QStringLiteral("org.freedesktop.portal.Request"),
                QStringLiteral("Response"));
            answer << response << results;
            QTimer::singleShot(0, this, [this, answer]() { _bus.send(answer); });
        }
        return QDBusObjectPath(requestPath);
    }

public:
    // Offers the interface on a connection of its own under the portal's name.
    bool publish()
    {
        const QByteArray address = qgetenv("DBUS_SESSION_BUS_ADDRESS");
        _bus = QDBusConnection::connectToBus(QString::fromLatin1(address),
                                             QStringLiteral("fake-portal"));
        return _bus.isConnected()
               && _bus.registerObject(QLatin1String(portalPath), this,
                                      QDBusConnection::ExportAllSlots
                                          | QDBusConnection::ExportAllProperties)
               && _bus.registerService(QLatin1String(portalService));
    }

    void withdraw()
    {
        _bus.unregisterService(QLatin1String(portalService));
        _bus.unregisterObject(QLatin1String(portalPath));
        QDBusConnection::disconnectFromBus(QStringLiteral("fake-portal"));
    }

private:
    uint _version;
    QDBusConnection _bus{QString()};
};

class tst_QZEScreenPicker : public QObject
{
    Q_OBJECT
private slots:
    void cleanup();

    void availableMethodIsScreenOnOffscreen();
    void methodForReadsTheScreenEverywhereButWayland_data();
    void methodForReadsTheScreenEverywhereButWayland();
    void portalVersionIsReadFromTheBus_data();
    void portalVersionIsReadFromTheBus();
    void unavailableReasonIsTranslatedText();

    void cursorIs32By32WithHotSpotAtThePipetteTip();
    void cursorIsGreyPipettePointingToTheLowerLeftOnTransparentGround();
    void cursorIsTheSameObjectOnEveryCall();

    void pixelAtReadsTheColourOfAShownWindow();
    void pixelAtOutsideEveryWindowGivesAnOpaqueColour();

    void portalColourIsPickedWithEightBitRounding();
    void portalColourOutsideZeroToOneIsClamped();
    void portalResponseOneCancels();
    void portalAnswerWithoutUsableColourCancels_data();
    void portalAnswerWithoutUsableColourCancels();
    void missingPortalCancels();
    void portalLeavingTheBusCancelsItsOpenRequest();
    void portalPicksAreAnsweredEachOnce();

private:
    FakeScreenshotPortal* publishPortal(uint version);
    // Publishes a portal that answers the next pick with response and results.
    FakeScreenshotPortal* publishAnsweringPortal(uint response, const QVariantMap& results);
    // Picks once through the portal and waits for the one answer: the colour
    // picked, or an invalid colour for a cancel. Fails when no answer or a
    // second one comes.
    void answerOfOnePick(QColor* answer);

    FakeScreenshotPortal* _portal = nullptr;
};

void tst_QZEScreenPicker::cleanup()
{
    if (_portal) {
        _portal->withdraw();
        delete _portal;
        _portal = nullptr;
    }
}

FakeScreenshotPortal* tst_QZEScreenPicker::publishPortal(uint version)
{
    _portal = new FakeScreenshotPortal(version);
    if (!_portal->publish())
        return nullptr;
    return _portal;
}

FakeScreenshotPortal* tst_QZEScreenPicker::publishAnsweringPortal(uint response,
                                                                const QVariantMap& results)
{
    FakeScreenshotPortal* portal = publishPortal(2);
    if (portal) {
        portal->response = response;
        portal->results = results;
    }
    return portal;
}

void tst_QZEScreenPicker::answerOfOnePick(QColor* answer)
{
    QZEScreenPicker picker;
    QSignalSpy picked(&picker, SIGNAL(colorPicked(QColor)));
    QSignalSpy cancelled(&picker, SIGNAL(pickCancelled()));
    picker.pickThroughPortal(nullptr);
    QCOMPARE(picked.count() + cancelled.count(), 0);
    QTRY_COMPARE(picked.count() + cancelled.count(), 1);
    QTest::qWait(100);
    QCOMPARE(picked.count() + cancelled.count(), 1);
    *answer = picked.isEmpty() ? QColor() : picked.at(0).at(0).value<QColor>();
}

void tst_QZEScreenPicker::availableMethodIsScreenOnOffscreen()
{
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("offscreen"));
    QCOMPARE(QZEScreenPicker::availableMethod(), QZEScreenPicker::Method::Screen);
}

void tst_QZEScreenPicker::methodForReadsTheScreenEverywhereButWayland_data()
{
    QTest::addColumn<QString>("platform");
    QTest::addColumn<uint>("portalVersion");
    QTest::addColumn<QZEScreenPicker::Method>("expected");
    using M = QZEScreenPicker::Method;
    QTest::newRow("x11 without portal") << "xcb" << 0u << M::Screen;
    QTest::newRow("x11 with portal") << "xcb" << 2u << M::Screen;
    QTest::newRow("offscreen") << "offscreen" << 0u << M::Screen;
    QTest::newRow("windows") << "windows" << 0u << M::Screen;
    QTest::newRow("wayland without portal") << "wayland" << 0u << M::None;
    QTest::newRow("wayland, portal without PickColor") << "wayland" << 1u << M::None;
    QTest::newRow("wayland, portal with PickColor") << "wayland" << 2u << M::Portal;
    QTest::newRow("wayland, newer portal") << "wayland" << 4u << M::Portal;
    QTest::newRow("wayland-egl without portal") << "wayland-egl" << 0u << M::None;
    QTest::newRow("wayland-egl with portal") << "wayland-egl" << 3u << M::Portal;
}

void tst_QZEScreenPicker::methodForReadsTheScreenEverywhereButWayland()
{
    QFETCH(QString, platform);
    QFETCH(uint, portalVersion);
    QFETCH(QZEScreenPicker::Method, expected);
    QCOMPARE(QZEScreenPicker::methodFor(platform, portalVersion), expected);
}

void tst_QZEScreenPicker::portalVersionIsReadFromTheBus_data()
{
    QTest::addColumn<bool>("portalPresent");
    QTest::addColumn<uint>("offeredVersion");
    QTest::addColumn<uint>("expected");
    QTest::newRow("no portal") << false << 0u << 0u;
    QTest::newRow("version 1") << true << 1u << 1u;
    QTest::newRow("version 2") << true << 2u << 2u;
}

void tst_QZEScreenPicker::portalVersionIsReadFromTheBus()
{
    QZE_SKIP_WITHOUT_BUS();
    QFETCH(bool, portalPresent);
    QFETCH(uint, offeredVersion);
    QFETCH(uint, expected);
    if (portalPresent)
        QVERIFY(publishPortal(offeredVersion));
    // The question blocks its thread, and the fake portal answers from this
    // one: ask from another.
    uint version = 12345;
    QScopedPointer<QThread> asker(QThread::create([&version]() {
        version = QZEScreenPicker::screenshotPortalVersion(QDBusConnection::sessionBus());
    }));
    asker->start();
    QTRY_VERIFY(asker->isFinished());
    QCOMPARE(version, expected);
}

void tst_QZEScreenPicker::unavailableReasonIsTranslatedText()
{
    const QString reason = QZEScreenPicker::unavailableReason();
    QVERIFY(reason.contains(QStringLiteral("Wayland")));
    QCOMPARE(reason, QCoreApplication::translate("QZEScreenPicker", qPrintable(reason)));
}

void tst_QZEScreenPicker::cursorIs32By32WithHotSpotAtThePipetteTip()
{
    const QCursor& cursor = QZEScreenPicker::pipetteCursor();
    QCOMPARE(cursor.shape(), Qt::BitmapCursor);
    QCOMPARE(cursor.pixmap().size(), QSize(32, 32));
    QCOMPARE(cursor.hotSpot(), QPoint(4, 27));
    // The tip itself is drawn: some pixel within one of the hot spot shows.
    const QImage image = cursor.pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
    bool tipDrawn = false;
    for (int y = 26; y <= 28; ++y)
        for (int x = 3; x <= 5; ++x)
            tipDrawn = tipDrawn || qAlpha(image.pixel(x, y)) > 0;
    QVERIFY(tipDrawn);
}

void tst_QZEScreenPicker::cursorIsGreyPipettePointingToTheLowerLeftOnTransparentGround()
{
    const QImage image =
        QZEScreenPicker::pipetteCursor().pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
    int opaque = 0;
    QPointF opaqueSum;
    QSet<int> shades;
    for (int y = 0; y < 32; ++y) {
        for (int x = 0; x < 32; ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAlpha(pixel) == 0)
                continue;
            QVERIFY2(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel),
                     qPrintable(QStringLiteral("colour at %1,%2").arg(x).arg(y)));
            if (qAlpha(pixel) == 255) {
                ++opaque;
                opaqueSum += QPointF(x, y);
                shades.insert(qRed(pixel));
            }
        }
    }
    QVERIFY2(opaque >= 60, qPrintable(QString::number(opaque)));
    QVERIFY(opaque <= 32 * 32 / 2);
    QVERIFY(shades.size() >= 3);
    // Corners away from the pipette's diagonal stay transparent.
    QCOMPARE(qAlpha(image.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(image.pixel(31, 31)), 0);
    QCOMPARE(qAlpha(image.pixel(0, 31)), 0);
    // The body lies above and to the right of the tip.
    const QPointF centre = opaqueSum / opaque;
    QVERIFY(centre.x() > 4 + 6);
    QVERIFY(centre.y() < 27 - 6);
}

void tst_QZEScreenPicker::cursorIsTheSameObjectOnEveryCall()
{
    QCOMPARE(&QZEScreenPicker::pipetteCursor(), &QZEScreenPicker::pipetteCursor());
}

void tst_QZEScreenPicker::pixelAtReadsTheColourOfAShownWindow()
{
    PatternWindow window(QRect(100, 80, 120, 90), {{QRect(0, 0, 120, 90), QColor(30, 140, 210)}});
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_COMPARE(QZEScreenPicker::pixelAt(QPoint(160, 120)), QColor(30, 140, 210));
}

void tst_QZEScreenPicker::pixelAtOutsideEveryWindowGivesAnOpaqueColour()
{
    const QColor colour = QZEScreenPicker::pixelAt(QPoint(5, 5));
    QVERIFY(colour.isValid());
    QCOMPARE(colour.alpha(), 255);
    QVERIFY(QZEScreenPicker::pixelAt(QPoint(-10000, 10000)).isValid());
}

void tst_QZEScreenPicker::portalColourIsPickedWithEightBitRounding()
{
    QZE_SKIP_WITHOUT_BUS();
    // 0.3 x 255 = 76.5, 0.5 x 255 = 127.5, 0.9 x 255 = 229.5: each rounds up.
    FakeScreenshotPortal* portal = publishAnsweringPortal(0, colourResults(0.3, 0.5, 0.9));
    QVERIFY(portal);
    QColor answer;
    QZE_CHECK(answerOfOnePick(&answer));
    QCOMPARE(answer, QColor(77, 128, 230));
    QCOMPARE(portal->picks, 1);
}

void tst_QZEScreenPicker::portalColourOutsideZeroToOneIsClamped()
{
    QZE_SKIP_WITHOUT_BUS();
    QVERIFY(publishAnsweringPortal(0, colourResults(1.5, -0.25, 0.2)));
    QColor answer;
    QZE_CHECK(answerOfOnePick(&answer));
    QCOMPARE(answer, QColor(255, 0, 51));
}

void tst_QZEScreenPicker::portalResponseOneCancels()
{
    QZE_SKIP_WITHOUT_BUS();
    QVERIFY(publishAnsweringPortal(1, colourResults(0.5, 0.5, 0.5)));
    QColor answer(Qt::red);
    QZE_CHECK(answerOfOnePick(&answer));
    QVERIFY(!answer.isValid());
}

void tst_QZEScreenPicker::portalAnswerWithoutUsableColourCancels_data()
{
    QTest::addColumn<uint>("response");
    QTest::addColumn<QVariantMap>("results");
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("response 2") << 2u << colourResults(0.1, 0.2, 0.3);
    QTest::newRow("no colour") << 0u << QVariantMap();
    QTest::newRow("colour as text")
        << 0u << QVariantMap{{QStringLiteral("color"), QStringLiteral("#ff0000")}};
    QTest::newRow("colour not a number") << 0u << colourResults(nan, 0.5, 0.5);
}

void tst_QZEScreenPicker::portalAnswerWithoutUsableColourCancels()
{
    QZE_SKIP_WITHOUT_BUS();
    QFETCH(uint, response);
    QFETCH(QVariantMap, results);
    QVERIFY(publishAnsweringPortal(response, results));
    QColor answer(Qt::red);
    QZE_CHECK(answerOfOnePick(&answer));
    QVERIFY(!answer.isValid());
}

void tst_QZEScreenPicker::missingPortalCancels()
{
    QZE_SKIP_WITHOUT_BUS();
    QColor answer(Qt::red);
    QZE_CHECK(answerOfOnePick(&answer));
    QVERIFY(!answer.isValid());
}

void tst_QZEScreenPicker::portalLeavingTheBusCancelsItsOpenRequest()
{
    QZE_SKIP_WITHOUT_BUS();
    FakeScreenshotPortal* portal = publishPortal(2);
    QVERIFY(portal);
    portal->answerPicks = false;
    QZEScreenPicker picker;
    QSignalSpy picked(&picker, SIGNAL(colorPicked(QColor)));
    QSignalSpy cancelled(&picker, SIGNAL(pickCancelled()));
    picker.pickThroughPortal(nullptr);
    QTRY_COMPARE(portal->picks, 1);
    QTest::qWait(100);
    QCOMPARE(cancelled.count(), 0);
    cleanup();
    QTRY_COMPARE(cancelled.count(), 1);
    QTest::qWait(100);
    QCOMPARE(cancelled.count(), 1);
    QCOMPARE(picked.count(), 0);
}

void tst_QZEScreenPicker::portalPicksAreAnsweredEachOnce()
{
    QZE_SKIP_WITHOUT_BUS();
    QVERIFY(publishAnsweringPortal(0, colourResults(0.0, 1.0, 0.0)));
    QZEScreenPicker picker;
    QSignalSpy picked(&picker, SIGNAL(colorPicked(QColor)));
    picker.pickThroughPortal(nullptr);
    picker.pickThroughPortal(nullptr);
    picker.pickThroughPortal(nullptr);
    QTRY_COMPARE(picked.count(), 3);
    QTest::qWait(100);
    QCOMPARE(picked.count(), 3);
    for (const QList<QVariant>& answer : picked)
        QCOMPARE(answer.at(0).value<QColor>(), QColor(0, 255, 0));
}

QZE_TEST_MAIN_WITH_PRIVATE_SERVERS(tst_QZEScreenPicker, false)
#include "tst_QZEScreenPicker.moc"
