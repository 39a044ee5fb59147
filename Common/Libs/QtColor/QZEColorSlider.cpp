#include "QZEColorSlider.h"

#include "QZEEncodedBytes.h"
#include "QZEQtCompat.h"
#include "zePlatform.h"

#include <QFontMetrics>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QPalette>

#include <cstring>

namespace {

constexpr float HueRealScale = 359.99f;   // getRealValue, the read-out
constexpr float HueColorScale = 359.999f; // getColor; differs on purpose
constexpr int HintLength = 62;

// A one-pixel outline on the border of the box with corners (x1, y1) and
// (x2, y2), both included, drawn as four thin fills: the pixels of a cosmetic
// 1-pixel stroke at a fraction of its cost, and exact also where the box is
// clipped by the widget's edge. The box comes from the smaller and larger
// coordinates, not from QRect::normalized(), which flips a box given right to
// left differently in Qt 5 and Qt 6.
void drawOutline(QPainter& painter, const QColor& color, int x1, int y1, int x2, int y2)
{
    const QRect box(QPoint(qMin(x1, x2), qMin(y1, y2)), QPoint(qMax(x1, x2), qMax(y1, y2)));
    painter.fillRect(QRect(box.left(), box.top(), box.width(), 1), color);
    painter.fillRect(QRect(box.left(), box.bottom(), box.width(), 1), color);
    painter.fillRect(QRect(box.left(), box.top(), 1, box.height()), color);
    painter.fillRect(QRect(box.right(), box.top(), 1, box.height()), color);
}

QColor paletteColor(QPalette::ColorRole role)
{
    return QGuiApplication::palette().color(role);
}

// Below this the explanation could not be read; it is left out instead.
constexpr int SmallestTextPixels = 6;

int pixelSizeOf(const QFont& font, const QPaintDevice* device)
{
    if (font.pixelSize() > 0)
        return font.pixelSize();
    return int(font.pointSizeF() * device->logicalDpiY() / 72.0);
}

// The largest pixel size, up to the font's own, at which the glyphs of text
// drawn on the baseline keep to the rows top to bottom; 0 when not even the
// smallest readable size does.
int pixelSizeFittingRows(QFont font, const QString& text, int baseline, int top, int bottom,
                         const QPaintDevice* device)
{
    for (int size = pixelSizeOf(font, device); size >= SmallestTextPixels; --size) {
        font.setPixelSize(size);
        const QRect ink = QFontMetrics(font, device).tightBoundingRect(text);
        if (baseline + ink.top() >= top && baseline + ink.bottom() <= bottom)
            return size;
    }
    return 0;
}

} // namespace

QZEColorSlider::QZEColorSlider(QWidget* parent, const char* name)
    : QZEColorSlider(Qt::Horizontal, parent, name)
{
}

QZEColorSlider::QZEColorSlider(Qt::Orientation orientation, QWidget* parent, const char*)
    : QWidget(parent), _orientation(orientation)
{
    setObjectName(QStringLiteral("QZEColorSlider"));
    setAttribute(Qt::WA_OpaquePaintEvent); // paintEvent covers every pixel
}

void QZEColorSlider::init()
{
    _mode = Hue;
    _minColor = QZEColor(0.0f, 0.0f, 0.0f);
    _maxColor = QZEColor(0.0f, 0.0f, 1.0f);
    _value = 0.5f;
    _tracking = true;
    _photometricParameters = false;
    _useSpectrum = false;
}

QZEColor QZEColorSlider::getColor() const
{
    float L, a, b;
    switch (_mode) {
    case Hue:
        return QZEColor(_value * HueColorScale, 1.0f, 1.0f);
    case Lstar:
    case Astar:
    case Bstar: {
        _minColor.HSVtoLAB(_minColor.h, _minColor.s, _minColor.v, L, a, b);
        if (_mode == Lstar)
            L = _value * 100.0f;
        else if (_mode == Astar)
            a = (_value - 0.5f) * QZEColor::s_LabRange;
        else
            b = (_value - 0.5f) * QZEColor::s_LabRange;
        QZEColor color;
        color.LABtoHSV(L, a, b, color.h, color.s, color.v);
        return color;
    }
    default: {
        float r0, g0, b0, r1, g1, b1;
        _minColor.getRGB(r0, g0, b0);
        _maxColor.getRGB(r1, g1, b1);
        const float t = _value;
        return QZEColor::fromRGB((1.0f - t) * r0 + t * r1, (1.0f - t) * g0 + t * g1,
                                 (1.0f - t) * b0 + t * b1);
    }
    }
}

