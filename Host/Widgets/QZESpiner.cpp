#include "QZESpiner.h"

QZESpiner::QZESpiner(QWidget* parent, const char*) : QSpinBox(parent)
{
    setObjectName(QStringLiteral("QZESpiner"));
}
