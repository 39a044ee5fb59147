#include "ImageFixtures.h"

#include <osgImage.h>
#include <zeImageMetaData.h>

#include <QDir>
#include <QElapsedTimer>
#include <QImageReader>
#include <QTemporaryDir>
#include <QtTest>


// The scene graph's image container: counting, attachments, reading every
// format the installed Qt plugins read, and refusing files it should not
// decode.
class tst_osgImage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void createdImageIsEmptyAndCounted();
    void attachmentsAreFoundByNameOnly();
    void readDecodesEveryWritableFormat_data();
    void readDecodesEveryWritableFormat();
    void readDecodesReadOnlyFormats_data();
    void readDecodesReadOnlyFormats();
    void channelsFollowThePixelFormat_data();
    void channelsFollowThePixelFormat();
    void contentDecidesWhenTheSuffixIsWrong();
    void metadataIsAttachedOnlyWhenAskedFor();
    void laterReadReplacesTheMetadata();
    void badFilesFailAndLeaveTheImageAlone_data();
    void badFilesFailAndLeaveTheImageAlone();
    void nullPathFails();
    void filesOverOneGiBAreRefused();
    void imagesDecodingToOverOneGiBAreRefused();

    void readHeaderGivesSizeAndChannelsWithoutPixels_data();
    void readHeaderGivesSizeAndChannelsWithoutPixels();
    void readHeaderTakesTheMetadataLikeRead();
    void readHeaderOfADecompressionBombIsQuick();
    void readHeaderOfAHugeJpegGivesItsSize();
    void readHeaderOfAJpegWithoutImageDataGivesItsMetadata();
    void readHeaderOfAJpegCutInItsImageDataGivesItsSize();
    void readHeaderNamesWhyItFails_data();
    void readHeaderNamesWhyItFails();

private:
    QString path(const QString& name) const { return _dir.filePath(name); }
    QString goodFile() const { return path(QStringLiteral("good.png")); }

    QTemporaryDir _dir;
};

namespace {

const QRgb Colour = qRgb(200, 60, 40);

bool near(QRgb actual, QRgb expected, int tolerance)
{
    return qAbs(qRed(actual) - qRed(expected)) <= tolerance
        && qAbs(qGreen(actual) - qGreen(expected)) <= tolerance
        && qAbs(qBlue(actual) - qBlue(expected)) <= tolerance;
}

// Two pixels, red then blue, from a two-entry palette (GIF89a).
const QByteArray GifRedBlue("GIF89a\x02\x00\x01\x00\x80\x00\x00"
                            "\xff\x00\x00\x00\x00\xff"         // palette: red, blue
                            ",\x00\x00\x00\x00\x02\x00\x01\x00\x00" // image descriptor
                            "\x02\x02\x44\x0a\x00"             // LZW: clear, 0, 1, end
                            ";",
                            6 + 7 + 6 + 10 + 5 + 1);

// Two pixels, red then blue, uncompressed 24-bit true colour stored top
// down, with the footer of version 2 files (Truevision TGA).
const QByteArray TgaRedBlue("\x00\x00\x02\x00\x00\x00\x00\x00\x00\x00\x00\x00"
                            "\x02\x00\x01\x00\x18\x20"
                            "\x00\x00\xff\xff\x00\x00"
                            "\x00\x00\x00\x00\x00\x00\x00\x00TRUEVISION-XFILE.\x00",
                            18 + 6 + 26);

const QByteArray SvgGreen("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"6\" height=\"4\">"
                          "<rect width=\"6\" height=\"4\" fill=\"#00ff00\"/></svg>");

} // namespace

void tst_osgImage::initTestCase()
{
    QVERIFY(_dir.isValid());
    QVERIFY(ImageFixtures::writePlain(goodFile(), "png"));
}

