#include "QZEColorField.h"

#include "QZEEncodedBytes.h"
#include "QZEQtCompat.h"
#include "zePlatform.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <vector>

#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#include <immintrin.h>
#define QZE_CLEAR_UPPER_VECTOR_HALVES 1
#endif

namespace {

using Mode = QZEColorField::Mode;

// The three component families; a mode's family is mode / 3 and the slot of
// its fixed component within the family is mode % 3.
enum Family { HsvFamily, RgbFamily, LabFamily };

constexpr float HueScale = 359.99f; // the hue read-out of the colour slider
constexpr int PlaneHint = 256;
constexpr int MinimumPlane = 64;
constexpr int MarkerRadius = 5;
constexpr int LargeKeyStep = 10;

// Component names in mode order, for the accessible description.
const char* const ComponentNames[] = {
    QT_TRANSLATE_NOOP("QZEColorField", "hue"),   QT_TRANSLATE_NOOP("QZEColorField", "saturation"),
    QT_TRANSLATE_NOOP("QZEColorField", "value"), QT_TRANSLATE_NOOP("QZEColorField", "red"),
    QT_TRANSLATE_NOOP("QZEColorField", "green"), QT_TRANSLATE_NOOP("QZEColorField", "blue"),
    QT_TRANSLATE_NOOP("QZEColorField", "L*"),    QT_TRANSLATE_NOOP("QZEColorField", "a*"),
    QT_TRANSLATE_NOOP("QZEColorField", "b*"),
};

Family familyOf(Mode mode)
{
    return Family(int(mode) / 3);
}

int fixedSlot(Mode mode)
{
    return int(mode) % 3;
}

// The family slots shown along x and along y: the two that the fixed slot
// leaves free, in family order.
constexpr int xSlotBeside(int fixed)
{
    return fixed == 0 ? 1 : 0;
}

constexpr int ySlotBeside(int fixed)
{
    return fixed == 2 ? 1 : 2;
}

int xSlotOf(Mode mode)
{
    return xSlotBeside(fixedSlot(mode));
}

int ySlotOf(Mode mode)
{
    return ySlotBeside(fixedSlot(mode));
}

// A 0..1 position along the axis of component (a mode number) in its unit.
float toComponent(int component, float position)
{
    switch (Mode(component)) {
    case QZEColorField::Hue:
        return position * HueScale;
    case QZEColorField::Lstar:
        return position * 100.0f;
    case QZEColorField::Astar:
    case QZEColorField::Bstar:
        return (position - 0.5f) * QZEColor::s_LabRange;
    default:
        return position;
    }
}

float toPosition(int component, float value)
{
    switch (Mode(component)) {
    case QZEColorField::Hue:
        return value / HueScale;
    case QZEColorField::Lstar:
        return value / 100.0f;
    case QZEColorField::Astar:
    case QZEColorField::Bstar:
        return value / QZEColor::s_LabRange + 0.5f;
    default:
        return value;
    }
}

float clampedPosition(int component, float value)
{
    const float position = toPosition(component, value);
    return position > 0.0f ? (position < 1.0f ? position : 1.0f) : 0.0f; // NaN gives 0
}

// Pixel i of n along an axis; the last pixel is position 1.
float pixelPosition(int i, int n)
{
    return n > 1 ? float(i) / float(n - 1) : 0.0f;
}

void familyValues(Family family, const QZEColor& color, float values[3])
{
    switch (family) {
    case HsvFamily:
        values[0] = color.h;
        values[1] = color.s;
        values[2] = color.v;
        break;
    case RgbFamily:
        color.getRGB(values[0], values[1], values[2]);
        break;
    case LabFamily:
        color.HSVtoLAB(color.h, color.s, color.v, values[0], values[1], values[2]);
        break;
    }
}

template <Family F>
inline QZEColor colorFromFamily(float v0, float v1, float v2)
{
    if constexpr (F == HsvFamily) {
        return QZEColor(v0, v1, v2);
    } else if constexpr (F == RgbFamily) {
        return QZEColor::fromRGB(v0, v1, v2);
    } else {
        QZEColor color;
        color.LABtoHSV(v0, v1, v2, color.h, color.s, color.v);
        return color;
    }
}

QZEColor colorFromFamily(Family family, const float values[3])
{
    switch (family) {
    case RgbFamily:
        return colorFromFamily<RgbFamily>(values[0], values[1], values[2]);
    case LabFamily:
        return colorFromFamily<LabFamily>(values[0], values[1], values[2]);
    default:
        return colorFromFamily<HsvFamily>(values[0], values[1], values[2]);
    }
}

// GCC turns the rows of the hue and saturation planes into vector code only
// at -O3 and when it may assume that float comparisons do not trap (no result
// changes); the pixel functions they call must then be inlined regardless.
#if defined(__GNUC__) && !defined(__clang__)
#define QZE_VECTORISED_LOOP __attribute__((optimize("O3", "no-trapping-math")))
#define QZE_ALWAYS_INLINE inline __attribute__((always_inline))
#else
#define QZE_VECTORISED_LOOP
#define QZE_ALWAYS_INLINE inline
#endif

// Channel to byte exactly as QZEColor::toByte, written without branches so
// that a row of them compiles to vector code.
QZE_ALWAYS_INLINE int displayByte(float c)
{
    const float low = c > 0.0f ? c : 0.0f; // NaN gives 0
    return int((low < 1.0f ? low : 1.0f) * 255.0f);
}

QZE_ALWAYS_INLINE QRgb displayPixel(float r, float g, float b)
{
    return qRgb(displayByte(r), displayByte(g), displayByte(b));
}

// A linear colour as its HSV form shows it sRGB-encoded: the channels go
// through HSV and back, as every colour of the library does.
inline QRgb encodedPixel(float r, float g, float b, const QZEEncodedBytes& bytes)
{
    QZEColor::fromRGB(r, g, b).getRGB(r, g, b);
    return qRgb(bytes.byteOf(r), bytes.byteOf(g), bytes.byteOf(b));
}

// The components along one axis of n pixels, in the unit of component; with
// upwards, index 0 is the far end (the top row of the plane).
std::vector<float> axisComponents(int component, int n, bool upwards)
{
    std::vector<float> values(size_t(std::max(n, 0)));
    for (int i = 0; i < n; ++i)
        values[size_t(i)] = toComponent(component, pixelPosition(upwards ? n - 1 - i : i, n));
    return values;
}

QRgb* planeLine(QImage& plane, int y)
{
    return reinterpret_cast<QRgb*>(plane.scanLine(y));
}

// The plane of the value mode or an RGB mode, whose family is F and whose
// fixed component sits in slot Fixed, one colour per pixel. The slots are compile-time constants so
// that the components stay in registers.
template <Family F, int Fixed>
void fillPlane(QImage& plane, float fixed)
{
    constexpr int X = xSlotBeside(Fixed);
    constexpr int Y = ySlotBeside(Fixed);
    const std::vector<float> columns = axisComponents(F * 3 + X, plane.width(), false);
    const std::vector<float> rows = axisComponents(F * 3 + Y, plane.height(), true);
    float values[3];
    values[Fixed] = fixed;
    for (int y = 0; y < plane.height(); ++y) {
        values[Y] = rows[size_t(y)];
        QRgb* line = planeLine(plane, y);
        for (int x = 0; x < plane.width(); ++x) {
            values[X] = columns[size_t(x)];
            float r, g, b;
            colorFromFamily<F>(values[0], values[1], values[2]).getRGB(r, g, b);
            line[x] = displayPixel(r, g, b);
        }
    }
}

// Channels of a row, one array per channel.
struct ChannelRows
{
    explicit ChannelRows(int n) : r(size_t(n)), g(size_t(n)), b(size_t(n)) {}
    std::vector<float> r, g, b;
};

QZE_VECTORISED_LOOP void fillScaledRow(QRgb* line, const ChannelRows& unit, float value, int w)
{
    const float* r = unit.r.data();
    const float* g = unit.g.data();
    const float* b = unit.b.data();
    for (int x = 0; x < w; ++x)
        line[x] = displayPixel(r[x] * value, g[x] * value, b[x] * value);
}

// The hue and saturation planes, whose value runs along y. Every channel
// hsvToRgb gives ends in a product with the value (or is the value), so it is
// exactly the channel at value 1 times the value: one hsvToRgb per column
// serves every row, and a row is three products and bytes per pixel.
template <int Fixed>
void fillPlaneScaledByValue(QImage& plane, float fixed)
{
    static_assert(Fixed != 2, "the value must run along y");
    const int w = plane.width();
    const std::vector<float> columns = axisComponents(xSlotBeside(Fixed), w, false);
    const std::vector<float> rows = axisComponents(ySlotBeside(Fixed), plane.height(), true);
    ChannelRows unit(w);
    for (int x = 0; x < w; ++x) {
        const float hue = Fixed == 0 ? fixed : columns[size_t(x)];
        const float sat = Fixed == 0 ? columns[size_t(x)] : fixed;
        QZEColor::hsvToRgb(hue, sat, 1.0f, unit.r[size_t(x)], unit.g[size_t(x)], unit.b[size_t(x)]);
    }
    for (int y = 0; y < plane.height(); ++y)
        fillScaledRow(planeLine(plane, y), unit, rows[size_t(y)], w);
}

// labFInverse of QZEColor, which keeps it private; the planes must follow
// LABtoHSV operation by operation to give the same pixels.
inline float labFInverse(float t)
{
    return t > 0.20689656f ? t * t * t : (t - 0.13793103f) * 0.12841856f;
}

float labFy(float L)
{
    return (L + 16.0f) / 116.0f;
}

float labFx(float a, float fy)
{
    return a / 500.0f + fy;
}

float labFz(float b, float fy)
{
    return fy - b / 200.0f;
}

// Terms of the XYZ -> linear RGB matrix products, row c of the matrix, in the
// order LABtoHSV sums them: (m0 X + m1 Y) + m2 Z.
inline float xyTerm(int c, float X, float Y)
{
    using QZEColorMatrix::XYZtoRGB;
    return XYZtoRGB[c][0] * X + XYZtoRGB[c][1] * Y;
}

inline float zTerm(int c, float Z)
{
    return QZEColorMatrix::XYZtoRGB[c][2] * Z;
}

// The L* plane: Y is the same everywhere, X depends on the column and Z on the
// row, so a pixel is three sums of a column term and a row term.
void fillLstarPlane(QImage& plane, float L)
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    const int w = plane.width();
    const std::vector<float> as = axisComponents(QZEColorField::Astar, w, false);
    const std::vector<float> bs = axisComponents(QZEColorField::Bstar, plane.height(), true);
    const float fy = labFy(L);
    const float Y = QZEColor::s_reference_white_Y * labFInverse(fy);
    ChannelRows xy(w);
    for (int x = 0; x < w; ++x) {
        const float X = QZEColor::s_reference_white_X * labFInverse(labFx(as[size_t(x)], fy));
        xy.r[size_t(x)] = xyTerm(0, X, Y);
        xy.g[size_t(x)] = xyTerm(1, X, Y);
        xy.b[size_t(x)] = xyTerm(2, X, Y);
    }
    for (int y = 0; y < plane.height(); ++y) {
        const float Z = QZEColor::s_reference_white_Z * labFInverse(labFz(bs[size_t(y)], fy));
        const float zr = zTerm(0, Z), zg = zTerm(1, Z), zb = zTerm(2, Z);
        QRgb* line = planeLine(plane, y);
        for (int x = 0; x < w; ++x)
            line[x] = encodedPixel(xy.r[size_t(x)] + zr, xy.g[size_t(x)] + zg, xy.b[size_t(x)] + zb,
                                   bytes);
    }
}

