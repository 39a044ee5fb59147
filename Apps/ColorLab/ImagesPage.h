#ifndef IMAGESPAGE_H
#define IMAGESPAGE_H

#include <QTemporaryDir>
#include <QWidget>

class QLabel;
class QPushButton;
class zeTextureMetaDataGUII;

// The image information dialog at work: "Image information..." asks for an
// image file and opens the dialog for it. The page makes a sample camera
// JPEG, with the EXIF tags of a real camera, in a temporary folder of its own
// and offers it both as the file dialog's first choice and through a button
// of its own.
class ImagesPage : public QWidget
{
    Q_OBJECT

public:
    explicit ImagesPage(QWidget* parent = nullptr);

    // The sample photo; empty when it could not be written (the page says why).
    QString sampleFile() const { return _sample; }
    QPushButton* informationButton() const { return _information; }
    QPushButton* sampleButton() const { return _sampleInformation; }

    // A new information dialog filled for the image file at path, not yet
    // shown; it deletes itself when closed. When the file cannot be read the
    // page says so and nullptr is returned.
    zeTextureMetaDataGUII* openInformation(const QString& path);
    // openInformation(), then shows the dialog.
    zeTextureMetaDataGUII* showInformation(const QString& path);

private:
    QWidget* createSampleBox();
    void writeSample();
    void chooseImage();
    void showStatus(const QString& text);

    QTemporaryDir _sampleDir;
    QString _sample;
    QString _lastChoice; // where the file dialog opens
    QPushButton* _information = nullptr;
    QPushButton* _sampleInformation = nullptr;
    QLabel* _status = nullptr;
};

#endif // IMAGESPAGE_H
