#ifndef ZEIMAGEMETAWRITER_H
#define ZEIMAGEMETAWRITER_H

#include <string>

class zeRenderSettings;

/// Stamps a render-settings record into an existing image file: only the
/// file's XMP changes; its pixels are not decoded or re-encoded, and its other
/// metadata (EXIF, IPTC, foreign XMP) stays as it is. A record already in the
/// file is replaced as a whole; an empty record removes it.
///
/// With exifInXMP the file's EXIF data is also copied into the XMP, in the
/// standard EXIF schema, so the exposure data travels with the record
/// through tools that keep XMP but drop EXIF.
///
/// The file is read into memory, changed there with exiv2 and saved back
/// through a temporary file that replaces it only once every byte has been
/// written and flushed, so a failure (a full disk included) leaves the file
/// byte for byte as it was. Files over 1 GiB are refused, and so are files
/// whose XMP packet exiv2 cannot parse, since exiv2 would write the record in
/// its place. Nothing is thrown.
class zeImageMetaWriter
{
public:
    /// What stamp() did; every value but Stamped leaves the file untouched.
    enum Result {
        Stamped,           ///< The record was written.
        FileTooLarge,      ///< Over 1 GiB.
        CannotReadFile,    ///< Missing, unreadable, a directory, a device.
        NotAnImage,        ///< exiv2 does not recognise or cannot parse it.
        UnsupportedFormat, ///< exiv2 cannot write XMP into this format (BMP, GIF, ...).
        NoEXIFToCopy,      ///< exifInXMP asked for, but the file has no EXIF data.
        CannotEncode,      ///< exiv2 failed to write the new metadata, or the file's
                           ///< XMP binds the record's prefix to another namespace.
        CannotWriteFile,   ///< The changed file could not be saved.
        UnreadableXMP      ///< exiv2 cannot parse the file's XMP packet (too deeply
                           ///< nested, for example); stamping would lose it.
    };

    /// utf8Path names the file. detail, when given, receives exiv2's or the
    /// file system's own words on a failure (empty on success).
    static Result stamp(const char* utf8Path, const zeRenderSettings& record, bool exifInXMP,
                        std::string* detail = nullptr);
};

#endif // ZEIMAGEMETAWRITER_H
