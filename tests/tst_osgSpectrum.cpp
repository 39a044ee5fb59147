#include "ChildProcess.h"
#include "QZEAnalyticSpectrum.h"
#include "QZESpectrum.h"
#include "TestHelpers.h"
#include "osgChangeList.h"
#include "osgPThreadBase.h"
#include "osgSpectrum.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <algorithm>
#include <bitset>
#include <cmath>
#include <functional>
#include <iostream>
#include <iterator>
#include <utility>
#include <vector>

namespace {

using SpectrumBase = osg::SpectrumBase;

// An osg::Spectrum and a QZESpectrum driven by the same calls.
struct Twin
{
    osg::SpectrumPtr container = osg::Spectrum::create();
    QZESpectrum model;

    template <class Call>
    void apply(Call call)
    {
        call(*container);
        call(model);
    }
};

// --- Building spectra on either side ---------------------------------------------

// The grid start, delta, num with the value f(i) at sample i, bands current.
template <class Spectrum, class Values>
void fill(Spectrum& s, int start, int delta, int num, Values f)
{
    s.set(0.0f, start, delta, num);
    std::vector<float>& values = s.editSourceValues();
    for (int i = 0; i < num; ++i)
        values[size_t(i)] = f(i);
    s.resample();
}

// A rising ramp 0.1 + step i: no two samples alike, so every misplaced value shows.
template <class Spectrum>
void fillRamp(Spectrum& s, int start, int delta, int num, float step = 0.01f)
{
    fill(s, start, delta, num, [step](int i) { return 0.1f + step * float(i); });
}

// Eighths, which a spectrum file holds exactly.
template <class Spectrum>
void fillEighths(Spectrum& s, int start, int delta, int num)
{
    fill(s, start, delta, num, [](int i) { return float(i + 1) / 8.0f; });
}

void setName(osg::Spectrum& s, const char* name) { s.setFileName(name); }
void setName(QZESpectrum& s, const char* name) { s.setFilename(QString::fromUtf8(name)); }

// --- Comparing ---------------------------------------------------------------------

QString firstDifference(const std::vector<float>& actual, const std::vector<float>& expected)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 values, expected %2").arg(actual.size()).arg(expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        if (!(actual[i] == expected[i]))
            return QStringLiteral("[%1] is %2, expected %3")
                .arg(i).arg(double(actual[i]), 0, 'g', 9).arg(double(expected[i]), 0, 'g', 9);
    }
    return QString();
}

void compareValues(const std::vector<float>& actual, const std::vector<float>& expected,
                   const char* field)
{
    const QString difference = firstDifference(actual, expected);
    QVERIFY2(difference.isEmpty(), qPrintable(QString::fromLatin1(field) + ": " + difference));
}

// Every field, floats bit for bit.
void compareFields(const QZESpectrum& actual, const QZESpectrum& expected)
{
    const QZESpectrum::Options a = actual.getOptions();
    const QZESpectrum::Options e = expected.getOptions();
    QCOMPARE(std::get<0>(a), std::get<0>(e));
    QCOMPARE(QByteArray::fromStdString(std::get<1>(a)), QByteArray::fromStdString(std::get<1>(e)));
    QCOMPARE(std::get<2>(a), std::get<2>(e));
    QCOMPARE(std::get<3>(a), std::get<3>(e));
    QCOMPARE(std::get<4>(a), std::get<4>(e));
    QCOMPARE(std::get<5>(a), std::get<5>(e));
    QZE_CHECK(compareValues(std::get<6>(a), std::get<6>(e), "wavelengths"));
    QZE_CHECK(compareValues(std::get<7>(a), std::get<7>(e), "source values"));
    QZE_CHECK(compareValues(std::get<8>(a), std::get<8>(e), "samples"));
}

void compareTwin(const Twin& twin)
{
    compareFields(twin.container->getModel(), twin.model);
}

void compareExactly(float actual, float expected, const char* what)
{
    QVERIFY2(actual == expected, qPrintable(QStringLiteral("%1: %2, expected %3")
                                                .arg(QString::fromLatin1(what))
                                                .arg(double(actual), 0, 'g', 9)
                                                .arg(double(expected), 0, 'g', 9)));
}

void compareRGB(const QZESpectrum::RGB& actual, const QZESpectrum::RGB& expected)
{
    QZE_CHECK(compareExactly(actual.r, expected.r, "red"));
    QZE_CHECK(compareExactly(actual.g, expected.g, "green"));
    QZE_CHECK(compareExactly(actual.b, expected.b, "blue"));
}

void compareTwinRGB(const Twin& twin)
{
    compareRGB(twin.container->getRGB(), twin.model.getRGB());
}

// The photometric value and the maximum.
void compareTwinValues(const Twin& twin)
{
    QZE_CHECK(compareExactly(twin.container->getPhotometricValue(),
                             twin.model.getPhotometricValue(), "photometric value"));
    QZE_CHECK(compareExactly(twin.container->getMaxValue(), twin.model.getMaxValue(), "maximum"));
}

