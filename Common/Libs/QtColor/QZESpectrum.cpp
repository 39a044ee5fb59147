#include "QZESpectrum.h"

#include "QZEAnalyticSpectrum.h"
#include "QZENumberFormatter.h"
#include "QZENumberScanner.h"
#include "QZESpectralData.h"

#include "QZEAtomicFileWriter.h"
#include "QZEBoundedFileReader.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string_view>

namespace {

constexpr float ResetValue = 1.0f;
constexpr int ResetStart = 380;
constexpr int ResetDelta = 5;
constexpr int ResetNum = 81;

// Only a real version word is short; anything longer is cut in the message.
constexpr size_t MaxPrintedWord = 64;

// start + i * delta without int overflow for any grid a file or caller names.
float gridWavelength(int start, int delta, int i)
{
    return float(std::int64_t(start) + std::int64_t(i) * delta);
}

// Truncation toward zero, saturated where a float leaves the int range.
int truncateToInt(float x)
{
    if (std::isnan(x))
        return 0;
    if (x <= -2147483648.0f)
        return INT32_MIN;
    return x < 2147483648.0f ? int(x) : INT32_MAX;
}

bool containsUpper(const QString& name, const char* suffix)
{
    return name.toUpper().contains(QLatin1String(suffix));
}

// The name whose bytes on the file system are name's UTF-8, whatever the
// locale's encoding.
QString fileSystemName(const QString& name)
{
    return QFile::decodeName(name.toUtf8());
}

bool sameBits(const std::vector<float>& stored, const float* current, size_t count)
{
    return stored.size() == count
           && std::memcmp(stored.data(), current, count * sizeof(float)) == 0;
}

bool refusedBy(const QZEAtomicFileWriter& file, QString* reason)
{
    if (reason)
        *reason = file.errorString();
    return false;
}

} // namespace

QZESpectrum::QZESpectrum(const Options& options)
    : _useSpectrum(std::get<0>(options)),
      _filename(std::get<1>(options)),
      _versionID(std::get<2>(options)),
      _startWavelength(std::get<3>(options)),
      _deltaWavelength(std::get<4>(options)),
      _numSamples(std::get<5>(options)),
      _wavelengths(std::get<6>(options)),
      _sourceValues(std::get<7>(options)),
      _samples(std::get<8>(options))
{
}

QZESpectrum::QZESpectrum(bool useSpectrum, const std::string& filename, int versionID,
                         int start, int delta, int numSamples,
                         const std::vector<float>& wavelengths,
                         const std::vector<float>& sourceValues,
                         const std::vector<float>& samples)
    : QZESpectrum(Options(useSpectrum, filename, versionID, start, delta, numSamples,
                          wavelengths, sourceValues, samples))
{
}

QZESpectrum::Options QZESpectrum::getOptions() const
{
    return Options(_useSpectrum, _filename, _versionID, _startWavelength, _deltaWavelength,
                   _numSamples, _wavelengths, _sourceValues, _samples);
}

bool QZESpectrum::copy(const QZESpectrum& other)
{
    if (&other != this)
        *this = other;
    return true;
}

// --- Reset rule ----------------------------------------------------------------

void QZESpectrum::resetToOne()
{
    fillUniform(ResetValue, ResetStart, ResetDelta, ResetNum);
    storeSampling(1, ResetStart, ResetDelta, ResetNum);
}

// Marks the source as in use with the sampling given, storing flag and count
// without the reset rule.
void QZESpectrum::storeSampling(int versionID, int start, int delta, int num)
{
    _useSpectrum = true;
    _versionID = versionID;
    _filename.clear();
    _startWavelength = start;
    _deltaWavelength = delta;
    _numSamples = num;
}

void QZESpectrum::setUseSpectrum(bool on)
{
    if (_useSpectrum && int(_samples.size()) >= NumBands && _versionID == 0)
        resetToOne();
    _useSpectrum = on;
}

void QZESpectrum::setNumSamples(int num)
{
    if (_useSpectrum && int(_samples.size()) >= NumBands && _numSamples == 0) {
        _versionID = 0;
        resetToOne();
        _useSpectrum = false;
    }
    _numSamples = num;
}

// --- Building the source ---------------------------------------------------

