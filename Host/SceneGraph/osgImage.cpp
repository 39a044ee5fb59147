#include "osgImage.h"

#include "osgImageSignature.h"

#include "zeImageFile.h"
#include "zeImageMetaData.h"
#include "zeImageMetaReader.h"
#include "zeZeroPages.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>
#include <memory>

namespace osg {

namespace {

// What the file tells about its image, from the decoded pixels or from the
// header alone.
struct Shape
{
    QSize size;
    QImage::Format format = QImage::Format_Invalid;
    bool colour = false;
    bool alpha = false;
};

// Calls take(reader) with a reader over file for each format that takes
// it, until take answers true; false when none did. The content names the
// format; the file's suffix is the fallback for formats without a signature
// of their own (a TGA file's first bytes pass for a cursor's). A signature
// that names the reader content detection would choose is tried first with
// detection off, so that only that format's plugin is loaded.
template <class Take>
bool readWithFittingReader(const QByteArray& file, const QString& suffix, Take take)
{
    struct Attempt
    {
        QByteArray format;
        bool detectFormat;
    };
    const Attempt attempts[] = {{ImageSignature::formatOf(file), false},
                                {QByteArray(), true},
                                {suffix.toLower().toLatin1(), true}};
    for (const Attempt& attempt : attempts) {
        if (attempt.format.isEmpty() && !attempt.detectFormat)
            continue;
        QBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, attempt.format);
        reader.setAutoDetectImageFormat(attempt.detectFormat);
        if (reader.canRead() && take(reader))
            return true;
    }
    return false;
}

bool fitsPixelLimit(QImageReader& reader)
{
    const QSize size = reader.size();
    if (!size.isValid())
        return true;
    const QImage::Format format = reader.imageFormat();
    const qint64 bits =
        format == QImage::Format_Invalid ? 32 : QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 maxPixels = Image::MaxPixelBytes * 8 / std::max<qint64>(bits, 1);
    return qint64(size.width()) * size.height() <= maxPixels;
}

bool isGrey(QImage::Format format)
{
    return format == QImage::Format_Grayscale8 || format == QImage::Format_Grayscale16
        || format == QImage::Format_Alpha8;
}

bool isBilevel(QImage::Format format)
{
    return format == QImage::Format_Mono || format == QImage::Format_MonoLSB;
}

bool isPalette(QImage::Format format)
{
    return isBilevel(format) || format == QImage::Format_Indexed8;
}

bool carriesColour(const QImage& pixels)
{
    if (!isPalette(pixels.format()))
        return !isGrey(pixels.format());
    const QVector<QRgb> palette = pixels.colorTable();
    return !std::all_of(palette.begin(), palette.end(), [](QRgb entry) { return qIsGray(entry); });
}

bool decode(const QByteArray& file, const QString& suffix, QImage& pixels, std::string& why)
{
    why = "not an image this program can decode, or damaged";
    return readWithFittingReader(file, suffix, [&](QImageReader& reader) {
        if (!fitsPixelLimit(reader)) {
            why = "its pixels would take more than 1 GiB";
            return false;
        }
        return reader.read(&pixels) && !pixels.isNull();
    });
}

Shape shapeOfPixels(const QImage& pixels)
{
    return {pixels.size(), pixels.format(), carriesColour(pixels), pixels.hasAlphaChannel()};
}

// The header's size and pixel format, without decoding; false when no
// installed plugin takes the file for its format.
bool readShapeFromHeader(const QByteArray& file, const QString& suffix, Shape& shape)
{
    return readWithFittingReader(file, suffix, [&](QImageReader& reader) {
        shape.size = reader.size();
        // Some plugins answer the format with garbage when the header could
        // not be read.
        shape.format = shape.size.isValid() ? reader.imageFormat() : QImage::Format_Invalid;
        if (shape.format < QImage::Format_Invalid || shape.format >= QImage::NImageFormats)
            shape.format = QImage::Format_Invalid;
        shape.colour = shape.format != QImage::Format_Invalid && !isGrey(shape.format)
            && !isBilevel(shape.format);
        shape.alpha = shape.format != QImage::Format_Invalid
            && QImage::toPixelFormat(shape.format).alphaUsage() == QPixelFormat::UsesAlpha;
        return true;
    });
}

// The samples of a pixel in the TIFF sense: one for grey and for palette
// images (the palette index), three for colour, four with alpha; 0 when the
// format is not known.
int samplesPerPixel(const Shape& shape)
{
    if (shape.format == QImage::Format_Invalid)
        return 0;
    if (isPalette(shape.format) || isGrey(shape.format))
        return 1;
    return shape.alpha ? 4 : 3;
}

int bitsPerSample(QImage::Format format)
{
    switch (format) {
    case QImage::Format_Invalid:
        return 0;
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
        return 1;
    case QImage::Format_Grayscale16:
    case QImage::Format_RGBX64:
    case QImage::Format_RGBA64:
    case QImage::Format_RGBA64_Premultiplied:
        return 16;
    default:
        return 8;
    }
}

bool fail(std::string& why, const std::string& reason)
{
    why = reason;
    return false;
}

} // namespace

