#include "QZEExifPreview.h"

#include "zeExiv2.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

#include <cmath>
#include <exception>

namespace {

// A preview is a small picture by nature; anything claiming more is not one.
constexpr int MaxPreviewEdge = 2048;

struct JpegHeader
{
    QSize frame;
    // The first APP1 segment holding EXIF, marker and length included.
    QByteArray exifSegment;
};

int bigEndian16(const QByteArray& bytes, int offset)
{
    return (quint8(bytes[offset]) << 8) | quint8(bytes[offset + 1]);
}

bool isStandaloneMarker(quint8 type)
{
    return type == 0x01 || (type >= 0xd0 && type <= 0xd7);
}

// SOF0 to SOF15, except the huffman and arithmetic table markers and JPG.
bool isFrameHeader(quint8 type)
{
    return type >= 0xc0 && type <= 0xcf && type != 0xc4 && type != 0xc8 && type != 0xcc;
}

bool readExactly(QFile& file, qint64 count, QByteArray& bytes)
{
    bytes = file.read(count);
    return bytes.size() == count;
}

// The next marker's type, past any fill bytes.
bool readMarker(QFile& file, quint8& type)
{
    QByteArray byte;
    if (!readExactly(file, 1, byte) || quint8(byte[0]) != 0xff)
        return false;
    do {
        if (!readExactly(file, 1, byte))
            return false;
    } while (quint8(byte[0]) == 0xff);
    type = quint8(byte[0]);
    return true;
}

// Walks the segments from the start-of-image marker up to the frame header,
// reading only the EXIF segment and the frame header and seeking past the
// rest (colour profiles, XMP, tables), within MaxHeaderBytes.
bool readJpegHeader(const QString& path, JpegHeader& header)
{
    QFile file(path);
    QByteArray bytes;
    if (!file.open(QIODevice::ReadOnly) || !readExactly(file, 2, bytes)
        || bytes != QByteArray("\xff\xd8", 2))
        return false;
    while (file.pos() < QZEExifPreview::MaxHeaderBytes) {
        quint8 type = 0;
        if (!readMarker(file, type) || type == 0xda || type == 0xd9)
            return false;
        if (isStandaloneMarker(type))
            continue;
        if (!readExactly(file, 2, bytes) || bigEndian16(bytes, 0) < 2)
            return false;
        const QByteArray lengthBytes = bytes;
        const int payloadLength = bigEndian16(lengthBytes, 0) - 2;
        const bool wanted = isFrameHeader(type)
                            || (type == 0xe1 && header.exifSegment.isEmpty());
        if (!wanted) {
            if (!file.seek(file.pos() + payloadLength))
                return false;
            continue;
        }
        if (!readExactly(file, payloadLength, bytes))
            return false;
        if (isFrameHeader(type)) {
            if (bytes.size() < 5)
                return false;
            header.frame = QSize(bigEndian16(bytes, 3), bigEndian16(bytes, 1));
            return !header.frame.isEmpty();
        }
        if (bytes.startsWith(QByteArray("Exif\0\0", 6)))
            header.exifSegment = QByteArray("\xff\xe1", 2) + lengthBytes + bytes;
    }
    return false;
}

QImage decodePreview(const char* data, long size)
{
    QByteArray bytes = QByteArray::fromRawData(data, int(size));
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer);
    const QSize claimed = reader.size();
    if (!claimed.isValid() || claimed.width() > MaxPreviewEdge
        || claimed.height() > MaxPreviewEdge)
        return QImage();
    return reader.read();
}

// exiv2 is given the EXIF segment alone, wrapped as a JPEG without picture,
// so it never sees the photo's bytes.
QImage embeddedPreview(const QByteArray& exifSegment)
{
    const QByteArray jpeg =
        QByteArray("\xff\xd8", 2) + exifSegment + QByteArray("\xff\xd9", 2);
    try {
        const auto image = zeExiv2::open(jpeg.constData(), std::size_t(jpeg.size()));
        const Exiv2::ExifThumbC thumbnail(image->exifData());
        const Exiv2::DataBuf bytes = thumbnail.copy();
        if (bytes.size_ <= 0)
            return QImage();
        return decodePreview(reinterpret_cast<const char*>(bytes.pData_), bytes.size_);
    } catch (const std::exception&) {
        return QImage();
    }
}

// Within a pixel either way: previews with black bars, or cut to another
// shape, fail one of the two.
bool hasAspectOf(QSize preview, QSize frame)
{
    const double expectedHeight = double(preview.width()) * frame.height() / frame.width();
    const double expectedWidth = double(preview.height()) * frame.width() / frame.height();
    return std::abs(expectedHeight - preview.height()) <= 1.0
           && std::abs(expectedWidth - preview.width()) <= 1.0;
}

} // namespace

QImage QZEExifPreview::read(const QString& path, QSize minimumSize, QSize* originalSize)
{
    JpegHeader header;
    const bool headerRead = readJpegHeader(path, header);
    if (originalSize)
        *originalSize = headerRead ? header.frame : QSize();
    if (!headerRead || header.exifSegment.isEmpty())
        return QImage();
    const QImage preview = embeddedPreview(header.exifSegment);
    if (preview.isNull() || preview.width() < minimumSize.width()
        || preview.height() < minimumSize.height() || !hasAspectOf(preview.size(), header.frame))
        return QImage();
    return preview;
}
