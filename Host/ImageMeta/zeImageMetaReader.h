#ifndef ZEIMAGEMETAREADER_H
#define ZEIMAGEMETAREADER_H

#include <cstddef>
#include <string>

/// Reads the metadata of an image file held in memory into the three text
/// blocks that the image loader attaches to an image (see zeImageMetaData):
/// the baseline tags, the EXIF exposure data and the render-settings record.
/// exiv2 does the reading. Bytes that exiv2 does not recognise, or cannot
/// read, yield no metadata from the file; nothing is thrown, and files over
/// MaxFileSize are not looked at.
class zeImageMetaReader
{
public:
    /// Largest file whose metadata is read: 1 GiB.
    static constexpr std::size_t MaxFileSize = std::size_t(1) << 30;

    /// The three metadata blocks an image read attaches.
    struct Blocks
    {
        /// "@KEY value" lines of the TIFF/EXIF image tags.
        std::string baseline;
        /// "@KEY value" lines of the EXIF exposure tags.
        std::string exif;
        /// The file's XMP packet as it stands, when it carries the
        /// render-settings record or EXIF properties inside XMP; empty
        /// otherwise.
        std::string record;

        /// True when all three blocks are empty.
        bool isEmpty() const { return baseline.empty() && exif.empty() && record.empty(); }
    };

    /// Fills blocks from the size bytes at data. decodedSamples and
    /// decodedBits are what the pixel decoder found; they stand in for the
    /// samples-per-pixel and bits-per-sample tags when the file has none
    /// (0 leaves the line out). Returns whether exiv2 could read the
    /// metadata; when it could not, only those decoder counts are filled in.
    static bool read(const char* data, std::size_t size, int decodedSamples, int decodedBits,
                     Blocks& blocks);
};

#endif // ZEIMAGEMETAREADER_H
