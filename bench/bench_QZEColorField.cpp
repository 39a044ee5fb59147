// The colour field's plane, 256 x 256, in every mode.
//
// "PlaneRecompute" is QZEColorField::computePlane, the work the widget does
// when the fixed component or its size changes. "ReferencePlane" computes the
// same pixels the straightforward way, one QZEColor and one QColor getter per
// pixel (getQColor, or getGammaQColor with the sRGB switch on for the L*a*b*
// planes), written straight into the image's scan lines, for comparison.
// Before any timing, main() checks once per mode that both give identical
// pixels, so the figures compare equal work.
//
// "FieldRepaint" renders the whole widget as a host repaint does:
// "MarkerMove" after the marker moved (the cached plane is reused) and
// "FixedChange/<mode>" after the fixed component changed (the plane is
// recomputed).

#include "BenchMain.h"
#include "QZEColorField.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QMetaEnum>

#include <string>
#include <vector>

namespace {

using Mode = QZEColorField::Mode;

constexpr int Side = 256;

struct Scene
{
    std::string name;
    Mode mode;
    float fixed; // in the unit of the fixed component
};

// Fixed components in the middle of their ranges, so that every plane shows
// a real gradient (and the L*a*b* planes both in- and out-of-gamut colours).
std::vector<Scene> allScenes()
{
    const float fixedByMode[] = {200.0f, 0.6f, 0.8f, 0.3f, 0.5f, 0.7f, 60.0f, 20.0f, -30.0f};
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    std::vector<Scene> scenes;
    for (int i = 0; i < modes.keyCount(); ++i)
        scenes.push_back({modes.key(i), Mode(modes.value(i)), fixedByMode[i]});
    return scenes;
}

QImage blankPlane()
{
    QImage plane(Side, Side, QImage::Format_RGB32);
    plane.fill(Qt::magenta);
    return plane;
}

// --- Reference: one colour and one QColor per pixel ------------------------------

// Pixel i of Side along an axis as a 0..1 position; y grows upwards.
float along(int i)
{
    return float(i) / float(Side - 1);
}

float labAxis(float position)
{
    return (position - 0.5f) * QZEColor::s_LabRange;
}

QZEColor referenceColour(Mode mode, float fixed, float x, float y)
{
    QZEColor c;
    switch (mode) {
    case QZEColorField::Hue: return QZEColor(fixed, x, y);
    case QZEColorField::Saturation: return QZEColor(x * 359.99f, fixed, y);
    case QZEColorField::Value: return QZEColor(x * 359.99f, y, fixed);
    case QZEColorField::Red: c.setRGB(fixed, x, y); break;
    case QZEColorField::Green: c.setRGB(x, fixed, y); break;
    case QZEColorField::Blue: c.setRGB(x, y, fixed); break;
    case QZEColorField::Lstar: c.LABtoHSV(fixed, labAxis(x), labAxis(y), c.h, c.s, c.v); break;
    case QZEColorField::Astar: c.LABtoHSV(x * 100.0f, fixed, labAxis(y), c.h, c.s, c.v); break;
    case QZEColorField::Bstar: c.LABtoHSV(x * 100.0f, labAxis(y), fixed, c.h, c.s, c.v); break;
    }
    return c;
}

void referencePlane(const Scene& scene, QImage& plane)
{
    const bool lab = QZEColorField::isLabMode(scene.mode);
    for (int y = 0; y < Side; ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(plane.scanLine(y));
        for (int x = 0; x < Side; ++x) {
            const QZEColor c = referenceColour(scene.mode, scene.fixed, along(x), along(Side - 1 - y));
            line[x] = (lab ? c.getGammaQColor() : c.getQColor()).rgb();
        }
    }
}

// --- Verification ------------------------------------------------------------

bool computesLikeReference(const Scene& scene)
{
    QImage plane = blankPlane();
    QZEColorField::computePlane(scene.mode, scene.fixed, plane);
    QImage reference = blankPlane();
    referencePlane(scene, reference);
    return plane == reference;
}

// --- Benchmarks ----------------------------------------------------------------

void BM_PlaneRecompute(benchmark::State& state, const Scene& scene)
{
    QImage plane = blankPlane();
    for (auto _ : state) {
        QZEColorField::computePlane(scene.mode, scene.fixed, plane);
        benchmark::ClobberMemory();
    }
}

void BM_ReferencePlane(benchmark::State& state, const Scene& scene)
{
    QImage plane = blankPlane();
    for (auto _ : state) {
        referencePlane(scene, plane);
        benchmark::ClobberMemory();
    }
}

// Renders the field once per iteration after change(field, flip), where flip
// alternates between true and false.
template <typename Change>
void renderAlternating(benchmark::State& state, QZEColorField& field, Change change)
{
    field.resize(Side, Side);
    QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        change(field, flip);
        field.render(&image);
    }
}

// The marker alternates between two colours of one hue.
void BM_FieldRepaintMarkerMove(benchmark::State& state)
{
    QZEColorField field;
    renderAlternating(state, field, [](QZEColorField& f, bool flip) {
        f.setRGB(flip ? 0.9f : 0.6f, 0.3f, 0.3f); // hue 0 both times
    });
    if (field.getPlaneComputations() != 1)
        state.SkipWithError("the plane was recomputed on a marker move");
}

// The colour alternates between two that differ in every component of every
// family, so every repaint recomputes the plane, whatever the mode.
void BM_FieldRepaintFixedChange(benchmark::State& state, const Scene& scene)
{
    QZEColorField field;
    field.setMode(scene.mode);
    renderAlternating(state, field, [](QZEColorField& f, bool flip) {
        if (flip)
            f.setRGB(0.9f, 0.3f, 0.2f);
        else
            f.setRGB(0.2f, 0.5f, 0.8f);
    });
    if (field.getPlaneComputations() < state.iterations())
        state.SkipWithError("a repaint reused the plane");
}

void registerBenchmarks(const std::vector<Scene>& scenes)
{
    for (const Scene& scene : scenes) {
        registerInMicroseconds("PlaneRecompute/" + scene.name, BM_PlaneRecompute, scene);
        registerInMicroseconds("ReferencePlane/" + scene.name, BM_ReferencePlane, scene);
        registerInMicroseconds("FieldRepaint/FixedChange/" + scene.name, BM_FieldRepaintFixedChange,
                               scene);
    }
    registerInMicroseconds("FieldRepaint/MarkerMove", BM_FieldRepaintMarkerMove);
}

} // namespace

int main(int argc, char** argv)
{
    QZEColor::s_useGamma = true; // the reference shows L*a*b* planes through getGammaQColor
    const std::vector<Scene> scenes = allScenes();
    return runWidgetBenchmarks(
        argc, argv, [&scenes] { return allScenesPixelIdentical(scenes, computesLikeReference); },
        [&scenes] { registerBenchmarks(scenes); });
}
