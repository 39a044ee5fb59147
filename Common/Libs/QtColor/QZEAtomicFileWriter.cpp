#include "QZEAtomicFileWriter.h"

QZEAtomicFileWriter::QZEAtomicFileWriter(const QString& name) : _file(name)
{
    // Writing in place would destroy the old file on a full disk.
    _file.setDirectWriteFallback(false);
}

// Unbuffered, so that every write reaches the system at once and a refusal
// is seen where it happens.
bool QZEAtomicFileWriter::open()
{
    return _file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
}

// A short write (the disk filled up midway) is followed by another for the
// rest, which then fails with the system's reason.
bool QZEAtomicFileWriter::write(const QByteArray& bytes)
{
    qint64 written = 0;
    while (written < bytes.size()) {
        const qint64 count = _file.write(bytes.constData() + written, bytes.size() - written);
        if (count <= 0)
            return false;
        written += count;
    }
    return true;
}

// commit() would rename the file even when a buffered last write failed in
// its flush, so the flush is checked here first. The temporary file goes when
// the writer does.
bool QZEAtomicFileWriter::commit()
{
    return _file.flush() && _file.commit();
}

bool QZEAtomicFileWriter::setPermissions(QFileDevice::Permissions permissions)
{
    return _file.isOpen() && _file.setPermissions(permissions);
}
