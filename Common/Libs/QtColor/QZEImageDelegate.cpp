#include "QZEImageDelegate.h"

#include "QZEConvertImage.h"
#include "QZEImageFileDialog.h"

#include <QFileSystemModel>
#include <QFontMetrics>
#include <QLocale>
#include <QPainter>

QZEImageDelegate::QZEImageDelegate(QZEImageFileDialog* dialog, QFileSystemModel* model,
                                   int imageSize, int margin, int cellSize)
    : _dialog(dialog), _model(model), _imageSize(imageSize), _margin(margin), _cellSize(cellSize)
{
}

QZEImageDelegate::~QZEImageDelegate() = default;

void QZEImageDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                             const QModelIndex& index) const
{
    painter->save();
    drawCellFrame(painter, option);
    drawLabel(painter, option, index);
    const QImage thumbnail = thumbnailFor(option, index);
    const QRect& rect = option.rect;
    if (thumbnail.isNull())
        drawLoading(painter, rect);
    else
        painter->drawImage(QPoint((_cellSize - thumbnail.width()) / 2 + rect.x(),
                                  (_cellSize - 16 - thumbnail.height()) / 2 + rect.y()),
                           thumbnail);
    if (option.state & QStyle::State_Selected) {
        painter->setOpacity(0.5);
        painter->fillRect(rect.adjusted(2, 2, -2, -2),
                          option.palette.brush(QPalette::Active, QPalette::Highlight));
    }
    painter->restore();
}

QSize QZEImageDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const
{
    return QSize(_cellSize, _cellSize);
}

void QZEImageDelegate::drawCellFrame(QPainter* painter, const QStyleOptionViewItem& option) const
{
    const QPen previous = painter->pen();
    QPen framePen = previous;
    framePen.setColor(option.palette.brush(QPalette::Active, QPalette::Highlight).color());
    painter->setOpacity(0.5);
    painter->setPen(framePen);
    painter->drawRect(option.rect.adjusted(2, 2, -2, -2));
    painter->setPen(previous);
    painter->setOpacity(1.0);
}

void QZEImageDelegate::drawLabel(QPainter* painter, const QStyleOptionViewItem& option,
                                 const QModelIndex& index) const
{
    const QString text = displayText(index.data(Qt::DisplayRole), QLocale::system());
    const int width = painter->fontMetrics().horizontalAdvance(text);
    painter->drawText(QPoint((_cellSize - width) / 2 + option.rect.x(), option.rect.bottom() - 8),
                      text);
}

void QZEImageDelegate::drawLoading(QPainter* painter, const QRect& rect) const
{
    const QString text = QStyledItemDelegate::tr("Loading ...");
    const int width = painter->fontMetrics().horizontalAdvance(text);
    const int height = rect.bottom() + 1 - rect.top();
    painter->drawText(QPoint((_cellSize - width) / 2 + rect.x(), rect.bottom() - height / 2 - 8),
                      text);
}

// The cached thumbnail, or null while it is being made. The first call for a
// file creates its cache entry and starts its job; no later call starts another.
QImage QZEImageDelegate::thumbnailFor(const QStyleOptionViewItem& option,
                                      const QModelIndex& index) const
{
    const QString path = _model->fileInfo(index).absoluteFilePath();
    std::map<QString, QImage*>& images = *_dialog->getImages();
    const auto found = images.find(path);
    if (found != images.end())
        return QZEConvertImage::finishedImage(found->second);
    QImage* entry = new QImage;
    images.emplace(path, entry);
    new QZEConvertImage(_dialog, path, _imageSize,
                        option.palette.brush(QPalette::Active, QPalette::Base), entry);
    return QImage();
}
