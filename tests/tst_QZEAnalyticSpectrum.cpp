#include "QZEAnalyticSpectrum.h"

#include <QDir>
#include <QFile>
#include <QtTest>

#include <cmath>
#include <limits>
#include <vector>

namespace {

constexpr double Pi = 3.14159265358979323846;

// Second radiation constant c2 = h c / k from the exact SI values, in m K.
constexpr double C2 = 6.62607015e-34 * 299792458.0 / 1.380649e-23;
// Wien's displacement constant (CODATA 2018), in m K.
constexpr double WienConstant = 2.897771955e-3;

// B(lambda1, T) / B(lambda2, T) by Planck's law, wavelengths in nm.
double planckRatio(double lambda1, double lambda2, double temperature)
{
    const double l1 = lambda1 * 1e-9, l2 = lambda2 * 1e-9;
    return std::pow(l2 / l1, 5) * std::expm1(C2 / (l2 * temperature))
        / std::expm1(C2 / (l1 * temperature));
}

// The peak shapes in their textbook form, as functions of the distance from
// the peak in units of the half-width of the window's support (for Gauss and
// Lorentzian, of the half-width at half maximum).
double peakShape(int function, double u)
{
    const double c = std::cos(Pi * u);
    switch (function) {
    case QZEAnalyticSpectrum::Gauss:      return std::exp(-std::log(2.0) * u * u);
    case QZEAnalyticSpectrum::Cosine:     return std::cos(Pi * u / 2.0);
    case QZEAnalyticSpectrum::Bartlett:   return 1.0 - std::abs(u);
    case QZEAnalyticSpectrum::Blackman:   return 0.42 + 0.5 * c + 0.08 * std::cos(2.0 * Pi * u);
    case QZEAnalyticSpectrum::Connes:     return std::pow(1.0 - u * u, 2);
    case QZEAnalyticSpectrum::Hamming:    return 0.54 + 0.46 * c;
    case QZEAnalyticSpectrum::Hanning:    return 0.5 * (1.0 + c);
    case QZEAnalyticSpectrum::Lorentzian: return 1.0 / (1.0 + u * u);
    case QZEAnalyticSpectrum::Welch:      return 1.0 - u * u;
    }
    return std::numeric_limits<double>::quiet_NaN();
}

bool hasFiniteSupport(int function)
{
    return function != QZEAnalyticSpectrum::Gauss && function != QZEAnalyticSpectrum::Lorentzian;
}

// Where the shape falls to half its peak value, found by bisection on [0, 1]
// (every shape decreases there and is 1/2 at u = 1 or before).
double halfMaximumPoint(int function)
{
    double lo = 0.0, hi = 1.0;
    for (int i = 0; i < 100; ++i) {
        const double mid = (lo + hi) / 2.0;
        (peakShape(function, mid) > 0.5 ? lo : hi) = mid;
    }
    return (lo + hi) / 2.0;
}

// Distance from the peak to the half-maximum point in nm: the unit of u.
double shapeUnit(int function, double fwhm)
{
    return fwhm / (2.0 * halfMaximumPoint(function));
}

// Distance from the peak at which the spectrum first drops below half of its
// value at the peak, walking outwards in steps of 0.001 nm and interpolating
// linearly between the two samples around the crossing.
double halfMaximumDistance(const QZEAnalyticSpectrum& spectrum, double peak, double direction)
{
    constexpr double step = 0.001;
    const double half = spectrum.valueAt(float(peak)) / 2.0;
    float previous = float(peak);
    for (int i = 1; i < 10000000; ++i) {
        const float lambda = float(peak + direction * step * i);
        const double value = spectrum.valueAt(lambda);
        if (value < half) {
            const double before = spectrum.valueAt(previous);
            const double t = (before - half) / (before - value);
            return std::abs(previous + t * (double(lambda) - previous) - peak);
        }
        previous = lambda;
    }
    return std::numeric_limits<double>::infinity();
}

const QStringList& peakedNames()
{
    static const QStringList names = {"Gauss",   "Cosine",  "Bartlett",   "Blackman", "Connes",
                                      "Hamming", "Hanning", "Lorentzian", "Welch"};
    return names;
}

struct D65Row
{
    float lambda;
    double value;
};

// The CIE D65 table of the library's data folder, scaled to 1 at 560 nm.
std::vector<D65Row> readD65()
{
    const QString path = QDir::cleanPath(QStringLiteral(QTCOLOR_TEST_DATA)
        + "/../../Common/Libs/QtColor/data/cie_illuminants_A_D65_E_5nm.csv");
    QFile file(path);
    std::vector<D65Row> rows;
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return rows;
    const QStringList header = QString::fromLatin1(file.readLine()).trimmed().split(',');
    const int column = header.indexOf("D65");
    while (!file.atEnd()) {
        const QStringList cells = QString::fromLatin1(file.readLine()).trimmed().split(',');
        rows.push_back({cells.at(0).toFloat(), cells.at(column).toDouble() / 100.0});
    }
    return rows;
}

// Wavelengths at which the daylight curves are compared: every 5 nm over the
// tabulated range and a little beyond it.
std::vector<float> daylightWavelengths()
{
    std::vector<float> lambdas;
    for (int lambda = 290; lambda <= 840; lambda += 5)
        lambdas.push_back(float(lambda));
    return lambdas;
}

double maxDifference(const QZEAnalyticSpectrum& a, const QZEAnalyticSpectrum& b)
{
    double difference = 0.0;
    for (const float lambda : daylightWavelengths())
        difference = std::max(difference, std::abs(double(a.valueAt(lambda)) - b.valueAt(lambda)));
    return difference;
}

QZEAnalyticSpectrum daylightSpectrum(float temperature)
{
    return QZEAnalyticSpectrum(QZEAnalyticSpectrum::CIEDaylight, 550.0f, 1.0f, 10.0f, temperature);
}

} // namespace

