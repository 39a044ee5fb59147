// The two costs of the spectrum plot that a user feels:
//  - FullUpdate: update(600, 300), the rebuild the owner runs after every
//    edit and resize: clearing the old scene, then axes, labels, 40 bars,
//    81 dots with tooltips and connections, the curve and the guides;
//  - UpdatePlot: one refresh during a drag, after a sample's value changed:
//    the curve rebuilt and the 81 dots moved;
//  - EditSampleEvent: the whole step of a dot drag on a uniform and on a
//    non-uniform spectrum: value (and wavelength) written, guides and
//    read-outs moved, then the same refresh.
// The spectrum is CIE daylight D65 sampled at 380, 5, 81. Before timing,
// main() checks that the plot holds what these figures claim to measure.
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
#include <QGraphicsRectItem>

#include <cstdio>

namespace {

constexpr float Width = 600.0f;
constexpr float Height = 300.0f;
constexpr int NumSamples = 81;
constexpr int DaylightFunction = 1;
constexpr float D65Temperature = 6504.0f;
constexpr int DraggedIndex = 40;

osg::SpectrumPtr daylight(int versionID)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->addAnalyticFunction(DaylightFunction, 0.0f, 0.0f, 0.0f, D65Temperature, true, 380, 5,
                                  NumSamples);
    spectrum->setVersionID(versionID);
    return spectrum;
}

float maxValueFor(const osg::SpectrumPtr& spectrum)
{
    return spectrum->getMaxValue() * 1.25f;
}

int countBars(const QZESpectrumPlot& plot)
{
    int bars = 0;
    for (const QGraphicsItem* item : plot.items()) {
        if (item->type() == QGraphicsRectItem::Type)
            ++bars;
    }
    return bars;
}

// Reported on stderr so stdout stays a clean report.
bool plotHoldsTheMeasuredScene()
{
    const osg::SpectrumPtr spectrum = daylight(1);
    QZESpectrumPlot plot(spectrum, maxValueFor(spectrum));
    plot.update(Width, Height);
    const int dots = int(plot.getSamples().size());
    const int bars = countBars(plot);
    std::fprintf(stderr, "dots: %d (want %d), bars: %d (want %d)\n", dots, NumSamples, bars,
                 QZESpectrumPlot::NumBands);
    return dots == NumSamples && bars == QZESpectrumPlot::NumBands;
}

void BM_FullUpdate(benchmark::State& state)
{
    const osg::SpectrumPtr spectrum = daylight(1);
    QZESpectrumPlot plot(spectrum, maxValueFor(spectrum));
    plot.update(Width, Height); // every timed rebuild also clears a full scene
    for (auto _ : state) {
        plot.update(Width, Height);
        QCoreApplication::processEvents();
    }
}

void BM_UpdatePlot(benchmark::State& state)
{
    const osg::SpectrumPtr spectrum = daylight(1);
    const float maxValue = maxValueFor(spectrum);
    QZESpectrumPlot plot(spectrum, maxValue);
    plot.update(Width, Height);
    float& value = spectrum->editSourceValues()[DraggedIndex];
    int step = 0;
    for (auto _ : state) {
        value = maxValue * float(step++ % 100) / 100.0f;
        plot.updatePlot();
        QCoreApplication::processEvents();
    }
}

void BM_EditSampleEvent(benchmark::State& state, int versionID)
{
    const osg::SpectrumPtr spectrum = daylight(versionID);
    QZESpectrumPlot plot(spectrum, maxValueFor(spectrum));
    plot.update(Width, Height);
    const QZESpectrumSample* dot = plot.getSamples()[DraggedIndex];
    const float centreX = float(dot->rect().center().x());
    plot.setEditSampleMode(true);
    int step = 0;
    for (auto _ : state) {
        // Wanders over the value axis and 2 pixels either side of the dot.
        const float y = float(QZESpectrumPlot::_upperBorder) + float(step % 200);
        const float x = centreX + float(step % 5 - 2);
        plot.editSampleEvent(DraggedIndex, centreX, x, y);
        QCoreApplication::processEvents();
        ++step;
    }
}

void registerBenchmarks()
{
    registerInMicroseconds("FullUpdate/600x300/81samples", BM_FullUpdate);
    registerInMicroseconds("UpdatePlot/81samples", BM_UpdatePlot);
    registerInMicroseconds("EditSampleEvent/uniform", BM_EditSampleEvent, 1);
    registerInMicroseconds("EditSampleEvent/nonUniform", BM_EditSampleEvent, 2);
}

} // namespace

int main(int argc, char** argv)
{
    return runWidgetBenchmarks(argc, argv, plotHoldsTheMeasuredScene, registerBenchmarks);
}
