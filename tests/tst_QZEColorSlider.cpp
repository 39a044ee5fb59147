// QTest mouse gestures go through the window system layer, so a drag carries
// the held button to the widget and the pressed widget keeps the mouse.
#define QTEST_QPA_MOUSE_HANDLING

#include "ColourArithmetic.h"
#include "QZEColorSlider.h"
#include "SyntheticMouse.h"
#include "TestHelpers.h"
#include "zePlatform.h"

#include <QApplication>
#include <QMetaEnum>
#include <QMouseEvent>
#include <QPainter>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>

using Mode = QZEColorSlider::Mode;

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

constexpr int StripWidth = 200;
constexpr int StripHeight = 24;

// Palette colours no gradient column produces, so every bevel and handle
// pixel can be told apart from the strip.
const QColor ButtonColour(12, 34, 56);
const QColor LightColour(250, 240, 7);
const QColor MidlightColour(7, 250, 240);
const QColor ShadowColour(66, 3, 99);
const QColor HighlightColour(201, 9, 130);
const QColor DisabledTextColour(192, 192, 192);

const QString PhotometricText = QStringLiteral("Disabled, using photometric mode.");
const QString SpectralText = QStringLiteral("Disabled, using spectral data.");

// End colours that differ in every component, so a mode that reads the wrong
// end shows.
const QZEColor SomeMinColor(30.0f, 0.6f, 0.4f);
const QZEColor SomeMaxColor(200.0f, 0.9f, 0.8f);

// --- Colour arithmetic, written out independently of the library ----------

float srgbEncoded(float c)
{
    c = std::max(c, 0.0f);
    if (c <= 0.0031308f)
        return c * 12.92f;
    return 1.055f * float(std::pow(double(c), double(0.41666666f))) - 0.055f;
}

int byteOf(float c)
{
    return c <= 0.0f ? 0 : (c > 1.0f ? 255 : int(c * 255.0f));
}

QColor bytesOf(const Rgb& c)
{
    return QColor(byteOf(c.r), byteOf(c.g), byteOf(c.b));
}

bool isLabMode(Mode mode)
{
    return mode == QZEColorSlider::Lstar || mode == QZEColorSlider::Astar
           || mode == QZEColorSlider::Bstar;
}

// L*, a*, b* of `base` with the component of `mode` replaced by `position`
// mapped to its Lab unit, turned back into HSV.
QZEColor labColour(Mode mode, float position, const QZEColor& base)
{
    float lab[3];
    base.HSVtoLAB(base.h, base.s, base.v, lab[0], lab[1], lab[2]);
    const int component = int(mode) - int(QZEColorSlider::Lstar);
    lab[component] = mode == QZEColorSlider::Lstar ? position * 100.0f
                                                   : (position - 0.5f) * QZEColor::s_LabRange;
    QZEColor colour;
    colour.LABtoHSV(lab[0], lab[1], lab[2], colour.h, colour.s, colour.v);
    return colour;
}

// The colour a slider selects at `value` with the given end colours.
QZEColor expectedSelection(Mode mode, float value, const QZEColor& min, const QZEColor& max)
{
    if (mode == QZEColorSlider::Hue)
        return QZEColor(value * 359.999f, 1.0f, 1.0f);
    if (isLabMode(mode))
        return labColour(mode, value, min);
    const Rgb a = rgbOf(min);
    const Rgb b = rgbOf(max);
    const auto mix = [value](float x, float y) { return (1.0f - value) * x + value * y; };
    return hsvOf(mix(a.r, b.r), mix(a.g, b.g), mix(a.b, b.b));
}

// The 8-bit colour of the strip at position t, painted with end colour `end`.
QColor expectedColumn(Mode mode, float t, const QZEColor& end)
{
    switch (mode) {
    case QZEColorSlider::Hue:
        return QZEColor(t * 360.0f, 1.0f, 1.0f).getQColor();
    case QZEColorSlider::Saturation:
        return QZEColor(end.h, t, end.v).getGammaQColor();
    case QZEColorSlider::Value:
        return QZEColor(end.h, end.s, t).getQColor();
    case QZEColorSlider::Red:
        return QColor(byteOf(t), 0, 0);
    case QZEColorSlider::Green:
        return QColor(0, byteOf(t), 0);
    case QZEColorSlider::Blue:
        return QColor(0, 0, byteOf(t));
    default:
        return labColour(mode, t, end).getQColor();
    }
}

QColor greyColumn(int x, int n)
{
    const float v = 0.1f + 0.4f * float(x - 1) / float(n);
    return QColor(byteOf(v), byteOf(v), byteOf(v));
}

QString colourDifference(const QZEColor& actual, const QZEColor& expected)
{
    const Rgb a = rgbOf(actual);
    const Rgb e = rgbOf(expected);
    const float tolerance = 1e-4f;
    if (std::fabs(a.r - e.r) <= tolerance && std::fabs(a.g - e.g) <= tolerance
        && std::fabs(a.b - e.b) <= tolerance)
        return {};
    return QStringLiteral("got HSV (%1, %2, %3), expected HSV (%4, %5, %6)")
        .arg(actual.h).arg(actual.s).arg(actual.v)
        .arg(expected.h).arg(expected.s).arg(expected.v);
}

// --- Images -----------------------------------------------------------------

QImage rendered(QZEColorSlider& slider)
{
    QImage image(slider.size(), QImage::Format_RGB32);
    image.fill(Qt::black);
    slider.render(&image);
    return image;
}

QString colourName(QRgb rgb)
{
    return QColor(rgb).name();
}

// Checks every pixel of the inclusive rectangle `area`.
QString areaDifference(const QImage& image, const QRect& area, const QColor& expected)
{
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x)
            if (image.pixel(x, y) != expected.rgb())
                return QStringLiteral("pixel (%1, %2) is %3, expected %4")
                    .arg(x).arg(y).arg(colourName(image.pixel(x, y)), expected.name());
    return {};
}

// An inclusive rectangle of the image that must be one colour throughout.
struct Area
{
    QRect rect;
    QColor colour;
};

QString areasDifference(const QImage& image, const QList<Area>& areas)
{
    for (const Area& area : areas) {
        const QString difference = areaDifference(image, area.rect, area.colour);
        if (!difference.isEmpty())
            return difference;
    }
    return {};
}

QString imageDifference(const QImage& actual, const QImage& expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("sizes differ");
    for (int y = 0; y < actual.height(); ++y)
        for (int x = 0; x < actual.width(); ++x)
            if (actual.pixel(x, y) != expected.pixel(x, y))
                return QStringLiteral("pixel (%1, %2) is %3, expected %4")
                    .arg(x).arg(y)
                    .arg(colourName(actual.pixel(x, y)), colourName(expected.pixel(x, y)));
    return {};
}

struct StripLook
{
    int width = StripWidth;
    int height = StripHeight;
    Mode mode = QZEColorSlider::Hue;
    float value = 0.5f;
    QZEColor maxColor{0.0f, 0.0f, 1.0f};
    bool enabled = true;
    QString text;
    QFont font;
    QSize dpi; // the widget's logical DPI, which sizes the text; empty: the image's own
};

// Outline covering the corners (x1, y1) and (x2, y2) inclusively: every
// pixel on the border of that box, set one by one (corners given in either
// order span the same box).
void outline(QPainter& painter, const QColor& colour, int x1, int y1, int x2, int y2)
{
    painter.setPen(colour);
    const int left = qMin(x1, x2);
    const int right = qMax(x1, x2);
    const int top = qMin(y1, y2);
    const int bottom = qMax(y1, y2);
    for (int x = left; x <= right; ++x)
        for (int y = top; y <= bottom; ++y)
            if (x == left || x == right || y == top || y == bottom)
                painter.drawPoint(x, y);
}

// The strip painted the plain way: background, one line per column, bevel.
QImage referenceStrip(const StripLook& look)
{
    const int w = look.width;
    const int h = look.height;
    const int n = w - 2;
    QImage image(w, h, QImage::Format_RGB32);
    if (!look.dpi.isEmpty()) {
        image.setDotsPerMeterX(qRound(look.dpi.width() / 0.0254));
        image.setDotsPerMeterY(qRound(look.dpi.height() / 0.0254));
    }
    image.fill(ButtonColour);
    QPainter painter(&image);
    for (int x = 1; n >= 2 && x <= n - 1; ++x) {
        const float t = float(x - 1) / float(n);
        painter.setPen(look.enabled ? expectedColumn(look.mode, t, look.maxColor)
                                    : greyColumn(x, n));
        painter.drawLine(x, 2, x, h - 2);
    }
    outline(painter, LightColour, 1, 1, w - 3, h - 3);
    outline(painter, MidlightColour, 2, 2, w - 2, h - 2);
    outline(painter, ShadowColour, 1, 1, w - 2, h - 2);
    return image;
}

// The text and the handle painted over the strip, the plain way.
void paintTextAndHandle(QImage& image, const StripLook& look)
{
    const int w = look.width;
    const int h = look.height;
    QPainter painter(&image);
    if (!look.text.isEmpty()) {
        painter.setPen(DisabledTextColour);
        painter.setFont(look.font);
        painter.drawText(QPointF(5.0, h - 4), look.text);
    }
    const int c = int((w - 5) * look.value + 2.0);
    outline(painter, MidlightColour, c - 2, 0, c + 1, h - 2);
    outline(painter, HighlightColour, c - 1, 1, c + 2, h - 1);
    outline(painter, ShadowColour, c - 2, 0, c + 2, h - 1);
}

// The slider painted the plain way: one line per column, bevel, text, handle.
QImage referenceImage(const StripLook& look)
{
    QImage image = referenceStrip(look);
    paintTextAndHandle(image, look);
    return image;
}

// How a disabled slider drew its explanation: the pixel size and the text,
// whole or cut short with an ellipsis. Size 0: no such drawing matches.
struct DrawnText
{
    int pixelSize = 0;
    QString text;
};

// Finds the pixel size and the beginning of text (whole, or some first
// characters and an ellipsis) with which the plain-way reference, text drawn
// unclipped, equals the image pixel for pixel.
DrawnText findDrawnText(const QImage& image, StripLook look, const QString& text)
{
    QStringList candidates{text};
    for (int k = text.size() - 1; k >= 0; --k)
        candidates << text.left(k) + QChar(0x2026);
    const QImage strip = referenceStrip(look);
    for (int size = 40; size >= 1; --size) {
        look.font.setPixelSize(size);
        for (const QString& candidate : qAsConst(candidates)) {
            look.text = candidate;
            QImage expected = strip;
            paintTextAndHandle(expected, look);
            if (imageDifference(image, expected).isEmpty())
                return {size, candidate};
        }
    }
    return {};
}

