#ifndef QZEPUSHBUTTON_H
#define QZEPUSHBUTTON_H

#include <QPushButton>

/// A push button that any mouse button clicks, and that remembers, for the
/// whole process, which mouse button was released last over a QZEPushButton,
/// so that the code a click runs can act differently on a right click.
/// The button is recorded before clicked() is emitted. Keyboard clicks do not
/// change it; before the first release it is Qt::LeftButton.
class QZEPushButton : public QPushButton
{
    Q_OBJECT

public:
    /// @{
    /// A button with parent (and text); name, when given, becomes its object
    /// name (otherwise the class name does).
    explicit QZEPushButton(QWidget* parent = nullptr, const char* name = nullptr);
    explicit QZEPushButton(const QString& text, QWidget* parent = nullptr, const char* name = nullptr);
    /// @}

    /// The mouse button last released over any QZEPushButton of the process.
    static Qt::MouseButton getLastMouseReleaseButton() { return s_lastMouseReleaseButton; }

protected:
    /// @{
    /// Let every mouse button press and click the button; a release records
    /// its button before clicked() is emitted.
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    /// @}

private:
    static Qt::MouseButton s_lastMouseReleaseButton;
};

#endif // QZEPUSHBUTTON_H
