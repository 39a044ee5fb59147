// QTest mouse gestures go through the window system layer, so a drag carries
// the held button to the view and the pressed viewport keeps the mouse.
#define QTEST_QPA_MOUSE_HANDLING

#include "QZESpectrumPlot.h"
#include "QZESpectrumSample.h"
#include "TestHelpers.h"
#include "osgChangeList.h"
#include "osgPThreadBase.h"
#include "zePlatform.h"

#include <QGraphicsEllipseItem>
#include <QGraphicsLineItem>
#include <QGraphicsPathItem>
#include <QGraphicsPixmapItem>
#include <QGraphicsRectItem>
#include <QGraphicsTextItem>
#include <QApplication>
#include <QGraphicsView>
#include <QImage>
#include <QPainter>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QStyleOptionGraphicsItem>
#include <QAbstractTextDocumentLayout>
#include <QTextDocument>
#include "QZEQtCompat.h"

#include <QtTest>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

namespace {

// --- Plot geometry, written out per DPI scale --------------------------------

// The borders and text metrics at one DPI scale: 35, 20, 10, 35, 10 and 30
// pixels at scale 1, each truncated after scaling.
struct Geometry
{
    float scale;
    int left, right, upper, lower, lineHeight, lineWidth;
};

const Geometry AtScale1{1.0f, 35, 20, 10, 35, 10, 30};
const Geometry AtScale2{2.0f, 70, 40, 20, 70, 20, 60};
// 1.25 x (35, 20, 10, 35, 10, 30) = (43.75, 25, 12.5, 43.75, 12.5, 37.5).
const Geometry AtScale1_25{1.25f, 43, 25, 12, 43, 12, 37};
// 0.04 x (35, 20, 10, 35, 10, 30) = (1.4, 0.8, 0.4, 1.4, 0.4, 1.2): no right
// border, so the 780 nm edge lands on the scene's last column.
const Geometry AtScale0_04{0.04f, 1, 0, 0, 1, 0, 1};

// The plot's coordinate mappings over 380..780 nm, in double precision.
struct Frame
{
    Geometry g;
    double width;
    double height;
    double maxValue;

    double plotWidth() const { return width - g.left - g.right; }
    double plotHeight() const { return height - g.upper - g.lower; }
    double x(double wavelength) const { return plotWidth() * (wavelength - 380.0) / 400.0 + g.left; }
    double wavelengthAt(double px) const { return (px - g.left) / plotWidth() * 400.0 + 380.0; }
    double y(double value) const { return plotHeight() * (1.0 - value / maxValue) + g.upper; }
    double valueAt(double py) const { return (1.0 - (py - g.upper) / plotHeight()) * maxValue; }
    double axisY() const { return height - g.lower; }
};

const QColor GuideColour(255, 240, 100);

// The 40 band colours, 380..390 nm first.
const QColor BandColours[40] = {
    {89, 89, 91},   {90, 88, 95},   {92, 87, 105},  {97, 81, 133},  {107, 66, 180},
    {113, 52, 212}, {109, 54, 221}, {99, 67, 218},  {80, 84, 207},  {48, 103, 179},
    {0, 120, 149},  {0, 137, 125},  {0, 157, 107},  {0, 178, 89},   {0, 192, 76},
    {0, 198, 68},   {0, 198, 63},   {82, 193, 63},  {136, 182, 65}, {176, 166, 69},
    {205, 145, 74}, {225, 121, 78}, {232, 98, 82},  {227, 80, 85},  {211, 73, 86},
    {188, 73, 87},  {163, 77, 88},  {140, 81, 89},  {121, 85, 89},  {107, 87, 89},
    {99, 88, 89},   {94, 88, 89},   {92, 89, 89},   {90, 89, 89},   {90, 89, 89},
    {89, 89, 89},   {89, 89, 89},   {89, 89, 89},   {89, 89, 89},   {89, 89, 89},
};

// --- Spectra -------------------------------------------------------------------

std::vector<float> constant(int num, float value)
{
    return std::vector<float>(size_t(num), value);
}

// Values rising linearly with wavelength on 380, 5, 81: (lambda - 380) / 400,
// so the band over [380 + 10i, 390 + 10i] averages (10i + 5) / 400.
std::vector<float> ramp81()
{
    std::vector<float> values;
    for (int k = 0; k < 81; ++k)
        values.push_back(float(5 * k) / 400.0f);
    return values;
}

double rampBand(int i)
{
    return (10.0 * i + 5.0) / 400.0;
}

// An active spectrum with up-to-date bands, built field by field as a host
// scene graph would hold it.
osg::SpectrumPtr makeSpectrum(int versionID, int start, int delta,
                              const std::vector<float>& wavelengths,
                              const std::vector<float>& values)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->setVersionID(versionID);
    spectrum->setStartWavelength(start);
    spectrum->setDeltaWavelength(delta);
    spectrum->setNumSamples(int(values.size()));
    spectrum->editWavelengths() = wavelengths;
    spectrum->editSourceValues() = values;
    spectrum->resample();
    spectrum->setUseSpectrum(true);
    return spectrum;
}

osg::SpectrumPtr makeUniform(int start, int delta, const std::vector<float>& values)
{
    std::vector<float> wavelengths;
    for (double w : gridOf(start, delta, int(values.size())))
        wavelengths.push_back(float(w));
    return makeSpectrum(1, start, delta, wavelengths, values);
}

osg::SpectrumPtr makeNonUniform(const std::vector<float>& wavelengths,
                                const std::vector<float>& values)
{
    return makeSpectrum(2, int(wavelengths.front()), 0, wavelengths, values);
}

// Eight samples at uneven wavelengths, all 0.5. The second and fourth
// wavelengths have fractions, so the neighbour limits show their truncation.
const std::vector<float> UnevenWavelengths = {390.0f, 420.4f, 450.7f, 500.6f,
                                              560.0f, 640.0f, 700.0f, 770.0f};

osg::SpectrumPtr makeUneven()
{
    return makeNonUniform(UnevenWavelengths, constant(8, 0.5f));
}

// --- Scene inspection --------------------------------------------------------

QList<QGraphicsItem*> topLevelItems(const QGraphicsScene& scene)
{
    QList<QGraphicsItem*> items;
    for (QGraphicsItem* item : scene.items(Qt::AscendingOrder)) {
        if (!item->parentItem())
            items.append(item);
    }
    return items;
}

template <class Item>
QList<Item*> topLevelOfType(const QGraphicsScene& scene)
{
    QList<Item*> items;
    for (QGraphicsItem* item : topLevelItems(scene)) {
        if (auto* typed = qgraphicsitem_cast<Item*>(item))
            items.append(typed);
    }
    return items;
}

QList<QGraphicsRectItem*> barsOf(const QGraphicsScene& scene)
{
    return topLevelOfType<QGraphicsRectItem>(scene);
}

QList<QGraphicsLineItem*> linesOf(const QGraphicsScene& scene)
{
    return topLevelOfType<QGraphicsLineItem>(scene);
}

// A short name per item kind, with the text of text items.
QString describe(const QGraphicsItem* item)
{
    switch (item->type()) {
    case QGraphicsTextItem::Type:
        return QStringLiteral("text ") + static_cast<const QGraphicsTextItem*>(item)->toPlainText();
    case QGraphicsLineItem::Type:
        return QStringLiteral("line");
    case QGraphicsRectItem::Type:
        return QStringLiteral("bar");
    case QGraphicsPathItem::Type:
        return QStringLiteral("path");
    case QGraphicsPixmapItem::Type:
        return QStringLiteral("pixmap");
    case QZESpectrumSample::Type:
        return QStringLiteral("dot");
    default:
        return QStringLiteral("other");
    }
}

QStringList describeTopLevel(const QGraphicsScene& scene)
{
    QStringList names;
    for (const QGraphicsItem* item : topLevelItems(scene))
        names.append(describe(item));
    return names;
}

std::vector<int> dotIndices(const QZESpectrumPlot& plot)
{
    std::vector<int> indices;
    for (const QZESpectrumSample* dot : plot.getSamples())
        indices.push_back(dot->getIndex());
    return indices;
}

QStringList labelTexts(const QZESpectrumPlot& plot)
{
    QStringList texts;
    for (const QGraphicsTextItem* label : plot.getLabels())
        texts.append(label->toPlainText());
    return texts;
}

QStringList wavelengthsFrom(int first, int step, int last)
{
    QStringList texts;
    for (int w = first; w <= last; w += step)
        texts.append(QString::number(w));
    return texts;
}

QPointF centreOf(const QZESpectrumSample* dot)
{
    return dot->rect().center();
}

QRectF dotRectAt(double x, double y)
{
    return QRectF(x - 2.0, y - 2.0, 4.0, 4.0);
}

// Checks one rectangle against another within a tolerance per coordinate:
// exact arithmetic up to double rounding by default, looser where a value
// went through float on its way.
void compareRect(const QRectF& actual, const QRectF& expected, const QString& context,
                 double tolerance = 1e-9)
{
    QZE_COMPARE_NEAR_IN(actual.x(), expected.x(), tolerance, context);
    QZE_COMPARE_NEAR_IN(actual.y(), expected.y(), tolerance, context);
    QZE_COMPARE_NEAR_IN(actual.width(), expected.width(), tolerance, context);
    QZE_COMPARE_NEAR_IN(actual.height(), expected.height(), tolerance, context);
}

// A value that went through float moves a point by up to 255 * 6e-8 pixels.
constexpr double FloatPixels = 1e-4;

void compareLine(const QLineF& actual, const QLineF& expected, const QString& context)
{
    QZE_COMPARE_NEAR_IN(actual.x1(), expected.x1(), 1e-9, context);
    QZE_COMPARE_NEAR_IN(actual.y1(), expected.y1(), 1e-9, context);
    QZE_COMPARE_NEAR_IN(actual.x2(), expected.x2(), 1e-9, context);
    QZE_COMPARE_NEAR_IN(actual.y2(), expected.y2(), 1e-9, context);
}

void comparePoint(const QPointF& actual, const QPointF& expected, const QString& context)
{
    QZE_COMPARE_NEAR_IN(actual.x(), expected.x(), 1e-9, context);
    QZE_COMPARE_NEAR_IN(actual.y(), expected.y(), 1e-9, context);
}

// The curve's points must be the dots' centres, joined from the first.
void curveRunsThroughDots(const QZESpectrumPlot& plot)
{
    QVERIFY(plot.getCurve());
    const QPainterPath path = plot.getCurve()->path();
    const auto& dots = plot.getSamples();
    QCOMPARE(path.elementCount(), int(dots.size()));
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        QCOMPARE(element.type, i == 0 ? QPainterPath::MoveToElement : QPainterPath::LineToElement);
        QZE_CHECK(comparePoint(element, centreOf(dots[size_t(i)]), QStringLiteral("point %1").arg(i)));
    }
}

bool guidesVisible(const QZESpectrumPlot& plot)
{
    return plot.getHorizontalGuide()->isVisible() && plot.getVerticalGuide()->isVisible()
           && plot.getWavelengthText()->isVisible() && plot.getValueText()->isVisible();
}

bool guidesHidden(const QZESpectrumPlot& plot)
{
    return !plot.getHorizontalGuide()->isVisible() && !plot.getVerticalGuide()->isVisible()
           && !plot.getWavelengthText()->isVisible() && !plot.getValueText()->isVisible();
}

// Relative luminance of an 8-bit sRGB colour, as the WCAG contrast rules
// define it.
double relativeLuminance(QRgb pixel)
{
    const auto linear = [](int byte) {
        const double c = byte / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(pixel)) + 0.7152 * linear(qGreen(pixel))
           + 0.0722 * linear(qBlue(pixel));
}

// The contrast ratio, from 1 (the same) to 21 (black on white), that the
// pixel of the area standing out most has against the background.
double strongestContrast(const QImage& image, const QRect& area, QRgb background)
{
    const double b = relativeLuminance(background);
    double strongest = 1.0;
    for (int y = area.top(); y <= area.bottom(); ++y)
        for (int x = area.left(); x <= area.right(); ++x) {
            const double p = relativeLuminance(image.pixel(x, y));
            strongest = std::max(strongest, (std::max(p, b) + 0.05) / (std::min(p, b) + 0.05));
        }
    return strongest;
}

// Enough contrast for graphics and large text to be seen (WCAG 2, 3:1).
constexpr double Visible = 3.0;

osg::ChangeList& changes()
{
    return *osg::PThreadBase::getThreadChangeList();
}

// A plot shown in a view whose viewport pixels are scene coordinates, so a
// gesture at a viewport point lands on the same scene point.
class ViewRig
{
public:
    ViewRig(osg::SpectrumPtr spectrum, float maxValue, int width, int height)
        : plot(std::move(spectrum), maxValue), _width(width), _height(height)
    {
        view.setFrameShape(QFrame::NoFrame);
        view.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        view.setAlignment(Qt::AlignLeft | Qt::AlignTop);
        view.setScene(&plot);
        view.resize(width, height);
        plot.update(float(width), float(height));
    }

    bool show()
    {
        view.show();
        return QTest::qWaitForWindowExposed(&view)
               && view.mapToScene(QPoint(17, 23)) == QPointF(17.0, 23.0);
    }

