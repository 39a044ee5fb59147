#include "ChildProcess.h"
#include "QZESpectralData.h"
#include "QZESpectrum.h"
#include "SpectrumReference.h"
#include "TestHelpers.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/stat.h>

#ifdef Q_OS_LINUX
#include <sys/resource.h>
#endif

Q_DECLARE_METATYPE(std::vector<double>)

namespace {

// --- Standard streams --------------------------------------------------------

// Sends std::cout and std::cerr into strings for one scope.
class StdStreamCapture
{
public:
    StdStreamCapture()
        : _savedOut(std::cout.rdbuf(_out.rdbuf())), _savedErr(std::cerr.rdbuf(_err.rdbuf()))
    {
    }
    ~StdStreamCapture()
    {
        std::cout.rdbuf(_savedOut);
        std::cerr.rdbuf(_savedErr);
    }
    StdStreamCapture(const StdStreamCapture&) = delete;
    StdStreamCapture& operator=(const StdStreamCapture&) = delete;

    QByteArray out() const { return QByteArray::fromStdString(_out.str()); }
    QByteArray err() const { return QByteArray::fromStdString(_err.str()); }

private:
    std::ostringstream _out;
    std::ostringstream _err;
    std::streambuf* _savedOut;
    std::streambuf* _savedErr;
};

struct Outcome
{
    bool result;
    QByteArray out;
    QByteArray err;
};

template <typename Call>
Outcome captured(Call&& call)
{
    StdStreamCapture capture;
    const bool result = call();
    return {result, capture.out(), capture.err()};
}

// --- Expected messages ---------------------------------------------------------

const QByteArray UnknownVersion("ERROR Spectrum: Unknown Spectrum File Version!\n");
const QByteArray NotIncreasing("ERROR Spectrum: Wavelengths not monotonically increasing.\n");
const QByteArray UnexpectedFormat("ERROR Spectrum: Unexpected file format.\n");
const QByteArray UnexpectedEnd("ERROR Spectrum: Unexpected end of Spectrum File.\n");
const QByteArray InvalidHeader("ERROR Spectrum: Invalid Spectrum File header.\n");
const QByteArray NonPositiveDelta("ERROR Spectrum: Delta wavelength is not positive.\n");
const QByteArray NonFiniteWavelength("ERROR Spectrum: Wavelength is not a finite number.\n");
const QByteArray NonFiniteValue("ERROR Spectrum: Value is not a finite number.\n");
const QByteArray TooLarge("ERROR Spectrum: Spectrum File larger than 64 MiB.\n");
const QByteArray NativeBanner("Spectrum::loadNative\n");
const QByteArray TxtBanner("Spectrum::loadTxt\n");
const QByteArray SaveBanner("Spectrum::save\n");

QByteArray versionLog(const QByteArray& word)
{
    return NativeBanner + "version: " + word + "\n";
}

QByteArray nativeHeaderLog(const QByteArray& version, int start, int delta, qint64 count)
{
    return versionLog(version) + "startWavelength: " + QByteArray::number(start)
           + "\ndeltaWavelength: " + QByteArray::number(delta)
           + "\nnumSamples: " + QByteArray::number(count) + "\n";
}

QByteArray readLine(const QString& name)
{
    return "Successfully read Spectrum File: " + name.toUtf8() + "\n";
}

QByteArray nativeLoadLog(const QByteArray& version, int start, int delta, int count,
                         const QString& name)
{
    return nativeHeaderLog(version, start, delta, count) + readLine(name);
}

QByteArray txtLoadLog(const QString& name)
{
    return TxtBanner + readLine(name);
}

QByteArray saveStartLog(const QString& name)
{
    return SaveBanner + "Spectrum File: " + name.toUtf8() + "\n";
}

QByteArray saveLog(const QString& name)
{
    return saveStartLog(name) + "Successfully wrote Spectrum File: " + name.toUtf8() + "\n";
}

// --- Expected values -------------------------------------------------------------

std::vector<double> repeated(double value, int num)
{
    return std::vector<double>(size_t(num), value);
}

std::vector<float> floatsOf(const std::vector<double>& values)
{
    return std::vector<float>(values.begin(), values.end());
}

// Describes the first difference between actual and expected (empty when they
// match). A tolerance of 0 asks for the float nearest to each expected value;
// otherwise |actual - expected| <= tolerance * max(1, |expected|).
QString mismatchOf(const std::vector<float>& actual, const std::vector<double>& expected,
                   double tolerance)
{
    if (actual.size() != expected.size())
        return QStringLiteral("%1 values, expected %2").arg(actual.size()).arg(expected.size());
    for (size_t i = 0; i < actual.size(); ++i) {
        const bool same = tolerance == 0.0
                              ? actual[i] == float(expected[i])
                              : std::abs(double(actual[i]) - expected[i])
                                    <= tolerance * std::max(1.0, std::abs(expected[i]));
        if (!same)
            return QStringLiteral("value %1 is %2, expected %3")
                .arg(i)
                .arg(double(actual[i]), 0, 'g', 10)
                .arg(expected[i], 0, 'g', 10);
    }
    return QString();
}

} // namespace

#define QZE_COMPARE_FLOATS(actual, tolerance, ...)                                             \
    do {                                                                                       \
        const QString qzeMismatch = mismatchOf((actual), {__VA_ARGS__}, (tolerance));           \
        QVERIFY2(qzeMismatch.isEmpty(), qPrintable(QStringLiteral(#actual ": ") + qzeMismatch)); \
    } while (false)

#define QZE_COMPARE_OUTCOME(outcome, expectedResult, expectedOut, expectedErr)                 \
    do {                                                                                       \
        QCOMPARE((outcome).out, QByteArray(expectedOut));                                      \
        QCOMPARE((outcome).err, QByteArray(expectedErr));                                      \
        QCOMPARE((outcome).result, (expectedResult));                                          \
    } while (false)

namespace {

// --- Expected states ----------------------------------------------------------------

// The constant 1.0 on 380, 5, 81 that the reset rule installs.
void verifyResetToOne(const QZESpectrum& spectrum)
{
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, gridOf(380, 5, 81));
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, repeated(1.0, 81));
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getFilename(), QString());
}

// Version 1 with the values on the grid start, delta.
void verifyUniformSource(const QZESpectrum& spectrum, int start, int delta,
                         const std::vector<double>& values, double tolerance = 0.0)
{
    const int count = int(values.size());
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, gridOf(start, delta, count));
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), tolerance, values);
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getStartWavelength(), start);
    QCOMPARE(spectrum.getDeltaWavelength(), delta);
    QCOMPARE(spectrum.getNumSamples(), count);
}

// The fields of keptOne() below that a failed load leaves as they were.
void verifyKeptFields(const QZESpectrum& spectrum)
{
    QCOMPARE(spectrum.getNumSamples(), 81);
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getStartWavelength(), 380);
    QCOMPARE(spectrum.getDeltaWavelength(), 5);
    QCOMPARE(spectrum.getFilename(), QStringLiteral("kept.spectral"));
}

// Source 1, 2, 3 at 400, 450, 500 nm: bands 1 below, 3 above, and the mean of
// the line 1 + (x - 400) / 50 over [400, 410) in between.
void verifyActiveRisingSource(const QZESpectrum& spectrum)
{
    QVERIFY(spectrum.isActive());
    QCOMPARE(spectrum.getNumSamples(), 3);
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 450, 500);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
    const std::vector<float>& bands = spectrum.getSamples();
    QCOMPARE(bands.size(), size_t(40));
    QCOMPARE(bands[0], 1.0f);
    QCOMPARE(bands[2], 1.1f);
    QCOMPARE(bands[12], 3.0f);
}

// --- Spectra -----------------------------------------------------------------------

QZESpectrum loaded(const std::vector<double>& wavelengths, const std::vector<double>& values)
{
    const std::vector<float> w = floatsOf(wavelengths);
    const std::vector<float> v = floatsOf(values);
    QZESpectrum spectrum;
    spectrum.load(int(w.size()), w.data(), v.data());
    return spectrum;
}

QZESpectrum onGrid(int start, int delta, const std::vector<double>& values)
{
    const std::vector<float> v = floatsOf(values);
    QZESpectrum spectrum;
    spectrum.load(start, delta, int(v.size()), v.data());
    return spectrum;
}

// A spectrum built member by member: source 0.2, 0.4, 0.6 at 400, 500, 600 nm,
// grid fields 400 and 100, filename "kept.spectral" and bandCount stale bands
// of 0.5.
QZESpectrum stateOf(bool useSpectrum, int versionID, int numSamples, int bandCount = 40)
{
    return QZESpectrum(useSpectrum, "kept.spectral", versionID, 400, 100, numSamples,
                       {400.0f, 500.0f, 600.0f}, {0.2f, 0.4f, 0.6f},
                       std::vector<float>(size_t(bandCount), 0.5f));
}

// A fresh spectrum; stale bands without a count; the flag raised on a
// version 0 spectrum without bands (the reset rule would meet the new bands).
std::vector<QZESpectrum> initialArrayLoadStates()
{
    return {QZESpectrum(), stateOf(false, 0, 0), stateOf(true, 0, 0, 0)};
}

// The constant 1.0 on 380, 5, 81 under the name "kept.spectral".
QZESpectrum keptOne()
{
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.setFilename(QStringLiteral("kept.spectral"));
    return spectrum;
}

// Version 1 with forty bands of the given value and values as its source.
QZESpectrum withFortyBands(bool useSpectrum, int numSamples, const std::vector<float>& values,
                          float band = 0.5f)
{
    return QZESpectrum(useSpectrum, std::string(), 1, 400, 10, numSamples,
                       std::vector<float>(values.size(), 500.0f), values,
                       std::vector<float>(40, band));
}

// --- Files -------------------------------------------------------------------------

QString writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        file.write(bytes);
    return path;
}

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("<unreadable>");
}

// The most memory the process has held so far, in KiB (0 where unknown).
long peakResidentKiB()
{
#ifdef Q_OS_LINUX
    rusage usage{};
    return getrusage(RUSAGE_SELF, &usage) == 0 ? usage.ru_maxrss : 0;
#else
    return 0;
#endif
}

enum FileOperation { LoadNative, LoadTxt, Load, Save };

bool runFileOperation(QZESpectrum& spectrum, int operation, const QString& name)
{
    switch (operation) {
    case LoadNative:
        return spectrum.loadNative(name);
    case LoadTxt:
        return spectrum.loadTxt(name);
    case Load:
        return spectrum.load(name);
    default:
        return spectrum.save(name);
    }
}

enum CountStep { SetStep, ResampleSourceStep, MergeStep };

} // namespace

class tst_QZESpectrum : public QObject
{
    Q_OBJECT

private slots:
    // Shortcuts held to the plain arithmetic, bit for bit.
    void resampleMatchesPlainBandAveragesOnRandomSources();
    void resampleSeesAnEditThroughAKeptReference();
    void resampleRestoresBandsEditedSinceTheLastResample();
    void resampleAfterMovedWavelengthsUsesTheNewOnes();
    void setRGBMatchesPlainSmitsMixOnRandomColours_data();
    void setRGBMatchesPlainSmitsMixOnRandomColours();
    void saveWritesTheStreamsBytesForRandomValues();
    void initTestCase();

    // Edge cases of the distribution
    void setOneResampledGivesFortyBandsOfOne();
    void singleSourceSampleFillsEveryBand_data();
    void singleSourceSampleFillsEveryBand();
    void bandsOutsideSourceTakeNearestEndValue();
    void partlyCoveredBandsMixEndValueWithIntegral();
    void decreasingWavelengthInArrayLoadPrintsBothAndKeepsPairs();
    void scaleOnClearedFlagChangesNothing();

    // Edge cases of the files
    void nameWithSpectralAnywhereIsReadAsNative();
    void version1ValuesOverSeveralLinesLoadLikeOneLine();
    void version2EqualNeighbouringWavelengthsLoad();
    void txtStartingWithHeaderWordLoadsNothing();
    void txtValueTooSmallForFloatReadsAsZero();
    void savedSetOneIsExactBytes();

    // Messages of the file operations
    void nativeLoadReportsEachHeaderField_data();
    void nativeLoadReportsEachHeaderField();
    void unknownVersionWordIsReported_data();
    void unknownVersionWordIsReported();
    void decreasingWavelengthInFileIsReported_data();
    void decreasingWavelengthInFileIsReported();
    void emptyNameFailsAfterBanner_data();
    void emptyNameFailsAfterBanner();
    void unopenableFileFailsAfterBanner_data();
    void unopenableFileFailsAfterBanner();
    void saveOfUnknownVersionIsReported_data();
    void saveOfUnknownVersionIsReported();
    void saveToUnwritablePathFailsAfterName_data();
    void saveToUnwritablePathFailsAfterName();
    void loadWithUnknownSuffixPrintsNothing_data();
    void loadWithUnknownSuffixPrintsNothing();
    void loadDispatchesBySuffix_data();
    void loadDispatchesBySuffix();

    // The reset rule
    void resetOnSetUseSpectrumFillsOneWithoutRecursing_data();
    void resetOnSetUseSpectrumFillsOneWithoutRecursing();
    void resetOnSetNumSamplesFillsOneAndClearsFlag();
    void setUseSpectrumOutsideResetStateOnlyStoresFlag_data();
    void setUseSpectrumOutsideResetStateOnlyStoresFlag();
    void setNumSamplesOutsideResetStateOnlyStoresCount_data();
    void setNumSamplesOutsideResetStateOnlyStoresCount();
    void setRaisesFlagByResetRule();
    void countStepsApplyResetRule_data();
    void countStepsApplyResetRule();
    void fileLoadSetsCountByResetRule();
    void failedLoadClearsFlagByResetRule();
    void arrayLoadLeavesSpectrumActiveWithCount_data();
    void arrayLoadLeavesSpectrumActiveWithCount();
    void uniformArrayLoadStoresCountDirectly_data();
    void uniformArrayLoadStoresCountDirectly();

    // Building and resampling
    void defaultSpectrumIsUninitialised();
    void setFillsGridWithoutBands();
    void resampleMatchesHandIntegralOfIrregularSpectrum();
    void resampleOfEmptySourceKeepsBands();
    void resampleSourceInterpolatesAndExtendsEnds();
    void resampleSourceTakesFirstSampleAtExactHit();
    void resampleSourceTakesFirstOfEqualLastWavelengths();
    void resampleSourceOfSingleSampleIsConstant();
    void resampleSourceOfEmptySourceChangesNothing();

