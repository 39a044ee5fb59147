#include "QZEColorDialog.h"

#include "QZEColorArray.h"
#include "QZEColorButton.h"
#include "QZEColorField.h"
#include "QZEDoubleSpiner.h"
#include "QZEScreenPicker.h"
#include "QZEQtCompat.h"
#include "QZESpectrumPlot.h"
#include "osgChangeList.h"
#include "osgPThreadBase.h"
#include "zeFile.h"
#include "zeIconManager.h"
#include "zePlatform.h"

#include "ui_QZEColorDialogGUI.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCursor>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QIcon>
#include <QMessageBox>
#include <QMouseEvent>
#include <QResizeEvent>
#include <QSignalBlocker>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <climits>
#include <initializer_list>
#include <cstdio>
#include <utility>

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
constexpr int ButtonMargin = 2; // a file button is its icon plus this each way
constexpr int DefaultPreset = 0;
constexpr int UniformSampling = 1;
constexpr int NonUniformSampling = 2;
constexpr int DaylightFunction = 1; // analytic functions up to this one take a temperature
constexpr float MinimumScale = 0.01f;
constexpr int SpectrumInfoDecimals = 4;

// The luminance of linear RGB under the equal-energy white.
constexpr float LuminanceRed = 0.22285376f;
constexpr float LuminanceGreen = 0.70867276f;
constexpr float LuminanceBlue = 0.06847366f;

// The fields an edit of the spectrum writes: its values (and the bands made
// from them), or also its sampling, or everything a copy brings.
constexpr osg::BitVector ValueFields =
    osg::Spectrum::SourceValuesFieldMask | osg::Spectrum::SamplesFieldMask;
constexpr osg::BitVector SamplingFields =
    ValueFields | osg::Spectrum::VersionIDFieldMask | osg::Spectrum::StartWavelengthFieldMask
    | osg::Spectrum::DeltaWavelengthFieldMask | osg::Spectrum::NumSamplesFieldMask
    | osg::Spectrum::WavelengthsFieldMask;
constexpr osg::BitVector AllFields =
    SamplingFields | osg::Spectrum::UseSpectrumFieldMask | osg::Spectrum::FileNameFieldMask;

// One signal of a control to one slot of the dialog, by string signatures.
struct Wire
{
    QObject* sender;
    const char* signal;
    const char* slot;
};

void connectAll(QObject* receiver, std::initializer_list<Wire> wires)
{
    for (const Wire& wire : wires)
        QObject::connect(wire.sender, wire.signal, receiver, wire.slot);
}

QZEColorDialog::SpectrumPathChooser spectrumPathChooser = nullptr;

QString askWithFileDialog(QWidget* parent, const QString& caption, const QString& directory,
                          const QString& filter, bool forSaving)
{
    return forSaving ? QFileDialog::getSaveFileName(parent, caption, directory, filter)
                     : QFileDialog::getOpenFileName(parent, caption, directory, filter);
}

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