void QZESpectrum::fillUniform(float value, int start, int delta, int num)
{
    _wavelengths.clear();
    _sourceValues.clear();
    for (int i = 0; i < num; ++i) {
        _wavelengths.push_back(gridWavelength(start, delta, i));
        _sourceValues.push_back(value);
    }
}

void QZESpectrum::set(float value, int start, int delta, int num)
{
    fillUniform(value, start, delta, num);
    setUseSpectrum(true);
    _versionID = 1;
    _filename.clear();
    _startWavelength = start;
    _deltaWavelength = delta;
    setNumSamples(num);
}

void QZESpectrum::setOne()
{
    set(ResetValue, ResetStart, ResetDelta, ResetNum);
}

bool QZESpectrum::load(int start, int delta, int num, const float* values)
{
    fillUniform(0.0f, start, delta, num);
    std::copy(values, values + std::max(num, 0), _sourceValues.begin());
    resample();
    storeSampling(1, start, delta, num);
    return true;
}

bool QZESpectrum::load(int num, const float* wavelengths, const float* values)
{
    _wavelengths.clear();
    _sourceValues.clear();
    for (int i = 0; i < num; ++i) {
        _wavelengths.push_back(wavelengths[i]);
        _sourceValues.push_back(values[i]);
        if (i >= 1 && wavelengths[i - 1] > wavelengths[i]) {
            std::cout << "_wavelengths)[i]: " << wavelengths[i] << '\n'
                      << "_wavelengths)[i-1]: " << wavelengths[i - 1] << '\n';
            return false;
        }
    }
    resample();
    storeSampling(2, 0, 0, num);
    return true;
}

// --- Resampling --------------------------------------------------------------

size_t QZESpectrum::sourceCount() const
{
    return std::min(_wavelengths.size(), _sourceValues.size());
}

void QZESpectrum::resample()
{
    if (_wavelengths.empty() || _sourceValues.empty())
        return;
    const size_t n = sourceCount();
    if (bandsAreCurrent(n))
        return;
    if (!_bandWeights.isFor(_wavelengths.data(), n))
        _bandWeights.rebuild(_wavelengths.data(), n, float(FirstBandWavelength),
                             float(BandWidth), NumBands);
    _samples.resize(size_t(NumBands));
    _bandWeights.average(_sourceValues.data(), _samples.data());
    _resampledValues.assign(_sourceValues.begin(), _sourceValues.begin() + long(n));
    _resampledBands = _samples;
}

// Whether the bands hold what resampling the first n source samples gives:
// the source and the bands are as the last resample() left them. The
// comparison is by bits, so edits through the edit*() references, however
// long a caller keeps them, are always seen.
bool QZESpectrum::bandsAreCurrent(size_t n) const
{
    return _bandWeights.isFor(_wavelengths.data(), n) && sameBits(_resampledValues, _sourceValues.data(), n)
           && sameBits(_resampledBands, _samples.data(), _samples.size());
}

// The source interpolated at x, held constant beyond its ends.
float QZESpectrum::interpolateSource(float x) const
{
    const std::vector<float>& w = _wavelengths;
    const std::vector<float>& s = _sourceValues;
    const size_t n = sourceCount();
    if (n == 1 || w[0] >= x)
        return s[0];
    if (x > w[n - 1])
        return s[n - 1];
    // First sample at or beyond x; an exact hit takes the first of equal wavelengths.
    const size_t end = size_t(std::lower_bound(w.begin() + 1, w.begin() + long(n), x) - w.begin());
    const size_t m = end - 1;
    if (w[end] == x)
        return s[end];
    const float t = (x - w[m]) / (w[m + 1] - w[m]);
    return t * s[m + 1] + (1.0f - t) * s[m];
}

void QZESpectrum::resampleSource(int start, int delta, int num)
{
    if (_wavelengths.empty() || _sourceValues.empty())
        return;
    std::vector<float> wavelengths;
    std::vector<float> values;
    for (int g = 0; g < num; ++g) {
        const float x = gridWavelength(start, delta, g);
        wavelengths.push_back(x);
        values.push_back(interpolateSource(x));
    }
    _wavelengths.swap(wavelengths);
    _sourceValues.swap(values);
    _versionID = 1;
    _startWavelength = start;
    _deltaWavelength = delta;
    setNumSamples(num);
}

// --- Arithmetic --------------------------------------------------------------

