#ifndef QZESPECTRUM_H
#define QZESPECTRUM_H

#include "QZEBandWeights.h"

#include <QByteArray>
#include <QString>

#include <string>
#include <tuple>
#include <vector>

/// A spectral power or reflectance distribution.
///
/// The source is a list of (wavelength, value) samples, either on a uniform
/// grid (version 1: start, delta, count) or at arbitrary non-decreasing
/// wavelengths (version 2). Every colorimetric computation uses the 40 derived
/// band averages over [380 + 10k, 390 + 10k) nm, which only resample()
/// recomputes: operations that edit the source leave the bands stale until the
/// caller resamples.
///
/// The reset rule. setUseSpectrum(b) on a spectrum whose flag is set, whose
/// bands exist and whose version is 0 first turns it into the constant 1.0 on
/// 380, 5, 81; setNumSamples(n) on a spectrum whose flag is set, whose bands
/// exist and whose count is 0 does the same and clears the flag. Public calls,
/// set(), resampleSource(), add() and the file loads go through the rule. Two
/// places store their values without it:
///  - the reset itself fills 1.0 on 380, 5, 81 and stores flag and count
///    directly, so it never re-enters the rule;
///  - the two array loads resample before they raise the flag, so the rule
///    would meet the bands they just made (at the flag when it was already
///    set on a version 0 spectrum, at the count on a fresh one) and throw the
///    loaded data away; they store flag and count directly and leave the
///    spectrum loaded and active with the count given.
///
/// Band averaging treats two samples at the same wavelength as a step: the
/// zero-width segment between them adds nothing (rather than dividing by its
/// zero width). resampleSource() takes the first of equal wavelengths on an
/// exact hit. setRGB() on a grid of no samples does nothing.
///
/// Spectrum files: a native "spectral1"/"spectral2" text file or a two-column
/// ".txt" file, parsed from memory with a locale-independent number parser.
/// Progress goes to standard output, format errors to standard error, with
/// the exact words the hosts' logs have always shown. Beyond those:
///  - the version word is echoed cut to its first 64 bytes (a real one is
///    short; a file of one huge line must not flood the log);
///  - a native file whose header does not hold a non-negative count (and, for
///    version 1, start and delta) is rejected with
///    "ERROR Spectrum: Invalid Spectrum File header.";
///  - a version 1 header whose delta is 0 or negative is rejected with
///    "ERROR Spectrum: Delta wavelength is not positive.";
///  - a native file that holds fewer numbers than its header announces is
///    rejected with "ERROR Spectrum: Unexpected end of Spectrum File."
///    rather than padded with zeros, so a truncated file never loads as a
///    plausible but wrong spectrum. Nothing is allocated beyond what the file
///    can hold, whatever count it announces;
///  - a wavelength or value that is not a finite number (nan, inf) makes
///    either format fail with "ERROR Spectrum: Wavelength is not a finite
///    number." or "ERROR Spectrum: Value is not a finite number.", once the
///    decreasing-wavelength check has passed it;
///  - input larger than MaxFileSize (64 MiB), from a file, a pipe, a device or
///    memory, is refused whole with "ERROR Spectrum: Spectrum File larger than
///    64 MiB."; it is never cut short and read in part;
///  - a file is read with plain reads into memory, never mapped, so one that
///    shrinks or changes while it is read gives an ordinary result;
///  - save() writes a temporary file in the destination's folder and renames
///    it over the destination only once every byte has been written and
///    flushed: a full disk, a kill or any failure leaves the old file as it
///    was. A destination whose folder may not be written cannot be saved.
///
/// Loading a file fills only the source: the 40 bands stay as they were (stale)
/// until resample() runs. The host's osg::Spectrum::load() does the same.
///
/// getRGB() is not normalised: it is the CIE 1931 observer summed over the 40
/// bands (10 nm each, without the band width or a white-point scale) through
/// the equal-energy sRGB matrix, so the constant 1.0 spectrum gives about
/// 10.69 in each channel. Divide by that figure to compare with 0..1 colours.
///
/// Usage:
/// \code
/// QZESpectrum lamp;
/// if (lamp.load(QStringLiteral("lamp.spectral"))) {
///     lamp.resample();                  // the bands follow the loaded source
///     QZESpectrum::RGB rgb = lamp.getRGB();
///     const float scale = 1.0f / 10.69f; // constant 1.0 gives 10.69 per channel
///     QZEColor colour = QZEColor::fromRGB(rgb.r * scale, rgb.g * scale, rgb.b * scale);
/// }
/// \endcode
class QZESpectrum
{
public:
    /// The number of band averages every colour computation uses.
    static constexpr int NumBands = 40;
    /// The wavelength at which the first band starts, in nm.
    static constexpr int FirstBandWavelength = 380;
    /// The width of each band, in nm.
    static constexpr int BandWidth = 10;
    /// The largest spectrum file (or in-memory data) the loads accept, in bytes.
    static constexpr qint64 MaxFileSize = qint64(64) * 1024 * 1024;

