#include "QZESpectralData.h"
#include "QZESpectrum.h"
#include "TestHelpers.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <vector>

// Every expected value below is computed here, in double precision, from the
// CSV files the library's tables are generated from, with the test's own
// interpolation, band integration and Smits combination.

Q_DECLARE_METATYPE(QZESpectrum)

namespace {

// A CSV file as columns of numbers, keyed by header name.
using Columns = std::map<QString, std::vector<double>>;

// A tabulated curve, linear between samples and constant beyond its ends.
struct Curve
{
    std::vector<double> lambda;
    std::vector<double> values;
};

constexpr int NumBands = 40;
constexpr double SmitsScale = 0.94;
constexpr int BasisStart = 380;
constexpr int BasisDelta = 5;
constexpr int BasisNum = 81;

const char* const ReflectanceColumns[QZESpectralData::NumBases] = {
    "refl_white", "refl_cyan", "refl_magenta", "refl_yellow",
    "refl_red",   "refl_green", "refl_blue"};
const char* const IlluminantColumns[QZESpectralData::NumBases] = {
    "illum_white", "illum_cyan", "illum_magenta", "illum_yellow",
    "illum_red",   "illum_green", "illum_blue"};

// XYZ to linear RGB for sRGB primaries with an equal-energy white.
constexpr double XyzToRgb[3][3] = {{3.1462510, -1.6661239, -0.4801272},
                                   {-0.9955351, 1.9557633, 0.0397715},
                                   {0.0635979, -0.2145965, 1.1509988}};

// Holds the shared instance that a test replaces, so it stays reachable for
// the rest of the process like every shared instance.
QZESpectralData* s_replacedInstance = nullptr;

QString dataDirectory()
{
    return QDir::cleanPath(QStringLiteral(QTCOLOR_TEST_DATA "/../../Common/Libs/QtColor/data"));
}

QStringList cellsOf(const QByteArray& line)
{
    return QString::fromLatin1(line).trimmed().split(QLatin1Char(','));
}

Columns readCsv(const QString& fileName)
{
    Columns columns;
    QFile file(dataDirectory() + QLatin1Char('/') + fileName);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return columns;
    const QStringList names = cellsOf(file.readLine());
    while (!file.atEnd()) {
        const QStringList cells = cellsOf(file.readLine());
        for (int c = 0; c < names.size() && c < cells.size(); ++c)
            columns[names[c]].push_back(cells[c].toDouble());
    }
    return columns;
}

Curve curveOf(const Columns& table, const QString& column)
{
    const auto lambda = table.find(QStringLiteral("lambda"));
    const auto values = table.find(column);
    if (lambda == table.end() || values == table.end())
        return {};
    return {lambda->second, values->second};
}

// The curve on segment [lambda[i], lambda[i + 1]] evaluated at x.
double onSegment(const Curve& c, size_t i, double x)
{
    const double t = (x - c.lambda[i]) / (c.lambda[i + 1] - c.lambda[i]);
    return c.values[i] + t * (c.values[i + 1] - c.values[i]);
}

double valueAt(const Curve& c, double x)
{
    if (x <= c.lambda.front())
        return c.values.front();
    if (x >= c.lambda.back())
        return c.values.back();
    size_t i = 0;
    while (c.lambda[i + 1] < x)
        ++i;
    return onSegment(c, i, x);
}

// Exact integral of the curve over [from, to], including the constant pieces
// before its first and after its last sample.
double integral(const Curve& c, double from, double to)
{
    double sum = std::max(0.0, std::min(to, c.lambda.front()) - from) * c.values.front()
                 + std::max(0.0, to - std::max(from, c.lambda.back())) * c.values.back();
    for (size_t i = 0; i + 1 < c.lambda.size(); ++i) {
        const double a = std::max(c.lambda[i], from);
        const double b = std::min(c.lambda[i + 1], to);
        if (a < b)
            sum += (b - a) * (onSegment(c, i, a) + onSegment(c, i, b)) / 2.0;
    }
    return sum;
}

// Averages over the 10 nm bands [380 + 10k, 390 + 10k), k = 0..39.
std::vector<double> bandAverages(const Curve& c)
{
    std::vector<double> bands;
    for (int k = 0; k < NumBands; ++k)
        bands.push_back(integral(c, 380.0 + 10 * k, 390.0 + 10 * k) / 10.0);
    return bands;
}

std::vector<double> resampled(const Curve& c, const std::vector<double>& wavelengths)
{
    std::vector<double> values;
    for (double x : wavelengths)
        values.push_back(valueAt(c, x));
    return values;
}

double sum(const std::vector<double>& values)
{
    double total = 0.0;
    for (double v : values)
        total += v;
    return total;
}

double sumOfSquares(const std::vector<double>& values)
{
    double total = 0.0;
    for (double v : values)
        total += v * v;
    return total;
}

std::vector<double> scaled(std::vector<double> values, double factor)
{
    for (double& v : values)
        v *= factor;
    return values;
}

// Smits' reflectance from the seven basis values at one wavelength (white,
// cyan, magenta, yellow, red, green, blue): the smallest channel weights
// white, the step up to the middle channel weights the secondary colour that
// lacks the smallest one, and the step up to the largest weights the primary
// of the largest. Ties between equal channels change no value.
double smitsReflectance(const std::array<double, QZESpectralData::NumBases>& basis,
                        const std::array<double, 3>& rgb)
{
    enum { WhiteAt = 0, SecondaryAt = 1, PrimaryAt = 4 };
    const int low = rgb[0] <= rgb[1] && rgb[0] <= rgb[2] ? 0 : (rgb[1] <= rgb[2] ? 1 : 2);
    const int first = low == 0 ? 1 : 0;
    const int second = low == 2 ? 1 : 2;
    const int high = rgb[size_t(second)] >= rgb[size_t(first)] ? second : first;
    const int middle = first + second - high;
    const double lowest = rgb[size_t(low)];
    const double middling = rgb[size_t(middle)];
    const double highest = rgb[size_t(high)];
    const double value = lowest * basis[WhiteAt]
                         + (middling - lowest) * basis[size_t(SecondaryAt + low)]
                         + (highest - middling) * basis[size_t(PrimaryAt + high)];
    return std::clamp(SmitsScale * value, 0.0, 1.0);
}

std::array<double, 3> toRgb(double x, double y, double z)
{
    std::array<double, 3> rgb;
    for (size_t row = 0; row < 3; ++row)
        rgb[row] = XyzToRgb[row][0] * x + XyzToRgb[row][1] * y + XyzToRgb[row][2] * z;
    return rgb;
}

std::array<double, 3> toArray(const QZESpectrum::RGB& rgb)
{
    return {double(rgb.r), double(rgb.g), double(rgb.b)};
}

// The first entry that differs from its expected value by more than
// absolute + relative * |expected|, described; empty when all agree.
template <typename Actual>
QString firstMismatch(const std::vector<Actual>& actual, const std::vector<double>& expected,
                      double relative, double absolute)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 values, expected %2").arg(actual.size()).arg(expected.size());
    for (size_t i = 0; i < expected.size(); ++i) {
        if (std::abs(double(actual[i]) - expected[i]) > absolute + relative * std::abs(expected[i]))
            return QStringLiteral("[%1]: %2, expected %3")
                .arg(i)
                .arg(double(actual[i]), 0, 'g', 10)
                .arg(expected[i], 0, 'g', 10);
    }
    return {};
}

