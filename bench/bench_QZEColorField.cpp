// The colour field's plane, 256 x 256, in every mode.
//
// "PlaneRecompute" is QZEColorField::computePlane, the work the widget does
// when the fixed component or its size changes. "ReferencePlane" computes the
// same pixels the straightforward way, one QZEColor and one QColor getter per
// pixel (getQColor, or getGammaQColor with the sRGB switch on for the L*a*b*
// planes), for comparison. Before any timing, main() checks once per mode that
// both give identical pixels, so the figures compare equal work.
//
// "FieldRepaint" renders the whole widget as a host repaint does:
// "MarkerMove" after the marker moved (the cached plane is reused) and
// "FixedChange" after the fixed component changed (the plane is recomputed).

#include "QZEColorField.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QImage>
#include <QMetaEnum>

#include <cstdio>
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
        for (int x = 0; x < Side; ++x) {
            const QZEColor c = referenceColour(scene.mode, scene.fixed, along(x), along(Side - 1 - y));
            plane.setPixelColor(x, y, lab ? c.getGammaQColor() : c.getQColor());
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

// Reported on stderr so stdout stays a clean report (e.g. --benchmark_format=json).
bool allScenesComputeLikeReference(const std::vector<Scene>& scenes)
{
    bool all = true;
    for (const Scene& scene : scenes) {
        const bool same = computesLikeReference(scene);
        std::fprintf(stderr, "%-10s pixel-identical: %s\n", scene.name.c_str(), same ? "yes" : "no");
        all = all && same;
    }
    return all;
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

// A hue-mode field whose marker alternates between two colours of one hue.
void BM_FieldRepaintMarkerMove(benchmark::State& state)
{
    QZEColorField field;
    field.resize(Side, Side);
    QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        field.setRGB(flip ? 0.9f : 0.6f, 0.3f, 0.3f); // hue 0 both times
        field.render(&image);
    }
    if (field.getPlaneComputations() != 1)
        state.SkipWithError("the plane was recomputed on a marker move");
}

// A hue-mode field whose hue alternates: every repaint recomputes the plane.
void BM_FieldRepaintFixedChange(benchmark::State& state)
{
    QZEColorField field;
    field.resize(Side, Side);
    QImage image(Side, Side, QImage::Format_ARGB32_Premultiplied);
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        field.setHue(flip ? 40.0f : 220.0f);
        field.render(&image);
    }
}

void registerBenchmarks(const std::vector<Scene>& scenes)
{
    for (const Scene& scene : scenes) {
        benchmark::RegisterBenchmark(("PlaneRecompute/" + scene.name).c_str(), BM_PlaneRecompute, scene)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("ReferencePlane/" + scene.name).c_str(), BM_ReferencePlane, scene)
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("FieldRepaint/MarkerMove", BM_FieldRepaintMarkerMove)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("FieldRepaint/FixedChange", BM_FieldRepaintFixedChange)
        ->Unit(benchmark::kMicrosecond);
}

} // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QZEColor::s_useGamma = true; // the reference shows L*a*b* planes through getGammaQColor

    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;

    const std::vector<Scene> scenes = allScenes();
    if (!allScenesComputeLikeReference(scenes))
        return 1;

    registerBenchmarks(scenes);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
