#ifndef PICKERSESSION_H
#define PICKERSESSION_H

#include "PickerArguments.h"

#include <QByteArray>

#include <memory>

class QWindow;
class QZEImageFileDialog;

// One run of the picker: the image browser shown as a child of the caller's
// window, and the answer to write once the user has chosen.
//
// For tests the choice can be made without a user: QTCOLOR_PICKER_ACCEPT set
// to an absolute file path makes that file current in the browser, as a click
// would, and accepts once the browser has read its render settings, so the
// mask is the one a user would get; QTCOLOR_PICKER_CANCEL (any value) cancels
// as soon as the browser is up.
class PickerSession
{
public:
    static const char* const AcceptVariable;
    static const char* const CancelVariable;

    explicit PickerSession(const PickerArguments& arguments);
    ~PickerSession();

    // Runs the browser; the answer (PickerAnswer::format()) when a file was
    // chosen, empty when the user cancelled.
    QByteArray run();

private:
    void attachToCallerWindow(QZEImageFileDialog& dialog);
    void scheduleTestChoice(QZEImageFileDialog& dialog);

    PickerArguments _arguments;
    std::unique_ptr<QWindow> _callerWindow;
};

#endif // PICKERSESSION_H
