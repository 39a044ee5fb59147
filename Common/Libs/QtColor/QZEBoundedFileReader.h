#ifndef QZEBOUNDEDFILEREADER_H
#define QZEBOUNDEDFILEREADER_H

#include <QByteArray>
#include <QString>

/// Reads a file, pipe or device whole into memory, but never more than a
/// limit: an input that goes on beyond it (a huge file, /dev/zero, an endless
/// pipe) is refused as too large rather than read on or cut short. The bytes
/// are copied with plain reads, never mapped, so a file that shrinks while it
/// is read only ends the read early instead of faulting.
class QZEBoundedFileReader
{
public:
    /// What read() did: read it all, could not open, refused as larger than
    /// the limit, or failed while reading.
    enum Result { Read, OpenFailed, TooLarge, ReadFailed };

    /// The largest limit: what one QByteArray holds with room to spare.
    static constexpr qint64 MaxLimit = qint64(1) << 30;

    /// A maxBytes above MaxLimit counts as MaxLimit.
    QZEBoundedFileReader(const QString& name, qint64 maxBytes);

    /// Fills bytes with the whole input when the result is Read.
    Result read(QByteArray& bytes);

    /// Why opening or reading failed, in the system's words.
    QString errorString() const { return _error; }

private:
    QString _name;
    qint64 _maxBytes;
    QString _error;
};

#endif // QZEBOUNDEDFILEREADER_H
