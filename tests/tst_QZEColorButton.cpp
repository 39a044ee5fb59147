#include "ColourArithmetic.h"
#include "ColourChecks.h"
#include "QZEColorButton.h"
#include "QZEColorDialog.h"
#include "SyntheticMouse.h"
#include "TestHelpers.h"
#include "zePlatform.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QMouseEvent>
#include <QPointer>
#include <QTabWidget>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <memory>
#include <vector>

Q_DECLARE_METATYPE(Qt::MouseButton)

namespace {

// The swatch's style sheet for an 8-bit background, written out here so a
// change of the library's format shows.
QString styleSheetFor(int red, int green, int blue)
{
    return QStringLiteral("border: 1px solid rgb(127, 127, 127);border-radius: 3px;"
                          "background: rgb(%1, %2, %3);")
        .arg(red)
        .arg(green)
        .arg(blue);
}

float clamp01(float c)
{
    return std::min(std::max(c, 0.0f), 1.0f);
}

// --- Signals ----------------------------------------------------------------

// The button's own signals in the order they came, with the colours they
// carried. clicked(bool) is watched apart: the button's connection to its
// buttonClicked() slot runs before any later listener's.
class SignalLog : public QObject
{
public:
    explicit SignalLog(QZEColorButton& button)
    {
        connect(&button, &QZEColorButton::colorButtonClicked, this,
                [this] { names << QStringLiteral("colorButtonClicked"); });
        recordColour(button, &QZEColorButton::temporaryColorChosen, "temporaryColorChosen");
        recordColour(button, &QZEColorButton::finalColorChosen, "finalColorChosen");
        connect(&button, &QZEColorButton::userSkipped, this,
                [this] { names << QStringLiteral("userSkipped"); });
        connect(&button, &QZEColorButton::userAccepted, this,
                [this] { names << QStringLiteral("userAccepted"); });
        connect(&button, &QAbstractButton::clicked, this,
                [this](bool checked) { clicks << checked; });
    }

    QStringList names;
    QList<QZEColor> colours;
    QList<bool> clicks;

private:
    void recordColour(QZEColorButton& button, void (QZEColorButton::*signal)(const QZEColor&),
                      const char* name)
    {
        connect(&button, signal, this, [this, name](const QZEColor& colour) {
            names << QString::fromLatin1(name);
            colours << colour;
        });
    }
};

// --- Drags the button starts --------------------------------------------------

struct DragRecord
{
    QObject* source = nullptr;
    Qt::DropActions actions;
    bool hasColour = false;
    QColor colour;
    QImage pixmap;
};

// Records every QDrag the button creates, and its data, while it still lives.
//
// QDrag::exec() behaves in one of two ways. On the offscreen platform it
// returns at once and the QDrag, a child of the button, lives on until its
// deferred deletion; poll() right after the mouse move finds it. On a real
// window system exec() runs a nested event loop until the drop; there the
// zero-interval timer fires inside that loop, records the drag and cancels
// it with Escape, so the gesture never waits on a user.
class DragWatch : public QObject
{
public:
    explicit DragWatch(QZEColorButton& button) : _button(button)
    {
        connect(&_timer, &QTimer::timeout, this, [this] {
            if (poll())
                cancelRunningDrag();
        });
        _timer.start(0);
    }

    // Records the drags not seen before; true when there was one.
    bool poll()
    {
        bool found = false;
        for (QDrag* drag : _button.findChildren<QDrag*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (std::find(_seen.cbegin(), _seen.cend(), drag) != _seen.cend())
                continue;
            _seen.push_back(drag);
            drags.push_back(recordOf(*drag));
            found = true;
        }
        return found;
    }

    std::vector<DragRecord> drags;

private:
    static DragRecord recordOf(const QDrag& drag)
    {
        DragRecord record;
        record.source = drag.source();
        record.actions = drag.supportedActions();
        record.hasColour = drag.mimeData() && drag.mimeData()->hasColor();
        if (record.hasColour)
            record.colour = qvariant_cast<QColor>(drag.mimeData()->colorData());
        record.pixmap = drag.pixmap().toImage();
        return record;
    }

    void cancelRunningDrag()
    {
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&_button, &escape);
    }

    QZEColorButton& _button;
    QTimer _timer;
    std::vector<QPointer<QDrag>> _seen;
};

// --- Mouse gestures -------------------------------------------------------------

// Sends mouse events with exact, also sub-pixel, positions and watches what
// they cause.
class Gesture
{
public:
    explicit Gesture(QZEColorButton& button) : log(button), watch(button), _button(button) {}

    SignalLog log;
    DragWatch watch;

    void press(const QPointF& at, Qt::MouseButton which = Qt::LeftButton)
    {
        _held = which;
        send(QEvent::MouseButtonPress, at, which, which);
    }
    void move(const QPointF& to) { send(QEvent::MouseMove, to, Qt::NoButton, _held); }
    void release(const QPointF& at)
    {
        const Qt::MouseButton which = _held == Qt::NoButton ? Qt::LeftButton : _held;
        _held = Qt::NoButton;
        send(QEvent::MouseButtonRelease, at, which, Qt::NoButton);
    }

    int dragCount() const { return int(watch.drags.size()); }

private:
    void send(QEvent::Type type, const QPointF& at, Qt::MouseButton which,
              Qt::MouseButtons held)
    {
        sendMouseEvent(&_button, type, at, which, held);
        watch.poll();
    }

    QZEColorButton& _button;
    Qt::MouseButton _held = Qt::NoButton;
};

int dragDistance()
{
    return QApplication::startDragDistance();
}

// --- Drop events ------------------------------------------------------------------

const QPoint DropPoint(5, 5);

std::unique_ptr<QMimeData> colourMime(const QColor& colour)
{
    auto mime = std::make_unique<QMimeData>();
    mime->setColorData(QVariant(colour));
    return mime;
}

// Colour data as another program may send them: the bytes of the colour type.
std::unique_ptr<QMimeData> rawColourMime(const QByteArray& bytes)
{
    auto mime = std::make_unique<QMimeData>();
    mime->setData(QStringLiteral("application/x-color"), bytes);
    return mime;
}

std::unique_ptr<QMimeData> textMime()
{
    auto mime = std::make_unique<QMimeData>();
    mime->setText(QStringLiteral("rgb(255, 0, 0)"));
    return mime;
}

