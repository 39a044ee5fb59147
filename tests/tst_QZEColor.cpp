#include "QZEColor.h"
#include "QZEQtCompat.h"
#include "TestHelpers.h"

#include <QVariant>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <type_traits>

#define QZE_COMPARE_RGB(actual, er, eg, eb, tolerance)                                         \
    do {                                                                                       \
        QZE_COMPARE_NEAR((actual).r, er, tolerance);                                           \
        QZE_COMPARE_NEAR((actual).g, eg, tolerance);                                           \
        QZE_COMPARE_NEAR((actual).b, eb, tolerance);                                           \
    } while (false)

#define QZE_COMPARE_LAB(actualL, actualA, actualB, expected, tolerance)                       \
    do {                                                                                       \
        QZE_COMPARE_NEAR(actualL, (expected).L, tolerance);                                    \
        QZE_COMPARE_NEAR(actualA, (expected).a, tolerance);                                    \
        QZE_COMPARE_NEAR(actualB, (expected).b, tolerance);                                    \
    } while (false)

#define QZE_COMPARE_BYTES(color, er, eg, eb)                                                   \
    do {                                                                                       \
        QCOMPARE((color).red(), er);                                                           \
        QCOMPARE((color).green(), eg);                                                         \
        QCOMPARE((color).blue(), eb);                                                          \
        QCOMPARE((color).alpha(), 255);                                                        \
    } while (false)

struct Rgb
{
    float r, g, b;
};
Q_DECLARE_METATYPE(Rgb)