class tst_QZEAnalyticSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void blackbodyPeaksAtWiensWavelength();
    void blackbodyRatioFollowsPlancksLaw_data();
    void blackbodyRatioFollowsPlancksLaw();
    void blackbodyIsZeroAtNonPositiveWavelengths();
    void temperatureCurvesAreExactlyOneAt560nm_data();
    void temperatureCurvesAreExactlyOneAt560nm();
    void temperatureCurvesIgnorePeakParameters_data();
    void temperatureCurvesIgnorePeakParameters();

    void daylightAt6504KMatchesTabulatedD65();
    void daylightOutsideItsRangeUsesTheNearestEnd_data();
    void daylightOutsideItsRangeUsesTheNearestEnd();
    void daylightIsContinuousAt7000K();
    void daylightIsLinearBetweenTableWavelengths();
    void daylightIsConstantBeyondTheTable();

    void peakIsIntensityAtPeakWavelength_data();
    void peakIsIntensityAtPeakWavelength();
    void peakWidthAtHalfMaximumIsTheRequestedOne_data();
    void peakWidthAtHalfMaximumIsTheRequestedOne();
    void peakFollowsItsShape_data();
    void peakFollowsItsShape();
    void peakIsSymmetric_data();
    void peakIsSymmetric();
    void windowIsZeroOutsideItsSupport_data();
    void windowIsZeroOutsideItsSupport();

    void unusableParametersGiveAnInvalidZeroSpectrum_data();
    void unusableParametersGiveAnInvalidZeroSpectrum();
    void usableParametersGiveAValidSpectrum_data();
    void usableParametersGiveAValidSpectrum();

private:
    static void addPeakRows(bool finiteSupportOnly = false);
};

void tst_QZEAnalyticSpectrum::blackbodyPeaksAtWiensWavelength()
{
    const double temperature = 5000.0;
    const double wien = WienConstant / temperature * 1e9;
    const QZEAnalyticSpectrum spectrum(QZEAnalyticSpectrum::Blackbody, 0.0f, 0.0f, 0.0f,
                                       float(temperature));
    QVERIFY(spectrum.isValid());

    // Within about 0.1 nm of the maximum the curve changes by less than one
    // float step, so a run of grid points shares the largest value; the curve
    // is symmetric to far better than 0.01 nm at that scale, so the centre
    // of that run is the peak.
    float largest = 0.0f;
    double runStart = 0.0, runEnd = 0.0;
    for (int i = 0; i <= 4000; ++i) {
        const double lambda = 560.0 + 0.01 * i;
        const float value = spectrum.valueAt(float(lambda));
        if (value > largest) {
            largest = value;
            runStart = lambda;
        }
        if (value == largest)
            runEnd = lambda;
    }
    const double peak = (runStart + runEnd) / 2.0;
    QVERIFY2(std::abs(peak - wien) <= 0.02,
             qPrintable(QString("peak at %1 nm, Wien %2 nm").arg(peak, 0, 'f', 4).arg(wien, 0, 'f', 4)));
}