float QZEColorSlider::getRealValue() const
{
    switch (_mode) {
    case Hue:
        return _value * HueRealScale;
    case Lstar:
        return _value * 100.0f;
    case Astar:
    case Bstar:
        return (_value - 0.5f) * QZEColor::s_LabRange;
    default:
        return _value;
    }
}

QString QZEColorSlider::getValueAsString() const
{
    return QString::number(getRealValue(), 'f', 3);
}

float QZEColorSlider::mapToFloat(int x, int) const
{
    // Written without the division so a zero width cannot divide by zero; the
    // result is what the clamped x / width() gives (NaN and -inf count as 0).
    const int w = width();
    if (x <= 0)
        return 0.0f;
    if (x >= w)
        return 1.0f;
    return float(x) / float(w);
}

void QZEColorSlider::setPhotometricParameters(bool on)
{
    _photometricParameters = on;
    updateDisabledState();
}

void QZEColorSlider::setUseSpectrum(bool on)
{
    _useSpectrum = on;
    updateDisabledState();
}

void QZEColorSlider::updateDisabledState()
{
    blockSignals(true);
    setDisabled(_photometricParameters || _useSpectrum);
    blockSignals(false);
}

QSize QZEColorSlider::sizeHint() const
{
    if (_orientation == Qt::Horizontal)
        return QSize(HintLength, zePlatform::getSmallIconSizeY());
    return QSize(zePlatform::getSmallIconSizeX(), HintLength);
}

// --- Slots -------------------------------------------------------------------

void QZEColorSlider::setMinColor(QZEColor color)
{
    if (color == _minColor)
        return;
    _minColor = color;
    emit minColorChanged(color);
    repaint();
}

void QZEColorSlider::setMaxColor(QZEColor color)
{
    if (color == _maxColor)
        return;
    _maxColor = color;
    emit maxColorChanged(color);
    repaint();
}

void QZEColorSlider::setMinColor(float red, float green, float blue)
{
    _minColor = QZEColor::fromRGB(red, green, blue);
}

void QZEColorSlider::setMaxColor(float red, float green, float blue)
{
    _maxColor = QZEColor::fromRGB(red, green, blue);
}

void QZEColorSlider::setValue(float value, bool emitSignals, bool force)
{
    if (value == _value && !force)
        return;
    _value = value;
    if (emitSignals) {
        emit valueChanged(_value);
        emit colorChanged(getColor());
        emit valueChanged(getValueAsString());
    }
    repaint();
}

void QZEColorSlider::setModeIfOn(bool on, Mode mode)
{
    if (!on || _mode == mode)
        return;
    _mode = mode;
    update();
}

void QZEColorSlider::setPrimaryMode(bool on, Mode mode, float hue)
{
    if (!on || _mode == mode)
        return;
    _minColor = QZEColor(0.0f, 0.0f, 0.0f);
    _maxColor = QZEColor(hue, 1.0f, 1.0f);
    setModeIfOn(on, mode);
}

void QZEColorSlider::setHueMode(bool on) { setModeIfOn(on, Hue); }
void QZEColorSlider::setSaturationMode(bool on) { setModeIfOn(on, Saturation); }
void QZEColorSlider::setValueMode(bool on) { setModeIfOn(on, Value); }
void QZEColorSlider::setLstarMode(bool on) { setModeIfOn(on, Lstar); }
void QZEColorSlider::setAstarMode(bool on) { setModeIfOn(on, Astar); }
void QZEColorSlider::setBstarMode(bool on) { setModeIfOn(on, Bstar); }
void QZEColorSlider::setRedMode(bool on) { setPrimaryMode(on, Red, 0.0f); }
void QZEColorSlider::setGreenMode(bool on) { setPrimaryMode(on, Green, 120.0f); }
void QZEColorSlider::setBlueMode(bool on) { setPrimaryMode(on, Blue, 240.0f); }

// --- Mouse -------------------------------------------------------------------

float QZEColorSlider::mapEventToValue(const QMouseEvent* event) const
{
    return mapToFloat(qRound(QZEQtCompat::position(*event).x()), 0);
}