namespace {

struct Lab
{
    double L, a, b;
};

struct RgbD
{
    double r, g, b;
};

Rgb linearOf(const QZEColor& color)
{
    Rgb c;
    color.getRGB(c.r, c.g, c.b);
    return c;
}

Rgb gammaOf(const QZEColor& color)
{
    Rgb c;
    color.getGammaRGB(c.r, c.g, c.b);
    return c;
}

QZEColor fromLinear(float r, float g, float b)
{
    QZEColor c(123.0f, 0.4f, 0.6f);
    c.setRGB(r, g, b);
    return c;
}

// --- Reference colorimetry in double precision -----------------------------

// Linear sRGB (D65) to CIE XYZ and back, as published with the sRGB standard.
const double kRgbToXyz[3][3] = {{0.4124564, 0.3575761, 0.1804375},
                                {0.2126729, 0.7151522, 0.0721750},
                                {0.0193339, 0.1191920, 0.9503041}};
const double kXyzToRgb[3][3] = {{3.2404542, -1.5371385, -0.4985314},
                                {-0.9692660, 1.8760108, 0.0415560},
                                {0.0556434, -0.2040259, 1.0572252}};

// CIE 1976 L*a*b*: delta = 6/29, f(t) = cbrt(t) above delta^3, else
// t / (3 delta^2) + 4/29.
constexpr double kDelta = 6.0 / 29.0;

double whiteOf(int row)
{
    return kRgbToXyz[row][0] + kRgbToXyz[row][1] + kRgbToXyz[row][2];
}

double cieF(double t)
{
    return t > kDelta * kDelta * kDelta ? std::cbrt(t) : t / (3.0 * kDelta * kDelta) + 4.0 / 29.0;
}

double cieFInverse(double t)
{
    return t > kDelta ? t * t * t : 3.0 * kDelta * kDelta * (t - 4.0 / 29.0);
}

Lab referenceLab(double r, double g, double b)
{
    double f[3];
    for (int row = 0; row < 3; ++row) {
        const double xyz = kRgbToXyz[row][0] * r + kRgbToXyz[row][1] * g + kRgbToXyz[row][2] * b;
        f[row] = cieF(xyz / whiteOf(row));
    }
    return {116.0 * f[1] - 16.0, 500.0 * (f[0] - f[1]), 200.0 * (f[1] - f[2])};
}

RgbD referenceRgbFromLab(double L, double a, double b)
{
    const double fy = (L + 16.0) / 116.0;
    const double xyz[3] = {whiteOf(0) * cieFInverse(a / 500.0 + fy), whiteOf(1) * cieFInverse(fy),
                           whiteOf(2) * cieFInverse(fy - b / 200.0)};
    double rgb[3];
    for (int row = 0; row < 3; ++row)
        rgb[row] = kXyzToRgb[row][0] * xyz[0] + kXyzToRgb[row][1] * xyz[1] + kXyzToRgb[row][2] * xyz[2];
    return {rgb[0], rgb[1], rgb[2]};
}

// sRGB transfer curves of IEC 61966-2-1, for non-negative input.
double referenceEncode(double c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

double referenceDecode(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

// A colour in HSV and linear RGB with its published L*a*b*.
void addLabColumns()
{
    QTest::addColumn<QZEColor>("hsv");
    QTest::addColumn<Rgb>("linear");
    QTest::addColumn<double>("L");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
}

// The reference formulas reproduce the published Lab of the linear colour,
// and HSVtoLAB of the same colour in HSV matches them.
void verifyLabOf(const QZEColor& hsv, const Rgb& linear, const Lab& published)
{
    const Lab reference = referenceLab(linear.r, linear.g, linear.b);
    QZE_COMPARE_LAB(reference.L, reference.a, reference.b, published, 1e-4);

    float outL, outA, outB;
    QZEColor().HSVtoLAB(hsv.h, hsv.s, hsv.v, outL, outA, outB);
    QZE_COMPARE_LAB(outL, outA, outB, reference, 1e-3);
}

} // namespace

class tst_QZEColor : public QObject
{
    Q_OBJECT

private slots:
    // Runs first: nothing in this program has asked for the type id yet.
    void metaTypeIsKnownByNameFromLoadTime();

    void init();
    void cleanup();

    // Edge cases
    void hueOf360IsNearlyPureRed_data();
    void hueOf360IsNearlyPureRed();
    void negativeHueIsTreatedAsZero_data();
    void negativeHueIsTreatedAsZero();
    void blackStoresZeroSaturation_data();
    void blackStoresZeroSaturation();
    void greyStoresZeroHueAndSaturation_data();
    void greyStoresZeroHueAndSaturation();
    void halfLinearShowsAs127OrGamma187_data();
    void halfLinearShowsAs127OrGamma187();
    void gammaRGBAboveOneStaysAboveOne_data();
    void gammaRGBAboveOneStaysAboveOne();
    void setRedTwoOnBlackGivesBrightRed();

    // HSV <-> RGB
    void hsvToRgbBySector_data();
    void hsvToRgbBySector();
    void nanHueFallsBackToSectorZero();
    void rgbToHsv_data();
    void rgbToHsv();
    void equalRedAndGreenTakeTheRedRule_data();
    void equalRedAndGreenTakeTheRedRule();
    void constructsFromQColorBytes_data();
    void constructsFromQColorBytes();
    void setColorOverwritesAllFields_data();
    void setColorOverwritesAllFields();
    void setChannelReplacesOneLinearChannel_data();
    void setChannelReplacesOneLinearChannel();
    void eightBitConversionTruncates_data();
    void eightBitConversionTruncates();
    void clampedQColorClampsAndRoundsLikeQt_data();
    void clampedQColorClampsAndRoundsLikeQt();

    // sRGB transfer
    void gammaRGBEncodesSRGB_data();
    void gammaRGBEncodesSRGB();
    void gammaRGBEncodesWhateverTheSwitch();
    void encoderTurnsNegativeIntoZero_data();
    void encoderTurnsNegativeIntoZero();
    void setGammaRGBDecodesSRGB_data();
    void setGammaRGBDecodesSRGB();
    void gammaRGBRoundTrips_data();
    void gammaRGBRoundTrips();

    // L*a*b*
    void referenceWhiteIsRowSumOfMatrix();
    void labOfPrimariesAndSecondaries_data();
    void labOfPrimariesAndSecondaries();
    void labOfWhiteIsExact();
    void labOfBlackHasZeroLightness();
    void labToHsvRoundTripsFromHsv_data();
    void labToHsvRoundTripsFromHsv();
    void labToHsvRoundTripsFromLab_data();
    void labToHsvRoundTripsFromLab();
    void lowLightLabUsesLinearSegment_data();
    void lowLightLabUsesLinearSegment();
    void lowLightLabInverseUsesLinearSegment_data();
    void lowLightLabInverseUsesLinearSegment();
    void outOfGamutLabFoldsNegativeChannelsIntoHsv_data();
    void outOfGamutLabFoldsNegativeChannelsIntoHsv();

    // Statics and value semantics
    void staticsHaveDocumentedDefaults();
    void isAPlainValueOfThreeFloats();
    void storesInQVariant();

private:
    static void addQColorRows();

    bool m_useGamma = false;
    float m_gamma = 0.0f;
    float m_whiteX = 0.0f;
    float m_whiteY = 0.0f;
    float m_whiteZ = 0.0f;
    float m_labRange = 0.0f;
};

void tst_QZEColor::metaTypeIsKnownByNameFromLoadTime()
{
    const int id = QZEQtCompat::metaTypeId("QZEColor");
    QVERIFY(id != QMetaType::UnknownType);
    QCOMPARE(id, qMetaTypeId<QZEColor>());
}

void tst_QZEColor::init()
{
    m_useGamma = QZEColor::s_useGamma;
    m_gamma = QZEColor::s_gamma;
    m_whiteX = QZEColor::s_reference_white_X;
    m_whiteY = QZEColor::s_reference_white_Y;
    m_whiteZ = QZEColor::s_reference_white_Z;
    m_labRange = QZEColor::s_LabRange;
}

void tst_QZEColor::cleanup()
{
    QZEColor::s_useGamma = m_useGamma;
    QZEColor::s_gamma = m_gamma;
    QZEColor::s_reference_white_X = m_whiteX;
    QZEColor::s_reference_white_Y = m_whiteY;
    QZEColor::s_reference_white_Z = m_whiteZ;
    QZEColor::s_LabRange = m_labRange;
}

// --- Edge cases --------------------------------------------------------------

void tst_QZEColor::hueOf360IsNearlyPureRed_data()
{
    QTest::addColumn<float>("sat");
    QTest::addColumn<float>("val");
    QTest::addColumn<Rgb>("expected");

    // Sector 5 with f = 0.999833: p = (1 - s) v, q = (1 - s f) v, result (v, p, q).
    QTest::newRow("full") << 1.0f << 1.0f << Rgb{1.0f, 0.0f, 0.000167f};
    QTest::newRow("half saturated") << 0.5f << 0.8f << Rgb{0.8f, 0.4f, 0.4000668f};
}

void tst_QZEColor::hueOf360IsNearlyPureRed()
{
    QFETCH(float, sat);
    QFETCH(float, val);
    QFETCH(Rgb, expected);

    const Rgb rgb = linearOf(QZEColor(360.0f, sat, val));
    QZE_COMPARE_RGB(rgb, expected.r, expected.g, expected.b, 1e-6);
    QVERIFY2(rgb.b > rgb.g, "blue keeps a trace of the last sector");
}

void tst_QZEColor::negativeHueIsTreatedAsZero_data()
{
    QTest::addColumn<float>("hue");

    QTest::newRow("-0.001") << -0.001f;
    QTest::newRow("-30") << -30.0f;
    QTest::newRow("-400") << -400.0f;
}

void tst_QZEColor::negativeHueIsTreatedAsZero()
{
    QFETCH(float, hue);

    // Sector 0 with f = 0 at s 0.5, v 0.8: (v, t, p) = (0.8, 0.4, 0.4); a
    // wrapped hue (330 for -30) would have given (0.8, 0.4, 0.6).
    const Rgb rgb = linearOf(QZEColor(hue, 0.5f, 0.8f));
    QZE_COMPARE_RGB(rgb, 0.8, 0.4, 0.4, 1e-6);
}

void tst_QZEColor::blackStoresZeroSaturation_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<float>("hue");

    QTest::newRow("linear black") << fromLinear(0.0f, 0.0f, 0.0f) << 0.0f;
    QTest::newRow("QColor black") << QZEColor(QColor(0, 0, 0)) << 0.0f;
    // Red ties with blue as the largest channel: hue (g - b) 60 / (r - min) = -60, +360.
    QTest::newRow("black with negative green") << fromLinear(0.0f, -0.5f, 0.0f) << 300.0f;

    QZEColor redToBlack(0.0f, 1.0f, 1.0f);
    redToBlack.setRed(0.0f);
    QTest::newRow("red with red set to 0") << redToBlack << 0.0f;
}

void tst_QZEColor::blackStoresZeroSaturation()
{
    QFETCH(QZEColor, color);
    QFETCH(float, hue);

    QZE_COMPARE_NEAR(color.v, 0.0, 0.0);
    QZE_COMPARE_NEAR(color.s, 0.0, 0.0);
    QZE_COMPARE_NEAR(color.h, hue, 1e-4);
}

void tst_QZEColor::greyStoresZeroHueAndSaturation_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<float>("value");

