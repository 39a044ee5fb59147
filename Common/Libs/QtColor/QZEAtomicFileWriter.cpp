#include "QZEAtomicFileWriter.h"

QZEAtomicFileWriter::QZEAtomicFileWriter(const QString& name) : _file(name)
{
    // Writing in place would destroy the old file on a full disk.
    _file.setDirectWriteFallback(false);
}

bool QZEAtomicFileWriter::open()
{
    return _file.open(QIODevice::WriteOnly);
}

bool QZEAtomicFileWriter::write(const QByteArray& bytes)
{
    return _file.write(bytes) == qint64(bytes.size());
}

// A small file sits whole in the device's buffer, and commit() would rename
// it even when its only real write, the flush, failed: that flush is checked
// here first. The temporary file goes when the writer does.
bool QZEAtomicFileWriter::commit()
{
    return _file.flush() && _file.commit();
}
