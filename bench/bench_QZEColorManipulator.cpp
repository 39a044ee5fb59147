// One step of a QZEColorManipulator's brightness slider, as a user drags it:
// a mouse move on the slider, through the slider's value, the colour
// rescaled in sRGB-encoded space, the button's new face and the four
// colorChanged forms, to both children painted again. The slider repaints
// inside the move; the button's repaint is a posted update, delivered as the
// event loop would right after the move.
//
// "QSliderAndButton" is the same gesture on what a host would otherwise
// build from Qt's own widgets: a QSlider held at its handle and a flat
// QPushButton whose style sheet takes the new colour on every valueChanged.
//
// Before any timing, main() checks that one step of each emits what it
// should and paints both widgets; while timing, the counters report signals
// and paints per step.

#include "BenchMain.h"
#include "QZEColorButton.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"

#include <benchmark/benchmark.h>

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPushButton>
#include <QSlider>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWindow>

#include <cstdio>
#include <random>
#include <vector>

namespace {

constexpr int Width = 300;
constexpr int Height = 24;
constexpr int Steps = 65536;

// Counts the paint events of the widgets it watches.
class PaintCounter : public QObject
{
public:
    explicit PaintCounter(std::initializer_list<QWidget*> widgets)
    {
        for (QWidget* widget : widgets)
            widget->installEventFilter(this);
    }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++(watched == _first ? first : second);
        return false;
    }
    void watchFirst(QObject* first) { _first = first; }

    long first = 0;
    long second = 0;

private:
    QObject* _first = nullptr;
};

// Mouse positions along a slider the predictor cannot learn; no two in a
// row alike, so every step changes the value.
std::vector<int> dragPositions(int width)
{
    std::mt19937 random(12345);
    std::uniform_int_distribution<int> x(1, width - 2);
    std::vector<int> positions{x(random)};
    while (int(positions.size()) < Steps) {
        const int next = x(random);
        if (next != positions.back())
            positions.push_back(next);
    }
    return positions;
}

// Shows the window and waits until the platform has exposed it, so that
// its widgets paint.
void showExposed(QWidget& window)
{
    window.show();
    while (!window.windowHandle() || !window.windowHandle()->isExposed())
        QCoreApplication::processEvents();
    QCoreApplication::processEvents();
}

