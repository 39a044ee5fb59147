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

/// The scene graph's image container: the pixels of an image file with its
/// name, size and channels, and string attachments by name. read() decodes
/// every format the installed Qt image plugins read; readHeader() takes the
/// same facts from the file's header and metadata without decoding a pixel.
///
/// Metadata: when an attachment under zeImageMetaData::getAttachmentKey()
/// exists before read() or readHeader() (an empty string is enough), the
/// read also attaches the blocks "BaselineData", "EXIFData" and the
/// render-settings record under that key, replacing those of an earlier read
/// (see zeImageMetaData). Without that attachment the metadata is not looked
/// at.
///
/// Hostile input: files over MaxFileSize are refused before anything is
/// decoded, and read() refuses images whose decoded pixels would take more
/// than MaxPixelBytes (a small file may claim a huge size). Files that are
/// truncated, corrupt or not images make read() return false; metadata that
/// cannot be read leaves the pixels readable and the blocks without the
/// file's tags. Nothing is thrown.
class Image : public FieldContainer
{
public:
    /// Largest file read() and readHeader() open: 1 GiB.
    static constexpr qint64 MaxFileSize = qint64(1) << 30;
    /// Largest decoded image read() accepts: 1 GiB of pixels.
    static constexpr qint64 MaxPixelBytes = qint64(1) << 30;

    /// A new empty image (0 x 0 x 0, no attachments).
    static ImagePtr create();

    /// The file the image was read from, as given to read() (UTF-8).
    const std::string& getName() const { return _name; }
    /// Sets the name getName() reports; the file is not touched.
    void setName(const std::string& name) { _name = name; }

    /// 0 x 0 x 0 until an image is read; the depth (number of slices) is 1
    /// for every image whose size is known.
    /// @{
    int getWidth() const { return _width; }
    int getHeight() const { return _height; }
    int getDepth() const { return _depth; }
    /// @}
    /// Whether the pixels carry colour: false for grey images and for
    /// palettes of grey entries only, whatever the pixels hold.
    bool hasColorChannel() const { return _hasColor; }
    /// Whether the pixels carry an alpha channel.
    bool hasAlphaChannel() const { return _hasAlpha; }
    /// The decoded pixels, in the format the decoder chose; null after
    /// readHeader().
    const QImage& getPixels() const { return _pixels; }

    /// Attaches value under key, replacing an earlier attachment of that key.
    void setAttachmentField(const std::string& key, const std::string& value);
    /// The attachment under key; nothing when there is none.
    std::optional<std::string> findAttachmentField(const std::string& key) const;

    /// Reads the image file at utf8Path. On success the pixels, name and
    /// channels are replaced (and the metadata attached when asked for); on
    /// failure the image stays as it was and false is returned.
    bool read(const char* utf8Path);

    /// Reads what the file at utf8Path says about its image, for showing and
    /// filtering by metadata: name, size, depth and channels from the
    /// header, and the metadata when asked for, as read() would, but
    /// without decoding the pixels, so a huge image or a decompression bomb
    /// costs no more than its header, and a file whose image data is cut
    /// short or missing (a partial download, an EXIF-only JPEG) still yields
    /// its metadata. The pixels are left null. The channels are those the
    /// header declares: a palette's entries are not read, so 8-bit palette
    /// images count as colour and bilevel ones as grey, neither with alpha.
    /// A file whose header gives no size has 0 x 0 x 0 and is accepted only
    /// when it carries metadata of the three blocks. On failure the image stays as it was,
    /// false is returned and why, when given, says what is wrong ("is a
    /// directory", "Permission denied", ...).
    bool readHeader(const char* utf8Path, std::string* why = nullptr);

private:
    Image() = default;

    bool load(const char* utf8Path, bool decodePixels, std::string& why);

    std::string _name;
    QImage _pixels;
    int _width = 0;
    int _height = 0;
    int _depth = 0;
    bool _hasColor = false;
    bool _hasAlpha = false;
    std::map<std::string, std::string> _attachments;
};

} // namespace osg

#endif // OSGIMAGE_H
