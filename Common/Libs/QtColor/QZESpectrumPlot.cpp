#include "QZESpectrumPlot.h"

#include "QZESpectrumSample.h"
#include "osgChangeList.h"
#include "osgPThreadBase.h"
#include "zePlatform.h"

#include <QCursor>
#include <QGraphicsLineItem>
#include <QGraphicsPathItem>
#include <QGraphicsPixmapItem>
#include <QGraphicsRectItem>
#include <QGraphicsSceneMouseEvent>
#include <QGraphicsTextItem>
#include <QMetaObject>
#include <QPainterPath>
#include <QPen>
#include <QPixmap>

#include <algorithm>
#include <cmath>

int QZESpectrumPlot::_leftBorder = 35;
int QZESpectrumPlot::_rightBorder = 20;
int QZESpectrumPlot::_upperBorder = 10;
int QZESpectrumPlot::_lowerBorder = 35;
int QZESpectrumPlot::_lineHeight = 10;
int QZESpectrumPlot::_lineWidth = 30;

const QColor QZESpectrumPlot::s_spectral_colours[QZESpectrumPlot::NumBands] = {
    {89, 89, 91},   {90, 88, 95},   {92, 87, 105},  {97, 81, 133},  {107, 66, 180},
    {113, 52, 212}, {109, 54, 221}, {99, 67, 218},  {80, 84, 207},  {48, 103, 179},
    {0, 120, 149},  {0, 137, 125},  {0, 157, 107},  {0, 178, 89},   {0, 192, 76},
    {0, 198, 68},   {0, 198, 63},   {82, 193, 63},  {136, 182, 65}, {176, 166, 69},
    {205, 145, 74}, {225, 121, 78}, {232, 98, 82},  {227, 80, 85},  {211, 73, 86},
    {188, 73, 87},  {163, 77, 88},  {140, 81, 89},  {121, 85, 89},  {107, 87, 89},
    {99, 88, 89},   {94, 88, 89},   {92, 89, 89},   {90, 89, 89},   {90, 89, 89},
    {89, 89, 89},   {89, 89, 89},   {89, 89, 89},   {89, 89, 89},   {89, 89, 89},
};

namespace {

const QColor GuideColour(255, 240, 100);
// The grey at which black and white both stand out (each about 4.5:1 in
// relative luminance): the white curve and dots, the black axes and the
// labels in a light or a dark palette all read on it.
const QColor BackgroundColour(118, 118, 118);
const QColor CurveColour(255, 255, 255);
const QColor BarOutlineColour(128, 128, 128);
constexpr int BandWidth = 10;
constexpr double NarrowBar = 10.0;   // bars narrower than this lose their outline
constexpr double GuideOverhang = 10.0; // how far a guide may reach past the plot area
constexpr int UniformGrid = 1;

// v limited to [lo, hi]; a NaN goes to lo, so a degenerate plot never yields
// coordinates that are not numbers.
double clampTo(double v, double lo, double hi)
{
    return v > hi ? hi : (v >= lo ? v : lo);
}

QRectF dotRect(const QPointF& centre)
{
    constexpr double r = QZESpectrumSample::Radius;
    return QRectF(centre.x() - r, centre.y() - r, 2 * r, 2 * r);
}

void extendCurve(QPainterPath& path, const QPointF& point)
{
    if (path.elementCount() == 0)
        path.moveTo(point);
    else
        path.lineTo(point);
}

QPen barPen()
{
    return QPen(BarOutlineColour);
}

QPen guidePen()
{
    return QPen(GuideColour, 1, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin);
}

// A neighbour's limit as a whole wavelength, truncated toward zero. A corrupt
// spectrum can hold a neighbour beyond the int range or not a number; such a
// limit is held within +-1e9 nm (no pointer position reaches it), and NaN
// leaves the plot's own end as the limit.
int neighbourLimit(double limit, int fallback)
{
    if (std::isnan(limit))
        return fallback;
    return int(std::clamp(limit, -1.0e9, 1.0e9));
}

// The index of the method a SIGNAL() or SLOT() signature names in a class.
int methodIndexOf(const QMetaObject& meta, const char* signature)
{
    return meta.indexOfMethod(QMetaObject::normalizedSignature(signature + 1));
}

// A dot's signal and the plot's slot it reaches, as method indexes.
struct DotLink
{
    int signal;
    int slot;
};

// Looked up once from their signatures: resolving a signature string took
// three quarters of the time a dot costs. Connecting by index also skips the
// argument check and the two signature strings that a connection by
// QMetaMethod rebuilds for every dot (most of what it cost), and makes the
// connection the strings would make: the same signal, slot and type.
const std::array<DotLink, 2>& dotLinks()
{
    static const std::array<DotLink, 2> links = [] {
        const QMetaObject& dot = QZESpectrumSample::staticMetaObject;
        const QMetaObject& plot = QZESpectrumPlot::staticMetaObject;
        return std::array<DotLink, 2>{
            DotLink{methodIndexOf(dot, SIGNAL(finishEditingMode())),
                    methodIndexOf(plot, SLOT(finishEditingMode()))},
            DotLink{methodIndexOf(dot, SIGNAL(editSampleEvent(int, float, float, float))),
                    methodIndexOf(plot, SLOT(editSampleEvent(int, float, float, float)))}};
    }();
    return links;
}

} // namespace

