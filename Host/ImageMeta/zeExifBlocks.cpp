#include "zeExifBlocks.h"

#include "zeExifFormat.h"

#include <exiv2/tags.hpp>

#include <cstring>

namespace {

using Formatter = std::string (*)(const std::string&);

struct Tag
{
    const char* key;
    const char* tagName; // in Exif.Image for baseline tags, Exif.Photo and Xmp.exif for EXIF tags
    Formatter format;
};

const Tag SamplesPerPixel = {"@SAMPLES_PER_PIXEL", "SamplesPerPixel",
                             zeExifFormat::positiveInteger};
const Tag BitsPerSample = {"@BITS_PER_SAMPLE", "BitsPerSample", zeExifFormat::bitsPerSample};

const Tag DescriptiveTags[] = {
    {"@MAKE", "Make", zeExifFormat::text},
    {"@MODEL", "Model", zeExifFormat::text},
    {"@SOFTWARE", "Software", zeExifFormat::text},
    {"@ARTIST", "Artist", zeExifFormat::text},
    {"@IMAGEDESCRIPTION", "ImageDescription", zeExifFormat::text},
    {"@COPYRIGHT", "Copyright", zeExifFormat::text},
};

const Tag ExposureTags[] = {
    {"@EXPOSURE_TIME", "ExposureTime", zeExifFormat::exposureTime},
    {"@F_NUMBER", "FNumber", zeExifFormat::fNumber},
    {"@SHUTTER_SPEED", "ShutterSpeedValue", zeExifFormat::apex},
    {"@APERTURE", "ApertureValue", zeExifFormat::apex},
    {"@BRIGHTNESS", "BrightnessValue", zeExifFormat::apex},
    {"@EXPOSURE_BIAS", "ExposureBiasValue", zeExifFormat::apex},
    {"@SUBJECT_DISTANCE", "SubjectDistance", zeExifFormat::subjectDistance},
    {"@FOCAL_LENGTH", "FocalLength", zeExifFormat::focalLength},
    {"@FOCAL_LENGTH_IN _35MM_FILM", "FocalLengthIn35mmFilm", zeExifFormat::positiveInteger},
};

// The formatted value of the tag (empty when absent or undefined).
template <class Data, class Key>
std::string valueOf(const Data& data, const std::string& prefix, const Tag& tag)
{
    const auto found = data.findKey(Key(prefix + tag.tagName));
    return found == data.end() ? std::string() : tag.format(found->toString());
}

// Readers add the metre unit to a subject distance unless its value is
// exactly the word for infinity or for an unknown distance, so the words
// follow the key without the blank.
bool isDistanceWord(const char* key, const std::string& value)
{
    return std::strcmp(key, "@SUBJECT_DISTANCE") == 0
        && (value == "Infinity" || value == "Distance unknown");
}

void appendLine(std::string& block, const char* key, const std::string& value)
{
    if (!value.empty())
        block.append(key)
            .append(isDistanceWord(key, value) ? 0 : 1, ' ')
            .append(value)
            .append(1, '\n');
}

std::string countOr(const std::string& fromFile, int decoded)
{
    return fromFile.empty() && decoded > 0 ? std::to_string(decoded) : fromFile;
}

template <class Data, class Key>
std::string exposureBlock(const Data& data, const std::string& prefix)
{
    std::string block;
    for (const Tag& tag : ExposureTags)
        appendLine(block, tag.key, valueOf<Data, Key>(data, prefix, tag));
    return block;
}

} // namespace

std::string zeExifBlocks::baseline(const Exiv2::ExifData& exif, int decodedSamples,
                                   int decodedBits)
{
    const std::string prefix = "Exif.Image.";
    std::string block;
    appendLine(block, SamplesPerPixel.key,
               countOr(valueOf<Exiv2::ExifData, Exiv2::ExifKey>(exif, prefix, SamplesPerPixel),
                       decodedSamples));
    appendLine(block, BitsPerSample.key,
               countOr(valueOf<Exiv2::ExifData, Exiv2::ExifKey>(exif, prefix, BitsPerSample),
                       decodedBits));
    for (const Tag& tag : DescriptiveTags)
        appendLine(block, tag.key, valueOf<Exiv2::ExifData, Exiv2::ExifKey>(exif, prefix, tag));
    return block;
}

std::string zeExifBlocks::exif(const Exiv2::ExifData& exif)
{
    return exposureBlock<Exiv2::ExifData, Exiv2::ExifKey>(exif, "Exif.Photo.");
}

std::string zeExifBlocks::exif(const Exiv2::XmpData& xmp)
{
    return exposureBlock<Exiv2::XmpData, Exiv2::XmpKey>(xmp, "Xmp.exif.");
}
