// One drag step in the colour dialog, end to end, against the same gesture in
// Qt's own QColorDialog.
//
// A step is one mouse move with the left button held, sent to the widget
// under the mouse, followed by a render of the whole dialog into a
// preallocated image, as the next frame of a drag would paint it:
//
//   QZEColorDialog/HueSliderDrag  a move on _hueSlider: the slider's value, the
//                                 dialog's hue, every other slider and its
//                                 gradient, the nine spin boxes, the output
//                                 labels, the colour field (a new plane, since
//                                 the field shows the hue plane) and the
//                                 current swatch, then the render;
//   QZEColorDialog/FieldDrag      a move on _colorField: saturation and value
//                                 picked from the plane, everything else as
//                                 above (the plane is kept);
//   QZEColorDialog/SpectrumRgbDrag  on a second dialog showing its spectrum
//                                 tab with CIE daylight D65: a move on
//                                 _redSlider_s, whose value becomes a new
//                                 spectrum through rgbSpectrumSliderChanged
//                                 (setRGB, resample, updateColorFromSpectrum,
//                                 updateSpectrumTab(false) with the plot
//                                 rebuilt), then the render;
//   QZEColorDialog/SpectrumPaintStroke  on the same dialog, a move with the
//                                 button held in paint mode on the plot's
//                                 view: one source value painted and the
//                                 curve redrawn, then the render;
//   QColorDialog/PickerDrag       a move on QColorDialog's hue/saturation
//                                 picker: its luminance strip, spin boxes, hex
//                                 field and swatch, then the render;
//   QColorDialog/LuminanceDrag    a move on its luminance strip, the
//                                 one-dimensional strip beside the picker.
//
// Each dialog has its default size. The mouse positions come from a table of
// 65,536 pseudo-random points (fixed seed) over the whole widget (for the paint
// stroke over the plot's inner area), each different from the one before, so
// every step changes the colour or the painted value and no branch sees a
// repeating pattern. The rendered image goes through DoNotOptimize.
//
// Before timing, main() checks that a step does the whole chain: one
// colorChanged per move (for the paint stroke, a changed source value per
// move instead: the dialog takes the colour when the stroke ends), and the
// hue slider's position reaching the dialog's hue, the hue spin box, the H:
// label and the colour field. After the run it
// prints the ratio of each QZEColorDialog step to QColorDialog's picker drag.

#include "BenchMain.h"
#include "QZEAnalyticSpectrum.h"
#include "QZEColorDialog.h"
#include "QZEColorField.h"
#include "QZEColorSlider.h"
#include "QZESpectrumPlot.h"

#include <benchmark/benchmark.h>

#include <QColorDialog>
#include <QDoubleSpinBox>
#include <QGraphicsView>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>
#include <QTabWidget>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int PointCount = 65536;

// A widget to drag on, the dialog it belongs to, the points to visit and the
// frame to paint into.
struct Drag
{
    QWidget* target = nullptr;
    QWidget* dialog = nullptr;
    std::vector<QPoint> points;
    QImage frame;
    size_t next = 0;
};

std::vector<QPoint> pointsOver(const QRect& area, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> x(area.left(), area.right());
    std::uniform_int_distribution<int> y(area.top(), area.bottom());
    std::vector<QPoint> points;
    while (points.size() < PointCount) {
        const QPoint p(x(random), y(random));
        if (points.empty() || (p.x() != points.back().x() && p.y() != points.back().y()))
            points.push_back(p);
    }
    return points;
}

Drag dragOn(QWidget* target, QWidget* dialog, unsigned seed, const QRect& area)
{
    Drag drag;
    drag.target = target;
    drag.dialog = dialog;
    drag.points = pointsOver(area, seed);
    drag.frame = QImage(dialog->size(), QImage::Format_ARGB32_Premultiplied);
    return drag;
}

Drag dragOn(QWidget* target, QWidget* dialog, unsigned seed)
{
    return dragOn(target, dialog, seed, target->rect());
}

