#ifndef ZEPLATFORM_H
#define ZEPLATFORM_H

#include <QString>

/// What the host's platform layer tells the library about the display and the
/// installation. Scale factors are the primary screen's logical DPI over 96
/// unless a host (or a test) sets them; icon sizes follow the scale, truncated.
class zePlatform
{
public:
    /// Edge of a small icon at 96 DPI, in pixels.
    static constexpr int SmallIconSize = 16;
    /// Edge of a medium icon at 96 DPI, in pixels.
    static constexpr int MediumIconSize = 32;

    /// @{
    /// Horizontal and vertical scale factor of the display (1.0 at 96 DPI).
    static float getDpiScaleX();
    static float getDpiScaleY();
    /// @}
    /// Overrides the scale factors; a factor <= 0 goes back to the screen's.
    static void setDpiScale(float x, float y);

    /// @{
    /// Icon edges in device-independent pixels: SmallIconSize or MediumIconSize
    /// times the scale factor of that direction, truncated.
    static int getSmallIconSizeX();
    static int getSmallIconSizeY();
    static int getMediumIconSizeX();
    static int getMediumIconSizeY();
    /// @}

    /// Directory of the host's executables: the running program's directory
    /// unless a host sets another one (an empty path restores that default).
    static QString getBinDir();
    /// Sets the directory getBinDir() reports; an empty path restores the default.
    static void setBinDir(const QString& dir);
};

#endif // ZEPLATFORM_H