QString firstMismatch(const std::array<double, 3>& actual, const std::array<double, 3>& expected,
                      double relative, double absolute)
{
    return firstMismatch(std::vector<double>(actual.begin(), actual.end()),
                         std::vector<double>(expected.begin(), expected.end()), relative, absolute);
}

// Fails naming the first differing entry unless every value lies within
// absolute + relative * |expected| of its expected value.
#define QZE_VERIFY_VALUES(actual, expected, relative, absolute)                                \
    do {                                                                                       \
        const QString qzeMismatch = firstMismatch(actual, expected, relative, absolute);       \
        QVERIFY2(qzeMismatch.isEmpty(),                                                        \
                 qPrintable(QStringLiteral(#actual " ") + qzeMismatch));                      \
    } while (false)

QZESpectralData* shared()
{
    return QZESpectralData::getInstance();
}

const QZESpectrum& observerMember(const QZESpectralData* data, const QString& column)
{
    if (column == QLatin1String("x"))
        return data->getXBar();
    return column == QLatin1String("y") ? data->getYBar() : data->getZBar();
}

const QZESpectrum& illuminantMember(const QZESpectralData* data, const QString& column)
{
    if (column == QLatin1String("A"))
        return data->getIlluminantA();
    return column == QLatin1String("D65") ? data->getIlluminantD65() : data->getIlluminantE();
}

// A member loaded from its CSV file: active version 2 with a source value at
// each of the file's wavelengths.
void verifyLoadedAtCsvWavelengths(const QZESpectrum& member, int count,
                                  const std::vector<double>& lambda)
{
    QVERIFY(member.isActive());
    QCOMPARE(member.getVersionID(), 2);
    QCOMPARE(member.getNumSamples(), count);
    QCOMPARE(member.getSourceValues().size(), size_t(count));
    QZE_VERIFY_VALUES(member.getWavelengths(), lambda, 0.0, 0.0);
}

QZESpectrum spectrumOfUnitBands()
{
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();
    return spectrum;
}

QZESpectrum fromRgb(const std::array<float, 3>& rgb, int start, int delta, int num)
{
    QZESpectrum spectrum;
    spectrum.setRGB(rgb[0], rgb[1], rgb[2], start, delta, num);
    return spectrum;
}

} // namespace

class tst_QZESpectralData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanup();

    void getInstanceReturnsTheSameObjectEveryTime();
    void observerIsLoadedAt471ArbitraryWavelengths_data();
    void observerIsLoadedAt471ArbitraryWavelengths();
    void illuminantsAreLoadedAt107Wavelengths_data();
    void illuminantsAreLoadedAt107Wavelengths();
    void basesAreTheCsvTablesResampledOnto380To780Step5_data();
    void basesAreTheCsvTablesResampledOnto380To780Step5();

    void observerBandsAreTheUnscaledBandAveragesOfTheCsv_data();
    void observerBandsAreTheUnscaledBandAveragesOfTheCsv();
    void yBarBandsSumTo10_6856399();
    void observerSourceIsScaledByOneOverTheYBarBandSum_data();
    void observerSourceIsScaledByOneOverTheYBarBandSum();
    void illuminantSourceIsWeightedByItsOwnPhotometricValue_data();
    void illuminantSourceIsWeightedByItsOwnPhotometricValue();
    void illuminantEIsNotWeighted();

    void resampleReflSpecStoresTheGridAndResamplesOnlyTheReflectanceBases();
    void setRGBOnANewGridUpdatesTheCacheKey();
    void reloadedBasesAreKeyedAtTheirOwnGrid();
    void setRGBOnAnEmptyGridKeepsTheBases();

    void setRGBOfWhiteIs0_94TimesTheWhiteBasis();
    void setRGBOfBlackOrNegativeColoursGivesZeros_data();
    void setRGBOfBlackOrNegativeColoursGivesZeros();
    void equalChannelsGiveTheScaledWhiteBasis_data();
    void equalChannelsGiveTheScaledWhiteBasis();
    void setRGBCombinesTheReflectanceBasesBySmitsMethod_data();
    void setRGBCombinesTheReflectanceBasesBySmitsMethod();
    void setRGBLeavesAnActiveUniformSpectrumWithFreshBands();

    void getRGBOfAnInactiveSpectrumIsBlack_data();
    void getRGBOfAnInactiveSpectrumIsBlack();
    void getRGBOfUnitBandsIsTheMatrixTimesTheObserverBandSums();
    void getRGBOfASetColourRoughlyReproducesIt_data();
    void getRGBOfASetColourRoughlyReproducesIt();

    // Replaces the shared instance, so it runs last.
    void aNewDataObjectBecomesTheSharedInstance();

private:
    std::vector<double> smitsSpectrum(const std::array<float, 3>& rgb,
                                      const std::vector<double>& wavelengths) const;
    std::array<double, 3> rgbOfBands(const std::vector<double>& bands) const;

    Columns m_cie1931;
    Columns m_cie2006;
    Columns m_illuminants;
    Columns m_smits;
};

void tst_QZESpectralData::initTestCase()
{
    m_cie1931 = readCsv(QStringLiteral("cie1931_cmf_1nm.csv"));
    m_cie2006 = readCsv(QStringLiteral("cie2006_2deg_xyz_cmf_1nm.csv"));
    m_illuminants = readCsv(QStringLiteral("cie_illuminants_A_D65_E_5nm.csv"));
    m_smits = readCsv(QStringLiteral("smits_rgb_to_spectrum_32.csv"));
    QCOMPARE(m_cie1931[QStringLiteral("y")].size(), size_t(471));
    QCOMPARE(m_cie2006[QStringLiteral("y")].size(), size_t(441));
    QCOMPARE(m_illuminants[QStringLiteral("D65")].size(), size_t(107));
    QCOMPARE(m_smits[QStringLiteral("refl_blue")].size(), size_t(32));
}

// Changing the reflectance grid resamples the already resampled bases, so
// every test starts again from the tables on 380..780 step 5.
void tst_QZESpectralData::cleanup()
{
    shared()->initSpectralData();
    shared()->resampleReflSpec(BasisStart, BasisDelta, BasisNum);
}

std::vector<double> tst_QZESpectralData::smitsSpectrum(const std::array<float, 3>& rgb,
                                                       const std::vector<double>& wavelengths) const
{
    std::array<std::vector<double>, QZESpectralData::NumBases> bases;
    for (size_t b = 0; b < bases.size(); ++b)
        bases[b] = resampled(curveOf(m_smits, QLatin1String(ReflectanceColumns[b])), wavelengths);
    const std::array<double, 3> channels = {double(rgb[0]), double(rgb[1]), double(rgb[2])};
    std::vector<double> values;
    for (size_t i = 0; i < wavelengths.size(); ++i) {
        std::array<double, QZESpectralData::NumBases> basisAtI;
        for (size_t b = 0; b < bases.size(); ++b)
            basisAtI[b] = bases[b][i];
        values.push_back(smitsReflectance(basisAtI, channels));
    }
    return values;
}

// The RGB of a spectrum with the given bands, weighted by the unscaled
// observer band averages.
std::array<double, 3> tst_QZESpectralData::rgbOfBands(const std::vector<double>& bands) const
{
    std::array<double, 3> xyz = {};
    const char* const axes[3] = {"x", "y", "z"};
    for (size_t a = 0; a < 3; ++a) {
        const std::vector<double> observer =
            bandAverages(curveOf(m_cie1931, QLatin1String(axes[a])));
        for (size_t k = 0; k < observer.size(); ++k)
            xyz[a] += bands[k] * observer[k];
    }
    return toRgb(xyz[0], xyz[1], xyz[2]);
}

// --- Structure -----------------------------------------------------------------

void tst_QZESpectralData::getInstanceReturnsTheSameObjectEveryTime()
{
    QZESpectralData* first = QZESpectralData::getInstance();
    QVERIFY(first != nullptr);
    QCOMPARE(QZESpectralData::getInstance(), first);
    QCOMPARE(QZESpectralData::getInstance(), first);
}

void tst_QZESpectralData::observerIsLoadedAt471ArbitraryWavelengths_data()
{
    QTest::addColumn<QString>("column");
    QTest::newRow("x-bar") << "x";
    QTest::newRow("y-bar") << "y";
    QTest::newRow("z-bar") << "z";
}

void tst_QZESpectralData::observerIsLoadedAt471ArbitraryWavelengths()
{
    QFETCH(QString, column);
    const QZESpectrum& member = observerMember(shared(), column);
    QZE_CHECK(verifyLoadedAtCsvWavelengths(member, 471, m_cie1931[QStringLiteral("lambda")]));
    QCOMPARE(member.getSamples().size(), size_t(NumBands));
}

void tst_QZESpectralData::illuminantsAreLoadedAt107Wavelengths_data()
{
    QTest::addColumn<QString>("column");
    QTest::newRow("A") << "A";
    QTest::newRow("D65") << "D65";
    QTest::newRow("E") << "E";
}

void tst_QZESpectralData::illuminantsAreLoadedAt107Wavelengths()
{
    QFETCH(QString, column);
    verifyLoadedAtCsvWavelengths(illuminantMember(shared(), column), 107,
                                 m_illuminants[QStringLiteral("lambda")]);
}

void tst_QZESpectralData::basesAreTheCsvTablesResampledOnto380To780Step5_data()
{
    QTest::addColumn<bool>("reflectance");
    QTest::addColumn<int>("basis");
    for (int b = 0; b < QZESpectralData::NumBases; ++b) {
        QTest::newRow(ReflectanceColumns[b]) << true << b;
        QTest::newRow(IlluminantColumns[b]) << false << b;
    }
}

void tst_QZESpectralData::basesAreTheCsvTablesResampledOnto380To780Step5()
{
    QFETCH(bool, reflectance);
    QFETCH(int, basis);
    const auto which = QZESpectralData::Basis(basis);
    const QZESpectrum& member = reflectance ? shared()->getReflectanceBasis(which)
                                            : shared()->getIlluminantBasis(which);
    const char* column = reflectance ? ReflectanceColumns[basis] : IlluminantColumns[basis];
    QCOMPARE(member.getVersionID(), 1);
    QCOMPARE(member.getStartWavelength(), BasisStart);
    QCOMPARE(member.getDeltaWavelength(), BasisDelta);
    QCOMPARE(member.getNumSamples(), BasisNum);
    const std::vector<double> wavelengths = gridOf(BasisStart, BasisDelta, BasisNum);
    QZE_VERIFY_VALUES(member.getWavelengths(), wavelengths, 0.0, 0.0);
    // Beyond 720 nm the last tabulated value continues.
    const std::vector<double> expected =
        resampled(curveOf(m_smits, QLatin1String(column)), wavelengths);
    QZE_VERIFY_VALUES(member.getSourceValues(), expected, 0.0, 1e-6);
}

// --- Observer and illuminants ------------------------------------------------

void tst_QZESpectralData::observerBandsAreTheUnscaledBandAveragesOfTheCsv_data()
{
    observerIsLoadedAt471ArbitraryWavelengths_data();
}

void tst_QZESpectralData::observerBandsAreTheUnscaledBandAveragesOfTheCsv()
{
    QFETCH(QString, column);
    const std::vector<double> expected = bandAverages(curveOf(m_cie1931, column));
    QZE_VERIFY_VALUES(observerMember(shared(), column).getSamples(), expected, 1e-6, 0.0);
}

void tst_QZESpectralData::yBarBandsSumTo10_6856399()
{
    const std::vector<double> expected = bandAverages(curveOf(m_cie1931, QStringLiteral("y")));
    // The published band figures, reproduced by the test's own integration.
    QVERIFY(std::abs(sum(expected) - 10.6856399) < 1e-7);
    QVERIFY(std::abs(expected[0] - 6.96e-05) < 1e-7);
    QVERIFY(std::abs(expected[16] - 0.9782957) < 1e-7);

    const std::vector<float>& bands = shared()->getYBar().getSamples();
    double actual = 0.0;
    for (float band : bands)
        actual += band;
    QVERIFY2(std::abs(actual - sum(expected)) < 1e-6 * sum(expected),
             qPrintable(QString::number(actual, 'g', 10)));
}

void tst_QZESpectralData::observerSourceIsScaledByOneOverTheYBarBandSum_data()
{
    observerIsLoadedAt471ArbitraryWavelengths_data();
}

void tst_QZESpectralData::observerSourceIsScaledByOneOverTheYBarBandSum()
{
    QFETCH(QString, column);
    const double k = 1.0 / sum(bandAverages(curveOf(m_cie1931, QStringLiteral("y"))));
    QVERIFY(std::abs(k - 0.0935835) < 1e-7);
    const std::vector<double> expected = scaled(m_cie1931[column], k);
    QZE_VERIFY_VALUES(observerMember(shared(), column).getSourceValues(), expected, 1e-5, 1e-12);
}

void tst_QZESpectralData::illuminantSourceIsWeightedByItsOwnPhotometricValue_data()
{
    QTest::addColumn<QString>("column");
    QTest::newRow("A") << "A";
    QTest::newRow("D65") << "D65";
}

void tst_QZESpectralData::illuminantSourceIsWeightedByItsOwnPhotometricValue()
{
    QFETCH(QString, column);
    const std::vector<double> bands = bandAverages(curveOf(m_illuminants, column));
    const double photometricValue = sumOfSquares(bands);
    const QZESpectrum& member = illuminantMember(shared(), column);

    // 560 nm is where both illuminants are 100.
    const int at560 = (560 - 300) / 5;
    QCOMPARE(m_illuminants[column][at560], 100.0);
    const std::vector<float> valueAt560(1, member.getSourceValues(at560));
    const std::vector<double> weightedAt560(1, 100.0 * photometricValue);
    QZE_VERIFY_VALUES(valueAt560, weightedAt560, 1e-5, 0.0);

    const std::vector<double> weighted = scaled(m_illuminants[column], photometricValue);
    QZE_VERIFY_VALUES(member.getSourceValues(), weighted, 1e-5, 0.0);
    // The bands were averaged before the weighting and are not recomputed.
    QZE_VERIFY_VALUES(member.getSamples(), bands, 1e-6, 0.0);
}

void tst_QZESpectralData::illuminantEIsNotWeighted()
{
    const QZESpectrum& e = shared()->getIlluminantE();
    QZE_VERIFY_VALUES(e.getSourceValues(), std::vector<double>(107, 1.0), 0.0, 0.0);
    QZE_VERIFY_VALUES(e.getSamples(), std::vector<double>(NumBands, 1.0), 0.0, 0.0);
}

// --- Reflectance grid cache --------------------------------------------------

void tst_QZESpectralData::resampleReflSpecStoresTheGridAndResamplesOnlyTheReflectanceBases()
{
    QZESpectralData* data = shared();
    data->resampleReflSpec(400, 10, 31);
    QCOMPARE(data->getReflStartWavelength(), 400);
    QCOMPARE(data->getReflDeltaWavelength(), 10);
    QCOMPARE(data->getReflNumSamples(), 31);
    QVERIFY(data->hasReflSampling(400, 10, 31));
    QVERIFY(!data->hasReflSampling(BasisStart, BasisDelta, BasisNum));

    const std::vector<double> wavelengths = gridOf(400, 10, 31);
    for (int b = 0; b < QZESpectralData::NumBases; ++b) {
        const auto which = QZESpectralData::Basis(b);
        const QZESpectrum& refl = data->getReflectanceBasis(which);
        QCOMPARE(refl.getNumSamples(), 31);
        QCOMPARE(refl.getStartWavelength(), 400);
        QCOMPARE(refl.getDeltaWavelength(), 10);
        const std::vector<double> expected =
            resampled(curveOf(m_smits, QLatin1String(ReflectanceColumns[b])), wavelengths);
        QZE_VERIFY_VALUES(refl.getSourceValues(), expected, 0.0, 1e-6);

        const QZESpectrum& illu = data->getIlluminantBasis(which);
        QCOMPARE(illu.getNumSamples(), BasisNum);
        QCOMPARE(illu.getStartWavelength(), BasisStart);
        QCOMPARE(illu.getSourceValues().size(), size_t(BasisNum));
    }
}

void tst_QZESpectralData::setRGBOnANewGridUpdatesTheCacheKey()
{
    const std::array<float, 3> rgb = {0.2f, 0.5f, 0.9f};
    const QZESpectrum spectrum = fromRgb(rgb, 400, 10, 31);

    QZESpectralData* data = shared();
    QCOMPARE(data->getReflStartWavelength(), 400);
    QCOMPARE(data->getReflDeltaWavelength(), 10);
    QCOMPARE(data->getReflNumSamples(), 31);
    QCOMPARE(spectrum.getNumSamples(), 31);
    const std::vector<double> wavelengths = gridOf(400, 10, 31);
    QZE_VERIFY_VALUES(spectrum.getWavelengths(), wavelengths, 0.0, 0.0);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), smitsSpectrum(rgb, wavelengths), 0.0, 2e-6);
}

