#ifndef QZEBANDWEIGHTS_H
#define QZEBANDWEIGHTS_H

#include <cstddef>
#include <vector>

/// Band averages of a piecewise linear source, split into the part that
/// depends only on the wavelengths and the part that depends on the values.
///
/// A colour-slider drag calls setRGB() on the same grid many times a second:
/// the wavelengths stay put and only the values change. rebuild() works out,
/// once per set of wavelengths, which segments each band covers and where the
/// band's ends cut them; average() then applies the same arithmetic, in the
/// same order and precision, to any values, so its results are bit for bit
/// those of integrating segment by segment from scratch.
///
/// Each band [firstLo + k * width, firstLo + (k + 1) * width) averages the
/// source's trapezoids over it; beyond the source's ends the end values
/// continue as constants; a zero-width segment (two samples at one
/// wavelength) is a step and adds nothing.
class QZEBandWeights
{
public:
    /// Whether rebuild() last ran on these count wavelengths (compared bit for bit).
    bool isFor(const float* wavelengths, size_t count) const;

    /// Prepares average() for count >= 1 samples at wavelengths, numBands
    /// bands of width nm from firstLo nm.
    void rebuild(const float* wavelengths, size_t count, float firstLo, float width, int numBands);

    /// The numBands averages of values (count of them, at the wavelengths
    /// given to rebuild()) into bands.
    void average(const float* values, float* bands) const;

private:
    struct Segment
    {
        size_t index; // the segment runs from sample index to index + 1
        float ta;     // where the band's part of it starts and ends, 0..1
        float ua;     // 1 - ta
        float tb;
        float ub;     // 1 - tb
        double width; // nm of the segment inside the band
    };

    // A band is either one sample's value (beyond the source's ends) or a
    // sum of segments with optional constant overhangs at either end.
    struct Band
    {
        size_t constantIndex; // NotConstant when the band integrates
        size_t firstSegment;
        size_t endSegment;
        bool hasHead;
        bool hasTail;
        double head; // nm before the first sample
        double tail; // nm after the last sample
        double span; // the band's width, as the divisor
    };
    static constexpr size_t NotConstant = size_t(-1);

    Band prepareBand(const float* w, size_t n, float lo, float hi);
    double integrate(const Band& band, const float* s) const;

    std::vector<float> _wavelengths;
    std::vector<Segment> _segments;
    std::vector<Band> _bands;
};

#endif // QZEBANDWEIGHTS_H
