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
    enum class Method { Screen, Portal, None };

    explicit QZEScreenPicker(QObject* parent = nullptr);

    static QColor pixelAt(const QPoint& globalPos);
    static Method availableMethod();
    static QString unavailableReason();
    static const QCursor& pipetteCursor();

    void pickThroughPortal(QWidget* window);

signals:
    void colorPicked(const QColor& color);
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