    QTest::newRow("linear 0.5") << fromLinear(0.5f, 0.5f, 0.5f) << 0.5f;
    QTest::newRow("linear white") << fromLinear(1.0f, 1.0f, 1.0f) << 1.0f;
    QTest::newRow("bright grey 2") << fromLinear(2.0f, 2.0f, 2.0f) << 2.0f;
    QTest::newRow("QColor 128") << QZEColor(QColor(128, 128, 128)) << 128.0f / 255.0f;
    QTest::newRow("sRGB grey") << [] {
        QZEColor c(200.0f, 0.7f, 0.3f);
        c.setGammaRGB(0.5f, 0.5f, 0.5f);
        return c;
    }() << 0.21404114f;
}

void tst_QZEColor::greyStoresZeroHueAndSaturation()
{
    QFETCH(QZEColor, color);
    QFETCH(float, value);

    QZE_COMPARE_NEAR(color.h, 0.0, 0.0);
    QZE_COMPARE_NEAR(color.s, 0.0, 0.0);
    QZE_COMPARE_NEAR(color.v, value, 1e-6);
}

void tst_QZEColor::halfLinearShowsAs127OrGamma187_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<int>("plain");
    QTest::addColumn<int>("gamma");

    // 0.5 * 255 = 127.5 and sRGB(0.5) * 255 = 0.7353569 * 255 = 187.516, both truncated.
    QTest::newRow("gamma on") << true << 127 << 187;
    QTest::newRow("gamma off") << false << 127 << 127;
}

void tst_QZEColor::halfLinearShowsAs127OrGamma187()
{
    QFETCH(bool, useGamma);
    QFETCH(int, plain);
    QFETCH(int, gamma);

    QZEColor::s_useGamma = useGamma;
    const QZEColor half(0.0f, 0.0f, 0.5f);
    QZE_COMPARE_BYTES(half.getQColor(), plain, plain, plain);
    QZE_COMPARE_BYTES(half.getGammaQColor(), gamma, gamma, gamma);
}

void tst_QZEColor::gammaRGBAboveOneStaysAboveOne_data()
{
    QTest::addColumn<float>("value");

    QTest::newRow("1.001") << 1.001f;
    QTest::newRow("2") << 2.0f;
    QTest::newRow("100") << 100.0f;
}

void tst_QZEColor::gammaRGBAboveOneStaysAboveOne()
{
    QFETCH(float, value);

    QZEColor::s_useGamma = true;
    const QZEColor bright(0.0f, 0.0f, value);
    const Rgb encoded = gammaOf(bright);
    const double expected = referenceEncode(double(value));
    QVERIFY(expected > 1.0);
    QZE_COMPARE_RGB(encoded, expected, expected, expected, 1e-6 * expected);
    QVERIFY(encoded.r > 1.0f);
    QZE_COMPARE_BYTES(bright.getGammaQColor(), 255, 255, 255);
}

void tst_QZEColor::setRedTwoOnBlackGivesBrightRed()
{
    QZEColor color;
    color.setRed(2.0f);
    QZE_COMPARE_NEAR(color.h, 0.0, 0.0);
    QZE_COMPARE_NEAR(color.s, 1.0, 0.0);
    QZE_COMPARE_NEAR(color.v, 2.0, 0.0);
}

// --- HSV <-> RGB -------------------------------------------------------------

void tst_QZEColor::hsvToRgbBySector_data()
{
    QTest::addColumn<float>("hue");
    QTest::addColumn<Rgb>("expected");

    // s 0.5, v 0.8, f 0.25: p = 0.4, q = (1 - 0.125) 0.8 = 0.7, t = (1 - 0.375) 0.8 = 0.5.
    QTest::newRow("sector 0 (v, t, p)") << 15.0f << Rgb{0.8f, 0.5f, 0.4f};
    QTest::newRow("sector 1 (q, v, p)") << 75.0f << Rgb{0.7f, 0.8f, 0.4f};
    QTest::newRow("sector 2 (p, v, t)") << 135.0f << Rgb{0.4f, 0.8f, 0.5f};
    QTest::newRow("sector 3 (p, q, v)") << 195.0f << Rgb{0.4f, 0.7f, 0.8f};
    QTest::newRow("sector 4 (t, p, v)") << 255.0f << Rgb{0.5f, 0.4f, 0.8f};
    QTest::newRow("sector 5 (v, p, q)") << 315.0f << Rgb{0.8f, 0.4f, 0.7f};
    // Sector starts, f = 0: q = v, t = p.
    QTest::newRow("hue 0") << 0.0f << Rgb{0.8f, 0.4f, 0.4f};
    QTest::newRow("hue 60 starts sector 1") << 60.0f << Rgb{0.8f, 0.8f, 0.4f};
    QTest::newRow("hue 180 starts sector 3") << 180.0f << Rgb{0.4f, 0.8f, 0.8f};
    // f = 0.998333: q = (1 - 0.4991667) 0.8.
    QTest::newRow("hue 359.9") << 359.9f << Rgb{0.8f, 0.4f, 0.4006667f};
}

