#ifndef SPECTRUMPAGE_H
#define SPECTRUMPAGE_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QWidget>

class QCheckBox;
class QDoubleSpinBox;
class QFrame;
class QGraphicsView;
class QLabel;
class QZESpectrumPlot;

// A spectrum plot to edit with the mouse: paint values on the empty plot or
// drag a sample's dot. The plot fills its view and is rebuilt whenever the
// view changes size or an edit ends; the spectrum's colour follows every
// stroke and drag live in a swatch. The spectrum starts as CIE daylight D65
// and can be replaced by the Smits spectrum of a colour or by a spectrum
// file, and saved.
class SpectrumPage : public QWidget
{
    Q_OBJECT

public:
    explicit SpectrumPage(QWidget* parent = nullptr);

    osg::SpectrumPtr spectrum() const { return _spectrum; }
    QZESpectrumPlot* plot() const { return _plot; }
    QGraphicsView* view() const { return _view; }
    // The spectrum's linear RGB as last shown, and the swatch's colour.
    QZEColor spectrumColor() const { return _color; }
    QColor swatchColor() const;

    void showDaylight();
    void showSmitsSpectrumOf(const QZEColor& color);
    void setNonUniform(bool on);
    void setMaxValue(double value);
    // Both report on the page; false leaves the spectrum as it was.
    bool loadSpectrumFile(const QString& path);
    bool saveSpectrumFile(const QString& path);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* createPlotView();
    QWidget* createSpectrumBox();
    QWidget* createFileBox();
    QWidget* createColorBox();
    void chooseColor();
    void chooseFileToLoad();
    void chooseFileToSave();
    void spectrumReplaced();
    void rebuildPlot();
    void showSpectrumColor();
    void showSampling();
    void showStatus(const QString& text);

    osg::SpectrumPtr _spectrum;
    QZESpectrumPlot* _plot = nullptr;
    QGraphicsView* _view = nullptr;
    QCheckBox* _nonUniform = nullptr;
    QDoubleSpinBox* _maxValue = nullptr;
    QFrame* _swatch = nullptr;
    QLabel* _rgb = nullptr;
    QLabel* _status = nullptr;
    QZEColor _color;
    QZEColor _smitsColor;
    QString _directory;
};

#endif // SPECTRUMPAGE_H
