#ifndef OSGCHANGELIST_H
#define OSGCHANGELIST_H

#include "osgFieldContainerPtr.h"

#include <vector>

namespace osg {

/// The edits of one thread since the host last synchronised: which containers
/// changed and which of their fields. Entries keep their containers alive
/// until clear(); edits of one container merge into one entry.
class ChangeList
{
public:
    struct Entry
    {
        FieldContainerPtr container;
        BitVector mask = 0;
    };

    void addChanged(const FieldContainerPtr& container, BitVector whichField);
    const std::vector<Entry>& getChanged() const { return _entries; }
    /// The fields recorded for container (0 when it is not in the list).
    BitVector getChangedMask(const FieldContainerPtr& container) const;
    bool empty() const { return _entries.empty(); }
    void clear() { _entries.clear(); }

private:
    std::vector<Entry> _entries;
};

} // namespace osg

#endif // OSGCHANGELIST_H
