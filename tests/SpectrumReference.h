#ifndef SPECTRUMREFERENCE_H
#define SPECTRUMREFERENCE_H

// The spectral model's arithmetic written the plain way, segment by segment
// from the first sample and colour by colour, for tests that hold the
// library's shortcuts (precomputed band weights, skipped resamples, a hoisted
// Smits mix, hand-made number formatting) to the very same bits.

#include <QtTest>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace SpectrumReference {

constexpr int NumBands = 40;

// Average over [lo, hi) of the piecewise linear source (w, s), the end
// values held beyond its ends and a repeated wavelength a step.
inline float bandAverage(const std::vector<float>& w, const std::vector<float>& s, float lo,
                         float hi)
{
    const size_t n = std::min(w.size(), s.size());
    if (n == 1 || w[0] >= hi)
        return s[0];
    if (lo >= w[n - 1])
        return s[n - 1];
    double integral = w[0] > lo ? double(w[0] - lo) * s[0] : 0.0;
    for (size_t j = 0; j + 1 < n && w[j] <= hi; ++j) {
        if (w[j + 1] < lo)
            continue; // ends before the band
        const float width = w[j + 1] - w[j];
        if (width <= 0.0f)
            continue;
        const float a = std::max(w[j], lo);
        const float b = std::min(w[j + 1], hi);
        const float ta = (a - w[j]) / width;
        const float tb = (b - w[j]) / width;
        const float va = ta * s[j + 1] + (1.0f - ta) * s[j];
        const float vb = tb * s[j + 1] + (1.0f - tb) * s[j];
        integral += double(b - a) * (double(va) + double(vb)) * 0.5;
    }
    if (hi > w[n - 1])
        integral += double(hi - w[n - 1]) * s[n - 1];
    return float(integral / double(hi - lo));
}

// The 40 bands of 10 nm from 380 nm.
inline std::vector<float> bands(const std::vector<float>& w, const std::vector<float>& s)
{
    std::vector<float> out;
    for (int k = 0; k < NumBands; ++k) {
        const float lo = float(380 + 10 * k);
        out.push_back(bandAverage(w, s, lo, lo + 10.0f));
    }
    return out;
}

// Whether two float vectors hold the same bits (so nan equals the same nan
// and 0 differs from -0).
inline bool sameBits(const std::vector<float>& a, const std::vector<float>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(float)) == 0;
}

// A source of 1 to 200 samples at non-decreasing wavelengths: mostly rising
// by up to 20 nm, now and then repeated, starting anywhere from well below
// to well above the bands; values from -1 to 2.
struct Source
{
    std::vector<float> wavelengths;
    std::vector<float> values;
};

inline Source randomSource(std::mt19937& generator)
{
    std::uniform_int_distribution<int> count(1, 200);
    std::uniform_real_distribution<float> start(200.0f, 900.0f);
    std::uniform_real_distribution<float> step(0.0f, 20.0f);
    std::uniform_real_distribution<float> value(-1.0f, 2.0f);
    std::bernoulli_distribution repeat(0.05);
    Source source;
    const int n = count(generator);
    float wavelength = start(generator);
    for (int i = 0; i < n; ++i) {
        source.wavelengths.push_back(wavelength);
        source.values.push_back(value(generator));
        wavelength += repeat(generator) ? 0.0f : step(generator);
    }
    return source;
}

} // namespace SpectrumReference

#endif // SPECTRUMREFERENCE_H
