#ifndef QZECOLOR_H
#define QZECOLOR_H

#include <QColor>
#include <QMetaType>

#include <cmath>

/// A colour kept as hue (degrees), saturation and value of *linear* RGB.
///
/// This is the value every widget of the library passes around: in their
/// colorChanged() signals and their setColor()/getColor() pairs. It holds
/// three floats and nothing else (no alpha, nothing cached) and is copied by
/// value. The value field may exceed 1 for high-dynamic-range colours.
///
/// Every conversion works in single precision; the power calls widen their
/// argument and exponent to double and narrow the result back, so results are
/// the same on every compiler. The HSV <-> RGB rules live here once
/// (hsvToRgb() and rgbToHsv()) and every widget of the library goes through
/// them. The process-wide settings (s_useGamma, s_gamma, the reference white,
/// s_LabRange) are shared by every widget.
///
/// Usage:
/// \code
/// QZEColor orange(30.0f, 1.0f, 0.8f);        // hue 30 degrees, linear value 0.8
/// float r, g, b;
/// orange.getRGB(r, g, b);                    // linear 0.8, 0.4, 0
/// QColor onScreen = orange.getGammaQColor(); // sRGB-encoded while s_useGamma
/// orange.setRed(2.0f);                       // HDR red channel, value becomes 2
/// \endcode
class QZEColor
{
public:
    // --- Process-wide settings, shared by every widget -------------------

    /// Whether widgets show and edit gamma-encoded (sRGB) channel values.
    /// True by default: colours are linear while screens are sRGB, so swatches
    /// and channel read-outs only look right when they go through the sRGB
    /// encoding (getGammaQColor()). A host that works in display-referred
    /// values switches it off.
    static bool s_useGamma;

    /// The display gamma that the colour dialog edits and stores; 2.2 by
    /// default, the closest pure power curve to sRGB. No conversion of this
    /// class reads it: the sRGB curve of encodeSRGB() and decodeSRGB() is fixed.
    static float s_gamma;

    /// @{
    /// The reference white (CIE XYZ) of the Lab conversions HSVtoLAB() and
    /// LABtoHSV(). By default the white point of the sRGB/D65 matrices of
    /// QZEColorMatrix (the row sums of the RGB -> XYZ matrix), so linear
    /// (1, 1, 1) maps to exactly L* 100, a* 0, b* 0.
    static float s_reference_white_X;
    static float s_reference_white_Y;
    static float s_reference_white_Z;
    /// @}

    /// Span of the a* and b* axes on a 0..1 control: position p maps to
    /// (p - 0.5) * s_LabRange. 256 by default, so a control spans a*/b* from
    /// -128 to +128, the range of 8-bit Lab encodings, which holds the whole
    /// sRGB gamut (a* -86..98, b* -108..94).
    static float s_LabRange;

    // --- Value ------------------------------------------------------------

    float h = 0.0f; ///< Hue in degrees, [0, 360); the conversions never store 360.
    float s = 0.0f; ///< HSV saturation, 0..1 for in-range RGB; not clamped.
    float v = 0.0f; ///< HSV value of the linear RGB; above 1 for HDR colours.

    /// Black: hue, saturation and value 0.
    QZEColor() = default;
    /// A colour from hue (degrees, [0, 360)), saturation (0..1) and value
    /// (linear, 0 and up), stored as given.
    QZEColor(float hue, float saturation, float value) : h(hue), s(saturation), v(value) {}
    /// A colour from color's 8-bit red, green and blue, read as linear
    /// channels (byte / 255) and converted by rgbToHsv(); alpha is ignored.
    explicit QZEColor(const QColor& color) { setColor(color); }

    /// @{
    /// Field-by-field comparison of hue, saturation and value (exact float
    /// equality, so two HSV spellings of the same grey compare different).
    bool operator==(const QZEColor& o) const { return h == o.h && s == o.s && v == o.v; }
    bool operator!=(const QZEColor& o) const { return !(*this == o); }
    /// @}

    // --- Shared rules -----------------------------------------------------

