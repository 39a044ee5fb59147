#include "ImageMetaGui.h"

#include <osgImage.h>
#include <zeTextureMetaDataGUII.h>

#include <QApplication>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QLabel>
#include <QTextEdit>
#include <QTimer>

#include <cstdio>

namespace {

// Set by the tests: the dialog prints what it shows and closes as soon as
// it is up, so the mode can run without anyone to click "Ok".
const char* const CloseAtOnceVariable = "ZEIMAGEMETA_CLOSE_AT_ONCE";

void printAndClose(zeTextureMetaDataGUII* dialog)
{
    const QString shown = dialog->windowTitle() + QLatin1Char('\n')
                          + dialog->findChild<QLabel*>(QStringLiteral("_filename"))->text()
                          + QLatin1Char('\n')
                          + dialog->findChild<QTextEdit*>(QStringLiteral("_metadata"))->toPlainText()
                          + QLatin1Char('\n');
    std::fputs(shown.toUtf8().constData(), stdout);
    std::fflush(stdout);
    dialog->close();
}

} // namespace

// A display that can be named: QApplication opens it at once and aborts,
// advising a reinstall, when there is none.
bool ImageMetaGui::hasDisplay()
{
    return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || !qEnvironmentVariableIsEmpty("DISPLAY")
           || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

int ImageMetaGui::run(int argc, char** argv)
{
    // The arguments and the display are checked before the application
    // exists, so that a mistake is reported and not a toolkit abort.
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    const QCommandLineOption gui(QStringLiteral("gui"),
                                 tr("Show the image information dialog for FILE."), tr("FILE"));
    parser.addOption(gui);
    if (!parser.parse(arguments))
        return usageError(parser.errorText());
    if (!parser.positionalArguments().isEmpty())
        return usageError(tr("--gui takes exactly one FILE and no command"));
    if (!hasDisplay()) {
        std::fprintf(stderr, "zeimagemeta: %s\n",
                     qPrintable(tr("no display to show the dialog on: neither DISPLAY nor "
                                   "WAYLAND_DISPLAY is set; 'zeimagemeta show FILE' prints the "
                                   "same information")));
        return 2;
    }

    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zeimagemeta"));
    const QString file = parser.value(gui);
    const osg::ImagePtr image = osg::Image::create();
    image->setName(file.toUtf8().toStdString());
    auto* dialog = new zeTextureMetaDataGUII;
    if (!dialog->showMetaDataInfo(image)) {
        delete dialog;
        std::fprintf(stderr, "zeimagemeta: %s\n",
                     qPrintable(tr("cannot read %1: missing, not an image this program can "
                                   "decode, damaged, or larger than 1 GiB")
                                    .arg(file)));
        return 1;
    }
    dialog->show();
    if (qEnvironmentVariableIsSet(CloseAtOnceVariable))
        QTimer::singleShot(0, dialog, [dialog] { printAndClose(dialog); });
    return app.exec();
}

int ImageMetaGui::usageError(const QString& message)
{
    std::fprintf(stderr, "zeimagemeta: %s\n%s\n", qPrintable(message),
                 qPrintable(tr("Run 'zeimagemeta --help' for usage.")));
    return 2;
}