// Hands the event straight to the button's own handler. QApplication would
// pass a refused drag on to the parent and hold back moves and drops from a
// widget that refused the enter; these tests check the handler alone.
bool deliver(QZEColorButton& button, QEvent& event)
{
    return static_cast<QObject&>(button).event(&event);
}

bool dragEnter(QZEColorButton& button, const QMimeData& mime)
{
    QDragEnterEvent event(DropPoint, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    deliver(button, event);
    return event.isAccepted();
}

bool dragMove(QZEColorButton& button, const QMimeData& mime)
{
    QDragMoveEvent event(DropPoint, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    deliver(button, event);
    return event.isAccepted();
}

void dragLeave(QZEColorButton& button)
{
    QDragLeaveEvent event;
    deliver(button, event);
}

bool drop(QZEColorButton& button, const QMimeData& mime)
{
    QDropEvent event(DropPoint, Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    deliver(button, event);
    return event.isAccepted();
}

// A shown, active window with the button and a line edit that holds the focus
// to begin with.
class FocusRig
{
public:
    FocusRig() : other(new QLineEdit(&window)), button(new QZEColorButton(&window))
    {
        window.resize(200, 80);
        other->setGeometry(10, 10, 80, 24);
        button->setGeometry(110, 10, 40, 24);
        window.show();
        window.activateWindow();
        active = QTest::qWaitForWindowActive(&window);
        other->setFocus(Qt::OtherFocusReason);
    }

    QWidget window;
    QLineEdit* other;
    QZEColorButton* button;
    bool active = false;
};

// --- Spectra ------------------------------------------------------------------------

// A host spectrum holding the given band samples (derived samples) directly.
osg::SpectrumPtr spectrumWithBands(int bandCount, bool useSpectrum)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    std::vector<float>& bands = spectrum->editSamples();
    for (int i = 0; i < bandCount; ++i)
        bands.push_back(0.2f + 0.6f * float(i) / 39.0f); // rising towards the red end
    spectrum->setUseSpectrum(useSpectrum);
    return spectrum;
}

} // namespace

class tst_QZEColorButton : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Construction and interface
    void objectNameIsClassNameWhateverNameIsPassed_data();
    void objectNameIsClassNameWhateverNameIsPassed();
    void freshButtonIsFlatDropSiteWithPreferredPolicy();
    void freshButtonHoldsLightGreyAndOpensTheDialog_data();
    void freshButtonHoldsLightGreyAndOpensTheDialog();
    void sharedDialogStartsNull();
    void sizeHintIsMediumIconWideAndSmallIconHigh_data();
    void sizeHintIsMediumIconWideAndSmallIconHigh();
    void showColorDialogPropertyReadsAndWrites();
    void signalsThenSlotsInMetaObjectOrder();
    void connectsByStringSignature();

    // Showing the colour
    void styleSheetShowsEightBitColour_data();
    void styleSheetShowsEightBitColour();
    void setColorStoresExactlyAndEmitsNothing();

    // Spectrum
    void setSpectrumWithoutActiveSpectrumOnlyLeavesColour_data();
    void setSpectrumWithoutActiveSpectrumOnlyLeavesColour();
    void setSpectrumWithActiveSpectrumOnlyTakesItsRgb_data();
    void setSpectrumWithActiveSpectrumOnlyTakesItsRgb();

    // Click and drag
    void pressAndReleaseIsOneCheckedClick_data();
    void pressAndReleaseIsOneCheckedClick();
    void pressShowsNoSunkenState();
    void clickOrDragByManhattanDistance_data();
    void clickOrDragByManhattanDistance();
    void positionsAreRoundedBeforeMeasuring();
    void dragStartsOncePerPress();
    void moveWithoutPressStartsNoDrag();
    void releaseWithoutPressDoesNothing();
    void clickFromKeyboardReachesButtonClicked();
    void dragCarriesClampedLinearColour_data();
    void dragCarriesClampedLinearColour();
    void dragPixmapIs30By20InShownColour_data();
    void dragPixmapIs30By20InShownColour();

    // Drop target
    void dragEnterTakesFocusAndAcceptsOnlyColour_data();
    void dragEnterTakesFocusAndAcceptsOnlyColour();
    void dragMoveAcceptsOnlyColourWithoutTakingFocus_data();
    void dragMoveAcceptsOnlyColourWithoutTakingFocus();
    void dragLeaveHandsFocusToParent();
    void dragLeaveWithoutFocusLeavesFocusAlone();
    void dragLeaveOfTopLevelButtonKeepsFocus();
    void dropOfColourSetsItAndEmitsFinalColour_data();
    void dropOfColourSetsItAndEmitsFinalColour();
    void droppingTextIsRefusedAndKeepsColour();
    void colourDraggedFromOneButtonDropsOnAnother();
    void textDraggedOverButtonNeverDrops();

    // Dialog relays that need no dialog
    void colorChangedRelaysTemporaryColourOnly();
    void rejectedEmitsUnchangedColourThenSkipped();
    void acceptedWithoutDialogDoesNothing();

    // The shared dialog
    void clickWithoutShowColorDialogOnlyEmitsColorButtonClicked();
    void dialogParentIsNearestModuleElseTopMost_data();
    void dialogParentIsNearestModuleElseTopMost();
    void dialogGetsColourThroughRgbRoundTrip_data();
    void dialogGetsColourThroughRgbRoundTrip();
    void dialogIsCreatedOnceShownAndStaysOnTop();
    void clickReaimsOpenDialogAtButtonsColour();
    void clickHandsTheButtonsSpectrumToTheDialog_data();
    void clickHandsTheButtonsSpectrumToTheDialog();
    void twoButtonsRouteLaterChangesOnlyToSecond();
    void reaimingDisconnectsEveryListenerOfTheDialog();
    void acceptHidesDialogTakesItsColourThenAccepted();
    void cancelAfterSeveralLiveChangesEmitsColourFromBefore();
    void deletingParentWindowThenClickingCreatesFreshDialog();

private:
    bool _useGamma = true;
};

void tst_QZEColorButton::initTestCase()
{
    qRegisterMetaType<QZEColor>();
    _useGamma = QZEColor::s_useGamma;
}

void tst_QZEColorButton::init()
{
    QZEColor::s_useGamma = _useGamma;
}

void tst_QZEColorButton::cleanup()
{
    delete QZEColorButton::s_colorChooser;
    QZEColor::s_useGamma = _useGamma;
    zePlatform::setDpiScale(0.0f, 0.0f);
}

// --- Construction and interface ----------------------------------------------

