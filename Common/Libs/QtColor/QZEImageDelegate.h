#ifndef QZEIMAGEDELEGATE_H
#define QZEIMAGEDELEGATE_H

#include <QStyledItemDelegate>

class QFileSystemModel;
class QZEImageFileDialog;

/// Draws the thumbnail grid of QZEImageFileDialog without ever loading an
/// image itself.
///
/// The first paint of a file's cell puts an empty image into the dialog's
/// cache (QZEImageFileDialog::getImages()) and starts a QZEConvertImage job;
/// until the job has finished the cell shows "Loading ...", afterwards the
/// finished thumbnail, centred above the file name. Every cell gets a thin
/// half-transparent frame in the highlight colour; a selected cell is
/// covered with the highlight colour at half opacity.
///
/// \code
/// list->setItemDelegate(new QZEImageDelegate(dialog, fileModel, 192, 32, 224));
/// \endcode
class QZEImageDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// \param dialog    owns the thumbnail cache and receives the jobs'
    ///                  completion events; must outlive the delegate.
    /// \param model     maps an index to its file.
    /// \param imageSize edge of the square thumbnail canvas, in pixels.
    /// \param margin    cell margin in pixels (kept for the dialog; painting
    ///                  does not use it).
    /// \param cellSize  edge of the square cell, in pixels (imageSize + margin).
    QZEImageDelegate(QZEImageFileDialog* dialog, QFileSystemModel* model, int imageSize,
                     int margin, int cellSize);
    ~QZEImageDelegate() override;

    /// Paints the cell frame, the file name, then the thumbnail or the
    /// "Loading ..." placeholder (starting the file's job on its first
    /// paint), and the selection overlay.
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    /// A cellSize x cellSize square for every index.
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    void drawCellFrame(QPainter* painter, const QStyleOptionViewItem& option) const;
    void drawLabel(QPainter* painter, const QStyleOptionViewItem& option,
                   const QModelIndex& index) const;
    void drawLoading(QPainter* painter, const QRect& rect) const;
    QImage thumbnailFor(const QStyleOptionViewItem& option, const QModelIndex& index) const;

    QZEImageFileDialog* _dialog;
    QFileSystemModel* _model;
    int _imageSize;
    int _margin;
    int _cellSize;
};

#endif // QZEIMAGEDELEGATE_H
