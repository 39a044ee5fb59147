#include "QZESpectralTables.h"

#include <QtTest>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

Q_DECLARE_METATYPE(const float *)

namespace {

// A CSV file of the library's data folder: header names and the text of
// every cell, read independently of the build's generator.
struct CsvFile
{
    std::vector<std::string> header;
    std::vector<std::vector<std::string>> rows;
};

std::vector<std::string> splitAtCommas(const std::string &line)
{
    std::vector<std::string> cells;
    std::string::size_type start = 0;
    for (;;) {
        const std::string::size_type comma = line.find(',', start);
        cells.push_back(line.substr(start, comma - start));
        if (comma == std::string::npos)
            return cells;
        start = comma + 1;
    }
}

CsvFile readCsv(const QString &fileName)
{
    CsvFile csv;
    const QString path = QStringLiteral(QTCOLOR_SPECTRAL_DATA_DIR "/") + fileName;
    std::ifstream in(path.toStdString());
    std::string line;
    if (std::getline(in, line))
        csv.header = splitAtCommas(line);
    while (std::getline(in, line))
        csv.rows.push_back(splitAtCommas(line));
    return csv;
}

// Integral of the piecewise-linear curve through (lambda[i], values[i]) over
// [from, to], segment by segment.
double integralOfLinearInterpolant(const float *lambda, const float *values, int count,
                                   double from, double to)
{
    double integral = 0.0;
    for (int i = 0; i + 1 < count; ++i) {
        const double l0 = lambda[i], l1 = lambda[i + 1];
        const double u = std::max(l0, from), v = std::min(l1, to);
        if (u >= v)
            continue;
        const double slope = (double(values[i + 1]) - values[i]) / (l1 - l0);
        const double fu = values[i] + slope * (u - l0);
        const double fv = values[i] + slope * (v - l0);
        integral += (v - u) * (fu + fv) / 2.0;
    }
    return integral;
}

// Average of the CIE 1931 y-bar over the 10 nm band starting at bandStart.
double yBandAverage(double bandStart)
{
    return integralOfLinearInterpolant(CIE1931cmf_lambda, CIE1931cmf_Y, CIE1931cmf_count,
                                       bandStart, bandStart + 10.0) / 10.0;
}

const char cie1931File[] = "cie1931_cmf_1nm.csv";
const char cie2006File[] = "cie2006_2deg_xyz_cmf_1nm.csv";
const char illuminantFile[] = "cie_illuminants_A_D65_E_5nm.csv";
const char daylightFile[] = "cie_daylight_components.csv";
const char smitsFile[] = "smits_rgb_to_spectrum_32.csv";

} // namespace

class tst_QZESpectralTables : public QObject
{
    Q_OBJECT

private slots:
    void everyTableHoldsItsCsvColumnAsFloat_data();
    void everyTableHoldsItsCsvColumnAsFloat();
    void wavelengthsRunEvenlyOverTheTabulatedRange_data();
    void wavelengthsRunEvenlyOverTheTabulatedRange();
    void referenceValuesAreExact_data();
    void referenceValuesAreExact();
    void smitsBasesMatchTheirPublishedFourDecimalValues_data();
    void smitsBasesMatchTheirPublishedFourDecimalValues();
    void illuminantEIsOneEverywhere();
    void cmfSumsMatchThePublishedTotals_data();
    void cmfSumsMatchThePublishedTotals();
    void yBandAveragesOver380To780SumTo10_6856399();
    void yBandAverageMatchesThePublishedBand_data();
    void yBandAverageMatchesThePublishedBand();
};

