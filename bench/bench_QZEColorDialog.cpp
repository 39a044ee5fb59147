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
//   QColorDialog/PickerDrag       a move on QColorDialog's hue/saturation
//                                 picker: its luminance strip, spin boxes, hex
//                                 field and swatch, then the render;
//   QColorDialog/LuminanceDrag    a move on its luminance strip, the
//                                 one-dimensional strip beside the picker.
//
// Each dialog has its default size. The mouse positions come from a table of
// 1024 pseudo-random points (fixed seed) over the whole widget, each different
// from the one before, so every step changes the colour and no branch sees a
// repeating pattern. The rendered image goes through DoNotOptimize.
//
// Before timing, main() checks that a step does the whole chain: one
// colorChanged per move, and the hue slider's position reaching the dialog's
// hue, the hue spin box, the H: label and the colour field. After the run it
// prints the ratio of each QZEColorDialog step to QColorDialog's picker drag.

#include "BenchMain.h"
#include "QZEColorDialog.h"
#include "QZEColorField.h"
#include "QZEColorSlider.h"

#include <benchmark/benchmark.h>

#include <QColorDialog>
#include <QDoubleSpinBox>
#include <QImage>
#include <QLabel>
#include <QMouseEvent>

#include <cmath>
#include <cstdio>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int PointCount = 1024;

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

std::vector<QPoint> pointsOver(const QSize& size, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_int_distribution<int> x(0, size.width() - 1);
    std::uniform_int_distribution<int> y(0, size.height() - 1);
    std::vector<QPoint> points;
    while (points.size() < PointCount) {
        const QPoint p(x(random), y(random));
        if (points.empty() || (p.x() != points.back().x() && p.y() != points.back().y()))
            points.push_back(p);
    }
    return points;
}

Drag dragOn(QWidget* target, QWidget* dialog, unsigned seed)
{
    Drag drag;
    drag.target = target;
    drag.dialog = dialog;
    drag.points = pointsOver(target->size(), seed);
    drag.frame = QImage(dialog->size(), QImage::Format_ARGB32_Premultiplied);
    return drag;
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

struct Dialogs
{
    Dialogs()
        : ours(QZEColor(200.0f, 0.6f, 0.7f), nullptr, nullptr),
          theirs(QColor::fromHsvF(200.0 / 360.0, 0.6, 0.7))
    {
        theirs.setOption(QColorDialog::DontUseNativeDialog);
        showOffScreen(&ours);
        showOffScreen(&theirs);
        QObject::connect(&ours, &QZEColorDialog::colorChanged, [this] { ++oursChanged; });
        QObject::connect(&theirs, &QColorDialog::currentColorChanged, [this] { ++theirsChanged; });
    }

    QZEColorDialog ours;
    QColorDialog theirs;
    int oursChanged = 0;
    int theirsChanged = 0;
};

Dialogs* dialogs = nullptr;
std::map<std::string, Drag> drags;

template <class T> T* part(QWidget* dialog, const char* name)
{
    return dialog->findChild<T*>(QString::fromLatin1(name));
}

bool setUpDrags()
{
    QWidget* hueSlider = part<QZEColorSlider>(&dialogs->ours, "_hueSlider");
    QWidget* field = part<QZEColorField>(&dialogs->ours, "_colorField");
    QWidget* picker = childOfClass(&dialogs->theirs, "QColorPicker");
    QWidget* luminance = childOfClass(&dialogs->theirs, "QColorLuminancePicker");
    if (!hueSlider || !field || !picker || !luminance) {
        std::fprintf(stderr, "a widget to drag on is missing\n");
        return false;
    }
    drags["QZEColorDialog/HueSliderDrag"] = dragOn(hueSlider, &dialogs->ours, 1);
    drags["QZEColorDialog/FieldDrag"] = dragOn(field, &dialogs->ours, 2);
    drags["QColorDialog/PickerDrag"] = dragOn(picker, &dialogs->theirs, 3);
    drags["QColorDialog/LuminanceDrag"] = dragOn(luminance, &dialogs->theirs, 4);
    for (auto& entry : drags)
        pressOn(entry.second.target, entry.second.points.back());
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

bool everyStepChangesTheColour()
{
    bool all = true;
    for (auto& entry : drags) {
        const bool ours = entry.second.dialog == &dialogs->ours;
        int& counter = ours ? dialogs->oursChanged : dialogs->theirsChanged;
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
    return setUpDrags() && hueStepReachesEveryView() && everyStepChangesTheColour();
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