// The a* plane: L* runs along x, so X and Y depend on the column alone and
// only Z needs the row too.
void fillAstarPlane(QImage& plane, float a)
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    const int w = plane.width();
    const std::vector<float> Ls = axisComponents(QZEColorField::Lstar, w, false);
    const std::vector<float> bs = axisComponents(QZEColorField::Bstar, plane.height(), true);
    std::vector<float> fys(size_t(w), 0.0f);
    ChannelRows xy(w);
    for (int x = 0; x < w; ++x) {
        const float fy = labFy(Ls[size_t(x)]);
        const float X = QZEColor::s_reference_white_X * labFInverse(labFx(a, fy));
        const float Y = QZEColor::s_reference_white_Y * labFInverse(fy);
        fys[size_t(x)] = fy;
        xy.r[size_t(x)] = xyTerm(0, X, Y);
        xy.g[size_t(x)] = xyTerm(1, X, Y);
        xy.b[size_t(x)] = xyTerm(2, X, Y);
    }
    for (int y = 0; y < plane.height(); ++y) {
        const float b = bs[size_t(y)];
        QRgb* line = planeLine(plane, y);
        for (int x = 0; x < w; ++x) {
            const float Z = QZEColor::s_reference_white_Z * labFInverse(labFz(b, fys[size_t(x)]));
            line[x] = encodedPixel(xy.r[size_t(x)] + zTerm(0, Z), xy.g[size_t(x)] + zTerm(1, Z),
                                   xy.b[size_t(x)] + zTerm(2, Z), bytes);
        }
    }
}