QZESpectrumPlot::QZESpectrumPlot(osg::SpectrumPtr spectrum, float maxValue)
    : QGraphicsScene(nullptr), _spectrum(std::move(spectrum)), _maxValue(maxValue)
{
    setBordersFromDpiScale();
    // Only the constructor sets it, so a brush the host sets stays; a view's
    // own background brush paints over it as usual.
    setBackgroundBrush(BackgroundColour);
    _pixmapItem = addPixmap(QPixmap());
}

// The scene deletes the items; the vectors only borrow them.
QZESpectrumPlot::~QZESpectrumPlot() = default;

void QZESpectrumPlot::setBordersFromDpiScale()
{
    const float sx = zePlatform::getDpiScaleX();
    _leftBorder = int(sx * 35);
    _rightBorder = int(sx * 20);
    _upperBorder = int(sx * 10);
    _lowerBorder = int(sx * 35);
    _lineHeight = int(sx * 10);
    _lineWidth = int(sx * 30);
}

// --- Spectrum access ---------------------------------------------------------

bool QZESpectrumPlot::isSampled() const
{
    return _spectrum && _spectrum->getVersionID() != 0;
}

// The scene shows the spectrum: it is sampled and active, and update() built
// the items for it.
bool QZESpectrumPlot::isDrawn() const
{
    return isSampled() && _spectrum->isActive() && _samplesItem;
}

// The samples that have a wavelength and a value.
int QZESpectrumPlot::sourceCount() const
{
    const size_t count = std::min({size_t(std::max(_spectrum->getNumSamples(), 0)),
                                   _spectrum->getWavelengths().size(),
                                   _spectrum->getSourceValues().size()});
    return int(count);
}

// --- Coordinate mappings -----------------------------------------------------

double QZESpectrumPlot::plotWidth() const
{
    return sceneRect().width() - _leftBorder - _rightBorder;
}

double QZESpectrumPlot::plotHeight() const
{
    return sceneRect().height() - _upperBorder - _lowerBorder;
}

double QZESpectrumPlot::getXFromWavelength(float wavelength, float range, float start) const
{
    return plotWidth() * (double(wavelength) - double(start)) / double(range) + _leftBorder;
}

double QZESpectrumPlot::getWavelengthFromX(float x, float range, float start) const
{
    return (double(x) - _leftBorder) / plotWidth() * double(range) + double(start);
}

double QZESpectrumPlot::getYFromSourceValue(float value) const
{
    return plotHeight() * (1.0 - double(value) / double(_maxValue)) + _upperBorder;
}

double QZESpectrumPlot::getSourceValueFromY(float y) const
{
    return (1.0 - (double(y) - _upperBorder) / plotHeight()) * double(_maxValue);
}

double QZESpectrumPlot::clampedX(float wavelength) const
{
    return clampTo(getXFromWavelength(wavelength, WavelengthRange, FirstWavelength), 0.0,
                   sceneRect().width() - 1.0);
}

