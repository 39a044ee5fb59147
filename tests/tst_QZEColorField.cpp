#include "ColourArithmetic.h"
#include "QZEColorField.h"
#include "SyntheticMouse.h"
#include "TestHelpers.h"

#include <QAccessible>
#include <QImage>
#include <QSignalSpy>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>

namespace {

using Mode = QZEColorField::Mode;

// 257 pixels: pixel i lies at position i / 256 on both axes, exactly, so the
// centre pixel 128 is position 0.5. Rows count from the top, positions from
// the bottom: row j is position (256 - j) / 256.
constexpr int Side = 257;
constexpr double Last = Side - 1;

// How a test sets the field's colour.
enum class Setter { RGB, Lab, RGBThenHue };

struct Setting
{
    Setter setter;
    float a, b, c;
    float hue; // for RGBThenHue
};

void apply(QZEColorField& field, const Setting& setting)
{
    if (setting.setter == Setter::Lab) {
        field.setLab(setting.a, setting.b, setting.c);
        return;
    }
    field.setRGB(setting.a, setting.b, setting.c);
    if (setting.setter == Setter::RGBThenHue)
        field.setHue(setting.hue);
}

struct Triple
{
    double x, y, z;
};

// The colour's components in the family of mode: h s v, r g b or L* a* b*.
Triple familyComponents(Mode mode, const QZEColor& color)
{
    float c[3] = {color.h, color.s, color.v};
    if (mode >= QZEColorField::Lstar)
        color.HSVtoLAB(color.h, color.s, color.v, c[0], c[1], c[2]);
    else if (mode >= QZEColorField::Red)
        color.getRGB(c[0], c[1], c[2]);
    return {c[0], c[1], c[2]};
}

// A 0..1 position on an a* or b* axis, in units.
double labAxis(double position)
{
    return (position - 0.5) * QZEColor::s_LabRange;
}

void sendMouse(QWidget& widget, QEvent::Type type, const QPoint& at, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    sendMouseEvent(&widget, type, at, button, buttons);
}

// --- Independent colour arithmetic, in double precision ------------------------

// CIE L*a*b* to linear sRGB, with the D65 sRGB matrix and the white point
// that the colour library uses.
void labToLinearRgb(double L, double a, double b, double rgb[3])
{
    const double fy = (L + 16.0) / 116.0;
    const double f[3] = {fy + a / 500.0, fy, fy - b / 200.0};
    const double white[3] = {QZEColor::s_reference_white_X, QZEColor::s_reference_white_Y,
                             QZEColor::s_reference_white_Z};
    double xyz[3];
    for (int i = 0; i < 3; ++i)
        xyz[i] = white[i] * (f[i] > 6.0 / 29.0 ? f[i] * f[i] * f[i] : 3.0 * 36.0 / 841.0 * (f[i] - 4.0 / 29.0));
    const double m[3][3] = {{3.2404542, -1.5371385, -0.4985314},
                            {-0.9692660, 1.8760108, 0.0415560},
                            {0.0556434, -0.2040259, 1.0572252}};
    for (int i = 0; i < 3; ++i)
        rgb[i] = m[i][0] * xyz[0] + m[i][1] * xyz[1] + m[i][2] * xyz[2];
}

double srgbEncode(double c)
{
    return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

int byteOf(double c)
{
    return c <= 0.0 ? 0 : (c >= 1.0 ? 255 : int(c * 255.0));
}

// What a pixel at positions (x, y) of the plane of mode at fixed shows.
QColor expectedPixel(Mode mode, double fixed, double x, double y)
{
    double rgb[3] = {0.0, 0.0, 0.0};
    switch (mode) {
    case QZEColorField::Hue: hsvToRgb(fixed, x, y, rgb); break;
    case QZEColorField::Saturation: hsvToRgb(x * 359.99, fixed, y, rgb); break;
    case QZEColorField::Value: hsvToRgb(x * 359.99, y, fixed, rgb); break;
    case QZEColorField::Red: rgb[0] = fixed; rgb[1] = x; rgb[2] = y; break;
    case QZEColorField::Green: rgb[0] = x; rgb[1] = fixed; rgb[2] = y; break;
    case QZEColorField::Blue: rgb[0] = x; rgb[1] = y; rgb[2] = fixed; break;
    case QZEColorField::Lstar: labToLinearRgb(fixed, labAxis(x), labAxis(y), rgb); break;
    case QZEColorField::Astar: labToLinearRgb(x * 100.0, fixed, labAxis(y), rgb); break;
    case QZEColorField::Bstar: labToLinearRgb(x * 100.0, labAxis(y), fixed, rgb); break;
    }
    if (QZEColorField::isLabMode(mode)) {
        for (double& c : rgb)
            c = srgbEncode(std::max(c, 0.0));
    }
    return QColor(byteOf(rgb[0]), byteOf(rgb[1]), byteOf(rgb[2]));
}

// The pixel of a plane straight from its definition, in single precision as
// the field works: one colour per pixel, its channels truncated to bytes,
// sRGB-encoded first in the L*a*b* modes. The plane must match it bit for bit.
QRgb definedPixel(Mode mode, float fixed, float x, float y)
{
    const float hue = x * 359.99f;
    const float ax = (x - 0.5f) * QZEColor::s_LabRange;
    const float ay = (y - 0.5f) * QZEColor::s_LabRange;
    QZEColor c;
    switch (mode) {
    case QZEColorField::Hue: c = QZEColor(fixed, x, y); break;
    case QZEColorField::Saturation: c = QZEColor(hue, fixed, y); break;
    case QZEColorField::Value: c = QZEColor(hue, y, fixed); break;
    case QZEColorField::Red: c.setRGB(fixed, x, y); break;
    case QZEColorField::Green: c.setRGB(x, fixed, y); break;
    case QZEColorField::Blue: c.setRGB(x, y, fixed); break;
    case QZEColorField::Lstar: c.LABtoHSV(fixed, ax, ay, c.h, c.s, c.v); break;
    case QZEColorField::Astar: c.LABtoHSV(x * 100.0f, fixed, ay, c.h, c.s, c.v); break;
    case QZEColorField::Bstar: c.LABtoHSV(x * 100.0f, ay, fixed, c.h, c.s, c.v); break;
    }
    float rgb[3];
    c.getRGB(rgb[0], rgb[1], rgb[2]);
    if (QZEColorField::isLabMode(mode)) {
        for (float& channel : rgb)
            channel = QZEColor::encodeSRGB(channel);
    }
    return qRgb(QZEColor::toByte(rgb[0]), QZEColor::toByte(rgb[1]), QZEColor::toByte(rgb[2]));
}

// Pixel i of n as a position, the first pixel 0 and the last 1.
float positionOf(int i, int n)
{
    return n > 1 ? float(i) / float(n - 1) : 0.0f;
}

// The first pixel of the plane computePlane gives that differs from
// definedPixel; an empty string when there is none.
QString planeDifference(Mode mode, float fixed, const QSize& size)
{
    QImage plane(size, QImage::Format_RGB32);
    plane.fill(Qt::magenta);
    QZEColorField::computePlane(mode, fixed, plane);
    const int w = size.width();
    const int h = size.height();
    for (int y = 0; y < h; ++y) {
        for (int x = 0; x < w; ++x) {
            const QRgb expected = definedPixel(mode, fixed, positionOf(x, w), positionOf(h - 1 - y, h));
            const QRgb actual = plane.pixel(x, y);
            if (actual != expected)
                return QStringLiteral("pixel (%1, %2) is %3, not %4")
                    .arg(x).arg(y).arg(actual, 8, 16).arg(expected, 8, 16);
        }
    }
    return {};
}

} // namespace

Q_DECLARE_METATYPE(Setting)

class tst_QZEColorField : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void objectNameIsTheClassNameAndTheFieldStartsOnRedInHueMode();
    void modeSlotsSwitchOnlyWhenOn_data();
    void modeSlotsSwitchOnlyWhenOn();
    void stringSignaturesOfTheDialogConnections();

