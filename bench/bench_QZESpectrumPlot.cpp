// The costs of the spectrum plot that a user feels, and the plain scene they
// are held against:
//  - FullUpdate/<n>: update(600, 300) over a fully built scene followed by one
//    paint of the scene into a 600 x 300 image, the rebuild and redraw the
//    owner runs after every edit and resize: clearing the old scene, then
//    axes, labels, 40 bars, n dots with tooltips, cursors and connections,
//    the curve and the guides;
//  - PlainScene/<n>: the same items with the same geometry in a plain
//    QGraphicsScene (ellipse items without tooltip, cursor or connection),
//    cleared, rebuilt and painted the same way: what the plot's own
//    machinery is measured against;
//  - UpdatePlot/<n>: one refresh during a drag, after one sample's value
//    changed: the curve rebuilt and the n dots moved;
//  - EditSampleEvent: the whole step of a dot drag on a uniform and on a
//    non-uniform spectrum: value (and wavelength) written, guides and
//    read-outs moved, then the same refresh.
// Spectra of n samples spread evenly over 380..780 nm (for 81 the 5 nm grid)
// with random values and random band averages; each iteration takes the next
// of several such spectra, so no iteration repeats the previous one's
// numbers. Before timing, main() checks that the plot holds what these
// figures claim to measure and that the plain scene paints the same pixels.
//
// Each iteration ends by processing the posted events, as the event loop does
// between two edits in a running program: the scene polishes the items added
// since the last pass there. Without it the scene's list of items waiting
// for their polish grows without bound over the iterations, and every item
// removal searches it, which measures the benchmark instead of the plot.

#include "BenchMain.h"
#include "QZESpectrumPlot.h"
#include "QZESpectrumSample.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsPathItem>
#include <QGraphicsRectItem>
#include <QGraphicsTextItem>
#include <QImage>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

constexpr float Width = 600.0f;
constexpr float Height = 300.0f;
constexpr float MaxValue = 1.25f;
constexpr int DaylightFunction = 1;
constexpr float D65Temperature = 6504.0f;
constexpr int DraggedIndex = 40;
constexpr int PoolSize = 8;
constexpr int NonUniform = 2;
constexpr int SampleCounts[] = {81, 1000, 10000, 100000};

// --- Random spectra ----------------------------------------------------------

struct Values
{
    std::vector<float> source;
    std::vector<float> bands;
};

std::vector<float> randomValues(std::mt19937& rng, int count)
{
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    std::vector<float> values(static_cast<size_t>(count));
    for (float& v : values)
        v = value(rng);
    return values;
}

std::vector<Values> randomPool(int count)
{
    std::mt19937 rng(20261124u + unsigned(count));
    std::vector<Values> pool;
    for (int i = 0; i < PoolSize; ++i)
        pool.push_back({randomValues(rng, count), randomValues(rng, QZESpectrumPlot::NumBands)});
    return pool;
}

// An active spectrum of count samples spread evenly over 380..780 nm.
osg::SpectrumPtr evenSpectrum(int count)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->setVersionID(NonUniform);
    spectrum->setStartWavelength(380);
    spectrum->setNumSamples(count);
    std::vector<float>& wavelengths = spectrum->editWavelengths();
    for (int k = 0; k < count; ++k)
        wavelengths.push_back(float(380.0 + 400.0 * k / (count - 1)));
    spectrum->editSourceValues().assign(size_t(count), 0.5f);
    spectrum->editSamples().assign(size_t(QZESpectrumPlot::NumBands), 0.5f);
    spectrum->setUseSpectrum(true);
    return spectrum;
}

void load(const osg::SpectrumPtr& spectrum, const Values& values)
{
    spectrum->editSourceValues() = values.source;
    spectrum->editSamples() = values.bands;
}

osg::SpectrumPtr daylight(int versionID)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->addAnalyticFunction(DaylightFunction, 0.0f, 0.0f, 0.0f, D65Temperature, true, 380, 5,
                                  81);
    spectrum->setVersionID(versionID);
    return spectrum;
}

// --- The plain reference scene -------------------------------------------------

// Scene coordinates of the plot's mappings, written out independently.
struct Frame
{
    double left = QZESpectrumPlot::_leftBorder;
    double right = QZESpectrumPlot::_rightBorder;
    double upper = QZESpectrumPlot::_upperBorder;
    double lower = QZESpectrumPlot::_lowerBorder;

    double x(double wavelength) const
    {
        const double v = (Width - left - right) * (wavelength - 380.0) / 400.0 + left;
        return std::clamp(v, 0.0, Width - 1.0);
    }
    double y(double value) const
    {
        const double v = (Height - upper - lower) * (1.0 - value / double(MaxValue)) + upper;
        return std::clamp(v, 0.0, Height - 1.0);
    }
};