double QZESpectrumPlot::clampedY(float value) const
{
    return clampTo(getYFromSourceValue(value), 0.0, sceneRect().height() - 1.0);
}

// The value a pointer at height y stands for, kept inside the value axis.
float QZESpectrumPlot::valueAtY(float y) const
{
    const double top = _upperBorder;
    const double bottom = sceneRect().height() - _lowerBorder;
    const double value = getSourceValueFromY(float(clampTo(y, top, bottom)));
    return float(clampTo(value, 0.0, _maxValue));
}

// Calls visit(index, point) for each source sample from 380 nm on, in order,
// up to the first one beyond 780 nm; point is the sample's place on the plot.
template <class Visit>
void QZESpectrumPlot::walkVisibleSamples(Visit&& visit) const
{
    const std::vector<float>& wavelengths = _spectrum->getWavelengths();
    const std::vector<float>& values = _spectrum->getSourceValues();
    const int count = sourceCount();
    for (int k = 0; k < count; ++k) {
        const float wavelength = wavelengths[size_t(k)];
        if (wavelength < FirstWavelength)
            continue;
        if (wavelength > LastWavelength)
            break;
        visit(k, QPointF(clampedX(wavelength), clampedY(values[size_t(k)])));
    }
}

// --- Full rebuild ------------------------------------------------------------

void QZESpectrumPlot::update(float width, float height)
{
    if (!isSampled())
        return;
    _samples.clear();
    _labels.clear();
    _bars.clear();
    clear();
    forgetItems();
    if (!_spectrum->isActive())
        return;

    createOverlayItems();
    setSceneRect(0.0, 0.0, width, height);
    addValueLabels(height);
    addAxes(width, height);
    const QPainterPath path = addSampleDots();
    addBarsAndLabels(height);
    addCurve(path);
    addItem(_samplesItem); // the dots above the curve
    addGuides();           // the guides above everything
    _builtLayout = layoutKey(width, height);
}

void QZESpectrumPlot::forgetItems()
{
    _pixmapItem = nullptr;
    _samplesItem = nullptr;
    _horizontalGuide = nullptr;
    _verticalGuide = nullptr;
    _wavelengthText = nullptr;
    _valueText = nullptr;
    _curve = nullptr;
}

// The items that go in last, above the bars and the curve: the dots' parent
// and the guides with their read-outs.
void QZESpectrumPlot::createOverlayItems()
{
    _samplesItem = new QGraphicsPathItem;
    _horizontalGuide = new QGraphicsLineItem;
    _horizontalGuide->setPen(guidePen());
    _verticalGuide = new QGraphicsLineItem;
    _verticalGuide->setPen(guidePen());
    _wavelengthText = new QGraphicsTextItem;
    _wavelengthText->setDefaultTextColor(GuideColour);
    _valueText = new QGraphicsTextItem;
    _valueText->setDefaultTextColor(GuideColour);
    _guidesShown = false;
}

void QZESpectrumPlot::addValueLabels(float height)
{
    addLabel(QString::number(0.0, 'f', 1), QPointF(0.0, double(height) - _lowerBorder - _lineHeight));
    addLabel(QString::number(double(_maxValue), 'f', 1), QPointF(0.0, _upperBorder - _lineHeight));
}

// A text in the default font, placed as addText(text, QFont()) and setPos()
// would place it. Its document starts in the default font, so the text is
// laid out once; addText() lays the text out a second time when it sets that
// same font again, about a tenth of what a label costs.
QGraphicsTextItem* QZESpectrumPlot::addLabel(const QString& text, const QPointF& pos)
{
    auto* label = new QGraphicsTextItem(text);
    addItem(label);
    label->setPos(pos);
    return label;
}

void QZESpectrumPlot::addAxes(float width, float height)
{
    const double w = width;
    const double axisY = double(height) - _lowerBorder;
    const double left = _leftBorder;
    const double top = _upperBorder;
    addLine(left, axisY, w - _rightBorder + 5, axisY);
    // A zero-length line at the end of the x axis.
    addLine(w - _rightBorder, axisY + 2, w - _rightBorder, axisY + 2);
    addLine(left, axisY, left, top - 5);
    addLine(left - 2, top, left + 2, top);
}