    void pressPicksTheColourOfThePlaneAtThatPixel_data();
    void pressPicksTheColourOfThePlaneAtThatPixel();
    void dragPicksAlongThePathAndClampsToThePlane();
    void otherMouseButtonsPickNothing();
    void settersEmitNothing();

    void planePixelsMatchIndependentlyComputedColours_data();
    void planePixelsMatchIndependentlyComputedColours();
    void planeIsPixelIdenticalToItsPerPixelDefinition_data();
    void planeIsPixelIdenticalToItsPerPixelDefinition();
    void planesMatchTheirDefinitionForManyFixedValues_data();
    void planesMatchTheirDefinitionForManyFixedValues();
    void hueModeShowsDisplayValuesAsTheyStand_data();
    void hueModeShowsDisplayValuesAsTheyStand();
    void lstarModeShowsMiddleGreySrgbEncoded();
    void labPlanesEncodeEveryGreyAsTheColourValueDoes();

    void markerSitsWhereTheSettersPutIt_data();
    void markerSitsWhereTheSettersPutIt();
    void setHueInHueModeMovesThePlaneNotTheMarker();
    void aGreyKeepsTheFieldsHue();
    void modeChangeConvertsBetweenDisplayAndLinearForms();

    void planeIsRecomputedOnlyForANewFixedComponentModeOrSize();
    void pickedColourWrittenBackThroughSetRGBKeepsPlaneAndColour_data();
    void pickedColourWrittenBackThroughSetRGBKeepsPlaneAndColour();

    void arrowKeysMoveTheMarkerByOnePixel_data();
    void arrowKeysMoveTheMarkerByOnePixel();
    void arrowKeysStopAtTheEdgeWithoutEmitting();
    void arrowKeysKeepTheOtherComponent();
    void fieldTakesFocusAndDescribesItsAxes();

private:
    QZEColorField* makeField(Mode mode);
    QScopedPointer<QZEColorField> _field;
};

void tst_QZEColorField::init()
{
    QZEColor::s_LabRange = 256.0f;
    _field.reset();
}

