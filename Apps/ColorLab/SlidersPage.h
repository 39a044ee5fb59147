#ifndef SLIDERSPAGE_H
#define SLIDERSPAGE_H

#include "QZEColor.h"
#include "QZEColorSlider.h"

#include <QVector>
#include <QWidget>

class QCheckBox;
class QFrame;
class QLabel;

// Nine colour sliders, one per mode, all editing one linear colour. Moving a
// slider changes the colour; the other sliders follow with their signals
// blocked, and their strips are repainted around the new colour. A swatch and
// a table show the colour in every form the colour value offers.
class SlidersPage : public QWidget
{
    Q_OBJECT

public:
    explicit SlidersPage(QWidget* parent = nullptr);

    QZEColor color() const { return _color; }
    void setColor(const QZEColor& color);
    QZEColorSlider* slider(QZEColorSlider::Mode mode) const;

private:
    QWidget* createChannels();
    QWidget* createColorView();
    void takeChannelFrom(const QZEColorSlider* moved);
    void setUseGamma(bool on);
    void showColor(const QZEColorSlider* moved);
    void showInSlider(int index, const QZEColorSlider* moved);
    QVector<QPair<QString, QString>> colorForms() const;

    QZEColor _color;
    QVector<QZEColorSlider*> _sliders; // indexed by QZEColorSlider::Mode
    QVector<QLabel*> _readouts;
    QVector<QLabel*> _formValues;
    QFrame* _swatch = nullptr;
    QCheckBox* _useGamma = nullptr;
};

#endif // SLIDERSPAGE_H
