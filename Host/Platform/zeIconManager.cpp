#include "zeIconManager.h"

namespace {

struct IconName
{
    const char* hostName;
    const char* themeName;
};

constexpr IconName IconNames[] = {
    {"FileOpen", "document-open"},
    {"CreateNew", "document-new"},
    {"Save", "document-save"},
};

// Sizes of the bundled renderings; QIcon scales the nearest one for others.
constexpr int BundledSizes[] = {16, 32, 64};

QIcon bundledIcon(const QString& themeName)
{
    QIcon icon;
    for (const int size : BundledSizes)
        icon.addFile(QStringLiteral(":/qtcolor/icons/%1-%2.png").arg(themeName).arg(size),
                     QSize(size, size));
    return icon;
}

} // namespace

QIcon zeIconManager::getIcon(const QString& name)
{
    for (const IconName& entry : IconNames) {
        if (name == QLatin1String(entry.hostName)) {
            const QString themeName = QLatin1String(entry.themeName);
            return QIcon::fromTheme(themeName, bundledIcon(themeName));
        }
    }
    return QIcon();
}
