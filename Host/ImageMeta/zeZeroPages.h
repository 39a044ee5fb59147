#ifndef ZEZEROPAGES_H
#define ZEZEROPAGES_H

#include <QByteArray>

#include <cstddef>
#include <utility>
#include <vector>

// Memory straight from the system that reads as zeros and costs nothing
// until a page is touched: a file read without its pixels is laid out in it
// at its own offsets, and the pixel bytes it leaves out are neither copied
// nor cleared. What was written is cleared again when the object goes, and
// the memory serves the next object of the same thread, so that reading many
// files maps and touches fresh pages only when a file is larger than any
// before it.
class zeZeroPages
{
public:
    // size bytes; isValid() tells whether the system gave them.
    explicit zeZeroPages(std::size_t size);
    ~zeZeroPages();
    zeZeroPages(const zeZeroPages&) = delete;
    zeZeroPages& operator=(const zeZeroPages&) = delete;

    bool isValid() const { return _memory != nullptr; }
    std::size_t size() const { return _size; }

    // Where length bytes at offset (within size()) are to be written.
    char* writable(std::size_t offset, std::size_t length);

    // A view of the memory, valid while this object lives.
    QByteArray bytes() const;

private:
    char* _memory = nullptr;
    std::size_t _capacity = 0;
    std::size_t _size = 0;
    std::vector<std::pair<std::size_t, std::size_t>> _written;
};

#endif // ZEZEROPAGES_H
