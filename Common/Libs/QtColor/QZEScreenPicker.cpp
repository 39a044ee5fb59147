#include "QZEScreenPicker.h"

#include <QCursor>
#include <QWidget>

QZEScreenPicker::QZEScreenPicker(QObject* parent)
    : QObject(parent)
{
}

QColor QZEScreenPicker::pixelAt(const QPoint&)
{
    return QColor(Qt::black);
}

QZEScreenPicker::Method QZEScreenPicker::availableMethod()
{
    return Method::Screen;
}

QString QZEScreenPicker::unavailableReason()
{
    return tr("This session does not let programs read the screen, and no desktop colour picker is available.");
}

const QCursor& QZEScreenPicker::pipetteCursor()
{
    static const QCursor* cursor = new QCursor(Qt::CrossCursor);
    return *cursor;
}

void QZEScreenPicker::pickThroughPortal(QWidget*)
{
    emit pickCancelled();
}