void sendMouse(QWidget* widget, QEvent::Type type, int x, Qt::MouseButtons held)
{
    const QPoint at(x, widget->height() / 2);
    QMouseEvent event(type, at, widget->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QApplication::sendEvent(widget, &event);
}

// A mouse move while the left button is held, then what the event loop does
// next: the posted updates are painted.
void step(QWidget* slider, int x)
{
    sendMouse(slider, QEvent::MouseMove, x, Qt::LeftButton);
    QCoreApplication::sendPostedEvents();
}

// --- The manipulator -----------------------------------------------------------

struct ManipulatorRig
{
    ManipulatorRig()
    {
        window.resize(Width, Height);
        manipulator->setGeometry(0, 0, Width, Height);
        manipulator->setColor(QZEColor(30.0f, 0.8f, 0.6f));
        showExposed(window);
        paints.watchFirst(slider);
        QObject::connect(manipulator, qOverload<>(&QZEColorManipulator::colorChanged), [this] { ++forms; });
        QObject::connect(manipulator, qOverload<const QZEColor&>(&QZEColorManipulator::colorChanged),
                         [this] { ++forms; });
        QObject::connect(manipulator, qOverload<int, int, int>(&QZEColorManipulator::colorChanged),
                         [this] { ++forms; });
        QObject::connect(manipulator,
                         qOverload<float, float, float>(&QZEColorManipulator::colorChanged),
                         [this] { ++forms; });
        sendMouse(slider, QEvent::MouseButtonPress, Width / 4, Qt::LeftButton);
        QCoreApplication::sendPostedEvents();
    }

    QWidget window;
    QZEColorManipulator* manipulator = new QZEColorManipulator(&window);
    QZEColorSlider* slider = manipulator->findChild<QZEColorSlider*>();
    QZEColorButton* button = manipulator->findChild<QZEColorButton*>();
    PaintCounter paints{slider, button};
    long forms = 0;
};

// --- The reference: Qt's slider and push button ---------------------------------

QString backgroundFor(int value)
{
    QZEColor colour(30.0f, 0.8f, 0.6f);
    colour.v = float(value) / 1000.0f;
    const QColor shown = colour.getGammaQColor();
    return QString::asprintf("border: 1px solid rgb(127, 127, 127);border-radius: 3px;"
                             "background: rgb(%i, %i, %i);",
                             shown.red(), shown.green(), shown.blue());
}

struct ReferenceRig
{
    ReferenceRig()
    {
        window.resize(Width, Height);
        auto* layout = new QHBoxLayout(&window);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->setSpacing(6);
        slider->setRange(0, 1000);
        button->setFlat(true);
        button->setFixedSize(62, 16);
        layout->addWidget(slider);
        layout->addWidget(button);
        QObject::connect(slider, &QSlider::valueChanged, [this](int value) {
            button->setStyleSheet(backgroundFor(value));
            ++forms;
        });
        showExposed(window);
        paints.watchFirst(slider);
        sendMouse(slider, QEvent::MouseButtonPress, handleCentre(), Qt::LeftButton);
        QCoreApplication::sendPostedEvents();
    }

    int handleCentre() const
    {
        QStyleOptionSlider option;
        option.initFrom(slider);
        option.orientation = Qt::Horizontal;
        option.minimum = slider->minimum();
        option.maximum = slider->maximum();
        option.sliderPosition = slider->sliderPosition();
        option.sliderValue = slider->value();
        option.subControls = QStyle::SC_SliderGroove | QStyle::SC_SliderHandle;
        return slider->style()
            ->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, slider)
            .center()
            .x();
    }

    QWidget window;
    QSlider* slider = new QSlider(Qt::Horizontal, &window);
    QPushButton* button = new QPushButton(&window);
    PaintCounter paints{slider, button};
    long forms = 0;
};

// --- Verification -------------------------------------------------------------

template <typename Rig>
bool oneStepDoesAllTheWork(const char* name, int formsPerStep)
{
    Rig rig;
    const long forms = rig.forms;
    const long sliderPaints = rig.paints.first;
    const long buttonPaints = rig.paints.second;
    step(rig.slider, rig.slider->width() / 2 + 7);
    const bool ok = rig.forms - forms == formsPerStep && rig.paints.first > sliderPaints
                    && rig.paints.second > buttonPaints;
    std::fprintf(stderr, "%-17s one step: %ld signals, %ld slider and %ld button paints: %s\n", name,
                 rig.forms - forms, rig.paints.first - sliderPaints,
                 rig.paints.second - buttonPaints, ok ? "ok" : "WRONG");
    return ok;
}

// --- Benchmarks -------------------------------------------------------------------

template <typename Rig>
void BM_SliderStep(benchmark::State& state)
{
    Rig rig;
    const std::vector<int> positions = dragPositions(rig.slider->width());
    const long forms = rig.forms;
    const long sliderPaints = rig.paints.first;
    const long buttonPaints = rig.paints.second;
    std::size_t i = 0;
    for (auto _ : state) {
        step(rig.slider, positions[i]);
        i = (i + 1) % positions.size();
    }
    const double steps = double(state.iterations());
    state.counters["signals"] = double(rig.forms - forms) / steps;
    state.counters["sliderPaints"] = double(rig.paints.first - sliderPaints) / steps;
    state.counters["buttonPaints"] = double(rig.paints.second - buttonPaints) / steps;
}

} // namespace

int main(int argc, char** argv)
{
    return runWidgetBenchmarks(
        argc, argv,
        [] {
            const bool manipulator = oneStepDoesAllTheWork<ManipulatorRig>("Manipulator", 4);
            const bool reference = oneStepDoesAllTheWork<ReferenceRig>("QSliderAndButton", 1);
            return manipulator && reference;
        },
        [] {
            registerInMicroseconds("ManipulatorSliderStep", BM_SliderStep<ManipulatorRig>);
            registerInMicroseconds("QSliderAndButtonStep", BM_SliderStep<ReferenceRig>);
        });
}
