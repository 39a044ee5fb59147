#include "zeImageMetaWriter.h"

#include "zeExiv2.h"
#include "zeImageFile.h"
#include "zeImageMetaReader.h"
#include "zeRenderSettingsXmp.h"

#include <exiv2/convert.hpp>


#include <exception>
#include <memory>

namespace {

using Result = zeImageMetaWriter::Result;

// What each step returns when it succeeded; the first failure ends the stamp.
constexpr Result Done = zeImageMetaWriter::Stamped;

Result readFile(const QString& path, QByteArray& bytes, std::string& why)
{
    switch (zeImageFile::read(path, qint64(zeImageMetaReader::MaxFileSize), bytes, why)) {
    case zeImageFile::Read:
        return Done;
    case zeImageFile::TooLarge:
        return zeImageMetaWriter::FileTooLarge;
    case zeImageFile::CannotRead:
        break;
    }
    return zeImageMetaWriter::CannotReadFile;
}

// Runs step; an exception becomes failure, with its message in why.
template <class Step>
Result guarded(Result failure, std::string& why, Step step)
{
    try {
        return step();
    } catch (const std::exception& error) {
        why = error.what();
    } catch (...) {
        why = "unknown error";
    }
    return failure;
}

// exiv2 only logs a packet it cannot parse, leaves the file's XMP empty and
// would then write the record alone, dropping the packet.
Result checkXmpParses(const Exiv2::Image& image, std::string& why)
{
    return guarded(zeImageMetaWriter::UnreadableXMP, why, [&] {
        Exiv2::XmpData parsed;
        if (image.xmpPacket().empty() || Exiv2::XmpParser::decode(parsed, image.xmpPacket()) == 0)
            return Done;
        why = "exiv2 cannot parse the file's XMP packet, which stamping would drop";
        return zeImageMetaWriter::UnreadableXMP;
    });
}

Result addRecord(Exiv2::Image& image, const zeRenderSettings& record, bool exifInXMP,
                 std::string& why)
{
    return guarded(zeImageMetaWriter::CannotEncode, why, [&] {
        if ((image.checkMode(Exiv2::mdXmp) & Exiv2::amWrite) == 0) {
            why = "exiv2 cannot write XMP into this format";
            return zeImageMetaWriter::UnsupportedFormat;
        }
        if (!zeRenderSettingsXmp::ownsPrefix()) {
            zeRenderSettingsXmp::registerNamespace();
            why = std::string("the file binds the prefix ") + zeRenderSettingsXmp::Prefix
                + " to another namespace";
            return zeImageMetaWriter::CannotEncode;
        }
        if (exifInXMP && image.exifData().empty()) {
            why = "the file has no EXIF data";
            return zeImageMetaWriter::NoEXIFToCopy;
        }
        Exiv2::XmpData xmp = image.xmpData();
        zeRenderSettingsXmp::write(record, xmp);
        if (exifInXMP)
            Exiv2::copyExifToXmp(image.exifData(), xmp);
        // writeMetadata() only logs a packet it cannot encode and then writes
        // the file without it; finding out first keeps the file as it was.
        std::string packet;
        if (Exiv2::XmpParser::encode(packet, xmp) != 0) {
            why = "exiv2 cannot encode the file's XMP with the record";
            return zeImageMetaWriter::CannotEncode;
        }
        image.setXmpData(xmp);
        image.writeMetadata();
        return Done;
    });
}

Result stampBytes(const QByteArray& bytes, const zeRenderSettings& record, bool exifInXMP,
                  std::string& stamped, std::string& why)
{
    std::unique_ptr<Exiv2::Image> image;
    const Result opened = guarded(zeImageMetaWriter::NotAnImage, why, [&] {
        zeExiv2::prepare();
        zeRenderSettingsXmp::registerNamespace();
        image = zeExiv2::open(bytes.constData(), std::size_t(bytes.size()));
        return Done;
    });
    if (opened != Done)
        return opened;
    const Result parsed = checkXmpParses(*image, why);
    if (parsed != Done)
        return parsed;
    const Result added = addRecord(*image, record, exifInXMP, why);
    if (added != Done)
        return added;
    return guarded(zeImageMetaWriter::CannotEncode, why, [&] {
        stamped = zeExiv2::bytesOf(*image);
        return Done;
    });
}

Result saveFile(const QString& path, const std::string& contents, std::string& why)
{
    return zeImageFile::save(path, contents, why) ? Done : zeImageMetaWriter::CannotWriteFile;
}

Result stampFile(const QString& path, const zeRenderSettings& record, bool exifInXMP,
                 std::string& why)
{
    QByteArray bytes;
    Result result = readFile(path, bytes, why);
    std::string stamped;
    if (result == Done)
        result = stampBytes(bytes, record, exifInXMP, stamped, why);
    if (result == Done)
        result = saveFile(path, stamped, why);
    return result;
}

} // namespace

zeImageMetaWriter::Result zeImageMetaWriter::stamp(const char* utf8Path,
                                                   const zeRenderSettings& record,
                                                   bool exifInXMP, std::string* detail)
{
    std::string why;
    const Result result =
        stampFile(utf8Path ? QString::fromUtf8(utf8Path) : QString(), record, exifInXMP, why);
    if (detail)
        *detail = result == Stamped ? std::string() : why;
    return result;
}