QRect differingArea(const QImage& image, const QImage& reference);

// The rows, as a box, that the whole text drawn at pixelSize covers on a
// strip wide enough for it.
QRect textRowsAt(StripLook look, const QString& text, int pixelSize)
{
    look.width = 4 * StripWidth;
    look.value = 0.0f;
    const QImage withoutText = referenceImage(look);
    look.font.setPixelSize(pixelSize);
    look.text = text;
    return differingArea(referenceImage(look), withoutText);
}

// The pixels where the image differs from the reference, as their bounding box.
QRect differingArea(const QImage& image, const QImage& reference)
{
    QRect area;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixel(x, y) != reference.pixel(x, y))
                area |= QRect(x, y, 1, 1);
    return area;
}

StripLook lookOf(const QZEColorSlider& slider)
{
    StripLook look;
    look.width = slider.width();
    look.height = slider.height();
    look.mode = slider.getMode();
    look.value = slider.getValue();
    look.maxColor = slider.getMaxColor();
    look.enabled = slider.isEnabled();
    look.font = slider.font();
    look.dpi = QSize(slider.logicalDpiX(), slider.logicalDpiY());
    return look;
}

// --- Observers --------------------------------------------------------------

// Records every signal of a slider, in emission order, with its argument.
class SignalRecorder : public QObject
{
public:
    explicit SignalRecorder(QZEColorSlider& slider)
    {
        record(slider, &QZEColorSlider::minColorChanged, "minColorChanged");
        record(slider, &QZEColorSlider::maxColorChanged, "maxColorChanged");
        record(slider, qOverload<float>(&QZEColorSlider::valueChanged), "valueChanged(float)");
        record(slider, &QZEColorSlider::colorChanged, "colorChanged");
        record(slider, qOverload<QString>(&QZEColorSlider::valueChanged), "valueChanged(QString)");
        record(slider, &QZEColorSlider::sliderPressed, "sliderPressed");
        record(slider, &QZEColorSlider::sliderMoved, "sliderMoved");
        record(slider, &QZEColorSlider::sliderReleased, "sliderReleased");
    }

    void clear()
    {
        names.clear();
        args.clear();
    }

    float floatAt(int i) const { return args.at(i).toFloat(); }
    QZEColor colorAt(int i) const { return args.at(i).value<QZEColor>(); }
    QString stringAt(int i) const { return args.at(i).toString(); }

    QStringList names;
    QVariantList args;

private:
    static QVariant argument() { return {}; }
    template <typename T>
    static QVariant argument(const T& value) { return QVariant::fromValue(value); }

    template <typename... Args>
    void record(QZEColorSlider& slider, void (QZEColorSlider::*signal)(Args...), const char* name)
    {
        connect(&slider, signal, this, [this, name](Args... values) {
            names << QString::fromLatin1(name);
            args << argument(values...);
        });
    }
};

const QStringList ValueSignals = {"valueChanged(float)", "colorChanged", "valueChanged(QString)"};

class PaintCounter : public QObject
{
public:
    explicit PaintCounter(QWidget* widget) { widget->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++count;
        return false;
    }
};

// A shown window holding the slider with room on both sides, so real drags
// can leave the strip.
class MouseRig
{
public:
    static constexpr int Margin = 60;

    MouseRig() : slider(new QZEColorSlider(&window))
    {
        window.resize(StripWidth + 2 * Margin, StripHeight + 2 * Margin);
        slider->setGeometry(Margin, Margin, StripWidth, StripHeight);
        window.show();
    }

    QWidget window;
    QZEColorSlider* slider;
};

// A rig whose slider has been shown and has settled, after `prepare` when one
// is given, with its paints and signals counted from then on.
class WatchedRig : public MouseRig
{
public:
    explicit WatchedRig(const std::function<void(QZEColorSlider&)>& prepare = {})
        : exposed(settle(prepare)), paints(slider), recorder(*slider)
    {
    }

    // Settles the slider in `mode` between SomeMinColor and SomeMaxColor.
    explicit WatchedRig(Mode mode)
        : WatchedRig([mode](QZEColorSlider& s) {
              s.setMode(mode);
              s.setMinColor(SomeMinColor);
              s.setMaxColor(SomeMaxColor);
          })
    {
    }

    const bool exposed;
    PaintCounter paints;
    SignalRecorder recorder;

private:
    bool settle(const std::function<void(QZEColorSlider&)>& prepare)
    {
        const bool shown = QTest::qWaitForWindowExposed(&window);
        if (prepare)
            prepare(*slider);
        QCoreApplication::processEvents();
        return shown;
    }
};

QPoint at(int x)
{
    return QPoint(x, StripHeight / 2);
}

void press(QZEColorSlider& slider, int x)
{
    QTest::mousePress(&slider, Qt::LeftButton, {}, at(x));
}

void move(QZEColorSlider& slider, int x)
{
    QTest::mouseMove(&slider, at(x));
}

void release(QZEColorSlider& slider, int x)
{
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, at(x));
}

// A mouse event QTest cannot produce: sub-pixel, outside the widget, or with
// an arbitrary set of held buttons.
void sendMouse(QWidget& widget, QEvent::Type type, qreal x, Qt::MouseButton button,
               Qt::MouseButtons buttons)
{
    sendMouseEvent(&widget, type, QPointF(x, StripHeight / 2), button, buttons);
}

void click(QWidget& widget, qreal x)
{
    sendMouse(widget, QEvent::MouseButtonPress, x, Qt::LeftButton, Qt::LeftButton);
    sendMouse(widget, QEvent::MouseButtonRelease, x, Qt::LeftButton, Qt::NoButton);
}

std::unique_ptr<QZEColorSlider> makeSlider(bool vertical, QWidget* parent, const QByteArray& name)
{
    const char* rawName = name.isNull() ? nullptr : name.constData();
    if (vertical)
        return std::make_unique<QZEColorSlider>(Qt::Vertical, parent, rawName);
    return std::make_unique<QZEColorSlider>(parent, rawName);
}

void addModeRows()
{
    QTest::addColumn<Mode>("mode");
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    for (int i = 0; i < modes.keyCount(); ++i)
        QTest::newRow(modes.key(i)) << Mode(modes.value(i));
}

void addModeSlotRows()
{
    QTest::addColumn<QByteArray>("slot");
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<float>("primaryHue"); // negative: not a primary mode
    QTest::newRow("setHueMode") << QByteArray("setHueMode") << QZEColorSlider::Hue << -1.0f;
    QTest::newRow("setSaturationMode") << QByteArray("setSaturationMode")
                                       << QZEColorSlider::Saturation << -1.0f;
    QTest::newRow("setValueMode") << QByteArray("setValueMode") << QZEColorSlider::Value << -1.0f;
    QTest::newRow("setRedMode") << QByteArray("setRedMode") << QZEColorSlider::Red << 0.0f;
    QTest::newRow("setGreenMode") << QByteArray("setGreenMode") << QZEColorSlider::Green << 120.0f;
    QTest::newRow("setBlueMode") << QByteArray("setBlueMode") << QZEColorSlider::Blue << 240.0f;
    QTest::newRow("setLstarMode") << QByteArray("setLstarMode") << QZEColorSlider::Lstar << -1.0f;
    QTest::newRow("setAstarMode") << QByteArray("setAstarMode") << QZEColorSlider::Astar << -1.0f;
    QTest::newRow("setBstarMode") << QByteArray("setBstarMode") << QZEColorSlider::Bstar << -1.0f;
}

Mode otherMode(Mode mode)
{
    return Mode((int(mode) + 1) % 9);
}

// Calls a mode slot through the meta-object, as a radio button would.
bool invokeModeSlot(QZEColorSlider& slider, const QByteArray& slot, bool on)
{
    return QMetaObject::invokeMethod(&slider, slot.constData(), Q_ARG(bool, on));
}

// Calls the slot with `on` on a slider settled in startMode and expects no
// change of mode or end colours, no signal and no repaint.
void verifyModeSlotChangesNothing(const QByteArray& slot, Mode startMode, bool on)
{
    WatchedRig rig(startMode);
    QVERIFY(rig.exposed);

    QVERIFY(invokeModeSlot(*rig.slider, slot, on));
    QCoreApplication::processEvents();

    QCOMPARE(rig.slider->getMode(), startMode);
    QCOMPARE(rig.slider->getMinColor(), SomeMinColor);
    QCOMPARE(rig.slider->getMaxColor(), SomeMaxColor);
    QCOMPARE(rig.recorder.names, QStringList());
    QCOMPARE(rig.paints.count, 0);
}

} // namespace

