#ifndef OSGSPECTRUMBASE_H
#define OSGSPECTRUMBASE_H

#include "osgFieldContainer.h"

namespace osg {

// The field masks of the spectrum container, one bit per field, as recorded
// in change lists and passed to changed().
class SpectrumBase : public FieldContainer
{
public:
    static constexpr BitVector UseSpectrumFieldMask = BitVector(1) << 0;
    static constexpr BitVector FileNameFieldMask = BitVector(1) << 1;
    static constexpr BitVector VersionIDFieldMask = BitVector(1) << 2;
    static constexpr BitVector StartWavelengthFieldMask = BitVector(1) << 3;
    static constexpr BitVector DeltaWavelengthFieldMask = BitVector(1) << 4;
    static constexpr BitVector NumSamplesFieldMask = BitVector(1) << 5;
    static constexpr BitVector WavelengthsFieldMask = BitVector(1) << 6;
    static constexpr BitVector SourceValuesFieldMask = BitVector(1) << 7;
    static constexpr BitVector SamplesFieldMask = BitVector(1) << 8;

protected:
    SpectrumBase() = default;
};

} // namespace osg

#endif // OSGSPECTRUMBASE_H