void tst_QZEColor::hsvToRgbBySector()
{
    QFETCH(float, hue);
    QFETCH(Rgb, expected);

    QZE_COMPARE_RGB(linearOf(QZEColor(hue, 0.5f, 0.8f)), expected.r, expected.g, expected.b, 1e-6);
}

void tst_QZEColor::nanHueFallsBackToSectorZero()
{
    // A NaN hue is the only way to reach a sector outside 0..5; the fallback
    // is the sector 0 order (v, t, p), with t = NaN since f is NaN.
    const Rgb rgb = linearOf(QZEColor(std::nanf(""), 0.5f, 0.8f));
    QZE_COMPARE_NEAR(rgb.r, 0.8, 1e-6);
    QVERIFY(std::isnan(rgb.g));
    QZE_COMPARE_NEAR(rgb.b, 0.4, 1e-6);
}

void tst_QZEColor::rgbToHsv_data()
{
    QTest::addColumn<Rgb>("rgb");
    QTest::addColumn<float>("hue");
    QTest::addColumn<float>("sat");
    QTest::addColumn<float>("val");

    QTest::newRow("red largest") << Rgb{0.8f, 0.4f, 0.2f} << 20.0f << 0.75f << 0.8f;
    QTest::newRow("green largest") << Rgb{0.2f, 0.8f, 0.4f} << 140.0f << 0.75f << 0.8f;
    QTest::newRow("blue largest") << Rgb{0.4f, 0.2f, 0.8f} << 260.0f << 0.75f << 0.8f;
    // (g - b) 60 / (r - min) = -30, stored +360.
    QTest::newRow("negative hue wraps") << Rgb{1.0f, 0.0f, 0.5f} << 330.0f << 1.0f << 1.0f;
    QTest::newRow("negative hue wraps, bright") << Rgb{2.0f, 0.5f, 1.0f} << 340.0f << 0.75f << 2.0f;
    QTest::newRow("red equals green") << Rgb{0.8f, 0.8f, 0.2f} << 60.0f << 0.75f << 0.8f;
    QTest::newRow("red equals blue") << Rgb{0.8f, 0.2f, 0.8f} << 300.0f << 0.75f << 0.8f;
    QTest::newRow("green equals blue") << Rgb{0.2f, 0.8f, 0.8f} << 180.0f << 0.75f << 0.8f;
    QTest::newRow("all equal") << Rgb{0.3f, 0.3f, 0.3f} << 0.0f << 0.0f << 0.3f;
    // min -0.2: hue (0.4 + 0.2) 60 / 1.0 = 36, saturation 1.0 / 0.8.
    QTest::newRow("negative channel") << Rgb{0.8f, 0.4f, -0.2f} << 36.0f << 1.25f << 0.8f;
    QTest::newRow("bright") << Rgb{2.0f, 1.0f, 0.5f} << 20.0f << 0.75f << 2.0f;
}

void tst_QZEColor::rgbToHsv()
{
    QFETCH(Rgb, rgb);
    QFETCH(float, hue);
    QFETCH(float, sat);
    QFETCH(float, val);

    const QZEColor color = fromLinear(rgb.r, rgb.g, rgb.b);
    QZE_COMPARE_NEAR(color.h, hue, 1e-4);
    QZE_COMPARE_NEAR(color.s, sat, 1e-6);
    QZE_COMPARE_NEAR(color.v, val, 1e-6);
}

void tst_QZEColor::equalRedAndGreenTakeTheRedRule_data()
{
    QTest::addColumn<float>("redGreen");
    QTest::addColumn<float>("blue");

    // Values where the two rules round to different neighbours of 60 in
    // single precision, so the rule taken shows in the stored hue.
    QTest::newRow("0.005, 0") << 0.005f << 0.0f;
    QTest::newRow("0.01, 0") << 0.01f << 0.0f;
    QTest::newRow("0.009, 0.004") << 0.009f << 0.004f;
    QTest::newRow("0.008, 0.005") << 0.008f << 0.005f;
}

void tst_QZEColor::equalRedAndGreenTakeTheRedRule()
{
    QFETCH(float, redGreen);
    QFETCH(float, blue);

    const float span = redGreen - blue;
    const float redRule = (redGreen - blue) * 60.0f / span;
    const float greenRule = (blue - redGreen) * 60.0f / span + 120.0f;
    QVERIFY2(redRule != greenRule, "row does not tell the two rules apart");

    const QZEColor color = fromLinear(redGreen, redGreen, blue);
    QZE_COMPARE_NEAR(color.h, redRule, 0.0);
}

void tst_QZEColor::addQColorRows()
{
    QTest::addColumn<QColor>("qcolor");
    QTest::addColumn<float>("hue");
    QTest::addColumn<float>("sat");
    QTest::addColumn<float>("val");

    // Channels are bytes / 255: 51, 204, 102 is 0.2, 0.8, 0.4.
    QTest::newRow("51 204 102") << QColor(51, 204, 102) << 140.0f << 0.75f << 0.8f;
    QTest::newRow("alpha ignored") << QColor(51, 204, 102, 10) << 140.0f << 0.75f << 0.8f;
    // (128 / 255) 60 = 30.117647.
    QTest::newRow("orange") << QColor(255, 128, 0) << 30.117647f << 1.0f << 1.0f;
    // -(128 / 255) 60 + 360 = 329.882353.
    QTest::newRow("pink wraps") << QColor(255, 0, 128) << 329.882353f << 1.0f << 1.0f;
    QTest::newRow("blue") << QColor(0, 0, 255) << 240.0f << 1.0f << 1.0f;
    QTest::newRow("white") << QColor(255, 255, 255) << 0.0f << 0.0f << 1.0f;
    QTest::newRow("black") << QColor(0, 0, 0) << 0.0f << 0.0f << 0.0f;
    QTest::newRow("dark green") << QColor(0, 1, 0) << 120.0f << 1.0f << 1.0f / 255.0f;
}

