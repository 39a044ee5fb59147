#include "ColourArithmetic.h"
#include "DialogPart.h"
#include "QZEColorArray.h"
#include "QZEColorButton.h"
#include "QZEColorDialog.h"
#include "QZEColorField.h"
#include "QZEColorSlider.h"
#include "QZEDoubleSpiner.h"
#include "QZEScreenPicker.h"
#include "TestHelpers.h"
#include "zePlatform.h"

#include <QApplication>
#include <QCheckBox>
#include <QGraphicsView>
#include <QLabel>
#include <QMetaMethod>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <unistd.h>

namespace {

// --- Colour arithmetic written out for the expected values --------------------

// The published sRGB transfer functions, in double precision.
double srgbDecode(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double srgbEncode(double c)
{
    if (c <= 0.0)
        return 0.0;
    return c <= 0.0031308 ? 12.92 * c : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055;
}

QZEColor encodedColour(const QZEColor& linear)
{
    const Rgb rgb = rgbOf(linear);
    return hsvOf(float(srgbEncode(rgb.r)), float(srgbEncode(rgb.g)), float(srgbEncode(rgb.b)));
}

QZEColor decodedColour(const QZEColor& display)
{
    const Rgb rgb = rgbOf(display);
    return hsvOf(float(srgbDecode(rgb.r)), float(srgbDecode(rgb.g)), float(srgbDecode(rgb.b)));
}

// CIE L*a*b* of a colour's linear RGB through the sRGB/D65 matrix and the
// library's reference white.
struct Lab
{
    double L, a, b;
};

double labCurve(double t)
{
    const double epsilon = 216.0 / 24389.0;
    const double kappa = 24389.0 / 27.0;
    return t > epsilon ? std::cbrt(t) : (kappa * t + 16.0) / 116.0;
}

Lab labOfColour(const QZEColor& color)
{
    const Rgb c = rgbOf(color);
    const double X = 0.4124564 * c.r + 0.3575761 * c.g + 0.1804375 * c.b;
    const double Y = 0.2126729 * c.r + 0.7151522 * c.g + 0.0721750 * c.b;
    const double Z = 0.0193339 * c.r + 0.1191920 * c.g + 0.9503041 * c.b;
    const double fx = labCurve(X / double(QZEColor::s_reference_white_X));
    const double fy = labCurve(Y / double(QZEColor::s_reference_white_Y));
    const double fz = labCurve(Z / double(QZEColor::s_reference_white_Z));
    return {116.0 * fy - 16.0, 500.0 * (fx - fy), 200.0 * (fy - fz)};
}

void compareHsv(const QZEColor& actual, const QZEColor& expected, const QString& context = {})
{
    QZE_COMPARE_NEAR_IN(actual.h, expected.h, 2e-3, context);
    QZE_COMPARE_NEAR_IN(actual.s, expected.s, 2e-5, context);
    QZE_COMPARE_NEAR_IN(actual.v, expected.v, 2e-5, context);
}

// --- Reaching the dialog's parts --------------------------------------------------

QWidget* pipetteCatcher()
{
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (widget->objectName() == QLatin1String("QZEColorDialogPipetteCatcher"))
            return widget;
    return nullptr;
}

// Makes color the dialog's internal colour, whatever s_useGamma says.
void setInternalColour(QZEColorDialog& dialog, const QZEColor& color)
{
    const bool useGamma = QZEColor::s_useGamma;
    QZEColor::s_useGamma = true;
    dialog.setColor(color);
    QZEColor::s_useGamma = useGamma;
}

// The dialog's internal colour, read through getColor() as it is with
// s_useGamma set.
QZEColor internalColour(const QZEColorDialog& dialog)
{
    const bool useGamma = QZEColor::s_useGamma;
    QZEColor::s_useGamma = true;
    const QZEColor color = dialog.getColor();
    QZEColor::s_useGamma = useGamma;
    return color;
}

QByteArray standardOutputOf(const std::function<void()>& work)
{
    std::fflush(stdout);
    int fds[2];
    if (::pipe(fds) != 0)
        qFatal("no pipe");
    const int saved = ::dup(STDOUT_FILENO);
    ::dup2(fds[1], STDOUT_FILENO);
    ::close(fds[1]);
    work();
    std::fflush(stdout);
    ::dup2(saved, STDOUT_FILENO);
    ::close(saved);
    QByteArray output;
    char buffer[256];
    ssize_t n;
    while ((n = ::read(fds[0], buffer, sizeof buffer)) > 0)
        output.append(buffer, int(n));
    ::close(fds[0]);
    return output;
}

const QZEColor StartColour(200.0f, 0.6f, 0.5f);

// The rows of a test run with the sRGB switch on and off.
void addGammaRows()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addRow("sRGB on") << true;
    QTest::addRow("sRGB off") << false;
}

// Calls a handler slot by its name, with a double for the spin boxes' and a
// float for the sliders'.
bool invokeHandler(QZEColorDialog& dialog, const QByteArray& slot, double input)
{
    return slot.endsWith("SpinerChanged")
               ? QMetaObject::invokeMethod(&dialog, slot.constData(), Q_ARG(double, input))
               : QMetaObject::invokeMethod(&dialog, slot.constData(), Q_ARG(float, float(input)));
}

// After an edit of one L*a*b* component: that component is expected, the
// other two are as before.
void compareLabEdit(const QZEColor& before, const QZEColor& after, int component, double expected)
{
    const Lab was = labOfColour(before);
    const Lab is = labOfColour(after);
    const double wasComponents[3] = {was.L, was.a, was.b};
    const double isComponents[3] = {is.L, is.a, is.b};
    for (int i = 0; i < 3; ++i)
        QZE_COMPARE_NEAR_IN(isComponents[i], i == component ? expected : wasComponents[i], 2e-3,
                            QStringLiteral("component %1").arg(i));
}

// Shows the dialog with its top left corner at position, so that the
// screen left of it lies outside the dialog.
bool showAt(QZEColorDialog& dialog, const QPoint& position = QPoint(300, 200))
{
    dialog.move(position);
    dialog.show();
    return QTest::qWaitForWindowExposed(&dialog);
}

// A small window of one colour, well away from the dialog.
class ColourPatch : public QWidget
{
public:
    explicit ColourPatch(const QColor& color)
    {
        setWindowFlags(Qt::FramelessWindowHint);
        setAutoFillBackground(true);
        QPalette p = palette();
        p.setColor(QPalette::Window, color);
        setPalette(p);
        setGeometry(0, 0, 60, 60);
    }
};

// Notes the type of every event that reaches it.
class EventRecorder : public QObject
{
public:
    QList<QEvent::Type> types;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        types << event->type();
        return false;
    }
};

// Hands a spectrum on the way a host does when it connects by signature.
class SpectrumSource : public QObject
{
    Q_OBJECT
signals:
    void spectrumHanded(osg::SpectrumPtr spectrum, float maxValue, bool spectrumOnly);
};

} // namespace

