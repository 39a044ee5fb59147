#ifndef QZEDOUBLESPINER_H
#define QZEDOUBLESPINER_H

#include <QDoubleSpinBox>

/// A QDoubleSpinBox whose shown decimals are set apart from the precision it
/// keeps: the value is held to ValueDecimals places, the text shows
/// getDisplayDecimals() of them. With exact display decimals on, the text
/// always has that many ("0.500"); off, it has at most that many, without
/// trailing zeros ("0.5", "1").
class QZEDoubleSpiner : public QDoubleSpinBox
{
    Q_OBJECT

public:
    /// Decimal places of the value kept (QDoubleSpinBox::decimals()).
    static constexpr int ValueDecimals = 9;

    /// A widget with parent; name, when given, becomes its object name
    /// (otherwise the class name does).
    explicit QZEDoubleSpiner(QWidget* parent = nullptr, const char* name = nullptr);

    /// @{
    /// Decimal places shown in the text (0 to ValueDecimals; default 2).
    void setDisplayDecimals(int decimals);
    int getDisplayDecimals() const { return _displayDecimals; }
    /// @}
    /// @{
    /// Whether the text always shows all display decimals (default off).
    void setExactDisplayDecimals(bool on);
    bool getExactDisplayDecimals() const { return _exactDisplayDecimals; }
    /// @}

    /// value rounded to the display decimals, in the spin box's locale.
    QString textFromValue(double value) const override;

private:
    void refreshText();

    int _displayDecimals = 2;
    bool _exactDisplayDecimals = false;
};

#endif // QZEDOUBLESPINER_H
