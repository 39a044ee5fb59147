#include "zeImageFile.h"

#include <QZEAtomicFileWriter.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>

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
    QZEAtomicFileWriter file(path);
    if (file.open() && file.write(QByteArray::fromStdString(contents)) && file.commit())
        return true;
    why = file.errorString().toStdString();
    return false;
}
