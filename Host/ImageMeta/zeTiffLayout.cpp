#include "zeTiffLayout.h"

#include <algorithm>
#include <set>

namespace {

// Classic TIFF: a two-byte count, twelve bytes an entry, a four-byte link to
// the next directory.
constexpr std::uint64_t HeaderSize = 8;
constexpr std::uint64_t EntrySize = 12;
// Directories looked at in all (the chain, its sub-directories and theirs):
// more than any real file has, few enough to bound the work on a hostile one.
constexpr std::size_t MaxDirectories = 256;
// Directories and tag values recorded in all; beyond this a file is not
// worth the bookkeeping and is read whole.
constexpr std::size_t MaxMetadataRanges = 1u << 16;
// Values of one strip, tile or sub-directory list taken: a million strips is
// far beyond real files and keeps a hostile count from filling memory.
constexpr std::uint32_t MaxValues = 1u << 20;

enum Tag : std::uint16_t {
    StripOffsets = 273,
    StripByteCounts = 279,
    TileOffsets = 324,
    TileByteCounts = 325,
    SubImages = 330,
    ExifDirectory = 34665,
    GpsDirectory = 34853,
    InteroperabilityDirectory = 40965,
};

// Bytes per value of each TIFF field type; 0 for a type this reader does
// not know, whose values' extent therefore cannot be told.
std::uint64_t typeSize(std::uint16_t type)
{
    switch (type) {
    case 1: case 2: case 6: case 7: // BYTE, ASCII, SBYTE, UNDEFINED
        return 1;
    case 3: case 8: // SHORT, SSHORT
        return 2;
    case 4: case 9: case 11: case 13: // LONG, SLONG, FLOAT, IFD
        return 4;
    case 5: case 10: case 12: // RATIONAL, SRATIONAL, DOUBLE
        return 8;
    default:
        return 0;
    }
}

using Range = zeTiffLayout::Range;

bool overlap(const Range& a, const Range& b)
{
    return a.offset < b.offset + b.size && b.offset < a.offset + a.size;
}

class Walker
{
public:
    Walker(const zeTiffLayout::ReadAt& read, std::uint64_t fileSize)
        : _read(read), _fileSize(fileSize)
    {
    }

    bool walk(std::vector<Range>& pixels);

private:
    struct Entry
    {
        std::uint16_t tag = 0;
        std::uint16_t type = 0;
        std::uint32_t count = 0;
        QByteArray field; // the four bytes of the value or its offset
    };

    bool directory(std::uint64_t offset);
    bool entry(const Entry& entry, std::vector<std::uint64_t>& offsets,
               std::vector<std::uint64_t>& sizes);
    bool numbers(const Entry& entry, std::vector<std::uint64_t>& out);
    bool addPixels(const std::vector<std::uint64_t>& offsets, const std::vector<std::uint64_t>& sizes);
    void addMetadata(std::uint64_t offset, std::uint64_t size);
    bool exactly(std::uint64_t offset, std::uint64_t size, QByteArray& bytes) const;
    std::uint64_t unsignedAt(const char* bytes, int size) const;