// The b* plane: L* runs along x, so Y and Z depend on the column alone and
// only X needs the row too.
void fillBstarPlane(QImage& plane, float b)
{
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    const int w = plane.width();
    const std::vector<float> Ls = axisComponents(QZEColorField::Lstar, w, false);
    const std::vector<float> as = axisComponents(QZEColorField::Astar, plane.height(), true);
    std::vector<float> fys(size_t(w), 0.0f);
    std::vector<float> Ys(size_t(w), 0.0f);
    ChannelRows z(w);
    for (int x = 0; x < w; ++x) {
        const float fy = labFy(Ls[size_t(x)]);
        const float Z = QZEColor::s_reference_white_Z * labFInverse(labFz(b, fy));
        fys[size_t(x)] = fy;
        Ys[size_t(x)] = QZEColor::s_reference_white_Y * labFInverse(fy);
        z.r[size_t(x)] = zTerm(0, Z);
        z.g[size_t(x)] = zTerm(1, Z);
        z.b[size_t(x)] = zTerm(2, Z);
    }
    for (int y = 0; y < plane.height(); ++y) {
        const float a = as[size_t(y)];
        QRgb* line = planeLine(plane, y);
        for (int x = 0; x < w; ++x) {
            const float X = QZEColor::s_reference_white_X * labFInverse(labFx(a, fys[size_t(x)]));
            const float Y = Ys[size_t(x)];
            line[x] = encodedPixel(xyTerm(0, X, Y) + z.r[size_t(x)], xyTerm(1, X, Y) + z.g[size_t(x)],
                                   xyTerm(2, X, Y) + z.b[size_t(x)], bytes);
        }
    }
}

