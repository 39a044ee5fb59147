#ifndef ZETIFFLAYOUT_H
#define ZETIFFLAYOUT_H

#include <QByteArray>

#include <cstdint>
#include <functional>
#include <vector>

// Where a TIFF file keeps its pixels: the strips and tiles of the images in
// its directory chain. The header and the metadata of the file live
// elsewhere (directories, tag values), so a reader that wants only those can
// leave the pixel bytes unread, which for a photo is almost the whole file.
//
// The answer is given only when it is certain: any directory, tag value or
// sub-directory (EXIF, GPS, interoperability, sub-images) that overlaps the
// pixels, a directory chain that loops or is cut, an unknown tag type or a
// BigTIFF file makes pixelRanges() answer false, and the caller reads the
// whole file as before.
class zeTiffLayout
{
public:
    struct Range
    {
        std::uint64_t offset = 0;
        std::uint64_t size = 0;
    };

    // Reads size bytes at offset; fewer (or none) past the end of the file.
    using ReadAt = std::function<QByteArray(std::uint64_t offset, std::uint64_t size)>;

    // Fills pixels with the byte ranges of the strips and tiles, clipped to
    // fileSize, sorted and merged. False when the file is not a classic TIFF
    // or its layout cannot be told for certain.
    static bool pixelRanges(const ReadAt& read, std::uint64_t fileSize, std::vector<Range>& pixels);
};

#endif // ZETIFFLAYOUT_H
