#include "QZEColorDialog.h"

#include "QZEColorArray.h"
#include "QZEColorButton.h"
#include "QZEColorField.h"
#include "QZEDoubleSpiner.h"
#include "QZEScreenPicker.h"
#include "zePlatform.h"

#include "ui_QZEColorDialogGUI.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QElapsedTimer>
#include <QIcon>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QSignalBlocker>
#include <QThread>
#include <QTimer>

#include <climits>
#include <cstdio>

namespace {

using Mode = QZEColorSlider::Mode;

constexpr float HueScale = 359.99f;       // slider position 1 is this hue
constexpr float HueEntryLimit = 359.999f; // the largest hue a spin box stores
constexpr int SwatchWidth = 64;
constexpr int SwatchHeight = 16;
constexpr int PipetteInterval = 10; // ms between two looks at the cursor
constexpr int CatcherSize = 10;
constexpr qreal CatcherOpacity = 0.1;
constexpr int ScreenSettleTime = 40; // ms for the screen beneath the catcher to repaint
constexpr int ColorTab = 0;
constexpr int SpectrumTab = 1;

// The cursor position of the previous pipette tick, shared by every dialog:
// the catcher only moves when the cursor did.
QPoint lastPipettePosition(INT_MIN, INT_MIN);

// The published sRGB transfer functions applied to a whole colour. Negative
// channels encode as 0, so that no colour turns into NaN.
QZEColor encoded(const QZEColor& color)
{
    float r, g, b;
    color.getGammaRGB(r, g, b);
    return QZEColor::fromRGB(r, g, b);
}

QZEColor decoded(const QZEColor& color)
{
    float r, g, b;
    color.getRGB(r, g, b);
    QZEColor linear;
    linear.setGammaRGB(r, g, b);
    return linear;
}

void labOf(const QZEColor& color, float lab[3])
{
    color.HSVtoLAB(color.h, color.s, color.v, lab[0], lab[1], lab[2]);
}

QZEColor fromLab(const float lab[3])
{
    QZEColor color;
    color.LABtoHSV(lab[0], lab[1], lab[2], color.h, color.s, color.v);
    return color;
}

// Text of an output label: the prefix, then the number in fixed notation.
QString labelText(const QString& prefix, float value, int decimals)
{
    return prefix + QString::number(double(value), 'f', decimals);
}

bool isLabMode(Mode mode)
{
    return mode == QZEColorSlider::Lstar || mode == QZEColorSlider::Astar
           || mode == QZEColorSlider::Bstar;
}

// The end colours of a slider in mode, so that its strip shows what it can
// reach from color (whose L*a*b* is lab). A hue strip has none of its own.
void setGradient(QZEColorSlider* slider, Mode mode, const QZEColor& color, const float lab[3])
{
    const QZEColor black(0.0f, 0.0f, 0.0f);
    switch (mode) {
    case QZEColorSlider::Saturation:
        slider->setMinColor(QZEColor(color.h, 0.0f, color.v));
        slider->setMaxColor(QZEColor(color.h, 1.0f, color.v));
        break;
    case QZEColorSlider::Value:
        slider->setMinColor(black);
        slider->setMaxColor(QZEColor(color.h, color.s, 1.0f));
        break;
    case QZEColorSlider::Red:
    case QZEColorSlider::Green:
    case QZEColorSlider::Blue:
        slider->setMinColor(black);
        slider->setMaxColor(QZEColor(120.0f * float(mode - QZEColorSlider::Red), 1.0f, 1.0f));
        break;
    case QZEColorSlider::Lstar:
    case QZEColorSlider::Astar:
    case QZEColorSlider::Bstar: {
        const int axis = mode - QZEColorSlider::Lstar;
        float from[3] = {lab[0], lab[1], lab[2]};
        float to[3] = {lab[0], lab[1], lab[2]};
        from[axis] = axis == 0 ? 0.0f : -QZEColor::s_LabRange;
        to[axis] = axis == 0 ? 100.0f : QZEColor::s_LabRange;
        slider->setMinColor(fromLab(from));
        slider->setMaxColor(fromLab(to));
        break;
    }
    default:
        break;
    }
}

// Where a slider in mode stands for color: the inverse of
// QZEColorDialog::writeComponent. Red, green and blue show the encoded
// channels; the value only while s_useGamma is set.
float sliderPosition(Mode mode, const QZEColor& color, const float lab[3])
{
    float rgb[3];
    color.getGammaRGB(rgb[0], rgb[1], rgb[2]);
    switch (mode) {
    case QZEColorSlider::Hue:
        return color.h / HueScale;
    case QZEColorSlider::Saturation:
        return color.s;
    case QZEColorSlider::Value:
        return QZEColor::s_useGamma ? QZEColor::encodeSRGB(color.v) : color.v;
    case QZEColorSlider::Red:
    case QZEColorSlider::Green:
    case QZEColorSlider::Blue:
        return rgb[mode - QZEColorSlider::Red];
    case QZEColorSlider::Lstar:
        return lab[0] / 100.0f;
    default:
        return lab[mode - QZEColorSlider::Lstar] / QZEColor::s_LabRange + 0.5f;
    }
}

void showOnSlider(QZEColorSlider* slider, Mode mode, const QZEColor& color, const float lab[3])
{
    if (mode < QZEColorSlider::Hue || mode > QZEColorSlider::Bstar)
        return;
    const QSignalBlocker blocker(slider);
    setGradient(slider, mode, color, lab);
    slider->setValue(sliderPosition(mode, color, lab), false);
}

// A spin box entry clamped to low..high; an entry not above low (NaN too)
// gives low.
float clampedEntry(double entry, float low, float high)
{
    return entry > double(low) ? (entry < double(high) ? float(entry) : high) : low;
}

} // namespace

