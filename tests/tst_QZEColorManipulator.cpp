#include "ColourArithmetic.h"
#include "ColourChecks.h"
#include "QZEColorButton.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "SignalOrder.h"
#include "SyntheticMouse.h"
#include "TestHelpers.h"
#include "zePlatform.h"

#include <QHBoxLayout>
#include <QMouseEvent>
#include <QtTest>

#include <functional>

Q_DECLARE_METATYPE(std::function<void(QZEColorManipulator&)>)

namespace {

using Setter = std::function<void(QZEColorManipulator&)>;

// Width of the manipulator in the mouse tests: the slider gets what the
// 62-pixel button and the 6-pixel spacing leave.
constexpr int TestWidth = 200;

QZEColorSlider* sliderOf(const QZEColorManipulator& manipulator)
{
    return manipulator.findChild<QZEColorSlider*>();
}

QZEColorButton* buttonOf(const QZEColorManipulator& manipulator)
{
    return manipulator.findChild<QZEColorButton*>();
}

// The full-brightness colour and the slider position for a linear colour:
// its channels sRGB-encoded, then taken to HSV.
QZEColor encodedHsv(const QZEColor& linear)
{
    const Rgb rgb = rgbOf(linear);
    return hsvOf(float(srgbEncoded(rgb.r)), float(srgbEncoded(rgb.g)), float(srgbEncoded(rgb.b)));
}

void mouse(QWidget* widget, QEvent::Type type, int x, Qt::MouseButtons held)
{
    sendMouseEvent(widget, type, QPointF(x, widget->height() / 2), Qt::LeftButton, held);
}

void pressSliderAt(QZEColorSlider* slider, int x)
{
    mouse(slider, QEvent::MouseButtonPress, x, Qt::LeftButton);
}

void moveSliderTo(QZEColorSlider* slider, int x)
{
    mouse(slider, QEvent::MouseMove, x, Qt::LeftButton);
}

void releaseSliderAt(QZEColorSlider* slider, int x)
{
    mouse(slider, QEvent::MouseButtonRelease, x, Qt::NoButton);
}

// A laid-out manipulator, TestWidth wide, holding colour, in a shown window.
class Rig
{
public:
    explicit Rig(const QZEColor& colour = QZEColor(30.0f, 1.0f, 0.5f))
    {
        window.resize(TestWidth + 20, 40);
        manipulator.setGeometry(0, 0, TestWidth, 24);
        manipulator.setColor(colour);
        window.show();
        ok = QTest::qWaitForWindowExposed(&window);
    }

    QWidget window;
    QZEColorManipulator& manipulator = *new QZEColorManipulator(&window);
    QZEColorSlider* slider = sliderOf(manipulator);
    QZEColorButton* button = buttonOf(manipulator);
    bool ok = false;
};

const QStringList FourColorForms = {"colorChanged()", "colorChanged(QZEColor)",
                                    "colorChanged(float,float,float)", "colorChanged(int,int,int)"};
const QStringList FourDialogForms = {"dialogColorChanged()", "dialogColorChanged(QZEColor)",
                                     "dialogColorChanged(float,float,float)",
                                     "dialogColorChanged(int,int,int)"};

// The QZEColor, float and int forms at emissions first .. first + 3 carry
// colour, its linear RGB and the given bytes.
void compareFourForms(const SignalOrder& log, int first, const QZEColor& colour, double tolerance,
                      int r, int g, int b)
{
    compareColours(log.emissions.at(first + 1).arguments.at(0).value<QZEColor>(), colour,
                   tolerance);
    const Rgb rgb = rgbOf(colour);
    const QList<QVariant>& floats = log.emissions.at(first + 2).arguments;
    QZE_COMPARE_NEAR(floats.at(0).toFloat(), rgb.r, tolerance);
    QZE_COMPARE_NEAR(floats.at(1).toFloat(), rgb.g, tolerance);
    QZE_COMPARE_NEAR(floats.at(2).toFloat(), rgb.b, tolerance);
    const QList<QVariant>& ints = log.emissions.at(first + 3).arguments;
    QCOMPARE((QList<int>{ints.at(0).toInt(), ints.at(1).toInt(), ints.at(2).toInt()}),
             (QList<int>{r, g, b}));
}

osg::SpectrumPtr spectrumWithBands(int bandCount, bool useSpectrum)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    std::vector<float>& bands = spectrum->editSamples();
    for (int i = 0; i < bandCount; ++i)
        bands.push_back(0.5f);
    spectrum->setUseSpectrum(useSpectrum);
    return spectrum;
}

} // namespace