// --- Independent expectations ---------------------------------------------------------

// The source read as a piecewise linear curve, its end values continuing
// beyond both ends.
double linearAt(const std::vector<float>& w, const std::vector<float>& v, double x)
{
    if (x <= w.front())
        return v.front();
    if (x >= w.back())
        return v.back();
    const size_t j = size_t(std::upper_bound(w.begin(), w.end(), x) - w.begin());
    const double t = (x - w[j - 1]) / (double(w[j]) - w[j - 1]);
    return v[j - 1] + t * (double(v[j]) - v[j - 1]);
}

// The 40 averages over [380 + 10k, 390 + 10k) nm, by the midpoint rule on
// 0.01 nm steps (exact on every linear piece).
std::vector<double> expectedBands(const std::vector<float>& w, const std::vector<float>& v)
{
    constexpr int Steps = 1000;
    std::vector<double> bands;
    for (int k = 0; k < 40; ++k) {
        double sum = 0.0;
        for (int i = 0; i < Steps; ++i)
            sum += linearAt(w, v, 380.0 + 10.0 * k + (i + 0.5) * 10.0 / Steps);
        bands.push_back(sum / Steps);
    }
    return bands;
}

void compareNear(const std::vector<float>& actual, const std::vector<double>& expected,
                 double tolerance, const char* field)
{
    QCOMPARE(int(actual.size()), int(expected.size()));
    for (size_t i = 0; i < actual.size(); ++i)
        QZE_COMPARE_NEAR_IN(actual[i], expected[i], tolerance,
                            QStringLiteral("%1 [%2]").arg(QString::fromLatin1(field)).arg(i));
}

// The bands are those of the current source.
void checkBandsCurrent(const osg::Spectrum& s)
{
    compareNear(s.getSamples(), expectedBands(s.getWavelengths(), s.getSourceValues()), 1e-5,
                "band");
}

// I exp(-4 ln 2 (lambda - p)^2 / F^2), the Gauss curve in terms of its FWHM F.
double gaussAt(double lambda, double peak, double intensity, double fwhm)
{
    return intensity * std::exp(-4.0 * std::log(2.0) * std::pow(lambda - peak, 2) / (fwhm * fwhm));
}

// Wien's displacement constant (CODATA 2018), in m K.
constexpr double WienConstant = 2.897771955e-3;

struct TableRow
{
    int lambda;
    double value;
};

// The D65 column of the library's illuminant table (5 nm steps), divided by
// 100, its value at 560 nm.
std::vector<TableRow> tabulatedD65()
{
    QFile file(QDir::cleanPath(
        QStringLiteral(QTCOLOR_TEST_DATA)
        + "/../../Common/Libs/QtColor/data/cie_illuminants_A_D65_E_5nm.csv"));
    std::vector<TableRow> rows;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
    const QList<QByteArray> header = file.readLine().trimmed().split(',');
    const int column = header.indexOf("D65");
    while (!file.atEnd()) {
        const QList<QByteArray> cells = file.readLine().trimmed().split(',');
        if (column > 0 && cells.size() > column)
            rows.push_back({cells.at(0).toInt(), cells.at(column).toDouble() / 100.0});
    }
    return rows;
}

// Where the source first falls below half of the sample at peak, walking from the
// peak in direction (+1 or -1), interpolated linearly between the two samples
// around the crossing.
double halfMaximumWavelength(const osg::Spectrum& s, int peak, int direction)
{
    const std::vector<float>& w = s.getWavelengths();
    const std::vector<float>& v = s.getSourceValues();
    const double half = v[size_t(peak)] / 2.0;
    for (int i = peak; i + direction >= 0 && i + direction < int(v.size()); i += direction) {
        const size_t at = size_t(i), next = size_t(i + direction);
        if (v[next] < half) {
            const double t = (v[at] - half) / (double(v[at]) - v[next]);
            return w[at] + t * (double(w[next]) - w[at]);
        }
    }
    return std::nan("");
}

// How an editor reports an edit of the source values: record it in the
// current change list when there is one, and tell the container unless
// changes are being ignored.
void notifySourceEdit(const osg::SpectrumPtr& spectrum)
{
    if (osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList())
        list->addChanged(spectrum, SpectrumBase::SourceValuesFieldMask);
    if (!osg::FieldContainerPtr::_ignore_change)
        spectrum->changed(SpectrumBase::SourceValuesFieldMask, 1);
}

// --- Shared operations -----------------------------------------------------------------

// Adds other into target on both sides; both others must still agree.
void addTwin(Twin& target, Twin& other)
{
    target.container->add(other.container);
    target.model.add(other.model);
    QZE_CHECK(compareTwin(other));
}

struct Scenario
{
    QString name;
    std::function<void(Twin&)> run;
};

constexpr float AnalyticPeak = 550.0f;
constexpr float AnalyticIntensity = 1.5f;
constexpr float AnalyticFwhm = 40.0f;
constexpr float AnalyticTemperature = 5500.0f;