void QZESpectrum::scale(float factor)
{
    if (!isActive() || _numSamples == 0)
        return;
    const size_t count = std::min(size_t(std::max(_numSamples, 0)), _sourceValues.size());
    for (size_t i = 0; i < count; ++i)
        _sourceValues[i] *= factor;
}

float QZESpectrum::getSum() const
{
    if (!isActive())
        return 0.0f;
    float sum = 0.0f;
    for (int k = 0; k < NumBands; ++k)
        sum += _samples[size_t(k)];
    return sum;
}

float QZESpectrum::getMaxValue() const
{
    if (!isActive() || _sourceValues.empty())
        return 0.0f;
    const size_t count = std::min(size_t(std::max(_numSamples, 1)), _sourceValues.size());
    return *std::max_element(_sourceValues.begin(), _sourceValues.begin() + long(count));
}

float QZESpectrum::sumOfSquaredBands() const
{
    float sum = 0.0f;
    for (int k = 0; k < NumBands; ++k)
        sum += _samples[size_t(k)] * _samples[size_t(k)];
    return sum;
}

float QZESpectrum::getPhotometricValue() const
{
    QZESpectralData::getInstance();
    return isActive() ? sumOfSquaredBands() : 0.0f;
}

void QZESpectrum::setPhotometricValue(float value)
{
    float p = getPhotometricValue();
    if (!(isActive() && p > 0.0f)) {
        set(ResetValue, ResetStart, ResetDelta, ResetNum);
        if (!_useSpectrum)
            return;
        p = getPhotometricValue();
    }
    scale(value / p);
}

void QZESpectrum::add(QZESpectrum& other)
{
    if (other.sourceCount() == 0)
        return;
    matchTxtSeam(other);
    if (sourceCount() == 0) {
        mergeDisjoint(other);
        return;
    }
    const float thisFirst = _wavelengths.front();
    const float thisLast = _wavelengths[sourceCount() - 1];
    const float otherFirst = other._wavelengths.front();
    const float otherLast = other._wavelengths[other.sourceCount() - 1];
    if (thisFirst < otherLast && otherFirst < thisLast)
        addAligned(other);
    else
        mergeDisjoint(other);
}

// Text files often split one measurement at a seam wavelength: the brighter
// side is lowered so that both meet at the same value.
void QZESpectrum::matchTxtSeam(QZESpectrum& other)
{
    if (!containsUpper(getFilename(), ".TXT") || !containsUpper(other.getFilename(), ".TXT"))
        return;
    if (sourceCount() == 0)
        return;
    const size_t thisLast = sourceCount() - 1;
    const size_t otherLast = other.sourceCount() - 1;
    float ratio = 1.0f;
    if (_wavelengths[thisLast] == other._wavelengths.front())
        ratio = _sourceValues[thisLast] / other._sourceValues.front();
    if (_wavelengths.front() == other._wavelengths[otherLast])
        ratio = _sourceValues.front() / other._sourceValues[otherLast];
    if (ratio > 1.0f)
        scale(1.0f / ratio);
    else if (ratio < 1.0f)
        other.scale(ratio);
}

void QZESpectrum::addAligned(QZESpectrum& other)
{
    const float thisFirst = _wavelengths.front();
    const float thisLast = _wavelengths[sourceCount() - 1];
    const float otherFirst = other._wavelengths.front();
    const float otherLast = other._wavelengths[other.sourceCount() - 1];
    const bool sameGrid = _startWavelength == other._startWavelength
                          && _deltaWavelength == other._deltaWavelength
                          && _numSamples == other._numSamples;
    if (!sameGrid) {
        if (otherLast >= thisLast && thisFirst >= otherFirst) {
            resampleSource(other._startWavelength, other._deltaWavelength, other._numSamples);
        } else if (thisLast >= otherLast && otherFirst >= thisFirst) {
            other.resampleSource(_startWavelength, _deltaWavelength, _numSamples);
        } else {
            resampleSource(ResetStart, ResetDelta, ResetNum);
            other.resampleSource(ResetStart, ResetDelta, ResetNum);
        }
    }
    const size_t count = std::min({other._sourceValues.size(), size_t(std::max(_numSamples, 0)),
                                   _sourceValues.size()});
    for (size_t i = 0; i < count; ++i)
        _sourceValues[i] += other._sourceValues[i];
}

