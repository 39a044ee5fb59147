#include "PickerAnswer.h"
#include "PickerArguments.h"
#include "PickerSession.h"

#include <QZETranslator.h>

#include <QApplication>

#include <cstdio>
#include <unistd.h>

namespace {

// Wrong arguments, or no display: the caller reads an empty answer.
constexpr int CannotStart = 2;

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("qimageFileDialog"));
    QZETranslator::install();
    QZETranslator::install(QStringLiteral("QtColorApps"));
}

// QApplication opens the display at once and aborts without one, so the
// display is checked before it exists.
bool hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY")
           || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

// Says, in the user's language, why the picker stops before any window
// exists. The arguments are read again once the catalogues are installed, so
// that the message is translated; a plain QCoreApplication needs no display.
int refuseToStart(int argc, char** argv)
{
    int appArgc = 1;
    QCoreApplication app(appArgc, argv);
    nameApplication();
    PickerArguments arguments;
    const QString problem =
        arguments.parse(argc, argv)
            ? PickerArguments::tr("no display to show the image browser on: neither DISPLAY "
                                  "nor WAYLAND_DISPLAY is set")
            : arguments.errorString();
    std::fprintf(stderr, "qimageFileDialog: %s\n%s\n", qPrintable(problem),
                 qPrintable(PickerArguments::usage()));
    return CannotStart;
}

} // namespace

int main(int argc, char** argv)
{
    PickerArguments arguments;
    if (!arguments.parse(argc, argv) || !hasDisplay())
        return refuseToStart(argc, argv);

    // Only the program name goes to the toolkit: a caption or a folder such
    // as "-style" must not be taken for one of its options.
    int toolkitArgc = 1;
    QApplication app(toolkitArgc, argv);
    nameApplication();
    const QByteArray answer = PickerSession(arguments).run();
    const bool delivered = answer.isEmpty() || PickerAnswer::deliver(STDOUT_FILENO, answer);
    // The caller sees the output end at once, however long the teardown of
    // the application takes.
    close(STDOUT_FILENO);
    return delivered ? 0 : 1;
}
