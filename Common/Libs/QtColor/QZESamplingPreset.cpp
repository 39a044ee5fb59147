#include "QZESamplingPreset.h"

#include <QCoreApplication>

namespace {

// The sampling every new spectrum gets; its label says so.
constexpr int DefaultStart = 380;
constexpr int DefaultDelta = 5;
constexpr int DefaultNum = 81;

} // namespace

// The label is translated in the dialog's context, where the preset list
// lives; its stray "/" before the count is the text translators have.
SamplingPreset::SamplingPreset(int start, int delta, int num)
    : start(start), delta(delta), num(num),
      label(QCoreApplication::translate("QZEColorDialog", "Start: %1 / Delta: %2 / Num: / %3")
                .arg(start)
                .arg(delta)
                .arg(num))
{
    if (start == DefaultStart && delta == DefaultDelta && num == DefaultNum)
        label += QStringLiteral(" (%1)").arg(QCoreApplication::translate("QZEColorDialog", "Default"));
}