// Reloading the tables puts the bases back on 380..780 step 5 but keeps the
// stored key; a setRGB on the keyed grid then reads the bases unchanged,
// which shows it did not resample them.
void tst_QZESpectralData::reloadedBasesAreKeyedAtTheirOwnGrid()
{
    const std::array<float, 3> rgb = {0.7f, 0.7f, 0.1f};
    QZESpectralData* data = shared();
    fromRgb(rgb, 400, 10, 31);
    data->initSpectralData();
    QCOMPARE(data->getReflStartWavelength(), BasisStart);
    QCOMPARE(data->getReflDeltaWavelength(), BasisDelta);
    QCOMPARE(data->getReflNumSamples(), BasisNum);

    // The coarse grid is asked for again: the reloaded bases are resampled to it.
    const QZESpectrum spectrum = fromRgb(rgb, 400, 10, 31);
    QCOMPARE(data->getReflNumSamples(), 31);
    QCOMPARE(data->getReflectanceBasis(QZESpectralData::White).getNumSamples(), 31);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), smitsSpectrum(rgb, gridOf(400, 10, 31)), 0.0,
                      2e-6);
}

void tst_QZESpectralData::setRGBOnAnEmptyGridKeepsTheBases()
{
    const std::array<float, 3> rgb = {0.2f, 0.5f, 0.9f};
    QZESpectralData* data = shared();
    QZESpectrum empty;
    empty.setRGB(rgb[0], rgb[1], rgb[2], 380, 5, 0);
    QCOMPARE(empty.getNumSamples(), 0);
    QVERIFY(empty.getSourceValues().empty());
    QCOMPARE(data->getReflNumSamples(), BasisNum);
    QCOMPARE(data->getReflectanceBasis(QZESpectralData::White).getNumSamples(), BasisNum);

    const QZESpectrum spectrum = fromRgb(rgb, BasisStart, BasisDelta, BasisNum);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(),
                      smitsSpectrum(rgb, gridOf(BasisStart, BasisDelta, BasisNum)), 0.0, 2e-6);
}