void tst_QZEColor::constructsFromQColorBytes_data()
{
    addQColorRows();
}

void tst_QZEColor::constructsFromQColorBytes()
{
    QFETCH(QColor, qcolor);
    QFETCH(float, hue);
    QFETCH(float, sat);
    QFETCH(float, val);

    const QZEColor color(qcolor);
    QZE_COMPARE_NEAR(color.h, hue, 1e-4);
    QZE_COMPARE_NEAR(color.s, sat, 1e-6);
    QZE_COMPARE_NEAR(color.v, val, 1e-6);
}

void tst_QZEColor::setColorOverwritesAllFields_data()
{
    addQColorRows();
}

void tst_QZEColor::setColorOverwritesAllFields()
{
    QFETCH(QColor, qcolor);
    QFETCH(float, hue);
    QFETCH(float, sat);
    QFETCH(float, val);

    QZEColor color(77.0f, 0.3f, 0.9f);
    color.setColor(qcolor);
    QZE_COMPARE_NEAR(color.h, hue, 1e-4);
    QZE_COMPARE_NEAR(color.s, sat, 1e-6);
    QZE_COMPARE_NEAR(color.v, val, 1e-6);
}

void tst_QZEColor::setChannelReplacesOneLinearChannel_data()
{
    QTest::addColumn<int>("channel");
    QTest::addColumn<float>("value");
    QTest::addColumn<float>("hue");
    QTest::addColumn<float>("sat");
    QTest::addColumn<float>("val");

    // Each row starts from linear (0.8, 0.4, 0.2).
    QTest::newRow("red 0.2") << 0 << 0.2f << 120.0f << 0.5f << 0.4f;
    // (1.6, 0.4, 0.2): hue 0.2 * 60 / 1.4, saturation 1.4 / 1.6.
    QTest::newRow("red 1.6") << 0 << 1.6f << 8.571429f << 0.875f << 1.6f;
    QTest::newRow("green 0.8") << 1 << 0.8f << 60.0f << 0.75f << 0.8f;
    // No clamp: (0.8, -0.2, 0.2) has hue -24 + 360 and saturation 1.0 / 0.8.
    QTest::newRow("green -0.2") << 1 << -0.2f << 336.0f << 1.25f << 0.8f;
    QTest::newRow("blue 0.8") << 2 << 0.8f << 300.0f << 0.5f << 0.8f;
    QTest::newRow("blue 1.6") << 2 << 1.6f << 260.0f << 0.75f << 1.6f;
}

void tst_QZEColor::setChannelReplacesOneLinearChannel()
{
    QFETCH(int, channel);
    QFETCH(float, value);
    QFETCH(float, hue);
    QFETCH(float, sat);
    QFETCH(float, val);

    QZEColor color(20.0f, 0.75f, 0.8f);
    QZE_COMPARE_RGB(linearOf(color), 0.8, 0.4, 0.2, 1e-6);
    switch (channel) {
    case 0: color.setRed(value); break;
    case 1: color.setGreen(value); break;
    default: color.setBlue(value); break;
    }
    QZE_COMPARE_NEAR(color.h, hue, 1e-4);
    QZE_COMPARE_NEAR(color.s, sat, 1e-6);
    QZE_COMPARE_NEAR(color.v, val, 1e-6);
}

void tst_QZEColor::eightBitConversionTruncates_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");

    QTest::newRow("0") << QZEColor(0.0f, 0.0f, 0.0f) << 0 << 0 << 0;
    QTest::newRow("0.0039") << QZEColor(0.0f, 0.0f, 0.0039f) << 0 << 0 << 0;
    QTest::newRow("0.3") << QZEColor(0.0f, 0.0f, 0.3f) << 76 << 76 << 76;
    QTest::newRow("0.999") << QZEColor(0.0f, 0.0f, 0.999f) << 254 << 254 << 254;
    QTest::newRow("1") << QZEColor(0.0f, 0.0f, 1.0f) << 255 << 255 << 255;
    QTest::newRow("1.0001") << QZEColor(0.0f, 0.0f, 1.0001f) << 255 << 255 << 255;
    QTest::newRow("1000") << QZEColor(0.0f, 0.0f, 1000.0f) << 255 << 255 << 255;
    QTest::newRow("-0.001") << QZEColor(0.0f, 0.0f, -0.001f) << 0 << 0 << 0;
    QTest::newRow("-5") << QZEColor(0.0f, 0.0f, -5.0f) << 0 << 0 << 0;
    // Linear (2, 0.75, -0.5): hue 30, saturation 2.5 / 2; 0.75 * 255 = 191.25.
    QTest::newRow("mixed") << QZEColor(30.0f, 1.25f, 2.0f) << 255 << 191 << 0;
}

void tst_QZEColor::eightBitConversionTruncates()
{
    QFETCH(QZEColor, color);
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);

    QZE_COMPARE_BYTES(color.getQColor(), red, green, blue);
    QZEColor::s_useGamma = false;
    QZE_COMPARE_BYTES(color.getGammaQColor(), red, green, blue);
}

void tst_QZEColor::clampedQColorClampsAndRoundsLikeQt_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<Rgb>("clamped");
    QTest::addColumn<int>("red");
    QTest::addColumn<int>("green");
    QTest::addColumn<int>("blue");

    // QColor keeps 16 bits: round(c * 65535), read back as round(x / 257).
    // 0.5 -> 32768 -> 128 (truncation would give 127).
    QTest::newRow("0.5") << QZEColor(0.0f, 0.0f, 0.5f) << Rgb{0.5f, 0.5f, 0.5f} << 128 << 128 << 128;
    // 0.999 -> 65469 -> 255 (truncation would give 254).
    QTest::newRow("0.999") << QZEColor(0.0f, 0.0f, 0.999f) << Rgb{0.999f, 0.999f, 0.999f} << 255
                           << 255 << 255;
    QTest::newRow("0.2") << QZEColor(0.0f, 0.0f, 0.2f) << Rgb{0.2f, 0.2f, 0.2f} << 51 << 51 << 51;
    QTest::newRow("above 1") << QZEColor(0.0f, 0.0f, 1.5f) << Rgb{1.0f, 1.0f, 1.0f} << 255 << 255
                             << 255;
    QTest::newRow("below 0") << QZEColor(0.0f, 0.0f, -0.5f) << Rgb{0.0f, 0.0f, 0.0f} << 0 << 0 << 0;
    // Linear (2, 0.75, -0.5): 0.75 -> 49151 -> 191.
    QTest::newRow("mixed") << QZEColor(30.0f, 1.25f, 2.0f) << Rgb{1.0f, 0.75f, 0.0f} << 255 << 191
                           << 0;
}