    // Arithmetic
    void addOnSameGridSumsDirectly();
    void addResamplesThisOntoCoveringOther();
    void addResamplesOtherOntoCoveredGrid();
    void addResamplesBothWhenNeitherCovers();
    void addMergesDisjointRanges_data();
    void addMergesDisjointRanges();
    void addLowersBrighterSideOfTxtSeam_data();
    void addLowersBrighterSideOfTxtSeam();
    void addMatchesSeamOnlyWhenBothAreTxt();
    void scaleMultipliesFirstCountValues();
    void scaleNeedsBandsAndCount_data();
    void scaleNeedsBandsAndCount();
    void getSumAddsFortyBands();
    void getMaxValueLooksAtFirstCountValues_data();
    void getMaxValueLooksAtFirstCountValues();
    void getMaxValueOfInactiveSpectrumIsZero();
    void getPhotometricValueSumsSquaredBands();
    void setPhotometricValueScalesSourceByRatio();
    void setPhotometricValueOnFreshSpectrumSetsOne();
    void setPhotometricValueOnInactiveSpectrumSetsOneThenScales();
    void setPhotometricValueStopsWhenResetClearsFlag();

    // Value semantics
    void copyTakesAllMembers();
    void selfCopyKeepsEverything();
    void copyConstructorTakesAllMembers();
    void optionsRoundTripThroughTupleConstructor();
    void nineValueConstructorStoresInOrder();
    void isActiveNeedsFlagAndFortyBands_data();
    void isActiveNeedsFlagAndFortyBands();
    void isInitializedMeansNonZeroVersion_data();
    void isInitializedMeansNonZeroVersion();
    void filenameIsStoredAsUtf8();

    // Files
    void version1RoundTripKeepsSixDigitValues();
    void version2RoundTripKeepsWavelengthsAndValues();
    void valuesAreWrittenWithSixSignificantDigits_data();
    void valuesAreWrittenWithSixSignificantDigits();
    void txtValuesOverManyLinesLoad();
    void numberLiteralsInFilesFollowC_data();
    void numberLiteralsInFilesFollowC();
    void crlfLineEndsLoad_data();
    void crlfLineEndsLoad();
    void txtReadsPairsUntilZeroPair_data();
    void txtReadsPairsUntilZeroPair();
    void nativeValuesStartAfterTheFirstLine();
    void utf8FileNameRoundTrip();
    void saveUnderCommaLocaleWritesPoints();

    // Bad input
    void hugeAnnouncedCountFailsWithoutAllocating_data();
    void hugeAnnouncedCountFailsWithoutAllocating();
    void negativeCountIsInvalidHeader_data();
    void negativeCountIsInvalidHeader();
    void missingHeaderNumbersAreInvalidHeader_data();
    void missingHeaderNumbersAreInvalidHeader();
    void truncatedFileFailsAndClearsFlag_data();
    void truncatedFileFailsAndClearsFlag();
    void binaryGarbageNeverLoads();
    void hugeDigitRunFailsQuickly_data();
    void hugeDigitRunFailsQuickly();
    void nonFiniteNumbersAreMalformed_data();
    void nonFiniteNumbersAreMalformed();
    void nonPositiveDeltaIsMalformed_data();
    void nonPositiveDeltaIsMalformed();

    // Bounded reading
    void inputOfExactlyTheLimitLoads();
    void fileBeyondTheLimitIsRefusedWhole();
    void dataBeyondTheLimitIsRefusedWhole();
    void endlessDeviceIsRefusedAsTooLarge();
    void pipeIsReadToItsEnd();
    void pipeBeyondTheLimitIsRefused();
    void fileTruncatedWhileReadGivesAnOrdinaryResult();
    void loadDataTellsWhereReadingStopped_data();
    void loadDataTellsWhereReadingStopped();
    void loadDataWithUnknownSuffixFailsSilently();

    // Atomic saving
    void saveOnFullDiskKeepsTheOldFileAndFails_data();
    void saveOnFullDiskKeepsTheOldFileAndFails();
    void saveKilledMidwayLeavesOldOrWholeNewFile();
    void saveKeepsTheFilesPermissions();
    void saveReportsWhyTheFileSystemRefused();
    void saveOverTheFileJustLoadedKeepsItsContent();

private:
    // Loads the row's contents as a native file over the constant 1.0 with
    // its bands and expects the row's log, the error, no allocation for an
    // announced count, and the flag cleared with the rest kept.
    void verifyNativeLoadFails(const QByteArray& error);
    QString path(const QString& name) const { return _dir.filePath(name); }
    QString write(const QString& name, const QByteArray& bytes) const
    {
        return writeFile(path(name), bytes);
    }

    QTemporaryDir _dir;
};

void tst_QZESpectrum::initTestCase()
{
    QVERIFY(_dir.isValid());
}

// --- Edge cases of the distribution ------------------------------------------------

void tst_QZESpectrum::setOneResampledGivesFortyBandsOfOne()
{
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();

    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(1.0, 40));
    QCOMPARE(spectrum.getSum(), 40.0f);
    QCOMPARE(spectrum.getPhotometricValue(), 40.0f);
}

void tst_QZESpectrum::singleSourceSampleFillsEveryBand_data()
{
    QTest::addColumn<double>("wavelength");
    QTest::addColumn<double>("value");

    QTest::newRow("inside the bands") << 500.0 << 0.7;
    QTest::newRow("below the bands") << 300.0 << 2.5;
    QTest::newRow("above the bands") << 900.0 << 0.3;
}

void tst_QZESpectrum::singleSourceSampleFillsEveryBand()
{
    QFETCH(double, wavelength);
    QFETCH(double, value);

    QZESpectrum spectrum = loaded({wavelength}, {value});

    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(value, 40));
}

// Source: 2 at 395 nm rising linearly to 4 at 415 nm.
void tst_QZESpectrum::bandsOutsideSourceTakeNearestEndValue()
{
    QZESpectrum spectrum = loaded({395, 415}, {2, 4});

    const std::vector<float>& bands = spectrum.getSamples();
    QCOMPARE(bands.size(), size_t(40));
    QCOMPARE(bands[0], 2.0f); // [380, 390) lies wholly below 395 nm
    for (size_t k = 4; k < 40; ++k)
        QCOMPARE(bands[k], 4.0f); // [420, 430) onwards lies above 415 nm
}

void tst_QZESpectrum::partlyCoveredBandsMixEndValueWithIntegral()
{
    QZESpectrum spectrum = loaded({395, 415}, {2, 4});

    const auto source = [](double x) { return 2.0 + (x - 395.0) * 2.0 / 20.0; };
    const auto area = [&source](double a, double b) {
        return (b - a) * (source(a) + source(b)) / 2;
    };
    const double below = (395.0 - 390.0) * 2.0 + area(395, 400);
    const double inside = area(400, 410);
    const double above = area(410, 415) + (420.0 - 415.0) * 4.0;
    const std::vector<float>& bands = spectrum.getSamples();
    QCOMPARE(bands.size(), size_t(40));
    QZE_COMPARE_FLOATS(std::vector<float>(bands.begin() + 1, bands.begin() + 4), 1e-6,
                       below / 10, inside / 10, above / 10);
    QZE_COMPARE_FLOATS(std::vector<float>(bands.begin() + 1, bands.begin() + 4), 0,
                       2.125, 3.0, 3.875);
}

void tst_QZESpectrum::decreasingWavelengthInArrayLoadPrintsBothAndKeepsPairs()
{
    QZESpectrum spectrum = keptOne();
    const float wavelengths[] = {400.0f, 500.0f, 450.0f};
    const float values[] = {1.0f, 2.0f, 3.0f};

    const Outcome outcome = captured([&] { return spectrum.load(3, wavelengths, values); });

    QZE_COMPARE_OUTCOME(outcome, false, "_wavelengths)[i]: 450\n_wavelengths)[i-1]: 500\n", "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 500, 450);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
    QZE_CHECK(verifyKeptFields(spectrum));
    QVERIFY(spectrum.getUseSpectrum());
    QVERIFY(spectrum.getSamples().empty());
}

void tst_QZESpectrum::scaleOnClearedFlagChangesNothing()
{
    QZESpectrum spectrum = withFortyBands(false, 3, {1.0f, 2.0f, 3.0f});

    spectrum.scale(2.0f);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
}

// --- Edge cases of the files -----------------------------------------------------

void tst_QZESpectrum::nameWithSpectralAnywhereIsReadAsNative()
{
    const QString name = write(QStringLiteral("lamp.Spectral.bak"), "spectral1 400 10 3 \n1 2 3 ");
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QZE_COMPARE_OUTCOME(outcome, true, nativeLoadLog("spectral1", 400, 10, 3, name), "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 410, 420);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
    QCOMPARE(spectrum.getFilename(), name);
}

void tst_QZESpectrum::version1ValuesOverSeveralLinesLoadLikeOneLine()
{
    const QString oneLine = write(QStringLiteral("one-line.spectral"),
                                  "spectral1 380 5 4 \n0.5 1 1.5 2 ");
    const QString severalLines = write(QStringLiteral("several-lines.spectral"),
                                       "spectral1 380 5 4 \n0.5\n1\n\n1.5 \n 2\n");
    QZESpectrum first;
    QZESpectrum second;

    const Outcome firstOutcome = captured([&] { return first.loadNative(oneLine); });
    const Outcome secondOutcome = captured([&] { return second.loadNative(severalLines); });

    QZE_COMPARE_OUTCOME(firstOutcome, true, nativeLoadLog("spectral1", 380, 5, 4, oneLine), "");
    QZE_COMPARE_OUTCOME(secondOutcome, true, nativeLoadLog("spectral1", 380, 5, 4, severalLines),
                        "");
    QZE_COMPARE_FLOATS(second.getSourceValues(), 0, 0.5, 1, 1.5, 2);
    first.setFilename(QString());
    second.setFilename(QString());
    QVERIFY(first.getOptions() == second.getOptions());
}

void tst_QZESpectrum::version2EqualNeighbouringWavelengthsLoad()
{
    const QString name = write(QStringLiteral("repeated.spectral"),
                               "spectral2 4 \n400 410 410 420 \n1 2 3 4 ");
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_COMPARE_OUTCOME(outcome, true, nativeLoadLog("spectral2", 0, 0, 4, name), "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 410, 410, 420);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3, 4);
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getNumSamples(), 4);
}

void tst_QZESpectrum::txtStartingWithHeaderWordLoadsNothing()
{
    const QString name = write(QStringLiteral("headed.txt"), "Wavelength Value\n400 1\n410 2\n");
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QZE_COMPARE_OUTCOME(outcome, false, TxtBanner, UnexpectedFormat);
    QVERIFY(spectrum.getWavelengths().empty());
    QVERIFY(spectrum.getSourceValues().empty());
    QVERIFY(!spectrum.getUseSpectrum());
}

void tst_QZESpectrum::txtValueTooSmallForFloatReadsAsZero()
{
    const QString name = write(QStringLiteral("tail.txt"), "400 0.5\n410 1e-50\n420 0.7\n");
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QVERIFY(outcome.result);
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 410, 420);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 0.5, 0, 0.7);
}

void tst_QZESpectrum::savedSetOneIsExactBytes()
{
    const QString name = path(QStringLiteral("one.spectral"));
    QZESpectrum spectrum;
    spectrum.setOne();

    const Outcome outcome = captured([&] { return spectrum.save(name); });

    QZE_COMPARE_OUTCOME(outcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), QByteArray("spectral1 380 5 81 \n") + QByteArray("1 ").repeated(81));
}

// --- Messages of the file operations -------------------------------------------

void tst_QZESpectrum::nativeLoadReportsEachHeaderField_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<int>("version");
    QTest::addColumn<std::vector<double>>("wavelengths");

    QString name = write(QStringLiteral("fields1.spectral"), "spectral1 400 10 3 \n1 2 3 ");
    QTest::newRow("version 1") << name << nativeLoadLog("spectral1", 400, 10, 3, name) << 1
                               << std::vector<double>{400, 410, 420};
    name = write(QStringLiteral("fields2.spectral"), "spectral2 3 \n400 420 460 \n1 2 3 ");
    QTest::newRow("version 2") << name << nativeLoadLog("spectral2", 0, 0, 3, name) << 2
                               << std::vector<double>{400, 420, 460};
}

void tst_QZESpectrum::nativeLoadReportsEachHeaderField()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, log);
    QFETCH(int, version);
    QFETCH(std::vector<double>, wavelengths);
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_COMPARE_OUTCOME(outcome, true, log, "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, wavelengths);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
    QCOMPARE(spectrum.getVersionID(), version);
    QCOMPARE(spectrum.getStartWavelength(), version == 1 ? 400 : 0);
    QCOMPARE(spectrum.getDeltaWavelength(), version == 1 ? 10 : 0);
    QCOMPARE(spectrum.getNumSamples(), 3);
    QCOMPARE(spectrum.getFilename(), name);
    QVERIFY(spectrum.getUseSpectrum());
}

void tst_QZESpectrum::unknownVersionWordIsReported_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("word");

    QTest::newRow("spectral3") << QByteArray("spectral3 3 \n1 2 3 ") << QByteArray("spectral3");
    QTest::newRow("case matters") << QByteArray("Spectral1 380 5 3 \n1 2 3 ")
                                  << QByteArray("Spectral1");
    QTest::newRow("number first") << QByteArray("380 5 3 \n1 2 3 ") << QByteArray("380");
    QTest::newRow("longer word") << QByteArray("spectral10 380 5 3 \n1 2 3 ")
                                 << QByteArray("spectral10");
    QTest::newRow("empty file") << QByteArray() << QByteArray();
    QTest::newRow("word on second line") << QByteArray("\nspectral1 380 5 3 \n1 2 3 ")
                                         << QByteArray();
}

void tst_QZESpectrum::unknownVersionWordIsReported()
{
    QFETCH(QByteArray, contents);
    QFETCH(QByteArray, word);
    const QString name = write(QStringLiteral("unknown.spectral"), contents);
    QZESpectrum spectrum;
    spectrum.setOne();

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_COMPARE_OUTCOME(outcome, false, versionLog(word), UnknownVersion);
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, gridOf(380, 5, 81));
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, repeated(1.0, 81));
    QVERIFY(!spectrum.getUseSpectrum());
}

