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
    // Unbuffered: whole reads go straight into their array, and the reads of
    // a layout walk jump about the file, where a read-ahead buffer is refilled
    // at every jump.
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
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

// The start of the file is read once: JPEG headers and TIFF directories
// usually lie within it, so that most layout walks cost a single read.
constexpr qint64 HeadBytes = 64 * 1024;

// Reads size bytes at offset into to, the part within head from head; false
// with the reason when the file gives fewer.
bool readExactly(QFile& file, const QByteArray& head, qint64 offset, qint64 size, char* to,
                 std::string& why)
{
    const qint64 fromHead = std::clamp<qint64>(head.size() - offset, 0, size);
    std::copy_n(head.constData() + std::min<qint64>(offset, head.size()), fromHead, to);
    if (fromHead == size
        || (file.seek(offset + fromHead)
            && file.read(to + fromHead, size - fromHead) == size - fromHead))
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
    const QByteArray head = file.read(std::min(size, HeadBytes));
    if (head.size() != std::min(size, HeadBytes))
        return read(path, maxSize, bytes, why);
    const auto readAt = [&file, &head](std::uint64_t offset, std::uint64_t length) {
        const std::uint64_t inHead = std::uint64_t(head.size());
        if (offset <= inHead && length <= inHead - offset)
            return head.mid(int(offset), int(length));
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
        if (skipFrom > at
            && !readExactly(file, head, at, skipFrom - at,
                            pages->writable(std::size_t(at), std::size_t(skipFrom - at)), why))
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
