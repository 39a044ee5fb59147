#include "QZEBandWeights.h"
#include "SpectrumReference.h"

#include <QtTest>

#include <random>
#include <vector>

class tst_QZEBandWeights : public QObject
{
    Q_OBJECT

private slots:
    void averageMatchesSegmentBySegmentIntegralOnRandomSources();
    void averageOfNewValuesOnTheSameWavelengthsMatchesFreshIntegral();
    void isForComparesWavelengthsBitForBit();
};

namespace {

std::vector<float> averaged(const QZEBandWeights& weights, const std::vector<float>& values)
{
    std::vector<float> bands(size_t(SpectrumReference::NumBands));
    weights.average(values.data(), bands.data());
    return bands;
}

QZEBandWeights weightsFor(const std::vector<float>& wavelengths)
{
    QZEBandWeights weights;
    weights.rebuild(wavelengths.data(), wavelengths.size(), 380.0f, 10.0f,
                    SpectrumReference::NumBands);
    return weights;
}

} // namespace

void tst_QZEBandWeights::averageMatchesSegmentBySegmentIntegralOnRandomSources()
{
    std::mt19937 generator(16);
    for (int trial = 0; trial < 5000; ++trial) {
        const SpectrumReference::Source source = SpectrumReference::randomSource(generator);
        const std::vector<float> bands = averaged(weightsFor(source.wavelengths), source.values);
        QVERIFY2(SpectrumReference::sameBits(
                     bands, SpectrumReference::bands(source.wavelengths, source.values)),
                 qPrintable(QStringLiteral("trial %1, %2 samples from %3 nm")
                                .arg(trial)
                                .arg(source.wavelengths.size())
                                .arg(double(source.wavelengths.front()))));
    }
}

void tst_QZEBandWeights::averageOfNewValuesOnTheSameWavelengthsMatchesFreshIntegral()
{
    std::mt19937 generator(1616);
    std::uniform_real_distribution<float> value(0.0f, 1.0f);
    std::vector<float> grid;
    for (int i = 0; i < 81; ++i)
        grid.push_back(float(380 + 5 * i));
    const QZEBandWeights weights = weightsFor(grid);
    for (int trial = 0; trial < 2000; ++trial) {
        std::vector<float> values(grid.size());
        for (float& v : values)
            v = value(generator);
        QVERIFY(SpectrumReference::sameBits(averaged(weights, values),
                                            SpectrumReference::bands(grid, values)));
    }
}

void tst_QZEBandWeights::isForComparesWavelengthsBitForBit()
{
    const std::vector<float> wavelengths{380.0f, 500.0f, 780.0f};
    const QZEBandWeights weights = weightsFor(wavelengths);
    QVERIFY(weights.isFor(wavelengths.data(), 3));
    QVERIFY(!weights.isFor(wavelengths.data(), 2));
    const std::vector<float> nudged{380.0f, std::nextafter(500.0f, 600.0f), 780.0f};
    QVERIFY(!weights.isFor(nudged.data(), 3));
    QVERIFY(!QZEBandWeights().isFor(wavelengths.data(), 3));
}

QTEST_GUILESS_MAIN(tst_QZEBandWeights)
#include "tst_QZEBandWeights.moc"