    /// A linear RGB triple as getRGB() gives it (unnormalised, unclamped).
    struct RGB
    {
        float r = 0.0f; ///< Red.
        float g = 0.0f; ///< Green.
        float b = 0.0f; ///< Blue.
    };

    /// Every member in order: use-spectrum flag, filename (UTF-8), version
    /// id, start, delta, number of samples, wavelengths, source values, band
    /// samples.
    using Options = std::tuple<bool, std::string, int, int, int, int, std::vector<float>,
                               std::vector<float>, std::vector<float>>;

    /// An uninitialised spectrum: version 0, flag clear, start 380 nm, no
    /// samples.
    QZESpectrum() = default;
    /// A spectrum holding options as they are (no reset rule, no resampling).
    explicit QZESpectrum(const Options& options);
    /// A spectrum holding the nine members as given, in the order of Options.
    QZESpectrum(bool useSpectrum, const std::string& filename, int versionID, int start,
                int delta, int numSamples, const std::vector<float>& wavelengths,
                const std::vector<float>& sourceValues, const std::vector<float>& samples);

    /// Every member, in the order of Options.
    Options getOptions() const;
    /// Copies every member of other, bands included; always true.
    bool copy(const QZESpectrum& other);

    /// Whether the flag is set and the 40 band samples exist.
    bool isActive() const { return _useSpectrum && int(_samples.size()) >= NumBands; }
    /// Whether the version id differs from 0 (some operation filled the source).
    bool isInitialized() const { return _versionID != 0; }

    /// @{
    /// The use-spectrum flag: whether the spectrum replaces the plain colour.
    /// Setting it goes through the reset rule (see the class comment).
    bool getUseSpectrum() const { return _useSpectrum; }
    void setUseSpectrum(bool on);
    /// @}
    /// @{
    /// The file the spectrum was loaded from (stored as UTF-8); emptied by
    /// every programmatic set.
    QString getFilename() const { return QString::fromStdString(_filename); }
    void setFilename(const QString& name) { _filename = name.toStdString(); }
    /// @}
    /// @{
    /// The version id: 0 not initialised, 1 uniform grid, 2 arbitrary
    /// wavelengths. Stored as given.
    int getVersionID() const { return _versionID; }
    void setVersionID(int id) { _versionID = id; }
    /// @}
    /// @{
    /// The grid's first wavelength in nm (version 1; 0 for version 2, the
    /// first wavelength for a text file). Stored as given.
    int getStartWavelength() const { return _startWavelength; }
    void setStartWavelength(int start) { _startWavelength = start; }
    /// @}
    /// @{
    /// The grid spacing in nm (version 1; 0 otherwise). Stored as given.
    int getDeltaWavelength() const { return _deltaWavelength; }
    void setDeltaWavelength(int delta) { _deltaWavelength = delta; }
    /// @}
    /// @{
    /// The number of source samples. Setting it goes through the reset rule
    /// (see the class comment) and then stores num; the vectors keep their size.
    int getNumSamples() const { return _numSamples; }
    void setNumSamples(int num);
    /// @}

    /// @{
    /// The source wavelengths in nm, non-decreasing. Editing them leaves the
    /// bands stale until resample().
    const std::vector<float>& getWavelengths() const { return _wavelengths; }
    std::vector<float>& editWavelengths() { return _wavelengths; }
    /// @}
    /// @{
    /// The source values, one per wavelength. Editing them leaves the bands
    /// stale until resample().
    const std::vector<float>& getSourceValues() const { return _sourceValues; }
    std::vector<float>& editSourceValues() { return _sourceValues; }
    /// @}
    /// Source value i, without a bounds check.
    float getSourceValues(int i) const { return _sourceValues[size_t(i)]; }
    /// @{
    /// The 40 band averages, band k covering [380 + 10k, 390 + 10k) nm; empty
    /// before the first resample().
    const std::vector<float>& getSamples() const { return _samples; }
    std::vector<float>& editSamples() { return _samples; }
    /// @}

    /// The constant value on num wavelengths start, start + delta, ... (nm):
    /// flag set, version 1, filename emptied. The bands are not recomputed.
    void set(float value, int start, int delta, int num);
    /// set(1.0, 380, 5, 81): the constant 1.0 from 380 to 780 nm.
    void setOne();
    /// A uniform source of num values from the array on the grid start,
    /// delta (nm), bands resampled; always true.
    bool load(int start, int delta, int num, const float* values);
    /// A source of num pairs from the arrays (version 2), bands resampled.
    /// False when a wavelength is below the one before it: the pairs read so
    /// far stay and nothing else changes; equal neighbours are accepted.
    bool load(int num, const float* wavelengths, const float* values);

