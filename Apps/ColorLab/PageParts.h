#ifndef PAGEPARTS_H
#define PAGEPARTS_H

#include "QZEColor.h"
#include "QZEColorSlider.h"

#include <QString>

class QColor;
class QFrame;
class QLabel;
class QSize;

// What the ColorLab pages share: the names of the nine colour modes, the
// slider position and strip ends for a colour channel, number read-outs and
// the colour swatch.
namespace PageParts {

// Hue, saturation, value, red, green, blue, L*, a* and b*: the modes of the
// colour slider and of the colour field, in the same order.
constexpr int ModeCount = QZEColorSlider::Bstar + 1;

// The translated name of a mode (0 .. ModeCount - 1).
QString modeName(int mode);

// The slider position whose getRealValue() is channel, kept on the strip.
float sliderPosition(QZEColorSlider::Mode mode, float channel);

// The saturation and value strips run from one end colour to the other; for
// every other mode both ends are color.
void gradientEnds(const QZEColor& color, QZEColorSlider::Mode mode, QZEColor& min, QZEColor& max);

// x with three decimals; triple writes three such numbers separated by commas.
QString number(float x);
QString triple(float x, float y, float z);

// A selectable label in the fixed-width font, for numbers.
QLabel* numberLabel();

// A sunken frame that shows a colour as its background.
QFrame* swatchFrame(const QSize& minimumSize);
void showOnSwatch(QFrame* swatch, const QColor& color);

} // namespace PageParts

#endif // PAGEPARTS_H