class tst_QZEColorDialog : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void metaObjectListsSignalAndSlotsInOrder();
    void metaObjectKeepsParameterNames();
    void metaObjectIdentifiesTheClass();
    void initSpectrumConnectsByHostSignature();

    void defaultConstructorStartsAtPureRedRemembered();
    void colourConstructorStartsEditingPassAtColour();
    void nameArgumentBecomesObjectName();
    void spinBoxesShowThreeExactDecimalsAndLabRange();
    void spectrumTabStaysDisabled();
    void swatchesTakeFixedSizeFromDpiScale();
    void swatchesOpenNoColourDialog();

    void hueSliderAtOneGivesHue35999();
    void hueSpinEntryOf360Gives359999AndNegativeGivesZero();
    void setColorOfCurrentColourEmitsNothingOtherwiseOnce();
    void getColorGivesBackSetColor_data();
    void getColorGivesBackSetColor();
    void rejectEmitsStoredPreviousColourWithoutEncoding();
    void greyInHueModeSendsOnlyHueToColourField();
    void rightClickDuringPickingEndsWithoutChangingColour();
    void leftReleaseOverDialogEndsPickingWithoutGrabbing();

    void componentHandlersWriteTheirComponent_data();
    void componentHandlersWriteTheirComponent();
    void labHandlersReplaceOneLabComponent_data();
    void labHandlersReplaceOneLabComponent();
    void colourFieldSliderWritesItsModesComponent_data();
    void colourFieldSliderWritesItsModesComponent();
    void colourFieldSliderInUnknownModeKeepsColour();
    void colourFieldColourIsDecodedExceptInLabModes_data();
    void colourFieldColourIsDecodedExceptInLabModes();

    void colorChangedOncePerUserEdit();
    void viewRefreshesEmitNothing();

    void slidersShowEncodedChannelsAndScaledComponents_data();
    void slidersShowEncodedChannelsAndScaledComponents();
    void sliderGradientsSpanWhatTheyReach();
    void colourFieldFollowsFieldSliderMode();
    void modeSlotsSetFieldAndFieldSliderOnlyWhenOn();
    void spinBoxesShowSliderRealValues();
    void colourInfoLabelsShowLinearChannelsWithGamma();
    void colourInfoLabelsShowEncodedChannelsWithoutGamma();
    void colourInfoShowsGivenHsvAndCurrentLab();

    void useGammaSwitchSetsGlobalAndEmitsOnce();
    void gammaValueOfStoredValueDoesNothing();
    void customColourStoresInternalColour();
    void customColourCellGivesColourUnconverted();
    void freeCustomColourCellIsIgnored();
    void customColoursCycleWhenFull();
    void previousSwatchClickRestoresColourOnly();
    void reinitRemembersColourAndShowsIt();

    void rejectEmitsPreviousColourThenRejects();
    void closeEmitsPreviousColour();
    void escapeRejects();
    void acceptEmitsNoColour();
    void colourTabRefreshesViewSilently();
    void resizeOnSpectrumTabFitsSceneToView();

    void pipetteShowsCatcherAndRunsTimer();
    void pipetteCatcherFollowsCursorOutsideDialogOnly();
    void pipetteSwallowsPressesAndMoves();
    void keyPressEndsPicking();
    void pipetteButtonEndsPicking();
    void leftReleaseOutsideDialogGrabsPixel_data();
    void leftReleaseOutsideDialogGrabsPixel();
    void screenColourConversionFollowsGammaSwitch();

    void arrowKeysOnColourFieldEmitOncePerKey();
    void tabMovesFromColourFieldThroughSpinBoxesToButtons();
    void colourFieldPickKeepsFieldPlane();

private:
    bool _savedUseGamma = true;
    float _savedGamma = 2.2f;
};

void tst_QZEColorDialog::init()
{
    _savedUseGamma = QZEColor::s_useGamma;
    _savedGamma = QZEColor::s_gamma;
}

void tst_QZEColorDialog::cleanup()
{
    QZEColor::s_useGamma = _savedUseGamma;
    QZEColor::s_gamma = _savedGamma;
    zePlatform::setDpiScale(0.0f, 0.0f);
}

// --- Meta-object -----------------------------------------------------------------

void tst_QZEColorDialog::metaObjectListsSignalAndSlotsInOrder()
{
    const QStringList expected = {
        "signal colorChanged(QZEColor)",
        "slot hueSliderChanged(float)",
        "slot saturationSliderChanged(float)",
        "slot valueSliderChanged(float)",
        "slot redSliderChanged(float)",
        "slot greenSliderChanged(float)",
        "slot blueSliderChanged(float)",
        "slot lstarSliderChanged(float)",
        "slot astarSliderChanged(float)",
        "slot bstarSliderChanged(float)",
        "slot colorFieldChanged(QZEColor)",
        "slot colorFieldSliderChanged(float)",
        "slot setHueMode(bool)",
        "slot setSaturationMode(bool)",
        "slot setValueMode(bool)",
        "slot setRedMode(bool)",
        "slot setGreenMode(bool)",
        "slot setBlueMode(bool)",
        "slot setLstarMode(bool)",
        "slot setAstarMode(bool)",
        "slot setBstarMode(bool)",
        "slot hueSpinerChanged(double)",
        "slot saturationSpinerChanged(double)",
        "slot valueSpinerChanged(double)",
        "slot redSpinerChanged(double)",
        "slot greenSpinerChanged(double)",
        "slot blueSpinerChanged(double)",
        "slot lstarSpinerChanged(double)",
        "slot astarSpinerChanged(double)",
        "slot bstarSpinerChanged(double)",
        "slot addCustomColor()",
        "slot getCustomColor(int)",
        "slot toggleColorPipette(bool)",
        "slot restorePreviousColor()",
        "slot setUseGamma(bool)",
        "slot setGammaValue(double)",
        "slot tabChanged(int)",
        "slot setUseSpectrum(bool)",
        "slot saveSpectrumButtonClicked()",
        "slot loadSpectrumLineChanged()",
        "slot loadSpectrumButtonClicked()",
        "slot addSpectrumButtonClicked()",
        "slot loadSpectrumFile(char*)",
        "slot addSpectrumFile(char*)",
        "slot reject()",
        "slot rejectSpectrum()",
        "slot setUniformMode(bool)",
        "slot setNonUniformMode(bool)",
        "slot updateSpectrum()",
        "slot resetSpectrum()",
        "slot setSamplingPreset(int)",
        "slot resampleSpectrum()",
        "slot setAnalyticFunction()",
        "slot addAnalyticFunction()",
        "slot analyticFunctionChanged(int)",
        "slot rgbSpectrumSliderChanged(float)",
        "slot scaleSpectrumSliderChanged(float)",
        "slot toggleSamplingEditor(bool)",
        "slot preGrabScreenColor()",
        "slot initSpectrum(osg::SpectrumPtr,float,bool)",
        "slot initSpectrum(osg::SpectrumPtr,float)",
        "slot initSpectrum(osg::SpectrumPtr)",
        "slot setSpectrumInfo(QZEColor)",
        "slot setColor(QZEColor)",
        "slot setColorInfo(QZEColor)",
    };
    QCOMPARE(methodsInMetaObjectOrder(QZEColorDialog::staticMetaObject), expected);
}

void tst_QZEColorDialog::metaObjectKeepsParameterNames()
{
    const QHash<QByteArray, QByteArray> named = {
        {"colorChanged(QZEColor)", "color"},
        {"getCustomColor(int)", "index"},
        {"toggleColorPipette(bool)", "enable"},
        {"setSamplingPreset(int)", "preset"},
        {"rgbSpectrumSliderChanged(float)", "value"},
        {"scaleSpectrumSliderChanged(float)", "value"},
        {"initSpectrum(osg::SpectrumPtr,float,bool)", "spectrum,maxValue,spectrumOnly"},
        {"initSpectrum(osg::SpectrumPtr,float)", "spectrum,maxValue"},
        {"initSpectrum(osg::SpectrumPtr)", "spectrum"},
    };
    const QMetaObject& meta = QZEColorDialog::staticMetaObject;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const QMetaMethod method = meta.method(i);
        const QByteArray signature = method.methodSignature();
        QByteArray unnamed;
        for (int p = 1; p < method.parameterCount(); ++p)
            unnamed += ',';
        const QByteArray expected = named.value(signature, unnamed);
        QVERIFY2(method.parameterNames().join(',') == expected, signature.constData());
    }
}

void tst_QZEColorDialog::metaObjectIdentifiesTheClass()
{
    QZEColorDialog dialog;
    QCOMPARE(QByteArray(dialog.metaObject()->className()), QByteArray("QZEColorDialog"));
    QCOMPARE(dialog.qt_metacast("QZEColorDialog"), static_cast<void*>(&dialog));
    QCOMPARE(dialog.qt_metacast("QDialog"), static_cast<void*>(static_cast<QDialog*>(&dialog)));
    QCOMPARE(dialog.qt_metacast("QZEColorSlider"), nullptr);
}

void tst_QZEColorDialog::initSpectrumConnectsByHostSignature()
{
    QZEColorDialog dialog;
    SpectrumSource source;
    QVERIFY(QObject::connect(&source, SIGNAL(spectrumHanded(osg::SpectrumPtr, float, bool)),
                             &dialog, SLOT(initSpectrum(osg::SpectrumPtr, float, bool))));
    QVERIFY(QObject::connect(&source, SIGNAL(spectrumHanded(osg::SpectrumPtr, float, bool)),
                             &dialog, SLOT(initSpectrum(osg::SpectrumPtr))));
    emit source.spectrumHanded(osg::SpectrumPtr(), 1.0f, false);
}

// --- Construction ------------------------------------------------------------------

