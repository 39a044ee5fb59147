#include "QZEBandWeights.h"

#include <algorithm>
#include <cstring>

bool QZEBandWeights::isFor(const float* wavelengths, size_t count) const
{
    return _wavelengths.size() == count
           && std::memcmp(_wavelengths.data(), wavelengths, count * sizeof(float)) == 0;
}

void QZEBandWeights::rebuild(const float* wavelengths, size_t count, float firstLo, float width,
                             int numBands)
{
    _wavelengths.assign(wavelengths, wavelengths + count);
    _segments.clear();
    _bands.clear();
    for (int k = 0; k < numBands; ++k) {
        const float lo = firstLo + width * float(k);
        _bands.push_back(prepareBand(wavelengths, count, lo, lo + width));
    }
}

QZEBandWeights::Band QZEBandWeights::prepareBand(const float* w, size_t n, float lo, float hi)
{
    Band band{NotConstant, _segments.size(), _segments.size(), false, false, 0.0, 0.0,
              double(hi - lo)};
    if (n == 1 || w[0] >= hi) {
        band.constantIndex = 0;
        return band;
    }
    if (lo >= w[n - 1]) {
        band.constantIndex = n - 1;
        return band;
    }
    band.hasHead = w[0] > lo;
    band.head = double(w[0] - lo);
    // First segment whose end reaches lo (lo < w[n - 1] here, so there is one).
    size_t j = size_t(std::lower_bound(w + 1, w + n, lo) - w) - 1;
    for (; j + 1 < n && w[j] <= hi; ++j) {
        const float segmentWidth = w[j + 1] - w[j];
        if (segmentWidth <= 0.0f)
            continue; // a repeated wavelength is a step, not an interval
        const float a = std::max(w[j], lo);
        const float b = std::min(w[j + 1], hi);
        const float ta = (a - w[j]) / segmentWidth;
        const float tb = (b - w[j]) / segmentWidth;
        _segments.push_back({j, ta, 1.0f - ta, tb, 1.0f - tb, double(b - a)});
    }
    band.endSegment = _segments.size();
    band.hasTail = hi > w[n - 1];
    band.tail = double(hi - w[n - 1]);
    return band;
}

void QZEBandWeights::average(const float* values, float* bands) const
{
    const size_t last = _wavelengths.size() - 1;
    for (const Band& band : _bands) {
        if (band.constantIndex != NotConstant) {
            *bands++ = values[band.constantIndex];
            continue;
        }
        double integral = integrate(band, values);
        if (band.hasTail)
            integral += band.tail * values[last];
        *bands++ = float(integral / band.span);
    }
}

// The head overhang and the trapezoids, each end value interpolated in float
// and the areas summed in double.
double QZEBandWeights::integrate(const Band& band, const float* s) const
{
    double integral = band.hasHead ? band.head * s[0] : 0.0;
    for (size_t i = band.firstSegment; i < band.endSegment; ++i) {
        const Segment& segment = _segments[i];
        const float v0 = s[segment.index];
        const float v1 = s[segment.index + 1];
        const float va = segment.ta * v1 + segment.ua * v0;
        const float vb = segment.tb * v1 + segment.ub * v0;
        integral += segment.width * (double(va) + double(vb)) * 0.5;
    }
    return integral;
}