QZEColorField* tst_QZEColorField::makeField(Mode mode)
{
    _field.reset(new QZEColorField);
    _field->resize(Side, Side);
    _field->setMode(mode);
    return _field.data();
}

void tst_QZEColorField::objectNameIsTheClassNameAndTheFieldStartsOnRedInHueMode()
{
    QZEColorField field(nullptr, "ignored");
    QCOMPARE(field.objectName(), QStringLiteral("QZEColorField"));
    QCOMPARE(field.getMode(), QZEColorField::Hue);
    QCOMPARE(field.getColor(), QZEColor(0.0f, 1.0f, 1.0f));
    QCOMPARE(field.getFixedValue(), 0.0f);
}

void tst_QZEColorField::modeSlotsSwitchOnlyWhenOn_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<int>("mode");
    const char* const slotNames[] = {"setHueMode",   "setSaturationMode", "setValueMode",
                                 "setRedMode",   "setGreenMode",      "setBlueMode",
                                 "setLstarMode", "setAstarMode",      "setBstarMode"};
    for (int mode = 0; mode < 9; ++mode)
        QTest::newRow(slotNames[mode]) << QByteArray(slotNames[mode]) << mode;
}

void tst_QZEColorField::modeSlotsSwitchOnlyWhenOn()
{
    QFETCH(QByteArray, slot);
    QFETCH(int, mode);
    QZEColorField field;
    // Start from a mode other than the slot's.
    field.setMode(mode == QZEColorField::Blue ? QZEColorField::Lstar : QZEColorField::Blue);
    const Mode before = field.getMode();

    QVERIFY(QMetaObject::invokeMethod(&field, slot.constData(), Q_ARG(bool, false)));
    QCOMPARE(field.getMode(), before);
    QVERIFY(QMetaObject::invokeMethod(&field, slot.constData(), Q_ARG(bool, true)));
    QCOMPARE(int(field.getMode()), mode);
}

// The colour dialog connects to the field by these signatures.
void tst_QZEColorField::stringSignaturesOfTheDialogConnections()
{
    const QMetaObject& meta = QZEColorField::staticMetaObject;
    QVERIFY(meta.indexOfSignal("colorChanged(QZEColor)") >= 0);
    for (const char* slot : {"setRGB(float,float,float)", "setHue(float)", "setLab(float,float,float)",
                             "setHueMode(bool)", "setBstarMode(bool)"})
        QVERIFY2(meta.indexOfSlot(slot) >= 0, slot);
}

void tst_QZEColorField::pressPicksTheColourOfThePlaneAtThatPixel_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QPoint>("pixel");
    QTest::addColumn<double>("x");
    QTest::addColumn<double>("y");
    QTest::addColumn<double>("z");

    // Hue 120 of pure green; pixel (64, 32) is saturation 64/256, value 224/256.
    QTest::newRow("hue: saturation by value") << int(QZEColorField::Hue) << Setting{Setter::RGB, 0.0f, 1.0f, 0.0f, 0.0f}
                                              << QPoint(64, 32) << 120.0 << 0.25 << 0.875;
    // (1, 0.6, 0.6) has saturation 0.4; x 128 is hue 0.5 * 359.99, y 192 value 0.25.
    QTest::newRow("saturation: hue by value") << int(QZEColorField::Saturation)
                                              << Setting{Setter::RGB, 1.0f, 0.6f, 0.6f, 0.0f} << QPoint(128, 192)
                                              << 179.995 << 0.4 << 0.25;
    QTest::newRow("value: hue by saturation") << int(QZEColorField::Value)
                                              << Setting{Setter::RGB, 0.7f, 0.7f, 0.7f, 0.0f} << QPoint(256, 0)
                                              << 359.99 << 1.0 << 0.7;
    QTest::newRow("red: green by blue") << int(QZEColorField::Red) << Setting{Setter::RGB, 0.6f, 0.1f, 0.2f, 0.0f}
                                        << QPoint(192, 64) << 0.6 << 0.75 << 0.75;
    QTest::newRow("green: red by blue") << int(QZEColorField::Green) << Setting{Setter::RGB, 0.1f, 0.3f, 0.2f, 0.0f}
                                        << QPoint(32, 224) << 0.125 << 0.3 << 0.125;
    QTest::newRow("blue: red by green") << int(QZEColorField::Blue) << Setting{Setter::RGB, 0.2f, 0.2f, 0.9f, 0.0f}
                                        << QPoint(0, 256) << 0.0 << 0.0 << 0.9;
    QTest::newRow("L*: a* by b*") << int(QZEColorField::Lstar) << Setting{Setter::Lab, 50.0f, 10.0f, -20.0f, 0.0f}
                                  << QPoint(192, 64) << 50.0 << labAxis(0.75) << labAxis(0.75);
    // Linear white, whose channels of 1 encode to 0.99999994, 254 of 255.
    QTest::newRow("L* 100: white") << int(QZEColorField::Lstar) << Setting{Setter::Lab, 100.0f, 10.0f, -20.0f, 0.0f}
                                   << QPoint(128, 128) << 100.0 << 0.0 << 0.0;
    QTest::newRow("a*: L* by b*") << int(QZEColorField::Astar) << Setting{Setter::Lab, 40.0f, 20.0f, -30.0f, 0.0f}
                                  << QPoint(128, 192) << 50.0 << 20.0 << labAxis(0.25);
    QTest::newRow("b*: L* by a*") << int(QZEColorField::Bstar) << Setting{Setter::Lab, 60.0f, 10.0f, -30.0f, 0.0f}
                                  << QPoint(64, 128) << 25.0 << 0.0 << -30.0;
}

