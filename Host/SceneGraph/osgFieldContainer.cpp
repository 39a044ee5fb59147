#include "osgFieldContainer.h"

namespace osg {

void FieldContainer::changed(BitVector, UInt32)
{
}

void FieldContainer::subRef()
{
    if (_refCount.fetch_sub(1, std::memory_order_acq_rel) == 1)
        delete this;
}

} // namespace osg
