#include "osgFieldContainerPtr.h"

namespace osg {

bool FieldContainerPtr::_ignore_change = false;

const FieldContainerPtr NullFC;

void addRefCP(const FieldContainerPtr& pointer)
{
    if (FieldContainer* container = pointer.getBaseCPtr())
        container->addRef();
}

void subRefCP(const FieldContainerPtr& pointer)
{
    if (FieldContainer* container = pointer.getBaseCPtr())
        container->subRef();
}

} // namespace osg
