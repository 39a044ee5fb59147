#ifndef QZECOLORFIELD_H
#define QZECOLORFIELD_H

#include "QZEColor.h"

#include <QImage>
#include <QWidget>

// A two-dimensional colour field: one plane of a colour space, picked with the
// mouse or moved with the arrow keys.
//
// The mode fixes one component (the same numbering as the colour slider:
// hue, saturation, value, red, green, blue, L*, a*, b*) and the plane shows
// the other two of its family, the first along x from left to right and the
// second along y from bottom to top: saturation by value in hue mode, hue by
// value in saturation mode, green by blue in red mode, a* by b* in L* mode,
// L* by a* in b* mode, and so on. Component units are those of the slider:
// hue 0..359.99 degrees, L* 0..100, a* and b* (p - 0.5) * QZEColor::s_LabRange,
// all others 0..1.
//
// The colour the field holds, emits and is set to is in the form of its mode:
// display (sRGB-encoded) values in the HSV and RGB modes, linear values in the
// L*a*b* modes. The L*a*b* planes are therefore shown sRGB-encoded, the HSV and
// RGB planes as they stand; every pixel shows exactly the colour a pick there
// emits. A mode change converts the held colour between the two forms.
//
// The plane is kept in an image that is recomputed only when the mode, the
// fixed component or the size changes; moving the marker repaints the marker
// alone. Setters emit nothing; only mouse and key gestures emit colorChanged.
class QZEColorField : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Mode mode READ getMode WRITE setMode)

public:
    enum Mode : qint32 { Hue, Saturation, Value, Red, Green, Blue, Lstar, Astar, Bstar };
    Q_ENUM(Mode)

    explicit QZEColorField(QWidget* parent = nullptr, const char* name = nullptr);

    Mode getMode() const { return _mode; }
    // Always schedules a repaint, also when the mode stays the same.
    void setMode(Mode mode);

    // The colour under the marker, in the form of the current mode.
    QZEColor getColor() const { return _color; }
    // The component the mode fixes, in its own unit.
    float getFixedValue() const { return _components[int(_mode) % 3]; }
    // Centre of the marker in widget coordinates, kept on the plane.
    QPointF getMarkerPosition() const;

    // How many times the plane image has been computed: lets tests and
    // benchmarks see that marker moves reuse the cached plane.
    int getPlaneComputations() const { return _planeComputations; }

    static bool isLabMode(Mode mode) { return mode >= Lstar; }

    // Fills every pixel of plane (Format_RGB32, any size) with the plane of
    // mode at the fixed component, as the widget paints it.
    static void computePlane(Mode mode, float fixed, QImage& plane);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void setHueMode(bool on);
    void setSaturationMode(bool on);
    void setValueMode(bool on);
    void setRedMode(bool on);
    void setGreenMode(bool on);
    void setBlueMode(bool on);
    void setLstarMode(bool on);
    void setAstarMode(bool on);
    void setBstarMode(bool on);

    // Channels in the form of the current mode. A grey keeps the field's hue;
    // the channels of the colour the field holds keep that colour as it is.
    void setRGB(float r, float g, float b);
    // Replaces the hue, keeping saturation and value.
    void setHue(float h);
    void setLab(float L, float a, float b);

signals:
    void colorChanged(QZEColor color);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
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