// The values read before the bad wavelength stay: none in a native file,
// where all wavelengths come first, and the earlier pairs in a text file.
void tst_QZESpectrum::decreasingWavelengthInFileIsReported_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<std::vector<double>>("values");

    const QString native = write(QStringLiteral("decreasing.spectral"),
                                 "spectral2 3 \n400 500 450 \n1 2 3 ");
    QTest::newRow("native") << int(LoadNative) << native
                            << nativeHeaderLog("spectral2", 0, 0, 3)
                                   + "2 (*wavelengths)[i]: 450\n2 (*wavelengths)[i-1]: 500\n"
                            << std::vector<double>();
    const QString text = write(QStringLiteral("decreasing.txt"), "400 1\n500 2\n450 3\n");
    QTest::newRow("text") << int(LoadTxt) << text
                          << TxtBanner + "3 (*wavelengths)[i]: 450\n3 (*wavelengths)[i-1]: 500\n"
                          << std::vector<double>{1, 2};
}

void tst_QZESpectrum::decreasingWavelengthInFileIsReported()
{
    QFETCH(int, operation);
    QFETCH(QString, name);
    QFETCH(QByteArray, log);
    QFETCH(std::vector<double>, values);
    QZESpectrum spectrum = keptOne();

    const Outcome outcome = captured([&] { return runFileOperation(spectrum, operation, name); });

    QZE_COMPARE_OUTCOME(outcome, false, log, NotIncreasing);
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 500, 450);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, values);
    QZE_CHECK(verifyKeptFields(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
}

void tst_QZESpectrum::emptyNameFailsAfterBanner_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<bool>("flagAfter");

    QTest::newRow("loadNative") << int(LoadNative) << NativeBanner << false;
    QTest::newRow("loadTxt") << int(LoadTxt) << TxtBanner << false;
    QTest::newRow("save") << int(Save) << SaveBanner << true;
}

void tst_QZESpectrum::emptyNameFailsAfterBanner()
{
    QFETCH(int, operation);
    QFETCH(QByteArray, log);
    QFETCH(bool, flagAfter);
    QZESpectrum spectrum;
    spectrum.setOne();

    const Outcome outcome =
        captured([&] { return runFileOperation(spectrum, operation, QString()); });

    QZE_COMPARE_OUTCOME(outcome, false, log, "");
    QCOMPARE(spectrum.getUseSpectrum(), flagAfter);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, repeated(1.0, 81));
}

void tst_QZESpectrum::unopenableFileFailsAfterBanner_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("log");

    QVERIFY(QDir(_dir.path()).mkpath(QStringLiteral("folder.spectral")));
    QTest::newRow("missing native") << int(LoadNative) << path(QStringLiteral("missing.spectral"))
                                    << NativeBanner;
    QTest::newRow("missing text") << int(LoadTxt) << path(QStringLiteral("missing.txt"))
                                  << TxtBanner;
    QTest::newRow("missing through load") << int(Load) << path(QStringLiteral("missing.spectral"))
                                          << NativeBanner;
    QTest::newRow("directory") << int(LoadNative) << path(QStringLiteral("folder.spectral"))
                               << NativeBanner;
}

void tst_QZESpectrum::unopenableFileFailsAfterBanner()
{
    QFETCH(int, operation);
    QFETCH(QString, name);
    QFETCH(QByteArray, log);
    QZESpectrum spectrum;
    spectrum.setOne();

    const Outcome outcome = captured([&] { return runFileOperation(spectrum, operation, name); });

    QZE_COMPARE_OUTCOME(outcome, false, log, "");
    QVERIFY(!spectrum.getUseSpectrum());
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, gridOf(380, 5, 81));
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, repeated(1.0, 81));
}

void tst_QZESpectrum::saveOfUnknownVersionIsReported_data()
{
    QTest::addColumn<int>("version");

    QTest::newRow("uninitialised") << 0;
    QTest::newRow("version 3") << 3;
    QTest::newRow("negative") << -1;
}

void tst_QZESpectrum::saveOfUnknownVersionIsReported()
{
    QFETCH(int, version);
    const QString name = path(QStringLiteral("unknown-version.spectral"));
    QZESpectrum spectrum = stateOf(true, version, 3);

    const Outcome outcome = captured([&] { return spectrum.save(name); });

    QZE_COMPARE_OUTCOME(outcome, false, saveStartLog(name) + "Unknown Spectrum File Version!\n",
                        "");
}

void tst_QZESpectrum::saveToUnwritablePathFailsAfterName_data()
{
    QTest::addColumn<QString>("name");

    QVERIFY(QDir(_dir.path()).mkpath(QStringLiteral("target.spectral")));
    QTest::newRow("missing directory") << path(QStringLiteral("no/such/dir/out.spectral"));
    QTest::newRow("directory as target") << path(QStringLiteral("target.spectral"));
}

void tst_QZESpectrum::saveToUnwritablePathFailsAfterName()
{
    QFETCH(QString, name);
    QZESpectrum spectrum;
    spectrum.setOne();

    const Outcome outcome = captured([&] { return spectrum.save(name); });

    QZE_COMPARE_OUTCOME(outcome, false, saveStartLog(name), "");
}

void tst_QZESpectrum::loadWithUnknownSuffixPrintsNothing_data()
{
    QTest::addColumn<QString>("name");

    const QByteArray native("spectral1 400 10 3 \n1 2 3 ");
    QTest::newRow("dat") << write(QStringLiteral("lamp.dat"), native);
    QTest::newRow("spectra") << write(QStringLiteral("lamp.spectra"), native);
    QTest::newRow("no dot before txt") << write(QStringLiteral("lamp_txt"), native);
    QTest::newRow("missing file") << path(QStringLiteral("missing.csv"));
    QTest::newRow("empty name") << QString();
}

void tst_QZESpectrum::loadWithUnknownSuffixPrintsNothing()
{
    QFETCH(QString, name);
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QZE_COMPARE_OUTCOME(outcome, false, "", "");
    QVERIFY(spectrum.getWavelengths().empty());
}

void tst_QZESpectrum::loadDispatchesBySuffix_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("log");

    const QByteArray native("spectral1 400 10 3 \n1 2 3 ");
    const QByteArray text("400 1\n410 2\n420 3\n");
    const auto nativeRow = [&](const char* row, const QString& file) {
        const QString name = write(file, native);
        QTest::newRow(row) << name << nativeLoadLog("spectral1", 400, 10, 3, name);
    };
    const auto textRow = [&](const char* row, const QString& file) {
        const QString name = write(file, text);
        QTest::newRow(row) << name << txtLoadLog(name);
    };
    nativeRow("lower-case spectral", QStringLiteral("a.spectral"));
    nativeRow("upper-case spectral", QStringLiteral("B.SPECTRAL"));
    nativeRow("spectral after txt", QStringLiteral("c.txt.spectral"));
    nativeRow("spectral before txt", QStringLiteral("d.spectral.txt"));
    textRow("upper-case txt", QStringLiteral("DATA.TXT"));
    textRow("mixed-case txt", QStringLiteral("data.Txt"));
    textRow("txt inside the name", QStringLiteral("data.txt.old"));
}

void tst_QZESpectrum::loadDispatchesBySuffix()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, log);
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QZE_COMPARE_OUTCOME(outcome, true, log, "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 410, 420);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
}

// --- The reset rule --------------------------------------------------------------

// Were the reset's own set() to go through the rule again, the state would
// still match and these calls would never return.
void tst_QZESpectrum::resetOnSetUseSpectrumFillsOneWithoutRecursing_data()
{
    QTest::addColumn<bool>("flag");

    QTest::newRow("cleared") << false;
    QTest::newRow("kept") << true;
}

void tst_QZESpectrum::resetOnSetUseSpectrumFillsOneWithoutRecursing()
{
    QFETCH(bool, flag);
    QZESpectrum spectrum = stateOf(true, 0, 3);

    spectrum.setUseSpectrum(flag);

    QZE_CHECK(verifyResetToOne(spectrum));
    QCOMPARE(spectrum.getUseSpectrum(), flag);
    QCOMPARE(spectrum.getStartWavelength(), 380);
    QCOMPARE(spectrum.getDeltaWavelength(), 5);
    QCOMPARE(spectrum.getNumSamples(), 81);
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(0.5, 40));
}

void tst_QZESpectrum::resetOnSetNumSamplesFillsOneAndClearsFlag()
{
    QZESpectrum spectrum = stateOf(true, 2, 0);

    spectrum.setNumSamples(7);

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getStartWavelength(), 380);
    QCOMPARE(spectrum.getDeltaWavelength(), 5);
    QCOMPARE(spectrum.getNumSamples(), 7);
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(0.5, 40));
}

void tst_QZESpectrum::setUseSpectrumOutsideResetStateOnlyStoresFlag_data()
{
    QTest::addColumn<bool>("flagBefore");
    QTest::addColumn<int>("version");
    QTest::addColumn<int>("bandCount");
    QTest::addColumn<bool>("flag");

    QTest::newRow("flag clear") << false << 0 << 40 << true;
    QTest::newRow("39 bands") << true << 0 << 39 << false;
    QTest::newRow("version 1") << true << 1 << 40 << false;
    QTest::newRow("version 2") << true << 2 << 40 << false;
}

void tst_QZESpectrum::setUseSpectrumOutsideResetStateOnlyStoresFlag()
{
    QFETCH(bool, flagBefore);
    QFETCH(int, version);
    QFETCH(int, bandCount);
    QFETCH(bool, flag);
    QZESpectrum spectrum = stateOf(flagBefore, version, 3, bandCount);
    QZESpectrum::Options expected = spectrum.getOptions();
    std::get<0>(expected) = flag;

    spectrum.setUseSpectrum(flag);

    QVERIFY(spectrum.getOptions() == expected);
}

void tst_QZESpectrum::setNumSamplesOutsideResetStateOnlyStoresCount_data()
{
    QTest::addColumn<bool>("flag");
    QTest::addColumn<int>("countBefore");
    QTest::addColumn<int>("bandCount");

    QTest::newRow("flag clear") << false << 0 << 40;
    QTest::newRow("39 bands") << true << 0 << 39;
    QTest::newRow("count 3") << true << 3 << 40;
}

void tst_QZESpectrum::setNumSamplesOutsideResetStateOnlyStoresCount()
{
    QFETCH(bool, flag);
    QFETCH(int, countBefore);
    QFETCH(int, bandCount);
    QZESpectrum spectrum = stateOf(flag, 2, countBefore, bandCount);
    QZESpectrum::Options expected = spectrum.getOptions();
    std::get<5>(expected) = 7;

    spectrum.setNumSamples(7);

    QVERIFY(spectrum.getOptions() == expected);
}

// set() raises the flag by the rule: a version-0 state is reset to 1.0 on
// 380, 5, 81 before set() stores its own grid fields and count.
void tst_QZESpectrum::setRaisesFlagByResetRule()
{
    QZESpectrum spectrum = stateOf(true, 0, 3);

    spectrum.set(0.25f, 400, 10, 3);

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getStartWavelength(), 400);
    QCOMPARE(spectrum.getDeltaWavelength(), 10);
    QCOMPARE(spectrum.getNumSamples(), 3);
}

void tst_QZESpectrum::countStepsApplyResetRule_data()
{
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("count");

    QTest::newRow("set") << int(SetStep) << 3;
    QTest::newRow("resampleSource") << int(ResampleSourceStep) << 4;
    QTest::newRow("add of disjoint ranges") << int(MergeStep) << 5;
}

void tst_QZESpectrum::countStepsApplyResetRule()
{
    QFETCH(int, step);
    QFETCH(int, count);
    QZESpectrum spectrum = stateOf(true, 2, 0);
    QZESpectrum other = loaded({700, 710}, {1, 2});

    switch (step) {
    case SetStep:
        spectrum.set(0.25f, 400, 10, 3);
        break;
    case ResampleSourceStep:
        spectrum.resampleSource(400, 50, 4);
        break;
    default:
        spectrum.add(other);
    }

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getStartWavelength(), 380);
    QCOMPARE(spectrum.getDeltaWavelength(), 5);
    QCOMPARE(spectrum.getNumSamples(), count);
}

void tst_QZESpectrum::fileLoadSetsCountByResetRule()
{
    const QString name = write(QStringLiteral("rule.spectral"), "spectral1 400 10 3 \n1 2 3 ");
    QZESpectrum spectrum = stateOf(true, 2, 0);

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getNumSamples(), 3);
    // The report names the file read, even though the reset has cleared the
    // filename field since.
    QZE_COMPARE_OUTCOME(outcome, true, nativeLoadLog("spectral1", 400, 10, 3, name), "");
}

void tst_QZESpectrum::failedLoadClearsFlagByResetRule()
{
    QZESpectrum spectrum = stateOf(true, 0, 3);

    const Outcome outcome = captured([&] { return spectrum.loadNative(QString()); });

    QZE_COMPARE_OUTCOME(outcome, false, NativeBanner, "");
    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getNumSamples(), 81);
}

// The spectra an array load meets: index into initialArrayLoadStates().
void tst_QZESpectrum::arrayLoadLeavesSpectrumActiveWithCount_data()
{
    QTest::addColumn<int>("state");

    QTest::newRow("fresh") << 0;
    QTest::newRow("stale bands without count") << 1;
    QTest::newRow("flag set on version 0 without bands") << 2;
}

void tst_QZESpectrum::arrayLoadLeavesSpectrumActiveWithCount()
{
    QFETCH(int, state);
    QZESpectrum spectrum = initialArrayLoadStates()[size_t(state)];
    const float wavelengths[] = {400.0f, 450.0f, 500.0f};
    const float values[] = {1.0f, 2.0f, 3.0f};

    const Outcome outcome = captured([&] { return spectrum.load(3, wavelengths, values); });

    QZE_COMPARE_OUTCOME(outcome, true, "", "");
    QZE_CHECK(verifyActiveRisingSource(spectrum));
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getStartWavelength(), 0);
    QCOMPARE(spectrum.getDeltaWavelength(), 0);
    QCOMPARE(spectrum.getFilename(), QString());
}

void tst_QZESpectrum::uniformArrayLoadStoresCountDirectly_data()
{
    arrayLoadLeavesSpectrumActiveWithCount_data();
}