void tst_QZEColorDialog::defaultConstructorStartsAtPureRedRemembered()
{
    for (bool useGamma : {true, false}) {
        QZEColor::s_useGamma = useGamma;
        QZEColorDialog dialog;
        QZE_CHECK(compareHsv(dialog.getColor(), QZEColor(0.0f, 1.0f, 1.0f)));
        QCOMPARE(dialog.getQColor(), QColor(255, 0, 0));
        QCOMPARE(part<QCheckBox>(dialog, "_useGamma")->isChecked(), useGamma);
        QCOMPARE(part<QZEColorButton>(dialog, "_previous_color")->getColor(), QZEColor(0.0f, 1.0f, 1.0f));
        QCOMPARE(part<QZEColorButton>(dialog, "_current_color")->getColor(), QZEColor(0.0f, 1.0f, 1.0f));
        QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
        dialog.reject();
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).value<QZEColor>(), QZEColor(0.0f, 1.0f, 1.0f));
    }
}

void tst_QZEColorDialog::colourConstructorStartsEditingPassAtColour()
{
    QZEColor::s_useGamma = true;
    const QZEColor color(120.0f, 0.5f, 0.25f);
    QZEColorDialog dialog(color);
    QCOMPARE(dialog.getColor(), color);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.reject();
    QCOMPARE(spy.at(0).at(0).value<QZEColor>(), color);
    // The swatch shows the colour's 8-bit form: RGB 0.125, 0.25, 0.125 truncate
    // to 31, 63, 31.
    const QZEColor shown = part<QZEColorButton>(dialog, "_previous_color")->getColor();
    compareHsv(shown, hsvOf(31.0f / 255.0f, 63.0f / 255.0f, 31.0f / 255.0f));
}

void tst_QZEColorDialog::nameArgumentBecomesObjectName()
{
    QZEColorDialog named(nullptr, "chooser");
    QCOMPARE(named.objectName(), QStringLiteral("chooser"));
}

void tst_QZEColorDialog::spinBoxesShowThreeExactDecimalsAndLabRange()
{
    QZEColorDialog dialog;
    for (const char* name : {"_redSpiner", "_greenSpiner", "_blueSpiner", "_hueSpiner", "_saturationSpiner",
                             "_valueSpiner", "_lstarSpiner", "_astarSpiner", "_bstarSpiner"}) {
        auto* spiner = part<QZEDoubleSpiner>(dialog, name);
        QVERIFY2(spiner->getDisplayDecimals() == 3, name);
        QVERIFY2(spiner->getExactDisplayDecimals(), name);
    }
    for (const char* name : {"_astarSpiner", "_bstarSpiner"}) {
        auto* spiner = part<QZEDoubleSpiner>(dialog, name);
        QCOMPARE(spiner->minimum(), -double(QZEColor::s_LabRange));
        QCOMPARE(spiner->maximum(), double(QZEColor::s_LabRange));
    }
}

void tst_QZEColorDialog::spectrumTabStaysDisabled()
{
    QZEColorDialog dialog;
    auto* tabs = part<QTabWidget>(dialog, "tabWidget");
    QVERIFY(tabs->isTabEnabled(0));
    QVERIFY(!tabs->isTabEnabled(1));
    QVERIFY(!part<QGraphicsView>(dialog, "_spectrumPlot")->isEnabled());
}

void tst_QZEColorDialog::swatchesTakeFixedSizeFromDpiScale()
{
    zePlatform::setDpiScale(1.5f, 1.3f);
    QZEColorDialog dialog;
    // 64 * 1.5 = 96; 16 * 1.3 = 20.8, truncated to 20.
    for (const char* name : {"_current_color", "_previous_color", "_current_color_s", "_previous_color_s"}) {
        auto* swatch = part<QZEColorButton>(dialog, name);
        QVERIFY2(swatch->minimumSize() == QSize(96, 20), name);
        QVERIFY2(swatch->maximumSize() == QSize(96, 20), name);
    }
}

void tst_QZEColorDialog::swatchesOpenNoColourDialog()
{
    QZEColorDialog dialog;
    for (const char* name : {"_current_color", "_previous_color", "_current_color_s", "_previous_color_s"}) {
        auto* swatch = part<QZEColorButton>(dialog, name);
        QVERIFY2(!swatch->showColorDialog(), name);
        QVERIFY2(!swatch->accessibleName().isEmpty(), name);
    }
    QVERIFY(!part<QToolButton>(dialog, "_pick_color")->accessibleName().isEmpty());
}

// --- Edge cases ------------------------------------------------------------------------

void tst_QZEColorDialog::hueSliderAtOneGivesHue35999()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    dialog.hueSliderChanged(1.0f);
    QCOMPARE(dialog.getColor().h, 359.99f);
    QCOMPARE(part<QZEColorSlider>(dialog, "_hueSlider")->getValue(), 1.0f);
}

void tst_QZEColorDialog::hueSpinEntryOf360Gives359999AndNegativeGivesZero()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    dialog.hueSpinerChanged(360.0);
    QCOMPARE(dialog.getColor().h, 359.999f);
    dialog.hueSpinerChanged(-12.5);
    QCOMPARE(dialog.getColor().h, 0.0f);
    dialog.hueSpinerChanged(123.25);
    QCOMPARE(dialog.getColor().h, 123.25f);
}

void tst_QZEColorDialog::setColorOfCurrentColourEmitsNothingOtherwiseOnce()
{
    for (bool useGamma : {true, false}) {
        QZEColor::s_useGamma = useGamma;
        QZEColorDialog dialog;
        const QZEColor color(40.0f, 0.5f, 0.75f);
        dialog.setColor(color);
        QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
        dialog.setColor(color);
        QCOMPARE(spy.count(), 0);
        dialog.setColor(QZEColor(41.0f, 0.5f, 0.75f));
        QCOMPARE(spy.count(), 1);
        compareHsv(spy.at(0).at(0).value<QZEColor>(), dialog.getColor());
    }
}

void tst_QZEColorDialog::getColorGivesBackSetColor_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addRow("orange") << QZEColor(30.0f, 0.8f, 0.9f);
    QTest::addRow("dark teal") << QZEColor(185.0f, 0.4f, 0.02f);
    QTest::addRow("grey") << QZEColor(0.0f, 0.0f, 0.5f);
    QTest::addRow("bright blue") << QZEColor(240.0f, 1.0f, 1.0f);
}

void tst_QZEColorDialog::getColorGivesBackSetColor()
{
    QFETCH(QZEColor, color);
    QZEColorDialog dialog;
    QZEColor::s_useGamma = false;
    dialog.setColor(color);
    compareHsv(dialog.getColor(), color, QStringLiteral("sRGB off"));
    QZEColor::s_useGamma = true;
    dialog.setColor(color);
    QCOMPARE(dialog.getColor(), color);
}

void tst_QZEColorDialog::rejectEmitsStoredPreviousColourWithoutEncoding()
{
    QZEColor::s_useGamma = false;
    const QZEColor external(30.0f, 0.8f, 0.9f);
    QZEColorDialog dialog;
    dialog.reinit(external);
    dialog.hueSliderChanged(0.5f);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.reject();
    QCOMPARE(spy.count(), 1);
    // The remembered colour is the linear one; it goes out as it is stored.
    const QZEColor emitted = spy.at(0).at(0).value<QZEColor>();
    compareHsv(emitted, decodedColour(external));
    QVERIFY(std::abs(emitted.v - external.v) > 0.1f);
}

void tst_QZEColorDialog::greyInHueModeSendsOnlyHueToColourField()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    auto* field = part<QZEColorField>(dialog, "_colorField");
    QCOMPARE(field->getMode(), QZEColorField::Hue);
    dialog.setColor(QZEColor(60.0f, 0.5f, 0.25f));
    const QZEColor before = field->getColor();
    // The field shows display colours: the encoded RGB of the colour.
    compareHsv(before, encodedColour(QZEColor(60.0f, 0.5f, 0.25f)));

    dialog.setColor(QZEColor(200.0f, 0.0f, 0.8f));
    QCOMPARE(field->getColor().h, 200.0f);
    QCOMPARE(field->getColor().s, before.s);
    QCOMPARE(field->getColor().v, before.v);
}

void tst_QZEColorDialog::rightClickDuringPickingEndsWithoutChangingColour()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    const QZEColor before = dialog.getColor();
    dialog.toggleColorPipette(true);
    QWidget* catcher = pipetteCatcher();
    QVERIFY(catcher && catcher->isVisible());
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QCursor::setPos(10, 10);
    QTest::mousePress(catcher, Qt::RightButton, {}, QPoint(5, 5));
    QTest::mouseRelease(catcher, Qt::RightButton, {}, QPoint(5, 5));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(dialog.getColor(), before);
    QVERIFY(!catcher->isVisible());
    QVERIFY(!part<QToolButton>(dialog, "_pick_color")->isChecked());
}

