#include "QZEColorArray.h"
#include "TestHelpers.h"

#include <QHelpEvent>
#include <QSettings>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QToolTip>
#include <QtTest>

#include <memory>

namespace {

constexpr int Cells = QZEColorArray::CellCount;

// At 160 x 40 every cell is 20 x 20 pixels: cell i spans x from (i % 8) * 20
// and y from (i / 8) * 20.
const QSize GridSize(160, 40);

QPoint centreOf(int index)
{
    return QPoint(index % 8 * 20 + 10, index / 8 * 20 + 10);
}

// Colours that differ in all three fields, some without a short decimal form.
QZEColor colourNumber(int i)
{
    return QZEColor(float(i) * 20.0f + 1.0f / 3.0f, float(i + 1) / 19.0f, 0.1f + float(i) / 7.0f);
}

std::unique_ptr<QZEColorArray> arrayWithColours(int count)
{
    auto array = std::make_unique<QZEColorArray>();
    array->resize(GridSize);
    for (int i = 0; i < count; ++i)
        array->addColor(colourNumber(i));
    return array;
}

} // namespace

class tst_QZEColorArray : public QObject
{
    Q_OBJECT

private slots:
    void init();

    void objectNameIsTheClassNameAndAllCellsStartFree();
    void addColorFillsTheFirstFreeCell();
    void addColorOverwritesTheOldestOnceFull();
    void indexesOutsideTheGridAreFreeAndBlack_data();
    void indexesOutsideTheGridAreFreeAndBlack();

    void clickSelectsTheCellUnderTheMouse_data();
    void clickSelectsTheCellUnderTheMouse();
    void rightClickSelectsNothing();
    void arrowKeysMoveTheCurrentCellAndReturnSelectsIt_data();
    void arrowKeysMoveTheCurrentCellAndReturnSelectsIt();

    void tooltipShowsTheCellsValues();
    void cellsArePaintedSrgbEncoded();

    void cellsSurviveARestartThroughTheSettingsFile();
    void theCyclePositionSurvivesARestart();
    void anEmptyGroupReceivesTheCurrentCells();
    void malformedCellsInTheSettingsStayFree();

private:
    QString settingsPath() const { return _dir->filePath(QStringLiteral("colors.ini")); }
    QSettings* newSettings() const { return new QSettings(settingsPath(), QSettings::IniFormat); }
    std::unique_ptr<QTemporaryDir> _dir;
};

void tst_QZEColorArray::init()
{
    QZEColor::s_useGamma = true;
    _dir = std::make_unique<QTemporaryDir>();
    QVERIFY(_dir->isValid());
}

void tst_QZEColorArray::objectNameIsTheClassNameAndAllCellsStartFree()
{
    QZEColorArray array(nullptr, "ignored");
    QCOMPARE(array.objectName(), QStringLiteral("QZEColorArray"));
    QCOMPARE(Cells, 16);
    for (int i = 0; i < Cells; ++i)
        QVERIFY(array.isFreeCell(i));
    QCOMPARE(array.getNextCell(), 0);
    QCOMPARE(array.getColor(0), QZEColor(0.0f, 0.0f, 0.0f));
}

void tst_QZEColorArray::addColorFillsTheFirstFreeCell()
{
    const auto array = arrayWithColours(3);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!array->isFreeCell(i));
        QCOMPARE(array->getColor(i), colourNumber(i));
    }
    QVERIFY(array->isFreeCell(3));
    QCOMPARE(array->getNextCell(), 3);
}

// Colours 16 and 17 replace colours 0 and 1; colour 2 is the next to go.
void tst_QZEColorArray::addColorOverwritesTheOldestOnceFull()
{
    const auto array = arrayWithColours(Cells + 2);
    QCOMPARE(array->getColor(0), colourNumber(Cells));
    QCOMPARE(array->getColor(1), colourNumber(Cells + 1));
    QCOMPARE(array->getColor(2), colourNumber(2));
    QCOMPARE(array->getColor(Cells - 1), colourNumber(Cells - 1));
    QCOMPARE(array->getNextCell(), 2);
}