// --- setRGB ------------------------------------------------------------------

void tst_QZESpectralData::setRGBOfWhiteIs0_94TimesTheWhiteBasis()
{
    const std::vector<double> white = resampled(curveOf(m_smits, QStringLiteral("refl_white")),
                                                gridOf(BasisStart, BasisDelta, BasisNum));
    std::vector<double> expected;
    for (double w : white)
        expected.push_back(std::min(SmitsScale * w, 1.0));
    const QZESpectrum spectrum = fromRgb({1.0f, 1.0f, 1.0f}, BasisStart, BasisDelta, BasisNum);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), expected, 0.0, 2e-6);
}

void tst_QZESpectralData::setRGBOfBlackOrNegativeColoursGivesZeros_data()
{
    QTest::addColumn<float>("r");
    QTest::addColumn<float>("g");
    QTest::addColumn<float>("b");
    QTest::newRow("black") << 0.0f << 0.0f << 0.0f;
    QTest::newRow("minus one grey") << -1.0f << -1.0f << -1.0f;
    QTest::newRow("all negative") << -0.5f << -0.2f << -0.9f;
    QTest::newRow("negative and zero") << -0.2f << 0.0f << -0.1f;
}

void tst_QZESpectralData::setRGBOfBlackOrNegativeColoursGivesZeros()
{
    QFETCH(float, r);
    QFETCH(float, g);
    QFETCH(float, b);
    const std::vector<double> zeros(BasisNum, 0.0);
    QCOMPARE(smitsSpectrum({r, g, b}, gridOf(BasisStart, BasisDelta, BasisNum)), zeros);
    const QZESpectrum spectrum = fromRgb({r, g, b}, BasisStart, BasisDelta, BasisNum);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), zeros, 0.0, 0.0);
}

