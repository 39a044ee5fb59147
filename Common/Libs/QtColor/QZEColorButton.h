#ifndef QZECOLORBUTTON_H
#define QZECOLORBUTTON_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QPoint>
#include <QPushButton>

class QZEColorDialog;

/// A flat colour swatch: a push button whose only paint is its background in
/// the colour it holds, shown through the sRGB encoding when QZEColor::s_useGamma
/// is set.
///
/// The button is a source and a target of colour drag and drop. It handles the
/// mouse itself, so it never looks pressed: a press followed by a release is a
/// click (clicked(true), which emits colorButtonClicked()), while moving more
/// than the start-drag distance first drags the colour away and gives no click.
/// A dropped colour becomes the button's colour and is reported as a final
/// choice. Setters emit nothing.
///
/// It can also carry a host spectrum, with the value scale and spectrum-only
/// flag that go with it; when the colour is to come from an active spectrum,
/// setSpectrum() recolours the button with the spectrum's RGB.
///
/// A click opens the colour dialog that all colour buttons share, parented to
/// the nearest ancestor named "Module" (else the top-most one), and aims it at
/// this button alone: the dialog's live colour comes out as
/// temporaryColorChosen(), its accept as the dialog's colour through
/// finalColorChosen() and userAccepted(), its cancel as the unchanged colour
/// through finalColorChosen() and userSkipped(). The button's own colour
/// changes only on accept (or a drop).
///
/// Usage:
/// \code
/// auto* swatch = new QZEColorButton(panel);
/// swatch->setColor(QZEColor(QColor(200, 40, 40)));
/// QObject::connect(swatch, SIGNAL(finalColorChosen(const QZEColor&)),
///                  light, SLOT(setColor(const QZEColor&)));
/// \endcode
class QZEColorButton : public QPushButton
{
    Q_OBJECT
    Q_PROPERTY(bool showColorDialog READ showColorDialog WRITE setShowColorDialog)

public:
    /// A black swatch over parent that opens the dialog on click; name, when
    /// given, becomes the object name.
    explicit QZEColorButton(QWidget* parent = nullptr, const char* name = nullptr);

    /// Shows color (repaints). Emits nothing.
    void setColor(const QZEColor& color);
    /// The colour the button holds.
    QZEColor getColor() const { return _color; }

    /// Lends the button a host spectrum for the dialog to edit; maxValue is
    /// the plot's upper bound and spectrumOnly keeps the spectrum from being
    /// switched off. An active spectrum recolours the button.
    void setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue, bool spectrumOnly);
    /// The spectrum lent by setSpectrum(); null when none.
    const osg::SpectrumPtr& getSpectrum() const { return _spectrum; }

    /// Whether a click opens the colour dialog (default true).
    bool showColorDialog() const { return _showColorDialog; }

    /// A medium icon wide, a small icon high.
    QSize sizeHint() const override;

    /// The one colour dialog that every colour button opens: null until a
    /// click first opens it, never deleted by a button. It lives as a child of
    /// the widget it was first opened over; when that widget takes it down,
    /// the pointer goes back to null and the next click makes a new one.
    static QZEColorDialog* s_colorChooser;

public slots:
    /// Sets whether a click opens the colour dialog.
    void setShowColorDialog(bool value) { _showColorDialog = value; }
    /// A click: emits colorButtonClicked() and, when showColorDialog(), opens
    /// the shared dialog aimed at this button.
    void buttonClicked(bool checked);
    /// The dialog's live colour: emitted as temporaryColorChosen().
    void colorChanged(QZEColor color);
    /// The dialog was accepted: the button takes its colour and emits
    /// finalColorChosen(), then userAccepted().
    void accepted();
    /// The dialog was cancelled: emits finalColorChosen() with the unchanged
    /// colour, then userSkipped().
    void rejected();

signals:
    /// Every click, before the dialog opens.
    void colorButtonClicked();
    /// The dialog's live colour while it is open.
    void temporaryColorChosen(const QZEColor& color);
    /// The colour after the dialog closed (accepted or cancelled) or a drop.
    void finalColorChosen(const QZEColor& color);
    /// The dialog was cancelled (after finalColorChosen()).
    void userSkipped();
    /// The dialog was accepted (after finalColorChosen()).
    void userAccepted();

protected:
    /// @{
    /// A press and release is a click; moving beyond the start-drag distance
    /// first drags the colour away instead.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    /// @}
    /// @{
    /// Accept colour drags; a drop sets the colour and reports it as final.
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    /// @}

private:
    QWidget* dialogParent();
    static void createColorChooser(const QZEColor& color, QWidget* parent);
    void listenToColorChooser();
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
