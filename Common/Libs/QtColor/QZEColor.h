#ifndef QZECOLOR_H
#define QZECOLOR_H

#include <QColor>
#include <QMetaType>

#include <cmath>

// A colour kept as hue (degrees), saturation and value of *linear* RGB.
//
// Every conversion works in single precision; the power calls widen their
// argument and exponent to double and narrow the result back, so results are
// the same on every compiler. The HSV <-> RGB rules live here once
// (hsvToRgb/rgbToHsv) and every widget of the library goes through them.
class QZEColor
{
public:
    // --- Process-wide settings, shared by every widget -------------------

    // true by default: colours are linear while screens are sRGB, so swatches
    // and channel read-outs only look right when they go through the sRGB
    // encoding. A host that works in display-referred values switches it off.
    static bool s_useGamma;

    // 2.2, the usual display gamma and the closest pure power curve to sRGB.
    // The dialog edits and stores it; no conversion here reads it.
    static float s_gamma;

    // The white point of the sRGB/D65 matrices below (the row sums of the
    // RGB -> XYZ matrix), so linear (1, 1, 1) maps to exactly L* 100, a* 0, b* 0.
    static float s_reference_white_X;
    static float s_reference_white_Y;
    static float s_reference_white_Z;

    // 256: a 0..1 control spans a*/b* from -128 to +128, the range of 8-bit
    // Lab encodings, which holds the whole sRGB gamut (a* -86..98, b* -108..94).
    static float s_LabRange;

    // --- Value ------------------------------------------------------------

    float h = 0.0f; // hue in degrees, [0, 360)
    float s = 0.0f; // HSV saturation
    float v = 0.0f; // HSV value of the linear RGB; above 1 for HDR colours

    QZEColor() = default;
    QZEColor(float hue, float saturation, float value) : h(hue), s(saturation), v(value) {}
    explicit QZEColor(const QColor& color) { setColor(color); }

    bool operator==(const QZEColor& o) const { return h == o.h && s == o.s && v == o.v; }
    bool operator!=(const QZEColor& o) const { return !(*this == o); }

    // --- Shared rules -----------------------------------------------------

    static void hsvToRgb(float hue, float sat, float val, float& r, float& g, float& b);
    static void rgbToHsv(float r, float g, float b, float& hue, float& sat, float& val);
    static QZEColor fromRGB(float r, float g, float b);
    static float encodeSRGB(float c);
    static float decodeSRGB(float c);
    // Linear channel to 8 bits: truncated, not rounded; NaN counts as below 0.
    static int toByte(float c);
    static QColor toQColor(float r, float g, float b);

    // --- Views --------------------------------------------------------------

    void getRGB(float& r, float& g, float& b) const { hsvToRgb(h, s, v, r, g, b); }
    void setRGB(float r, float g, float b) { rgbToHsv(r, g, b, h, s, v); }

    void setColor(const QColor& color);
    QColor getQColor() const;
    QColor getGammaQColor() const;
    QColor getClampedQColor() const;
    void getGammaRGB(float& r, float& g, float& b) const;
    void setGammaRGB(float r, float g, float b);
    void setRed(float red);
    void setGreen(float green);
    void setBlue(float blue);

    void HSVtoLAB(float hue, float sat, float val, float& L, float& a, float& b) const;
    void LABtoHSV(float L, float a, float b, float& hue, float& sat, float& val) const;

private:
    static float powf64(float x, float e) { return float(std::pow(double(x), double(e))); }
    static float labF(float t);
    static float labFInverse(float t);
};

Q_DECLARE_METATYPE(QZEColor)

// --- sRGB primaries with a D65 white -------------------------------------

namespace QZEColorMatrix {
constexpr float RGBtoXYZ[3][3] = {{0.4124564f, 0.3575761f, 0.1804375f},
                                  {0.2126729f, 0.7151522f, 0.0721750f},
                                  {0.0193339f, 0.1191920f, 0.9503041f}};
constexpr float XYZtoRGB[3][3] = {{3.2404542f, -1.5371385f, -0.4985314f},
                                  {-0.969266f, 1.8760108f, 0.041556f},
                                  {0.0556434f, -0.2040259f, 1.0572252f}};
} // namespace QZEColorMatrix

// --- Inline definitions ----------------------------------------------------

inline void QZEColor::hsvToRgb(float hue, float sat, float val, float& r, float& g, float& b)
{
    float sector = hue >= 360.0f ? 5.999833f : hue / 60.0f;
    if (hue < 0.0f)
        sector = 0.0f;
    // NaN falls outside 0..6 and takes sector 0 without an undefined cast.
    const int i = (sector >= 0.0f && sector < 6.0f) ? int(sector) : 0;
    const float f = sector - float(i);
    const float p = (1.0f - sat) * val;
    const float q = (1.0f - sat * f) * val;
    const float t = (1.0f - (1.0f - f) * sat) * val;
    switch (i) {
    case 1: r = q; g = val; b = p; break;
    case 2: r = p; g = val; b = t; break;
    case 3: r = p; g = q; b = val; break;
    case 4: r = t; g = p; b = val; break;
    case 5: r = val; g = p; b = q; break;
    default: r = val; g = t; b = p; break;
    }
}