QPainterPath QZESpectrumPlot::addSampleDots()
{
    const QPen pen(GuideColour, 1);
    const QString tipFormat = toolTipFormat();
    QPainterPath path;
    walkVisibleSamples([&](int k, const QPointF& point) {
        auto* dot = new QZESpectrumSample(k, this, _samplesItem);
        dot->setBrush(Qt::white);
        dot->setPen(pen);
        dot->setCursor(QCursor(Qt::PointingHandCursor));
        dot->setRect(dotRect(point));
        dot->setToolTip(dotToolTip(tipFormat, k));
        for (const DotLink& link : dotLinks())
            QMetaObject::connect(dot, link.signal, this, link.slot);
        _samples.push_back(dot);
        extendCurve(path, point);
    });
    return path;
}

QString QZESpectrumPlot::toolTipFormat()
{
    return tr("Sample: %1 / Wavelength: %2 / Value: %3");
}

QString QZESpectrumPlot::dotToolTip(const QString& format, int k) const
{
    return format.arg(QString::number(k),
                      QString::number(double(_spectrum->getWavelengths()[size_t(k)]), 'f', 1),
                      QString::number(double(_spectrum->getSourceValues()[size_t(k)]), 'f', 3));
}

// Labels go under the band edges, skipped where they would run into the
// previous one; the bars lose their outline once they get too narrow for it.
void QZESpectrumPlot::addBarsAndLabels(float height)
{
    const double bottom = clampedY(0.0f);
    const double labelY = double(height) - 2 * _lineHeight;
    double lastLabelX = -2.0 * _lineWidth;
    QPen pen = barPen();
    for (int i = 0;; ++i) {
        const int wavelength = int(FirstWavelength) + BandWidth * i;
        const double x = clampedX(float(wavelength));
        if (x - lastLabelX > _lineWidth) {
            _labels.push_back(addLabel(QString::number(double(wavelength), 'g', 6),
                                       QPointF(x - _lineWidth / 2, labelY)));
            lastLabelX = x;
        }
        if (i == NumBands)
            break;
        const QRectF bar = barRect(i, bottom);
        if (bar.width() < NarrowBar)
            pen = QPen(Qt::NoPen);
        _bars.push_back(addRect(bar, pen, QBrush(s_spectral_colours[i])));
    }
}

// The bar of band i, standing on bottom.
QRectF QZESpectrumPlot::barRect(int i, double bottom) const
{
    const int wavelength = int(FirstWavelength) + BandWidth * i;
    const double x = clampedX(float(wavelength));
    const double x2 = clampedX(float(wavelength + BandWidth));
    const double y = clampedY(_spectrum->getSamples()[size_t(i)]);
    return QRectF(x, y, x2 - x, bottom - y);
}

void QZESpectrumPlot::addCurve(const QPainterPath& path)
{
    _curve = addPath(path, QPen(CurveColour), Qt::NoBrush);
}

void QZESpectrumPlot::addGuides()
{
    addItem(_horizontalGuide);
    addItem(_verticalGuide);
    addItem(_wavelengthText);
    addItem(_valueText);
}

// --- Refresh after an edit ---------------------------------------------------

void QZESpectrumPlot::updatePlot()
{
    if (!isDrawn())
        return;
    delete _curve;
    addCurve(placeDots(QString()));
    _curve->stackBefore(_samplesItem); // the dots stay above the curve
}

// Moves the dots onto the samples, the j-th visible sample's dot being the
// j-th dot, and returns the curve through them. With a tooltip format the
// dots' tooltips show the values again.
QPainterPath QZESpectrumPlot::placeDots(const QString& tipFormat)
{
    QPainterPath path;
    size_t dot = 0;
    walkVisibleSamples([&](int k, const QPointF& point) {
        if (dot < _samples.size()) {
            _samples[dot]->setRect(dotRect(point));
            if (!tipFormat.isEmpty())
                _samples[dot]->setToolTip(dotToolTip(tipFormat, k));
        }
        ++dot;
        extendCurve(path, point);
    });
    return path;
}