void addAnalyticScenarios(std::vector<Scenario>& scenarios)
{
    const char* const names[] = {"black body", "daylight", "Gauss",   "cosine",
                                 "Bartlett",   "Blackman", "Connes",  "Hamming",
                                 "Hanning",    "Lorentzian", "Welch"};
    static_assert(std::size(names) == QZEAnalyticSpectrum::NumFunctions, "one name per function");
    for (int function = 0; function < QZEAnalyticSpectrum::NumFunctions; ++function) {
        const QString name = QString::fromLatin1(names[function]);
        const auto analytic = [function](bool replace) {
            return [function, replace](Twin& t) {
                bool results[2];
                int side = 0;
                t.apply([&](auto& s) {
                    results[side++] = s.addAnalyticFunction(
                        function, AnalyticPeak, AnalyticIntensity, AnalyticFwhm,
                        AnalyticTemperature, replace, 380, 5, 81);
                });
                QVERIFY(results[0]);
                QCOMPARE(results[0], results[1]);
            };
        };
        const auto replaceFunction = analytic(true);
        const auto addFunction = analytic(false);
        scenarios.push_back({name + " replacing", replaceFunction});
        scenarios.push_back({name + " added to a ramp",
                             [addFunction](Twin& t) {
                                 t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
                                 addFunction(t);
                             }});
        scenarios.push_back({name + " added to nothing", addFunction});
    }
}

void addRGBScenarios(std::vector<Scenario>& scenarios)
{
    struct Colour { float r, g, b; };
    const Colour colours[] = {{0.8f, 0.3f, 0.1f}, {0.8f, 0.1f, 0.3f}, {0.3f, 0.8f, 0.1f},
                              {0.1f, 0.8f, 0.3f}, {0.3f, 0.1f, 0.8f}, {0.1f, 0.3f, 0.8f},
                              {0.5f, 0.5f, 0.5f}, {1.0f, 1.0f, 1.0f}};
    for (const Colour& c : colours) {
        const QString name = QStringLiteral("setRGB %1 %2 %3")
                                 .arg(double(c.r)).arg(double(c.g)).arg(double(c.b));
        scenarios.push_back({name, [c](Twin& t) {
                                 t.apply([c](auto& s) { s.setRGB(c.r, c.g, c.b, 380, 5, 81); });
                                 QZE_CHECK(compareTwinRGB(t));
                             }});
    }
    scenarios.push_back({"setRGB on 400, 10, 31", [](Twin& t) {
                             t.apply([](auto& s) { s.setRGB(0.2f, 0.6f, 0.4f, 400, 10, 31); });
                             QZE_CHECK(compareTwinRGB(t));
                         }});
}

