#ifndef SCREENSHOTWRITER_H
#define SCREENSHOTWRITER_H

#include <QCoreApplication>
#include <QSize>
#include <QStringList>

class ColorLabWindow;

// Renders every page of a ColorLab window, without showing it on screen, into
// <directory>/<page name>.png at a fixed window size.
class ScreenshotWriter
{
    Q_DECLARE_TR_FUNCTIONS(ScreenshotWriter)

public:
    static const QSize WindowSize;

    explicit ScreenshotWriter(const QString& directory);

    // Creates the directory when needed; stops at the first failure.
    bool write(ColorLabWindow& window);
    QStringList files() const { return _files; }
    QString errorString() const { return _error; }

private:
    QString _directory;
    QStringList _files;
    QString _error;
};

#endif // SCREENSHOTWRITER_H
