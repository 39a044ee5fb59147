#include "QZENumberScanner.h"
#include "TestHelpers.h"

#include <QtTest>

#include <clocale>
#include <cmath>
#include <limits>
#include <string_view>

namespace {

QZENumberScanner scannerOf(const QByteArray& bytes)
{
    return QZENumberScanner(bytes.constData(), size_t(bytes.size()));
}

QByteArray bytesOf(std::string_view view)
{
    return QByteArray(view.data(), int(view.size()));
}

// NaN matches NaN; anything else must be the float nearest to expected.
bool isNearestFloat(float actual, double expected)
{
    if (std::isnan(expected))
        return std::isnan(actual);
    return actual == float(expected);
}

// A read that fails returns false and leaves 0 in its target.
void verifyNextFails(QZENumberScanner& scanner)
{
    float value = 99.0f;
    QVERIFY(!scanner.next(value));
    QCOMPARE(value, 0.0f);
}

void verifyNextIntFails(QZENumberScanner& scanner)
{
    int value = 99;
    QVERIFY(!scanner.nextInt(value));
    QCOMPARE(value, 0);
}

} // namespace

class tst_QZENumberScanner : public QObject
{
    Q_OBJECT

private slots:
    void firstLineStopsBeforeLineBreak_data();
    void firstLineStopsBeforeLineBreak();
    void firstLineOfNoDataIsEmpty();
    void nextWordSplitsAtAnyWhiteSpace();
    void nextWordKeepsNonSpaceBytes();
    void nextReadsCFloatLiterals_data();
    void nextReadsCFloatLiterals();
    void underflowReadsAsZeroAndGoesOn();
    void nextRejectsMalformedNumbers_data();
    void nextRejectsMalformedNumbers();
    void nextSkipsAnyWhiteSpace();
    void numberEndsWhereLiteralEnds();
    void failureIsSticky_data();
    void failureIsSticky();
    void nextIntReadsDecimalIntegers_data();
    void nextIntReadsDecimalIntegers();
    void nextIntRejectsOutOfRangeAndMalformed_data();
    void nextIntRejectsOutOfRangeAndMalformed();
    void integerEndsAtDecimalPoint();
    void canHoldNeedsOneCharacterPerNumberAndSeparators_data();
    void canHoldNeedsOneCharacterPerNumberAndSeparators();
    void parsingIgnoresCommaDecimalLocale();
    void nextWordOffsetPointsPastWhiteSpace_data();
    void nextWordOffsetPointsPastWhiteSpace();
    void nextWordOffsetStaysAtAFailedNumber();
};

void tst_QZENumberScanner::firstLineStopsBeforeLineBreak_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QByteArray>("line");

    QTest::newRow("two lines") << QByteArray("abc\ndef") << QByteArray("abc");
    QTest::newRow("no line break") << QByteArray("abc def") << QByteArray("abc def");
    QTest::newRow("empty") << QByteArray() << QByteArray();
    QTest::newRow("leading line break") << QByteArray("\nabc") << QByteArray();
    QTest::newRow("carriage return kept") << QByteArray("abc\r\ndef") << QByteArray("abc\r");
    QTest::newRow("blank lines after") << QByteArray("a b\n\n") << QByteArray("a b");
}

void tst_QZENumberScanner::firstLineStopsBeforeLineBreak()
{
    QFETCH(QByteArray, data);
    QFETCH(QByteArray, line);

    const std::string_view first =
        QZENumberScanner::firstLine(data.constData(), size_t(data.size()));

    QCOMPARE(bytesOf(first), line);
    if (!first.empty())
        QCOMPARE(static_cast<const void*>(first.data()),
                 static_cast<const void*>(data.constData()));
}

void tst_QZENumberScanner::firstLineOfNoDataIsEmpty()
{
    QVERIFY(QZENumberScanner::firstLine(nullptr, 0).empty());
}

void tst_QZENumberScanner::nextWordSplitsAtAnyWhiteSpace()
{
    const QByteArray data("  spectral1 380\t5\r\n81\v7\f9 ");
    QZENumberScanner scanner = scannerOf(data);

    for (const char* word : {"spectral1", "380", "5", "81", "7", "9"})
        QCOMPARE(bytesOf(scanner.nextWord()), QByteArray(word));
    QVERIFY(scanner.nextWord().empty());
    QVERIFY(scanner.nextWord().empty());
}