void tst_QZEColorField::pressPicksTheColourOfThePlaneAtThatPixel()
{
    QFETCH(int, mode);
    QFETCH(Setting, setting);
    QFETCH(QPoint, pixel);
    QFETCH(double, x);
    QFETCH(double, y);
    QFETCH(double, z);
    QZEColorField* field = makeField(Mode(mode));
    apply(*field, setting);
    QSignalSpy spy(field, &QZEColorField::colorChanged);

    QTest::mousePress(field, Qt::LeftButton, {}, pixel);

    QCOMPARE(spy.count(), 1);
    const QZEColor picked = spy.at(0).at(0).value<QZEColor>();
    QCOMPARE(field->getColor(), picked);
    const Triple c = familyComponents(Mode(mode), picked);
    const double tolerance = QZEColorField::isLabMode(Mode(mode)) ? 2e-3 : 1e-5;
    QZE_COMPARE_NEAR(c.x, x, tolerance);
    QZE_COMPARE_NEAR(c.y, y, tolerance);
    QZE_COMPARE_NEAR(c.z, z, tolerance);
    QZE_COMPARE_NEAR(field->getMarkerPosition().x(), pixel.x(), 1e-3);
    QZE_COMPARE_NEAR(field->getMarkerPosition().y(), pixel.y(), 1e-3);

    // The marker is a ring: the pixel at its centre shows the picked colour,
    // sRGB-encoded in the L*a*b* modes.
    float r, g, b;
    if (QZEColorField::isLabMode(Mode(mode)))
        picked.getGammaRGB(r, g, b);
    else
        picked.getRGB(r, g, b);
    QCOMPARE(field->grab().toImage().pixelColor(pixel), QZEColor::toQColor(r, g, b));
}

void tst_QZEColorField::dragPicksAlongThePathAndClampsToThePlane()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setHue(200.0f);
    QSignalSpy spy(field, &QZEColorField::colorChanged);

    sendMouse(*field, QEvent::MouseButtonPress, QPoint(10, 10), Qt::LeftButton, Qt::LeftButton);
    sendMouse(*field, QEvent::MouseMove, QPoint(20, 30), Qt::NoButton, Qt::LeftButton);
    sendMouse(*field, QEvent::MouseMove, QPoint(400, -50), Qt::NoButton, Qt::LeftButton);
    sendMouse(*field, QEvent::MouseButtonRelease, QPoint(400, -50), Qt::LeftButton, Qt::NoButton);

    QCOMPARE(spy.count(), 3);
    const QZEColor second = spy.at(1).at(0).value<QZEColor>();
    QCOMPARE(second.h, 200.0f);
    QZE_COMPARE_NEAR(second.s, 20.0 / 256.0, 1e-6);
    QZE_COMPARE_NEAR(second.v, 226.0 / 256.0, 1e-6);
    QCOMPARE(spy.at(2).at(0).value<QZEColor>(), QZEColor(200.0f, 1.0f, 1.0f));
    QCOMPARE(field->getMarkerPosition(), QPointF(Last, 0.0));
}

void tst_QZEColorField::otherMouseButtonsPickNothing()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    QSignalSpy spy(field, &QZEColorField::colorChanged);
    sendMouse(*field, QEvent::MouseButtonPress, QPoint(10, 10), Qt::RightButton, Qt::RightButton);
    sendMouse(*field, QEvent::MouseMove, QPoint(20, 30), Qt::NoButton, Qt::RightButton);
    sendMouse(*field, QEvent::MouseMove, QPoint(40, 30), Qt::NoButton, Qt::NoButton);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(field->getColor(), QZEColor(0.0f, 1.0f, 1.0f));
}

void tst_QZEColorField::settersEmitNothing()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    QSignalSpy spy(field, &QZEColorField::colorChanged);
    field->setRGB(0.1f, 0.2f, 0.3f);
    field->setHue(77.0f);
    field->setLab(30.0f, 5.0f, 6.0f);
    field->setMode(QZEColorField::Astar);
    field->setGreenMode(true);
    QCOMPARE(spy.count(), 0);
}

void tst_QZEColorField::planePixelsMatchIndependentlyComputedColours_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<double>("fixed");
    const double fixedByMode[] = {200.0, 0.6, 0.8, 0.3, 0.5, 0.7, 60.0, 20.0, -30.0};
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    for (int mode = 0; mode < 9; ++mode)
        QTest::newRow(modes.valueToKey(mode)) << mode << fixedByMode[mode];
}

