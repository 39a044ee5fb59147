// Writes the seed corpus of fuzz_image_metadata: tiny images in the formats
// exiv2 reads, carrying EXIF tags, the render-settings record and EXIF
// inside XMP, plus an XMP sidecar and files without metadata. Each stays
// under the 16 KiB that the fuzzer's inputs may grow to. legacy-record.xmp,
// a sidecar with a record of the placeholder namespace that early builds
// wrote, stays in the corpus beside them; this program no longer makes it.
//
// Usage: make_image_seeds DIRECTORY
#include <zeImageMetaWriter.h>
#include <zeRenderSettings.h>

#include <exiv2/exiv2.hpp>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QImageWriter>

#include <cstdio>

namespace {

bool writeImage(const QString& path, const QByteArray& format, QImage::Format pixels)
{
    QImage image(4, 4, QImage::Format_ARGB32);
    image.fill(QColor(200, 60, 40, 180));
    QImageWriter writer(path, format);
    writer.setQuality(10);
    return writer.write(image.convertToFormat(pixels));
}

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

bool addExif(const QString& path)
{
    try {
        auto image = Exiv2::ImageFactory::open(path.toStdString());
        image->readMetadata();
        Exiv2::ExifData& exif = image->exifData();
        exif["Exif.Image.Make"] = "Maker";
        exif["Exif.Image.Artist"] = "Someone";
        exif["Exif.Photo.ExposureTime"].setValue("1/100");
        exif["Exif.Photo.FNumber"].setValue("56/10");
        exif["Exif.Photo.ShutterSpeedValue"].setValue("6643856/1000000");
        exif["Exif.Photo.ExposureBiasValue"].setValue("-2/3");
        exif["Exif.Photo.SubjectDistance"].setValue("4294967295/1");
        exif["Exif.Photo.FocalLength"].setValue("50/1");
        exif["Exif.Photo.FocalLengthIn35mmFilm"].setValue("75");
        image->writeMetadata();
        return true;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", qPrintable(path), error.what());
        return false;
    }
}

// The smallest packet exiv2 recognises as an XMP sidecar.
const QByteArray EmptySidecar("<?xpacket begin=\"\xef\xbb\xbf\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
                              "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\"></x:xmpmeta>\n"
                              "<?xpacket end=\"w\"?>\n");

zeRenderSettings record()
{
    zeRenderSettings settings;
    settings.setSceneFile("seed.scene");
    settings.setApplicationVersion("1.0");
    settings.setRenderDate("2024-05-17T14:30:00");
    settings.addSetting(zeRenderSettings::CameraSettings, "fov", "45");
    settings.addSetting(zeRenderSettings::ImageSettings, "size", "4 x 4");
    settings.addGroups(zeRenderSettings::SwitchMaterialStates);
    return settings;
}

bool stamp(const QString& path, bool exifInXMP)
{
    std::string detail;
    if (zeImageMetaWriter::stamp(path.toUtf8().constData(), record(), exifInXMP, &detail)
        == zeImageMetaWriter::Stamped)
        return true;
    std::fprintf(stderr, "%s: %s\n", qPrintable(path), detail.c_str());
    return false;
}

bool taggedImage(const QDir& dir, const QString& name, const QByteArray& format)
{
    const QString path = dir.filePath(name);
    return writeImage(path, format, QImage::Format_RGB32) && addExif(path) && stamp(path, true);
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: make_image_seeds DIRECTORY\n");
        return 2;
    }
    const QDir dir(QString::fromLocal8Bit(argv[1]));
    const QString sidecar = dir.filePath(QStringLiteral("record.xmp"));
    const QString recordOnly = dir.filePath(QStringLiteral("record-only.png"));
    const bool done =
        dir.mkpath(QStringLiteral("."))
        && taggedImage(dir, QStringLiteral("exif-record.jpg"), "jpeg")
        && taggedImage(dir, QStringLiteral("exif-record.png"), "png")
        && taggedImage(dir, QStringLiteral("exif-record.tif"), "tiff")
        && taggedImage(dir, QStringLiteral("exif-record.webp"), "webp")
        && writeImage(recordOnly, "png", QImage::Format_Indexed8) && stamp(recordOnly, false)
        && writeBytes(sidecar, EmptySidecar) && stamp(sidecar, false)
        && writeImage(dir.filePath(QStringLiteral("bare.jpg")), "jpeg", QImage::Format_Grayscale8)
        && writeImage(dir.filePath(QStringLiteral("bare.bmp")), "bmp", QImage::Format_RGB32);
    return done ? 0 : 1;
}
