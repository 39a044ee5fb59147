#ifndef QZEEXIFPREVIEW_H
#define QZEEXIFPREVIEW_H

#include <QImage>
#include <QSize>
#include <QString>

/// The small preview picture that cameras embed in a JPEG's EXIF data (the
/// thumbnail of the second image directory), used instead of decoding the
/// photo when it is large enough for a thumbnail.
///
/// Only the JPEG's leading segments are read (never the compressed photo),
/// so asking costs a few kilobytes of input even for a large file. A preview
/// is refused when it is smaller than asked for, or when its aspect ratio
/// differs from the photo's by more than a pixel: such previews carry black
/// bars or belong to another crop. Thread-safe; never throws.
///
/// \code
/// QSize photo;
/// QImage picture = QZEExifPreview::read(path, QSize(154, 154), &photo);
/// if (picture.isNull())
///     picture = decodeReduced(path); // no usable preview
/// \endcode
class QZEExifPreview
{
public:
    /// Leading segments (everything before the compressed picture) beyond
    /// this many bytes are not read; the file counts as having no preview.
    static constexpr qint64 MaxHeaderBytes = qint64(16) << 20;

    /// The embedded preview of the JPEG at path, or a null image when the
    /// file is no JPEG, carries no preview, or its preview is narrower or
    /// lower than minimumSize (in pixels) or of another aspect ratio than
    /// the photo. originalSize (may be null) receives the photo's size in
    /// pixels as its frame header states it whenever the header could be
    /// read, an invalid size otherwise.
    static QImage read(const QString& path, QSize minimumSize, QSize* originalSize);
};

#endif // QZEEXIFPREVIEW_H