void tst_QZESpectralTables::everyTableHoldsItsCsvColumnAsFloat_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("column");
    QTest::addColumn<const float *>("table");
    QTest::addColumn<int>("count");

    const struct
    {
        const char *file;
        const char *column;
        const char *name;
        const float *table;
        int count;
    } tables[] = {
        {cie1931File, "lambda", "CIE1931cmf_lambda", CIE1931cmf_lambda, CIE1931cmf_count},
        {cie1931File, "x", "CIE1931cmf_X", CIE1931cmf_X, CIE1931cmf_count},
        {cie1931File, "y", "CIE1931cmf_Y", CIE1931cmf_Y, CIE1931cmf_count},
        {cie1931File, "z", "CIE1931cmf_Z", CIE1931cmf_Z, CIE1931cmf_count},
        {cie2006File, "lambda", "CIE2006cmf_lambda", CIE2006cmf_lambda, CIE2006cmf_count},
        {cie2006File, "x", "CIE2006cmf_X", CIE2006cmf_X, CIE2006cmf_count},
        {cie2006File, "y", "CIE2006cmf_Y", CIE2006cmf_Y, CIE2006cmf_count},
        {cie2006File, "z", "CIE2006cmf_Z", CIE2006cmf_Z, CIE2006cmf_count},
        {illuminantFile, "lambda", "CIEilluminant_lambda", CIEilluminant_lambda, CIEilluminant_count},
        {illuminantFile, "A", "CIEilluminant_A", CIEilluminant_A, CIEilluminant_count},
        {illuminantFile, "D65", "CIEilluminant_D65", CIEilluminant_D65, CIEilluminant_count},
        {illuminantFile, "E", "CIEilluminant_E", CIEilluminant_E, CIEilluminant_count},
        {daylightFile, "lambda", "CIEdaylight_lambda", CIEdaylight_lambda, CIEdaylight_count},
        {daylightFile, "S0", "CIEdaylight_S0", CIEdaylight_S0, CIEdaylight_count},
        {daylightFile, "S1", "CIEdaylight_S1", CIEdaylight_S1, CIEdaylight_count},
        {daylightFile, "S2", "CIEdaylight_S2", CIEdaylight_S2, CIEdaylight_count},
        {smitsFile, "lambda", "RGB2Spec_lambda", RGB2Spec_lambda, RGB2Spec_count},
        {smitsFile, "refl_white", "RGB2ReflSpec_White", RGB2ReflSpec_White, RGB2Spec_count},
        {smitsFile, "refl_cyan", "RGB2ReflSpec_Cyan", RGB2ReflSpec_Cyan, RGB2Spec_count},
        {smitsFile, "refl_magenta", "RGB2ReflSpec_Magenta", RGB2ReflSpec_Magenta, RGB2Spec_count},
        {smitsFile, "refl_yellow", "RGB2ReflSpec_Yellow", RGB2ReflSpec_Yellow, RGB2Spec_count},
        {smitsFile, "refl_red", "RGB2ReflSpec_Red", RGB2ReflSpec_Red, RGB2Spec_count},
        {smitsFile, "refl_green", "RGB2ReflSpec_Green", RGB2ReflSpec_Green, RGB2Spec_count},
        {smitsFile, "refl_blue", "RGB2ReflSpec_Blue", RGB2ReflSpec_Blue, RGB2Spec_count},
        {smitsFile, "illum_white", "RGB2IlluSpec_White", RGB2IlluSpec_White, RGB2Spec_count},
        {smitsFile, "illum_cyan", "RGB2IlluSpec_Cyan", RGB2IlluSpec_Cyan, RGB2Spec_count},
        {smitsFile, "illum_magenta", "RGB2IlluSpec_Magenta", RGB2IlluSpec_Magenta, RGB2Spec_count},
        {smitsFile, "illum_yellow", "RGB2IlluSpec_Yellow", RGB2IlluSpec_Yellow, RGB2Spec_count},
        {smitsFile, "illum_red", "RGB2IlluSpec_Red", RGB2IlluSpec_Red, RGB2Spec_count},
        {smitsFile, "illum_green", "RGB2IlluSpec_Green", RGB2IlluSpec_Green, RGB2Spec_count},
        {smitsFile, "illum_blue", "RGB2IlluSpec_Blue", RGB2IlluSpec_Blue, RGB2Spec_count},
    };
    for (const auto &t : tables)
        QTest::newRow(t.name) << QString::fromLatin1(t.file) << QString::fromLatin1(t.column)
                              << t.table << t.count;
}

void tst_QZESpectralTables::everyTableHoldsItsCsvColumnAsFloat()
{
    QFETCH(QString, file);
    QFETCH(QString, column);
    QFETCH(const float *, table);
    QFETCH(int, count);

    const CsvFile csv = readCsv(file);
    QVERIFY2(!csv.header.empty(), qPrintable(file + ": cannot be read"));
    const auto header = std::find(csv.header.begin(), csv.header.end(), column.toStdString());
    QVERIFY2(header != csv.header.end(), qPrintable(file + ": no column " + column));
    const std::size_t columnIndex = std::size_t(header - csv.header.begin());
    QCOMPARE(int(csv.rows.size()), count);

    for (int i = 0; i < count; ++i) {
        const std::vector<std::string> &row = csv.rows[std::size_t(i)];
        QCOMPARE(row.size(), csv.header.size());
        const std::string &cell = row[columnIndex];
        char *end = nullptr;
        const float expected = float(std::strtod(cell.c_str(), &end));
        QVERIFY2(end == cell.c_str() + cell.size(), cell.c_str());
        QVERIFY2(table[i] == expected,
                 qPrintable(QStringLiteral("row %1: table has %2, CSV has %3")
                                .arg(i)
                                .arg(double(table[i]), 0, 'g', 9)
                                .arg(QString::fromStdString(cell))));
    }
}