// Every pixel of a 33 x 33 plane against colours computed here in double
// precision; truncation to bytes may differ by one where a channel falls on a
// step.
void tst_QZEColorField::planePixelsMatchIndependentlyComputedColours()
{
    QFETCH(int, mode);
    QFETCH(double, fixed);
    QImage plane(33, 33, QImage::Format_RGB32);
    plane.fill(Qt::magenta);
    QZEColorField::computePlane(Mode(mode), float(fixed), plane);

    int worst = 0;
    for (int y = 0; y < plane.height(); ++y) {
        for (int x = 0; x < plane.width(); ++x) {
            const QColor expected = expectedPixel(Mode(mode), fixed, x / 32.0, (32 - y) / 32.0);
            const QColor actual = plane.pixelColor(x, y);
            worst = std::max({worst, std::abs(actual.red() - expected.red()),
                              std::abs(actual.green() - expected.green()),
                              std::abs(actual.blue() - expected.blue())});
        }
    }
    QVERIFY2(worst <= 1, qPrintable(QStringLiteral("a channel is %1 off").arg(worst)));
}

void tst_QZEColorField::planeIsPixelIdenticalToItsPerPixelDefinition_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<float>("fixed");
    QTest::addColumn<QSize>("size");
    // Fixed components at both ends of their ranges and in between; 0.37 *
    // 359.99 and the like fall off the pixel grid on purpose.
    const QVector<float> fixedByMode[] = {
        {0.0f, 133.1963f, 359.99f}, {0.0f, 0.37f, 1.0f},      {0.0f, 0.61f, 1.0f},
        {0.0f, 0.29f, 1.0f},        {0.0f, 0.53f, 1.0f},      {0.0f, 0.77f, 1.0f},
        {0.0f, 47.3f, 100.0f},      {-128.0f, 21.7f, 128.0f}, {-128.0f, -33.9f, 128.0f},
    };
    const QSize sizes[] = {QSize(257, 257), QSize(410, 505), QSize(1, 1), QSize(7, 3)};
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    for (int mode = 0; mode < 9; ++mode) {
        for (const float fixed : fixedByMode[mode]) {
            for (const QSize& size : sizes) {
                QTest::addRow("%s %g %dx%d", modes.valueToKey(mode), double(fixed), size.width(),
                              size.height())
                    << mode << fixed << size;
            }
        }
    }
}