QZEColorDialog::QZEColorDialog(QWidget* parent, const char* name)
    : QDialog(parent), _gui(new Ui_QZEColorDialogGUI)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
    _gui->setupUi(this);
    init();
    reinit(QZEColor(0.0f, 1.0f, 1.0f));
}

QZEColorDialog::QZEColorDialog(const QZEColor& color, QWidget* parent, const char* name)
    : QZEColorDialog(parent, name)
{
    reinit(color);
}

QZEColorDialog::~QZEColorDialog()
{
    delete _gui;
}

std::array<QZEColorDialog::Channel, 9> QZEColorDialog::channels() const
{
    return {{
        {QZEColorSlider::Red, _gui->_redSlider, _gui->_redSpiner},
        {QZEColorSlider::Green, _gui->_greenSlider, _gui->_greenSpiner},
        {QZEColorSlider::Blue, _gui->_blueSlider, _gui->_blueSpiner},
        {QZEColorSlider::Hue, _gui->_hueSlider, _gui->_hueSpiner},
        {QZEColorSlider::Saturation, _gui->_saturationSlider, _gui->_saturationSpiner},
        {QZEColorSlider::Value, _gui->_valueSlider, _gui->_valueSpiner},
        {QZEColorSlider::Lstar, _gui->_lstarSlider, _gui->_lstarSpiner},
        {QZEColorSlider::Astar, _gui->_astarSlider, _gui->_astarSpiner},
        {QZEColorSlider::Bstar, _gui->_bstarSlider, _gui->_bstarSpiner},
    }};
}

// --- Construction ---------------------------------------------------------------

void QZEColorDialog::init()
{
    connect(_gui->_custom_colors, SIGNAL(selected(int)), this, SLOT(getCustomColor(int)));
    connect(_gui->_store_custom_color, SIGNAL(clicked()), this, SLOT(addCustomColor()));
    connect(_gui->_pick_color, SIGNAL(toggled(bool)), this, SLOT(toggleColorPipette(bool)));
    _pipetteTimer = new QTimer(this);
    connect(_pipetteTimer, SIGNAL(timeout()), this, SLOT(preGrabScreenColor()));
    setUpPipette();
    setUpSliders();
    setUpSpinBoxes();
    connectControls();

    _gui->tabWidget->setTabEnabled(ColorTab, true);
    _gui->tabWidget->setTabEnabled(SpectrumTab, false);
    _gui->_spectrumPlot->setEnabled(false);
    connect(_gui->tabWidget, SIGNAL(currentChanged(int)), this, SLOT(tabChanged(int)));

    setUpSwatches();
    _pipetteCatcher.setObjectName(QStringLiteral("QZEColorDialogPipetteCatcher"));
    _pipetteCatcher.setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    _pipetteCatcher.resize(CatcherSize, CatcherSize);
    adjustPosition(parentWidget());
}

