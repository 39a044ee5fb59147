#include "QZEPushButton.h"

#include "QZEQtCompat.h"

#include <QMouseEvent>

Qt::MouseButton QZEPushButton::s_lastMouseReleaseButton = Qt::LeftButton;

namespace {

// QAbstractButton reacts to the left button only: the other buttons reach it
// as a left-button event with the same position and modifiers.
QMouseEvent asLeftButton(const QMouseEvent& event)
{
    const Qt::MouseButtons held = event.buttons() & Qt::MouseButtons(~event.button());
    const Qt::MouseButtons buttons =
        event.type() == QEvent::MouseButtonPress ? held | Qt::LeftButton : held & ~Qt::LeftButton;
    return QMouseEvent(event.type(), QZEQtCompat::position(event), QZEQtCompat::windowPosition(event),
                       QZEQtCompat::globalPosition(event),
                       Qt::LeftButton, buttons, event.modifiers(), event.source());
}

} // namespace

QZEPushButton::QZEPushButton(QWidget* parent, const char* name) : QZEPushButton(QString(), parent, name)
{
}

QZEPushButton::QZEPushButton(const QString& text, QWidget* parent, const char*) : QPushButton(text, parent)
{
    setObjectName(QStringLiteral("QZEPushButton"));
}

void QZEPushButton::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton) {
        QPushButton::mousePressEvent(event);
        return;
    }
    QMouseEvent left = asLeftButton(*event);
    QPushButton::mousePressEvent(&left);
    event->setAccepted(left.isAccepted());
}

void QZEPushButton::mouseReleaseEvent(QMouseEvent* event)
{
    s_lastMouseReleaseButton = event->button();
    if (event->button() == Qt::LeftButton) {
        QPushButton::mouseReleaseEvent(event);
        return;
    }
    QMouseEvent left = asLeftButton(*event);
    QPushButton::mouseReleaseEvent(&left);
    event->setAccepted(left.isAccepted());
}