    /// Recomputes the 40 band averages of the piecewise linear source; bands
    /// beyond the source take its end values. Nothing happens while the
    /// source is empty.
    void resample();
    /// Interpolates the source linearly onto the grid start, delta, num (nm)
    /// and makes it version 1; the ends extend as constants. The bands are
    /// not recomputed.
    void resampleSource(int start, int delta, int num);

    /// Multiplies the source values by factor; an inactive spectrum is left
    /// as it is. The bands are not recomputed.
    void scale(float factor);
    /// Adds other's source values to this one's. Overlapping ranges are
    /// brought onto a common grid first (either spectrum may be resampled,
    /// other in place); disjoint ranges are merged into one version 2
    /// source. Two ".txt" spectra meeting at a seam are first scaled so that
    /// the brighter side matches the darker. The bands are not recomputed.
    void add(QZESpectrum& other);
    /// The sum of the 40 band samples; 0 when not active.
    float getSum() const;
    /// The largest source value; 0 when not active.
    float getMaxValue() const;
    /// Multiplies the source values by value / getPhotometricValue() measured
    /// on the current bands; since that is a sum of squares, the resampled
    /// spectrum then measures value * value / p, not value. An inactive
    /// spectrum or one whose bands are all 0 first becomes setOne() with its
    /// bands untouched. The bands are not recomputed.
    void setPhotometricValue(float value);
    /// The sum of the squares of the 40 band samples (no luminous-efficacy
    /// weighting); 0 when not active.
    float getPhotometricValue() const;

    /// A reflectance spectrum of the linear colour r, g, b (0..1) on the grid
    /// start, delta, num (nm), built from the shared reflectance bases and
    /// clamped to 0..1: flag set, version 1, filename emptied, bands current.
    /// Nothing happens for num 0 or below.
    void setRGB(float r, float g, float b, int start, int delta, int num);
    /// The linear RGB of the bands through the CIE 1931 observer,
    /// unnormalised (see the class comment); (0, 0, 0) when not active.
    RGB getRGB() const;

    /// Adds an analytic spectrum (QZEAnalyticSpectrum's functions 0..10) at the
    /// source wavelengths, or with replace makes the spectrum that function
    /// alone on the grid start, delta, num (also when there is no source yet).
    /// peakWavelength and fwhm are in nm, temperature in kelvin.
    /// Afterwards the spectrum is active and its bands are current. Returns
    /// false and changes nothing for an unknown function, unusable parameters,
    /// an empty grid where the grid is used, or values beyond float range (a
    /// black body far below 100 K).
    bool addAnalyticFunction(int function, float peakWavelength, float peakIntensity, float fwhm,
                             float temperature, bool replace, int start, int delta, int num);

    /// Loads the file name by its name: loadNative() when it holds
    /// ".spectral", loadTxt() when it holds ".txt" (either case), otherwise
    /// false without a message. The bands are not recomputed.
    bool load(const QString& name);
    /// Loads a native "spectral1"/"spectral2" file; false (with the reason
    /// on standard error) on a read or format error. The flag is cleared
    /// first, so a failed load leaves the spectrum inactive. The bands are
    /// not recomputed.
    bool loadNative(const QString& name);
    /// Loads a two-column text file of wavelength (nm) and value pairs,
    /// ending at a pair of two zeros; false on a read or format error, which
    /// leaves the spectrum inactive as in loadNative(). The bands are not
    /// recomputed.
    bool loadTxt(const QString& name);
    /// Writes the spectrum as a native file (version 1 or 2), replacing name
    /// atomically; false for an empty name, another version id or any
    /// failure, with the old file left whole.
    bool save(const QString& name);
    /// As save(name); when the file system refuses the file, *reason (when
    /// given) says why in the system's words.
    bool save(const QString& name, QString* reason);

    /// @{
    /// The same parsers over bytes already in memory (resources, network,
    /// fuzzing); name is what the messages and the filename field show.
    bool loadNativeData(const QByteArray& data, const QString& name);
    bool loadTxtData(const QByteArray& data, const QString& name);
    /// @}
    /// The parser that load(name) would choose for name (false, silently,
    /// when name names neither format) over bytes in memory. After a
    /// successful load, unreadAt is the offset of the first byte that is
    /// neither white space nor read (data.size() when every number was
    /// read): text after a text file's end pair or after the numbers a native
    /// header announces, or the first pair that is not two numbers.
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