void tst_QZEColorArray::indexesOutsideTheGridAreFreeAndBlack_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("-1") << -1;
    QTest::newRow("16") << 16;
    QTest::newRow("1000") << 1000;
}

void tst_QZEColorArray::indexesOutsideTheGridAreFreeAndBlack()
{
    QFETCH(int, index);
    const auto array = arrayWithColours(Cells);
    QVERIFY(array->isFreeCell(index));
    QCOMPARE(array->getColor(index), QZEColor(0.0f, 0.0f, 0.0f));
}

void tst_QZEColorArray::clickSelectsTheCellUnderTheMouse_data()
{
    QTest::addColumn<QPoint>("at");
    QTest::addColumn<int>("cell");
    QTest::newRow("first") << centreOf(0) << 0;
    QTest::newRow("filled, first row") << centreOf(2) << 2;
    QTest::newRow("free, second row") << centreOf(13) << 13;
    QTest::newRow("last, bottom right pixel") << QPoint(159, 39) << 15;
    QTest::newRow("left edge of cell 9") << QPoint(20, 20) << 9;
}

void tst_QZEColorArray::clickSelectsTheCellUnderTheMouse()
{
    QFETCH(QPoint, at);
    QFETCH(int, cell);
    const auto array = arrayWithColours(5);
    QSignalSpy spy(array.get(), &QZEColorArray::selected);
    QTest::mouseClick(array.get(), Qt::LeftButton, {}, at);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), cell);
    QCOMPARE(array->getCurrentCell(), cell);
}

void tst_QZEColorArray::rightClickSelectsNothing()
{
    const auto array = arrayWithColours(5);
    QSignalSpy spy(array.get(), &QZEColorArray::selected);
    QTest::mouseClick(array.get(), Qt::RightButton, {}, centreOf(3));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(array->getCurrentCell(), 0);
}

void tst_QZEColorArray::arrowKeysMoveTheCurrentCellAndReturnSelectsIt_data()
{
    QTest::addColumn<QList<int>>("keys");
    QTest::addColumn<int>("cell");
    QTest::newRow("right right down") << QList<int>{Qt::Key_Right, Qt::Key_Right, Qt::Key_Down} << 10;
    QTest::newRow("left and up stop at cell 0") << QList<int>{Qt::Key_Left, Qt::Key_Up} << 0;
    QTest::newRow("right stops at the row's end")
        << QList<int>{Qt::Key_Down, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right,
                      Qt::Key_Right, Qt::Key_Right, Qt::Key_Right, Qt::Key_Right}
        << 15;
    QTest::newRow("down stops at the last row") << QList<int>{Qt::Key_Down, Qt::Key_Down, Qt::Key_Up} << 0;
}

void tst_QZEColorArray::arrowKeysMoveTheCurrentCellAndReturnSelectsIt()
{
    QFETCH(QList<int>, keys);
    QFETCH(int, cell);
    const auto array = arrayWithColours(5);
    QCOMPARE(array->focusPolicy(), Qt::StrongFocus);
    QSignalSpy spy(array.get(), &QZEColorArray::selected);
    for (int key : keys)
        QTest::keyClick(array.get(), Qt::Key(key));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(array->getCurrentCell(), cell);

    QTest::keyClick(array.get(), Qt::Key_Return);
    QTest::keyClick(array.get(), Qt::Key_Space);
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.at(0).at(0).toInt(), cell);
    QCOMPARE(spy.at(1).at(0).toInt(), cell);
}

// H 120, S 0.5, V 0.8 is sector 2 with f = 0: (p, v, t) with p = t = 0.4.
void tst_QZEColorArray::tooltipShowsTheCellsValues()
{
    const auto array = arrayWithColours(0);
    array->addColor(QZEColor(120.0f, 0.5f, 0.8f));
    const QString expected = QStringLiteral("H: 120.0000  S: 0.5000  V: 0.8000\nR: 0.4000  G: 0.8000  B: 0.4000");
    QCOMPARE(array->describeCell(0), expected);
    QCOMPARE(array->describeCell(1), QStringLiteral("Free cell"));

    array->show();
    QVERIFY(QTest::qWaitForWindowExposed(array.get()));
    QHelpEvent event(QEvent::ToolTip, centreOf(0), array->mapToGlobal(centreOf(0)));
    QApplication::sendEvent(array.get(), &event);
    QTRY_COMPARE(QToolTip::text(), expected);
    QToolTip::hideText();
}