void tst_QZESpectrum::uniformArrayLoadStoresCountDirectly()
{
    QFETCH(int, state);
    QZESpectrum spectrum = initialArrayLoadStates()[size_t(state)];
    const float values[] = {1.0f, 2.0f, 3.0f};

    const Outcome outcome = captured([&] { return spectrum.load(400, 50, 3, values); });

    QZE_COMPARE_OUTCOME(outcome, true, "", "");
    QZE_CHECK(verifyActiveRisingSource(spectrum));
    QCOMPARE(spectrum.getVersionID(), 1);
    QCOMPARE(spectrum.getStartWavelength(), 400);
    QCOMPARE(spectrum.getDeltaWavelength(), 50);
}

// --- Building and resampling -------------------------------------------------------

void tst_QZESpectrum::defaultSpectrumIsUninitialised()
{
    const QZESpectrum spectrum;

    QVERIFY(spectrum.getOptions()
            == QZESpectrum::Options(false, std::string(), 0, 380, 0, 0, {}, {}, {}));
    QVERIFY(!spectrum.isInitialized());
    QVERIFY(!spectrum.isActive());
}

void tst_QZESpectrum::setFillsGridWithoutBands()
{
    QZESpectrum spectrum(false, "old.spectral", 2, 0, 0, 2, {400.0f, 500.0f}, {1.0f, 2.0f},
                         {7.0f, 8.0f, 9.0f});

    spectrum.set(0.25f, 400, 20, 4);

    QZE_CHECK(verifyUniformSource(spectrum, 400, 20, repeated(0.25, 4)));
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, 7, 8, 9);
    QVERIFY(spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getFilename(), QString());
}

// Source 1, 3, 2 at 385, 402, 430 nm; the bands are integrals of the two line
// segments, with the constant 1 below 385 nm and 2 above 430 nm.
void tst_QZESpectrum::resampleMatchesHandIntegralOfIrregularSpectrum()
{
    QZESpectrum spectrum = loaded({385, 402, 430}, {1, 3, 2});
    spectrum.resample();

    const auto rising = [](double x) { return 1.0 + (x - 385.0) * 2.0 / 17.0; }; // 385 to 402
    const auto falling = [](double x) { return 3.0 - (x - 402.0) / 28.0; };      // 402 to 430
    const auto trapezoid = [](double a, double va, double b, double vb) {
        return (b - a) * (va + vb) / 2.0;
    };
    std::vector<double> expected(40, 2.0);
    expected[0] = (5.0 * 1.0 + trapezoid(385, 1.0, 390, rising(390))) / 10.0;
    expected[1] = trapezoid(390, rising(390), 400, rising(400)) / 10.0;
    expected[2] = (trapezoid(400, rising(400), 402, 3.0) + trapezoid(402, 3.0, 410, falling(410)))
                  / 10.0;
    expected[3] = trapezoid(410, falling(410), 420, falling(420)) / 10.0;
    expected[4] = trapezoid(420, falling(420), 430, 2.0) / 10.0;
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 1e-6, expected);
    // The same bands as fractions: 1 + 2.5/17, 37/17, (98/17 + 160/7)/10, 71/28, 61/28.
    QZE_COMPARE_FLOATS(std::vector<float>(spectrum.getSamples().begin(),
                                          spectrum.getSamples().begin() + 5),
                       1e-6, 1.0 + 2.5 / 17.0, 37.0 / 17.0, (98.0 / 17.0 + 160.0 / 7.0) / 10.0,
                       71.0 / 28.0, 61.0 / 28.0);
}

void tst_QZESpectrum::resampleOfEmptySourceKeepsBands()
{
    QZESpectrum noWavelengths(true, std::string(), 1, 380, 5, 1, {}, {1.0f}, {5.0f, 6.0f});
    QZESpectrum noValues(true, std::string(), 1, 380, 5, 1, {400.0f}, {}, {5.0f, 6.0f});

    noWavelengths.resample();
    noValues.resample();

    QZE_COMPARE_FLOATS(noWavelengths.getSamples(), 0, 5, 6);
    QZE_COMPARE_FLOATS(noValues.getSamples(), 0, 5, 6);
}

// Source 1, 3, 0 at 400, 420, 450 nm onto 380, 10, 9.
void tst_QZESpectrum::resampleSourceInterpolatesAndExtendsEnds()
{
    QZESpectrum spectrum = loaded({400, 420, 450}, {1, 3, 0});
    const std::vector<float> bands = spectrum.getSamples();

    spectrum.resampleSource(380, 10, 9);

    // 380, 390 before the first sample; 400, 420, 450 exact; 410 halfway up
    // to 3; 430 and 440 a third and two thirds of the way down to 0; 460 after.
    QZE_CHECK(verifyUniformSource(spectrum, 380, 10, {1, 1, 1, 2, 3, 2, 1, 0, 0}, 1e-6));
    QVERIFY(spectrum.getSamples() == bands);
}

// A repeated wavelength is a step: a grid point on it takes the first of the
// two samples, and the segment after the step starts from the second.
void tst_QZESpectrum::resampleSourceTakesFirstSampleAtExactHit()
{
    QZESpectrum spectrum = loaded({400, 410, 410, 420}, {1, 2, 5, 6});

    spectrum.resampleSource(400, 5, 5);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 1.5, 2, 5.5, 6);
}

void tst_QZESpectrum::resampleSourceTakesFirstOfEqualLastWavelengths()
{
    QZESpectrum spectrum = loaded({400, 500, 600, 600}, {1, 2, 3, 7});

    spectrum.resampleSource(590, 10, 3);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 1e-6, 2.9, 3, 7);
}

void tst_QZESpectrum::resampleSourceOfSingleSampleIsConstant()
{
    QZESpectrum spectrum = loaded({500}, {0.25});

    spectrum.resampleSource(380, 100, 3);

    QZE_CHECK(verifyUniformSource(spectrum, 380, 100, repeated(0.25, 3)));
}

void tst_QZESpectrum::resampleSourceOfEmptySourceChangesNothing()
{
    QZESpectrum spectrum;

    spectrum.resampleSource(380, 5, 81);

    QVERIFY(spectrum.getOptions() == QZESpectrum().getOptions());
}

// --- Arithmetic --------------------------------------------------------------------

void tst_QZESpectrum::addOnSameGridSumsDirectly()
{
    QZESpectrum spectrum = onGrid(400, 10, {1, 2, 3});
    QZESpectrum other = onGrid(400, 10, {0.5, 0.25, 0.125});
    const std::vector<float> bands = spectrum.getSamples();

    spectrum.add(other);

    QZE_CHECK(verifyUniformSource(spectrum, 400, 10, {1.5, 2.25, 3.125}));
    QVERIFY(spectrum.getSamples() == bands);
}

// This spectrum (1, 2, 3 at 400, 410, 420 nm) on the other's grid 380, 20, 4
// is 1, 1, 3, 3.
void tst_QZESpectrum::addResamplesThisOntoCoveringOther()
{
    QZESpectrum spectrum = onGrid(400, 10, {1, 2, 3});
    QZESpectrum other = onGrid(380, 20, {0, 2, 4, 6});

    spectrum.add(other);

    QZE_CHECK(verifyUniformSource(spectrum, 380, 20, {1, 3, 7, 9}));
    QZE_COMPARE_FLOATS(other.getSourceValues(), 0, 0, 2, 4, 6);
}

void tst_QZESpectrum::addResamplesOtherOntoCoveredGrid()
{
    QZESpectrum spectrum = onGrid(380, 20, {0, 2, 4, 6});
    QZESpectrum other = onGrid(400, 10, {1, 2, 3});

    spectrum.add(other);

    QZE_CHECK(verifyUniformSource(spectrum, 380, 20, {1, 3, 7, 9}));
    QZE_CHECK(verifyUniformSource(other, 380, 20, {1, 1, 3, 3}));
}

// 0, 2, 4 at 400, 450, 500 nm and 1, 3, 5 at 450, 500, 550 nm overlap without
// either covering the other: both go onto 380, 5, 81.
void tst_QZESpectrum::addResamplesBothWhenNeitherCovers()
{
    QZESpectrum spectrum = onGrid(400, 50, {0, 2, 4});
    QZESpectrum other = onGrid(450, 50, {1, 3, 5});

    spectrum.add(other);

    const auto first = [](double x) { return x <= 400 ? 0.0 : x >= 500 ? 4.0 : (x - 400) * 0.04; };
    const auto second = [](double x) {
        return x <= 450 ? 1.0 : x >= 550 ? 5.0 : 1.0 + (x - 450) * 0.04;
    };
    std::vector<double> sum;
    std::vector<double> otherOnGrid;
    for (double x : gridOf(380, 5, 81)) {
        sum.push_back(first(x) + second(x));
        otherOnGrid.push_back(second(x));
    }
    QZE_CHECK(verifyUniformSource(spectrum, 380, 5, sum, 1e-6));
    QZE_CHECK(verifyUniformSource(other, 380, 5, otherOnGrid, 1e-6));
}

void tst_QZESpectrum::addMergesDisjointRanges_data()
{
    QTest::addColumn<std::vector<double>>("thisWavelengths");
    QTest::addColumn<std::vector<double>>("thisValues");
    QTest::addColumn<std::vector<double>>("otherWavelengths");
    QTest::addColumn<std::vector<double>>("otherValues");
    QTest::addColumn<std::vector<double>>("wavelengths");
    QTest::addColumn<std::vector<double>>("values");
    QTest::addColumn<int>("start");

    using V = std::vector<double>;
    QTest::newRow("this below other") << V{400, 410, 420} << V{1, 2, 3} << V{450, 460} << V{5, 6}
                                      << V{400, 410, 420, 450, 460} << V{1, 2, 3, 5, 6} << 400;
    QTest::newRow("other below this") << V{450, 460} << V{5, 6} << V{400, 410, 420} << V{1, 2, 3}
                                      << V{400, 410, 420, 450, 460} << V{1, 2, 3, 5, 6} << 400;
    QTest::newRow("seam at this end") << V{400, 410, 420} << V{1, 2, 3} << V{420, 430}
                                      << V{10, 20} << V{400, 410, 420, 430} << V{1, 2, 3, 20}
                                      << 400;
    QTest::newRow("seam at this start") << V{420, 430} << V{10, 20} << V{400, 410, 420}
                                        << V{1, 2, 3} << V{400, 410, 420, 430} << V{1, 2, 10, 20}
                                        << 400;
    QTest::newRow("seam with a single sample") << V{400, 410} << V{1, 2} << V{410} << V{7}
                                               << V{400, 410} << V{1, 2} << 400;
    QTest::newRow("equal wavelength before this end sums")
        << V{400, 410, 420, 420} << V{1, 2, 3, 4} << V{420, 430} << V{10, 20}
        << V{400, 410, 420, 420, 430} << V{1, 2, 13, 4, 20} << 400;
    QTest::newRow("equal wavelength before other end sums")
        << V{420, 430} << V{10, 20} << V{400, 420, 420} << V{1, 2, 3}
        << V{400, 420, 420, 430} << V{1, 12, 3, 20} << 400;
    QTest::newRow("start truncated") << V{400.7, 410} << V{1, 2} << V{380.9, 390} << V{3, 4}
                                     << V{380.9, 390, 400.7, 410} << V{3, 4, 1, 2} << 380;
}

void tst_QZESpectrum::addMergesDisjointRanges()
{
    QFETCH(std::vector<double>, thisWavelengths);
    QFETCH(std::vector<double>, thisValues);
    QFETCH(std::vector<double>, otherWavelengths);
    QFETCH(std::vector<double>, otherValues);
    QFETCH(std::vector<double>, wavelengths);
    QFETCH(std::vector<double>, values);
    QFETCH(int, start);
    QZESpectrum spectrum = loaded(thisWavelengths, thisValues);
    QZESpectrum other = loaded(otherWavelengths, otherValues);
    const std::vector<float> bands = spectrum.getSamples();

    spectrum.add(other);

    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, wavelengths);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, values);
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getStartWavelength(), start);
    QCOMPARE(spectrum.getDeltaWavelength(), 0);
    QCOMPARE(spectrum.getNumSamples(), int(wavelengths.size()));
    QVERIFY(spectrum.getUseSpectrum());
    QVERIFY(spectrum.getSamples() == bands);
    QZE_COMPARE_FLOATS(other.getSourceValues(), 0, otherValues);
}

void tst_QZESpectrum::addLowersBrighterSideOfTxtSeam_data()
{
    QTest::addColumn<QByteArray>("thisText");
    QTest::addColumn<QByteArray>("otherText");
    QTest::addColumn<std::vector<double>>("wavelengths");
    QTest::addColumn<std::vector<double>>("values");
    QTest::addColumn<std::vector<double>>("otherValues");

    using V = std::vector<double>;
    // Ratio 4 / 2 at 420 nm: this spectrum is halved.
    QTest::newRow("this brighter") << QByteArray("400 1\n410 2\n420 4\n")
                                   << QByteArray("420 2\n430 3\n") << V{400, 410, 420, 430}
                                   << V{0.5, 1, 2, 3} << V{2, 3};
    // Ratio 1 / 4 at 420 nm: the other spectrum is quartered.
    QTest::newRow("other brighter") << QByteArray("400 1\n410 2\n420 1\n")
                                    << QByteArray("420 4\n430 8\n") << V{400, 410, 420, 430}
                                    << V{1, 2, 1, 2} << V{1, 2};
    // Ratio 6 / 3 where this spectrum starts at the other's end.
    QTest::newRow("this after other") << QByteArray("420 6\n430 3\n")
                                      << QByteArray("400 1\n410 2\n420 3\n")
                                      << V{400, 410, 420, 430} << V{1, 2, 3, 1.5} << V{1, 2, 3};
}

void tst_QZESpectrum::addLowersBrighterSideOfTxtSeam()
{
    QFETCH(QByteArray, thisText);
    QFETCH(QByteArray, otherText);
    QFETCH(std::vector<double>, wavelengths);
    QFETCH(std::vector<double>, values);
    QFETCH(std::vector<double>, otherValues);
    const QString thisName = write(QStringLiteral("seam-a.txt"), thisText);
    const QString otherName = write(QStringLiteral("seam-b.TXT"), otherText);
    QZESpectrum spectrum;
    QZESpectrum other;

    const Outcome thisOutcome = captured([&] { return spectrum.loadTxt(thisName); });
    const Outcome otherOutcome = captured([&] { return other.loadTxt(otherName); });
    QZE_COMPARE_OUTCOME(thisOutcome, true, txtLoadLog(thisName), "");
    QZE_COMPARE_OUTCOME(otherOutcome, true, txtLoadLog(otherName), "");
    spectrum.resample();
    other.resample();

    spectrum.add(other);

    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, wavelengths);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, values);
    QZE_COMPARE_FLOATS(other.getSourceValues(), 0, otherValues);
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getStartWavelength(), 400);
    QCOMPARE(spectrum.getNumSamples(), 4);
}