void tst_QZEColor::clampedQColorClampsAndRoundsLikeQt()
{
    QFETCH(QZEColor, color);
    QFETCH(Rgb, clamped);
    QFETCH(int, red);
    QFETCH(int, green);
    QFETCH(int, blue);

    // The switch must not bring in the sRGB curve.
    QZEColor::s_useGamma = true;
    const QColor qcolor = color.getClampedQColor();
    QZE_COMPARE_BYTES(qcolor, red, green, blue);
    // Full 16-bit precision, as only setRgbF gives.
    const double step = 1.0 / 65535.0;
    QZE_COMPARE_NEAR(qcolor.redF(), clamped.r, step);
    QZE_COMPARE_NEAR(qcolor.greenF(), clamped.g, step);
    QZE_COMPARE_NEAR(qcolor.blueF(), clamped.b, step);
}

// --- sRGB transfer -----------------------------------------------------------

void tst_QZEColor::gammaRGBEncodesSRGB_data()
{
    QTest::addColumn<float>("linear");

    QTest::newRow("zero") << 0.0f;
    QTest::newRow("linear segment 0.001") << 0.001f;
    QTest::newRow("linear segment 0.003") << 0.003f;
    QTest::newRow("power segment 0.0032") << 0.0032f;
    QTest::newRow("power segment 0.01") << 0.01f;
    QTest::newRow("power segment 0.18") << 0.18f;
    QTest::newRow("power segment 0.5") << 0.5f;
    QTest::newRow("one") << 1.0f;
    QTest::newRow("above one 16") << 16.0f;
}

void tst_QZEColor::gammaRGBEncodesSRGB()
{
    QFETCH(float, linear);

    const double expected = referenceEncode(double(linear));
    QZE_COMPARE_RGB(gammaOf(QZEColor(0.0f, 0.0f, linear)), expected, expected, expected, 1e-6);
}

void tst_QZEColor::gammaRGBEncodesWhateverTheSwitch()
{
    QZEColor::s_useGamma = false;
    const double expected = referenceEncode(0.5);
    QZE_COMPARE_NEAR(expected, 0.7353569, 1e-7);
    QZE_COMPARE_RGB(gammaOf(QZEColor(0.0f, 0.0f, 0.5f)), expected, expected, expected, 1e-6);
}

void tst_QZEColor::encoderTurnsNegativeIntoZero_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<double>("red");
    QTest::addColumn<double>("green");

    QTest::newRow("grey -1e-4") << QZEColor(0.0f, 0.0f, -1e-4f) << 0.0 << 0.0;
    QTest::newRow("grey -0.25") << QZEColor(0.0f, 0.0f, -0.25f) << 0.0 << 0.0;
    // Linear (2, 0.75, -0.5): only blue is negative.
    QTest::newRow("blue below 0") << QZEColor(30.0f, 1.25f, 2.0f) << referenceEncode(2.0)
                                  << referenceEncode(0.75);
}

void tst_QZEColor::encoderTurnsNegativeIntoZero()
{
    QFETCH(QZEColor, color);
    QFETCH(double, red);
    QFETCH(double, green);

    const Rgb encoded = gammaOf(color);
    QZE_COMPARE_NEAR(encoded.r, red, 1e-6);
    QZE_COMPARE_NEAR(encoded.g, green, 1e-6);
    QZE_COMPARE_NEAR(encoded.b, 0.0, 0.0);
}

void tst_QZEColor::setGammaRGBDecodesSRGB_data()
{
    QTest::addColumn<float>("encoded");

    QTest::newRow("zero") << 0.0f;
    QTest::newRow("linear segment 0.02") << 0.02f;
    QTest::newRow("linear segment 0.04") << 0.04f;
    QTest::newRow("linear segment, negative") << -0.1f;
    QTest::newRow("power segment 0.041") << 0.041f;
    QTest::newRow("power segment 0.2") << 0.2f;
    QTest::newRow("power segment 0.5") << 0.5f;
    QTest::newRow("power segment 0.7353569") << 0.7353569f;
    QTest::newRow("one") << 1.0f;
    QTest::newRow("above one 1.5") << 1.5f;
}

void tst_QZEColor::setGammaRGBDecodesSRGB()
{
    QFETCH(float, encoded);

    QZEColor color(10.0f, 0.5f, 0.5f);
    color.setGammaRGB(encoded, encoded, encoded);
    QZE_COMPARE_NEAR(color.v, referenceDecode(double(encoded)), 1e-6);
    QZE_COMPARE_NEAR(color.s, 0.0, 0.0);
}

void tst_QZEColor::gammaRGBRoundTrips_data()
{
    QTest::addColumn<Rgb>("encoded");

    QTest::newRow("mid tones") << Rgb{0.2f, 0.5f, 0.9f};
    QTest::newRow("both segments") << Rgb{1.0f, 0.0f, 0.02f};
    QTest::newRow("dark") << Rgb{0.01f, 0.03f, 0.045f};
    QTest::newRow("bright") << Rgb{1.2f, 0.3f, 0.6f};
}

void tst_QZEColor::gammaRGBRoundTrips()
{
    QFETCH(Rgb, encoded);

    QZEColor color;
    color.setGammaRGB(encoded.r, encoded.g, encoded.b);
    QZE_COMPARE_RGB(gammaOf(color), encoded.r, encoded.g, encoded.b, 1e-5);
}