void tst_QZESpectralTables::wavelengthsRunEvenlyOverTheTabulatedRange_data()
{
    QTest::addColumn<const float *>("lambda");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("expectedCount");
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("last");
    QTest::addColumn<double>("tolerance");

    const struct
    {
        const char *name;
        const float *lambda;
        int count;
        int expectedCount;
        double first;
        double last;
        double tolerance;
    } grids[] = {
        {"CIE 1931, 360..830 by 1", CIE1931cmf_lambda, CIE1931cmf_count, 471, 360.0, 830.0, 0.0},
        {"CIE 2006, 390..830 by 1", CIE2006cmf_lambda, CIE2006cmf_count, 441, 390.0, 830.0, 0.0},
        {"illuminants, 300..830 by 5", CIEilluminant_lambda, CIEilluminant_count, 107, 300.0,
         830.0, 0.0},
        {"daylight, 300..830 by 5", CIEdaylight_lambda, CIEdaylight_count, 107, 300.0, 830.0, 0.0},
        {"Smits bases, 380..720 by 340/31", RGB2Spec_lambda, RGB2Spec_count, 32, 380.0, 720.0,
         1e-4},
    };
    for (const auto &g : grids)
        QTest::newRow(g.name) << g.lambda << g.count << g.expectedCount << g.first << g.last
                              << g.tolerance;
}

void tst_QZESpectralTables::wavelengthsRunEvenlyOverTheTabulatedRange()
{
    QFETCH(const float *, lambda);
    QFETCH(int, count);
    QFETCH(int, expectedCount);
    QFETCH(double, first);
    QFETCH(double, last);
    QFETCH(double, tolerance);

    QCOMPARE(count, expectedCount);
    const double step = (last - first) / (count - 1);
    for (int i = 0; i < count; ++i) {
        const double expected = first + i * step;
        QVERIFY2(qAbs(lambda[i] - expected) <= tolerance,
                 qPrintable(QStringLiteral("lambda[%1] = %2, expected %3")
                                .arg(i)
                                .arg(double(lambda[i]), 0, 'g', 9)
                                .arg(expected, 0, 'g', 9)));
    }
}

void tst_QZESpectralTables::referenceValuesAreExact_data()
{
    QTest::addColumn<const float *>("lambda");
    QTest::addColumn<const float *>("table");
    QTest::addColumn<int>("count");
    QTest::addColumn<float>("wavelength");
    QTest::addColumn<float>("expected");

    const struct
    {
        const char *name;
        const float *lambda;
        const float *table;
        int count;
        float wavelength;
        float expected;
    } values[] = {
        {"y-bar peaks at exactly 1 at 555 nm", CIE1931cmf_lambda, CIE1931cmf_Y, CIE1931cmf_count,
         555.0f, 1.0f},
        {"y-bar at 547 nm is 0.9874182, not the transposed 0.9874812", CIE1931cmf_lambda,
         CIE1931cmf_Y, CIE1931cmf_count, 547.0f, 0.9874182f},
        {"A is 100 at 560 nm", CIEilluminant_lambda, CIEilluminant_A, CIEilluminant_count, 560.0f,
         100.0f},
        {"D65 is 100 at 560 nm", CIEilluminant_lambda, CIEilluminant_D65, CIEilluminant_count,
         560.0f, 100.0f},
        {"S0 is 100 at 560 nm", CIEdaylight_lambda, CIEdaylight_S0, CIEdaylight_count, 560.0f,
         100.0f},
        {"S1 is 0 at 560 nm", CIEdaylight_lambda, CIEdaylight_S1, CIEdaylight_count, 560.0f, 0.0f},
        {"S2 is 0 at 560 nm", CIEdaylight_lambda, CIEdaylight_S2, CIEdaylight_count, 560.0f, 0.0f},
    };
    for (const auto &v : values)
        QTest::newRow(v.name) << v.lambda << v.table << v.count << v.wavelength << v.expected;
}

void tst_QZESpectralTables::referenceValuesAreExact()
{
    QFETCH(const float *, lambda);
    QFETCH(const float *, table);
    QFETCH(int, count);
    QFETCH(float, wavelength);
    QFETCH(float, expected);

    const float *at = std::find(lambda, lambda + count, wavelength);
    QVERIFY(at != lambda + count);
    QVERIFY2(table[at - lambda] == expected,
             qPrintable(QString::number(double(table[at - lambda]), 'g', 9)));
}

