#ifndef OSGIMAGESIGNATURE_H
#define OSGIMAGESIGNATURE_H

#include <QByteArray>
#include <QStringList>

namespace osg {

// Tells the reader that content detection would choose for a JPEG, PNG or
// TIFF file from its first bytes. Detection asks every installed image
// plugin in turn, loading each one, which costs more than reading a header;
// naming the format loads only its own plugin. The answer is given only when
// it cannot differ from detection's: every plugin installed is one of Qt's
// own, none of which accepts these signatures except the format's own, and
// no static image plugin is linked in.
class ImageSignature
{
public:
    // The format key to hand QImageReader (with format detection switched
    // off), or an empty key when only detection can tell.
    static QByteArray formatOf(const QByteArray& file);

private:
    static QByteArray formatOfSignature(const QByteArray& file);
    static bool couldPassForSvg(const QByteArray& file);
    static bool onlyQtsOwnPluginsInstalled();
    static bool onlyQtsOwnPluginsIn(const QStringList& libraryPaths);
};

} // namespace osg

#endif // OSGIMAGESIGNATURE_H
