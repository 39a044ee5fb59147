#ifndef ZETEXTUREMETADATAGUII_H
#define ZETEXTUREMETADATAGUII_H

#include "osgImage.h"
#include "ui_zeTextureMetaDataGUI.h"

#include <QDialog>

#include <string>

/// The "Image Information" dialog: what an image file carries besides its
/// pixels. showMetaDataInfo() reads the image's file again, with metadata
/// collection asked for, and lists its size and channels, the baseline tags
/// and the EXIF exposure data of the text blocks that the image loader
/// attaches, one line per tag found.
///
/// Create it with new and show it after showMetaDataInfo(); it deletes itself
/// when closed. Tag values are shown as the loader wrote them, whatever
/// separates them from their keys included; only units are added.
class zeTextureMetaDataGUII : public QDialog
{
    Q_OBJECT

public:
    /// An empty dialog over parent, deleted when closed.
    explicit zeTextureMetaDataGUII(QWidget* parent = nullptr);

    /// Fills the dialog from the file image was read from. Returns false,
    /// leaving the text as it was, for a null image and for a file that cannot
    /// be read (warned about in the host log); the file name is shown either
    /// way.
    bool showMetaDataInfo(osg::ImagePtr image);

    /// The value of the first line in text that contains key: the characters
    /// after key up to the end of that line, verbatim. Matches anywhere, so a
    /// key also matches a longer key that starts with it. False when text is
    /// empty or does not contain key (value is left alone then).
    bool getKeyValue(std::string key, std::string text, std::string& value);

protected:
    /// Replaces the text with the lines for image, a freshly read image, and
    /// its baseline and EXIF blocks.
    void showMetaDataLines(const osg::Image& image, const std::string& baseline,
                           const std::string& exif);

private:
    void appendFixedLines(const osg::Image& image);
    void appendSampleLines(const std::string& baseline, const std::string& exif);
    void appendDescriptiveLines(const std::string& baseline);
    void appendExposureLines(const std::string& exif);
    void appendLine(const char* label, const std::string& value);
    void appendText(const QString& line);
    void lineUpValues();
    std::string translated(const char* text) const;

    Ui_zeTextureMetaDataGUI _ui;
    osg::ImagePtr _image;
};

#endif // ZETEXTUREMETADATAGUII_H