void tst_osgImage::createdImageIsEmptyAndCounted()
{
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image);
    QCOMPARE(image->getRefCount(), 1);
    {
        const osg::ImagePtr copy = image;
        QCOMPARE(image->getRefCount(), 2);
    }
    QCOMPARE(image->getRefCount(), 1);
    QCOMPARE(image->getWidth(), 0);
    QCOMPARE(image->getHeight(), 0);
    QCOMPARE(image->getDepth(), 0);
    QCOMPARE(image->getName(), std::string());
    QVERIFY(!image->hasColorChannel());
    QVERIFY(!image->hasAlphaChannel());
}

void tst_osgImage::attachmentsAreFoundByNameOnly()
{
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(!image->findAttachmentField("note").has_value());
    image->setAttachmentField("note", "first");
    image->setAttachmentField("empty", "");
    QCOMPARE(image->findAttachmentField("note").value_or("<absent>"), std::string("first"));
    QCOMPARE(image->findAttachmentField("empty").value_or("<absent>"), std::string());
    QVERIFY(!image->findAttachmentField("Note").has_value());
    image->setAttachmentField("note", "second");
    QCOMPARE(image->findAttachmentField("note").value_or("<absent>"), std::string("second"));
}

void tst_osgImage::readDecodesEveryWritableFormat_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QImage>("written");
    QTest::addColumn<QRgb>("pixel");
    QTest::addColumn<bool>("colour");
    QTest::addColumn<int>("tolerance");

    const QImage colour = ImageFixtures::filled(16, 16, QImage::Format_RGB32, QColor(Colour));
    const QImage black = ImageFixtures::filled(16, 16, QImage::Format_Mono, Qt::black);
    const QImage grey =
        ImageFixtures::filled(16, 16, QImage::Format_Grayscale8, QColor(90, 90, 90));
    QTest::newRow("bmp") << QByteArray("bmp") << colour << Colour << true << 0;
    QTest::newRow("cur") << QByteArray("cur") << colour << Colour << true << 0;
    QTest::newRow("ico") << QByteArray("ico") << colour << Colour << true << 0;
    QTest::newRow("icns") << QByteArray("icns") << colour << Colour << true << 0;
    QTest::newRow("jpeg") << QByteArray("jpeg") << colour << Colour << true << 8;
    QTest::newRow("pbm") << QByteArray("pbm") << black << qRgb(0, 0, 0) << false << 0;
    QTest::newRow("pgm") << QByteArray("pgm") << grey << qRgb(90, 90, 90) << false << 0;
    QTest::newRow("png") << QByteArray("png") << colour << Colour << true << 0;
    QTest::newRow("ppm") << QByteArray("ppm") << colour << Colour << true << 0;
    QTest::newRow("tiff") << QByteArray("tiff") << colour << Colour << true << 0;
    QTest::newRow("wbmp") << QByteArray("wbmp") << black << qRgb(0, 0, 0) << false << 0;
    QTest::newRow("webp") << QByteArray("webp") << colour << Colour << true << 8;
    QTest::newRow("xbm") << QByteArray("xbm") << black << qRgb(0, 0, 0) << false << 0;
    QTest::newRow("xpm") << QByteArray("xpm") << colour << Colour << true << 0;
}

void tst_osgImage::readDecodesEveryWritableFormat()
{
    QFETCH(QByteArray, format);
    QFETCH(QImage, written);
    QFETCH(QRgb, pixel);
    QFETCH(bool, colour);
    QFETCH(int, tolerance);
    if (!QImageWriter::supportedImageFormats().contains(format))
        QSKIP("no Qt plugin writes this format here");
    const QString file = path(QStringLiteral("written.") + QString::fromLatin1(format));
    QVERIFY(ImageFixtures::write(written, file, format));

    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->read(file.toUtf8().constData()));
    QCOMPARE(image->getName(), file.toStdString());
    QCOMPARE(image->getWidth(), 16);
    QCOMPARE(image->getHeight(), 16);
    QCOMPARE(image->getDepth(), 1);
    QCOMPARE(image->hasColorChannel(), colour);
    const QRgb centre = image->getPixels().pixel(8, 8);
    QVERIFY2(near(centre, pixel, tolerance), qPrintable(QColor(centre).name()));
}