class tst_QZEColorSlider : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();
    void init();
    void cleanup();

    // Edge cases
    void setValueToInitialHalfEmitsNothing();
    void setValueToInitialHalfDoesNotRepaint();
    void forcedSetValueOfInitialHalfEmitsAllThreeSignals();
    void hueAtOneReadsAs359_99ButSelectsHue359_999();
    void astarAtHalfReadsZero();
    void trackingOffDragEmitsValueSignalsOnlyOnRelease();
    void clickAtOrBeyondRightEdgeGivesOne_data();
    void clickAtOrBeyondRightEdgeGivesOne();
    void clickLeftOfWidgetGivesZero_data();
    void clickLeftOfWidgetGivesZero();
    void redModeAgainKeepsEndColours();
    void sliderNarrowerThanFourPixelsPaintsNoGradient_data();
    void sliderNarrowerThanFourPixelsPaintsNoGradient();

    // Construction and meta-object
    void objectNameIsClassNameWhateverNameIsPassed_data();
    void objectNameIsClassNameWhateverNameIsPassed();
    void freshSliderHasInitialState_data();
    void freshSliderHasInitialState();
    void initResetsEverythingButOrientation();
    void initNeitherReenablesNorRepaints();
    void propertiesReadAndWriteOrientationAndMode();
    void modeEnumHasNineKeysInOrder();
    void signalsThenSlotsInMetaObjectOrder();
    void connectsByStringSignature();

    // Value, colours and modes
    void setValueEmitsValueColourStringInOrder_data();
    void setValueEmitsValueColourStringInOrder();
    void setValueDoesNotClamp_data();
    void setValueDoesNotClamp();
    void setValueWithoutSignalsEmitsNothingButRepaints();
    void setValueToStoredValueEmitsNothing();
    void forceWithoutSignalsEmitsNothing();
    void setEndColourEmitsOnlyWhenChanged_data();
    void setEndColourEmitsOnlyWhenChanged();
    void rgbEndColourOverloadsStoreHsvSilently_data();
    void rgbEndColourOverloadsStoreHsvSilently();
    void plainSettersNeitherEmitNorRepaint();
    void modeSlotsWithFalseDoNothing_data();
    void modeSlotsWithFalseDoNothing();
    void modeSlotsSwitchModeSilently_data();
    void modeSlotsSwitchModeSilently();
    void modeSlotsInCurrentModeDoNothing_data();
    void modeSlotsInCurrentModeDoNothing();
    void getColorFollowsMode_data();
    void getColorFollowsMode();
    void getRealValueAndStringFollowMode_data();
    void getRealValueAndStringFollowMode();
    void mapToFloatDividesByWidthAndClamps_data();
    void mapToFloatDividesByWidthAndClamps();
    void eitherFlagDisablesSilently();
    void sizeHintFollowsOrientationAndIconSize_data();
    void sizeHintFollowsOrientationAndIconSize();

    // Mouse
    void pressWithTrackingEmitsPressedThenValueSignals();
    void pressMapsRoundedPositionOverWidth_data();
    void pressMapsRoundedPositionOverWidth();
    void pressWithOtherButtonIsIgnored_data();
    void pressWithOtherButtonIsIgnored();
    void trackingOnDragEmitsOnEveryMove();
    void moveEmitsSliderMovedEvenWhenValueUnchanged();
    void dragBeyondEdgesClampsValue();
    void moveWithOtherButtonsHeldIsIgnored_data();
    void moveWithOtherButtonsHeldIsIgnored();
    void releaseWithAnyButtonEmitsSliderReleased_data();
    void releaseWithAnyButtonEmitsSliderReleased();

    // Painting
    void gradientColumnsFollowMode_data();
    void gradientColumnsFollowMode();
    void bevelHasThreeOutlines();
    void handleOutlinesSitAtValue_data();
    void handleOutlinesSitAtValue();
    void renderingMatchesReference_data();
    void renderingMatchesReference();
    void disabledSliderPaintsGreyRampWithoutText();
    void disabledTextNamesTheReason_data();
    void disabledTextNamesTheReason();
    void disabledTextFitsTheStrip_data();
    void disabledTextFitsTheStrip();
    void disabledTextIsLeftOutWhereItCannotBeRead();
    void photometricTextTakesPrecedence();
    void saturationStripFollowsGammaSwitch_data();
    void saturationStripFollowsGammaSwitch();

    // The cached strip
    void stripMatchesPerColumnColoursForManyEndColours_data();
    void stripMatchesPerColumnColoursForManyEndColours();
    void handleMoveGivesThePixelsOfAFreshPaint_data();
    void handleMoveGivesThePixelsOfAFreshPaint();
    void stripFollowsGammaSwitchAndLabRangeOnceCached();
    void bodyFollowsPaletteEnabledStateAndSize();

private:
    QPalette m_savedPalette;
    bool m_savedUseGamma = false;
    float m_savedLabRange = 0.0f;
};

void tst_QZEColorSlider::initTestCase()
{
    m_savedPalette = QApplication::palette();
    QPalette palette = m_savedPalette;
    palette.setColor(QPalette::Button, ButtonColour);
    palette.setColor(QPalette::Light, LightColour);
    palette.setColor(QPalette::Midlight, MidlightColour);
    palette.setColor(QPalette::Shadow, ShadowColour);
    palette.setColor(QPalette::Highlight, HighlightColour);
    QApplication::setPalette(palette);
    QCOMPARE(QGuiApplication::palette().color(QPalette::Shadow), ShadowColour);
}

void tst_QZEColorSlider::cleanupTestCase()
{
    QApplication::setPalette(m_savedPalette);
}

void tst_QZEColorSlider::init()
{
    m_savedUseGamma = QZEColor::s_useGamma;
    m_savedLabRange = QZEColor::s_LabRange;
}

void tst_QZEColorSlider::cleanup()
{
    QZEColor::s_useGamma = m_savedUseGamma;
    QZEColor::s_LabRange = m_savedLabRange;
    zePlatform::setDpiScale(0.0f, 0.0f);
}

// --- Edge cases ---------------------------------------------------------------

void tst_QZEColorSlider::setValueToInitialHalfEmitsNothing()
{
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    slider.setValue(0.5f);
    QCOMPARE(recorder.names, QStringList());
    QCOMPARE(slider.getValue(), 0.5f);
}

// An unchanged value returns before anything happens: no signal and no repaint.
void tst_QZEColorSlider::setValueToInitialHalfDoesNotRepaint()
{
    WatchedRig rig;
    QVERIFY(rig.exposed);
    rig.slider->setValue(0.5f);
    QCoreApplication::processEvents();
    QCOMPARE(rig.paints.count, 0);
    QCOMPARE(rig.recorder.names, QStringList());
}

void tst_QZEColorSlider::forcedSetValueOfInitialHalfEmitsAllThreeSignals()
{
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    slider.setValue(0.5f, true, true);
    QCOMPARE(recorder.names, ValueSignals);
    QCOMPARE(recorder.floatAt(0), 0.5f);
    QCOMPARE(recorder.colorAt(1).h, 0.5f * 359.999f);
    QCOMPARE(recorder.stringAt(2), QStringLiteral("179.995"));
}

void tst_QZEColorSlider::hueAtOneReadsAs359_99ButSelectsHue359_999()
{
    QZEColorSlider slider;
    slider.setValue(1.0f);
    QCOMPARE(slider.getRealValue(), 359.99f);
    QCOMPARE(slider.getValueAsString(), QStringLiteral("359.990"));
    const QZEColor colour = slider.getColor();
    QCOMPARE(colour.h, 359.999f);
    QCOMPARE(colour.s, 1.0f);
    QCOMPARE(colour.v, 1.0f);
}

void tst_QZEColorSlider::astarAtHalfReadsZero()
{
    QZEColorSlider slider;
    slider.setMode(QZEColorSlider::Astar);
    QCOMPARE(slider.getValue(), 0.5f);
    QVERIFY(slider.getRealValue() == 0.0f);
    QCOMPARE(slider.getValueAsString(), QStringLiteral("0.000"));
}

void tst_QZEColorSlider::trackingOffDragEmitsValueSignalsOnlyOnRelease()
{
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    slider.setTracking(false);
    SignalRecorder recorder(slider);

    press(slider, 20);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"});
    QCOMPARE(slider.getValue(), 0.1f);
    move(slider, 60);
    move(slider, 100);
    release(slider, 100);

    QCOMPARE(recorder.names, QStringList({"sliderPressed", "sliderMoved", "sliderMoved"})
                                 + ValueSignals + QStringList{"sliderReleased"});
    QCOMPARE(recorder.floatAt(1), 0.3f);
    QCOMPARE(recorder.floatAt(2), 0.5f);
    QCOMPARE(recorder.floatAt(3), 0.5f);
    QCOMPARE(recorder.colorAt(4).h, 0.5f * 359.999f);
    QCOMPARE(recorder.stringAt(5), QStringLiteral("179.995"));
}

void tst_QZEColorSlider::clickAtOrBeyondRightEdgeGivesOne_data()
{
    QTest::addColumn<qreal>("x");
    QTest::newRow("right edge") << qreal(StripWidth);
    QTest::newRow("rounds onto the edge") << StripWidth - 0.5;
    QTest::newRow("one pixel beyond") << qreal(StripWidth + 1);
    QTest::newRow("far beyond") << 1000.0;
}

void tst_QZEColorSlider::clickAtOrBeyondRightEdgeGivesOne()
{
    QFETCH(qreal, x);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    SignalRecorder recorder(slider);
    click(slider, x);
    QCOMPARE(slider.getValue(), 1.0f);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals
                                 + QStringList{"sliderReleased"});
    QCOMPARE(recorder.floatAt(1), 1.0f);
}

void tst_QZEColorSlider::clickLeftOfWidgetGivesZero_data()
{
    QTest::addColumn<qreal>("x");
    QTest::newRow("rounds to -1") << -0.6;
    QTest::newRow("one pixel left") << -1.0;
    QTest::newRow("far left") << -50.0;
}

void tst_QZEColorSlider::clickLeftOfWidgetGivesZero()
{
    QFETCH(qreal, x);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    SignalRecorder recorder(slider);
    click(slider, x);
    QVERIFY(slider.getValue() == 0.0f);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals
                                 + QStringList{"sliderReleased"});
    QVERIFY(recorder.floatAt(1) == 0.0f);
}

void tst_QZEColorSlider::redModeAgainKeepsEndColours()
{
    QZEColorSlider slider;
    slider.setRedMode(true);
    QCOMPARE(slider.getMode(), QZEColorSlider::Red);
    slider.setMinColor(SomeMinColor);
    slider.setMaxColor(SomeMaxColor);
    SignalRecorder recorder(slider);
    slider.setRedMode(true);
    QCOMPARE(slider.getMinColor(), SomeMinColor);
    QCOMPARE(slider.getMaxColor(), SomeMaxColor);
    QCOMPARE(recorder.names, QStringList());
}

void tst_QZEColorSlider::sliderNarrowerThanFourPixelsPaintsNoGradient_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("1 px") << 1;
    QTest::newRow("2 px") << 2;
    QTest::newRow("3 px") << 3;
}

