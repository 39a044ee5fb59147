#include "ControlsPage.h"

#include "PageParts.h"
#include "QZEColorButton.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "zePlatform.h"

#include <QButtonGroup>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMetaMethod>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace {

using Mode = QZEColorField::Mode;

// The mode slots, named alike on the field and on the slider, in mode order.
const char* const ModeSlots[] = {"setHueMode",   "setSaturationMode", "setValueMode",
                                 "setRedMode",   "setGreenMode",      "setBlueMode",
                                 "setLstarMode", "setAstarMode",      "setBstarMode"};
static_assert(int(sizeof(ModeSlots) / sizeof(ModeSlots[0])) == PageParts::ModeCount,
              "one slot per mode");

// A linear steel blue: every plane and strip shows a clear gradient.
const QZEColor InitialColor(200.0f, 0.6f, 0.7f);

// The colour in the field's form: sRGB-encoded outside the L*a*b* modes.
// A grey keeps its hue.
QZEColor toFieldForm(const QZEColor& linear, Mode mode)
{
    if (QZEColorField::isLabMode(mode))
        return linear;
    float r, g, b;
    linear.getGammaRGB(r, g, b);
    QZEColor display = QZEColor::fromRGB(r, g, b);
    if (display.s == 0.0f)
        display.h = linear.h;
    return display;
}

QZEColor fromFieldForm(const QZEColor& fieldColor, Mode mode)
{
    if (QZEColorField::isLabMode(mode))
        return fieldColor;
    float r, g, b;
    fieldColor.getRGB(r, g, b);
    QZEColor linear;
    linear.setGammaRGB(r, g, b);
    if (linear.s == 0.0f)
        linear.h = fieldColor.h;
    return linear;
}

// color with the component that mode fixes replaced by value, in the unit of
// QZEColorSlider::getRealValue().
QZEColor withComponent(QZEColor color, Mode mode, float value)
{
    float lab[3];
    switch (mode) {
    case QZEColorField::Hue: color.h = value; break;
    case QZEColorField::Saturation: color.s = value; break;
    case QZEColorField::Value: color.v = value; break;
    case QZEColorField::Red: color.setRed(value); break;
    case QZEColorField::Green: color.setGreen(value); break;
    case QZEColorField::Blue: color.setBlue(value); break;
    default:
        color.HSVtoLAB(color.h, color.s, color.v, lab[0], lab[1], lab[2]);
        lab[mode - QZEColorField::Lstar] = value;
        color.LABtoHSV(lab[0], lab[1], lab[2], color.h, color.s, color.v);
        break;
    }
    return color;
}

// The slider mode that shows the component a field mode fixes.
QZEColorSlider::Mode sliderMode(Mode mode)
{
    return QZEColorSlider::Mode(int(mode));
}

} // namespace

using PageParts::numberLabel;
using PageParts::triple;

ControlsPage::ControlsPage(QWidget* parent) : QWidget(parent), _color(InitialColor)
{
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(createFieldBox());
    auto* column = new QVBoxLayout;
    column->addWidget(createValues(), 1);
    column->addWidget(createMaterial());
    layout->addLayout(column, 1);
    showColor(true);
}

void ControlsPage::setColor(const QZEColor& color)
{
    _color = color;
    showColor(true);
}

// Puts the field and its slider into mode through the slots the mode buttons
// of a colour dialog reach, then shows the colour in that mode's form.
void ControlsPage::setMode(QZEColorField::Mode mode)
{
    QMetaObject::invokeMethod(_field, ModeSlots[mode], Q_ARG(bool, true));
    QMetaObject::invokeMethod(_slider, ModeSlots[mode], Q_ARG(bool, true));
    {
        const QSignalBlocker blocker(_modes);
        _modes->button(int(mode))->setChecked(true);
    }
    showColor(true);
}

QWidget* ControlsPage::createFieldBox()
{
    auto* box = new QGroupBox(tr("Colour field"));
    auto* layout = new QVBoxLayout(box);
    _field = new QZEColorField;
    _field->setMinimumSize(_field->sizeHint());
    _slider = new QZEColorSlider;
    _slider->setMinimumHeight(zePlatform::getSmallIconSizeY() * 3 / 2);
    layout->addWidget(_field);
    layout->addWidget(_slider);
    layout->addWidget(createModeButtons());
    layout->addStretch(1);
    connect(_field, &QZEColorField::colorChanged, this, &ControlsPage::takeFieldColor);
    connect(_slider, qOverload<float>(&QZEColorSlider::valueChanged), this, &ControlsPage::takeSliderValue);
    return box;
}