void tst_osgImage::readDecodesReadOnlyFormats_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QRgb>("first");
    QTest::addColumn<QRgb>("last");
    QTest::newRow("gif") << QStringLiteral("red-blue.gif") << GifRedBlue << QSize(2, 1)
                         << qRgb(255, 0, 0) << qRgb(0, 0, 255);
    QTest::newRow("tga") << QStringLiteral("red-blue.tga") << TgaRedBlue << QSize(2, 1)
                         << qRgb(255, 0, 0) << qRgb(0, 0, 255);
    QTest::newRow("svg") << QStringLiteral("green.svg") << SvgGreen << QSize(6, 4)
                         << qRgb(0, 255, 0) << qRgb(0, 255, 0);
}

void tst_osgImage::readDecodesReadOnlyFormats()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    QFETCH(QSize, size);
    QFETCH(QRgb, first);
    QFETCH(QRgb, last);
    if (!QImageReader::supportedImageFormats().contains(QFileInfo(name).suffix().toLatin1()))
        QSKIP("no Qt plugin reads this format here");
    QVERIFY(ImageFixtures::writeFile(path(name), bytes));
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->read(path(name).toUtf8().constData()));
    QCOMPARE(QSize(image->getWidth(), image->getHeight()), size);
    QCOMPARE(image->getDepth(), 1);
    QVERIFY(image->hasColorChannel());
    QCOMPARE(image->getPixels().pixel(0, 0), first);
    QCOMPARE(image->getPixels().pixel(size.width() - 1, size.height() - 1), last);
}

void tst_osgImage::channelsFollowThePixelFormat_data()
{
    QTest::addColumn<QImage>("written");
    QTest::addColumn<bool>("colour");
    QTest::addColumn<bool>("alpha");

    const auto filled = [](QImage::Format format) {
        return ImageFixtures::filled(4, 4, format, QColor(200, 60, 40, 100));
    };
    QImage greyPalette = filled(QImage::Format_Indexed8);
    greyPalette.setColorTable({qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(255, 255, 255)});
    QImage colourPalette = greyPalette;
    colourPalette.setColorTable({qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(0, 0, 255)});

    QTest::newRow("RGB") << filled(QImage::Format_RGB32) << true << false;
    QTest::newRow("RGBA") << filled(QImage::Format_ARGB32) << true << true;
    QTest::newRow("RGBA 16 bits") << filled(QImage::Format_RGBA64) << true << true;
    QTest::newRow("grey") << filled(QImage::Format_Grayscale8) << false << false;
    QTest::newRow("grey 16 bits") << filled(QImage::Format_Grayscale16) << false << false;
    QTest::newRow("grey palette") << greyPalette << false << false;
    QTest::newRow("palette with a colour") << colourPalette << true << false;
    QTest::newRow("bilevel") << filled(QImage::Format_Mono) << false << false;
}

void tst_osgImage::channelsFollowThePixelFormat()
{
    QFETCH(QImage, written);
    QFETCH(bool, colour);
    QFETCH(bool, alpha);
    const QString file = path(QStringLiteral("channels.png"));
    QVERIFY(ImageFixtures::write(written, file));
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->read(file.toUtf8().constData()));
    QCOMPARE(image->hasColorChannel(), colour);
    QCOMPARE(image->hasAlphaChannel(), alpha);
}

void tst_osgImage::contentDecidesWhenTheSuffixIsWrong()
{
    const QByteArray png = ImageFixtures::readFile(goodFile());
    for (const QString& name : {QStringLiteral("png-inside.jpg"), QStringLiteral("no-suffix")}) {
        QVERIFY(ImageFixtures::writeFile(path(name), png));
        const osg::ImagePtr image = osg::Image::create();
        QVERIFY2(image->read(path(name).toUtf8().constData()), qPrintable(name));
        QCOMPARE(image->getWidth(), 8);
    }
}