// Fills the nine output labels R, G, B, H, S, V, L*, a*, b* of a tab; red,
// green and blue encoded unless s_useGamma is set.
void showColorInfo(const std::array<QLabel*, 9>& labels, const QZEColor& color,
                   const float lab[3], int labDecimals)
{
    float rgb[3];
    if (QZEColor::s_useGamma)
        color.getRGB(rgb[0], rgb[1], rgb[2]);
    else
        color.getGammaRGB(rgb[0], rgb[1], rgb[2]);
    const float values[9] = {rgb[0], rgb[1], rgb[2], color.h, color.s, color.v,
                             lab[0], lab[1], lab[2]};
    const QString prefixes[9] = {
        QZEColorDialog::tr("R: "), QZEColorDialog::tr("G: "), QZEColorDialog::tr("B: "),
        QZEColorDialog::tr("H: "), QZEColorDialog::tr("S: "), QZEColorDialog::tr("V: "),
        QZEColorDialog::tr("L*: "), QZEColorDialog::tr("a*: "), QZEColorDialog::tr("b*: "),
    };
    for (size_t i = 0; i < labels.size(); ++i)
        labels[i]->setText(labelText(prefixes[i], values[i], i < 6 ? 4 : labDecimals));
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

bool QZEColorDialog::_samplingEditorEnabled = false;

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
    setUpSpectrumTab();

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
    connectAll(this, {
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
    });
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
    float lab[3];
    labOf(_color, lab);
    showColorInfo({_gui->_r_label, _gui->_g_label, _gui->_b_label, _gui->_h_label, _gui->_s_label,
                   _gui->_v_label, _gui->_Lstar_label, _gui->_astar_label, _gui->_bstar_label},
                  color, lab, 3);
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

// --- Spectrum tab: construction ------------------------------------------------------

void QZEColorDialog::setUpSpectrumTab()
{
    connectSpectrumControls();
    setUpFileButtons();
    setUpSpectrumSliders();
    {
        const QSignalBlocker blocker(_gui->_analytic_function);
        _gui->_analytic_function->setCurrentIndex(DaylightFunction);
    }
    setUpSamplingPresets();
    analyticFunctionChanged(DaylightFunction);
}

void QZEColorDialog::connectSpectrumControls()
{
    connectAll(this, {
        {_gui->_spectrum_input_group, SIGNAL(toggled(bool)), SLOT(setUseSpectrum(bool))},
        {_gui->_load_spectrum_line, SIGNAL(returnPressed()), SLOT(loadSpectrumLineChanged())},
        {_gui->_load_spectrum_button, SIGNAL(clicked()), SLOT(loadSpectrumButtonClicked())},
        {_gui->_add_spectrum_button, SIGNAL(clicked()), SLOT(addSpectrumButtonClicked())},
        {_gui->_save_spectrum_button, SIGNAL(clicked()), SLOT(saveSpectrumButtonClicked())},
        {_gui->_redSlider_s, SIGNAL(valueChanged(float)), SLOT(rgbSpectrumSliderChanged(float))},
        {_gui->_greenSlider_s, SIGNAL(valueChanged(float)), SLOT(rgbSpectrumSliderChanged(float))},
        {_gui->_blueSlider_s, SIGNAL(valueChanged(float)), SLOT(rgbSpectrumSliderChanged(float))},
        {_gui->_scaleSlider, SIGNAL(valueChanged(float)), SLOT(scaleSpectrumSliderChanged(float))},
        {_gui->_enableSamplingEditor, SIGNAL(toggled(bool)), SLOT(toggleSamplingEditor(bool))},
        {_gui->_samplingPresets, SIGNAL(activated(int)), SLOT(setSamplingPreset(int))},
        {_gui->_nonUniformSampling, SIGNAL(toggled(bool)), SLOT(setNonUniformMode(bool))},
        {_gui->_resampleSpectrum, SIGNAL(clicked()), SLOT(resampleSpectrum())},
        {_gui->_analytic_set, SIGNAL(clicked()), SLOT(setAnalyticFunction())},
        {_gui->_analytic_add, SIGNAL(clicked()), SLOT(addAnalyticFunction())},
        {_gui->_analytic_function, SIGNAL(currentIndexChanged(int)), SLOT(analyticFunctionChanged(int))},
        {_gui->_accept_s, SIGNAL(clicked()), SLOT(accept())},
        {_gui->_reject_s, SIGNAL(clicked()), SLOT(rejectSpectrum())},
    });
}

void QZEColorDialog::setUpFileButtons()
{
    const QSize iconSize(zePlatform::getMediumIconSizeX(), zePlatform::getMediumIconSizeY());
    const std::pair<QPushButton*, const char*> buttons[] = {
        {_gui->_load_spectrum_button, "FileOpen"},
        {_gui->_add_spectrum_button, "CreateNew"},
        {_gui->_save_spectrum_button, "Save"},
    };
    for (const auto& [button, icon] : buttons) {
        button->setIcon(zeIconManager::getIcon(QString::fromLatin1(icon)));
        button->setIconSize(iconSize);
        button->setFixedSize(iconSize + QSize(ButtonMargin, ButtonMargin));
    }
}

void QZEColorDialog::setUpSpectrumSliders()
{
    const QZEColor black(0.0f, 0.0f, 0.0f);
    const float lab[3] = {0.0f, 0.0f, 0.0f};
    const std::pair<QZEColorSlider*, Mode> primaries[] = {
        {_gui->_redSlider_s, QZEColorSlider::Red},
        {_gui->_greenSlider_s, QZEColorSlider::Green},
        {_gui->_blueSlider_s, QZEColorSlider::Blue},
    };
    for (const auto& [slider, mode] : primaries) {
        const QSignalBlocker blocker(slider);
        slider->setMode(mode);
        setGradient(slider, mode, black, lab);
    }
    const QSignalBlocker blocker(_gui->_scaleSlider);
    _gui->_scaleSlider->setMode(QZEColorSlider::Value);
    _gui->_scaleSlider->setMinColor(black);
    _gui->_scaleSlider->setMaxColor(QZEColor(0.0f, 0.0f, 1.0f));
}

void QZEColorDialog::setUpSamplingPresets()
{
    _samplingPresetList = {SamplingPreset(380, 5, 81), SamplingPreset(380, 10, 36),
                           SamplingPreset(375, 5, 72)};
    for (const SamplingPreset& preset : _samplingPresetList)
        _gui->_samplingPresets->addItem(preset.label);
    const QSignalBlocker blocker(_gui->_enableSamplingEditor);
    _gui->_enableSamplingEditor->setChecked(_samplingEditorEnabled);
}

QZEColorDialog::SpectrumPathChooser QZEColorDialog::setSpectrumPathChooser(SpectrumPathChooser chooser)
{
    return std::exchange(spectrumPathChooser, chooser);
}

// --- Spectrum tab: the edited spectrum -------------------------------------------------

void QZEColorDialog::initSpectrum(const osg::SpectrumPtr& spectrum, float maxValue, bool spectrumOnly)
{
    if (!spectrum)
        return;
    if (spectrum != _spectrum)
        _spectrum = spectrum;
    _gui->tabWidget->setTabEnabled(SpectrumTab, true);
    {
        // Making the group checkable checks it, which must not switch the
        // spectrum on: updateSpectrumTab() shows the flag as it is.
        const QSignalBlocker blocker(_gui->_spectrum_input_group);
        _gui->_spectrum_input_group->setCheckable(!spectrumOnly);
    }
    showSpectrumPlot(maxValue);
    if (!_backupSpectrum)
        _backupSpectrum = osg::Spectrum::create();
    _backupSpectrum->copy(_spectrum);
    if (!_spectrum->getSourceValues().empty())
        updateColorFromSpectrum(_spectrum);
    updateSpectrumTab(true);
}

// The plot edits the spectrum it was made for, so a dialog re-aimed at
// another spectrum gets a plot of that one in the same view.
void QZEColorDialog::showSpectrumPlot(float maxValue)
{
    QGraphicsView* view = _gui->_spectrumPlot;
    if (_plot && _plot->getSpectrum() != _spectrum) {
        view->setScene(nullptr);
        delete _plot;
        _plot = nullptr;
    }
    if (_plot) {
        _plot->setMaxValue(maxValue);
    } else {
        _plot = new QZESpectrumPlot(_spectrum, maxValue);
        _plot->setParent(this);
        view->setScene(_plot);
        connect(_plot, SIGNAL(update()), this, SLOT(updateSpectrum()));
    }
    view->show();
}

void QZEColorDialog::recordChange(osg::BitVector whichFields) const
{
    if (osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList())
        list->addChanged(_spectrum, whichFields);
}

void QZEColorDialog::updateColorFromSpectrum(const osg::SpectrumPtr& spectrum)
{
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    _color = QZEColor::fromRGB(rgb.r, rgb.g, rgb.b);
    emit colorChanged(getColor());
}

void QZEColorDialog::finishSpectrumEdit()
{
    _spectrum->resample();
    updateColorFromSpectrum(_spectrum);
    updateSpectrumTab(true);
}

void QZEColorDialog::updateSpectrum()
{
    if (!_spectrum)
        return;
    finishSpectrumEdit();
}

// An empty spectrum is built from the colour before its flag goes up: with
// the flag raised first, the spectrum's reset rule would turn it into ones.
void QZEColorDialog::setUseSpectrum(bool on)
{
    if (!on) {
        if (_spectrum) {
            recordChange(osg::Spectrum::UseSpectrumFieldMask);
            _spectrum->setUseSpectrum(false);
            updateSlider();
            updateLineEdits();
        }
        updateSpectrumTab(true);
        return;
    }
    if (!_spectrum)
        _spectrum = osg::Spectrum::create();
    if (_spectrum->getVersionID() != 0) {
        recordChange(osg::Spectrum::UseSpectrumFieldMask | ValueFields);
        _spectrum->setUseSpectrum(true);
    } else {
        recordChange(osg::Spectrum::UseSpectrumFieldMask | SamplingFields);
        float r, g, b;
        _color.getRGB(r, g, b);
        const SamplingPreset& preset = _samplingPresetList[DefaultPreset];
        _spectrum->setRGB(r, g, b, preset.start, preset.delta, preset.num);
        _spectrum->setUseSpectrum(true);
    }
    finishSpectrumEdit();
}

void QZEColorDialog::rgbSpectrumSliderChanged(float)
{
    if (!_spectrum)
        return;
    const float r = _gui->_redSlider_s->getValue();
    const float g = _gui->_greenSlider_s->getValue();
    const float b = _gui->_blueSlider_s->getValue();
    if (_spectrum->getVersionID() == NonUniformSampling) {
        const QSignalBlocker blocker(_gui->_samplingPresets);
        _gui->_samplingPresets->setCurrentIndex(DefaultPreset);
        setSamplingPreset(DefaultPreset);
    }
    recordChange(SamplingFields);
    _spectrum->setRGB(r, g, b, _gui->_startWavelength->value(), _gui->_deltaWavelength->value(),
                      _gui->_numSamples->value());
    _spectrum->resample();
    updateColorFromSpectrum(_spectrum);
    updateSpectrumTab(false);
}

// Scaling every value by one factor keeps the shape, hence the hue.
void QZEColorDialog::scaleSpectrumSliderChanged(float value)
{
    const float target = std::max(value, MinimumScale);
    if (!_spectrum || !_spectrum->isActive())
        return;
    const float largest = _spectrum->getMaxValue();
    if (!(largest > 0.0f))
        return;
    recordChange(ValueFields);
    for (float& sourceValue : _spectrum->editSourceValues())
        sourceValue *= target / largest;
    finishSpectrumEdit();
}

void QZEColorDialog::resetSpectrum()
{
    if (!_spectrum)
        return;
    float r, g, b;
    _color.getRGB(r, g, b);
    const float luminance = LuminanceRed * r + LuminanceGreen * g + LuminanceBlue * b;
    recordChange(SamplingFields);
    _spectrum->setOne();
    _spectrum->resample();
    _spectrum->setPhotometricValue(luminance);
    finishSpectrumEdit();
}

void QZEColorDialog::rejectSpectrum()
{
    if (_spectrum && _backupSpectrum) {
        recordChange(AllFields);
        _spectrum->copy(_backupSpectrum);
    }
    reject();
}

// --- Spectrum tab: analytic functions ------------------------------------------------------

// A black body and a daylight are given by their temperature, the others by
// their peak.
void QZEColorDialog::analyticFunctionChanged(int function)
{
    const bool byTemperature = function <= DaylightFunction;
    for (QWidget* peakControl : {static_cast<QWidget*>(_gui->label_analytic_peak_wavelength),
                                 static_cast<QWidget*>(_gui->_analytic_peak_wavelength),
                                 static_cast<QWidget*>(_gui->label_analytic_peak_intensity),
                                 static_cast<QWidget*>(_gui->_analytic_peak_intensity),
                                 static_cast<QWidget*>(_gui->label_analytic_fwhm),
                                 static_cast<QWidget*>(_gui->_analytic_fwhm)})
        peakControl->setVisible(!byTemperature);
    _gui->label_analytic_temperature->setVisible(byTemperature);
    _gui->_analytic_temperature->setVisible(byTemperature);
}

void QZEColorDialog::setAnalyticFunction() { runAnalyticFunction(true); }
void QZEColorDialog::addAnalyticFunction() { runAnalyticFunction(false); }

void QZEColorDialog::runAnalyticFunction(bool replace)
{
    if (!_spectrum)
        return;
    recordChange(osg::Spectrum::UseSpectrumFieldMask | SamplingFields);
    _spectrum->addAnalyticFunction(_gui->_analytic_function->currentIndex(),
                                   float(_gui->_analytic_peak_wavelength->value()),
                                   float(_gui->_analytic_peak_intensity->value()),
                                   float(_gui->_analytic_fwhm->value()),
                                   float(_gui->_analytic_temperature->value()), replace,
                                   _gui->_startWavelength->value(),
                                   _gui->_deltaWavelength->value(), _gui->_numSamples->value());
    finishSpectrumEdit();
}

// --- Spectrum tab: sampling editor ----------------------------------------------------------

void QZEColorDialog::toggleSamplingEditor(bool on)
{
    _samplingEditorEnabled = on;
    updateSpectrumTab(true);
}

void QZEColorDialog::setSamplingPreset(int index)
{
    if (!_spectrum || index < 0 || index >= int(_samplingPresetList.size()))
        return;
    const SamplingPreset& preset = _samplingPresetList[size_t(index)];
    const std::pair<QSpinBox*, int> entries[] = {
        {_gui->_startWavelength, preset.start},
        {_gui->_deltaWavelength, preset.delta},
        {_gui->_numSamples, preset.num},
    };
    for (const auto& [spinBox, value] : entries) {
        const QSignalBlocker blocker(spinBox);
        spinBox->setValue(value);
    }
}

void QZEColorDialog::setUniformMode(bool on)
{
    if (!on || !_spectrum)
        return;
    recordChange(osg::Spectrum::VersionIDFieldMask);
    setSamplingPreset(DefaultPreset);
    updateSpectrumTab(true);
}

void QZEColorDialog::setNonUniformMode(bool on)
{
    if (on) {
        if (!_spectrum)
            return;
        recordChange(osg::Spectrum::VersionIDFieldMask);
        updateSpectrumTab(true);
        return;
    }
    // Asked without blocking: the answer arrives through the button clicked.
    auto* box = new QMessageBox(
        QMessageBox::Warning, tr("Disable Non-Uniform Sampling"),
        tr("To disable non-uniform sampling, please select the preferred uniform sampling "
           "distribution and press \"Apply\".\nWarning! Your original sampling will be changed "
           "and non-uniform samples are lost!"),
        QMessageBox::NoButton, this);
    box->setObjectName(QStringLiteral("QZEColorDialogLeaveNonUniform"));
    box->setAttribute(Qt::WA_DeleteOnClose);
    const QAbstractButton* ok = box->addButton(tr("Ok"), QMessageBox::AcceptRole);
    box->addButton(tr("Cancel"), QMessageBox::RejectRole);
    connect(box, &QMessageBox::buttonClicked, this,
            [this, ok](QAbstractButton* button) { leaveNonUniformSampling(button == ok); });
    box->open();
}

// The new uniform sampling takes effect with "Apply", so after "Ok" the
// sampling controls must be usable.
void QZEColorDialog::leaveNonUniformSampling(bool confirmed)
{
    if (!confirmed) {
        const QSignalBlocker blocker(_gui->_nonUniformSampling);
        _gui->_nonUniformSampling->setChecked(true);
        return;
    }
    setSamplingPreset(DefaultPreset);
    enableSamplingControls();
}

void QZEColorDialog::resampleSpectrum()
{
    if (!_spectrum)
        return;
    const int start = _gui->_startWavelength->value();
    const int delta = _gui->_deltaWavelength->value();
    const int num = _gui->_numSamples->value();
    recordChange(SamplingFields);
    if (!_spectrum->getSourceValues().empty()) {
        _spectrum->resampleSource(start, delta, num);
        _spectrum->setVersionID(_gui->_nonUniformSampling->isChecked() ? NonUniformSampling
                                                                         : UniformSampling);
    } else {
        _spectrum->set(0.0f, start, delta, num);
    }
    finishSpectrumEdit();
}

bool QZEColorDialog::samplingIsUniform() const
{
    return !(_spectrum->getVersionID() == NonUniformSampling
             && _gui->_nonUniformSampling->isChecked());
}

void QZEColorDialog::enableSamplingControls()
{
    const bool editable = _gui->_enableSamplingEditor->isChecked() && samplingIsUniform();
    for (QWidget* control : {static_cast<QWidget*>(_gui->_startWavelength),
                             static_cast<QWidget*>(_gui->_deltaWavelength),
                             static_cast<QWidget*>(_gui->_numSamples),
                             static_cast<QWidget*>(_gui->_resampleSpectrum)})
        control->setEnabled(editable);
}

// --- Spectrum tab: files ---------------------------------------------------------------------

QString QZEColorDialog::chooseSpectrumPath(const QString& caption, const QString& directory,
                                           const QString& filter, bool forSaving)
{
    const SpectrumPathChooser chooser = spectrumPathChooser ? spectrumPathChooser : askWithFileDialog;
    return chooser(this, caption, directory, filter, forSaving);
}

void QZEColorDialog::loadSpectrumButtonClicked()
{
    readChosenSpectrumFile(tr("Load Spectrum File"), &QZEColorDialog::loadSpectrumFile);
}

void QZEColorDialog::addSpectrumButtonClicked()
{
    readChosenSpectrumFile(tr("Add Spectrum File"), &QZEColorDialog::addSpectrumFile);
}

void QZEColorDialog::readChosenSpectrumFile(const QString& caption, void (QZEColorDialog::*read)(char*))
{
    if (!_spectrum)
        return;
    const QString path = chooseSpectrumPath(caption, _gui->_load_spectrum_line->text(),
                                            tr("Spectrum File (*.spectral *.txt)"), false);
    if (path.isEmpty())
        return;
    QByteArray utf8 = path.toUtf8();
    (this->*read)(utf8.data());
    updateSpectrumTab(true);
}

void QZEColorDialog::loadSpectrumLineChanged()
{
    QByteArray utf8 = _gui->_load_spectrum_line->text().toUtf8();
    loadSpectrumFile(utf8.data());
    updateSpectrumTab(true);
}

// A spectrum read into a fresh container, so that a failed read leaves the
// edited one as it was; null when the path or the file is refused.
osg::SpectrumPtr QZEColorDialog::readSpectrumFile(const char* path) const
{
    if (!_spectrum || !path || !*path || !zeFile::checkRead(path))
        return osg::SpectrumPtr();
    osg::SpectrumPtr loaded = osg::Spectrum::create();
    return loaded->load(path) ? loaded : osg::SpectrumPtr();
}

void QZEColorDialog::loadSpectrumFile(char* path)
{
    const osg::SpectrumPtr loaded = readSpectrumFile(path);
    if (!loaded)
        return;
    recordChange(AllFields);
    _spectrum->copy(loaded);
    _spectrum->resample();
    updateColorFromSpectrum(_spectrum);
}

void QZEColorDialog::addSpectrumFile(char* path)
{
    const osg::SpectrumPtr loaded = readSpectrumFile(path);
    if (!loaded)
        return;
    recordChange(AllFields);
    _spectrum->add(loaded);
    _spectrum->resample();
    updateColorFromSpectrum(_spectrum);
}

void QZEColorDialog::saveSpectrumButtonClicked()
{
    if (!_spectrum)
        return;
    const QString name = chooseSpectrumPath(tr("Save Spectrum File"),
                                            QString::fromStdString(_spectrum->getFileName()),
                                            tr("Spectrum File (*.spectral)"), true);
    if (name.isEmpty() || !zeFile::checkWrite(name))
        return;
    if (_spectrum->save(name.toUtf8().constData()))
        updateSpectrumTab(true);
}

// --- Spectrum tab: refreshing the view ---------------------------------------------------------

void QZEColorDialog::updateSpectrumTab(bool updateRGB)
{
    if (!_spectrum)
        return;
    const bool useSpectrum = _spectrum->getUseSpectrum();
    _gui->tabWidget->setTabEnabled(ColorTab, !useSpectrum);
    _gui->_spectrumPlot->setEnabled(useSpectrum);
    setSpectrumInfo(_color);
    {
        const QSignalBlocker blocker(_gui->_spectrum_input_group);
        _gui->_spectrum_input_group->setChecked(useSpectrum);
    }
    showOnSwatch(_gui->_current_color_s, _color);
    showOnSwatch(_gui->_previous_color_s, _previousColor);
    if (_spectrum->getVersionID() == 0)
        return;
    {
        const QSignalBlocker blocker(_gui->_load_spectrum_line);
        _gui->_load_spectrum_line->setText(QString::fromStdString(_spectrum->getFileName()));
    }
    showSpectrumSliders(updateRGB);
    if (_spectrum->getVersionID() == NonUniformSampling) {
        const QSignalBlocker blocker(_gui->_nonUniformSampling);
        _gui->_nonUniformSampling->setChecked(true);
    }
    showSampling();
    if (_plot && _gui->tabWidget->currentIndex() == SpectrumTab) {
        QGraphicsView* view = _gui->_spectrumPlot;
        view->setSceneRect(0.0, 0.0, view->width(), view->height());
        // Moves the plot's items where only the values changed, as in a
        // slider drag, instead of rebuilding the scene at every step.
        _plot->redraw(float(view->width()), float(view->height()));
    }
}

// The labels beside the sliders show the slider values, and the scale's the
// largest source value itself, which its slider may not reach.
void QZEColorDialog::showSpectrumSliders(bool updateRGB)
{
    float rgb[3];
    _color.getRGB(rgb[0], rgb[1], rgb[2]);
    const std::pair<QZEColorSlider*, QLabel*> primaries[] = {
        {_gui->_redSlider_s, _gui->_spectrumRed},
        {_gui->_greenSlider_s, _gui->_spectrumGreen},
        {_gui->_blueSlider_s, _gui->_spectrumBlue},
    };
    for (size_t i = 0; i < 3; ++i) {
        QZEColorSlider* slider = primaries[i].first;
        if (updateRGB) {
            const QSignalBlocker blocker(slider);
            slider->setValue(rgb[i], false);
        }
        primaries[i].second->setText(QString::number(double(slider->getValue()), 'f', 3));
    }
    const float largest = _spectrum->isActive() ? _spectrum->getMaxValue() : 0.0f;
    {
        const QSignalBlocker blocker(_gui->_scaleSlider);
        _gui->_scaleSlider->setValue(largest, false);
    }
    _gui->_spectrumScale->setText(QString::number(double(largest), 'f', 3));
}

void QZEColorDialog::showSampling()
{
    const std::pair<QSpinBox*, int> entries[] = {
        {_gui->_startWavelength, _spectrum->getStartWavelength()},
        {_gui->_deltaWavelength, _spectrum->getDeltaWavelength()},
        {_gui->_numSamples, _spectrum->getNumSamples()},
    };
    for (const auto& [spinBox, value] : entries) {
        const QSignalBlocker blocker(spinBox);
        spinBox->setValue(value);
    }
    enableSamplingControls();
}

void QZEColorDialog::setSpectrumInfo(QZEColor color)
{
    float lab[3];
    labOf(color, lab);
    showColorInfo({_gui->_r_label_s, _gui->_g_label_s, _gui->_b_label_s, _gui->_h_label_s,
                   _gui->_s_label_s, _gui->_v_label_s, _gui->_Lstar_label_s, _gui->_astar_label_s,
                   _gui->_bstar_label_s},
                  color, lab, SpectrumInfoDecimals);
    float r, g, b;
    color.getRGB(r, g, b);
    const float x = 0.4384958f * r + 0.3921402f * g + 0.16936402f * b;
    const float y = LuminanceRed * r + LuminanceGreen * g + LuminanceBlue * b;
    const float z = 0.01732081f * r + 0.11046009f * g + 0.8722191f * b;
    _gui->_X_label_s->setText(labelText(tr("X: "), x, SpectrumInfoDecimals));
    _gui->_Y_label_s->setText(labelText(tr("Y: "), y, SpectrumInfoDecimals));
    _gui->_Z_label_s->setText(labelText(tr("Z: "), z, SpectrumInfoDecimals));
}

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
        if (release->button() == Qt::LeftButton && !isOverDialog(QZEQtCompat::globalPosition(*release).toPoint()))
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
