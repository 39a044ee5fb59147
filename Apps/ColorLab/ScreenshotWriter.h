#ifndef SCREENSHOTWRITER_H
#define SCREENSHOTWRITER_H

#include <QCoreApplication>
#include <QSize>
#include <QStringList>

class ColorLabWindow;
class DialogPage;
class QDir;
class QImage;
class QWidget;
class QZEColorDialog;

// Renders every page of a ColorLab window, without showing it on screen, into
// <directory>/<page name>.png at a fixed window size; then the window's colour
// dialog at its own size, at device pixel ratio 1 into colordialog.png and at
// ratio 2 (twice as many pixels each way, as on a high-DPI screen) into
// colordialog@2x.png; then the dialog's spectrum tab with the dialog page's
// daylight spectrum, at ratio 1, into colordialog-spectrum.png; last the
// image information dialog of the Images page's sample photo into
// image-information.png at the dialog's own size; last the image browser on
// the Images page's sample renders, with every thumbnail arrived and a
// stamped render selected so that its groups are ticked in the filter tree,
// into image-browser.png.
class ScreenshotWriter
{
    Q_DECLARE_TR_FUNCTIONS(ScreenshotWriter)

public:
    static const QSize WindowSize;
    static const QSize BrowserSize;

    explicit ScreenshotWriter(const QString& directory);

    // Creates the directory when needed; each file is replaced whole or not at
    // all. Stops at the first failure.
    bool write(ColorLabWindow& window);
    QStringList files() const { return _files; }
    QString errorString() const { return _error; }

private:
    bool writePages(ColorLabWindow& window, const QDir& dir);
    bool writeDialog(QZEColorDialog& dialog, DialogPage& page, const QDir& dir);
    bool writeDialogAtRatio(QWidget& dialog, int ratio, const QString& file);
    bool writeSpectrumTab(QZEColorDialog& dialog, DialogPage& page, const QDir& dir);
    bool writeImageInformation(ColorLabWindow& window, const QDir& dir);
    bool writeImageBrowser(ColorLabWindow& window, const QDir& dir);
    bool save(const QImage& image, const QString& file);

    QString _directory;
    QStringList _files;
    QString _error;
};

#endif // SCREENSHOTWRITER_H
