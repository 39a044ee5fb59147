#include "QZENumberFormatter.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace {

constexpr int Precision = 6;
constexpr double LowestSixDigits = 100000.0;
constexpr double SixDigitsEnd = 1000000.0;

// Powers of ten from 10^-PowerBias, covering every scale a float needs to
// bring its six leading digits before the point (10^-34 .. 10^51) with room
// to spare.
constexpr int PowerBias = 40;
constexpr int PowerCount = 96;

struct PowersOfTen
{
    double value[PowerCount];
    PowersOfTen()
    {
        value[PowerBias] = 1.0;
        for (int k = 1; k + PowerBias < PowerCount; ++k)
            value[PowerBias + k] = value[PowerBias + k - 1] * 10.0;
        for (int k = 1; k <= PowerBias; ++k)
            value[PowerBias - k] = value[PowerBias - k + 1] / 10.0;
    }
};

double powerOfTen(int exponent)
{
    static const PowersOfTen powers;
    return powers.value[PowerBias + exponent];
}

// floor(log10(|x|)) for a finite non-zero float, possibly one too low or too
// high; the caller corrects it.
int estimateDecimalExponent(float x)
{
    int binaryExponent = 0;
    std::frexp(x, &binaryExponent);
    // floor((e - 1) * log10(2)) in integers: 78913 / 2^18 is log10(2) to 6 digits.
    return ((binaryExponent - 1) * 78913) >> 18;
}

char* writeWithLibrary(char* out, float value)
{
    return std::to_chars(out, out + QZENumberFormatter::MaxLength, value,
                         std::chars_format::general, Precision)
        .ptr;
}

} // namespace

// The six digits are |value| scaled into [10^5, 10^6) in double precision and
// rounded. The scaling is off by far less than 10^-6 of a unit, so the
// rounding is the exact value's unless the scaled number lies that close to
// a half: such a value (and nan, inf, zero) goes to std::to_chars, which
// rounds the exact binary value as printf does.
char* QZENumberFormatter::writeFloat(char* out, float value)
{
    if (!std::isfinite(value) || value == 0.0f)
        return writeWithLibrary(out, value);
    const double magnitude = std::fabs(double(value));
    int exponent = estimateDecimalExponent(value);
    double scaled = magnitude * powerOfTen(Precision - 1 - exponent);
    if (scaled < LowestSixDigits - 0.5)
        scaled = magnitude * powerOfTen(Precision - 1 - --exponent);
    else if (scaled >= SixDigitsEnd - 0.5)
        scaled = magnitude * powerOfTen(Precision - 1 - ++exponent);
    const double fraction = scaled - std::floor(scaled);
    if (std::fabs(fraction - 0.5) < 1e-6 || scaled < LowestSixDigits - 0.5
        || scaled >= SixDigitsEnd - 0.5)
        return writeWithLibrary(out, value);

    unsigned digits = unsigned(scaled + 0.5);
    int count = Precision;
    while (digits % 10 == 0) {
        digits /= 10;
        --count;
    }
    if (std::signbit(value))
        *out++ = '-';
    // printf's %g: fixed notation for exponents from -4 below the precision.
    if (exponent >= -4 && exponent < Precision)
        return writeFixed(out, digits, count, exponent);
    return writeScientific(out, digits, count, exponent);
}

char* QZENumberFormatter::writeInt(char* out, int value)
{
    return std::to_chars(out, out + MaxLength, value).ptr;
}

char* QZENumberFormatter::writeDigits(char* out, unsigned value, int count)
{
    for (int i = count - 1; i >= 0; --i) {
        out[i] = char('0' + value % 10);
        value /= 10;
    }
    return out + count;
}

char* QZENumberFormatter::writeFixed(char* out, unsigned digits, int count, int exponent)
{
    if (exponent < 0) {
        *out++ = '0';
        *out++ = '.';
        std::memset(out, '0', size_t(-exponent - 1));
        return writeDigits(out + (-exponent - 1), digits, count);
    }
    const int integerDigits = exponent + 1;
    if (count <= integerDigits) {
        out = writeDigits(out, digits, count);
        std::memset(out, '0', size_t(integerDigits - count));
        return out + (integerDigits - count);
    }
    unsigned divisor = 1;
    for (int i = integerDigits; i < count; ++i)
        divisor *= 10;
    out = writeDigits(out, digits / divisor, integerDigits);
    *out++ = '.';
    return writeDigits(out, digits % divisor, count - integerDigits);
}

char* QZENumberFormatter::writeScientific(char* out, unsigned digits, int count, int exponent)
{
    unsigned divisor = 1;
    for (int i = 1; i < count; ++i)
        divisor *= 10;
    *out++ = char('0' + digits / divisor);
    if (count > 1) {
        *out++ = '.';
        out = writeDigits(out, digits % divisor, count - 1);
    }
    *out++ = 'e';
    *out++ = exponent < 0 ? '-' : '+';
    const unsigned magnitude = unsigned(exponent < 0 ? -exponent : exponent);
    return writeDigits(out, magnitude, magnitude >= 100 ? 3 : 2);
}