void tst_QZESpectrum::addMatchesSeamOnlyWhenBothAreTxt()
{
    const QString textName = write(QStringLiteral("plain-a.txt"), "400 1\n410 2\n420 4\n");
    const QString nativeName = write(QStringLiteral("plain-b.spectral"),
                                     "spectral2 2 \n420 430 \n2 3 ");
    QZESpectrum spectrum;
    QZESpectrum other;
    const Outcome thisOutcome = captured([&] { return spectrum.loadTxt(textName); });
    const Outcome otherOutcome = captured([&] { return other.loadNative(nativeName); });
    QZE_COMPARE_OUTCOME(thisOutcome, true, txtLoadLog(textName), "");
    QZE_COMPARE_OUTCOME(otherOutcome, true, nativeLoadLog("spectral2", 0, 0, 2, nativeName), "");
    spectrum.resample();
    other.resample();

    spectrum.add(other);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 4, 3);
    QZE_COMPARE_FLOATS(other.getSourceValues(), 0, 2, 3);
}

void tst_QZESpectrum::scaleMultipliesFirstCountValues()
{
    QZESpectrum spectrum = withFortyBands(true, 2, {1.0f, 2.0f, 3.0f});

    spectrum.scale(2.5f);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 2.5, 5, 3);
}

void tst_QZESpectrum::scaleNeedsBandsAndCount_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("bandCount");

    QTest::newRow("39 bands") << 3 << 39;
    QTest::newRow("count 0") << 0 << 40;
}

void tst_QZESpectrum::scaleNeedsBandsAndCount()
{
    QFETCH(int, count);
    QFETCH(int, bandCount);
    QZESpectrum spectrum(true, std::string(), 1, 400, 10, count, {400.0f, 410.0f, 420.0f},
                         {1.0f, 2.0f, 3.0f}, std::vector<float>(size_t(bandCount), 0.5f));

    spectrum.scale(2.0f);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
}

void tst_QZESpectrum::getSumAddsFortyBands()
{
    std::vector<float> bands;
    for (int k = 0; k < 40; ++k)
        bands.push_back(0.5f * float(k));
    const QZESpectrum active(true, std::string(), 1, 380, 5, 1, {380.0f}, {1.0f}, bands);
    const QZESpectrum inactive(false, std::string(), 1, 380, 5, 1, {380.0f}, {1.0f}, bands);

    QCOMPARE(active.getSum(), float(0.5 * 39 * 40 / 2));
    QCOMPARE(inactive.getSum(), 0.0f);
}

void tst_QZESpectrum::getMaxValueLooksAtFirstCountValues_data()
{
    QTest::addColumn<std::vector<double>>("values");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("expected");

    using V = std::vector<double>;
    QTest::newRow("largest within count") << V{3, 9, 5, 100} << 3 << 9.0;
    QTest::newRow("all values") << V{3, 9, 5, 100} << 4 << 100.0;
    QTest::newRow("count 1 takes first") << V{3, 9} << 1 << 3.0;
    QTest::newRow("count 0 takes first") << V{3, 9} << 0 << 3.0;
    QTest::newRow("negative values") << V{-2, -1, -5} << 3 << -1.0;
}

void tst_QZESpectrum::getMaxValueLooksAtFirstCountValues()
{
    QFETCH(std::vector<double>, values);
    QFETCH(int, count);
    QFETCH(double, expected);
    const QZESpectrum spectrum = withFortyBands(true, count, floatsOf(values));

    QCOMPARE(spectrum.getMaxValue(), float(expected));
}

void tst_QZESpectrum::getMaxValueOfInactiveSpectrumIsZero()
{
    const QZESpectrum cleared = withFortyBands(false, 2, {3.0f, 9.0f});
    QZESpectrum withoutBands;
    withoutBands.set(4.0f, 380, 5, 3);

    QCOMPARE(cleared.getMaxValue(), 0.0f);
    QCOMPARE(withoutBands.getMaxValue(), 0.0f);
}

void tst_QZESpectrum::getPhotometricValueSumsSquaredBands()
{
    std::vector<float> bands;
    for (int k = 0; k < 40; ++k)
        bands.push_back(0.1f * float(k));
    const QZESpectrum active(true, std::string(), 1, 380, 5, 1, {380.0f}, {1.0f}, bands);
    const QZESpectrum inactive(false, std::string(), 1, 380, 5, 1, {380.0f}, {1.0f}, bands);

    // 0.01 times the sum of k^2 for k = 0..39, 39 * 40 * 79 / 6.
    QZE_COMPARE_FLOATS(std::vector<float>{active.getPhotometricValue()}, 1e-5,
                       0.01 * 39 * 40 * 79 / 6);
    QCOMPARE(inactive.getPhotometricValue(), 0.0f);
}

// Forty bands of 0.5 weigh 40 * 0.25 = 10.
void tst_QZESpectrum::setPhotometricValueScalesSourceByRatio()
{
    QZESpectrum spectrum = withFortyBands(true, 3, {1.0f, 2.0f, 3.0f});

    spectrum.setPhotometricValue(5.0f);

    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 1e-7, 0.5, 1, 1.5);
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(0.5, 40));
}

void tst_QZESpectrum::setPhotometricValueOnFreshSpectrumSetsOne()
{
    QZESpectrum spectrum;

    spectrum.setPhotometricValue(5.0f);

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getNumSamples(), 81);
    QVERIFY(spectrum.getSamples().empty());
}

void tst_QZESpectrum::setPhotometricValueOnInactiveSpectrumSetsOneThenScales()
{
    QZESpectrum spectrum = withFortyBands(false, 3, {1.0f, 2.0f, 3.0f});

    spectrum.setPhotometricValue(5.0f);

    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, gridOf(380, 5, 81));
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 1e-7, repeated(5.0 / 10.0, 81));
    QVERIFY(spectrum.isActive());
    QCOMPARE(spectrum.getNumSamples(), 81);
}

// Zero bands weigh nothing, so the constant 1.0 is set; with no count the
// reset rule then clears the flag and nothing is scaled.
void tst_QZESpectrum::setPhotometricValueStopsWhenResetClearsFlag()
{
    QZESpectrum spectrum = withFortyBands(true, 0, {1.0f, 2.0f, 3.0f}, 0.0f);

    spectrum.setPhotometricValue(5.0f);

    QZE_CHECK(verifyResetToOne(spectrum));
    QVERIFY(!spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getNumSamples(), 81);
}

// --- Value semantics ---------------------------------------------------------------

namespace {

QZESpectrum::Options distinctOptions()
{
    return QZESpectrum::Options(true, "gr\xc3\xbcn.spectral", 2, 385, 7, 3,
                                {400.0f, 450.0f, 500.0f}, {0.1f, 0.2f, 0.3f},
                                std::vector<float>(40, 0.25f));
}

} // namespace

void tst_QZESpectrum::copyTakesAllMembers()
{
    const QZESpectrum source(distinctOptions());
    QZESpectrum target;
    target.setOne();

    QVERIFY(target.copy(source));

    QVERIFY(target.getOptions() == distinctOptions());
}

void tst_QZESpectrum::selfCopyKeepsEverything()
{
    QZESpectrum spectrum(distinctOptions());
    const QZESpectrum& alias = spectrum;

    QVERIFY(spectrum.copy(alias));

    QVERIFY(spectrum.getOptions() == distinctOptions());
}

void tst_QZESpectrum::copyConstructorTakesAllMembers()
{
    const QZESpectrum source(distinctOptions());

    const QZESpectrum copy(source);

    QVERIFY(copy.getOptions() == distinctOptions());
}

void tst_QZESpectrum::optionsRoundTripThroughTupleConstructor()
{
    const QZESpectrum spectrum(distinctOptions());

    QVERIFY(spectrum.getOptions() == distinctOptions());
    QVERIFY(spectrum.getUseSpectrum());
    QCOMPARE(spectrum.getFilename(), QStringLiteral("gr\u00fcn.spectral"));
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getStartWavelength(), 385);
    QCOMPARE(spectrum.getDeltaWavelength(), 7);
    QCOMPARE(spectrum.getNumSamples(), 3);
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 450, 500);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 0.1, 0.2, 0.3);
    QZE_COMPARE_FLOATS(spectrum.getSamples(), 0, repeated(0.25, 40));
}

void tst_QZESpectrum::nineValueConstructorStoresInOrder()
{
    const QZESpectrum spectrum(true, "gr\xc3\xbcn.spectral", 2, 385, 7, 3,
                               {400.0f, 450.0f, 500.0f}, {0.1f, 0.2f, 0.3f},
                               std::vector<float>(40, 0.25f));

    QVERIFY(spectrum.getOptions() == distinctOptions());
    QCOMPARE(spectrum.getStartWavelength(), 385);
    QCOMPARE(spectrum.getDeltaWavelength(), 7);
    QCOMPARE(spectrum.getNumSamples(), 3);
}

void tst_QZESpectrum::isActiveNeedsFlagAndFortyBands_data()
{
    QTest::addColumn<bool>("flag");
    QTest::addColumn<int>("bandCount");
    QTest::addColumn<bool>("active");

    QTest::newRow("flag and 40 bands") << true << 40 << true;
    QTest::newRow("flag and 41 bands") << true << 41 << true;
    QTest::newRow("flag and 39 bands") << true << 39 << false;
    QTest::newRow("flag without bands") << true << 0 << false;
    QTest::newRow("40 bands without flag") << false << 40 << false;
}

void tst_QZESpectrum::isActiveNeedsFlagAndFortyBands()
{
    QFETCH(bool, flag);
    QFETCH(int, bandCount);
    QFETCH(bool, active);

    QCOMPARE(stateOf(flag, 1, 3, bandCount).isActive(), active);
}

void tst_QZESpectrum::isInitializedMeansNonZeroVersion_data()
{
    QTest::addColumn<int>("version");
    QTest::addColumn<bool>("initialized");

    QTest::newRow("0") << 0 << false;
    QTest::newRow("1") << 1 << true;
    QTest::newRow("2") << 2 << true;
    QTest::newRow("-1") << -1 << true;
}

void tst_QZESpectrum::isInitializedMeansNonZeroVersion()
{
    QFETCH(int, version);
    QFETCH(bool, initialized);

    QCOMPARE(stateOf(false, version, 3).isInitialized(), initialized);
}

void tst_QZESpectrum::filenameIsStoredAsUtf8()
{
    QZESpectrum spectrum;

    spectrum.setFilename(QStringLiteral("gr\u00fcn \u263c.spectral"));

    QCOMPARE(QByteArray::fromStdString(std::get<1>(spectrum.getOptions())),
             QByteArray("gr\xc3\xbcn \xe2\x98\xbc.spectral"));
    QCOMPARE(spectrum.getFilename(), QStringLiteral("gr\u00fcn \u263c.spectral"));
}

// --- Files -------------------------------------------------------------------------

void tst_QZESpectrum::version1RoundTripKeepsSixDigitValues()
{
    const QString name = path(QStringLiteral("round-trip1.spectral"));
    const QZESpectrum original = onGrid(400, 10, {0.94, 0.000001, 412.90323, -2.5});
    QZESpectrum saved(original);
    QZESpectrum read;

    const Outcome saveOutcome = captured([&] { return saved.save(name); });
    const Outcome loadOutcome = captured([&] { return read.loadNative(name); });

    QZE_COMPARE_OUTCOME(saveOutcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), QByteArray("spectral1 400 10 4 \n0.94 1e-06 412.903 -2.5 "));
    QZE_COMPARE_OUTCOME(loadOutcome, true, nativeLoadLog("spectral1", 400, 10, 4, name), "");
    QZE_CHECK(verifyUniformSource(read, 400, 10, {0.94, 1e-06, 412.903, -2.5}));
    QCOMPARE(read.getFilename(), name);
    QVERIFY(read.getUseSpectrum());
    QVERIFY(saved.getOptions() == original.getOptions());
}

void tst_QZESpectrum::version2RoundTripKeepsWavelengthsAndValues()
{
    const QString name = path(QStringLiteral("round-trip2.spectral"));
    QZESpectrum saved = loaded({385.5, 402, 430.25}, {0.94, 0.000001, 412.90323});
    QZESpectrum read;

    const Outcome saveOutcome = captured([&] { return saved.save(name); });
    const Outcome loadOutcome = captured([&] { return read.loadNative(name); });

    QZE_COMPARE_OUTCOME(saveOutcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), QByteArray("spectral2 3 \n385.5 402 430.25 \n0.94 1e-06 412.903 "));
    QZE_COMPARE_OUTCOME(loadOutcome, true, nativeLoadLog("spectral2", 0, 0, 3, name), "");
    QZE_COMPARE_FLOATS(read.getWavelengths(), 0, 385.5, 402, 430.25);
    QZE_COMPARE_FLOATS(read.getSourceValues(), 0, 0.94, 1e-06, 412.903);
    QCOMPARE(read.getVersionID(), 2);
    QCOMPARE(read.getStartWavelength(), 0);
    QCOMPARE(read.getDeltaWavelength(), 0);
    QCOMPARE(read.getNumSamples(), 3);
}

// The general format with six significant digits and no trailing zeros.
void tst_QZESpectrum::valuesAreWrittenWithSixSignificantDigits_data()
{
    QTest::addColumn<float>("value");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("0.94") << 0.94f << QByteArray("0.94");
    QTest::newRow("0.000001") << 0.000001f << QByteArray("1e-06");
    QTest::newRow("0.00001") << 0.00001f << QByteArray("1e-05");
    QTest::newRow("0.0001") << 0.0001f << QByteArray("0.0001");
    QTest::newRow("412.90323") << 412.90323f << QByteArray("412.903");
    QTest::newRow("123456") << 123456.0f << QByteArray("123456");
    QTest::newRow("1234567") << 1234567.0f << QByteArray("1.23457e+06");
    QTest::newRow("100") << 100.0f << QByteArray("100");
    QTest::newRow("-0.125") << -0.125f << QByteArray("-0.125");
    QTest::newRow("0") << 0.0f << QByteArray("0");
}