// Some of Qt's AVX routines (QImage::fill among them) return with the upper
// halves of the vector registers still in use. Until they are cleared, the
// scalar SSE code of the plane runs about three times slower on some
// processors, so they are cleared before each plane.
#ifdef QZE_CLEAR_UPPER_VECTOR_HALVES
__attribute__((target("avx"))) void zeroUpperHalves()
{
    _mm256_zeroupper();
}

void clearUpperVectorHalves()
{
    if (__builtin_cpu_supports("avx"))
        zeroUpperHalves();
}
#else
void clearUpperVectorHalves() {}
#endif

QZEColor inOtherForm(const QZEColor& color, bool toLinear)
{
    float r, g, b;
    color.getRGB(r, g, b);
    QZEColor converted;
    if (toLinear) {
        converted.setGammaRGB(r, g, b);
    } else {
        color.getGammaRGB(r, g, b);
        converted.setRGB(r, g, b);
    }
    if (converted.s == 0.0f)
        converted.h = color.h;
    return converted;
}

} // namespace

QZEColorField::QZEColorField(QWidget* parent, const char*) : QWidget(parent)
{
    setObjectName(QStringLiteral("QZEColorField"));
    setAttribute(Qt::WA_OpaquePaintEvent); // the plane covers every pixel
    setFocusPolicy(Qt::StrongFocus);
    setAccessibleName(tr("Colour field"));
    describeAxes();
}

void QZEColorField::setMode(Mode mode)
{
    if (isLabMode(mode) != isLabMode(_mode))
        _color = inOtherForm(_color, isLabMode(mode));
    _mode = mode;
    familyValues(familyOf(mode), _color, _components);
    describeAxes();
    update();
}

QPointF QZEColorField::getMarkerPosition() const
{
    const int base = int(familyOf(_mode)) * 3;
    const int xSlot = xSlotOf(_mode);
    const int ySlot = ySlotOf(_mode);
    const float x = clampedPosition(base + xSlot, _components[xSlot]);
    const float y = clampedPosition(base + ySlot, _components[ySlot]);
    return QPointF(double(x) * (width() - 1), double(1.0f - y) * (height() - 1));
}

