#ifndef SPECTRUMTOOL_H
#define SPECTRUMTOOL_H

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

class QZESpectrum;

// The qzespectrum command line: one positional command followed by its
// arguments, each command a small function over QZESpectrum. Its own output
// is plain "key: value" text for scripts; the spectral model's progress
// lines are kept out of it, and its error lines are passed on to standard
// error when a file operation fails.
// An input that is not read to its end (text among the numbers, a lone
// number) fails with the line where reading stopped unless --allow-partial
// is given; numbers such as -0.5 count as arguments, not as options.
class SpectrumTool
{
    Q_DECLARE_TR_FUNCTIONS(SpectrumTool)

public:
    enum ExitCode { Success = 0, FileError = 1, UsageError = 2 };

    SpectrumTool();

    // Runs the command line (program name first) and returns the exit code.
    int run(const QStringList& arguments);

private:
    struct Grid
    {
        int start;
        int delta;
        int num;
    };
    struct Invocation
    {
        QStringList arguments;
        Grid grid;
        QString output;
    };
    enum OptionUse { NotUsed, Optional, Required };
    using Handler = int (SpectrumTool::*)(const Invocation&);
    struct Command
    {
        const char* name;
        const char* syntax;
        const char* description;
        int argumentCount;
        OptionUse grid;
        OptionUse output;
        Handler handler;
    };
    static const Command Commands[];
    static const Grid DefaultGrid;

    QString helpText() const;
    static QString usage(const Command& command);
    static const Command* findCommand(const QString& name);
    int runCommand(const Command& command, const QStringList& arguments);
    int checkOption(const Command& command, const QCommandLineOption& option, OptionUse use);

    int info(const Invocation& call);
    int convert(const Invocation& call);
    int fromRgb(const Invocation& call);
    int resample(const Invocation& call);

    int parseGrid(const QString& text, Grid& grid);
    int parseChannel(const QString& text, float& channel);
    int loadSpectrum(const QString& name, QZESpectrum& spectrum);
    static QString stoppedAt(const QString& name, const QByteArray& bytes, qint64 offset);
    int saveSpectrum(QZESpectrum& spectrum, const QString& name);
    QStringList numbersAsPositional(const QStringList& arguments) const;
    bool takesValue(const QString& argument) const;
    int checkOutputName(const QString& name);
    void printInfo(const QZESpectrum& spectrum);
    void printField(const char* key, const QString& value);

    void warn(const QString& message);
    int usageError(const QString& message);
    int fileError(const QString& message, const QStringList& details = QStringList());

    QCommandLineParser _parser;
    QCommandLineOption _helpOption;
    QCommandLineOption _versionOption;
    QCommandLineOption _gridOption;
    QCommandLineOption _outputOption;
    QCommandLineOption _allowPartialOption;
    QTextStream _out;
    QTextStream _err;
};

#endif // SPECTRUMTOOL_H