void QZEColorDialog::setUpPipette()
{
    QToolButton* pipette = _gui->_pick_color;
    pipette->setIcon(QIcon(QZEScreenPicker::pipetteCursor().pixmap()));
    if (QZEScreenPicker::availableMethod() == QZEScreenPicker::Method::None) {
        pipette->setEnabled(false);
        pipette->setToolTip(QZEScreenPicker::unavailableReason());
    }
}

void QZEColorDialog::setUpSliders()
{
    const float lab[3] = {0.0f, 0.0f, 0.0f};
    for (const Channel& channel : channels()) {
        const QSignalBlocker blocker(channel.slider);
        channel.slider->setMode(channel.mode);
        setGradient(channel.slider, channel.mode, _color, lab);
    }
}

void QZEColorDialog::setUpSpinBoxes()
{
    for (const Channel& channel : channels()) {
        channel.spiner->setDisplayDecimals(3);
        channel.spiner->setExactDisplayDecimals(true);
    }
    _gui->_astarSpiner->setRange(-QZEColor::s_LabRange, QZEColor::s_LabRange);
    _gui->_bstarSpiner->setRange(-QZEColor::s_LabRange, QZEColor::s_LabRange);
}

void QZEColorDialog::connectControls()
{
    struct Wire
    {
        QObject* sender;
        const char* signal;
        const char* slot;
    };
    const Wire wires[] = {
        {_gui->_previous_color, SIGNAL(clicked()), SLOT(restorePreviousColor())},
        {_gui->_redButton, SIGNAL(toggled(bool)), SLOT(setRedMode(bool))},
        {_gui->_greenButton, SIGNAL(toggled(bool)), SLOT(setGreenMode(bool))},
        {_gui->_blueButton, SIGNAL(toggled(bool)), SLOT(setBlueMode(bool))},
        {_gui->_hueButton, SIGNAL(toggled(bool)), SLOT(setHueMode(bool))},
        {_gui->_saturationButton, SIGNAL(toggled(bool)), SLOT(setSaturationMode(bool))},
        {_gui->_valueButton, SIGNAL(toggled(bool)), SLOT(setValueMode(bool))},
        {_gui->_lstarButton, SIGNAL(toggled(bool)), SLOT(setLstarMode(bool))},
        {_gui->_astarButton, SIGNAL(toggled(bool)), SLOT(setAstarMode(bool))},
        {_gui->_bstarButton, SIGNAL(toggled(bool)), SLOT(setBstarMode(bool))},
        {_gui->_hueSlider, SIGNAL(valueChanged(float)), SLOT(hueSliderChanged(float))},
        {_gui->_saturationSlider, SIGNAL(valueChanged(float)), SLOT(saturationSliderChanged(float))},
        {_gui->_valueSlider, SIGNAL(valueChanged(float)), SLOT(valueSliderChanged(float))},
        {_gui->_redSlider, SIGNAL(valueChanged(float)), SLOT(redSliderChanged(float))},
        {_gui->_greenSlider, SIGNAL(valueChanged(float)), SLOT(greenSliderChanged(float))},
        {_gui->_blueSlider, SIGNAL(valueChanged(float)), SLOT(blueSliderChanged(float))},
        {_gui->_lstarSlider, SIGNAL(valueChanged(float)), SLOT(lstarSliderChanged(float))},
        {_gui->_astarSlider, SIGNAL(valueChanged(float)), SLOT(astarSliderChanged(float))},
        {_gui->_bstarSlider, SIGNAL(valueChanged(float)), SLOT(bstarSliderChanged(float))},
        {_gui->_colorFieldSlider, SIGNAL(valueChanged(float)), SLOT(colorFieldSliderChanged(float))},
        {_gui->_colorField, SIGNAL(colorChanged(QZEColor)), SLOT(colorFieldChanged(QZEColor))},
        {_gui->_hueSpiner, SIGNAL(valueChanged(double)), SLOT(hueSpinerChanged(double))},
        {_gui->_saturationSpiner, SIGNAL(valueChanged(double)), SLOT(saturationSpinerChanged(double))},
        {_gui->_valueSpiner, SIGNAL(valueChanged(double)), SLOT(valueSpinerChanged(double))},
        {_gui->_redSpiner, SIGNAL(valueChanged(double)), SLOT(redSpinerChanged(double))},
        {_gui->_greenSpiner, SIGNAL(valueChanged(double)), SLOT(greenSpinerChanged(double))},
        {_gui->_blueSpiner, SIGNAL(valueChanged(double)), SLOT(blueSpinerChanged(double))},
        {_gui->_lstarSpiner, SIGNAL(valueChanged(double)), SLOT(lstarSpinerChanged(double))},
        {_gui->_astarSpiner, SIGNAL(valueChanged(double)), SLOT(astarSpinerChanged(double))},
        {_gui->_bstarSpiner, SIGNAL(valueChanged(double)), SLOT(bstarSpinerChanged(double))},
        {_gui->_useGamma, SIGNAL(toggled(bool)), SLOT(setUseGamma(bool))},
        {_gui->_accept, SIGNAL(clicked()), SLOT(accept())},
        {_gui->_reject, SIGNAL(clicked()), SLOT(reject())},
    };
    for (const Wire& wire : wires)
        connect(wire.sender, wire.signal, this, wire.slot);
}