    // Rebuilds the plot on its update() signal, as the colour dialog does.
    void rebuildOnUpdate()
    {
        QObject::connect(&plot, qOverload<>(&QZESpectrumPlot::update), &plot,
                         [this] { plot.update(float(_width), float(_height)); });
    }

    void press(const QPointF& p) { QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(p)); }
    void move(const QPointF& p) { QTest::mouseMove(view.viewport(), at(p)); }
    void release(const QPointF& p) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(p)); }

    QZESpectrumPlot plot;
    QGraphicsView view;

private:
    QPoint at(const QPointF& p) const { return view.mapFromScene(p); }

    int _width;
    int _height;
};


// --- Fast paths against the plain rebuild ---------------------------------------

// Every property a user can see or a host can read of one item, in words.
QString itemState(const QGraphicsItem* item)
{
    QString state;
    QDebug out(&state);
    out << describe(item) << item->pos() << item->boundingRect() << item->zValue()
        << item->isVisible() << item->toolTip() << item->hasCursor();
    if (item->hasCursor())
        out << item->cursor().shape();
    if (auto* shape = dynamic_cast<const QAbstractGraphicsShapeItem*>(item))
        out << shape->pen() << shape->brush();
    if (auto* rect = qgraphicsitem_cast<const QGraphicsRectItem*>(item))
        out << rect->rect();
    if (auto* ellipse = dynamic_cast<const QGraphicsEllipseItem*>(item))
        out << ellipse->rect();
    if (auto* path = qgraphicsitem_cast<const QGraphicsPathItem*>(item))
        out << path->path();
    if (auto* line = qgraphicsitem_cast<const QGraphicsLineItem*>(item))
        out << line->line() << line->pen();
    if (auto* text = qgraphicsitem_cast<const QGraphicsTextItem*>(item))
        out << text->toPlainText() << text->defaultTextColor() << text->font();
    if (auto* dot = qgraphicsitem_cast<const QZESpectrumSample*>(item))
        out << dot->getIndex();
    return state;
}

// The whole scene bottom to top, each item with its parent's place in it.
QStringList sceneState(const QGraphicsScene& scene)
{
    const QList<QGraphicsItem*> items = scene.items(Qt::AscendingOrder);
    QStringList states;
    for (const QGraphicsItem* item : items)
        states << QStringLiteral("%1 under %2").arg(itemState(item)).arg(items.indexOf(item->parentItem()));
    states << QStringLiteral("scene rect %1 %2 %3 %4")
                  .arg(scene.sceneRect().x()).arg(scene.sceneRect().y())
                  .arg(scene.sceneRect().width()).arg(scene.sceneRect().height());
    return states;
}

QImage renderedScene(QGraphicsScene& scene, int width, int height)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    scene.render(&painter, QRectF(0, 0, width, height), QRectF(0, 0, width, height));
    return image;
}

// The plot must show what a fresh plot of the same spectrum rebuilt with
// update(width, height) shows: the same items in the same order with the same
// properties, the same pixels, and the getters naming items in the same places.
void showsWhatARebuildShows(QZESpectrumPlot& plot, int width, int height)
{
    QZESpectrumPlot rebuilt(plot.getSpectrum(), plot.getMaxValue());
    rebuilt.update(float(width), float(height));
    QCOMPARE(sceneState(plot), sceneState(rebuilt));
    QVERIFY(renderedScene(plot, width, height) == renderedScene(rebuilt, width, height));
    const QList<QGraphicsItem*> items = plot.items(Qt::AscendingOrder);
    const QList<QGraphicsItem*> rebuiltItems = rebuilt.items(Qt::AscendingOrder);
    const auto samePlace = [&](const QGraphicsItem* a, const QGraphicsItem* b) {
        return items.indexOf(const_cast<QGraphicsItem*>(a))
               == rebuiltItems.indexOf(const_cast<QGraphicsItem*>(b));
    };
    QVERIFY(samePlace(plot.getCurve(), rebuilt.getCurve()));
    QVERIFY(samePlace(plot.getSamplesItem(), rebuilt.getSamplesItem()));
    QVERIFY(samePlace(plot.getHorizontalGuide(), rebuilt.getHorizontalGuide()));
    QVERIFY(samePlace(plot.getValueText(), rebuilt.getValueText()));
    QCOMPARE(plot.getSamples().size(), rebuilt.getSamples().size());
    for (size_t j = 0; j < plot.getSamples().size(); ++j)
        QVERIFY(samePlace(plot.getSamples()[j], rebuilt.getSamples()[j]));
    QCOMPARE(labelTexts(plot), labelTexts(rebuilt));
}

// New random values and band averages for the spectrum, in [0, 1.2) so that
// some rise past the top of a plot of maximum 1.
void randomiseValues(const osg::SpectrumPtr& spectrum, std::mt19937& rng)
{
    std::uniform_real_distribution<float> value(0.0f, 1.2f);
    for (float& v : spectrum->editSourceValues())
        v = value(rng);
    for (float& band : spectrum->editSamples())
        band = value(rng);
}

std::vector<float> randomWavelengths(std::mt19937& rng, int count)
{
    std::uniform_real_distribution<float> wavelength(370.0f, 790.0f);
    std::vector<float> wavelengths(static_cast<size_t>(count));
    for (float& w : wavelengths)
        w = wavelength(rng);
    std::sort(wavelengths.begin(), wavelengths.end());
    return wavelengths;
}

std::vector<QGraphicsItem*> itemsOf(const QZESpectrumPlot& plot)
{
    const QList<QGraphicsItem*> items = plot.items(Qt::AscendingOrder);
    return std::vector<QGraphicsItem*>(items.begin(), items.end());
}

// Everything a host can read from a text item and its document.
QString textItemState(const QGraphicsTextItem* text)
{
    const QTextDocument* document = text->document();
    QString state;
    QDebug out(&state);
    out << text->type() << text->flags() << text->acceptHoverEvents() << text->acceptDrops()
        << text->acceptedMouseButtons() << text->textInteractionFlags() << text->pos()
        << text->boundingRect() << text->zValue() << text->isVisible() << text->toolTip()
        << text->hasCursor() << text->textWidth() << text->defaultTextColor()
        << text->openExternalLinks() << text->tabChangesFocus() << text->font()
        << QZEQtCompat::resolveMask(text->font()) << text->toHtml()
        << text->textCursor().position();
    out << document->defaultFont() << QZEQtCompat::resolveMask(document->defaultFont())
        << document->revision()
        << document->isModified() << document->availableUndoSteps()
        << document->availableRedoSteps() << document->isUndoRedoEnabled()
        << document->blockCount() << document->characterCount() << document->documentMargin()
        << document->pageSize() << document->textWidth() << document->idealWidth()
        << document->size() << document->useDesignMetrics() << document->indentWidth()
        << document->defaultStyleSheet() << document->defaultTextOption().alignment()
        << document->defaultTextOption().wrapMode() << document->documentLayout()->documentSize()
        << document->documentLayout()->pageCount() << (document->parent()->parent() == text);
    return state;
}

// The item as its own paint() draws it, on transparent pixels.
QImage paintedAlone(QGraphicsTextItem* text)
{
    QImage image(80, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    QStyleOptionGraphicsItem option;
    option.exposedRect = text->boundingRect();
    text->paint(&painter, &option, nullptr);
    return image;
}

// Every text item of the plot against the one QGraphicsScene::addText() makes
// for the same text in the default font at the same place: the same item and
// document, drawing the same pixels.
void labelsAreWhatAddTextMakes(QZESpectrumPlot& plot)
{
    int compared = 0;
    for (QGraphicsItem* item : plot.items(Qt::AscendingOrder)) {
        auto* label = qgraphicsitem_cast<QGraphicsTextItem*>(item);
        if (!label || label->toPlainText().isEmpty())
            continue;
        QGraphicsScene plain;
        QGraphicsTextItem* reference = plain.addText(label->toPlainText(), QFont());
        reference->setPos(label->pos());
        QCOMPARE(textItemState(label), textItemState(reference));
        QVERIFY2(paintedAlone(label) == paintedAlone(reference), qPrintable(label->toPlainText()));
        ++compared;
    }
    QCOMPARE(compared, int(plot.getLabels().size()) + 2); // and the two value labels
}

} // namespace

Q_DECLARE_METATYPE(Geometry)
Q_DECLARE_METATYPE(osg::SpectrumPtr)

class tst_QZESpectrumPlot : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    // Edge cases
    void paintingAt402_4NmOnUniform380_5_81WritesIndex4();
    void paintingAboveTopBorderStoresMaxValue();
    void paintingBelowXAxisStoresZero();
    void draggingNonUniformDotPastRightNeighbourStopsOneNanometreBefore();
    void draggingBesideAFarOffNeighbourFollowsThePointer();
    void narrowPlotDropsBarOutlinesFromFirstNarrowBar_data();
    void narrowPlotDropsBarOutlinesFromFirstNarrowBar();
    void outlineSwitchesOffAtFirstNarrowBarAndStaysOff();
    void narrowPlotSkipsLabelsThatWouldOverlap_data();
    void narrowPlotSkipsLabelsThatWouldOverlap();
    void samplesBelow380GetNoDotAndNoCurvePoint();
    void firstSampleAbove780EndsDotsAndCurve();

    // Failure rules
    void updateWithoutSpectrumLeavesSceneUntouched();
    void updateOfVersionZeroLeavesSceneUntouched();
    void updateOfInactiveSpectrumLeavesSceneEmpty_data();
    void updateOfInactiveSpectrumLeavesSceneEmpty();
    void paintingAndRefreshOnInactiveSpectrumDoNothing();
    void uniformGridWithDeltaZeroIsNotPaintedInto();
    void paintingOutsidePlotAreaIsIgnored_data();
    void paintingOutsidePlotAreaIsIgnored();
    void nonUniformPaintOutsideEveryPairTakesNearestEnd_data();
    void nonUniformPaintOutsideEveryPairTakesNearestEnd();
    void editOfUnknownIndexIsIgnored_data();
    void editOfUnknownIndexIsIgnored();
    void finishingWithoutSpectrumStillEmitsUpdate();

    // Construction, geometry and the colour table
    void constructorAddsEmptyPixmapAndClearsModes();
    void bordersFollowDpiScaleTruncated_data();
    void bordersFollowDpiScaleTruncated();
    void coordinateMappingsUseSceneRectAndBorders_data();
    void coordinateMappingsUseSceneRectAndBorders();
    void spectralColourTableHasFortyBandColours();

    // Scene content after update
    void updateSetsSceneRect();
    void valueLabelsAndAxesSitOnBorders_data();
    void valueLabelsAndAxesSitOnBorders();
    void barsShowBandAveragesInBandColours_data();
    void barsShowBandAveragesInBandColours();
    void labelsSitUnderBandEdges_data();
    void labelsSitUnderBandEdges();
    void dotsSitOnSamplesWithPenBrushAndCursor_data();
    void dotsSitOnSamplesWithPenBrushAndCursor();
    void dotsExistOnlyForSamplesInsideVisibleRange_data();
    void dotsExistOnlyForSamplesInsideVisibleRange();
    void dotTooltipNamesIndexWavelengthAndValue();
    void curveRunsThroughDotCentresInWhite();
    void guidesAreDottedAndEmptyAfterUpdate();
    void itemsStackAsAxesBarsCurveDotsGuides();
    void rebuildReplacesEveryItem();

    // Background
    void defaultViewShowsCurveAxesAndLabelsAgainstTheBackground_data();
    void defaultViewShowsCurveAxesAndLabelsAgainstTheBackground();
    void hostBackgroundBrushOutlivesRebuilds();

    // Refresh, painting and dragging called directly
    void setMaxValueOnlyStoresUntilNextUpdate();
    void modeSettersOnlyStoreTheFlag();
    void updatePlotMovesDotsAndCurveButNotBarsOrTooltips();
    void dotsStayAboveCurveAfterRefresh();
    void nonUniformPaintPicksNearerOfTwoNeighbours_data();
    void nonUniformPaintPicksNearerOfTwoNeighbours();
    void uniformPaintRoundsToNearestGridSample_data();
    void uniformPaintRoundsToNearestGridSample();
    void editOnUniformGridKeepsWavelengthAndGuidesAtSampleX();
    void editOnNonUniformGridMovesWavelengthWithinLimits_data();
    void editOnNonUniformGridMovesWavelengthWithinLimits();
    void guideOfDotPastPlotEdgeStopsTenPixelsOut();
    void editClampsValueToAxis_data();
    void editClampsValueToAxis();

    // Change notification and the update() signal
    void finishEditingClearsModeHidesGuidesAndEmitsUpdate();
    void finishPaintingRecordsChangeAndEmitsUpdateUnconditionally();
    void notificationWithoutChangeListStillUpdatesBands();
    void notificationWhileIgnoringChangesOnlyRecords();

    // Meta-object and connections
    void plotHasUpdateSignalThenFourSlotsInOrder();
    void sampleHasThreeSignalsInOrder();
    void plotConnectsByStringSignature();
    void dotSignalsReachPlotSlots();

    // The sample item
    void sampleKeepsIndexAndPlot();
    void samplePressSetsPlotEditModeBeforeScenePaints();

    // Gestures through a view
    void paintStrokeWritesEachPointAndReportsOnRelease_data();
    void paintStrokeWritesEachPointAndReportsOnRelease();
    void nonUniformPaintStrokeWritesNearestSamples();
    void dotDragOnUniformGridChangesValueOnly_data();
    void dotDragOnUniformGridChangesValueOnly();
    void dotDragOnNonUniformGridMovesWavelengthBetweenNeighbours_data();
    void dotDragOnNonUniformGridMovesWavelengthBetweenNeighbours();
    void pressOnDotDoesNotPaint();
    void rebuildOnUpdateAfterDragRecreatesVisibleEmptyGuides();
    void rebuildOnUpdateAfterPaintKeepsPaintedValues();

    // Fast paths against the plain rebuild
    void redrawOfNewValuesMovesItemsToWhatARebuildShows_data();
    void redrawOfNewValuesMovesItemsToWhatARebuildShows();
    void redrawRebuildsWhenMoreThanValuesChanged_data();
    void redrawRebuildsWhenMoreThanValuesChanged();
    void dotsHoldOneStringSignatureConnectionPerSignal();
    void dotConnectionsActLikeStringSignatureConnections_data();
    void dotConnectionsActLikeStringSignatureConnections();
    void labelsAreTheItemsAddTextMakesInTheDefaultFont_data();
    void labelsAreTheItemsAddTextMakesInTheDefaultFont();
};

