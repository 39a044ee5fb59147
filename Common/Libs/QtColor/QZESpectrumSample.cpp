#include "QZESpectrumSample.h"

#include "QZESpectrumPlot.h"

#include <QGraphicsSceneMouseEvent>

QZESpectrumSample::QZESpectrumSample(int index, QZESpectrumPlot* plot, QGraphicsItem* parent)
    : QGraphicsEllipseItem(parent), _index(index), _plot(plot)
{
}

void QZESpectrumSample::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    // Accepting makes the dot the mouse grabber for the rest of the gesture.
    event->accept();
    if (_plot)
        _plot->setEditSampleMode(true);
    emit setEditSampleMode(true);
}

void QZESpectrumSample::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    const QPointF mouse = event->scenePos();
    emit editSampleEvent(_index, float(rect().left() + Radius), float(mouse.x()),
                         float(mouse.y()));
}

void QZESpectrumSample::mouseReleaseEvent(QGraphicsSceneMouseEvent*)
{
    // The plot's owner may rebuild the scene in response, deleting this dot:
    // nothing may touch it after the signal.
    emit finishEditingMode();
}