void tst_QZESpectrum::valuesAreWrittenWithSixSignificantDigits()
{
    QFETCH(float, value);
    QFETCH(QByteArray, text);
    const QString name = path(QStringLiteral("digits.spectral"));
    QZESpectrum spectrum;
    spectrum.set(value, 380, 5, 1);

    const Outcome outcome = captured([&] { return spectrum.save(name); });

    QZE_COMPARE_OUTCOME(outcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), "spectral1 380 5 1 \n" + text + " ");
}

void tst_QZESpectrum::txtValuesOverManyLinesLoad()
{
    const QString name = write(QStringLiteral("lines.txt"), "400\n1\n\n410 2 420\n3\n\n\n");
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadTxt(name); });

    QZE_COMPARE_OUTCOME(outcome, true, txtLoadLog(name), "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400, 410, 420);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
    QCOMPARE(spectrum.getVersionID(), 2);
    QCOMPARE(spectrum.getStartWavelength(), 400);
    QCOMPARE(spectrum.getDeltaWavelength(), 0);
    QCOMPARE(spectrum.getNumSamples(), 3);
    QCOMPARE(spectrum.getFilename(), name);
    QVERIFY(spectrum.getUseSpectrum());
}

void tst_QZESpectrum::numberLiteralsInFilesFollowC_data()
{
    QTest::addColumn<QByteArray>("literal");
    QTest::addColumn<double>("value");

    QTest::newRow("plus sign") << QByteArray("+1.5") << 1.5;
    QTest::newRow("exponent") << QByteArray("1e2") << 100.0;
    QTest::newRow("leading point") << QByteArray(".5") << 0.5;
    QTest::newRow("trailing point") << QByteArray("5.") << 5.0;
    QTest::newRow("signed everything") << QByteArray("-.25E+1") << -2.5;
    QTest::newRow("negative exponent") << QByteArray("1E-2") << 0.01;
}

void tst_QZESpectrum::numberLiteralsInFilesFollowC()
{
    QFETCH(QByteArray, literal);
    QFETCH(double, value);
    const QString nativeName = write(QStringLiteral("literal.spectral"),
                                     "spectral2 2 \n+4e2 410 \n" + literal + " " + literal);
    const QString textName = write(QStringLiteral("literal.txt"),
                                   "+4e2 " + literal + "\n410 " + literal + "\n");
    QZESpectrum native;
    QZESpectrum text;

    const Outcome nativeOutcome = captured([&] { return native.loadNative(nativeName); });
    const Outcome textOutcome = captured([&] { return text.loadTxt(textName); });

    QZE_COMPARE_OUTCOME(nativeOutcome, true, nativeLoadLog("spectral2", 0, 0, 2, nativeName), "");
    QZE_COMPARE_OUTCOME(textOutcome, true, txtLoadLog(textName), "");
    QZE_COMPARE_FLOATS(native.getWavelengths(), 0, 400, 410);
    QZE_COMPARE_FLOATS(native.getSourceValues(), 0, value, value);
    QZE_COMPARE_FLOATS(text.getWavelengths(), 0, 400, 410);
    QZE_COMPARE_FLOATS(text.getSourceValues(), 0, value, value);
}

void tst_QZESpectrum::crlfLineEndsLoad_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("log");
    QTest::addColumn<std::vector<double>>("wavelengths");

    QString name = write(QStringLiteral("crlf1.spectral"),
                         "spectral1 400 10 3 \r\n1\r\n2\r\n3\r\n");
    QTest::newRow("version 1") << name << nativeLoadLog("spectral1", 400, 10, 3, name)
                               << std::vector<double>{400, 410, 420};
    name = write(QStringLiteral("crlf1-tight.spectral"), "spectral1 400 10 3\r\n1 2 3\r\n");
    QTest::newRow("version 1 without trailing space")
        << name << nativeLoadLog("spectral1", 400, 10, 3, name)
        << std::vector<double>{400, 410, 420};
    name = write(QStringLiteral("crlf2.spectral"), "spectral2 3 \r\n400 405 430 \r\n1 2 3 \r\n");
    QTest::newRow("version 2") << name << nativeLoadLog("spectral2", 0, 0, 3, name)
                               << std::vector<double>{400, 405, 430};
    name = write(QStringLiteral("crlf.txt"), "400 1\r\n405 2\r\n430 3\r\n");
    QTest::newRow("text") << name << txtLoadLog(name) << std::vector<double>{400, 405, 430};
}

void tst_QZESpectrum::crlfLineEndsLoad()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, log);
    QFETCH(std::vector<double>, wavelengths);
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.load(name); });

    QZE_COMPARE_OUTCOME(outcome, true, log, "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, wavelengths);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2, 3);
}

void tst_QZESpectrum::txtReadsPairsUntilZeroPair_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<std::vector<double>>("wavelengths");
    QTest::addColumn<std::vector<double>>("values");

    using V = std::vector<double>;
    QTest::newRow("zero pair in the middle") << QByteArray("400 1\n410 2\n0 0\n420 3\n")
                                             << V{400, 410} << V{1, 2};
    QTest::newRow("signed zero pair") << QByteArray("400 1\n-0 +0.0\n420 3\n") << V{400} << V{1};
    QTest::newRow("zero wavelength alone") << QByteArray("0 5\n400 1\n") << V{0, 400} << V{5, 1};
    QTest::newRow("zero value alone") << QByteArray("400 0\n410 2\n") << V{400, 410} << V{0, 2};
    QTest::newRow("text after pairs") << QByteArray("400 1\n410 2\n# end\n420 3\n")
                                      << V{400, 410} << V{1, 2};
    QTest::newRow("odd count") << QByteArray("400 1\n410") << V{400, 410} << V{1, 0};
}

void tst_QZESpectrum::txtReadsPairsUntilZeroPair()
{
    QFETCH(QByteArray, contents);
    QFETCH(std::vector<double>, wavelengths);
    QFETCH(std::vector<double>, values);
    const QString name = write(QStringLiteral("pairs.txt"), contents);
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadTxt(name); });

    QZE_COMPARE_OUTCOME(outcome, true, txtLoadLog(name), "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, wavelengths);
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, values);
    QCOMPARE(spectrum.getNumSamples(), int(wavelengths.size()));
    QCOMPARE(spectrum.getStartWavelength(), int(wavelengths.front()));
}

void tst_QZESpectrum::nativeValuesStartAfterTheFirstLine()
{
    const QString name = write(QStringLiteral("first-line.spectral"), "spectral1 380 5 2 9 9\n1 2");
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_COMPARE_OUTCOME(outcome, true, nativeLoadLog("spectral1", 380, 5, 2, name), "");
    QZE_COMPARE_FLOATS(spectrum.getSourceValues(), 0, 1, 2);
}

void tst_QZESpectrum::utf8FileNameRoundTrip()
{
    const QString name = path(QStringLiteral("gr\u00fcn \u263c.spectral"));
    QZESpectrum saved = onGrid(400, 10, {1, 2, 3});
    QZESpectrum read;

    const Outcome saveOutcome = captured([&] { return saved.save(name); });
    const Outcome loadOutcome = captured([&] { return read.load(name); });

    QZE_COMPARE_OUTCOME(saveOutcome, true, saveLog(name), "");
    QVERIFY(QFile::exists(name));
    QZE_COMPARE_OUTCOME(loadOutcome, true, nativeLoadLog("spectral1", 400, 10, 3, name), "");
    QCOMPARE(read.getFilename(), name);
    QZE_COMPARE_FLOATS(read.getSourceValues(), 0, 1, 2, 3);
}

// A German locale writes 1.000,5 for 1000.5; the files must not change.
void tst_QZESpectrum::saveUnderCommaLocaleWritesPoints()
{
    const QString name = path(QStringLiteral("comma.spectral"));
    CommaLocale german;
    if (!german.isActive())
        QSKIP("The de_DE.UTF-8 locale is not installed");
    QZESpectrum saved = loaded({1000.5, 2000}, {0.5, 1234});
    QZESpectrum read;

    const Outcome saveOutcome = captured([&] { return saved.save(name); });
    const Outcome loadOutcome = captured([&] { return read.loadNative(name); });

    QZE_COMPARE_OUTCOME(saveOutcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), QByteArray("spectral2 2 \n1000.5 2000 \n0.5 1234 "));
    QZE_COMPARE_OUTCOME(loadOutcome, true, nativeLoadLog("spectral2", 0, 0, 2, name), "");
    QZE_COMPARE_FLOATS(read.getWavelengths(), 0, 1000.5, 2000);
    QZE_COMPARE_FLOATS(read.getSourceValues(), 0, 0.5, 1234);
}

// --- Bad input ---------------------------------------------------------------------

void tst_QZESpectrum::hugeAnnouncedCountFailsWithoutAllocating_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("log");

    QTest::newRow("version 1") << QByteArray("spectral1 380 5 2000000000 \n1 2 3 ")
                               << nativeHeaderLog("spectral1", 380, 5, 2000000000);
    QTest::newRow("version 2") << QByteArray("spectral2 2000000000 \n400 410 420 \n1 2 3 ")
                               << nativeHeaderLog("spectral2", 0, 0, 2000000000);
    QTest::newRow("largest int") << QByteArray("spectral2 2147483647 \n400 1 ")
                                 << nativeHeaderLog("spectral2", 0, 0, 2147483647);
}

void tst_QZESpectrum::hugeAnnouncedCountFailsWithoutAllocating()
{
    verifyNativeLoadFails(UnexpectedEnd);
}

void tst_QZESpectrum::verifyNativeLoadFails(const QByteArray& error)
{
    QFETCH(QByteArray, contents);
    QFETCH(QByteArray, log);
    const QString name = write(QStringLiteral("failing.spectral"), contents);
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();
    const long peakBefore = peakResidentKiB();

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QVERIFY(peakResidentKiB() - peakBefore < 64 * 1024);
    QZE_COMPARE_OUTCOME(outcome, false, log, error);
    QVERIFY(!spectrum.getUseSpectrum());
    QVERIFY(!spectrum.isActive());
    QCOMPARE(spectrum.getNumSamples(), 81);
    QCOMPARE(spectrum.getVersionID(), 1);
}

void tst_QZESpectrum::negativeCountIsInvalidHeader_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("log");

    QTest::newRow("version 1") << QByteArray("spectral1 380 5 -3 \n1 2 3 ")
                               << versionLog("spectral1");
    QTest::newRow("version 2") << QByteArray("spectral2 -1 \n400 \n1 ") << versionLog("spectral2");
    QTest::newRow("smallest int") << QByteArray("spectral2 -2147483648 \n400 \n1 ")
                                  << versionLog("spectral2");
}

void tst_QZESpectrum::negativeCountIsInvalidHeader()
{
    verifyNativeLoadFails(InvalidHeader);
}

void tst_QZESpectrum::missingHeaderNumbersAreInvalidHeader_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("log");

    QTest::newRow("no count") << QByteArray("spectral1 380 5\n1 2 3") << versionLog("spectral1");
    QTest::newRow("numbers on the next line") << QByteArray("spectral1\n380 5 3\n1 2 3")
                                              << versionLog("spectral1");
    QTest::newRow("version 2 count on the next line") << QByteArray("spectral2\n3\n1 2 3 4 5 6")
                                                      << versionLog("spectral2");
    QTest::newRow("word for delta") << QByteArray("spectral1 380 x 3\n1 2 3")
                                    << versionLog("spectral1");
    QTest::newRow("count beyond int") << QByteArray("spectral1 380 5 99999999999\n1 2 3")
                                      << versionLog("spectral1");
    QTest::newRow("header only") << QByteArray("spectral2") << versionLog("spectral2");
}

void tst_QZESpectrum::missingHeaderNumbersAreInvalidHeader()
{
    verifyNativeLoadFails(InvalidHeader);
}

void tst_QZESpectrum::truncatedFileFailsAndClearsFlag_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("log");

    const QByteArray header1 = nativeHeaderLog("spectral1", 380, 5, 5);
    const QByteArray header2 = nativeHeaderLog("spectral2", 0, 0, 3);
    QTest::newRow("too short to hold the count") << QByteArray("spectral1 380 5 5 \n1 2 3")
                                                 << header1;
    QTest::newRow("values missing at the end")
        << QByteArray("spectral1 380 5 5 \n1 2 3") + QByteArray(20, ' ') << header1;
    QTest::newRow("malformed value") << QByteArray("spectral1 380 5 5 \n1 2 x 4 5  ") << header1;
    QTest::newRow("version 2 values missing")
        << QByteArray("spectral2 3 \n400 410 420 \n1 2        ") << header2;
    QTest::newRow("version 2 wavelengths missing")
        << QByteArray("spectral2 3 \n400 410") + QByteArray(20, ' ') << header2;
}

void tst_QZESpectrum::truncatedFileFailsAndClearsFlag()
{
    verifyNativeLoadFails(UnexpectedEnd);
}

// Random bytes from a fixed seed, after a first byte that cannot start a
// number or a version word, or after a valid native header.
void tst_QZESpectrum::binaryGarbageNeverLoads()
{
    std::mt19937 random(20240611u);
    std::uniform_int_distribution<int> byte(0, 255);
    std::uniform_int_distribution<int> length(1, 4096);
    const auto garbage = [&](const QByteArray& prefix) {
        QByteArray bytes = prefix;
        for (int i = length(random); i > 0; --i)
            bytes.append(char(byte(random)));
        return bytes;
    };
    const auto nonNumericByte = [&] { return QByteArray(1, char(0x80 + byte(random) % 0x80)); };
    const QString name = QStringLiteral("garbage");

    for (int round = 0; round < 200; ++round) {
        QZESpectrum spectrum;
        spectrum.setOne();
        spectrum.resample();
        const QByteArray raw = garbage(nonNumericByte());
        Outcome outcome = captured([&] { return spectrum.loadNativeData(raw, name); });
        QVERIFY(!outcome.result);
        QVERIFY(outcome.out.startsWith(NativeBanner + "version: "));
        QCOMPARE(outcome.err, UnknownVersion);

        const QByteArray headed = garbage(round % 2 ? "spectral1 380 5 81 \n" : "spectral2 40 \n");
        outcome = captured([&] { return spectrum.loadNativeData(headed, name); });
        QVERIFY(!outcome.result);
        QVERIFY(outcome.out.startsWith(NativeBanner));
        QVERIFY2(outcome.err == UnexpectedEnd || outcome.err == NotIncreasing,
                 outcome.err.constData());

        const QByteArray text = garbage(nonNumericByte());
        outcome = captured([&] { return spectrum.loadTxtData(text, name); });
        QZE_COMPARE_OUTCOME(outcome, false, TxtBanner, UnexpectedFormat);
        QVERIFY(!spectrum.getUseSpectrum());
    }
}

