#ifndef QZEIMAGEDELEGATE_H
#define QZEIMAGEDELEGATE_H

#include <QStyledItemDelegate>

class QFileSystemModel;
class QZEImageFileDialog;

// Draws the thumbnail grid of QZEImageFileDialog without ever loading an
// image itself: the first paint of a file's cell puts an empty image into
// the dialog's cache and starts a QZEConvertImage job; until the job has
// finished the cell shows "Loading ...".
class QZEImageDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    // imageSize: edge of the square thumbnail canvas; cellSize: edge of the
    // square cell (imageSize + margin); all in pixels.
    QZEImageDelegate(QZEImageFileDialog* dialog, QFileSystemModel* model, int imageSize,
                     int margin, int cellSize);
    ~QZEImageDelegate() override;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    QZEImageFileDialog* _dialog;
    QFileSystemModel* _model;
    int _imageSize;
    int _margin;
    int _cellSize;
};

#endif // QZEIMAGEDELEGATE_H