ImagePtr Image::create()
{
    return ImagePtr(new Image);
}

void Image::setAttachmentField(const std::string& key, const std::string& value)
{
    _attachments[key] = value;
}

std::optional<std::string> Image::findAttachmentField(const std::string& key) const
{
    const auto found = _attachments.find(key);
    if (found == _attachments.end())
        return std::nullopt;
    return found->second;
}

bool Image::read(const char* utf8Path)
{
    std::string why;
    return load(utf8Path, true, why);
}

bool Image::readHeader(const char* utf8Path, std::string* why)
{
    std::string reason;
    const bool loaded = load(utf8Path, false, reason);
    if (why)
        *why = loaded ? std::string() : reason;
    return loaded;
}

bool Image::load(const char* utf8Path, bool decodePixels, std::string& why)
{
    if (!utf8Path)
        return fail(why, "no file name");
    try {
        const QString path = QString::fromUtf8(utf8Path);
        // file may view fileMemory: declared first, it goes last.
        std::unique_ptr<zeZeroPages> fileMemory;
        QByteArray file;
        const zeImageFile::ReadResult result =
            decodePixels ? zeImageFile::read(path, MaxFileSize, file, why)
                         : zeImageFile::readWithoutPixels(path, MaxFileSize, file, fileMemory, why);
        if (result != zeImageFile::Read)
            return false;
        // Only readers that the signature names are known to leave the
        // pixels alone when reading a header.
        if (fileMemory && ImageSignature::formatOf(file).isEmpty()) {
            fileMemory.reset();
            if (zeImageFile::read(path, MaxFileSize, file, why) != zeImageFile::Read)
                return false;
        }
        if (file.isEmpty())
            return fail(why, "empty file");
        const QString suffix = QFileInfo(path).suffix();
        QImage pixels;
        Shape shape;
        if (decodePixels) {
            if (!decode(file, suffix, pixels, why))
                return false;
            shape = shapeOfPixels(pixels);
        } else if (!readShapeFromHeader(file, suffix, shape)) {
            return fail(why, "not an image format this program reads");
        }
        const bool wantsMetaData =
            findAttachmentField(zeImageMetaData::getAttachmentKey()).has_value();
        zeImageMetaReader::Blocks blocks;
        if (wantsMetaData || !shape.size.isValid()) {
            zeImageMetaReader::read(file.constData(), std::size_t(file.size()),
                                    samplesPerPixel(shape), bitsPerSample(shape.format), blocks);
        }
        if (!shape.size.isValid() && blocks.isEmpty())
            return fail(why, "damaged: neither its size nor its metadata can be read");
        _name = utf8Path;
        _pixels = pixels;
        _width = shape.size.isValid() ? shape.size.width() : 0;
        _height = shape.size.isValid() ? shape.size.height() : 0;
        _depth = shape.size.isValid() ? 1 : 0;
        _hasColor = shape.colour;
        _hasAlpha = shape.alpha;
        if (wantsMetaData) {
            setAttachmentField(zeImageMetaData::getBaselineDataKey(), blocks.baseline);
            setAttachmentField(zeImageMetaData::getEXIFDataKey(), blocks.exif);
            setAttachmentField(zeImageMetaData::getAttachmentKey(), blocks.record);
        }
        return true;
    } catch (...) {
        // Out of memory for a large file or image.
        return fail(why, "out of memory");
    }
}

} // namespace osg
