#include "zeJpegLayout.h"

namespace {

constexpr unsigned char MarkerPrefix = 0xff;
constexpr unsigned char StartOfImage = 0xd8;
constexpr unsigned char EndOfImage = 0xd9;
constexpr unsigned char StartOfScan = 0xda;
// More segments than any real header has; bounds the walk on a hostile file.
constexpr int MaxSegments = 65536;

// Markers that stand alone, without a length: TEM and the restart markers.
bool standsAlone(unsigned char marker)
{
    return marker == 0x01 || (marker >= 0xd0 && marker <= 0xd7);
}

unsigned char byteAt(const QByteArray& bytes, int index)
{
    return static_cast<unsigned char>(bytes.at(index));
}

} // namespace

bool zeJpegLayout::pixelRanges(const zeTiffLayout::ReadAt& read, std::uint64_t fileSize,
                               std::vector<zeTiffLayout::Range>& pixels)
{
    const auto bytesAt = [&](std::uint64_t offset, std::uint64_t size, QByteArray& bytes) {
        if (offset > fileSize || size > fileSize - offset)
            return false;
        bytes = read(offset, size);
        return std::uint64_t(bytes.size()) == size;
    };
    QByteArray bytes;
    if (!bytesAt(0, 2, bytes) || byteAt(bytes, 0) != MarkerPrefix
        || byteAt(bytes, 1) != StartOfImage)
        return false;
    std::uint64_t position = 2;
    for (int segment = 0; segment < MaxSegments; ++segment) {
        if (!bytesAt(position, 2, bytes) || byteAt(bytes, 0) != MarkerPrefix)
            return false;
        const unsigned char marker = byteAt(bytes, 1);
        if (marker == MarkerPrefix) { // a fill byte before the marker
            ++position;
            continue;
        }
        position += 2;
        if (standsAlone(marker))
            continue;
        if (marker == EndOfImage || marker == StartOfImage || !bytesAt(position, 2, bytes))
            return false;
        const std::uint64_t length = std::uint64_t(byteAt(bytes, 0)) << 8 | byteAt(bytes, 1);
        if (length < 2 || length > fileSize - position)
            return false;
        position += length;
        if (marker == StartOfScan) {
            pixels.clear();
            if (position < fileSize)
                pixels.push_back({position, fileSize - position});
            return true;
        }
    }
    return false;
}
