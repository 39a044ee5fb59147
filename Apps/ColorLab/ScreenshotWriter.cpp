#include "ScreenshotWriter.h"

#include "ColorLabWindow.h"

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
        QCoreApplication::processEvents(); // lets the layouts settle before grabbing
        const QString file = dir.filePath(window.page(i)->objectName() + QStringLiteral(".png"));
        if (!window.grab().save(file, "PNG")) {
            _error = tr("Cannot write %1.").arg(QDir::toNativeSeparators(file));
            return false;
        }
        _files.append(file);
    }
    return true;
}