void tst_QZEColorSlider::sliderNarrowerThanFourPixelsPaintsNoGradient()
{
    QFETCH(int, width);
    QZEColorSlider slider;
    slider.resize(width, StripHeight);
    QCOMPARE(slider.width(), width);
    const QImage image = rendered(slider);
    const QList<QRgb> chrome = {ButtonColour.rgb(), LightColour.rgb(), MidlightColour.rgb(),
                                ShadowColour.rgb(), HighlightColour.rgb()};
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            QVERIFY2(chrome.contains(image.pixel(x, y)),
                     qPrintable(QStringLiteral("(%1, %2) is %3").arg(x).arg(y)
                                    .arg(colourName(image.pixel(x, y)))));
    const QString difference = imageDifference(image, referenceImage(lookOf(slider)));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

// --- Construction and meta-object --------------------------------------------

void tst_QZEColorSlider::objectNameIsClassNameWhateverNameIsPassed_data()
{
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("default, no name") << false << QByteArray();
    QTest::newRow("default, named") << false << QByteArray("mySlider");
    QTest::newRow("oriented, no name") << true << QByteArray();
    QTest::newRow("oriented, named") << true << QByteArray("hueSlider");
}

void tst_QZEColorSlider::objectNameIsClassNameWhateverNameIsPassed()
{
    QFETCH(bool, vertical);
    QFETCH(QByteArray, name);
    QWidget parent;
    const auto slider = makeSlider(vertical, &parent, name);
    QCOMPARE(slider->objectName(), QStringLiteral("QZEColorSlider"));
    QCOMPARE(slider->parentWidget(), &parent);
}

void tst_QZEColorSlider::freshSliderHasInitialState_data()
{
    QTest::addColumn<bool>("vertical");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::newRow("default constructor") << false << Qt::Horizontal;
    QTest::newRow("oriented constructor") << true << Qt::Vertical;
}

void tst_QZEColorSlider::freshSliderHasInitialState()
{
    QFETCH(bool, vertical);
    QFETCH(Qt::Orientation, orientation);
    const auto slider = makeSlider(vertical, nullptr, QByteArray());
    QCOMPARE(slider->orientation(), orientation);
    QCOMPARE(slider->getMode(), QZEColorSlider::Hue);
    QCOMPARE(slider->getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(slider->getMaxColor(), QZEColor(0.0f, 0.0f, 1.0f));
    QCOMPARE(slider->getValue(), 0.5f);
    QVERIFY(slider->isEnabled());

    // Tracking is on: a press reports the new value at once.
    slider->resize(StripWidth, StripHeight);
    SignalRecorder recorder(*slider);
    sendMouse(*slider, QEvent::MouseButtonPress, 40, Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals);
}

void tst_QZEColorSlider::initResetsEverythingButOrientation()
{
    QZEColorSlider slider(Qt::Vertical, nullptr, nullptr);
    slider.resize(StripWidth, StripHeight);
    slider.setMode(QZEColorSlider::Bstar);
    slider.setMinColor(SomeMinColor);
    slider.setMaxColor(SomeMaxColor);
    slider.setValue(0.2f);
    slider.setTracking(false);
    slider.setPhotometricParameters(true);
    slider.setUseSpectrum(true);

    slider.init();

    QCOMPARE(slider.orientation(), Qt::Vertical);
    QCOMPARE(slider.getMode(), QZEColorSlider::Hue);
    QCOMPARE(slider.getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
    QCOMPARE(slider.getMaxColor(), QZEColor(0.0f, 0.0f, 1.0f));
    QCOMPARE(slider.getValue(), 0.5f);
    // Both flags are cleared: clearing either one again re-enables.
    slider.setPhotometricParameters(false);
    QVERIFY(slider.isEnabled());
    // Tracking is back on: a press reports the new value at once.
    SignalRecorder recorder(slider);
    sendMouse(slider, QEvent::MouseButtonPress, 40, Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals);
}

void tst_QZEColorSlider::initNeitherReenablesNorRepaints()
{
    WatchedRig rig([](QZEColorSlider& slider) {
        slider.setValue(0.2f, false);
        slider.setPhotometricParameters(true);
    });
    QVERIFY(rig.exposed);
    QZEColorSlider& slider = *rig.slider;
    QVERIFY(!slider.isEnabled());

    slider.init();
    QCoreApplication::processEvents();

    QVERIFY(!slider.isEnabled());
    QCOMPARE(rig.paints.count, 0);
    QCOMPARE(rig.recorder.names, QStringList());
}

void tst_QZEColorSlider::propertiesReadAndWriteOrientationAndMode()
{
    QZEColorSlider slider;
    QCOMPARE(slider.property("orientation").value<Qt::Orientation>(), Qt::Horizontal);
    QCOMPARE(slider.property("mode").value<Mode>(), QZEColorSlider::Hue);

    QVERIFY(slider.setProperty("orientation", QVariant::fromValue(Qt::Vertical)));
    QCOMPARE(slider.orientation(), Qt::Vertical);
    QVERIFY(slider.setProperty("mode", QVariant::fromValue(QZEColorSlider::Astar)));
    QCOMPARE(slider.getMode(), QZEColorSlider::Astar);
    QVERIFY(slider.setProperty("mode", QStringLiteral("Lstar")));
    QCOMPARE(slider.getMode(), QZEColorSlider::Lstar);

    slider.setMode(QZEColorSlider::Green);
    QCOMPARE(slider.property("mode").value<Mode>(), QZEColorSlider::Green);
    const QMetaProperty mode = QZEColorSlider::staticMetaObject.property(
        QZEColorSlider::staticMetaObject.indexOfProperty("mode"));
    QVERIFY(mode.isEnumType());
    QCOMPARE(QByteArray(mode.enumerator().name()), QByteArray("Mode"));
}

void tst_QZEColorSlider::modeEnumHasNineKeysInOrder()
{
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    QVERIFY(modes.isValid());
    QCOMPARE(QByteArray(modes.scope()), QByteArray("QZEColorSlider"));
    const QList<QByteArray> keys = {"Hue", "Saturation", "Value", "Red", "Green",
                                    "Blue", "Lstar", "Astar", "Bstar"};
    QCOMPARE(modes.keyCount(), keys.size());
    for (int i = 0; i < keys.size(); ++i) {
        QCOMPARE(QByteArray(modes.key(i)), keys.at(i));
        QCOMPARE(modes.value(i), i);
    }
    QCOMPARE(int(sizeof(Mode)), 4);
}

void tst_QZEColorSlider::signalsThenSlotsInMetaObjectOrder()
{
    const QStringList expected = {
        "signal minColorChanged(QZEColor)", "signal maxColorChanged(QZEColor)",
        "signal valueChanged(float)",       "signal colorChanged(QZEColor)",
        "signal valueChanged(QString)",     "signal sliderPressed()",
        "signal sliderMoved(float)",        "signal sliderReleased()",
        "slot setMinColor(QZEColor)",       "slot setMaxColor(QZEColor)",
        "slot setMinColor(float,float,float)", "slot setMaxColor(float,float,float)",
        "slot setValue(float,bool,bool)",   "slot setValue(float,bool)",
        "slot setValue(float)",             "slot setHueMode(bool)",
        "slot setSaturationMode(bool)",     "slot setValueMode(bool)",
        "slot setLstarMode(bool)",          "slot setAstarMode(bool)",
        "slot setBstarMode(bool)",          "slot setRedMode(bool)",
        "slot setGreenMode(bool)",          "slot setBlueMode(bool)"};
    QCOMPARE(methodsInMetaObjectOrder(QZEColorSlider::staticMetaObject), expected);
}

void tst_QZEColorSlider::connectsByStringSignature()
{
    QZEColorSlider source;
    QZEColorSlider target;
    QVERIFY(QObject::connect(&source, SIGNAL(valueChanged(float)), &target, SLOT(setValue(float))));
    QVERIFY(QObject::connect(&source, SIGNAL(colorChanged(QZEColor)), &target,
                             SLOT(setMaxColor(QZEColor))));
    QVERIFY(QObject::connect(&target, SIGNAL(maxColorChanged(QZEColor)), &source,
                             SLOT(setMinColor(QZEColor))));
    QSignalSpy text(&source, SIGNAL(valueChanged(QString)));
    QVERIFY(text.isValid());
    for (const char* signal : {SIGNAL(sliderPressed()), SIGNAL(sliderMoved(float)),
                               SIGNAL(sliderReleased()), SIGNAL(minColorChanged(QZEColor))})
        QVERIFY2(QSignalSpy(&source, signal).isValid(), signal);

    source.setValue(0.2f);

    QCOMPARE(target.getValue(), 0.2f);
    QCOMPARE(target.getMaxColor(), QZEColor(0.2f * 359.999f, 1.0f, 1.0f));
    QCOMPARE(source.getMinColor(), QZEColor(0.2f * 359.999f, 1.0f, 1.0f));
    QCOMPARE(text.count(), 1);
    QCOMPARE(text.at(0).at(0).toString(), QStringLiteral("71.998"));
    QVERIFY(QMetaObject::invokeMethod(&target, "setValue", Q_ARG(float, 0.75f),
                                      Q_ARG(bool, false)));
    QCOMPARE(target.getValue(), 0.75f);
}

// --- Value, colours and modes ------------------------------------------------

void tst_QZEColorSlider::setValueEmitsValueColourStringInOrder_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("Hue") << QZEColorSlider::Hue << 0.2f << "71.998";
    QTest::newRow("Saturation") << QZEColorSlider::Saturation << 0.25f << "0.250";
    QTest::newRow("Value") << QZEColorSlider::Value << 0.75f << "0.750";
    QTest::newRow("Red") << QZEColorSlider::Red << 0.125f << "0.125";
    QTest::newRow("Green") << QZEColorSlider::Green << 0.625f << "0.625";
    QTest::newRow("Blue") << QZEColorSlider::Blue << 0.875f << "0.875";
    QTest::newRow("Lstar") << QZEColorSlider::Lstar << 0.25f << "25.000";
    QTest::newRow("Astar") << QZEColorSlider::Astar << 0.25f << "-50.000";
    QTest::newRow("Bstar") << QZEColorSlider::Bstar << 0.75f << "50.000";
}

void tst_QZEColorSlider::setValueEmitsValueColourStringInOrder()
{
    QFETCH(Mode, mode);
    QFETCH(float, value);
    QFETCH(QString, text);
    QZEColor::s_LabRange = 200.0f;
    QZEColorSlider slider;
    slider.setMode(mode);
    slider.setMinColor(SomeMinColor);
    slider.setMaxColor(SomeMaxColor);
    SignalRecorder recorder(slider);

    slider.setValue(value);

    QCOMPARE(recorder.names, ValueSignals);
    QCOMPARE(recorder.floatAt(0), value);
    const QString difference = colourDifference(
        recorder.colorAt(1), expectedSelection(mode, value, SomeMinColor, SomeMaxColor));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    QCOMPARE(recorder.stringAt(2), text);
    QCOMPARE(slider.getValue(), value);
}

void tst_QZEColorSlider::setValueDoesNotClamp_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("above one") << 1.5f << "539.985";
    QTest::newRow("below zero") << -0.25f << "-89.997";
}

void tst_QZEColorSlider::setValueDoesNotClamp()
{
    QFETCH(float, value);
    QFETCH(QString, text);
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    slider.setValue(value);
    QCOMPARE(slider.getValue(), value);
    QCOMPARE(recorder.names, ValueSignals);
    QCOMPARE(recorder.floatAt(0), value);
    QCOMPARE(recorder.stringAt(2), text);
}

void tst_QZEColorSlider::setValueWithoutSignalsEmitsNothingButRepaints()
{
    WatchedRig rig;
    QVERIFY(rig.exposed);

    rig.slider->setValue(0.3f, false);

    QCOMPARE(rig.paints.count, 1); // at once, not deferred
    QCOMPARE(rig.slider->getValue(), 0.3f);
    QCOMPARE(rig.recorder.names, QStringList());
}

void tst_QZEColorSlider::setValueToStoredValueEmitsNothing()
{
    QZEColorSlider slider;
    slider.setValue(0.3f);
    SignalRecorder recorder(slider);
    slider.setValue(0.3f);
    slider.setValue(0.3f, true, false);
    QCOMPARE(recorder.names, QStringList());
    slider.setValue(0.3f, true, true);
    QCOMPARE(recorder.names, ValueSignals);
}

void tst_QZEColorSlider::forceWithoutSignalsEmitsNothing()
{
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    slider.setValue(0.5f, false, true);
    slider.setValue(0.7f, false, true);
    QCOMPARE(recorder.names, QStringList());
    QCOMPARE(slider.getValue(), 0.7f);
}

void tst_QZEColorSlider::setEndColourEmitsOnlyWhenChanged_data()
{
    QTest::addColumn<bool>("maxEnd");
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<bool>("changes");
    QTest::newRow("min, same") << false << QZEColor(0.0f, 0.0f, 0.0f) << false;
    QTest::newRow("min, hue differs") << false << QZEColor(1.0f, 0.0f, 0.0f) << true;
    QTest::newRow("min, saturation differs") << false << QZEColor(0.0f, 0.5f, 0.0f) << true;
    QTest::newRow("min, value differs") << false << QZEColor(0.0f, 0.0f, 0.25f) << true;
    QTest::newRow("max, same") << true << QZEColor(0.0f, 0.0f, 1.0f) << false;
    QTest::newRow("max, hue differs") << true << QZEColor(90.0f, 0.0f, 1.0f) << true;
    QTest::newRow("max, saturation differs") << true << QZEColor(0.0f, 0.1f, 1.0f) << true;
    QTest::newRow("max, value differs") << true << QZEColor(0.0f, 0.0f, 0.5f) << true;
}

void tst_QZEColorSlider::setEndColourEmitsOnlyWhenChanged()
{
    QFETCH(bool, maxEnd);
    QFETCH(QZEColor, colour);
    QFETCH(bool, changes);
    WatchedRig rig;
    QVERIFY(rig.exposed);
    QZEColorSlider& slider = *rig.slider;
    const auto setEnd = [&] {
        if (maxEnd)
            slider.setMaxColor(colour);
        else
            slider.setMinColor(colour);
    };

    setEnd();
    const QStringList once = changes ? QStringList{maxEnd ? "maxColorChanged" : "minColorChanged"}
                                     : QStringList();
    QCOMPARE(rig.recorder.names, once);
    QCOMPARE(rig.paints.count, changes ? 1 : 0);
    if (changes)
        QCOMPARE(rig.recorder.colorAt(0), colour);
    QCOMPARE(maxEnd ? slider.getMaxColor() : slider.getMinColor(), colour);

    setEnd();
    QCOMPARE(rig.recorder.names, once);
}

void tst_QZEColorSlider::rgbEndColourOverloadsStoreHsvSilently_data()
{
    QTest::addColumn<bool>("maxEnd");
    QTest::addColumn<float>("red");
    QTest::addColumn<float>("green");
    QTest::addColumn<float>("blue");
    QTest::addColumn<QZEColor>("expected");
    // Expected HSV worked out by hand from the max/min channel rule.
    QTest::newRow("green max") << false << 0.2f << 0.6f << 0.4f
                               << QZEColor(150.0f, 2.0f / 3.0f, 0.6f);
    QTest::newRow("blue max") << true << 0.2f << 0.1f << 0.5f << QZEColor(255.0f, 0.8f, 0.5f);
    QTest::newRow("red max, negative hue wraps") << false << 0.5f << 0.1f << 0.3f
                                                 << QZEColor(330.0f, 0.8f, 0.5f);
    QTest::newRow("red ties green") << true << 0.5f << 0.5f << 0.2f << QZEColor(60.0f, 0.6f, 0.5f);
    QTest::newRow("grey") << false << 0.3f << 0.3f << 0.3f << QZEColor(0.0f, 0.0f, 0.3f);
    QTest::newRow("black") << true << 0.0f << 0.0f << 0.0f << QZEColor(0.0f, 0.0f, 0.0f);
}

void tst_QZEColorSlider::rgbEndColourOverloadsStoreHsvSilently()
{
    QFETCH(bool, maxEnd);
    QFETCH(float, red);
    QFETCH(float, green);
    QFETCH(float, blue);
    QFETCH(QZEColor, expected);
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    if (maxEnd)
        slider.setMaxColor(red, green, blue);
    else
        slider.setMinColor(red, green, blue);
    const QZEColor stored = maxEnd ? slider.getMaxColor() : slider.getMinColor();
    QCOMPARE(stored.h, expected.h);
    QCOMPARE(stored.s, expected.s);
    QCOMPARE(stored.v, expected.v);
    QCOMPARE(recorder.names, QStringList());
}

void tst_QZEColorSlider::plainSettersNeitherEmitNorRepaint()
{
    WatchedRig rig;
    QVERIFY(rig.exposed);
    QZEColorSlider& slider = *rig.slider;

    slider.setOrientation(Qt::Vertical);
    slider.setTracking(false);
    slider.setMode(QZEColorSlider::Lstar);
    slider.setMinColor(0.1f, 0.2f, 0.3f);
    slider.setMaxColor(0.6f, 0.5f, 0.4f);
    QCoreApplication::processEvents();

    QCOMPARE(rig.paints.count, 0);
    QCOMPARE(rig.recorder.names, QStringList());
    QCOMPARE(slider.getMode(), QZEColorSlider::Lstar);
}

void tst_QZEColorSlider::modeSlotsWithFalseDoNothing_data()
{
    addModeSlotRows();
}

void tst_QZEColorSlider::modeSlotsWithFalseDoNothing()
{
    QFETCH(QByteArray, slot);
    QFETCH(Mode, mode);
    verifyModeSlotChangesNothing(slot, otherMode(mode), false);
}

void tst_QZEColorSlider::modeSlotsSwitchModeSilently_data()
{
    addModeSlotRows();
}

void tst_QZEColorSlider::modeSlotsSwitchModeSilently()
{
    QFETCH(QByteArray, slot);
    QFETCH(Mode, mode);
    QFETCH(float, primaryHue);
    WatchedRig rig(otherMode(mode));
    QVERIFY(rig.exposed);
    QZEColorSlider& slider = *rig.slider;

    QVERIFY(invokeModeSlot(slider, slot, true));

    QCOMPARE(slider.getMode(), mode);
    QCOMPARE(rig.recorder.names, QStringList());
    if (primaryHue >= 0.0f) {
        QCOMPARE(slider.getMinColor(), QZEColor(0.0f, 0.0f, 0.0f));
        QCOMPARE(slider.getMaxColor(), QZEColor(primaryHue, 1.0f, 1.0f));
    } else {
        QCOMPARE(slider.getMinColor(), SomeMinColor);
        QCOMPARE(slider.getMaxColor(), SomeMaxColor);
    }
    QTRY_VERIFY(rig.paints.count > 0);
}

void tst_QZEColorSlider::modeSlotsInCurrentModeDoNothing_data()
{
    addModeSlotRows();
}

void tst_QZEColorSlider::modeSlotsInCurrentModeDoNothing()
{
    QFETCH(QByteArray, slot);
    QFETCH(Mode, mode);
    verifyModeSlotChangesNothing(slot, mode, true);
}

void tst_QZEColorSlider::getColorFollowsMode_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<QZEColor>("minColor");
    QTest::addColumn<QZEColor>("maxColor");
    QTest::addColumn<float>("value");
    const QZEColor black(0.0f, 0.0f, 0.0f);
    QTest::newRow("Hue ignores the ends") << QZEColorSlider::Hue << SomeMinColor << SomeMaxColor
                                          << 0.3f;
    QTest::newRow("Hue at zero") << QZEColorSlider::Hue << SomeMinColor << SomeMaxColor << 0.0f;
    QTest::newRow("Saturation") << QZEColorSlider::Saturation << QZEColor(210.0f, 0.0f, 0.6f)
                                << QZEColor(210.0f, 1.0f, 0.6f) << 0.4f;
    QTest::newRow("Value") << QZEColorSlider::Value << QZEColor(40.0f, 0.5f, 0.0f)
                           << QZEColor(40.0f, 0.5f, 1.0f) << 0.7f;
    QTest::newRow("Value across hues") << QZEColorSlider::Value << QZEColor(0.0f, 1.0f, 1.0f)
                                       << QZEColor(240.0f, 1.0f, 1.0f) << 0.5f;
    QTest::newRow("Red") << QZEColorSlider::Red << black << QZEColor(0.0f, 1.0f, 1.0f) << 0.25f;
    QTest::newRow("Green") << QZEColorSlider::Green << black << QZEColor(120.0f, 1.0f, 1.0f)
                           << 0.6f;
    QTest::newRow("Blue") << QZEColorSlider::Blue << black << QZEColor(240.0f, 1.0f, 1.0f) << 0.9f;
    QTest::newRow("Red, end hue 360") << QZEColorSlider::Red << SomeMinColor
                                      << QZEColor(360.0f, 1.0f, 1.0f) << 0.8f;
    QTest::newRow("Green, negative end hue") << QZEColorSlider::Green
                                             << QZEColor(-30.0f, 1.0f, 1.0f)
                                             << SomeMaxColor << 0.35f;
    QTest::newRow("Blue, arbitrary ends") << QZEColorSlider::Blue << SomeMinColor << SomeMaxColor
                                          << 0.45f;
    QTest::newRow("Lstar") << QZEColorSlider::Lstar << SomeMinColor << SomeMaxColor << 0.7f;
    QTest::newRow("Astar") << QZEColorSlider::Astar << SomeMinColor << SomeMaxColor << 0.4f;
    QTest::newRow("Bstar") << QZEColorSlider::Bstar << SomeMinColor << SomeMaxColor << 0.6f;
}

