#include "zeTextureMetaDataGUII.h"

#include "zeImageMetaData.h"
#include "zeLog.h"

#include <QFontMetricsF>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextBlockFormat>
#include <QTextOption>

#include <algorithm>

namespace {

struct TagLine
{
    const char* key;
    const char* label;
};

const TagLine SampleTags[] = {
    {"@SAMPLES_PER_PIXEL", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Samples per pixel:\t")},
    {"@BITS_PER_SAMPLE", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Bits per sample:\t\t")},
};

const TagLine DescriptiveTags[] = {
    {"@MAKE", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Camera maker:\t\t")},
    {"@MODEL", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Camera model:\t\t")},
    {"@SOFTWARE", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Software:\t\t")},
    {"@ARTIST", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Artist:\t\t")},
    {"@IMAGEDESCRIPTION", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Image description:\t")},
    {"@COPYRIGHT", QT_TRANSLATE_NOOP("zeTextureMetaDataGUII", "Copyright:\t\t")},
};

// A distance that is not a number of metres: the loader's words for the
// EXIF codes of infinity and of an unknown distance.
bool isDistanceWord(const std::string& value)
{
    return value == "Infinity" || value == "Distance unknown";
}

std::string attachment(const osg::ImagePtr& image, const std::string& key)
{
    return image->findAttachmentField(key).value_or(std::string());
}

// The EXIF block, followed by the EXIF properties that the metadata record
// carries inside its XMP.
std::string exifOf(const osg::ImagePtr& image)
{
    std::string exif = attachment(image, zeImageMetaData::getEXIFDataKey());
    if (attachment(image, zeImageMetaData::getAttachmentKey()).empty())
        return exif;
    const zeImageMetaData metaData(image, true);
    std::string text;
    if (metaData.containedEXIFDataWithinXMP() && metaData.getEXIFData(text))
        exif += text;
    return exif;
}

} // namespace

zeTextureMetaDataGUII::zeTextureMetaDataGUII(QWidget* parent) : QDialog(parent, Qt::WindowFlags())
{
    _ui.setupUi(this);
    setAttribute(Qt::WA_DeleteOnClose);
}

bool zeTextureMetaDataGUII::showMetaDataInfo(osg::ImagePtr image)
{
    if (!image)
        return false;
    _image = image;
    _ui._filename->setText(QString::fromStdString(image->getName()));
    const QByteArray path = _ui._filename->text().toUtf8();
    const osg::ImagePtr fresh = osg::Image::create();
    fresh->setAttachmentField(zeImageMetaData::getAttachmentKey(), std::string());
    if (!fresh->read(path.constData())) {
        zeLog::warning("Couldn't read image %s.", path.constData());
        return false;
    }
    showMetaDataLines(*fresh, attachment(fresh, zeImageMetaData::getBaselineDataKey()),
                      exifOf(fresh));
    return true;
}

bool zeTextureMetaDataGUII::getKeyValue(std::string key, std::string text, std::string& value)
{
    if (text.empty())
        return false;
    const std::size_t pos = text.find(key);
    if (pos == std::string::npos)
        return false;
    const std::size_t begin = pos + key.size();
    // A key that holds a line feed itself ends its line before its value.
    const std::size_t end = std::max(begin, std::min(text.find('\n', pos + 1), text.size()));
    value = text.substr(begin, end - begin);
    return true;
}

void zeTextureMetaDataGUII::showMetaDataLines(const osg::Image& image, const std::string& baseline,
                                              const std::string& exif)
{
    _ui._metadata->clear();
    appendFixedLines(image);
    appendSampleLines(baseline, exif);
    if (!baseline.empty())
        appendText(QString());
    appendDescriptiveLines(baseline);
    if (!exif.empty())
        appendText(QString());
    appendExposureLines(exif);
    lineUpValues();
    _ui._metadata->moveCursor(QTextCursor::Start); // the first lines in view, not the last
}

void zeTextureMetaDataGUII::appendFixedLines(const osg::Image& image)
{
    const std::string yes = translated(QT_TR_NOOP("Yes"));
    const std::string no = translated(QT_TR_NOOP("No"));
    appendLine(QT_TR_NOOP("Dimension:\t\t"), std::to_string(image.getWidth()) + " x "
                                                 + std::to_string(image.getHeight()) + " px");
    appendLine(QT_TR_NOOP("Depth:\t\t"), std::to_string(image.getDepth()));
    appendLine(QT_TR_NOOP("Color channel:\t\t"), image.hasColorChannel() ? yes : no);
    appendLine(QT_TR_NOOP("Alpha channel:\t\t"), image.hasAlphaChannel() ? yes : no);
}

void zeTextureMetaDataGUII::appendSampleLines(const std::string& baseline, const std::string& exif)
{
    std::string value;
    for (const TagLine& tag : SampleTags) {
        if (getKeyValue(tag.key, baseline, value) || getKeyValue(tag.key, exif, value))
            appendLine(tag.label, value);
    }
}

void zeTextureMetaDataGUII::appendDescriptiveLines(const std::string& baseline)
{
    std::string value;
    for (const TagLine& tag : DescriptiveTags) {
        if (getKeyValue(tag.key, baseline, value))
            appendLine(tag.label, value);
    }
}

// The APEX values stay as the loader wrote them; the plain exposure time and
// f-number are only placed beside them.
void zeTextureMetaDataGUII::appendExposureLines(const std::string& exif)
{
    std::string time, fNumber, value;
    const bool hasTime = getKeyValue("@EXPOSURE_TIME", exif, time);
    const bool hasFNumber = getKeyValue("@F_NUMBER", exif, fNumber);
    if (hasTime)
        appendLine(QT_TR_NOOP("Exposure time:\t\t"), time + '"');
    if (hasFNumber)
        appendLine(QT_TR_NOOP("F number:\t\tF"), fNumber);
    if (getKeyValue("@SHUTTER_SPEED", exif, value)) {
        appendLine(QT_TR_NOOP("Shutter speed:\t\t"),
                   value + translated(QT_TR_NOOP(" Tv")) + (hasTime ? "(" + time + "\")" : ""));
    }
    if (getKeyValue("@APERTURE", exif, value)) {
        appendLine(QT_TR_NOOP("Aperture:\t\t"),
                   value + translated(QT_TR_NOOP(" Av"))
                       + (hasFNumber ? translated(QT_TR_NOOP(" (F")) + fNumber + ")" : ""));
    }
    if (getKeyValue("@BRIGHTNESS", exif, value))
        appendLine(QT_TR_NOOP("Brightness:\t\t"), value);
    if (getKeyValue("@EXPOSURE_BIAS", exif, value))
        appendLine(QT_TR_NOOP("Exposure bias:\t\t"), value + translated(QT_TR_NOOP(" EV")));
    if (getKeyValue("@SUBJECT_DISTANCE", exif, value))
        appendLine(QT_TR_NOOP("Subject distance:\t"), value + (isDistanceWord(value) ? "" : " m"));
    if (getKeyValue("@FOCAL_LENGTH", exif, value))
        appendLine(QT_TR_NOOP("Lens focal length:\t"), value + " mm");
    if (getKeyValue("@FOCAL_LENGTH_IN _35MM_FILM", exif, value))
        appendLine(QT_TR_NOOP("Lens focal length in 35mm:\t"), value + " mm");
}

void zeTextureMetaDataGUII::appendLine(const char* label, const std::string& value)
{
    appendText(QString::fromUtf8(QByteArray::fromStdString(translated(label) + value)));
}

// QTextEdit::append() would take a line that looks like markup for HTML:
// a tag value such as "<img src=...>" would be rendered, and could make the
// text box load the file it names. The lines are always plain text.
void zeTextureMetaDataGUII::appendText(const QString& line)
{
    QTextDocument* document = _ui._metadata->document();
    QTextCursor cursor(document);
    cursor.movePosition(QTextCursor::End);
    if (!document->isEmpty())
        cursor.insertBlock();
    cursor.insertText(line);
}

// The labels' tabs were counted for one common column: a label narrower
// than every two-tab label ends in two tabs, a wider one in one. The text
// box's default stops, a fixed 80 pixels apart, scatter the values; instead
// the first stop goes just past the widest two-tab label and the second,
// where every value starts, just past the widest label, in the font and
// translation at hand.
void zeTextureMetaDataGUII::lineUpValues()
{
    QTextDocument* document = _ui._metadata->document();
    const QFontMetricsF metrics(document->defaultFont());
    const qreal gap = metrics.horizontalAdvance(QLatin1Char(' ')) * 2;
    qreal widestTwoTabLabel = 0.0;
    qreal widestLabel = 0.0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const QString line = block.text();
        const int firstTab = line.indexOf(QLatin1Char('\t'));
        if (firstTab < 0)
            continue;
        const qreal width = metrics.horizontalAdvance(line.left(firstTab));
        widestLabel = std::max(widestLabel, width);
        if (QStringView(line).mid(firstTab + 1).startsWith(QLatin1Char('\t')))
            widestTwoTabLabel = std::max(widestTwoTabLabel, width);
    }
    // Any stop past the two-tab labels will do as the first, as long as it
    // comes before the narrowest one-tab label.
    const qreal firstStop = widestTwoTabLabel + 1.0;
    QTextBlockFormat stops;
    stops.setTabPositions({QTextOption::Tab(firstStop, QTextOption::LeftTab),
                           QTextOption::Tab(std::max(widestLabel, firstStop) + gap,
                                            QTextOption::LeftTab)});
    QTextCursor cursor(document);
    cursor.select(QTextCursor::Document);
    cursor.mergeBlockFormat(stops);
}

std::string zeTextureMetaDataGUII::translated(const char* text) const
{
    return tr(text).toUtf8().toStdString();
}