void QZEColorSlider::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    emit sliderPressed();
    setValue(mapEventToValue(event), _tracking, false);
}

void QZEColorSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() != Qt::LeftButton)
        return;
    setValue(mapEventToValue(event), _tracking, false);
    emit sliderMoved(_value);
}

void QZEColorSlider::mouseReleaseEvent(QMouseEvent*)
{
    if (!_tracking)
        setValue(_value, true, true);
    emit sliderReleased();
}

// --- Painting ----------------------------------------------------------------

void QZEColorSlider::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    repaintSlider(painter);
    drawHandle(painter);
}

void QZEColorSlider::repaintSlider(QPainter& painter)
{
    ensureBody();
    painter.drawImage(0, 0, _body);
    if (!isEnabled())
        drawDisabledText(painter);
}

// Conservative: the end colour and the process-wide settings count also in
// the modes whose strip does not read them. Hosts keep the end colour of such
// sliders as it is, so they repaint from the cache all the same.
QZEColorSlider::StripInputs QZEColorSlider::stripInputs() const
{
    return {float(_mode),
            isEnabled() ? 1.0f : 0.0f,
            _maxColor.h,
            _maxColor.s,
            _maxColor.v,
            QZEColor::s_useGamma ? 1.0f : 0.0f,
            QZEColor::s_LabRange,
            QZEColor::s_reference_white_X,
            QZEColor::s_reference_white_Y,
            QZEColor::s_reference_white_Z};
}

// Premultiplied and cleared first, so that a translucent palette brush blends
// over what lies below the widget as it would when painted directly.
void QZEColorSlider::ensureBody()
{
    const StripInputs inputs = stripInputs();
    const qint64 paletteKey = QGuiApplication::palette().cacheKey();
    if (_body.size() == size() && _bodyInputs == inputs && _bodyPalette == paletteKey)
        return;
    if (_body.size() != size())
        _body = QImage(size(), QImage::Format_ARGB32_Premultiplied);
    _bodyInputs = inputs;
    _bodyPalette = paletteKey;
    if (_body.isNull())
        return;
    _body.fill(Qt::transparent);
    QPainter painter(&_body);
    drawBody(painter);
}

void QZEColorSlider::drawBody(QPainter& painter)
{
    painter.fillRect(rect(), QGuiApplication::palette().brush(QPalette::Button));
    drawColumns(painter, isEnabled());
    drawBevel(painter);
}

// The strip is one vertical line per column x = 1 .. W-3 from y = 2 to
// y = H-2, both ends included. All lines of a column share one colour, so the
// columns are computed once into a row and the row is copied down: the pixels
// are those of the lines, for one blit instead of a pen change per column.
void QZEColorSlider::drawColumns(QPainter& painter, bool enabled)
{
    const int n = width() - 2;
    if (n < 2)
        return;
    const int top = qMin(2, height() - 2);
    const int bottom = qMax(2, height() - 2);
    const QSize size(n - 1, bottom - top + 1);
    if (_strip.size() != size)
        _strip = QImage(size, QImage::Format_RGB32);

    QRgb* row = reinterpret_cast<QRgb*>(_strip.scanLine(0));
    float L = 0.0f, a = 0.0f, b = 0.0f;
    if (_mode == Lstar || _mode == Astar || _mode == Bstar)
        _maxColor.HSVtoLAB(_maxColor.h, _maxColor.s, _maxColor.v, L, a, b);
    const QZEEncodedBytes& bytes = QZEEncodedBytes::table();
    for (int x = 1; x <= n - 1; ++x) {
        if (enabled) {
            const float t = float(x - 1) / float(n);
            row[x - 1] = columnColor(t, L, a, b, bytes);
        } else {
            const float grey = 0.1f + 0.4f * float(x - 1) / float(n);
            row[x - 1] = QZEColor(0.0f, 0.0f, grey).getQColor().rgb();
        }
    }
    const size_t rowBytes = size_t(size.width()) * sizeof(QRgb);
    for (int y = 1; y < size.height(); ++y)
        std::memcpy(_strip.scanLine(y), row, rowBytes);
    painter.drawImage(QPoint(1, top), _strip);
}