void tst_QZESpectrumPlot::init()
{
    zePlatform::setDpiScale(1.0f, 1.0f);
    osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
    changes().clear();
    osg::FieldContainerPtr::_ignore_change = false;
}

void tst_QZESpectrumPlot::cleanup()
{
    zePlatform::setDpiScale(0.0f, 0.0f);
    osg::PThreadBase::setCurrentChangeList(osg::PThreadBase::getThreadChangeList());
    changes().clear();
    osg::FieldContainerPtr::_ignore_change = false;
}

// --- Edge cases ---------------------------------------------------------------

void tst_QZESpectrumPlot::paintingAt402_4NmOnUniform380_5_81WritesIndex4()
{
    QZESpectrumPlot plot(makeUniform(380, 5, constant(81, 0.5f)), 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    // (int)(402.4 + 2.5) = 404; (404 - 380) / 5 = 4. 402.4 nm lies nearer to
    // 400 nm (index 4) than to 405 nm.
    plot.paintSampleEvent(float(f.x(402.4)), float(f.y(0.25)));

    const std::vector<float>& values = plot.getSpectrum()->getSourceValues();
    QZE_COMPARE_NEAR(values[4], 0.25, 1e-5);
    for (int k : {3, 5})
        QCOMPARE(values[size_t(k)], 0.5f);
}

void tst_QZESpectrumPlot::paintingAboveTopBorderStoresMaxValue()
{
    QZESpectrumPlot plot(makeUniform(380, 5, constant(81, 0.5f)), 2.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 2.0};

    plot.paintSampleEvent(float(f.x(500.0)), 3.0f); // above the top border at 10

    QCOMPARE(plot.getSpectrum()->getSourceValues()[24], 2.0f); // (500 - 380) / 5
}

void tst_QZESpectrumPlot::paintingBelowXAxisStoresZero()
{
    QZESpectrumPlot plot(makeUniform(380, 5, constant(81, 0.5f)), 2.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 2.0};

    plot.paintSampleEvent(float(f.x(500.0)), 295.0f); // below the x axis at 265

    QCOMPARE(plot.getSpectrum()->getSourceValues()[24], 0.0f);
}

void tst_QZESpectrumPlot::draggingNonUniformDotPastRightNeighbourStopsOneNanometreBefore()
{
    ViewRig rig(makeUneven(), 1.0f, 600, 300);
    QVERIFY(rig.show());
    const Frame f{AtScale1, 600, 300, 1.0};
    const QPointF dot = centreOf(rig.plot.getSamples()[2]); // 450.7 nm; right neighbour 500.6 nm

    rig.press(dot);
    rig.move(QPointF(f.x(540.0), dot.y()));
    rig.release(QPointF(f.x(540.0), dot.y()));

    // (int)(500.6 - 1.0) = 499.
    QCOMPARE(rig.plot.getSpectrum()->getWavelengths()[2], 499.0f);
    QCOMPARE(rig.plot.getSpectrum()->getWavelengths()[3], 500.6f);
}

// A corrupt spectrum whose next sample lies far beyond any int wavelength
// still lets its neighbour follow the pointer.
void tst_QZESpectrumPlot::draggingBesideAFarOffNeighbourFollowsThePointer()
{
    const osg::SpectrumPtr spectrum = makeNonUniform({400.0f, 500.0f, 1e20f}, constant(3, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.editSampleEvent(1, float(f.x(500.0)), float(f.x(574.0)), float(f.y(0.5)));

    QCOMPARE(spectrum->getWavelengths()[1], 574.0f);
}

void tst_QZESpectrumPlot::narrowPlotDropsBarOutlinesFromFirstNarrowBar_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("outlined");

    // Bar width is the plot area's width over 40.
    QTest::newRow("scale 1, 545 px area, 13.6 px bars") << AtScale1 << 600 << true;
    QTest::newRow("scale 1, 400 px area, 10 px bars") << AtScale1 << 455 << true;
    QTest::newRow("scale 1, 399 px area, 9.975 px bars") << AtScale1 << 454 << false;
    QTest::newRow("scale 1, 245 px area") << AtScale1 << 300 << false;
    QTest::newRow("scale 2, 490 px area, 12.25 px bars") << AtScale2 << 600 << true;
    QTest::newRow("scale 2, 390 px area, 9.75 px bars") << AtScale2 << 500 << false;
}

void tst_QZESpectrumPlot::narrowPlotDropsBarOutlinesFromFirstNarrowBar()
{
    QFETCH(Geometry, geometry);
    QFETCH(int, width);
    QFETCH(bool, outlined);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(float(width), 300);

    const QList<QGraphicsRectItem*> bars = barsOf(plot);
    QCOMPARE(bars.size(), 40);
    const QPen grey(QColor(128, 128, 128));
    for (int i = 0; i < bars.size(); ++i) {
        const QPen pen = bars[i]->pen();
        if (outlined)
            QCOMPARE(pen, grey);
        else
            QCOMPARE(pen.style(), Qt::NoPen);
    }
}

void tst_QZESpectrumPlot::outlineSwitchesOffAtFirstNarrowBarAndStaysOff()
{
    // No right border: a 400 px plot area ends on x = 401, which the scene's
    // last column 400 cuts to a 9 px bar. Bars 0..38 are exactly 10 px.
    zePlatform::setDpiScale(AtScale0_04.scale, AtScale0_04.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(401, 300);

    const QList<QGraphicsRectItem*> bars = barsOf(plot);
    QCOMPARE(bars.size(), 40);
    for (int i = 0; i < 39; ++i) {
        QCOMPARE(bars[i]->rect().width(), 10.0);
        QCOMPARE(bars[i]->pen(), QPen(QColor(128, 128, 128)));
    }
    QCOMPARE(bars[39]->rect().width(), 9.0);
    QCOMPARE(bars[39]->pen().style(), Qt::NoPen);
}

void tst_QZESpectrumPlot::narrowPlotSkipsLabelsThatWouldOverlap_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<int>("width");
    QTest::addColumn<QStringList>("labels");

    // A label needs more than lineWidth pixels after the previous one.
    // 545 px / 40 = 13.625 px a band: 3 bands (40.9 px) > 30, 2 (27.25) not.
    QTest::newRow("scale 1, 600 px") << AtScale1 << 600 << wavelengthsFrom(380, 30, 770);
    // 245 px / 40 = 6.125: 5 bands (30.6 px) > 30, 4 (24.5) not.
    QTest::newRow("scale 1, 300 px") << AtScale1 << 300 << wavelengthsFrom(380, 50, 780);
    // 1200 px / 40 = 30: one band is not more than 30, two are.
    QTest::newRow("scale 1, 1255 px") << AtScale1 << 1255 << wavelengthsFrom(380, 20, 780);
    // 1600 px / 40 = 40 > 30: every band edge.
    QTest::newRow("scale 1, 1655 px") << AtScale1 << 1655 << wavelengthsFrom(380, 10, 780);
    // 490 px / 40 = 12.25 against 60: 5 bands (61.25) > 60, 4 (49) not.
    QTest::newRow("scale 2, 600 px") << AtScale2 << 600 << wavelengthsFrom(380, 50, 780);
}

void tst_QZESpectrumPlot::narrowPlotSkipsLabelsThatWouldOverlap()
{
    QFETCH(Geometry, geometry);
    QFETCH(int, width);
    QFETCH(QStringList, labels);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(float(width), 300);

    QCOMPARE(labelTexts(plot), labels);
}

void tst_QZESpectrumPlot::samplesBelow380GetNoDotAndNoCurvePoint()
{
    // 375, 5, 72 runs from 375 to 730 nm: the first sample is below 380.
    QZESpectrumPlot plot(makeUniform(375, 5, constant(72, 0.5f)), 1.0f);

    plot.update(600, 300);

    std::vector<int> expected;
    for (int k = 1; k < 72; ++k)
        expected.push_back(k);
    QCOMPARE(dotIndices(plot), expected);
    QZE_CHECK(curveRunsThroughDots(plot));
    const Frame f{AtScale1, 600, 300, 1.0};
    QZE_COMPARE_NEAR(plot.getCurve()->path().elementAt(0).x, f.x(380.0), 1e-9);
}

void tst_QZESpectrumPlot::firstSampleAbove780EndsDotsAndCurve()
{
    // The sample after the one at 780.5 nm lies inside the range again; the
    // walk has ended by then.
    QZESpectrumPlot plot(makeNonUniform({360.0f, 379.9f, 380.0f, 500.0f, 780.0f, 780.5f, 600.0f},
                                        constant(7, 0.5f)),
                         1.0f);

    plot.update(600, 300);

    QCOMPARE(dotIndices(plot), (std::vector<int>{2, 3, 4}));
    QZE_CHECK(curveRunsThroughDots(plot));
    const Frame f{AtScale1, 600, 300, 1.0};
    QZE_COMPARE_NEAR(plot.getCurve()->path().elementAt(2).x, f.x(780.0), 1e-9);
}

// --- Failure rules --------------------------------------------------------------

void tst_QZESpectrumPlot::updateWithoutSpectrumLeavesSceneUntouched()
{
    QZESpectrumPlot plot(osg::SpectrumPtr(), 1.0f);
    const QRectF before = plot.sceneRect();

    plot.update(600, 300);

    QCOMPARE(describeTopLevel(plot), QStringList{"pixmap"});
    QCOMPARE(plot.getPixmapItem(), topLevelItems(plot).value(0));
    QCOMPARE(plot.sceneRect(), before);
    plot.updatePlot();
    plot.paintSampleEvent(100, 100);
    QCOMPARE(describeTopLevel(plot), QStringList{"pixmap"});
}

void tst_QZESpectrumPlot::updateOfVersionZeroLeavesSceneUntouched()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const QList<QGraphicsItem*> built = topLevelItems(plot);
    spectrum->setVersionID(0);

    plot.update(300, 200);

    QCOMPARE(topLevelItems(plot), built);
    QCOMPARE(plot.sceneRect(), QRectF(0, 0, 600, 300));
    QCOMPARE(plot.getSamples().size(), size_t(81));
}

void tst_QZESpectrumPlot::updateOfInactiveSpectrumLeavesSceneEmpty_data()
{
    QTest::addColumn<bool>("flagOff");
    QTest::newRow("use-spectrum flag off") << true;
    QTest::newRow("39 band samples") << false;
}

void tst_QZESpectrumPlot::updateOfInactiveSpectrumLeavesSceneEmpty()
{
    QFETCH(bool, flagOff);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    if (flagOff)
        spectrum->setUseSpectrum(false);
    else
        spectrum->editSamples().resize(39);

    plot.update(600, 300);

    QVERIFY(plot.items().isEmpty());
    QVERIFY(plot.getSamples().empty());
    QVERIFY(plot.getLabels().empty());
    QVERIFY(!plot.getCurve());
    QVERIFY(!plot.getSamplesItem());
    QVERIFY(!plot.getHorizontalGuide());
    QVERIFY(!plot.getPixmapItem());
}

void tst_QZESpectrumPlot::paintingAndRefreshOnInactiveSpectrumDoNothing()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    spectrum->setUseSpectrum(false);
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.paintSampleEvent(float(f.x(500.0)), float(f.y(0.9)));
    plot.editSampleEvent(24, float(f.x(500.0)), float(f.x(500.0)), float(f.y(0.9)));
    plot.updatePlot();

    QVERIFY(plot.items().isEmpty());
    QCOMPARE(spectrum->getSourceValues(), constant(81, 0.5f));
}