QWidget* ControlsPage::createModeButtons()
{
    auto* buttons = new QWidget;
    auto* grid = new QGridLayout(buttons);
    grid->setContentsMargins(0, 0, 0, 0);
    _modes = new QButtonGroup(this);
    for (int mode = 0; mode < PageParts::ModeCount; ++mode) {
        auto* button = new QRadioButton(PageParts::modeName(mode));
        _modes->addButton(button, mode);
        grid->addWidget(button, mode % 3, mode / 3); // one column per family
    }
    _modes->button(int(_field->getMode()))->setChecked(true);
    connect(_modes, &QButtonGroup::idToggled, this, [this](int mode, bool on) {
        if (on)
            setMode(Mode(mode));
    });
    return buttons;
}

QWidget* ControlsPage::createValues()
{
    auto* box = new QGroupBox(tr("Current colour"));
    auto* layout = new QVBoxLayout(box);
    _swatch = new QZEColorButton;
    _swatch->setToolTip(tr("Drag the colour to a swatch, or drop a colour here to use it"));
    _swatch->setMinimumSize(zePlatform::getMediumIconSizeX() * 4, zePlatform::getMediumIconSizeY() * 2);
    connect(_swatch, &QZEColorButton::finalColorChosen, this, &ControlsPage::setColor);
    layout->addWidget(_swatch);
    layout->addWidget(createSwatches());

    auto* forms = new QFormLayout;
    const char* const names[] = {
        QT_TR_NOOP("Field colour (HSV)"),
        QT_TR_NOOP("Field slider value"),
        QT_TR_NOOP("HSV (hue in degrees)"),
        QT_TR_NOOP("Linear RGB"),
        QT_TR_NOOP("sRGB-encoded RGB"),
        QT_TR_NOOP("CIE L*a*b*"),
    };
    for (const char* name : names) {
        QLabel* value = numberLabel();
        forms->addRow(tr(name), value);
        _values.append(value);
    }
    layout->addLayout(forms);
    layout->addStretch(1);
    return box;
}

void ControlsPage::takeFieldColor(const QZEColor& picked)
{
    _color = fromFieldForm(picked, _field->getMode());
    showInSlider(picked, false); // the fixed component stays
    showValues();
}

void ControlsPage::takeSliderValue()
{
    const Mode mode = _field->getMode();
    const QZEColor fieldColor = withComponent(_field->getColor(), mode, _slider->getRealValue());
    _color = fromFieldForm(fieldColor, mode);
    showInField(fieldColor);
    showInSlider(fieldColor, false); // the slider stays under the mouse
    showValues();
}

void ControlsPage::showColor(bool moveSlider)
{
    const QZEColor fieldColor = toFieldForm(_color, _field->getMode());
    showInField(fieldColor);
    showInSlider(fieldColor, moveSlider);
    showValues();
}

void ControlsPage::showInField(const QZEColor& fieldColor)
{
    const QSignalBlocker blocker(_field);
    if (QZEColorField::isLabMode(_field->getMode())) {
        float L, a, b;
        fieldColor.HSVtoLAB(fieldColor.h, fieldColor.s, fieldColor.v, L, a, b);
        _field->setLab(L, a, b);
        return;
    }
    float r, g, b;
    fieldColor.getRGB(r, g, b);
    _field->setRGB(r, g, b);
    if (fieldColor.s == 0.0f)
        _field->setHue(fieldColor.h);
}

// The saturation and value strips run between the colour's ends; the L*a*b*
// strips are painted around the max colour. The hue and primary strips do not
// depend on the colour.
void ControlsPage::showInSlider(const QZEColor& fieldColor, bool move)
{
    const QSignalBlocker blocker(_slider);
    if (_slider->getMode() < QZEColorSlider::Red || _slider->getMode() > QZEColorSlider::Blue) {
        QZEColor min, max;
        PageParts::gradientEnds(fieldColor, _slider->getMode(), min, max);
        _slider->setMinColor(min);
        _slider->setMaxColor(max);
    }
    if (move) {
        const Mode mode = _field->getMode();
        _slider->setValue(PageParts::sliderPosition(sliderMode(mode), _field->getFixedValue()), false);
    }
}

