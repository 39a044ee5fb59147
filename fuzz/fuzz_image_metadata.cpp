// Image files from arbitrary bytes through the metadata reader: exiv2 parses
// them into the three text blocks, and a render-settings record found among
// them is read back the way the image browser and the information dialog
// read it.
#include <osgImage.h>
#include <zeImageMetaData.h>
#include <zeImageMetaReader.h>
#include <zeLog.h>

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    // exiv2 warns about most inputs; a fuzzer runs millions of them.
    static const bool quiet = [] {
        zeLog::setWarningHandler([](const char*) {});
        return true;
    }();
    (void)quiet;
    zeImageMetaReader::Blocks blocks;
    zeImageMetaReader::read(reinterpret_cast<const char*>(data), size, 3, 8, blocks);
    if (blocks.record.empty())
        return 0;
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), blocks.record);
    const zeImageMetaData metaData(image, true);
    std::string filename, version, renderDate, exif;
    metaData.getGeneralInformation(filename, version, renderDate);
    metaData.getEXIFData(exif);
    return metaData.containedTALQSettings() > 255 ? 1 : 0;
}
