#include "PickerSession.h"

#include "PickerAnswer.h"

#include <QZEImageFileDialog.h>

#include <QFileSystemModel>
#include <QGuiApplication>
#include <QListView>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

namespace {

// Longer than the browser's own 10 ms wait before it reads the render
// settings of the current file, so the test choice is accepted with them.
constexpr int TestAcceptDelayMs = 150;

// The platforms whose windows can be parented to another process's native
// window; the others (offscreen, Wayland) refuse foreign windows.
bool supportsForeignWindows()
{
    const QString platform = QGuiApplication::platformName();
    return platform == QLatin1String("xcb") || platform == QLatin1String("windows")
           || platform == QLatin1String("cocoa");
}

// What a user's click on the file does: the browser's current file changes
// (it reads the file's render settings a moment later), then "Ok".
void chooseLikeAUser(QZEImageFileDialog* dialog, const QString& path)
{
    auto* list = dialog->findChild<QListView*>(QStringLiteral("_list"));
    auto* model = list ? qobject_cast<QFileSystemModel*>(list->model()) : nullptr;
    auto* accept = dialog->findChild<QPushButton*>(QStringLiteral("_accept"));
    if (!model || !accept) {
        dialog->reject();
        return;
    }
    list->setCurrentIndex(model->index(path));
    QTimer::singleShot(TestAcceptDelayMs, accept, &QPushButton::click);
}

} // namespace

const char* const PickerSession::AcceptVariable = "QTCOLOR_PICKER_ACCEPT";
const char* const PickerSession::CancelVariable = "QTCOLOR_PICKER_CANCEL";

PickerSession::PickerSession(const PickerArguments& arguments) : _arguments(arguments) {}

PickerSession::~PickerSession() = default;

QByteArray PickerSession::run()
{
    QZEImageFileDialog dialog(nullptr, _arguments.startPath(), _arguments.filter(),
                              _arguments.wantsMask());
    if (!_arguments.caption().isEmpty())
        dialog.setWindowTitle(_arguments.caption());
    dialog.resize(800, 600);
    attachToCallerWindow(dialog);
    scheduleTestChoice(dialog);
    if (dialog.exec() != QDialog::Accepted || dialog.getSelectedFile().isEmpty())
        return QByteArray();
    return PickerAnswer::format(dialog.getSelectedFile(), dialog.getMetaDataChoice(),
                                _arguments.wantsMask());
}

// The window manager then keeps the browser above the caller's window and
// places it over it, as it would a dialog of the caller's own.
void PickerSession::attachToCallerWindow(QZEImageFileDialog& dialog)
{
    if (_arguments.windowId() == 0 || !supportsForeignWindows())
        return;
    dialog.winId(); // creates the native window, and with it the window handle
    _callerWindow.reset(QWindow::fromWinId(WId(_arguments.windowId())));
    if (_callerWindow && dialog.windowHandle())
        dialog.windowHandle()->setTransientParent(_callerWindow.get());
}

void PickerSession::scheduleTestChoice(QZEImageFileDialog& dialog)
{
    const QString path = qEnvironmentVariable(AcceptVariable);
    if (!path.isEmpty())
        QTimer::singleShot(0, &dialog, [&dialog, path] { chooseLikeAUser(&dialog, path); });
    else if (qEnvironmentVariableIsSet(CancelVariable))
        QTimer::singleShot(0, &dialog, &QDialog::reject);
}