void tst_QZEAnalyticSpectrum::blackbodyRatioFollowsPlancksLaw_data()
{
    QTest::addColumn<float>("lambda1");
    QTest::addColumn<float>("lambda2");
    QTest::addColumn<float>("temperature");
    QTest::newRow("400/700 nm at 5000 K") << 400.0f << 700.0f << 5000.0f;
    QTest::newRow("380/780 nm at 2856 K") << 380.0f << 780.0f << 2856.0f;
    QTest::newRow("450/650 nm at 10000 K") << 450.0f << 650.0f << 10000.0f;
    QTest::newRow("300/830 nm at 1500 K") << 300.0f << 830.0f << 1500.0f;
    QTest::newRow("512.5/513.5 nm at 40000 K") << 512.5f << 513.5f << 40000.0f;
}

void tst_QZEAnalyticSpectrum::blackbodyRatioFollowsPlancksLaw()
{
    QFETCH(float, lambda1);
    QFETCH(float, lambda2);
    QFETCH(float, temperature);
    const QZEAnalyticSpectrum spectrum(QZEAnalyticSpectrum::Blackbody, 0.0f, 0.0f, 0.0f,
                                       temperature);
    const double ratio = double(spectrum.valueAt(lambda1)) / spectrum.valueAt(lambda2);
    const double expected = planckRatio(lambda1, lambda2, temperature);
    // Two single-precision values: a few parts in 1e7 each.
    QVERIFY2(std::abs(ratio / expected - 1.0) < 1e-6,
             qPrintable(QString("%1 against %2").arg(ratio, 0, 'g', 10).arg(expected, 0, 'g', 10)));
}

void tst_QZEAnalyticSpectrum::blackbodyIsZeroAtNonPositiveWavelengths()
{
    const QZEAnalyticSpectrum spectrum(QZEAnalyticSpectrum::Blackbody, 0.0f, 0.0f, 0.0f, 5000.0f);
    for (const float lambda : {0.0f, -0.0f, -1.0f, -560.0f})
        QCOMPARE(double(spectrum.valueAt(lambda)), 0.0);
    QVERIFY(spectrum.valueAt(100.0f) > 0.0f);
}

void tst_QZEAnalyticSpectrum::temperatureCurvesAreExactlyOneAt560nm_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<float>("temperature");
    for (const float temperature : {1000.0f, 2856.0f, 5000.0f, 6504.0f, 9300.0f, 20000.0f}) {
        QTest::addRow("black body %g K", double(temperature))
            << int(QZEAnalyticSpectrum::Blackbody) << temperature;
        QTest::addRow("daylight %g K", double(temperature))
            << int(QZEAnalyticSpectrum::CIEDaylight) << temperature;
    }
}

void tst_QZEAnalyticSpectrum::temperatureCurvesAreExactlyOneAt560nm()
{
    QFETCH(int, function);
    QFETCH(float, temperature);
    const QZEAnalyticSpectrum spectrum(function, 0.0f, 0.0f, 0.0f, temperature);
    QCOMPARE(double(spectrum.valueAt(560.0f)), 1.0);
}

void tst_QZEAnalyticSpectrum::temperatureCurvesIgnorePeakParameters_data()
{
    QTest::addColumn<int>("function");
    QTest::newRow("black body") << int(QZEAnalyticSpectrum::Blackbody);
    QTest::newRow("daylight") << int(QZEAnalyticSpectrum::CIEDaylight);
}

void tst_QZEAnalyticSpectrum::temperatureCurvesIgnorePeakParameters()
{
    QFETCH(int, function);
    const float temperature = 5500.0f;
    const QZEAnalyticSpectrum reference(function, 0.0f, 0.0f, 0.0f, temperature);
    const QZEAnalyticSpectrum others[] = {
        {function, 450.0f, 2.0f, 30.0f, temperature},
        {function, -1.0f, -5.0f, -10.0f, temperature},
        {function, std::nanf(""), 1e30f, std::numeric_limits<float>::infinity(), temperature},
    };
    for (const QZEAnalyticSpectrum& other : others) {
        QVERIFY(other.isValid());
        for (float lambda = 300.0f; lambda <= 830.0f; lambda += 10.0f)
            QCOMPARE(other.valueAt(lambda), reference.valueAt(lambda));
    }
}