void tst_QZEColorSlider::getColorFollowsMode()
{
    QFETCH(Mode, mode);
    QFETCH(QZEColor, minColor);
    QFETCH(QZEColor, maxColor);
    QFETCH(float, value);
    QZEColorSlider slider;
    slider.setMode(mode);
    slider.setMinColor(minColor);
    slider.setMaxColor(maxColor);
    slider.setValue(value);
    const QZEColor expected = expectedSelection(mode, value, minColor, maxColor);
    const QString difference = colourDifference(slider.getColor(), expected);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    if (mode == QZEColorSlider::Hue)
        QCOMPARE(slider.getColor(), expected);
}

void tst_QZEColorSlider::getRealValueAndStringFollowMode_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<float>("labRange");
    QTest::addColumn<float>("value");
    QTest::addColumn<float>("real");
    QTest::addColumn<QString>("text");
    QTest::newRow("Hue") << QZEColorSlider::Hue << 256.0f << 0.1f << 35.999f << "35.999";
    QTest::newRow("Saturation") << QZEColorSlider::Saturation << 256.0f << 0.25f << 0.25f
                                << "0.250";
    QTest::newRow("Value") << QZEColorSlider::Value << 256.0f << 0.75f << 0.75f << "0.750";
    QTest::newRow("Red") << QZEColorSlider::Red << 256.0f << 0.125f << 0.125f << "0.125";
    QTest::newRow("Green") << QZEColorSlider::Green << 256.0f << 1.0f << 1.0f << "1.000";
    QTest::newRow("Blue") << QZEColorSlider::Blue << 256.0f << 0.0f << 0.0f << "0.000";
    QTest::newRow("Lstar") << QZEColorSlider::Lstar << 256.0f << 0.333f << 33.3f << "33.300";
    QTest::newRow("Astar") << QZEColorSlider::Astar << 200.0f << 0.25f << -50.0f << "-50.000";
    QTest::newRow("Astar, wider range") << QZEColorSlider::Astar << 256.0f << 0.25f << -64.0f
                                        << "-64.000";
    QTest::newRow("Bstar") << QZEColorSlider::Bstar << 200.0f << 0.9f << 80.0f << "80.000";
}

