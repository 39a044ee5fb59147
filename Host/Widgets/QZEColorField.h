#ifndef QZECOLORFIELD_H
#define QZECOLORFIELD_H

#include "QZEColor.h"

#include <QImage>
#include <QWidget>

/// A two-dimensional colour field: one plane of a colour space, picked with the
/// mouse or moved with the arrow keys.
///
/// The mode fixes one component (the same numbering as the colour slider:
/// hue, saturation, value, red, green, blue, L*, a*, b*) and the plane shows
/// the other two of its family, the first along x from left to right and the
/// second along y from bottom to top: saturation by value in hue mode, hue by
/// value in saturation mode, green by blue in red mode, a* by b* in L* mode,
/// L* by a* in b* mode, and so on. Component units are those of the slider:
/// hue 0..359.99 degrees, L* 0..100, a* and b* (p - 0.5) * QZEColor::s_LabRange,
/// all others 0..1. The left and bottom pixels are 0 on their axis, the right
/// and top pixels 1.
///
/// The colour the field holds, emits and is set to is in the form of its mode:
/// display (sRGB-encoded) values in the HSV and RGB modes, linear values in the
/// L*a*b* modes. The L*a*b* planes are therefore shown sRGB-encoded, the HSV and
/// RGB planes as they stand; every pixel shows exactly the colour a pick there
/// emits. A mode change converts the held colour between the two forms.
///
/// A left-button press or drag picks the pixel under the mouse; the arrow keys
/// move the marker one pixel (ten with Shift). Either emits colorChanged().
/// The plane is kept in an image that is recomputed only when the mode, the
/// fixed component or the size changes; moving the marker repaints the marker
/// alone. Setters and slots emit nothing; only mouse and key gestures emit
/// colorChanged().
///
/// Usage:
/// \code
/// auto* field = new QZEColorField(panel);
/// field->setMode(QZEColorField::Hue);  // saturation by value at a fixed hue
/// field->setHue(200.0f);               // degrees
/// QObject::connect(field, SIGNAL(colorChanged(QZEColor)),
///                  editor, SLOT(showDisplayColor(QZEColor)));
/// \endcode
class QZEColorField : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Mode mode READ getMode WRITE setMode)

public:
    /// The component the plane keeps fixed; the numbering is the colour
    /// slider's. mode / 3 is the family (HSV, RGB, L*a*b*), mode % 3 the
    /// fixed component's place in it.
    enum Mode : qint32 {
        Hue,        ///< Fixed hue (degrees); saturation along x, value along y.
        Saturation, ///< Fixed saturation; hue along x, value along y.
        Value,      ///< Fixed value; hue along x, saturation along y.
        Red,        ///< Fixed red; green along x, blue along y.
        Green,      ///< Fixed green; red along x, blue along y.
        Blue,       ///< Fixed blue; red along x, green along y.
        Lstar,      ///< Fixed L* (0..100); a* along x, b* along y.
        Astar,      ///< Fixed a*; L* along x, b* along y.
        Bstar       ///< Fixed b*; L* along x, a* along y.
    };
    Q_ENUM(Mode)

    /// A hue-mode field holding full red (hue 0, saturation 1, value 1),
    /// taking keyboard focus on click and tab. name is not used: the object
    /// name is always "QZEColorField".
    explicit QZEColorField(QWidget* parent = nullptr, const char* name = nullptr);

    /// The component the plane keeps fixed.
    Mode getMode() const { return _mode; }
    /// Switches the fixed component. Between an HSV or RGB mode and an
    /// L*a*b* mode the held colour is converted between display and linear
    /// form (a grey keeps its hue). Always schedules a repaint, also when the
    /// mode stays the same. Emits nothing.
    void setMode(Mode mode);

    /// The colour under the marker, in the form of the current mode.
    QZEColor getColor() const { return _color; }
    /// The component the mode fixes, in its own unit (degrees for hue, 0..100
    /// for L*, and so on).
    float getFixedValue() const { return _components[int(_mode) % 3]; }
    /// Centre of the marker in widget coordinates (pixels), kept on the plane
    /// even when the held colour lies outside it.
    QPointF getMarkerPosition() const;

    /// How many times the plane image has been computed: lets tests and
    /// benchmarks see that marker moves reuse the cached plane.
    int getPlaneComputations() const { return _planeComputations; }

    /// Whether mode is one of the L*a*b* modes, whose colours are linear.
    static bool isLabMode(Mode mode) { return mode >= Lstar; }

    /// Fills every pixel of plane (Format_RGB32, any size) with the plane of
    /// mode at the fixed component (in its own unit), as the widget paints it.
    static void computePlane(Mode mode, float fixed, QImage& plane);

    /// 256 by 256 pixels, scaled by the screen's DPI factor.
    QSize sizeHint() const override;
    /// 64 by 64 pixels, scaled by the screen's DPI factor.
    QSize minimumSizeHint() const override;

public slots:
    /// @{
    /// Switches to the named mode when on is true (for radio buttons' toggled
    /// signal); false, or the mode already set, does nothing.
    void setHueMode(bool on);
    void setSaturationMode(bool on);
    void setValueMode(bool on);
    void setRedMode(bool on);
    void setGreenMode(bool on);
    void setBlueMode(bool on);
    void setLstarMode(bool on);
    void setAstarMode(bool on);
    void setBstarMode(bool on);
    /// @}

    /// Holds the colour of the channels r, g, b (0..1, in the form of the
    /// current mode) and moves the marker to it. A grey keeps the field's
    /// hue; the channels of the colour the field holds keep that colour as it
    /// is. Emits nothing.
    void setRGB(float r, float g, float b);
    /// Replaces the hue (degrees), keeping saturation and value. While the
    /// field holds a grey (saturation 0) its hue stays as it is. Emits nothing.
    void setHue(float h);
    /// Holds the colour of L* (0..100), a* and b* and moves the marker to it;
    /// in the L*a*b* modes the components are kept as given. Emits nothing.
    void setLab(float L, float a, float b);

signals:
    /// A mouse pick or arrow key moved the marker; color is the colour under
    /// it, in the form of the current mode.
    void colorChanged(QZEColor color);

protected:
    /// Draws the cached plane, the focus frame and the marker ring.
    void paintEvent(QPaintEvent* event) override;
    /// @{
    /// The left button picks the pixel under the mouse (clamped to the plane)
    /// and emits colorChanged().
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    /// @}
    /// The arrow keys move the marker one pixel, ten with Shift, along one
    /// axis and emit colorChanged(); at the edge they do nothing.
    void keyPressEvent(QKeyEvent* event) override;

private:
    void setModeIfOn(bool on, Mode mode);
    bool holdsChannels(float r, float g, float b) const;
    void holdColor(const QZEColor& color, const float* values, int family);
    void pickPixel(int x, int y);
    void setAxisPosition(int slot, float position);
    void emitPickedColor(const QRect& previousMarker);
    void ensurePlane();
    QRect markerRect() const;
    void updateAround(const QRect& previousMarker);
    void describeAxes();

    Mode _mode = Hue;
    QZEColor _color{0.0f, 1.0f, 1.0f};
    // The held colour in the mode's family (h s v, r g b or L* a* b*); slot
    // _mode % 3 is the fixed component, the other two place the marker.
    float _components[3] = {0.0f, 1.0f, 1.0f};

    QImage _plane;
    Mode _planeMode = Hue;
    float _planeFixed = 0.0f;
    int _planeComputations = 0;
};

#endif // QZECOLORFIELD_H
