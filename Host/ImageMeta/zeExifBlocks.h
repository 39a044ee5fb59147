#ifndef ZEEXIFBLOCKS_H
#define ZEEXIFBLOCKS_H

#include <exiv2/exif.hpp>
#include <exiv2/xmp_exiv2.hpp>

#include <string>

// Builds the "BaselineData" and "EXIFData" text blocks from exiv2's view of
// a file. A block holds one line per tag that is present and defined, in a
// fixed order: the key (a word starting with "@"), one blank, the value as
// zeExifFormat writes it, and a line feed; every line ends with its line
// feed, so blocks can be appended to each other. The subject distance's words
// "Infinity" and "Distance unknown" follow their key without the blank.
//
// Baseline keys and their TIFF/EXIF image tags: @SAMPLES_PER_PIXEL
// (SamplesPerPixel), @BITS_PER_SAMPLE (BitsPerSample), @MAKE, @MODEL,
// @SOFTWARE, @ARTIST, @IMAGEDESCRIPTION, @COPYRIGHT.
// EXIF keys and their tags: @EXPOSURE_TIME (ExposureTime), @F_NUMBER
// (FNumber), @SHUTTER_SPEED (ShutterSpeedValue), @APERTURE (ApertureValue),
// @BRIGHTNESS (BrightnessValue), @EXPOSURE_BIAS (ExposureBiasValue),
// @SUBJECT_DISTANCE (SubjectDistance), @FOCAL_LENGTH (FocalLength) and
// "@FOCAL_LENGTH_IN _35MM_FILM" (FocalLengthIn35mmFilm; the blank inside
// the key is part of it, readers search for it so).
class zeExifBlocks
{
public:
    // The baseline block; samples per pixel and bits per sample fall back to
    // the decoder's counts when the file has no such tags (a count of 0
    // leaves the line out).
    static std::string baseline(const Exiv2::ExifData& exif, int decodedSamples,
                                int decodedBits);
    // The EXIF block from the file's EXIF data.
    static std::string exif(const Exiv2::ExifData& exif);
    // The EXIF block from EXIF properties stored inside XMP (the standard
    // EXIF schema, "exif:ExposureTime" and so on), in the same form.
    static std::string exif(const Exiv2::XmpData& xmp);
};

#endif // ZEEXIFBLOCKS_H