// Stand-ins for a file of a gigabyte of digits: one number far beyond the
// float range, or a count the file cannot hold.
void tst_QZESpectrum::hugeDigitRunFailsQuickly_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("filler");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");

    QTest::newRow("native digits") << int(LoadNative) << QByteArray("spectral1 380 5 81 \n")
                                   << QByteArray("7") << nativeHeaderLog("spectral1", 380, 5, 81)
                                   << UnexpectedEnd;
    QTest::newRow("text digits") << int(LoadTxt) << QByteArray() << QByteArray("7") << TxtBanner
                                 << UnexpectedFormat;
    QTest::newRow("native count beyond the numbers")
        << int(LoadNative) << QByteArray("spectral1 380 5 2000000000 \n") << QByteArray("7 ")
        << nativeHeaderLog("spectral1", 380, 5, 2000000000) << UnexpectedEnd;
}

void tst_QZESpectrum::hugeDigitRunFailsQuickly()
{
    QFETCH(int, operation);
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, filler);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const int size = 50 * 1024 * 1024;
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString name = writeFile(dir.filePath(QStringLiteral("digits")),
                                   header + filler.repeated(size / filler.size()));
    QCOMPARE(QFileInfo(name).size(), qint64(header.size() + size));
    QZESpectrum spectrum;
    QElapsedTimer timer;
    timer.start();

    const Outcome outcome = captured([&] { return runFileOperation(spectrum, operation, name); });

    QVERIFY2(timer.elapsed() < 20000, qPrintable(QStringLiteral("%1 ms").arg(timer.elapsed())));
    QZE_COMPARE_OUTCOME(outcome, false, out, err);
    QVERIFY(spectrum.getWavelengths().size() <= 81);
}

// --- Non-finite numbers and grids --------------------------------------------------

void tst_QZESpectrum::nonFiniteNumbersAreMalformed_data()
{
    QTest::addColumn<int>("operation");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("out");
    QTest::addColumn<QByteArray>("err");

    const QByteArray header2 = nativeHeaderLog("spectral2", 0, 0, 3);
    const QByteArray header1 = nativeHeaderLog("spectral1", 400, 10, 3);
    QTest::newRow("native nan wavelength") << int(LoadNative)
                                           << QByteArray("spectral2 3 \n400 nan 600 \n1 2 3 ")
                                           << header2 << NonFiniteWavelength;
    QTest::newRow("native infinite last wavelength")
        << int(LoadNative) << QByteArray("spectral2 3 \n400 500 inf \n1 2 3 ") << header2
        << NonFiniteWavelength;
    QTest::newRow("native first wavelength minus infinity")
        << int(LoadNative) << QByteArray("spectral2 3 \n-inf 500 600 \n1 2 3 ") << header2
        << NonFiniteWavelength;
    QTest::newRow("native nan value") << int(LoadNative)
                                      << QByteArray("spectral1 400 10 3 \n1 nan 3 ") << header1
                                      << NonFiniteValue;
    QTest::newRow("native infinite value") << int(LoadNative)
                                           << QByteArray("spectral1 400 10 3 \n1 2 -inf ")
                                           << header1 << NonFiniteValue;
    QTest::newRow("text nan wavelength") << int(LoadTxt) << QByteArray("nan 1\n600 2\n")
                                         << TxtBanner << NonFiniteWavelength;
    QTest::newRow("text infinite last wavelength") << int(LoadTxt)
                                                   << QByteArray("400 1\ninf 2\n") << TxtBanner
                                                   << NonFiniteWavelength;
    QTest::newRow("text nan value") << int(LoadTxt) << QByteArray("400 1\n500 nan\n")
                                    << TxtBanner << NonFiniteValue;
}

void tst_QZESpectrum::nonFiniteNumbersAreMalformed()
{
    QFETCH(int, operation);
    QFETCH(QByteArray, contents);
    QFETCH(QByteArray, out);
    QFETCH(QByteArray, err);
    const QString name = write(operation == LoadTxt ? QStringLiteral("nonfinite.txt")
                                                    : QStringLiteral("nonfinite.spectral"),
                               contents);
    QZESpectrum spectrum = keptOne();

    const Outcome outcome = captured([&] { return runFileOperation(spectrum, operation, name); });

    QZE_COMPARE_OUTCOME(outcome, false, out, err);
    QVERIFY(!spectrum.getUseSpectrum());
    QZE_CHECK(verifyKeptFields(spectrum));
}

void tst_QZESpectrum::nonPositiveDeltaIsMalformed_data()
{
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("log");

    QTest::newRow("zero") << QByteArray("spectral1 380 0 3 \n1 2 3 ") << versionLog("spectral1");
    QTest::newRow("negative") << QByteArray("spectral1 380 -5 3 \n1 2 3 ")
                              << versionLog("spectral1");
    QTest::newRow("zero without samples") << QByteArray("spectral1 380 0 0 \n")
                                          << versionLog("spectral1");
}

void tst_QZESpectrum::nonPositiveDeltaIsMalformed()
{
    verifyNativeLoadFails(NonPositiveDelta);
}

// --- Bounded reading ---------------------------------------------------------------

namespace {

// A two-column text of one pair and then blanks, size bytes in all.
QByteArray paddedPair(qint64 size)
{
    QByteArray bytes("400 1\n");
    bytes.append(QByteArray(int(size - bytes.size()), ' '));
    return bytes;
}

// Writes bytes into a named pipe from a thread of its own; a reader that
// stops early makes the writes fail (SIGPIPE is ignored while it runs).
class PipeWriter
{
public:
    PipeWriter(const QString& path, QByteArray bytes)
        : _previous(std::signal(SIGPIPE, SIG_IGN)),
          _thread([path, bytes] {
              QFile pipe(path);
              if (pipe.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
                  pipe.write(bytes);
          })
    {
    }
    ~PipeWriter()
    {
        _thread.join();
        std::signal(SIGPIPE, _previous);
    }
    PipeWriter(const PipeWriter&) = delete;
    PipeWriter& operator=(const PipeWriter&) = delete;

private:
    void (*_previous)(int);
    std::thread _thread;
};

// Whether the child has ended, leaving it to be waited for.
bool hasExited(pid_t pid)
{
    siginfo_t info{};
    return waitid(P_PID, id_t(pid), &info, WEXITED | WNOHANG | WNOWAIT) == 0 && info.si_pid == pid;
}

bool isOpenIn(pid_t pid, const QString& path)
{
    const QDir fds(QStringLiteral("/proc/%1/fd").arg(pid));
    for (const QFileInfo& fd : fds.entryInfoList(QDir::Files | QDir::System)) {
        if (fd.symLinkTarget() == path)
            return true;
    }
    return false;
}

// The entries of a folder, to see a writer's temporary file appear.
int entryCount(const QString& folder)
{
    return int(QDir(folder).entryList(QDir::Files | QDir::Hidden | QDir::System).size());
}

} // namespace

void tst_QZESpectrum::inputOfExactlyTheLimitLoads()
{
    const QString name = write(QStringLiteral("limit.txt"), paddedPair(QZESpectrum::MaxFileSize));
    QZESpectrum spectrum;

    const Outcome outcome = captured([&] { return spectrum.loadTxt(name); });

    QZE_COMPARE_OUTCOME(outcome, true, txtLoadLog(name), "");
    QZE_COMPARE_FLOATS(spectrum.getWavelengths(), 0, 400);
    QFile::remove(name);
}

void tst_QZESpectrum::fileBeyondTheLimitIsRefusedWhole()
{
    const QString name =
        write(QStringLiteral("beyond.txt"), paddedPair(QZESpectrum::MaxFileSize + 1));
    QZESpectrum spectrum = keptOne();

    const Outcome outcome = captured([&] { return spectrum.loadTxt(name); });

    QZE_COMPARE_OUTCOME(outcome, false, TxtBanner, TooLarge);
    QVERIFY(!spectrum.getUseSpectrum());
    QZE_CHECK(verifyKeptFields(spectrum));
    QFile::remove(name);
}

void tst_QZESpectrum::dataBeyondTheLimitIsRefusedWhole()
{
    const QByteArray data = paddedPair(QZESpectrum::MaxFileSize + 1);
    QZESpectrum spectrum;

    const Outcome outcome =
        captured([&] { return spectrum.loadTxtData(data, QStringLiteral("memory.txt")); });

    QZE_COMPARE_OUTCOME(outcome, false, TxtBanner, TooLarge);
    QVERIFY(spectrum.getWavelengths().empty());
}

// Endless zeros: read only up to the limit, then refused; never a spectrum
// of the zeros read so far.
void tst_QZESpectrum::endlessDeviceIsRefusedAsTooLarge()
{
    const QString name = path(QStringLiteral("zeros.spectral"));
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), name));
    QZESpectrum spectrum;
    QElapsedTimer timer;
    timer.start();

    const Outcome outcome = captured([&] { return spectrum.loadNative(name); });

    QZE_COMPARE_OUTCOME(outcome, false, NativeBanner, TooLarge);
    QVERIFY2(timer.elapsed() < 10000, qPrintable(QString::number(timer.elapsed())));
}

// More than a pipe holds at once, so the reader must go on until the
// writer closes.
void tst_QZESpectrum::pipeIsReadToItsEnd()
{
    const QString name = path(QStringLiteral("pipe.txt"));
    QVERIFY(mkfifo(QFile::encodeName(name).constData(), 0600) == 0);
    QByteArray text;
    const int pairs = 30000;
    for (int i = 0; i < pairs; ++i)
        text += QByteArray::number(1000 + i) + " 0.5\n";
    QZESpectrum spectrum;
    Outcome outcome;
    {
        PipeWriter writer(name, text);
        outcome = captured([&] { return spectrum.loadTxt(name); });
    }

    QZE_COMPARE_OUTCOME(outcome, true, txtLoadLog(name), "");
    QCOMPARE(spectrum.getNumSamples(), pairs);
    QCOMPARE(spectrum.getWavelengths().back(), float(1000 + pairs - 1));
    QFile::remove(name);
}

void tst_QZESpectrum::pipeBeyondTheLimitIsRefused()
{
    const QString name = path(QStringLiteral("endless.txt"));
    QVERIFY(mkfifo(QFile::encodeName(name).constData(), 0600) == 0);
    QZESpectrum spectrum;
    Outcome outcome;
    {
        PipeWriter writer(name, QByteArray("400 1 ").repeated(int(QZESpectrum::MaxFileSize / 6 + 1)));
        outcome = captured([&] { return spectrum.loadTxt(name); });
    }

    QZE_COMPARE_OUTCOME(outcome, false, TxtBanner, TooLarge);
    QFile::remove(name);
}

// A child loads a 36 MB file while this process cuts it to 16 MiB just
// after the child has opened it. A mapping would fault (SIGBUS) on the pages
// cut away; a plain read ends early or not at all, and the load answers
// either way.
void tst_QZESpectrum::fileTruncatedWhileReadGivesAnOrdinaryResult()
{
    const int count = 4 * 1000 * 1000;
    QByteArray text = "spectral1 380 1 " + QByteArray::number(count) + " \n";
    text += QByteArray("0.123456 ").repeated(count);
    // The file is open in the child for some tens of milliseconds only; on a
    // busy machine this process may not see it open before the child is
    // done, and then the child loads the file afresh.
    bool truncated = false;
    for (int attempt = 0; attempt < 10 && !truncated; ++attempt) {
        const QString name = write(QStringLiteral("shrinking.spectral"), text);
        QCOMPARE(QFileInfo(name).size(), qint64(text.size()));

        const pid_t pid = fork();
        if (pid == 0) {
            QZESpectrum spectrum;
            const Outcome outcome = captured([&] { return spectrum.loadNative(name); });
            _exit(outcome.result ? 0 : 1);
        }
        QVERIFY(pid > 0);
        for (int waited = 0; waited < 200000 && !truncated && !hasExited(pid); ++waited) {
            if (isOpenIn(pid, name)) {
                // Past the opening, into the reading (or, for a mapping, the
                // parsing). The cut falls on a boundary of any page size, so
                // that no page straddles the new end.
                usleep(2000);
                truncated = ::truncate(QFile::encodeName(name).constData(), 16 << 20) == 0;
            }
        }
        const ChildResult result = waitForChild(pid);

        QVERIFY2(result.exited, qPrintable(QStringLiteral("signal %1").arg(result.signal)));
        QVERIFY(result.exitCode == 0 || result.exitCode == 1);
        QFile::remove(name);
    }
    QVERIFY(truncated);
}

void tst_QZESpectrum::loadDataTellsWhereReadingStopped_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("contents");
    QTest::addColumn<QByteArray>("unread"); // the text at the stop, empty when all was read

    QTest::newRow("text read whole") << "a.txt" << QByteArray("400 1\n410 2\n  \n") << QByteArray();
    QTest::newRow("text ending at a zero pair") << "a.txt" << QByteArray("400 1\n0 0\n")
                                                << QByteArray();
    QTest::newRow("text after the zero pair") << "a.txt" << QByteArray("400 1\n0 0\n420 3\n")
                                              << QByteArray("420 3\n");
    QTest::newRow("comment in the middle") << "a.txt"
                                           << QByteArray("400 1\n410 2\n# end\n420 3\n")
                                           << QByteArray("# end\n420 3\n");
    QTest::newRow("comma separated") << "a.txt" << QByteArray("400,1\n410,2\n")
                                     << QByteArray("400,1\n410,2\n");
    QTest::newRow("word for a value") << "a.txt" << QByteArray("500 abc\n")
                                      << QByteArray("500 abc\n");
    QTest::newRow("lone number at the end") << "a.txt" << QByteArray("400 1\n410")
                                            << QByteArray("410");
    QTest::newRow("native read whole") << "a.spectral"
                                       << QByteArray("spectral1 400 10 2 \n1 2 \n")
                                       << QByteArray();
    QTest::newRow("native numbers beyond the count")
        << "a.spectral" << QByteArray("spectral1 400 10 2 \n1 2 3 ") << QByteArray("3 ");
    QTest::newRow("native header with more numbers")
        << "a.spectral" << QByteArray("spectral1 400 10 2 9 9\n1 2") << QByteArray("9 9\n1 2");
}