// --- Redraw in place ---------------------------------------------------------

void QZESpectrumPlot::redraw(float width, float height)
{
    if (!itemsFitSpectrum(width, height)) {
        update(width, height);
        return;
    }
    const double bottom = clampedY(0.0f);
    for (int i = 0; i < NumBands; ++i)
        _bars[size_t(i)]->setRect(barRect(i, bottom));
    _curve->setPath(placeDots(toolTipFormat()));
}

// Whether the last rebuild made the items a rebuild would make now, so that
// moving them gives the same scene: same size, borders and maximum, the
// guides never shown since, and one dot for each visible sample.
bool QZESpectrumPlot::itemsFitSpectrum(float width, float height) const
{
    if (!isDrawn() || _guidesShown || _builtLayout != layoutKey(width, height)
        || sceneRect() != QRectF(0.0, 0.0, width, height))
        return false;
    size_t dot = 0;
    bool same = true;
    walkVisibleSamples([&](int k, const QPointF&) {
        same = same && dot < _samples.size() && _samples[dot]->getIndex() == k;
        ++dot;
    });
    return same && dot == _samples.size();
}

// Everything besides the values that the items of a rebuild depend on.
QZESpectrumPlot::LayoutKey QZESpectrumPlot::layoutKey(float width, float height) const
{
    return {double(width), double(height), double(_maxValue), double(_leftBorder),
            double(_rightBorder), double(_upperBorder), double(_lowerBorder),
            double(_lineHeight), double(_lineWidth)};
}

// --- Painting ----------------------------------------------------------------

void QZESpectrumPlot::paintSampleEvent(float x, float y)
{
    if (!isDrawn() || plotWidth() <= 0.0 || plotHeight() <= 0.0)
        return;
    if (x < _leftBorder || x > sceneRect().width() - _rightBorder)
        return;
    const double wavelength = getWavelengthFromX(x, WavelengthRange, FirstWavelength);
    if (wavelength < FirstWavelength || wavelength > LastWavelength)
        return;
    const int count = sourceCount();
    const bool uniform = _spectrum->getVersionID() == UniformGrid;
    // Without a grid spacing there is no sample to find.
    if (count == 0 || (uniform && _spectrum->getDeltaWavelength() <= 0))
        return;
    const int index = paintIndex(wavelength, count);
    _spectrum->editSourceValues()[size_t(index)] = valueAtY(y);
    updatePlot();
}

// The source sample nearest to the wavelength, within [0, count - 1].
int QZESpectrumPlot::paintIndex(double wavelength, int count) const
{
    if (_spectrum->getVersionID() == UniformGrid) {
        const qint64 delta = _spectrum->getDeltaWavelength();
        const qint64 index =
            (qint64(wavelength + double(delta) * 0.5) - _spectrum->getStartWavelength()) / delta;
        return int(std::clamp<qint64>(index, 0, count - 1));
    }
    const std::vector<float>& w = _spectrum->getWavelengths();
    for (int k = 0; k + 1 < count; ++k) {
        const double lo = w[size_t(k)];
        const double hi = w[size_t(k) + 1];
        if (lo <= wavelength && wavelength <= hi)
            return (hi - lo) * 0.5 + lo > wavelength ? k : k + 1;
    }
    // Outside every pair: the end sample nearer to the wavelength.
    const double toFirst = std::abs(wavelength - double(w.front()));
    const double toLast = std::abs(wavelength - double(w[size_t(count) - 1]));
    return toFirst <= toLast ? 0 : count - 1;
}

void QZESpectrumPlot::finishPaintingMode()
{
    _paintSampleMode = false;
    notifySourceValuesChanged();
    emit update();
}

// --- Dragging a dot ----------------------------------------------------------

