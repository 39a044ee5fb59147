#ifndef ZEICONMANAGER_H
#define ZEICONMANAGER_H

#include <QIcon>
#include <QString>

/// The host's icons by name. Each known name maps to a freedesktop icon name
/// taken from the desktop's icon theme; where the theme has none, a bundled
/// icon (resources under ":/qtcolor/icons") stands in.
///
///   "FileOpen"  -> "document-open"
///   "CreateNew" -> "document-new"
///   "Save"      -> "document-save"
///
/// An unknown name gives a null icon.
class zeIconManager
{
public:
    /// The icon for name ("FileOpen", "CreateNew" or "Save"); null for other names.
    static QIcon getIcon(const QString& name);
};

#endif // ZEICONMANAGER_H
