#include "QZEComboBox.h"

QZEComboBox::QZEComboBox(QWidget* parent, const char*) : QComboBox(parent)
{
    setObjectName(QStringLiteral("QZEComboBox"));
}