void tst_QZESpectralTables::smitsBasesMatchTheirPublishedFourDecimalValues_data()
{
    QTest::addColumn<const float *>("table");
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("expected");

    const struct
    {
        const char *name;
        const float *table;
        int index;
        double expected;
    } values[] = {
        {"refl white 0", RGB2ReflSpec_White, 0, 1.0619},
        {"refl white 1", RGB2ReflSpec_White, 1, 1.0615},
        {"refl white 2", RGB2ReflSpec_White, 2, 1.0614},
        {"refl cyan 0", RGB2ReflSpec_Cyan, 0, 1.0415},
        {"refl cyan 1", RGB2ReflSpec_Cyan, 1, 1.0329},
        {"refl cyan 19", RGB2ReflSpec_Cyan, 19, 0.6235},
        {"refl cyan 20", RGB2ReflSpec_Cyan, 20, 0.1804},
        {"refl cyan 21", RGB2ReflSpec_Cyan, 21, -0.0076},
        {"refl red 0", RGB2ReflSpec_Red, 0, 0.1658},
        {"refl red 1", RGB2ReflSpec_Red, 1, 0.1185},
        {"refl red 19", RGB2ReflSpec_Red, 19, 0.6077},
        {"refl red 20", RGB2ReflSpec_Red, 20, 0.9883},
        {"illum white 0", RGB2IlluSpec_White, 0, 1.1565},
        {"illum white 1", RGB2IlluSpec_White, 1, 1.1567},
        {"illum white 30", RGB2IlluSpec_White, 30, 0.8807},
        {"illum white 31", RGB2IlluSpec_White, 31, 0.8830},
    };
    for (const auto &v : values)
        QTest::newRow(v.name) << v.table << v.index << v.expected;
}

void tst_QZESpectralTables::smitsBasesMatchTheirPublishedFourDecimalValues()
{
    QFETCH(const float *, table);
    QFETCH(int, index);
    QFETCH(double, expected);

    QVERIFY2(qAbs(table[index] - expected) <= 0.5e-4,
             qPrintable(QString::number(double(table[index]), 'g', 9)));
}

void tst_QZESpectralTables::illuminantEIsOneEverywhere()
{
    for (int i = 0; i < CIEilluminant_count; ++i)
        QVERIFY2(CIEilluminant_E[i] == 1.0f, qPrintable(QString::number(i)));
}

void tst_QZESpectralTables::cmfSumsMatchThePublishedTotals_data()
{
    QTest::addColumn<const float *>("table");
    QTest::addColumn<int>("count");
    QTest::addColumn<double>("expected");

    const struct
    {
        const char *name;
        const float *table;
        int count;
        double expected;
    } sums[] = {
        {"CIE 1931 x-bar", CIE1931cmf_X, CIE1931cmf_count, 106.865469},
        {"CIE 1931 y-bar", CIE1931cmf_Y, CIE1931cmf_count, 106.856917},
        {"CIE 1931 z-bar", CIE1931cmf_Z, CIE1931cmf_count, 106.892251},
        {"CIE 2006 x-bar", CIE2006cmf_X, CIE2006cmf_count, 113.042318},
        {"CIE 2006 y-bar", CIE2006cmf_Y, CIE2006cmf_count, 113.042315},
        {"CIE 2006 z-bar", CIE2006cmf_Z, CIE2006cmf_count, 113.042315},
    };
    for (const auto &t : sums)
        QTest::newRow(t.name) << t.table << t.count << t.expected;
}

void tst_QZESpectralTables::cmfSumsMatchThePublishedTotals()
{
    QFETCH(const float *, table);
    QFETCH(int, count);
    QFETCH(double, expected);

    double sum = 0.0;
    for (int i = 0; i < count; ++i)
        sum += table[i];
    QVERIFY2(qAbs(sum - expected) <= 1e-5, qPrintable(QString::number(sum, 'f', 7)));
}

void tst_QZESpectralTables::yBandAveragesOver380To780SumTo10_6856399()
{
    double sum = 0.0;
    for (int k = 0; k < 40; ++k)
        sum += yBandAverage(380.0 + 10.0 * k);
    QVERIFY2(qAbs(sum - 10.6856399) <= 1e-6 * 10.6856399,
             qPrintable(QString::number(sum, 'f', 8)));
}

void tst_QZESpectralTables::yBandAverageMatchesThePublishedBand_data()
{
    QTest::addColumn<double>("bandStart");
    QTest::addColumn<double>("expected");
    QTest::addColumn<double>("tolerance");

    // Tolerances are half a unit in the last published digit.
    QTest::newRow("380-390 nm") << 380.0 << 6.96e-05 << 0.5e-7;
    QTest::newRow("540-550 nm") << 540.0 << 0.9782957 << 0.5e-7;
}

void tst_QZESpectralTables::yBandAverageMatchesThePublishedBand()
{
    QFETCH(double, bandStart);
    QFETCH(double, expected);
    QFETCH(double, tolerance);

    const double average = yBandAverage(bandStart);
    QVERIFY2(qAbs(average - expected) <= tolerance, qPrintable(QString::number(average, 'g', 9)));
}

QTEST_APPLESS_MAIN(tst_QZESpectralTables)
#include "tst_QZESpectralTables.moc"
