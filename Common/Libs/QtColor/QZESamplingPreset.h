#ifndef QZESAMPLINGPRESET_H
#define QZESAMPLINGPRESET_H

#include <QString>

/// A uniform wavelength sampling offered by the colour dialog's sampling
/// editor, with the label its preset list shows.
class SamplingPreset
{
public:
    /// The grid start, delta, num (nanometres, nanometres, samples) with its
    /// label "Start: start / Delta: delta / Num: / num", marked "(Default)"
    /// for the 380 nm, 5 nm, 81-sample grid.
    SamplingPreset(int start, int delta, int num);

    int start;     ///< First wavelength, in nanometres.
    int delta;     ///< Spacing of the samples, in nanometres.
    int num;       ///< Number of samples.
    QString label; ///< What the preset list shows (translated).
};

#endif // QZESAMPLINGPRESET_H
