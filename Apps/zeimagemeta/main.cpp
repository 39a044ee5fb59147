#include "GuiModeLauncher.h"
#include "ImageMetaTool.h"

#include <QZETranslator.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    if (GuiModeLauncher::isRequested(argc, argv))
        return GuiModeLauncher::exec(argv);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zeimagemeta"));
    // Before the tool exists: it writes its help texts when it is built.
    QZETranslator::install();
    QZETranslator::install(QStringLiteral("QtColorApps"));
    return ImageMetaTool().run(QCoreApplication::arguments());
}
