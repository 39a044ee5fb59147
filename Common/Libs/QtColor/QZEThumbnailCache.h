#ifndef QZETHUMBNAILCACHE_H
#define QZETHUMBNAILCACHE_H

#include <QImage>
#include <QSize>
#include <QString>

/// The per-user thumbnail cache that desktop programs share, at its "large"
/// size: PNG files of at most 256 x 256 pixels in
/// `$XDG_CACHE_HOME/thumbnails/large` (`~/.cache/thumbnails/large` when the
/// variable is unset, empty or relative), each named after the MD5 of the
/// original file's `file://` URI and carrying that URI and the file's
/// modification time, so that a thumbnail of a changed file is recognised as
/// stale.
///
/// Both operations are thread-safe and may run on several pool threads at
/// once; they never throw.
///
/// \code
/// QSize original;
/// QImage picture = QZEThumbnailCache::load(path, &original);
/// if (picture.isNull()) {
///     picture = decodeReduced(path, &original);
///     QZEThumbnailCache::store(path, picture, original);
/// }
/// \endcode
class QZEThumbnailCache
{
public:
    /// Edge of the box a stored thumbnail fits in, in pixels.
    static constexpr int MaxEdge = 256;
    /// Cached files larger than this (in bytes) are not read.
    static constexpr qint64 MaxThumbnailFileSize = qint64(4) << 20;

    /// The cached thumbnail of the file at absolutePath, or a null image
    /// when there is none, when it is stale (its modification time in
    /// seconds, its URI or, when recorded, its byte size does not match the
    /// file as it is now), or when it cannot be read. originalSize (may be
    /// null) receives the original picture's size in pixels as the
    /// thumbnail records it, or an invalid size when it records none.
    static QImage load(const QString& absolutePath, QSize* originalSize);

    /// Writes picture, scaled down to fit 256 x 256 when it is larger, as the
    /// thumbnail of the file at absolutePath, recording originalSize (in
    /// pixels) as the original picture's size. The folder is created
    /// owner-only (0700), the file is written owner-only (0600) and atomically,
    /// so readers see the old thumbnail or the new one, never part of one.
    /// Returns false, leaving nothing behind, when the file does not exist,
    /// lies inside the thumbnail folder itself, picture is null, or the
    /// folder or file cannot be written.
    static bool store(const QString& absolutePath, const QImage& picture, QSize originalSize);

    /// Where the thumbnail of the file at absolutePath is kept, whether or
    /// not it exists yet.
    static QString thumbnailPath(const QString& absolutePath);

    /// The `file://` URI the cache names the file at absolutePath by: its
    /// canonical path (symbolic links resolved when the file exists) with
    /// the characters a URI may not carry percent-encoded.
    static QString fileUri(const QString& absolutePath);

    /// `$XDG_CACHE_HOME/thumbnails`, or `~/.cache/thumbnails`.
    static QString thumbnailRoot();
};

#endif // QZETHUMBNAILCACHE_H