void tst_QZENumberScanner::nextWordKeepsNonSpaceBytes()
{
    const QByteArray data("\x01\xff\x7f ab");
    QZENumberScanner scanner = scannerOf(data);

    QCOMPARE(bytesOf(scanner.nextWord()), QByteArray("\x01\xff\x7f"));
    QCOMPARE(bytesOf(scanner.nextWord()), QByteArray("ab"));
}

void tst_QZENumberScanner::nextReadsCFloatLiterals_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<double>("expected");

    const double inf = std::numeric_limits<double>::infinity();
    const double nan = std::numeric_limits<double>::quiet_NaN();
    QTest::newRow("integer") << QByteArray("42") << 42.0;
    QTest::newRow("fraction") << QByteArray("1.5") << 1.5;
    QTest::newRow("plus sign") << QByteArray("+1.5") << 1.5;
    QTest::newRow("minus sign") << QByteArray("-1.5") << -1.5;
    QTest::newRow("exponent") << QByteArray("1e2") << 100.0;
    QTest::newRow("signed exponent") << QByteArray("1e+2") << 100.0;
    QTest::newRow("upper-case negative exponent") << QByteArray("2.5E-3") << 0.0025;
    QTest::newRow("leading point") << QByteArray(".5") << 0.5;
    QTest::newRow("trailing point") << QByteArray("5.") << 5.0;
    QTest::newRow("signed leading point with exponent") << QByteArray("-.25e+1") << -2.5;
    QTest::newRow("many digits") << QByteArray("412.90323") << 412.90323;
    QTest::newRow("longer than a double") << QByteArray("3.14159265358979323846264338327950288")
                                          << 3.14159265358979323846;
    // 1 + 2^-24 lies halfway between 1 and the next float, 1 + 2^-23.
    QTest::newRow("just above halfway rounds up")
        << QByteArray("1.00000005960464477539062500001") << 1.00000011920928955078125;
    QTest::newRow("exactly halfway rounds to even")
        << QByteArray("1.000000059604644775390625") << 1.0;
    QTest::newRow("inf") << QByteArray("inf") << inf;
    QTest::newRow("plus inf") << QByteArray("+inf") << inf;
    QTest::newRow("minus inf") << QByteArray("-inf") << -inf;
    QTest::newRow("infinity") << QByteArray("infinity") << inf;
    QTest::newRow("upper-case INF") << QByteArray("INF") << inf;
    QTest::newRow("nan") << QByteArray("nan") << nan;
    QTest::newRow("mixed-case NaN") << QByteArray("NaN") << nan;
    QTest::newRow("leading white space") << QByteArray(" \t\r\n 7") << 7.0;
    // Too small for a float: zero, or a denormal where one is near, as strtof gives.
    QTest::newRow("underflow to zero") << QByteArray("1e-50") << 0.0;
    QTest::newRow("negative underflow") << QByteArray("-1e-60") << 0.0;
    QTest::newRow("denormal") << QByteArray("1e-40") << 1e-40;
}

void tst_QZENumberScanner::nextReadsCFloatLiterals()
{
    QFETCH(QByteArray, data);
    QFETCH(double, expected);
    QZENumberScanner scanner = scannerOf(data);

    float value = 99.0f;
    QVERIFY(scanner.next(value));
    QVERIFY2(isNearestFloat(value, expected),
             qPrintable(QStringLiteral("read %1").arg(double(value), 0, 'g', 12)));
    QVERIFY(!scanner.next(value));
}

void tst_QZENumberScanner::underflowReadsAsZeroAndGoesOn()
{
    const QByteArray data("4 1e-50 6");
    QZENumberScanner scanner = scannerOf(data);
    float value = -1.0f;
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 4.0f);
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 0.0f);
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 6.0f);
    QVERIFY(!scanner.next(value));
}

void tst_QZENumberScanner::nextRejectsMalformedNumbers_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("white space only") << QByteArray("  \n\t\r");
    QTest::newRow("word") << QByteArray("abc");
    QTest::newRow("plus only") << QByteArray("+");
    QTest::newRow("minus only") << QByteArray("-");
    QTest::newRow("point only") << QByteArray(".");
    QTest::newRow("plus minus") << QByteArray("+-1");
    QTest::newRow("double plus") << QByteArray("++1");
    QTest::newRow("double minus") << QByteArray("--1");
    QTest::newRow("exponent without digits") << QByteArray("e5");
    QTest::newRow("beyond float range") << QByteArray("1e39");
}

