#include "zeImageFile.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>

namespace {

// Why path cannot be read as a regular file; empty when it can be tried.
std::string notARegularFile(const QString& path, const QFileInfo& info)
{
    if (path.isEmpty() || !info.exists())
        return "no such file";
    if (info.isDir())
        return "is a directory";
    if (!info.isFile())
        return "not a regular file (a device, a pipe or a socket)";
    return std::string();
}

} // namespace

zeImageFile::ReadResult zeImageFile::read(const QString& path, qint64 maxSize, QByteArray& bytes,
                                          std::string& why)
{
    bytes.clear();
    const QFileInfo info(path);
    why = notARegularFile(path, info);
    if (!why.empty())
        return CannotRead;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        why = file.errorString().toStdString();
        return CannotRead;
    }
    const qint64 size = file.size();
    if (size > maxSize) {
        why = "larger than " + QLocale::c().formattedDataSize(maxSize, 0).toStdString();
        return TooLarge;
    }
    QByteArray contents = file.read(size);
    if (file.error() != QFileDevice::NoError) {
        why = file.errorString().toStdString();
        return CannotRead;
    }
    if (contents.size() != size || !file.read(1).isEmpty()) {
        why = "the file changed while it was read";
        return CannotRead;
    }
    bytes = contents;
    return Read;
}

bool zeImageFile::save(const QString& path, const std::string& contents, std::string& why)
{
    // Unbuffered, so that a refusal shows at the write that meets it, with
    // the system's reason: a buffered file keeps a small file's bytes until
    // the flush, and a flush or write cut short reports no reason at all.
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Unbuffered)) {
        why = file.errorString().toStdString();
        return false;
    }
    const qint64 size = qint64(contents.size());
    for (qint64 written = 0; written < size;) {
        const qint64 chunk = file.write(contents.data() + written, size - written);
        if (chunk <= 0) {
            why = file.errorString().toStdString();
            return false;
        }
        written += chunk;
    }
    if (!file.flush() || !file.commit()) {
        why = file.errorString().toStdString();
        return false;
    }
    return true;
}
