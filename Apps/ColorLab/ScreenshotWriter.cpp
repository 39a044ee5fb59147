#include "ScreenshotWriter.h"

#include "ColorLabWindow.h"
#include "DialogPage.h"
#include "ImagesPage.h"
#include "QZEColorDialog.h"
#include "QZEConvertImage.h"
#include "QZEImageFileDialog.h"
#include "SampleRenders.h"
#include "zeTextureMetaDataGUII.h"

#include <QZEAtomicFileWriter.h>

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFileSystemModel>
#include <QListView>
#include <QSplitter>
#include <QThreadPool>
#include <QPainter>
#include <QPixmap>
#include <QTabWidget>

#include <functional>

const QSize ScreenshotWriter::WindowSize(860, 620);
const QSize ScreenshotWriter::BrowserSize(1280, 580);

ScreenshotWriter::ScreenshotWriter(const QString& directory) : _directory(directory) {}

bool ScreenshotWriter::write(ColorLabWindow& window)
{
    const QDir dir(_directory);
    if (!dir.mkpath(QStringLiteral("."))) {
        _error = tr("Cannot create the directory %1.").arg(QDir::toNativeSeparators(_directory));
        return false;
    }
    return writePages(window, dir)
           && writeDialog(*window.colorDialog(), *window.findChild<DialogPage*>(), dir)
           && writeImageInformation(window, dir) && writeImageBrowser(window, dir);
}

bool ScreenshotWriter::writePages(ColorLabWindow& window, const QDir& dir)
{
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(WindowSize);
    window.show();
    for (int i = 0; i < window.pageCount(); ++i) {
        window.showPage(i);
        QCoreApplication::processEvents(); // lets the layouts settle before grabbing
        const QString file = dir.filePath(window.page(i)->objectName() + QStringLiteral(".png"));
        if (!save(window.grab().toImage(), file))
            return false;
    }
    return true;
}

bool ScreenshotWriter::writeDialog(QZEColorDialog& dialog, DialogPage& page, const QDir& dir)
{
    const bool wasVisible = dialog.isVisible();
    if (!wasVisible) {
        dialog.setAttribute(Qt::WA_DontShowOnScreen);
        dialog.show();
    }
    QCoreApplication::processEvents();
    const bool written = writeDialogAtRatio(dialog, 1, dir.filePath(QStringLiteral("colordialog.png")))
                         && writeDialogAtRatio(dialog, 2, dir.filePath(QStringLiteral("colordialog@2x.png")))
                         && writeSpectrumTab(dialog, page, dir);
    if (!wasVisible) {
        dialog.hide();
        dialog.setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    return written;
}

// The dialog is painted through a painter on an image of the wanted pixel
// ratio, so the ratio-2 picture is drawn at twice the resolution (text and
// gradients sharp) rather than scaled up from the ratio-1 one.
bool ScreenshotWriter::writeDialogAtRatio(QWidget& dialog, int ratio, const QString& file)
{
    QImage image(dialog.size() * ratio, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    {
        QPainter painter(&image);
        dialog.render(&painter);
    }
    return save(image, file);
}

// The dialog stays on the spectrum tab afterwards, as after the page's
// button: with an active spectrum it keeps its colour tab disabled. The tab
// can only be chosen once it holds a spectrum, and the dialog fits its plot
// to the view when it is given one, so the spectrum is lent again once the
// chosen tab's layout has settled.
bool ScreenshotWriter::writeSpectrumTab(QZEColorDialog& dialog, DialogPage& page, const QDir& dir)
{
    page.lendSpectrumToDialog();
    auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    tabs->setCurrentWidget(dialog.findChild<QWidget*>(QStringLiteral("_spectrum_tab")));
    QCoreApplication::processEvents();
    page.lendSpectrumToDialog();
    QCoreApplication::processEvents();
    return writeDialogAtRatio(dialog, 1, dir.filePath(QStringLiteral("colordialog-spectrum.png")));
}

bool ScreenshotWriter::writeImageInformation(ColorLabWindow& window, const QDir& dir)
{
    auto* images = window.findChild<ImagesPage*>();
    zeTextureMetaDataGUII* dialog = images ? images->openInformation(images->sampleFile()) : nullptr;
    if (!dialog) {
        _error = tr("Cannot show the information of the sample photo.");
        return false;
    }
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    dialog->show();
    QCoreApplication::processEvents();
    const bool saved = save(dialog->grab().toImage(), dir.filePath(QStringLiteral("image-information.png")));
    dialog->close();
    return saved;
}

namespace {

// The longest wait for the folder listing and for the thumbnails.
constexpr int BrowserWaitMs = 20000;

// Runs events until done() holds or the wait is over.
bool processEventsUntil(const std::function<bool()>& done)
{
    QElapsedTimer waited;
    waited.start();
    while (!done() && waited.elapsed() < BrowserWaitMs) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
        QThreadPool::globalInstance()->waitForDone(10);
    }
    return done();
}

bool everyThumbnailArrived(QZEImageFileDialog& dialog, int files)
{
    const std::map<QString, QImage*>& thumbnails = *dialog.getImages();
    if (int(thumbnails.size()) < files)
        return false;
    for (const auto& entry : thumbnails) {
        if (QZEConvertImage::finishedImage(entry.second).isNull())
            return false;
    }
    return true;
}

} // namespace

// The browser lists its folder and makes its thumbnails asynchronously; the
// picture is taken once the listing is there, the stamped render is current
// with its groups read, and every thumbnail has been painted once, so that
// its job ran, and then again with the result.
bool ScreenshotWriter::writeImageBrowser(ColorLabWindow& window, const QDir& dir)
{
    auto* images = window.findChild<ImagesPage*>();
    const QString folder = images ? images->sampleRendersFolder() : QString();
    const int files = SampleRenders::samples().size();
    QZEImageFileDialog dialog(&window, folder, QStringLiteral("*.png *.jpg *.tif"), true);
    dialog.setAttribute(Qt::WA_DontShowOnScreen);
    dialog.resize(BrowserSize);
    // Room for three thumbnail columns, so every sample shows at once.
    if (auto* splitter = dialog.findChild<QSplitter*>(QStringLiteral("_splitter")))
        splitter->setSizes({200, BrowserSize.width()});
    dialog.show();
    auto* list = dialog.findChild<QListView*>(QStringLiteral("_list"));
    auto* model = list ? qobject_cast<QFileSystemModel*>(list->model()) : nullptr;
    const bool listed = model && processEventsUntil([&] {
        return model->rowCount(list->rootIndex()) == files;
    });
    if (listed) {
        const QString stamped = QDir(folder).filePath(SampleRenders::samples().first().fileName);
        list->setCurrentIndex(model->index(stamped));
        dialog.updateMetaDataInfo(); // what the browser's own 10 ms timer would do
        dialog.grab();
    }
    if (!listed || !processEventsUntil([&] { return everyThumbnailArrived(dialog, files); })) {
        _error = tr("The image browser did not show the sample renders in time.");
        return false;
    }
    QCoreApplication::processEvents();
    return writeDialogAtRatio(dialog, 1, dir.filePath(QStringLiteral("image-browser.png")));
}

bool ScreenshotWriter::save(const QImage& image, const QString& file)
{
    QByteArray png;
    QBuffer buffer(&png);
    QZEAtomicFileWriter out(file);
    if (!buffer.open(QIODevice::WriteOnly) || !image.save(&buffer, "PNG") || !out.open()
        || !out.write(png) || !out.commit()) {
        _error = tr("Cannot write %1.").arg(QDir::toNativeSeparators(file));
        return false;
    }
    _files.append(file);
    return true;
}