void tst_QZEAnalyticSpectrum::daylightAt6504KMatchesTabulatedD65()
{
    const std::vector<D65Row> d65 = readD65();
    QCOMPARE(int(d65.size()), 107);
    QCOMPARE(d65.front().lambda, 300.0f);
    QCOMPARE(d65.back().lambda, 830.0f);

    // The tabulated D65 is S0 + M1 S1 + M2 S2 with the factors rounded to
    // three decimals, M1 = -0.295 and M2 = -0.689: those reproduce it to
    // 8.5e-6. The unrounded factors at 6504 K are -0.29447 and -0.68921; the
    // differences of 5.3e-4 and 2.1e-4 move the curve by up to 2.46e-4 (at
    // 410 nm, measured), hence the tolerance. A wrong coefficient in the
    // chromaticity or factor formulas or in the interpolation exceeds it.
    const double tolerance = 2.5e-4;
    const QZEAnalyticSpectrum spectrum = daylightSpectrum(6504.0f);
    double largest = 0.0;
    for (const D65Row& row : d65) {
        const double difference = std::abs(spectrum.valueAt(row.lambda) - row.value);
        largest = std::max(largest, difference);
        QVERIFY2(difference <= tolerance,
                 qPrintable(QString("%1 nm: %2 against %3").arg(row.lambda)
                                .arg(spectrum.valueAt(row.lambda)).arg(row.value)));
    }
    qDebug("largest difference from the tabulated D65: %.3g", largest);
}

void tst_QZEAnalyticSpectrum::daylightOutsideItsRangeUsesTheNearestEnd_data()
{
    QTest::addColumn<float>("temperature");
    QTest::addColumn<float>("nearestEnd");
    QTest::newRow("3000 K") << 3000.0f << 4000.0f;
    QTest::newRow("10 K") << 10.0f << 4000.0f;
    QTest::newRow("30000 K") << 30000.0f << 25000.0f;
    QTest::newRow("1e9 K") << 1e9f << 25000.0f;
}

void tst_QZEAnalyticSpectrum::daylightOutsideItsRangeUsesTheNearestEnd()
{
    QFETCH(float, temperature);
    QFETCH(float, nearestEnd);
    QVERIFY(daylightSpectrum(temperature).isValid());
    QCOMPARE(maxDifference(daylightSpectrum(temperature), daylightSpectrum(nearestEnd)), 0.0);
    // The ends themselves are in range: a little inside them differs.
    const float inside = nearestEnd < 5000.0f ? nearestEnd + 100.0f : nearestEnd - 1000.0f;
    QVERIFY(maxDifference(daylightSpectrum(nearestEnd), daylightSpectrum(inside)) > 1e-3);
}

void tst_QZEAnalyticSpectrum::daylightIsContinuousAt7000K()
{
    // The two chromaticity polynomials meet at 7000 K to 4.7e-7 in x_D; the
    // curves on either side differ by a few 1e-6 at most. A wrong
    // coefficient in either polynomial gives jumps of 1e-3 and more.
    const float below = 7000.0f;
    const float above = std::nextafter(below, 8000.0f);
    QVERIFY(maxDifference(daylightSpectrum(below), daylightSpectrum(above)) < 1e-5);
    QVERIFY(maxDifference(daylightSpectrum(6999.0f), daylightSpectrum(7001.0f)) < 1e-3);
}

void tst_QZEAnalyticSpectrum::daylightIsLinearBetweenTableWavelengths()
{
    const QZEAnalyticSpectrum spectrum = daylightSpectrum(5000.0f);
    for (const float from : {300.0f, 400.0f, 555.0f, 760.0f, 825.0f}) {
        const double a = spectrum.valueAt(from), b = spectrum.valueAt(from + 5.0f);
        for (const double t : {0.25, 0.5, 0.75}) {
            const double expected = a + t * (b - a);
            QVERIFY(std::abs(spectrum.valueAt(float(from + 5.0 * t)) - expected) < 1e-6);
        }
    }
}

void tst_QZEAnalyticSpectrum::daylightIsConstantBeyondTheTable()
{
    const QZEAnalyticSpectrum spectrum = daylightSpectrum(6504.0f);
    for (const float lambda : {299.0f, 250.0f, 0.0f, -100.0f})
        QCOMPARE(spectrum.valueAt(lambda), spectrum.valueAt(300.0f));
    for (const float lambda : {831.0f, 900.0f, 1e6f})
        QCOMPARE(spectrum.valueAt(lambda), spectrum.valueAt(830.0f));
}

