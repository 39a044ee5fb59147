#include "QZEDoubleSpiner.h"

#include <QLocale>

#include <cmath>

QZEDoubleSpiner::QZEDoubleSpiner(QWidget* parent, const char*) : QDoubleSpinBox(parent)
{
    setObjectName(QStringLiteral("QZEDoubleSpiner"));
    setDecimals(ValueDecimals);
}

void QZEDoubleSpiner::setDisplayDecimals(int decimals)
{
    _displayDecimals = qBound(0, decimals, ValueDecimals);
    refreshText();
}

void QZEDoubleSpiner::setExactDisplayDecimals(bool on)
{
    _exactDisplayDecimals = on;
    refreshText();
}

// Setting the same decimals again rebuilds the text and the cached size
// hints; the value stays, so nothing is emitted.
void QZEDoubleSpiner::refreshText()
{
    setDecimals(decimals());
}

QString QZEDoubleSpiner::textFromValue(double value) const
{
    // A value that rounds to zero is shown without a minus sign.
    if (std::abs(value) < 0.5 * std::pow(10.0, -_displayDecimals))
        value = 0.0;
    const QLocale numbers = locale();
    QString text = numbers.toString(value, 'f', _displayDecimals);
    if (!isGroupSeparatorShown())
        text.remove(numbers.groupSeparator());
    if (_exactDisplayDecimals || _displayDecimals == 0)
        return text;
    while (text.endsWith(numbers.zeroDigit()))
        text.chop(1);
    if (text.endsWith(numbers.decimalPoint()))
        text.chop(1);
    return text;
}
