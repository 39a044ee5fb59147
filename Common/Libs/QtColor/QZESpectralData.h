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
    enum Basis { White, Cyan, Magenta, Yellow, Red, Green, Blue, NumBases };

    /// The shared instance, built with the CIE 1931 observer on first use.
    static QZESpectralData* getInstance();

    /// Registers itself as the shared instance; all members start as default
    /// spectra until initCIE1931() or initCIE2006() fills them.
    QZESpectralData();

    void initCIE1931();
    void initCIE2006();
    void initSpectralData();

    /// Resamples the reflectance bases onto a uniform grid and remembers it;
    /// a grid of no samples is ignored. initSpectralData() leaves the key at
    /// the grid it loads the bases on (380, 5, 81).
    void resampleReflSpec(int start, int delta, int num);
    bool hasReflSampling(int start, int delta, int num) const;

    const QZESpectrum& getXBar() const { return _xBar; }
    const QZESpectrum& getYBar() const { return _yBar; }
    const QZESpectrum& getZBar() const { return _zBar; }
    const QZESpectrum& getIlluminantA() const { return _illuminantA; }
    const QZESpectrum& getIlluminantD65() const { return _illuminantD65; }
    const QZESpectrum& getIlluminantE() const { return _illuminantE; }
    const QZESpectrum& getReflectanceBasis(Basis basis) const { return _reflectance[basis]; }
    const QZESpectrum& getIlluminantBasis(Basis basis) const { return _illuminant[basis]; }
    int getReflStartWavelength() const { return _reflStart; }
    int getReflDeltaWavelength() const { return _reflDelta; }
    int getReflNumSamples() const { return _reflNum; }

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