void tst_QZENumberScanner::nextRejectsMalformedNumbers()
{
    QFETCH(QByteArray, data);
    QZENumberScanner scanner = scannerOf(data);

    verifyNextFails(scanner);
}

void tst_QZENumberScanner::nextSkipsAnyWhiteSpace()
{
    const QByteArray data(" 1\t2\n3\r\n4\v5\f6 ");
    QZENumberScanner scanner = scannerOf(data);

    for (float expected : {1.0f, 2.0f, 3.0f, 4.0f, 5.0f, 6.0f}) {
        float value = 0.0f;
        QVERIFY(scanner.next(value));
        QCOMPARE(value, expected);
    }
    verifyNextFails(scanner);
}

void tst_QZENumberScanner::numberEndsWhereLiteralEnds()
{
    const QByteArray data("1.5x 2");
    QZENumberScanner scanner = scannerOf(data);

    float value = 0.0f;
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 1.5f);
    QVERIFY(!scanner.next(value));
}

void tst_QZENumberScanner::failureIsSticky_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("goodReads");

    QTest::newRow("word between numbers") << QByteArray("1 x 2 3") << 1;
    QTest::newRow("malformed first") << QByteArray("+- 2 3") << 0;
    QTest::newRow("beyond range") << QByteArray("4 5 1e39 6 7") << 2;
}

void tst_QZENumberScanner::failureIsSticky()
{
    QFETCH(QByteArray, data);
    QFETCH(int, goodReads);
    QZENumberScanner scanner = scannerOf(data);

    float value = 0.0f;
    for (int i = 0; i < goodReads; ++i)
        QVERIFY(scanner.next(value));
    QVERIFY(!scanner.next(value));
    for (int i = 0; i < 3; ++i) {
        QZE_CHECK(verifyNextFails(scanner));
        QZE_CHECK(verifyNextIntFails(scanner));
    }
}

void tst_QZENumberScanner::nextIntReadsDecimalIntegers_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("expected");

    QTest::newRow("positive") << QByteArray("42") << 42;
    QTest::newRow("plus sign") << QByteArray("+7") << 7;
    QTest::newRow("minus sign") << QByteArray("-7") << -7;
    QTest::newRow("leading zeros") << QByteArray("007") << 7;
    QTest::newRow("largest") << QByteArray("2147483647") << 2147483647;
    QTest::newRow("smallest") << QByteArray("-2147483648") << std::numeric_limits<int>::min();
    QTest::newRow("followed by text") << QByteArray("12abc") << 12;
}

void tst_QZENumberScanner::nextIntReadsDecimalIntegers()
{
    QFETCH(QByteArray, data);
    QFETCH(int, expected);
    QZENumberScanner scanner = scannerOf(data);

    int value = 99;
    QVERIFY(scanner.nextInt(value));
    QCOMPARE(value, expected);
}

void tst_QZENumberScanner::nextIntRejectsOutOfRangeAndMalformed_data()
{
    QTest::addColumn<QByteArray>("data");

    QTest::newRow("one above largest") << QByteArray("2147483648");
    QTest::newRow("one below smallest") << QByteArray("-2147483649");
    QTest::newRow("twenty digits") << QByteArray("99999999999999999999");
    QTest::newRow("word") << QByteArray("abc");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("plus only") << QByteArray("+");
    QTest::newRow("plus minus") << QByteArray("+-3");
    QTest::newRow("leading point") << QByteArray(".5");
}

void tst_QZENumberScanner::nextIntRejectsOutOfRangeAndMalformed()
{
    QFETCH(QByteArray, data);
    QZENumberScanner scanner = scannerOf(data);

    QZE_CHECK(verifyNextIntFails(scanner));
    verifyNextFails(scanner);
}

void tst_QZENumberScanner::integerEndsAtDecimalPoint()
{
    const QByteArray data("3.5 81");
    QZENumberScanner scanner = scannerOf(data);

    int integer = 0;
    QVERIFY(scanner.nextInt(integer));
    QCOMPARE(integer, 3);
    float rest = 0.0f;
    QVERIFY(scanner.next(rest));
    QCOMPARE(rest, 0.5f);
    QVERIFY(scanner.nextInt(integer));
    QCOMPARE(integer, 81);
}