void tst_osgImage::metadataIsAttachedOnlyWhenAskedFor()
{
    const osg::ImagePtr plain = osg::Image::create();
    QVERIFY(plain->read(goodFile().toUtf8().constData()));
    QVERIFY(!plain->findAttachmentField("BaselineData").has_value());
    QVERIFY(!plain->findAttachmentField("EXIFData").has_value());
    QVERIFY(!plain->findAttachmentField(zeImageMetaData::getAttachmentKey()).has_value());

    const osg::ImagePtr asked = osg::Image::create();
    asked->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(asked->read(goodFile().toUtf8().constData()));
    QCOMPARE(asked->findAttachmentField("BaselineData").value_or("<absent>"),
             std::string("@SAMPLES_PER_PIXEL 3\n@BITS_PER_SAMPLE 8\n"));
    QCOMPARE(asked->findAttachmentField("EXIFData").value_or("<absent>"), std::string());
    QCOMPARE(asked->findAttachmentField(zeImageMetaData::getAttachmentKey()).value_or("<absent>"),
             std::string());
}

void tst_osgImage::laterReadReplacesTheMetadata()
{
    const QString tagged = path(QStringLiteral("tagged.jpg"));
    QVERIFY(ImageFixtures::writePlain(tagged, "jpeg"));
    QVERIFY(ImageFixtures::addTags(tagged, {{"Exif.Photo.FNumber", "4/1"},
                                            {"Xmp.exif.FNumber", "4/1"}}));
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(image->read(tagged.toUtf8().constData()));
    QCOMPARE(image->findAttachmentField("EXIFData").value_or("<absent>"),
             std::string("@F_NUMBER 4\n"));
    QVERIFY(!image->findAttachmentField(zeImageMetaData::getAttachmentKey()).value_or("").empty());

    QVERIFY(image->read(goodFile().toUtf8().constData()));
    QCOMPARE(image->findAttachmentField("EXIFData").value_or("<absent>"), std::string());
    QCOMPARE(image->findAttachmentField(zeImageMetaData::getAttachmentKey()).value_or("<absent>"),
             std::string());
}

void tst_osgImage::badFilesFailAndLeaveTheImageAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes"); // null: nothing is written under name

    const QByteArray png = ImageFixtures::readFile(goodFile());
    QByteArray wrongSignature = png;
    wrongSignature[3] = 'X';
    QTest::newRow("missing") << QStringLiteral("missing.png") << QByteArray();
    QTest::newRow("empty") << QStringLiteral("empty.png") << QByteArray("");
    QTest::newRow("text") << QStringLiteral("words.png") << QByteArray("not an image at all\n");
    QTest::newRow("truncated") << QStringLiteral("truncated.png") << png.left(png.size() / 2);
    QTest::newRow("wrong signature") << QStringLiteral("signature.png") << wrongSignature;
    QTest::newRow("directory") << QStringLiteral("folder.png") << QByteArray();
}

void tst_osgImage::badFilesFailAndLeaveTheImageAlone()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    if (name == QLatin1String("folder.png"))
        QVERIFY(QDir(_dir.path()).mkpath(name));
    else if (!bytes.isNull())
        QVERIFY(ImageFixtures::writeFile(path(name), bytes));

    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(image->read(goodFile().toUtf8().constData()));
    const std::string baseline = image->findAttachmentField("BaselineData").value_or("<absent>");

    QVERIFY(!image->read(path(name).toUtf8().constData()));
    QCOMPARE(image->getName(), goodFile().toStdString());
    QCOMPARE(image->getWidth(), 8);
    QCOMPARE(image->getHeight(), 6);
    QCOMPARE(image->findAttachmentField("BaselineData").value_or("<absent>"), baseline);
}