// --- L*a*b* --------------------------------------------------------------------

void tst_QZEColor::referenceWhiteIsRowSumOfMatrix()
{
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_X, 0.4124564f + 0.3575761f + 0.1804375f, 0.0);
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_Y, 0.2126729f + 0.7151522f + 0.0721750f, 0.0);
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_Z, 0.0193339f + 0.1191920f + 0.9503041f, 0.0);
    // D65 in XYZ, Y normalised to 1.
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_X, 0.95047, 1e-6);
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_Y, 1.0, 1e-6);
    QZE_COMPARE_NEAR(QZEColor::s_reference_white_Z, 1.08883, 1e-6);
}

void tst_QZEColor::labOfPrimariesAndSecondaries_data()
{
    addLabColumns();

    // Published CIE L*a*b* of the sRGB primaries and secondaries under D65.
    QTest::newRow("red") << QZEColor(0, 1, 1) << Rgb{1, 0, 0} << 53.2408 << 80.0925 << 67.2032;
    QTest::newRow("yellow") << QZEColor(60, 1, 1) << Rgb{1, 1, 0} << 97.1393 << -21.5537 << 94.4780;
    QTest::newRow("green") << QZEColor(120, 1, 1) << Rgb{0, 1, 0} << 87.7347 << -86.1827 << 83.1793;
    QTest::newRow("cyan") << QZEColor(180, 1, 1) << Rgb{0, 1, 1} << 91.1132 << -48.0875 << -14.1312;
    QTest::newRow("blue") << QZEColor(240, 1, 1) << Rgb{0, 0, 1} << 32.2970 << 79.1875 << -107.8602;
    QTest::newRow("magenta") << QZEColor(300, 1, 1) << Rgb{1, 0, 1} << 60.3242 << 98.2343 << -60.8249;
    QTest::newRow("white") << QZEColor(0, 0, 1) << Rgb{1, 1, 1} << 100.0 << 0.0 << 0.0;
    QTest::newRow("black") << QZEColor(0, 0, 0) << Rgb{0, 0, 0} << 0.0 << 0.0 << 0.0;
}

void tst_QZEColor::labOfPrimariesAndSecondaries()
{
    QFETCH(QZEColor, hsv);
    QFETCH(Rgb, linear);
    QFETCH(double, L);
    QFETCH(double, a);
    QFETCH(double, b);

    QZE_CHECK(verifyLabOf(hsv, linear, {L, a, b}));

    // And back: the published Lab lands on the primary again.
    float h, s, v;
    QZEColor().LABtoHSV(float(L), float(a), float(b), h, s, v);
    QZE_COMPARE_RGB(linearOf(QZEColor(h, s, v)), linear.r, linear.g, linear.b, 1e-4);
}

void tst_QZEColor::labOfWhiteIsExact()
{
    float L, a, b;
    // The object's own fields play no part.
    QZEColor(200.0f, 0.5f, 0.1f).HSVtoLAB(0.0f, 0.0f, 1.0f, L, a, b);
    QZE_COMPARE_LAB(L, a, b, (Lab{100.0, 0.0, 0.0}), 0.0);
}

void tst_QZEColor::labOfBlackHasZeroLightness()
{
    float L, a, b;
    QZEColor(200.0f, 0.5f, 1.0f).HSVtoLAB(0.0f, 0.0f, 0.0f, L, a, b);
    QZE_COMPARE_NEAR(L, 0.0, 1e-5);
    QZE_COMPARE_NEAR(a, 0.0, 0.0);
    QZE_COMPARE_NEAR(b, 0.0, 0.0);
}

void tst_QZEColor::labToHsvRoundTripsFromHsv_data()
{
    QTest::addColumn<QZEColor>("hsv");

    QTest::newRow("orange") << QZEColor(20.0f, 0.75f, 0.8f);
    QTest::newRow("steel blue") << QZEColor(200.0f, 0.3f, 0.5f);
    QTest::newRow("dark purple") << QZEColor(300.0f, 0.9f, 0.1f);
    QTest::newRow("low light") << QZEColor(100.0f, 0.5f, 0.004f);
    QTest::newRow("bright") << QZEColor(45.0f, 0.5f, 3.0f);
}

void tst_QZEColor::labToHsvRoundTripsFromHsv()
{
    QFETCH(QZEColor, hsv);

    const QZEColor converter;
    float L, a, b;
    converter.HSVtoLAB(hsv.h, hsv.s, hsv.v, L, a, b);
    float h, s, v;
    converter.LABtoHSV(L, a, b, h, s, v);
    QZE_COMPARE_NEAR(h, hsv.h, 1e-2);
    QZE_COMPARE_NEAR(s, hsv.s, 1e-4);
    QZE_COMPARE_NEAR(v, hsv.v, 1e-4 * hsv.v);
}

void tst_QZEColor::labToHsvRoundTripsFromLab_data()
{
    QTest::addColumn<double>("L");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");

    QTest::newRow("50 20 -30") << 50.0 << 20.0 << -30.0;
    QTest::newRow("75 -40 10") << 75.0 << -40.0 << 10.0;
    QTest::newRow("low light 5 2 -3") << 5.0 << 2.0 << -3.0;
    QTest::newRow("out of gamut 50 -120 0") << 50.0 << -120.0 << 0.0;
}

void tst_QZEColor::labToHsvRoundTripsFromLab()
{
    QFETCH(double, L);
    QFETCH(double, a);
    QFETCH(double, b);

    const QZEColor converter;
    float h, s, v;
    converter.LABtoHSV(float(L), float(a), float(b), h, s, v);
    float outL, outA, outB;
    converter.HSVtoLAB(h, s, v, outL, outA, outB);
    QZE_COMPARE_LAB(outL, outA, outB, (Lab{L, a, b}), 1e-3);
}

