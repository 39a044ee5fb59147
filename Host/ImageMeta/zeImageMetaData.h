#ifndef ZEIMAGEMETADATA_H
#define ZEIMAGEMETADATA_H

#include "osgImage.h"
#include "zeRenderSettings.h"

#include <string>

/// The metadata that the image loader attaches to an image, and the
/// render-settings record among it.
///
/// Asking for metadata: set an attachment under getAttachmentKey() on an
/// image (an empty string will do) before osg::Image::read(), or before
/// osg::Image::readHeader() when only the metadata and the size are wanted
/// (it decodes no pixels). The read then attaches three text blocks (see
/// zeImageMetaReader for how they are read):
///   "BaselineData"  lines "@SAMPLES_PER_PIXEL", "@BITS_PER_SAMPLE", "@MAKE",
///                   "@MODEL", "@SOFTWARE", "@ARTIST", "@IMAGEDESCRIPTION",
///                   "@COPYRIGHT" from the file's TIFF/EXIF image tags
///                   (samples and bits from the decoder, or the header, when
///                   the file has no such tags);
///   "EXIFData"      lines "@EXPOSURE_TIME", "@F_NUMBER", "@SHUTTER_SPEED",
///                   "@APERTURE", "@BRIGHTNESS", "@EXPOSURE_BIAS",
///                   "@SUBJECT_DISTANCE", "@FOCAL_LENGTH" and
///                   "@FOCAL_LENGTH_IN _35MM_FILM" (blank included) from the
///                   file's EXIF data;
///   getAttachmentKey()  the file's XMP packet, when it carries the
///                   render-settings record or EXIF properties inside the XMP;
///                   left empty when it carries neither.
/// Each line is the key, one blank, the value and a line feed (no blank
/// before the subject distance's "Infinity" and "Distance unknown"). Values are
/// written as a photographer reads them: exposure time "1/100", f-number
/// "5.6", the APEX values (shutter speed, aperture, brightness, exposure
/// bias) with two decimals, subject distance in metres or "Infinity" or
/// "Distance unknown", focal lengths in millimetres without unit. A tag that
/// is absent, or whose value is undefined, has no line.
///
/// This class reads the third block: the record's group mask, its general
/// information and its settings, and the EXIF properties stored beside it.
/// It never throws; an image without the block, or with a block that is not
/// XMP, has no record and no EXIF data.
class zeImageMetaData
{
public:
    /// The attachment name of the record block; also the request for metadata.
    static std::string getAttachmentKey();
    /// The attachment name of the baseline tags block, "BaselineData".
    static std::string getBaselineDataKey();
    /// The attachment name of the EXIF exposure block, "EXIFData".
    static std::string getEXIFDataKey();

    /// Reads the record attached to image (a null image has none). withEXIF
    /// says whether the EXIF properties inside the XMP are wanted as well:
    /// browsing and filtering by render settings passes false and skips
    /// them; showing an image's exposure data passes true. Without it,
    /// containedEXIFDataWithinXMP() is false and getEXIFData() yields nothing.
    zeImageMetaData(const osg::ImagePtr& image, bool withEXIF);

    /// The OR of the zeRenderSettings::Group bits of the groups the record
    /// carries; 0 without a record.
    int containedTALQSettings() const;

    /// Scene file name, application version and render date of the render
    /// (UTF-8; each empty when the record does not say). Returns whether the
    /// record carries any of the three.
    bool getGeneralInformation(std::string& filename, std::string& version,
                               std::string& renderDate) const;

    /// Whether EXIF exposure properties were found inside the XMP (only when
    /// constructed withEXIF).
    bool containedEXIFDataWithinXMP() const;
    /// Those properties as "EXIFData" lines (the same keys and value forms);
    /// text is empty and false returned when there are none.
    bool getEXIFData(std::string& text) const;

    /// The whole record, with each group's settings.
    const zeRenderSettings& getRenderSettings() const { return _settings; }

private:
    void readRecord(const std::string& packet, bool withEXIF);

    zeRenderSettings _settings;
    std::string _exifText;
};

#endif // ZEIMAGEMETADATA_H