void tst_QZEColorButton::objectNameIsClassNameWhateverNameIsPassed_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("no name") << QByteArray();
    QTest::newRow("named") << QByteArray("diffuseSwatch");
}

void tst_QZEColorButton::objectNameIsClassNameWhateverNameIsPassed()
{
    QFETCH(QByteArray, name);
    QWidget parent;
    auto* button = new QZEColorButton(&parent, name.isNull() ? nullptr : name.constData());
    QCOMPARE(button->objectName(), QStringLiteral("QZEColorButton"));
    QCOMPARE(button->parentWidget(), &parent);
}

void tst_QZEColorButton::freshButtonIsFlatDropSiteWithPreferredPolicy()
{
    QZEColorButton button;
    QVERIFY(button.isFlat());
    QVERIFY(button.acceptDrops());
    QCOMPARE(button.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(button.sizePolicy().verticalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(button.sizePolicy().controlType(), QSizePolicy::DefaultType);
    QVERIFY(!button.isCheckable());
}

void tst_QZEColorButton::freshButtonHoldsLightGreyAndOpensTheDialog_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QString>("styleSheet");
    // Linear 0.8 is 204 in 8 bits; sRGB-encoded it is 0.906331, so 231.
    QTest::newRow("linear") << false << styleSheetFor(204, 204, 204);
    QTest::newRow("gamma") << true << styleSheetFor(231, 231, 231);
}

void tst_QZEColorButton::freshButtonHoldsLightGreyAndOpensTheDialog()
{
    QFETCH(bool, useGamma);
    QFETCH(QString, styleSheet);
    GammaSetting gamma(useGamma);
    QZEColorButton button;
    QCOMPARE(button.getColor(), QZEColor(0.0f, 0.0f, 0.8f));
    QCOMPARE(button.styleSheet(), styleSheet);
    QVERIFY(button.showColorDialog());
    QVERIFY(!button.getSpectrum());
}

void tst_QZEColorButton::sharedDialogStartsNull()
{
    QZEColorButton button;
    QVERIFY(!QZEColorButton::s_colorChooser);
}

void tst_QZEColorButton::sizeHintIsMediumIconWideAndSmallIconHigh_data()
{
    QTest::addColumn<float>("scaleX");
    QTest::addColumn<float>("scaleY");
    QTest::addColumn<QSize>("hint");
    // Medium icons are 32 wide, small ones 16 high, both scaled and truncated.
    QTest::newRow("unscaled") << 1.0f << 1.0f << QSize(32, 16);
    QTest::newRow("x 1.5, y 2") << 1.5f << 2.0f << QSize(48, 32);
    QTest::newRow("truncated") << 1.3f << 1.3f << QSize(41, 20); // 41.6 and 20.8
}

void tst_QZEColorButton::sizeHintIsMediumIconWideAndSmallIconHigh()
{
    QFETCH(float, scaleX);
    QFETCH(float, scaleY);
    QFETCH(QSize, hint);
    zePlatform::setDpiScale(scaleX, scaleY);
    QZEColorButton button;
    QCOMPARE(button.sizeHint(), hint);
}

void tst_QZEColorButton::showColorDialogPropertyReadsAndWrites()
{
    QZEColorButton button;
    QCOMPARE(button.property("showColorDialog"), QVariant(true));
    QVERIFY(button.setProperty("showColorDialog", false));
    QVERIFY(!button.showColorDialog());
    QVERIFY(QMetaObject::invokeMethod(&button, "setShowColorDialog", Q_ARG(bool, true)));
    QCOMPARE(button.property("showColorDialog"), QVariant(true));
    button.setShowColorDialog(false);
    QCOMPARE(button.property("showColorDialog"), QVariant(false));
}

void tst_QZEColorButton::signalsThenSlotsInMetaObjectOrder()
{
    const QStringList expected = {
        "signal colorButtonClicked()",         "signal temporaryColorChosen(QZEColor)",
        "signal finalColorChosen(QZEColor)",   "signal userSkipped()",
        "signal userAccepted()",               "slot setShowColorDialog(bool)",
        "slot buttonClicked(bool)",            "slot colorChanged(QZEColor)",
        "slot accepted()",                     "slot rejected()"};
    QCOMPARE(methodsInMetaObjectOrder(QZEColorButton::staticMetaObject), expected);
}

void tst_QZEColorButton::connectsByStringSignature()
{
    QZEColorButton source;
    QZEColorButton target;
    QVERIFY(QObject::connect(&source, SIGNAL(finalColorChosen(QZEColor)), &target,
                             SLOT(colorChanged(QZEColor))));
    QVERIFY(QObject::connect(&source, SIGNAL(colorButtonClicked()), &target, SLOT(rejected())));
    for (const char* signal : {SIGNAL(temporaryColorChosen(QZEColor)), SIGNAL(userSkipped()),
                               SIGNAL(userAccepted()), SIGNAL(colorButtonClicked())})
        QVERIFY2(QSignalSpy(&source, signal).isValid(), signal);
    for (const char* slot : {"setShowColorDialog(bool)", "buttonClicked(bool)", "accepted()"})
        QVERIFY2(QZEColorButton::staticMetaObject.indexOfSlot(slot) >= 0, slot);
    QSignalSpy temporary(&target, SIGNAL(temporaryColorChosen(QZEColor)));

    const QZEColor dropped(30.0f, 0.5f, 0.25f);
    emit source.finalColorChosen(dropped);

    QCOMPARE(temporary.count(), 1);
    QCOMPARE(temporary.at(0).at(0).value<QZEColor>(), dropped);
}

// --- Showing the colour ---------------------------------------------------------

void tst_QZEColorButton::styleSheetShowsEightBitColour_data()
{
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QString>("styleSheet");
    // Linear channels times 255, truncated; with gamma, the sRGB encoding
    // 1.055 c^(1/2.4) - 0.055 (12.92 c below 0.0031308) first, in floats.
    const QZEColor grey(0.0f, 0.0f, 0.5f);           // 0.5 -> 127; encoded 0.735357 -> 187
    const QZEColor red(0.0f, 1.0f, 1.0f);            // encoded 1 is 0.99999994 in floats -> 254
    const QZEColor steel(200.0f, 0.5f, 0.6f);        // (0.3, 0.5, 0.6), encoded 0.584 0.735 0.798
    const QZEColor brightGreen(120.0f, 0.75f, 2.0f); // (0.5, 2, 0.5): above 1 gives 255
    const QZEColor nearBlack(240.0f, 0.5f, 0.002f);  // (0.001, 0.001, 0.002): linear part of sRGB
    QTest::newRow("grey, linear") << grey << false << styleSheetFor(127, 127, 127);
    QTest::newRow("grey, gamma") << grey << true << styleSheetFor(187, 187, 187);
    QTest::newRow("red, linear") << red << false << styleSheetFor(255, 0, 0);
    QTest::newRow("red, gamma") << red << true << styleSheetFor(254, 0, 0);
    QTest::newRow("steel, linear") << steel << false << styleSheetFor(76, 127, 153);
    QTest::newRow("steel, gamma") << steel << true << styleSheetFor(148, 187, 203);
    QTest::newRow("HDR green, linear") << brightGreen << false << styleSheetFor(127, 255, 127);
    QTest::newRow("HDR green, gamma") << brightGreen << true << styleSheetFor(187, 255, 187);
    QTest::newRow("near black, linear") << nearBlack << false << styleSheetFor(0, 0, 0);
    QTest::newRow("near black, gamma") << nearBlack << true << styleSheetFor(3, 3, 6);
}

void tst_QZEColorButton::styleSheetShowsEightBitColour()
{
    QFETCH(QZEColor, colour);
    QFETCH(bool, useGamma);
    QFETCH(QString, styleSheet);
    GammaSetting gamma(useGamma);
    QZEColorButton button;
    button.setColor(colour);
    QCOMPARE(button.styleSheet(), styleSheet);
}

void tst_QZEColorButton::setColorStoresExactlyAndEmitsNothing()
{
    QZEColorButton button;
    SignalLog log(button);
    // Not an RGB round trip: a grey's hue and saturation stay as given.
    const QZEColor colour(123.5f, 0.0f, 0.375f);
    button.setColor(colour);
    QCOMPARE(button.getColor(), colour);
    QCOMPARE(log.names, QStringList());
}

// --- Spectrum -----------------------------------------------------------------

void tst_QZEColorButton::setSpectrumWithoutActiveSpectrumOnlyLeavesColour_data()
{
    QTest::addColumn<bool>("spectrumOnly");
    QTest::addColumn<bool>("hasSpectrum");
    QTest::addColumn<bool>("useSpectrum");
    QTest::addColumn<int>("bandCount");
    QTest::newRow("not spectrum-only") << false << true << true << 40;
    QTest::newRow("null spectrum") << true << false << true << 40;
    QTest::newRow("use-spectrum flag off") << true << true << false << 40;
    QTest::newRow("39 derived samples") << true << true << true << 39;
    QTest::newRow("no derived samples") << true << true << true << 0;
}

void tst_QZEColorButton::setSpectrumWithoutActiveSpectrumOnlyLeavesColour()
{
    QFETCH(bool, spectrumOnly);
    QFETCH(bool, hasSpectrum);
    QFETCH(bool, useSpectrum);
    QFETCH(int, bandCount);
    const osg::SpectrumPtr spectrum =
        hasSpectrum ? spectrumWithBands(bandCount, useSpectrum) : osg::SpectrumPtr();
    QZEColorButton button;
    const QZEColor before(45.0f, 0.5f, 0.5f);
    button.setColor(before);
    const QString styleBefore = button.styleSheet();
    SignalLog log(button);

    button.setSpectrum(spectrum, 1.0f, spectrumOnly);

    QCOMPARE(button.getColor(), before);
    QCOMPARE(button.styleSheet(), styleBefore);
    QVERIFY(button.getSpectrum() == spectrum);
    QCOMPARE(log.names, QStringList());
}

void tst_QZEColorButton::setSpectrumWithActiveSpectrumOnlyTakesItsRgb_data()
{
    QTest::addColumn<int>("bandCount");
    QTest::newRow("40 derived samples") << 40;
    QTest::newRow("41 derived samples") << 41;
}

void tst_QZEColorButton::setSpectrumWithActiveSpectrumOnlyTakesItsRgb()
{
    QFETCH(int, bandCount);
    const osg::SpectrumPtr spectrum = spectrumWithBands(bandCount, true);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    const QZEColor expected = hsvOf(rgb.r, rgb.g, rgb.b);
    QVERIFY2(rgb.r > rgb.b, "a spectrum rising towards long waves is reddish");
    QZEColorButton button;
    SignalLog log(button);

    button.setSpectrum(spectrum, 2.5f, true);

    QZE_CHECK(compareColours(button.getColor(), expected, 1e-5));
    QVERIFY(button.getSpectrum() == spectrum);
    QCOMPARE(log.names, QStringList());
}

// --- Click and drag -------------------------------------------------------------

void tst_QZEColorButton::pressAndReleaseIsOneCheckedClick_data()
{
    QTest::addColumn<Qt::MouseButton>("mouseButton");
    QTest::newRow("left") << Qt::LeftButton;
    QTest::newRow("right") << Qt::RightButton;
    QTest::newRow("middle") << Qt::MiddleButton;
}

void tst_QZEColorButton::pressAndReleaseIsOneCheckedClick()
{
    QFETCH(Qt::MouseButton, mouseButton);
    QZEColorButton button;
    button.setShowColorDialog(false);
    Gesture gesture(button);

    gesture.press(QPointF(10, 10), mouseButton);
    QCOMPARE(gesture.log.clicks, QList<bool>());
    gesture.release(QPointF(10, 10));
    gesture.release(QPointF(10, 10)); // the press is used up

    QCOMPARE(gesture.log.clicks, QList<bool>{true});
    QCOMPARE(gesture.log.names, QStringList{"colorButtonClicked"});
    QCOMPARE(gesture.dragCount(), 0);
}

void tst_QZEColorButton::pressShowsNoSunkenState()
{
    QZEColorButton button;
    Gesture gesture(button);
    gesture.press(QPointF(10, 10));
    QVERIFY(!button.isDown());
    gesture.release(QPointF(10, 10));
    QVERIFY(!button.isDown());
}

void tst_QZEColorButton::clickOrDragByManhattanDistance_data()
{
    QTest::addColumn<QPoint>("offset");
    QTest::addColumn<bool>("drags");
    const int d = dragDistance();
    QTest::newRow("start-drag distance right") << QPoint(d, 0) << false;
    QTest::newRow("start-drag distance up") << QPoint(0, -d) << false;
    QTest::newRow("start-drag distance as x plus y") << QPoint(-(d - 3), 3) << false;
    QTest::newRow("one more right") << QPoint(d + 1, 0) << true;
    QTest::newRow("one more down") << QPoint(0, d + 1) << true;
    // Straight-line length below the distance, x plus y above it.
    QTest::newRow("diagonal") << QPoint(d / 2 + 1, -(d / 2 + 1)) << true;
}

void tst_QZEColorButton::clickOrDragByManhattanDistance()
{
    QFETCH(QPoint, offset);
    QFETCH(bool, drags);
    QZEColorButton button;
    button.setShowColorDialog(false);
    Gesture gesture(button);
    const QPoint start(30, 30);

    gesture.press(start);
    gesture.move(start + offset);
    QCOMPARE(gesture.dragCount(), drags ? 1 : 0);
    gesture.release(start + offset);

    QCOMPARE(gesture.log.clicks, drags ? QList<bool>() : QList<bool>{true});
    QCOMPARE(gesture.log.names, drags ? QStringList() : QStringList{"colorButtonClicked"});
}

void tst_QZEColorButton::positionsAreRoundedBeforeMeasuring()
{
    QZEColorButton button;
    Gesture gesture(button);
    const int d = dragDistance();
    // x 5.6 rounds to 6 and 6 + d + 0.4 to 6 + d: exactly the distance, though
    // the unrounded move is d + 0.8 and the truncated one d + 1.
    gesture.press(QPointF(5.6, 5.0));
    gesture.move(QPointF(6.4 + d, 5.0));
    QCOMPARE(gesture.dragCount(), 0);
    gesture.move(QPointF(6.5 + d, 5.0)); // rounds to 7 + d
    QCOMPARE(gesture.dragCount(), 1);
}

void tst_QZEColorButton::dragStartsOncePerPress()
{
    QZEColorButton button;
    Gesture gesture(button);
    const int d = dragDistance();

    gesture.press(QPointF(20, 20));
    gesture.move(QPointF(20 + d + 1, 20));
    gesture.move(QPointF(20 + 2 * d + 2, 20));
    gesture.release(QPointF(20 + 2 * d + 2, 20));
    QCOMPARE(gesture.dragCount(), 1);
    QCOMPARE(gesture.log.clicks, QList<bool>());

    gesture.press(QPointF(20, 20));
    gesture.move(QPointF(20, 20 + d + 1));
    QCOMPARE(gesture.dragCount(), 2);
}

void tst_QZEColorButton::moveWithoutPressStartsNoDrag()
{
    QZEColorButton button;
    Gesture gesture(button);
    gesture.move(QPointF(0, 0));
    gesture.move(QPointF(3 * dragDistance(), 3 * dragDistance()));
    QCOMPARE(gesture.dragCount(), 0);

    // After a click the press is used up as well.
    gesture.press(QPointF(0, 0));
    gesture.release(QPointF(0, 0));
    gesture.move(QPointF(3 * dragDistance(), 0));
    QCOMPARE(gesture.dragCount(), 0);
}

void tst_QZEColorButton::releaseWithoutPressDoesNothing()
{
    QZEColorButton button;
    Gesture gesture(button);
    gesture.release(QPointF(10, 10));
    QCOMPARE(gesture.log.clicks, QList<bool>());
    QCOMPARE(gesture.log.names, QStringList());
}

void tst_QZEColorButton::clickFromKeyboardReachesButtonClicked()
{
    QZEColorButton button;
    button.setShowColorDialog(false);
    SignalLog log(button);
    button.click(); // what the space key does
    QCOMPARE(log.clicks, QList<bool>{false});
    QCOMPARE(log.names, QStringList{"colorButtonClicked"});
}

void tst_QZEColorButton::dragCarriesClampedLinearColour_data()
{
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<bool>("useGamma");
    QTest::newRow("in range, linear") << QZEColor(200.0f, 0.5f, 0.6f) << false;
    QTest::newRow("in range, gamma") << QZEColor(200.0f, 0.5f, 0.6f) << true;
    QTest::newRow("above 1, gamma") << QZEColor(120.0f, 0.75f, 2.0f) << true;
    QTest::newRow("white above 1") << QZEColor(0.0f, 0.0f, 3.0f) << false;
}

void tst_QZEColorButton::dragCarriesClampedLinearColour()
{
    QFETCH(QZEColor, colour);
    QFETCH(bool, useGamma);
    GammaSetting gamma(useGamma);
    QZEColorButton button;
    button.setColor(colour);
    Gesture gesture(button);

    gesture.press(QPointF(10, 10));
    gesture.move(QPointF(10 + dragDistance() + 1, 10));

    QCOMPARE(gesture.dragCount(), 1);
    const DragRecord& drag = gesture.watch.drags.front();
    const Rgb linear = rgbOf(colour);
    QColor expected;
    expected.setRgbF(clamp01(linear.r), clamp01(linear.g), clamp01(linear.b));
    QVERIFY(drag.hasColour);
    QCOMPARE(drag.colour, expected);
    QCOMPARE(drag.source, &button);
    QCOMPARE(drag.actions, Qt::DropActions(Qt::CopyAction));
}

void tst_QZEColorButton::dragPixmapIs30By20InShownColour_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QColor>("shown");
    // (200, 0.5, 0.6) is linear (0.3, 0.5, 0.6): 8 bits (76, 127, 153),
    // sRGB-encoded (148, 187, 203).
    QTest::newRow("linear") << false << QColor(76, 127, 153);
    QTest::newRow("gamma") << true << QColor(148, 187, 203);
}

