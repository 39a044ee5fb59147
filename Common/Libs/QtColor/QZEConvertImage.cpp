#include "QZEConvertImage.h"

#include "QZEExifPreview.h"
#include "QZEImageFileDialog.h"
#include "QZEThumbnailCache.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QFontMetrics>
#include <QImageReader>
#include <QPainter>
#include <QPainterPath>
#include <QThreadPool>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <mutex>
#include <utility>

namespace {

// Larger files are not worth decoding for a thumbnail, and a reader on them
// could hold the pool thread for minutes.
constexpr qint64 s_maxFileSize = 1073741824;
constexpr int s_ringWidth = 5;

// Guards every cache entry while a job writes it and while the GUI thread
// copies it; one lock for all entries, since each side holds it only for a
// reference-count change.
std::mutex s_handOverMutex;

// Frees a canvas buffer once the hand-over lock has been taken. Qt calls it
// from the image's destructor before it frees the paint engine and the rest
// of the image, so whichever thread drops the last reference (the GUI
// thread, when the dialog deletes its cache after waiting for the pool) is
// ordered after the job that drew the canvas by a lock ThreadSanitizer can
// see; the pool's own waiting is invisible to it.
void releaseCanvasBuffer(void* buffer)
{
    std::lock_guard<std::mutex> lock(s_handOverMutex);
    std::free(buffer);
}

QImage newCanvas(int size)
{
    const int bytesPerLine = size * 4;
    auto* buffer = static_cast<uchar*>(std::malloc(std::size_t(bytesPerLine) * size));
    if (!buffer)
        return QImage();
    return QImage(buffer, size, size, bytesPerLine, QImage::Format_RGB32, releaseCanvasBuffer,
                  buffer);
}

// An empty critical section: the constructor passes through it after
// storing the job's fields and run() before reading them, so the hand-over
// of the job to a pool thread is ordered by a lock ThreadSanitizer sees (the
// pool's own queue lock is invisible to it).
void passHandOverLock()
{
    std::lock_guard<std::mutex> lock(s_handOverMutex);
}

} // namespace

QZEConvertImage::QZEConvertImage(QWidget* receiver, QString fileName, int size,
                                 const QBrush& background, QImage* image)
    : _receiver(receiver), _fileName(std::move(fileName)), _size(size), _background(background),
      _image(image), _completion(new QEvent(QEvent::User))
{
    passHandOverLock();
    QThreadPool::globalInstance()->start(this);
}

QZEConvertImage::~QZEConvertImage()
{
    delete _completion; // only when run() never posted it
}

void QZEConvertImage::run()
{
    passHandOverLock();
    const int box = _size - _size / 5;
    const bool tooBig = QFile(_fileName).size() > s_maxFileSize;
    QSize scaled(box, box);
    const QImage picture = tooBig ? QImage() : readPicture(box, scaled);
    handOver(composeCanvas(picture, scaled, tooBig));
    // Made by the constructor on the receiver's thread, so that the thread
    // that reads and deletes it is the one that wrote it.
    QCoreApplication::postEvent(_receiver, std::exchange(_completion, nullptr));
}

QImage QZEConvertImage::finishedImage(const QImage* entry)
{
    std::lock_guard<std::mutex> lock(s_handOverMutex);
    return entry ? *entry : QImage();
}

// scaled: in, the square box; out, the size to centre and frame the picture with.
QImage QZEConvertImage::readPicture(int box, QSize& scaled) const
{
    if (const QZEImageFileDialog::ConversionCallback convert =
            QZEImageFileDialog::imageConversionCB())
        return convert(_fileName, scaled);
    return readWithReader(box, scaled);
}