// The swatches only show colours: a click on the previous one restores it,
// and none of them opens a colour dialog of its own.
void QZEColorDialog::setUpSwatches()
{
    const QSize size(int(SwatchWidth * zePlatform::getDpiScaleX()),
                     int(SwatchHeight * zePlatform::getDpiScaleY()));
    for (QZEColorButton* swatch : {_gui->_current_color, _gui->_previous_color,
                                   _gui->_current_color_s, _gui->_previous_color_s}) {
        swatch->setFixedSize(size);
        swatch->setShowColorDialog(false);
    }
}

// --- Public operations ---------------------------------------------------------

void QZEColorDialog::reinit(const QZEColor& color)
{
    setColor(color);
    _previousColor = _color;
    {
        const QSignalBlocker blocker(_gui->_useGamma);
        _gui->_useGamma->setChecked(QZEColor::s_useGamma);
    }
    showOnSwatch(_gui->_previous_color, _previousColor);
    showOnSwatch(_gui->_current_color, _previousColor);
    _gui->_colorField->setMode(_gui->_colorField->getMode());
}

void QZEColorDialog::setColor(const QZEColor& color)
{
    const QZEColor internal = QZEColor::s_useGamma ? color : decoded(color);
    if (internal == _color)
        return;
    _color = internal;
    finishEdit();
}

QZEColor QZEColorDialog::getColor() const
{
    return QZEColor::s_useGamma ? _color : encoded(_color);
}

QColor QZEColorDialog::getQColor() const
{
    return _color.getQColor();
}

void QZEColorDialog::updateGUI()
{
    updateSlider();
    updateLineEdits();
}

void QZEColorDialog::languageChange() {}

void QZEColorDialog::accept()
{
    QDialog::accept();
}

void QZEColorDialog::reject()
{
    emit colorChanged(_previousColor);
    QDialog::reject();
}

void QZEColorDialog::closeEvent(QCloseEvent* event)
{
    emit colorChanged(_previousColor);
    QDialog::closeEvent(event);
}

void QZEColorDialog::resizeEvent(QResizeEvent* event)
{
    QDialog::resizeEvent(event);
    if (_gui->tabWidget->currentIndex() != SpectrumTab)
        return;
    QGraphicsView* view = _gui->_spectrumPlot;
    view->setSceneRect(QRectF(QPointF(0.0, 0.0), QSizeF(view->size())));
    updateSpectrumTab(false);
}

// --- Editing -------------------------------------------------------------------

