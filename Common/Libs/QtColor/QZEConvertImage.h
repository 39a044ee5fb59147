#ifndef QZECONVERTIMAGE_H
#define QZECONVERTIMAGE_H

#include <QBrush>
#include <QImage>
#include <QRunnable>
#include <QSize>
#include <QString>

class QEvent;
class QImageReader;
class QPainter;
class QRectF;
class QWidget;

/// One thumbnail job on the global thread pool.
///
/// The job reads the file at reduced size (or through the host's conversion
/// callback, QZEImageFileDialog::setImageConversionCB()), composes a square
/// canvas with a white frame and a soft drop shadow, hands it to its cache
/// entry and posts a plain QEvent of type QEvent::User (1000) to the receiver.
/// Constructing the job starts it; the pool deletes it after run().
///
/// Without a callback the picture comes from the shared freedesktop thumbnail
/// cache (QZEThumbnailCache) when it holds one made from a picture of the
/// file's size, else from a JPEG's embedded EXIF preview (QZEExifPreview)
/// when that is at least as large as the thumbnail, else from a reduced-size
/// decode, which is then stored in the shared cache for the next time and for
/// other desktop programs. The canvas looks the same whatever the source.
///
/// Files larger than 1 GiB are never opened: their canvas shows "TOO BIG".
/// A file that cannot be read shows "CONVERSION ERROR".
///
/// \code
/// QImage* entry = new QImage;             // owned by the cache
/// new QZEConvertImage(dialog, path, 192, palette.base(), entry);
/// // ... after the QEvent::User event has arrived:
/// const QImage thumbnail = QZEConvertImage::finishedImage(entry);
/// \endcode
class QZEConvertImage : public QRunnable
{
public:
    /// Stores the arguments and submits the job to QThreadPool::globalInstance().
    /// \param receiver   gets the completion event; must outlive the job
    ///                   (the dialog waits for the pool before it goes).
    /// \param fileName   absolute path of the image file.
    /// \param size       edge of the square canvas in pixels; the picture is
    ///                   fitted into a box of size - size / 5 pixels.
    /// \param background fills the canvas around the framed picture.
    /// \param image      the cache entry that receives the canvas; must
    ///                   outlive the job and is only read through finishedImage().
    QZEConvertImage(QWidget* receiver, QString fileName, int size, const QBrush& background,
                    QImage* image);
    ~QZEConvertImage() override;

    /// Reads the picture, composes the canvas, hands it to the cache entry
    /// and posts the completion event. Runs on a pool thread.
    void run() override;

    /// The GUI thread's view of a cache entry: a copy taken under the lock
    /// that the job's hand-over also holds, so a finished canvas is never read
    /// while a pool thread writes it. Null while the job has not finished,
    /// and for a null entry pointer.
    static QImage finishedImage(const QImage* entry);

private:
    QImage readPicture(int box, QSize& scaled) const;
    QImage readWithReader(int box, QSize& scaled) const;
    QImage cachedOrPreview(QSize original, QSize scaled) const;
    QImage decodeForSharedCache(QImageReader& reader, QSize original, QSize scaled) const;
    QImage composeCanvas(const QImage& picture, QSize scaled, bool tooBig) const;
    static void drawMessage(QPainter& painter, const QRectF& box, const QString& message);
    static void drawFrame(QPainter& painter, const QRectF& box);
    static void drawShadow(QPainter& painter, const QRectF& frame);
    void handOver(QImage canvas);

    QWidget* _receiver;
    QString _fileName;
    int _size;
    QBrush _background;
    QImage* _image;
    QEvent* _completion;
};

#endif // QZECONVERTIMAGE_H