void tst_QZEColorField::planeIsPixelIdenticalToItsPerPixelDefinition()
{
    QFETCH(int, mode);
    QFETCH(float, fixed);
    QFETCH(QSize, size);
    const QString difference = planeDifference(Mode(mode), fixed, size);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void tst_QZEColorField::planesMatchTheirDefinitionForManyFixedValues_data()
{
    QTest::addColumn<int>("mode");
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    for (int mode = 0; mode < 9; ++mode)
        QTest::newRow(modes.valueToKey(mode)) << mode;
}

// Sixteen random fixed components per mode over the whole range of the
// component (a fixed seed), each plane 256 x 256.
void tst_QZEColorField::planesMatchTheirDefinitionForManyFixedValues()
{
    QFETCH(int, mode);
    const float ranges[][2] = {{0.0f, 359.99f}, {0.0f, 1.0f},      {0.0f, 1.0f},
                               {0.0f, 1.0f},    {0.0f, 1.0f},      {0.0f, 1.0f},
                               {0.0f, 100.0f},  {-128.0f, 128.0f}, {-128.0f, 128.0f}};
    std::mt19937 random(unsigned(1600 + mode));
    std::uniform_real_distribution<float> fixedValue(ranges[mode][0], ranges[mode][1]);
    for (int i = 0; i < 16; ++i) {
        const float fixed = fixedValue(random);
        const QString difference = planeDifference(Mode(mode), fixed, QSize(256, 256));
        QVERIFY2(difference.isEmpty(),
                 qPrintable(QStringLiteral("fixed %1: %2").arg(double(fixed)).arg(difference)));
    }
}

void tst_QZEColorField::hueModeShowsDisplayValuesAsTheyStand_data()
{
    QTest::addColumn<QPoint>("pixel");
    QTest::addColumn<QColor>("expected");
    // Hue 120: pure green at full saturation and value, (0.5, 1, 0.5) at half
    // saturation, whose 0.5 gives 127 by truncation, not 187 as an sRGB
    // encoding would.
    QTest::newRow("top right") << QPoint(256, 0) << QColor(0, 255, 0);
    QTest::newRow("top middle") << QPoint(128, 0) << QColor(127, 255, 127);
    QTest::newRow("bottom left") << QPoint(0, 256) << QColor(0, 0, 0);
    QTest::newRow("top left") << QPoint(0, 0) << QColor(255, 255, 255);
}

void tst_QZEColorField::hueModeShowsDisplayValuesAsTheyStand()
{
    QFETCH(QPoint, pixel);
    QFETCH(QColor, expected);
    QImage plane(Side, Side, QImage::Format_RGB32);
    QZEColorField::computePlane(QZEColorField::Hue, 120.0f, plane);
    QCOMPARE(plane.pixelColor(pixel), expected);
}

// L* 50 with a* = b* = 0 is the grey whose Y is ((50 + 16) / 116)^3 = 0.18419;
// sRGB-encoded 1.055 * 0.18419^(1/2.4) - 0.055 = 0.46633, or 118.9 of 255.
void tst_QZEColorField::lstarModeShowsMiddleGreySrgbEncoded()
{
    QImage plane(Side, Side, QImage::Format_RGB32);
    QZEColorField::computePlane(QZEColorField::Lstar, 50.0f, plane);
    QCOMPARE(plane.pixelColor(128, 128), QColor(118, 118, 118));
}

// The middle row of an a* plane at a* = 0 holds the greys from L* 0 to 100;
// each pixel must show what QZEColor's own sRGB encoding and 8-bit
// truncation make of the colour a pick there gives.
void tst_QZEColorField::labPlanesEncodeEveryGreyAsTheColourValueDoes()
{
    constexpr int Columns = 4097;
    QImage plane(Columns, 3, QImage::Format_RGB32);
    QZEColorField::computePlane(QZEColorField::Astar, 0.0f, plane);
    for (int x = 0; x < Columns; ++x) {
        QZEColor grey;
        grey.LABtoHSV(float(x) / float(Columns - 1) * 100.0f, 0.0f, 0.0f, grey.h, grey.s, grey.v);
        float r, g, b;
        grey.getGammaRGB(r, g, b);
        QCOMPARE(plane.pixelColor(x, 1), QZEColor::toQColor(r, g, b));
    }
}

void tst_QZEColorField::markerSitsWhereTheSettersPutIt_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<Setting>("setting");
    QTest::addColumn<QPointF>("marker");

    // Display RGB (0.25, 0.5, 1): value 1, saturation 0.75, hue 240 - 0.25 * 60 / 0.75 = 220.
    QTest::newRow("hue: setRGB") << int(QZEColorField::Hue) << Setting{Setter::RGB, 0.25f, 0.5f, 1.0f, 0.0f}
                                 << QPointF(0.75 * Last, 0.0);
    QTest::newRow("saturation: setRGB") << int(QZEColorField::Saturation)
                                        << Setting{Setter::RGB, 0.25f, 0.5f, 1.0f, 0.0f}
                                        << QPointF(220.0 / 359.99 * Last, 0.0);
    QTest::newRow("value: setRGB") << int(QZEColorField::Value) << Setting{Setter::RGB, 0.25f, 0.5f, 1.0f, 0.0f}
                                   << QPointF(220.0 / 359.99 * Last, 0.25 * Last);
    QTest::newRow("red: setRGB") << int(QZEColorField::Red) << Setting{Setter::RGB, 0.3f, 0.25f, 0.75f, 0.0f}
                                 << QPointF(0.25 * Last, 0.25 * Last);
    QTest::newRow("green: setRGB") << int(QZEColorField::Green) << Setting{Setter::RGB, 0.3f, 0.25f, 0.75f, 0.0f}
                                   << QPointF(0.3 * Last, 0.25 * Last);
    QTest::newRow("blue: setRGB") << int(QZEColorField::Blue) << Setting{Setter::RGB, 0.3f, 0.25f, 0.75f, 0.0f}
                                  << QPointF(0.3 * Last, 0.75 * Last);
    // a* 32 and b* -64 on a span of 256 are positions 0.625 and 0.25.
    QTest::newRow("L*: setLab") << int(QZEColorField::Lstar) << Setting{Setter::Lab, 40.0f, 32.0f, -64.0f, 0.0f}
                                << QPointF(0.625 * Last, 0.75 * Last);
    QTest::newRow("a*: setLab") << int(QZEColorField::Astar) << Setting{Setter::Lab, 40.0f, 32.0f, -64.0f, 0.0f}
                                << QPointF(0.4 * Last, 0.75 * Last);
    QTest::newRow("b*: setLab") << int(QZEColorField::Bstar) << Setting{Setter::Lab, 40.0f, 32.0f, -64.0f, 0.0f}
                                << QPointF(0.4 * Last, 0.375 * Last);
    // (1, 0.5, 0.5) is hue 0, saturation 0.5, value 1; then hue 90.
    QTest::newRow("saturation: setHue") << int(QZEColorField::Saturation)
                                        << Setting{Setter::RGBThenHue, 1.0f, 0.5f, 0.5f, 90.0f}
                                        << QPointF(90.0 / 359.99 * Last, 0.0);
    QTest::newRow("red: setHue") << int(QZEColorField::Red) << Setting{Setter::RGBThenHue, 1.0f, 0.5f, 0.5f, 120.0f}
                                 << QPointF(1.0 * Last, 0.5 * Last);
    QTest::newRow("red: beyond the plane") << int(QZEColorField::Red)
                                           << Setting{Setter::RGB, 0.5f, 1.5f, -0.2f, 0.0f} << QPointF(Last, Last);
}

