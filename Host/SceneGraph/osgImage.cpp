#include "osgImage.h"

#include "zeImageMetaData.h"
#include "zeImageMetaReader.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace osg {

namespace {

bool readFile(const QString& path, QByteArray& bytes)
{
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > Image::MaxFileSize)
        return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    bytes = file.readAll();
    return !bytes.isEmpty();
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

// The content names the format; the file's suffix is the fallback for
// formats without a signature of their own (a TGA file's first bytes pass
// for a cursor's).
bool decode(const QByteArray& file, const QString& suffix, QImage& pixels)
{
    for (const QByteArray& format : {QByteArray(), suffix.toLower().toLatin1()}) {
        QBuffer buffer;
        buffer.setData(file);
        buffer.open(QIODevice::ReadOnly);
        QImageReader reader(&buffer, format);
        if (!reader.canRead())
            continue;
        if (!fitsPixelLimit(reader))
            return false;
        if (reader.read(&pixels) && !pixels.isNull())
            return true;
    }
    return false;
}

bool carriesColour(const QImage& pixels)
{
    switch (pixels.format()) {
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_Alpha8:
        return false;
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8: {
        const QVector<QRgb> palette = pixels.colorTable();
        return !std::all_of(palette.begin(), palette.end(),
                            [](QRgb entry) { return qIsGray(entry); });
    }
    default:
        return true;
    }
}

// The samples of a decoded pixel in the TIFF sense: one for grey and for
// palette images (the palette index), three for colour, four with alpha.
int samplesPerPixel(const QImage& pixels)
{
    switch (pixels.format()) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8:
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
    case QImage::Format_Alpha8:
        return 1;
    default:
        return pixels.hasAlphaChannel() ? 4 : 3;
    }
}

int bitsPerSample(const QImage& pixels)
{
    switch (pixels.format()) {
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
    if (!utf8Path)
        return false;
    try {
        const QString path = QString::fromUtf8(utf8Path);
        QByteArray file;
        QImage pixels;
        if (!readFile(path, file) || !decode(file, QFileInfo(path).suffix(), pixels))
            return false;
        const bool wantsMetaData =
            findAttachmentField(zeImageMetaData::getAttachmentKey()).has_value();
        zeImageMetaReader::Blocks blocks;
        if (wantsMetaData) {
            zeImageMetaReader::read(file.constData(), std::size_t(file.size()),
                                    samplesPerPixel(pixels), bitsPerSample(pixels), blocks);
        }
        _name = utf8Path;
        _pixels = pixels;
        _hasColor = carriesColour(pixels);
        if (wantsMetaData) {
            setAttachmentField(zeImageMetaData::getBaselineDataKey(), blocks.baseline);
            setAttachmentField(zeImageMetaData::getEXIFDataKey(), blocks.exif);
            setAttachmentField(zeImageMetaData::getAttachmentKey(), blocks.record);
        }
        return true;
    } catch (...) {
        // Out of memory for a large file or image.
        return false;
    }
}

} // namespace osg
