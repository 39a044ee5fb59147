#include "osgChangeList.h"

#include <algorithm>

namespace osg {

namespace {

template <class Entries>
auto findEntry(Entries& entries, const FieldContainerPtr& container)
{
    return std::find_if(entries.begin(), entries.end(),
                        [&container](const ChangeList::Entry& e) { return e.container == container; });
}

} // namespace

void ChangeList::addChanged(const FieldContainerPtr& container, BitVector whichField)
{
    if (!container)
        return;
    const auto entry = findEntry(_entries, container);
    if (entry != _entries.end())
        entry->mask |= whichField;
    else
        _entries.push_back(Entry{container, whichField});
}

BitVector ChangeList::getChangedMask(const FieldContainerPtr& container) const
{
    const auto entry = findEntry(_entries, container);
    return entry != _entries.end() ? entry->mask : 0;
}

} // namespace osg