void tst_QZEColorField::markerSitsWhereTheSettersPutIt()
{
    QFETCH(int, mode);
    QFETCH(Setting, setting);
    QFETCH(QPointF, marker);
    QZEColorField* field = makeField(Mode(mode));
    apply(*field, setting);
    QZE_COMPARE_NEAR(field->getMarkerPosition().x(), marker.x(), 1e-3);
    QZE_COMPARE_NEAR(field->getMarkerPosition().y(), marker.y(), 1e-3);
}

void tst_QZEColorField::setHueInHueModeMovesThePlaneNotTheMarker()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setRGB(1.0f, 0.5f, 0.5f);
    const QPointF marker = field->getMarkerPosition();
    field->setHue(90.0f);
    QCOMPARE(field->getFixedValue(), 90.0f);
    QCOMPARE(field->getMarkerPosition(), marker);
    QCOMPARE(field->getColor(), QZEColor(90.0f, 0.5f, 1.0f));
}

void tst_QZEColorField::aGreyKeepsTheFieldsHue()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setHue(200.0f);
    field->setRGB(0.5f, 0.5f, 0.5f);
    QCOMPARE(field->getFixedValue(), 200.0f);
    QCOMPARE(field->getColor(), QZEColor(200.0f, 0.0f, 0.5f));
    QCOMPARE(field->getMarkerPosition(), QPointF(0.0, 0.5 * Last));
}

// Display 0.5 is linear ((0.5 + 0.055) / 1.055)^2.4 = 0.2140411, whose L* is
// 116 * 0.2140411^(1/3) - 16 = 53.3890.
void tst_QZEColorField::modeChangeConvertsBetweenDisplayAndLinearForms()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setRGB(0.5f, 0.5f, 0.5f);

    field->setLstarMode(true);
    QZE_COMPARE_NEAR(field->getColor().v, 0.2140411, 1e-6);
    QZE_COMPARE_NEAR(field->getFixedValue(), 53.3890, 1e-3);

    field->setValueMode(true);
    QZE_COMPARE_NEAR(field->getColor().v, 0.5, 1e-6);
    QZE_COMPARE_NEAR(field->getFixedValue(), 0.5, 1e-6);
}

void tst_QZEColorField::planeIsRecomputedOnlyForANewFixedComponentModeOrSize()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setRGB(1.0f, 0.5f, 0.5f);
    const auto computationsAfterPaint = [field] {
        field->grab();
        return field->getPlaneComputations();
    };
    QCOMPARE(computationsAfterPaint(), 1);
    QCOMPARE(computationsAfterPaint(), 1);

    field->setRGB(0.8f, 0.2f, 0.2f); // same hue 0, other saturation and value
    QCOMPARE(computationsAfterPaint(), 1);
    sendMouse(*field, QEvent::MouseButtonPress, QPoint(10, 10), Qt::LeftButton, Qt::LeftButton);
    sendMouse(*field, QEvent::MouseMove, QPoint(50, 90), Qt::NoButton, Qt::LeftButton);
    QCOMPARE(computationsAfterPaint(), 1);
    QTest::keyClick(field, Qt::Key_Left);
    QTest::keyClick(field, Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(computationsAfterPaint(), 1);
    field->setMode(QZEColorField::Hue); // repaints, same plane
    QCOMPARE(computationsAfterPaint(), 1);

    field->setHue(30.0f);
    QCOMPARE(computationsAfterPaint(), 2);
    field->resize(120, 80);
    QCOMPARE(computationsAfterPaint(), 3);
    field->setSaturationMode(true);
    QCOMPARE(computationsAfterPaint(), 4);
    field->setRGB(0.9f, 0.45f, 0.45f); // saturation 0.5 instead of 0.75
    QCOMPARE(computationsAfterPaint(), 5);
}

void tst_QZEColorField::pickedColourWrittenBackThroughSetRGBKeepsPlaneAndColour_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("Hue") << int(QZEColorField::Hue);
    QTest::newRow("Saturation") << int(QZEColorField::Saturation);
    QTest::newRow("Red") << int(QZEColorField::Red);
}

// A host that shows the picked colour writes it back, as its channels, with
// the field's signals blocked. The colour derived from those channels again
// differs in the last bits from the one picked, which must not move the
// fixed component and recompute the plane on every step of a drag.
void tst_QZEColorField::pickedColourWrittenBackThroughSetRGBKeepsPlaneAndColour()
{
    QFETCH(int, mode);
    QZEColorField* field = makeField(Mode(mode));
    field->setRGB(0.2f, 0.55f, 0.9f);
    field->setHue(201.37f); // no hue the rounding could leave alone
    field->grab();
    const float fixed = field->getFixedValue();
    bool derivedColourDiffered = false;
    QZEColor emitted;
    connect(field, &QZEColorField::colorChanged, this, [&](const QZEColor& color) {
        emitted = color;
        float r, g, b;
        color.getRGB(r, g, b);
        derivedColourDiffered |= QZEColor::fromRGB(r, g, b) != color;
        const QSignalBlocker blocker(field);
        field->setRGB(r, g, b);
    });

    sendMouse(*field, QEvent::MouseButtonPress, QPoint(3, 250), Qt::LeftButton, Qt::LeftButton);
    for (int step = 1; step <= 40; ++step) {
        sendMouse(*field, QEvent::MouseMove, QPoint(3 + 6 * step, 250 - 6 * step), Qt::NoButton,
                  Qt::LeftButton);
        QCOMPARE(field->getColor(), emitted);
        field->grab();
    }
    QVERIFY2(derivedColourDiffered, "no written-back colour tested the rounding");
    QCOMPARE(field->getFixedValue(), fixed);
    QCOMPARE(field->getPlaneComputations(), 1);
    QCOMPARE(field->getMarkerPosition(), QPointF(243.0, 10.0));
}