void tst_QZESpectrumPlot::uniformGridWithDeltaZeroIsNotPaintedInto()
{
    const osg::SpectrumPtr spectrum =
        makeSpectrum(1, 380, 0, {380.0f, 380.0f, 380.0f}, constant(3, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.paintSampleEvent(float(f.x(500.0)), float(f.y(0.9)));

    QCOMPARE(spectrum->getSourceValues(), constant(3, 0.5f));
}

void tst_QZESpectrumPlot::paintingOutsidePlotAreaIsIgnored_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<float>("x");

    // The plot area spans x = L .. W - R.
    QTest::newRow("scale 1, left of 35") << AtScale1 << 34.9f;
    QTest::newRow("scale 1, right of 580") << AtScale1 << 580.1f;
    QTest::newRow("scale 1, scene's left edge") << AtScale1 << 0.0f;
    QTest::newRow("scale 2, left of 70") << AtScale2 << 69.9f;
    QTest::newRow("scale 2, right of 560") << AtScale2 << 560.1f;
}

void tst_QZESpectrumPlot::paintingOutsidePlotAreaIsIgnored()
{
    QFETCH(Geometry, geometry);
    QFETCH(float, x);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);

    plot.paintSampleEvent(x, 100.0f);

    QCOMPARE(spectrum->getSourceValues(), constant(81, 0.5f));
}

void tst_QZESpectrumPlot::nonUniformPaintOutsideEveryPairTakesNearestEnd_data()
{
    QTest::addColumn<double>("wavelength");
    QTest::addColumn<int>("index");

    // The samples run from 390 to 770 nm.
    QTest::newRow("below the first sample") << 383.0 << 0;
    QTest::newRow("above the last sample") << 776.0 << 7;
}

void tst_QZESpectrumPlot::nonUniformPaintOutsideEveryPairTakesNearestEnd()
{
    QFETCH(double, wavelength);
    QFETCH(int, index);
    const osg::SpectrumPtr spectrum = makeUneven();
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.paintSampleEvent(float(f.x(wavelength)), float(f.y(0.875)));

    std::vector<float> expected = constant(8, 0.5f);
    expected[size_t(index)] = 0.875f;
    const std::vector<float>& values = spectrum->getSourceValues();
    for (size_t k = 0; k < expected.size(); ++k)
        QZE_COMPARE_NEAR_IN(values[k], expected[k], 1e-5, QStringLiteral("sample %1").arg(k));
}

void tst_QZESpectrumPlot::editOfUnknownIndexIsIgnored_data()
{
    QTest::addColumn<int>("index");
    QTest::newRow("negative") << -1;
    QTest::newRow("one past the last") << 81;
}

void tst_QZESpectrumPlot::editOfUnknownIndexIsIgnored()
{
    QFETCH(int, index);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);

    plot.editSampleEvent(index, 100.0f, 100.0f, 100.0f);

    QCOMPARE(spectrum->getSourceValues(), constant(81, 0.5f));
    QVERIFY(plot.getValueText()->toPlainText().isEmpty());
}

void tst_QZESpectrumPlot::finishingWithoutSpectrumStillEmitsUpdate()
{
    QZESpectrumPlot plot(osg::SpectrumPtr(), 1.0f);
    QSignalSpy updates(&plot, SIGNAL(update()));

    plot.finishPaintingMode();
    plot.finishEditingMode();

    QCOMPARE(updates.count(), 2);
    QVERIFY(changes().empty());
}

// --- Construction, geometry and the colour table -------------------------------

void tst_QZESpectrumPlot::constructorAddsEmptyPixmapAndClearsModes()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    const int references = spectrum->getRefCount();

    QZESpectrumPlot plot(spectrum, 1.5f);

    const QList<QGraphicsItem*> items = topLevelItems(plot);
    QCOMPARE(items.size(), 1);
    auto* pixmap = qgraphicsitem_cast<QGraphicsPixmapItem*>(items.first());
    QVERIFY(pixmap);
    QCOMPARE(plot.getPixmapItem(), pixmap);
    QVERIFY(pixmap->pixmap().isNull());
    QVERIFY(!plot.getPaintSampleMode());
    QVERIFY(!plot.getEditSampleMode());
    QCOMPARE(plot.getMaxValue(), 1.5f);
    QCOMPARE(plot.getSpectrum(), spectrum);
    QCOMPARE(spectrum->getRefCount(), references + 1);
    QVERIFY(!plot.parent());
}

void tst_QZESpectrumPlot::bordersFollowDpiScaleTruncated_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::newRow("scale 1") << AtScale1;
    QTest::newRow("scale 2") << AtScale2;
    QTest::newRow("scale 1.25, truncated") << AtScale1_25;
}

void tst_QZESpectrumPlot::bordersFollowDpiScaleTruncated()
{
    QFETCH(Geometry, geometry);
    zePlatform::setDpiScale(geometry.scale, 3.0f); // the vertical factor is not used

    QZESpectrumPlot plot(osg::SpectrumPtr(), 1.0f);

    QCOMPARE(QZESpectrumPlot::_leftBorder, geometry.left);
    QCOMPARE(QZESpectrumPlot::_rightBorder, geometry.right);
    QCOMPARE(QZESpectrumPlot::_upperBorder, geometry.upper);
    QCOMPARE(QZESpectrumPlot::_lowerBorder, geometry.lower);
    QCOMPARE(QZESpectrumPlot::_lineHeight, geometry.lineHeight);
    QCOMPARE(QZESpectrumPlot::_lineWidth, geometry.lineWidth);
}

void tst_QZESpectrumPlot::coordinateMappingsUseSceneRectAndBorders_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<float>("maxValue");
    QTest::addColumn<float>("wavelength");
    QTest::addColumn<double>("x");
    QTest::addColumn<float>("value");
    QTest::addColumn<double>("y");

    // 600 x 300 scene. Scale 1: area 545 x 255 from (35, 10);
    // 545 * 100 / 400 + 35 = 171.25; 255 * (1 - 0.5 / 2) + 10 = 201.25.
    QTest::newRow("scale 1") << AtScale1 << 2.0f << 480.0f << 171.25 << 0.5f << 201.25;
    // 545 * 400 / 400 + 35 = 580 (the area's right edge); 255 * 0 + 10.
    QTest::newRow("scale 1, range ends") << AtScale1 << 1.0f << 780.0f << 580.0 << 1.0f << 10.0;
    // Scale 2: area 490 x 210 from (70, 20); 490 * 100 / 400 + 70 = 192.5;
    // 210 * (1 - 0.5 / 2) + 20 = 177.5.
    QTest::newRow("scale 2") << AtScale2 << 2.0f << 480.0f << 192.5 << 0.5f << 177.5;
    // 490 * 0 + 70; 210 * (1 - 0) + 20 = 230 (the x axis).
    QTest::newRow("scale 2, range starts") << AtScale2 << 1.0f << 380.0f << 70.0 << 0.0f << 230.0;
}

void tst_QZESpectrumPlot::coordinateMappingsUseSceneRectAndBorders()
{
    QFETCH(Geometry, geometry);
    QFETCH(float, maxValue);
    QFETCH(float, wavelength);
    QFETCH(double, x);
    QFETCH(float, value);
    QFETCH(double, y);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(osg::SpectrumPtr(), maxValue);
    plot.setSceneRect(0, 0, 600, 300);

    QZE_COMPARE_NEAR(plot.getXFromWavelength(wavelength, 400.0f, 380.0f), x, 1e-9);
    QZE_COMPARE_NEAR(plot.getWavelengthFromX(float(x), 400.0f, 380.0f), wavelength, 1e-9);
    QZE_COMPARE_NEAR(plot.getYFromSourceValue(value), y, 1e-9);
    QZE_COMPARE_NEAR(plot.getSourceValueFromY(float(y)), value, 1e-9);
    // Other ranges and starts scale the same way: 200 nm over the area from 500.
    QZE_COMPARE_NEAR(plot.getXFromWavelength(550.0f, 200.0f, 500.0f),
                     (600.0 - geometry.left - geometry.right) / 4.0 + geometry.left, 1e-9);
}

void tst_QZESpectrumPlot::spectralColourTableHasFortyBandColours()
{
    for (int i = 0; i < 40; ++i)
        QCOMPARE(QZESpectrumPlot::s_spectral_colours[i], BandColours[i]);
}

// --- Scene content after update --------------------------------------------------

void tst_QZESpectrumPlot::updateSetsSceneRect()
{
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(640.5f, 275.25f);

    QCOMPARE(plot.sceneRect(), QRectF(0, 0, 640.5, 275.25));
}

void tst_QZESpectrumPlot::valueLabelsAndAxesSitOnBorders_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::newRow("scale 1") << AtScale1;
    QTest::newRow("scale 2") << AtScale2;
}

void tst_QZESpectrumPlot::valueLabelsAndAxesSitOnBorders()
{
    QFETCH(Geometry, geometry);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 2.5f);
    const double W = 600, H = 300;
    const double L = geometry.left, R = geometry.right, U = geometry.upper, D = geometry.lower;

    plot.update(600, 300);

    const QList<QGraphicsTextItem*> texts = topLevelOfType<QGraphicsTextItem>(plot);
    QVERIFY(texts.size() >= 2);
    QCOMPARE(texts[0]->toPlainText(), QStringLiteral("0.0"));
    QCOMPARE(texts[0]->pos(), QPointF(0, H - D - geometry.lineHeight));
    QCOMPARE(texts[1]->toPlainText(), QStringLiteral("2.5"));
    QCOMPARE(texts[1]->pos(), QPointF(0, U - geometry.lineHeight));
    for (int i = 0; i < 2; ++i)
        QCOMPARE(texts[i]->font(), QFont());

    const QList<QGraphicsLineItem*> lines = linesOf(plot);
    QCOMPARE(lines.size(), 6); // four axis lines, two guides
    const QLineF expected[4] = {
        QLineF(L, H - D, W - R + 5, H - D),         // x axis
        QLineF(W - R, H - D + 2, W - R, H - D + 2), // zero length
        QLineF(L, H - D, L, U - 5),                 // y axis
        QLineF(L - 2, U, L + 2, U),                 // top tick
    };
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(lines[i]->line(), expected[i]);
        QCOMPARE(lines[i]->pen(), QPen());
    }
}

void tst_QZESpectrumPlot::barsShowBandAveragesInBandColours_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<float>("maxValue");
    QTest::newRow("scale 1") << AtScale1 << 1.0f;
    QTest::newRow("scale 2") << AtScale2 << 1.25f;
}

void tst_QZESpectrumPlot::barsShowBandAveragesInBandColours()
{
    QFETCH(Geometry, geometry);
    QFETCH(float, maxValue);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), maxValue);
    const Frame f{geometry, 600, 300, maxValue};

    plot.update(600, 300);

    const QList<QGraphicsRectItem*> bars = barsOf(plot);
    QCOMPARE(bars.size(), 40);
    const double bottom = f.y(0.0);
    for (int i = 0; i < 40; ++i) {
        const QString band = QStringLiteral("band %1").arg(i);
        const double x = f.x(380.0 + 10 * i);
        const double x2 = f.x(390.0 + 10 * i);
        const double top = f.y(rampBand(i));
        // The band averages are computed in float.
        QZE_CHECK(compareRect(bars[i]->rect(), QRectF(x, top, x2 - x, bottom - top), band,
                              FloatPixels));
        QCOMPARE(bars[i]->brush(), QBrush(BandColours[i]));
        QCOMPARE(bars[i]->pos(), QPointF());
    }
}

void tst_QZESpectrumPlot::labelsSitUnderBandEdges_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<int>("bandsPerLabel");
    // 545 / 40 = 13.625 px a band against 30: every 3rd edge.
    QTest::newRow("scale 1") << AtScale1 << 3;
    // 490 / 40 = 12.25 px a band against 60: every 5th edge.
    QTest::newRow("scale 2") << AtScale2 << 5;
}

void tst_QZESpectrumPlot::labelsSitUnderBandEdges()
{
    QFETCH(Geometry, geometry);
    QFETCH(int, bandsPerLabel);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);
    const Frame f{geometry, 600, 300, 1.0};

    plot.update(600, 300);

    const auto& labels = plot.getLabels();
    QCOMPARE(int(labels.size()), 40 / bandsPerLabel + 1);
    for (size_t n = 0; n < labels.size(); ++n) {
        const int wavelength = 380 + 10 * bandsPerLabel * int(n);
        QCOMPARE(labels[n]->toPlainText(), QString::number(wavelength));
        // lineWidth / 2 in whole pixels: 15 at scale 1, 30 at scale 2.
        QZE_CHECK(comparePoint(labels[n]->pos(),
                               QPointF(f.x(wavelength) - geometry.lineWidth / 2,
                                       300 - 2 * geometry.lineHeight),
                               labels[n]->toPlainText()));
        QCOMPARE(labels[n]->font(), QFont());
        QCOMPARE(labels[n]->scene(), &plot);
    }
}

void tst_QZESpectrumPlot::dotsSitOnSamplesWithPenBrushAndCursor_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::newRow("scale 1") << AtScale1;
    QTest::newRow("scale 2") << AtScale2;
}

