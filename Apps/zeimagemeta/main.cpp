#include "ImageMetaGui.h"
#include "ImageMetaTool.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    if (ImageMetaGui::isRequested(argc, argv))
        return ImageMetaGui::run(argc, argv);
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zeimagemeta"));
    return ImageMetaTool().run(QCoreApplication::arguments());
}
