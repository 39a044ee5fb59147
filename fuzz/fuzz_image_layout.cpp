// Image files from arbitrary bytes through the layout readers that tell a
// TIFF's or a JPEG's pixels from its header and metadata. Whatever they
// answer must be ranges inside the file, sorted and apart, and every read
// they ask for must lie inside the file too.
#include <zeJpegLayout.h>
#include <zeTiffLayout.h>

#include <QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

namespace {

void checkRanges(const std::vector<zeTiffLayout::Range>& ranges, std::uint64_t size)
{
    std::uint64_t end = 0;
    for (const zeTiffLayout::Range& range : ranges) {
        if (range.size == 0 || range.offset < end || range.offset + range.size > size)
            std::abort();
        end = range.offset + range.size;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray file = QByteArray::fromRawData(reinterpret_cast<const char*>(data), int(size));
    const zeTiffLayout::ReadAt readAt = [&file](std::uint64_t offset, std::uint64_t length) {
        if (offset + length > std::uint64_t(file.size()))
            std::abort();
        return file.mid(int(offset), int(length));
    };
    std::vector<zeTiffLayout::Range> ranges;
    if (zeTiffLayout::pixelRanges(readAt, size, ranges))
        checkRanges(ranges, size);
    if (zeJpegLayout::pixelRanges(readAt, size, ranges))
        checkRanges(ranges, size);
    return 0;
}
