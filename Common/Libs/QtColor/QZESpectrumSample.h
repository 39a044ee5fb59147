#ifndef QZESPECTRUMSAMPLE_H
#define QZESPECTRUMSAMPLE_H

#include <QGraphicsEllipseItem>
#include <QObject>

class QZESpectrumPlot;

// The draggable dot of one source sample in a QZESpectrumPlot. A press puts
// the plot into edit mode at once, so the plot does not start painting;
// every move while the dot holds the mouse reports the mouse position with
// editSampleEvent, and the release ends the gesture with finishEditingMode.
class QZESpectrumSample : public QObject, public QGraphicsEllipseItem
{
    Q_OBJECT

public:
    enum { Type = UserType + 1 };
    // Half the side of the dot's square, centred on its sample's point.
    static constexpr double Radius = 2.0;

    QZESpectrumSample(int index, QZESpectrumPlot* plot, QGraphicsItem* parent = nullptr);

    int getIndex() const { return _index; }
    QZESpectrumPlot* getPlot() const { return _plot; }

    int type() const override { return Type; }

signals:
    void finishEditingMode();
    // The sample's index, the dot's centre x and the mouse's scene position.
    void editSampleEvent(int index, float sampleX, float x, float y);
    void setEditSampleMode(bool on);

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    int _index;
    QZESpectrumPlot* _plot;
};

#endif // QZESPECTRUMSAMPLE_H
