#include "DialogPage.h"

#include "PageParts.h"
#include "QZEAnalyticSpectrum.h"
#include "QZEColorDialog.h"
#include "QZESpectrumPlot.h"
#include "zePlatform.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QFormLayout>
#include <QFrame>
#include <QGraphicsView>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// A warm orange: far from the dialog's own red start, and its linear and
// encoded forms differ clearly.
const QZEColor InitialColor(30.0f, 0.9f, 0.8f);

// CIE daylight D65 on the dialog's default sampling, 380 to 780 nm in 5 nm
// steps, normalised to 1 at 560 nm; its values stay below 1.5.
constexpr float D65Temperature = 6504.0f;
constexpr int GridStart = 380;
constexpr int GridDelta = 5;
constexpr int GridNum = 81;
constexpr float PlotMaximum = 1.5f;

osg::SpectrumPtr daylightD65()
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->addAnalyticFunction(QZEAnalyticSpectrum::CIEDaylight, 0.0f, 0.0f, 0.0f, D65Temperature,
                                  true, GridStart, GridDelta, GridNum);
    return spectrum;
}

// The linear and the sRGB-encoded channels of a colour sent in the form the
// switch gives.
void sentChannels(const QZEColor& sent, float linear[3], float encoded[3])
{
    QZEColor linearColor = sent;
    if (!QZEColor::s_useGamma) {
        float r, g, b;
        sent.getRGB(r, g, b);
        linearColor.setGammaRGB(r, g, b);
    }
    linearColor.getRGB(linear[0], linear[1], linear[2]);
    linearColor.getGammaRGB(encoded[0], encoded[1], encoded[2]);
}

} // namespace

using PageParts::triple;

DialogPage::DialogPage(QWidget* parent)
    : QWidget(parent), _dialog(new QZEColorDialog(InitialColor, this, nullptr)),
      _material{tr("Daylight"), daylightD65()}
{
    _open = new QPushButton(tr("Open the Colour Dialog…"));
    _open->setToolTip(tr("Opens the colour dialog beside this window; the page follows every edit"));
    connect(_open, SIGNAL(clicked()), this, SLOT(openDialog()));
    connect(_dialog, SIGNAL(colorChanged(QZEColor)), this, SLOT(showColor(QZEColor)));
    connect(_dialog, SIGNAL(colorChanged(QZEColor)), this, SLOT(showMaterial()));

    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(_open);
    top->addStretch(1);
    layout->addLayout(top);
    auto* body = new QHBoxLayout;
    body->addWidget(createSwatches(), 1);
    body->addWidget(createValues());
    layout->addLayout(body, 1);
    layout->addWidget(createMaterial(), 1);

    showColor(_dialog->getColor());
    showMaterial();
}

QColor DialogPage::screenColor() const
{
    // getGammaQColor encodes only while the switch is on, which is exactly
    // when the dialog sends linear values.
    return _received.getGammaQColor();
}

QColor DialogPage::unconvertedColor() const
{
    return _received.getQColor();
}

// A spectrum's RGB grows with its brightness (daylight's is far past 1), so
// a bright one shows its chromaticity: the brightest channel at 1, encoded
// for the screen.
QColor DialogPage::materialColor() const
{
    const QZESpectrum::RGB rgb = _material.spectrum->getRGB();
    const float peak = std::max({rgb.r, rgb.g, rgb.b});
    const float scale = peak > 1.0f ? 1.0f / peak : 1.0f;
    float r, g, b;
    QZEColor::fromRGB(rgb.r * scale, rgb.g * scale, rgb.b * scale).getGammaRGB(r, g, b);
    return QColor::fromRgbF(qBound(0.0f, r, 1.0f), qBound(0.0f, g, 1.0f), qBound(0.0f, b, 1.0f));
}

void DialogPage::lendSpectrumToDialog()
{
    _dialog->initSpectrum(_material.spectrum, PlotMaximum);
}

void DialogPage::openDialog()
{
    lendSpectrumToDialog();
    _dialog->show();
    _dialog->raise();
    _dialog->activateWindow();
}