void tst_QZESpectrum::loadDataTellsWhereReadingStopped()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, contents);
    QFETCH(QByteArray, unread);
    QZESpectrum spectrum;
    qint64 unreadAt = -1;

    const Outcome outcome = captured([&] { return spectrum.loadData(contents, name, unreadAt); });

    QVERIFY(outcome.result);
    QCOMPARE(contents.mid(int(unreadAt)), unread);
}

void tst_QZESpectrum::loadDataWithUnknownSuffixFailsSilently()
{
    QZESpectrum spectrum = keptOne();
    qint64 unreadAt = -1;

    const Outcome outcome = captured([&] {
        return spectrum.loadData("spectral1 400 10 1 \n1 ", QStringLiteral("a.dat"), unreadAt);
    });

    QZE_COMPARE_OUTCOME(outcome, false, "", "");
    QCOMPARE(unreadAt, qint64(-1));
    QVERIFY(spectrum.getUseSpectrum());
}

// --- Atomic saving -------------------------------------------------------------------

namespace {

// What a save in a child answers: 0 written and reported, 1 refused with the
// write error reported, 2 anything else.
int saveAnswer(QZESpectrum& spectrum, const QString& name)
{
    const Outcome outcome = captured([&] { return spectrum.save(name); });
    if (outcome.result)
        return outcome.out == saveLog(name) ? 0 : 2;
    const QByteArray refused = saveStartLog(name) + "Error writing Spectrum File: "
                               + name.toUtf8() + "\n";
    return outcome.out == refused && outcome.err.isEmpty() ? 1 : 2;
}

// A version 2 spectrum of count samples, about 18 bytes of text each.
QZESpectrum irregularSpectrum(int count)
{
    std::vector<float> wavelengths;
    std::vector<float> values;
    for (int i = 0; i < count; ++i) {
        wavelengths.push_back(380.0f + 0.001f * float(i));
        values.push_back(0.123456f + 1e-7f * float(i % 1000));
    }
    QZESpectrum spectrum;
    spectrum.load(count, wavelengths.data(), values.data());
    return spectrum;
}

} // namespace

void tst_QZESpectrum::saveOnFullDiskKeepsTheOldFileAndFails_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<qint64>("limit");

    // The small file fits whole in a write buffer: only its flush can fail.
    QTest::newRow("small file") << 10 << qint64(64);
    QTest::newRow("large file") << 20000 << qint64(64 * 1024);
}

void tst_QZESpectrum::saveOnFullDiskKeepsTheOldFileAndFails()
{
    QFETCH(int, count);
    QFETCH(qint64, limit);
    const QByteArray old("spectral1 400 10 3 \n0.25 0.5 0.75 ");
    const QString name = write(QStringLiteral("full-disk.spectral"), old);
    QZESpectrum spectrum = irregularSpectrum(count);

    const ChildResult result =
        runWithFileSizeLimit(limit, [&] { return saveAnswer(spectrum, name); });

    QVERIFY(result.exited);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(readFile(name), old);
    QCOMPARE(QDir(_dir.path()).entryList({QStringLiteral("full-disk*")}, QDir::Files),
             QStringList{QStringLiteral("full-disk.spectral")});
}

// Whenever the kill lands, the file holds either its old bytes or the whole
// new file, never a part. The child marks when it starts to save; the kill
// follows as soon as the file or its folder changes, or 50 ms later (a
// temporary file may have no name in the folder), well within the save.
void tst_QZESpectrum::saveKilledMidwayLeavesOldOrWholeNewFile()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QByteArray old("spectral1 400 10 3 \n0.25 0.5 0.75 ");
    const QString name = writeFile(dir.filePath(QStringLiteral("killed.spectral")), old);
    QZESpectrum spectrum = irregularSpectrum(2000000);
    const QString wholeName = dir.filePath(QStringLiteral("whole.spectral"));
    QVERIFY(captured([&] { return spectrum.save(wholeName); }).result);
    const QByteArray whole = readFile(wholeName);
    QVERIFY(QFile::remove(wholeName));
    const QString marker = dir.filePath(QStringLiteral("saving"));
    QElapsedTimer sinceMarker;

    const ChildResult result = killChildDuringWrite(
        [&] {
            writeFile(marker, "1");
            captured([&] { return spectrum.save(name); });
        },
        [&] {
            if (!QFile::exists(marker))
                return false;
            if (!sinceMarker.isValid())
                sinceMarker.start();
            return entryCount(dir.path()) != 2 || QFileInfo(name).size() != old.size()
                   || sinceMarker.elapsed() >= 50;
        });

    QCOMPARE(result.signal, SIGKILL);
    const QByteArray after = readFile(name);
    QVERIFY2(after == old || after == whole,
             qPrintable(QStringLiteral("%1 bytes").arg(after.size())));
}

void tst_QZESpectrum::saveKeepsTheFilesPermissions()
{
    const QString name = write(QStringLiteral("permissions.spectral"), "spectral1 400 10 1 \n1 ");
    // Owner read and write, group read: what no umask gives a new file.
    QVERIFY(QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadGroup));
    const QFile::Permissions before = QFile::permissions(name);
    QZESpectrum spectrum;
    spectrum.setOne();

    QVERIFY(captured([&] { return spectrum.save(name); }).result);

    QCOMPARE(QFile::permissions(name), before);
    QVERIFY(readFile(name).startsWith("spectral1 380 5 81 \n"));
}

void tst_QZESpectrum::saveReportsWhyTheFileSystemRefused()
{
    const QString name = path(QStringLiteral("no/such/folder/out.spectral"));
    QZESpectrum spectrum;
    spectrum.setOne();
    QString reason;

    const Outcome outcome = captured([&] { return spectrum.save(name, &reason); });

    QZE_COMPARE_OUTCOME(outcome, false, saveStartLog(name), "");
    QVERIFY2(reason.contains(QStringLiteral("No such file or directory")), qPrintable(reason));
}

void tst_QZESpectrum::saveOverTheFileJustLoadedKeepsItsContent()
{
    const QByteArray bytes("spectral2 3 \n400 450.5 700 \n0.25 1 2 ");
    const QString name = write(QStringLiteral("same.spectral"), bytes);
    QZESpectrum spectrum;
    QVERIFY(captured([&] { return spectrum.loadNative(name); }).result);

    const Outcome outcome = captured([&] { return spectrum.save(name); });

    QZE_COMPARE_OUTCOME(outcome, true, saveLog(name), "");
    QCOMPARE(readFile(name), bytes);
}

// --- Shortcuts against the plain arithmetic -------------------------------------

namespace {

QZESpectrum loadedSource(const SpectrumReference::Source& source)
{
    QZESpectrum spectrum;
    spectrum.load(int(source.wavelengths.size()), source.wavelengths.data(), source.values.data());
    return spectrum;
}

std::vector<float> floatGrid(int start, int delta, int num)
{
    std::vector<float> grid;
    for (int i = 0; i < num; ++i)
        grid.push_back(float(start + i * delta));
    return grid;
}

// The Smits reflectance of r, g, b on the grid the bases are resampled to,
// branch by branch, each sample clamped to 0..1 after the 0.94 scale.
std::vector<float> plainSmits(float r, float g, float b, int num)
{
    const QZESpectralData* data = QZESpectralData::getInstance();
    const auto basis = [data](QZESpectralData::Basis which, int i) {
        return data->getReflectanceBasis(which).getSourceValues()[size_t(i)];
    };
    using D = QZESpectralData;
    std::vector<float> values;
    for (int i = 0; i < num; ++i) {
        float value;
        if (r <= g && r <= b) {
            value = r * basis(D::White, i);
            if (b >= g)
                value += (g - r) * basis(D::Cyan, i) + (b - g) * basis(D::Blue, i);
            else
                value += (b - r) * basis(D::Cyan, i) + (g - b) * basis(D::Green, i);
        } else if (g <= r && g <= b) {
            value = g * basis(D::White, i);
            if (b >= r)
                value += (r - g) * basis(D::Magenta, i) + (b - r) * basis(D::Blue, i);
            else
                value += (b - g) * basis(D::Magenta, i) + (r - b) * basis(D::Red, i);
        } else {
            value = b * basis(D::White, i);
            if (g >= r)
                value += (r - b) * basis(D::Yellow, i) + (g - r) * basis(D::Green, i);
            else
                value += (g - b) * basis(D::Yellow, i) + (r - g) * basis(D::Red, i);
        }
        value *= 0.94f;
        values.push_back(std::min(std::max(value, 0.0f), 1.0f));
    }
    return values;
}

} // namespace

void tst_QZESpectrum::resampleMatchesPlainBandAveragesOnRandomSources()
{
    std::mt19937 generator(160);
    QZESpectrum reused; // keeps its weights from one source to the next
    for (int trial = 0; trial < 3000; ++trial) {
        const SpectrumReference::Source source = SpectrumReference::randomSource(generator);
        const std::vector<float> expected = SpectrumReference::bands(source.wavelengths, source.values);
        QVERIFY2(SpectrumReference::sameBits(loadedSource(source).getSamples(), expected),
                 qPrintable(QStringLiteral("fresh spectrum, trial %1").arg(trial)));
        reused.editWavelengths() = source.wavelengths;
        reused.editSourceValues() = source.values;
        reused.resample();
        QVERIFY2(SpectrumReference::sameBits(reused.getSamples(), expected),
                 qPrintable(QStringLiteral("reused spectrum, trial %1").arg(trial)));
    }
}

void tst_QZESpectrum::resampleSeesAnEditThroughAKeptReference()
{
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();
    std::vector<float>& values = spectrum.editSourceValues();
    values[30] = 3.0f; // 530 nm, inside band 15
    spectrum.resample();
    QVERIFY(spectrum.getSamples()[15] > 1.0f);
    QVERIFY(SpectrumReference::sameBits(
        spectrum.getSamples(), SpectrumReference::bands(spectrum.getWavelengths(), values)));
}

void tst_QZESpectrum::resampleRestoresBandsEditedSinceTheLastResample()
{
    QZESpectrum spectrum;
    spectrum.setOne();
    spectrum.resample();
    spectrum.editSamples()[7] = 42.0f;
    spectrum.resample();
    QCOMPARE(spectrum.getSamples(), std::vector<float>(40, 1.0f));
    spectrum.editSamples().clear();
    spectrum.resample();
    QCOMPARE(spectrum.getSamples(), std::vector<float>(40, 1.0f));
}

void tst_QZESpectrum::resampleAfterMovedWavelengthsUsesTheNewOnes()
{
    QZESpectrum spectrum;
    spectrum.set(0.0f, 380, 5, 81);
    spectrum.editSourceValues()[0] = 10.0f; // a spike at the first sample
    spectrum.resample();
    const float before = spectrum.getSamples()[0];
    for (float& wavelength : spectrum.editWavelengths())
        wavelength += 100.0f; // the spike moves to 480 nm, band 10
    spectrum.resample();
    QVERIFY(spectrum.getSamples()[0] != before);
    QVERIFY(SpectrumReference::sameBits(
        spectrum.getSamples(),
        SpectrumReference::bands(spectrum.getWavelengths(), spectrum.getSourceValues())));
}

void tst_QZESpectrum::setRGBMatchesPlainSmitsMixOnRandomColours_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("num");
    QTest::newRow("380, 5, 81") << 380 << 5 << 81;
    QTest::newRow("400, 10, 31") << 400 << 10 << 31;
    QTest::newRow("360, 1, 471") << 360 << 1 << 471;
}

void tst_QZESpectrum::setRGBMatchesPlainSmitsMixOnRandomColours()
{
    QFETCH(int, start);
    QFETCH(int, delta);
    QFETCH(int, num);
    std::mt19937 generator(1601);
    std::uniform_real_distribution<float> channel(-0.2f, 1.2f);
    std::uniform_int_distribution<int> level(0, 4); // equal channels on a coarse scale
    QZESpectrum spectrum;
    for (int trial = 0; trial < 3000; ++trial) {
        float rgb[3];
        for (float& c : rgb)
            c = trial % 4 == 0 ? float(level(generator)) / 4.0f : channel(generator);
        spectrum.setRGB(rgb[0], rgb[1], rgb[2], start, delta, num);
        spectrum.resample(); // as the colour dialog does after every setRGB
        const std::vector<float> values = plainSmits(rgb[0], rgb[1], rgb[2], num);
        const QString where = QStringLiteral("trial %1: %2 %3 %4")
                                  .arg(trial)
                                  .arg(double(rgb[0]))
                                  .arg(double(rgb[1]))
                                  .arg(double(rgb[2]));
        QVERIFY2(SpectrumReference::sameBits(spectrum.getSourceValues(), values), qPrintable(where));
        QVERIFY2(SpectrumReference::sameBits(spectrum.getSamples(),
                                             SpectrumReference::bands(floatGrid(start, delta, num), values)),
                 qPrintable(where));
    }
}

void tst_QZESpectrum::saveWritesTheStreamsBytesForRandomValues()
{
    std::mt19937 generator(16016);
    std::uniform_real_distribution<float> unit(0.0f, 1.0f);
    QZESpectrum spectrum;
    std::vector<float> wavelengths;
    std::vector<float> values;
    for (int i = 0; i < 200000; ++i) {
        wavelengths.push_back(380.0f + float(i) * 0.001953125f);
        std::uint32_t bits = std::uint32_t(generator());
        float anyFloat;
        std::memcpy(&anyFloat, &bits, sizeof anyFloat);
        values.push_back(i % 2 == 0 ? unit(generator) : anyFloat); // nan and inf among them
    }
    QVERIFY(spectrum.load(int(values.size()), wavelengths.data(), values.data()));
    std::ostringstream expected; // the way spectra were always written
    expected.imbue(std::locale::classic());
    expected << "spectral2 " << values.size() << " \n";
    for (float wavelength : wavelengths)
        expected << wavelength << ' ';
    expected << '\n';
    for (float value : values)
        expected << value << ' ';

    const QString name = path(QStringLiteral("random.spectral"));
    QVERIFY(captured([&] { return spectrum.save(name); }).result);
    QCOMPARE(readFile(name), QByteArray::fromStdString(expected.str()));
}

QTEST_APPLESS_MAIN(tst_QZESpectrum)
#include "tst_QZESpectrum.moc"