// n numbers need at least n digits and n - 1 separators, 2n - 1 bytes.
void tst_QZENumberScanner::canHoldNeedsOneCharacterPerNumberAndSeparators_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("readFirst");
    QTest::addColumn<qulonglong>("count");
    QTest::addColumn<bool>("expected");

    const qulonglong most = std::numeric_limits<size_t>::max();
    QTest::newRow("5 bytes hold 3") << QByteArray("1 2 3") << 0 << 3ull << true;
    QTest::newRow("5 bytes do not hold 4") << QByteArray("1 2 3") << 0 << 4ull << false;
    QTest::newRow("2 bytes hold 1") << QByteArray("12") << 0 << 1ull << true;
    QTest::newRow("2 bytes do not hold 2") << QByteArray("12") << 0 << 2ull << false;
    QTest::newRow("3 bytes hold 2") << QByteArray("123") << 0 << 2ull << true;
    QTest::newRow("nothing holds 0") << QByteArray() << 0 << 0ull << true;
    QTest::newRow("nothing does not hold 1") << QByteArray() << 0 << 1ull << false;
    QTest::newRow("4 unread bytes hold 2") << QByteArray("1 2 3") << 1 << 2ull << true;
    QTest::newRow("4 unread bytes do not hold 3") << QByteArray("1 2 3") << 1 << 3ull << false;
    QTest::newRow("largest count") << QByteArray("1 2 3") << 0 << most << false;
    QTest::newRow("just over half the largest")
        << QByteArray("1 2 3") << 0 << (most / 2 + 1) << false;
    QTest::newRow("two billion") << QByteArray("1 2 3") << 0 << 2000000000ull << false;
}

void tst_QZENumberScanner::canHoldNeedsOneCharacterPerNumberAndSeparators()
{
    QFETCH(QByteArray, data);
    QFETCH(int, readFirst);
    QFETCH(qulonglong, count);
    QFETCH(bool, expected);
    QZENumberScanner scanner = scannerOf(data);

    for (int i = 0; i < readFirst; ++i) {
        float value = 0.0f;
        QVERIFY(scanner.next(value));
    }
    QCOMPARE(scanner.canHold(size_t(count)), expected);
}

void tst_QZENumberScanner::parsingIgnoresCommaDecimalLocale()
{
    CommaLocale german;
    if (!german.isActive())
        QSKIP("The de_DE.UTF-8 locale is not installed");
    QCOMPARE(QByteArray(std::localeconv()->decimal_point), QByteArray(","));

    const QByteArray data("1.5 2,5");
    QZENumberScanner scanner = scannerOf(data);

    float value = 0.0f;
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 1.5f);
    QVERIFY(scanner.next(value));
    QCOMPARE(value, 2.0f);
    QVERIFY(!scanner.next(value));
}

void tst_QZENumberScanner::nextWordOffsetPointsPastWhiteSpace_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<int>("readFirst");
    QTest::addColumn<int>("offset");

    QTest::newRow("at the start") << QByteArray("1 2") << 0 << 0;
    QTest::newRow("leading blanks") << QByteArray(" \t\n7") << 0 << 3;
    QTest::newRow("after one number") << QByteArray("1  \n 2") << 1 << 5;
    QTest::newRow("only blanks left") << QByteArray("1 2 \r\n ") << 2 << 7;
    QTest::newRow("nothing left") << QByteArray("1 2") << 2 << 3;
    QTest::newRow("no data") << QByteArray() << 0 << 0;
}

void tst_QZENumberScanner::nextWordOffsetPointsPastWhiteSpace()
{
    QFETCH(QByteArray, data);
    QFETCH(int, readFirst);
    QFETCH(int, offset);
    QZENumberScanner scanner = scannerOf(data);

    for (int i = 0; i < readFirst; ++i) {
        float value = 0.0f;
        QVERIFY(scanner.next(value));
    }
    QCOMPARE(scanner.nextWordOffset(), size_t(offset));
}

void tst_QZENumberScanner::nextWordOffsetStaysAtAFailedNumber()
{
    const QByteArray data("1 abc 2");
    QZENumberScanner scanner = scannerOf(data);
    float value = 0.0f;

    QVERIFY(scanner.next(value));
    QVERIFY(!scanner.next(value));

    QCOMPARE(scanner.nextWordOffset(), size_t(2));
}

QTEST_APPLESS_MAIN(tst_QZENumberScanner)
#include "tst_QZENumberScanner.moc"