// A linear grey of 0.5 shows as 1.055 * 0.5^(1/2.4) - 0.055 = 0.73536, 187.5 of 255.
void tst_QZEColorArray::cellsArePaintedSrgbEncoded()
{
    const auto array = arrayWithColours(0);
    array->addColor(QZEColor(0.0f, 0.0f, 0.5f));
    const QImage image = array->grab().toImage();
    QCOMPARE(image.pixelColor(centreOf(0)), QColor(187, 187, 187));
    QCOMPARE(image.pixelColor(centreOf(1)), array->palette().color(QPalette::Button));
}

void tst_QZEColorArray::cellsSurviveARestartThroughTheSettingsFile()
{
    {
        QZEColorArray first;
        first.setSettings(newSettings(), QStringLiteral("ColorDialog/customColors"));
        for (int i = 0; i < 3; ++i)
            first.addColor(colourNumber(i));
    }
    QZEColorArray second;
    second.setSettings(newSettings(), QStringLiteral("ColorDialog/customColors"));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(second.getColor(i), colourNumber(i));
    for (int i = 3; i < Cells; ++i)
        QVERIFY2(second.isFreeCell(i), qPrintable(QString::number(i)));
    QCOMPARE(second.getNextCell(), 3);
}

void tst_QZEColorArray::theCyclePositionSurvivesARestart()
{
    {
        QZEColorArray first;
        first.setSettings(newSettings(), QStringLiteral("custom"));
        for (int i = 0; i < Cells + 5; ++i)
            first.addColor(colourNumber(i));
    }
    QZEColorArray second;
    second.setSettings(newSettings(), QStringLiteral("custom"));
    QCOMPARE(second.getNextCell(), 5);
    second.addColor(QZEColor(1.0f, 0.5f, 0.25f));
    QCOMPARE(second.getColor(5), QZEColor(1.0f, 0.5f, 0.25f));
    QCOMPARE(second.getColor(4), colourNumber(Cells + 4));
}

void tst_QZEColorArray::anEmptyGroupReceivesTheCurrentCells()
{
    const auto array = arrayWithColours(2);
    array->setSettings(newSettings(), QStringLiteral("custom"));
    array.get()->setSettings(nullptr, QString()); // writes the file

    QSettings written(settingsPath(), QSettings::IniFormat);
    const QStringList cells = written.value(QStringLiteral("custom/cells")).toStringList();
    QCOMPARE(cells.size(), Cells);
    QCOMPARE(cells.at(0), QStringLiteral("0.333333343 0.0526315793 0.100000001"));
    QCOMPARE(cells.at(2), QString());
    QCOMPARE(written.value(QStringLiteral("custom/next")).toInt(), 2);
}

void tst_QZEColorArray::malformedCellsInTheSettingsStayFree()
{
    {
        QSettings settings(settingsPath(), QSettings::IniFormat);
        settings.setValue(QStringLiteral("custom/cells"),
                          QStringList{QStringLiteral("1 2"), QStringLiteral("x 0 0"), QStringLiteral("nan 0 0"),
                                      QStringLiteral("10 0.5 0.25"), QStringLiteral("1 2 3 4")});
        settings.setValue(QStringLiteral("custom/next"), 99);
    }
    QZEColorArray array;
    array.setSettings(newSettings(), QStringLiteral("custom"));
    for (int i : {0, 1, 2, 4, 5, Cells - 1})
        QVERIFY2(array.isFreeCell(i), qPrintable(QString::number(i)));
    QCOMPARE(array.getColor(3), QZEColor(10.0f, 0.5f, 0.25f));
    QCOMPARE(array.getNextCell(), 0);
}

QTEST_MAIN(tst_QZEColorArray)
#include "tst_QZEColorArray.moc"