void QZESpectrumPlot::editSampleEvent(int index, float sampleX, float x, float y)
{
    if (!isDrawn() || plotWidth() <= 0.0 || plotHeight() <= 0.0)
        return;
    if (index < 0 || index >= sourceCount())
        return;
    const float value = valueAtY(y);
    _spectrum->editSourceValues()[size_t(index)] = value;
    double guideX = sampleX;
    if (_spectrum->getVersionID() != UniformGrid) {
        moveWavelength(index, x);
        guideX = clampTo(getXFromWavelength(_spectrum->getWavelengths()[size_t(index)],
                                            WavelengthRange, FirstWavelength),
                         _leftBorder - GuideOverhang,
                         sceneRect().width() - _rightBorder + GuideOverhang);
    }
    const double guideY = clampTo(y, _upperBorder, sceneRect().height() - _lowerBorder);
    showGuides(guideX, guideY, _spectrum->getWavelengths()[size_t(index)], value);
    updatePlot();
}

// Moves the sample to the whole wavelength under x, keeping it at least 1 nm
// inside its neighbours (380 and 780 nm bound the end samples).
void QZESpectrumPlot::moveWavelength(int index, float x)
{
    std::vector<float>& w = _spectrum->editWavelengths();
    const int last = sourceCount() - 1;
    const int lower = index == 0 ? int(FirstWavelength) : neighbourLimit(double(w[size_t(index) - 1]) + 1.0, int(FirstWavelength));
    const int upper = index == last ? int(LastWavelength) : neighbourLimit(double(w[size_t(index) + 1]) - 1.0, int(LastWavelength));
    const double wanted = getWavelengthFromX(x, WavelengthRange, FirstWavelength);
    // Bounded before truncating, so that no pointer position overflows the int.
    const double bounded = std::max(double(lower), std::min(wanted, double(upper)));
    w[size_t(index)] = float(int(bounded));
}

void QZESpectrumPlot::showGuides(double guideX, double y, float wavelength, float value)
{
    const double axisY = sceneRect().height() - _lowerBorder;
    _horizontalGuide->setLine(_leftBorder, y, guideX, y);
    _verticalGuide->setLine(guideX, y, guideX, axisY);
    _wavelengthText->setPlainText(QString::number(double(wavelength), 'g', 6));
    _wavelengthText->setPos(guideX - _lineWidth / 2,
                            sceneRect().height() - 3 * _lineHeight - 5);
    _valueText->setPlainText(QString::number(double(value), 'f', 3));
    _valueText->setPos(0.0, y - _lineHeight);
    setGuidesVisible(true);
    _guidesShown = true;
}

void QZESpectrumPlot::setGuidesVisible(bool visible)
{
    if (!_horizontalGuide)
        return;
    _horizontalGuide->setVisible(visible);
    _verticalGuide->setVisible(visible);
    _wavelengthText->setVisible(visible);
    _valueText->setVisible(visible);
}

void QZESpectrumPlot::finishEditingMode()
{
    _editSampleMode = false;
    notifySourceValuesChanged();
    setGuidesVisible(false);
    emit update();
}

// --- Change notification -----------------------------------------------------

void QZESpectrumPlot::notifySourceValuesChanged()
{
    if (!_spectrum)
        return;
    if (osg::ChangeList* list = osg::PThreadBase::getCurrentChangeList())
        list->addChanged(_spectrum, osg::SpectrumBase::SourceValuesFieldMask);
    if (!osg::FieldContainerPtr::_ignore_change)
        _spectrum->changed(osg::SpectrumBase::SourceValuesFieldMask, 1);
}

// --- Mouse -------------------------------------------------------------------

void QZESpectrumPlot::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    // A dot under the pointer switches edit mode on while the scene hands it
    // the press, so painting starts only on the empty plot.
    QGraphicsScene::mousePressEvent(event);
    if (_editSampleMode)
        return;
    _paintSampleMode = true;
    event->accept();
    paintSampleEvent(float(event->scenePos().x()), float(event->scenePos().y()));
}

void QZESpectrumPlot::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseMoveEvent(event);
    if (_paintSampleMode)
        paintSampleEvent(float(event->scenePos().x()), float(event->scenePos().y()));
}

void QZESpectrumPlot::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    QGraphicsScene::mouseReleaseEvent(event);
    if (_paintSampleMode)
        finishPaintingMode();
}