void QZESpectrum::mergeDisjoint(const QZESpectrum& other)
{
    const size_t n1 = sourceCount();
    const size_t n2 = other.sourceCount();
    std::vector<float> wavelengths;
    std::vector<float> values;
    wavelengths.reserve(n1 + n2);
    values.reserve(n1 + n2);
    size_t i = 0;
    size_t j = 0;
    while (i < n1 || j < n2) {
        if (j >= n2 || (i < n1 && _wavelengths[i] < other._wavelengths[j])) {
            wavelengths.push_back(_wavelengths[i]);
            values.push_back(_sourceValues[i++]);
        } else if (i >= n1 || other._wavelengths[j] < _wavelengths[i]) {
            wavelengths.push_back(other._wavelengths[j]);
            values.push_back(other._sourceValues[j++]);
        } else {
            const bool seam = (i == 0 && j + 1 == n2) || (j == 0 && i + 1 == n1);
            wavelengths.push_back(_wavelengths[i]);
            values.push_back(seam ? _sourceValues[i] : _sourceValues[i] + other._sourceValues[j]);
            ++i;
            ++j;
        }
    }
    _wavelengths.swap(wavelengths);
    _sourceValues.swap(values);
    _versionID = 2;
    _startWavelength = truncateToInt(_wavelengths.front());
    _deltaWavelength = 0;
    setNumSamples(int(_wavelengths.size()));
}

// --- Colour ------------------------------------------------------------------

QZESpectrum::RGB QZESpectrum::getRGB() const
{
    const QZESpectralData* data = QZESpectralData::getInstance();
    if (!isActive())
        return RGB();
    const std::vector<float>& xBar = data->getXBar().getSamples();
    const std::vector<float>& yBar = data->getYBar().getSamples();
    const std::vector<float>& zBar = data->getZBar().getSamples();
    float X = 0.0f, Y = 0.0f, Z = 0.0f;
    for (size_t i = 0; i < size_t(NumBands); ++i) {
        X += _samples[i] * xBar[i];
        Y += _samples[i] * yBar[i];
        Z += _samples[i] * zBar[i];
    }
    // XYZ to linear RGB for sRGB primaries with an equal-energy white.
    RGB rgb;
    rgb.r = 3.1462510f * X - 1.6661239f * Y - 0.4801272f * Z;
    rgb.g = -0.9955351f * X + 1.9557633f * Y + 0.0397715f * Z;
    rgb.b = 0.0635979f * X - 0.2145965f * Y + 1.1509988f * Z;
    return rgb;
}

// The Smits reflectance for r, g, b: the smallest channel times the white
// basis plus two more bases, chosen and weighted by the channels' order.
struct QZESpectrum::SmitsMix
{
    float white;
    float first;
    float second;
    QZESpectralData::Basis firstBasis;
    QZESpectralData::Basis secondBasis;
};

QZESpectrum::SmitsMix QZESpectrum::smitsMix(float r, float g, float b)
{
    using D = QZESpectralData;
    if (r <= g && r <= b) {
        if (b >= g)
            return {r, g - r, b - g, D::Cyan, D::Blue};
        return {r, b - r, g - b, D::Cyan, D::Green};
    }
    if (g <= r && g <= b) {
        if (b >= r)
            return {g, r - g, b - r, D::Magenta, D::Blue};
        return {g, b - g, r - b, D::Magenta, D::Red};
    }
    if (g >= r)
        return {b, r - b, g - r, D::Yellow, D::Green};
    return {b, g - b, r - g, D::Yellow, D::Red};
}

void QZESpectrum::setRGB(float r, float g, float b, int start, int delta, int num)
{
    QZESpectralData* data = QZESpectralData::getInstance();
    if (num <= 0)
        return;
    if (!data->hasReflSampling(start, delta, num))
        data->resampleReflSpec(start, delta, num);
    const SmitsMix mix = smitsMix(r, g, b);
    const float* white = data->getReflectanceBasis(QZESpectralData::White).getSourceValues().data();
    const float* first = data->getReflectanceBasis(mix.firstBasis).getSourceValues().data();
    const float* second = data->getReflectanceBasis(mix.secondBasis).getSourceValues().data();
    _wavelengths.resize(size_t(num));
    _sourceValues.resize(size_t(num));
    for (size_t i = 0; i < size_t(num); ++i) {
        float value = mix.white * white[i];
        value += mix.first * first[i] + mix.second * second[i];
        value *= 0.94f;
        _sourceValues[i] = value <= 0.0f ? 0.0f : (value >= 1.0f ? 1.0f : value);
        _wavelengths[i] = gridWavelength(start, delta, int(i));
    }
    resample();
    setUseSpectrum(true);
    storeSampling(1, start, delta, num);
}