void tst_QZESpectrumPlot::dotsSitOnSamplesWithPenBrushAndCursor()
{
    QFETCH(Geometry, geometry);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);
    const Frame f{geometry, 600, 300, 1.0};

    plot.update(600, 300);

    const auto& dots = plot.getSamples();
    QCOMPARE(dots.size(), size_t(81));
    for (int k = 0; k < 81; ++k) {
        const QZESpectrumSample* dot = dots[size_t(k)];
        const double wavelength = 380.0 + 5 * k;
        const float value = float(5 * k) / 400.0f; // as stored
        QCOMPARE(dot->getIndex(), k);
        QCOMPARE(dot->getPlot(), &plot);
        QCOMPARE(dot->parentItem(), plot.getSamplesItem());
        QZE_CHECK(compareRect(dot->rect(), dotRectAt(f.x(wavelength), f.y(value)),
                              QStringLiteral("dot %1").arg(k)));
        QCOMPARE(dot->brush(), QBrush(Qt::white));
        QCOMPARE(dot->pen(), QPen(GuideColour, 1));
        QCOMPARE(dot->cursor().shape(), Qt::PointingHandCursor);
    }
}

void tst_QZESpectrumPlot::dotsExistOnlyForSamplesInsideVisibleRange_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("delta");
    QTest::addColumn<int>("num");
    QTest::addColumn<int>("firstDot");
    QTest::addColumn<int>("dots");

    QTest::newRow("380, 5, 81: 380..780") << 380 << 5 << 81 << 0 << 81;
    QTest::newRow("380, 10, 36: 380..730") << 380 << 10 << 36 << 0 << 36;
    QTest::newRow("375, 5, 72: 380..730 from the second") << 375 << 5 << 72 << 1 << 71;
    QTest::newRow("300, 10, 60: 380..780 of 300..890") << 300 << 10 << 60 << 8 << 41;
}

void tst_QZESpectrumPlot::dotsExistOnlyForSamplesInsideVisibleRange()
{
    QFETCH(int, start);
    QFETCH(int, delta);
    QFETCH(int, num);
    QFETCH(int, firstDot);
    QFETCH(int, dots);
    QZESpectrumPlot plot(makeUniform(start, delta, constant(num, 0.5f)), 1.0f);

    plot.update(600, 300);

    std::vector<int> expected;
    for (int k = firstDot; k < firstDot + dots; ++k)
        expected.push_back(k);
    QCOMPARE(dotIndices(plot), expected);
    QCOMPARE(plot.getSamplesItem()->childItems().size(), dots);
}

void tst_QZESpectrumPlot::dotTooltipNamesIndexWavelengthAndValue()
{
    std::vector<float> values = constant(81, 0.5f);
    values[3] = 0.812f;
    QZESpectrumPlot plot(makeUniform(380, 5, values), 1.0f);

    plot.update(600, 300);

    QCOMPARE(plot.getSamples()[3]->toolTip(),
             QStringLiteral("Sample: 3 / Wavelength: 395.0 / Value: 0.812"));
    QCOMPARE(plot.getSamples()[80]->toolTip(),
             QStringLiteral("Sample: 80 / Wavelength: 780.0 / Value: 0.500"));
}

void tst_QZESpectrumPlot::curveRunsThroughDotCentresInWhite()
{
    QZESpectrumPlot plot(makeUneven(), 1.0f);

    plot.update(600, 300);

    QZE_CHECK(curveRunsThroughDots(plot));
    QCOMPARE(plot.getCurve()->pen(), QPen(QColor(255, 255, 255)));
    QCOMPARE(plot.getCurve()->brush().style(), Qt::NoBrush);
    const Frame f{AtScale1, 600, 300, 1.0};
    QZE_COMPARE_NEAR(plot.getCurve()->path().elementAt(3).x, f.x(500.6f), 1e-9);
}

void tst_QZESpectrumPlot::guidesAreDottedAndEmptyAfterUpdate()
{
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(600, 300);

    for (const QGraphicsLineItem* guide : {plot.getHorizontalGuide(), plot.getVerticalGuide()}) {
        QVERIFY(guide);
        QCOMPARE(guide->pen(), QPen(GuideColour, 1, Qt::DotLine, Qt::RoundCap, Qt::RoundJoin));
        QCOMPARE(guide->line(), QLineF());
    }
    for (const QGraphicsTextItem* text : {plot.getWavelengthText(), plot.getValueText()}) {
        QVERIFY(text);
        QCOMPARE(text->defaultTextColor(), GuideColour);
        QVERIFY(text->toPlainText().isEmpty());
    }
    QVERIFY(guidesVisible(plot));
}

void tst_QZESpectrumPlot::itemsStackAsAxesBarsCurveDotsGuides()
{
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);

    plot.update(600, 300);

    QStringList expected = {"text 0.0", "text 1.0", "line", "line", "line", "line"};
    for (int i = 0; i < 40; ++i) {
        if (i % 3 == 0) // labels on every 3rd band edge at 600 px
            expected << QStringLiteral("text %1").arg(380 + 10 * i);
        expected << "bar";
    }
    expected << "path" << "path" << "line" << "line" << "text " << "text ";
    QCOMPARE(describeTopLevel(plot), expected);

    const QList<QGraphicsItem*> items = topLevelItems(plot);
    const int n = items.size();
    QCOMPARE(items[n - 6], plot.getCurve());
    QCOMPARE(items[n - 5], plot.getSamplesItem());
    QCOMPARE(items[n - 4], plot.getHorizontalGuide());
    QCOMPARE(items[n - 3], plot.getVerticalGuide());
    QCOMPARE(items[n - 2], plot.getWavelengthText());
    QCOMPARE(items[n - 1], plot.getValueText());
    // The dots sit above their parent, so above everything under it.
    const QList<QGraphicsItem*> all = plot.items(Qt::AscendingOrder);
    QVERIFY(all.indexOf(plot.getSamples().front()) > all.indexOf(plot.getCurve()));
    QVERIFY(all.indexOf(plot.getSamples().back()) < all.indexOf(plot.getHorizontalGuide()));
}

void tst_QZESpectrumPlot::rebuildReplacesEveryItem()
{
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);
    plot.update(600, 300);
    const int itemCount = plot.items().size();

    plot.update(600, 300);

    QCOMPARE(plot.items().size(), itemCount);
    QCOMPARE(plot.getSamples().size(), size_t(81));
    QCOMPARE(plot.getLabels().size(), size_t(14));
    QVERIFY(!plot.getPixmapItem()); // the constructor's item went with the first rebuild
}

// --- Background ---------------------------------------------------------------

void tst_QZESpectrumPlot::defaultViewShowsCurveAxesAndLabelsAgainstTheBackground_data()
{
    QTest::addColumn<QColor>("textColour");
    QTest::newRow("light palette, black text") << QColor(Qt::black);
    QTest::newRow("dark palette, white text") << QColor(Qt::white);
}

// Samples every 50 nm at 0.5, the bars held down at 0.1: between two dots the
// curve runs over the bare background. The labels take the palette's text
// colour.
void tst_QZESpectrumPlot::defaultViewShowsCurveAxesAndLabelsAgainstTheBackground()
{
    QFETCH(QColor, textColour);
    const QPalette previous = QApplication::palette();
    QPalette palette = previous;
    palette.setColor(QPalette::Text, textColour);
    QApplication::setPalette(palette);
    const auto restore = qScopeGuard([&previous] { QApplication::setPalette(previous); });
    const Frame f{AtScale1, 500.0, 300.0, 1.0};
    osg::SpectrumPtr spectrum = makeUniform(380, 50, constant(9, 0.5f));
    spectrum->editSamples() = constant(40, 0.1f);
    ViewRig rig(spectrum, 1.0f, 500, 300);
    QVERIFY(rig.show());
    QVERIFY(rig.view.backgroundBrush().style() == Qt::NoBrush);

    const QImage image = rig.view.grab().toImage();

    const QRgb background = image.pixel(int(f.x(600.0)), f.g.upper + 3);
    const double curveY = f.y(0.5);
    const QRect curve(int(f.x(405.0)), int(curveY) - 2, 1, 5);
    QVERIFY2(strongestContrast(image, curve, background) >= Visible, "curve");
    const QRect yAxis(f.g.left, f.g.upper + 20, 1, 20);
    QVERIFY2(strongestContrast(image, yAxis, background) >= Visible, "y axis");
    // The bars cover the x axis up to 780 nm; it reaches 5 pixels further.
    const QRect xAxis(int(f.x(780.0)) + 2, int(f.axisY()) - 1, 3, 3);
    QVERIFY2(strongestContrast(image, xAxis, background) >= Visible, "x axis");
    QVERIFY(!rig.plot.getLabels().empty());
    for (const QGraphicsTextItem* label : rig.plot.getLabels()) {
        const QRect area = label->sceneBoundingRect().toAlignedRect() & image.rect();
        QVERIFY2(strongestContrast(image, area, background) >= Visible,
                 qPrintable(label->toPlainText()));
    }
}

void tst_QZESpectrumPlot::hostBackgroundBrushOutlivesRebuilds()
{
    const QColor hostColour(20, 60, 140);
    ViewRig rig(makeUniform(380, 5, constant(81, 0.5f)), 1.0f, 500, 300);

    rig.plot.setBackgroundBrush(hostColour);
    rig.plot.update(500.0f, 300.0f);
    QVERIFY(rig.show());

    QCOMPARE(rig.plot.backgroundBrush(), QBrush(hostColour));
    QCOMPARE(QColor(rig.view.grab().toImage().pixel(250, 13)), hostColour);
}

// --- Refresh, painting and dragging called directly ---------------------------

void tst_QZESpectrumPlot::setMaxValueOnlyStoresUntilNextUpdate()
{
    QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);
    plot.update(600, 300);
    const QRectF dot = plot.getSamples()[40]->rect();

    plot.setMaxValue(2.0f);

    QCOMPARE(plot.getMaxValue(), 2.0f);
    QCOMPARE(topLevelOfType<QGraphicsTextItem>(plot)[1]->toPlainText(), QStringLiteral("1.0"));
    QCOMPARE(plot.getSamples()[40]->rect(), dot);
    plot.update(600, 300);
    QCOMPARE(topLevelOfType<QGraphicsTextItem>(plot)[1]->toPlainText(), QStringLiteral("2.0"));
    const Frame f{AtScale1, 600, 300, 2.0};
    QZE_COMPARE_NEAR(centreOf(plot.getSamples()[40]).y(), f.y(0.5), 1e-9);
}

void tst_QZESpectrumPlot::modeSettersOnlyStoreTheFlag()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    QSignalSpy updates(&plot, SIGNAL(update()));

    plot.setPaintSampleMode(true);
    plot.setEditSampleMode(true);
    QVERIFY(plot.getPaintSampleMode());
    QVERIFY(plot.getEditSampleMode());
    plot.setPaintSampleMode(false);
    plot.setEditSampleMode(false);

    QVERIFY(!plot.getPaintSampleMode());
    QVERIFY(!plot.getEditSampleMode());
    QCOMPARE(updates.count(), 0);
    QVERIFY(changes().empty());
    QCOMPARE(spectrum->getSourceValues(), ramp81());
}

void tst_QZESpectrumPlot::updatePlotMovesDotsAndCurveButNotBarsOrTooltips()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const QList<QGraphicsRectItem*> bars = barsOf(plot);
    const QRectF bar = bars[20]->rect();
    const QString tip = plot.getSamples()[40]->toolTip();
    const Frame f{AtScale1, 600, 300, 1.0};

    spectrum->editSourceValues()[40] = 0.9f;
    plot.updatePlot();

    QZE_CHECK(compareRect(plot.getSamples()[40]->rect(), dotRectAt(f.x(580.0), f.y(0.9f)), "dot"));
    QZE_CHECK(curveRunsThroughDots(plot));
    QCOMPARE(barsOf(plot), bars);
    QCOMPARE(bars[20]->rect(), bar);
    QCOMPARE(plot.getSamples()[40]->toolTip(), tip);
}

void tst_QZESpectrumPlot::dotsStayAboveCurveAfterRefresh()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);

    spectrum->editSourceValues()[10] = 0.75f;
    plot.updatePlot();

    const QList<QGraphicsItem*> items = topLevelItems(plot);
    QCOMPARE(items.indexOf(plot.getCurve()) + 1, items.indexOf(plot.getSamplesItem()));
    QCOMPARE(items.last(), plot.getValueText());
    QCOMPARE(plot.getCurve()->pen(), QPen(QColor(255, 255, 255)));
    QCOMPARE(plot.getCurve()->brush().style(), Qt::NoBrush);
}

void tst_QZESpectrumPlot::nonUniformPaintPicksNearerOfTwoNeighbours_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<int>("index");

    // 545 px over 400 nm. Between 390 and 420.4 nm the midpoint is 405.2 nm
    // at x = 35 + 25.2 * 545 / 400 = 69.335; 405 nm is at 69.0625 exactly.
    QTest::newRow("405 nm: below the 405.2 midpoint") << 69.0625f << 0;
    QTest::newRow("405.4 nm: above it") << 69.6075f << 1;
    // 390..420.4: exactly 390 is the first pair's start.
    QTest::newRow("390 nm: on the first sample") << 48.625f << 0;
    // 640..700: midpoint 670 nm at x = 35 + 290 * 1.3625 = 430.125 goes up.
    QTest::newRow("670 nm: exact midpoint goes to the upper") << 430.125f << 6;
    QTest::newRow("669.9 nm: below the midpoint") << 429.98875f << 5;
}

