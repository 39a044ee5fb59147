#ifndef QZECOLORSLIDER_H
#define QZECOLORSLIDER_H

#include "QZEColor.h"

#include <QImage>
#include <QString>
#include <QWidget>

#include <array>

class QPainter;
class QZEEncodedBytes;

/// A horizontal gradient strip with a handle that shows one colour channel.
///
/// The position is a normalised float in [0, 1]; the mode says which channel it
/// stands for (HSV, RGB or L*a*b*) and getRealValue() gives it in the
/// channel's own unit. getColor() turns the value into a colour with the help
/// of the end colours minColor and maxColor; what the strip paints in each
/// mode is listed at Mode. Setters emit nothing except
/// setValue() and the end-colour slots; mouse gestures emit the value, colour
/// and string signals, right away with tracking on or once on release with
/// tracking off. While the caller fixes the colour by other means (photometric
/// mode, spectral data) the slider disables itself and paints a grey ramp with
/// an explanation, in the widget's font made small enough for the strip's
/// height and cut short with an ellipsis where the strip is too narrow for it.
///
/// Background, strip and bevel are kept in an image that is painted again only
/// when what they show changes (size, mode, enabled state, the end colour or
/// process-wide setting the strip reads, the application palette); moving the
/// handle repaints from that image.
///
/// Usage:
/// \code
/// auto* saturation = new QZEColorSlider(panel);
/// saturation->setMode(QZEColorSlider::Saturation);
/// saturation->setMinColor(QZEColor(200.0f, 0.0f, 0.8f)); // grey end
/// saturation->setMaxColor(QZEColor(200.0f, 1.0f, 0.8f)); // fully saturated end
/// saturation->setValue(0.5f, false);                     // no signals
/// QObject::connect(saturation, SIGNAL(colorChanged(QZEColor)),
///                  editor, SLOT(previewColor(QZEColor)));
/// \endcode
class QZEColorSlider : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(Mode mode READ getMode WRITE setMode)
    Q_PROPERTY(bool tracking MEMBER _tracking)

public:
    /// The channel the slider stands for, with the unit of getRealValue()
    /// and what the strip paints.
    enum Mode : qint32 {
        Hue,        ///< Hue, value * 359.99 degrees; the hue circle, fully saturated.
        Saturation, ///< Saturation 0..1 at maxColor's hue and value; sRGB-encoded strip.
        Value,      ///< HSV value 0..1; at maxColor's hue and saturation.
        Red,        ///< Red 0..1; black to pure red.
        Green,      ///< Green 0..1; black to pure green.
        Blue,       ///< Blue 0..1; black to pure blue.
        Lstar,      ///< L*, value * 100; at maxColor's a* and b*.
        Astar,      ///< a*, (value - 0.5) * QZEColor::s_LabRange; at maxColor's L* and b*.
        Bstar       ///< b*, (value - 0.5) * QZEColor::s_LabRange; at maxColor's L* and a*.
    };
    Q_ENUM(Mode)

    /// A horizontal hue slider at 0.5, tracking, from black to white. name is
    /// not used: the object name is always "QZEColorSlider".
    explicit QZEColorSlider(QWidget* parent = nullptr, const char* name = nullptr);
    /// As the other constructor, with the given orientation (which only
    /// changes sizeHint(): the strip is always painted horizontally).
    QZEColorSlider(Qt::Orientation orientation, QWidget* parent, const char* name);

    /// Resets mode (Hue), end colours (black, white), value (0.5), tracking
    /// (on) and the photometric and spectrum flags (off). Leaves the
    /// orientation as it is; neither repaints nor enables the widget again.
    void init();

    /// @{
    /// The orientation, which only changes sizeHint(). Plain accessors.
    void setOrientation(Qt::Orientation orientation) { _orientation = orientation; }
    Qt::Orientation orientation() const { return _orientation; }
    /// @}
    /// Whether mouse gestures emit on every move (true, the default) or once
    /// on release.
    void setTracking(bool on) { _tracking = on; }
    /// The normalised position, 0..1 (setValue() does not clamp it).
    float getValue() const { return _value; }
    /// The end colour at value 0: getColor() interpolates from it in the
    /// Saturation, Value and RGB modes and takes the other two components
    /// from it in the L*a*b* modes.
    QZEColor getMinColor() const { return _minColor; }
    /// The end colour at value 1: getColor() interpolates towards it in the
    /// Saturation, Value and RGB modes, and the strip takes its fixed
    /// components from it in the Saturation, Value and L*a*b* modes.
    QZEColor getMaxColor() const { return _maxColor; }
    /// @{
    /// The channel; a plain accessor (no repaint, no signal). The set...Mode()
    /// slots also repaint.
    void setMode(Mode mode) { _mode = mode; }
    Mode getMode() const { return _mode; }
    /// @}

    /// The colour the current value selects: in Hue mode the hue
    /// value * 359.999 at full saturation and value; in the L*a*b* modes
    /// minColor with the mode's component replaced; otherwise the linear RGB
    /// interpolation from minColor (0) to maxColor (1).
    QZEColor getColor() const;
    /// The value in the channel's unit: degrees for Hue (value * 359.99),
    /// value * 100 for L*, (value - 0.5) * QZEColor::s_LabRange for a* and b*,
    /// value itself otherwise.
    float getRealValue() const;
    /// getRealValue() with three decimals ("180.000", "-12.345").
    QString getValueAsString() const;
    /// x (pixels) as a position: x / width(), clamped to 0..1. The second
    /// argument is not used.
    float mapToFloat(int x, int) const;

    /// @{
    /// Whether the caller fixes the colour by photometric parameters or by
    /// spectral data. While either is on the slider is disabled and paints a
    /// grey ramp saying why; no signal is emitted by the change.
    void setPhotometricParameters(bool on);
    void setUseSpectrum(bool on);
    /// @}

    /// 62 pixels long and a small icon thick, along the orientation.
    QSize sizeHint() const override;

