#include "zeZeroPages.h"

#include <sys/mman.h>

zeZeroPages::zeZeroPages(std::size_t size)
    : _size(size)
{
    if (size == 0)
        return;
    void* memory = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (memory != MAP_FAILED)
        _memory = static_cast<char*>(memory);
}

zeZeroPages::~zeZeroPages()
{
    if (_memory)
        munmap(_memory, _size);
}

QByteArray zeZeroPages::bytes() const
{
    return _memory ? QByteArray::fromRawData(_memory, int(_size)) : QByteArray();
}
