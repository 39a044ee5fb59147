// The screen picker against a real X server: a private Xvfb started by the
// test program itself. CTest runs it once as it is and once with
// QT_SCALE_FACTOR=2.

#include "PatternWindow.h"
#include "PrivateServers.h"
#include "TestHelpers.h"

#include <QZEScreenPicker.h>

#include <QScreen>
#include <QWidget>
#include <QtTest>

#include <vector>

namespace {

// Four by three blocks of 40 x 40, each its own colour. A position read
// at the wrong scale lands in another block or outside the window.
std::vector<Fill> blocks()
{
    const QColor colours[] = {{200, 30, 40},  {20, 180, 60},  {30, 60, 220},   {240, 220, 10},
                              {120, 0, 160},  {0, 200, 200},  {250, 130, 0},   {90, 90, 90},
                              {255, 255, 255}, {10, 80, 30},  {170, 110, 60},  {60, 0, 0}};
    std::vector<Fill> fills;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            fills.emplace_back(QRect(column * 40, row * 40, 40, 40), colours[row * 4 + column]);
    return fills;
}

// Stripes one logical pixel wide in two colours, alternating: reading the
// neighbouring device pixel of the right one gives the other colour.
std::vector<Fill> stripes(int width, int height)
{
    std::vector<Fill> fills;
    for (int x = 0; x < width; ++x)
        fills.emplace_back(QRect(x, 0, 1, height),
                           x % 2 ? QColor(250, 40, 200) : QColor(20, 210, 90));
    return fills;
}

} // namespace

class tst_QZEScreenPickerX11 : public QObject
{
    Q_OBJECT
private slots:
    void initTestCase();

    void screensHaveTheDevicePixelRatioAskedFor();
    void availableMethodIsScreenOnX11();
    void pixelAtReadsEachBlockOfAWindow();
    void pixelAtReadsOneLogicalPixelWideStripes();

private:
    // Shows the window and compares pixelAt with the pattern at each point.
    void checkPoints(PatternWindow& window, const QVector<QPoint>& localPoints);
};

void tst_QZEScreenPickerX11::initTestCase()
{
    QZE_SKIP_WITHOUT_DISPLAY();
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
}

void tst_QZEScreenPickerX11::checkPoints(PatternWindow& window, const QVector<QPoint>& localPoints)
{
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    for (const QPoint& local : localPoints) {
        const QPoint global = window.geometry().topLeft() + local;
        const QColor expected = window.colourAt(local);
        QVERIFY(expected.isValid());
        QTRY_COMPARE_WITH_TIMEOUT(QZEScreenPicker::pixelAt(global), expected, 3000);
    }
}

void tst_QZEScreenPickerX11::screensHaveTheDevicePixelRatioAskedFor()
{
    const double expected = requestedScaleFactor();
    for (QScreen* screen : QGuiApplication::screens())
        QCOMPARE(screen->devicePixelRatio(), expected);
    // 1920 x 1200 device pixels.
    const QScreen* primary = QGuiApplication::primaryScreen();
    QCOMPARE(primary->geometry().size(), QSize(qRound(1920 / expected), qRound(1200 / expected)));
}

void tst_QZEScreenPickerX11::availableMethodIsScreenOnX11()
{
    QCOMPARE(QZEScreenPicker::availableMethod(), QZEScreenPicker::Method::Screen);
}

void tst_QZEScreenPickerX11::pixelAtReadsEachBlockOfAWindow()
{
    const QPoint corner = QGuiApplication::primaryScreen()->geometry().topLeft() + QPoint(40, 30);
    PatternWindow window(QRect(corner, QSize(160, 120)), blocks());
    QVector<QPoint> centres;
    for (int row = 0; row < 3; ++row)
        for (int column = 0; column < 4; ++column)
            centres << QPoint(column * 40 + 20, row * 40 + 20);
    // Points near the corners of blocks too.
    centres << QPoint(41, 41) << QPoint(78, 38) << QPoint(159, 119) << QPoint(0, 0);
    QZE_CHECK(checkPoints(window, centres));
}

void tst_QZEScreenPickerX11::pixelAtReadsOneLogicalPixelWideStripes()
{
    const QPoint corner = QGuiApplication::primaryScreen()->geometry().topLeft() + QPoint(31, 17);
    PatternWindow window(QRect(corner, QSize(60, 40)), stripes(60, 40));
    QVector<QPoint> points;
    for (int x = 0; x < 12; ++x)
        points << QPoint(x, 5 + x);
    points << QPoint(58, 39) << QPoint(59, 39);
    QZE_CHECK(checkPoints(window, points));
}

QZE_TEST_MAIN_WITH_PRIVATE_SERVERS(tst_QZEScreenPickerX11, true)
#include "tst_QZEScreenPickerX11.moc"
