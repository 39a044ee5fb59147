#include "zePlatform.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScreen>

namespace {

constexpr qreal ReferenceDpi = 96.0;

float s_scaleX = 0.0f;
float s_scaleY = 0.0f;
QString s_binDir;

// Without a GUI application (command-line tools) there is no screen: scale 1.
float screenScale(bool horizontal)
{
    const QScreen* screen = qobject_cast<QGuiApplication*>(QCoreApplication::instance())
                                ? QGuiApplication::primaryScreen()
                                : nullptr;
    if (!screen)
        return 1.0f;
    const qreal dpi = horizontal ? screen->logicalDotsPerInchX() : screen->logicalDotsPerInchY();
    return dpi > 0.0 ? float(dpi / ReferenceDpi) : 1.0f;
}

int scaled(int size, float scale)
{
    return int(float(size) * scale);
}

} // namespace

float zePlatform::getDpiScaleX()
{
    return s_scaleX > 0.0f ? s_scaleX : screenScale(true);
}

float zePlatform::getDpiScaleY()
{
    return s_scaleY > 0.0f ? s_scaleY : screenScale(false);
}

void zePlatform::setDpiScale(float x, float y)
{
    s_scaleX = x;
    s_scaleY = y;
}

int zePlatform::getSmallIconSizeX()
{
    return scaled(SmallIconSize, getDpiScaleX());
}

int zePlatform::getSmallIconSizeY()
{
    return scaled(SmallIconSize, getDpiScaleY());
}

int zePlatform::getMediumIconSizeX()
{
    return scaled(MediumIconSize, getDpiScaleX());
}

int zePlatform::getMediumIconSizeY()
{
    return scaled(MediumIconSize, getDpiScaleY());
}

QString zePlatform::getBinDir()
{
    if (!s_binDir.isEmpty())
        return s_binDir;
    return QCoreApplication::instance() ? QCoreApplication::applicationDirPath() : QString();
}

void zePlatform::setBinDir(const QString& dir)
{
    s_binDir = dir;
}