void tst_QZESpectralData::equalChannelsGiveTheScaledWhiteBasis_data()
{
    QTest::addColumn<float>("level");
    QTest::newRow("half") << 0.5f;
    QTest::newRow("quarter") << 0.25f;
    QTest::newRow("near one") << 0.9f;
}

// With r == g == b the first branch applies: white plus zero cyan and zero
// blue, i.e. the scaled white basis alone.
void tst_QZESpectralData::equalChannelsGiveTheScaledWhiteBasis()
{
    QFETCH(float, level);
    const std::vector<double> white = resampled(curveOf(m_smits, QStringLiteral("refl_white")),
                                                gridOf(BasisStart, BasisDelta, BasisNum));
    const QZESpectrum spectrum = fromRgb({level, level, level}, BasisStart, BasisDelta, BasisNum);
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), scaled(white, SmitsScale * level), 0.0, 2e-6);
}

void tst_QZESpectralData::setRGBCombinesTheReflectanceBasesBySmitsMethod_data()
{
    QTest::addColumn<float>("r");
    QTest::addColumn<float>("g");
    QTest::addColumn<float>("b");
    // One row per branch: the smallest channel, then which of the other two is larger.
    QTest::newRow("red smallest, blue largest") << 0.2f << 0.5f << 0.9f;
    QTest::newRow("red smallest, green largest") << 0.1f << 0.8f << 0.4f;
    QTest::newRow("green smallest, blue not below red") << 0.3f << 0.1f << 0.3f;
    QTest::newRow("green smallest, red largest (pure red)") << 1.0f << 0.0f << 0.0f;
    QTest::newRow("blue smallest, green not below red") << 0.7f << 0.7f << 0.1f;
    QTest::newRow("blue smallest, red largest") << 0.9f << 0.6f << 0.2f;
    QTest::newRow("pure green") << 0.0f << 1.0f << 0.0f;
    QTest::newRow("pure blue") << 0.0f << 0.0f << 1.0f;
    // Overbright: from 595 nm on the value exceeds 1 and is clamped.
    QTest::newRow("overbright red clamps") << 1.2f << 0.3f << 0.1f;
}