void tst_QZEAnalyticSpectrum::addPeakRows(bool finiteSupportOnly)
{
    QTest::addColumn<int>("function");
    QTest::addColumn<float>("peak");
    QTest::addColumn<float>("intensity");
    QTest::addColumn<float>("fwhm");
    struct Peak { float peak, intensity, fwhm; };
    // Widths whose half-maximum points fall between the 0.001 nm samples.
    const Peak peaks[] = {{550.0f, 1.0f, 17.3217f}, {450.5f, 2.5f, 2.71828f},
                          {700.0f, 0.8f, 93.1234f}, {612.25f, 0.05f, 0.4567f}};
    for (int function = QZEAnalyticSpectrum::Gauss; function < QZEAnalyticSpectrum::NumFunctions;
         ++function) {
        if (finiteSupportOnly && !hasFiniteSupport(function))
            continue;
        for (const Peak& p : peaks) {
            QTest::addRow("%s at %g nm, FWHM %g", qPrintable(peakedNames().at(function - QZEAnalyticSpectrum::Gauss)),
                          double(p.peak), double(p.fwhm))
                << function << p.peak << p.intensity << p.fwhm;
        }
    }
}

void tst_QZEAnalyticSpectrum::peakIsIntensityAtPeakWavelength_data()
{
    addPeakRows();
}

void tst_QZEAnalyticSpectrum::peakIsIntensityAtPeakWavelength()
{
    QFETCH(int, function);
    QFETCH(float, peak);
    QFETCH(float, intensity);
    QFETCH(float, fwhm);
    const QZEAnalyticSpectrum spectrum(function, peak, intensity, fwhm, 0.0f);
    QVERIFY(spectrum.isValid());
    QCOMPARE(spectrum.valueAt(peak), intensity);
    QVERIFY(spectrum.valueAt(peak + fwhm / 4.0f) < intensity);
}

void tst_QZEAnalyticSpectrum::peakWidthAtHalfMaximumIsTheRequestedOne_data()
{
    addPeakRows();
}

void tst_QZEAnalyticSpectrum::peakWidthAtHalfMaximumIsTheRequestedOne()
{
    QFETCH(int, function);
    QFETCH(float, peak);
    QFETCH(float, intensity);
    QFETCH(float, fwhm);
    const QZEAnalyticSpectrum spectrum(function, peak, intensity, fwhm, 0.0f);
    const double below = halfMaximumDistance(spectrum, peak, -1.0);
    const double above = halfMaximumDistance(spectrum, peak, +1.0);
    QVERIFY2(std::abs(below + above - fwhm) < 1e-3,
             qPrintable(QString("measured %1 nm").arg(below + above, 0, 'f', 6)));
    QVERIFY2(std::abs(below - above) < 1e-3,
             qPrintable(QString("%1 nm below, %2 nm above").arg(below).arg(above)));
}

void tst_QZEAnalyticSpectrum::peakFollowsItsShape_data()
{
    addPeakRows();
}

void tst_QZEAnalyticSpectrum::peakFollowsItsShape()
{
    QFETCH(int, function);
    QFETCH(float, peak);
    QFETCH(float, intensity);
    QFETCH(float, fwhm);
    const QZEAnalyticSpectrum spectrum(function, peak, intensity, fwhm, 0.0f);
    const double unit = shapeUnit(function, fwhm);
    for (const double u : {-0.9, -0.6, -0.25, 0.1, 0.3, 0.5, 0.75, 0.95}) {
        const float lambda = float(peak + u * unit);
        const double expected = intensity * peakShape(function, (lambda - double(peak)) / unit);
        QVERIFY2(std::abs(spectrum.valueAt(lambda) - expected) <= 1e-6 * intensity,
                 qPrintable(QString("u = %1: %2 against %3").arg(u)
                                .arg(spectrum.valueAt(lambda)).arg(expected)));
    }
}

void tst_QZEAnalyticSpectrum::peakIsSymmetric_data()
{
    addPeakRows();
}

void tst_QZEAnalyticSpectrum::peakIsSymmetric()
{
    QFETCH(int, function);
    QFETCH(float, peak);
    QFETCH(float, intensity);
    QFETCH(float, fwhm);
    const QZEAnalyticSpectrum spectrum(function, peak, intensity, fwhm, 0.0f);
    // Offsets in 1/64 nm, so that peak +- offset are exact floats.
    for (int k = 1; k <= 64 * 80; k += 37) {
        const float offset = k / 64.0f;
        QCOMPARE(spectrum.valueAt(peak + offset), spectrum.valueAt(peak - offset));
    }
}

