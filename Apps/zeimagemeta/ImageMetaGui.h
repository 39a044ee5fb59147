#ifndef IMAGEMETAGUI_H
#define IMAGEMETAGUI_H

#include <QCoreApplication>

// zeimagemeta's window mode: "zeimagemeta --gui FILE" shows the image
// information dialog for FILE and runs until the dialog is closed. Exit
// status as for the other commands: 0, 1 when FILE cannot be read, 2 on a
// usage error or without a display.
class ImageMetaGui
{
    Q_DECLARE_TR_FUNCTIONS(ImageMetaGui)

public:
    // Creates the application and runs the mode.
    static int run(int argc, char** argv);

private:
    static bool hasDisplay();
    static int usageError(const QString& message);
};

#endif // IMAGEMETAGUI_H