class tst_QZEColorManipulator : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Construction
    void objectNameIsTheNameGivenElseTheClassName();
    void sliderOnTheLeftButtonOnTheRightWithoutMargins();
    void sizesScaleWithDpiAndAreTruncated_data();
    void sizesScaleWithDpiAndAreTruncated();
    void sizeHintIs130WideAndSmallIconHigh();
    void sliderStartsInValueModeFromBlackToWhite();
    void focusPoliciesClickOnSliderStrongOnButton();
    void setFocusPolicyReachesTheSliderOnly();
    void signalsThenSlotsInMetaObjectOrder();

    // Setters and getters
    void setColorOnAnyOverloadEmitsNothing_data();
    void setColorOnAnyOverloadEmitsNothing();
    void setColorOverloadsConvertToHsv_data();
    void setColorOverloadsConvertToHsv();
    void gettersReadTheButtonsColour();
    void labGettersAndSetterRoundTrip();

    // The brightness slider
    void setColorPutsSliderAtEncodedBrightness_data();
    void setColorPutsSliderAtEncodedBrightness();
    void orangeGivesFullSliderAndMaxColourHue44();
    void draggingSliderToZeroGivesBlackAndZeroBytes();
    void draggingSliderToOneGivesFullBrightnessColour();
    void sliderMoveEmitsFourFormsThenSliderColour();
    void trackingOffEmitsOnlyOnRelease();

    // Relays and final colours
    void buttonClickRelaysAsButtonPressed();
    void dialogColourRelaysInFourFormsAndLeavesSlider();
    void finalColourMovesSliderEmitsFourFormsAndFinalColorSet();
    void intFormClampsOverRangeAndNegativeChannels_data();
    void intFormClampsOverRangeAndNegativeChannels();
    void skippedDialogRelaysAsCancelled();
    void droppedColourIsAFinalColour();

    // Slider visibility and enabled state
    void hidingSliderAlignsButtonLeftShowingClearsIt();
    void activeSpectrumDisablesSlider_data();
    void activeSpectrumDisablesSlider();
    void finalColourReevaluatesSpectrum();
    void photometricParametersDisableSlider();
};

void tst_QZEColorManipulator::initTestCase()
{
    qRegisterMetaType<QZEColor>();
}

// Sizes in pixels as written, whatever the screen's DPI.
void tst_QZEColorManipulator::init()
{
    zePlatform::setDpiScale(1.0f, 1.0f);
}

void tst_QZEColorManipulator::cleanup()
{
    zePlatform::setDpiScale(0.0f, 0.0f);
}

// --- Construction ----------------------------------------------------------------

void tst_QZEColorManipulator::objectNameIsTheNameGivenElseTheClassName()
{
    QZEColorManipulator unnamed;
    QZEColorManipulator named(nullptr, "diffuseColour");
    QCOMPARE(unnamed.objectName(), QStringLiteral("QZEColorManipulator"));
    QCOMPARE(named.objectName(), QStringLiteral("diffuseColour"));
    QVERIFY(buttonOf(named));
    QVERIFY(sliderOf(named));
}

void tst_QZEColorManipulator::sliderOnTheLeftButtonOnTheRightWithoutMargins()
{
    Rig rig;
    QVERIFY(rig.ok);
    auto* layout = qobject_cast<QHBoxLayout*>(rig.manipulator.layout());
    QVERIFY(layout);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), rig.slider);
    QCOMPARE(layout->itemAt(1)->widget(), rig.button);
    QCOMPARE(layout->contentsMargins(), QMargins(0, 0, 0, 0));
    QCOMPARE(layout->spacing(), 6);
    QCOMPARE(rig.slider->orientation(), Qt::Horizontal);
    // 200 = slider + 6 + 62 button.
    QCOMPARE(rig.slider->geometry().left(), 0);
    QCOMPARE(rig.slider->width(), TestWidth - 6 - 62);
    QCOMPARE(rig.button->geometry().left(), TestWidth - 62);
}

