#include "zeImageMetaReader.h"

#include "zeExifBlocks.h"
#include "zeExiv2.h"
#include "zeRenderSettingsXmp.h"

#include <memory>

bool zeImageMetaReader::read(const char* data, std::size_t size, int decodedSamples,
                             int decodedBits, Blocks& blocks)
{
    blocks = Blocks();
    const Exiv2::ExifData noExif;
    blocks.baseline = zeExifBlocks::baseline(noExif, decodedSamples, decodedBits);
    if (!data || size == 0 || size > MaxFileSize)
        return false;
    try {
        const std::unique_ptr<Exiv2::Image> image = zeExiv2::open(data, size);
        Blocks fromFile;
        fromFile.baseline = zeExifBlocks::baseline(image->exifData(), decodedSamples, decodedBits);
        fromFile.exif = zeExifBlocks::exif(image->exifData());
        if (zeRenderSettingsXmp::carriesRecordOrExif(image->xmpData()))
            fromFile.record = image->xmpPacket();
        blocks = fromFile;
        return true;
    } catch (...) {
        // exiv2 reports unknown, truncated and malformed files by throwing;
        // whatever it threw, the file yields no metadata.
        return false;
    }
}
