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
    static constexpr int ValueDecimals = 9;

    explicit QZEDoubleSpiner(QWidget* parent = nullptr, const char* name = nullptr);

    void setDisplayDecimals(int decimals);
    int getDisplayDecimals() const { return _displayDecimals; }
    void setExactDisplayDecimals(bool on);
    bool getExactDisplayDecimals() const { return _exactDisplayDecimals; }

    QString textFromValue(double value) const override;

private:
    void refreshText();

    int _displayDecimals = 2;
    bool _exactDisplayDecimals = false;
};

#endif // QZEDOUBLESPINER_H
