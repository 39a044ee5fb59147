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
//
// The image browser at work: one button opens it in ColorLab's own process,
// the other in the qimageFileDialog picker program; the chosen file and its
// ticked render-settings groups are shown below them. The browser starts in a
// folder of sample renders (SampleRenders) that the page writes beside the
// camera photo.
class ImagesPage : public QWidget
{
    Q_OBJECT

public:
    explicit ImagesPage(QWidget* parent = nullptr);

    // The sample photo; empty when it could not be written (the page says why).
    QString sampleFile() const { return _sample; }
    QPushButton* informationButton() const { return _information; }
    QPushButton* sampleButton() const { return _sampleInformation; }

    // The folder of sample renders; empty when it could not be written.
    QString sampleRendersFolder() const { return _renders; }
    QPushButton* browseButton() const { return _browse; }
    QPushButton* pickerButton() const { return _picker; }
    QLabel* choiceLabel() const { return _choice; }
    QLabel* groupsLabel() const { return _groups; }

    // Shows path and the groups of mask as the browser's last answer; an
    // empty path shows that nothing was chosen.
    void showChoice(const QString& path, int mask);
    // The names of the render-settings groups in mask, as the browser's
    // filter tree shows them, joined by commas; "none" for 0.
    static QString describeGroups(int mask);

    // A new information dialog filled for the image file at path, not yet
    // shown; it deletes itself when closed. When the file cannot be read the
    // page says so and nullptr is returned.
    zeTextureMetaDataGUII* openInformation(const QString& path);
    // openInformation(), then shows the dialog.
    zeTextureMetaDataGUII* showInformation(const QString& path);

private:
    QWidget* createSampleBox();
    QWidget* createBrowserBox();
    void writeSample();
    void writeRenders();
    void chooseImage();
    void browseInProcess();
    void browseInPicker();
    void showStatus(const QString& text);

    QTemporaryDir _sampleDir;
    QString _sample;
    QString _lastChoice; // where the file dialog opens
    QString _renders;
    QString _browseStart; // where the image browser opens
    QPushButton* _browse = nullptr;
    QPushButton* _picker = nullptr;
    QLabel* _choice = nullptr;
    QLabel* _groups = nullptr;
    QPushButton* _information = nullptr;
    QPushButton* _sampleInformation = nullptr;
    QLabel* _status = nullptr;
};

#endif // IMAGESPAGE_H
