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

/// The interactive plot of a spectrum from 380 to 780 nm: value axis and
/// wavelength labels, one coloured bar per 10 nm band showing the spectrum's
/// band averages, and a white curve through the source samples with a
/// draggable dot (QZESpectrumSample) on each sample inside the visible range.
///
/// Two gestures edit the spectrum in place: pressing and dragging on the empty
/// plot paints values into the nearest source samples, and dragging a dot sets
/// its value (and on non-uniformly sampled spectra its wavelength, never past
/// its neighbours). Values stay within 0..getMaxValue(). At the end of either
/// gesture the plot records the change of the source values in the scene
/// graph's change list, lets the spectrum bring its bands up to date
/// (osg::Spectrum::changed()) and emits update(), after which the owner
/// rebuilds the plot with update(width, height).
///
/// The scene starts with a mid-grey background brush (118, 118, 118), on which
/// the white curve, the black axes and the labels of a light or a dark palette
/// all show in any view; a host that wants another background
/// sets its own brush on the scene or on the view. Scene units are the view's
/// pixels; QZESpectrumPlotView is a view that keeps the plot at its size.
///
/// Usage:
/// \code
/// auto* plot = new QZESpectrumPlot(spectrum, 2.0f);  // values 0..2
/// auto* view = new QGraphicsView(plot, panel);
/// plot->update(view->viewport()->width(), view->viewport()->height());
/// QObject::connect(plot, SIGNAL(update()), owner, SLOT(rebuildPlot()));
/// \endcode
class QZESpectrumPlot : public QGraphicsScene
{
    Q_OBJECT

public:
    /// The wavelength at the plot's left end, in nm.
    static constexpr float FirstWavelength = 380.0f;
    /// The wavelength span of the plot, in nm.
    static constexpr float WavelengthRange = 400.0f;
    /// The wavelength at the plot's right end, in nm (780).
    static constexpr float LastWavelength = FirstWavelength + WavelengthRange;
    /// The number of 10 nm bars, one per band average of the spectrum.
    static constexpr int NumBands = 40;

    /// @{
    /// Plot geometry shared by every plot, in pixels at the host's DPI scale
    /// (35, 20, 10 and 35 pixels of border left, right, top and bottom, text
    /// lines 10 high and labels 30 wide at scale 1); each constructor sets it
    /// again from the current scale.
    static int _leftBorder;
    static int _rightBorder;
    static int _upperBorder;
    static int _lowerBorder;
    static int _lineHeight;
    static int _lineWidth;
    /// @}

    /// One colour per 10 nm band, band i covering 380 + 10 i to 390 + 10 i nm.
    static const QColor s_spectral_colours[NumBands];

    /// An empty plot of spectrum (which may be null) with values from 0 to
    /// maxValue; update(width, height) builds the scene.
    QZESpectrumPlot(osg::SpectrumPtr spectrum, float maxValue);
    /// Deletes the scene and its items; the spectrum stays.
    ~QZESpectrumPlot() override;

    /// Rebuilds the whole scene at the given size (scene units, normally the
    /// view's pixels); leaves it untouched without a sampled spectrum (null or
    /// version 0) and empty for an inactive one. Every item is made anew.
    void update(float width, float height);
    /// Redraws the curve and moves the dots after a value change; bars, labels
    /// and tooltips wait for the next update(width, height).
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

    /// Stores whether a painting gesture is under way; nothing else.
    void setPaintSampleMode(bool on) { _paintSampleMode = on; }
    /// Ends a painting gesture: clears the paint mode, records the source
    /// value change (see the class comment) and emits update().
    void finishPaintingMode();
    /// Paints at scene point x, y: the source sample nearest to the
    /// wavelength under x takes the value under y (within 0..getMaxValue())
    /// and the curve is redrawn. Points outside the plot area or outside
    /// 380..780 nm are ignored, as is everything while the scene is empty.
    void paintSampleEvent(float x, float y);

    /// @{
    /// The linear mappings between the plot's x axis (scene units) and a
    /// wavelength (nm) whose axis covers range nm from start; the plot itself
    /// uses WavelengthRange and FirstWavelength. Not clamped.
    double getXFromWavelength(float wavelength, float range, float start) const;
    double getWavelengthFromX(float x, float range, float start) const;
    /// @}
    /// @{
    /// The linear mappings between the plot's y axis (scene units, growing
    /// downwards) and a source value, 0 at the x axis and getMaxValue() at
    /// the top of the value axis. Not clamped.
    double getYFromSourceValue(float value) const;
    double getSourceValueFromY(float y) const;
    /// @}

    /// The spectrum the plot shows and edits.
    osg::SpectrumPtr getSpectrum() const { return _spectrum; }
    /// The value at the top of the value axis.
    float getMaxValue() const { return _maxValue; }
    /// Whether a painting gesture is under way.
    bool getPaintSampleMode() const { return _paintSampleMode; }
    /// Whether a dot is being dragged.
    bool getEditSampleMode() const { return _editSampleMode; }

    /// @{
    /// The items of the last rebuild; null before the first and after one that
    /// left the scene empty. The scene owns them.
    QGraphicsPixmapItem* getPixmapItem() const { return _pixmapItem; }
    QGraphicsPathItem* getSamplesItem() const { return _samplesItem; }
    const std::vector<QZESpectrumSample*>& getSamples() const { return _samples; }
    const std::vector<QGraphicsTextItem*>& getLabels() const { return _labels; }
    QGraphicsLineItem* getHorizontalGuide() const { return _horizontalGuide; }
    QGraphicsLineItem* getVerticalGuide() const { return _verticalGuide; }
    QGraphicsTextItem* getWavelengthText() const { return _wavelengthText; }
    QGraphicsTextItem* getValueText() const { return _valueText; }
    QGraphicsPathItem* getCurve() const { return _curve; }
    /// @}

signals:
    /// A painting or dragging gesture changed the spectrum: the owner calls
    /// update(width, height) again to rebuild the plot.
    void update();

public slots:
    /// Sets the value at the top of the value axis; shown from the next
    /// update(width, height).
    void setMaxValue(float value) { _maxValue = value; }
    /// Stores whether a dot is being dragged; a dot's press sets it.
    void setEditSampleMode(bool on) { _editSampleMode = on; }
    /// A dot was dragged (from QZESpectrumSample::editSampleEvent()): source
    /// sample index takes the value under y (within 0..getMaxValue()); on a
    /// non-uniform spectrum its wavelength also moves to the whole nm under
    /// x, kept at least 1 nm inside its neighbours and within 380..780 nm.
    /// Shows the guides with the wavelength and value read-outs at the
    /// dot's x (sampleX on a uniform grid) and redraws the curve.
    void editSampleEvent(int index, float sampleX, float x, float y);
    /// Ends a dot drag: clears the edit mode, records the source value change
    /// (see the class comment), hides the guides and emits update().
    void finishEditingMode();

protected:
    /// Passes the press to the scene (a dot under it starts a drag); on the
    /// empty plot starts painting at the press point.
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    /// Passes the move to the scene; paints at the point while painting.
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    /// Passes the release to the scene; ends a painting gesture.
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
    QGraphicsTextItem* addLabel(const QString& text, const QPointF& pos);
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
