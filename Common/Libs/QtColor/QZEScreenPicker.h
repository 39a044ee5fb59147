#ifndef QZESCREENPICKER_H
#define QZESCREENPICKER_H

#include <QColor>
#include <QObject>
#include <QPoint>
#include <QSet>
#include <QString>
#include <QVariantMap>

class QCursor;
class QDBusConnection;
class QDBusMessage;
class QDBusPendingCallWatcher;
class QDBusServiceWatcher;
class QWidget;

/// Reads colours off the screen for the colour dialog's pipette: directly
/// where the platform lets a program read the screen, through the desktop
/// portal's colour picker on a Wayland session that offers one.
///
/// pickThroughPortal() answers every call with exactly one colorPicked() or
/// pickCancelled(), always from the event loop, never from inside the call.
class QZEScreenPicker : public QObject
{
    Q_OBJECT
public:
    /// How colours can be read here: straight off the screen, through the
    /// desktop portal's picker, or not at all.
    enum class Method { Screen, Portal, None };

    /// A picker owned by parent.
    explicit QZEScreenPicker(QObject* parent = nullptr);

    /// The colour of the screen pixel at globalPos (logical coordinates of
    /// the virtual desktop), opaque; black when no screen can be read.
    static QColor pixelAt(const QPoint& globalPos);
    /// Screen except on a Wayland session, where the portal's version decides.
    static Method availableMethod();
    /// The message shown when availableMethod() is None.
    static QString unavailableReason();
    /// The pipette cursor shown while picking (hot spot at the pipette's tip).
    static const QCursor& pipetteCursor();

    /// Asks the desktop portal to let the user pick a colour over window;
    /// the answer comes later as colorPicked() or pickCancelled().
    void pickThroughPortal(QWidget* window);

signals:
    /// The colour the portal picked, opaque, in sRGB.
    void colorPicked(const QColor& color);
    /// The portal pick was cancelled, failed or the portal went away.
    void pickCancelled();

private slots:
    void portalCallFinished(QDBusPendingCallWatcher* watcher);
    void portalResponded(uint response, const QVariantMap& results, const QDBusMessage& message);
    void portalVanished();

private:
    friend class tst_QZEScreenPicker;

    static Method methodFor(const QString& platformName, uint screenshotPortalVersion);
    static uint screenshotPortalVersion(const QDBusConnection& bus);
    static QColor colorFromPortalResults(const QVariantMap& results);
    static QString parentWindowId(QWidget* window);
    static QString nextHandleToken();

    void watchPortal(const QDBusConnection& bus);
    bool listenForResponse(const QString& requestPath, bool listen);
    void finishRequest(const QString& requestPath, const QColor& color);

    /// Request object paths whose answer has not yet been passed on.
    QSet<QString> _pendingRequests;
    QDBusServiceWatcher* _portalWatcher = nullptr;
};

#endif // QZESCREENPICKER_H