void tst_QZEColorButton::dragPixmapIs30By20InShownColour()
{
    QFETCH(bool, useGamma);
    QFETCH(QColor, shown);
    GammaSetting gamma(useGamma);
    QZEColorButton button;
    button.setColor(QZEColor(200.0f, 0.5f, 0.6f));
    Gesture gesture(button);

    gesture.press(QPointF(10, 10));
    gesture.move(QPointF(10, 10 - dragDistance() - 1));

    QCOMPARE(gesture.dragCount(), 1);
    const QImage pixmap = gesture.watch.drags.front().pixmap;
    QCOMPARE(pixmap.size(), QSize(30, 20));
    for (int y = 0; y < pixmap.height(); ++y)
        for (int x = 0; x < pixmap.width(); ++x)
            QCOMPARE(pixmap.pixelColor(x, y), shown);
}

// --- Drop target ------------------------------------------------------------------

void tst_QZEColorButton::dragEnterTakesFocusAndAcceptsOnlyColour_data()
{
    QTest::addColumn<bool>("carriesColour");
    QTest::newRow("colour") << true;
    QTest::newRow("text") << false;
}

void tst_QZEColorButton::dragEnterTakesFocusAndAcceptsOnlyColour()
{
    QFETCH(bool, carriesColour);
    FocusRig rig;
    QVERIFY(rig.active);
    QVERIFY(rig.other->hasFocus());
    const auto mime = carriesColour ? colourMime(Qt::red) : textMime();

    QCOMPARE(dragEnter(*rig.button, *mime), carriesColour);

    QVERIFY(rig.button->hasFocus());
}

