#ifndef QZECOLORMANIPULATOR_H
#define QZECOLORMANIPULATOR_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QWidget>

class QZEColorButton;
class QZEColorSlider;

// A brightness slider and a colour button side by side, as one colour control.
//
// The button holds the colour and opens the shared colour dialog; the slider
// runs from black to the colour at full brightness and sits at the colour's
// brightness in sRGB-encoded space, so that equal steps look equal. Moving the
// slider rescales the colour and reports it at once.
//
// Every change comes out in four forms (no arguments, QZEColor, 8-bit RGB and
// linear float RGB): colorChanged() for a slider move and for a final colour
// (accepted, cancelled or dropped, followed by finalColorSet()), and
// dialogColorChanged() for the live colour while the dialog is open.
// A cancel re-reports the colour from before the dialog and ends in
// cancelled(). Setters emit nothing.
class QZEColorManipulator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool sliderVisible READ isSliderVisible WRITE setSliderVisible)

public:
    explicit QZEColorManipulator(QWidget* parent = nullptr, const char* name = nullptr);

    void setColor(const QZEColor& color);
    void setColor(int r, int g, int b);     // 0..255
    void setColor(float r, float g, float b); // linear, 0..1
    void setHSV(float h, float s, float v);
    void setLAB(float L, float a, float b);
    void setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue, bool spectrumOnly);
    void setPhotometricParameters(bool on);
    void setSliderTracking(bool on);
    void setSliderVisible(bool visible);
    // Whether the slider is shown as part of the manipulator, whether or not
    // the manipulator itself is on screen.
    bool isSliderVisible() const;
    // The slider takes the focus policy; the button keeps its strong focus.
    void setFocusPolicy(Qt::FocusPolicy policy);

    QZEColor getColor() const;
    void getColor(int& r, int& g, int& b) const;
    void getColor(float& r, float& g, float& b) const;
    void getHSV(float& h, float& s, float& v) const;
    void getLAB(float& L, float& a, float& b) const;

    QSize sizeHint() const override;

signals:
    void buttonPressed();
    void sliderPressed();
    void sliderReleased();
    void sliderColorChanged(float r, float g, float b);
    void colorChanged();
    void colorChanged(const QZEColor& color);
    void colorChanged(int r, int g, int b);
    void colorChanged(float r, float g, float b);
    void dialogColorChanged();
    void dialogColorChanged(const QZEColor& color);
    void dialogColorChanged(int r, int g, int b);
    void dialogColorChanged(float r, float g, float b);
    void finalColorSet(const QZEColor& color);
    void cancelled();

public slots:
    void colorButtonPressed();
    void sliderValueChanged(float value);
    void sliderValuePressed();
    void sliderValueReleased();
    void temporaryColorChanged(const QZEColor& color);
    void finalColorChanged(const QZEColor& color);
    void cancelledPressed();

private:
    void showOnSlider(const QZEColor& color);
    void followButtonSpectrum();
    void emitSignals(const QZEColor& color);

    QZEColorSlider* _slider;
    QZEColorButton* _button;
};

#endif // QZECOLORMANIPULATOR_H
