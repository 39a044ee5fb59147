#ifndef ZEPLATFORM_H
#define ZEPLATFORM_H

#include <QString>

/// What the host's platform layer tells the library about the display and the
/// installation. Scale factors are the primary screen's logical DPI over 96
/// unless a host (or a test) sets them; icon sizes follow the scale, truncated.
class zePlatform
{
public:
    static constexpr int SmallIconSize = 16;
    static constexpr int MediumIconSize = 32;

    static float getDpiScaleX();
    static float getDpiScaleY();
    /// Overrides the scale factors; a factor <= 0 goes back to the screen's.
    static void setDpiScale(float x, float y);

    static int getSmallIconSizeX();
    static int getSmallIconSizeY();
    static int getMediumIconSizeX();
    static int getMediumIconSizeY();

    /// Directory of the host's executables: the running program's directory
    /// unless a host sets another one (an empty path restores that default).
    static QString getBinDir();
    static void setBinDir(const QString& dir);
};

#endif // ZEPLATFORM_H
