#include "PageParts.h"

#include "QZEColorField.h"

#include <QCoreApplication>
#include <QFontDatabase>
#include <QFrame>
#include <QLabel>
#include <QPalette>

namespace PageParts {

namespace {

const char* const ModeNames[] = {
    QT_TRANSLATE_NOOP("ColorModes", "Hue"),   QT_TRANSLATE_NOOP("ColorModes", "Saturation"),
    QT_TRANSLATE_NOOP("ColorModes", "Value"), QT_TRANSLATE_NOOP("ColorModes", "Red"),
    QT_TRANSLATE_NOOP("ColorModes", "Green"), QT_TRANSLATE_NOOP("ColorModes", "Blue"),
    QT_TRANSLATE_NOOP("ColorModes", "L*"),    QT_TRANSLATE_NOOP("ColorModes", "a*"),
    QT_TRANSLATE_NOOP("ColorModes", "b*"),
};
static_assert(int(sizeof(ModeNames) / sizeof(ModeNames[0])) == ModeCount, "one name per mode");
static_assert(QZEColorField::Bstar + 1 == ModeCount, "the field has the slider's modes");

} // namespace

QString modeName(int mode)
{
    return QCoreApplication::translate("ColorModes", ModeNames[mode]);
}

float sliderPosition(QZEColorSlider::Mode mode, float channel)
{
    float position = channel;
    switch (mode) {
    case QZEColorSlider::Hue:
        position = channel / 359.99f;
        break;
    case QZEColorSlider::Lstar:
        position = channel / 100.0f;
        break;
    case QZEColorSlider::Astar:
    case QZEColorSlider::Bstar:
        position = channel / QZEColor::s_LabRange + 0.5f;
        break;
    default:
        break;
    }
    return qBound(0.0f, position, 1.0f);
}

void gradientEnds(const QZEColor& color, QZEColorSlider::Mode mode, QZEColor& min, QZEColor& max)
{
    min = max = color;
    if (mode == QZEColorSlider::Saturation) {
        min.s = 0.0f;
        max.s = 1.0f;
    } else if (mode == QZEColorSlider::Value) {
        min.v = 0.0f;
        max.v = 1.0f;
    }
}

QString number(float x)
{
    return QString::number(double(x), 'f', 3);
}

QString triple(float x, float y, float z)
{
    return QStringLiteral("%1, %2, %3").arg(number(x), number(y), number(z));
}

QLabel* numberLabel()
{
    auto* label = new QLabel;
    label->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

QFrame* swatchFrame(const QSize& minimumSize)
{
    auto* swatch = new QFrame;
    swatch->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    swatch->setAutoFillBackground(true);
    swatch->setMinimumSize(minimumSize);
    return swatch;
}

void showOnSwatch(QFrame* swatch, const QColor& color)
{
    QPalette palette = swatch->palette();
    palette.setColor(QPalette::Window, color);
    swatch->setPalette(palette);
}

} // namespace PageParts
