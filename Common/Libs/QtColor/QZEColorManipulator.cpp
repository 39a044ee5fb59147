#include "QZEColorManipulator.h"

#include "QZEColorButton.h"
#include "QZEColorSlider.h"
#include "zePlatform.h"

#include <QHBoxLayout>
#include <QSignalBlocker>

namespace {

constexpr int SliderHeight = 16;  // also the button's height
constexpr int ButtonWidth = 62;
constexpr int Spacing = 6;
constexpr int SizeHintWidth = 130;

bool isActiveSpectrum(const osg::SpectrumPtr& spectrum)
{
    return spectrum && spectrum->isActive();
}

// One colour signal in its four forms.
struct FourForms
{
    void (QZEColorManipulator::*plain)();
    void (QZEColorManipulator::*color)(const QZEColor&);
    void (QZEColorManipulator::*floats)(float, float, float);
    void (QZEColorManipulator::*bytes)(int, int, int);
};

const FourForms ColorChanged = {&QZEColorManipulator::colorChanged, &QZEColorManipulator::colorChanged,
                                &QZEColorManipulator::colorChanged, &QZEColorManipulator::colorChanged};
const FourForms DialogColorChanged = {
    &QZEColorManipulator::dialogColorChanged, &QZEColorManipulator::dialogColorChanged,
    &QZEColorManipulator::dialogColorChanged, &QZEColorManipulator::dialogColorChanged};

// Emits, in this order: no arguments, the colour, its linear RGB unclamped,
// and its 8-bit RGB, where a channel below 0 gives 0, one above 1 gives 255
// and the rest are truncated.
void emitFourForms(QZEColorManipulator& manipulator, const FourForms& forms, const QZEColor& color)
{
    float r, g, b;
    color.getRGB(r, g, b);
    (manipulator.*forms.plain)();
    (manipulator.*forms.color)(color);
    (manipulator.*forms.floats)(r, g, b);
    (manipulator.*forms.bytes)(QZEColor::toByte(r), QZEColor::toByte(g), QZEColor::toByte(b));
}

} // namespace

QZEColorManipulator::QZEColorManipulator(QWidget* parent, const char* name)
    : QWidget(parent),
      _slider(new QZEColorSlider(Qt::Horizontal, this, nullptr)),
      _button(new QZEColorButton(this))
{
    setObjectName(name ? QString::fromLatin1(name) : QStringLiteral("QZEColorManipulator"));
    const float sx = zePlatform::getDpiScaleX();
    const float sy = zePlatform::getDpiScaleY();
    const int height = int(sy * float(SliderHeight));

    _slider->setMinColor(QZEColor(0.0f, 0.0f, 0.0f));
    _slider->setMaxColor(QZEColor(0.0f, 0.0f, 1.0f));
    _slider->setValueMode(true);
    _slider->setMinimumHeight(height);
    _slider->QWidget::setFocusPolicy(Qt::ClickFocus);
    _button->QWidget::setFocusPolicy(Qt::StrongFocus);
    _button->setFixedWidth(int(sx * float(ButtonWidth)));
    _button->setFixedHeight(height);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Spacing);
    layout->addWidget(_slider);
    layout->addWidget(_button);

    connect(_button, SIGNAL(colorButtonClicked()), this, SLOT(colorButtonPressed()));
    connect(_slider, SIGNAL(sliderPressed()), this, SLOT(sliderValuePressed()));
    connect(_slider, SIGNAL(sliderReleased()), this, SLOT(sliderValueReleased()));
    connect(_slider, SIGNAL(valueChanged(float)), this, SLOT(sliderValueChanged(float)));
    connect(_button, SIGNAL(temporaryColorChosen(const QZEColor&)), this,
            SLOT(temporaryColorChanged(const QZEColor&)));
    connect(_button, SIGNAL(finalColorChosen(const QZEColor&)), this,
            SLOT(finalColorChanged(const QZEColor&)));
    connect(_button, SIGNAL(userSkipped()), this, SLOT(cancelledPressed()));
}

// --- Setters -------------------------------------------------------------------

void QZEColorManipulator::setColor(const QZEColor& color)
{
    {
        const QSignalBlocker blocker(_button);
        _button->setColor(color);
    }
    showOnSlider(color);
}

void QZEColorManipulator::setColor(int r, int g, int b)
{
    setColor(QZEColor::fromRGB(float(r / 255.0), float(g / 255.0), float(b / 255.0)));
}

void QZEColorManipulator::setColor(float r, float g, float b)
{
    setColor(QZEColor::fromRGB(r, g, b));
}

void QZEColorManipulator::setHSV(float h, float s, float v)
{
    setColor(QZEColor(h, s, v));
}