public slots:
    /// @{
    /// Sets the end colour at value 0 or 1 (see getMinColor()), emits
    /// minColorChanged() or maxColorChanged() and repaints; an equal colour
    /// (same hue, saturation and value) does nothing.
    void setMinColor(QZEColor color);
    void setMaxColor(QZEColor color);
    /// @}
    /// @{
    /// Sets an end colour from linear RGB (0..1); emits nothing and does not
    /// repaint.
    void setMinColor(float red, float green, float blue);
    void setMaxColor(float red, float green, float blue);
    /// @}
    /// Moves the handle to value (0..1, not clamped here) and repaints. With
    /// emitSignals it emits valueChanged(float), colorChanged() and
    /// valueChanged(QString), in that order. An unchanged value does nothing
    /// unless force is set.
    void setValue(float value, bool emitSignals = true, bool force = false);
    /// @{
    /// Switches to the named mode and repaints when on is true (for radio
    /// buttons' toggled signal); false, or the mode already set, does nothing.
    void setHueMode(bool on);
    void setSaturationMode(bool on);
    void setValueMode(bool on);
    void setLstarMode(bool on);
    void setAstarMode(bool on);
    void setBstarMode(bool on);
    /// @}
    /// @{
    /// As the other mode slots; entering the mode also sets the end colours to
    /// black and pure red, green or blue, without minColorChanged() or
    /// maxColorChanged().
    void setRedMode(bool on);
    void setGreenMode(bool on);
    void setBlueMode(bool on);
    /// @}

signals:
    /// setMinColor(QZEColor) stored a new end colour at value 0.
    void minColorChanged(QZEColor color);
    /// setMaxColor(QZEColor) stored a new end colour at value 1.
    void maxColorChanged(QZEColor color);
    /// The normalised value changed (0..1).
    void valueChanged(float value);
    /// The colour the value selects changed (getColor()).
    void colorChanged(QZEColor color);
    /// The value changed, as getValueAsString() shows it.
    void valueChanged(QString value);
    /// The left button went down on the slider.
    void sliderPressed();
    /// The handle was dragged to value (0..1).
    void sliderMoved(float value);
    /// The mouse button was released; without tracking the value signals
    /// come just before.
    void sliderReleased();

protected:
    /// Paints background, strip, bevel and handle.
    void paintEvent(QPaintEvent* event) override;
    /// @{
    /// The left button sets the value under the mouse (x / width, clamped);
    /// press emits sliderPressed(), moves sliderMoved(), and the value
    /// signals follow at once with tracking or on release without.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    /// @}

    /// Paints background, strip and bevel (and the disabled explanation),
    /// everything but the handle.
    void repaintSlider(QPainter& painter);

private:
    void setModeIfOn(bool on, Mode mode);
    void setPrimaryMode(bool on, Mode mode, float hue);
    void updateDisabledState();
    float mapEventToValue(const QMouseEvent* event) const;
    QRgb columnColor(float t, float L, float a, float b, const QZEEncodedBytes& bytes) const;
    int handleCentre() const;
    // What the strip shows besides the size: the mode, the enabled state, the
    // end colour and the process-wide settings of the conversions.
    using StripInputs = std::array<float, 10>;
    StripInputs stripInputs() const;
    void ensureBody();
    void drawBody(QPainter& painter);
    void drawColumns(QPainter& painter, bool enabled);
    void drawBevel(QPainter& painter) const;
    void drawHandle(QPainter& painter) const;
    QString disabledText() const;
    void drawDisabledText(QPainter& painter);

    Mode _mode = Hue;
    Qt::Orientation _orientation = Qt::Horizontal;
    QZEColor _minColor{0.0f, 0.0f, 0.0f};
    QZEColor _maxColor{0.0f, 0.0f, 1.0f};
    float _value = 0.5f;
    bool _tracking = true;
    bool _photometricParameters = false;
    bool _useSpectrum = false;
    QImage _strip; // reused between paints so a repaint allocates nothing
    QImage _body;  // background, strip and bevel as last painted
    StripInputs _bodyInputs{};
    qint64 _bodyPalette = 0;
};

#endif // QZECOLORSLIDER_H
