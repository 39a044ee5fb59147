#include "zeFile.h"

#include "zeLog.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QThread>

namespace {

void defaultReporter(const QString& title, const QString& message)
{
    if (zeFile::canShowMessageBox())
        QMessageBox::warning(QApplication::activeWindow(), title, message);
    else
        zeLog::warning("%s", qUtf8Printable(QStringLiteral("%1: %2").arg(title, message)));
}

zeFile::Reporter s_reporter = defaultReporter;

QString shown(const QString& path)
{
    return QDir::toNativeSeparators(path);
}

bool fail(const QString& title, const QString& message)
{
    s_reporter(title, message);
    return false;
}

} // namespace

bool zeFile::checkRead(const QString& path)
{
    const QString title = tr("Cannot Read File");
    if (path.isEmpty())
        return fail(title, tr("No file name was given."));
    const QFileInfo file(path);
    if (!file.exists())
        return fail(title, tr("The file \"%1\" does not exist.").arg(shown(path)));
    if (file.isDir())
        return fail(title, tr("\"%1\" is a folder, not a file.").arg(shown(path)));
    if (!file.isReadable())
        return fail(title, tr("You do not have permission to read \"%1\".").arg(shown(path)));
    return true;
}

bool zeFile::checkRead(const char* path)
{
    return checkRead(QString::fromUtf8(path));
}

bool zeFile::checkWrite(const QString& path)
{
    const QString title = tr("Cannot Write File");
    if (path.isEmpty())
        return fail(title, tr("No file name was given."));
    const QFileInfo file(path);
    if (file.exists()) {
        if (file.isDir())
            return fail(title, tr("\"%1\" is a folder, not a file.").arg(shown(path)));
        if (!file.isWritable())
            return fail(title, tr("You do not have permission to write \"%1\".").arg(shown(path)));
        return true;
    }
    const QFileInfo parent(file.absolutePath());
    if (!parent.exists())
        return fail(title, tr("Cannot create \"%1\": the folder \"%2\" does not exist.")
                               .arg(shown(path), shown(parent.filePath())));
    if (!parent.isDir())
        return fail(title, tr("Cannot create \"%1\": \"%2\" is not a folder.")
                               .arg(shown(path), shown(parent.filePath())));
    if (!parent.isWritable())
        return fail(title,
                    tr("Cannot create \"%1\": you do not have permission to write in the folder \"%2\".")
                        .arg(shown(path), shown(parent.filePath())));
    return true;
}

bool zeFile::checkWrite(const char* path)
{
    return checkWrite(QString::fromUtf8(path));
}

zeFile::Reporter zeFile::setReporter(Reporter reporter)
{
    const Reporter previous = s_reporter;
    s_reporter = reporter ? reporter : defaultReporter;
    return previous == defaultReporter ? nullptr : previous;
}

bool zeFile::canShowMessageBox()
{
    const QCoreApplication* app = QCoreApplication::instance();
    return qobject_cast<const QApplication*>(app) && QThread::currentThread() == app->thread();
}