// --- Analytic spectra --------------------------------------------------------

bool QZESpectrum::addAnalyticFunction(int function, float peakWavelength, float peakIntensity,
                                      float fwhm, float temperature, bool replace, int start,
                                      int delta, int num)
{
    const QZEAnalyticSpectrum analytic(function, peakWavelength, peakIntensity, fwhm, temperature);
    if (!analytic.isValid())
        return false;
    const bool onGrid = replace || sourceCount() == 0;
    if (onGrid && num <= 0)
        return false;
    std::vector<float> wavelengths;
    if (onGrid) {
        for (int i = 0; i < num; ++i)
            wavelengths.push_back(gridWavelength(start, delta, i));
    } else {
        wavelengths.assign(_wavelengths.begin(), _wavelengths.begin() + long(sourceCount()));
    }
    std::vector<float> values;
    values.reserve(wavelengths.size());
    for (float wavelength : wavelengths) {
        values.push_back(analytic.valueAt(wavelength));
        if (!std::isfinite(values.back()))
            return false;
    }

    if (onGrid) {
        _wavelengths.swap(wavelengths);
        _sourceValues.swap(values);
        storeSampling(1, start, delta, num);
    } else {
        for (size_t i = 0; i < values.size(); ++i)
            _sourceValues[i] += values[i];
    }
    resample();
    setUseSpectrum(true);
    return true;
}

// --- Files -------------------------------------------------------------------

const QZESpectrum::Reader QZESpectrum::NativeReader = {"Spectrum::loadNative",
                                                       &QZESpectrum::parseNative};
const QZESpectrum::Reader QZESpectrum::TxtReader = {"Spectrum::loadTxt", &QZESpectrum::parseTxt};

bool QZESpectrum::load(const QString& name)
{
    if (containsUpper(name, ".SPECTRAL"))
        return loadNative(name);
    if (containsUpper(name, ".TXT"))
        return loadTxt(name);
    return false;
}

bool QZESpectrum::loadNative(const QString& name)
{
    return loadFile(name, NativeReader);
}

bool QZESpectrum::loadTxt(const QString& name)
{
    return loadFile(name, TxtReader);
}

bool QZESpectrum::loadNativeData(const QByteArray& data, const QString& name)
{
    size_t unreadAt = 0;
    return loadBytes(data, name, NativeReader, unreadAt);
}

bool QZESpectrum::loadTxtData(const QByteArray& data, const QString& name)
{
    size_t unreadAt = 0;
    return loadBytes(data, name, TxtReader, unreadAt);
}

bool QZESpectrum::loadData(const QByteArray& data, const QString& name, qint64& unreadAt)
{
    const Reader* reader = containsUpper(name, ".SPECTRAL") ? &NativeReader
                           : containsUpper(name, ".TXT")    ? &TxtReader
                                                            : nullptr;
    size_t offset = 0;
    if (!reader || !loadBytes(data, name, *reader, offset))
        return false;
    unreadAt = qint64(offset);
    return true;
}

bool QZESpectrum::loadFile(const QString& name, const Reader& reader)
{
    std::cout << reader.banner << '\n';
    setUseSpectrum(false);
    if (name.isEmpty())
        return false;
    try {
        QByteArray bytes;
        switch (QZEBoundedFileReader(fileSystemName(name), MaxFileSize).read(bytes)) {
        case QZEBoundedFileReader::OpenFailed:
            return false;
        case QZEBoundedFileReader::TooLarge:
            return reportTooLarge();
        case QZEBoundedFileReader::ReadFailed:
            return reportReadError(name);
        case QZEBoundedFileReader::Read:
            break;
        }
        size_t unreadAt = 0;
        return (this->*reader.parser)(bytes.constData(), size_t(bytes.size()), name, unreadAt);
    } catch (const std::exception&) {
        return reportReadError(name);
    }
}

