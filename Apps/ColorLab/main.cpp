#include "ColorLabWindow.h"
#include "QZETranslator.h"
#include "ScreenshotWriter.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace {

// The status of a start that cannot go ahead as asked (unknown option, no
// display), as with the command-line tools.
constexpr int CannotStart = 2;

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
    // Single-dash words stay whole, so that the toolkit's own options
    // (-platform, -style) can be told apart from ours.
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.setApplicationDescription(translated(QT_TRANSLATE_NOOP("ColorLab", "Shows the QtColor widgets, one page per widget.")));
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addOption(screenshotOption());
}

// The options QApplication takes out of the arguments itself, as its
// documentation lists them.
bool isToolkitOption(const QString& name)
{
    static const QStringList names = {
        QStringLiteral("platform"),     QStringLiteral("platformpluginpath"),
        QStringLiteral("platformtheme"), QStringLiteral("plugin"),
        QStringLiteral("qmljsdebugger"), QStringLiteral("qwindowgeometry"),
        QStringLiteral("qwindowicon"),  QStringLiteral("qwindowtitle"),
        QStringLiteral("reverse"),      QStringLiteral("session"),
        QStringLiteral("display"),      QStringLiteral("geometry"),
        QStringLiteral("style"),        QStringLiteral("stylesheet"),
        QStringLiteral("widgetcount")};
    return names.contains(name);
}

enum class Start { Window, Windowless, UsageError, NoDisplay };

// Decided before any application object exists, because QApplication opens
// the display at once and aborts without one. Screenshots, help and version
// need no display; everything else needs a platform the user chose or a
// display to show the window on.
Start chooseStart(int argc, char** argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    QCommandLineParser parser;
    describeOptions(parser);
    const bool parsed = parser.parse(arguments);
    const QStringList unknown = parser.unknownOptionNames();
    if (!parsed && (unknown.isEmpty() || !std::all_of(unknown.cbegin(), unknown.cend(), isToolkitOption)))
        return Start::UsageError;
    const QStringList windowless = {ScreenshotOption, QStringLiteral("help"),
                                    QStringLiteral("help-all"), QStringLiteral("version")};
    if (std::any_of(windowless.cbegin(), windowless.cend(),
                    [&parser](const QString& option) { return parser.isSet(option); }))
        return Start::Windowless;
    const bool platformChosen = !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")
                                || unknown.contains(QStringLiteral("platform"));
    const bool displayNamed = !qEnvironmentVariableIsEmpty("DISPLAY")
                              || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
    return platformChosen || displayNamed ? Start::Window : Start::NoDisplay;
}

void nameApplication()
{
    QCoreApplication::setApplicationName(QStringLiteral("ColorLab"));
    QCoreApplication::setApplicationVersion(QStringLiteral(COLORLAB_VERSION));
    QZETranslator::install();
    QZETranslator::install(QStringLiteral("QtColorApps"));
}

void printError(const QString& problem, const QString& advice)
{
    std::fprintf(stderr, "ColorLab: %s\n%s\n", qPrintable(problem), qPrintable(advice));
}

QString screenshotAdvice()
{
    return translated(QT_TRANSLATE_NOOP("ColorLab", "Run ColorLab --screenshot DIR to render every page into DIR without a display."));
}

// Reports, in the user's language, why ColorLab stops before any window
// exists. A plain QCoreApplication needs no display.
int refuseToStart(int argc, char** argv, Start start)
{
    QCoreApplication app(argc, argv);
    nameApplication();
    if (start == Start::NoDisplay) {
        printError(translated(QT_TRANSLATE_NOOP("ColorLab", "no display to show the window on: neither DISPLAY nor WAYLAND_DISPLAY is set.")),
                   screenshotAdvice());
        return CannotStart;
    }
    QCommandLineParser parser;
    describeOptions(parser);
    parser.parse(QCoreApplication::arguments());
    printError(parser.errorText(), translated(QT_TRANSLATE_NOOP("ColorLab", "Run ColorLab --help to list the options.")));
    return CannotStart;
}

// A display that is named but cannot be opened, or a platform that does not
// exist, ends QApplication's start with a fatal message, which would abort
// with the advice to reinstall. While the application starts, ColorLab ends
// with the screenshot advice instead. No catalogue is loaded yet, so this one
// message is in English.
QtMessageHandler s_toolkitHandler = nullptr;

void endOnFailedPlatform(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type != QtFatalMsg) {
        s_toolkitHandler(type, context, message);
        return;
    }
    printError(translated(QT_TRANSLATE_NOOP("ColorLab", "the window system could not be opened.")),
               screenshotAdvice());
    std::_Exit(CannotStart);
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
    const Start start = chooseStart(argc, argv);
    if (start == Start::UsageError || start == Start::NoDisplay)
        return refuseToStart(argc, argv, start);
    // Without a chosen platform the windowless modes run off-screen, which
    // also makes screenshots look the same on every machine.
    if (start == Start::Windowless && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    s_toolkitHandler = qInstallMessageHandler(endOnFailedPlatform);
    QApplication app(argc, argv);
    qInstallMessageHandler(s_toolkitHandler);
    nameApplication();

    QCommandLineParser parser;
    describeOptions(parser);
    parser.process(app);

    ColorLabWindow window;
    if (parser.isSet(ScreenshotOption))
        return writeScreenshots(window, parser.value(ScreenshotOption));
    window.show();
    return app.exec();
}
