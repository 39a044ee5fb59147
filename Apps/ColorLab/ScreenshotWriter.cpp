#include "ScreenshotWriter.h"

#include "ColorLabWindow.h"
#include "ImagesPage.h"
#include "zeTextureMetaDataGUII.h"

#include <QDir>
#include <QPixmap>

const QSize ScreenshotWriter::WindowSize(860, 620);

ScreenshotWriter::ScreenshotWriter(const QString& directory) : _directory(directory) {}

bool ScreenshotWriter::write(ColorLabWindow& window)
{
    const QDir dir(_directory);
    if (!dir.mkpath(QStringLiteral("."))) {
        _error = tr("Cannot create the directory %1.").arg(QDir::toNativeSeparators(_directory));
        return false;
    }
    window.setAttribute(Qt::WA_DontShowOnScreen);
    window.resize(WindowSize);
    window.show();
    for (int i = 0; i < window.pageCount(); ++i) {
        window.showPage(i);
        if (!save(window, window.page(i)->objectName()))
            return false;
    }
    return writeImageInformation(window);
}

bool ScreenshotWriter::save(QWidget& widget, const QString& name)
{
    QCoreApplication::processEvents(); // lets the layouts settle before grabbing
    const QString file = QDir(_directory).filePath(name + QStringLiteral(".png"));
    if (!widget.grab().save(file, "PNG")) {
        _error = tr("Cannot write %1.").arg(QDir::toNativeSeparators(file));
        return false;
    }
    _files.append(file);
    return true;
}

bool ScreenshotWriter::writeImageInformation(ColorLabWindow& window)
{
    auto* images = window.findChild<ImagesPage*>();
    zeTextureMetaDataGUII* dialog = images ? images->openInformation(images->sampleFile()) : nullptr;
    if (!dialog) {
        _error = tr("Cannot show the information of the sample photo.");
        return false;
    }
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    dialog->show();
    const bool saved = save(*dialog, QStringLiteral("image-information"));
    dialog->close();
    return saved;
}