bool QZESpectrum::loadBytes(const QByteArray& data, const QString& name, const Reader& reader,
                            size_t& unreadAt)
{
    std::cout << reader.banner << '\n';
    setUseSpectrum(false);
    if (data.size() > MaxFileSize)
        return reportTooLarge();
    try {
        return (this->*reader.parser)(data.constData(), size_t(data.size()), name, unreadAt);
    } catch (const std::exception&) {
        return reportReadError(name);
    }
}

void QZESpectrum::finishLoad(int versionID, int start, int delta, const QString& name)
{
    setUseSpectrum(true);
    _versionID = versionID;
    _filename = name.toStdString();
    _startWavelength = start;
    _deltaWavelength = delta;
    setNumSamples(int(_wavelengths.size()));
    // The reset rule above may have emptied the stored name; report the file read.
    std::cout << "Successfully read Spectrum File: " << name.toStdString() << '\n';
}

bool QZESpectrum::parseNative(const char* data, size_t size, const QString& name,
                              size_t& unreadAt)
{
    const std::string_view line = QZENumberScanner::firstLine(data, size);
    QZENumberScanner header(line.data(), line.size());
    const std::string_view word = header.nextWord();
    std::cout << "version: " << word.substr(0, MaxPrintedWord) << '\n';

    int version = 0;
    int start = 0;
    int delta = 0;
    int count = 0;
    bool ok;
    if (word == "spectral1") {
        version = 1;
        ok = header.nextInt(start) && header.nextInt(delta) && header.nextInt(count);
    } else if (word == "spectral2") {
        version = 2;
        ok = header.nextInt(count);
    } else {
        std::cerr << "ERROR Spectrum: Unknown Spectrum File Version!\n";
        return false;
    }
    if (!ok || count < 0) {
        std::cerr << "ERROR Spectrum: Invalid Spectrum File header.\n";
        return false;
    }
    // A grid that does not rise puts every sample at one wavelength or in
    // falling order, which no resampling can make sense of.
    if (version == 1 && delta <= 0) {
        std::cerr << "ERROR Spectrum: Delta wavelength is not positive.\n";
        return false;
    }

    std::cout << "startWavelength: " << start << '\n'
              << "deltaWavelength: " << delta << '\n'
              << "numSamples: " << count << '\n';

    QZENumberScanner numbers(data + line.size(), size - line.size());
    const size_t needed = size_t(count) * (version == 2 ? 2 : 1);
    _wavelengths.clear();
    _sourceValues.clear();
    if (!numbers.canHold(needed))
        return reportTruncated();
    _wavelengths.reserve(size_t(count));
    _sourceValues.reserve(size_t(count));
    for (int i = 0; i < count; ++i) {
        float wavelength = gridWavelength(start, delta, i);
        if (version == 2 && !numbers.next(wavelength))
            return reportTruncated();
        _wavelengths.push_back(wavelength);
        if (version == 2 && i >= 1 && _wavelengths[size_t(i) - 1] > wavelength) {
            reportDecreasing("2", _wavelengths[size_t(i)], _wavelengths[size_t(i) - 1]);
            return false;
        }
        if (!std::isfinite(wavelength))
            return reportNonFinite("Wavelength");
    }
    for (int i = 0; i < count; ++i) {
        float value;
        if (!numbers.next(value))
            return reportTruncated();
        if (!std::isfinite(value))
            return reportNonFinite("Value");
        _sourceValues.push_back(value);
    }
    const size_t headerEnd = header.nextWordOffset();
    unreadAt = headerEnd < line.size() ? headerEnd : line.size() + numbers.nextWordOffset();
    finishLoad(version, version == 1 ? start : 0, version == 1 ? delta : 0, name);
    return true;
}

