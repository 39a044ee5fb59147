#ifndef IMAGEMETATOOL_H
#define IMAGEMETATOOL_H

#include <zeImageMetaWriter.h>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

class zeRenderSettings;

// The zeimagemeta command line: "show FILE" prints the metadata blocks that
// the image loader attaches to FILE, "stamp FILE ..." writes a
// render-settings record into it. The blocks are printed as they are, each
// under its attachment name in brackets, so scripts can pick them apart.
class ImageMetaTool
{
    Q_DECLARE_TR_FUNCTIONS(ImageMetaTool)

public:
    enum ExitCode { Success = 0, FileError = 1, UsageError = 2 };

    ImageMetaTool();

    // Runs the command line (program name first) and returns the exit code.
    int run(const QStringList& arguments);

private:
    QString helpText() const;
    int runCommand(const QString& command, const QStringList& files);
    int show(const QString& file);
    int stamp(const QString& file);
    int checkStampOptions(zeRenderSettings& record);
    int parseGroups(const QString& text, int& mask);
    void printBlock(const std::string& name, const std::string& block);
    QString stampFailure(zeImageMetaWriter::Result result, const QString& file,
                         const QString& detail) const;

    int usageError(const QString& message);
    int fileError(const QString& message);

    QCommandLineParser _parser;
    QCommandLineOption _helpOption;
    QCommandLineOption _sceneOption;
    QCommandLineOption _versionOption;
    QCommandLineOption _dateOption;
    QCommandLineOption _groupsOption;
    QCommandLineOption _exifOption;
    QTextStream _out;
    QTextStream _err;
};

#endif // IMAGEMETATOOL_H