void QZEColorManipulator::setLAB(float L, float a, float b)
{
    QZEColor color;
    color.LABtoHSV(L, a, b, color.h, color.s, color.v);
    setColor(color);
}

void QZEColorManipulator::setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue,
                                      bool spectrumOnly)
{
    {
        const QSignalBlocker blocker(_button);
        _button->setSpectrum(spectrum, maxValue, spectrumOnly);
    }
    followButtonSpectrum();
}

void QZEColorManipulator::setPhotometricParameters(bool on)
{
    _slider->setPhotometricParameters(on);
}

void QZEColorManipulator::setSliderTracking(bool on)
{
    _slider->setTracking(on);
}

// Without the slider the fixed-width button would float in the middle of the
// row; it keeps to the left instead. The layout caches the button's size
// limits, which depend on the alignment, until the button asks for a new
// geometry.
void QZEColorManipulator::setSliderVisible(bool visible)
{
    _slider->setVisible(visible);
    layout()->setAlignment(_button, visible ? Qt::Alignment() : Qt::AlignLeft);
    _button->updateGeometry();
}

bool QZEColorManipulator::isSliderVisible() const
{
    return _slider->isVisibleTo(this);
}

void QZEColorManipulator::setFocusPolicy(Qt::FocusPolicy policy)
{
    _slider->setFocusPolicy(policy);
}

// --- Getters -------------------------------------------------------------------

QZEColor QZEColorManipulator::getColor() const
{
    return _button->getColor();
}

void QZEColorManipulator::getColor(int& r, int& g, int& b) const
{
    _button->getColor().getQColor().getRgb(&r, &g, &b);
}

void QZEColorManipulator::getColor(float& r, float& g, float& b) const
{
    _button->getColor().getRGB(r, g, b);
}

void QZEColorManipulator::getHSV(float& h, float& s, float& v) const
{
    const QZEColor color = _button->getColor();
    h = color.h;
    s = color.s;
    v = color.v;
}

void QZEColorManipulator::getLAB(float& L, float& a, float& b) const
{
    const QZEColor color = _button->getColor();
    color.HSVtoLAB(color.h, color.s, color.v, L, a, b);
}

QSize QZEColorManipulator::sizeHint() const
{
    return QSize(SizeHintWidth, zePlatform::getSmallIconSizeY());
}

// --- Slots ---------------------------------------------------------------------

void QZEColorManipulator::colorButtonPressed()
{
    emit buttonPressed();
}

// The slider's colour is the blend of black and the full-brightness colour
// in sRGB-encoded space; decoding it gives the linear colour at that
// brightness.
void QZEColorManipulator::sliderValueChanged(float)
{
    float r, g, b;
    _slider->getColor().getRGB(r, g, b);
    QZEColor color;
    color.setGammaRGB(r, g, b);
    {
        const QSignalBlocker blocker(_button);
        _button->setColor(color);
    }
    emitSignals(color);
    color.getRGB(r, g, b);
    emit sliderColorChanged(r, g, b);
}

void QZEColorManipulator::sliderValuePressed()
{
    emit sliderPressed();
}

void QZEColorManipulator::sliderValueReleased()
{
    emit sliderReleased();
}

// The slider stays where it is while the dialog is open; it follows only the
// final colour.
void QZEColorManipulator::temporaryColorChanged(const QZEColor& color)
{
    emitFourForms(*this, DialogColorChanged, color);
}

// The button already holds the colour: accepted, dropped, or its own on a
// cancel.
void QZEColorManipulator::finalColorChanged(const QZEColor& color)
{
    showOnSlider(color);
    followButtonSpectrum();
    emitSignals(color);
    emit finalColorSet(color);
}

void QZEColorManipulator::cancelledPressed()
{
    emit cancelled();
}

// --- Helpers -------------------------------------------------------------------

// The strip runs from black to the colour at full brightness, and the handle
// sits at the colour's brightness, both in sRGB-encoded space.
void QZEColorManipulator::showOnSlider(const QZEColor& color)
{
    float r, g, b;
    color.getGammaRGB(r, g, b);
    const QZEColor encoded = QZEColor::fromRGB(r, g, b);
    const QSignalBlocker blocker(_slider);
    _slider->setValue(encoded.v, true, false);
    _slider->setMaxColor(QZEColor(encoded.h, encoded.s, 1.0f));
}

// An active spectrum fixes the colour, so the slider cannot rescale it.
void QZEColorManipulator::followButtonSpectrum()
{
    _slider->setUseSpectrum(isActiveSpectrum(_button->getSpectrum()));
}

void QZEColorManipulator::emitSignals(const QZEColor& color)
{
    emitFourForms(*this, ColorChanged, color);
}
