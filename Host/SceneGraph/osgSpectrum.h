#ifndef OSGSPECTRUM_H
#define OSGSPECTRUM_H

#include "osgFieldContainerPtr.h"
#include "osgSpectrumBase.h"

#include <QZESpectrum.h>

#include <string>
#include <vector>

namespace osg {

class Spectrum;
/// A counted pointer to a spectrum container; osg::Spectrum::create() makes one.
using SpectrumPtr = FCPtr<FieldContainerPtr, Spectrum>;

/// The scene graph's spectrum container. Its fields and operations are those
/// of QZESpectrum, which holds them: every algorithm (reset rule, resampling,
/// adding, colour conversion, files, analytic spectra) runs in that one place,
/// and each member here does what the QZESpectrum member of the same name
/// does. Wavelengths are in nanometres; the 40 band samples average the
/// source over [380 + 10k, 390 + 10k) nm, k = 0..39.
///
/// Editing the source through edit...() leaves the 40 bands stale; changed()
/// with the source or wavelength mask brings them up to date, so editors that
/// record their edits in the change list need not resample themselves.
/// load() fills only the source as well: the bands keep their old values
/// until resample() (or changed() with one of those masks). save() replaces
/// the file atomically, as QZESpectrum::save() does.
///
/// Usage:
/// \code
/// osg::SpectrumPtr light = osg::Spectrum::create();
/// if (light->load("/data/lamp.spectral")) {
///     light->resample();                     // the bands follow the new source
///     QZESpectrum::RGB rgb = light->getRGB(); // unnormalised, see QZESpectrum
/// }
/// \endcode
class Spectrum : public SpectrumBase
{
public:
    /// A new, uninitialised spectrum (version 0, flag clear, no samples).
    static SpectrumPtr create();

    // --- Fields ---
    /// @{
    /// The use-spectrum flag: whether the spectrum replaces the plain colour.
    /// Setting it goes through QZESpectrum's reset rule (a flagged version 0
    /// spectrum with bands first becomes the constant 1.0 on 380, 5, 81).
    bool getUseSpectrum() const { return _model.getUseSpectrum(); }
    void setUseSpectrum(bool on) { _model.setUseSpectrum(on); }
    /// @}
    /// @{
    /// The file the spectrum was loaded from, UTF-8; emptied by every
    /// programmatic set.
    std::string getFileName() const { return _model.getFilename().toStdString(); }
    void setFileName(const std::string& name) { _model.setFilename(QString::fromStdString(name)); }
    /// @}
    /// @{
    /// The version id: 0 not initialised, 1 uniform grid (start, delta,
    /// count), 2 arbitrary wavelengths. Stored as given.
    int getVersionID() const { return _model.getVersionID(); }
    void setVersionID(int id) { _model.setVersionID(id); }
    /// @}
    /// @{
    /// The first grid wavelength in nm (version 1; 0 for version 2). Stored
    /// as given, the source is not moved.
    int getStartWavelength() const { return _model.getStartWavelength(); }
    void setStartWavelength(int start) { _model.setStartWavelength(start); }
    /// @}
    /// @{
    /// The grid spacing in nm (version 1; 0 for version 2). Stored as given.
    int getDeltaWavelength() const { return _model.getDeltaWavelength(); }
    void setDeltaWavelength(int delta) { _model.setDeltaWavelength(delta); }
    /// @}
    /// @{
    /// The number of source samples. Setting it goes through QZESpectrum's
    /// reset rule (an active spectrum with a count of 0 becomes the constant
    /// 1.0 on 380, 5, 81 and loses its flag) and then stores the count; the
    /// source vectors are not resized.
    int getNumSamples() const { return _model.getNumSamples(); }
    void setNumSamples(int num) { _model.setNumSamples(num); }
    /// @}
    /// @{
    /// The source wavelengths in nm, non-decreasing, one per source value.
    /// Editing them leaves the bands stale until resample() or changed()
    /// with WavelengthsFieldMask.
    const std::vector<float>& getWavelengths() const { return _model.getWavelengths(); }
    std::vector<float>& editWavelengths() { return _model.editWavelengths(); }
    /// @}
    /// @{
    /// The source values, one per wavelength (power or reflectance, no fixed
    /// unit). Editing them leaves the bands stale until resample() or
    /// changed() with SourceValuesFieldMask.
    const std::vector<float>& getSourceValues() const { return _model.getSourceValues(); }
    std::vector<float>& editSourceValues() { return _model.editSourceValues(); }
    /// @}
    /// The source value at index, without a bounds check (index must be
    /// below getSourceValues().size()).
    float getSourceValues(int index) const { return _model.getSourceValues(index); }
    /// @{
    /// The 40 band averages that every colour computation reads, band k
    /// covering [380 + 10k, 390 + 10k) nm; empty before the first resample().
    const std::vector<float>& getSamples() const { return _model.getSamples(); }
    std::vector<float>& editSamples() { return _model.editSamples(); }
    /// @}

