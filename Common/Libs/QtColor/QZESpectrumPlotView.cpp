#include "QZESpectrumPlotView.h"

#include "QZESpectrumPlot.h"
#include "zePlatform.h"

QZESpectrumPlotView::QZESpectrumPlotView(QWidget* parent) : QGraphicsView(parent)
{
    // The plot is rebuilt at the viewport's size, so there is never anything
    // to scroll to.
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
}

void QZESpectrumPlotView::setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue)
{
    setScene(nullptr);
    delete _plot;
    _plot = nullptr;
    if (!spectrum)
        return;
    _plot = new QZESpectrumPlot(spectrum, maxValue);
    _plot->setParent(this);
    setScene(_plot);
    connect(_plot, SIGNAL(update()), this, SLOT(finishEdit()));
    rebuildPlot();
}

QSize QZESpectrumPlotView::sizeHint() const
{
    return {zePlatform::getMediumIconSizeX() * 8, zePlatform::getMediumIconSizeY() * 5};
}

void QZESpectrumPlotView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    rebuildPlot();
}

void QZESpectrumPlotView::finishEdit()
{
    _plot->getSpectrum()->resample();
    rebuildPlot();
    emit spectrumEdited();
}

void QZESpectrumPlotView::rebuildPlot()
{
    if (!_plot)
        return;
    const QSize size = viewport()->size();
    _plot->update(float(size.width()), float(size.height()));
}