void tst_QZEAnalyticSpectrum::windowIsZeroOutsideItsSupport_data()
{
    addPeakRows(true);
}

void tst_QZEAnalyticSpectrum::windowIsZeroOutsideItsSupport()
{
    QFETCH(int, function);
    QFETCH(float, peak);
    QFETCH(float, intensity);
    QFETCH(float, fwhm);
    const QZEAnalyticSpectrum spectrum(function, peak, intensity, fwhm, 0.0f);
    const double halfWidth = shapeUnit(function, fwhm);
    const double margin = 1e-3 * halfWidth;
    for (const double side : {-1.0, 1.0}) {
        QVERIFY(spectrum.valueAt(float(peak + side * (halfWidth - margin))) > 0.0f);
        for (const double distance : {halfWidth + margin, 1.5 * halfWidth, 10.0 * halfWidth, 1e4})
            QCOMPARE(double(spectrum.valueAt(float(peak + side * distance))), 0.0);
    }
}

void tst_QZEAnalyticSpectrum::unusableParametersGiveAnInvalidZeroSpectrum_data()
{
    QTest::addColumn<int>("function");
    QTest::addColumn<float>("fwhm");
    QTest::addColumn<float>("temperature");
    const float nan = std::nanf("");
    const float infinity = std::numeric_limits<float>::infinity();
    QTest::newRow("function -1") << -1 << 10.0f << 5000.0f;
    QTest::newRow("function 11") << 11 << 10.0f << 5000.0f;
    QTest::newRow("black body at 0 K") << int(QZEAnalyticSpectrum::Blackbody) << 10.0f << 0.0f;
    QTest::newRow("black body at -300 K") << int(QZEAnalyticSpectrum::Blackbody) << 10.0f << -300.0f;
    QTest::newRow("black body at NaN") << int(QZEAnalyticSpectrum::Blackbody) << 10.0f << nan;
    QTest::newRow("daylight at 0 K") << int(QZEAnalyticSpectrum::CIEDaylight) << 10.0f << 0.0f;
    QTest::newRow("daylight at -6500 K") << int(QZEAnalyticSpectrum::CIEDaylight) << 10.0f << -6500.0f;
    QTest::newRow("daylight at infinity") << int(QZEAnalyticSpectrum::CIEDaylight) << 10.0f << infinity;
    for (int function = QZEAnalyticSpectrum::Gauss; function < QZEAnalyticSpectrum::NumFunctions;
         ++function) {
        const QByteArray name = peakedNames().at(function - QZEAnalyticSpectrum::Gauss).toLatin1();
        QTest::addRow("%s with FWHM 0", name.constData()) << function << 0.0f << 5000.0f;
        QTest::addRow("%s with FWHM -5", name.constData()) << function << -5.0f << 5000.0f;
        QTest::addRow("%s with FWHM NaN", name.constData()) << function << nan << 5000.0f;
    }
}

void tst_QZEAnalyticSpectrum::unusableParametersGiveAnInvalidZeroSpectrum()
{
    QFETCH(int, function);
    QFETCH(float, fwhm);
    QFETCH(float, temperature);
    const QZEAnalyticSpectrum spectrum(function, 550.0f, 1.0f, fwhm, temperature);
    QVERIFY(!spectrum.isValid());
    for (const float lambda : {-10.0f, 0.0f, 380.0f, 549.0f, 550.0f, 560.0f, 780.0f})
        QCOMPARE(double(spectrum.valueAt(lambda)), 0.0);
}

void tst_QZEAnalyticSpectrum::usableParametersGiveAValidSpectrum_data()
{
    QTest::addColumn<int>("function");
    for (int function = 0; function < QZEAnalyticSpectrum::NumFunctions; ++function)
        QTest::addRow("function %d", function) << function;
}

void tst_QZEAnalyticSpectrum::usableParametersGiveAValidSpectrum()
{
    QFETCH(int, function);
    const QZEAnalyticSpectrum spectrum(function, 550.0f, 1.0f, 10.0f, 5000.0f);
    QVERIFY(spectrum.isValid());
    QVERIFY(spectrum.valueAt(550.0f) > 0.0f);
}

QTEST_APPLESS_MAIN(tst_QZEAnalyticSpectrum)
#include "tst_QZEAnalyticSpectrum.moc"