inline void QZEColor::rgbToHsv(float r, float g, float b, float& hue, float& sat, float& val)
{
    float min;
    if (r >= g && r >= b) {
        min = g < b ? g : b;
        hue = min != r ? (g - b) * 60.0f / (r - min) : 0.0f;
        val = r;
    } else if (g >= r && g >= b) {
        min = r < b ? r : b;
        hue = min != g ? (b - r) * 60.0f / (g - min) + 120.0f : 0.0f;
        val = g;
    } else {
        min = g < r ? g : r;
        hue = min != b ? (r - g) * 60.0f / (b - min) + 240.0f : 0.0f;
        val = b;
    }
    if (hue < 0.0f)
        hue += 360.0f;
    sat = val == 0.0f ? 0.0f : (val - min) / val;
}

inline QZEColor QZEColor::fromRGB(float r, float g, float b)
{
    QZEColor c;
    c.setRGB(r, g, b);
    return c;
}

inline float QZEColor::encodeSRGB(float c)
{
    c = c > 0.0f ? c : 0.0f;
    if (c <= 0.0031308f)
        return c * 12.92f;
    return 1.055f * powf64(c, 0.41666666f) - 0.055f;
}

inline float QZEColor::decodeSRGB(float c)
{
    if (c <= 0.04045f)
        return c / 12.92f;
    const float base = (c + 0.055f) / 1.055f;
    return powf64(base > 0.0f ? base : 0.0f, 2.4f);
}

inline int QZEColor::toByte(float c)
{
    if (!(c >= 0.0f))
        return 0;
    if (c > 1.0f)
        return 255;
    return int(c * 255.0f);
}

inline QColor QZEColor::toQColor(float r, float g, float b)
{
    return QColor(toByte(r), toByte(g), toByte(b), 255);
}

inline void QZEColor::setColor(const QColor& color)
{
    setRGB(float(color.red()) / 255.0f, float(color.green()) / 255.0f,
           float(color.blue()) / 255.0f);
}

inline QColor QZEColor::getQColor() const
{
    float r, g, b;
    getRGB(r, g, b);
    return toQColor(r, g, b);
}

inline QColor QZEColor::getGammaQColor() const
{
    if (!s_useGamma)
        return getQColor();
    float r, g, b;
    getGammaRGB(r, g, b);
    return toQColor(r, g, b);
}

inline QColor QZEColor::getClampedQColor() const
{
    float r, g, b;
    getRGB(r, g, b);
    const auto clamp01 = [](float c) { return c < 0.0f ? 0.0f : (c > 1.0f ? 1.0f : c); };
    QColor color;
    color.setRgbF(clamp01(r), clamp01(g), clamp01(b), 1.0);
    return color;
}

inline void QZEColor::getGammaRGB(float& r, float& g, float& b) const
{
    getRGB(r, g, b);
    r = encodeSRGB(r);
    g = encodeSRGB(g);
    b = encodeSRGB(b);
}

inline void QZEColor::setGammaRGB(float r, float g, float b)
{
    setRGB(decodeSRGB(r), decodeSRGB(g), decodeSRGB(b));
}

inline void QZEColor::setRed(float red)
{
    float r, g, b;
    getRGB(r, g, b);
    setRGB(red, g, b);
}

inline void QZEColor::setGreen(float green)
{
    float r, g, b;
    getRGB(r, g, b);
    setRGB(r, green, b);
}

inline void QZEColor::setBlue(float blue)
{
    float r, g, b;
    getRGB(r, g, b);
    setRGB(r, g, blue);
}

inline float QZEColor::labF(float t)
{
    return t > 0.008856452f ? powf64(t, 1.0f / 3.0f) : 7.787037f * t + 0.13793103f;
}

inline float QZEColor::labFInverse(float t)
{
    return t > 0.20689656f ? t * t * t : (t - 0.13793103f) * 0.12841856f;
}

inline void QZEColor::HSVtoLAB(float hue, float sat, float val, float& L, float& a, float& b) const
{
    using QZEColorMatrix::RGBtoXYZ;
    float r, g, bl;
    hsvToRgb(hue, sat, val, r, g, bl);
    const float X = RGBtoXYZ[0][0] * r + RGBtoXYZ[0][1] * g + RGBtoXYZ[0][2] * bl;
    const float Y = RGBtoXYZ[1][0] * r + RGBtoXYZ[1][1] * g + RGBtoXYZ[1][2] * bl;
    const float Z = RGBtoXYZ[2][0] * r + RGBtoXYZ[2][1] * g + RGBtoXYZ[2][2] * bl;
    const float fx = labF(X / s_reference_white_X);
    const float fy = labF(Y / s_reference_white_Y);
    const float fz = labF(Z / s_reference_white_Z);
    L = 116.0f * fy - 16.0f;
    a = 500.0f * (fx - fy);
    b = 200.0f * (fy - fz);
}

inline void QZEColor::LABtoHSV(float L, float a, float b, float& hue, float& sat, float& val) const
{
    using QZEColorMatrix::XYZtoRGB;
    const float fy = (L + 16.0f) / 116.0f;
    const float fx = a / 500.0f + fy;
    const float fz = fy - b / 200.0f;
    const float X = s_reference_white_X * labFInverse(fx);
    const float Y = s_reference_white_Y * labFInverse(fy);
    const float Z = s_reference_white_Z * labFInverse(fz);
    const float r = XYZtoRGB[0][0] * X + XYZtoRGB[0][1] * Y + XYZtoRGB[0][2] * Z;
    const float g = XYZtoRGB[1][0] * X + XYZtoRGB[1][1] * Y + XYZtoRGB[1][2] * Z;
    const float bl = XYZtoRGB[2][0] * X + XYZtoRGB[2][1] * Y + XYZtoRGB[2][2] * Z;
    rgbToHsv(r, g, bl, hue, sat, val);
}

#endif // QZECOLOR_H
