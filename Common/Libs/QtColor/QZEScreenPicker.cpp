#include "QZEScreenPicker.h"

#include <QCursor>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QScreen>
#include <QWidget>

#include <cmath>

namespace {

const char* const portalService = "org.freedesktop.portal.Desktop";
const char* const portalPath = "/org/freedesktop/portal/desktop";
const char* const screenshotInterface = "org.freedesktop.portal.Screenshot";
const char* const requestInterface = "org.freedesktop.portal.Request";

// The Screenshot portal gained PickColor with version 2 of its interface.
const uint firstPortalVersionWithPickColor = 2;

// Answering takes a user's gesture on the other side, so only the question
// whether the portal is there at all is bounded.
const int portalQueryTimeoutMs = 3000;

const QPoint pipetteHotSpot(4, 27);

bool isWaylandPlatform(const QString& platformName)
{
    return platformName.startsWith(QLatin1String("wayland"));
}

int to8Bit(double channel)
{
    return int(std::lround(qBound(0.0, channel, 1.0) * 255.0));
}

// The pipette lies along the diagonal with its tip on the hot spot; drawn in
// a frame whose x axis runs from the tip up to the rubber bulb.
QPixmap pipettePixmap()
{
    QPixmap pixmap(32, 32);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(pipetteHotSpot);
    painter.rotate(-45.0);

    QPainterPath glass;
    glass.moveTo(0.5, 0.0);
    glass.lineTo(6.0, -2.5);
    glass.lineTo(20.0, -2.5);
    glass.lineTo(20.0, 2.5);
    glass.lineTo(6.0, 2.5);
    glass.closeSubpath();
    painter.setPen(QPen(QColor(48, 48, 48), 1.2));
    painter.setBrush(QColor(214, 214, 214));
    painter.drawPath(glass);

    painter.setBrush(QColor(120, 120, 120));
    painter.drawRect(QRectF(20.0, -4.5, 3.0, 9.0));

    QPainterPath bulb;
    bulb.addRoundedRect(QRectF(23.0, -3.5, 10.0, 7.0), 3.5, 3.5);
    painter.setBrush(QColor(80, 80, 80));
    painter.drawPath(bulb);
    return pixmap;
}

} // namespace

QZEScreenPicker::QZEScreenPicker(QObject* parent)
    : QObject(parent)
{
}

// The screen is asked for the logical pixel relative to its own corner: it
// scales that offset by its own device pixel ratio, which a global position
// scaled by one ratio would get wrong on the second of two screens.
QColor QZEScreenPicker::pixelAt(const QPoint& globalPos)
{
    QScreen* screen = QGuiApplication::screenAt(globalPos);
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return QColor(Qt::black);
    const QPoint onScreen = globalPos - screen->geometry().topLeft();
    const QImage image = screen->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1).toImage();
    if (image.isNull())
        return QColor(Qt::black);
    const QRgb pixel = image.pixel(0, 0);
    return QColor(qRed(pixel), qGreen(pixel), qBlue(pixel));
}

QZEScreenPicker::Method QZEScreenPicker::availableMethod()
{
    const QString platform = QGuiApplication::platformName();
    if (!isWaylandPlatform(platform))
        return Method::Screen;
    return methodFor(platform, screenshotPortalVersion(QDBusConnection::sessionBus()));
}

QString QZEScreenPicker::unavailableReason()
{
    return tr("This Wayland session does not let applications read the screen,\n"
              "and its desktop portal offers no color picker.");
}

const QCursor& QZEScreenPicker::pipetteCursor()
{
    static const QCursor* const cursor =
        new QCursor(pipettePixmap(), pipetteHotSpot.x(), pipetteHotSpot.y());
    return *cursor;
}

void QZEScreenPicker::pickThroughPortal(QWidget* window)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString token = nextHandleToken();
    QString sender = bus.baseService().mid(1);
    sender.replace(QLatin1Char('.'), QLatin1Char('_'));
    const QString requestPath =
        QStringLiteral("%1/request/%2/%3").arg(QLatin1String(portalPath), sender, token);
    _pendingRequests.insert(requestPath);
    if (!bus.isConnected() || !listenForResponse(requestPath, true)) {
        finishRequest(requestPath, QColor());
        return;
    }
    watchPortal(bus);

    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(portalService), QLatin1String(portalPath),
                                       QLatin1String(screenshotInterface),
                                       QStringLiteral("PickColor"));
    call << parentWindowId(window)
         << QVariantMap{{QStringLiteral("handle_token"), token}};
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(call), this);
    watcher->setProperty("requestPath", requestPath);
    connect(watcher, SIGNAL(finished(QDBusPendingCallWatcher*)), this,
            SLOT(portalCallFinished(QDBusPendingCallWatcher*)));
}

