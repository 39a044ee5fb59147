#include "QZEConvertImage.h"

#include "QZEImageFileDialog.h"

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

} // namespace

QZEConvertImage::QZEConvertImage(QWidget* receiver, QString fileName, int size,
                                 const QBrush& background, QImage* image)
    : _receiver(receiver), _fileName(std::move(fileName)), _size(size), _background(background),
      _image(image)
{
    QThreadPool::globalInstance()->start(this);
}

QZEConvertImage::~QZEConvertImage() = default;

void QZEConvertImage::run()
{
    const int box = _size - _size / 5;
    const bool tooBig = QFile(_fileName).size() > s_maxFileSize;
    QSize scaled(box, box);
    const QImage picture = tooBig ? QImage() : readPicture(box, scaled);
    handOver(composeCanvas(picture, scaled, tooBig));
    QCoreApplication::postEvent(_receiver, new QEvent(QEvent::User));
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
    scaled = reader.size().scaled(box, box, Qt::KeepAspectRatio);
    if (scaled.width() <= 0 || scaled.height() < 1)
        scaled = QSize(_size, _size);
    reader.setScaledSize(scaled);
    return reader.read();
}

QImage QZEConvertImage::composeCanvas(const QImage& picture, QSize scaled, bool tooBig) const
{
    QImage canvas(_size, _size, QImage::Format_RGB32);
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
