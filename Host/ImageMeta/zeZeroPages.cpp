#include "zeZeroPages.h"

#include <sys/mman.h>

#include <cstring>

namespace {

// The memory the thread's last object gave back, all zeros again; unmapped
// when the thread ends.
struct SpareMemory
{
    char* memory = nullptr;
    std::size_t capacity = 0;

    ~SpareMemory()
    {
        if (memory)
            munmap(memory, capacity);
    }
};

thread_local SpareMemory t_spare;

} // namespace

zeZeroPages::zeZeroPages(std::size_t size)
    : _size(size)
{
    if (size == 0)
        return;
    if (t_spare.memory && t_spare.capacity >= size) {
        std::swap(_memory, t_spare.memory);
        std::swap(_capacity, t_spare.capacity);
        return;
    }
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED)
        return;
    _memory = static_cast<char*>(memory);
    _capacity = size;
}

zeZeroPages::~zeZeroPages()
{
    if (!_memory)
        return;
    for (const auto& [offset, length] : _written)
        std::memset(_memory + offset, 0, length);
    if (_capacity > t_spare.capacity) {
        std::swap(_memory, t_spare.memory);
        std::swap(_capacity, t_spare.capacity);
    }
    if (_memory)
        munmap(_memory, _capacity);
}

char* zeZeroPages::writable(std::size_t offset, std::size_t length)
{
    _written.emplace_back(offset, length);
    return _memory + offset;
}

QByteArray zeZeroPages::bytes() const
{
    return _memory ? QByteArray::fromRawData(_memory, int(_size)) : QByteArray();
}
