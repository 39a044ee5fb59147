#ifndef QZEATOMICFILEWRITER_H
#define QZEATOMICFILEWRITER_H

#include <QByteArray>
#include <QSaveFile>
#include <QString>

/// Replaces a file in one step. The new content goes to a temporary file in
/// the destination's folder, and only when every byte and the final flush have
/// reached it is it renamed over the destination; until then, and after any
/// failure, the destination keeps its old bytes. A writer dropped without
/// commit() removes its temporary file.
///
/// A destination that is a directory, that exists but may not be written, or
/// whose folder may not be written is refused by open(). An existing
/// destination keeps its permissions; a symbolic link is followed and its
/// target replaced.
class QZEAtomicFileWriter
{
public:
    /// A writer for the file name; nothing happens on disk before open().
    explicit QZEAtomicFileWriter(const QString& name);
    QZEAtomicFileWriter(const QZEAtomicFileWriter&) = delete;
    QZEAtomicFileWriter& operator=(const QZEAtomicFileWriter&) = delete;

    /// Creates the temporary file; false, with errorString(), when refused.
    bool open();
    /// All of bytes, or false.
    bool write(const QByteArray& bytes);
    /// Flushes, then renames the temporary file over the destination.
    bool commit();

    /// Why the last step failed, in the system's words.
    QString errorString() const { return _file.errorString(); }

private:
    QSaveFile _file;
};

#endif // QZEATOMICFILEWRITER_H
