// Repaints of a 400 x 24 QZEColorSlider in every mode, as a host sees them:
// QWidget::render() into a preallocated image, which goes through paintEvent.
//
// "SliderStripChange" alternates the end colour before every render, so that
// every repaint computes the strip anew (every mode's cached strip depends on
// the end colour). "SliderHandleMove" alternates the handle between two
// positions, as a drag does: the strip is the cached one. "SliderRepaint"
// renders with nothing changed.
//
// "QSliderHandleMove" is the same as "SliderHandleMove" for a QSlider in the
// Fusion style of the same size, the reference for a drag step.
// "ReferencePerColumn" paints the same pixels as the colour slider the
// straightforward way, one drawLine per column with a pen of that column's
// colour. Before any timing, main() checks once per mode that the widget and
// the reference produce identical pixels, so the figures compare equal work.

#include "BenchMain.h"
#include "QZEColorSlider.h"

#include <benchmark/benchmark.h>

#include <QFontMetrics>
#include <QGuiApplication>
#include <QImage>
#include <QMetaEnum>
#include <QPainter>
#include <QPalette>
#include <QSlider>
#include <QStyle>
#include <QStyleFactory>

#include <memory>
#include <string>
#include <vector>

namespace {

constexpr int Width = 400;
constexpr int Height = 24;
constexpr float HandlePosition = 0.37f;
constexpr float OtherHandlePosition = 0.62f;
// A mid-saturated blue: gives the Saturation, Value and Lab strips a real ramp.
const QZEColor EndColour(200.0f, 0.6f, 0.8f);
// What the end colour alternates with in SliderStripChange.
const QZEColor OtherEndColour(20.0f, 0.7f, 0.6f);

struct Scene
{
    std::string name;
    QZEColorSlider::Mode mode;
    bool disabled; // photometric mode: grey ramp and explanatory text
};

std::vector<Scene> allScenes()
{
    const QMetaEnum modes = QMetaEnum::fromType<QZEColorSlider::Mode>();
    std::vector<Scene> scenes;
    for (int i = 0; i < modes.keyCount(); ++i)
        scenes.push_back({modes.key(i), QZEColorSlider::Mode(modes.value(i)), false});
    scenes.push_back({"Disabled", QZEColorSlider::Hue, true});
    return scenes;
}

void configure(QZEColorSlider& slider, const Scene& scene)
{
    slider.resize(Width, Height);
    slider.setMode(scene.mode);
    slider.setMaxColor(EndColour);
    slider.setValue(HandlePosition, false);
    slider.setPhotometricParameters(scene.disabled);
}

QImage blankImage()
{
    QImage image(Width, Height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::magenta); // any pixel left unpainted shows up in the comparison
    return image;
}

// --- Reference: one line per column --------------------------------------------

QPen cosmeticPen(const QColor& color)
{
    QPen pen(color, 1.0);
    pen.setCosmetic(true);
    return pen;
}

QPen palettePen(QPalette::ColorRole role)
{
    return cosmeticPen(QGuiApplication::palette().color(role));
}

// Outline covering the corners (x1, y1) and (x2, y2) inclusively.
void outline(QPainter& painter, int x1, int y1, int x2, int y2)
{
    painter.drawRect(QRect(x1, y1, x2 - x1, y2 - y1));
}

struct Lab
{
    float L, a, b;
};

QColor stripColour(QZEColorSlider::Mode mode, float t, const Lab& end)
{
    const float labAxis = (t - 0.5f) * QZEColor::s_LabRange;
    QZEColor c;
    switch (mode) {
    case QZEColorSlider::Hue:
        return QZEColor(t * 360.0f, 1.0f, 1.0f).getQColor();
    case QZEColorSlider::Saturation:
        return QZEColor(EndColour.h, t, EndColour.v).getGammaQColor();
    case QZEColorSlider::Value:
        return QZEColor(EndColour.h, EndColour.s, t).getQColor();
    case QZEColorSlider::Red:
        c.setRGB(t, 0.0f, 0.0f);
        break;
    case QZEColorSlider::Green:
        c.setRGB(0.0f, t, 0.0f);
        break;
    case QZEColorSlider::Blue:
        c.setRGB(0.0f, 0.0f, t);
        break;
    case QZEColorSlider::Lstar:
        c.LABtoHSV(t * 100.0f, end.a, end.b, c.h, c.s, c.v);
        break;
    case QZEColorSlider::Astar:
        c.LABtoHSV(end.L, labAxis, end.b, c.h, c.s, c.v);
        break;
    case QZEColorSlider::Bstar:
        c.LABtoHSV(end.L, end.a, labAxis, c.h, c.s, c.v);
        break;
    }
    return c.getQColor();
}

QColor columnColour(const Scene& scene, int x, int n, const Lab& end)
{
    if (scene.disabled)
        return QZEColor(0.0f, 0.0f, 0.1f + 0.4f * float(x - 1) / float(n)).getQColor();
    return stripColour(scene.mode, float(x - 1) / float(n), end);
}

void paintReferenceColumns(QPainter& painter, const Scene& scene)
{
    Lab end{};
    EndColour.HSVtoLAB(EndColour.h, EndColour.s, EndColour.v, end.L, end.a, end.b);
    const int n = Width - 2;
    for (int x = 1; x <= n - 1; ++x) {
        painter.setPen(columnColour(scene, x, n, end));
        painter.drawLine(x, 2, x, Height - 2);
    }
}

void paintBackground(QPainter& painter)
{
    painter.setPen(palettePen(QPalette::Button));
    painter.setBrush(QGuiApplication::palette().brush(QPalette::Button));
    outline(painter, 0, 0, Width - 1, Height - 1);
    painter.setBrush(Qt::NoBrush);
}

void paintBevel(QPainter& painter)
{
    painter.setPen(palettePen(QPalette::Light));
    outline(painter, 1, 1, Width - 3, Height - 3);
    painter.setPen(palettePen(QPalette::Midlight));
    outline(painter, 2, 2, Width - 2, Height - 2);
    painter.setPen(palettePen(QPalette::Shadow));
    outline(painter, 1, 1, Width - 2, Height - 2);
}

// The application font at the largest pixel size whose glyphs, drawn on
// baseline, keep to rows 3 .. H-2 (the text is short enough for 400 pixels).
QFont fontFittingRows(const QString& text, int baseline, const QPaintDevice* device)
{
    QFont font = QApplication::font();
    int size = font.pixelSize() > 0 ? font.pixelSize()
                                    : int(font.pointSizeF() * device->logicalDpiY() / 72.0);
    for (; size > 1; --size) {
        font.setPixelSize(size);
        const QRect ink = QFontMetrics(font, device).tightBoundingRect(text);
        if (baseline + ink.top() >= 3 && baseline + ink.bottom() <= Height - 2)
            break;
    }
    return font;
}

void paintDisabledText(QPainter& painter)
{
    const QString text =
        QCoreApplication::translate("QZEColorSlider", "Disabled, using photometric mode.");
    painter.setFont(fontFittingRows(text, Height - 4, painter.device()));
    painter.setPen(cosmeticPen(QColor(192, 192, 192)));
    painter.drawText(QPointF(5.0, Height - 4), text);
}

void paintHandle(QPainter& painter)
{
    const int c = int(float(Width - 5) * HandlePosition + 2.0);
    painter.setPen(palettePen(QPalette::Midlight));
    outline(painter, c - 2, 0, c + 1, Height - 2);
    painter.setPen(palettePen(QPalette::Highlight));
    outline(painter, c - 1, 1, c + 2, Height - 1);
    painter.setPen(palettePen(QPalette::Shadow));
    outline(painter, c - 2, 0, c + 2, Height - 1);
}

void paintReference(QPainter& painter, const Scene& scene)
{
    paintBackground(painter);
    paintReferenceColumns(painter, scene);
    paintBevel(painter);
    if (scene.disabled)
        paintDisabledText(painter);
    paintHandle(painter);
}

// --- Verification ------------------------------------------------------------

bool rendersLikeReference(const Scene& scene)
{
    QZEColorSlider slider;
    configure(slider, scene);
    QImage widgetImage = blankImage();
    slider.render(&widgetImage);

    QImage referenceImage = blankImage();
    QPainter painter(&referenceImage);
    paintReference(painter, scene);
    painter.end();
    return widgetImage == referenceImage;
}

// --- Benchmarks ----------------------------------------------------------------

// Renders widget once per iteration after change(widget, flip), where flip
// alternates between true and false.
template <typename Widget, typename Change>
void renderAlternating(benchmark::State& state, Widget& widget, Change change)
{
    QImage image = blankImage();
    bool flip = false;
    for (auto _ : state) {
        flip = !flip;
        change(widget, flip);
        widget.render(&image);
    }
}

void BM_SliderRepaint(benchmark::State& state, const Scene& scene)
{
    QZEColorSlider slider;
    configure(slider, scene);
    renderAlternating(state, slider, [](QZEColorSlider&, bool) {});
}

void BM_SliderHandleMove(benchmark::State& state, const Scene& scene)
{
    QZEColorSlider slider;
    configure(slider, scene);
    renderAlternating(state, slider, [](QZEColorSlider& s, bool flip) {
        s.setValue(flip ? OtherHandlePosition : HandlePosition, false);
    });
}

void BM_SliderStripChange(benchmark::State& state, const Scene& scene)
{
    QZEColorSlider slider;
    configure(slider, scene);
    renderAlternating(state, slider, [](QZEColorSlider& s, bool flip) {
        s.setMaxColor(flip ? OtherEndColour : EndColour);
    });
}

void BM_QSliderHandleMove(benchmark::State& state)
{
    const std::unique_ptr<QStyle> fusion(QStyleFactory::create(QStringLiteral("Fusion")));
    QSlider slider(Qt::Horizontal);
    slider.setStyle(fusion.get());
    slider.setRange(0, 1000);
    slider.resize(Width, Height);
    renderAlternating(state, slider, [](QSlider& s, bool flip) { s.setValue(flip ? 620 : 370); });
}

void BM_ReferencePerColumn(benchmark::State& state, const Scene& scene)
{
    QImage image = blankImage();
    for (auto _ : state) {
        QPainter painter(&image);
        paintReference(painter, scene);
    }
}

void registerBenchmarks(const std::vector<Scene>& scenes)
{
    registerInMicroseconds("QSliderHandleMove", BM_QSliderHandleMove);
    for (const Scene& scene : scenes) {
        registerInMicroseconds("SliderHandleMove/" + scene.name, BM_SliderHandleMove, scene);
        registerInMicroseconds("SliderStripChange/" + scene.name, BM_SliderStripChange, scene);
        registerInMicroseconds("SliderRepaint/" + scene.name, BM_SliderRepaint, scene);
        registerInMicroseconds("ReferencePerColumn/" + scene.name, BM_ReferencePerColumn, scene);
    }
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<Scene> scenes = allScenes();
    return runWidgetBenchmarks(
        argc, argv, [&scenes] { return allScenesPixelIdentical(scenes, rendersLikeReference); },
        [&scenes] { registerBenchmarks(scenes); });
}
