// Per-colour cost of the QZEColor conversions.
//
// Each benchmark walks a precomputed table of 65,536 random inputs, one colour
// per iteration, so nothing folds to a constant and the branch predictor
// cannot learn the sequence (it learns a table of a thousand inputs, which
// made the HSV to RGB conversion look six times faster than it is on inputs
// that do not repeat); the largest table, 768 KiB, still fits the level-2
// cache. Every result goes through DoNotOptimize. The reported time is per
// colour (or per channel for the single-channel sRGB curves).

#include "QZEColor.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <random>
#include <vector>

namespace {

constexpr std::size_t InputCount = 65536; // a power of two: the index wraps with a mask
constexpr unsigned Seed = 20240607;

struct Triple
{
    float x, y, z;
};

std::vector<float> uniformFloats(std::size_t count, float lo, float hi, unsigned seed)
{
    std::mt19937 generator(seed);
    std::uniform_real_distribution<float> distribution(lo, hi);
    std::vector<float> values(count);
    for (float& v : values)
        v = distribution(generator);
    return values;
}

const std::vector<QZEColor>& hsvInputs()
{
    static const std::vector<QZEColor> colours = [] {
        const auto hues = uniformFloats(InputCount, 0.0f, 360.0f, Seed);
        const auto sats = uniformFloats(InputCount, 0.0f, 1.0f, Seed + 1);
        const auto vals = uniformFloats(InputCount, 0.0f, 1.0f, Seed + 2);
        std::vector<QZEColor> out;
        for (std::size_t i = 0; i < InputCount; ++i)
            out.emplace_back(hues[i], sats[i], vals[i]);
        return out;
    }();
    return colours;
}

const std::vector<Triple>& rgbInputs()
{
    static const std::vector<Triple> triples = [] {
        const auto channels = uniformFloats(3 * InputCount, 0.0f, 1.0f, Seed + 3);
        std::vector<Triple> out;
        for (std::size_t i = 0; i < InputCount; ++i)
            out.push_back({channels[3 * i], channels[3 * i + 1], channels[3 * i + 2]});
        return out;
    }();
    return triples;
}

// In-gamut Lab values: the Lab of the HSV table.
const std::vector<Triple>& labInputs()
{
    static const std::vector<Triple> triples = [] {
        std::vector<Triple> out;
        QZEColor converter;
        for (const QZEColor& c : hsvInputs()) {
            Triple lab{};
            converter.HSVtoLAB(c.h, c.s, c.v, lab.x, lab.y, lab.z);
            out.push_back(lab);
        }
        return out;
    }();
    return triples;
}

const std::vector<float>& channelInputs()
{
    static const std::vector<float> channels = uniformFloats(InputCount, 0.0f, 1.0f, Seed + 4);
    return channels;
}

// Runs op on one input per iteration, cycling through the table.
template <typename Input, typename Op>
void runOverInputs(benchmark::State& state, const std::vector<Input>& inputs, Op op)
{
    std::size_t i = 0;
    for (auto _ : state) {
        op(inputs[i]);
        i = (i + 1) & (InputCount - 1);
    }
    state.SetItemsProcessed(state.iterations());
}

void keepTriple(float& a, float& b, float& c)
{
    benchmark::DoNotOptimize(a);
    benchmark::DoNotOptimize(b);
    benchmark::DoNotOptimize(c);
}

void BM_HsvToRgb_getRGB(benchmark::State& state)
{
    runOverInputs(state, hsvInputs(), [](const QZEColor& c) {
        float r, g, b;
        c.getRGB(r, g, b);
        keepTriple(r, g, b);
    });
}

void BM_RgbToHsv_setRGB(benchmark::State& state)
{
    runOverInputs(state, rgbInputs(), [](const Triple& rgb) {
        QZEColor c;
        c.setRGB(rgb.x, rgb.y, rgb.z);
        keepTriple(c.h, c.s, c.v);
    });
}

void BM_HsvToLab(benchmark::State& state)
{
    const QZEColor converter;
    runOverInputs(state, hsvInputs(), [&converter](const QZEColor& c) {
        float L, a, b;
        converter.HSVtoLAB(c.h, c.s, c.v, L, a, b);
        keepTriple(L, a, b);
    });
}

void BM_LabToHsv(benchmark::State& state)
{
    const QZEColor converter;
    runOverInputs(state, labInputs(), [&converter](const Triple& lab) {
        float h, s, v;
        converter.LABtoHSV(lab.x, lab.y, lab.z, h, s, v);
        keepTriple(h, s, v);
    });
}

void BM_EncodeSRGB_channel(benchmark::State& state)
{
    runOverInputs(state, channelInputs(), [](float c) {
        float encoded = QZEColor::encodeSRGB(c);
        benchmark::DoNotOptimize(encoded);
    });
}

void BM_DecodeSRGB_channel(benchmark::State& state)
{
    runOverInputs(state, channelInputs(), [](float c) {
        float decoded = QZEColor::decodeSRGB(c);
        benchmark::DoNotOptimize(decoded);
    });
}

void BM_GetGammaRGB(benchmark::State& state)
{
    runOverInputs(state, hsvInputs(), [](const QZEColor& c) {
        float r, g, b;
        c.getGammaRGB(r, g, b);
        keepTriple(r, g, b);
    });
}

void BM_SetGammaRGB(benchmark::State& state)
{
    runOverInputs(state, rgbInputs(), [](const Triple& rgb) {
        QZEColor c;
        c.setGammaRGB(rgb.x, rgb.y, rgb.z);
        keepTriple(c.h, c.s, c.v);
    });
}

void BM_GetQColor(benchmark::State& state)
{
    runOverInputs(state, hsvInputs(), [](const QZEColor& c) {
        QColor color = c.getQColor();
        benchmark::DoNotOptimize(color);
    });
}

// Whatever the process-wide switch says, measure the encoding path.
void BM_GetGammaQColor(benchmark::State& state)
{
    const bool saved = QZEColor::s_useGamma;
    QZEColor::s_useGamma = true;
    runOverInputs(state, hsvInputs(), [](const QZEColor& c) {
        QColor color = c.getGammaQColor();
        benchmark::DoNotOptimize(color);
    });
    QZEColor::s_useGamma = saved;
}

} // namespace

BENCHMARK(BM_HsvToRgb_getRGB);
BENCHMARK(BM_RgbToHsv_setRGB);
BENCHMARK(BM_HsvToLab);
BENCHMARK(BM_LabToHsv);
BENCHMARK(BM_EncodeSRGB_channel);
BENCHMARK(BM_DecodeSRGB_channel);
BENCHMARK(BM_GetGammaRGB);
BENCHMARK(BM_SetGammaRGB);
BENCHMARK(BM_GetQColor);
BENCHMARK(BM_GetGammaQColor);

BENCHMARK_MAIN();