void DialogPage::showColor(QZEColor color)
{
    _received = color;
    PageParts::showOnSwatch(_swatch, screenColor());
    PageParts::showOnSwatch(_unconverted, unconvertedColor());
    _form->setText(QZEColor::s_useGamma ? tr("linear (sRGB switch on)")
                                        : tr("sRGB-encoded (sRGB switch off)"));

    float sent[3], linear[3], encoded[3];
    color.getRGB(sent[0], sent[1], sent[2]);
    sentChannels(color, linear, encoded);
    const QString texts[] = {
        triple(color.h, color.s, color.v),
        triple(sent[0], sent[1], sent[2]),
        triple(linear[0], linear[1], linear[2]),
        triple(encoded[0], encoded[1], encoded[2]),
        screenColor().name(),
    };
    for (int i = 0; i < _values.size(); ++i)
        _values[i]->setText(texts[i]);
}

QWidget* DialogPage::createSwatches()
{
    auto* box = new QGroupBox(tr("Colour from the dialog"));
    auto* layout = new QVBoxLayout(box);
    _swatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 6, zePlatform::getMediumIconSizeY() * 4));
    _swatch->setToolTip(tr("The colour as the host shows it on screen"));
    layout->addWidget(_swatch, 1);
    layout->addWidget(new QLabel(tr("Sent values, unconverted:")));
    _unconverted = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 6, zePlatform::getMediumIconSizeY()));
    layout->addWidget(_unconverted);
    return box;
}

void DialogPage::showMaterial()
{
    PageParts::showOnSwatch(_materialSwatch, materialColor());
    const QString path = QString::fromStdString(_material.spectrum->getFileName());
    _fileName->setText(path.isEmpty() ? tr("none (not loaded from a file)") : QFileInfo(path).fileName());
    _fileName->setToolTip(QDir::toNativeSeparators(path));
    rebuildPlot();
}

bool DialogPage::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == _plotView->viewport() && event->type() == QEvent::Resize)
        rebuildPlot();
    return QWidget::eventFilter(watched, event);
}

void DialogPage::rebuildPlot()
{
    const QSize size = _plotView->viewport()->size();
    _plot->update(float(size.width()), float(size.height()));
}

// The page's plot only shows the spectrum: edits belong to the dialog.
QWidget* DialogPage::createMaterial()
{
    auto* box = new QGroupBox(tr("Material \"%1\" and its spectrum").arg(_material.name));
    auto* layout = new QHBoxLayout(box);
    _plot = new QZESpectrumPlot(_material.spectrum, PlotMaximum);
    _plot->setParent(this); // the page owns its scene
    _plotView = new QGraphicsView(_plot);
    _plotView->setInteractive(false);
    _plotView->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _plotView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    _plotView->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    // Mid grey: the white curve and the black axes and labels all show.
    _plotView->setBackgroundBrush(QColor(150, 150, 150));
    _plotView->setMinimumSize(zePlatform::getMediumIconSizeX() * 6, zePlatform::getMediumIconSizeY() * 3);
    _plotView->viewport()->installEventFilter(this);
    layout->addWidget(_plotView, 1);

    auto* details = new QFormLayout;
    _materialSwatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 2, zePlatform::getMediumIconSizeY()));
    _materialSwatch->setToolTip(tr("The colour of the material's spectrum"));
    details->addRow(tr("Colour"), _materialSwatch);
    _fileName = new QLabel;
    details->addRow(tr("Spectrum file"), _fileName);
    layout->addLayout(details);
    return box;
}

QWidget* DialogPage::createValues()
{
    auto* box = new QGroupBox(tr("Values"));
    auto* forms = new QFormLayout(box);
    _form = new QLabel;
    forms->addRow(tr("Form sent"), _form);
    const char* const names[] = {
        QT_TR_NOOP("HSV as sent"),
        QT_TR_NOOP("RGB as sent"),
        QT_TR_NOOP("Linear RGB"),
        QT_TR_NOOP("sRGB-encoded RGB"),
        QT_TR_NOOP("Screen colour"),
    };
    for (const char* name : names) {
        QLabel* value = PageParts::numberLabel();
        forms->addRow(tr(name), value);
        _values.append(value);
    }
    return box;
}