void addPlainAxes(QGraphicsScene& scene, const Frame& f)
{
    const int lineHeight = QZESpectrumPlot::_lineHeight;
    scene.addText(QStringLiteral("0.0"))->setPos(0.0, Height - f.lower - lineHeight);
    scene.addText(QString::number(double(MaxValue), 'f', 1))->setPos(0.0, f.upper - lineHeight);
    const double axisY = Height - f.lower;
    scene.addLine(f.left, axisY, Width - f.right + 5, axisY);
    scene.addLine(Width - f.right, axisY + 2, Width - f.right, axisY + 2);
    scene.addLine(f.left, axisY, f.left, f.upper - 5);
    scene.addLine(f.left - 2, f.upper, f.left + 2, f.upper);
}

void addPlainBars(QGraphicsScene& scene, const Frame& f, const std::vector<float>& bands)
{
    const int lineWidth = QZESpectrumPlot::_lineWidth;
    double lastLabelX = -2.0 * lineWidth;
    for (int i = 0; i <= QZESpectrumPlot::NumBands; ++i) {
        const double x = f.x(380 + 10 * i);
        if (x - lastLabelX > lineWidth) {
            scene.addText(QString::number(380 + 10 * i))
                ->setPos(x - lineWidth / 2, Height - 2 * QZESpectrumPlot::_lineHeight);
            lastLabelX = x;
        }
        if (i == QZESpectrumPlot::NumBands)
            break;
        const double y = f.y(bands[size_t(i)]);
        const double x2 = f.x(390 + 10 * i);
        scene.addRect(QRectF(x, y, x2 - x, f.y(0.0) - y), QPen(QColor(128, 128, 128)),
                      QBrush(QZESpectrumPlot::s_spectral_colours[i]));
    }
}

// The plot's items, without its tooltips, cursors and connections.
void buildPlainScene(QGraphicsScene& scene, const osg::SpectrumPtr& spectrum)
{
    const Frame f;
    scene.clear();
    scene.setSceneRect(0.0, 0.0, Width, Height);
    addPlainAxes(scene, f);
    auto* dots = new QGraphicsPathItem;
    const QPen dotPen(QColor(255, 240, 100), 1);
    QPainterPath curve;
    const std::vector<float>& wavelengths = spectrum->getWavelengths();
    const std::vector<float>& values = spectrum->getSourceValues();
    for (size_t k = 0; k < values.size(); ++k) {
        const QPointF p(f.x(wavelengths[k]), f.y(values[k]));
        auto* dot = new QGraphicsEllipseItem(p.x() - 2.0, p.y() - 2.0, 4.0, 4.0, dots);
        dot->setBrush(Qt::white);
        dot->setPen(dotPen);
        if (k == 0)
            curve.moveTo(p);
        else
            curve.lineTo(p);
    }
    addPlainBars(scene, f, spectrum->getSamples());
    scene.addPath(curve, QPen(Qt::white));
    scene.addItem(dots);
    const QPen guidePen(QColor(255, 240, 100), 1, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin);
    scene.addLine(QLineF(), guidePen);
    scene.addLine(QLineF(), guidePen);
    scene.addText(QString())->setDefaultTextColor(QColor(255, 240, 100));
    scene.addText(QString())->setDefaultTextColor(QColor(255, 240, 100));
}

// --- Painting ------------------------------------------------------------------

void paint(QGraphicsScene& scene, QImage& image)
{
    QPainter painter(&image);
    scene.render(&painter, QRectF(0.0, 0.0, Width, Height), QRectF(0.0, 0.0, Width, Height));
}

QImage blankImage()
{
    return QImage(int(Width), int(Height), QImage::Format_ARGB32_Premultiplied);
}

QImage painted(QGraphicsScene& scene)
{
    QImage image = blankImage();
    image.fill(Qt::transparent);
    paint(scene, image);
    return image;
}

// --- Checks before timing ------------------------------------------------------

int countBars(const QGraphicsScene& scene)
{
    int bars = 0;
    for (const QGraphicsItem* item : scene.items()) {
        if (item->type() == QGraphicsRectItem::Type)
            ++bars;
    }
    return bars;
}