void tst_osgImage::nullPathFails()
{
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(!image->read(nullptr));
    QCOMPARE(image->getDepth(), 0);
}

// A valid PNG followed by zeros up to just over 1 GiB (a sparse file): the
// decoder alone would read the PNG and ignore the rest.
void tst_osgImage::filesOverOneGiBAreRefused()
{
    const QString file = path(QStringLiteral("huge-file.png"));
    QVERIFY(QFile::copy(goodFile(), file));
    {
        QFile grow(file);
        QVERIFY(grow.resize((qint64(1) << 30) + 1));
    }
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(!image->read(file.toUtf8().constData()));
    QCOMPARE(image->getDepth(), 0);
    QFile::remove(file);
}

// 32768 x 32769 grey pixels are 32 KiB over 1 GiB once decoded, from a
// file of under 7 MB. The same generator's small image reads, so the big
// one is refused for its size alone.
void tst_osgImage::imagesDecodingToOverOneGiBAreRefused()
{
    const QString small = path(QStringLiteral("small-pixels.png"));
    QVERIFY(ImageFixtures::writeFile(small, ImageFixtures::blackGreyPng(300, 200)));
    const osg::ImagePtr smallImage = osg::Image::create();
    QVERIFY(smallImage->read(small.toUtf8().constData()));
    QCOMPARE(smallImage->getPixels().pixel(299, 199), qRgb(0, 0, 0));

    const QString file = path(QStringLiteral("huge-pixels.png"));
    QVERIFY(ImageFixtures::writeFile(file, ImageFixtures::blackGreyPng(32768, 32769)));
    QImageReader header(file);
    QCOMPARE(header.size(), QSize(32768, 32769));
    QCOMPARE(header.imageFormat(), QImage::Format_Grayscale8);

    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(!image->read(file.toUtf8().constData()));
    QCOMPARE(image->getDepth(), 0);
    QFile::remove(file);
}

void tst_osgImage::readHeaderGivesSizeAndChannelsWithoutPixels_data()
{
    QTest::addColumn<QByteArray>("format");
    QTest::addColumn<QImage>("written");
    QTest::addColumn<bool>("colour");
    QTest::addColumn<bool>("alpha");

    const auto filled = [](QImage::Format format) {
        return ImageFixtures::filled(12, 5, format, QColor(200, 60, 40, 100));
    };
    QImage colourPalette = filled(QImage::Format_Indexed8);
    colourPalette.setColorTable({qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(0, 0, 255)});
    QImage greyPalette = colourPalette;
    greyPalette.setColorTable({qRgb(0, 0, 0), qRgb(128, 128, 128), qRgb(255, 255, 255)});
    QTest::newRow("PNG RGB") << QByteArray("png") << filled(QImage::Format_RGB32) << true << false;
    QTest::newRow("PNG RGBA") << QByteArray("png") << filled(QImage::Format_ARGB32) << true << true;
    QTest::newRow("PNG RGBA 16 bits")
        << QByteArray("png") << filled(QImage::Format_RGBA64) << true << true;
    QTest::newRow("PNG grey") << QByteArray("png") << filled(QImage::Format_Grayscale8) << false
                              << false;
    QTest::newRow("PNG bilevel") << QByteArray("png") << filled(QImage::Format_Mono) << false
                                 << false;
    // The entries are not read: any 8-bit palette counts as colour.
    QTest::newRow("PNG palette") << QByteArray("png") << colourPalette << true << false;
    QTest::newRow("PNG palette of grey entries")
        << QByteArray("png") << greyPalette << true << false;
    QTest::newRow("JPEG colour") << QByteArray("jpeg") << filled(QImage::Format_RGB32) << true
                                 << false;
    QTest::newRow("JPEG grey") << QByteArray("jpeg") << filled(QImage::Format_Grayscale8) << false
                               << false;
    QTest::newRow("TIFF RGBA") << QByteArray("tiff") << filled(QImage::Format_ARGB32) << true
                               << true;
}