void QZEColorDialog::writeComponent(Mode mode, float position)
{
    switch (mode) {
    case QZEColorSlider::Hue:
        _color.h = position * HueScale;
        break;
    case QZEColorSlider::Saturation:
        _color.s = position;
        break;
    case QZEColorSlider::Value:
        // Decoded only while s_useGamma is set, unlike red, green and blue,
        // which the sliders always give encoded.
        _color.v = QZEColor::s_useGamma ? QZEColor::decodeSRGB(position) : position;
        break;
    case QZEColorSlider::Red:
        _color.setRed(QZEColor::decodeSRGB(position));
        break;
    case QZEColorSlider::Green:
        _color.setGreen(QZEColor::decodeSRGB(position));
        break;
    case QZEColorSlider::Blue:
        _color.setBlue(QZEColor::decodeSRGB(position));
        break;
    case QZEColorSlider::Lstar:
        writeLab(0, position * 100.0f);
        break;
    case QZEColorSlider::Astar:
        writeLab(1, (position - 0.5f) * QZEColor::s_LabRange);
        break;
    case QZEColorSlider::Bstar:
        writeLab(2, (position - 0.5f) * QZEColor::s_LabRange);
        break;
    default:
        break;
    }
}

void QZEColorDialog::writeLab(int component, float value)
{
    float lab[3];
    labOf(_color, lab);
    lab[component] = value;
    _color = fromLab(lab);
}

void QZEColorDialog::editComponent(Mode mode, float position)
{
    writeComponent(mode, position);
    finishEdit();
}

void QZEColorDialog::editLab(int component, float value)
{
    writeLab(component, value);
    finishEdit();
}

void QZEColorDialog::finishEdit()
{
    updateSlider();
    updateLineEdits();
    emit colorChanged(getColor());
}

void QZEColorDialog::hueSliderChanged(float value) { editComponent(QZEColorSlider::Hue, value); }
void QZEColorDialog::saturationSliderChanged(float value) { editComponent(QZEColorSlider::Saturation, value); }
void QZEColorDialog::valueSliderChanged(float value) { editComponent(QZEColorSlider::Value, value); }
void QZEColorDialog::redSliderChanged(float value) { editComponent(QZEColorSlider::Red, value); }
void QZEColorDialog::greenSliderChanged(float value) { editComponent(QZEColorSlider::Green, value); }
void QZEColorDialog::blueSliderChanged(float value) { editComponent(QZEColorSlider::Blue, value); }
void QZEColorDialog::lstarSliderChanged(float value) { editComponent(QZEColorSlider::Lstar, value); }
void QZEColorDialog::astarSliderChanged(float value) { editComponent(QZEColorSlider::Astar, value); }
void QZEColorDialog::bstarSliderChanged(float value) { editComponent(QZEColorSlider::Bstar, value); }

void QZEColorDialog::colorFieldSliderChanged(float value)
{
    editComponent(_gui->_colorFieldSlider->getMode(), value);
}

// The field gives display (encoded) colours in its HSV and RGB modes and
// linear ones in its L*a*b* modes. Decoding a display colour gives the same
// linear colour whether s_useGamma is set (setGammaRGB of its channels) or
// clear (the external form decoded).
void QZEColorDialog::colorFieldChanged(QZEColor color)
{
    _color = QZEColorField::isLabMode(_gui->_colorField->getMode()) ? color : decoded(color);
    finishEdit();
}

void QZEColorDialog::hueSpinerChanged(double entry)
{
    _color.h = clampedEntry(entry, 0.0f, HueEntryLimit);
    finishEdit();
}

void QZEColorDialog::saturationSpinerChanged(double entry)
{
    editComponent(QZEColorSlider::Saturation, clampedEntry(entry, 0.0f, 1.0f));
}

void QZEColorDialog::valueSpinerChanged(double entry)
{
    editComponent(QZEColorSlider::Value, clampedEntry(entry, 0.0f, 1.0f));
}

void QZEColorDialog::redSpinerChanged(double entry)
{
    editComponent(QZEColorSlider::Red, float(entry));
}

void QZEColorDialog::greenSpinerChanged(double entry)
{
    editComponent(QZEColorSlider::Green, float(entry));
}

void QZEColorDialog::blueSpinerChanged(double entry)
{
    editComponent(QZEColorSlider::Blue, float(entry));
}

void QZEColorDialog::lstarSpinerChanged(double entry) { editLab(0, float(entry)); }
void QZEColorDialog::astarSpinerChanged(double entry) { editLab(1, float(entry)); }
void QZEColorDialog::bstarSpinerChanged(double entry) { editLab(2, float(entry)); }

// --- Colour field modes ----------------------------------------------------------

