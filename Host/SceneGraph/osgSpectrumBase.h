#ifndef OSGSPECTRUMBASE_H
#define OSGSPECTRUMBASE_H

#include "osgFieldContainer.h"

namespace osg {

/// The field masks of the spectrum container, one bit per field, as recorded
/// in change lists and passed to changed(). An editor that writes a field
/// through osg::Spectrum records the field's mask so that the container (and
/// anyone reading the change list) knows what moved.
class SpectrumBase : public FieldContainer
{
public:
    /// The use-spectrum flag.
    static constexpr BitVector UseSpectrumFieldMask = BitVector(1) << 0;
    /// The file name.
    static constexpr BitVector FileNameFieldMask = BitVector(1) << 1;
    /// The version id (0, 1 or 2).
    static constexpr BitVector VersionIDFieldMask = BitVector(1) << 2;
    /// The grid's first wavelength.
    static constexpr BitVector StartWavelengthFieldMask = BitVector(1) << 3;
    /// The grid spacing.
    static constexpr BitVector DeltaWavelengthFieldMask = BitVector(1) << 4;
    /// The number of source samples.
    static constexpr BitVector NumSamplesFieldMask = BitVector(1) << 5;
    /// The source wavelengths; changed() with it brings the bands up to date.
    static constexpr BitVector WavelengthsFieldMask = BitVector(1) << 6;
    /// The source values; changed() with it brings the bands up to date.
    static constexpr BitVector SourceValuesFieldMask = BitVector(1) << 7;
    /// The 40 band averages.
    static constexpr BitVector SamplesFieldMask = BitVector(1) << 8;

protected:
    /// Only osg::Spectrum is made; the base has no instances of its own.
    SpectrumBase() = default;
};

} // namespace osg

#endif // OSGSPECTRUMBASE_H