void tst_QZEColorSlider::getRealValueAndStringFollowMode()
{
    QFETCH(Mode, mode);
    QFETCH(float, labRange);
    QFETCH(float, value);
    QFETCH(float, real);
    QFETCH(QString, text);
    QZEColor::s_LabRange = labRange;
    QZEColorSlider slider;
    slider.setMode(mode);
    slider.setValue(value, false);
    QCOMPARE(slider.getRealValue(), real);
    QCOMPARE(slider.getValueAsString(), text);
}

void tst_QZEColorSlider::mapToFloatDividesByWidthAndClamps_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("x");
    QTest::addColumn<float>("expected");
    QTest::newRow("left of widget") << StripWidth << -10 << 0.0f;
    QTest::newRow("left edge") << StripWidth << 0 << 0.0f;
    QTest::newRow("quarter") << StripWidth << 50 << 0.25f;
    QTest::newRow("last pixel") << StripWidth << 199 << 0.995f;
    QTest::newRow("right edge") << StripWidth << 200 << 1.0f;
    QTest::newRow("beyond right") << StripWidth << 400 << 1.0f;
    QTest::newRow("zero width, positive x") << 0 << 5 << 1.0f;
    QTest::newRow("zero width, x 0") << 0 << 0 << 0.0f;
    QTest::newRow("zero width, negative x") << 0 << -3 << 0.0f;
}

void tst_QZEColorSlider::mapToFloatDividesByWidthAndClamps()
{
    QFETCH(int, width);
    QFETCH(int, x);
    QFETCH(float, expected);
    QZEColorSlider slider;
    slider.resize(width, StripHeight);
    QCOMPARE(slider.width(), width);
    QCOMPARE(slider.mapToFloat(x, 0), expected);
    QCOMPARE(slider.mapToFloat(x, 1000), expected);
}

void tst_QZEColorSlider::eitherFlagDisablesSilently()
{
    QZEColorSlider slider;
    SignalRecorder recorder(slider);
    const auto check = [&](bool enabled) {
        return slider.isEnabled() == enabled && !slider.signalsBlocked();
    };
    slider.setPhotometricParameters(true);
    QVERIFY(check(false));
    slider.setUseSpectrum(true);
    QVERIFY(check(false));
    slider.setPhotometricParameters(false);
    QVERIFY(check(false));
    slider.setUseSpectrum(false);
    QVERIFY(check(true));
    slider.setUseSpectrum(true);
    QVERIFY(check(false));
    slider.setUseSpectrum(false);
    QVERIFY(check(true));
    QCOMPARE(recorder.names, QStringList());
}

void tst_QZEColorSlider::sizeHintFollowsOrientationAndIconSize_data()
{
    QTest::addColumn<float>("scaleX");
    QTest::addColumn<float>("scaleY");
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("horizontal, 1.0") << 1.0f << 1.0f << Qt::Horizontal << QSize(62, 16);
    QTest::newRow("vertical, 1.0") << 1.0f << 1.0f << Qt::Vertical << QSize(16, 62);
    QTest::newRow("horizontal, 2.0") << 2.0f << 2.0f << Qt::Horizontal << QSize(62, 32);
    QTest::newRow("vertical, 2.0") << 2.0f << 2.0f << Qt::Vertical << QSize(32, 62);
    QTest::newRow("horizontal reads Y") << 1.5f << 2.0f << Qt::Horizontal << QSize(62, 32);
    QTest::newRow("vertical reads X") << 1.5f << 2.0f << Qt::Vertical << QSize(24, 62);
    QTest::newRow("truncated") << 1.3f << 1.3f << Qt::Horizontal << QSize(62, 20);
}

void tst_QZEColorSlider::sizeHintFollowsOrientationAndIconSize()
{
    QFETCH(float, scaleX);
    QFETCH(float, scaleY);
    QFETCH(Qt::Orientation, orientation);
    QFETCH(QSize, expected);
    zePlatform::setDpiScale(scaleX, scaleY);
    QZEColorSlider constructed(orientation, nullptr, nullptr);
    QCOMPARE(constructed.sizeHint(), expected);
    QZEColorSlider switched;
    switched.setOrientation(orientation);
    QCOMPARE(switched.sizeHint(), expected);
}

// --- Mouse --------------------------------------------------------------------

void tst_QZEColorSlider::pressWithTrackingEmitsPressedThenValueSignals()
{
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    SignalRecorder recorder(slider);

    press(slider, 40);
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals);
    QCOMPARE(recorder.floatAt(1), 0.2f);
    QCOMPARE(recorder.colorAt(2), QZEColor(0.2f * 359.999f, 1.0f, 1.0f));
    QCOMPARE(recorder.stringAt(3), QStringLiteral("71.998"));
    QCOMPARE(slider.getValue(), 0.2f);

    recorder.clear();
    release(slider, 40);
    QCOMPARE(recorder.names, QStringList{"sliderReleased"});
}

void tst_QZEColorSlider::pressMapsRoundedPositionOverWidth_data()
{
    QTest::addColumn<qreal>("x");
    QTest::addColumn<float>("expected");
    QTest::newRow("50.4 rounds down") << 50.4 << 0.25f;
    QTest::newRow("50.5 rounds up") << 50.5 << 0.255f;
    QTest::newRow("50.6 rounds up") << 50.6 << 0.255f;
    QTest::newRow("49.5 rounds up") << 49.5 << 0.25f;
    QTest::newRow("0.5 rounds up") << 0.5 << 0.005f;
    QTest::newRow("-0.4 rounds to 0") << -0.4 << 0.0f;
    QTest::newRow("199.4 rounds down") << 199.4 << 0.995f;
}

void tst_QZEColorSlider::pressMapsRoundedPositionOverWidth()
{
    QFETCH(qreal, x);
    QFETCH(float, expected);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    sendMouse(slider, QEvent::MouseButtonPress, x, Qt::LeftButton, Qt::LeftButton);
    QCOMPARE(slider.getValue(), expected);
}

void tst_QZEColorSlider::pressWithOtherButtonIsIgnored_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::newRow("right") << Qt::RightButton;
    QTest::newRow("middle") << Qt::MiddleButton;
}

void tst_QZEColorSlider::pressWithOtherButtonIsIgnored()
{
    QFETCH(Qt::MouseButton, button);
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    SignalRecorder recorder(slider);

    QTest::mousePress(&slider, button, {}, at(40));
    QCOMPARE(recorder.names, QStringList());
    QCOMPARE(slider.getValue(), 0.5f);
    QTest::mouseMove(&slider, at(60));
    QCOMPARE(recorder.names, QStringList());
    QTest::mouseRelease(&slider, button, {}, at(60));
    QCOMPARE(recorder.names, QStringList{"sliderReleased"});
    QCOMPARE(slider.getValue(), 0.5f);
}

void tst_QZEColorSlider::trackingOnDragEmitsOnEveryMove()
{
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    SignalRecorder recorder(slider);

    press(slider, 20);
    move(slider, 60);
    move(slider, 100);
    release(slider, 100);

    const QStringList moved = ValueSignals + QStringList{"sliderMoved"};
    QCOMPARE(recorder.names, QStringList{"sliderPressed"} + ValueSignals + moved + moved
                                 + QStringList{"sliderReleased"});
    QCOMPARE(recorder.floatAt(1), 0.1f);
    QCOMPARE(recorder.floatAt(4), 0.3f);
    QCOMPARE(recorder.floatAt(7), 0.3f);
    QCOMPARE(recorder.floatAt(8), 0.5f);
    QCOMPARE(recorder.stringAt(10), QStringLiteral("179.995"));
    QCOMPARE(recorder.floatAt(11), 0.5f);
}