void QZEColorDialog::setFieldMode(bool on, Mode mode)
{
    if (!on)
        return;
    QZEColorField* field = _gui->_colorField;
    QZEColorSlider* slider = _gui->_colorFieldSlider;
    {
        const QSignalBlocker fieldBlocker(field);
        const QSignalBlocker sliderBlocker(slider);
        if (field->getMode() != QZEColorField::Mode(mode))
            field->setMode(QZEColorField::Mode(mode));
        slider->setMode(mode);
        slider->update();
    }
    updateSlider();
    updateLineEdits();
}

void QZEColorDialog::setHueMode(bool on) { setFieldMode(on, QZEColorSlider::Hue); }
void QZEColorDialog::setSaturationMode(bool on) { setFieldMode(on, QZEColorSlider::Saturation); }
void QZEColorDialog::setValueMode(bool on) { setFieldMode(on, QZEColorSlider::Value); }
void QZEColorDialog::setRedMode(bool on) { setFieldMode(on, QZEColorSlider::Red); }
void QZEColorDialog::setGreenMode(bool on) { setFieldMode(on, QZEColorSlider::Green); }
void QZEColorDialog::setBlueMode(bool on) { setFieldMode(on, QZEColorSlider::Blue); }
void QZEColorDialog::setLstarMode(bool on) { setFieldMode(on, QZEColorSlider::Lstar); }
void QZEColorDialog::setAstarMode(bool on) { setFieldMode(on, QZEColorSlider::Astar); }
void QZEColorDialog::setBstarMode(bool on) { setFieldMode(on, QZEColorSlider::Bstar); }

// --- Refreshing the view -----------------------------------------------------------

void QZEColorDialog::updateSlider()
{
    float lab[3];
    labOf(_color, lab);
    for (const Channel& channel : channels())
        showOnSlider(channel.slider, channel.mode, _color, lab);
    showOnColorField(lab);
    showOnSwatch(_gui->_current_color, _color);
    setColorInfo(_color);
}

// The field already shows the colour it has just given: written back, it
// would move the field's fixed component in the last float bits and make it
// compute its whole plane again.
bool QZEColorDialog::colorFieldHoldsCurrentColor() const
{
    const QZEColorField* field = _gui->_colorField;
    const QZEColor held = field->getColor();
    return (QZEColorField::isLabMode(field->getMode()) ? held : decoded(held)) == _color;
}

void QZEColorDialog::showOnColorField(const float lab[3])
{
    QZEColorField* field = _gui->_colorField;
    const Mode mode = _gui->_colorFieldSlider->getMode();
    if (!colorFieldHoldsCurrentColor()) {
        const QSignalBlocker blocker(field);
        if (isLabMode(mode)) {
            field->setLab(lab[0], lab[1], lab[2]);
        } else if (mode == QZEColorSlider::Hue && _color.s == 0.0f) {
            field->setHue(_color.h); // a grey keeps the plane the field shows
        } else {
            float r, g, b;
            _color.getGammaRGB(r, g, b);
            field->setRGB(r, g, b);
        }
    }
    showOnSlider(_gui->_colorFieldSlider, mode, _color, lab);
}

void QZEColorDialog::updateLineEdits()
{
    for (const Channel& channel : channels()) {
        const QSignalBlocker blocker(channel.spiner);
        channel.spiner->setValue(double(channel.slider->getRealValue()));
    }
}

void QZEColorDialog::setColorInfo(const QZEColor& color)
{
    float rgb[3];
    if (QZEColor::s_useGamma)
        color.getRGB(rgb[0], rgb[1], rgb[2]);
    else
        color.getGammaRGB(rgb[0], rgb[1], rgb[2]);
    float lab[3];
    labOf(_color, lab);
    _gui->_r_label->setText(labelText(tr("R: "), rgb[0], 4));
    _gui->_g_label->setText(labelText(tr("G: "), rgb[1], 4));
    _gui->_b_label->setText(labelText(tr("B: "), rgb[2], 4));
    _gui->_h_label->setText(labelText(tr("H: "), color.h, 4));
    _gui->_s_label->setText(labelText(tr("S: "), color.s, 4));
    _gui->_v_label->setText(labelText(tr("V: "), color.v, 4));
    _gui->_Lstar_label->setText(labelText(tr("L*: "), lab[0], 3));
    _gui->_astar_label->setText(labelText(tr("a*: "), lab[1], 3));
    _gui->_bstar_label->setText(labelText(tr("b*: "), lab[2], 3));
}