void tst_QZESpectralData::setRGBCombinesTheReflectanceBasesBySmitsMethod()
{
    QFETCH(float, r);
    QFETCH(float, g);
    QFETCH(float, b);
    const QZESpectrum spectrum = fromRgb({r, g, b}, BasisStart, BasisDelta, BasisNum);
    const std::vector<double> expected =
        smitsSpectrum({r, g, b}, gridOf(BasisStart, BasisDelta, BasisNum));
    QZE_VERIFY_VALUES(spectrum.getSourceValues(), expected, 0.0, 2e-6);
}

void tst_QZESpectralData::setRGBLeavesAnActiveUniformSpectrumWithFreshBands()
{
    const std::array<float, 3> rgb = {0.2f, 0.5f, 0.9f};
    QZESpectrum spectrum;
    spectrum.setFilename(QStringLiteral("previous.spectral"));
    spectrum.setRGB(rgb[0], rgb[1], rgb[2], BasisStart, BasisDelta, BasisNum);

    QVERIFY(spectrum.isActive());
    QVERIFY(spectrum.getFilename().isEmpty());
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getStartWavelength(), BasisStart);
    QCOMPARE(spectrum.getDeltaWavelength(), BasisDelta);
    QCOMPARE(spectrum.getNumSamples(), BasisNum);
    const std::vector<double> wavelengths = gridOf(BasisStart, BasisDelta, BasisNum);
    const std::vector<double> bands = bandAverages({wavelengths, smitsSpectrum(rgb, wavelengths)});
    QZE_VERIFY_VALUES(spectrum.getSamples(), bands, 1e-5, 1e-6);
}

