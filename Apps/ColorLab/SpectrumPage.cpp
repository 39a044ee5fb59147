#include "SpectrumPage.h"

#include "PageParts.h"
#include "QZEAnalyticSpectrum.h"
#include "QZESpectrumPlot.h"
#include "zePlatform.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QDir>
#include <QDoubleSpinBox>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QFrame>
#include <QGraphicsView>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

// The default sampling of the colour dialog: 380 to 780 nm in 5 nm steps.
constexpr int GridStart = 380;
constexpr int GridDelta = 5;
constexpr int GridNum = 81;
constexpr float D65Temperature = 6504.0f;
constexpr int NonUniformVersion = 2;

// A warm orange, the same as the sliders page starts with.
const QZEColor InitialSmitsColor(20.0f, 0.9f, 0.75f);

// A round value axis a fifth above the spectrum's largest value.
double fittingMaximum(float largest)
{
    if (!(largest > 0.0f))
        return 1.0;
    return std::ceil(double(largest) * 1.2 * 10.0) / 10.0;
}

QPushButton* button(const QString& text)
{
    auto* pushButton = new QPushButton(text);
    pushButton->setAutoDefault(false);
    return pushButton;
}

} // namespace

using PageParts::number;

SpectrumPage::SpectrumPage(QWidget* parent)
    : QWidget(parent), _spectrum(osg::Spectrum::create()), _smitsColor(InitialSmitsColor),
      _directory(QDir::homePath())
{
    _plot = new QZESpectrumPlot(_spectrum, 1.0f);
    _plot->setParent(this); // the page owns its scene
    // The plot reports the end of every edit; rebuilding in there is what the
    // colour dialog does too.
    connect(_plot, qOverload<>(&QZESpectrumPlot::update), this, [this] {
        rebuildPlot();
        showSpectrumColor();
    });
    // Painting and dragging only move the curve and dots; the scene reports
    // each such change once control is back in the event loop.
    connect(_plot, &QGraphicsScene::changed, this, [this] { showSpectrumColor(); });

    auto* controls = new QVBoxLayout;
    controls->addWidget(createSpectrumBox());
    controls->addWidget(createFileBox());
    controls->addWidget(createColorBox());
    controls->addStretch(1);

    auto* layout = new QHBoxLayout(this);
    layout->addWidget(createPlotView(), 1);
    layout->addLayout(controls);

    showDaylight();
}

QColor SpectrumPage::swatchColor() const
{
    return _swatch->palette().color(QPalette::Window);
}

QWidget* SpectrumPage::createPlotView()
{
    auto* box = new QWidget;
    auto* column = new QVBoxLayout(box);
    column->setContentsMargins(0, 0, 0, 0);
    _view = new QGraphicsView(_plot);
    _view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _view->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _view->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    _view->setMinimumSize(zePlatform::getMediumIconSizeX() * 8, zePlatform::getMediumIconSizeY() * 5);
    _view->viewport()->installEventFilter(this);
    column->addWidget(_view, 1);
    auto* hint = new QLabel(tr("Press and drag on the empty plot to paint values. Drag a dot to "
                               "change one sample, and with non-uniform sampling its wavelength."));
    hint->setWordWrap(true);
    column->addWidget(hint);
    return box;
}

QWidget* SpectrumPage::createSpectrumBox()
{
    auto* box = new QGroupBox(tr("Spectrum"));
    auto* form = new QFormLayout(box);

    QPushButton* daylight = button(tr("Daylight D65"));
    connect(daylight, &QPushButton::clicked, this, &SpectrumPage::showDaylight);
    form->addRow(daylight);
    QPushButton* smits = button(tr("Smits spectrum of a colour..."));
    connect(smits, &QPushButton::clicked, this, &SpectrumPage::chooseColor);
    form->addRow(smits);

    _nonUniform = new QCheckBox(tr("Non-uniform sampling"));
    _nonUniform->setToolTip(tr("Dragged dots move in wavelength too, never past their neighbours."));
    connect(_nonUniform, &QCheckBox::toggled, this, &SpectrumPage::setNonUniform);
    form->addRow(_nonUniform);

    _maxValue = new QDoubleSpinBox;
    _maxValue->setDecimals(1);
    _maxValue->setRange(0.1, 100000.0);
    _maxValue->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
    connect(_maxValue, qOverload<double>(&QDoubleSpinBox::valueChanged), this,
            &SpectrumPage::setMaxValue);
    form->addRow(tr("Top of the value axis"), _maxValue);
    return box;
}

QWidget* SpectrumPage::createFileBox()
{
    auto* box = new QGroupBox(tr("File"));
    auto* column = new QVBoxLayout(box);
    auto* row = new QHBoxLayout;
    QPushButton* load = button(tr("Load..."));
    connect(load, &QPushButton::clicked, this, &SpectrumPage::chooseFileToLoad);
    QPushButton* save = button(tr("Save..."));
    connect(save, &QPushButton::clicked, this, &SpectrumPage::chooseFileToSave);
    row->addWidget(load);
    row->addWidget(save);
    column->addLayout(row);
    _status = new QLabel;
    _status->setWordWrap(true);
    column->addWidget(_status);
    return box;
}

QWidget* SpectrumPage::createColorBox()
{
    auto* box = new QGroupBox(tr("Colour of the spectrum"));
    auto* column = new QVBoxLayout(box);
    _swatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 4, zePlatform::getMediumIconSizeY() * 2));
    column->addWidget(_swatch);
    _rgb = new QLabel;
    _rgb->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column->addWidget(_rgb);
    return box;
}

// --- Spectra -----------------------------------------------------------------

