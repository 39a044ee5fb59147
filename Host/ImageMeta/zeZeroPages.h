#ifndef ZEZEROPAGES_H
#define ZEZEROPAGES_H

#include <QByteArray>

#include <cstddef>

// Memory straight from the system that reads as zeros and costs nothing
// until a page is touched: a file read without its pixels is laid out in it
// at its own offsets, and the pixel bytes it leaves out are neither copied
// nor cleared.
class zeZeroPages
{
public:
    // size bytes; isValid() tells whether the system gave them.
    explicit zeZeroPages(std::size_t size);
    ~zeZeroPages();
    zeZeroPages(const zeZeroPages&) = delete;
    zeZeroPages& operator=(const zeZeroPages&) = delete;

    bool isValid() const { return _memory != nullptr; }
    char* data() { return _memory; }
    std::size_t size() const { return _size; }

    // A view of the memory, valid while this object lives.
    QByteArray bytes() const;

private:
    char* _memory = nullptr;
    std::size_t _size = 0;
};

#endif // ZEZEROPAGES_H