// Reported on stderr so stdout stays a clean report.
bool plotAndPlainSceneHoldTheSameItems(int count)
{
    const osg::SpectrumPtr spectrum = evenSpectrum(count);
    load(spectrum, randomPool(count).front());
    QZESpectrumPlot plot(spectrum, MaxValue);
    plot.update(Width, Height);
    QGraphicsScene plain;
    plain.setBackgroundBrush(plot.backgroundBrush());
    buildPlainScene(plain, spectrum);
    const int dots = int(plot.getSamples().size());
    const int bars = countBars(plot);
    const bool sameCount = plot.items().size() == plain.items().size();
    const bool samePixels = painted(plot) == painted(plain);
    std::fprintf(stderr, "%6d samples: dots %d, bars %d, items as plain scene: %s, pixels: %s\n",
                 count, dots, bars, sameCount ? "same" : "differ", samePixels ? "same" : "differ");
    return dots == count && bars == QZESpectrumPlot::NumBands && sameCount && samePixels;
}

bool scenesHoldWhatIsMeasured()
{
    return plotAndPlainSceneHoldTheSameItems(81) && plotAndPlainSceneHoldTheSameItems(1000);
}

// --- Benchmarks ------------------------------------------------------------------

void BM_FullUpdate(benchmark::State& state, int count)
{
    const std::vector<Values> pool = randomPool(count);
    const osg::SpectrumPtr spectrum = evenSpectrum(count);
    QZESpectrumPlot plot(spectrum, MaxValue);
    plot.update(Width, Height); // every timed rebuild also clears a full scene
    QImage image = blankImage();
    size_t next = 0;
    for (auto _ : state) {
        load(spectrum, pool[next++ % pool.size()]);
        plot.update(Width, Height);
        paint(plot, image);
        QCoreApplication::processEvents();
    }
}

void BM_PlainScene(benchmark::State& state, int count)
{
    const std::vector<Values> pool = randomPool(count);
    const osg::SpectrumPtr spectrum = evenSpectrum(count);
    QGraphicsScene scene;
    scene.setBackgroundBrush(QColor(118, 118, 118));
    buildPlainScene(scene, spectrum);
    QImage image = blankImage();
    size_t next = 0;
    for (auto _ : state) {
        load(spectrum, pool[next++ % pool.size()]);
        buildPlainScene(scene, spectrum);
        paint(scene, image);
        QCoreApplication::processEvents();
    }
}

void BM_UpdatePlot(benchmark::State& state, int count)
{
    const osg::SpectrumPtr spectrum = evenSpectrum(count);
    load(spectrum, randomPool(count).front());
    QZESpectrumPlot plot(spectrum, MaxValue);
    plot.update(Width, Height);
    std::mt19937 rng(81u);
    std::uniform_int_distribution<int> index(0, count - 1);
    std::uniform_real_distribution<float> value(0.0f, MaxValue);
    std::vector<float>& values = spectrum->editSourceValues();
    for (auto _ : state) {
        values[size_t(index(rng))] = value(rng);
        plot.updatePlot();
        QCoreApplication::processEvents();
    }
}

void BM_EditSampleEvent(benchmark::State& state, int versionID)
{
    const osg::SpectrumPtr spectrum = daylight(versionID);
    QZESpectrumPlot plot(spectrum, spectrum->getMaxValue() * 1.25f);
    plot.update(Width, Height);
    const QZESpectrumSample* dot = plot.getSamples()[DraggedIndex];
    const float centreX = float(dot->rect().center().x());
    plot.setEditSampleMode(true);
    std::mt19937 rng(40u);
    std::uniform_real_distribution<float> dy(0.0f, 200.0f);
    std::uniform_real_distribution<float> dx(-2.0f, 2.0f);
    for (auto _ : state) {
        // Wanders over the value axis and 2 pixels either side of the dot.
        const float y = float(QZESpectrumPlot::_upperBorder) + dy(rng);
        plot.editSampleEvent(DraggedIndex, centreX, centreX + dx(rng), y);
        QCoreApplication::processEvents();
    }
}

void registerBenchmarks()
{
    for (int count : SampleCounts) {
        const std::string n = std::to_string(count);
        registerInMicroseconds("FullUpdate/600x300/" + n + "samples", BM_FullUpdate, count);
        registerInMicroseconds("PlainScene/600x300/" + n + "samples", BM_PlainScene, count);
        registerInMicroseconds("UpdatePlot/" + n + "samples", BM_UpdatePlot, count);
    }
    registerInMicroseconds("EditSampleEvent/uniform", BM_EditSampleEvent, 1);
    registerInMicroseconds("EditSampleEvent/nonUniform", BM_EditSampleEvent, 2);
}

} // namespace

int main(int argc, char** argv)
{
    return runWidgetBenchmarks(argc, argv, scenesHoldWhatIsMeasured, registerBenchmarks);
}
