#include "ImagesPage.h"

#include "QZEImageFileDialog.h"
#include "SampleCameraJpeg.h"
#include "SampleRenders.h"
#include "osgImage.h"
#include "zeRenderSettings.h"
#include "zeTextureMetaDataGUII.h"

#include <QDir>
#include <QFileDialog>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QVBoxLayout>

ImagesPage::ImagesPage(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    auto* intro = new QLabel(tr("The image information dialog lists what an image file carries "
                                "besides its pixels: its size and channels, the camera and "
                                "copyright tags and the EXIF exposure data."));
    intro->setWordWrap(true);
    layout->addWidget(intro);

    _information = new QPushButton(tr("Image information..."));
    connect(_information, &QPushButton::clicked, this, &ImagesPage::chooseImage);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(_information);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    layout->addWidget(createSampleBox());
    layout->addWidget(createBrowserBox());

    _status = new QLabel;
    _status->setTextFormat(Qt::PlainText);
    _status->setWordWrap(true);
    _status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(_status);
    layout->addStretch(1);
    writeSample();
    writeRenders();
}

QWidget* ImagesPage::createSampleBox()
{
    auto* box = new QGroupBox(tr("Sample camera photo"));
    auto* layout = new QHBoxLayout(box);
    auto* preview = new QLabel;
    preview->setPixmap(QPixmap::fromImage(SampleCameraJpeg::picture().scaledToWidth(
        240, Qt::SmoothTransformation)));
    layout->addWidget(preview);
    auto* side = new QVBoxLayout;
    auto* text = new QLabel(tr("A JPEG that ColorLab writes at start-up, with the tags a camera "
                               "records: maker and model, exposure time, f-number, shutter "
                               "speed and aperture, exposure bias, subject distance and focal "
                               "lengths."));
    text->setWordWrap(true);
    side->addWidget(text);
    _sampleInformation = new QPushButton(tr("Sample photo information"));
    connect(_sampleInformation, &QPushButton::clicked, this, [this] { showInformation(_sample); });
    side->addWidget(_sampleInformation, 0, Qt::AlignLeft);
    side->addStretch(1);
    layout->addLayout(side, 1);
    return box;
}

QWidget* ImagesPage::createBrowserBox()
{
    auto* box = new QGroupBox(tr("Image browser"));
    auto* layout = new QVBoxLayout(box);
    auto* text = new QLabel(tr("Thumbnails of a folder of renders, and the render-settings groups "
                               "the chosen image carries: the ticked ones come back with the "
                               "file."));
    text->setWordWrap(true);
    layout->addWidget(text);
    _browse = new QPushButton(tr("Browse images..."));
    connect(_browse, &QPushButton::clicked, this, &ImagesPage::browseInProcess);
    _picker = new QPushButton(tr("Browse in the picker program..."));
    connect(_picker, &QPushButton::clicked, this, &ImagesPage::browseInPicker);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(_browse);
    buttons->addWidget(_picker);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    _choice = new QLabel;
    _groups = new QLabel;
    for (QLabel* label : {_choice, _groups}) {
        label->setTextFormat(Qt::PlainText);
        label->setWordWrap(true);
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        layout->addWidget(label);
    }
    showChoice(QString(), 0);
    return box;
}

void ImagesPage::writeSample()
{
    const QString path = _sampleDir.filePath(QStringLiteral("sample-camera.jpg"));
    SampleCameraJpeg sample;
    if (!_sampleDir.isValid()) {
        showStatus(tr("Cannot make a folder for the sample photo: %1").arg(_sampleDir.errorString()));
    } else if (!sample.write(path)) {
        showStatus(sample.errorString());
    } else {
        _sample = path;
        _lastChoice = path;
    }
    _sampleInformation->setEnabled(!_sample.isEmpty());
}

void ImagesPage::writeRenders()
{
    const QString folder = _sampleDir.filePath(QStringLiteral("renders"));
    SampleRenders renders;
    if (!_sampleDir.isValid() || !QDir().mkpath(folder)) {
        showStatus(tr("Cannot make a folder for the sample renders."));
    } else if (!renders.write(folder)) {
        showStatus(renders.errorString());
    } else {
        _renders = folder;
        _browseStart = folder;
    }
}

zeTextureMetaDataGUII* ImagesPage::openInformation(const QString& path)
{
    const osg::ImagePtr image = osg::Image::create();
    image->setName(path.toUtf8().toStdString());
    auto* dialog = new zeTextureMetaDataGUII(this);
    if (!dialog->showMetaDataInfo(image)) {
        delete dialog;
        showStatus(tr("Cannot read %1: it is missing, not an image ColorLab can decode, or "
                      "damaged.")
                       .arg(QDir::toNativeSeparators(path)));
        return nullptr;
    }
    showStatus(QString());
    return dialog;
}

zeTextureMetaDataGUII* ImagesPage::showInformation(const QString& path)
{
    zeTextureMetaDataGUII* dialog = openInformation(path);
    if (dialog)
        dialog->show();
    return dialog;
}

void ImagesPage::chooseImage()
{
    const QString path = QFileDialog::getOpenFileName(
        this, tr("Image Information"), _lastChoice,
        tr("Images (*.jpg *.jpeg *.png *.tif *.tiff *.webp *.bmp *.gif);;All files (*)"));
    if (path.isEmpty())
        return;
    _lastChoice = path;
    showInformation(path);
}

void ImagesPage::showStatus(const QString& text)
{
    _status->setText(text);
}

namespace {

QString browserFilter()
{
    return QStringLiteral("*.png *.jpg *.jpeg *.tif *.tiff");
}

} // namespace

void ImagesPage::browseInProcess()
{
    int mask = 0;
    const QString path = QZEImageFileDialog::getOpenFileName(
        this, tr("Choose a Rendered Image"), _browseStart, browserFilter(), &mask);
    showChoice(path, mask);
}

void ImagesPage::browseInPicker()
{
    int mask = 0;
    const QString path = QZEImageFileDialog::getOpenFileNameExternalProc(
        this, tr("Choose a Rendered Image"), _browseStart, browserFilter(), &mask);
    showChoice(path, mask);
}

void ImagesPage::showChoice(const QString& path, int mask)
{
    if (path.isEmpty()) {
        _choice->setText(tr("Chosen file: none"));
        _groups->setText(QString());
        return;
    }
    _browseStart = path;
    _choice->setText(tr("Chosen file: %1").arg(QDir::toNativeSeparators(path)));
    _groups->setText(tr("Render-settings groups: %1 (mask %2)").arg(describeGroups(mask)).arg(mask));
}

QString ImagesPage::describeGroups(int mask)
{
    // In the filter tree's order.
    const QVector<QPair<int, QString>> groups = {
        {zeRenderSettings::CameraSettings, tr("Camera Settings")},
        {zeRenderSettings::ImageSettings, tr("Image Settings")},
        {zeRenderSettings::AnimationSettings, tr("Animation Settings")},
        {zeRenderSettings::RenderPassesSettings, tr("Renderpasses Settings")},
        {zeRenderSettings::RaytracingSettings, tr("Raytracing Settings")},
        {zeRenderSettings::NodeVisibilities, tr("Node Visibilities")},
        {zeRenderSettings::SwitchNodeStates, tr("Switch Node States")},
        {zeRenderSettings::SwitchMaterialStates, tr("Switch Material States")}};
    QStringList names;
    for (const auto& group : groups) {
        if (mask & group.first)
            names << group.second;
    }
    return names.isEmpty() ? tr("none") : names.join(QStringLiteral(", "));
}
