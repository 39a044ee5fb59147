// The signature shortcut of the image loader: the format it names for a
// file must be the one Qt's own content detection picks, it must step aside
// whenever detection could pick another reader, and reading through it must
// give the same image as reading through detection.

#include "ImageFixtures.h"

#include <osgImage.h>
#include <osgImageSignature.h>

#include <QBuffer>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImageReader>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>

namespace {

// Set for a child run of this program: it reads the header of the file the
// variable names, in a process that has loaded no image plugin yet, and
// prints the image plugins mapped afterwards, one per line.
const char* const ReadHeaderVariable = "OSGIMAGESIGNATURE_READ_HEADER";

int readHeaderAndListPlugins(const QString& file)
{
    const osg::ImagePtr image = osg::Image::create();
    const bool read = image->readHeader(file.toUtf8().constData());
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return 1;
    QSet<QByteArray> plugins;
    for (const QByteArray& line : maps.readAll().split('\n')) {
        if (line.contains("/imageformats/"))
            plugins.insert(line.mid(line.lastIndexOf('/') + 1));
    }
    for (const QByteArray& plugin : plugins)
        std::printf("%s\n", plugin.constData());
    return read ? 0 : 1;
}

// The image plugins a fresh process maps to read the header of file, and
// "(unreadable)" when it could not read it.
QStringList pluginsLoadedToReadHeader(const QString& file)
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(ReadHeaderVariable), file);
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), QStringList());
    if (!child.waitForFinished(30000) || child.exitStatus() != QProcess::NormalExit)
        return {QStringLiteral("(child failed)")};
    QStringList plugins =
        QString::fromUtf8(child.readAllStandardOutput()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    if (child.exitCode() != 0)
        plugins.append(QStringLiteral("(unreadable)"));
    plugins.sort();
    return plugins;
}

// The format Qt's content detection gives the bytes, with no hint.
QByteArray detectedFormat(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    return QImageReader::imageFormat(&buffer);
}

QImage readByDetection(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    return reader.read();
}

QByteArray encoded(const QImage& image, const char* format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, format);
    return writer.write(image) ? bytes : QByteArray();
}

} // namespace

class tst_osgImageSignature : public QObject
{
    Q_OBJECT

private slots:
    void readHeaderOfAJpegLoadsOnlyTheJpegPlugin();
    void readHeaderOfATiffLoadsOnlyTheTiffPlugin();
    void readHeaderOfATiffLeftToDetectionLoadsThePluginsBeforeIt();
    void signatureNamesTheFormatDetectionPicks_data();
    void signatureNamesTheFormatDetectionPicks();
    void readingThroughTheSignatureGivesTheImageDetectionGives_data();
    void readingThroughTheSignatureGivesTheImageDetectionGives();
    void markupNearTheStartLeavesTheChoiceToDetection_data();
    void markupNearTheStartLeavesTheChoiceToDetection();
    void unknownSignatureLeavesTheChoiceToDetection();
    void aPluginFolderWithForeignPluginsLeavesTheChoiceToDetection();

private:
    QTemporaryDir _dir;
};

void tst_osgImageSignature::readHeaderOfAJpegLoadsOnlyTheJpegPlugin()
{
    const QString file = _dir.filePath(QStringLiteral("plain.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QCOMPARE(pluginsLoadedToReadHeader(file), QStringList{QStringLiteral("libqjpeg.so")});
}

void tst_osgImageSignature::readHeaderOfATiffLoadsOnlyTheTiffPlugin()
{
    const QString file = _dir.filePath(QStringLiteral("plain.tif"));
    // Uncompressed pixels follow the signature: none of them may read as '<'.
    QVERIFY(ImageFixtures::write(
        ImageFixtures::filled(8, 6, QImage::Format_RGB32, QColor(10, 20, 30)), file, "tiff"));
    QVERIFY(!ImageFixtures::readFile(file).left(16).contains('<'));
    QCOMPARE(pluginsLoadedToReadHeader(file), QStringList{QStringLiteral("libqtiff.so")});
}

// The same TIFF with markup in its first bytes: detection asks the plugins
// in turn, the SVG reader among them, before the TIFF reader takes it.
void tst_osgImageSignature::readHeaderOfATiffLeftToDetectionLoadsThePluginsBeforeIt()
{
    const QString file = _dir.filePath(QStringLiteral("markup.tif"));
    QByteArray bytes = encoded(ImageFixtures::noise(8, 6, 5), "tiff");
    bytes.replace(8, 4, "<svg");
    QVERIFY(ImageFixtures::writeFile(file, bytes));
    const QStringList plugins = pluginsLoadedToReadHeader(file);
    QVERIFY2(plugins.contains(QStringLiteral("libqsvg.so")), qPrintable(plugins.join(' ')));
    QVERIFY2(plugins.contains(QStringLiteral("libqgif.so")), qPrintable(plugins.join(' ')));
}

void tst_osgImageSignature::signatureNamesTheFormatDetectionPicks_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("format");
    const QImage colour = ImageFixtures::noise(17, 9, 7);
    QTest::newRow("JPEG colour") << encoded(colour, "jpeg") << QByteArray("jpeg");
    QTest::newRow("JPEG grey") << encoded(colour.convertToFormat(QImage::Format_Grayscale8), "jpeg")
                               << QByteArray("jpeg");
    QTest::newRow("PNG") << encoded(colour, "png") << QByteArray("png");
    QTest::newRow("PNG with alpha")
        << encoded(colour.convertToFormat(QImage::Format_ARGB32), "png") << QByteArray("png");
    QTest::newRow("TIFF") << encoded(colour, "tiff") << QByteArray("tiff");
    QByteArray bigEndian = encoded(colour, "tiff");
    QVERIFY(bigEndian.startsWith("II*"));
    // The same signature in the other byte order; what follows need not
    // parse for the signature to count.
    bigEndian.replace(0, 4, QByteArrayLiteral("MM\0*"));
    QTest::newRow("TIFF big-endian signature") << bigEndian << QByteArray("tiff");
}

// Qt's own detection is the oracle: the shortcut must agree with it.
void tst_osgImageSignature::signatureNamesTheFormatDetectionPicks()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, format);
    QVERIFY(!bytes.isEmpty());
    QCOMPARE(osg::ImageSignature::formatOf(bytes), format);
    QCOMPARE(detectedFormat(bytes), format);
}

