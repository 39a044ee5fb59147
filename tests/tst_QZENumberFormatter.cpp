#include "QZENumberFormatter.h"

#include <QtTest>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <locale>
#include <random>
#include <sstream>
#include <string>

class tst_QZENumberFormatter : public QObject
{
    Q_OBJECT

private slots:
    void floatsMatchTheStreamOnAMillionRandomBitPatterns();
    void floatsMatchTheStreamOnUniformValuesAndIntegers();
    void floatsMatchTheStreamAtSpecialValues_data();
    void floatsMatchTheStreamAtSpecialValues();
    void floatsNearPowersOfTenMatchTheStream();
    void tiesRoundAsTheStreamDoes_data();
    void tiesRoundAsTheStreamDoes();
    void intsAreDecimal();
};

namespace {

// How a classic-locale stream with default settings writes value.
std::string streamed(float value)
{
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << value;
    return out.str();
}

std::string formatted(float value)
{
    char text[QZENumberFormatter::MaxLength];
    return std::string(text, QZENumberFormatter::writeFloat(text, value));
}

float fromBits(std::uint32_t bits)
{
    float value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

// Compares the formatter with the stream on count values drawn by next.
template <typename Next>
void compareWithStream(int count, Next next)
{
    std::ostringstream expected;
    expected.imbue(std::locale::classic());
    std::string actual;
    char text[QZENumberFormatter::MaxLength];
    for (int i = 0; i < count; ++i) {
        const float value = next();
        expected << value << ' ';
        actual.append(text, QZENumberFormatter::writeFloat(text, value));
        actual += ' ';
    }
    if (actual == expected.str())
        return;
    // Name the first value that differs.
    std::istringstream words(expected.str());
    std::istringstream ours(actual);
    std::string want;
    std::string got;
    while (words >> want && ours >> got && want == got) {
    }
    QFAIL(qPrintable(QStringLiteral("wrote %1, the stream writes %2")
                         .arg(QString::fromStdString(got), QString::fromStdString(want))));
}

} // namespace

void tst_QZENumberFormatter::floatsMatchTheStreamOnAMillionRandomBitPatterns()
{
    std::mt19937 generator(2026);
    compareWithStream(1000000, [&] { return fromBits(std::uint32_t(generator())); });
}

void tst_QZENumberFormatter::floatsMatchTheStreamOnUniformValuesAndIntegers()
{
    std::mt19937 generator(11);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    compareWithStream(1000000, [&] { return unit(generator); });
    std::uniform_real_distribution<float> wavelength(300.0f, 1000.0f);
    compareWithStream(200000, [&] { return -wavelength(generator); });
    int i = 0;
    compareWithStream(3000000, [&] { // integers, halves and millionths across 10^5..10^7
        const int k = i++;
        return k % 3 == 0 ? float(k) : k % 3 == 1 ? float(k) + 0.5f : float(k) * 1e-6f;
    });
}

void tst_QZENumberFormatter::floatsMatchTheStreamAtSpecialValues_data()
{
    QTest::addColumn<float>("value");
    using L = std::numeric_limits<float>;
    QTest::newRow("zero") << 0.0f;
    QTest::newRow("negative zero") << -0.0f;
    QTest::newRow("nan") << L::quiet_NaN();
    QTest::newRow("negative nan") << -L::quiet_NaN();
    QTest::newRow("inf") << L::infinity();
    QTest::newRow("negative inf") << -L::infinity();
    QTest::newRow("smallest denormal") << L::denorm_min();
    QTest::newRow("negative denormal") << -3.5e-42f;
    QTest::newRow("smallest normal") << L::min();
    QTest::newRow("largest") << L::max();
    QTest::newRow("lowest") << L::lowest();
    QTest::newRow("0.94") << 0.94f;
    QTest::newRow("1e-06") << 0.000001f;
    QTest::newRow("412.90323") << 412.90323f;
    QTest::newRow("999999.5") << 999999.5f;
    QTest::newRow("9.999995e-5") << 9.999995e-5f;
}

void tst_QZENumberFormatter::floatsMatchTheStreamAtSpecialValues()
{
    QFETCH(float, value);
    QCOMPARE(formatted(value), streamed(value));
}

void tst_QZENumberFormatter::floatsNearPowersOfTenMatchTheStream()
{
    for (int exponent = -45; exponent <= 38; ++exponent) {
        const float power = float(std::pow(10.0, exponent));
        float value = power;
        for (int step = 0; step < 50; ++step) // the power and the floats just above it
            value = std::nextafter(value, std::numeric_limits<float>::infinity());
        for (int step = 0; step < 100; ++step) { // ... and just below
            QCOMPARE(formatted(value), streamed(value));
            value = std::nextafter(value, 0.0f);
        }
    }
}

void tst_QZENumberFormatter::tiesRoundAsTheStreamDoes_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QString>("expected"); // printf rounds the exact binary value, ties to even
    QTest::newRow("1234565") << 1234565.0f << QStringLiteral("1.23456e+06");
    QTest::newRow("1234575") << 1234575.0f << QStringLiteral("1.23458e+06");
    QTest::newRow("123456.5") << 123456.5f << QStringLiteral("123456");
    QTest::newRow("123457.5") << 123457.5f << QStringLiteral("123458");
    QTest::newRow("0.5") << 0.5f << QStringLiteral("0.5");
}

void tst_QZENumberFormatter::tiesRoundAsTheStreamDoes()
{
    QFETCH(float, value);
    QFETCH(QString, expected);
    QCOMPARE(QString::fromStdString(formatted(value)), expected);
}

void tst_QZENumberFormatter::intsAreDecimal()
{
    char text[QZENumberFormatter::MaxLength];
    QCOMPARE(std::string(text, QZENumberFormatter::writeInt(text, 380)), std::string("380"));
    QCOMPARE(std::string(text, QZENumberFormatter::writeInt(text, -2147483647 - 1)),
             std::string("-2147483648"));
    QCOMPARE(std::string(text, QZENumberFormatter::writeInt(text, 0)), std::string("0"));
}

QTEST_GUILESS_MAIN(tst_QZENumberFormatter)
#include "tst_QZENumberFormatter.moc"