void tst_osgImage::readHeaderGivesSizeAndChannelsWithoutPixels()
{
    QFETCH(QByteArray, format);
    QFETCH(QImage, written);
    QFETCH(bool, colour);
    QFETCH(bool, alpha);
    const QString file = path(QStringLiteral("header.") + QString::fromLatin1(format));
    QVERIFY(ImageFixtures::write(written, file, format));
    const osg::ImagePtr image = osg::Image::create();
    std::string why = "stale";
    QVERIFY(image->readHeader(file.toUtf8().constData(), &why));
    QCOMPARE(why, std::string());
    QCOMPARE(image->getName(), file.toStdString());
    QCOMPARE(image->getWidth(), 12);
    QCOMPARE(image->getHeight(), 5);
    QCOMPARE(image->getDepth(), 1);
    QCOMPARE(image->hasColorChannel(), colour);
    QCOMPARE(image->hasAlphaChannel(), alpha);
    QVERIFY(image->getPixels().isNull());
}

void tst_osgImage::readHeaderTakesTheMetadataLikeRead()
{
    const QString tagged = path(QStringLiteral("header-tagged.jpg"));
    QVERIFY(ImageFixtures::writePlain(tagged, "jpeg"));
    QVERIFY(ImageFixtures::addTags(tagged, {{"Exif.Image.Make", "Maker"},
                                            {"Exif.Photo.FNumber", "4/1"},
                                            {"Xmp.exif.FNumber", "4/1"}}));
    const osg::ImagePtr header = osg::Image::create();
    header->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(header->readHeader(tagged.toUtf8().constData()));
    QCOMPARE(header->findAttachmentField("BaselineData").value_or("<absent>"),
             std::string("@SAMPLES_PER_PIXEL 3\n@BITS_PER_SAMPLE 8\n@MAKE Maker\n"));
    QCOMPARE(header->findAttachmentField("EXIFData").value_or("<absent>"),
             std::string("@F_NUMBER 4\n"));

    const osg::ImagePtr decoded = osg::Image::create();
    decoded->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(decoded->read(tagged.toUtf8().constData()));
    for (const std::string& key : {std::string("BaselineData"), std::string("EXIFData"),
                                   zeImageMetaData::getAttachmentKey()})
        QCOMPARE(header->findAttachmentField(key), decoded->findAttachmentField(key));
}

// The same bomb that read() refuses (over 1 GiB once decoded): its header
// is read in a fraction of the time that inflating it would take.
void tst_osgImage::readHeaderOfADecompressionBombIsQuick()
{
    const QString file = path(QStringLiteral("bomb.png"));
    QVERIFY(ImageFixtures::writeFile(file, ImageFixtures::blackGreyPng(32768, 32769)));
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QElapsedTimer timer;
    timer.start();
    QVERIFY(image->readHeader(file.toUtf8().constData()));
    QVERIFY2(timer.elapsed() < 2000, qPrintable(QString::number(timer.elapsed())));
    QCOMPARE(QSize(image->getWidth(), image->getHeight()), QSize(32768, 32769));
    QVERIFY(!image->hasColorChannel());
    QCOMPARE(image->findAttachmentField("BaselineData").value_or("<absent>"),
             std::string("@SAMPLES_PER_PIXEL 1\n@BITS_PER_SAMPLE 8\n"));
    QVERIFY(image->getPixels().isNull());
    QFile::remove(file);
}

// 17000 x 17000 RGB pixels take over 1 GiB: read() refuses, the header
// still tells the size.
void tst_osgImage::readHeaderOfAHugeJpegGivesItsSize()
{
    const QString file = path(QStringLiteral("huge.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::writeFile(
        file, ImageFixtures::jpegClaimingSize(ImageFixtures::readFile(file), 17000, 17000)));
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(!image->read(file.toUtf8().constData()));
    QVERIFY(image->readHeader(file.toUtf8().constData()));
    QCOMPARE(QSize(image->getWidth(), image->getHeight()), QSize(17000, 17000));
    QCOMPARE(image->getDepth(), 1);
    QVERIFY(image->hasColorChannel());
}

