#include "QZEAnalyticSpectrum.h"

#include "QZESpectralTables.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double Pi = 3.14159265358979323846;

constexpr double Planck = 6.62607015e-34;      // J s
constexpr double LightSpeed = 299792458.0;     // m / s
constexpr double Boltzmann = 1.380649e-23;     // J / K
constexpr double SecondRadiation = Planck * LightSpeed / Boltzmann; // m K

constexpr double ReferenceWavelength = 560.0;  // nm, where both curves are 1
constexpr double MetresPerNanometre = 1e-9;

constexpr double DaylightMinTemperature = 4000.0;
constexpr double DaylightPolynomialSwitch = 7000.0;
constexpr double DaylightMaxTemperature = 25000.0;

// ln(exp(x) - 1) for x > 0, without overflow for large x nor loss of
// precision for small x.
double logExpm1(double x)
{
    return x + std::log(-std::expm1(-x));
}

// ln B(lambda, T) up to a term that depends on T only.
double logPlanck(double wavelength, double temperature)
{
    const double metres = wavelength * MetresPerNanometre;
    return -5.0 * std::log(metres) - logExpm1(SecondRadiation / (metres * temperature));
}

// CIE daylight chromaticity x_D, a cubic in 1/T with one coefficient set
// below 7000 K and one above.
double daylightChromaticityX(double t)
{
    if (t <= DaylightPolynomialSwitch)
        return -4.6070e9 / (t * t * t) + 2.9678e6 / (t * t) + 0.09911e3 / t + 0.244063;
    return -2.0064e9 / (t * t * t) + 1.9018e6 / (t * t) + 0.24748e3 / t + 0.237040;
}

// The table, linearly interpolated, held at its end values beyond its range.
double interpolateDaylightTable(const float* values, double wavelength)
{
    const float* lambda = CIEdaylight_lambda;
    const float* last = lambda + CIEdaylight_count - 1;
    if (wavelength <= *lambda)
        return values[0];
    if (wavelength >= *last)
        return values[CIEdaylight_count - 1];
    const int i = int(std::upper_bound(lambda, last, wavelength) - lambda) - 1;
    const double t = (wavelength - lambda[i]) / (double(lambda[i + 1]) - lambda[i]);
    return values[i] + t * (double(values[i + 1]) - values[i]);
}

double gaussShape(double u) { return std::exp(-std::log(2.0) * u * u); }
double lorentzianShape(double u) { return 1.0 / (1.0 + u * u); }
double cosineShape(double u) { return std::cos(Pi / 2.0 * u); }
double bartlettShape(double u) { return 1.0 - std::abs(u); }
double connesShape(double u) { return (1.0 - u * u) * (1.0 - u * u); }
double hammingShape(double u) { return 0.54 + 0.46 * std::cos(Pi * u); }
double hanningShape(double u) { return 0.5 * (1.0 + std::cos(Pi * u)); }
double welchShape(double u) { return 1.0 - u * u; }

// 0.42 + 0.5 c + 0.08 (2 c^2 - 1) with c = cos(pi u), factored so that it is
// exactly 0 at the edge of the support instead of a rounding error below it.
double blackmanShape(double u)
{
    const double c = std::cos(Pi * u);
    return (1.0 + c) * (0.34 + 0.16 * c);
}

// Positive root of 0.16 c^2 + 0.5 c - 0.16 = 0: Blackman's cos(pi u) at half
// maximum.
double blackmanHalfMaximumCosine()
{
    return (-0.5 + std::sqrt(0.5 * 0.5 + 4.0 * 0.16 * 0.16)) / (2.0 * 0.16);
}

struct PeakShape
{
    double (*shape)(double u);
    double halfMaximumPoint;   // u_half: shape(u_half) = 0.5
    bool finiteSupport;        // zero for |u| > 1
};

