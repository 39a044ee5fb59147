#include "zeImageFile.h"

#include "zeJpegLayout.h"
#include "zeTiffLayout.h"
#include "zeZeroPages.h"

#include <QZEAtomicFileWriter.h>

#include <QFile>
#include <QFileInfo>
#include <QLocale>

#include <algorithm>

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

// Opens path for reading when it is a regular file of at most maxSize bytes;
// bytes is emptied first, so that no failure leaves old contents behind.
zeImageFile::ReadResult openBounded(const QString& path, qint64 maxSize, QFile& file,
                                    QByteArray& bytes, std::string& why)
{
    bytes.clear();
    why = notARegularFile(path, QFileInfo(path));
    if (!why.empty())
        return zeImageFile::CannotRead;
    file.setFileName(path);
    if (!file.open(QIODevice::ReadOnly)) {
        why = file.errorString().toStdString();
        return zeImageFile::CannotRead;
    }
    if (file.size() > maxSize) {
        why = "larger than " + QLocale::c().formattedDataSize(maxSize, 0).toStdString();
        return zeImageFile::TooLarge;
    }
    return zeImageFile::Read;
}

const char* const ChangedWhileRead = "the file changed while it was read";

// The first bytes, where readers look for a format's signature, are read
// even when they hold pixels, so that a format is told from the same bytes
// as in a whole read.
constexpr qint64 SignatureBytes = 64;

// Reads size bytes at offset into to; false with the reason when the file
// gives fewer.
bool readExactly(QFile& file, qint64 offset, qint64 size, char* to, std::string& why)
{
    if (file.seek(offset) && file.read(to, size) == size)
        return true;
    why = file.error() != QFileDevice::NoError ? file.errorString().toStdString()
                                               : std::string(ChangedWhileRead);
    return false;
}

} // namespace

zeImageFile::ReadResult zeImageFile::read(const QString& path, qint64 maxSize, QByteArray& bytes,
                                          std::string& why)
{
    QFile file;
    const ReadResult opened = openBounded(path, maxSize, file, bytes, why);
    if (opened != Read)
        return opened;
    const qint64 size = file.size();
    QByteArray contents = file.read(size);
    if (file.error() != QFileDevice::NoError) {
        why = file.errorString().toStdString();
        return CannotRead;
    }
    if (contents.size() != size || !file.read(1).isEmpty()) {
        why = ChangedWhileRead;
        return CannotRead;
    }
    bytes = contents;
    return Read;
}

zeImageFile::ReadResult zeImageFile::readWithoutPixels(const QString& path, qint64 maxSize,
                                                       QByteArray& bytes,
                                                       std::unique_ptr<zeZeroPages>& memory,
                                                       std::string& why)
{
    memory.reset();
    QFile file;
    const ReadResult opened = openBounded(path, maxSize, file, bytes, why);
    if (opened != Read)
        return opened;
    const qint64 size = file.size();
    const auto readAt = [&file](std::uint64_t offset, std::uint64_t length) {
        return file.seek(qint64(offset)) ? file.read(qint64(length)) : QByteArray();
    };
    std::vector<zeTiffLayout::Range> pixels;
    if (size == 0
        || !(zeTiffLayout::pixelRanges(readAt, std::uint64_t(size), pixels)
             || zeJpegLayout::pixelRanges(readAt, std::uint64_t(size), pixels))
        || pixels.empty())
        return read(path, maxSize, bytes, why);
    auto pages = std::make_unique<zeZeroPages>(std::size_t(size));
    if (!pages->isValid())
        return read(path, maxSize, bytes, why);
    pixels.push_back({std::uint64_t(size), 0});
    qint64 at = 0;
    for (const zeTiffLayout::Range& skipped : pixels) {
        const qint64 skipFrom = std::max(qint64(skipped.offset), std::min(size, SignatureBytes));
        const qint64 skipTo = std::max(skipFrom, qint64(skipped.offset + skipped.size));
        if (skipFrom > at && !readExactly(file, at, skipFrom - at, pages->data() + at, why))
            return CannotRead;
        at = std::max(at, skipTo);
    }
    if (file.size() != size) {
        why = ChangedWhileRead;
        return CannotRead;
    }
    memory = std::move(pages);
    bytes = memory->bytes();
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