void tst_QZESpectrumPlot::nonUniformPaintPicksNearerOfTwoNeighbours()
{
    QFETCH(float, x);
    QFETCH(int, index);
    const osg::SpectrumPtr spectrum = makeUneven();
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);

    plot.paintSampleEvent(x, 10.0f); // the top of the value axis: 1.0

    for (int k = 0; k < 8; ++k)
        QCOMPARE(spectrum->getSourceValues()[size_t(k)], k == index ? 1.0f : 0.5f);
}

void tst_QZESpectrumPlot::uniformPaintRoundsToNearestGridSample_data()
{
    QTest::addColumn<int>("delta");
    QTest::addColumn<double>("wavelength");
    QTest::addColumn<int>("index");

    // index = ((int)(lambda + delta / 2) - 380) / delta
    QTest::newRow("5 nm: 402.4 -> 404 -> 4") << 5 << 402.4 << 4;
    QTest::newRow("5 nm: 402.6 -> 405 -> 5") << 5 << 402.6 << 5;
    QTest::newRow("5 nm: 380 -> 0") << 5 << 380.0 << 0;
    QTest::newRow("5 nm: 780 -> 80") << 5 << 780.0 << 80;
    QTest::newRow("10 nm: 594.9 -> 599 -> 21") << 10 << 594.9 << 21;
    QTest::newRow("10 nm: 595.1 -> 600 -> 22") << 10 << 595.1 << 22;
    // 380, 10, 36 ends at 730 nm: (785 - 380) / 10 = 40, kept at 35.
    QTest::newRow("10 nm: 780 -> 40, kept at 35") << 10 << 780.0 << 35;
}

void tst_QZESpectrumPlot::uniformPaintRoundsToNearestGridSample()
{
    QFETCH(int, delta);
    QFETCH(double, wavelength);
    QFETCH(int, index);
    const int num = delta == 5 ? 81 : 36;
    const osg::SpectrumPtr spectrum = makeUniform(380, delta, constant(num, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.paintSampleEvent(float(f.x(wavelength)), 10.0f);

    for (int k = 0; k < num; ++k)
        QCOMPARE(spectrum->getSourceValues()[size_t(k)], k == index ? 1.0f : 0.5f);
}

void tst_QZESpectrumPlot::editOnUniformGridKeepsWavelengthAndGuidesAtSampleX()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};
    const float y = 60.0f; // value 1 - 50 / 255

    plot.editSampleEvent(20, 171.25f, 400.0f, y);

    QZE_COMPARE_NEAR(spectrum->getSourceValues()[20], f.valueAt(60.0), 1e-6);
    QCOMPARE(spectrum->getWavelengths()[20], 480.0f);
    QCOMPARE(plot.getHorizontalGuide()->line(), QLineF(35, 60, 171.25, 60));
    QCOMPARE(plot.getVerticalGuide()->line(), QLineF(171.25, 60, 171.25, 265));
    QCOMPARE(plot.getWavelengthText()->toPlainText(), QStringLiteral("480"));
    QCOMPARE(plot.getWavelengthText()->pos(), QPointF(171.25 - 15, 300 - 30 - 5));
    QCOMPARE(plot.getValueText()->toPlainText(), QStringLiteral("0.804")); // 0.80392
    QCOMPARE(plot.getValueText()->pos(), QPointF(0, 50));
    QVERIFY(guidesVisible(plot));
    QZE_CHECK(compareRect(plot.getSamples()[20]->rect(), dotRectAt(f.x(480.0), 60.0), "dot",
                          FloatPixels));
}

void tst_QZESpectrumPlot::editOnNonUniformGridMovesWavelengthWithinLimits_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<double>("wanted");
    QTest::addColumn<float>("wavelength");

    // Samples at 390, 420.4, 450.7, 500.6, 560, 640, 700, 770 nm.
    QTest::newRow("inside the limits, truncated") << 2 << 470.7 << 470.0f;
    QTest::newRow("past the right neighbour: (int)(500.6 - 1)") << 2 << 520.0 << 499.0f;
    QTest::newRow("past the left neighbour: (int)(420.4 + 1)") << 2 << 400.0 << 421.0f;
    QTest::newRow("first sample stops at 380") << 0 << 300.0 << 380.0f;
    QTest::newRow("first sample below its right neighbour") << 0 << 430.0 << 419.0f;
    QTest::newRow("last sample stops at 780") << 7 << 900.0 << 780.0f;
    QTest::newRow("last sample above its left neighbour") << 7 << 650.0 << 701.0f;
}

void tst_QZESpectrumPlot::editOnNonUniformGridMovesWavelengthWithinLimits()
{
    QFETCH(int, index);
    QFETCH(double, wanted);
    QFETCH(float, wavelength);
    const osg::SpectrumPtr spectrum = makeUneven();
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    const Frame f{AtScale1, 600, 300, 1.0};

    plot.editSampleEvent(index, 0.0f, float(f.x(wanted)), 100.0f);

    QCOMPARE(spectrum->getWavelengths()[size_t(index)], wavelength);
    const double guideX = f.x(wavelength);
    QZE_CHECK(compareLine(plot.getHorizontalGuide()->line(), QLineF(35, 100, guideX, 100), "h"));
    QZE_CHECK(compareLine(plot.getVerticalGuide()->line(), QLineF(guideX, 100, guideX, 265), "v"));
    QCOMPARE(plot.getWavelengthText()->toPlainText(), QString::number(double(wavelength)));
    QZE_CHECK(comparePoint(plot.getWavelengthText()->pos(), QPointF(guideX - 15, 265), "text"));
    QZE_COMPARE_NEAR(centreOf(plot.getSamples()[size_t(index)]).x(), guideX, 1e-9);
    QZE_CHECK(curveRunsThroughDots(plot));
}

void tst_QZESpectrumPlot::guideOfDotPastPlotEdgeStopsTenPixelsOut()
{
    // The sample before 400 nm is off the plot, so 400 nm may move down to
    // 361 nm, 19 nm left of the plot: x = 35 - 19 * 1.3625 = 9.11, shown at
    // 35 - 10 = 25.
    const osg::SpectrumPtr spectrum =
        makeNonUniform({360.0f, 400.0f, 600.0f, 800.0f}, constant(4, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);

    plot.editSampleEvent(1, 0.0f, 0.0f, 100.0f);

    QCOMPARE(spectrum->getWavelengths()[1], 361.0f);
    QCOMPARE(plot.getVerticalGuide()->line(), QLineF(25, 100, 25, 265));
    // The same on the right: 600 nm may move up to 799 nm (x = 605.9), shown
    // at 580 + 10. x = 620 asks for 809.4 nm.
    plot.editSampleEvent(2, 0.0f, 620.0f, 100.0f);
    QCOMPARE(spectrum->getWavelengths()[2], 799.0f);
    QCOMPARE(plot.getVerticalGuide()->line(), QLineF(590, 100, 590, 265));
}

void tst_QZESpectrumPlot::editClampsValueToAxis_data()
{
    QTest::addColumn<float>("y");
    QTest::addColumn<float>("value");
    QTest::addColumn<double>("guideY");
    QTest::newRow("above the top border") << 2.0f << 3.0f << 10.0;
    QTest::newRow("below the x axis") << 290.0f << 0.0f << 265.0;
}

void tst_QZESpectrumPlot::editClampsValueToAxis()
{
    QFETCH(float, y);
    QFETCH(float, value);
    QFETCH(double, guideY);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 3.0f);
    plot.update(600, 300);

    plot.editSampleEvent(5, 100.0f, 100.0f, y);

    QCOMPARE(spectrum->getSourceValues()[5], value);
    QCOMPARE(plot.getHorizontalGuide()->line(), QLineF(35, guideY, 100, guideY));
    QCOMPARE(plot.getValueText()->toPlainText(), QString::number(double(value), 'f', 3));
    QCOMPARE(plot.getValueText()->pos(), QPointF(0, guideY - 10));
}

// --- Change notification and the update() signal -------------------------------

void tst_QZESpectrumPlot::finishEditingClearsModeHidesGuidesAndEmitsUpdate()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    plot.setEditSampleMode(true);
    plot.editSampleEvent(4, 50.0f, 50.0f, 10.0f); // sample 4 (400 nm) := 1
    QSignalSpy updates(&plot, SIGNAL(update()));
    bool modeClearedBeforeSignal = false;
    bool hiddenBeforeSignal = false;
    connect(&plot, qOverload<>(&QZESpectrumPlot::update), this, [&] {
        modeClearedBeforeSignal = !plot.getEditSampleMode();
        hiddenBeforeSignal = guidesHidden(plot);
    });

    plot.finishEditingMode();

    QCOMPARE(updates.count(), 1);
    QVERIFY(modeClearedBeforeSignal);
    QVERIFY(hiddenBeforeSignal);
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
    QCOMPARE(changes().getChanged().size(), size_t(1));
    // The bands were brought up to date: over 400..410 nm the source is 1.0
    // at 400 and 0.5 at 405 and 410: (0.75 * 5 + 0.5 * 5) / 10 = 0.625.
    QZE_COMPARE_NEAR(spectrum->getSamples()[2], 0.625, 1e-6);
}

void tst_QZESpectrumPlot::finishPaintingRecordsChangeAndEmitsUpdateUnconditionally()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    QSignalSpy updates(&plot, SIGNAL(update()));

    plot.finishPaintingMode(); // no paint gesture in progress

    QCOMPARE(updates.count(), 1);
    QVERIFY(!plot.getPaintSampleMode());
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);

    plot.setPaintSampleMode(true);
    plot.finishPaintingMode();
    QCOMPARE(updates.count(), 2);
    QVERIFY(!plot.getPaintSampleMode());
    QCOMPARE(changes().getChanged().size(), size_t(1)); // the same entry
}

void tst_QZESpectrumPlot::notificationWithoutChangeListStillUpdatesBands()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    osg::PThreadBase::setCurrentChangeList(nullptr);
    std::fill(spectrum->editSourceValues().begin(), spectrum->editSourceValues().end(), 0.25f);

    plot.finishPaintingMode();

    QVERIFY(changes().empty());
    for (int i = 0; i < 40; ++i)
        QCOMPARE(spectrum->getSamples()[size_t(i)], 0.25f);
}

void tst_QZESpectrumPlot::notificationWhileIgnoringChangesOnlyRecords()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    osg::FieldContainerPtr::_ignore_change = true;
    std::fill(spectrum->editSourceValues().begin(), spectrum->editSourceValues().end(), 0.25f);

    plot.finishEditingMode();

    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
    for (int i = 0; i < 40; ++i)
        QCOMPARE(spectrum->getSamples()[size_t(i)], 0.5f); // not told, so not resampled
}

// --- Meta-object and connections ----------------------------------------------

void tst_QZESpectrumPlot::plotHasUpdateSignalThenFourSlotsInOrder()
{
    QCOMPARE(methodsInMetaObjectOrder(QZESpectrumPlot::staticMetaObject),
             (QStringList{"signal update()", "slot setMaxValue(float)",
                          "slot setEditSampleMode(bool)",
                          "slot editSampleEvent(int,float,float,float)",
                          "slot finishEditingMode()"}));
    QCOMPARE(QZESpectrumPlot::staticMetaObject.superClass(), &QGraphicsScene::staticMetaObject);
}

void tst_QZESpectrumPlot::sampleHasThreeSignalsInOrder()
{
    QCOMPARE(methodsInMetaObjectOrder(QZESpectrumSample::staticMetaObject),
             (QStringList{"signal finishEditingMode()",
                          "signal editSampleEvent(int,float,float,float)",
                          "signal setEditSampleMode(bool)"}));
    QCOMPARE(QZESpectrumSample::staticMetaObject.superClass(), &QObject::staticMetaObject);
}

void tst_QZESpectrumPlot::plotConnectsByStringSignature()
{
    QZESpectrumPlot source(osg::SpectrumPtr(), 1.0f);
    QZESpectrumPlot target(osg::SpectrumPtr(), 1.0f);
    QSignalSpy updates(&source, SIGNAL(update()));
    QVERIFY(updates.isValid());
    QVERIFY(connect(&source, SIGNAL(update()), &target, SLOT(finishEditingMode())));
    QSignalSpy targetUpdates(&target, SIGNAL(update()));
    target.setEditSampleMode(true);

    source.finishPaintingMode();

    QCOMPARE(updates.count(), 1);
    QCOMPARE(targetUpdates.count(), 1);
    QVERIFY(!target.getEditSampleMode());
    QVERIFY(QMetaObject::invokeMethod(&target, "setMaxValue", Q_ARG(float, 4.5f)));
    QCOMPARE(target.getMaxValue(), 4.5f);
    QVERIFY(QMetaObject::invokeMethod(&target, "setEditSampleMode", Q_ARG(bool, true)));
    QVERIFY(target.getEditSampleMode());
}

void tst_QZESpectrumPlot::dotSignalsReachPlotSlots()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    QSignalSpy updates(&plot, SIGNAL(update()));
    QZESpectrumSample* dot = plot.getSamples()[30];

    QVERIFY(QMetaObject::invokeMethod(dot, "editSampleEvent", Q_ARG(int, 30), Q_ARG(float, 200.0f),
                                      Q_ARG(float, 200.0f), Q_ARG(float, 10.0f)));
    QCOMPARE(spectrum->getSourceValues()[30], 1.0f);
    QCOMPARE(plot.getHorizontalGuide()->line(), QLineF(35, 10, 200, 10));

    plot.setEditSampleMode(true);
    QVERIFY(QMetaObject::invokeMethod(dot, "finishEditingMode"));
    QCOMPARE(updates.count(), 1);
    QVERIFY(!plot.getEditSampleMode());
}