void QZEColorField::computePlane(Mode mode, float fixed, QImage& plane)
{
    using Fill = void (*)(QImage&, float);
    static constexpr Fill fillByMode[] = {
        fillPlaneScaledByValue<0>, fillPlaneScaledByValue<1>, fillPlane<HsvFamily, 2>,
        fillPlane<RgbFamily, 0>,   fillPlane<RgbFamily, 1>,   fillPlane<RgbFamily, 2>,
        fillLstarPlane,            fillAstarPlane,            fillBstarPlane,
    };
    clearUpperVectorHalves();
    fillByMode[int(mode)](plane, fixed);
}

QSize QZEColorField::sizeHint() const
{
    return QSize(int(PlaneHint * zePlatform::getDpiScaleX()), int(PlaneHint * zePlatform::getDpiScaleY()));
}

QSize QZEColorField::minimumSizeHint() const
{
    return QSize(int(MinimumPlane * zePlatform::getDpiScaleX()),
                 int(MinimumPlane * zePlatform::getDpiScaleY()));
}

// --- Slots -------------------------------------------------------------------

void QZEColorField::setModeIfOn(bool on, Mode mode)
{
    if (on && mode != _mode)
        setMode(mode);
}

void QZEColorField::setHueMode(bool on) { setModeIfOn(on, Hue); }
void QZEColorField::setSaturationMode(bool on) { setModeIfOn(on, Saturation); }
void QZEColorField::setValueMode(bool on) { setModeIfOn(on, Value); }
void QZEColorField::setRedMode(bool on) { setModeIfOn(on, Red); }
void QZEColorField::setGreenMode(bool on) { setModeIfOn(on, Green); }
void QZEColorField::setBlueMode(bool on) { setModeIfOn(on, Blue); }
void QZEColorField::setLstarMode(bool on) { setModeIfOn(on, Lstar); }
void QZEColorField::setAstarMode(bool on) { setModeIfOn(on, Astar); }
void QZEColorField::setBstarMode(bool on) { setModeIfOn(on, Bstar); }

// The colour the field gave, written back, comes as its channels; the hue
// derived from them again would differ in the last bits and make the field
// compute its plane anew for a plane that looks the same.
void QZEColorField::setRGB(float r, float g, float b)
{
    if (holdsChannels(r, g, b))
        return;
    const float rgb[3] = {r, g, b};
    holdColor(QZEColor::fromRGB(r, g, b), rgb, RgbFamily);
}

bool QZEColorField::holdsChannels(float r, float g, float b) const
{
    float held[3];
    _color.getRGB(held[0], held[1], held[2]);
    return held[0] == r && held[1] == g && held[2] == b;
}

void QZEColorField::setHue(float h)
{
    QZEColor color = _color;
    color.h = h;
    holdColor(color, nullptr, HsvFamily);
}

void QZEColorField::setLab(float L, float a, float b)
{
    const float lab[3] = {L, a, b};
    QZEColor color;
    color.LABtoHSV(L, a, b, color.h, color.s, color.v);
    holdColor(color, lab, LabFamily);
}

// Stores color and derives the mode's components from it, or takes them as
// given when they are of the mode's family, so that they are not bent by a
// round trip through HSV. A colour without hue keeps the field's hue.
void QZEColorField::holdColor(const QZEColor& color, const float* values, int family)
{
    const QRect previousMarker = markerRect();
    const float previousFixed = getFixedValue();
    const float previousHue = _color.h;
    _color = color;
    if (_color.s == 0.0f)
        _color.h = previousHue;
    if (values && family == familyOf(_mode))
        std::copy(values, values + 3, _components);
    else
        familyValues(familyOf(_mode), _color, _components);
    if (getFixedValue() != previousFixed)
        update();
    else
        updateAround(previousMarker);
}

// --- Gestures ----------------------------------------------------------------

void QZEColorField::pickPixel(int x, int y)
{
    x = qBound(0, x, width() - 1);
    y = qBound(0, y, height() - 1);
    const QRect previousMarker = markerRect();
    setAxisPosition(xSlotOf(_mode), pixelPosition(x, width()));
    setAxisPosition(ySlotOf(_mode), pixelPosition(height() - 1 - y, height()));
    emitPickedColor(previousMarker);
}

