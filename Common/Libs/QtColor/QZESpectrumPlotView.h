#ifndef QZESPECTRUMPLOTVIEW_H
#define QZESPECTRUMPLOTVIEW_H

#include "osgSpectrum.h"

#include <QGraphicsView>

class QZESpectrumPlot;

/// A view that shows the interactive QZESpectrumPlot of one spectrum and
/// keeps the plot filling the view: the plot is rebuilt at the viewport's size
/// whenever the view is resized and after every edit made in the plot.
///
/// After an edit (a paint stroke or a dragged dot) the view resamples the
/// spectrum's bands from the edited source values, rebuilds the plot and emits
/// spectrumEdited(). Without a spectrum the view shows nothing.
///
/// This is the widget Qt Designer offers for the plot.
///
/// \code
/// auto* view = new QZESpectrumPlotView(parent);
/// view->setSpectrum(spectrum, 1.0f); // values from 0 to 1 on the value axis
/// QObject::connect(view, SIGNAL(spectrumEdited()), host, SLOT(showSpectrumColor()));
/// \endcode
class QZESpectrumPlotView : public QGraphicsView
{
    Q_OBJECT

public:
    /// Makes an empty view; setSpectrum() gives it a plot.
    explicit QZESpectrumPlotView(QWidget* parent = nullptr);

    /// Shows a new plot of \a spectrum, with \a maxValue at the top of the
    /// value axis; the previous plot, if any, is deleted. A null spectrum
    /// leaves the view empty.
    void setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue);
    /// The plot shown, or null before setSpectrum(); owned by the view.
    QZESpectrumPlot* getPlot() const { return _plot; }

    /// Room for the axes, their labels and a readable curve.
    QSize sizeHint() const override;

signals:
    /// An edit in the plot ended; the spectrum's bands are up to date again.
    void spectrumEdited();

protected:
    void resizeEvent(QResizeEvent* event) override;

private slots:
    void finishEdit();

private:
    void rebuildPlot();

    QZESpectrumPlot* _plot = nullptr;
};

#endif