void addSpectrumScenarios(std::vector<Scenario>& scenarios)
{
    const std::vector<Scenario> fixed = {
        {"set", [](Twin& t) { t.apply([](auto& s) { s.set(0.25f, 400, 10, 31); }); }},
        {"set then resample", [](Twin& t) {
             t.apply([](auto& s) { s.set(0.25f, 400, 10, 31); s.resample(); });
         }},
        {"set after the count was cleared", [](Twin& t) {
             t.apply([](auto& s) {
                 fillRamp(s, 400, 10, 31);
                 s.setNumSamples(0);
                 s.set(0.5f, 300, 5, 90);
             });
         }},
        {"setUseSpectrum on bands without a source", [](Twin& t) {
             t.apply([](auto& s) {
                 s.editSamples().assign(40, 0.5f);
                 s.setUseSpectrum(true);
                 s.setUseSpectrum(true);
             });
         }},
        {"setOne", [](Twin& t) { t.apply([](auto& s) { s.setOne(); }); }},
        {"setOne then resample", [](Twin& t) {
             t.apply([](auto& s) { s.setOne(); s.resample(); });
         }},
        {"resample without a source", [](Twin& t) { t.apply([](auto& s) { s.resample(); }); }},
        {"resampleSource to a finer grid", [](Twin& t) {
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); s.resampleSource(380, 5, 81); });
         }},
        {"resampleSource beyond the source", [](Twin& t) {
             t.apply([](auto& s) { fillRamp(s, 450, 10, 11); s.resampleSource(300, 7, 80); });
         }},
        {"resampleSource without a source", [](Twin& t) {
             t.apply([](auto& s) { s.resampleSource(380, 5, 81); });
         }},
        {"add on the same grid", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             other.apply([](auto& s) { fillRamp(s, 400, 10, 31, 0.03f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add a spectrum covering this one", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 450, 10, 11); });
             other.apply([](auto& s) { fillRamp(s, 380, 5, 81, 0.02f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add a spectrum inside this one", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 380, 5, 81); });
             other.apply([](auto& s) { fillRamp(s, 450, 10, 11, 0.02f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add a partly overlapping spectrum", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 380, 10, 21); });
             other.apply([](auto& s) { fillRamp(s, 500, 20, 15, 0.02f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add a disjoint spectrum (merge)", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 380, 10, 11); });
             other.apply([](auto& s) { fillRamp(s, 520, 5, 30, 0.02f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add meeting at a seam", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 400, 10, 11); });
             other.apply([](auto& s) { fillRamp(s, 500, 10, 11, 0.05f); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add two text measurements at a seam", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 400, 10, 11); setName(s, "left.TXT"); });
             other.apply([](auto& s) { fillRamp(s, 500, 10, 11, 0.05f); setName(s, "right.txt"); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add to an empty spectrum", [](Twin& t) {
             Twin other;
             other.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add an empty spectrum", [](Twin& t) {
             Twin other;
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             QZE_CHECK(addTwin(t, other));
         }},
        {"add itself", [](Twin& t) {
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             t.container->add(t.container);
             t.model.add(t.model);
         }},
        {"copy", [](Twin& t) {
             Twin source;
             source.apply([](auto& s) { fillRamp(s, 400, 10, 31); setName(s, "source.spectral"); });
             QVERIFY(t.container->copy(source.container));
             QVERIFY(t.model.copy(source.model));
             QZE_CHECK(compareTwin(source));
         }},
        {"copy itself", [](Twin& t) {
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             QVERIFY(t.container->copy(t.container));
             QVERIFY(t.model.copy(t.model));
         }},
        {"getRGB of an inactive spectrum", [](Twin& t) { QZE_CHECK(compareTwinRGB(t)); }},
        {"setPhotometricValue of a ramp", [](Twin& t) {
             t.apply([](auto& s) {
                 fillRamp(s, 380, 5, 81);
                 s.setPhotometricValue(2.5f);
                 s.resample();
             });
             QZE_CHECK(compareTwinValues(t));
         }},
        {"setPhotometricValue of an empty spectrum", [](Twin& t) {
             t.apply([](auto& s) { s.setPhotometricValue(3.0f); });
             QZE_CHECK(compareTwinValues(t));
         }},
        {"getPhotometricValue and getMaxValue of a ramp", [](Twin& t) {
             t.apply([](auto& s) { fillRamp(s, 400, 10, 31); });
             QZE_CHECK(compareTwinValues(t));
         }},
        {"getPhotometricValue and getMaxValue of an empty spectrum", [](Twin& t) {
             QZE_CHECK(compareTwinValues(t));
         }},
    };
    scenarios.insert(scenarios.end(), fixed.begin(), fixed.end());
}

const std::vector<Scenario>& scenarios()
{
    static const std::vector<Scenario> all = [] {
        std::vector<Scenario> list;
        addSpectrumScenarios(list);
        addRGBScenarios(list);
        addAnalyticScenarios(list);
        return list;
    }();
    return all;
}

const std::vector<osg::BitVector>& allFieldMasks()
{
    static const std::vector<osg::BitVector> masks = {
        SpectrumBase::UseSpectrumFieldMask,      SpectrumBase::FileNameFieldMask,
        SpectrumBase::VersionIDFieldMask,        SpectrumBase::StartWavelengthFieldMask,
        SpectrumBase::DeltaWavelengthFieldMask,  SpectrumBase::NumSamplesFieldMask,
        SpectrumBase::WavelengthsFieldMask,      SpectrumBase::SourceValuesFieldMask,
        SpectrumBase::SamplesFieldMask};
    return masks;
}

} // namespace

class tst_osgSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void operationsMatchTheModel_data();
    void operationsMatchTheModel();
    void accessorsReachTheModelsFields();
    void savedFileIsTheModelsFile_data();
    void savedFileIsTheModelsFile();
    void loadGivesTheModelsFields_data();
    void loadGivesTheModelsFields();
    void nullArgumentsChangeNothing();
    void saveOnFullDiskKeepsTheOldFileAndFails_data();
    void saveOnFullDiskKeepsTheOldFileAndFails();
    void loadLeavesTheBandsStaleUntilResample();

    void fieldMasksAreDistinctSingleBits();
    void changedRecomputesBandsForSourceAndWavelengths_data();
    void changedRecomputesBandsForSourceAndWavelengths();
    void sourceEditNotificationRecordsAndRecomputesUnlessIgnored_data();
    void sourceEditNotificationRecordsAndRecomputesUnlessIgnored();

    void analyticReplaceIsTheFunctionAloneOnTheGrid();
    void analyticAddKeepsTheGrid_data();
    void analyticAddKeepsTheGrid();
    void analyticAddOnAnEmptySpectrumReplaces();
    void blackbodyAt5000KPeaksAtWiensWavelength();
    void daylightAt6504KMatchesTabulatedD65();
    void gaussHasItsPeakAndHalfMaximumPoints();
    void unusableAnalyticFunctionChangesNothing_data();
    void unusableAnalyticFunctionChangesNothing();

private:
    QTemporaryDir _dir;
};

void tst_osgSpectrum::cleanup()
{
    osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
    osg::PThreadBase::getThreadChangeList()->clear();
}

void tst_osgSpectrum::operationsMatchTheModel_data()
{
    QTest::addColumn<int>("scenario");
    for (size_t i = 0; i < scenarios().size(); ++i)
        QTest::newRow(qPrintable(scenarios()[i].name)) << int(i);
}

void tst_osgSpectrum::operationsMatchTheModel()
{
    QFETCH(int, scenario);
    Twin twin;
    QZE_CHECK(scenarios()[size_t(scenario)].run(twin));
    compareTwin(twin);
}

void tst_osgSpectrum::accessorsReachTheModelsFields()
{
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 400, 10, 31);
    s->setFileName("measured.spectral");
    const QZESpectrum& model = s->getModel();
    QCOMPARE(model.getFilename(), QStringLiteral("measured.spectral"));
    QCOMPARE(s->getFileName(), std::string("measured.spectral"));
    QCOMPARE(s->getUseSpectrum(), true);
    QCOMPARE(s->isActive(), true);
    QCOMPARE(s->getVersionID(), 1);
    QCOMPARE(s->getStartWavelength(), 400);
    QCOMPARE(s->getDeltaWavelength(), 10);
    QCOMPARE(s->getNumSamples(), 31);
    QCOMPARE(&s->getWavelengths(), &model.getWavelengths());
    QCOMPARE(&s->getSourceValues(), &model.getSourceValues());
    QCOMPARE(&s->getSamples(), &model.getSamples());
    QZE_COMPARE_NEAR(s->getSourceValues(3), 0.13, 1e-6);

    s->setVersionID(2);
    s->setStartWavelength(123);
    s->setDeltaWavelength(7);
    s->setNumSamples(12);
    s->setUseSpectrum(false);
    QCOMPARE(model.getVersionID(), 2);
    QCOMPARE(model.getStartWavelength(), 123);
    QCOMPARE(model.getDeltaWavelength(), 7);
    QCOMPARE(model.getNumSamples(), 12);
    QCOMPARE(model.getUseSpectrum(), false);
    QCOMPARE(s->isActive(), false);
}

void tst_osgSpectrum::savedFileIsTheModelsFile_data()
{
    QTest::addColumn<bool>("uniform");
    QTest::addColumn<QString>("name");
    QTest::newRow("version 1") << true << QStringLiteral("uniform.spectral");
    QTest::newRow("version 2") << false << QStringLiteral("merged.spectral");
    QTest::newRow("non-ASCII name")
        << true << QStringLiteral("spektrum-\u00e4\u00f6\u00fc.spectral");
}

void tst_osgSpectrum::savedFileIsTheModelsFile()
{
    QFETCH(bool, uniform);
    QFETCH(QString, name);
    QVERIFY(_dir.isValid());
    Twin twin;
    Twin upper;
    twin.apply([](auto& s) { fillEighths(s, 400, 10, 11); });
    if (!uniform) {
        upper.apply([](auto& s) { fillEighths(s, 600, 5, 9); });
        QZE_CHECK(addTwin(twin, upper));
        QCOMPARE(twin.container->getVersionID(), 2);
    }
    const QString containerPath = _dir.filePath("container-" + name);
    const QString modelPath = _dir.filePath("model-" + name);
    QVERIFY(twin.container->save(containerPath.toUtf8().constData()));
    QVERIFY(twin.model.save(modelPath));
    QFile containerFile(containerPath);
    QFile modelFile(modelPath);
    QVERIFY(containerFile.open(QIODevice::ReadOnly));
    QVERIFY(modelFile.open(QIODevice::ReadOnly));
    const QByteArray written = containerFile.readAll();
    QVERIFY(!written.isEmpty());
    QCOMPARE(written, modelFile.readAll());

    // Eighths survive the text form exactly, so the file loads back as saved.
    const osg::SpectrumPtr loaded = osg::Spectrum::create();
    QVERIFY(loaded->load(containerPath.toUtf8().constData()));
    QCOMPARE(QString::fromStdString(loaded->getFileName()), containerPath);
    QCOMPARE(loaded->getVersionID(), twin.container->getVersionID());
    QCOMPARE(loaded->getNumSamples(), twin.container->getNumSamples());
    QZE_CHECK(compareValues(loaded->getWavelengths(), twin.container->getWavelengths(),
                            "wavelengths"));
    QZE_CHECK(compareValues(loaded->getSourceValues(), twin.container->getSourceValues(),
                            "source values"));
    QVERIFY(loaded->getUseSpectrum());
}

void tst_osgSpectrum::loadGivesTheModelsFields_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("loads");
    QTest::newRow("spectral1")
        << "one.spectral" << QByteArray("spectral1 400 10 4\n0.5 0.25 1 2\n") << true;
    QTest::newRow("spectral2")
        << "two.SPECTRAL" << QByteArray("spectral2 3\n410 455.5 700\n0.5 0.75 0.125\n") << true;
    QTest::newRow("two columns")
        << "columns.txt" << QByteArray("400 0.5\n420 0.75\n460 1.5\n") << true;
    QTest::newRow("non-ASCII name") << "farbe-\u00df.txt" << QByteArray("500 1\n510 2\n") << true;
    QTest::newRow("truncated") << "short.spectral" << QByteArray("spectral1 400 10 4\n0.5 0.25\n")
                               << false;
    QTest::newRow("unknown suffix") << "data.csv" << QByteArray("400 0.5\n420 0.75\n") << false;
    QTest::newRow("missing file") << "missing.spectral" << QByteArray() << false;
}

void tst_osgSpectrum::loadGivesTheModelsFields()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(bool, loads);
    QVERIFY(_dir.isValid());
    const QString path = _dir.filePath(name);
    if (!content.isEmpty()) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(content), qint64(content.size()));
    }
    Twin twin;
    twin.apply([](auto& s) { fillRamp(s, 380, 5, 81); });
    QCOMPARE(twin.container->load(path.toUtf8().constData()), loads);
    QCOMPARE(twin.model.load(path), loads);
    compareTwin(twin);
}

void tst_osgSpectrum::nullArgumentsChangeNothing()
{
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 400, 10, 31);
    const QZESpectrum before = s->getModel();
    s->add(osg::SpectrumPtr());
    s->add(nullptr);
    QVERIFY(!s->copy(osg::SpectrumPtr()));
    QVERIFY(!s->load(nullptr));
    QVERIFY(!s->save(nullptr));
    compareFields(s->getModel(), before);
}

void tst_osgSpectrum::saveOnFullDiskKeepsTheOldFileAndFails_data()
{
    QTest::addColumn<int>("num");
    QTest::addColumn<qint64>("limit");

    // The small file fits whole in a write buffer: only its flush can fail.
    QTest::newRow("small file") << 31 << qint64(64);
    QTest::newRow("large file") << 20000 << qint64(32 * 1024);
}

void tst_osgSpectrum::saveOnFullDiskKeepsTheOldFileAndFails()
{
    QFETCH(int, num);
    QFETCH(qint64, limit);
    QVERIFY(_dir.isValid());
    const QString path = _dir.filePath(QStringLiteral("full-disk.spectral"));
    const QByteArray old("spectral1 400 10 3 \n0.25 0.5 0.75 ");
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(old), qint64(old.size()));
    }
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 380, 1, num, 1e-5f);

    const ChildResult result = runWithFileSizeLimit(limit, [&] {
        std::cout.rdbuf(nullptr); // the progress lines
        return s->save(path.toUtf8().constData()) ? 0 : 1;
    });

    QVERIFY(result.exited);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(fileBytes(path), old);
}

// Like the library's spectrum, a load fills the source only.
void tst_osgSpectrum::loadLeavesTheBandsStaleUntilResample()
{
    QVERIFY(_dir.isValid());
    const QString path = _dir.filePath(QStringLiteral("stale.spectral"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("spectral1 380 400 2 \n0.25 0.25 ");
    }
    const osg::SpectrumPtr s = osg::Spectrum::create();
    s->setOne();
    s->resample();

    QVERIFY(s->load(path.toUtf8().constData()));
    QCOMPARE(s->getSamples(), std::vector<float>(40, 1.0f));

    s->resample();
    QCOMPARE(s->getSamples(), std::vector<float>(40, 0.25f));
}

void tst_osgSpectrum::fieldMasksAreDistinctSingleBits()
{
    osg::BitVector all = 0;
    for (const osg::BitVector mask : allFieldMasks()) {
        QCOMPARE(int(std::bitset<64>(mask).count()), 1);
        all |= mask;
    }
    QCOMPARE(int(std::bitset<64>(all).count()), int(allFieldMasks().size()));
    QCOMPARE(int(allFieldMasks().size()), 9);
}

void tst_osgSpectrum::changedRecomputesBandsForSourceAndWavelengths_data()
{
    QTest::addColumn<quint64>("mask");
    QTest::addColumn<bool>("recomputes");
    const char* const names[] = {"use spectrum", "file name",     "version id",
                                 "start",        "delta",         "number of samples",
                                 "wavelengths",  "source values", "samples"};
    osg::BitVector others = 0;
    for (size_t i = 0; i < allFieldMasks().size(); ++i) {
        const osg::BitVector mask = allFieldMasks()[i];
        const bool recomputes = mask == SpectrumBase::SourceValuesFieldMask
                                || mask == SpectrumBase::WavelengthsFieldMask;
        QTest::newRow(names[i]) << quint64(mask) << recomputes;
        if (!recomputes)
            others |= mask;
    }
    QTest::newRow("source values with others")
        << quint64(SpectrumBase::SourceValuesFieldMask | SpectrumBase::VersionIDFieldMask) << true;
    QTest::newRow("every other field") << quint64(others) << false;
}

void tst_osgSpectrum::changedRecomputesBandsForSourceAndWavelengths()
{
    QFETCH(quint64, mask);
    QFETCH(bool, recomputes);
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fill(*s, 380, 10, 41, [](int i) { return 0.5f + 0.01f * float(i); });
    QZE_CHECK(checkBandsCurrent(*s));
    const std::vector<float> staleBands = s->getSamples();

    std::vector<float>& values = s->editSourceValues();
    for (size_t i = 0; i < values.size(); ++i)
        values[i] = 2.0f - 0.02f * float(i);
    s->changed(mask, 1);

    if (recomputes)
        QZE_CHECK(checkBandsCurrent(*s));
    else
        QZE_CHECK(compareValues(s->getSamples(), staleBands, "samples"));
}

void tst_osgSpectrum::sourceEditNotificationRecordsAndRecomputesUnlessIgnored_data()
{
    QTest::addColumn<bool>("ignore");
    QTest::newRow("changes followed") << false;
    QTest::newRow("changes ignored") << true;
}

void tst_osgSpectrum::sourceEditNotificationRecordsAndRecomputesUnlessIgnored()
{
    QFETCH(bool, ignore);
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 380, 5, 81);
    const std::vector<float> staleBands = s->getSamples();
    for (float& value : s->editSourceValues())
        value *= 3.0f;

    const bool previous = osg::FieldContainerPtr::_ignore_change;
    osg::FieldContainerPtr::_ignore_change = ignore;
    notifySourceEdit(s);
    osg::FieldContainerPtr::_ignore_change = previous;

    const osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList();
    QCOMPARE(int(list->getChanged().size()), 1);
    QCOMPARE(list->getChangedMask(s), SpectrumBase::SourceValuesFieldMask);
    if (ignore)
        QZE_CHECK(compareValues(s->getSamples(), staleBands, "samples"));
    else
        QZE_CHECK(checkBandsCurrent(*s));
}

void tst_osgSpectrum::analyticReplaceIsTheFunctionAloneOnTheGrid()
{
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 300, 10, 50);
    s->setUseSpectrum(false);
    QVERIFY(s->addAnalyticFunction(QZEAnalyticSpectrum::Gauss, 550.0f, 2.0f, 40.0f, 0.0f, true,
                                   380, 5, 81));
    QCOMPARE(s->getVersionID(), 1);
    QCOMPARE(s->getStartWavelength(), 380);
    QCOMPARE(s->getDeltaWavelength(), 5);
    QCOMPARE(s->getNumSamples(), 81);
    QVERIFY(s->isActive());
    const std::vector<double> grid = gridOf(380.0, 5.0, 81);
    QZE_CHECK(compareNear(s->getWavelengths(), grid, 0.0, "wavelength"));
    std::vector<double> expected;
    for (const double lambda : grid)
        expected.push_back(gaussAt(lambda, 550.0, 2.0, 40.0));
    QZE_CHECK(compareNear(s->getSourceValues(), expected, 1e-6, "source value"));
    QZE_CHECK(checkBandsCurrent(*s));
}

void tst_osgSpectrum::analyticAddKeepsTheGrid_data()
{
    QTest::addColumn<bool>("uniform");
    QTest::newRow("uniform grid") << true;
    QTest::newRow("merged grid") << false;
}

void tst_osgSpectrum::analyticAddKeepsTheGrid()
{
    QFETCH(bool, uniform);
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 380, 5, 41);
    if (!uniform) {
        const osg::SpectrumPtr upper = osg::Spectrum::create();
        fillRamp(*upper, 603, 7, 20, 0.02f);
        s->add(upper);
        QCOMPARE(s->getVersionID(), 2);
    }
    s->setUseSpectrum(false);
    const QZESpectrum before = s->getModel();

    QVERIFY(s->addAnalyticFunction(QZEAnalyticSpectrum::Gauss, 560.0f, 0.75f, 30.0f, 0.0f, false,
                                   400, 10, 31));
    QCOMPARE(s->getVersionID(), before.getVersionID());
    QCOMPARE(s->getStartWavelength(), before.getStartWavelength());
    QCOMPARE(s->getDeltaWavelength(), before.getDeltaWavelength());
    QCOMPARE(s->getNumSamples(), before.getNumSamples());
    QZE_CHECK(compareValues(s->getWavelengths(), before.getWavelengths(), "wavelengths"));
    std::vector<double> expected;
    for (size_t i = 0; i < before.getWavelengths().size(); ++i)
        expected.push_back(before.getSourceValues()[i]
                           + gaussAt(before.getWavelengths()[i], 560.0, 0.75, 30.0));
    QZE_CHECK(compareNear(s->getSourceValues(), expected, 1e-6, "source value"));
    QVERIFY(s->isActive());
    QZE_CHECK(checkBandsCurrent(*s));
}

void tst_osgSpectrum::analyticAddOnAnEmptySpectrumReplaces()
{
    const osg::SpectrumPtr added = osg::Spectrum::create();
    const osg::SpectrumPtr replaced = osg::Spectrum::create();
    QVERIFY(added->addAnalyticFunction(QZEAnalyticSpectrum::Hanning, 500.0f, 1.0f, 25.0f, 0.0f,
                                       false, 390, 4, 90));
    QVERIFY(replaced->addAnalyticFunction(QZEAnalyticSpectrum::Hanning, 500.0f, 1.0f, 25.0f, 0.0f,
                                          true, 390, 4, 90));
    QCOMPARE(added->getNumSamples(), 90);
    QCOMPARE(added->getStartWavelength(), 390);
    QCOMPARE(added->getDeltaWavelength(), 4);
    QVERIFY(added->isActive());
    compareFields(added->getModel(), replaced->getModel());
}

void tst_osgSpectrum::blackbodyAt5000KPeaksAtWiensWavelength()
{
    const double wien = WienConstant / 5000.0 * 1e9;
    const osg::SpectrumPtr s = osg::Spectrum::create();
    QVERIFY(s->addAnalyticFunction(QZEAnalyticSpectrum::Blackbody, 0.0f, 0.0f, 0.0f, 5000.0f, true,
                                   380, 1, 401));
    const std::vector<float>& values = s->getSourceValues();
    const size_t peak = size_t(std::max_element(values.begin(), values.end()) - values.begin());
    QZE_COMPARE_NEAR(s->getWavelengths()[peak], wien, 1.0);
    QZE_COMPARE_NEAR(s->getSourceValues()[180], 1.0, 1e-6); // 560 nm
}

void tst_osgSpectrum::daylightAt6504KMatchesTabulatedD65()
{
    const std::vector<TableRow> d65 = tabulatedD65();
    QCOMPARE(int(d65.size()), 107);
    const osg::SpectrumPtr s = osg::Spectrum::create();
    QVERIFY(s->addAnalyticFunction(QZEAnalyticSpectrum::CIEDaylight, 0.0f, 0.0f, 0.0f, 6504.0f,
                                   true, 300, 5, 107));
    // The table was computed with the component weights rounded to three
    // decimals; the unrounded weights at 6504 K move the curve by up to
    // 2.5e-4 of its value at 560 nm.
    for (size_t i = 0; i < d65.size(); ++i) {
        QCOMPARE(s->getWavelengths()[i], float(d65[i].lambda));
        QZE_COMPARE_NEAR_IN(s->getSourceValues()[i], d65[i].value, 2.5e-4,
                            QStringLiteral("%1 nm").arg(d65[i].lambda));
    }
}

void tst_osgSpectrum::gaussHasItsPeakAndHalfMaximumPoints()
{
    const double peak = 550.0, intensity = 1.5, fwhm = 17.3;
    const osg::SpectrumPtr s = osg::Spectrum::create();
    QVERIFY(s->addAnalyticFunction(QZEAnalyticSpectrum::Gauss, float(peak), float(intensity),
                                   float(fwhm), 0.0f, true, 500, 1, 101));
    const std::vector<float>& values = s->getSourceValues();
    const int top = int(std::max_element(values.begin(), values.end()) - values.begin());
    QCOMPARE(s->getWavelengths()[size_t(top)], float(peak));
    QZE_COMPARE_NEAR(values[size_t(top)], intensity, 1e-6);
    QZE_COMPARE_NEAR(halfMaximumWavelength(*s, top, -1), peak - fwhm / 2.0, 0.05);
    QZE_COMPARE_NEAR(halfMaximumWavelength(*s, top, +1), peak + fwhm / 2.0, 0.05);
}

void tst_osgSpectrum::unusableAnalyticFunctionChangesNothing_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<float>("fwhm");
    QTest::addColumn<float>("temperature");
    QTest::addColumn<bool>("replace");
    QTest::addColumn<int>("num");
    for (const bool replace : {true, false}) {
        const char* mode = replace ? "replace" : "add";
        QTest::addRow("function 11, %s", mode) << 11 << 20.0f << 5000.0f << replace << 81;
        QTest::addRow("function -1, %s", mode) << -1 << 20.0f << 5000.0f << replace << 81;
        QTest::addRow("black body at 50 K, %s", mode) << 0 << 20.0f << 50.0f << replace << 81;
        QTest::addRow("Gauss with FWHM 0, %s", mode) << 2 << 0.0f << 5000.0f << replace << 81;
    }
    QTest::addRow("Gauss on an empty grid, replace") << 2 << 20.0f << 5000.0f << true << 0;
    QTest::addRow("Gauss on a negative count, replace") << 2 << 20.0f << 5000.0f << true << -3;
}

void tst_osgSpectrum::unusableAnalyticFunctionChangesNothing()
{
    QFETCH(int, function);
    QFETCH(float, fwhm);
    QFETCH(float, temperature);
    QFETCH(bool, replace);
    QFETCH(int, num);
    const osg::SpectrumPtr s = osg::Spectrum::create();
    fillRamp(*s, 380, 5, 81);
    s->setUseSpectrum(false);
    const QZESpectrum before = s->getModel();
    QVERIFY(!s->addAnalyticFunction(function, 550.0f, 1.0f, fwhm, temperature, replace,
                                    380, 5, num));
    compareFields(s->getModel(), before);
}

QTEST_APPLESS_MAIN(tst_osgSpectrum)
#include "tst_osgSpectrum.moc"
