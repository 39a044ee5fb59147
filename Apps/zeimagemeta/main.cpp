#include "ImageMetaTool.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zeimagemeta"));
    return ImageMetaTool().run(QCoreApplication::arguments());
}
