#ifndef QZESPECTRUMPLOT_H
#define QZESPECTRUMPLOT_H

#include "osgSpectrum.h"

#include <QColor>
#include <QGraphicsScene>

#include <array>
#include <vector>

class QGraphicsLineItem;
class QGraphicsPathItem;
class QGraphicsPixmapItem;
class QGraphicsRectItem;
class QGraphicsSceneMouseEvent;
class QGraphicsTextItem;
class QPainterPath;
class QZESpectrumSample;

// The interactive plot of a spectrum from 380 to 780 nm: value axis and
// wavelength labels, one coloured bar per 10 nm band showing the spectrum's
// band averages, and a white curve through the source samples with a
// draggable dot on each sample inside the visible range.
//
// Two gestures edit the spectrum in place: pressing and dragging on the empty
// plot paints values into the nearest source samples, and dragging a dot sets
// its value (and on non-uniformly sampled spectra its wavelength, never past
// its neighbours). At the end of either gesture the plot records the change
// of the source values in the scene graph and emits update(), after which the
// owner rebuilds the plot with update(width, height).
//
// The scene starts with a dark grey background brush, so that the white curve
// and the black axes show in any view; a host that wants another background
// sets its own brush on the scene or on the view.
class QZESpectrumPlot : public QGraphicsScene
{
    Q_OBJECT

public:
    static constexpr float FirstWavelength = 380.0f;
    static constexpr float WavelengthRange = 400.0f;
    static constexpr float LastWavelength = FirstWavelength + WavelengthRange;
    static constexpr int NumBands = 40;

    // Plot geometry shared by every plot, in pixels at the host's DPI scale;
    // each constructor sets it again from the current scale.
    static int _leftBorder;
    static int _rightBorder;
    static int _upperBorder;
    static int _lowerBorder;
    static int _lineHeight;
    static int _lineWidth;

    // One colour per 10 nm band, band i covering 380 + 10 i to 390 + 10 i nm.
    static const QColor s_spectral_colours[NumBands];

    QZESpectrumPlot(osg::SpectrumPtr spectrum, float maxValue);
    ~QZESpectrumPlot() override;

    // Rebuilds the whole scene at the given size; leaves it untouched without
    // a sampled spectrum and empty for an inactive one.
    void update(float width, float height);
    // Redraws the curve and moves the dots after a value change; bars, labels
    // and tooltips wait for the next update(width, height).
    void updatePlot();
    /// Shows the spectrum at the given size (scene units, normally the
    /// view's pixels) exactly as update(width, height) does, but keeps the
    /// items of the last rebuild when only values changed since: same size,
    /// borders, maximum and visible samples, and no guide shown since. Then
    /// it moves the bars, dots and curve and renews the dots' tooltips
    /// instead of recreating the scene, which a slider drag on a whole
    /// spectrum does many times a second; the scene is then the one a
    /// rebuild makes, only its items are the same objects as before. For an
    /// owner that leaves the plot's items alone; one that adds or changes
    /// items calls update().
    void redraw(float width, float height);

    void setPaintSampleMode(bool on) { _paintSampleMode = on; }
    void finishPaintingMode();
    void paintSampleEvent(float x, float y);

    double getXFromWavelength(float wavelength, float range, float start) const;
    double getWavelengthFromX(float x, float range, float start) const;
    double getYFromSourceValue(float value) const;
    double getSourceValueFromY(float y) const;

    osg::SpectrumPtr getSpectrum() const { return _spectrum; }
    float getMaxValue() const { return _maxValue; }
    bool getPaintSampleMode() const { return _paintSampleMode; }
    bool getEditSampleMode() const { return _editSampleMode; }

    // The items of the last rebuild; null before the first and after one that
    // left the scene empty.
    QGraphicsPixmapItem* getPixmapItem() const { return _pixmapItem; }
    QGraphicsPathItem* getSamplesItem() const { return _samplesItem; }
    const std::vector<QZESpectrumSample*>& getSamples() const { return _samples; }
    const std::vector<QGraphicsTextItem*>& getLabels() const { return _labels; }
    QGraphicsLineItem* getHorizontalGuide() const { return _horizontalGuide; }
    QGraphicsLineItem* getVerticalGuide() const { return _verticalGuide; }
    QGraphicsTextItem* getWavelengthText() const { return _wavelengthText; }
    QGraphicsTextItem* getValueText() const { return _valueText; }
    QGraphicsPathItem* getCurve() const { return _curve; }

signals:
    void update();

public slots:
    void setMaxValue(float value) { _maxValue = value; }
    void setEditSampleMode(bool on) { _editSampleMode = on; }
    void editSampleEvent(int index, float sampleX, float x, float y);
    void finishEditingMode();

protected:
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;

private:
    using LayoutKey = std::array<double, 9>;

    static void setBordersFromDpiScale();
    static QString toolTipFormat();

    bool isSampled() const;
    bool isDrawn() const;
    int sourceCount() const;
    template <class Visit>
    void walkVisibleSamples(Visit&& visit) const;
    double plotWidth() const;
    double plotHeight() const;
    double clampedX(float wavelength) const;
    double clampedY(float value) const;
    float valueAtY(float y) const;
    int paintIndex(double wavelength, int count) const;
    void moveWavelength(int index, float x);
    void notifySourceValuesChanged();
    void forgetItems();

    void createOverlayItems();
    void addValueLabels(float height);
    void addAxes(float width, float height);
    QPainterPath addSampleDots();
    QString dotToolTip(const QString& format, int k) const;
    void addBarsAndLabels(float height);
    QRectF barRect(int i, double bottom) const;
    QPainterPath placeDots(const QString& tipFormat);
    bool itemsFitSpectrum(float width, float height) const;
    LayoutKey layoutKey(float width, float height) const;
    void addCurve(const QPainterPath& path);
    void addGuides();
    void showGuides(double guideX, double y, float wavelength, float value);
    void setGuidesVisible(bool visible);

    QGraphicsPixmapItem* _pixmapItem = nullptr;
    QGraphicsPathItem* _samplesItem = nullptr;
    std::vector<QZESpectrumSample*> _samples;
    std::vector<QGraphicsTextItem*> _labels;
    osg::SpectrumPtr _spectrum;
    QGraphicsLineItem* _horizontalGuide = nullptr;
    QGraphicsLineItem* _verticalGuide = nullptr;
    QGraphicsTextItem* _wavelengthText = nullptr;
    QGraphicsTextItem* _valueText = nullptr;
    QGraphicsPathItem* _curve = nullptr;
    bool _paintSampleMode = false;
    bool _editSampleMode = false;
    float _maxValue = 1.0f;
    // The bars of the last rebuild, 380 nm first; the scene owns them.
    std::vector<QGraphicsRectItem*> _bars;
    LayoutKey _builtLayout{};
    bool _guidesShown = false;
};

#endif // QZESPECTRUMPLOT_H
