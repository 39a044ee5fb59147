#include "ColorLabWindow.h"
#include "ScreenshotWriter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <cstdio>

namespace {

QString translated(const char* text)
{
    return QCoreApplication::translate("ColorLab", text);
}

const QString ScreenshotOption = QStringLiteral("screenshot");

QCommandLineOption screenshotOption()
{
    return QCommandLineOption(ScreenshotOption,
                              translated(QT_TRANSLATE_NOOP("ColorLab", "Render every page into DIR/<page>.png and exit.")),
                              translated(QT_TRANSLATE_NOOP("ColorLab", "DIR")));
}

void describeOptions(QCommandLineParser& parser)
{
    parser.setApplicationDescription(translated(QT_TRANSLATE_NOOP("ColorLab", "Shows the QtColor widgets, one page per widget.")));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(screenshotOption());
}

// Screenshots, help and version need no display: unless a platform was chosen
// they run on the offscreen one, which also makes screenshots look the same on
// every machine. Decided before QApplication, which opens the display.
void useOffscreenWhenNothingIsShown(int argc, char** argv)
{
    if (!qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        return;
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    describeOptions(parser);
    parser.parse(arguments); // errors are reported once the application exists
    const QStringList windowless = {ScreenshotOption, QStringLiteral("help"),
                                    QStringLiteral("help-all"), QStringLiteral("version")};
    for (const QString& option : windowless) {
        if (parser.isSet(option))
            qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}

int writeScreenshots(ColorLabWindow& window, const QString& directory)
{
    ScreenshotWriter writer(directory);
    const bool written = writer.write(window);
    for (const QString& file : writer.files())
        std::printf("%s\n", qPrintable(QDir::toNativeSeparators(file)));
    if (!written) {
        std::fprintf(stderr, "ColorLab: %s\n", qPrintable(writer.errorString()));
        return 1;
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    useOffscreenWhenNothingIsShown(argc, argv);
    QApplication app(argc, argv);
    QApplication::setApplicationName(QStringLiteral("ColorLab"));
    QApplication::setApplicationVersion(QStringLiteral(COLORLAB_VERSION));

    QCommandLineParser parser;
    describeOptions(parser);
    parser.process(app);

    ColorLabWindow window;
    if (parser.isSet(ScreenshotOption))
        return writeScreenshots(window, parser.value(ScreenshotOption));
    window.show();
    return app.exec();
}
