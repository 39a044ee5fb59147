#include "QZEDoubleSpiner.h"

#include <QLocale>
#include <QSignalSpy>
#include <QtTest>

class tst_QZEDoubleSpiner : public QObject
{
    Q_OBJECT

private slots:
    void objectNameIsTheClassName();
    void textShowsTheDisplayDecimals_data();
    void textShowsTheDisplayDecimals();
    void valueKeepsMoreDecimalsThanTheText();
    void switchingTheDisplayRewritesTheTextSilently();
    void sizeHintFollowsTheDisplayedText();
    void typedTextBecomesTheValue();
    void textFollowsTheWidgetsLocale();
};

void tst_QZEDoubleSpiner::objectNameIsTheClassName()
{
    QZEDoubleSpiner spiner(nullptr, "ignored");
    QCOMPARE(spiner.objectName(), QStringLiteral("QZEDoubleSpiner"));
}

void tst_QZEDoubleSpiner::textShowsTheDisplayDecimals_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<bool>("exact");
    QTest::addColumn<QString>("text");
    QTest::newRow("exact keeps trailing zeros") << 0.5 << 3 << true << QStringLiteral("0.500");
    QTest::newRow("not exact drops them") << 0.5 << 3 << false << QStringLiteral("0.5");
    QTest::newRow("not exact drops the point") << 1.0 << 3 << false << QStringLiteral("1");
    QTest::newRow("rounded to the decimals") << 123.45678 << 3 << true << QStringLiteral("123.457");
    QTest::newRow("rounded, then zeros dropped") << 0.29996 << 3 << false << QStringLiteral("0.3");
    QTest::newRow("no group separator") << -1.0e6 << 3 << true << QStringLiteral("-1000000.000");
    QTest::newRow("a tiny negative shows as zero") << -0.0001 << 3 << true << QStringLiteral("0.000");
    QTest::newRow("tiny negative, not exact") << -0.0001 << 3 << false << QStringLiteral("0");
    QTest::newRow("zero decimals") << 6503.7 << 0 << true << QStringLiteral("6504");
    QTest::newRow("zero decimals keeps integer zeros") << 100.0 << 0 << false << QStringLiteral("100");
}

void tst_QZEDoubleSpiner::textShowsTheDisplayDecimals()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(bool, exact);
    QFETCH(QString, text);
    QZEDoubleSpiner spiner;
    spiner.setLocale(QLocale::c());
    spiner.setRange(-1.0e6, 1.0e6);
    spiner.setDisplayDecimals(decimals);
    spiner.setExactDisplayDecimals(exact);
    QCOMPARE(spiner.getDisplayDecimals(), decimals);
    QCOMPARE(spiner.getExactDisplayDecimals(), exact);
    spiner.setValue(value);
    QCOMPARE(spiner.text(), text);
}

void tst_QZEDoubleSpiner::valueKeepsMoreDecimalsThanTheText()
{
    QZEDoubleSpiner spiner;
    spiner.setLocale(QLocale::c());
    spiner.setDisplayDecimals(3);
    spiner.setExactDisplayDecimals(true);
    spiner.setValue(0.123456789);
    QCOMPARE(spiner.text(), QStringLiteral("0.123"));
    QCOMPARE(spiner.value(), 0.123456789);
}

void tst_QZEDoubleSpiner::switchingTheDisplayRewritesTheTextSilently()
{
    QZEDoubleSpiner spiner;
    spiner.setLocale(QLocale::c());
    spiner.setValue(0.25);
    QSignalSpy spy(&spiner, qOverload<double>(&QDoubleSpinBox::valueChanged));
    spiner.setDisplayDecimals(3);
    QCOMPARE(spiner.text(), QStringLiteral("0.25"));
    spiner.setExactDisplayDecimals(true);
    QCOMPARE(spiner.text(), QStringLiteral("0.250"));
    spiner.setDisplayDecimals(1);
    QCOMPARE(spiner.text(), QStringLiteral("0.3"));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(spiner.value(), 0.25);
}

void tst_QZEDoubleSpiner::sizeHintFollowsTheDisplayedText()
{
    QZEDoubleSpiner spiner;
    spiner.setRange(-1.0e6, 1.0e6);
    spiner.setExactDisplayDecimals(true);
    spiner.setDisplayDecimals(0);
    const int narrow = spiner.sizeHint().width();
    spiner.setDisplayDecimals(6);
    QVERIFY(spiner.sizeHint().width() > narrow);
}

void tst_QZEDoubleSpiner::typedTextBecomesTheValue()
{
    QZEDoubleSpiner spiner;
    spiner.setLocale(QLocale::c());
    spiner.setRange(-10.0, 10.0);
    spiner.setDisplayDecimals(3);
    spiner.setExactDisplayDecimals(true);
    QSignalSpy spy(&spiner, qOverload<double>(&QDoubleSpinBox::valueChanged));
    QTest::keyClick(&spiner, Qt::Key_A, Qt::ControlModifier); // select all
    QTest::keyClicks(&spiner, QStringLiteral("-2.5"));
    QTest::keyClick(&spiner, Qt::Key_Return);
    QCOMPARE(spiner.value(), -2.5);
    QVERIFY(spy.count() >= 1);
    QCOMPARE(spy.last().at(0).toDouble(), -2.5);
    QCOMPARE(spiner.text(), QStringLiteral("-2.500"));
}

void tst_QZEDoubleSpiner::textFollowsTheWidgetsLocale()
{
    QZEDoubleSpiner spiner;
    spiner.setLocale(QLocale(QLocale::German, QLocale::Germany));
    spiner.setRange(0.0, 1.0e6);
    spiner.setDisplayDecimals(3);
    spiner.setValue(1234.5);
    QCOMPARE(spiner.text(), QStringLiteral("1234,5"));
    spiner.setExactDisplayDecimals(true);
    QCOMPARE(spiner.text(), QStringLiteral("1234,500"));
}

QTEST_MAIN(tst_QZEDoubleSpiner)
#include "tst_QZEDoubleSpiner.moc"