// A swatch shows the 8-bit form of a colour: channels clamped to 0..1 and
// truncated.
void QZEColorDialog::showOnSwatch(QZEColorButton* swatch, const QZEColor& color)
{
    const QSignalBlocker blocker(swatch);
    swatch->setColor(QZEColor(color.getQColor()));
}

// --- sRGB switch, custom colours, previous colour, tabs --------------------------

void QZEColorDialog::setUseGamma(bool on)
{
    QZEColor::s_useGamma = on;
    {
        const QSignalBlocker blocker(_gui->_useGamma);
        _gui->_useGamma->setChecked(on);
    }
    refreshAfterGammaChange();
}

void QZEColorDialog::setGammaValue(double gamma)
{
    if (float(gamma) == QZEColor::s_gamma)
        return;
    QZEColor::s_gamma = float(gamma);
    refreshAfterGammaChange();
}

void QZEColorDialog::refreshAfterGammaChange()
{
    setColorInfo(_color);
    update();
    updateSlider();
    updateLineEdits();
    emit colorChanged(getColor());
    showOnSwatch(_gui->_previous_color, _previousColor);
}

void QZEColorDialog::addCustomColor()
{
    _gui->_custom_colors->addColor(_color);
}

void QZEColorDialog::getCustomColor(int index)
{
    if (_gui->_custom_colors->isFreeCell(index))
        return;
    _color = _gui->_custom_colors->getColor(index);
    finishEdit();
}

void QZEColorDialog::restorePreviousColor()
{
    std::fputs("Called Restore Previous Color\n", stdout);
    std::fflush(stdout);
    _color = _previousColor;
    finishEdit();
}

void QZEColorDialog::tabChanged(int index)
{
    if (index == SpectrumTab)
        updateSpectrumTab(true);
    else if (index == ColorTab)
        updateGUI();
}

// --- Spectrum tab: wired by the spectrum editing, inert until then ----------------

void QZEColorDialog::setUseSpectrum(bool) {}
void QZEColorDialog::saveSpectrumButtonClicked() {}
void QZEColorDialog::loadSpectrumLineChanged() {}
void QZEColorDialog::loadSpectrumButtonClicked() {}
void QZEColorDialog::addSpectrumButtonClicked() {}
void QZEColorDialog::loadSpectrumFile(char*) {}
void QZEColorDialog::addSpectrumFile(char*) {}
void QZEColorDialog::rejectSpectrum() {}
void QZEColorDialog::setUniformMode(bool) {}
void QZEColorDialog::setNonUniformMode(bool) {}
void QZEColorDialog::updateSpectrum() {}
void QZEColorDialog::resetSpectrum() {}
void QZEColorDialog::setSamplingPreset(int) {}
void QZEColorDialog::resampleSpectrum() {}
void QZEColorDialog::setAnalyticFunction() {}
void QZEColorDialog::addAnalyticFunction() {}
void QZEColorDialog::analyticFunctionChanged(int) {}
void QZEColorDialog::rgbSpectrumSliderChanged(float) {}
void QZEColorDialog::scaleSpectrumSliderChanged(float) {}
void QZEColorDialog::toggleSamplingEditor(bool) {}
void QZEColorDialog::initSpectrum(const osg::SpectrumPtr&, float, bool) {}
void QZEColorDialog::setSpectrumInfo(QZEColor) {}
void QZEColorDialog::updateSpectrumTab(bool) {}

// --- Screen pipette --------------------------------------------------------------

void QZEColorDialog::toggleColorPipette(bool enable)
{
    if (!enable)
        stopPicking();
    else if (QZEScreenPicker::availableMethod() == QZEScreenPicker::Method::Screen)
        startScreenPicking();
    else if (QZEScreenPicker::availableMethod() == QZEScreenPicker::Method::Portal)
        startPortalPicking();
    else
        enable = false;
    const QSignalBlocker blocker(_gui->_pick_color);
    _gui->_pick_color->setChecked(enable);
}

