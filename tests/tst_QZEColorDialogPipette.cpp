// The colour dialog's pipette picking from a real X server: a private Xvfb
// started by the test program itself, a window of known colours beside the
// dialog, and synthetic mouse and key events sent to the window that catches
// them while picking. CTest runs it once as it is and once with
// QT_SCALE_FACTOR=2.

#include "ColourArithmetic.h"
#include "PatternWindow.h"
#include "PrivateServers.h"
#include "TestHelpers.h"

#include <QZEColor.h>
#include <QZEColorDialog.h>

#include <QCursor>
#include <QSignalSpy>
#include <QToolButton>
#include <QtTest>

#include <cmath>


namespace {

const QRect patternGeometry(40, 40, 200, 200);
const QPoint dialogCorner(300, 40);

// Two by two blocks of 100 x 100. The bottom right block is picked: a
// position read at twice or half the scale lands on the dialog or in the
// top left block.
std::vector<Fill> quadrants()
{
    return {{QRect(0, 0, 100, 100), QColor(200, 30, 40)},
            {QRect(100, 0, 100, 100), QColor(20, 180, 60)},
            {QRect(0, 100, 100, 100), QColor(30, 60, 220)},
            {QRect(100, 100, 100, 100), QColor(250, 130, 0)}};
}

// The published sRGB decoding and encoding, in double precision.
double srgbDecoded(int byte)
{
    const double c = byte / 255.0;
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

int srgbEncodedByte(double c)
{
    return int(std::lround(255.0 * (c <= 0.0031308 ? 12.92 * c
                                                   : 1.055 * std::pow(c, 1.0 / 2.4) - 0.055)));
}

// The screen pixel that a colour handed out by the dialog came from.
QColor screenPixelOf(const QZEColor& picked, bool useGamma)
{
    const Rgb rgb = rgbOf(picked);
    if (useGamma)
        return QColor(srgbEncodedByte(rgb.r), srgbEncodedByte(rgb.g), srgbEncodedByte(rgb.b));
    return QColor(int(std::lround(255.0 * rgb.r)), int(std::lround(255.0 * rgb.g)),
                  int(std::lround(255.0 * rgb.b)));
}

} // namespace

class tst_QZEColorDialogPipette : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();
    void init();
    void cleanup();

    void leftReleaseOutsideTheDialogPicksThePixel_data();
    void leftReleaseOutsideTheDialogPicksThePixel();
    void rightClickAbortsWithoutChangingTheColour();
    void leftReleaseOverTheDialogEndsPickingWithoutGrabbing();
    void keyPressEndsPickingAndLeavesTheDialogOpen();
    void pipetteButtonAgainEndsPicking();

private:
    // Clicks the pipette button and leaves catcher() holding the grabs.
    void startPicking();
    // Puts the mouse pointer at global and waits for the catcher to follow
    // when global lies outside the dialog.
    void moveCursorTo(const QPoint& global);
    void checkPickingEnded();
    QToolButton* pipetteButton() const;

    QScopedPointer<PatternWindow> _pattern;
    QScopedPointer<QZEColorDialog> _dialog;
    QWidget* _catcher = nullptr;
    bool _savedUseGamma = true;
};

void tst_QZEColorDialogPipette::initTestCase()
{
    QZE_SKIP_WITHOUT_DISPLAY();
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
    qRegisterMetaType<QZEColor>();
    _savedUseGamma = QZEColor::s_useGamma;
}

void tst_QZEColorDialogPipette::init()
{
    _pattern.reset(new PatternWindow(patternGeometry, quadrants()));
    _pattern->show();
    QVERIFY(QTest::qWaitForWindowExposed(_pattern.data()));
    _dialog.reset(new QZEColorDialog());
    _dialog->move(dialogCorner);
    _dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(_dialog.data()));
    QVERIFY(!_dialog->frameGeometry().intersects(_pattern->frameGeometry()));
    QCOMPARE(_dialog->devicePixelRatioF(), requestedScaleFactor());
    _catcher = nullptr;
}

