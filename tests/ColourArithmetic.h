#ifndef COLOURARITHMETIC_H
#define COLOURARITHMETIC_H

// HSV <-> RGB written out from the six-sector formulas, independently of the
// colour library, for the expected values of the widget tests.

#include "QZEColor.h"

#include <algorithm>
#include <cmath>

// RGB of the colour whose hue lies `sector` sixths round the circle, at
// saturation s and value v. A sector outside 0..6 counts as the first.
template <typename T>
void rgbInSector(T sector, T s, T v, T rgb[3])
{
    const int i = int(sector);
    const T f = sector - T(i);
    const T p = v * (T(1) - s);
    const T q = v * (T(1) - s * f);
    const T t = v * (T(1) - s * (T(1) - f));
    const T bySector[6][3] = {{v, t, p}, {q, v, p}, {p, v, t}, {p, q, v}, {t, p, v}, {v, p, q}};
    std::copy_n(bySector[i >= 0 && i < 6 ? i : 0], 3, rgb);
}

// In double precision, for a hue of 0 degrees or more; hues wrap at 360.
inline void hsvToRgb(double h, double s, double v, double rgb[3])
{
    rgbInSector(std::fmod(h / 60.0, 6.0), s, v, rgb);
}

struct Rgb
{
    float r, g, b;
};

// In single precision; a hue of 360 or more stays in the last sector and a
// negative one in the first.
inline Rgb rgbOf(const QZEColor& c)
{
    const float sector = c.h >= 360.0f ? 5.999833f : (c.h < 0.0f ? 0.0f : c.h / 60.0f);
    float rgb[3];
    rgbInSector(sector, c.s, c.v, rgb);
    return {rgb[0], rgb[1], rgb[2]};
}

// RGB to HSV by the largest and smallest channel; on ties red wins over green
// and green over blue.
inline QZEColor hsvOf(float r, float g, float b)
{
    const float max = std::max({r, g, b});
    const float min = std::min({r, g, b});
    float h = 0.0f;
    if (max != min) {
        if (max == r)
            h = 60.0f * (g - b) / (max - min);
        else if (max == g)
            h = 60.0f * (b - r) / (max - min) + 120.0f;
        else
            h = 60.0f * (r - g) / (max - min) + 240.0f;
    }
    if (h < 0.0f)
        h += 360.0f;
    return QZEColor(h, max == 0.0f ? 0.0f : (max - min) / max, max);
}

// The sRGB transfer functions in double precision.
inline double srgbEncoded(double c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

inline double srgbDecoded(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

#endif // COLOURARITHMETIC_H
