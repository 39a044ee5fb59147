#ifndef QZEANALYTICSPECTRUM_H
#define QZEANALYTICSPECTRUM_H

/// A spectral distribution given by a formula instead of samples: a black
/// body, a CIE daylight, or a peak of one of nine shapes. Wavelengths are in
/// nanometres; everything is computed in double precision.
///
/// Black body (function 0) and CIE daylight (function 1) depend only on the
/// temperature in Kelvin; the peak wavelength, intensity and FWHM are ignored
/// for them, since callers pass all parameters whatever the function. Both are
/// relative spectral power distributions normalised to exactly 1.0 at 560 nm,
/// the wavelength at which the CIE scales its illuminants to 100.
///
///  - Black body: Planck's law B(lambda, T) with the exact SI constants
///    h = 6.62607015e-34 J s, c = 299792458 m/s, k = 1.380649e-23 J/K, as the
///    ratio B(lambda, T) / B(560 nm, T). It is 0 at wavelengths <= 0. Below
///    about 100 K the ratio in the red exceeds the float range and is +inf.
///  - CIE daylight at the correlated colour temperature T:
///    S(lambda) = S0 + M1 S1 + M2 S2 from the CIE daylight components
///    (300..830 nm every 5 nm, linearly interpolated between the samples and
///    held constant beyond both ends), divided by its value at 560 nm (there
///    S1 = S2 = 0 and S0 = 100). The chromaticity x_D comes from the CIE
///    polynomial in 1/T for 4000..7000 K and the one for 7000..25000 K,
///    y_D = -3.000 x_D^2 + 2.870 x_D - 0.275, and M1, M2 from the CIE
///    formulas in x_D, y_D, kept unrounded. The polynomials were fitted to
///    daylight measurements over 4000..25000 K only and run off the daylight
///    locus outside it, so a temperature outside that range is clamped to the
///    nearer end: 3000 K gives the 4000 K curve, 30000 K the 25000 K one.
///
/// The peaked functions (2..10) are centred on the peak wavelength p, are
/// exactly the peak intensity at p, and have exactly the given full width at
/// half maximum F. Each is a shape w(u) with w(0) = 1 of the scaled distance
/// u = (lambda - p) / a, where the half-width a = F / (2 u_half) and u_half
/// is the point where w falls to 0.5 (closed form for every shape):
///  - Gauss       exp(-ln 2 u^2)                  u_half = 1
///  - Lorentzian  1 / (1 + u^2)                   u_half = 1
/// and the windows, zero for |u| > 1 (a is then also the half-width of the
/// support):
///  - Cosine      cos(pi u / 2)                   u_half = 2/3
///  - Bartlett    1 - |u|                         u_half = 1/2
///  - Blackman    0.42 + 0.5 cos(pi u) + 0.08 cos(2 pi u)
///                                                u_half = acos(c) / pi with c
///                the positive root of 0.16 c^2 + 0.5 c - 0.16 = 0
///  - Connes      (1 - u^2)^2                     u_half = sqrt(1 - 1/sqrt 2)
///  - Hamming     0.54 + 0.46 cos(pi u)           u_half = acos(-2/23) / pi
///                (0.08 at the edge of its support, 0 beyond it)
///  - Hanning     0.5 (1 + cos(pi u))             u_half = 1/2
///  - Welch       1 - u^2                         u_half = 1/sqrt 2
/// So Gauss is exp(-4 ln 2 (lambda - p)^2 / F^2) and Lorentzian
/// 1 / (1 + (2 (lambda - p) / F)^2), the usual forms in terms of the FWHM.
class QZEAnalyticSpectrum
{
public:
    /// The formulas, in the order the colour dialog's function list shows them.
    enum Function {
        Blackbody,
        CIEDaylight,
        Gauss,
        Cosine,
        Bartlett,
        Blackman,
        Connes,
        Hamming,
        Hanning,
        Lorentzian,
        Welch,
        NumFunctions
    };

    /// function is a Function value; peakWavelength and fwhm in nanometres,
    /// peakIntensity relative, temperature in Kelvin. Parameters the function
    /// does not use are ignored; unusable ones make the spectrum invalid.
    QZEAnalyticSpectrum(int function, float peakWavelength, float peakIntensity, float fwhm,
                        float temperature);

    /// A known function with usable parameters: a finite temperature above 0
    /// for the black body and daylight; a finite peak wavelength and
    /// intensity and a finite FWHM above 0 for the peaked functions.
    bool isValid() const { return _valid; }

    /// The distribution at the wavelength in nm; 0 when !isValid().
    float valueAt(float wavelength) const;

private:
    double blackbodyAt(double wavelength) const;
    double daylightAt(double wavelength) const;
    double peakAt(double wavelength) const;
    void setUpDaylight();
    bool parametersUsable() const;

    int _function;
    double _peakWavelength;
    double _peakIntensity;
    double _fwhm;
    double _temperature;
    bool _valid;

    double _halfWidth = 0.0;         // a of the peaked functions
    double _m1 = 0.0;                // daylight component weights
    double _m2 = 0.0;
    double _daylightAt560 = 1.0;     // daylight normalisation
};

#endif // QZEANALYTICSPECTRUM_H
