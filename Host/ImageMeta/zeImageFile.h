#ifndef ZEIMAGEFILE_H
#define ZEIMAGEFILE_H

#include <QByteArray>
#include <QString>

#include <memory>
#include <string>

class zeZeroPages;

// Reading and replacing users' image files, bounded and with the reason for
// every failure in words a user can act on ("is a directory", "Permission
// denied", "No space left on device").
class zeImageFile
{
public:
    enum ReadResult { Read, TooLarge, CannotRead };

    // Reads the whole regular file at path into bytes. Refuses, with the
    // reason in why: a missing path, a directory, anything that is not a
    // regular file (a device, a pipe, a socket; also through a symbolic
    // link), a file over maxSize bytes, a file that cannot be opened (the
    // system's reason), and a file whose size changed while it was read, so
    // a partial read is never taken for the file. bytes is left empty on
    // failure; TooLarge tells the size limit apart from the other reasons.
    static ReadResult read(const QString& path, qint64 maxSize, QByteArray& bytes,
                           std::string& why);

    // Reads the file at path as read() does, except for the pixels of a
    // TIFF or JPEG file whose layout tells them apart from its header and
    // metadata: those bytes read as zeros, are never copied, and beyond the
    // file's first 64 KiB (read in one go) are not read either (the first 64
    // bytes, where readers look for signatures, are always kept). bytes then
    // views memory, which must outlive every use of bytes. Any other file is
    // read whole into bytes and memory stays empty.
    static ReadResult readWithoutPixels(const QString& path, qint64 maxSize, QByteArray& bytes,
                                        std::unique_ptr<zeZeroPages>& memory, std::string& why);

    // Replaces the file at path by contents through a temporary file in the
    // same folder: the write and the final flush are checked before the
    // temporary file is renamed over path, so on any failure (a full disk,
    // a file-size limit, a folder that cannot be written) path keeps its old
    // bytes and why holds the system's reason.
    static bool save(const QString& path, const std::string& contents, std::string& why);
};

#endif // ZEIMAGEFILE_H
