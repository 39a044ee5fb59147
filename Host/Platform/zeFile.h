#ifndef ZEFILE_H
#define ZEFILE_H

#include <QCoreApplication>
#include <QString>

/// Checks the host makes before it reads or writes a file. A failed check
/// reports why by itself, naming the path, and returns false, so callers just
/// stop. Reports go to a host-installable reporter; the default one shows a
/// warning message box in a widgets application (on its GUI thread) and
/// writes to zeLog otherwise.
class zeFile
{
    Q_DECLARE_TR_FUNCTIONS(zeFile)

public:
    /// Shows or logs a failed check: a short title and a message naming the path.
    using Reporter = void (*)(const QString& title, const QString& message);

    /// An existing file (not a directory) the user may read.
    static bool checkRead(const QString& path);
    /// checkRead() for a UTF-8 encoded path.
    static bool checkRead(const char* path);

    /// An existing file (not a directory) the user may write, or a new file
    /// in an existing directory the user may write in.
    static bool checkWrite(const QString& path);
    /// checkWrite() for a UTF-8 encoded path.
    static bool checkWrite(const char* path);

    /// Installs reporter (nullptr restores the default) and returns the
    /// previous one (nullptr for the default).
    static Reporter setReporter(Reporter reporter);

    /// Whether the default reporter can show a message box here: a widgets
    /// application exists and this is its thread.
    static bool canShowMessageBox();
};

#endif // ZEFILE_H
