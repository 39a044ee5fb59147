#ifndef SCREENSHOTWRITER_H
#define SCREENSHOTWRITER_H

#include <QCoreApplication>
#include <QSize>
#include <QStringList>

class ColorLabWindow;
class QWidget;

// Renders every page of a ColorLab window, without showing it on screen, into
// <directory>/<page name>.png at a fixed window size, then the image
// information dialog of the Images page's sample photo into
// <directory>/image-information.png at the dialog's own size.
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
    bool save(QWidget& widget, const QString& name);
    bool writeImageInformation(ColorLabWindow& window);

    QString _directory;
    QStringList _files;
    QString _error;
};

#endif // SCREENSHOTWRITER_H
