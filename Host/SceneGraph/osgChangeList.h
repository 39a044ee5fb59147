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
    /// One changed container and the OR of the field bits edited in it.
    struct Entry
    {
        FieldContainerPtr container; ///< The edited container (kept alive).
        BitVector mask = 0;          ///< Its edited fields.
    };

    /// Records an edit of whichField of container (merged into its entry).
    void addChanged(const FieldContainerPtr& container, BitVector whichField);
    /// The entries in the order their containers were first edited.
    const std::vector<Entry>& getChanged() const { return _entries; }
    /// The fields recorded for container (0 when it is not in the list).
    BitVector getChangedMask(const FieldContainerPtr& container) const;
    /// True when nothing was edited since the last clear().
    bool empty() const { return _entries.empty(); }
    /// Forgets every entry, dropping their references.
    void clear() { _entries.clear(); }

private:
    std::vector<Entry> _entries;
};

} // namespace osg

#endif // OSGCHANGELIST_H