void tst_QZEColorDialog::leftReleaseOverDialogEndsPickingWithoutGrabbing()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    const QZEColor before = dialog.getColor();
    part<QToolButton>(dialog, "_pick_color")->click();
    QWidget* catcher = pipetteCatcher();
    QVERIFY(catcher && catcher->isVisible());
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    const QPoint overDialog = dialog.frameGeometry().center();
    QCursor::setPos(overDialog);
    QTest::mouseRelease(catcher, Qt::LeftButton, {}, catcher->mapFromGlobal(overDialog));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(dialog.getColor(), before);
    QVERIFY(!catcher->isVisible());
    QVERIFY(!part<QToolButton>(dialog, "_pick_color")->isChecked());
}

// --- Handlers ---------------------------------------------------------------------------

void tst_QZEColorDialog::componentHandlersWriteTheirComponent_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<double>("input");
    QTest::addColumn<QZEColor>("expected");

    const Rgb rgb = rgbOf(StartColour);
    const float h = StartColour.h;
    const float s = StartColour.s;
    const float v = StartColour.v;
    for (bool useGamma : {true, false}) {
        const char* g = useGamma ? "sRGB on" : "sRGB off";
        const auto row = [&](const char* slot, double input, const QZEColor& expected) {
            QTest::addRow("%s(%g), %s", slot, input, g) << QByteArray(slot) << useGamma << input << expected;
        };
        row("hueSliderChanged", 0.25, QZEColor(0.25f * 359.99f, s, v));
        row("saturationSliderChanged", 0.3, QZEColor(h, 0.3f, v));
        row("valueSliderChanged", 0.7, QZEColor(h, s, useGamma ? float(srgbDecode(0.7)) : 0.7f));
        const float red = float(srgbDecode(0.7));
        row("redSliderChanged", 0.7, hsvOf(red, rgb.g, rgb.b));
        row("greenSliderChanged", 0.7, hsvOf(rgb.r, red, rgb.b));
        row("blueSliderChanged", 0.7, hsvOf(rgb.r, rgb.g, red));

        row("hueSpinerChanged", 123.5, QZEColor(123.5f, s, v));
        row("hueSpinerChanged", 360.0, QZEColor(359.999f, s, v));
        row("hueSpinerChanged", -3.0, QZEColor(0.0f, s, v));
        row("saturationSpinerChanged", 0.25, QZEColor(h, 0.25f, v));
        row("saturationSpinerChanged", 1.5, QZEColor(h, 1.0f, v));
        row("saturationSpinerChanged", -0.2, QZEColor(h, 0.0f, v));
        row("valueSpinerChanged", 0.7, QZEColor(h, s, useGamma ? float(srgbDecode(0.7)) : 0.7f));
        row("valueSpinerChanged", 1.7, QZEColor(h, s, 1.0f));
        row("valueSpinerChanged", -1.0, QZEColor(h, s, 0.0f));
        // Red, green and blue are decoded and not clamped, whatever the switch says.
        const float overRed = float(srgbDecode(1.5));
        row("redSpinerChanged", 1.5, hsvOf(overRed, rgb.g, rgb.b));
        row("greenSpinerChanged", 0.7, hsvOf(rgb.r, red, rgb.b));
        row("blueSpinerChanged", 0.02, hsvOf(rgb.r, rgb.g, float(0.02 / 12.92)));
    }
}

void tst_QZEColorDialog::componentHandlersWriteTheirComponent()
{
    QFETCH(QByteArray, slot);
    QFETCH(bool, useGamma);
    QFETCH(double, input);
    QFETCH(QZEColor, expected);

    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    QZEColor::s_useGamma = useGamma;
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QVERIFY(invokeHandler(dialog, slot, input));
    QZE_CHECK(compareHsv(internalColour(dialog), expected, QStringLiteral("internal")));
    QCOMPARE(spy.count(), 1);
    const QZEColor external = useGamma ? expected : encodedColour(expected);
    compareHsv(spy.at(0).at(0).value<QZEColor>(), external, QStringLiteral("emitted"));
}

void tst_QZEColorDialog::labHandlersReplaceOneLabComponent_data()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<double>("input");
    QTest::addColumn<int>("component");
    QTest::addColumn<double>("expected");

    const double range = double(QZEColor::s_LabRange);
    QTest::addRow("L* slider") << QByteArray("lstarSliderChanged") << 0.3 << 0 << 30.0;
    QTest::addRow("a* slider") << QByteArray("astarSliderChanged") << 0.55 << 1 << 0.05 * range;
    QTest::addRow("b* slider") << QByteArray("bstarSliderChanged") << 0.4 << 2 << -0.1 * range;
    QTest::addRow("L* spin box") << QByteArray("lstarSpinerChanged") << 42.0 << 0 << 42.0;
    QTest::addRow("a* spin box") << QByteArray("astarSpinerChanged") << -20.0 << 1 << -20.0;
    QTest::addRow("b* spin box") << QByteArray("bstarSpinerChanged") << 15.0 << 2 << 15.0;
}

void tst_QZEColorDialog::labHandlersReplaceOneLabComponent()
{
    QFETCH(QByteArray, slot);
    QFETCH(double, input);
    QFETCH(int, component);
    QFETCH(double, expected);

    for (bool useGamma : {true, false}) {
        QZEColorDialog dialog;
        setInternalColour(dialog, StartColour);
        QZEColor::s_useGamma = useGamma;
        QVERIFY(invokeHandler(dialog, slot, input));
        QZE_CHECK(compareLabEdit(StartColour, internalColour(dialog), component, expected));
    }
}

void tst_QZEColorDialog::colourFieldSliderWritesItsModesComponent_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QZEColor>("expected");

    const Rgb rgb = rgbOf(StartColour);
    const float position = 0.7f;
    const float channel = float(srgbDecode(0.7));
    for (bool useGamma : {true, false}) {
        const char* g = useGamma ? "sRGB on" : "sRGB off";
        QTest::addRow("hue, %s", g) << 0 << useGamma << QZEColor(position * 359.99f, StartColour.s, StartColour.v);
        QTest::addRow("saturation, %s", g) << 1 << useGamma << QZEColor(StartColour.h, position, StartColour.v);
        QTest::addRow("value, %s", g) << 2 << useGamma
                                      << QZEColor(StartColour.h, StartColour.s, useGamma ? channel : position);
        QTest::addRow("red, %s", g) << 3 << useGamma << hsvOf(channel, rgb.g, rgb.b);
        QTest::addRow("green, %s", g) << 4 << useGamma << hsvOf(rgb.r, channel, rgb.b);
        QTest::addRow("blue, %s", g) << 5 << useGamma << hsvOf(rgb.r, rgb.g, channel);
    }
}

void tst_QZEColorDialog::colourFieldSliderWritesItsModesComponent()
{
    QFETCH(int, mode);
    QFETCH(bool, useGamma);
    QFETCH(QZEColor, expected);

    QZEColorDialog dialog;
    part<QZEColorSlider>(dialog, "_colorFieldSlider")->setMode(QZEColorSlider::Mode(mode));
    setInternalColour(dialog, StartColour);
    QZEColor::s_useGamma = useGamma;
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.colorFieldSliderChanged(0.7f);
    compareHsv(internalColour(dialog), expected);
    QCOMPARE(spy.count(), 1);

    // The L*a*b* modes, checked on the colour's own L*a*b*.
    const double range = double(QZEColor::s_LabRange);
    const double labExpected[3] = {70.0, 0.2 * range, 0.2 * range};
    for (int labMode = 6; labMode <= 8; ++labMode) {
        setInternalColour(dialog, StartColour);
        part<QZEColorSlider>(dialog, "_colorFieldSlider")->setMode(QZEColorSlider::Mode(labMode));
        dialog.colorFieldSliderChanged(0.7f);
        QZE_CHECK(compareLabEdit(StartColour, internalColour(dialog), labMode - 6, labExpected[labMode - 6]));
    }
}

void tst_QZEColorDialog::colourFieldSliderInUnknownModeKeepsColour()
{
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    part<QZEColorSlider>(dialog, "_colorFieldSlider")->setMode(QZEColorSlider::Mode(12));
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.colorFieldSliderChanged(0.7f);
    QCOMPARE(internalColour(dialog), StartColour);
    QCOMPARE(spy.count(), 1);
}

void tst_QZEColorDialog::colourFieldColourIsDecodedExceptInLabModes_data()
{
    addGammaRows();
}

