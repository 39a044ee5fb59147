#ifndef QZESPECTRUMSAMPLE_H
#define QZESPECTRUMSAMPLE_H

#include <QGraphicsEllipseItem>
#include <QObject>

class QZESpectrumPlot;

/// The draggable dot of one source sample in a QZESpectrumPlot. The plot makes
/// one per source sample inside 380..780 nm, as items of its scene, and
/// connects their finishEditingMode() and editSampleEvent() to its own slots
/// of the same names; a host does not make them itself.
///
/// A press puts the plot into edit mode at once, so the plot does not start
/// painting; every move while the dot holds the mouse reports the mouse
/// position with editSampleEvent(), and the release ends the gesture with
/// finishEditingMode().
class QZESpectrumSample : public QObject, public QGraphicsEllipseItem
{
    Q_OBJECT

public:
    /// The item type that type() returns, so that qgraphicsitem_cast finds dots.
    enum {
        Type = UserType + 1 ///< QGraphicsItem::UserType + 1.
    };
    /// Half the side of the dot's square, centred on its sample's point, in
    /// scene units (pixels of the plot).
    static constexpr double Radius = 2.0;

    /// A dot for source sample index of plot (which may be null: then a press
    /// only emits setEditSampleMode()). The rectangle, pen and brush are set
    /// by the plot.
    QZESpectrumSample(int index, QZESpectrumPlot* plot, QGraphicsItem* parent = nullptr);

    /// The index of the source sample the dot stands for.
    int getIndex() const { return _index; }
    /// The plot the dot belongs to; null when made without one.
    QZESpectrumPlot* getPlot() const { return _plot; }

    /// Type, the dot's item type.
    int type() const override { return Type; }

signals:
    /// The mouse was released: the drag is over. The receiver may rebuild the
    /// scene and delete this dot.
    void finishEditingMode();
    /// The mouse moved while the dot held it: the sample's index, the dot's
    /// centre x and the mouse's scene position x, y (scene units).
    void editSampleEvent(int index, float sampleX, float x, float y);
    /// A press on the dot began a drag (on is then true).
    void setEditSampleMode(bool on);

protected:
    /// Grabs the mouse for the gesture and puts the plot into edit mode
    /// before the scene's own press handling sees the press; emits
    /// setEditSampleMode(true).
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    /// Emits editSampleEvent() with the mouse's scene position.
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    /// Emits finishEditingMode(); touches nothing afterwards.
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    int _index;
    QZESpectrumPlot* _plot;
};

#endif // QZESPECTRUMSAMPLE_H
