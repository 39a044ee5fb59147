#include "ScreenshotWriter.h"

#include "ColorLabWindow.h"
#include "ImagesPage.h"
#include "QZEColorDialog.h"
#include "zeTextureMetaDataGUII.h"

#include <QDir>
#include <QPainter>
#include <QPixmap>
#include <QSaveFile>

const QSize ScreenshotWriter::WindowSize(860, 620);

ScreenshotWriter::ScreenshotWriter(const QString& directory) : _directory(directory) {}

bool ScreenshotWriter::write(ColorLabWindow& window)
{
    const QDir dir(_directory);
    if (!dir.mkpath(QStringLiteral("."))) {
        _error = tr("Cannot create the directory %1.").arg(QDir::toNativeSeparators(_directory));
        return false;
    }
    return writePages(window, dir) && writeDialog(*window.colorDialog(), dir)
           && writeImageInformation(window, dir);
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

// The dialog is painted through a painter on an image of the wanted pixel
// ratio, so the ratio-2 picture is drawn at twice the resolution (text and
// gradients sharp) rather than scaled up from the ratio-1 one.
bool ScreenshotWriter::writeDialog(QWidget& dialog, const QDir& dir)
{
    const bool wasVisible = dialog.isVisible();
    if (!wasVisible) {
        dialog.setAttribute(Qt::WA_DontShowOnScreen);
        dialog.show();
    }
    QCoreApplication::processEvents();
    bool written = true;
    for (const int ratio : {1, 2}) {
        QImage image(dialog.size() * ratio, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        {
            QPainter painter(&image);
            dialog.render(&painter);
        }
        const QString name = ratio == 1 ? QStringLiteral("colordialog.png") : QStringLiteral("colordialog@2x.png");
        written = save(image, dir.filePath(name));
        if (!written)
            break;
    }
    if (!wasVisible) {
        dialog.hide();
        dialog.setAttribute(Qt::WA_DontShowOnScreen, false);
    }
    return written;
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

bool ScreenshotWriter::save(const QImage& image, const QString& file)
{
    QSaveFile out(file);
    if (!out.open(QIODevice::WriteOnly) || !image.save(&out, "PNG") || !out.commit()) {
        _error = tr("Cannot write %1.").arg(QDir::toNativeSeparators(file));
        return false;
    }
    _files.append(file);
    return true;
}
