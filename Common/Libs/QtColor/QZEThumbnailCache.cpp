#include "QZEThumbnailCache.h"

#include "QZEAtomicFileWriter.h"
#include "QZEBoundedFileReader.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QImageReader>
#include <QImageWriter>
#include <QUrl>

#include <cerrno>
#include <sys/stat.h>

namespace {

const char* const UriKey = "Thumb::URI";
const char* const MTimeKey = "Thumb::MTime";
const char* const SizeKey = "Thumb::Size";
const char* const WidthKey = "Thumb::Image::Width";
const char* const HeightKey = "Thumb::Image::Height";
const char* const SoftwareKey = "Software";
// QImageWriter maps a PNG quality q to zlib level (100 - q) * 9 / 91: 80 is level 1.
constexpr int FastestPngQuality = 80;

QString canonicalPathOf(const QString& path)
{
    const QFileInfo info(path);
    const QString canonical = info.canonicalFilePath();
    return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

// Thumbnails of thumbnails would feed on themselves: every stored thumbnail
// would ask for one of its own.
bool liesInside(const QString& canonicalPath, const QString& folder)
{
    const QString cleaned = QDir::cleanPath(folder) + QLatin1Char('/');
    const QString canonicalFolder = QFileInfo(folder).canonicalFilePath();
    return canonicalPath.startsWith(cleaned)
           || (!canonicalFolder.isEmpty()
               && canonicalPath.startsWith(canonicalFolder + QLatin1Char('/')));
}

// Creates every missing folder of path owner-only. Several pool threads may
// race to create the same folder; the loser's EEXIST is no failure.
bool makeOwnerOnlyFolders(const QString& path)
{
    const QString cleaned = QDir::cleanPath(path);
    int next = 1;
    while (next > 0) {
        next = cleaned.indexOf(QLatin1Char('/'), next + 1);
        const QString prefix = next < 0 ? cleaned : cleaned.left(next);
        if (mkdir(QFile::encodeName(prefix).constData(), 0700) != 0 && errno != EEXIST)
            return false;
    }
    return QFileInfo(cleaned).isDir();
}

qint64 modificationSeconds(const QFileInfo& info)
{
    return info.lastModified().toSecsSinceEpoch();
}

bool recordsFile(const QImage& thumbnail, const QString& uri, const QFileInfo& file)
{
    bool mtimeValid = false;
    const qint64 mtime = thumbnail.text(QLatin1String(MTimeKey)).toLongLong(&mtimeValid);
    if (thumbnail.text(QLatin1String(UriKey)) != uri || !mtimeValid
        || mtime != modificationSeconds(file))
        return false;
    // Optional, but a copy that kept the modification time differs here.
    const QString size = thumbnail.text(QLatin1String(SizeKey));
    return size.isEmpty() || size.toLongLong() == file.size();
}

QSize recordedOriginalSize(const QImage& thumbnail)
{
    bool widthValid = false;
    bool heightValid = false;
    const QSize size(thumbnail.text(QLatin1String(WidthKey)).toInt(&widthValid),
                     thumbnail.text(QLatin1String(HeightKey)).toInt(&heightValid));
    return widthValid && heightValid && !size.isEmpty() ? size : QSize();
}

QImage readThumbnailFile(const QString& path)
{
    QByteArray bytes;
    QZEBoundedFileReader file(path, QZEThumbnailCache::MaxThumbnailFileSize);
    if (file.read(bytes) != QZEBoundedFileReader::Read)
        return QImage();
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    // A small file may still claim a huge picture.
    if (!size.isValid() || size.width() > QZEThumbnailCache::MaxEdge
        || size.height() > QZEThumbnailCache::MaxEdge)
        return QImage();
    return reader.read();
}

// The text goes into the picture itself: QImageWriter::setText passes keys
// through a "key: value" form that splits "Thumb::URI" at its colon.
QByteArray encodeThumbnail(const QImage& picture, const QString& uri, const QFileInfo& file,
                           QSize originalSize)
{
    const int edge = QZEThumbnailCache::MaxEdge;
    QImage fitted = picture.width() > edge || picture.height() > edge
                        ? picture.scaled(edge, edge, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                        : picture;
    fitted.setText(QLatin1String(UriKey), uri);
    fitted.setText(QLatin1String(MTimeKey), QString::number(modificationSeconds(file)));
    fitted.setText(QLatin1String(SizeKey), QString::number(file.size()));
    if (originalSize.isValid()) {
        fitted.setText(QLatin1String(WidthKey), QString::number(originalSize.width()));
        fitted.setText(QLatin1String(HeightKey), QString::number(originalSize.height()));
    }
    fitted.setText(QLatin1String(SoftwareKey), QStringLiteral("QtColor"));
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter writer(&buffer, "png");
    // zlib's fastest level: the default one spent most of a thumbnail job's
    // time compressing a file that is a few kilobytes larger this way.
    writer.setQuality(FastestPngQuality);
    return writer.write(fitted) ? bytes : QByteArray();
}

} // namespace

QString QZEThumbnailCache::thumbnailRoot()
{
    const QString cacheHome = qEnvironmentVariable("XDG_CACHE_HOME");
    const QString base = QDir::isAbsolutePath(cacheHome)
                             ? cacheHome
                             : QDir::homePath() + QStringLiteral("/.cache");
    return QDir::cleanPath(base + QStringLiteral("/thumbnails"));
}

QString QZEThumbnailCache::fileUri(const QString& absolutePath)
{
    return QString::fromLatin1(QUrl::fromLocalFile(canonicalPathOf(absolutePath)).toEncoded());
}

QString QZEThumbnailCache::thumbnailPath(const QString& absolutePath)
{
    const QByteArray hash =
        QCryptographicHash::hash(fileUri(absolutePath).toLatin1(), QCryptographicHash::Md5);
    return thumbnailRoot() + QStringLiteral("/large/") + QString::fromLatin1(hash.toHex())
           + QStringLiteral(".png");
}

QImage QZEThumbnailCache::load(const QString& absolutePath, QSize* originalSize)
{
    if (originalSize)
        *originalSize = QSize();
    const QFileInfo file(absolutePath);
    if (!file.isFile())
        return QImage();
    const QImage thumbnail = readThumbnailFile(thumbnailPath(absolutePath));
    if (thumbnail.isNull() || !recordsFile(thumbnail, fileUri(absolutePath), file))
        return QImage();
    if (originalSize)
        *originalSize = recordedOriginalSize(thumbnail);
    return thumbnail;
}

bool QZEThumbnailCache::store(const QString& absolutePath, const QImage& picture,
                              QSize originalSize)
{
    const QFileInfo file(absolutePath);
    const QString root = thumbnailRoot();
    if (picture.isNull() || !file.isFile() || liesInside(canonicalPathOf(absolutePath), root))
        return false;
    const QString folder = root + QStringLiteral("/large");
    if (!makeOwnerOnlyFolders(folder))
        return false;
    const QByteArray png = encodeThumbnail(picture, fileUri(absolutePath), file, originalSize);
    if (png.isEmpty())
        return false;
    QZEAtomicFileWriter writer(thumbnailPath(absolutePath));
    return writer.open()
           && writer.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner)
           && writer.write(png) && writer.commit();
}
