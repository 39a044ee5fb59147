#ifndef QZECOLORSLIDER_H
#define QZECOLORSLIDER_H

#include "QZEColor.h"

#include <QImage>
#include <QString>
#include <QWidget>

class QPainter;

// A horizontal gradient strip with a handle that shows one colour channel.
//
// The position is a normalised float in [0, 1]; the mode says which channel it
// stands for (HSV, RGB or L*a*b*). Setters emit nothing except setValue() and
// the end-colour slots; mouse gestures emit the value, colour and string
// signals, right away with tracking on or once on release with tracking off.
// While the caller fixes the colour by other means (photometric mode, spectral
// data) the slider disables itself and paints a grey ramp with an explanation,
// in the widget's font made small enough for the strip's height and cut short
// with an ellipsis where the strip is too narrow for it.
class QZEColorSlider : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(Qt::Orientation orientation READ orientation WRITE setOrientation)
    Q_PROPERTY(Mode mode READ getMode WRITE setMode)
    Q_PROPERTY(bool tracking MEMBER _tracking)

public:
    enum Mode : qint32 { Hue, Saturation, Value, Red, Green, Blue, Lstar, Astar, Bstar };
    Q_ENUM(Mode)

    explicit QZEColorSlider(QWidget* parent = nullptr, const char* name = nullptr);
    QZEColorSlider(Qt::Orientation orientation, QWidget* parent, const char* name);

    void init();

    void setOrientation(Qt::Orientation orientation) { _orientation = orientation; }
    Qt::Orientation orientation() const { return _orientation; }
    void setTracking(bool on) { _tracking = on; }
    float getValue() const { return _value; }
    QZEColor getMinColor() const { return _minColor; }
    QZEColor getMaxColor() const { return _maxColor; }
    void setMode(Mode mode) { _mode = mode; }
    Mode getMode() const { return _mode; }

    QZEColor getColor() const;
    float getRealValue() const;
    QString getValueAsString() const;
    float mapToFloat(int x, int) const;

    void setPhotometricParameters(bool on);
    void setUseSpectrum(bool on);

    QSize sizeHint() const override;

public slots:
    void setMinColor(QZEColor color);
    void setMaxColor(QZEColor color);
    void setMinColor(float red, float green, float blue);
    void setMaxColor(float red, float green, float blue);
    void setValue(float value, bool emitSignals = true, bool force = false);
    void setHueMode(bool on);
    void setSaturationMode(bool on);
    void setValueMode(bool on);
    void setLstarMode(bool on);
    void setAstarMode(bool on);
    void setBstarMode(bool on);
    void setRedMode(bool on);
    void setGreenMode(bool on);
    void setBlueMode(bool on);

signals:
    void minColorChanged(QZEColor color);
    void maxColorChanged(QZEColor color);
    void valueChanged(float value);
    void colorChanged(QZEColor color);
    void valueChanged(QString value);
    void sliderPressed();
    void sliderMoved(float value);
    void sliderReleased();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

    void repaintSlider(QPainter& painter);

private:
    void setModeIfOn(bool on, Mode mode);
    void setPrimaryMode(bool on, Mode mode, float hue);
    void updateDisabledState();
    float mapEventToValue(const QMouseEvent* event) const;
    QRgb columnColor(float t, float L, float a, float b) const;
    int handleCentre() const;
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
};

#endif // QZECOLORSLIDER_H