void tst_QZEColorManipulator::sizesScaleWithDpiAndAreTruncated_data()
{
    QTest::addColumn<float>("sx");
    QTest::addColumn<float>("sy");
    QTest::addColumn<int>("buttonWidth");
    QTest::addColumn<int>("height");
    QTest::newRow("unscaled") << 1.0f << 1.0f << 62 << 16;
    QTest::newRow("x 2, y 1.5") << 2.0f << 1.5f << 124 << 24;
    QTest::newRow("truncated") << 1.3f << 1.3f << 80 << 20; // 80.6 and 20.8
}

void tst_QZEColorManipulator::sizesScaleWithDpiAndAreTruncated()
{
    QFETCH(float, sx);
    QFETCH(float, sy);
    QFETCH(int, buttonWidth);
    QFETCH(int, height);
    zePlatform::setDpiScale(sx, sy);
    QZEColorManipulator manipulator;
    QZEColorButton* button = buttonOf(manipulator);
    QCOMPARE(sliderOf(manipulator)->minimumHeight(), height);
    QCOMPARE(button->minimumSize(), QSize(buttonWidth, height));
    QCOMPARE(button->maximumSize(), QSize(buttonWidth, height));
}

void tst_QZEColorManipulator::sizeHintIs130WideAndSmallIconHigh()
{
    zePlatform::setDpiScale(2.0f, 1.5f);
    QZEColorManipulator manipulator;
    QCOMPARE(manipulator.sizeHint(), QSize(130, 24)); // the width does not scale
}