// --- The sample item ------------------------------------------------------------

void tst_QZESpectrumPlot::sampleKeepsIndexAndPlot()
{
    QZESpectrumPlot plot(osg::SpectrumPtr(), 1.0f);
    QGraphicsRectItem parent;

    QZESpectrumSample sample(7, &plot, &parent);

    QCOMPARE(sample.getIndex(), 7);
    QCOMPARE(sample.getPlot(), &plot);
    QCOMPARE(sample.parentItem(), &parent);
    QCOMPARE(sample.type(), int(QZESpectrumSample::Type));
    QVERIFY(sample.type() > int(QGraphicsItem::UserType));
    QCOMPARE(qgraphicsitem_cast<QZESpectrumSample*>(static_cast<QGraphicsItem*>(&sample)), &sample);
    sample.setParentItem(nullptr);
}

void tst_QZESpectrumPlot::samplePressSetsPlotEditModeBeforeScenePaints()
{
    ViewRig rig(makeUniform(380, 5, constant(81, 0.5f)), 1.0f, 600, 300);
    QVERIFY(rig.show());
    QZESpectrumSample* dot = rig.plot.getSamples()[20];
    QSignalSpy announced(dot, SIGNAL(setEditSampleMode(bool)));
    QSignalSpy edits(dot, SIGNAL(editSampleEvent(int, float, float, float)));
    QSignalSpy finished(dot, SIGNAL(finishEditingMode()));
    const QPointF centre = centreOf(dot); // (171.25, 137.5)

    rig.press(centre);

    QVERIFY(rig.plot.getEditSampleMode());
    QVERIFY(!rig.plot.getPaintSampleMode());
    QCOMPARE(announced.count(), 1);
    QCOMPARE(announced.at(0).at(0).toBool(), true);
    QCOMPARE(edits.count(), 0);

    rig.move(QPointF(180, 120));
    QCOMPARE(edits.count(), 1);
    const QList<QVariant> args = edits.at(0);
    QCOMPARE(args.at(0).toInt(), 20);
    QCOMPARE(args.at(1).toFloat(), 171.25f); // the dot's left + 2, before the move
    QCOMPARE(args.at(2).toFloat(), 180.0f);
    QCOMPARE(args.at(3).toFloat(), 120.0f);
    QCOMPARE(finished.count(), 0);

    rig.release(QPointF(180, 120));
    QCOMPARE(finished.count(), 1);
    QCOMPARE(edits.count(), 1);
}

// --- Gestures through a view ------------------------------------------------------

void tst_QZESpectrumPlot::paintStrokeWritesEachPointAndReportsOnRelease_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::addColumn<QVector<QPointF>>("stroke");
    QTest::addColumn<QVector<int>>("indices");
    QTest::addColumn<QVector<double>>("values");

    // Scale 1: 545 x 255 area from (35, 10). Press, two moves, release on the
    // last move's point. x = 100: 427.7 nm -> (int)430.2 = 430 -> index 10;
    // x = 200: 501.1 nm -> 503 -> (503 - 380) / 5 = 24; x = 300: 574.5 nm ->
    // 576 -> 39. y = 60: 1 - 50/255; y = 100: 1 - 90/255; y = 280 is below
    // the axis at 265: 0.
    QTest::newRow("scale 1")
        << AtScale1 << QVector<QPointF>{{100, 60}, {200, 100}, {300, 280}}
        << QVector<int>{10, 24, 39} << QVector<double>{1 - 50 / 255.0, 1 - 90 / 255.0, 0.0};
    // Scale 2: 490 x 210 area from (70, 20). x = 100: 404.49 nm -> 406 ->
    // 5; x = 300: 567.8 nm -> 570 -> 38; x = 500: 731.0 nm -> 733 -> 70.
    // y = 30: 1 - 10/210; y = 5 is above the top at 20: 1; y = 125: 1 - 105/210.
    QTest::newRow("scale 2")
        << AtScale2 << QVector<QPointF>{{100, 30}, {300, 5}, {500, 125}}
        << QVector<int>{5, 38, 70} << QVector<double>{1 - 10 / 210.0, 1.0, 0.5};
}

void tst_QZESpectrumPlot::paintStrokeWritesEachPointAndReportsOnRelease()
{
    QFETCH(Geometry, geometry);
    QFETCH(QVector<QPointF>, stroke);
    QFETCH(QVector<int>, indices);
    QFETCH(QVector<double>, values);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.25f));
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    QSignalSpy updates(&rig.plot, SIGNAL(update()));
    const std::vector<float>& source = spectrum->getSourceValues();

    rig.press(stroke[0]);
    QVERIFY(rig.plot.getPaintSampleMode());
    QZE_COMPARE_NEAR(source[size_t(indices[0])], values[0], 1e-6);
    for (int i = 1; i < stroke.size(); ++i) {
        rig.move(stroke[i]);
        QZE_COMPARE_NEAR(source[size_t(indices[i])], values[i], 1e-6);
        QZE_CHECK(curveRunsThroughDots(rig.plot));
    }
    QCOMPARE(updates.count(), 0);
    QVERIFY(changes().empty());

    rig.release(stroke.last());

    QCOMPARE(updates.count(), 1);
    QVERIFY(!rig.plot.getPaintSampleMode());
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
    for (int k = 0; k < 81; ++k) {
        const int at = indices.indexOf(k);
        QZE_COMPARE_NEAR_IN(source[size_t(k)], at < 0 ? 0.25 : values[at], 1e-6,
                            QStringLiteral("sample %1").arg(k));
    }
    QVERIFY(guidesVisible(rig.plot)); // painting never touches the guides
    QVERIFY(rig.plot.getValueText()->toPlainText().isEmpty());
}

void tst_QZESpectrumPlot::nonUniformPaintStrokeWritesNearestSamples()
{
    const osg::SpectrumPtr spectrum = makeUneven();
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    QSignalSpy updates(&rig.plot, SIGNAL(update()));

    const Frame f{AtScale1, 600, 300, 1.0};
    // x = 60: 398.3 nm, nearer to 390 than to 420.4 (midpoint 405.2): index 0.
    // x = 80: 413.0 nm: index 1. x = 400: 647.9 nm, below the 670 midpoint
    // of 640..700: index 5.
    rig.press(QPointF(60, 74));
    rig.move(QPointF(80, 201));
    rig.move(QPointF(400, 10));
    rig.release(QPointF(400, 10));

    const std::vector<double> expected = {f.valueAt(74), f.valueAt(201), 0.5, 0.5,
                                          0.5,           1.0,            0.5, 0.5};
    for (size_t k = 0; k < expected.size(); ++k) {
        QZE_COMPARE_NEAR_IN(spectrum->getSourceValues()[k], expected[k], 1e-6,
                            QStringLiteral("sample %1").arg(k));
    }
    QCOMPARE(std::vector<float>(spectrum->getWavelengths()), UnevenWavelengths);
    QCOMPARE(updates.count(), 1);
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
}

void tst_QZESpectrumPlot::dotDragOnUniformGridChangesValueOnly_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::newRow("scale 1") << AtScale1;
    QTest::newRow("scale 2") << AtScale2;
}

void tst_QZESpectrumPlot::dotDragOnUniformGridChangesValueOnly()
{
    QFETCH(Geometry, geometry);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    QSignalSpy updates(&rig.plot, SIGNAL(update()));
    const Frame f{geometry, 600, 300, 1.0};
    const double dotX = f.x(480.0);
    QCOMPARE(centreOf(rig.plot.getSamples()[20]), QPointF(dotX, f.y(0.5)));

    rig.press(QPointF(dotX, f.y(0.5)));
    rig.move(QPointF(dotX + 30, 60)); // sideways too: the wavelength stays
    rig.move(QPointF(dotX + 30, 90));

    QZE_COMPARE_NEAR(spectrum->getSourceValues()[20], f.valueAt(90), 1e-6);
    QCOMPARE(spectrum->getWavelengths()[20], 480.0f);
    QVERIFY(rig.plot.getEditSampleMode());
    QVERIFY(guidesVisible(rig.plot));
    QZE_CHECK(compareLine(rig.plot.getHorizontalGuide()->line(), QLineF(geometry.left, 90, dotX, 90), "h"));
    QZE_CHECK(compareLine(rig.plot.getVerticalGuide()->line(), QLineF(dotX, 90, dotX, f.axisY()), "v"));
    QCOMPARE(rig.plot.getWavelengthText()->toPlainText(), QStringLiteral("480"));
    QCOMPARE(rig.plot.getValueText()->toPlainText(), QString::number(f.valueAt(90), 'f', 3));
    QZE_CHECK(compareRect(rig.plot.getSamples()[20]->rect(), dotRectAt(dotX, 90), "dot", FloatPixels));
    QZE_CHECK(curveRunsThroughDots(rig.plot));
    QCOMPARE(updates.count(), 0);
    QVERIFY(changes().empty());

    rig.release(QPointF(dotX + 30, 90));

    QCOMPARE(updates.count(), 1);
    QVERIFY(!rig.plot.getEditSampleMode());
    QVERIFY(!rig.plot.getPaintSampleMode());
    QVERIFY(guidesHidden(rig.plot));
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
    for (int k = 0; k < 81; ++k) {
        if (k != 20)
            QCOMPARE(spectrum->getSourceValues()[size_t(k)], 0.5f);
    }
}

void tst_QZESpectrumPlot::dotDragOnNonUniformGridMovesWavelengthBetweenNeighbours_data()
{
    QTest::addColumn<Geometry>("geometry");
    QTest::newRow("scale 1") << AtScale1;
    QTest::newRow("scale 2") << AtScale2;
}

void tst_QZESpectrumPlot::dotDragOnNonUniformGridMovesWavelengthBetweenNeighbours()
{
    QFETCH(Geometry, geometry);
    zePlatform::setDpiScale(geometry.scale, geometry.scale);
    const osg::SpectrumPtr spectrum = makeUneven();
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    QSignalSpy updates(&rig.plot, SIGNAL(update()));
    const Frame f{geometry, 600, 300, 1.0};
    const QPointF dot = centreOf(rig.plot.getSamples()[4]); // 560 nm, between 500.6 and 640
    const double y = f.y(0.8);

    rig.press(dot);
    // Whole pixels: the wavelength under x is truncated to whole nanometres.
    const double firstX = std::floor(f.x(600.5));
    rig.move(QPointF(firstX, y));
    QCOMPARE(spectrum->getWavelengths()[4], float(int(f.wavelengthAt(firstX))));
    QZE_COMPARE_NEAR(centreOf(rig.plot.getSamples()[4]).x(), f.x(int(f.wavelengthAt(firstX))), 1e-9);
    QCOMPARE(rig.plot.getWavelengthText()->toPlainText(),
             QString::number(int(f.wavelengthAt(firstX))));

    rig.move(QPointF(f.x(700.0), y)); // past 640 nm
    QCOMPARE(spectrum->getWavelengths()[4], 639.0f);
    rig.move(QPointF(f.x(450.0), y)); // past 500.6 nm the other way
    QCOMPARE(spectrum->getWavelengths()[4], 501.0f);
    QZE_CHECK(compareLine(rig.plot.getVerticalGuide()->line(),
                          QLineF(f.x(501.0), y, f.x(501.0), f.axisY()), "v"));
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[4], 0.8, 1e-6);
    QCOMPARE(updates.count(), 0);

    rig.release(QPointF(f.x(450.0), y));

    QCOMPARE(updates.count(), 1);
    QVERIFY(guidesHidden(rig.plot));
    QCOMPARE(changes().getChangedMask(spectrum), osg::SpectrumBase::SourceValuesFieldMask);
    std::vector<float> wavelengths = UnevenWavelengths;
    wavelengths[4] = 501.0f;
    QCOMPARE(std::vector<float>(spectrum->getWavelengths()), wavelengths);
}

void tst_QZESpectrumPlot::pressOnDotDoesNotPaint()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, constant(81, 0.5f));
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    QSignalSpy updates(&rig.plot, SIGNAL(update()));
    // 1.5 px below the dot's centre: inside the dot, yet painting there would
    // store a different value.
    const QPointF inside = centreOf(rig.plot.getSamples()[20]) + QPointF(0, 1.5);

    rig.press(inside);
    rig.release(inside);

    QCOMPARE(spectrum->getSourceValues(), constant(81, 0.5f));
    QVERIFY(!rig.plot.getPaintSampleMode());
    QCOMPARE(updates.count(), 1); // the dot's release ends its edit
}

