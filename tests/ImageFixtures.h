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
#include <QRandomGenerator>
#include <QString>

#include <array>
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

// Pixels that no encoder can shrink much, the same for the same seed, so
// that a test can make a file of about the size it needs.
inline QImage noise(int width, int height, quint32 seed)
{
    QRandomGenerator random(seed);
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x)
            image.setPixel(x, y, 0xff000000u | (random.generate() & 0xffffffu));
    }
    return image;
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

// Embeds jpeg (the bytes of a JPEG file) as the EXIF preview of the image at
// path, the way cameras store theirs.
inline bool embedExifPreview(const QString& path, const QByteArray& jpeg)
{
    try {
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        Exiv2::ExifData exif = image->exifData();
        Exiv2::ExifThumb(exif).setJpegThumbnail(
            reinterpret_cast<const Exiv2::byte*>(jpeg.constData()), long(jpeg.size()));
        image->setExifData(exif);
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

inline QByteArray bigEndian32(quint32 value)
{
    QByteArray bytes(4, '\0');
    for (int i = 0; i < 4; ++i)
        bytes[i] = char(value >> (24 - 8 * i));
    return bytes;
}

// CRC-32 as PNG chunks carry it (ISO 3309, reflected polynomial 0xEDB88320).
inline quint32 crc32(const QByteArray& bytes)
{
    static const std::array<quint32, 256> table = [] {
        std::array<quint32, 256> entries{};
        for (quint32 n = 0; n < 256; ++n) {
            quint32 c = n;
            for (int k = 0; k < 8; ++k)
                c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
            entries[n] = c;
        }
        return entries;
    }();
    quint32 c = 0xFFFFFFFFu;
    for (char byte : bytes)
        c = table[(c ^ quint8(byte)) & 0xFF] ^ (c >> 8);
    return c ^ 0xFFFFFFFFu;
}

inline QByteArray pngChunk(const QByteArray& type, const QByteArray& data)
{
    return bigEndian32(quint32(data.size())) + type + data + bigEndian32(crc32(type + data));
}

// Writes deflate bits: header fields least significant bit first, Huffman
// codes most significant bit first.
class BitWriter
{
public:
    void bits(quint32 value, int count)
    {
        for (int i = 0; i < count; ++i)
            bit((value >> i) & 1);
    }
    void code(quint32 value, int length)
    {
        for (int i = length - 1; i >= 0; --i)
            bit((value >> i) & 1);
    }
    QByteArray bytes() const { return _used ? _bytes + char(_current) : _bytes; }

private:
    void bit(quint32 value)
    {
        _current |= value << _used;
        if (++_used == 8) {
            _bytes += char(_current);
            _current = 0;
            _used = 0;
        }
    }
    QByteArray _bytes;
    quint32 _current = 0;
    int _used = 0;
};

// A zlib stream of count zero bytes in one fixed-Huffman block: a literal
// zero, then copies of 258 bytes at distance 1, then literal zeros.
inline QByteArray zlibZeros(qint64 count)
{
    BitWriter writer;
    writer.bits(1, 1); // last block
    writer.bits(1, 2); // fixed Huffman codes
    const quint32 literalZero = 0x30; // literals 0-143: 8-bit codes from 00110000
    writer.code(literalZero, 8);
    const qint64 copies = (count - 1) / 258;
    for (qint64 i = 0; i < copies; ++i) {
        writer.code(0xC5, 8); // length 258: symbol 285, 8-bit code 11000101
        writer.code(0, 5);    // distance 1: code 0
    }
    for (qint64 i = 1 + copies * 258; i < count; ++i)
        writer.code(literalZero, 8);
    writer.code(0, 7); // end of block: symbol 256
    const quint32 adler = (quint32(count % 65521) << 16) | 1; // a stays 1 over zeros
    return QByteArray("\x78\x01", 2) + writer.bytes() + bigEndian32(adler);
}

// A valid PNG of width x height black 8-bit grey pixels.
inline QByteArray blackGreyPng(quint32 width, quint32 height)
{
    const QByteArray header = bigEndian32(width) + bigEndian32(height)
        + QByteArray("\x08\x00\x00\x00\x00", 5); // 8 bits, grey, deflate, no filter, no interlace
    return QByteArray("\x89PNG\r\n\x1a\n", 8) + pngChunk("IHDR", header)
        + pngChunk("IDAT", zlibZeros(qint64(height) * (1 + width)))
        + pngChunk("IEND", QByteArray());
}

// An XMP packet of one description with the given attributes and content.
inline std::string xmpPacket(const std::string& attributes, const std::string& content)
{
    return "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">"
           "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">"
           "<rdf:Description rdf:about=\"\" "
        + attributes + ">" + content + "</rdf:Description></rdf:RDF></x:xmpmeta>";
}

// Well-formed XMP whose structures nest depth levels deep.
inline std::string nestedXmpPacket(int depth)
{
    std::string open;
    std::string close;
    for (int level = 0; level < depth; ++level) {
        open += "<ex:Level rdf:parseType=\"Resource\">";
        close += "</ex:Level>";
    }
    return xmpPacket("xmlns:ex=\"http://example.com/nested/\"",
                     open + "<ex:Leaf>deep</ex:Leaf>" + close);
}

// The JPEG with an APP1 segment holding packet as its XMP, inserted right
// after the start-of-image marker; packet is written as it stands, so it
// may be one that exiv2 cannot parse.
inline QByteArray jpegWithXmpSegment(const QByteArray& jpeg, const QByteArray& packet)
{
    const QByteArray payload = QByteArray("http://ns.adobe.com/xap/1.0/", 29) + packet;
    const int length = payload.size() + 2;
    const QByteArray segment =
        QByteArray("\xff\xe1", 2) + char(length >> 8) + char(length & 0xff) + payload;
    return jpeg.left(2) + segment + jpeg.mid(2);
}

// The offset of the first JPEG segment with marker (0xC0 for the baseline
// frame header, 0xDA for the scan), found by walking the segments from the
// start-of-image marker; -1 when there is none.
inline int jpegSegment(const QByteArray& jpeg, quint8 marker)
{
    int offset = 2;
    while (offset + 4 <= jpeg.size() && quint8(jpeg[offset]) == 0xff) {
        if (quint8(jpeg[offset + 1]) == marker)
            return offset;
        const int length = (quint8(jpeg[offset + 2]) << 8) | quint8(jpeg[offset + 3]);
        offset += 2 + length;
    }
    return -1;
}

// The JPEG with its frame header claiming width x height pixels; the image
// data stays that of the original size, so the file decodes to nothing.
inline QByteArray jpegClaimingSize(QByteArray jpeg, quint16 width, quint16 height)
{
    const int frame = jpegSegment(jpeg, 0xc0);
    if (frame < 0)
        return QByteArray();
    const char size[4] = {char(height >> 8), char(height & 0xff), char(width >> 8),
                          char(width & 0xff)};
    jpeg.replace(frame + 5, 4, QByteArray(size, 4));
    return jpeg;
}

// The JPEG's leading application segments (JFIF, EXIF, XMP) and an end
// marker: metadata without tables, frame or image data, as an EXIF-only
// file or an early cut of a download carries it.
inline QByteArray jpegWithoutImageData(const QByteArray& jpeg)
{
    int offset = 2;
    while (offset + 4 <= jpeg.size() && (quint8(jpeg[offset + 1]) & 0xf0) == 0xe0)
        offset += 2 + ((quint8(jpeg[offset + 2]) << 8) | quint8(jpeg[offset + 3]));
    return jpeg.left(offset) + QByteArray("\xff\xd9", 2);
}

} // namespace ImageFixtures

#endif // IMAGEFIXTURES_H
