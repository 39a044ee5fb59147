#ifndef OSGFIELDCONTAINER_H
#define OSGFIELDCONTAINER_H

#include <atomic>
#include <cstdint>

namespace osg {

using BitVector = std::uint64_t;
using UInt32 = std::uint32_t;

/// Base of every scene-graph container: an intrusive reference count and the
/// changed() hook through which a container reacts to edits of its fields.
/// Containers are made by their type's static create() and live as long as
/// a pointer (or an explicit addRefCP) holds them.
class FieldContainer
{
public:
    FieldContainer(const FieldContainer&) = delete;
    FieldContainer& operator=(const FieldContainer&) = delete;
    virtual ~FieldContainer() = default;

    /// Called after the fields in whichField were edited; origin tells who
    /// edited them (1: a user interface). The base does nothing.
    virtual void changed(BitVector whichField, UInt32 origin);

    /// The number of references held (pointers and explicit addRefCP calls).
    int getRefCount() const { return _refCount.load(std::memory_order_acquire); }
    /// Adds one reference; each needs a matching subRef().
    void addRef() { _refCount.fetch_add(1, std::memory_order_relaxed); }
    /// Drops one reference; the last one destroys the container.
    void subRef();

protected:
    FieldContainer() = default;

private:
    std::atomic<int> _refCount{0};
};

} // namespace osg

#endif // OSGFIELDCONTAINER_H
