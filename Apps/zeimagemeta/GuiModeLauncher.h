#ifndef GUIMODELAUNCHER_H
#define GUIMODELAUNCHER_H

#include <QCoreApplication>

// Hands "zeimagemeta --gui FILE" to the window-mode program, installed with
// the package's private files, so that the commands that need no display
// load no widget library and start sooner.
class GuiModeLauncher
{
    Q_DECLARE_TR_FUNCTIONS(GuiModeLauncher)

public:
    // Whether the command line asks for the window mode. Decided before any
    // application object exists: this mode needs a display, the others none.
    static bool isRequested(int argc, char** argv);

    // Replaces this process by the window-mode program with the same
    // arguments. Returns only when that fails, with the usage-error status
    // after saying why on standard error.
    static int exec(char** argv);
};

#endif // GUIMODELAUNCHER_H