    /// The one HSV -> RGB rule of the library. hue is in degrees: 360 and above
    /// count as 359.99 (nearly, not exactly, pure red) and a negative hue or
    /// NaN counts as 0. Channels come out linear and unclamped: a value above 1
    /// gives channels above 1.
    static void hsvToRgb(float hue, float sat, float val, float& r, float& g, float& b);
    /// The one RGB -> HSV rule of the library. hue comes out in [0, 360),
    /// saturation 0 for black and greys (grey also gets hue 0), value is the
    /// largest channel. When channels tie, red wins over green and green over
    /// blue. Nothing is clamped: negative channels fold into hue and saturation.
    static void rgbToHsv(float r, float g, float b, float& hue, float& sat, float& val);
    /// The colour of the linear channels r, g, b (unclamped), by rgbToHsv().
    static QZEColor fromRGB(float r, float g, float b);
    /// The sRGB transfer curve: linear c (negative counts as 0) to its encoded
    /// value; 1 maps to 1 and values above 1 stay above 1 (no upper clamp).
    static float encodeSRGB(float c);
    /// The inverse sRGB curve: encoded c to linear; values above 1 give linear
    /// values above 1.
    static float decodeSRGB(float c);
    /// Linear channel to 8 bits: truncated, not rounded (0.999 gives 254);
    /// below 0 or NaN gives 0, above 1 gives 255.
    static int toByte(float c);
    /// An opaque QColor of the channels r, g, b (0..1, clamped) through toByte().
    static QColor toQColor(float r, float g, float b);

    // --- Views --------------------------------------------------------------

    /// The colour's linear RGB, unclamped (channels above 1 for HDR colours).
    void getRGB(float& r, float& g, float& b) const { hsvToRgb(h, s, v, r, g, b); }
    /// Sets the colour from linear, unclamped RGB.
    void setRGB(float r, float g, float b) { rgbToHsv(r, g, b, h, s, v); }

    /// Overwrites the colour with color's 8-bit red, green and blue read as
    /// linear channels (byte / 255); alpha is ignored.
    void setColor(const QColor& color);
    /// The linear RGB as an opaque 8-bit QColor, clamped and truncated (a
    /// channel of 0.5 gives 127); no gamma.
    QColor getQColor() const;
    /// The colour as the screen should show it: while s_useGamma is set, the
    /// sRGB-encoded channels (getGammaRGB()) truncated to 8 bits (linear 0.5
    /// gives 187); otherwise getQColor(). Opaque.
    QColor getGammaQColor() const;
    /// The linear RGB with each channel clamped to 0..1, handed to
    /// QColor::setRgbF() (Qt's own rounding); no gamma. Opaque.
    QColor getClampedQColor() const;
    /// The sRGB-encoded channels: negative linear channels count as 0, values
    /// above 1 give encoded values above 1.
    void getGammaRGB(float& r, float& g, float& b) const;
    /// Sets the colour from sRGB-encoded channels, decoded to linear first.
    void setGammaRGB(float r, float g, float b);
    /// @{
    /// Replaces one linear channel, unclamped, and keeps the other two: on
    /// black, setRed(2.0f) gives hue 0, saturation 1, value 2.
    void setRed(float red);
    void setGreen(float green);
    void setBlue(float blue);
    /// @}

    /// CIE L*a*b* of the given HSV (not of this colour's own fields), from the
    /// linear RGB through the sRGB/D65 matrix and the reference white, without
    /// any gamma step. L* is 0..100 for in-range colours; a* and b* are
    /// roughly -128..128 (see s_LabRange).
    void HSVtoLAB(float hue, float sat, float val, float& L, float& a, float& b) const;
    /// The HSV of CIE L*a*b* (the inverse of HSVtoLAB()). Nothing is clamped:
    /// an out-of-gamut Lab gives negative linear channels, which the HSV rule
    /// folds into hue and saturation.
    void LABtoHSV(float L, float a, float b, float& hue, float& sat, float& val) const;

private:
    static float powf64(float x, float e) { return float(std::pow(double(x), double(e))); }
    static float labF(float t);
    static float labFInverse(float t);
};

Q_DECLARE_METATYPE(QZEColor)

// --- sRGB primaries with a D65 white -------------------------------------

/// The sRGB primaries with a D65 white, as used by the Lab conversions of
/// QZEColor.
namespace QZEColorMatrix {
/// Linear sRGB to CIE XYZ; row i gives X, Y or Z from (r, g, b).
constexpr float RGBtoXYZ[3][3] = {{0.4124564f, 0.3575761f, 0.1804375f},
                                  {0.2126729f, 0.7151522f, 0.0721750f},
                                  {0.0193339f, 0.1191920f, 0.9503041f}};
/// CIE XYZ to linear sRGB, the inverse of RGBtoXYZ.
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
