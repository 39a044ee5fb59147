#include "osgImageSignature.h"

#include <QCoreApplication>
#include <QDir>
#include <QMutex>
#include <QPluginLoader>
#include <QSet>

namespace osg {

namespace {

// The image plugins that come with Qt. Their readers accept only their own
// signatures, with one exception: the SVG reader accepts any first bytes
// holding XML markup, which couldPassForSvg() rules out.
const QSet<QString>& qtsOwnPlugins()
{
    static const QSet<QString> names = {
        QStringLiteral("libqgif.so"),  QStringLiteral("libqicns.so"), QStringLiteral("libqico.so"),
        QStringLiteral("libqjpeg.so"), QStringLiteral("libqmng.so"),  QStringLiteral("libqsvg.so"),
        QStringLiteral("libqtga.so"),  QStringLiteral("libqtiff.so"), QStringLiteral("libqwbmp.so"),
        QStringLiteral("libqwebp.so"),
    };
    return names;
}

// Qt 5's SVG reader looks for markup in the first 8 bytes; Qt 6's parses the
// start as XML, which a first byte of 'I', 'M' or 0x89 already fails. A '<'
// anywhere in the first 16 bytes leaves the choice to detection.
constexpr int SvgSniffLength = 16;

} // namespace

QByteArray ImageSignature::formatOf(const QByteArray& file)
{
    const QByteArray format = formatOfSignature(file);
    if (format.isEmpty() || !onlyQtsOwnPluginsInstalled())
        return QByteArray();
    return format;
}

// The JPEG reader is the first of Qt's plugins that accepts its signature,
// ahead of the SVG reader; TIFF and PNG come after it.
QByteArray ImageSignature::formatOfSignature(const QByteArray& file)
{
    if (file.startsWith("\xff\xd8\xff"))
        return QByteArrayLiteral("jpeg");
    if (couldPassForSvg(file))
        return QByteArray();
    if (file.startsWith(QByteArrayLiteral("II*\0")) || file.startsWith(QByteArrayLiteral("MM\0*")))
        return QByteArrayLiteral("tiff");
    if (file.startsWith("\x89PNG\r\n\x1a\n"))
        return QByteArrayLiteral("png");
    return QByteArray();
}

// A '<' near the start (XML markup in any encoding) or a gzip signature (a
// compressed drawing).
bool ImageSignature::couldPassForSvg(const QByteArray& file)
{
    return file.startsWith("\x1f\x8b") || file.left(SvgSniffLength).contains('<');
}

// Remembers the answer for the plugin folders it was given: an application
// may add folders, after which the plugins are looked at again.
bool ImageSignature::onlyQtsOwnPluginsInstalled()
{
    static QMutex mutex;
    static QStringList checkedPaths;
    static bool answer = false;
    const QStringList paths = QCoreApplication::libraryPaths();
    const QMutexLocker lock(&mutex);
    if (paths != checkedPaths || checkedPaths.isEmpty()) {
        answer = onlyQtsOwnPluginsIn(paths);
        checkedPaths = paths;
    }
    return answer;
}

bool ImageSignature::onlyQtsOwnPluginsIn(const QStringList& libraryPaths)
{
    // Static image plugins are asked before any plugin file.
    for (const QStaticPlugin& plugin : QPluginLoader::staticPlugins()) {
        if (plugin.metaData().value(QStringLiteral("IID")).toString().contains(
                QLatin1String("QImageIOHandlerFactoryInterface")))
            return false;
    }
    for (const QString& path : libraryPaths) {
        const QStringList files =
            QDir(path + QStringLiteral("/imageformats")).entryList(QDir::Files | QDir::NoDotAndDotDot);
        for (const QString& file : files) {
            if (!qtsOwnPlugins().contains(file))
                return false;
        }
    }
    return true;
}

} // namespace osg
