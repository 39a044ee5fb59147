#include "zeImageMetaWriter.h"

#include "zeExiv2.h"
#include "zeImageMetaReader.h"
#include "zeRenderSettingsXmp.h"

#include <exiv2/convert.hpp>

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <exception>
#include <memory>

namespace {

using Result = zeImageMetaWriter::Result;

// What each step returns when it succeeded; the first failure ends the stamp.
constexpr Result Done = zeImageMetaWriter::Stamped;

Result readFile(const QString& path, QByteArray& bytes, std::string& why)
{
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isFile()) {
        why = "no such file";
        return zeImageMetaWriter::CannotReadFile;
    }
    if (quint64(info.size()) > zeImageMetaReader::MaxFileSize) {
        why = "larger than 1 GiB";
        return zeImageMetaWriter::FileTooLarge;
    }
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        why = file.errorString().toStdString();
        return zeImageMetaWriter::CannotReadFile;
    }
    bytes = file.readAll();
    return Done;
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
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)
        || file.write(contents.data(), qint64(contents.size())) != qint64(contents.size())
        || !file.commit()) {
        why = file.errorString().toStdString();
        return zeImageMetaWriter::CannotWriteFile;
    }
    return Done;
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