void tst_QZEColorDialog::colourFieldColourIsDecodedExceptInLabModes()
{
    QFETCH(bool, useGamma);
    QZEColor::s_useGamma = useGamma;
    const QZEColor picked(100.0f, 0.5f, 0.6f);
    QZEColorDialog dialog;
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.colorFieldChanged(picked);
    compareHsv(internalColour(dialog), decodedColour(picked));
    QCOMPARE(spy.count(), 1);

    dialog.setLstarMode(true);
    dialog.colorFieldChanged(picked);
    QCOMPARE(internalColour(dialog), picked);
    QCOMPARE(spy.count(), 2);
}

// --- Signals ---------------------------------------------------------------------------

void tst_QZEColorDialog::colorChangedOncePerUserEdit()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));

    const auto pressSlider = [&](const char* name, double at) {
        auto* slider = part<QZEColorSlider>(dialog, name);
        const QPoint point(int(slider->width() * at), slider->height() / 2);
        QTest::mousePress(slider, Qt::LeftButton, {}, point);
        QTest::mouseRelease(slider, Qt::LeftButton, {}, point);
    };
    const auto stepSpinBox = [&](const char* name) {
        auto* spiner = part<QZEDoubleSpiner>(dialog, name);
        spiner->setFocus();
        QTest::keyClick(spiner, Qt::Key_Up);
    };
    struct Edit
    {
        const char* name;
        std::function<void()> gesture;
    };
    const std::vector<Edit> edits = {
        {"hue slider", [&] { pressSlider("_hueSlider", 0.31); }},
        {"saturation slider", [&] { pressSlider("_saturationSlider", 0.42); }},
        {"value slider", [&] { pressSlider("_valueSlider", 0.63); }},
        {"red slider", [&] { pressSlider("_redSlider", 0.27); }},
        {"green slider", [&] { pressSlider("_greenSlider", 0.55); }},
        {"blue slider", [&] { pressSlider("_blueSlider", 0.71); }},
        {"L* slider", [&] { pressSlider("_lstarSlider", 0.45); }},
        {"a* slider", [&] { pressSlider("_astarSlider", 0.52); }},
        {"b* slider", [&] { pressSlider("_bstarSlider", 0.47); }},
        {"field slider", [&] { pressSlider("_colorFieldSlider", 0.2); }},
        {"colour field", [&] { QTest::mouseClick(part<QZEColorField>(dialog, "_colorField"), Qt::LeftButton, {}, QPoint(20, 30)); }},
        {"red spin box", [&] { stepSpinBox("_redSpiner"); }},
        {"green spin box", [&] { stepSpinBox("_greenSpiner"); }},
        {"blue spin box", [&] { stepSpinBox("_blueSpiner"); }},
        {"hue spin box", [&] { stepSpinBox("_hueSpiner"); }},
        {"saturation spin box", [&] { stepSpinBox("_saturationSpiner"); }},
        {"value spin box", [&] { stepSpinBox("_valueSpiner"); }},
        {"L* spin box", [&] { stepSpinBox("_lstarSpiner"); }},
        {"a* spin box", [&] { stepSpinBox("_astarSpiner"); }},
        {"b* spin box", [&] { stepSpinBox("_bstarSpiner"); }},
        {"previous swatch", [&] { QTest::mouseClick(part<QZEColorButton>(dialog, "_previous_color"), Qt::LeftButton); }},
        {"sRGB switch", [&] { part<QCheckBox>(dialog, "_useGamma")->click(); }},
        {"sRGB switch back", [&] { part<QCheckBox>(dialog, "_useGamma")->click(); }},
    };
    setInternalColour(dialog, StartColour);
    for (const Edit& edit : edits) {
        QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
        edit.gesture();
        QVERIFY2(spy.count() == 1, qPrintable(QStringLiteral("%1 emitted %2 times").arg(edit.name).arg(spy.count())));
        compareHsv(spy.at(0).at(0).value<QZEColor>(), dialog.getColor(), QString::fromLatin1(edit.name));
    }
}

void tst_QZEColorDialog::viewRefreshesEmitNothing()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    dialog.setColor(QZEColor(75.0f, 0.5f, 0.5f));
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.updateGUI();
    dialog.setColorInfo(QZEColor(10.0f, 0.2f, 0.3f));
    dialog.tabChanged(0);
    for (const char* button : {"_redButton", "_saturationButton", "_lstarButton", "_bstarButton", "_hueButton"})
        QTest::mouseClick(part<QRadioButton>(dialog, button), Qt::LeftButton);
    dialog.reinit(dialog.getColor());
    dialog.addCustomColor();
    dialog.languageChange();
    QCOMPARE(spy.count(), 0);
    dialog.reinit(QZEColor(300.0f, 0.5f, 0.5f));
    QCOMPARE(spy.count(), 1);
}

// --- View --------------------------------------------------------------------------------

void tst_QZEColorDialog::slidersShowEncodedChannelsAndScaledComponents_data()
{
    addGammaRows();
}

void tst_QZEColorDialog::slidersShowEncodedChannelsAndScaledComponents()
{
    QFETCH(bool, useGamma);
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    QZEColor::s_useGamma = useGamma;
    dialog.updateGUI();
    const Rgb rgb = rgbOf(StartColour);
    const Lab lab = labOfColour(StartColour);
    const double range = double(QZEColor::s_LabRange);
    const auto value = [&](const char* name) { return part<QZEColorSlider>(dialog, name)->getValue(); };
    QZE_COMPARE_NEAR(value("_redSlider"), srgbEncode(rgb.r), 1e-5);
    QZE_COMPARE_NEAR(value("_greenSlider"), srgbEncode(rgb.g), 1e-5);
    QZE_COMPARE_NEAR(value("_blueSlider"), srgbEncode(rgb.b), 1e-5);
    QZE_COMPARE_NEAR(value("_hueSlider"), 200.0 / 359.99, 1e-6);
    QZE_COMPARE_NEAR(value("_saturationSlider"), 0.6, 1e-6);
    QZE_COMPARE_NEAR(value("_valueSlider"), useGamma ? srgbEncode(0.5) : 0.5, 1e-5);
    QZE_COMPARE_NEAR(value("_lstarSlider"), lab.L / 100.0, 1e-5);
    QZE_COMPARE_NEAR(value("_astarSlider"), lab.a / range + 0.5, 1e-5);
    QZE_COMPARE_NEAR(value("_bstarSlider"), lab.b / range + 0.5, 1e-5);
    QZE_COMPARE_NEAR(value("_colorFieldSlider"), 200.0 / 359.99, 1e-6);
}