// --- getRGB ------------------------------------------------------------------

void tst_QZESpectralData::getRGBOfAnInactiveSpectrumIsBlack_data()
{
    QTest::addColumn<QZESpectrum>("spectrum");
    QZESpectrum withoutBands;
    withoutBands.setOne();
    QZESpectrum switchedOff = spectrumOfUnitBands();
    switchedOff.setUseSpectrum(false);
    QTest::newRow("default") << QZESpectrum();
    QTest::newRow("flag set, no bands") << withoutBands;
    QTest::newRow("bands, flag clear") << switchedOff;
}

void tst_QZESpectralData::getRGBOfAnInactiveSpectrumIsBlack()
{
    QFETCH(QZESpectrum, spectrum);
    QVERIFY(!spectrum.isActive());
    const QZESpectrum::RGB rgb = spectrum.getRGB();
    QCOMPARE(rgb.r, 0.0f);
    QCOMPARE(rgb.g, 0.0f);
    QCOMPARE(rgb.b, 0.0f);
}

void tst_QZESpectralData::getRGBOfUnitBandsIsTheMatrixTimesTheObserverBandSums()
{
    const std::array<double, 3> expected = rgbOfBands(std::vector<double>(NumBands, 1.0));
    const std::array<double, 3> published = {10.6857, 10.6858, 10.6841};
    QZE_VERIFY_VALUES(expected, published, 0.0, 5e-5);
    QZE_VERIFY_VALUES(toArray(spectrumOfUnitBands().getRGB()), expected, 1e-5, 0.0);
}