void tst_QZEColorDialogPipette::cleanup()
{
    _dialog.reset();
    _pattern.reset();
    QZEColor::s_useGamma = _savedUseGamma;
}

QToolButton* tst_QZEColorDialogPipette::pipetteButton() const
{
    return _dialog->findChild<QToolButton*>(QStringLiteral("_pick_color"));
}

void tst_QZEColorDialogPipette::startPicking()
{
    QToolButton* pipette = pipetteButton();
    QVERIFY(pipette);
    QVERIFY(pipette->isEnabled());
    // As a user's pointer would, the pointer passes over the button: the
    // catcher only follows a pointer that moved since the last pick.
    QCursor::setPos(pipette->mapToGlobal(pipette->rect().center()));
    pipette->click();
    QVERIFY(pipette->isChecked());
    _catcher = QWidget::mouseGrabber();
    QVERIFY(_catcher);
    QVERIFY(_catcher != _dialog.data());
    QVERIFY(_catcher->isVisible());
    QCOMPARE(QWidget::keyboardGrabber(), _catcher);
    QTest::qWait(50); // a few ticks see the pointer on the button
}

void tst_QZEColorDialogPipette::moveCursorTo(const QPoint& global)
{
    QCursor::setPos(global);
    QTRY_COMPARE(QCursor::pos(), global);
    if (!_dialog->frameGeometry().contains(global))
        QTRY_COMPARE(_catcher->pos(), global - QPoint(5, 5));
}

void tst_QZEColorDialogPipette::checkPickingEnded()
{
    QVERIFY(!pipetteButton()->isChecked());
    QVERIFY(!_catcher->isVisible());
    QCOMPARE(QWidget::mouseGrabber(), nullptr);
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
}

void tst_QZEColorDialogPipette::leftReleaseOutsideTheDialogPicksThePixel_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QPoint>("local");
    QTest::newRow("sRGB colours, bottom right") << true << QPoint(150, 150);
    QTest::newRow("sRGB colours, top left") << true << QPoint(30, 60);
    QTest::newRow("display colours, bottom right") << false << QPoint(150, 150);
    QTest::newRow("display colours, top right") << false << QPoint(170, 10);
}

// The screen shows sRGB: with sRGB colours on the dialog takes the pixel
// decoded to linear and hands it out as it is; with them off it hands out
// the pixel's own 0..1 channels.
void tst_QZEColorDialogPipette::leftReleaseOutsideTheDialogPicksThePixel()
{
    QFETCH(bool, useGamma);
    QFETCH(QPoint, local);
    QZEColor::s_useGamma = useGamma;
    _dialog->reinit(QZEColor(0.0f, 0.0f, 0.5f));
    const QColor pixel = _pattern->colourAt(local);
    const double expected[3] = {
        useGamma ? srgbDecoded(pixel.red()) : pixel.red() / 255.0,
        useGamma ? srgbDecoded(pixel.green()) : pixel.green() / 255.0,
        useGamma ? srgbDecoded(pixel.blue()) : pixel.blue() / 255.0};
    QSignalSpy changed(_dialog.data(), SIGNAL(colorChanged(QZEColor)));

    QZE_CHECK(startPicking());
    const QPoint global = _pattern->mapToGlobal(local);
    QZE_CHECK(moveCursorTo(global));
    QTest::mousePress(_catcher, Qt::LeftButton, {}, _catcher->mapFromGlobal(global));
    QCOMPARE(changed.count(), 0);
    QTest::mouseRelease(_catcher, Qt::LeftButton, {}, _catcher->mapFromGlobal(global));

    QZE_CHECK(checkPickingEnded());
    QCOMPARE(changed.count(), 1);
    const QColor picked = screenPixelOf(changed.at(0).at(0).value<QZEColor>(), useGamma);
    QVERIFY2(picked == pixel,
             qPrintable(QStringLiteral("picked the screen pixel %1 instead of the window's %2; "
                                       "without a compositing manager a window at opacity 0 "
                                       "still covers the screen, so the catcher must be out of "
                                       "the way when the pixel is read")
                            .arg(picked.name(), pixel.name())));
    const Rgb emitted = rgbOf(changed.at(0).at(0).value<QZEColor>());
    const Rgb current = rgbOf(_dialog->getColor());
    QZE_COMPARE_NEAR(emitted.r, expected[0], 2e-5);
    QZE_COMPARE_NEAR(emitted.g, expected[1], 2e-5);
    QZE_COMPARE_NEAR(emitted.b, expected[2], 2e-5);
    QZE_COMPARE_NEAR(current.r, expected[0], 2e-5);
    QZE_COMPARE_NEAR(current.g, expected[1], 2e-5);
    QZE_COMPARE_NEAR(current.b, expected[2], 2e-5);
}

