#ifndef QZESPECTRUM_H
#define QZESPECTRUM_H

#include "QZEBandWeights.h"

#include <QByteArray>
#include <QString>

#include <string>
#include <tuple>
#include <vector>

// A spectral power or reflectance distribution.
//
// The source is a list of (wavelength, value) samples, either on a uniform
// grid (version 1: start, delta, count) or at arbitrary non-decreasing
// wavelengths (version 2). Every colorimetric computation uses the 40 derived
// band averages over [380 + 10k, 390 + 10k) nm, which only resample()
// recomputes: operations that edit the source leave the bands stale until the
// caller resamples.
//
// The reset rule. setUseSpectrum(b) on a spectrum whose flag is set, whose
// bands exist and whose version is 0 first turns it into the constant 1.0 on
// 380, 5, 81; setNumSamples(n) on a spectrum whose flag is set, whose bands
// exist and whose count is 0 does the same and clears the flag. Public calls,
// set(), resampleSource(), add() and the file loads go through the rule. Two
// places store their values without it:
//  - the reset itself fills 1.0 on 380, 5, 81 and stores flag and count
//    directly, so it never re-enters the rule;
//  - the two array loads resample before they raise the flag, so the rule
//    would meet the bands they just made (at the flag when it was already
//    set on a version 0 spectrum, at the count on a fresh one) and throw the
//    loaded data away; they store flag and count directly and leave the
//    spectrum loaded and active with the count given.
//
// Band averaging treats two samples at the same wavelength as a step: the
// zero-width segment between them adds nothing (rather than dividing by its
// zero width). resampleSource() takes the first of equal wavelengths on an
// exact hit. setRGB() on a grid of no samples does nothing.
//
// Spectrum files: a native "spectral1"/"spectral2" text file or a two-column
// ".txt" file, parsed from memory with a locale-independent number parser.
// Progress goes to standard output, format errors to standard error, with
// the exact words the hosts' logs have always shown. Beyond those:
//  - the version word is echoed cut to its first 64 bytes (a real one is
//    short; a file of one huge line must not flood the log);
//  - a native file whose header does not hold a non-negative count (and, for
//    version 1, start and delta) is rejected with
//    "ERROR Spectrum: Invalid Spectrum File header.";
//  - a version 1 header whose delta is 0 or negative is rejected with
//    "ERROR Spectrum: Delta wavelength is not positive.";
//  - a native file that holds fewer numbers than its header announces is
//    rejected with "ERROR Spectrum: Unexpected end of Spectrum File."
//    rather than padded with zeros, so a truncated file never loads as a
//    plausible but wrong spectrum. Nothing is allocated beyond what the file
//    can hold, whatever count it announces;
//  - a wavelength or value that is not a finite number (nan, inf) makes
//    either format fail with "ERROR Spectrum: Wavelength is not a finite
//    number." or "ERROR Spectrum: Value is not a finite number.", once the
//    decreasing-wavelength check has passed it;
//  - input larger than MaxFileSize (64 MiB), from a file, a pipe, a device or
//    memory, is refused whole with "ERROR Spectrum: Spectrum File larger than
//    64 MiB."; it is never cut short and read in part;
//  - a file is read with plain reads into memory, never mapped, so one that
//    shrinks or changes while it is read gives an ordinary result;
//  - save() writes a temporary file in the destination's folder and renames
//    it over the destination only once every byte has been written and
//    flushed: a full disk, a kill or any failure leaves the old file as it
//    was. A destination whose folder may not be written cannot be saved.
//
// Loading a file fills only the source: the 40 bands stay as they were (stale)
// until resample() runs. The host's osg::Spectrum::load() does the same.
//
// getRGB() is not normalised: it is the CIE 1931 observer summed over the 40
// bands (10 nm each, without the band width or a white-point scale) through
// the equal-energy sRGB matrix, so the constant 1.0 spectrum gives about
// 10.69 in each channel. Divide by that figure to compare with 0..1 colours.
class QZESpectrum
{
public:
    static constexpr int NumBands = 40;
    static constexpr int FirstBandWavelength = 380;
    static constexpr int BandWidth = 10;
    // The largest spectrum file (or in-memory data) the loads accept, in bytes.
    static constexpr qint64 MaxFileSize = qint64(64) * 1024 * 1024;

    // use-spectrum flag, filename (UTF-8), version id, start, delta, number
    // of samples, wavelengths, source values, band samples.
    struct RGB
    {
        float r = 0.0f;
        float g = 0.0f;
        float b = 0.0f;
    };

    using Options = std::tuple<bool, std::string, int, int, int, int, std::vector<float>,
                               std::vector<float>, std::vector<float>>;

    QZESpectrum() = default;
    explicit QZESpectrum(const Options& options);
    QZESpectrum(bool useSpectrum, const std::string& filename, int versionID, int start,
                int delta, int numSamples, const std::vector<float>& wavelengths,
                const std::vector<float>& sourceValues, const std::vector<float>& samples);

    Options getOptions() const;
    bool copy(const QZESpectrum& other);

    bool isActive() const { return _useSpectrum && int(_samples.size()) >= NumBands; }
    bool isInitialized() const { return _versionID != 0; }

