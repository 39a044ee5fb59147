#ifndef IMAGEFIXTURES_H
#define IMAGEFIXTURES_H

// Image files for the metadata tests, made on the spot: pixels written with
// QImageWriter, then tags added with exiv2 directly (not through the code
// under test), so that what a test expects comes from what it wrote.

#include <exiv2/exiv2.hpp>

#include <QColor>
#include <QFile>
#include <QImage>
#include <QImageWriter>
#include <QString>

#include <string>
#include <utility>
#include <vector>

namespace ImageFixtures {

// exiv2 key ("Exif.Photo.ExposureTime", "Xmp.exif.FNumber") and the value
// as exiv2 reads it for that key's type ("1/100", "8 8 8", "Maker").
using Tags = std::vector<std::pair<std::string, std::string>>;

inline QImage filled(int width, int height, QImage::Format format, const QColor& colour)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image.convertToFormat(format);
}

inline bool write(const QImage& image, const QString& path, const QByteArray& format = {})
{
    QImageWriter writer(path, format);
    return writer.write(image);
}

// An 8 x 6 opaque colour image in format ("jpeg", "png", "tiff", "webp", ...).
inline bool writePlain(const QString& path, const QByteArray& format)
{
    return write(filled(8, 6, QImage::Format_RGB32, QColor(200, 60, 40)), path, format);
}

inline bool writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

inline QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Adds the tags to the file's EXIF ("Exif." keys) or XMP ("Xmp." keys).
inline bool addTags(const QString& path, const Tags& tags)
{
    try {
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        Exiv2::ExifData exif = image->exifData();
        Exiv2::XmpData xmp = image->xmpData();
        for (const auto& tag : tags) {
            if (tag.first.compare(0, 5, "Exif.") == 0)
                exif[tag.first].setValue(tag.second);
            else
                xmp[tag.first].setValue(tag.second);
        }
        image->setExifData(exif);
        image->setXmpData(xmp);
        image->writeMetadata();
        return true;
    } catch (const std::exception& error) {
        qWarning("exiv2: %s", error.what());
        return false;
    }
}

// Replaces the file's XMP by packet, written as it stands.
inline bool setXmpPacket(const QString& path, const std::string& packet)
{
    try {
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        image->setXmpPacket(packet);
        image->writeXmpFromPacket(true);
        image->writeMetadata();
        return true;
    } catch (const std::exception& error) {
        qWarning("exiv2: %s", error.what());
        return false;
    }
}

// The file's EXIF and XMP keys, as exiv2 lists them.
inline std::vector<std::string> metadataKeys(const QString& path)
{
    std::vector<std::string> keys;
    try {
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        for (const Exiv2::Exifdatum& datum : image->exifData())
            keys.push_back(datum.key());
        for (const Exiv2::Xmpdatum& datum : image->xmpData())
            keys.push_back(datum.key());
    } catch (const std::exception& error) {
        qWarning("exiv2: %s", error.what());
    }
    return keys;
}

} // namespace ImageFixtures

#endif // IMAGEFIXTURES_H
