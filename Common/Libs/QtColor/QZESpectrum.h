#ifndef QZESPECTRUM_H
#define QZESPECTRUM_H

#include <QByteArray>
#include <QString>

#include <iosfwd>
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
//  - a native file that holds fewer numbers than its header announces is
//    rejected with "ERROR Spectrum: Unexpected end of Spectrum File."
//    rather than padded with zeros, so a truncated file never loads as a
//    plausible but wrong spectrum. Nothing is allocated beyond what the file
//    can hold, whatever count it announces.
class QZESpectrum
{
public:
    static constexpr int NumBands = 40;
    static constexpr int FirstBandWavelength = 380;
    static constexpr int BandWidth = 10;

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

    // The same parsers over bytes already in memory (resources, network,
    // fuzzing); name is what the messages and the filename field show.
    bool loadNativeData(const QByteArray& data, const QString& name);
    bool loadTxtData(const QByteArray& data, const QString& name);

private:
    // Builds its illuminants while the shared instance is still being created,
    // so it weighs them without going through getInstance().
    friend class QZESpectralData;

    using Parser = bool (QZESpectrum::*)(const char*, size_t, const QString&);

    bool loadFile(const QString& name, const char* banner, Parser parser);
    bool loadBytes(const QByteArray& data, const QString& name, const char* banner,
                   Parser parser);
    bool parseNative(const char* data, size_t size, const QString& name);
    bool parseTxt(const char* data, size_t size, const QString& name);
    void finishLoad(int versionID, int start, int delta, const QString& name);
    static void reportDecreasing(const char* tag, float current, float previous);
    static bool reportTruncated();
    bool writeNative(std::ostream& out) const;

    void fillUniform(float value, int start, int delta, int num);
    void resetToOne();
    void storeSampling(int versionID, int start, int delta, int num);
    size_t sourceCount() const;
    void addAligned(QZESpectrum& other);
    void mergeDisjoint(const QZESpectrum& other);
    void matchTxtSeam(QZESpectrum& other);
    float bandAverage(float lo, float hi) const;
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
};

#endif // QZESPECTRUM_H
