#ifndef OSGIMAGE_H
#define OSGIMAGE_H

#include "osgFieldContainer.h"
#include "osgFieldContainerPtr.h"

#include <QImage>

#include <map>
#include <optional>
#include <string>

namespace osg {

class Image;
using ImagePtr = FCPtr<AttachmentContainerPtr, Image>;

// The scene graph's image container: the pixels of an image file with its
// name, size and channels, and string attachments by name. read() decodes
// every format the installed Qt image plugins read.
//
// Metadata: when an attachment under zeImageMetaData::getAttachmentKey()
// exists before read() (an empty string is enough), the read also attaches
// the blocks "BaselineData", "EXIFData" and the render-settings record under
// that key, replacing those of an earlier read (see zeImageMetaData).
// Without that attachment the metadata is not looked at.
//
// Hostile input: files over MaxFileSize are refused before anything is
// decoded, and so are images whose decoded pixels would take more than
// MaxPixelBytes (a small file may claim a huge size). Files that are
// truncated, corrupt or not images make read() return false; metadata that
// cannot be read leaves the pixels readable and the blocks without the
// file's tags. Nothing is thrown.
class Image : public FieldContainer
{
public:
    static constexpr qint64 MaxFileSize = qint64(1) << 30;   // 1 GiB
    static constexpr qint64 MaxPixelBytes = qint64(1) << 30; // 1 GiB

    static ImagePtr create();

    // The file the image was read from, as given to read() (UTF-8).
    const std::string& getName() const { return _name; }
    void setName(const std::string& name) { _name = name; }

    // 0 x 0 x 0 until an image is read; the depth (number of slices) is 1
    // for every image read from a file.
    int getWidth() const { return _pixels.width(); }
    int getHeight() const { return _pixels.height(); }
    int getDepth() const { return _pixels.isNull() ? 0 : 1; }
    // Whether the pixels carry colour: false for grey images and for
    // palettes of grey entries only, whatever the pixels hold.
    bool hasColorChannel() const { return _hasColor; }
    bool hasAlphaChannel() const { return _pixels.hasAlphaChannel(); }
    // The decoded pixels, in the format the decoder chose.
    const QImage& getPixels() const { return _pixels; }

    void setAttachmentField(const std::string& key, const std::string& value);
    // The attachment under key; nothing when there is none.
    std::optional<std::string> findAttachmentField(const std::string& key) const;

    // Reads the image file at utf8Path. On success the pixels, name and
    // channels are replaced (and the metadata attached when asked for); on
    // failure the image stays as it was and false is returned.
    bool read(const char* utf8Path);

private:
    Image() = default;

    std::string _name;
    QImage _pixels;
    bool _hasColor = false;
    std::map<std::string, std::string> _attachments;
};

} // namespace osg

#endif // OSGIMAGE_H