void tst_QZESpectrumPlot::rebuildOnUpdateAfterDragRecreatesVisibleEmptyGuides()
{
    const osg::SpectrumPtr spectrum = makeUneven();
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    rig.rebuildOnUpdate();
    const QGraphicsLineItem* oldGuide = rig.plot.getHorizontalGuide();
    const QPointF dot = centreOf(rig.plot.getSamples()[1]);

    rig.press(dot);
    rig.move(dot + QPointF(4, -40));
    rig.release(dot + QPointF(4, -40)); // the dot is deleted by the rebuild it causes

    QVERIFY(rig.plot.getHorizontalGuide() != oldGuide);
    QVERIFY(guidesVisible(rig.plot));
    QCOMPARE(rig.plot.getHorizontalGuide()->line(), QLineF());
    QVERIFY(rig.plot.getValueText()->toPlainText().isEmpty());
    QCOMPARE(rig.plot.getSamples().size(), size_t(8));
    QVERIFY(!rig.plot.getEditSampleMode());
    const Frame f{AtScale1, 600, 300, 1.0};
    QZE_COMPARE_NEAR(centreOf(rig.plot.getSamples()[1]).y(), f.y(spectrum->getSourceValues()[1]), 1e-9);

    // A second drag on the rebuilt plot works the same way.
    const QPointF again = centreOf(rig.plot.getSamples()[6]);
    rig.press(again);
    rig.move(again + QPointF(0, 30));
    QVERIFY(guidesVisible(rig.plot));
    QVERIFY(!rig.plot.getValueText()->toPlainText().isEmpty());
    rig.release(again + QPointF(0, 30));
    QVERIFY(guidesVisible(rig.plot));
    QVERIFY(rig.plot.getValueText()->toPlainText().isEmpty());
}

void tst_QZESpectrumPlot::rebuildOnUpdateAfterPaintKeepsPaintedValues()
{
    const osg::SpectrumPtr spectrum = makeUniform(380, 5, ramp81());
    ViewRig rig(spectrum, 1.0f, 600, 300);
    QVERIFY(rig.show());
    rig.rebuildOnUpdate();
    const Frame f{AtScale1, 600, 300, 1.0};

    // x = 199: 500.37 nm -> (int)502.87 = 502 -> index 24 (500 nm).
    rig.press(QPointF(199, 36));
    rig.release(QPointF(199, 36));

    // The bar over 500..510 nm shows the band's new average: the source runs
    // linearly from the painted value to 0.3125 at 505 nm and on to 0.325.
    const double painted = f.valueAt(36);
    const double band = ((painted + 0.3125) / 2 + (0.3125 + 0.325) / 2) / 2;
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[24], painted, 1e-6);
    QZE_COMPARE_NEAR(spectrum->getSamples()[12], band, 1e-6);
    QZE_COMPARE_NEAR(barsOf(rig.plot)[12]->rect().top(), f.y(band), FloatPixels);
    QCOMPARE(rig.plot.getSamples()[24]->toolTip(),
             QStringLiteral("Sample: 24 / Wavelength: 500.0 / Value: %1").arg(painted, 0, 'f', 3));
}

// --- Fast paths against the plain rebuild -------------------------------------

void tst_QZESpectrumPlot::redrawOfNewValuesMovesItemsToWhatARebuildShows_data()
{
    QTest::addColumn<osg::SpectrumPtr>("spectrum");
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");

    std::mt19937 rng(16u);
    const std::vector<float> uneven = randomWavelengths(rng, 30);
    QTest::newRow("380, 5, 81 at 600 x 300") << makeUniform(380, 5, ramp81()) << 600 << 300;
    QTest::newRow("300, 10, 60 at 600 x 300, dots from the ninth")
        << makeUniform(300, 10, constant(60, 0.5f)) << 600 << 300;
    QTest::newRow("380, 5, 81 at 200 x 120, narrow bars")
        << makeUniform(380, 5, ramp81()) << 200 << 120;
    QTest::newRow("30 random wavelengths 370..790 at 600 x 300")
        << makeNonUniform(uneven, constant(30, 0.5f)) << 600 << 300;
}

void tst_QZESpectrumPlot::redrawOfNewValuesMovesItemsToWhatARebuildShows()
{
    QFETCH(osg::SpectrumPtr, spectrum);
    QFETCH(int, width);
    QFETCH(int, height);
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(float(width), float(height));
    std::mt19937 rng(81u);

    for (int round = 0; round < 24; ++round) {
        randomiseValues(spectrum, rng);
        if (round % 2 == 1)
            plot.updatePlot(); // a drag step replaces the curve in between
        const std::vector<QGraphicsItem*> before = itemsOf(plot);

        plot.redraw(float(width), float(height));

        QCOMPARE(itemsOf(plot), before);
        QZE_CHECK(showsWhatARebuildShows(plot, width, height));
    }
}

namespace {

enum class Change { Size, MaxValue, GuidesShown, SampleLeftRange, DpiScale, SceneRect, SampleAdded, SampleRemoved };

} // namespace

Q_DECLARE_METATYPE(Change)

void tst_QZESpectrumPlot::redrawRebuildsWhenMoreThanValuesChanged_data()
{
    QTest::addColumn<Change>("change");
    QTest::newRow("other size") << Change::Size;
    QTest::newRow("other maximum") << Change::MaxValue;
    QTest::newRow("guides shown by a drag") << Change::GuidesShown;
    QTest::newRow("first sample moved below 380 nm") << Change::SampleLeftRange;
    QTest::newRow("borders of another DPI scale") << Change::DpiScale;
    QTest::newRow("scene rectangle set by the host") << Change::SceneRect;
    QTest::newRow("one sample more") << Change::SampleAdded;
    QTest::newRow("one sample fewer") << Change::SampleRemoved;
}

void tst_QZESpectrumPlot::redrawRebuildsWhenMoreThanValuesChanged()
{
    QFETCH(Change, change);
    const osg::SpectrumPtr spectrum = makeUneven();
    QZESpectrumPlot plot(spectrum, 1.0f);
    plot.update(600, 300);
    QSignalSpy firstDotDeleted(plot.getSamples().front(), &QObject::destroyed);
    int width = 600;

    switch (change) {
    case Change::Size:
        width = 500;
        break;
    case Change::MaxValue:
        plot.setMaxValue(2.0f);
        break;
    case Change::GuidesShown:
        plot.editSampleEvent(2, 200.0f, 200.0f, 100.0f);
        break;
    case Change::SampleLeftRange:
        spectrum->editWavelengths()[0] = 379.5f;
        break;
    case Change::DpiScale: {
        zePlatform::setDpiScale(2.0f, 2.0f);
        const QZESpectrumPlot other(spectrum, 1.0f); // sets the shared borders
        break;
    }
    case Change::SceneRect:
        plot.setSceneRect(0.0, 0.0, 300.0, 200.0);
        break;
    case Change::SampleAdded:
        spectrum->editWavelengths().push_back(775.0f);
        spectrum->editSourceValues().push_back(0.25f);
        spectrum->setNumSamples(9);
        break;
    case Change::SampleRemoved:
        spectrum->setNumSamples(7);
        break;
    }

    plot.redraw(float(width), 300.0f);

    QCOMPARE(firstDotDeleted.count(), 1);
    QZE_CHECK(showsWhatARebuildShows(plot, width, 300));
}

void tst_QZESpectrumPlot::dotsHoldOneStringSignatureConnectionPerSignal()
{
    QZESpectrumPlot plot(makeUniform(380, 5, constant(81, 0.5f)), 1.0f);
    plot.update(600, 300);
    plot.update(600, 300); // the dots of a second rebuild connect the same way
    QSignalSpy updates(&plot, SIGNAL(update()));

    for (QZESpectrumSample* dot : plot.getSamples()) {
        // Delivered at once, as a direct connection made from the strings is.
        QVERIFY(QMetaObject::invokeMethod(dot, "finishEditingMode"));
        QCOMPARE(updates.count(), 1);
        updates.clear();
        QVERIFY(QObject::disconnect(dot, SIGNAL(finishEditingMode()), &plot,
                                    SLOT(finishEditingMode())));
        QVERIFY(QObject::disconnect(dot, SIGNAL(editSampleEvent(int, float, float, float)), &plot,
                                    SLOT(editSampleEvent(int, float, float, float))));
        // Exactly one of each: nothing is left to disconnect or to deliver.
        QVERIFY(!QObject::disconnect(dot, SIGNAL(finishEditingMode()), &plot,
                                     SLOT(finishEditingMode())));
        QVERIFY(!QObject::disconnect(dot, SIGNAL(editSampleEvent(int, float, float, float)),
                                     &plot, SLOT(editSampleEvent(int, float, float, float))));
        QVERIFY(QMetaObject::invokeMethod(dot, "finishEditingMode"));
        QCOMPARE(updates.count(), 0);
    }
}

void tst_QZESpectrumPlot::dotConnectionsActLikeStringSignatureConnections_data()
{
    QTest::addColumn<bool>("uniform");
    QTest::newRow("uniform grid, values only") << true;
    QTest::newRow("uneven wavelengths, which move too") << false;
}

// Two plots of equal spectra, the dots of the second reconnected the
// straightforward way by their signatures: the same drags through the dots'
// signals must edit both spectra and scenes alike.
void tst_QZESpectrumPlot::dotConnectionsActLikeStringSignatureConnections()
{
    QFETCH(bool, uniform);
    const auto make = [uniform] { return uniform ? makeUniform(380, 5, ramp81()) : makeUneven(); };
    QZESpectrumPlot fast(make(), 1.0f);
    QZESpectrumPlot plain(make(), 1.0f);
    fast.update(600, 300);
    plain.update(600, 300);
    for (QZESpectrumSample* dot : plain.getSamples()) {
        QVERIFY(QObject::disconnect(dot, nullptr, &plain, nullptr));
        QVERIFY(connect(dot, SIGNAL(finishEditingMode()), &plain, SLOT(finishEditingMode())));
        QVERIFY(connect(dot, SIGNAL(editSampleEvent(int, float, float, float)), &plain,
                        SLOT(editSampleEvent(int, float, float, float))));
    }
    QSignalSpy fastUpdates(&fast, SIGNAL(update()));
    QSignalSpy plainUpdates(&plain, SIGNAL(update()));
    std::mt19937 rng(1724u);
    std::uniform_int_distribution<size_t> pick(0, fast.getSamples().size() - 1);
    std::uniform_real_distribution<float> coordinate(-20.0f, 620.0f);

    for (int step = 0; step < 200; ++step) {
        const size_t j = pick(rng);
        const int index = fast.getSamples()[j]->getIndex();
        const float sampleX = coordinate(rng), x = coordinate(rng), y = coordinate(rng) / 2.0f;
        for (QZESpectrumPlot* plot : {&fast, &plain})
            QVERIFY(QMetaObject::invokeMethod(plot->getSamples()[j], "editSampleEvent",
                                              Q_ARG(int, index), Q_ARG(float, sampleX),
                                              Q_ARG(float, x), Q_ARG(float, y)));
        if (step % 10 == 9) {
            for (QZESpectrumPlot* plot : {&fast, &plain}) {
                plot->setEditSampleMode(true);
                QVERIFY(QMetaObject::invokeMethod(plot->getSamples()[j], "finishEditingMode"));
            }
        }
        QCOMPARE(fast.getSpectrum()->getSourceValues(), plain.getSpectrum()->getSourceValues());
        QCOMPARE(fast.getSpectrum()->getWavelengths(), plain.getSpectrum()->getWavelengths());
        QCOMPARE(fast.getEditSampleMode(), plain.getEditSampleMode());
        QCOMPARE(fastUpdates.count(), plainUpdates.count());
        QCOMPARE(sceneState(fast), sceneState(plain));
    }
    QCOMPARE(fastUpdates.count(), 20);
    QVERIFY(renderedScene(fast, 600, 300) == renderedScene(plain, 600, 300));
}

void tst_QZESpectrumPlot::labelsAreTheItemsAddTextMakesInTheDefaultFont_data()
{
    QTest::addColumn<QFont>("applicationFont");
    QTest::newRow("the application's own font") << QApplication::font();
    QFont serif(QStringLiteral("DejaVu Serif"), 13);
    serif.setItalic(true);
    QTest::newRow("a host's 13 pt italic serif") << serif;
}

// Sizes from narrow (labels thinned out) to wide and maxima of many
// magnitudes, at two DPI scales, so the labels cover many texts and places.
void tst_QZESpectrumPlot::labelsAreTheItemsAddTextMakesInTheDefaultFont()
{
    QFETCH(QFont, applicationFont);
    const QFont previous = QApplication::font();
    const auto restoreFont = qScopeGuard([&previous] { QApplication::setFont(previous); });
    QApplication::setFont(applicationFont);
    std::mt19937 rng(16u);
    std::uniform_real_distribution<float> exponent(-3.0f, 4.0f);
    std::uniform_int_distribution<int> width(120, 1400);
    std::uniform_int_distribution<int> height(80, 700);

    for (float scale : {1.0f, 1.25f}) {
        zePlatform::setDpiScale(scale, scale);
        QZESpectrumPlot plot(makeUniform(380, 5, ramp81()), 1.0f);
        for (int round = 0; round < 12; ++round) {
            plot.setMaxValue(std::pow(10.0f, exponent(rng)));
            plot.update(float(width(rng)), float(height(rng)));
            QZE_CHECK(labelsAreWhatAddTextMakes(plot));
        }
    }
}

QTEST_MAIN(tst_QZESpectrumPlot)
#include "tst_QZESpectrumPlot.moc"
