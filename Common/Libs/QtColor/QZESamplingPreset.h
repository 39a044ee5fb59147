#ifndef QZESAMPLINGPRESET_H
#define QZESAMPLINGPRESET_H

#include <QString>

/// A uniform wavelength sampling offered by the colour dialog's sampling
/// editor, with the label its preset list shows.
class SamplingPreset
{
public:
    SamplingPreset(int start, int delta, int num);

    int start;
    int delta;
    int num;
    QString label;
};

#endif // QZESAMPLINGPRESET_H
