#ifndef QZECOLORMANIPULATOR_H
#define QZECOLORMANIPULATOR_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QWidget>

class QZEColorButton;
class QZEColorSlider;

/// A brightness slider and a colour button side by side, as one colour control.
///
/// The button holds the colour and opens the shared colour dialog; the slider
/// runs from black to the colour at full brightness and sits at the colour's
/// brightness in sRGB-encoded space, so that equal steps look equal. Moving the
/// slider rescales the colour and reports it at once.
///
/// Every change comes out in four forms (no arguments, QZEColor, 8-bit RGB and
/// linear float RGB): colorChanged() for a slider move and for a final colour
/// (accepted, cancelled or dropped, followed by finalColorSet()), and
/// dialogColorChanged() for the live colour while the dialog is open.
/// A cancel re-reports the colour from before the dialog and ends in
/// cancelled(). Setters emit nothing.
///
/// Usage:
/// \code
/// auto* diffuse = new QZEColorManipulator(panel);
/// diffuse->setColor(0.8f, 0.1f, 0.1f); // linear RGB
/// QObject::connect(diffuse, SIGNAL(colorChanged(const QZEColor&)),
///                  material, SLOT(setDiffuse(const QZEColor&)));
/// \endcode
class QZEColorManipulator : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(bool sliderVisible READ isSliderVisible WRITE setSliderVisible)

public:
    /// A black control over parent; name, when given, becomes the object name.
    explicit QZEColorManipulator(QWidget* parent = nullptr, const char* name = nullptr);

    /// Shows color on the button and puts the slider at its sRGB-encoded
    /// brightness, with the strip from black to the colour at full brightness.
    void setColor(const QZEColor& color);
    /// setColor() from 8-bit RGB, 0 to 255 per channel.
    void setColor(int r, int g, int b);
    /// setColor() from linear RGB, 0 to 1 per channel.
    void setColor(float r, float g, float b);
    /// setColor() from hue (degrees, 0 to 360), saturation and value (0 to 1).
    void setHSV(float h, float s, float v);
    /// setColor() from CIE L*a*b* (L* 0 to 100).
    void setLAB(float L, float a, float b);
    /// Gives the button a host spectrum (see QZEColorButton::setSpectrum());
    /// the slider then works on the spectrum's colour when it is active.
    void setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue, bool spectrumOnly);
    /// Forwarded to QZEColorSlider::setPhotometricParameters().
    void setPhotometricParameters(bool on);
    /// Whether the slider reports every step of a drag (on) or only the
    /// release (off); QSlider::setTracking().
    void setSliderTracking(bool on);
    /// Shows or hides the slider; without it the button sits at the left.
    void setSliderVisible(bool visible);
    /// Whether the slider is shown as part of the manipulator, whether or not
    /// the manipulator itself is on screen.
    bool isSliderVisible() const;
    /// The slider takes the focus policy; the button keeps its strong focus.
    void setFocusPolicy(Qt::FocusPolicy policy);

    /// The colour the button holds.
    QZEColor getColor() const;
    /// getColor() as 8-bit RGB (0 to 255).
    void getColor(int& r, int& g, int& b) const;
    /// getColor() as linear RGB, unclamped.
    void getColor(float& r, float& g, float& b) const;
    /// getColor() as hue (degrees), saturation and value, as stored.
    void getHSV(float& h, float& s, float& v) const;
    /// getColor() as CIE L*a*b*.
    void getLAB(float& L, float& a, float& b) const;

    /// 130 pixels wide, a small icon high.
    QSize sizeHint() const override;

signals:
    /// The button was clicked (before the dialog opens).
    void buttonPressed();
    /// @{
    /// The slider's handle was pressed or released.
    void sliderPressed();
    void sliderReleased();
    /// @}
    /// The slider moved: the new colour's linear RGB, after colorChanged().
    void sliderColorChanged(float r, float g, float b);
    /// @{
    /// The colour changed by the slider or finally by the dialog or a drop:
    /// without arguments, as QZEColor, as 8-bit RGB (clamped) and as linear
    /// float RGB, in that order.
    void colorChanged();
    void colorChanged(const QZEColor& color);
    void colorChanged(int r, int g, int b);
    void colorChanged(float r, float g, float b);
    /// @}
    /// @{
    /// The live colour while the dialog is open, in the same four forms.
    void dialogColorChanged();
    void dialogColorChanged(const QZEColor& color);
    void dialogColorChanged(int r, int g, int b);
    void dialogColorChanged(float r, float g, float b);
    /// @}
    /// A final colour was set (dialog accepted or cancelled, or a drop),
    /// after the colorChanged() signals.
    void finalColorSet(const QZEColor& color);
    /// The dialog was cancelled; the colour from before it was re-reported.
    void cancelled();

public slots:
    /// Emits buttonPressed().
    void colorButtonPressed();
    /// Rescales the colour to the slider's brightness and reports it.
    void sliderValueChanged(float value);
    /// @{
    /// Emit sliderPressed() and sliderReleased().
    void sliderValuePressed();
    void sliderValueReleased();
    /// @}
    /// Reports the dialog's live colour through dialogColorChanged().
    void temporaryColorChanged(const QZEColor& color);
    /// Takes a final colour: shows it and reports it through colorChanged()
    /// and finalColorSet().
    void finalColorChanged(const QZEColor& color);
    /// Emits cancelled().
    void cancelledPressed();

private:
    void showOnSlider(const QZEColor& color);
    void followButtonSpectrum();
    void emitSignals(const QZEColor& color);

    QZEColorSlider* _slider;
    QZEColorButton* _button;
};

#endif // QZECOLORMANIPULATOR_H
