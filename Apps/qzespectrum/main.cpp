#include "SpectrumTool.h"

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qzespectrum"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QZESPECTRUM_VERSION));
    return SpectrumTool().run(QCoreApplication::arguments());
}
