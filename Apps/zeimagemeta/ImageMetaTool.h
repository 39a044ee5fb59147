#ifndef IMAGEMETATOOL_H
#define IMAGEMETATOOL_H

#include <zeImageMetaWriter.h>

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <string>

class zeRenderSettings;

namespace osg {
class Image;
}

// The zeimagemeta command line: "show FILE..." prints what the image loader
// finds in each FILE without decoding its pixels (size and channels, the
// baseline and EXIF blocks as they are, each under its name in brackets,
// and the render-settings record decoded), "stamp FILE ..." writes a
// render-settings record into one file. Several files to show each get a
// heading "==> FILE <==", with an empty line between reports; the status is
// 1 when any of them could not be read.
//
// Warnings of the image plugins and of exiv2 go to standard error once
// each, behind the program's name, while the tool runs.
class ImageMetaTool
{
    Q_DECLARE_TR_FUNCTIONS(ImageMetaTool)

public:
    enum ExitCode { Success = 0, FileError = 1, UsageError = 2 };

    // Also sets the application version that --version prints.
    ImageMetaTool();

    // Runs the command line (program name first) and returns the exit code.
    int run(const QStringList& arguments);

private:
    QString helpText() const;
    int runCommand(const QString& command, const QStringList& files);
    int showAll(const QStringList& files);
    int show(const QString& file, int* shown);
    void printShape(const osg::Image& image);
    void printBlock(const QString& name, const std::string& block);
    void printRecord(const zeRenderSettings& record);
    int stamp(const QString& file);
    int checkStampOptions(zeRenderSettings& record);
    int parseGroups(const QString& text, int& mask);
    QString stampFailure(zeImageMetaWriter::Result result, const QString& file,
                         const QString& detail) const;

    int usageError(const QString& message);
    int fileError(const QString& message);

    QCommandLineParser _parser;
    QCommandLineOption _helpOption;
    QCommandLineOption _versionOption;
    QCommandLineOption _sceneOption;
    QCommandLineOption _renderVersionOption;
    QCommandLineOption _dateOption;
    QCommandLineOption _groupsOption;
    QCommandLineOption _exifOption;
    QTextStream _out;
    QTextStream _err;
};

#endif // IMAGEMETATOOL_H