// A portal older than the handle_token convention answers on a Request
// object of its own choosing; the listener moves there.
void QZEScreenPicker::portalCallFinished(QDBusPendingCallWatcher* watcher)
{
    watcher->deleteLater();
    const QString requestPath = watcher->property("requestPath").toString();
    if (!_pendingRequests.contains(requestPath))
        return;
    const QDBusPendingReply<QDBusObjectPath> reply = *watcher;
    if (reply.isError()) {
        finishRequest(requestPath, QColor());
        return;
    }
    const QString handle = reply.value().path();
    if (handle == requestPath)
        return;
    listenForResponse(requestPath, false);
    _pendingRequests.remove(requestPath);
    _pendingRequests.insert(handle);
    if (!listenForResponse(handle, true))
        finishRequest(handle, QColor());
}

void QZEScreenPicker::portalResponded(uint response, const QVariantMap& results,
                                      const QDBusMessage& message)
{
    const QColor color = response == 0 ? colorFromPortalResults(results) : QColor();
    finishRequest(message.path(), color);
}

// A portal that goes away will never answer the requests it took.
void QZEScreenPicker::portalVanished()
{
    const QSet<QString> pending = _pendingRequests;
    for (const QString& requestPath : pending)
        finishRequest(requestPath, QColor());
}

QZEScreenPicker::Method QZEScreenPicker::methodFor(const QString& platformName,
                                                   uint screenshotPortalVersion)
{
    if (!isWaylandPlatform(platformName))
        return Method::Screen;
    return screenshotPortalVersion >= firstPortalVersionWithPickColor ? Method::Portal
                                                                      : Method::None;
}

// 0 when the bus has no Screenshot portal or does not answer in time.
uint QZEScreenPicker::screenshotPortalVersion(const QDBusConnection& bus)
{
    if (!bus.isConnected())
        return 0;
    QDBusMessage get = QDBusMessage::createMethodCall(
        QLatin1String(portalService), QLatin1String(portalPath),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    get << QLatin1String(screenshotInterface) << QStringLiteral("version");
    const QDBusMessage reply = bus.call(get, QDBus::Block, portalQueryTimeoutMs);
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
        return 0;
    const QVariant version = reply.arguments().constFirst().value<QDBusVariant>().variant();
    return version.userType() == QMetaType::UInt ? version.toUInt() : 0;
}

// The colour arrives as three doubles in 0..1; anything else in its place
// counts as no colour.
QColor QZEScreenPicker::colorFromPortalResults(const QVariantMap& results)
{
    const QVariant value = results.value(QStringLiteral("color"));
    if (value.userType() != qMetaTypeId<QDBusArgument>())
        return QColor();
    const QDBusArgument argument = value.value<QDBusArgument>();
    if (argument.currentSignature() != QLatin1String("(ddd)"))
        return QColor();
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    argument.beginStructure();
    argument >> red >> green >> blue;
    argument.endStructure();
    if (!std::isfinite(red) || !std::isfinite(green) || !std::isfinite(blue))
        return QColor();
    return QColor(to8Bit(red), to8Bit(green), to8Bit(blue));
}

// Lets the portal put its picker over the right window; only X11 has an
// identifier that can be passed on without exporting the window first.
QString QZEScreenPicker::parentWindowId(QWidget* window)
{
    if (!window || QGuiApplication::platformName() != QLatin1String("xcb"))
        return QString();
    return QStringLiteral("x11:") + QString::number(window->window()->winId(), 16);
}

QString QZEScreenPicker::nextHandleToken()
{
    static uint counter = 0;
    return QStringLiteral("qzecolor%1").arg(++counter);
}

void QZEScreenPicker::watchPortal(const QDBusConnection& bus)
{
    if (_portalWatcher)
        return;
    _portalWatcher = new QDBusServiceWatcher(QLatin1String(portalService), bus,
                                             QDBusServiceWatcher::WatchForUnregistration, this);
    connect(_portalWatcher, SIGNAL(serviceUnregistered(QString)), this, SLOT(portalVanished()));
}

bool QZEScreenPicker::listenForResponse(const QString& requestPath, bool listen)
{
    QDBusConnection bus = QDBusConnection::sessionBus();
    const QString service = QLatin1String(portalService);
    const QString interface = QLatin1String(requestInterface);
    const QString name = QStringLiteral("Response");
    const char* slot = SLOT(portalResponded(uint, QVariantMap, QDBusMessage));
    return listen ? bus.connect(service, requestPath, interface, name, this, slot)
                  : bus.disconnect(service, requestPath, interface, name, this, slot);
}

// Passes a request's outcome on once: a valid colour as colorPicked, no
// colour as pickCancelled. Emitted through the event loop so that a caller
// never sees the signal before pickThroughPortal has returned.
void QZEScreenPicker::finishRequest(const QString& requestPath, const QColor& color)
{
    if (!_pendingRequests.remove(requestPath))
        return;
    listenForResponse(requestPath, false);
    if (color.isValid())
        QMetaObject::invokeMethod(this, "colorPicked", Qt::QueuedConnection,
                                  Q_ARG(QColor, color));
    else
        QMetaObject::invokeMethod(this, "pickCancelled", Qt::QueuedConnection);
}