void tst_QZEColorButton::dragMoveAcceptsOnlyColourWithoutTakingFocus_data()
{
    dragEnterTakesFocusAndAcceptsOnlyColour_data();
}

void tst_QZEColorButton::dragMoveAcceptsOnlyColourWithoutTakingFocus()
{
    QFETCH(bool, carriesColour);
    FocusRig rig;
    QVERIFY(rig.active);
    const auto mime = carriesColour ? colourMime(Qt::red) : textMime();

    QCOMPARE(dragMove(*rig.button, *mime), carriesColour);

    QVERIFY(rig.other->hasFocus());
}

void tst_QZEColorButton::dragLeaveHandsFocusToParent()
{
    FocusRig rig;
    QVERIFY(rig.active);
    const auto mime = colourMime(Qt::red);
    dragEnter(*rig.button, *mime);
    QVERIFY(rig.button->hasFocus());

    dragLeave(*rig.button);

    QCOMPARE(QApplication::focusWidget(), &rig.window);
}

void tst_QZEColorButton::dragLeaveWithoutFocusLeavesFocusAlone()
{
    FocusRig rig;
    QVERIFY(rig.active);
    dragLeave(*rig.button);
    QCOMPARE(QApplication::focusWidget(), rig.other);
}

void tst_QZEColorButton::dragLeaveOfTopLevelButtonKeepsFocus()
{
    QZEColorButton button;
    button.show();
    button.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&button));
    const auto mime = colourMime(Qt::red);
    dragEnter(button, *mime);
    QVERIFY(button.hasFocus());

    dragLeave(button);

    QVERIFY(button.hasFocus());
}

