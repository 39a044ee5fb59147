#ifndef OSGFIELDCONTAINERPTR_H
#define OSGFIELDCONTAINERPTR_H

#include "osgFieldContainer.h"

#include <cstddef>
#include <utility>

namespace osg {

/// A counted pointer to a field container: every copy holds one reference and
/// the last one to go destroys the container. NullFC is the null value.
class FieldContainerPtr
{
public:
    /// @{
    /// A null pointer, or one that holds a reference to container (a copy
    /// holds one more; a move takes the other's reference over).
    FieldContainerPtr() = default;
    FieldContainerPtr(std::nullptr_t) {}
    explicit FieldContainerPtr(FieldContainer* container) : _container(container) { acquire(); }
    FieldContainerPtr(const FieldContainerPtr& other) : _container(other._container) { acquire(); }
    FieldContainerPtr(FieldContainerPtr&& other) noexcept : _container(std::exchange(other._container, nullptr)) {}
    /// @}
    /// Drops the reference held, destroying the container if it was the last.
    ~FieldContainerPtr() { release(); }

    /// Holds other's container instead, dropping the reference held before.
    FieldContainerPtr& operator=(FieldContainerPtr other) noexcept
    {
        std::swap(_container, other._container);
        return *this;
    }

    /// The container, or nullptr; the pointer keeps ownership.
    FieldContainer* getBaseCPtr() const { return _container; }
    /// True unless null.
    explicit operator bool() const { return _container != nullptr; }
    /// @{
    /// Identity of the containers pointed to.
    bool operator==(const FieldContainerPtr& other) const { return _container == other._container; }
    bool operator!=(const FieldContainerPtr& other) const { return _container != other._container; }
    /// @}

    /// While set, edits are recorded in the change list but containers are not
    /// told through changed(); a host sets it while it loads or syncs a scene.
    static bool _ignore_change;

protected:
    /// The container held, or nullptr.
    FieldContainer* _container = nullptr;

private:
    void acquire() const
    {
        if (_container)
            _container->addRef();
    }
    void release() const
    {
        if (_container)
            _container->subRef();
    }
};

/// Pointers to containers that can carry attachments (images).
class AttachmentContainerPtr : public FieldContainerPtr
{
public:
    /// @{
    /// The constructors of FieldContainerPtr.
    using FieldContainerPtr::FieldContainerPtr;
    /// @}
};

/// The typed pointer: BasePtr's counting with access to the container as T.
template <class BasePtr, class T>
class FCPtr : public BasePtr
{
public:
    /// @{
    /// A null pointer, or one that holds a reference to container.
    FCPtr() = default;
    FCPtr(std::nullptr_t) {}
    explicit FCPtr(T* container) : BasePtr(container) {}
    /// @}

    /// @{
    /// The container as T; nullptr (or undefined for operator*) when null.
    T* getCPtr() const { return static_cast<T*>(this->_container); }
    T* operator->() const { return getCPtr(); }
    T& operator*() const { return *getCPtr(); }
    /// @}
};

/// The null container pointer.
extern const FieldContainerPtr NullFC;

/// An extra reference beyond the pointers' own, for hosts that keep a
/// container through a raw pointer; each addRefCP needs its subRefCP.
/// @{
void addRefCP(const FieldContainerPtr& pointer);
void subRefCP(const FieldContainerPtr& pointer);
/// @}

} // namespace osg

#endif // OSGFIELDCONTAINERPTR_H