    /// Whether the flag is set and the 40 band samples exist.
    bool isActive() const { return _model.isActive(); }

    // --- Operations ---
    /// Makes the source the constant value on num wavelengths start,
    /// start + delta, ... (nm); flag set, version 1, file name emptied. The
    /// bands are not recomputed.
    void set(float value, int start, int delta, int num) { _model.set(value, start, delta, num); }
    /// set(1.0, 380, 5, 81): the constant 1.0 from 380 to 780 nm.
    void setOne() { _model.setOne(); }
    /// Recomputes the 40 band averages from the source (nothing happens
    /// while the source is empty).
    void resample() { _model.resample(); }
    /// Interpolates the source linearly onto the grid start, delta, num (nm)
    /// and makes it version 1; the ends extend as constants. The bands are
    /// not recomputed.
    void resampleSource(int start, int delta, int num) { _model.resampleSource(start, delta, num); }
    /// Adds other's source to this one as QZESpectrum::add() does (a null
    /// other does nothing); other may be resampled in place. The bands are
    /// not recomputed.
    void add(const SpectrumPtr& other);
    /// Copies every field of other, bands included; false when other is null.
    bool copy(const SpectrumPtr& other);
    /// Makes a reflectance spectrum of the linear colour r, g, b (0..1) on
    /// the grid start, delta, num (nm), values clamped to 0..1; flag set,
    /// version 1, bands current. Nothing happens for num 0.
    void setRGB(float r, float g, float b, int start, int delta, int num)
    {
        _model.setRGB(r, g, b, start, delta, num);
    }
    /// The linear RGB of the bands, unnormalised: the constant 1.0 spectrum
    /// gives about 10.69 per channel. (0, 0, 0) when not active.
    QZESpectrum::RGB getRGB() const { return _model.getRGB(); }
    /// Multiplies the source values by value / getPhotometricValue(), the
    /// photometric value p measured on the current bands; since p is a sum of
    /// squares, the resampled spectrum then measures value * value / p, not
    /// value. A spectrum that is inactive or whose bands are all 0
    /// first becomes set(1.0, 380, 5, 81) with its bands untouched. The bands
    /// are not recomputed.
    void setPhotometricValue(float value) { _model.setPhotometricValue(value); }
    /// The sum of the squares of the 40 band samples; 0 when not active.
    float getPhotometricValue() const { return _model.getPhotometricValue(); }
    /// The largest source value; 0 when not active.
    float getMaxValue() const { return _model.getMaxValue(); }
    /// @{
    /// Reads or writes a spectrum file at the UTF-8 path utf8Path; false on
    /// any failure or a null path. load() reads a native file (a name holding
    /// ".spectral") or a two-column text file (".txt"), either case, and
    /// refuses other names silently; format errors go to standard error and
    /// leave the spectrum inactive.
    /// load() fills only the source (resample() brings the bands up to
    /// date). save() writes the native format and replaces the file
    /// atomically, leaving the old file whole on failure.
    bool load(const char* utf8Path);
    bool save(const char* utf8Path);
    /// @}
    /// Adds (or with replace, becomes) one of QZEAnalyticSpectrum's functions
    /// 0..10, as QZESpectrum::addAnalyticFunction() does: peakWavelength and
    /// fwhm in nm, temperature in kelvin, the grid start, delta, num in nm.
    /// Afterwards the spectrum is active with current bands; false (and no
    /// change) for unusable parameters.
    bool addAnalyticFunction(int function, float peakWavelength, float peakIntensity, float fwhm,
                             float temperature, bool replace, int start, int delta, int num)
    {
        return _model.addAnalyticFunction(function, peakWavelength, peakIntensity, fwhm,
                                          temperature, replace, start, delta, num);
    }

    /// The QZESpectrum that holds the fields, for read-only use of its
    /// wider interface.
    const QZESpectrum& getModel() const { return _model; }

    /// Brings the bands up to date (resample()) when whichField holds
    /// SourceValuesFieldMask or WavelengthsFieldMask; origin is not read.
    void changed(BitVector whichField, UInt32 origin) override;

private:
    Spectrum() = default;

    QZESpectrum _model;
};

} // namespace osg

#endif // OSGSPECTRUM_H
