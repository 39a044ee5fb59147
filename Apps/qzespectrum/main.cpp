#include "SpectrumTool.h"

#include <QZETranslator.h>

#include <QCoreApplication>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("qzespectrum"));
    QCoreApplication::setApplicationVersion(QStringLiteral(QZESPECTRUM_VERSION));
    // Before the tool exists: it writes its help texts when it is built.
    QZETranslator::install();
    QZETranslator::install(QStringLiteral("QtColorApps"));
    return SpectrumTool().run(QCoreApplication::arguments());
}
