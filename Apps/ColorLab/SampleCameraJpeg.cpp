#include "SampleCameraJpeg.h"

#include <exiv2/exiv2.hpp>

#include <QBuffer>
#include <QDir>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QZEAtomicFileWriter.h>

#include <memory>
#include <stdexcept>

namespace {

const QSize PictureSize(480, 320);

// What the camera recorded: 1/100 s at f/5.6 (Tv log2(100) = 6.64,
// Av 2 log2(5.6) = 4.97), a third of a stop under, focused at infinity
// through a 50 mm lens that frames like 75 mm on 35 mm film.
const char* const CameraTags[][2] = {
    {"Exif.Image.Make", "QtColor"},
    {"Exif.Image.Model", "ColorLab Sample Camera"},
    {"Exif.Image.Software", "ColorLab"},
    {"Exif.Image.Artist", "ColorLab"},
    {"Exif.Image.ImageDescription", "Hills at dusk"},
    {"Exif.Image.Copyright", "Public domain"},
    {"Exif.Photo.ExposureTime", "1/100"},
    {"Exif.Photo.FNumber", "56/10"},
    {"Exif.Photo.ShutterSpeedValue", "664/100"},
    {"Exif.Photo.ApertureValue", "497/100"},
    {"Exif.Photo.BrightnessValue", "525/100"},
    {"Exif.Photo.ExposureBiasValue", "-1/3"},
    {"Exif.Photo.SubjectDistance", "4294967295/1"},
    {"Exif.Photo.FocalLength", "50/1"},
    {"Exif.Photo.FocalLengthIn35mmFilm", "75"},
};

void paintSky(QPainter& painter)
{
    QLinearGradient sky(0, 0, 0, PictureSize.height());
    sky.setColorAt(0.0, QColor(38, 52, 110));
    sky.setColorAt(0.6, QColor(236, 128, 72));
    sky.setColorAt(1.0, QColor(250, 208, 120));
    painter.fillRect(QRect(QPoint(0, 0), PictureSize), sky);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 236, 180));
    painter.drawEllipse(QPointF(330, 190), 34, 34);
}

void paintHill(QPainter& painter, int baseline, int height, const QColor& colour)
{
    QPainterPath hill(QPointF(0, PictureSize.height()));
    hill.lineTo(0, baseline);
    hill.cubicTo(PictureSize.width() * 0.3, baseline - height, PictureSize.width() * 0.6,
                 baseline + height / 2, PictureSize.width(), baseline - height / 3);
    hill.lineTo(PictureSize.width(), PictureSize.height());
    painter.fillPath(hill, colour);
}

} // namespace

QImage SampleCameraJpeg::picture()
{
    QImage image(PictureSize, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    paintSky(painter);
    paintHill(painter, 230, 70, QColor(92, 60, 84));
    paintHill(painter, 270, 50, QColor(52, 40, 62));
    return image;
}

bool SampleCameraJpeg::write(const QString& path)
{
    QByteArray jpeg;
    return encode(jpeg) && addExif(jpeg) && save(path, jpeg);
}

bool SampleCameraJpeg::encode(QByteArray& jpeg)
{
    QBuffer buffer(&jpeg);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(90);
    if (writer.write(picture()))
        return true;
    _error = tr("Cannot encode the sample photo: %1").arg(writer.errorString());
    return false;
}

// exiv2 works on the bytes in memory; the file is written once, whole.
bool SampleCameraJpeg::addExif(QByteArray& jpeg)
{
    try {
        std::unique_ptr<Exiv2::Image> image(
            Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(jpeg.constData()),
                                      long(jpeg.size()))
                .release());
        Exiv2::ExifData exif;
        for (const auto& tag : CameraTags)
            exif[tag[0]].setValue(tag[1]);
        image->setExifData(exif);
        image->writeMetadata();
        Exiv2::BasicIo& io = image->io();
        if (io.open() != 0)
            throw std::runtime_error("the tagged photo cannot be read back");
        const Exiv2::DataBuf bytes = io.read(long(io.size()));
        io.close();
        jpeg = QByteArray(reinterpret_cast<const char*>(bytes.pData_), int(bytes.size_));
        return true;
    } catch (const std::exception& error) {
        _error = tr("Cannot add the camera tags to the sample photo: %1")
                     .arg(QString::fromLocal8Bit(error.what()));
        return false;
    }
}

bool SampleCameraJpeg::save(const QString& path, const QByteArray& jpeg)
{
    QZEAtomicFileWriter file(path);
    if (file.open() && file.write(jpeg) && file.commit())
        return true;
    _error = tr("Cannot write %1: %2").arg(QDir::toNativeSeparators(path), file.errorString());
    return false;
}