void tst_QZEColorButton::dropOfColourSetsItAndEmitsFinalColour_data()
{
    QTest::addColumn<QVariant>("payload"); // a QColor, or the raw bytes of the colour type
    QTest::addColumn<QZEColor>("expected");
    // 128/255 of green over full red: hue 60 * 128/255.
    QTest::newRow("orange") << QVariant(QColor(255, 128, 0)) << QZEColor(30.117647f, 1.0f, 1.0f);
    // (0.2, 0.4, 0.8): blue largest, hue 240 + 60 * (0.2 - 0.4) / 0.6.
    QTest::newRow("blue") << QVariant(QColor(51, 102, 204)) << QZEColor(220.0f, 0.75f, 0.8f);
    QTest::newRow("black") << QVariant(QColor(0, 0, 0)) << QZEColor(0.0f, 0.0f, 0.0f);
    QTest::newRow("colour name") << QVariant(QByteArray("#3366cc"))
                                 << QZEColor(220.0f, 0.75f, 0.8f);
    // An unreadable colour is an invalid QColor, whose channels read as 0.
    QTest::newRow("unreadable") << QVariant(QByteArray("no colour")) << QZEColor(0.0f, 0.0f, 0.0f);
}

void tst_QZEColorButton::dropOfColourSetsItAndEmitsFinalColour()
{
    QFETCH(QVariant, payload);
    QFETCH(QZEColor, expected);
    const auto mime = payload.userType() == QMetaType::QColor
                          ? colourMime(payload.value<QColor>())
                          : rawColourMime(payload.toByteArray());
    QZEColorButton button;
    SignalLog log(button);

    QVERIFY(drop(button, *mime));

    QZE_CHECK(compareColours(button.getColor(), expected, 1e-6));
    QCOMPARE(log.names, QStringList{"finalColorChosen"});
    QCOMPARE(log.colours.front(), button.getColor());
}

void tst_QZEColorButton::droppingTextIsRefusedAndKeepsColour()
{
    QZEColorButton button;
    const QZEColor before(45.0f, 0.5f, 0.5f);
    button.setColor(before);
    const QString styleBefore = button.styleSheet();
    SignalLog log(button);
    const auto mime = textMime();

    QVERIFY(!dragEnter(button, *mime));
    QVERIFY(!drop(button, *mime));

    QCOMPARE(button.getColor(), before);
    QCOMPARE(button.styleSheet(), styleBefore);
    QCOMPARE(log.names, QStringList());
}

void tst_QZEColorButton::colourDraggedFromOneButtonDropsOnAnother()
{
    FocusRig rig;
    QVERIFY(rig.active);
    QZEColorButton source;
    const QZEColor colour(200.0f, 0.5f, 0.6f);
    source.setColor(colour);
    Gesture gesture(source);
    gesture.press(QPointF(10, 10));
    gesture.move(QPointF(10 + dragDistance() + 1, 10));
    QCOMPARE(gesture.dragCount(), 1);
    const auto mime = colourMime(gesture.watch.drags.front().colour);
    SignalLog log(*rig.button);

    // Through the application, which picks the drop site on the enter.
    QDragEnterEvent enter(DropPoint, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rig.button, &enter);
    QVERIFY(enter.isAccepted());
    QDragMoveEvent move(DropPoint, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rig.button, &move);
    QVERIFY(move.isAccepted());
    QDropEvent dropped(DropPoint, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rig.button, &dropped);
    QVERIFY(dropped.isAccepted());

    // A QColor keeps 16 bits a channel.
    QZE_CHECK(compareColours(rig.button->getColor(), colour, 1e-4));
    QCOMPARE(log.names, QStringList{"finalColorChosen"});
    QVERIFY(rig.button->hasFocus());
}

