#include "SlidersPage.h"

#include "PageParts.h"
#include "zePlatform.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QFrame>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

using Mode = QZEColorSlider::Mode;

// A warm orange: the saturation, value and Lab strips all show clear gradients.
const QZEColor InitialColor(20.0f, 0.9f, 0.75f);

// The colour's channel in the unit of QZEColorSlider::getRealValue().
float channelOf(const QZEColor& color, Mode mode)
{
    float channels[3];
    switch (mode) {
    case QZEColorSlider::Hue:
        return color.h;
    case QZEColorSlider::Saturation:
        return color.s;
    case QZEColorSlider::Value:
        return color.v;
    case QZEColorSlider::Red:
    case QZEColorSlider::Green:
    case QZEColorSlider::Blue:
        color.getRGB(channels[0], channels[1], channels[2]);
        return channels[mode - QZEColorSlider::Red];
    default:
        color.HSVtoLAB(color.h, color.s, color.v, channels[0], channels[1], channels[2]);
        return channels[mode - QZEColorSlider::Lstar];
    }
}

// Hue, saturation and value are written as they stand, so a grey keeps its
// hue. A Lab slider holds the current colour as its min colour, from which
// getColor() takes the two components it does not change.
void applyChannel(QZEColor& color, const QZEColorSlider& slider)
{
    const float channel = slider.getRealValue();
    switch (slider.getMode()) {
    case QZEColorSlider::Hue:
        color.h = channel;
        break;
    case QZEColorSlider::Saturation:
        color.s = channel;
        break;
    case QZEColorSlider::Value:
        color.v = channel;
        break;
    case QZEColorSlider::Red:
        color.setRed(channel);
        break;
    case QZEColorSlider::Green:
        color.setGreen(channel);
        break;
    case QZEColorSlider::Blue:
        color.setBlue(channel);
        break;
    default:
        color = slider.getColor();
        break;
    }
}

QString bytes(const QColor& color)
{
    return QStringLiteral("%1, %2, %3   %4")
        .arg(color.red())
        .arg(color.green())
        .arg(color.blue())
        .arg(color.name());
}

} // namespace

using PageParts::numberLabel;
using PageParts::triple;

SlidersPage::SlidersPage(QWidget* parent) : QWidget(parent), _color(InitialColor)
{
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createChannels());
    layout->addWidget(createColorView());
    layout->addStretch(1);
    showColor(nullptr);
}

void SlidersPage::setColor(const QZEColor& color)
{
    _color = color;
    showColor(nullptr);
}

QZEColorSlider* SlidersPage::slider(QZEColorSlider::Mode mode) const
{
    return _sliders.value(int(mode));
}

QWidget* SlidersPage::createChannels()
{
    auto* box = new QGroupBox(tr("Channels"));
    auto* grid = new QGridLayout(box);
    grid->setColumnStretch(1, 1);
    for (int i = 0; i < PageParts::ModeCount; ++i) {
        auto* slider = new QZEColorSlider;
        slider->setMode(Mode(i));
        slider->setMinimumHeight(zePlatform::getSmallIconSizeY() * 3 / 2);
        QLabel* readout = numberLabel();
        readout->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        readout->setMinimumWidth(readout->fontMetrics().horizontalAdvance(QStringLiteral("-000.000")));
        grid->addWidget(new QLabel(PageParts::modeName(i)), i, 0);
        grid->addWidget(slider, i, 1);
        grid->addWidget(readout, i, 2);
        connect(slider, qOverload<float>(&QZEColorSlider::valueChanged), this,
                [this, slider] { takeChannelFrom(slider); });
        _sliders.append(slider);
        _readouts.append(readout);
    }
    return box;
}

QWidget* SlidersPage::createColorView()
{
    auto* box = new QGroupBox(tr("Current colour"));
    auto* row = new QHBoxLayout(box);

    _swatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 4, zePlatform::getMediumIconSizeY() * 3));
    row->addWidget(_swatch);

    auto* forms = new QFormLayout;
    for (const auto& form : colorForms()) {
        QLabel* value = numberLabel();
        forms->addRow(form.first, value);
        _formValues.append(value);
    }
    _useGamma = new QCheckBox(tr("Show screen colours sRGB-encoded (QZEColor::s_useGamma)"));
    _useGamma->setChecked(QZEColor::s_useGamma);
    connect(_useGamma, &QCheckBox::toggled, this, &SlidersPage::setUseGamma);
    forms->addRow(_useGamma);
    row->addLayout(forms, 1);
    return box;
}

void SlidersPage::takeChannelFrom(const QZEColorSlider* moved)
{
    applyChannel(_color, *moved);
    showColor(moved);
}

void SlidersPage::setUseGamma(bool on)
{
    QZEColor::s_useGamma = on;
    showColor(nullptr);
    // The saturation strip is painted through the gamma switch.
    for (QZEColorSlider* slider : qAsConst(_sliders))
        slider->update();
}

void SlidersPage::showColor(const QZEColorSlider* moved)
{
    for (int i = 0; i < _sliders.size(); ++i)
        showInSlider(i, moved);

    PageParts::showOnSwatch(_swatch, _color.getGammaQColor());

    const auto forms = colorForms();
    for (int i = 0; i < forms.size(); ++i)
        _formValues[i]->setText(forms[i].second);
}

void SlidersPage::showInSlider(int index, const QZEColorSlider* moved)
{
    QZEColorSlider* slider = _sliders[index];
    const Mode mode = slider->getMode();
    const QSignalBlocker blocker(slider);
    // The Lab strips are painted around the max colour while getColor()
    // completes from the min colour, so both hold the current colour.
    QZEColor min, max;
    PageParts::gradientEnds(_color, mode, min, max);
    slider->setMinColor(min);
    slider->setMaxColor(max);
    // The moved slider stays under the mouse: a round trip through the colour
    // (a grey's hue, an out-of-gamut Lab colour) could move it elsewhere.
    if (slider != moved)
        slider->setValue(PageParts::sliderPosition(mode, channelOf(_color, mode)), false);
    _readouts[index]->setText(slider->getValueAsString());
}

QVector<QPair<QString, QString>> SlidersPage::colorForms() const
{
    float r, g, b;
    _color.getRGB(r, g, b);
    const QString linear = triple(r, g, b);
    _color.getGammaRGB(r, g, b);
    const QString encoded = triple(r, g, b);
    float L, A, B;
    _color.HSVtoLAB(_color.h, _color.s, _color.v, L, A, B);
    return {
        {tr("HSV (hue in degrees)"), triple(_color.h, _color.s, _color.v)},
        {tr("Linear RGB"), linear},
        {tr("sRGB-encoded RGB"), encoded},
        {tr("8-bit linear (getQColor)"), bytes(_color.getQColor())},
        {tr("8-bit on screen (getGammaQColor)"), bytes(_color.getGammaQColor())},
        {tr("CIE L*a*b*"), triple(L, A, B)},
    };
}
