#include "QZESpectralData.h"

#include "QZESpectralTables.h"

#include <mutex>

namespace {

QZESpectralData* s_instance = nullptr;

constexpr int BasisStart = 380;
constexpr int BasisDelta = 5;
constexpr int BasisNum = 81;

} // namespace

QZESpectralData* QZESpectralData::getInstance()
{
    static std::once_flag created;
    std::call_once(created, [] {
        if (!s_instance)
            (new QZESpectralData)->initCIE1931(); // lives for the whole process
    });
    return s_instance;
}

QZESpectralData::QZESpectralData()
{
    s_instance = this;
}

void QZESpectralData::initCIE1931()
{
    loadObserver(CIE1931cmf_count, CIE1931cmf_lambda, CIE1931cmf_X, CIE1931cmf_Y, CIE1931cmf_Z);
    initSpectralData();
}

void QZESpectralData::initCIE2006()
{
    loadObserver(CIE2006cmf_count, CIE2006cmf_lambda, CIE2006cmf_X, CIE2006cmf_Y, CIE2006cmf_Z);
    initSpectralData();
}

// The sources are normalised so that y-bar sums to one over the bands, while
// the band samples keep the unscaled averages that getRGB() weights with.
void QZESpectralData::loadObserver(int count, const float* lambda, const float* x,
                                   const float* y, const float* z)
{
    _xBar.load(count, lambda, x);
    _yBar.load(count, lambda, y);
    _zBar.load(count, lambda, z);
    const float k = 1.0f / _yBar.getSum();
    _xBar.scale(k);
    _yBar.scale(k);
    _zBar.scale(k);
}

void QZESpectralData::initSpectralData()
{
    _illuminantD65.load(CIEilluminant_count, CIEilluminant_lambda, CIEilluminant_D65);
    _illuminantA.load(CIEilluminant_count, CIEilluminant_lambda, CIEilluminant_A);
    _illuminantE.load(CIEilluminant_count, CIEilluminant_lambda, CIEilluminant_E);
    weightByPhotometricValue(_illuminantD65);
    weightByPhotometricValue(_illuminantA);

    const float* reflectance[NumBases] = {RGB2ReflSpec_White, RGB2ReflSpec_Cyan,
                                          RGB2ReflSpec_Magenta, RGB2ReflSpec_Yellow,
                                          RGB2ReflSpec_Red, RGB2ReflSpec_Green,
                                          RGB2ReflSpec_Blue};
    const float* illuminant[NumBases] = {RGB2IlluSpec_White, RGB2IlluSpec_Cyan,
                                         RGB2IlluSpec_Magenta, RGB2IlluSpec_Yellow,
                                         RGB2IlluSpec_Red, RGB2IlluSpec_Green,
                                         RGB2IlluSpec_Blue};
    for (int i = 0; i < NumBases; ++i) {
        _reflectance[i].load(RGB2Spec_count, RGB2Spec_lambda, reflectance[i]);
        _reflectance[i].resampleSource(BasisStart, BasisDelta, BasisNum);
        _illuminant[i].load(RGB2Spec_count, RGB2Spec_lambda, illuminant[i]);
        _illuminant[i].resampleSource(BasisStart, BasisDelta, BasisNum);
    }
    // The key names the grid the reflectance bases are on, so setRGB()
    // resamples them again for any other grid it is asked for.
    _reflStart = BasisStart;
    _reflDelta = BasisDelta;
    _reflNum = BasisNum;
}

// Multiplies the source by the spectrum's own photometric value (the sum of
// its squared bands); hosts' stored light intensities were calibrated on it.
void QZESpectralData::weightByPhotometricValue(QZESpectrum& illuminant)
{
    if (!illuminant.isActive())
        return;
    const float p = illuminant.sumOfSquaredBands();
    for (float& value : illuminant.editSourceValues())
        value *= p;
}

void QZESpectralData::resampleReflSpec(int start, int delta, int num)
{
    if (num <= 0)
        return; // an empty grid would leave no bases to resample from later
    for (QZESpectrum& basis : _reflectance)
        basis.resampleSource(start, delta, num);
    _reflStart = start;
    _reflDelta = delta;
    _reflNum = num;
}

bool QZESpectralData::hasReflSampling(int start, int delta, int num) const
{
    return _reflStart == start && _reflDelta == delta && _reflNum == num;
}