// The pairs run to the first one that is not two numbers or is two zeros;
// unreadAt follows the last pair read whole.
bool QZESpectrum::parseTxt(const char* data, size_t size, const QString& name, size_t& unreadAt)
{
    QZENumberScanner numbers(data, size);
    _wavelengths.clear();
    _sourceValues.clear();
    unreadAt = numbers.nextWordOffset();
    for (;;) {
        float wavelength = 0.0f;
        float value = 0.0f;
        const bool wavelengthRead = numbers.next(wavelength);
        const bool valueRead = numbers.next(value);
        if (wavelengthRead && valueRead)
            unreadAt = numbers.nextWordOffset();
        if (wavelength == 0.0f && value == 0.0f)
            break;
        _wavelengths.push_back(wavelength);
        const size_t i = _wavelengths.size() - 1;
        if (i >= 1 && _wavelengths[i - 1] > _wavelengths[i]) {
            reportDecreasing("3", _wavelengths[i], _wavelengths[i - 1]);
            return false;
        }
        if (!std::isfinite(wavelength))
            return reportNonFinite("Wavelength");
        if (!std::isfinite(value))
            return reportNonFinite("Value");
        _sourceValues.push_back(value);
    }
    if (_wavelengths.empty()) {
        std::cerr << "ERROR Spectrum: Unexpected file format.\n";
        return false;
    }
    finishLoad(2, truncateToInt(_wavelengths.front()), 0, name);
    return true;
}

void QZESpectrum::reportDecreasing(const char* tag, float current, float previous)
{
    std::cerr << "ERROR Spectrum: Wavelengths not monotonically increasing.\n";
    std::cout << tag << " (*wavelengths)[i]: " << current << '\n'
              << tag << " (*wavelengths)[i-1]: " << previous << '\n';
}

// A nan wavelength slips past every ordering test and an infinite one turns
// the band integrals into nan: neither can be resampled.
bool QZESpectrum::reportNonFinite(const char* what)
{
    std::cerr << "ERROR Spectrum: " << what << " is not a finite number.\n";
    return false;
}

bool QZESpectrum::reportTruncated()
{
    std::cerr << "ERROR Spectrum: Unexpected end of Spectrum File.\n";
    return false;
}

bool QZESpectrum::reportTooLarge()
{
    std::cerr << "ERROR Spectrum: Spectrum File larger than 64 MiB.\n";
    return false;
}

bool QZESpectrum::reportReadError(const QString& name)
{
    std::cout << "Error reading Spectrum File: " << name.toStdString() << '\n';
    return false;
}

bool QZESpectrum::reportWriteError(const std::string& path)
{
    std::cout << "Error writing Spectrum File: " << path << '\n';
    return false;
}

bool QZESpectrum::save(const QString& name)
{
    return save(name, nullptr);
}

bool QZESpectrum::save(const QString& name, QString* reason)
{
    std::cout << "Spectrum::save\n";
    if (name.isEmpty())
        return false;
    const std::string path = name.toStdString();
    std::cout << "Spectrum File: " << path << '\n';
    QZEAtomicFileWriter file(fileSystemName(name));
    if (!file.open())
        return refusedBy(file, reason);
    std::string text;
    try {
        if (!writeNative(text)) {
            std::cout << "Unknown Spectrum File Version!\n";
            return false;
        }
    } catch (const std::exception&) {
        return reportWriteError(path);
    }
    if (!file.write(QByteArray::fromRawData(text.data(), int(text.size()))) || !file.commit()) {
        refusedBy(file, reason);
        return reportWriteError(path);
    }
    std::cout << "Successfully wrote Spectrum File: " << path << '\n';
    return true;
}

namespace {

// Each number followed by one space.
class NumberLine
{
public:
    explicit NumberLine(std::string& text) : _text(text) {}

    void append(const char* word) { _text += word; }
    void appendInt(int value) { appendWord(QZENumberFormatter::writeInt(_word, value)); }
    void appendFloats(const std::vector<float>& values)
    {
        // Most values take under ten characters; one reserve spares the regrowths.
        _text.reserve(_text.size() + values.size() * 10);
        for (float value : values)
            appendWord(QZENumberFormatter::writeFloat(_word, value));
    }

private:
    void appendWord(char* end)
    {
        *end++ = ' ';
        _text.append(_word, size_t(end - _word));
    }

    std::string& _text;
    char _word[QZENumberFormatter::MaxLength + 1];
};

} // namespace

bool QZESpectrum::writeNative(std::string& text) const
{
    NumberLine line(text);
    if (_versionID == 1) {
        line.append("spectral1 ");
        line.appendInt(_startWavelength);
        line.appendInt(_deltaWavelength);
        line.appendInt(_numSamples);
        line.append("\n");
    } else if (_versionID == 2) {
        line.append("spectral2 ");
        line.appendInt(_numSamples);
        line.append("\n");
        line.appendFloats(_wavelengths);
        line.append("\n");
    } else {
        return false;
    }
    line.appendFloats(_sourceValues);
    return true;
}
