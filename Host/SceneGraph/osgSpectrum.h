#ifndef OSGSPECTRUM_H
#define OSGSPECTRUM_H

#include "osgFieldContainerPtr.h"
#include "osgSpectrumBase.h"

#include <QZESpectrum.h>

#include <string>
#include <vector>

namespace osg {

class Spectrum;
using SpectrumPtr = FCPtr<FieldContainerPtr, Spectrum>;

// The scene graph's spectrum container. Its fields and operations are those
// of QZESpectrum, which holds them: every algorithm (reset rule, resampling,
// adding, colour conversion, files, analytic spectra) runs in that one place.
// Editing the source through edit...() leaves the 40 bands stale; changed()
// with the source or wavelength mask brings them up to date, so editors that
// record their edits in the change list need not resample themselves.
// load() fills only the source as well: the bands keep their old values
// until resample() (or changed() with one of those masks). save() replaces
// the file atomically, as QZESpectrum::save() does.
class Spectrum : public SpectrumBase
{
public:
    static SpectrumPtr create();

    // --- Fields ---
    bool getUseSpectrum() const { return _model.getUseSpectrum(); }
    void setUseSpectrum(bool on) { _model.setUseSpectrum(on); }
    std::string getFileName() const { return _model.getFilename().toStdString(); }
    void setFileName(const std::string& name) { _model.setFilename(QString::fromStdString(name)); }
    int getVersionID() const { return _model.getVersionID(); }
    void setVersionID(int id) { _model.setVersionID(id); }
    int getStartWavelength() const { return _model.getStartWavelength(); }
    void setStartWavelength(int start) { _model.setStartWavelength(start); }
    int getDeltaWavelength() const { return _model.getDeltaWavelength(); }
    void setDeltaWavelength(int delta) { _model.setDeltaWavelength(delta); }
    int getNumSamples() const { return _model.getNumSamples(); }
    void setNumSamples(int num) { _model.setNumSamples(num); }
    const std::vector<float>& getWavelengths() const { return _model.getWavelengths(); }
    std::vector<float>& editWavelengths() { return _model.editWavelengths(); }
    const std::vector<float>& getSourceValues() const { return _model.getSourceValues(); }
    std::vector<float>& editSourceValues() { return _model.editSourceValues(); }
    float getSourceValues(int index) const { return _model.getSourceValues(index); }
    const std::vector<float>& getSamples() const { return _model.getSamples(); }
    std::vector<float>& editSamples() { return _model.editSamples(); }

    bool isActive() const { return _model.isActive(); }

    // --- Operations ---
    void set(float value, int start, int delta, int num) { _model.set(value, start, delta, num); }
    void setOne() { _model.setOne(); }
    void resample() { _model.resample(); }
    void resampleSource(int start, int delta, int num) { _model.resampleSource(start, delta, num); }
    void add(const SpectrumPtr& other);
    bool copy(const SpectrumPtr& other);
    void setRGB(float r, float g, float b, int start, int delta, int num)
    {
        _model.setRGB(r, g, b, start, delta, num);
    }
    QZESpectrum::RGB getRGB() const { return _model.getRGB(); }
    void setPhotometricValue(float value) { _model.setPhotometricValue(value); }
    float getPhotometricValue() const { return _model.getPhotometricValue(); }
    float getMaxValue() const { return _model.getMaxValue(); }
    bool load(const char* utf8Path);
    bool save(const char* utf8Path);
    bool addAnalyticFunction(int function, float peakWavelength, float peakIntensity, float fwhm,
                             float temperature, bool replace, int start, int delta, int num)
    {
        return _model.addAnalyticFunction(function, peakWavelength, peakIntensity, fwhm,
                                          temperature, replace, start, delta, num);
    }

    const QZESpectrum& getModel() const { return _model; }

    void changed(BitVector whichField, UInt32 origin) override;

private:
    Spectrum() = default;

    QZESpectrum _model;
};

} // namespace osg

#endif // OSGSPECTRUM_H