void tst_QZEColorSlider::moveEmitsSliderMovedEvenWhenValueUnchanged()
{
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    SignalRecorder recorder(slider);

    press(slider, 100);
    move(slider, 230);
    recorder.clear();
    move(slider, 240); // beyond the edge: still 1.0
    QCOMPARE(recorder.names, QStringList{"sliderMoved"});
    QCOMPARE(recorder.floatAt(0), 1.0f);

    recorder.clear();
    sendMouse(slider, QEvent::MouseMove, 240, Qt::NoButton, Qt::LeftButton); // same place again
    QCOMPARE(recorder.names, QStringList{"sliderMoved"});
    release(slider, 240);
}

void tst_QZEColorSlider::dragBeyondEdgesClampsValue()
{
    MouseRig rig;
    QVERIFY(QTest::qWaitForWindowExposed(&rig.window));
    QZEColorSlider& slider = *rig.slider;
    SignalRecorder recorder(slider);

    press(slider, 100);
    move(slider, -30);
    QVERIFY(slider.getValue() == 0.0f);
    QVERIFY(recorder.floatAt(recorder.args.size() - 1) == 0.0f);
    move(slider, StripWidth + 50);
    QCOMPARE(slider.getValue(), 1.0f);
    QCOMPARE(recorder.floatAt(recorder.args.size() - 1), 1.0f);
    release(slider, StripWidth + 50);
    QCOMPARE(slider.getValue(), 1.0f);
    QCOMPARE(recorder.names.count("sliderMoved"), 2);
}

void tst_QZEColorSlider::moveWithOtherButtonsHeldIsIgnored_data()
{
    QTest::addColumn<Qt::MouseButtons>("buttons");
    QTest::newRow("left and right") << Qt::MouseButtons(Qt::LeftButton | Qt::RightButton);
    QTest::newRow("left and middle") << Qt::MouseButtons(Qt::LeftButton | Qt::MiddleButton);
    QTest::newRow("right") << Qt::MouseButtons(Qt::RightButton);
    QTest::newRow("none") << Qt::MouseButtons(Qt::NoButton);
}

void tst_QZEColorSlider::moveWithOtherButtonsHeldIsIgnored()
{
    QFETCH(Qt::MouseButtons, buttons);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    SignalRecorder recorder(slider);

    sendMouse(slider, QEvent::MouseMove, 40, Qt::NoButton, buttons);
    QCOMPARE(recorder.names, QStringList());
    QCOMPARE(slider.getValue(), 0.5f);

    sendMouse(slider, QEvent::MouseMove, 40, Qt::NoButton, Qt::LeftButton);
    QCOMPARE(recorder.names, ValueSignals + QStringList{"sliderMoved"});
}

void tst_QZEColorSlider::releaseWithAnyButtonEmitsSliderReleased_data()
{
    QTest::addColumn<Qt::MouseButton>("button");
    QTest::addColumn<bool>("tracking");
    QTest::newRow("left, tracking") << Qt::LeftButton << true;
    QTest::newRow("right, tracking") << Qt::RightButton << true;
    QTest::newRow("middle, tracking") << Qt::MiddleButton << true;
    QTest::newRow("left, no tracking") << Qt::LeftButton << false;
    QTest::newRow("right, no tracking") << Qt::RightButton << false;
}

void tst_QZEColorSlider::releaseWithAnyButtonEmitsSliderReleased()
{
    QFETCH(Qt::MouseButton, button);
    QFETCH(bool, tracking);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setTracking(tracking);
    slider.setValue(0.2f, false);
    SignalRecorder recorder(slider);

    sendMouse(slider, QEvent::MouseButtonRelease, 150, button, Qt::NoButton);

    if (tracking) {
        QCOMPARE(recorder.names, QStringList{"sliderReleased"});
        return;
    }
    // Without tracking the release reports the position reached, not the
    // release point.
    QCOMPARE(recorder.names, ValueSignals + QStringList{"sliderReleased"});
    QCOMPARE(recorder.floatAt(0), 0.2f);
    QCOMPARE(recorder.stringAt(2), QStringLiteral("71.998"));
    QCOMPARE(slider.getValue(), 0.2f);
}

// --- Painting -----------------------------------------------------------------

void tst_QZEColorSlider::gradientColumnsFollowMode_data()
{
    addModeRows();
}

void tst_QZEColorSlider::gradientColumnsFollowMode()
{
    QFETCH(Mode, mode);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setMode(mode);
    slider.setMinColor(SomeMinColor);
    slider.setMaxColor(SomeMaxColor);
    const QImage image = rendered(slider);

    // Away from the bevel (columns 1, 2, W-3, W-2) and the handle (97..101).
    for (int x : {3, 5, 20, 45, 70, 90, 120, 150, 175, 196}) {
        const float t = float(x - 1) / float(StripWidth - 2);
        const QColor expected = expectedColumn(mode, t, SomeMaxColor);
        const QString difference =
            areaDifference(image, QRect(QPoint(x, 3), QPoint(x, StripHeight - 4)), expected);
        QVERIFY2(difference.isEmpty(),
                 qPrintable(QStringLiteral("column %1: %2").arg(x).arg(difference)));
    }
}

void tst_QZEColorSlider::bevelHasThreeOutlines()
{
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    const QImage image = rendered(slider);
    const int w = StripWidth;
    const int h = StripHeight;
    // The handle at value 0.5 covers columns 97..101; rows are checked on both sides.
    const int handleLeft = 96;
    const int handleRight = 102;
    const QList<Area> areas = {
        {QRect(QPoint(0, 0), QPoint(0, h - 1)), ButtonColour},
        {QRect(QPoint(w - 1, 0), QPoint(w - 1, h - 1)), ButtonColour},
        {QRect(QPoint(0, 0), QPoint(handleLeft, 0)), ButtonColour},
        {QRect(QPoint(handleRight, 0), QPoint(w - 1, 0)), ButtonColour},
        {QRect(QPoint(0, h - 1), QPoint(handleLeft, h - 1)), ButtonColour},
        {QRect(QPoint(handleRight, h - 1), QPoint(w - 1, h - 1)), ButtonColour},
        {QRect(QPoint(1, 1), QPoint(1, h - 2)), ShadowColour},
        {QRect(QPoint(w - 2, 1), QPoint(w - 2, h - 2)), ShadowColour},
        {QRect(QPoint(1, 1), QPoint(handleLeft, 1)), ShadowColour},
        {QRect(QPoint(handleRight, 1), QPoint(w - 2, 1)), ShadowColour},
        {QRect(QPoint(1, h - 2), QPoint(handleLeft, h - 2)), ShadowColour},
        {QRect(QPoint(handleRight, h - 2), QPoint(w - 2, h - 2)), ShadowColour},
        {QRect(QPoint(2, 2), QPoint(2, h - 3)), MidlightColour},
        {QRect(QPoint(2, 2), QPoint(handleLeft, 2)), MidlightColour},
        {QRect(QPoint(handleRight, 2), QPoint(w - 3, 2)), MidlightColour},
        {QRect(QPoint(w - 3, 3), QPoint(w - 3, h - 3)), LightColour},
        {QRect(QPoint(3, h - 3), QPoint(handleLeft, h - 3)), LightColour},
        {QRect(QPoint(handleRight, h - 3), QPoint(w - 3, h - 3)), LightColour},
        {QRect(QPoint(3, 3), QPoint(3, h - 4)),
         expectedColumn(QZEColorSlider::Hue, 2.0f / float(w - 2), {})},
    };
    const QString difference = areasDifference(image, areas);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void tst_QZEColorSlider::handleOutlinesSitAtValue_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<int>("centre");
    QTest::newRow("0") << 0.0f << 2;
    QTest::newRow("0.3") << 0.3f << 60;
    QTest::newRow("0.5") << 0.5f << 99;
    QTest::newRow("1") << 1.0f << 197;
}

void tst_QZEColorSlider::handleOutlinesSitAtValue()
{
    QFETCH(float, value);
    QFETCH(int, centre);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setValue(value, false);
    const QImage image = rendered(slider);
    const int c = centre;
    const int h = StripHeight;
    const QList<Area> areas = {
        {QRect(QPoint(c - 2, 0), QPoint(c - 2, h - 1)), ShadowColour},
        {QRect(QPoint(c + 2, 0), QPoint(c + 2, h - 1)), ShadowColour},
        {QRect(QPoint(c - 2, 0), QPoint(c + 2, 0)), ShadowColour},
        {QRect(QPoint(c - 2, h - 1), QPoint(c + 2, h - 1)), ShadowColour},
        {QRect(QPoint(c - 1, 1), QPoint(c - 1, h - 2)), HighlightColour},
        {QRect(QPoint(c - 1, 1), QPoint(c + 1, 1)), HighlightColour},
        {QRect(QPoint(c + 1, 2), QPoint(c + 1, h - 2)), MidlightColour},
        {QRect(QPoint(c, h - 2), QPoint(c + 1, h - 2)), MidlightColour},
    };
    const QString difference = areasDifference(image, areas);
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void tst_QZEColorSlider::renderingMatchesReference_data()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<float>("value");
    const QMetaEnum modes = QMetaEnum::fromType<Mode>();
    for (int i = 0; i < modes.keyCount(); ++i)
        for (float value : {0.0f, 0.37f, 1.0f})
            QTest::addRow("%s at %g", modes.key(i), double(value)) << Mode(modes.value(i)) << value;
}

void tst_QZEColorSlider::renderingMatchesReference()
{
    QFETCH(Mode, mode);
    QFETCH(float, value);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setMode(mode);
    slider.setMinColor(SomeMinColor);
    slider.setMaxColor(SomeMaxColor);
    slider.setValue(value, false);
    StripLook look;
    look.mode = mode;
    look.value = value;
    look.maxColor = SomeMaxColor;
    const QString difference = imageDifference(rendered(slider), referenceImage(look));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void tst_QZEColorSlider::disabledSliderPaintsGreyRampWithoutText()
{
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setEnabled(false);
    const QImage image = rendered(slider);

    StripLook look = lookOf(slider);
    QVERIFY(!look.enabled);
    const QString difference = imageDifference(image, referenceImage(look));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
    // v = 0.1 + 0.4 * 49 / 198 = 0.19899 -> 50
    QCOMPARE(QColor(image.pixel(50, 10)), QColor(50, 50, 50));
}

void tst_QZEColorSlider::disabledTextNamesTheReason_data()
{
    QTest::addColumn<bool>("photometric");
    QTest::addColumn<QString>("text");
    QTest::newRow("photometric") << true << PhotometricText;
    QTest::newRow("spectrum") << false << SpectralText;
}

// Wide enough for the whole text at the widget's font.
void tst_QZEColorSlider::disabledTextNamesTheReason()
{
    QFETCH(bool, photometric);
    QFETCH(QString, text);
    QZEColorSlider slider;
    slider.resize(3 * StripWidth, StripHeight);
    if (photometric)
        slider.setPhotometricParameters(true);
    else
        slider.setUseSpectrum(true);

    const QImage image = rendered(slider);

    const DrawnText drawn = findDrawnText(image, lookOf(slider), text);
    QVERIFY(drawn.pixelSize > 0);
    QCOMPARE(drawn.text, text);
}

void tst_QZEColorSlider::disabledTextFitsTheStrip_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<bool>("elided");

    QTest::newRow("default height, wide") << 3 * StripWidth << 16 << false;
    QTest::newRow("default height, narrow") << 90 << 16 << true;
    QTest::newRow("tall, wide") << 3 * StripWidth << 60 << false;
    QTest::newRow("tall, narrow") << 90 << 60 << true;
    QTest::newRow("room for a few letters") << 48 << 24 << true;
}