void tst_QZEColorManipulator::sliderStartsInValueModeFromBlackToWhite()
{
    QZEColorManipulator manipulator;
    QZEColorSlider* slider = sliderOf(manipulator);
    QCOMPARE(slider->getMode(), QZEColorSlider::Value);
    QCOMPARE(slider->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(slider->getMaxColor(), QZEColor(0.0f, 0.0f, 1.0f));
}

void tst_QZEColorManipulator::focusPoliciesClickOnSliderStrongOnButton()
{
    QZEColorManipulator manipulator;
    QCOMPARE(sliderOf(manipulator)->focusPolicy(), Qt::ClickFocus);
    QCOMPARE(buttonOf(manipulator)->focusPolicy(), Qt::StrongFocus);
}

void tst_QZEColorManipulator::setFocusPolicyReachesTheSliderOnly()
{
    QZEColorManipulator manipulator;
    const Qt::FocusPolicy own = manipulator.QWidget::focusPolicy();
    manipulator.setFocusPolicy(Qt::TabFocus);
    QCOMPARE(sliderOf(manipulator)->focusPolicy(), Qt::TabFocus);
    QCOMPARE(buttonOf(manipulator)->focusPolicy(), Qt::StrongFocus);
    QCOMPARE(manipulator.QWidget::focusPolicy(), own);
}

void tst_QZEColorManipulator::signalsThenSlotsInMetaObjectOrder()
{
    const QStringList expected = {
        "signal buttonPressed()",
        "signal sliderPressed()",
        "signal sliderReleased()",
        "signal sliderColorChanged(float,float,float)",
        "signal colorChanged()",
        "signal colorChanged(QZEColor)",
        "signal colorChanged(int,int,int)",
        "signal colorChanged(float,float,float)",
        "signal dialogColorChanged()",
        "signal dialogColorChanged(QZEColor)",
        "signal dialogColorChanged(int,int,int)",
        "signal dialogColorChanged(float,float,float)",
        "signal finalColorSet(QZEColor)",
        "signal cancelled()",
        "slot colorButtonPressed()",
        "slot sliderValueChanged(float)",
        "slot sliderValuePressed()",
        "slot sliderValueReleased()",
        "slot temporaryColorChanged(QZEColor)",
        "slot finalColorChanged(QZEColor)",
        "slot cancelledPressed()",
    };
    QCOMPARE(methodsInMetaObjectOrder(QZEColorManipulator::staticMetaObject), expected);
}

// --- Setters and getters -----------------------------------------------------------

void tst_QZEColorManipulator::setColorOnAnyOverloadEmitsNothing_data()
{
    QTest::addColumn<Setter>("set");
    QTest::newRow("QZEColor") << Setter([](QZEColorManipulator& m) { m.setColor(QZEColor(30.0f, 1.0f, 1.0f)); });
    QTest::newRow("int") << Setter([](QZEColorManipulator& m) { m.setColor(255, 128, 0); });
    QTest::newRow("float") << Setter([](QZEColorManipulator& m) { m.setColor(0.2f, 0.4f, 0.8f); });
    QTest::newRow("HSV") << Setter([](QZEColorManipulator& m) { m.setHSV(120.0f, 0.5f, 0.25f); });
    QTest::newRow("LAB") << Setter([](QZEColorManipulator& m) { m.setLAB(50.0f, 20.0f, -30.0f); });
    QTest::newRow("spectrum") << Setter([](QZEColorManipulator& m) {
        m.setSpectrum(spectrumWithBands(40, true), 1.0f, true);
    });
}

void tst_QZEColorManipulator::setColorOnAnyOverloadEmitsNothing()
{
    QFETCH(Setter, set);
    Rig rig(QZEColor(200.0f, 0.5f, 0.6f));
    SignalOrder manipulatorLog(&rig.manipulator);
    SignalOrder buttonLog(rig.button);
    SignalOrder sliderLog(rig.slider);
    const QZEColor before = rig.manipulator.getColor();

    set(rig.manipulator);

    QVERIFY(rig.manipulator.getColor() != before);
    QCOMPARE(manipulatorLog.signatures(), QStringList());
    QCOMPARE(buttonLog.signatures(), QStringList());
    QCOMPARE(sliderLog.signatures(), QStringList());
}

void tst_QZEColorManipulator::setColorOverloadsConvertToHsv_data()
{
    QTest::addColumn<Setter>("set");
    QTest::addColumn<QZEColor>("expected");
    // 128/255 of green over full red: hue 60 * 128/255.
    QTest::newRow("int 255 128 0")
        << Setter([](QZEColorManipulator& m) { m.setColor(255, 128, 0); })
        << QZEColor(30.117647f, 1.0f, 1.0f);
    // (0.2, 0.4, 0.8): blue largest, hue 240 + 60 * (0.2 - 0.4) / 0.6.
    QTest::newRow("float 0.2 0.4 0.8")
        << Setter([](QZEColorManipulator& m) { m.setColor(0.2f, 0.4f, 0.8f); })
        << QZEColor(220.0f, 0.75f, 0.8f);
    QTest::newRow("float black") << Setter([](QZEColorManipulator& m) { m.setColor(0.0f, 0.0f, 0.0f); })
                                 << QZEColor(0.0f, 0.0f, 0.0f);
    // HSV is taken as it is, with no RGB round trip: a grey keeps its hue.
    QTest::newRow("HSV grey with hue")
        << Setter([](QZEColorManipulator& m) { m.setHSV(123.5f, 0.0f, 0.375f); })
        << QZEColor(123.5f, 0.0f, 0.375f);
}

void tst_QZEColorManipulator::setColorOverloadsConvertToHsv()
{
    QFETCH(Setter, set);
    QFETCH(QZEColor, expected);
    QZEColorManipulator manipulator;
    set(manipulator);
    QZE_CHECK(compareColours(manipulator.getColor(), expected, 1e-5));
    QZE_CHECK(compareColours(buttonOf(manipulator)->getColor(), expected, 1e-5));
}

void tst_QZEColorManipulator::gettersReadTheButtonsColour()
{
    QZEColorManipulator manipulator;
    // Linear (0.3, 0.5, 0.6); the button gets it without the manipulator.
    buttonOf(manipulator)->setColor(QZEColor(200.0f, 0.5f, 0.6f));

    float h, s, v;
    manipulator.getHSV(h, s, v);
    QCOMPARE((QList<float>{h, s, v}), (QList<float>{200.0f, 0.5f, 0.6f}));
    float r, g, b;
    manipulator.getColor(r, g, b);
    QZE_COMPARE_NEAR(r, 0.3, 1e-6);
    QZE_COMPARE_NEAR(g, 0.5, 1e-6);
    QZE_COMPARE_NEAR(b, 0.6, 1e-6);
    int R, G, B;
    manipulator.getColor(R, G, B);
    // Linear channels times 255, truncated, whatever s_useGamma says.
    QCOMPARE((QList<int>{R, G, B}), (QList<int>{76, 127, 153}));
    QCOMPARE(manipulator.getColor(), QZEColor(200.0f, 0.5f, 0.6f));
}

void tst_QZEColorManipulator::labGettersAndSetterRoundTrip()
{
    QZEColorManipulator manipulator;
    manipulator.setHSV(0.0f, 0.0f, 1.0f);
    float L, a, b;
    manipulator.getLAB(L, a, b);
    QZE_COMPARE_NEAR(L, 100.0, 1e-3);
    QZE_COMPARE_NEAR(a, 0.0, 1e-3);
    QZE_COMPARE_NEAR(b, 0.0, 1e-3);

    manipulator.setLAB(50.0f, 20.0f, -30.0f);
    manipulator.getLAB(L, a, b);
    QZE_COMPARE_NEAR(L, 50.0, 1e-3);
    QZE_COMPARE_NEAR(a, 20.0, 1e-3);
    QZE_COMPARE_NEAR(b, -30.0, 1e-3);
}

// --- The brightness slider -----------------------------------------------------------

void tst_QZEColorManipulator::setColorPutsSliderAtEncodedBrightness_data()
{
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<bool>("useGamma");
    const QZEColor colours[] = {
        {30.0f, 1.0f, 0.5f},  // linear (0.5, 0.25, 0)
        {200.0f, 0.5f, 0.6f}, // linear (0.3, 0.5, 0.6)
        {0.0f, 0.0f, 0.5f},   // grey: stays grey at full brightness
        {0.0f, 0.0f, 0.0f},   // black: handle at 0, strip black to white
        {120.0f, 0.75f, 2.0f}, // linear (0.5, 2, 0.5): the handle goes past the end
    };
    // The slider works on encoded values whatever s_useGamma says; only the
    // button's face follows the switch.
    for (bool useGamma : {true, false})
        for (const QZEColor& c : colours)
            QTest::addRow("%g %g %g, gamma %s", double(c.h), double(c.s), double(c.v),
                          useGamma ? "on" : "off")
                << c << useGamma;
}

void tst_QZEColorManipulator::setColorPutsSliderAtEncodedBrightness()
{
    QFETCH(QZEColor, colour);
    QFETCH(bool, useGamma);
    GammaSetting gamma(useGamma);
    QZEColorManipulator manipulator;

    manipulator.setColor(colour);

    const QZEColor encoded = encodedHsv(colour);
    QZEColorSlider* slider = sliderOf(manipulator);
    QZE_COMPARE_NEAR(slider->getValue(), encoded.v, 1e-5);
    QZE_CHECK(compareColours(slider->getMaxColor(), QZEColor(encoded.h, encoded.s, 1.0f), 1e-5));
    QCOMPARE(slider->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(manipulator.getColor(), colour);
    QCOMPARE(buttonOf(manipulator)->getColor(), colour);
}

void tst_QZEColorManipulator::orangeGivesFullSliderAndMaxColourHue44()
{
    QZEColorManipulator manipulator;
    // Linear (1, 0.5, 0) encodes to (1, 0.735357, 0): hue 60 * 0.735357.
    manipulator.setColor(QZEColor(30.0f, 1.0f, 1.0f));
    QZEColorSlider* slider = sliderOf(manipulator);
    QZE_COMPARE_NEAR(slider->getValue(), 1.0, 1e-6);
    QZE_COMPARE_NEAR(slider->getMaxColor().h, 44.1214, 1e-3);
    QZE_COMPARE_NEAR(slider->getMaxColor().s, 1.0, 1e-6);
    QCOMPARE(slider->getMaxColor().v, 1.0f);
}

void tst_QZEColorManipulator::draggingSliderToZeroGivesBlackAndZeroBytes()
{
    Rig rig(QZEColor(200.0f, 0.5f, 0.6f));
    QVERIFY(rig.ok);
    SignalOrder log(&rig.manipulator);

    pressSliderAt(rig.slider, rig.slider->width() / 2);
    moveSliderTo(rig.slider, -5); // past the left end
    releaseSliderAt(rig.slider, -5);

    QCOMPARE(rig.slider->getValue(), 0.0f);
    QCOMPARE(rig.manipulator.getColor().v, 0.0f);
    int r, g, b;
    rig.manipulator.getColor(r, g, b);
    QCOMPARE((QList<int>{r, g, b}), (QList<int>{0, 0, 0}));
    // The last slider step: four forms of black, then its RGB, then the release.
    const QStringList signatures = log.signatures();
    QCOMPARE(signatures.mid(signatures.size() - 6),
             (FourColorForms + QStringList{"sliderColorChanged(float,float,float)", "sliderReleased()"}));
    QZE_CHECK(compareFourForms(log, int(log.emissions.size()) - 6, QZEColor(0.0f, 0.0f, 0.0f), 0.0, 0, 0, 0));
}

void tst_QZEColorManipulator::draggingSliderToOneGivesFullBrightnessColour()
{
    // Linear (0.5, 0.25, 0) encodes to (0.735357, 0.537099, 0); at full
    // brightness that is (1, 0.537099 / 0.735357, 0), decoded again.
    Rig rig(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(rig.ok);
    SignalOrder log(&rig.manipulator);

    pressSliderAt(rig.slider, rig.slider->width() + 10);

    const double green = srgbDecoded(srgbEncoded(0.25) / srgbEncoded(0.5));
    const QZEColor expected = hsvOf(1.0f, float(green), 0.0f);
    QCOMPARE(rig.slider->getValue(), 1.0f);
    QZE_CHECK(compareColours(rig.manipulator.getColor(), expected, 1e-5));
    QCOMPARE(log.signatures(), (QStringList{"sliderPressed()"} + FourColorForms
                                   + QStringList{"sliderColorChanged(float,float,float)"}));
    QZE_CHECK(compareFourForms(log, 1, expected, 1e-5, 255, int(green * 255.0), 0));
    const QList<QVariant>& sliderRgb = log.emissions.at(5).arguments;
    QZE_COMPARE_NEAR(sliderRgb.at(0).toFloat(), 1.0, 1e-5);
    QZE_COMPARE_NEAR(sliderRgb.at(1).toFloat(), green, 1e-5);
    QZE_COMPARE_NEAR(sliderRgb.at(2).toFloat(), 0.0, 1e-5);
}

void tst_QZEColorManipulator::sliderMoveEmitsFourFormsThenSliderColour()
{
    Rig rig(QZEColor(0.0f, 0.0f, 1.0f)); // white: the strip is a grey ramp
    QVERIFY(rig.ok);
    SignalOrder log(&rig.manipulator);
    SignalOrder buttonLog(rig.button);
    const int width = rig.slider->width();

    pressSliderAt(rig.slider, width / 4);
    moveSliderTo(rig.slider, width / 2);
    releaseSliderAt(rig.slider, width / 2);

    const QStringList step = FourColorForms + QStringList{"sliderColorChanged(float,float,float)"};
    QCOMPARE(log.signatures(),
             QStringList{"sliderPressed()"} + step + step + QStringList{"sliderReleased()"});
    // Encoded grey t is linear grey decode(t).
    const double t = double(width / 2) / double(width);
    const QZEColor grey(0.0f, 0.0f, float(srgbDecoded(t)));
    const int byte = int(float(srgbDecoded(t)) * 255.0f);
    QZE_CHECK(compareFourForms(log, 6, grey, 1e-6, byte, byte, byte));
    QZE_CHECK(compareColours(rig.button->getColor(), grey, 1e-6));
    QCOMPARE(buttonLog.signatures(), QStringList());
    // The slider keeps its strip: black to white.
    QCOMPARE(rig.slider->getMaxColor(), QZEColor(0.0f, 0.0f, 1.0f));
}

void tst_QZEColorManipulator::trackingOffEmitsOnlyOnRelease()
{
    Rig rig(QZEColor(0.0f, 0.0f, 1.0f));
    QVERIFY(rig.ok);
    rig.manipulator.setSliderTracking(false);
    SignalOrder log(&rig.manipulator);
    const int width = rig.slider->width();

    pressSliderAt(rig.slider, width / 4);
    moveSliderTo(rig.slider, width / 2);
    QCOMPARE(log.signatures(), QStringList{"sliderPressed()"});
    releaseSliderAt(rig.slider, width / 2);

    QCOMPARE(log.signatures(), (QStringList{"sliderPressed()"} + FourColorForms
                                   + QStringList{"sliderColorChanged(float,float,float)",
                                                 "sliderReleased()"}));
}

// --- Relays and final colours ------------------------------------------------------------

void tst_QZEColorManipulator::buttonClickRelaysAsButtonPressed()
{
    Rig rig;
    QVERIFY(rig.ok);
    rig.button->setShowColorDialog(false);
    SignalOrder log(&rig.manipulator);
    QTest::mouseClick(rig.button, Qt::LeftButton);
    QCOMPARE(log.signatures(), QStringList{"buttonPressed()"});
}

void tst_QZEColorManipulator::dialogColourRelaysInFourFormsAndLeavesSlider()
{
    Rig rig(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(rig.ok);
    const float value = rig.slider->getValue();
    const QZEColor maxColor = rig.slider->getMaxColor();
    SignalOrder log(&rig.manipulator);
    const QZEColor live(200.0f, 0.5f, 0.6f);

    emit rig.button->temporaryColorChosen(live);

    QCOMPARE(log.signatures(), FourDialogForms);
    QZE_CHECK(compareFourForms(log, 0, live, 1e-6, 76, 127, 153));
    QCOMPARE(rig.slider->getValue(), value);
    QCOMPARE(rig.slider->getMaxColor(), maxColor);
    QCOMPARE(rig.manipulator.getColor(), QZEColor(30.0f, 1.0f, 0.5f));
}

void tst_QZEColorManipulator::finalColourMovesSliderEmitsFourFormsAndFinalColorSet()
{
    Rig rig(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(rig.ok);
    SignalOrder log(&rig.manipulator);
    const QZEColor chosen(200.0f, 0.5f, 0.6f);

    rig.manipulator.finalColorChanged(chosen);

    QCOMPARE(log.signatures(), FourColorForms + QStringList{"finalColorSet(QZEColor)"});
    QZE_CHECK(compareFourForms(log, 0, chosen, 1e-6, 76, 127, 153));
    QCOMPARE(log.emissions.at(4).arguments.at(0).value<QZEColor>(), chosen);
    const QZEColor encoded = encodedHsv(chosen);
    QZE_COMPARE_NEAR(rig.slider->getValue(), encoded.v, 1e-5);
    QZE_CHECK(compareColours(rig.slider->getMaxColor(), QZEColor(encoded.h, encoded.s, 1.0f), 1e-5));
}

void tst_QZEColorManipulator::intFormClampsOverRangeAndNegativeChannels_data()
{
    QTest::addColumn<bool>("live");
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<int>("r");
    QTest::addColumn<int>("g");
    QTest::addColumn<int>("b");
    for (bool live : {false, true}) {
        const char* road = live ? "dialog" : "final";
        // Linear (2, 1, 1): above 1 gives 255.
        QTest::addRow("%s, red 2", road) << live << QZEColor(0.0f, 0.5f, 2.0f) << 255 << 255 << 255;
        // Linear (0.5, 2, 0.5).
        QTest::addRow("%s, green 2", road) << live << QZEColor(120.0f, 0.75f, 2.0f) << 127 << 255 << 127;
        // Saturation 1.5 at hue 0: (1, -0.5, -0.5); below 0 gives 0.
        QTest::addRow("%s, negative", road) << live << QZEColor(0.0f, 1.5f, 1.0f) << 255 << 0 << 0;
    }
}

void tst_QZEColorManipulator::intFormClampsOverRangeAndNegativeChannels()
{
    QFETCH(bool, live);
    QFETCH(QZEColor, colour);
    QFETCH(int, r);
    QFETCH(int, g);
    QFETCH(int, b);
    QZEColorManipulator manipulator;
    SignalOrder log(&manipulator);

    if (live)
        manipulator.temporaryColorChanged(colour);
    else
        manipulator.finalColorChanged(colour);

    QCOMPARE(log.signatures().mid(0, 4), live ? FourDialogForms : FourColorForms);
    // The float form is not clamped.
    QZE_CHECK(compareFourForms(log, 0, colour, 1e-6, r, g, b));
}

void tst_QZEColorManipulator::skippedDialogRelaysAsCancelled()
{
    QZEColorManipulator manipulator;
    const QZEColor colour(200.0f, 0.5f, 0.6f);
    manipulator.setColor(colour);
    SignalOrder log(&manipulator);

    buttonOf(manipulator)->rejected(); // what a cancelled dialog reaches

    QCOMPARE(log.signatures(),
             (FourColorForms + QStringList{"finalColorSet(QZEColor)", "cancelled()"}));
    QCOMPARE(log.emissions.at(4).arguments.at(0).value<QZEColor>(), colour);
}

void tst_QZEColorManipulator::droppedColourIsAFinalColour()
{
    Rig rig(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(rig.ok);
    SignalOrder log(&rig.manipulator);
    QMimeData mime;
    QColor colour;
    colour.setRgbF(0.25, 0.45, 0.85); // 16 bits a channel
    mime.setColorData(QVariant(colour));

    QDropEvent drop(QPoint(5, 5), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    static_cast<QObject*>(rig.button)->event(&drop);

    // Blue largest: hue 240 + 60 * (0.25 - 0.45) / 0.6; bytes 63.75, 114.75
    // and 216.75, truncated.
    const QZEColor dropped(220.0f, 0.6f / 0.85f, 0.85f);
    QCOMPARE(log.signatures(), (FourColorForms + QStringList{"finalColorSet(QZEColor)"}));
    QZE_CHECK(compareColours(rig.manipulator.getColor(), dropped, 1e-4));
    QZE_CHECK(compareFourForms(log, 0, dropped, 1e-4, 63, 114, 216));
    QZE_COMPARE_NEAR(rig.slider->getValue(), srgbEncoded(0.85), 1e-4);
}

// --- Slider visibility and enabled state ---------------------------------------------------

void tst_QZEColorManipulator::hidingSliderAlignsButtonLeftShowingClearsIt()
{
    Rig rig;
    QVERIFY(rig.ok);
    QLayoutItem* buttonItem = rig.manipulator.layout()->itemAt(1);
    QVERIFY(rig.manipulator.isSliderVisible());
    QCOMPARE(buttonItem->alignment(), Qt::Alignment());

    rig.manipulator.setSliderVisible(false);
    QVERIFY(!rig.manipulator.isSliderVisible());
    QVERIFY(rig.slider->isHidden());
    QCOMPARE(buttonItem->alignment(), Qt::Alignment(Qt::AlignLeft));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(rig.button->geometry().left(), 0);

    rig.manipulator.setSliderVisible(true);
    QVERIFY(rig.manipulator.isSliderVisible());
    QCOMPARE(buttonItem->alignment(), Qt::Alignment());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(rig.button->geometry().left(), TestWidth - 62);
}

void tst_QZEColorManipulator::activeSpectrumDisablesSlider_data()
{
    QTest::addColumn<bool>("hasSpectrum");
    QTest::addColumn<bool>("useSpectrum");
    QTest::addColumn<int>("bandCount");
    QTest::addColumn<bool>("active");
    QTest::newRow("no spectrum") << false << true << 40 << false;
    QTest::newRow("flag off") << true << false << 40 << false;
    QTest::newRow("39 bands") << true << true << 39 << false;
    QTest::newRow("40 bands") << true << true << 40 << true;
}

void tst_QZEColorManipulator::activeSpectrumDisablesSlider()
{
    QFETCH(bool, hasSpectrum);
    QFETCH(bool, useSpectrum);
    QFETCH(int, bandCount);
    QFETCH(bool, active);
    QZEColorManipulator manipulator;
    const osg::SpectrumPtr spectrum =
        hasSpectrum ? spectrumWithBands(bandCount, useSpectrum) : osg::SpectrumPtr();

    manipulator.setSpectrum(spectrum, 2.0f, false);

    QCOMPARE(sliderOf(manipulator)->isEnabled(), !active);
    QVERIFY(buttonOf(manipulator)->getSpectrum() == spectrum);
}

void tst_QZEColorManipulator::finalColourReevaluatesSpectrum()
{
    QZEColorManipulator manipulator;
    const osg::SpectrumPtr spectrum = spectrumWithBands(40, true);
    manipulator.setSpectrum(spectrum, 1.0f, false);
    QVERIFY(!sliderOf(manipulator)->isEnabled());

    spectrum->setUseSpectrum(false); // the host switches it off
    QVERIFY(!sliderOf(manipulator)->isEnabled());
    manipulator.finalColorChanged(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(sliderOf(manipulator)->isEnabled());

    spectrum->setUseSpectrum(true);
    manipulator.finalColorChanged(QZEColor(30.0f, 1.0f, 0.5f));
    QVERIFY(!sliderOf(manipulator)->isEnabled());
}

void tst_QZEColorManipulator::photometricParametersDisableSlider()
{
    QZEColorManipulator manipulator;
    manipulator.setPhotometricParameters(true);
    QVERIFY(!sliderOf(manipulator)->isEnabled());
    manipulator.setPhotometricParameters(false);
    QVERIFY(sliderOf(manipulator)->isEnabled());
}

QTEST_MAIN(tst_QZEColorManipulator)
#include "tst_QZEColorManipulator.moc"
