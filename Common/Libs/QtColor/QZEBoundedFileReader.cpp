#include "QZEBoundedFileReader.h"

#include <QFile>

#include <algorithm>

namespace {

// What a pipe or device gets first; the buffer doubles from there.
constexpr qint64 FirstChunk = 64 * 1024;

} // namespace

QZEBoundedFileReader::QZEBoundedFileReader(const QString& name, qint64 maxBytes)
    : _name(name), _maxBytes(std::clamp<qint64>(maxBytes, 0, MaxLimit))
{
}

// One byte beyond the limit is asked for, so that an input of exactly the
// limit reads and a longer one is told apart from it.
QZEBoundedFileReader::Result QZEBoundedFileReader::read(QByteArray& bytes)
{
    QFile file(_name);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        _error = file.errorString();
        return OpenFailed;
    }
    const qint64 wanted = _maxBytes + 1;
    // A regular file's size is only a hint: it may change while it is read.
    const qint64 hint = file.isSequential() ? FirstChunk : file.size() + 1;
    QByteArray buffer;
    buffer.resize(int(std::min(std::max(hint, qint64(1)), wanted)));
    qint64 filled = 0;
    for (;;) {
        const qint64 got = file.read(buffer.data() + filled, buffer.size() - filled);
        if (got < 0) {
            _error = file.errorString();
            return ReadFailed;
        }
        filled += got;
        if (got == 0 || filled >= wanted)
            break;
        if (filled == buffer.size())
            buffer.resize(int(std::min(qint64(buffer.size()) * 2, wanted)));
    }
    if (filled > _maxBytes)
        return TooLarge;
    buffer.resize(int(filled));
    bytes = buffer;
    return Read;
}