// Indexed by function - Gauss, in the order of QZEAnalyticSpectrum::Function.
const PeakShape& peakShape(int function)
{
    static const PeakShape shapes[] = {
        {gaussShape, 1.0, false},
        {cosineShape, 2.0 / 3.0, true},
        {bartlettShape, 0.5, true},
        {blackmanShape, std::acos(blackmanHalfMaximumCosine()) / Pi, true},
        {connesShape, std::sqrt(1.0 - 1.0 / std::sqrt(2.0)), true},
        {hammingShape, std::acos(-2.0 / 23.0) / Pi, true},
        {hanningShape, 0.5, true},
        {lorentzianShape, 1.0, false},
        {welchShape, 1.0 / std::sqrt(2.0), true},
    };
    static_assert(sizeof(shapes) / sizeof(shapes[0])
                      == QZEAnalyticSpectrum::NumFunctions - QZEAnalyticSpectrum::Gauss,
                  "one shape per peaked function");
    return shapes[function - QZEAnalyticSpectrum::Gauss];
}

bool isPeaked(int function)
{
    return function >= QZEAnalyticSpectrum::Gauss && function < QZEAnalyticSpectrum::NumFunctions;
}

} // namespace

QZEAnalyticSpectrum::QZEAnalyticSpectrum(int function, float peakWavelength,
                                         float peakIntensity, float fwhm, float temperature)
    : _function(function),
      _peakWavelength(peakWavelength),
      _peakIntensity(peakIntensity),
      _fwhm(fwhm),
      _temperature(temperature),
      _valid(parametersUsable())
{
    if (!_valid)
        return;
    if (_function == CIEDaylight)
        setUpDaylight();
    else if (isPeaked(_function))
        _halfWidth = _fwhm / (2.0 * peakShape(_function).halfMaximumPoint);
}

bool QZEAnalyticSpectrum::parametersUsable() const
{
    if (_function == Blackbody || _function == CIEDaylight)
        return std::isfinite(_temperature) && _temperature > 0.0;
    if (isPeaked(_function))
        return std::isfinite(_peakWavelength) && std::isfinite(_peakIntensity)
            && std::isfinite(_fwhm) && _fwhm > 0.0;
    return false;
}

void QZEAnalyticSpectrum::setUpDaylight()
{
    const double t =
        std::clamp(_temperature, DaylightMinTemperature, DaylightMaxTemperature);
    const double x = daylightChromaticityX(t);
    const double y = -3.000 * x * x + 2.870 * x - 0.275;
    const double m = 0.0241 + 0.2562 * x - 0.7341 * y;
    _m1 = (-1.3515 - 1.7703 * x + 5.9114 * y) / m;
    _m2 = (0.0300 - 31.4424 * x + 30.0717 * y) / m;
    _daylightAt560 = daylightAt(ReferenceWavelength);
}

float QZEAnalyticSpectrum::valueAt(float wavelength) const
{
    if (!_valid)
        return 0.0f;
    switch (_function) {
    case Blackbody:
        return float(blackbodyAt(wavelength));
    case CIEDaylight:
        return float(daylightAt(wavelength) / _daylightAt560);
    default:
        return float(peakAt(wavelength));
    }
}

double QZEAnalyticSpectrum::blackbodyAt(double wavelength) const
{
    if (!(wavelength > 0.0))
        return 0.0;
    return std::exp(logPlanck(wavelength, _temperature)
                    - logPlanck(ReferenceWavelength, _temperature));
}

double QZEAnalyticSpectrum::daylightAt(double wavelength) const
{
    return interpolateDaylightTable(CIEdaylight_S0, wavelength)
        + _m1 * interpolateDaylightTable(CIEdaylight_S1, wavelength)
        + _m2 * interpolateDaylightTable(CIEdaylight_S2, wavelength);
}

double QZEAnalyticSpectrum::peakAt(double wavelength) const
{
    const PeakShape& peak = peakShape(_function);
    const double u = (wavelength - _peakWavelength) / _halfWidth;
    if (peak.finiteSupport && std::abs(u) > 1.0)
        return 0.0;
    return _peakIntensity * peak.shape(u);
}