// The saturation strip is the only sRGB-encoded one; its bytes come from the
// table, which gives exactly those of getGammaQColor.
QRgb QZEColorSlider::columnColor(float t, float L, float a, float b,
                                 const QZEEncodedBytes& bytes) const
{
    QZEColor color;
    switch (_mode) {
    case Hue:
        return QZEColor(t * 360.0f, 1.0f, 1.0f).getQColor().rgb();
    case Saturation: {
        if (!QZEColor::s_useGamma)
            return QZEColor(_maxColor.h, t, _maxColor.v).getQColor().rgb();
        float r, g, bl;
        QZEColor::hsvToRgb(_maxColor.h, t, _maxColor.v, r, g, bl);
        return qRgb(bytes.byteOf(r), bytes.byteOf(g), bytes.byteOf(bl));
    }
    case Value:
        return QZEColor(_maxColor.h, _maxColor.s, t).getQColor().rgb();
    case Red:
        return QZEColor::fromRGB(t, 0.0f, 0.0f).getQColor().rgb();
    case Green:
        return QZEColor::fromRGB(0.0f, t, 0.0f).getQColor().rgb();
    case Blue:
        return QZEColor::fromRGB(0.0f, 0.0f, t).getQColor().rgb();
    case Lstar:
        color.LABtoHSV(t * 100.0f, a, b, color.h, color.s, color.v);
        break;
    case Astar:
        color.LABtoHSV(L, (t - 0.5f) * QZEColor::s_LabRange, b, color.h, color.s, color.v);
        break;
    case Bstar:
        color.LABtoHSV(L, a, (t - 0.5f) * QZEColor::s_LabRange, color.h, color.s, color.v);
        break;
    }
    return color.getQColor().rgb();
}

void QZEColorSlider::drawBevel(QPainter& painter) const
{
    const int w = width();
    const int h = height();
    drawOutline(painter, paletteColor(QPalette::Light), 1, 1, w - 3, h - 3);
    drawOutline(painter, paletteColor(QPalette::Midlight), 2, 2, w - 2, h - 2);
    drawOutline(painter, paletteColor(QPalette::Shadow), 1, 1, w - 2, h - 2);
}

QString QZEColorSlider::disabledText() const
{
    if (_photometricParameters)
        return tr("Disabled, using photometric mode.");
    if (_useSpectrum)
        return tr("Disabled, using spectral data.");
    return QString();
}

// The text starts at (5, H - 4) on its baseline. It is drawn in the widget's
// font, made smaller until its glyphs keep below the bevel's top edge (row 3
// on) and within the strip's last row (H - 2), and cut short with an ellipsis
// where it would run into the strip's light edge (column W - 3). A glyph's
// ink ends within its advance, which the ellipsis bounds.
void QZEColorSlider::drawDisabledText(QPainter& painter)
{
    const QString text = disabledText();
    if (text.isEmpty())
        return;
    const int left = 5;
    const int baseline = height() - 4;
    QFont fitted = font();
    const int size = pixelSizeFittingRows(fitted, text, baseline, 3, height() - 2, this);
    if (size == 0)
        return;
    fitted.setPixelSize(size);
    const int room = width() - 3 - left; // columns left to W - 4
    if (room <= 0)
        return;
    const QString shown = QFontMetrics(fitted, this).elidedText(text, Qt::ElideRight, room);
    if (shown.isEmpty())
        return;
    painter.save();
    painter.setFont(fitted);
    painter.setPen(QColor(192, 192, 192));
    painter.drawText(QPointF(left, baseline), shown);
    painter.restore();
}

int QZEColorSlider::handleCentre() const
{
    // setValue() takes any float; keep the cast defined for NaN and huge values.
    const double centre = double(float(width() - 5) * _value) + 2.0;
    if (!(centre > -1.0e6))
        return centre < 0.0 ? -1000000 : 2;
    return centre < 1.0e6 ? int(centre) : 1000000;
}

void QZEColorSlider::drawHandle(QPainter& painter) const
{
    const int h = height();
    const int c = handleCentre();
    drawOutline(painter, paletteColor(QPalette::Midlight), c - 2, 0, c + 1, h - 2);
    drawOutline(painter, paletteColor(QPalette::Highlight), c - 1, 1, c + 2, h - 1);
    drawOutline(painter, paletteColor(QPalette::Shadow), c - 2, 0, c + 2, h - 1);
}