void SpectrumPage::showDaylight()
{
    _spectrum->addAnalyticFunction(QZEAnalyticSpectrum::CIEDaylight, 0.0f, 0.0f, 0.0f,
                                   D65Temperature, true, GridStart, GridDelta, GridNum);
    spectrumReplaced();
    showStatus(tr("CIE daylight D65, %1 to %2 nm in %3 nm steps.")
                   .arg(GridStart)
                   .arg(GridStart + GridDelta * (GridNum - 1))
                   .arg(GridDelta));
}

void SpectrumPage::showSmitsSpectrumOf(const QZEColor& color)
{
    float r, g, b;
    color.getRGB(r, g, b);
    _spectrum->setRGB(r, g, b, GridStart, GridDelta, GridNum);
    _smitsColor = color;
    spectrumReplaced();
    showStatus(tr("Smits spectrum of linear RGB %1, %2, %3.").arg(number(r), number(g), number(b)));
}

void SpectrumPage::chooseColor()
{
    float r, g, b;
    _smitsColor.getGammaRGB(r, g, b);
    const QColor chosen = QColorDialog::getColor(QColor::fromRgbF(qBound(0.0f, r, 1.0f),
                                                                  qBound(0.0f, g, 1.0f),
                                                                  qBound(0.0f, b, 1.0f)),
                                                 this, tr("Colour for the Smits spectrum"));
    if (!chosen.isValid())
        return;
    QZEColor color;
    color.setGammaRGB(float(chosen.redF()), float(chosen.greenF()), float(chosen.blueF()));
    showSmitsSpectrumOf(color);
}

// Non-uniform sampling keeps the samples where they are and lets dots move
// sideways; back on the grid the spectrum is resampled to 380, 5, 81.
void SpectrumPage::setNonUniform(bool on)
{
    if (on)
        _spectrum->setVersionID(NonUniformVersion);
    else
        _spectrum->resampleSource(GridStart, GridDelta, GridNum);
    _spectrum->resample();
    showSampling();
    rebuildPlot();
    showSpectrumColor();
}

void SpectrumPage::setMaxValue(double value)
{
    {
        const QSignalBlocker blocker(_maxValue);
        _maxValue->setValue(value);
    }
    _plot->setMaxValue(float(value));
    rebuildPlot();
}

void SpectrumPage::spectrumReplaced()
{
    _spectrum->resample();
    showSampling();
    setMaxValue(fittingMaximum(_spectrum->getMaxValue()));
    showSpectrumColor();
}

// --- Files -------------------------------------------------------------------

bool SpectrumPage::loadSpectrumFile(const QString& path)
{
    const QString shown = QDir::toNativeSeparators(path);
    const osg::SpectrumPtr loaded = osg::Spectrum::create();
    if (path.isEmpty() || !loaded->load(path.toUtf8().constData())) {
        showStatus(tr("Could not load %1; the spectrum is unchanged.").arg(shown));
        return false;
    }
    _spectrum->copy(loaded);
    _directory = QFileInfo(path).absolutePath();
    spectrumReplaced();
    showStatus(tr("Loaded %1.").arg(shown));
    return true;
}

bool SpectrumPage::saveSpectrumFile(const QString& path)
{
    const QString shown = QDir::toNativeSeparators(path);
    if (path.isEmpty() || !_spectrum->save(path.toUtf8().constData())) {
        showStatus(tr("Could not save %1.").arg(shown));
        return false;
    }
    _directory = QFileInfo(path).absolutePath();
    showStatus(tr("Saved %1.").arg(shown));
    return true;
}

void SpectrumPage::chooseFileToLoad()
{
    const QString path = QFileDialog::getOpenFileName(this, tr("Load Spectrum File"), _directory,
                                                      tr("Spectrum File (*.spectral *.txt)"));
    if (!path.isEmpty())
        loadSpectrumFile(path);
}

void SpectrumPage::chooseFileToSave()
{
    const QString path = QFileDialog::getSaveFileName(this, tr("Save Spectrum File"), _directory,
                                                      tr("Spectrum File (*.spectral)"));
    if (!path.isEmpty())
        saveSpectrumFile(path);
}

// --- Showing -------------------------------------------------------------------

bool SpectrumPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _view->viewport() && event->type() == QEvent::Resize)
        rebuildPlot();
    return QWidget::eventFilter(watched, event);
}

void SpectrumPage::rebuildPlot()
{
    const QSize size = _view->viewport()->size();
    _plot->update(float(size.width()), float(size.height()));
}

// During a stroke or a drag the spectrum's bands are not yet up to date (the
// plot brings them up to date when the gesture ends), so the colour comes
// from a resampled copy.
void SpectrumPage::showSpectrumColor()
{
    QZESpectrum current = _spectrum->getModel();
    current.resample();
    const QZESpectrum::RGB rgb = current.getRGB();
    _color.setRGB(rgb.r, rgb.g, rgb.b);

    // Bright spectra show their chromaticity: the brightest channel at 1.
    const float peak = std::max({rgb.r, rgb.g, rgb.b});
    const float scale = peak > 1.0f ? 1.0f / peak : 1.0f;
    QZEColor shown;
    shown.setRGB(rgb.r * scale, rgb.g * scale, rgb.b * scale);
    PageParts::showOnSwatch(_swatch, shown.getGammaQColor());
    _rgb->setText(tr("Linear RGB: %1, %2, %3").arg(number(rgb.r), number(rgb.g), number(rgb.b)));
}

void SpectrumPage::showSampling()
{
    const QSignalBlocker blocker(_nonUniform);
    _nonUniform->setChecked(_spectrum->getVersionID() == NonUniformVersion);
}

void SpectrumPage::showStatus(const QString& text)
{
    _status->setText(text);
}