void tst_osgImage::readHeaderOfAJpegWithoutImageDataGivesItsMetadata()
{
    const QString file = path(QStringLiteral("exif-only.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Photo.ExposureTime", "1/250"}}));
    QVERIFY(ImageFixtures::writeFile(
        file, ImageFixtures::jpegWithoutImageData(ImageFixtures::readFile(file))));
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    QVERIFY(!image->read(file.toUtf8().constData()));
    QVERIFY(image->readHeader(file.toUtf8().constData()));
    QCOMPARE(image->getWidth(), 0);
    QCOMPARE(image->getHeight(), 0);
    QCOMPARE(image->getDepth(), 0);
    QCOMPARE(image->findAttachmentField("EXIFData").value_or("<absent>"),
             std::string("@EXPOSURE_TIME 1/250\n"));
}

void tst_osgImage::readHeaderOfAJpegCutInItsImageDataGivesItsSize()
{
    const QString file = path(QStringLiteral("cut.jpg"));
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(40, 30, 3), file, "jpeg"));
    const QByteArray jpeg = ImageFixtures::readFile(file);
    const int scan = ImageFixtures::jpegSegment(jpeg, 0xda);
    QVERIFY(scan > 0);
    QVERIFY(ImageFixtures::writeFile(file, jpeg.left(scan + 16)));
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->readHeader(file.toUtf8().constData()));
    QCOMPARE(QSize(image->getWidth(), image->getHeight()), QSize(40, 30));
}

void tst_osgImage::readHeaderNamesWhyItFails_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("bytes"); // null: nothing is written under file
    QTest::addColumn<QByteArray>("reason");

    QByteArray wrongSignature = ImageFixtures::readFile(goodFile());
    wrongSignature[3] = 'X';
    QTest::newRow("missing") << path(QStringLiteral("absent.png")) << QByteArray()
                             << QByteArray("no such file");
    QTest::newRow("directory") << _dir.path() << QByteArray() << QByteArray("is a directory");
    QTest::newRow("device") << QStringLiteral("/dev/zero") << QByteArray()
                            << QByteArray("not a regular file (a device, a pipe or a socket)");
    QTest::newRow("empty") << path(QStringLiteral("nothing.png")) << QByteArray("")
                           << QByteArray("empty file");
    QTest::newRow("text") << path(QStringLiteral("prose.txt")) << QByteArray("some words\n")
                          << QByteArray("not an image format this program reads");
    QTest::newRow("wrong signature") << path(QStringLiteral("bad-signature.png")) << wrongSignature
                                     << QByteArray("not an image format this program reads");
    QTest::newRow("JPEG start and nothing else")
        << path(QStringLiteral("start-only.jpg")) << QByteArray("\xff\xd8\xff\xd9", 4)
        << QByteArray("damaged: neither its size nor its metadata can be read");
}

void tst_osgImage::readHeaderNamesWhyItFails()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, bytes);
    QFETCH(QByteArray, reason);
    if (!bytes.isNull())
        QVERIFY(ImageFixtures::writeFile(file, bytes));
    const osg::ImagePtr image = osg::Image::create();
    QVERIFY(image->readHeader(goodFile().toUtf8().constData()));
    std::string why;
    QVERIFY(!image->readHeader(file.toUtf8().constData(), &why));
    QCOMPARE(QByteArray::fromStdString(why), reason);
    QCOMPARE(image->getName(), goodFile().toStdString());
    QCOMPARE(image->getWidth(), 8);
}

QTEST_GUILESS_MAIN(tst_osgImage)
#include "tst_osgImage.moc"
