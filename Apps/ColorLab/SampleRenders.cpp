#include "SampleRenders.h"

#include "zeImageMetaWriter.h"
#include "zeRenderSettings.h"

#include <QZEAtomicFileWriter.h>

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImageWriter>
#include <QLinearGradient>
#include <QPainter>
#include <QRadialGradient>

#include <string>

namespace {

using Group = zeRenderSettings::Group;

zeRenderSettings recordFor(const SampleRenders::Sample& sample)
{
    zeRenderSettings record;
    record.setSceneFile(QFileInfo(sample.fileName).completeBaseName().toStdString() + ".scene");
    record.setApplicationVersion("ColorLab sample renderer 1.0");
    record.setRenderDate("2026-03-14T10:30:00");
    record.addGroups(sample.groups);
    if (sample.groups & zeRenderSettings::CameraSettings)
        record.addSetting(zeRenderSettings::CameraSettings, "FieldOfView", "45");
    if (sample.groups & zeRenderSettings::ImageSettings) {
        record.addSetting(zeRenderSettings::ImageSettings, "Width",
                          std::to_string(sample.size.width()));
        record.addSetting(zeRenderSettings::ImageSettings, "Height",
                          std::to_string(sample.size.height()));
    }
    return record;
}

} // namespace

const QVector<SampleRenders::Sample>& SampleRenders::samples()
{
    static const QVector<Sample> all = {
        {QStringLiteral("atrium-camera.png"), "png", QSize(480, 320), QColor(210, 80, 40),
         zeRenderSettings::CameraSettings | zeRenderSettings::ImageSettings},
        {QStringLiteral("atrium-animation.jpg"), "jpeg", QSize(480, 320), QColor(60, 150, 220),
         zeRenderSettings::ImageSettings | zeRenderSettings::AnimationSettings
             | zeRenderSettings::RenderPassesSettings},
        {QStringLiteral("showroom-variants.tif"), "tiff", QSize(320, 400), QColor(80, 180, 90),
         zeRenderSettings::CameraSettings | zeRenderSettings::NodeVisibilities
             | zeRenderSettings::SwitchNodeStates | zeRenderSettings::SwitchMaterialStates},
        {QStringLiteral("studio-raytraced.png"), "png", QSize(400, 400), QColor(230, 190, 50),
         zeRenderSettings::CameraSettings | zeRenderSettings::ImageSettings
             | zeRenderSettings::RaytracingSettings},
        {QStringLiteral("sky-unstamped.jpg"), "jpeg", QSize(480, 270), QColor(170, 90, 200), 0}};
    return all;
}

QImage SampleRenders::picture(QSize size, const QColor& colour)
{
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    const int horizon = size.height() * 3 / 5;
    QLinearGradient sky(0, 0, 0, horizon);
    sky.setColorAt(0, QColor(90, 130, 200));
    sky.setColorAt(1, QColor(215, 225, 240));
    painter.fillRect(0, 0, size.width(), horizon, sky);
    QLinearGradient floor(0, horizon, 0, size.height());
    floor.setColorAt(0, QColor(150, 140, 130));
    floor.setColorAt(1, QColor(70, 65, 60));
    painter.fillRect(0, horizon, size.width(), size.height() - horizon, floor);
    const qreal radius = qMin(size.width(), size.height()) * 0.28;
    const QPointF centre(size.width() * 0.5, horizon - radius * 0.35);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 70));
    painter.drawEllipse(QPointF(centre.x() + radius * 0.3, horizon + radius * 0.55), radius * 1.1,
                        radius * 0.3);
    QRadialGradient shading(centre - QPointF(radius * 0.35, radius * 0.35), radius * 1.3);
    shading.setColorAt(0, colour.lighter(170));
    shading.setColorAt(0.5, colour);
    shading.setColorAt(1, colour.darker(300));
    painter.setBrush(shading);
    painter.drawEllipse(centre, radius, radius);
    return image;
}

bool SampleRenders::write(const QString& folder)
{
    const QDir dir(folder);
    for (const Sample& sample : samples()) {
        if (!writeSample(dir.filePath(sample.fileName), sample))
            return false;
    }
    return true;
}

bool SampleRenders::writeSample(const QString& path, const Sample& sample)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QImageWriter encoder(&buffer, sample.format);
    QZEAtomicFileWriter file(path);
    if (!encoder.write(picture(sample.size, sample.colour)) || !file.open()
        || !file.write(bytes) || !file.commit()) {
        _error = tr("Cannot write the sample render %1.").arg(QDir::toNativeSeparators(path));
        return false;
    }
    if (sample.groups == 0)
        return true;
    std::string detail;
    if (zeImageMetaWriter::stamp(path.toUtf8().constData(), recordFor(sample), false, &detail)
        != zeImageMetaWriter::Stamped) {
        _error = tr("Cannot stamp the render settings into %1: %2")
                     .arg(QDir::toNativeSeparators(path), QString::fromStdString(detail));
        return false;
    }
    return true;
}
