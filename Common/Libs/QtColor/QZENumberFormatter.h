#ifndef QZENUMBERFORMATTER_H
#define QZENUMBERFORMATTER_H

#include <cstddef>

// Writes numbers the way a C++ stream in the classic locale writes them with
// its default settings: floats with six significant digits in the general
// (%g) form, without trailing zeros ("0.94", "1e-06", "412.903", "-0",
// "nan", "-inf"). Spectrum files have always been written that way, so the
// bytes stay the same while the work is a few integer operations per number
// instead of a trip through the stream and the locale.
class QZENumberFormatter
{
public:
    // Room enough for any float or int, e.g. "-1.17549e-38" or "-2147483648".
    static constexpr size_t MaxLength = 24;

    // Writes value at out (MaxLength bytes of room) and returns the end.
    static char* writeFloat(char* out, float value);
    static char* writeInt(char* out, int value);

private:
    static char* writeDigits(char* out, unsigned value, int count);
    static char* writeFixed(char* out, unsigned digits, int count, int exponent);
    static char* writeScientific(char* out, unsigned digits, int count, int exponent);
};

#endif // QZENUMBERFORMATTER_H
