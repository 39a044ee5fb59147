#include "ImageMetaGui.h"
#include "ImageMetaTool.h"

#include <QZETranslator.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    if (ImageMetaGui::isRequested(argc, argv))
        return ImageMetaGui::run(argc, argv);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zeimagemeta"));
    // Before the tool exists: it writes its help texts when it is built.
    QZETranslator::install();
    QZETranslator::install(QStringLiteral("QtColorApps"));
    return ImageMetaTool().run(QCoreApplication::arguments());
}