void tst_QZEColor::lowLightLabUsesLinearSegment_data()
{
    addLabColumns();

    // Y = 0.005 is below (6/29)^3: L = 116 (841/108 * 0.005 + 4/29) - 16 = 903.3 * 0.005.
    QTest::newRow("dark grey") << QZEColor(0, 0, 0.005f) << Rgb{0.005f, 0.005f, 0.005f} << 4.5165
                               << 0.0 << 0.0;
    // Only Y (0.0036) is on the linear segment; X and Z take the cube root.
    QTest::newRow("dark blue") << QZEColor(240, 1, 0.05f) << Rgb{0, 0, 0.05f} << 3.2598 << 22.8497
                               << -37.2067;
}

void tst_QZEColor::lowLightLabUsesLinearSegment()
{
    QFETCH(QZEColor, hsv);
    QFETCH(Rgb, linear);
    QFETCH(double, L);
    QFETCH(double, a);
    QFETCH(double, b);

    verifyLabOf(hsv, linear, {L, a, b});
}

void tst_QZEColor::lowLightLabInverseUsesLinearSegment_data()
{
    QTest::addColumn<double>("L");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<double>("luminance");

    // fy = 21 / 116 is below 6/29: Y = 5 / 903.3 (the cube would give 0.0059).
    QTest::newRow("L 5") << 5.0 << 0.0 << 0.0 << 0.0055353;
    QTest::newRow("L 1 with a, b") << 1.0 << 3.0 << -4.0 << 0.0011071;
    QTest::newRow("dark blue") << 3.2598 << 22.8497 << -37.2067 << 0.0036088;
}

void tst_QZEColor::lowLightLabInverseUsesLinearSegment()
{
    QFETCH(double, L);
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(double, luminance);

    QZE_COMPARE_NEAR(whiteOf(1) * cieFInverse((L + 16.0) / 116.0), luminance, 1e-7);

    float h, s, v;
    QZEColor().LABtoHSV(float(L), float(a), float(b), h, s, v);
    const RgbD reference = referenceRgbFromLab(L, a, b);
    QZE_COMPARE_RGB(linearOf(QZEColor(h, s, v)), reference.r, reference.g, reference.b, 1e-6);
}

void tst_QZEColor::outOfGamutLabFoldsNegativeChannelsIntoHsv_data()
{
    QTest::addColumn<double>("L");
    QTest::addColumn<double>("a");
    QTest::addColumn<double>("b");
    QTest::addColumn<float>("hue");
    QTest::addColumn<float>("sat");
    QTest::addColumn<float>("val");

    // Linear (-0.2734529, 0.3210730, 0.1763282): green largest, red below 0.
    QTest::newRow("50 -120 0") << 50.0 << -120.0 << 0.0 << 165.39224f << 1.8516846f << 0.32107302f;
    // Linear (-0.6395116, 0.3579838, 2.2338380): blue largest and above 1.
    QTest::newRow("60 0 -120") << 60.0 << 0.0 << -120.0 << 219.17075f << 1.2862838f << 2.2338380f;
    // Linear (0.5748373, -0.0799969, -0.0371775): red largest, hue wraps.
    QTest::newRow("30 100 100") << 30.0 << 100.0 << 100.0 << 356.07663f << 1.1391644f
                                << 0.57483726f;
}

void tst_QZEColor::outOfGamutLabFoldsNegativeChannelsIntoHsv()
{
    QFETCH(double, L);
    QFETCH(double, a);
    QFETCH(double, b);
    QFETCH(float, hue);
    QFETCH(float, sat);
    QFETCH(float, val);

    const RgbD reference = referenceRgbFromLab(L, a, b);
    QVERIFY2(std::min({reference.r, reference.g, reference.b}) < 0.0, "row is inside the gamut");

    float h, s, v;
    QZEColor().LABtoHSV(float(L), float(a), float(b), h, s, v);
    QZE_COMPARE_NEAR(h, hue, 1e-3);
    QZE_COMPARE_NEAR(s, sat, 1e-5);
    QZE_COMPARE_NEAR(v, val, 1e-5);
    // Nothing was clamped: the negative channel comes back out.
    QZE_COMPARE_RGB(linearOf(QZEColor(h, s, v)), reference.r, reference.g, reference.b, 1e-5);
}

// --- Statics and value semantics ---------------------------------------------

void tst_QZEColor::staticsHaveDocumentedDefaults()
{
    QCOMPARE(QZEColor::s_useGamma, true);
    QZE_COMPARE_NEAR(QZEColor::s_gamma, 2.2f, 0.0);
    QZE_COMPARE_NEAR(QZEColor::s_LabRange, 256.0, 0.0);
}

void tst_QZEColor::isAPlainValueOfThreeFloats()
{
    static_assert(sizeof(QZEColor) == 3 * sizeof(float), "no state beyond h, s, v");
    static_assert(std::is_trivially_copyable<QZEColor>::value, "copied by value");

    const QZEColor original(12.5f, 0.25f, 1.5f);
    QZEColor copy = original;
    QCOMPARE(copy.h, 12.5f);
    QCOMPARE(copy.s, 0.25f);
    QCOMPARE(copy.v, 1.5f);
    copy.v = 0.5f;
    QCOMPARE(original.v, 1.5f);

    const QZEColor zero;
    QCOMPARE(zero.h, 0.0f);
    QCOMPARE(zero.s, 0.0f);
    QCOMPARE(zero.v, 0.0f);
}

void tst_QZEColor::storesInQVariant()
{
    const QZEColor color(210.0f, 0.4f, 1.25f);
    const QVariant variant = QVariant::fromValue(color);
    QCOMPARE(variant.userType(), qMetaTypeId<QZEColor>());
    QVERIFY(variant.canConvert<QZEColor>());
    const QZEColor back = variant.value<QZEColor>();
    QCOMPARE(back.h, color.h);
    QCOMPARE(back.s, color.s);
    QCOMPARE(back.v, color.v);
}

QTEST_GUILESS_MAIN(tst_QZEColor)
#include "tst_QZEColor.moc"