void ControlsPage::showValues()
{
    const QZEColor fieldColor = _field->getColor();
    float r, g, b;
    _color.getRGB(r, g, b);
    float er, eg, eb;
    _color.getGammaRGB(er, eg, eb);
    float L, A, B;
    _color.HSVtoLAB(_color.h, _color.s, _color.v, L, A, B);
    const QString texts[] = {
        triple(fieldColor.h, fieldColor.s, fieldColor.v) + QLatin1Char(' ')
            + (QZEColorField::isLabMode(_field->getMode()) ? tr("(linear)") : tr("(display)")),
        _slider->getValueAsString(),
        triple(_color.h, _color.s, _color.v),
        triple(r, g, b),
        triple(er, eg, eb),
        triple(L, A, B),
    };
    for (int i = 0; i < _values.size(); ++i)
        _values[i]->setText(texts[i]);

    _swatch->setColor(_color);
}

// A row of colour buttons to keep colours in: drag colours between them and
// the current colour; a click makes a swatch's colour the current one.
QWidget* ControlsPage::createSwatches()
{
    const QZEColor initial[] = {{0.0f, 0.8f, 0.7f},  {40.0f, 0.9f, 0.9f}, {120.0f, 0.6f, 0.5f},
                                {200.0f, 0.6f, 0.7f}, {270.0f, 0.5f, 0.6f}, {0.0f, 0.0f, 0.18f}};
    auto* box = new QGroupBox(tr("Swatches"));
    auto* row = new QHBoxLayout(box);
    for (const QZEColor& color : initial) {
        auto* swatch = new QZEColorButton;
        swatch->setColor(color);
        swatch->setMinimumSize(zePlatform::getMediumIconSizeX(), zePlatform::getMediumIconSizeY());
        connect(swatch, &QZEColorButton::colorButtonClicked, this,
                [this, swatch] { setColor(swatch->getColor()); });
        row->addWidget(swatch);
        _swatches.append(swatch);
    }
    return box;
}

// --- Material colours --------------------------------------------------------

QWidget* ControlsPage::createMaterial()
{
    auto* box = new QGroupBox(tr("Material"));
    auto* grid = new QGridLayout(box);
    grid->setColumnStretch(1, 1);
    addMaterialRow(grid, QT_TR_NOOP("Diffuse"), QZEColor(20.0f, 0.8f, 0.6f));
    addMaterialRow(grid, QT_TR_NOOP("Specular"), QZEColor(0.0f, 0.0f, 0.9f));
    addMaterialRow(grid, QT_TR_NOOP("Emission"), QZEColor(200.0f, 0.7f, 0.15f));
    return box;
}

// One grid row per colour: its name, the manipulator, the colour it last
// reported and the name of the last signal.
void ControlsPage::addMaterialRow(QGridLayout* grid, const char* name, const QZEColor& color)
{
    const int row = _manipulators.size();
    auto* manipulator = new QZEColorManipulator(nullptr, name);
    manipulator->setColor(color);
    QFrame* swatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX(), zePlatform::getSmallIconSizeY()));
    PageParts::showOnSwatch(swatch, color.getGammaQColor());
    QLabel* lastSignal = PageParts::numberLabel();
    lastSignal->setText(tr("(no signal yet)"));
    grid->addWidget(new QLabel(tr(name)), row, 0);
    grid->addWidget(manipulator, row, 1);
    grid->addWidget(swatch, row, 2);
    grid->addWidget(lastSignal, row, 3);

    // Every signal the manipulator declares shows its name; the two that
    // carry the colour a host would preview also show that colour.
    const QMetaObject& meta = QZEColorManipulator::staticMetaObject;
    const QMetaMethod showSignal =
        metaObject()->method(metaObject()->indexOfSlot("showManipulatorSignal()"));
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            connect(manipulator, meta.method(i), this, showSignal);
    connect(manipulator, SIGNAL(colorChanged(const QZEColor&)), this,
            SLOT(showManipulatorColor(const QZEColor&)));
    connect(manipulator, SIGNAL(dialogColorChanged(const QZEColor&)), this,
            SLOT(showManipulatorColor(const QZEColor&)));

    _manipulators.append(manipulator);
    _materialSwatches.append(swatch);
    _materialSignals.append(lastSignal);
}

int ControlsPage::materialRowOf(QObject* manipulator) const
{
    return _manipulators.indexOf(static_cast<QZEColorManipulator*>(manipulator));
}

void ControlsPage::showManipulatorSignal()
{
    const QMetaMethod signal = sender()->metaObject()->method(senderSignalIndex());
    _materialSignals.at(materialRowOf(sender()))->setText(QString::fromLatin1(signal.name()));
}

void ControlsPage::showManipulatorColor(const QZEColor& color)
{
    PageParts::showOnSwatch(_materialSwatches.at(materialRowOf(sender())), color.getGammaQColor());
}
