#ifndef QZESPECTRALDATA_H
#define QZESPECTRALDATA_H

#include "QZESpectrum.h"

/// The process-wide reference spectra: the CIE colour matching functions, the
/// illuminants A, D65 and E and the fourteen basis spectra of Smits'
/// RGB-to-spectrum method. Built from constant tables compiled into the
/// library; created on first use by getInstance() and never freed.
class QZESpectralData
{
public:
    /// The seven basis spectra of the RGB-to-spectrum conversion; NumBases counts them.
    enum Basis { White, Cyan, Magenta, Yellow, Red, Green, Blue, NumBases };

    /// The shared instance, built with the CIE 1931 observer on first use.
    static QZESpectralData* getInstance();

    /// Registers itself as the shared instance; all members start as default
    /// spectra until initCIE1931() or initCIE2006() fills them.
    QZESpectralData();

    /// @{
    /// Loads the colour matching functions of the CIE 1931 2-degree (or the
    /// CIE 2006 2-degree) observer, normalised so that y-bar sums to one over
    /// its bands, then runs initSpectralData().
    void initCIE1931();
    void initCIE2006();
    /// @}
    /// Loads the illuminants (A and D65 weighted by their photometric value)
    /// and the reflectance and illuminant bases on the 380 nm, 5 nm, 81-sample grid.
    void initSpectralData();

    /// Resamples the reflectance bases onto a uniform grid and remembers it;
    /// a grid of no samples is ignored. initSpectralData() leaves the key at
    /// the grid it loads the bases on (380, 5, 81).
    void resampleReflSpec(int start, int delta, int num);
    /// Whether the reflectance bases are on the grid start, delta, num (nanometres, samples).
    bool hasReflSampling(int start, int delta, int num) const;

    /// @{
    /// The colour matching functions x-bar, y-bar and z-bar of the loaded observer.
    const QZESpectrum& getXBar() const { return _xBar; }
    const QZESpectrum& getYBar() const { return _yBar; }
    const QZESpectrum& getZBar() const { return _zBar; }
    /// @}
    /// @{
    /// The CIE illuminants A, D65 and E (relative spectral power).
    const QZESpectrum& getIlluminantA() const { return _illuminantA; }
    const QZESpectrum& getIlluminantD65() const { return _illuminantD65; }
    const QZESpectrum& getIlluminantE() const { return _illuminantE; }
    /// @}
    /// @{
    /// The basis spectrum of basis for reflectances (values 0 to 1) or for
    /// illuminants, on the current reflectance grid or the 81-sample grid.
    const QZESpectrum& getReflectanceBasis(Basis basis) const { return _reflectance[basis]; }
    const QZESpectrum& getIlluminantBasis(Basis basis) const { return _illuminant[basis]; }
    /// @}
    /// @{
    /// The grid of the reflectance bases: first wavelength and spacing in
    /// nanometres, number of samples.
    int getReflStartWavelength() const { return _reflStart; }
    int getReflDeltaWavelength() const { return _reflDelta; }
    int getReflNumSamples() const { return _reflNum; }
    /// @}

private:
    void loadObserver(int count, const float* lambda, const float* x, const float* y,
                      const float* z);
    static void weightByPhotometricValue(QZESpectrum& illuminant);

    QZESpectrum _xBar;
    QZESpectrum _yBar;
    QZESpectrum _zBar;
    QZESpectrum _illuminantA;
    QZESpectrum _illuminantD65;
    QZESpectrum _illuminantE;
    QZESpectrum _reflectance[NumBases];
    QZESpectrum _illuminant[NumBases];
    int _reflStart = 0;
    int _reflDelta = 0;
    int _reflNum = 0;
};

#endif // QZESPECTRALDATA_H
