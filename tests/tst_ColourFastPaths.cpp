#include "QZEColor.h"
#include "QZEEncodedBytes.h"

#include <QtTest>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

namespace {

// The straightforward path the table stands for.
int encodedByPower(float c)
{
    return QZEColor::toByte(QZEColor::encodeSRGB(c));
}

float floatOfBits(std::uint32_t bits)
{
    float f;
    std::memcpy(&f, &bits, sizeof f);
    return f;
}

std::uint32_t bitsOf(float f)
{
    std::uint32_t bits;
    std::memcpy(&bits, &f, sizeof bits);
    return bits;
}

// The first float in [from, to) (bit patterns of non-negative floats) whose
// table byte differs from the power path, with the bit pattern advancing by
// step; an empty string when there is none.
QString firstMismatch(std::uint32_t from, std::uint32_t to, std::uint32_t step)
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    for (std::uint64_t bits = from; bits < to; bits += step) {
        const float c = floatOfBits(std::uint32_t(bits));
        if (bytes.byteOf(c) != encodedByPower(c))
            return QStringLiteral("channel %1 (bits %2): table %3, power %4")
                .arg(double(c), 0, 'g', 9)
                .arg(bits, 8, 16)
                .arg(bytes.byteOf(c))
                .arg(encodedByPower(c));
    }
    return {};
}

} // namespace

class tst_ColourFastPaths : public QObject
{
    Q_OBJECT

private slots:
    void encodedBytesBucketsHoldAtMostOneThresholdEach();
    void encodedBytesThresholdsAreTheLeastChannelsReachingEachByte();
    void encodedBytesMatchPowerPathAroundEveryThreshold();
    void encodedBytesMatchPowerPathAcrossTheWholeRange();
    void encodedBytesMatchPowerPathForSpecialValues();
};

void tst_ColourFastPaths::encodedBytesBucketsHoldAtMostOneThresholdEach()
{
    QVERIFY(QZEEncodedBytes::table().isExact());
}

void tst_ColourFastPaths::encodedBytesThresholdsAreTheLeastChannelsReachingEachByte()
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    for (int k = 1; k < 256; ++k) {
        const float least = bytes.threshold(k);
        const float below = std::nextafter(least, -1.0f);
        QVERIFY2(encodedByPower(least) >= k, qPrintable(QString::number(k)));
        QVERIFY2(encodedByPower(below) < k, qPrintable(QString::number(k)));
    }
}

// Where the byte changes, every float within 4096 ulps on either side.
void tst_ColourFastPaths::encodedBytesMatchPowerPathAroundEveryThreshold()
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    for (int k = 1; k < 256; ++k) {
        const std::uint32_t centre = bitsOf(bytes.threshold(k));
        const QString mismatch = firstMismatch(centre - 4096, centre + 4096, 1);
        QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
    }
}

// Every 251st float from 0 to 4, which covers every bucket of the table many
// times over (a bucket spans 65,536 floats), denormals included.
void tst_ColourFastPaths::encodedBytesMatchPowerPathAcrossTheWholeRange()
{
    const QString mismatch = firstMismatch(0, bitsOf(4.0f), 251);
    QVERIFY2(mismatch.isEmpty(), qPrintable(mismatch));
}

void tst_ColourFastPaths::encodedBytesMatchPowerPathForSpecialValues()
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    const float inf = std::numeric_limits<float>::infinity();
    for (const float c : {0.0f, -0.0f, -1.0f, -inf, inf, std::numeric_limits<float>::quiet_NaN(),
                          std::numeric_limits<float>::denorm_min(), 1.0f, 2.0f, 1.0e30f,
                          -1.0e-30f, 0.0031308f, 0.04045f}) {
        QCOMPARE(bytes.byteOf(c), encodedByPower(c));
    }
    QCOMPARE(bytes.byteOf(1.0f), 254); // 1.055 - 0.055 in single precision falls short of 1
    QCOMPARE(bytes.byteOf(inf), 255);
    QCOMPARE(bytes.byteOf(std::numeric_limits<float>::quiet_NaN()), 0);
}

QTEST_GUILESS_MAIN(tst_ColourFastPaths)
#include "tst_ColourFastPaths.moc"
