#include "ImagesPage.h"

#include "SampleCameraJpeg.h"
#include "osgImage.h"
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

    _status = new QLabel;
    _status->setTextFormat(Qt::PlainText);
    _status->setWordWrap(true);
    _status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    layout->addWidget(_status);
    layout->addStretch(1);
    writeSample();
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