void moveWithLeftButton(QWidget* target, const QPoint& at)
{
    const QPointF local(at);
    QMouseEvent move(QEvent::MouseMove, local, local, QPointF(target->mapToGlobal(at)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &move);
}

// One step: the next move, then the next frame.
void step(Drag& drag)
{
    moveWithLeftButton(drag.target, drag.points[drag.next]);
    drag.next = (drag.next + 1) % drag.points.size();
    drag.dialog->render(&drag.frame);
    benchmark::DoNotOptimize(drag.frame.constBits());
    benchmark::ClobberMemory();
}

void pressOn(QWidget* target, const QPoint& at)
{
    const QPointF local(at);
    QMouseEvent press(QEvent::MouseButtonPress, local, local, QPointF(target->mapToGlobal(at)),
                      Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(target, &press);
}

void showOffScreen(QWidget* dialog)
{
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    dialog->show();
    QCoreApplication::processEvents();
}

QWidget* childOfClass(QWidget* parent, const char* className)
{
    for (QWidget* child : parent->findChildren<QWidget*>()) {
        if (qstrcmp(child->metaObject()->className(), className) == 0)
            return child;
    }
    return nullptr;
}

// --- The dialogs under test ------------------------------------------------------

// CIE daylight D65 on the dialog's default sampling, 380 to 780 nm in 5 nm
// steps, with values up to about 1.2.
constexpr float D65Temperature = 6504.0f;
constexpr float DaylightPlotMaximum = 1.5f;

osg::SpectrumPtr daylightD65()
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->addAnalyticFunction(QZEAnalyticSpectrum::CIEDaylight, 0.0f, 0.0f, 0.0f, D65Temperature,
                                  true, 380, 5, 81);
    return spectrum;
}

struct Dialogs
{
    Dialogs()
        : ours(QZEColor(200.0f, 0.6f, 0.7f), nullptr, nullptr),
          spectral(QZEColor(200.0f, 0.6f, 0.7f), nullptr, nullptr),
          theirs(QColor::fromHsvF(200.0 / 360.0, 0.6, 0.7))
    {
        theirs.setOption(QColorDialog::DontUseNativeDialog);
        showOffScreen(&ours);
        showSpectrumTab();
        showOffScreen(&theirs);
        QObject::connect(&ours, &QZEColorDialog::colorChanged, [this] { ++oursChanged; });
        QObject::connect(&spectral, &QZEColorDialog::colorChanged, [this] { ++spectralChanged; });
        QObject::connect(&theirs, &QColorDialog::currentColorChanged, [this] { ++theirsChanged; });
    }

    // The tab can be chosen once the dialog holds a spectrum; the plot fits
    // its view when the spectrum is given with the tab's layout settled.
    void showSpectrumTab()
    {
        spectral.initSpectrum(daylight, DaylightPlotMaximum);
        showOffScreen(&spectral);
        spectral.findChild<QTabWidget*>(QStringLiteral("tabWidget"))
            ->setCurrentWidget(spectral.findChild<QWidget*>(QStringLiteral("_spectrum_tab")));
        QCoreApplication::processEvents();
        spectral.initSpectrum(daylight, DaylightPlotMaximum);
    }

    osg::SpectrumPtr daylight = daylightD65();
    QZEColorDialog ours;
    QZEColorDialog spectral;
    QColorDialog theirs;
    int oursChanged = 0;
    int spectralChanged = 0;
    int theirsChanged = 0;
};

Dialogs* dialogs = nullptr;
std::map<std::string, Drag> drags;

template <class T> T* part(QWidget* dialog, const char* name)
{
    return dialog->findChild<T*>(QString::fromLatin1(name));
}

// The plot's inner area, inside the axes, in the coordinates of the view's
// viewport (the plot's scene starts at its top left corner).
QRect paintArea(const QWidget* viewport)
{
    return QRect(QPoint(QZESpectrumPlot::_leftBorder, QZESpectrumPlot::_upperBorder),
                 QPoint(viewport->width() - 1 - QZESpectrumPlot::_rightBorder,
                        viewport->height() - 1 - QZESpectrumPlot::_lowerBorder));
}

// The stroke starts at the bottom of the middle of the plot, at values near
// zero, well below daylight's dots: a press on a dot would drag that dot.
QPoint strokeStart(const QRect& area)
{
    return QPoint(area.center().x(), area.bottom() - 1);
}

bool setUpDrags()
{
    QWidget* hueSlider = part<QZEColorSlider>(&dialogs->ours, "_hueSlider");
    QWidget* field = part<QZEColorField>(&dialogs->ours, "_colorField");
    QWidget* redSpectrumSlider = part<QZEColorSlider>(&dialogs->spectral, "_redSlider_s");
    auto* plotView = part<QGraphicsView>(&dialogs->spectral, "_spectrumPlot");
    QWidget* picker = childOfClass(&dialogs->theirs, "QColorPicker");
    QWidget* luminance = childOfClass(&dialogs->theirs, "QColorLuminancePicker");
    if (!hueSlider || !field || !redSpectrumSlider || !plotView || !picker || !luminance) {
        std::fprintf(stderr, "a widget to drag on is missing\n");
        return false;
    }
    drags["QZEColorDialog/HueSliderDrag"] = dragOn(hueSlider, &dialogs->ours, 1);
    drags["QZEColorDialog/FieldDrag"] = dragOn(field, &dialogs->ours, 2);
    drags["QZEColorDialog/SpectrumRgbDrag"] = dragOn(redSpectrumSlider, &dialogs->spectral, 5);
    QWidget* viewport = plotView->viewport();
    const QRect area = paintArea(viewport);
    drags["QColorDialog/PickerDrag"] = dragOn(picker, &dialogs->theirs, 3);
    drags["QColorDialog/LuminanceDrag"] = dragOn(luminance, &dialogs->theirs, 4);
    for (auto& entry : drags)
        pressOn(entry.second.target, entry.second.points.back());
    drags["QZEColorDialog/SpectrumPaintStroke"] = dragOn(viewport, &dialogs->spectral, 6, area);
    pressOn(viewport, strokeStart(area));
    return true;
}

// --- Checks before timing ----------------------------------------------------------

bool near(double a, double b, double tolerance)
{
    return std::abs(a - b) <= tolerance;
}

// A hue slider step reaches the hue, its spin box, the H: label and the field.
bool hueStepReachesEveryView()
{
    Drag& drag = drags["QZEColorDialog/HueSliderDrag"];
    auto* slider = static_cast<QZEColorSlider*>(drag.target);
    auto* spinBox = part<QDoubleSpinBox>(&dialogs->ours, "_hueSpiner");
    auto* label = part<QLabel>(&dialogs->ours, "_h_label");
    auto* field = part<QZEColorField>(&dialogs->ours, "_colorField");
    const int before = dialogs->oursChanged;
    const float fieldHueBefore = field->getColor().h;
    step(drag);
    const QZEColor color = dialogs->ours.getColor();
    const double hue = double(slider->getValue()) * 359.99;
    // The field holds the colour in its own (display) form, so its hue
    // only has to follow, not to match.
    const bool ok = dialogs->oursChanged == before + 1 && near(color.h, hue, 0.01)
                    && near(spinBox->value(), hue, 0.01)
                    && label->text() == QStringLiteral("H: %1").arg(double(color.h), 0, 'f', 4)
                    && field->getColor().h != fieldHueBefore;
    std::fprintf(stderr, "hue slider step reaches hue, spin box, label and field: %s\n", ok ? "yes" : "no");
    return ok;
}

int& colourChanges(const Drag& drag)
{
    if (drag.dialog == &dialogs->ours)
        return dialogs->oursChanged;
    return drag.dialog == &dialogs->spectral ? dialogs->spectralChanged : dialogs->theirsChanged;
}

const char* const PaintStroke = "QZEColorDialog/SpectrumPaintStroke";

bool everyStepChangesTheColour()
{
    bool all = true;
    for (auto& entry : drags) {
        if (entry.first == PaintStroke)
            continue;
        int& counter = colourChanges(entry.second);
        const int before = counter;
        for (int i = 0; i < 64; ++i)
            step(entry.second);
        const bool ok = counter - before == 64;
        std::fprintf(stderr, "%-28s one colour change per step: %s (%d of 64)\n", entry.first.c_str(),
                     ok ? "yes" : "no", counter - before);
        all = all && ok;
    }
    return all;
}

// A paint step in paint mode changes the spectrum's source values, and
// leaves the dialog's colour alone until the stroke ends.
bool everyPaintStepChangesTheSpectrum()
{
    Drag& drag = drags[PaintStroke];
    QZESpectrumPlot* plot = dialogs->spectral.getSpectrumPlot();
    const int colourBefore = dialogs->spectralChanged;
    int changed = 0;
    for (int i = 0; i < 64; ++i) {
        const std::vector<float> before = dialogs->daylight->getSourceValues();
        step(drag);
        changed += dialogs->daylight->getSourceValues() != before;
    }
    const bool ok = plot->getPaintSampleMode() && changed == 64 && dialogs->spectralChanged == colourBefore;
    std::fprintf(stderr, "%-28s paint mode, one changed value per step: %s (%d of 64)\n", PaintStroke,
                 ok ? "yes" : "no", changed);
    return ok;
}

// --- Run and ratios ------------------------------------------------------------

void dragStep(benchmark::State& state, const std::string& name)
{
    Drag& drag = drags[name];
    for (auto _ : state)
        step(drag);
    state.SetItemsProcessed(state.iterations());
}

// Console output as usual, keeping each benchmark's CPU time per step (the
// median when repetitions are asked for) and printing the ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter
{
public:
    void Finalize() override
    {
        ConsoleReporter::Finalize();
        printRatios();
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            const bool plain = run.run_type == Run::RT_Iteration;
            if (plain || run.aggregate_name == "median")
                _cpu[run.run_name.function_name] = run.GetAdjustedCPUTime();
        }
    }

private:
    void printRatios() const
    {
        const auto reference = _cpu.find("QColorDialog/PickerDrag");
        if (reference == _cpu.end())
            return;
        for (const char* name : {"QZEColorDialog/HueSliderDrag", "QZEColorDialog/FieldDrag",
                                 "QZEColorDialog/SpectrumRgbDrag", PaintStroke,
                                 "QColorDialog/LuminanceDrag"}) {
            const auto ours = _cpu.find(name);
            if (ours != _cpu.end())
                std::printf("ratio %-28s / QColorDialog/PickerDrag = %.2f\n", name,
                            ours->second / reference->second);
        }
    }

    std::map<std::string, double> _cpu;
};

// The dialogs need the application that runWidgetBenchmarks creates, and
// must not be destroyed after it: they are left to the end of the process.
bool showDialogsAndCheckSteps()
{
    dialogs = new Dialogs;
    std::fprintf(stderr, "sizes: QZEColorDialog %dx%d, QColorDialog %dx%d\n", dialogs->ours.width(),
                 dialogs->ours.height(), dialogs->theirs.width(), dialogs->theirs.height());
    return setUpDrags() && hueStepReachesEveryView() && everyStepChangesTheColour()
           && everyPaintStepChangesTheSpectrum();
}

void registerDragSteps()
{
    for (const auto& entry : drags)
        registerInMicroseconds(entry.first, dragStep, entry.first);
}

} // namespace

int main(int argc, char** argv)
{
    RatioReporter reporter;
    return runWidgetBenchmarks(argc, argv, showDialogsAndCheckSteps, registerDragSteps, &reporter);
}
