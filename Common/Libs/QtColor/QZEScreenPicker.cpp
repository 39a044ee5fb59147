#include "QZEScreenPicker.h"

QZEScreenPicker::QZEScreenPicker(QObject* parent)
    : QObject(parent)
{
}
