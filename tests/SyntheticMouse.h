#ifndef SYNTHETICMOUSE_H
#define SYNTHETICMOUSE_H

// Mouse events that QTest cannot produce (sub-pixel, outside the widget, any
// set of held buttons), sent straight to a widget.

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

// Sends a mouse event at the widget-local position at; its global position is
// where at lies on the screen, as for a real pointer.
inline void sendMouseEvent(QWidget* widget, QEvent::Type type, const QPointF& at,
                           Qt::MouseButton button, Qt::MouseButtons buttons)
{
    const QPointF global = QPointF(widget->mapToGlobal(QPoint(0, 0))) + at;
    QMouseEvent event(type, at, global, button, buttons, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

#endif // SYNTHETICMOUSE_H
