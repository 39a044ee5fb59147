#ifndef QZESCREENPICKER_H
#define QZESCREENPICKER_H

#include <QColor>
#include <QObject>
#include <QPoint>
#include <QString>

class QCursor;
class QWidget;

// Reads colours off the screen for the colour dialog's pipette: directly
// where the platform lets a program read the screen, through the desktop
// portal's colour picker on a Wayland session that offers it.
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
};

#endif // QZESCREENPICKER_H