void tst_QZESpectralData::getRGBOfASetColourRoughlyReproducesIt_data()
{
    QTest::addColumn<float>("r");
    QTest::addColumn<float>("g");
    QTest::addColumn<float>("b");
    QTest::newRow("red") << 1.0f << 0.0f << 0.0f;
    QTest::newRow("green") << 0.0f << 1.0f << 0.0f;
    QTest::newRow("blue") << 0.0f << 0.0f << 1.0f;
    QTest::newRow("sky") << 0.2f << 0.5f << 0.9f;
    QTest::newRow("olive") << 0.7f << 0.7f << 0.1f;
    QTest::newRow("plum") << 0.3f << 0.1f << 0.3f;
    QTest::newRow("grey") << 0.5f << 0.5f << 0.5f;
}

// The bands are not normalised, so a reflectance's RGB comes out in units of
// the RGB of unit bands; Smits' 0.94 and the white basis' level of about 1.06
// cancel. Smits' bases were not fitted to these primaries, hence the loose
// tolerance.
void tst_QZESpectralData::getRGBOfASetColourRoughlyReproducesIt()
{
    QFETCH(float, r);
    QFETCH(float, g);
    QFETCH(float, b);
    const std::array<double, 3> unit = toArray(spectrumOfUnitBands().getRGB());
    const QZESpectrum spectrum = fromRgb({r, g, b}, BasisStart, BasisDelta, BasisNum);
    const std::array<double, 3> rgb = toArray(spectrum.getRGB());
    const std::array<double, 3> normalised = {rgb[0] / unit[0], rgb[1] / unit[1], rgb[2] / unit[2]};
    const std::array<double, 3> input = {r, g, b};
    QZE_VERIFY_VALUES(normalised, input, 0.0, 0.1);
}

// --- Instances -----------------------------------------------------------------

// The constructor registers the new object as the shared instance. It starts
// with default spectra; initCIE2006 fills it with the 2006 observer, and
// initCIE1931 afterwards gives the rest of the process the usual data again.
void tst_QZESpectralData::aNewDataObjectBecomesTheSharedInstance()
{
    s_replacedInstance = QZESpectralData::getInstance();
    auto* fresh = new QZESpectralData; // shared from now on, never freed
    QCOMPARE(QZESpectralData::getInstance(), fresh);
    QVERIFY(fresh != s_replacedInstance);
    QVERIFY(!fresh->getYBar().isActive());
    QCOMPARE(fresh->getYBar().getNumSamples(), 0);

    fresh->initCIE2006();
    const QZESpectrum& yBar = fresh->getYBar();
    QCOMPARE(yBar.getNumSamples(), 441);
    QCOMPARE(yBar.getWavelengths().front(), 390.0f);
    // The band 380..390 lies before the 2006 table and takes its first value.
    const std::vector<double> bands = bandAverages(curveOf(m_cie2006, QStringLiteral("y")));
    QZE_VERIFY_VALUES(yBar.getSamples(), bands, 1e-6, 0.0);
    const std::vector<double> normalised = scaled(m_cie2006[QStringLiteral("y")], 1.0 / sum(bands));
    QZE_VERIFY_VALUES(yBar.getSourceValues(), normalised, 1e-5, 1e-12);
    QCOMPARE(fresh->getIlluminantD65().getNumSamples(), 107);
    QCOMPARE(fresh->getReflectanceBasis(QZESpectralData::Blue).getNumSamples(), BasisNum);

    fresh->initCIE1931();
    QCOMPARE(QZESpectralData::getInstance(), fresh);
    QCOMPARE(fresh->getYBar().getNumSamples(), 471);
    const std::vector<double> bands1931 = bandAverages(curveOf(m_cie1931, QStringLiteral("y")));
    QZE_VERIFY_VALUES(fresh->getYBar().getSamples(), bands1931, 1e-6, 0.0);
}

QTEST_APPLESS_MAIN(tst_QZESpectralData)
#include "tst_QZESpectralData.moc"