void tst_QZEColorField::arrowKeysMoveTheMarkerByOnePixel_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<bool>("shift");
    QTest::addColumn<double>("saturation");
    QTest::addColumn<double>("value");
    // From the centre, saturation and value 128/256; up raises the value.
    QTest::newRow("right") << int(Qt::Key_Right) << false << 129.0 / 256 << 0.5;
    QTest::newRow("left") << int(Qt::Key_Left) << false << 127.0 / 256 << 0.5;
    QTest::newRow("up") << int(Qt::Key_Up) << false << 0.5 << 129.0 / 256;
    QTest::newRow("down") << int(Qt::Key_Down) << false << 0.5 << 127.0 / 256;
    QTest::newRow("shift+left") << int(Qt::Key_Left) << true << 118.0 / 256 << 0.5;
    QTest::newRow("shift+up") << int(Qt::Key_Up) << true << 0.5 << 138.0 / 256;
}

void tst_QZEColorField::arrowKeysMoveTheMarkerByOnePixel()
{
    QFETCH(int, key);
    QFETCH(bool, shift);
    QFETCH(double, saturation);
    QFETCH(double, value);
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setRGB(0.5f, 0.25f, 0.25f); // hue 0, saturation 0.5, value 0.5
    QSignalSpy spy(field, &QZEColorField::colorChanged);

    QTest::keyClick(field, Qt::Key(key), shift ? Qt::ShiftModifier : Qt::NoModifier);

    QCOMPARE(spy.count(), 1);
    const QZEColor color = spy.at(0).at(0).value<QZEColor>();
    QCOMPARE(color.h, 0.0f);
    QZE_COMPARE_NEAR(color.s, saturation, 1e-6);
    QZE_COMPARE_NEAR(color.v, value, 1e-6);
    QZE_COMPARE_NEAR(field->getMarkerPosition().x(), saturation * Last, 1e-3);
    QZE_COMPARE_NEAR(field->getMarkerPosition().y(), (1.0 - value) * Last, 1e-3);
}

void tst_QZEColorField::arrowKeysStopAtTheEdgeWithoutEmitting()
{
    QZEColorField* field = makeField(QZEColorField::Hue);
    field->setRGB(0.0f, 1.0f, 0.0f); // saturation and value 1: the top right corner
    QSignalSpy spy(field, &QZEColorField::colorChanged);
    QTest::keyClick(field, Qt::Key_Right);
    QTest::keyClick(field, Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(spy.count(), 0);
    QTest::keyClick(field, Qt::Key_Down);
    QCOMPARE(spy.count(), 1);
}

// Green 0.3 lies between pixels 76 and 77; Right goes to pixel 78 and blue
// stays 0.7, red 0.5.
void tst_QZEColorField::arrowKeysKeepTheOtherComponent()
{
    QZEColorField* field = makeField(QZEColorField::Red);
    field->setRGB(0.5f, 0.3f, 0.7f);
    QSignalSpy spy(field, &QZEColorField::colorChanged);
    QTest::keyClick(field, Qt::Key_Right);
    QCOMPARE(spy.count(), 1);
    float r, g, b;
    spy.at(0).at(0).value<QZEColor>().getRGB(r, g, b);
    QZE_COMPARE_NEAR(r, 0.5, 1e-6);
    QZE_COMPARE_NEAR(g, 78.0 / 256.0, 1e-6);
    QZE_COMPARE_NEAR(b, 0.7, 1e-6);
}

void tst_QZEColorField::fieldTakesFocusAndDescribesItsAxes()
{
    QZEColorField* field = makeField(QZEColorField::Lstar);
    QCOMPARE(field->focusPolicy(), Qt::StrongFocus);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(field);
    QVERIFY(accessible);
    QCOMPARE(accessible->text(QAccessible::Name), QStringLiteral("Colour field"));
    QCOMPARE(accessible->text(QAccessible::Description),
             QStringLiteral("a* from left to right, b* from bottom to top, at a fixed L*"));
    field->setGreenMode(true);
    QCOMPARE(accessible->text(QAccessible::Description),
             QStringLiteral("red from left to right, blue from bottom to top, at a fixed green"));
}

QTEST_MAIN(tst_QZEColorField)
#include "tst_QZEColorField.moc"