    const zeTiffLayout::ReadAt& _read;
    const std::uint64_t _fileSize;
    bool _bigEndian = false;
    std::vector<std::uint64_t> _pending;
    std::set<std::uint64_t> _seen;
    std::vector<Range> _metadata;
    std::vector<Range> _pixels;
};

bool Walker::walk(std::vector<Range>& pixels)
{
    QByteArray header;
    if (!exactly(0, HeaderSize, header))
        return false;
    if (header.startsWith(QByteArrayLiteral("II*\0")))
        _bigEndian = false;
    else if (header.startsWith(QByteArrayLiteral("MM\0*")))
        _bigEndian = true;
    else
        return false;
    addMetadata(0, HeaderSize);
    _pending.push_back(unsignedAt(header.constData() + 4, 4));
    while (!_pending.empty()) {
        const std::uint64_t offset = _pending.back();
        _pending.pop_back();
        if (offset == 0)
            continue;
        if (!_seen.insert(offset).second || _seen.size() > MaxDirectories || !directory(offset)
            || _metadata.size() > MaxMetadataRanges)
            return false;
    }
    std::sort(_pixels.begin(), _pixels.end(),
              [](const Range& a, const Range& b) { return a.offset < b.offset; });
    pixels.clear();
    for (const Range& range : _pixels) {
        if (!pixels.empty() && range.offset <= pixels.back().offset + pixels.back().size) {
            Range& last = pixels.back();
            last.size = std::max(last.offset + last.size, range.offset + range.size) - last.offset;
        } else {
            pixels.push_back(range);
        }
    }
    // pixels is sorted and its ranges apart: the one range that can overlap a
    // piece of metadata is the first that ends after the metadata starts.
    for (const Range& metadata : _metadata) {
        const auto candidate = std::upper_bound(
            pixels.begin(), pixels.end(), metadata.offset, [](std::uint64_t offset, const Range& range) {
                return offset < range.offset + range.size;
            });
        if (candidate != pixels.end() && overlap(metadata, *candidate))
            return false;
    }
    return true;
}

bool Walker::directory(std::uint64_t offset)
{
    QByteArray countBytes;
    if (!exactly(offset, 2, countBytes))
        return false;
    const std::uint64_t count = unsignedAt(countBytes.constData(), 2);
    QByteArray entries;
    QByteArray next;
    if (!exactly(offset + 2, count * EntrySize, entries)
        || !exactly(offset + 2 + count * EntrySize, 4, next))
        return false;
    addMetadata(offset, 2 + count * EntrySize + 4);
    std::vector<std::uint64_t> offsets;
    std::vector<std::uint64_t> sizes;
    for (std::uint64_t i = 0; i < count; ++i) {
        const char* at = entries.constData() + i * EntrySize;
        Entry field;
        field.tag = std::uint16_t(unsignedAt(at, 2));
        field.type = std::uint16_t(unsignedAt(at + 2, 2));
        field.count = std::uint32_t(unsignedAt(at + 4, 4));
        field.field = QByteArray(at + 8, 4);
        if (!entry(field, offsets, sizes))
            return false;
    }
    _pending.push_back(unsignedAt(next.constData(), 4));
    return addPixels(offsets, sizes);
}

// Records where the entry's values lie; collects strip and tile positions
// and queues the sub-directories it points to.
bool Walker::entry(const Entry& entry, std::vector<std::uint64_t>& offsets,
                   std::vector<std::uint64_t>& sizes)
{
    const std::uint64_t size = typeSize(entry.type);
    if (size == 0)
        return false;
    const std::uint64_t total = size * entry.count;
    if (total > 4)
        addMetadata(unsignedAt(entry.field.constData(), 4), total);
    switch (entry.tag) {
    case StripOffsets:
    case TileOffsets:
        return numbers(entry, offsets);
    case StripByteCounts:
    case TileByteCounts:
        return numbers(entry, sizes);
    case SubImages:
    case ExifDirectory:
    case GpsDirectory:
    case InteroperabilityDirectory:
        return numbers(entry, _pending);
    default:
        return true;
    }
}

// The entry's values as unsigned numbers: SHORT, LONG or IFD only.
bool Walker::numbers(const Entry& entry, std::vector<std::uint64_t>& out)
{
    const std::uint64_t size = typeSize(entry.type);
    if ((entry.type != 3 && entry.type != 4 && entry.type != 13) || entry.count > MaxValues)
        return false;
    const std::uint64_t total = size * entry.count;
    QByteArray values = entry.field.left(int(std::min<std::uint64_t>(total, 4)));
    if (total > 4 && !exactly(unsignedAt(entry.field.constData(), 4), total, values))
        return false;
    for (std::uint64_t i = 0; i < entry.count; ++i)
        out.push_back(unsignedAt(values.constData() + i * size, int(size)));
    return true;
}

bool Walker::addPixels(const std::vector<std::uint64_t>& offsets,
                       const std::vector<std::uint64_t>& sizes)
{
    if (offsets.size() != sizes.size())
        return false;
    for (std::size_t i = 0; i < offsets.size(); ++i) {
        if (offsets[i] >= _fileSize)
            continue;
        _pixels.push_back({offsets[i], std::min(sizes[i], _fileSize - offsets[i])});
    }
    return true;
}

void Walker::addMetadata(std::uint64_t offset, std::uint64_t size)
{
    if (offset < _fileSize)
        _metadata.push_back({offset, std::min(size, _fileSize - offset)});
}

// The size bytes at offset, all of them within the file.
bool Walker::exactly(std::uint64_t offset, std::uint64_t size, QByteArray& bytes) const
{
    if (offset > _fileSize || size > _fileSize - offset)
        return false;
    bytes = _read(offset, size);
    return std::uint64_t(bytes.size()) == size;
}

std::uint64_t Walker::unsignedAt(const char* bytes, int size) const
{
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i) {
        const int index = _bigEndian ? i : size - 1 - i;
        value = (value << 8) | static_cast<unsigned char>(bytes[index]);
    }
    return value;
}

} // namespace

bool zeTiffLayout::pixelRanges(const ReadAt& read, std::uint64_t fileSize, std::vector<Range>& pixels)
{
    return Walker(read, fileSize).walk(pixels);
}
