#include "osgSpectrum.h"

namespace osg {

SpectrumPtr Spectrum::create()
{
    return SpectrumPtr(new Spectrum);
}

void Spectrum::add(const SpectrumPtr& other)
{
    if (other)
        _model.add(other->_model);
}

bool Spectrum::copy(const SpectrumPtr& other)
{
    return other ? _model.copy(other->_model) : false;
}

bool Spectrum::load(const char* utf8Path)
{
    return utf8Path && _model.load(QString::fromUtf8(utf8Path));
}

bool Spectrum::save(const char* utf8Path)
{
    return utf8Path && _model.save(QString::fromUtf8(utf8Path));
}

void Spectrum::changed(BitVector whichField, UInt32)
{
    if (whichField & (SourceValuesFieldMask | WavelengthsFieldMask))
        _model.resample();
}

} // namespace osg