void tst_QZEColorButton::textDraggedOverButtonNeverDrops()
{
    FocusRig rig;
    QVERIFY(rig.active);
    const QZEColor before = rig.button->getColor();
    SignalLog log(*rig.button);
    const auto mime = textMime();

    QDragEnterEvent enter(DropPoint, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rig.button, &enter);
    QVERIFY(!enter.isAccepted());
    QDropEvent dropped(DropPoint, Qt::CopyAction, mime.get(), Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(rig.button, &dropped);
    QVERIFY(!dropped.isAccepted());

    QCOMPARE(rig.button->getColor(), before);
    QCOMPARE(log.names, QStringList());
}

// --- Dialog relays that need no dialog ------------------------------------------

void tst_QZEColorButton::colorChangedRelaysTemporaryColourOnly()
{
    QZEColorButton button;
    const QZEColor before = button.getColor();
    SignalLog log(button);
    const QZEColor live(300.0f, 0.25f, 0.5f);

    QVERIFY(QMetaObject::invokeMethod(&button, "colorChanged", Q_ARG(QZEColor, live)));

    QCOMPARE(log.names, QStringList{"temporaryColorChosen"});
    QCOMPARE(log.colours, QList<QZEColor>{live});
    QCOMPARE(button.getColor(), before);
}

void tst_QZEColorButton::rejectedEmitsUnchangedColourThenSkipped()
{
    QZEColorButton button;
    const QZEColor before(10.0f, 0.5f, 0.75f);
    button.setColor(before);
    SignalLog log(button);
    button.colorChanged(QZEColor(300.0f, 0.25f, 0.5f));
    log.names.clear();
    log.colours.clear();

    button.rejected();

    QCOMPARE(log.names, (QStringList{"finalColorChosen", "userSkipped"}));
    QCOMPARE(log.colours, QList<QZEColor>{before});
    QCOMPARE(button.getColor(), before);
}

void tst_QZEColorButton::acceptedWithoutDialogDoesNothing()
{
    QZEColorButton button;
    const QZEColor before = button.getColor();
    SignalLog log(button);
    button.accepted();
    QCOMPARE(log.names, QStringList());
    QCOMPARE(button.getColor(), before);
}

// --- The shared dialog ----------------------------------------------------------

namespace {

QZEColorDialog* sharedDialog()
{
    return QZEColorButton::s_colorChooser;
}

// A live change in the open dialog, as its controls make one.
void changeInDialog(const QZEColor& colour)
{
    sharedDialog()->setColor(colour);
}

} // namespace

void tst_QZEColorButton::clickWithoutShowColorDialogOnlyEmitsColorButtonClicked()
{
    QWidget window;
    auto* button = new QZEColorButton(&window);
    button->setShowColorDialog(false);
    SignalLog log(*button);
    button->click();
    QCOMPARE(log.names, QStringList{"colorButtonClicked"});
    QVERIFY(!sharedDialog());
}

void tst_QZEColorButton::dialogParentIsNearestModuleElseTopMost_data()
{
    // Names from the top-most widget down to the button's parent; the index
    // of the one that should hold the dialog (-1: the button itself).
    QTest::addColumn<QStringList>("chain");
    QTest::addColumn<int>("parentIndex");
    QTest::newRow("module two levels up") << QStringList{"window", "Module", "panel"} << 1;
    QTest::newRow("nearest of two modules") << QStringList{"Module", "panel", "Module", "box"} << 2;
    QTest::newRow("module as direct parent") << QStringList{"window", "Module"} << 1;
    QTest::newRow("names are case-sensitive") << QStringList{"window", "module", "MODULE"} << 0;
    QTest::newRow("no module: top-most") << QStringList{"window", "panel", "box"} << 0;
    QTest::newRow("no parent at all") << QStringList{} << -1;
}

void tst_QZEColorButton::dialogParentIsNearestModuleElseTopMost()
{
    QFETCH(QStringList, chain);
    QFETCH(int, parentIndex);
    std::unique_ptr<QWidget> top;
    QList<QWidget*> widgets;
    for (const QString& name : chain) {
        auto* widget = new QWidget(widgets.isEmpty() ? nullptr : widgets.last());
        if (!top)
            top.reset(widget);
        widget->setObjectName(name);
        widgets << widget;
    }
    std::unique_ptr<QZEColorButton> orphan;
    QZEColorButton* button = nullptr;
    if (widgets.isEmpty()) {
        orphan = std::make_unique<QZEColorButton>();
        button = orphan.get();
    } else {
        button = new QZEColorButton(widgets.last());
    }

    button->click();

    QVERIFY(sharedDialog());
    QCOMPARE(sharedDialog()->parentWidget(),
             parentIndex < 0 ? static_cast<QWidget*>(button) : widgets.at(parentIndex));
}

void tst_QZEColorButton::dialogGetsColourThroughRgbRoundTrip_data()
{
    QTest::addColumn<QZEColor>("colour");
    QTest::addColumn<QZEColor>("opened");
    QTest::newRow("grey with a hue") << QZEColor(123.0f, 0.0f, 0.5f) << QZEColor(0.0f, 0.0f, 0.5f);
    QTest::newRow("black with a saturation")
        << QZEColor(200.0f, 0.7f, 0.0f) << QZEColor(0.0f, 0.0f, 0.0f);
    // Linear (0.75, 0.4375, 0.375) and back.
    QTest::newRow("colour") << QZEColor(10.0f, 0.5f, 0.75f) << QZEColor(10.0f, 0.5f, 0.75f);
}

void tst_QZEColorButton::dialogGetsColourThroughRgbRoundTrip()
{
    QFETCH(QZEColor, colour);
    QFETCH(QZEColor, opened);
    GammaSetting gamma(true); // the dialog's colours are then linear inside and out
    QWidget window;
    auto* button = new QZEColorButton(&window);
    button->setColor(colour);

    button->click();

    QZE_CHECK(compareColours(sharedDialog()->getColor(), opened, 1e-6));
    QCOMPARE(button->getColor(), colour);
}

void tst_QZEColorButton::dialogIsCreatedOnceShownAndStaysOnTop()
{
    QWidget window;
    auto* first = new QZEColorButton(&window);
    auto* second = new QZEColorButton(&window);

    first->click();
    QPointer<QZEColorDialog> dialog = sharedDialog();
    QVERIFY(dialog);
    QVERIFY(dialog->isVisible());
    QVERIFY(dialog->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    dialog->hide();
    second->click();

    QCOMPARE(sharedDialog(), dialog.data());
    QVERIFY(dialog->isVisible());
    QCOMPARE(window.findChildren<QZEColorDialog*>().size(), 1);
}

void tst_QZEColorButton::clickReaimsOpenDialogAtButtonsColour()
{
    GammaSetting gamma(true);
    QWidget window;
    auto* button = new QZEColorButton(&window);
    const QZEColor colour(10.0f, 0.5f, 0.75f);
    button->setColor(colour);
    button->click();
    changeInDialog(QZEColor(100.0f, 0.25f, 0.5f));
    SignalLog log(*button);

    button->click(); // the dialog is still open

    // The dialog starts over from the button's colour, which is a live change.
    QCOMPARE(log.names, (QStringList{"colorButtonClicked", "temporaryColorChosen"}));
    QZE_CHECK(compareColours(log.colours.at(0), colour, 1e-6));
    QZE_CHECK(compareColours(sharedDialog()->getColor(), colour, 1e-6));
}

void tst_QZEColorButton::clickHandsTheButtonsSpectrumToTheDialog_data()
{
    QTest::addColumn<bool>("hasSpectrum");
    QTest::addColumn<bool>("spectrumOnly");
    QTest::newRow("no spectrum") << false << false;
    QTest::newRow("spectrum") << true << false;
    QTest::newRow("spectrum only") << true << true;
}

// The dialog opens its spectrum tab for a spectrum it is given; a colour that
// comes from the spectrum alone leaves no switch to turn the spectrum off.
void tst_QZEColorButton::clickHandsTheButtonsSpectrumToTheDialog()
{
    QFETCH(bool, hasSpectrum);
    QFETCH(bool, spectrumOnly);
    QWidget window;
    auto* button = new QZEColorButton(&window);
    if (hasSpectrum)
        button->setSpectrum(spectrumWithBands(40, false), 2.0f, spectrumOnly);

    button->click();

    auto* tabs = sharedDialog()->findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    auto* input = sharedDialog()->findChild<QGroupBox*>(QStringLiteral("_spectrum_input_group"));
    QVERIFY(tabs && input);
    QCOMPARE(tabs->isTabEnabled(1), hasSpectrum);
    if (hasSpectrum)
        QCOMPARE(input->isCheckable(), !spectrumOnly);
}

void tst_QZEColorButton::twoButtonsRouteLaterChangesOnlyToSecond()
{
    GammaSetting gamma(true);
    QWidget window;
    auto* first = new QZEColorButton(&window);
    auto* second = new QZEColorButton(&window);
    first->setColor(QZEColor(10.0f, 0.5f, 0.75f));
    second->setColor(QZEColor(240.0f, 0.25f, 0.5f));
    SignalLog firstLog(*first);
    SignalLog secondLog(*second);

    first->click();
    second->click();
    const QZEColor live(60.0f, 1.0f, 1.0f);
    changeInDialog(live);
    sharedDialog()->accept();

    QCOMPARE(firstLog.names, QStringList{"colorButtonClicked"});
    QCOMPARE(secondLog.names,
             (QStringList{"colorButtonClicked", "temporaryColorChosen", "temporaryColorChosen",
                          "finalColorChosen", "userAccepted"}));
    QCOMPARE(secondLog.colours.at(1), live);
    QCOMPARE(second->getColor(), live);
    QCOMPARE(first->getColor(), QZEColor(10.0f, 0.5f, 0.75f));
}

void tst_QZEColorButton::reaimingDisconnectsEveryListenerOfTheDialog()
{
    QWidget window;
    auto* button = new QZEColorButton(&window);
    button->click();
    QSignalSpy hostChanges(sharedDialog(), SIGNAL(colorChanged(QZEColor)));
    QSignalSpy hostAccepts(sharedDialog(), SIGNAL(accepted()));
    QSignalSpy hostRejects(sharedDialog(), SIGNAL(rejected()));
    QSignalSpy finished(sharedDialog(), SIGNAL(finished(int)));

    button->click();
    changeInDialog(QZEColor(60.0f, 1.0f, 1.0f));
    sharedDialog()->accept();

    QCOMPARE(hostChanges.count(), 0);
    QCOMPARE(hostAccepts.count(), 0);
    QCOMPARE(hostRejects.count(), 0);
    QCOMPARE(finished.count(), 1); // the dialog's other signals keep their listeners
}

void tst_QZEColorButton::acceptHidesDialogTakesItsColourThenAccepted()
{
    GammaSetting gamma(true);
    QWidget window;
    auto* button = new QZEColorButton(&window);
    button->click();
    const QZEColor live(300.0f, 0.25f, 0.5f);
    changeInDialog(live);
    SignalLog log(*button);

    sharedDialog()->accept();

    QCOMPARE(log.names, (QStringList{"finalColorChosen", "userAccepted"}));
    QCOMPARE(log.colours, QList<QZEColor>{live});
    QCOMPARE(button->getColor(), live);
    QVERIFY(!sharedDialog()->isVisible());
}

void tst_QZEColorButton::cancelAfterSeveralLiveChangesEmitsColourFromBefore()
{
    GammaSetting gamma(true);
    QWidget window;
    auto* button = new QZEColorButton(&window);
    const QZEColor before(10.0f, 0.5f, 0.75f);
    button->setColor(before);
    SignalLog log(*button);

    button->click();
    const QList<QZEColor> changes = {{60.0f, 1.0f, 1.0f}, {120.0f, 0.5f, 0.5f}, {180.0f, 0.25f, 0.25f}};
    for (const QZEColor& change : changes)
        changeInDialog(change);
    sharedDialog()->reject();

    // The dialog's cancel first re-sends the colour it was opened with.
    QCOMPARE(log.names, (QStringList{"colorButtonClicked", "temporaryColorChosen",
                                     "temporaryColorChosen", "temporaryColorChosen",
                                     "temporaryColorChosen", "finalColorChosen", "userSkipped"}));
    QCOMPARE(log.colours.mid(0, 3), changes);
    QZE_CHECK(compareColours(log.colours.at(3), before, 1e-6));
    QCOMPARE(log.colours.at(4), before);
    QCOMPARE(button->getColor(), before);
    QVERIFY(!sharedDialog()->isVisible());
}

void tst_QZEColorButton::deletingParentWindowThenClickingCreatesFreshDialog()
{
    auto window = std::make_unique<QWidget>();
    auto* button = new QZEColorButton(window.get());
    button->click();
    QPointer<QZEColorDialog> first = sharedDialog();
    QVERIFY(first);

    window.reset();
    QVERIFY(!first);
    QVERIFY(!sharedDialog());

    QWidget other;
    auto* again = new QZEColorButton(&other);
    SignalLog log(*again);
    again->click();
    QVERIFY(sharedDialog());
    QCOMPARE(sharedDialog()->parentWidget(), &other);
    QVERIFY(sharedDialog()->isVisible());
    changeInDialog(QZEColor(60.0f, 1.0f, 1.0f));
    QCOMPARE(log.names, (QStringList{"colorButtonClicked", "temporaryColorChosen"}));
}

QTEST_MAIN(tst_QZEColorButton)
#include "tst_QZEColorButton.moc"
