#include "PickerArguments.h"

#include <QByteArray>

#include <algorithm>

namespace {

constexpr int ArgumentCount = 5;

} // namespace

bool PickerArguments::parse(int argc, const char* const* argv)
{
    if (argc - 1 != ArgumentCount)
        return fail(tr("expected %1 arguments, got %2").arg(ArgumentCount).arg(argc - 1));
    const QByteArray id(argv[1]);
    // toULongLong() alone would take blanks and a sign.
    const bool digitsOnly = !id.isEmpty() && std::all_of(id.cbegin(), id.cend(), [](char c) {
        return c >= '0' && c <= '9';
    });
    bool inRange = false;
    _windowId = id.toULongLong(&inRange, 10);
    if (!digitsOnly || !inRange)
        return fail(tr("the window id \"%1\" is not a decimal number")
                        .arg(QString::fromLocal8Bit(id)));
    const QByteArray mask(argv[5]);
    if (mask != "1" && mask != "0")
        return fail(tr("the last argument must be 1 (answer with the mask) or 0, not \"%1\"")
                        .arg(QString::fromLocal8Bit(mask)));
    _caption = QString::fromLocal8Bit(argv[2]);
    _startPath = QString::fromLocal8Bit(argv[3]);
    _filter = QString::fromLocal8Bit(argv[4]);
    _wantsMask = mask == "1";
    return true;
}

QString PickerArguments::usage()
{
    return tr("Usage: qimageFileDialog WINDOW-ID CAPTION DIRECTORY FILTER 1|0");
}

bool PickerArguments::fail(const QString& problem)
{
    _error = problem;
    return false;
}