void QZEColorField::setAxisPosition(int slot, float position)
{
    _components[slot] = toComponent(int(familyOf(_mode)) * 3 + slot, position);
}

void QZEColorField::emitPickedColor(const QRect& previousMarker)
{
    _color = colorFromFamily(familyOf(_mode), _components);
    updateAround(previousMarker);
    emit colorChanged(_color);
}

void QZEColorField::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    pickPixel(qRound(QZEQtCompat::position(*event).x()), qRound(QZEQtCompat::position(*event).y()));
}

void QZEColorField::mouseMoveEvent(QMouseEvent* event)
{
    if (!(event->buttons() & Qt::LeftButton)) {
        QWidget::mouseMoveEvent(event);
        return;
    }
    const QPoint pixel(qRound(QZEQtCompat::position(*event).x()), qRound(QZEQtCompat::position(*event).y()));
    const QPointF marker = getMarkerPosition();
    const QPoint bounded(qBound(0, pixel.x(), width() - 1), qBound(0, pixel.y(), height() - 1));
    if (QPointF(bounded) != marker)
        pickPixel(pixel.x(), pixel.y());
}

// The arrow keys move the marker by one pixel (ten with Shift) along one axis,
// keeping the other component as it is.
void QZEColorField::keyPressEvent(QKeyEvent* event)
{
    int dx = 0;
    int dy = 0;
    switch (event->key()) {
    case Qt::Key_Left: dx = -1; break;
    case Qt::Key_Right: dx = 1; break;
    case Qt::Key_Up: dy = -1; break;
    case Qt::Key_Down: dy = 1; break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    const int step = event->modifiers() & Qt::ShiftModifier ? LargeKeyStep : 1;
    const QPointF marker = getMarkerPosition();
    const int x = qBound(0, qRound(marker.x()) + dx * step, width() - 1);
    const int y = qBound(0, qRound(marker.y()) + dy * step, height() - 1);
    const bool alongX = dx != 0;
    if ((alongX ? double(x) - marker.x() : double(y) - marker.y()) == 0.0)
        return; // at the edge already

    const QRect previousMarker = markerRect();
    if (alongX)
        setAxisPosition(xSlotOf(_mode), pixelPosition(x, width()));
    else
        setAxisPosition(ySlotOf(_mode), pixelPosition(height() - 1 - y, height()));
    emitPickedColor(previousMarker);
}

// --- Painting ----------------------------------------------------------------

void QZEColorField::ensurePlane()
{
    if (_plane.size() == size() && _planeMode == _mode && _planeFixed == getFixedValue())
        return;
    if (_plane.size() != size())
        _plane = QImage(size(), QImage::Format_RGB32);
    _planeMode = _mode;
    _planeFixed = getFixedValue();
    computePlane(_mode, _planeFixed, _plane);
    ++_planeComputations;
}

void QZEColorField::paintEvent(QPaintEvent*)
{
    if (width() <= 0 || height() <= 0)
        return;
    ensurePlane();
    QPainter painter(this);
    painter.drawImage(0, 0, _plane);
    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), 1.0, Qt::DotLine));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
    painter.setRenderHint(QPainter::Antialiasing);
    const QPointF centre = getMarkerPosition() + QPointF(0.5, 0.5);
    painter.setPen(QPen(Qt::black, 1.0));
    painter.drawEllipse(centre, MarkerRadius, MarkerRadius);
    painter.setPen(QPen(Qt::white, 1.0));
    painter.drawEllipse(centre, MarkerRadius - 1, MarkerRadius - 1);
}

QRect QZEColorField::markerRect() const
{
    const QPoint centre = getMarkerPosition().toPoint();
    const int reach = MarkerRadius + 2;
    return QRect(centre - QPoint(reach, reach), centre + QPoint(reach, reach));
}

void QZEColorField::updateAround(const QRect& previousMarker)
{
    update(previousMarker.united(markerRect()));
}

void QZEColorField::describeAxes()
{
    const int base = int(familyOf(_mode)) * 3;
    const auto name = [base](int slot) { return tr(ComponentNames[base + slot]); };
    setAccessibleDescription(tr("%1 from left to right, %2 from bottom to top, at a fixed %3")
                                 .arg(name(xSlotOf(_mode)), name(ySlotOf(_mode)),
                                      name(fixedSlot(_mode))));
}