void tst_QZEColorDialog::sliderGradientsSpanWhatTheyReach()
{
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    auto* saturation = part<QZEColorSlider>(dialog, "_saturationSlider");
    QCOMPARE(saturation->getMinColor(), QZEColor(200.0f, 0.0f, 0.5f));
    QCOMPARE(saturation->getMaxColor(), QZEColor(200.0f, 1.0f, 0.5f));
    auto* value = part<QZEColorSlider>(dialog, "_valueSlider");
    QCOMPARE(value->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(value->getMaxColor(), QZEColor(200.0f, 0.6f, 1.0f));
    auto* green = part<QZEColorSlider>(dialog, "_greenSlider");
    QCOMPARE(green->getMode(), QZEColorSlider::Green);
    QCOMPARE(green->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(green->getMaxColor(), QZEColor(120.0f, 1.0f, 1.0f));

    // L* runs from 0 to 100 at the colour's a* and b*; a* across the range
    // at its L* and b*.
    const Lab lab = labOfColour(StartColour);
    const double range = double(QZEColor::s_LabRange);
    auto* lstar = part<QZEColorSlider>(dialog, "_lstarSlider");
    QCOMPARE(lstar->getMode(), QZEColorSlider::Lstar);
    const Lab lstarTop = labOfColour(lstar->getMaxColor());
    QZE_COMPARE_NEAR(lstarTop.L, 100.0, 1e-2);
    QZE_COMPARE_NEAR(lstarTop.a, lab.a, 1e-2);
    QZE_COMPARE_NEAR(lstarTop.b, lab.b, 1e-2);
    auto* astar = part<QZEColorSlider>(dialog, "_astarSlider");
    const Lab astarTop = labOfColour(astar->getMaxColor());
    QZE_COMPARE_NEAR(astarTop.L, lab.L, 1e-2);
    QZE_COMPARE_NEAR(astarTop.a, range, 1e-2);
    QZE_COMPARE_NEAR(astarTop.b, lab.b, 1e-2);
    const Lab astarBottom = labOfColour(astar->getMinColor());
    QZE_COMPARE_NEAR(astarBottom.a, -range, 1e-2);
}

void tst_QZEColorDialog::colourFieldFollowsFieldSliderMode()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    auto* field = part<QZEColorField>(dialog, "_colorField");
    auto* fieldSlider = part<QZEColorSlider>(dialog, "_colorFieldSlider");
    setInternalColour(dialog, StartColour);

    dialog.setRedMode(true);
    QCOMPARE(field->getMode(), QZEColorField::Red);
    QCOMPARE(fieldSlider->getMode(), QZEColorSlider::Red);
    QCOMPARE(fieldSlider->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(fieldSlider->getMaxColor(), QZEColor(0.0f, 1.0f, 1.0f));
    QZE_COMPARE_NEAR(fieldSlider->getValue(), srgbEncode(rgbOf(StartColour).r), 1e-5);
    compareHsv(field->getColor(), encodedColour(StartColour));

    dialog.setSaturationMode(true);
    QCOMPARE(fieldSlider->getMinColor(), QZEColor(200.0f, 0.0f, 0.5f));
    QCOMPARE(fieldSlider->getMaxColor(), QZEColor(200.0f, 1.0f, 0.5f));

    // In the L*a*b* modes the field holds the linear colour.
    dialog.setBstarMode(true);
    QCOMPARE(field->getMode(), QZEColorField::Bstar);
    compareHsv(field->getColor(), StartColour);
    QZE_COMPARE_NEAR(fieldSlider->getValue(), labOfColour(StartColour).b / double(QZEColor::s_LabRange) + 0.5, 1e-5);
}

void tst_QZEColorDialog::modeSlotsSetFieldAndFieldSliderOnlyWhenOn()
{
    QZEColorDialog dialog;
    auto* field = part<QZEColorField>(dialog, "_colorField");
    auto* fieldSlider = part<QZEColorSlider>(dialog, "_colorFieldSlider");
    dialog.setValueMode(false);
    QCOMPARE(field->getMode(), QZEColorField::Hue);
    QCOMPARE(fieldSlider->getMode(), QZEColorSlider::Hue);
    const struct
    {
        const char* slot;
        int mode;
    } modes[] = {{"setHueMode", 0},   {"setSaturationMode", 1}, {"setValueMode", 2},
                 {"setRedMode", 3},   {"setGreenMode", 4},      {"setBlueMode", 5},
                 {"setLstarMode", 6}, {"setAstarMode", 7},      {"setBstarMode", 8}};
    for (const auto& entry : modes) {
        QVERIFY(QMetaObject::invokeMethod(&dialog, entry.slot, Q_ARG(bool, true)));
        QVERIFY2(int(field->getMode()) == entry.mode, entry.slot);
        QVERIFY2(int(fieldSlider->getMode()) == entry.mode, entry.slot);
    }
    QTest::mouseClick(part<QRadioButton>(dialog, "_greenButton"), Qt::LeftButton);
    QCOMPARE(field->getMode(), QZEColorField::Green);
}

void tst_QZEColorDialog::spinBoxesShowSliderRealValues()
{
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    for (const char* name : {"red", "green", "blue", "hue", "saturation", "value", "lstar", "astar", "bstar"}) {
        const QByteArray base(name);
        auto* slider = part<QZEColorSlider>(dialog, (QByteArray("_") + base + "Slider").constData());
        auto* spiner = part<QZEDoubleSpiner>(dialog, (QByteArray("_") + base + "Spiner").constData());
        QZE_COMPARE_NEAR_IN(spiner->value(), slider->getRealValue(), 1e-6, QString::fromLatin1(name));
    }
    QCOMPARE(part<QZEDoubleSpiner>(dialog, "_saturationSpiner")->text(), QStringLiteral("0.600"));
}

void tst_QZEColorDialog::colourInfoLabelsShowLinearChannelsWithGamma()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    dialog.setColor(QZEColor(30.0f, 0.5f, 0.8f)); // RGB 0.8, 0.6, 0.4
    const Lab lab = labOfColour(QZEColor(30.0f, 0.5f, 0.8f));
    const auto text = [&](const char* name) { return part<QLabel>(dialog, name)->text(); };
    QCOMPARE(text("_r_label"), QStringLiteral("R: 0.8000"));
    QCOMPARE(text("_g_label"), QStringLiteral("G: 0.6000"));
    QCOMPARE(text("_b_label"), QStringLiteral("B: 0.4000"));
    QCOMPARE(text("_h_label"), QStringLiteral("H: 30.0000"));
    QCOMPARE(text("_s_label"), QStringLiteral("S: 0.5000"));
    QCOMPARE(text("_v_label"), QStringLiteral("V: 0.8000"));
    QCOMPARE(text("_Lstar_label"), QStringLiteral("L*: %1").arg(lab.L, 0, 'f', 3));
    QCOMPARE(text("_astar_label"), QStringLiteral("a*: %1").arg(lab.a, 0, 'f', 3));
    QCOMPARE(text("_bstar_label"), QStringLiteral("b*: %1").arg(lab.b, 0, 'f', 3));
}

void tst_QZEColorDialog::colourInfoLabelsShowEncodedChannelsWithoutGamma()
{
    QZEColorDialog dialog;
    setInternalColour(dialog, QZEColor(30.0f, 0.5f, 0.8f));
    QZEColor::s_useGamma = false;
    dialog.setColorInfo(QZEColor(30.0f, 0.5f, 0.8f));
    const auto text = [&](const char* name) { return part<QLabel>(dialog, name)->text(); };
    QCOMPARE(text("_r_label"), QStringLiteral("R: %1").arg(srgbEncode(0.8), 0, 'f', 4));
    QCOMPARE(text("_g_label"), QStringLiteral("G: %1").arg(srgbEncode(0.6), 0, 'f', 4));
    QCOMPARE(text("_b_label"), QStringLiteral("B: %1").arg(srgbEncode(0.4), 0, 'f', 4));
    // Hue, saturation and value are those passed in, unconverted.
    QCOMPARE(text("_h_label"), QStringLiteral("H: 30.0000"));
    QCOMPARE(text("_v_label"), QStringLiteral("V: 0.8000"));
}

void tst_QZEColorDialog::colourInfoShowsGivenHsvAndCurrentLab()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    dialog.setColor(QZEColor(0.0f, 0.0f, 1.0f)); // white: L* 100, a* 0, b* 0
    dialog.setColorInfo(QZEColor(90.0f, 0.25f, 0.5f));
    const auto text = [&](const char* name) { return part<QLabel>(dialog, name)->text(); };
    QCOMPARE(text("_h_label"), QStringLiteral("H: 90.0000"));
    QCOMPARE(text("_s_label"), QStringLiteral("S: 0.2500"));
    QCOMPARE(text("_r_label"), QStringLiteral("R: 0.4375")); // (1 - 0.25 * 0.5) * 0.5
    QCOMPARE(text("_Lstar_label"), QStringLiteral("L*: 100.000"));
    QVERIFY(text("_astar_label") == QStringLiteral("a*: 0.000") || text("_astar_label") == QStringLiteral("a*: -0.000"));
}

// --- Switches, custom colours, previous colour ------------------------------------------

void tst_QZEColorDialog::useGammaSwitchSetsGlobalAndEmitsOnce()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    part<QCheckBox>(dialog, "_useGamma")->click();
    QVERIFY(!QZEColor::s_useGamma);
    QCOMPARE(spy.count(), 1);
    compareHsv(spy.at(0).at(0).value<QZEColor>(), encodedColour(StartColour));
    // The value slider now shows the linear value, the red one still the encoded channel.
    QCOMPARE(part<QZEColorSlider>(dialog, "_valueSlider")->getValue(), 0.5f);
    QZE_COMPARE_NEAR(part<QZEColorSlider>(dialog, "_redSlider")->getValue(), srgbEncode(rgbOf(StartColour).r), 1e-5);

    dialog.setUseGamma(true);
    QVERIFY(QZEColor::s_useGamma);
    QVERIFY(part<QCheckBox>(dialog, "_useGamma")->isChecked());
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(1).at(0).value<QZEColor>(), StartColour);
}

void tst_QZEColorDialog::gammaValueOfStoredValueDoesNothing()
{
    QZEColorDialog dialog;
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QZEColor::s_gamma = 2.2f;
    dialog.setGammaValue(2.2);
    QCOMPARE(spy.count(), 0);
    dialog.setGammaValue(1.8);
    QCOMPARE(QZEColor::s_gamma, 1.8f);
    QCOMPARE(spy.count(), 1);
}