void tst_osgImageSignature::readingThroughTheSignatureGivesTheImageDetectionGives_data()
{
    QTest::addColumn<QImage>("written");
    QTest::addColumn<QByteArray>("format");
    for (quint32 seed = 1; seed <= 6; ++seed) {
        const QImage noise = ImageFixtures::noise(int(5 + seed * 7), int(3 + seed * 5), seed);
        const QImage shapes[] = {noise, noise.convertToFormat(QImage::Format_ARGB32),
                                 noise.convertToFormat(QImage::Format_Grayscale8)};
        for (const char* format : {"jpeg", "png", "tiff"}) {
            for (const QImage& shape : shapes) {
                QTest::addRow("%s seed %u format %d", format, seed, int(shape.format()))
                    << shape << QByteArray(format);
            }
        }
    }
}

// The loader reads the file through the signature's reader; the image it
// keeps must be the one Qt's detection decodes from the same bytes.
void tst_osgImageSignature::readingThroughTheSignatureGivesTheImageDetectionGives()
{
    QFETCH(QImage, written);
    QFETCH(QByteArray, format);
    const QString file = _dir.filePath(QStringLiteral("same.") + QString::fromLatin1(format));
    QVERIFY(ImageFixtures::write(written, file, format));
    const QByteArray bytes = ImageFixtures::readFile(file);
    const QImage expected = readByDetection(bytes);
    QVERIFY(!expected.isNull());

    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->read(file.toUtf8().constData()));
    QCOMPARE(image->getPixels(), expected);
    const osg::ImagePtr header = osg::Image::create();
    QVERIFY(header->readHeader(file.toUtf8().constData()));
    QCOMPARE(header->getWidth(), expected.width());
    QCOMPARE(header->getHeight(), expected.height());
    QCOMPARE(header->hasAlphaChannel(), expected.hasAlphaChannel());
    QCOMPARE(header->hasColorChannel(), image->hasColorChannel());
}

void tst_osgImageSignature::markupNearTheStartLeavesTheChoiceToDetection_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray tiff = encoded(ImageFixtures::noise(9, 9, 3), "tiff");
    QByteArray png = encoded(ImageFixtures::noise(9, 9, 3), "png");
    QTest::newRow("TIFF with <svg at byte 4") << QByteArray(tiff).replace(4, 4, "<svg");
    QTest::newRow("TIFF with < at byte 15") << QByteArray(tiff).replace(15, 1, "<");
    QTest::newRow("PNG with <?xml at byte 8") << QByteArray(png).replace(8, 5, "<?xml");
    QTest::newRow("gzip") << QByteArray("\x1f\x8b\x08\x00", 4) + tiff;
}

void tst_osgImageSignature::markupNearTheStartLeavesTheChoiceToDetection()
{
    QFETCH(QByteArray, bytes);
    QCOMPARE(osg::ImageSignature::formatOf(bytes), QByteArray());
}

void tst_osgImageSignature::unknownSignatureLeavesTheChoiceToDetection()
{
    for (const char* format : {"bmp", "webp", "ico", "ppm"}) {
        const QByteArray bytes = encoded(ImageFixtures::noise(6, 4, 9), format);
        QVERIFY2(!bytes.isEmpty(), format);
        QVERIFY2(osg::ImageSignature::formatOf(bytes).isEmpty(), format);
    }
    QVERIFY(osg::ImageSignature::formatOf(QByteArray()).isEmpty());
    QVERIFY(osg::ImageSignature::formatOf(QByteArray("\xff\xd8", 2)).isEmpty());
}

// A plugin that is not one of Qt's own may accept any signature, and
// detection would ask it first: with one installed, the shortcut is off
// until its folder is gone from the plugin paths again.
void tst_osgImageSignature::aPluginFolderWithForeignPluginsLeavesTheChoiceToDetection()
{
    const QByteArray jpeg = encoded(ImageFixtures::noise(6, 4, 2), "jpeg");
    QCOMPARE(osg::ImageSignature::formatOf(jpeg), QByteArray("jpeg"));
    const QString folder = _dir.filePath(QStringLiteral("plugins"));
    QVERIFY(QDir().mkpath(folder + QStringLiteral("/imageformats")));
    QVERIFY(ImageFixtures::writeFile(folder + QStringLiteral("/imageformats/libforeign.so"), "x"));
    QCoreApplication::addLibraryPath(folder);
    QCOMPARE(osg::ImageSignature::formatOf(jpeg), QByteArray());
    QCoreApplication::removeLibraryPath(folder);
    QCOMPARE(osg::ImageSignature::formatOf(jpeg), QByteArray("jpeg"));
}

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(ReadHeaderVariable))
        return readHeaderAndListPlugins(qEnvironmentVariable(ReadHeaderVariable));
    tst_osgImageSignature test;
    QTEST_SET_MAIN_SOURCE_PATH
    return QTest::qExec(&test, argc, argv);
}
#include "tst_osgImageSignature.moc"
