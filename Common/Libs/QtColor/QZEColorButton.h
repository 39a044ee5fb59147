#ifndef QZECOLORBUTTON_H
#define QZECOLORBUTTON_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QPoint>
#include <QPushButton>

class QZEColorDialog;

// A flat colour swatch: a push button whose only paint is its background in
// the colour it holds, shown through the sRGB encoding when QZEColor::s_useGamma
// is set.
//
// The button is a source and a target of colour drag and drop. It handles the
// mouse itself, so it never looks pressed: a press followed by a release is a
// click (clicked(true), which emits colorButtonClicked()), while moving more
// than the start-drag distance first drags the colour away and gives no click.
// A dropped colour becomes the button's colour and is reported as a final
// choice. Setters emit nothing.
//
// It can also carry a host spectrum, with the value scale and spectrum-only
// flag that go with it; when the colour is to come from an active spectrum,
// setSpectrum() recolours the button with the spectrum's RGB.
class QZEColorButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool showColorDialog READ showColorDialog WRITE setShowColorDialog)

public:
    explicit QZEColorButton(QWidget* parent = nullptr, const char* name = nullptr);

    void setColor(const QZEColor& color);
    QZEColor getColor() const { return _color; }

    void setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue, bool spectrumOnly);
    const osg::SpectrumPtr& getSpectrum() const { return _spectrum; }

    bool showColorDialog() const { return _showColorDialog; }

    QSize sizeHint() const override;

    // The one colour dialog that every colour button opens: null until a
    // click first opens it, then kept for the life of the process and never
    // deleted by a button. The click handling that opens the dialog creates
    // it and stores it here.
    static QZEColorDialog* s_colorChooser;

public slots:
    void setShowColorDialog(bool value) { _showColorDialog = value; }
    void buttonClicked(bool checked);
    void colorChanged(QZEColor color);
    void accepted();
    void rejected();

signals:
    void colorButtonClicked();
    void temporaryColorChosen(const QZEColor& color);
    void finalColorChosen(const QZEColor& color);
    void userSkipped();
    void userAccepted();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    static QPoint roundedPosition(const QMouseEvent* event);
    void startColorDrag();

    bool _showColorDialog = true;
    QZEColor _color{0.0f, 0.0f, 0.8f};
    osg::SpectrumPtr _spectrum;
    float _maxValue = 1.0f;
    bool _spectrumOnly = false;
    bool _dragPending = false;
    QPoint _pressPos;
};

#endif // QZECOLORBUTTON_H