void tst_QZEColorDialog::customColourStoresInternalColour()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    auto* cells = part<QZEColorArray>(dialog, "_custom_colors");
    const int cell = cells->getNextCell();
    QTest::mouseClick(part<QPushButton>(dialog, "_store_custom_color"), Qt::LeftButton);
    QVERIFY(!cells->isFreeCell(cell));
    QCOMPARE(cells->getColor(cell), StartColour);
}

void tst_QZEColorDialog::customColourCellGivesColourUnconverted()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog;
    auto* cells = part<QZEColorArray>(dialog, "_custom_colors");
    const int cell = cells->getNextCell();
    cells->addColor(QZEColor(50.0f, 0.25f, 0.75f));
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    emit cells->selected(cell);
    QCOMPARE(internalColour(dialog), QZEColor(50.0f, 0.25f, 0.75f));
    QCOMPARE(spy.count(), 1);
    compareHsv(spy.at(0).at(0).value<QZEColor>(), encodedColour(QZEColor(50.0f, 0.25f, 0.75f)));
}

void tst_QZEColorDialog::freeCustomColourCellIsIgnored()
{
    QZEColorDialog dialog;
    auto* cells = part<QZEColorArray>(dialog, "_custom_colors");
    int freeCell = -1;
    for (int i = 0; i < QZEColorArray::CellCount && freeCell < 0; ++i)
        if (cells->isFreeCell(i))
            freeCell = i;
    if (freeCell < 0)
        QSKIP("every custom colour cell is taken");
    const QZEColor before = dialog.getColor();
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.getCustomColor(freeCell);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(dialog.getColor(), before);
}

void tst_QZEColorDialog::customColoursCycleWhenFull()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog;
    auto* cells = part<QZEColorArray>(dialog, "_custom_colors");
    for (int i = 0; i < QZEColorArray::CellCount; ++i) {
        dialog.setColor(QZEColor(float(i * 10), 1.0f, 1.0f));
        dialog.addCustomColor();
    }
    for (int i = 0; i < QZEColorArray::CellCount; ++i)
        QVERIFY(!cells->isFreeCell(i));
    const int overwritten = cells->getNextCell();
    dialog.setColor(QZEColor(333.0f, 0.5f, 0.5f));
    dialog.addCustomColor();
    QCOMPARE(cells->getColor(overwritten), QZEColor(333.0f, 0.5f, 0.5f));
    QCOMPARE(cells->getNextCell(), (overwritten + 1) % QZEColorArray::CellCount);
}

void tst_QZEColorDialog::previousSwatchClickRestoresColourOnly()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog(QZEColor(30.0f, 0.5f, 0.5f));
    QVERIFY(showAt(dialog));
    dialog.hueSliderChanged(0.5f);
    auto* previous = part<QZEColorButton>(dialog, "_previous_color");
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QSignalSpy rejected(&dialog, SIGNAL(rejected()));
    const QByteArray output = standardOutputOf([&] { QTest::mouseClick(previous, Qt::LeftButton); });
    QCOMPARE(output, QByteArray("Called Restore Previous Color\n"));
    QCOMPARE(dialog.getColor(), QZEColor(30.0f, 0.5f, 0.5f));
    QCOMPARE(spy.count(), 1);
    QCOMPARE(rejected.count(), 0);
    QVERIFY(dialog.isVisible());
    QCOMPARE(QZEColorButton::s_colorChooser, nullptr);
}

void tst_QZEColorDialog::reinitRemembersColourAndShowsIt()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog;
    auto* useGamma = part<QCheckBox>(dialog, "_useGamma");
    QVERIFY(!useGamma->isChecked());
    QZEColor::s_useGamma = true;
    dialog.reinit(QZEColor(0.0f, 0.0f, 2.0f));
    QVERIFY(useGamma->isChecked());
    // An over-range value shows clamped: white.
    QCOMPARE(part<QZEColorButton>(dialog, "_previous_color")->getColor(), QZEColor(0.0f, 0.0f, 1.0f));
    QCOMPARE(part<QZEColorButton>(dialog, "_current_color")->getColor(), QZEColor(0.0f, 0.0f, 1.0f));
    dialog.saturationSliderChanged(0.5f);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.reject();
    QCOMPARE(spy.at(0).at(0).value<QZEColor>(), QZEColor(0.0f, 0.0f, 2.0f));
}

// --- Closing ------------------------------------------------------------------------------

void tst_QZEColorDialog::rejectEmitsPreviousColourThenRejects()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog(QZEColor(10.0f, 0.5f, 0.5f));
    dialog.show();
    dialog.valueSliderChanged(0.9f);
    QList<QByteArray> order;
    connect(&dialog, &QZEColorDialog::colorChanged, this, [&] { order << "colorChanged"; });
    connect(&dialog, &QDialog::rejected, this, [&] { order << "rejected"; });
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QTest::mouseClick(part<QPushButton>(dialog, "_reject"), Qt::LeftButton);
    QCOMPARE(order, (QList<QByteArray>{"colorChanged", "rejected"}));
    QCOMPARE(spy.at(0).at(0).value<QZEColor>(), QZEColor(10.0f, 0.5f, 0.5f));
    QVERIFY(!dialog.isVisible());
}

void tst_QZEColorDialog::closeEmitsPreviousColour()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog(QZEColor(10.0f, 0.5f, 0.5f));
    QVERIFY(showAt(dialog));
    dialog.valueSliderChanged(0.9f);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QVERIFY(dialog.close());
    // Once from the close event and once from the reject that the base
    // class's close handling makes of closing a visible dialog.
    QCOMPARE(spy.count(), 2);
    for (const QList<QVariant>& emitted : spy)
        compareHsv(emitted.at(0).value<QZEColor>(), decodedColour(QZEColor(10.0f, 0.5f, 0.5f)));
}

void tst_QZEColorDialog::escapeRejects()
{
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog(QZEColor(10.0f, 0.5f, 0.5f));
    QVERIFY(showAt(dialog));
    dialog.hueSliderChanged(0.5f);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QSignalSpy rejected(&dialog, SIGNAL(rejected()));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QCOMPARE(rejected.count(), 1);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).value<QZEColor>(), QZEColor(10.0f, 0.5f, 0.5f));
}

void tst_QZEColorDialog::acceptEmitsNoColour()
{
    QZEColorDialog dialog;
    dialog.show();
    dialog.hueSliderChanged(0.5f);
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QSignalSpy accepted(&dialog, SIGNAL(accepted()));
    QTest::mouseClick(part<QPushButton>(dialog, "_accept"), Qt::LeftButton);
    QCOMPARE(accepted.count(), 1);
    QCOMPARE(spy.count(), 0);
    QCOMPARE(dialog.getColor().h, 0.5f * 359.99f);
}

void tst_QZEColorDialog::colourTabRefreshesViewSilently()
{
    QZEColorDialog dialog;
    setInternalColour(dialog, StartColour);
    auto* hue = part<QZEColorSlider>(dialog, "_hueSlider");
    {
        const QSignalBlocker blocker(hue);
        hue->setValue(0.0f);
    }
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    dialog.tabChanged(0);
    QZE_COMPARE_NEAR(hue->getValue(), 200.0 / 359.99, 1e-6);
    QCOMPARE(spy.count(), 0);
}

void tst_QZEColorDialog::resizeOnSpectrumTabFitsSceneToView()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    auto* tabs = part<QTabWidget>(dialog, "tabWidget");
    auto* view = part<QGraphicsView>(dialog, "_spectrumPlot");
    tabs->setCurrentIndex(1);
    dialog.resize(dialog.width() + 40, dialog.height() + 30);
    QTRY_COMPARE(view->sceneRect(), QRectF(QPointF(0.0, 0.0), QSizeF(view->size())));
}

// --- Pipette --------------------------------------------------------------------------------

void tst_QZEColorDialog::pipetteShowsCatcherAndRunsTimer()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    QTimer* timer = dialog.findChild<QTimer*>();
    QVERIFY(timer);
    auto* button = part<QToolButton>(dialog, "_pick_color");
    QVERIFY(button->isCheckable());
    QVERIFY(button->isEnabled());
    QVERIFY(!button->icon().isNull());
    button->click();
    QWidget* catcher = pipetteCatcher();
    QVERIFY(catcher);
    QVERIFY(catcher->isVisible());
    QCOMPARE(catcher->size(), QSize(10, 10));
    QVERIFY(catcher->windowFlags().testFlag(Qt::Tool));
    QVERIFY(catcher->windowFlags().testFlag(Qt::FramelessWindowHint));
    QZE_COMPARE_NEAR(catcher->windowOpacity(), 0.1, 1.0 / 255.0); // kept in 8 bits
    QVERIFY(catcher->hasMouseTracking());
    QCOMPARE(catcher->cursor().hotSpot(), QPoint(4, 27));
    QCOMPARE(catcher->cursor().pixmap().size(), QSize(32, 32));
    QCOMPARE(QWidget::mouseGrabber(), catcher);
    QCOMPARE(QWidget::keyboardGrabber(), catcher);
    QVERIFY(timer->isActive());
    QCOMPARE(timer->interval(), 10);
    QVERIFY(button->isChecked());

    dialog.toggleColorPipette(false);
    QVERIFY(!catcher->isVisible());
    QVERIFY(!timer->isActive());
    QVERIFY(!catcher->hasMouseTracking());
    QCOMPARE(QWidget::mouseGrabber(), nullptr);
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    QVERIFY(!button->isChecked());
}

