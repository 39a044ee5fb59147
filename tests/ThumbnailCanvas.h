#ifndef THUMBNAILCANVAS_H
#define THUMBNAILCANVAS_H

// What a finished thumbnail should look like, drawn here from the layout
// rules (box centred by integer halves, 5-pixel white ring outside it, drop
// shadow of black at alpha 63 below and right of the ring), with primitives
// other than the ones the job uses, so that the tests compare against an
// independent picture.

#include <QByteArray>
#include <QColor>
#include <QEvent>
#include <QImage>
#include <QImageWriter>
#include <QPainter>
#include <QPainterPath>
#include <QRect>
#include <QTemporaryDir>
#include <QWidget>

#include <algorithm>
#include <cstdlib>

namespace ThumbnailCanvas {

constexpr int s_canvas = 192;

// Where a picture of size scaled lands on the canvas.
inline QRect pictureBox(QSize scaled, int canvas = s_canvas)
{
    return QRect(canvas / 2 - scaled.width() / 2, canvas / 2 - scaled.height() / 2,
                 scaled.width(), scaled.height());
}

// The shadow outline for the frame (box grown by the 5-pixel ring), traced
// from its corner points: bottom-left start, bottom edge bulging to 10
// pixels at the far corner, right edge back up.
inline QPainterPath shadowOutline(const QRectF& frame)
{
    const qreal left = frame.left();
    const qreal top = frame.top();
    const qreal right = frame.left() + frame.width();
    const qreal bottom = frame.top() + frame.height();
    QPainterPath path(QPointF(left + 5, bottom));
    path.lineTo(left + 5, bottom + 10);
    path.quadTo((left + right) / 2, bottom + 2.5, right + 10, bottom + 10);
    path.quadTo(right + 2.5, (top + bottom) / 2, right + 5, top + 5);
    path.lineTo(right, top + 5);
    path.lineTo(right, bottom);
    path.closeSubpath();
    return path;
}

// The whole expected canvas for a solid picture of colour picture (an
// invalid colour leaves the box in the background, as for a message).
inline QImage expected(QSize scaled, const QColor& picture, const QColor& background,
                       int canvas = s_canvas)
{
    QImage image(canvas, canvas, QImage::Format_RGB32);
    image.fill(background);
    const QRect box = pictureBox(scaled, canvas);
    QPainter painter(&image);
    painter.fillRect(box.adjusted(-5, -5, 5, 5), Qt::white);
    painter.fillRect(box, picture.isValid() ? picture : background);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(shadowOutline(QRectF(box.adjusted(-5, -5, 5, 5))), QColor(0, 0, 0, 63));
    return image;
}

inline int channelDifference(QRgb a, QRgb b)
{
    return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                     std::abs(qBlue(a) - qBlue(b))});
}

inline bool near(QRgb actual, const QColor& wanted, int tolerance = 2)
{
    return channelDifference(actual, wanted.rgb()) <= tolerance;
}

// The largest channel difference between the two images over region, and
// where it is.
inline int largestDifference(const QImage& actual, const QImage& wanted, const QRect& region,
                             QPoint* where = nullptr)
{
    int largest = 0;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            const int difference = channelDifference(actual.pixel(x, y), wanted.pixel(x, y));
            if (difference > largest) {
                largest = difference;
                if (where)
                    *where = QPoint(x, y);
            }
        }
    }
    return largest;
}

inline bool isRed(QRgb pixel)
{
    return qRed(pixel) > 160 && qGreen(pixel) < 100 && qBlue(pixel) < 100;
}

// Bounding box of the reddish pixels inside region (null when there are none).
inline QRect redPixels(const QImage& image, const QRect& region)
{
    QRect found;
    for (int y = region.top(); y <= region.bottom(); ++y) {
        for (int x = region.left(); x <= region.right(); ++x) {
            if (isRed(image.pixel(x, y)))
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

inline bool writeSolid(const QString& path, int width, int height, const QColor& colour,
                       const QByteArray& format = "png")
{
    QImage image(width, height, QImage::Format_RGB32);
    image.fill(colour);
    QImageWriter writer(path, format);
    return writer.write(image);
}

// Counts the completion events (type QEvent::User) that jobs post to it.
class CompletionCounter : public QWidget
{
public:
    int count = 0;

protected:
    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::User)
            ++count;
        return QWidget::event(event);
    }
};

// Points $XDG_CACHE_HOME at a scratch folder for the life of the object, so
// that no test reads or writes the user's shared thumbnail cache.
class ScratchCacheHome
{
public:
    ScratchCacheHome() { qputenv("XDG_CACHE_HOME", _dir.path().toLocal8Bit()); }
    QString path() const { return _dir.path(); }

private:
    QTemporaryDir _dir;
};

} // namespace ThumbnailCanvas

#endif // THUMBNAILCANVAS_H