QImage QZEConvertImage::readWithReader(int box, QSize& scaled) const
{
    QImageReader reader(_fileName);
    const QSize original = reader.size();
    scaled = original.scaled(box, box, Qt::KeepAspectRatio);
    if (scaled.width() <= 0 || scaled.height() < 1)
        scaled = QSize(_size, _size);
    if (!original.isValid()) {
        reader.setScaledSize(scaled);
        return reader.read();
    }
    const QImage ready = cachedOrPreview(original, scaled);
    if (!ready.isNull())
        return ready.scaled(scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return decodeForSharedCache(reader, original, scaled);
}

// A picture some program (this one included) made before: the shared
// cache's, when it was made from a picture of this size, else the JPEG's own
// embedded preview when it is at least as large as the thumbnail.
QImage QZEConvertImage::cachedOrPreview(QSize original, QSize scaled) const
{
    QSize cachedOriginal;
    const QImage cached = QZEThumbnailCache::load(_fileName, &cachedOriginal);
    if (!cached.isNull() && cachedOriginal == original)
        return cached;
    return QZEExifPreview::read(_fileName, scaled, nullptr);
}

// Decodes at the shared cache's size rather than the thumbnail's, so that the
// entry it leaves there serves other desktop programs too, then fits it.
QImage QZEConvertImage::decodeForSharedCache(QImageReader& reader, QSize original,
                                             QSize scaled) const
{
    const QSize largest(QZEThumbnailCache::MaxEdge, QZEThumbnailCache::MaxEdge);
    const QSize decoded = original.width() > largest.width() || original.height() > largest.height()
                              ? original.scaled(largest, Qt::KeepAspectRatio)
                              : original;
    reader.setScaledSize(decoded);
    const QImage picture = reader.read();
    if (picture.isNull())
        return picture;
    QZEThumbnailCache::store(_fileName, picture, original);
    return picture.scaled(scaled, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage QZEConvertImage::composeCanvas(const QImage& picture, QSize scaled, bool tooBig) const
{
    QImage canvas = newCanvas(_size);
    if (canvas.isNull())
        return canvas;
    QPainter painter(&canvas);
    painter.fillRect(QRect(0, 0, _size, _size), _background);
    const QRectF box(_size / 2 - scaled.width() / 2, _size / 2 - scaled.height() / 2,
                     scaled.width(), scaled.height());
    if (picture.isNull())
        drawMessage(painter, box,
                    tooBig ? QCoreApplication::translate("QZEConvertImage", "TOO BIG")
                           : QCoreApplication::translate("QZEConvertImage", "CONVERSION ERROR"));
    else
        painter.drawImage(box.topLeft(), picture);
    drawFrame(painter, box);
    drawShadow(painter, box.adjusted(-s_ringWidth, -s_ringWidth, s_ringWidth, s_ringWidth));
    painter.end();
    return canvas;
}

// The baseline sits on the box's vertical middle. A message wider than the
// box (a large default font, a long translation) is drawn smaller so that it
// stays inside the frame.
void QZEConvertImage::drawMessage(QPainter& painter, const QRectF& box, const QString& message)
{
    const QPen previous = painter.pen();
    painter.setPen(Qt::red);
    int width = painter.fontMetrics().horizontalAdvance(message);
    if (width > box.width()) {
        QFont smaller = painter.font();
        const qreal shrink = box.width() / width;
        if (smaller.pointSizeF() > 0)
            smaller.setPointSizeF(smaller.pointSizeF() * shrink);
        else
            smaller.setPixelSize(std::max(1, int(smaller.pixelSize() * shrink)));
        painter.setFont(smaller);
        width = painter.fontMetrics().horizontalAdvance(message);
    }
    painter.drawText(QPoint(int(std::lround(box.x() + (box.width() - width) * 0.5)),
                            int(std::lround(box.y() + box.height() - box.height() * 0.5))),
                     message);
    painter.setPen(previous);
}

// The odd-even rule leaves only the ring between the two rectangles, so the
// picture itself is never painted over.
void QZEConvertImage::drawFrame(QPainter& painter, const QRectF& box)
{
    QPainterPath ring;
    ring.setFillRule(Qt::OddEvenFill);
    ring.addRect(box);
    ring.addRect(box.adjusted(-s_ringWidth, -s_ringWidth, s_ringWidth, s_ringWidth));
    painter.fillPath(ring, Qt::white);
}

// Along the frame's bottom and right sides, bulging out to 10 pixels at the
// far corner as if the picture were curling up there.
void QZEConvertImage::drawShadow(QPainter& painter, const QRectF& frame)
{
    const qreal x = frame.x();
    const qreal y = frame.y();
    const qreal w = frame.width();
    const qreal h = frame.height();
    QPainterPath shadow;
    shadow.moveTo(x + 5, y + h);
    shadow.lineTo(x + 5, y + h + 10);
    shadow.quadTo(x + w / 2, y + h + 2.5, x + w + 10, y + h + 10);
    shadow.quadTo(x + w + 2.5, y + h / 2, x + w + 5, y + 5);
    shadow.lineTo(x + w, y + 5);
    shadow.lineTo(x + w, y + h);
    shadow.closeSubpath();
    painter.setRenderHint(QPainter::Antialiasing, true);
    painter.fillPath(shadow, QColor(0, 0, 0, 63));
}

// Moved rather than copied, so that after the unlock this thread holds no
// reference to the canvas: whichever thread drops the last reference then
// frees data whose every use is ordered by the lock.
void QZEConvertImage::handOver(QImage canvas)
{
    std::lock_guard<std::mutex> lock(s_handOverMutex);
    *_image = std::move(canvas);
}
