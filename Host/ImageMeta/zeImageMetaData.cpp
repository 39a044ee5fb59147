#include "zeImageMetaData.h"

#include "zeExifBlocks.h"
#include "zeExiv2.h"
#include "zeRenderSettingsXmp.h"

std::string zeImageMetaData::getAttachmentKey()
{
    return "RenderSettingsXMP";
}

std::string zeImageMetaData::getBaselineDataKey()
{
    return "BaselineData";
}

std::string zeImageMetaData::getEXIFDataKey()
{
    return "EXIFData";
}

zeImageMetaData::zeImageMetaData(const osg::ImagePtr& image, bool withEXIF)
{
    if (!image)
        return;
    const std::optional<std::string> packet = image->findAttachmentField(getAttachmentKey());
    if (packet && !packet->empty())
        readRecord(*packet, withEXIF);
}

void zeImageMetaData::readRecord(const std::string& packet, bool withEXIF)
{
    try {
        zeExiv2::prepare();
        Exiv2::XmpData xmp;
        if (!zeRenderSettingsXmp::decodePacket(packet, xmp))
            return;
        zeRenderSettings settings;
        zeRenderSettingsXmp::read(xmp, settings);
        const std::string exifText = withEXIF ? zeExifBlocks::exif(xmp) : std::string();
        _settings = settings;
        _exifText = exifText;
    } catch (...) {
        // A block that exiv2 cannot take apart holds no record.
    }
}

int zeImageMetaData::containedTALQSettings() const
{
    return _settings.getGroups();
}

bool zeImageMetaData::getGeneralInformation(std::string& filename, std::string& version,
                                            std::string& renderDate) const
{
    filename = _settings.getSceneFile();
    version = _settings.getApplicationVersion();
    renderDate = _settings.getRenderDate();
    return _settings.hasGeneralInformation();
}

bool zeImageMetaData::containedEXIFDataWithinXMP() const
{
    return !_exifText.empty();
}

bool zeImageMetaData::getEXIFData(std::string& text) const
{
    text = _exifText;
    return !text.empty();
}