// The catcher is shown before it grabs, so that the grabs reach the window
// system and not only the application.
void QZEColorDialog::startScreenPicking()
{
    _pipetteTimer->start(PipetteInterval);
    _pipetteCatcher.setMouseTracking(true);
    _pipetteCatcher.installEventFilter(this);
    _pipetteCatcher.setWindowOpacity(CatcherOpacity);
    _pipetteCatcher.setCursor(QZEScreenPicker::pipetteCursor());
    _pipetteCatcher.show();
    _pipetteCatcher.grabKeyboard();
    _pipetteCatcher.grabMouse();
}

void QZEColorDialog::startPortalPicking()
{
    if (_portalPicker)
        return; // a pick is already on its way
    _portalPicker = new QZEScreenPicker(this);
    connect(_portalPicker, &QZEScreenPicker::colorPicked, this, &QZEColorDialog::takePortalColor);
    connect(_portalPicker, &QZEScreenPicker::pickCancelled, this,
            [this] { toggleColorPipette(false); });
    _portalPicker->pickThroughPortal(window());
}

// Also drops a portal pick still on its way, so that its answer goes nowhere.
void QZEColorDialog::stopPicking()
{
    _pipetteCatcher.releaseMouse();
    _pipetteCatcher.setMouseTracking(false);
    _pipetteCatcher.removeEventFilter(this);
    _pipetteTimer->stop();
    _pipetteCatcher.hide();
    _pipetteCatcher.releaseKeyboard();
    if (_portalPicker) {
        _portalPicker->disconnect(this);
        _portalPicker->deleteLater();
        _portalPicker = nullptr;
    }
}

void QZEColorDialog::takePortalColor(const QColor& pixel)
{
    setColor(fromScreenColor(pixel));
    toggleColorPipette(false);
}

void QZEColorDialog::preGrabScreenColor()
{
    const QPoint position = QCursor::pos();
    if (position == lastPipettePosition)
        return;
    lastPipettePosition = position;
    if (!isOverDialog(position))
        _pipetteCatcher.move(position - QPoint(CatcherSize / 2, CatcherSize / 2));
}

bool QZEColorDialog::isOverDialog(const QPoint& globalPosition) const
{
    return frameGeometry().contains(globalPosition);
}

bool QZEColorDialog::eventFilter(QObject* object, QEvent* event)
{
    if (object != &_pipetteCatcher)
        return QDialog::eventFilter(object, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseMove:
    case QEvent::ToolTip:
        return true;
    case QEvent::MouseButtonRelease: {
        const auto* release = static_cast<QMouseEvent*>(event);
        if (release->button() == Qt::LeftButton && !isOverDialog(release->screenPos().toPoint()))
            pickUnderCursor();
        toggleColorPipette(false);
        return true;
    }
    case QEvent::KeyPress:
        toggleColorPipette(false);
        return true;
    default:
        return QDialog::eventFilter(object, event);
    }
}

// The catcher must not be in the pixel read. Opacity 0 takes it out where a
// compositing manager blends windows; without one the window still covers
// the screen, so it is also hidden, and the windows beneath get a moment to
// repaint what it covered: ours through the pending events, those of other
// programs in their own time.
void QZEColorDialog::pickUnderCursor()
{
    _pipetteCatcher.setWindowOpacity(0.0);
    _pipetteCatcher.hide();
    QElapsedTimer settling;
    settling.start();
    do {
        QApplication::processEvents(QEventLoop::AllEvents, ScreenSettleTime);
        QThread::msleep(1);
    } while (settling.elapsed() < ScreenSettleTime);
    setColor(grabScreenColor(QCursor::pos()));
}

QZEColor QZEColorDialog::grabScreenColor(const QPoint& position)
{
    return fromScreenColor(QZEScreenPicker::pixelAt(position));
}

// A screen pixel is sRGB-encoded: with s_useGamma set it is decoded to the
// linear colour the dialog then takes as it is; with it clear it stays
// encoded, which is the form setColor() then decodes.
QZEColor QZEColorDialog::fromScreenColor(const QColor& pixel)
{
    QZEColor color;
    if (QZEColor::s_useGamma)
        color.setGammaRGB(float(pixel.red()) / 255.0f, float(pixel.green()) / 255.0f,
                          float(pixel.blue()) / 255.0f);
    else
        color.setColor(pixel);
    return color;
}