    bool getUseSpectrum() const { return _useSpectrum; }
    void setUseSpectrum(bool on);
    QString getFilename() const { return QString::fromStdString(_filename); }
    void setFilename(const QString& name) { _filename = name.toStdString(); }
    int getVersionID() const { return _versionID; }
    void setVersionID(int id) { _versionID = id; }
    int getStartWavelength() const { return _startWavelength; }
    void setStartWavelength(int start) { _startWavelength = start; }
    int getDeltaWavelength() const { return _deltaWavelength; }
    void setDeltaWavelength(int delta) { _deltaWavelength = delta; }
    int getNumSamples() const { return _numSamples; }
    void setNumSamples(int num);

    const std::vector<float>& getWavelengths() const { return _wavelengths; }
    std::vector<float>& editWavelengths() { return _wavelengths; }
    const std::vector<float>& getSourceValues() const { return _sourceValues; }
    std::vector<float>& editSourceValues() { return _sourceValues; }
    float getSourceValues(int i) const { return _sourceValues[size_t(i)]; }
    const std::vector<float>& getSamples() const { return _samples; }
    std::vector<float>& editSamples() { return _samples; }

    void set(float value, int start, int delta, int num);
    void setOne();
    bool load(int start, int delta, int num, const float* values);
    bool load(int num, const float* wavelengths, const float* values);

    void resample();
    void resampleSource(int start, int delta, int num);

    void scale(float factor);
    void add(QZESpectrum& other);
    float getSum() const;
    float getMaxValue() const;
    void setPhotometricValue(float value);
    float getPhotometricValue() const;

    void setRGB(float r, float g, float b, int start, int delta, int num);
    RGB getRGB() const;

    // Adds an analytic spectrum (QZEAnalyticSpectrum's functions 0..10) at the
    // source wavelengths, or with replace makes the spectrum that function
    // alone on the grid start, delta, num (also when there is no source yet).
    // Afterwards the spectrum is active and its bands are current. Returns
    // false and changes nothing for an unknown function, unusable parameters,
    // an empty grid where the grid is used, or values beyond float range (a
    // black body far below 100 K).
    bool addAnalyticFunction(int function, float peakWavelength, float peakIntensity, float fwhm,
                             float temperature, bool replace, int start, int delta, int num);

    bool load(const QString& name);
    bool loadNative(const QString& name);
    bool loadTxt(const QString& name);
    bool save(const QString& name);
    // As save(name); when the file system refuses the file, *reason (when
    // given) says why in the system's words.
    bool save(const QString& name, QString* reason);

    // The same parsers over bytes already in memory (resources, network,
    // fuzzing); name is what the messages and the filename field show.
    bool loadNativeData(const QByteArray& data, const QString& name);
    bool loadTxtData(const QByteArray& data, const QString& name);
    // The parser that load(name) would choose for name (false, silently,
    // when name names neither format) over bytes in memory. After a
    // successful load, unreadAt is the offset of the first byte that is
    // neither white space nor read (data.size() when every number was
    // read): text after a text file's end pair or after the numbers a native
    // header announces, or the first pair that is not two numbers.
    bool loadData(const QByteArray& data, const QString& name, qint64& unreadAt);

private:
    // Builds its illuminants while the shared instance is still being created,
    // so it weighs them without going through getInstance().
    friend class QZESpectralData;

    using Parser = bool (QZESpectrum::*)(const char*, size_t, const QString&, size_t& unreadAt);
    struct Reader
    {
        const char* banner;
        Parser parser;
    };
    static const Reader NativeReader;
    static const Reader TxtReader;

    bool loadFile(const QString& name, const Reader& reader);
    bool loadBytes(const QByteArray& data, const QString& name, const Reader& reader,
                   size_t& unreadAt);
    bool parse(const char* data, size_t size, const QString& name, const Reader& reader,
               size_t& unreadAt);
    bool parseNative(const char* data, size_t size, const QString& name, size_t& unreadAt);
    bool parseTxt(const char* data, size_t size, const QString& name, size_t& unreadAt);
    void finishLoad(int versionID, int start, int delta, const QString& name);
    static void reportDecreasing(const char* tag, float current, float previous);
    static bool reportNonFinite(const char* what);
    static bool reportTruncated();
    static bool reportTooLarge();
    static bool reportReadError(const QString& name);
    static bool reportWriteError(const std::string& path);
    bool writeNative(std::string& text) const;

    void fillUniform(float value, int start, int delta, int num);
    void resetToOne();
    void storeSampling(int versionID, int start, int delta, int num);
    size_t sourceCount() const;
    void addAligned(QZESpectrum& other);
    void mergeDisjoint(const QZESpectrum& other);
    void matchTxtSeam(QZESpectrum& other);
    bool bandsAreCurrent(size_t n) const;
    struct SmitsMix;
    static SmitsMix smitsMix(float r, float g, float b);
    float interpolateSource(float x) const;
    float sumOfSquaredBands() const;

    bool _useSpectrum = false;
    std::string _filename;
    int _versionID = 0;
    int _startWavelength = 380;
    int _deltaWavelength = 0;
    int _numSamples = 0;
    std::vector<float> _wavelengths;
    std::vector<float> _sourceValues;
    std::vector<float> _samples;

    // What the last resample() worked from and made, so that resampling
    // unchanged data costs a comparison, and the wavelengths' share of the
    // band arithmetic, reused while the wavelengths stay the same.
    QZEBandWeights _bandWeights;
    std::vector<float> _resampledValues;
    std::vector<float> _resampledBands;
};

#endif // QZESPECTRUM_H