// The text's pixels keep to the strip the columns and bevel cover (columns 1
// to W - 3, rows 2 to H - 2); they are whole glyphs (the image is the text
// drawn unclipped), cut short with an ellipsis where the width needs it. The
// size is the widget's own or, where that does not fit, the largest whose
// glyphs keep below the bevel's top edge (row 3) and above row H - 1.
void tst_QZEColorSlider::disabledTextFitsTheStrip()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(bool, elided);
    QZEColorSlider slider;
    slider.resize(width, height);
    slider.setValue(0.0f, false); // the handle at the left end, clear of the text
    slider.setUseSpectrum(true);

    const QImage image = rendered(slider);

    const QRect textArea = differingArea(image, referenceImage(lookOf(slider)));
    QVERIFY(!textArea.isEmpty());
    const QRect strip(QPoint(1, 2), QPoint(width - 3, height - 2));
    QVERIFY2(strip.contains(textArea),
             qPrintable(QStringLiteral("text at (%1, %2)-(%3, %4)")
                            .arg(textArea.left()).arg(textArea.top())
                            .arg(textArea.right()).arg(textArea.bottom())));
    const DrawnText drawn = findDrawnText(image, lookOf(slider), SpectralText);
    QVERIFY(drawn.pixelSize > 0);
    QCOMPARE(drawn.text != SpectralText, elided);
    const int own = QFontInfo(slider.font()).pixelSize();
    QVERIFY(drawn.pixelSize <= own);
    if (drawn.pixelSize < own) {
        const QRect larger = textRowsAt(lookOf(slider), SpectralText, drawn.pixelSize + 1);
        QVERIFY2(larger.top() < 3 || larger.bottom() > height - 2,
                 qPrintable(QStringLiteral("%1 pixels would fit as well").arg(drawn.pixelSize + 1)));
    }
}

void tst_QZEColorSlider::disabledTextIsLeftOutWhereItCannotBeRead()
{
    QZEColorSlider slider;
    slider.resize(StripWidth, 8);
    slider.setPhotometricParameters(true);

    const QImage image = rendered(slider);

    const QString difference = imageDifference(image, referenceImage(lookOf(slider)));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

void tst_QZEColorSlider::photometricTextTakesPrecedence()
{
    const auto renderedWith = [](bool photometric, bool spectrum) {
        QZEColorSlider slider;
        slider.resize(StripWidth, StripHeight);
        slider.setPhotometricParameters(photometric);
        slider.setUseSpectrum(spectrum);
        return rendered(slider);
    };
    const QImage both = renderedWith(true, true);
    QVERIFY(imageDifference(both, renderedWith(true, false)).isEmpty());
    QVERIFY(!imageDifference(both, renderedWith(false, true)).isEmpty());
}

void tst_QZEColorSlider::saturationStripFollowsGammaSwitch_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::newRow("gamma") << true;
    QTest::newRow("linear") << false;
}

void tst_QZEColorSlider::saturationStripFollowsGammaSwitch()
{
    QFETCH(bool, useGamma);
    QZEColor::s_useGamma = useGamma;
    const QZEColor end(200.0f, 0.3f, 0.5f);
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setMode(QZEColorSlider::Saturation);
    slider.setMaxColor(end);
    const QImage image = rendered(slider);

    for (int x : {5, 40, 80, 130, 190}) {
        const float t = float(x - 1) / float(StripWidth - 2);
        Rgb linear = rgbOf(QZEColor(end.h, t, end.v));
        if (useGamma)
            linear = {srgbEncoded(linear.r), srgbEncoded(linear.g), srgbEncoded(linear.b)};
        const QColor expected = bytesOf(linear);
        QCOMPARE(image.pixelColor(x, 10), expected);
    }
}

// --- The cached strip -------------------------------------------------------

// The same slider painted again and again with a new end colour each time:
// every paint must show the strip of the colour it holds, column for column
// as the per-column conversions (getGammaQColor for saturation) give it. 258
// pixels wide, so the strip has 256 columns.
void tst_QZEColorSlider::stripMatchesPerColumnColoursForManyEndColours_data()
{
    addModeRows();
}

void tst_QZEColorSlider::stripMatchesPerColumnColoursForManyEndColours()
{
    QFETCH(Mode, mode);
    QZEColor::s_useGamma = true;
    QVector<QZEColor> ends = {{0.0f, 0.0f, 0.0f},   {0.0f, 1.0f, 1.0f},    {359.99f, 1.0f, 1.0f},
                              {120.0f, 0.0f, 0.5f}, {240.0f, 0.5f, 1.7f},  {60.0f, 1.0f, 0.002f}};
    std::mt19937 random(16);
    std::uniform_real_distribution<float> hue(0.0f, 360.0f);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    while (ends.size() < 40)
        ends.append(QZEColor(hue(random), unit(random), unit(random)));

    QZEColorSlider slider;
    slider.resize(258, StripHeight);
    slider.setMode(mode);
    for (const QZEColor& end : qAsConst(ends)) {
        slider.setMaxColor(end);
        StripLook look = lookOf(slider);
        const QString difference = imageDifference(rendered(slider), referenceImage(look));
        QVERIFY2(difference.isEmpty(), qPrintable(QStringLiteral("end HSV (%1, %2, %3): %4")
                                                      .arg(end.h).arg(end.s).arg(end.v)
                                                      .arg(difference)));
    }
}

void tst_QZEColorSlider::handleMoveGivesThePixelsOfAFreshPaint_data()
{
    addModeRows();
}

// A drag only moves the handle: the strip comes from the cache, and the
// pixels must be those of a slider painted for the first time there.
void tst_QZEColorSlider::handleMoveGivesThePixelsOfAFreshPaint()
{
    QFETCH(Mode, mode);
    const auto configured = [mode](QZEColorSlider& slider, float value) {
        slider.resize(StripWidth, StripHeight);
        slider.setMode(mode);
        slider.setMaxColor(SomeMaxColor);
        slider.setValue(value, false);
    };
    QZEColorSlider dragged;
    configured(dragged, 0.2f);
    const QImage before = rendered(dragged);
    for (const float value : {0.7f, 0.0f, 1.0f, 0.45f}) {
        dragged.setValue(value, false);
        QZEColorSlider fresh;
        configured(fresh, value);
        const QImage after = rendered(dragged);
        QVERIFY(!imageDifference(after, before).isEmpty());
        const QString difference = imageDifference(after, rendered(fresh));
        QVERIFY2(difference.isEmpty(), qPrintable(difference));
    }
}

void tst_QZEColorSlider::stripFollowsGammaSwitchAndLabRangeOnceCached()
{
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setMode(QZEColorSlider::Saturation);
    slider.setMaxColor(SomeMaxColor);
    QZEColor::s_useGamma = true;
    const QImage encoded = rendered(slider);
    QZEColor::s_useGamma = false;
    const QImage linear = rendered(slider);
    QVERIFY(!imageDifference(linear, encoded).isEmpty());
    QVERIFY2(imageDifference(linear, referenceImage(lookOf(slider))).isEmpty(), "gamma off");

    slider.setMode(QZEColorSlider::Astar);
    const QImage wide = rendered(slider);
    QZEColor::s_LabRange = 100.0f;
    const QImage narrow = rendered(slider);
    QVERIFY(!imageDifference(narrow, wide).isEmpty());
    QVERIFY2(imageDifference(narrow, referenceImage(lookOf(slider))).isEmpty(), "Lab range");
}

// Each of these changes what the background, strip or bevel show; a slider
// painted before must then paint what a new one does.
void tst_QZEColorSlider::bodyFollowsPaletteEnabledStateAndSize()
{
    QZEColorSlider slider;
    slider.resize(StripWidth, StripHeight);
    slider.setMode(QZEColorSlider::Value);
    slider.setMaxColor(SomeMaxColor);
    const auto freshLikeSlider = [&slider] {
        QZEColorSlider fresh;
        fresh.resize(slider.size());
        fresh.setMode(slider.getMode());
        fresh.setMaxColor(slider.getMaxColor());
        fresh.setEnabled(slider.isEnabled());
        return rendered(fresh);
    };
    const QImage first = rendered(slider);

    const QPalette saved = QApplication::palette();
    QPalette changed = saved;
    changed.setColor(QPalette::Button, QColor(90, 91, 92));
    changed.setColor(QPalette::Shadow, QColor(1, 2, 3));
    QApplication::setPalette(changed);
    const QImage repainted = rendered(slider);
    const QImage expected = freshLikeSlider();
    QApplication::setPalette(saved);
    QVERIFY(!imageDifference(repainted, first).isEmpty());
    QVERIFY2(imageDifference(repainted, expected).isEmpty(), "palette");

    rendered(slider);
    slider.setEnabled(false);
    QVERIFY2(imageDifference(rendered(slider), referenceImage(lookOf(slider))).isEmpty(),
             "disabled");
    slider.setEnabled(true);
    QVERIFY2(imageDifference(rendered(slider), first).isEmpty(), "enabled again");

    slider.resize(StripWidth + 37, StripHeight + 5);
    QVERIFY2(imageDifference(rendered(slider), referenceImage(lookOf(slider))).isEmpty(),
             "resized");
}

QTEST_MAIN(tst_QZEColorSlider)
#include "tst_QZEColorSlider.moc"