void tst_QZEColorDialog::pipetteCatcherFollowsCursorOutsideDialogOnly()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    dialog.toggleColorPipette(true);
    QWidget* catcher = pipetteCatcher();
    QVERIFY(catcher);
    QCursor::setPos(40, 50);
    dialog.preGrabScreenColor();
    QCOMPARE(catcher->pos(), QPoint(35, 45));
    QCursor::setPos(dialog.frameGeometry().center());
    dialog.preGrabScreenColor();
    QCOMPARE(catcher->pos(), QPoint(35, 45));
    QCursor::setPos(70, 20);
    QTRY_COMPARE(catcher->pos(), QPoint(65, 15)); // the timer's ticks
    dialog.toggleColorPipette(false);
}

void tst_QZEColorDialog::pipetteSwallowsPressesAndMoves()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    QWidget* catcher = nullptr;
    {
        // The catcher exists before the first pick; a filter installed now
        // runs after the dialog's and sees only what the dialog lets pass.
        dialog.toggleColorPipette(true);
        catcher = pipetteCatcher();
        dialog.toggleColorPipette(false);
    }
    EventRecorder passed;
    catcher->installEventFilter(&passed);
    dialog.toggleColorPipette(true);
    QTest::mousePress(catcher, Qt::LeftButton, {}, QPoint(5, 5));
    QTest::mouseMove(catcher, QPoint(6, 6));
    QHelpEvent tip(QEvent::ToolTip, QPoint(5, 5), catcher->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(catcher, &tip);
    QEvent other(QEvent::Enter);
    QApplication::sendEvent(catcher, &other);
    QVERIFY(catcher->isVisible());
    QVERIFY(!passed.types.contains(QEvent::MouseButtonPress));
    QVERIFY(!passed.types.contains(QEvent::MouseMove));
    QVERIFY(!passed.types.contains(QEvent::ToolTip));
    QVERIFY(passed.types.contains(QEvent::Enter));
    dialog.toggleColorPipette(false);
}

void tst_QZEColorDialog::keyPressEndsPicking()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    dialog.toggleColorPipette(true);
    QWidget* catcher = pipetteCatcher();
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QSignalSpy rejected(&dialog, SIGNAL(rejected()));
    QTest::keyClick(catcher, Qt::Key_Escape);
    QVERIFY(!catcher->isVisible());
    QVERIFY(!part<QToolButton>(dialog, "_pick_color")->isChecked());
    QCOMPARE(spy.count(), 0);
    QCOMPARE(rejected.count(), 0); // the key ended the picking, not the dialog
    QVERIFY(dialog.isVisible());
}

void tst_QZEColorDialog::pipetteButtonEndsPicking()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    auto* button = part<QToolButton>(dialog, "_pick_color");
    button->click();
    QVERIFY(pipetteCatcher()->isVisible());
    button->click();
    QVERIFY(!pipetteCatcher()->isVisible());
    QVERIFY(!button->isChecked());
}

void tst_QZEColorDialog::leftReleaseOutsideDialogGrabsPixel_data()
{
    addGammaRows();
}

void tst_QZEColorDialog::leftReleaseOutsideDialogGrabsPixel()
{
    QFETCH(bool, useGamma);
    QZEColor::s_useGamma = useGamma;
    ColourPatch patch(QColor(200, 100, 50));
    patch.show();
    QVERIFY(QTest::qWaitForWindowExposed(&patch));
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    dialog.toggleColorPipette(true);
    QWidget* catcher = pipetteCatcher();
    const QPoint target(30, 30);
    QCursor::setPos(target);
    dialog.preGrabScreenColor();
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    QTest::mouseRelease(catcher, Qt::LeftButton, {}, catcher->mapFromGlobal(target));
    QVERIFY(!catcher->isVisible());
    QVERIFY(!part<QToolButton>(dialog, "_pick_color")->isChecked());
    QCOMPARE(spy.count(), 1);
    const QZEColor display = hsvOf(200.0f / 255.0f, 100.0f / 255.0f, 50.0f / 255.0f);
    compareHsv(internalColour(dialog), decodedColour(display));
    compareHsv(spy.at(0).at(0).value<QZEColor>(), useGamma ? decodedColour(display) : display);
}

void tst_QZEColorDialog::screenColourConversionFollowsGammaSwitch()
{
    ColourPatch patch(QColor(0, 128, 255));
    patch.show();
    QVERIFY(QTest::qWaitForWindowExposed(&patch));
    const QZEColor display = hsvOf(0.0f, 128.0f / 255.0f, 1.0f);
    QZEColor::s_useGamma = false;
    compareHsv(QZEColorDialog::grabScreenColor(QPoint(20, 20)), display);
    QZEColor::s_useGamma = true;
    compareHsv(QZEColorDialog::grabScreenColor(QPoint(20, 20)), decodedColour(display));
}

// --- Keyboard -------------------------------------------------------------------------------

void tst_QZEColorDialog::arrowKeysOnColourFieldEmitOncePerKey()
{
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    setInternalColour(dialog, StartColour);
    auto* field = part<QZEColorField>(dialog, "_colorField");
    field->setFocus();
    QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
    const QZEColor before = dialog.getColor();
    QTest::keyClick(field, Qt::Key_Left);
    QCOMPARE(spy.count(), 1);
    QVERIFY(dialog.getColor() != before);
    QTest::keyClick(field, Qt::Key_Up);
    QTest::keyClick(field, Qt::Key_Up);
    QCOMPARE(spy.count(), 3);
}

void tst_QZEColorDialog::tabMovesFromColourFieldThroughSpinBoxesToButtons()
{
    QZEColorDialog dialog;
    dialog.show();
    dialog.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
    part<QZEColorField>(dialog, "_colorField")->setFocus();
    QStringList visited;
    for (int i = 0; i < 40 && QApplication::focusWidget(); ++i) {
        visited << QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    const QStringList expected = {"_colorField",  "_redSpiner",        "_greenSpiner",
                                  "_blueSpiner",  "_hueSpiner",        "_saturationSpiner",
                                  "_valueSpiner", "_lstarSpiner",      "_astarSpiner",
                                  "_bstarSpiner", "_pick_color",       "_useGamma",
                                  "_store_custom_color", "_accept",    "_reject"};
    int last = -1;
    for (const QString& name : expected) {
        const int at = visited.indexOf(name, last + 1);
        QVERIFY2(at > last, qPrintable(name + QStringLiteral(" not reached in order: ") + visited.join(' ')));
        last = at;
    }
    // No slider takes the focus: they have no keyboard handling.
    for (const QString& name : visited)
        QVERIFY2(!name.endsWith(QLatin1String("Slider")), qPrintable(name));
}

void tst_QZEColorDialog::colourFieldPickKeepsFieldPlane()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog dialog;
    QVERIFY(showAt(dialog));
    setInternalColour(dialog, StartColour);
    auto* field = part<QZEColorField>(dialog, "_colorField");
    field->repaint();
    const int planes = field->getPlaneComputations();
    for (const QPoint& pick : {QPoint(20, 30), QPoint(25, 60), QPoint(90, 40)}) {
        QSignalSpy spy(&dialog, SIGNAL(colorChanged(QZEColor)));
        QTest::mouseClick(field, Qt::LeftButton, {}, pick);
        QCOMPARE(spy.count(), 1);
        field->repaint();
        QCOMPARE(field->getPlaneComputations(), planes);
    }
    // The picked colour is what the dialog holds and hands out.
    compareHsv(dialog.getColor(), field->getColor());
    // A hue from elsewhere does change the plane.
    dialog.hueSliderChanged(0.1f);
    field->repaint();
    QCOMPARE(field->getPlaneComputations(), planes + 1);
}

QTEST_MAIN(tst_QZEColorDialog)
#include "tst_QZEColorDialog.moc"