void tst_QZEColorDialogPipette::rightClickAbortsWithoutChangingTheColour()
{
    const QZEColor before = _dialog->getColor();
    QSignalSpy changed(_dialog.data(), SIGNAL(colorChanged(QZEColor)));
    QZE_CHECK(startPicking());
    const QPoint global = _pattern->mapToGlobal(QPoint(150, 150));
    QZE_CHECK(moveCursorTo(global));
    QTest::mousePress(_catcher, Qt::RightButton, {}, _catcher->mapFromGlobal(global));
    QTest::mouseRelease(_catcher, Qt::RightButton, {}, _catcher->mapFromGlobal(global));
    QZE_CHECK(checkPickingEnded());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(_dialog->getColor(), before);
}

void tst_QZEColorDialogPipette::leftReleaseOverTheDialogEndsPickingWithoutGrabbing()
{
    const QZEColor before = _dialog->getColor();
    QSignalSpy changed(_dialog.data(), SIGNAL(colorChanged(QZEColor)));
    QZE_CHECK(startPicking());
    QZE_CHECK(moveCursorTo(_pattern->mapToGlobal(QPoint(150, 150))));
    const QPoint overDialog = _dialog->frameGeometry().center();
    QZE_CHECK(moveCursorTo(overDialog));
    // Over the dialog the catcher stays where it was, leaving the controls
    // under the pointer.
    QTest::qWait(50);
    QVERIFY(!_catcher->frameGeometry().contains(overDialog));
    QTest::mouseRelease(_catcher, Qt::LeftButton, {}, _catcher->mapFromGlobal(overDialog));
    QZE_CHECK(checkPickingEnded());
    QCOMPARE(changed.count(), 0);
    QCOMPARE(_dialog->getColor(), before);
}

void tst_QZEColorDialogPipette::keyPressEndsPickingAndLeavesTheDialogOpen()
{
    QSignalSpy changed(_dialog.data(), SIGNAL(colorChanged(QZEColor)));
    QZE_CHECK(startPicking());
    QZE_CHECK(moveCursorTo(_pattern->mapToGlobal(QPoint(50, 50))));
    QTest::keyClick(_catcher, Qt::Key_Escape);
    QZE_CHECK(checkPickingEnded());
    // Escape went to the pipette, not to the dialog, which would have
    // cancelled and emitted the previous colour.
    QVERIFY(_dialog->isVisible());
    QCOMPARE(changed.count(), 0);
}

void tst_QZEColorDialogPipette::pipetteButtonAgainEndsPicking()
{
    QSignalSpy changed(_dialog.data(), SIGNAL(colorChanged(QZEColor)));
    QZE_CHECK(startPicking());
    pipetteButton()->click();
    QZE_CHECK(checkPickingEnded());
    QCOMPARE(changed.count(), 0);
}

QZE_TEST_MAIN_WITH_PRIVATE_SERVERS(tst_QZEColorDialogPipette, true)
#include "tst_QZEColorDialogPipette.moc"
