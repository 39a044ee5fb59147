#include "ChildProcess.h"
#include "ImageFixtures.h"
#include "TestHelpers.h"

#include <osgImage.h>
#include <zeImageMetaData.h>
#include <zeImageMetaWriter.h>
#include <zeLog.h>
#include <zeRenderSettings.h>

#include <QDir>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <QtTest>

#include <cerrno>
#include <sys/stat.h>
#include <cstring>

Q_DECLARE_METATYPE(ImageFixtures::Tags)
Q_DECLARE_METATYPE(zeImageMetaWriter::Result)

// The metadata blocks that osg::Image::read() attaches, the render-settings
// record written by zeImageMetaWriter and read back by zeImageMetaData. The
// files are made by the tests: pixels with QImageWriter, tags with exiv2.
class tst_zeImageMetaData : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void attachmentKeysAreDistinctNames();
    void baselineLinesComeFromTheImageTags_data();
    void baselineLinesComeFromTheImageTags();
    void samplesAndBitsFallBackToTheDecoder_data();
    void samplesAndBitsFallBackToTheDecoder();
    void tiffImageDirectoryTagsAreRead();
    void exifLinesAreWrittenAsPhotographersReadThem_data();
    void exifLinesAreWrittenAsPhotographersReadThem();
    void exifLinesKeepTheirOrderAndEachEndsWithALineFeed();
    void fileWithoutMetadataHasNoRecordAndNoExif();
    void corruptExifLeavesThePixelsReadable();

    void recordRoundTripsThroughEachFormat_data();
    void recordRoundTripsThroughEachFormat();
    void groupMaskIsTheOrOfTheCarriedGroups_data();
    void groupMaskIsTheOrOfTheCarriedGroups();
    void generalInformationIsReportedWhenAnyPartIsSet_data();
    void generalInformationIsReportedWhenAnyPartIsSet();
    void restampingReplacesTheWholeRecord();
    void textsXmlCannotCarryBecomeReplacementCharacters();
    void emptyRecordRemovesTheRecord();
    void recordIsReadByNamespaceWhateverThePrefix();
    void recordIsWrittenInTheStableNamespace();
    void recordOfTheOldNamespaceIsRead();
    void documentedExampleReadsAsDocumented();
    void restampingAnOldRecordReplacesIt();
    void ourPrefixBoundElsewhereIsNoRecordAndDoesNotStick();

    void exifInsideXmpIsReadOnlyWhenAskedFor();
    void exifInsideXmpAcceptsDecimals();
    void stampCopiesTheFilesExifIntoXmp();
    void stampKeepsTheFilesExif();

    void attachmentThatIsNoXmpHoldsNothing_data();
    void attachmentThatIsNoXmpHoldsNothing();
    void nullImageHoldsNothing();
    void stampFailuresLeaveTheFileAlone_data();
    void stampFailuresLeaveTheFileAlone();
    void stampRefusesXmpExiv2CannotEncode();
    void stampRefusesXmpExiv2CannotParse();
    void stampOnAFullDiskLeavesTheOriginal_data();
    void stampOnAFullDiskLeavesTheOriginal();
    void stampKilledMidWriteLeavesTheOriginal();
    void stampNamesWhyAFileCannotBeRead_data();
    void stampNamesWhyAFileCannotBeRead();
    void stampRefusesFilesOverOneGiB();
    void stampReportsAFileItCannotReplace();

private:
    struct Blocks
    {
        bool read = false;
        osg::ImagePtr image;
        std::string baseline;
        std::string exif;
        std::string record;
    };

    QString path(const QString& name) const { return _dir.filePath(name); }
    QString plainFile(const QString& name, const QByteArray& format) const;
    QString taggedJpeg(const QString& name, const ImageFixtures::Tags& tags) const;
    static Blocks load(const QString& file);
    static zeRenderSettings sampleRecord();
    static void stamp(const QString& file, const zeRenderSettings& record, bool exifInXMP = false);

    QTemporaryDir _dir;
};

namespace {

const char* const Absent = "<absent>";

std::string attachment(const osg::ImagePtr& image, const std::string& key)
{
    return image->findAttachmentField(key).value_or(Absent);
}

// What an opaque 8-bit RGB JPEG's decoder reports when the file has no tags.
const std::string JpegDecoderLines = "@SAMPLES_PER_PIXEL 3\n@BITS_PER_SAMPLE 8\n";

// The record's namespace as docs/render-settings-record.md fixes it, and the
// placeholder that records were written with before.
const std::string OurNamespace = "urn:qtcolor:render-settings:1.0/";
const std::string OldNamespace = "http://ns.qtcolor.example/render-settings/1.0/";

// A record as the placeholder namespace wrote it: camera with one setting,
// image without settings.
std::string oldRecordPacket()
{
    return ImageFixtures::xmpPacket("xmlns:qzeRender=\"" + OldNamespace
                         + "\" qzeRender:SceneFile=\"old.scene\" qzeRender:ApplicationVersion=\"1.0\""
                           " qzeRender:RenderDate=\"2024-01-02T03:04:05\"",
                     "<qzeRender:Camera><rdf:Seq><rdf:li rdf:parseType=\"Resource\">"
                     "<qzeRender:Key>fov</qzeRender:Key><qzeRender:Value>45</qzeRender:Value>"
                     "</rdf:li></rdf:Seq></qzeRender:Camera>"
                     "<qzeRender:Image><rdf:Seq/></qzeRender:Image>");
}

bool isWellFormedXml(const std::string& text)
{
    QXmlStreamReader xml(QByteArray::fromStdString(text));
    while (!xml.atEnd())
        xml.readNext();
    return !xml.hasError();
}

// "pid (name) state ppid ..." of /proc/<pid>/stat, the fields after the
// name's closing parenthesis; empty when the process is gone.
QList<QByteArray> processStatus(const QString& pid)
{
    QFile stat(QStringLiteral("/proc/") + pid + QStringLiteral("/stat"));
    if (!stat.open(QIODevice::ReadOnly))
        return {};
    const QByteArray line = stat.readAll();
    return line.mid(line.lastIndexOf(')') + 2).split(' ');
}

// Watches the child of this process for killChildDuringWrite: answers true
// once the child has written into a file in directory other than except,
// or has ended (then there is nothing left to wait for). The temporary file
// of a save may have no name until it is renamed (O_TMPFILE), so the
// child's open files are looked at. The child is looked up once, so each
// poll costs little even on a busy machine.
class ChildWriteWatch
{
public:
    ChildWriteWatch(const QString& directory, const QString& except)
        : _directory(directory), _except(except)
    {
    }

    bool operator()()
    {
        if (_child.isEmpty())
            _child = findChild();
        if (_child.isEmpty())
            return false;
        const QList<QByteArray> status = processStatus(_child);
        return status.isEmpty() || status.at(0) == "Z" || isWriting();
    }

private:
    static QString findChild()
    {
        const QByteArray self = QByteArray::number(getpid());
        for (const QString& pid : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
            const QList<QByteArray> status = processStatus(pid);
            if (status.size() > 1 && status.at(1) == self)
                return pid;
        }
        return QString();
    }

    bool isWriting() const
    {
        const QDir descriptors(QStringLiteral("/proc/") + _child + QStringLiteral("/fd"));
        for (const QString& descriptor : descriptors.entryList(QDir::Files | QDir::System)) {
            const QByteArray link = QFile::encodeName(descriptors.filePath(descriptor));
            char target[4096];
            const ssize_t length = readlink(link.constData(), target, sizeof target);
            struct stat written;
            if (length > 0 && ::stat(link.constData(), &written) == 0 && written.st_size > 0
                && isOtherFileIn(QFile::decodeName(QByteArray(target, int(length)))))
                return true;
        }
        return false;
    }

    // A temporary file without a name shows as "directory/#inode (deleted)".
    bool isOtherFileIn(const QString& target) const
    {
        return target.startsWith(_directory + QLatin1Char('/')) && target != _except;
    }

    QString _directory;
    QString _except;
    QString _child;
};

QStringList filesIn(const QString& directory)
{
    return QDir(directory).entryList(QDir::Files | QDir::Hidden | QDir::System);
}

} // namespace

void tst_zeImageMetaData::initTestCase()
{
    QVERIFY(_dir.isValid());
    // exiv2 warns about the broken files on purpose; keep the log quiet.
    zeLog::setWarningHandler([](const char*) {});
    Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
}

QString tst_zeImageMetaData::plainFile(const QString& name, const QByteArray& format) const
{
    const QString file = path(name);
    if (!ImageFixtures::writePlain(file, format))
        qWarning("cannot write %s", qPrintable(file));
    return file;
}

QString tst_zeImageMetaData::taggedJpeg(const QString& name, const ImageFixtures::Tags& tags) const
{
    const QString file = plainFile(name, "jpeg");
    if (!ImageFixtures::addTags(file, tags))
        qWarning("cannot tag %s", qPrintable(file));
    return file;
}

tst_zeImageMetaData::Blocks tst_zeImageMetaData::load(const QString& file)
{
    Blocks blocks;
    blocks.image = osg::Image::create();
    blocks.image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    blocks.read = blocks.image->read(file.toUtf8().constData());
    blocks.baseline = attachment(blocks.image, "BaselineData");
    blocks.exif = attachment(blocks.image, "EXIFData");
    blocks.record = attachment(blocks.image, zeImageMetaData::getAttachmentKey());
    return blocks;
}

zeRenderSettings tst_zeImageMetaData::sampleRecord()
{
    zeRenderSettings record;
    record.setSceneFile("scenes/Showroom \xc3\x9c.scene");
    record.setApplicationVersion("2024.3");
    record.setRenderDate("2024-05-17T14:30:00");
    record.addSetting(zeRenderSettings::CameraSettings, "Field of view", "45");
    record.addSetting(zeRenderSettings::CameraSettings, "Position", "1 2 3");
    record.addSetting(zeRenderSettings::ImageSettings, "Resolution", "1920 x 1080");
    record.addSetting(zeRenderSettings::ImageSettings, "Note", "a < b & \"c\"\nsecond line");
    record.addGroups(zeRenderSettings::RaytracingSettings);
    return record;
}

void tst_zeImageMetaData::stamp(const QString& file, const zeRenderSettings& record, bool exifInXMP)
{
    std::string detail;
    const zeImageMetaWriter::Result result =
        zeImageMetaWriter::stamp(file.toUtf8().constData(), record, exifInXMP, &detail);
    QVERIFY2(result == zeImageMetaWriter::Stamped, detail.c_str());
    QVERIFY(detail.empty());
}

void tst_zeImageMetaData::attachmentKeysAreDistinctNames()
{
    QCOMPARE(zeImageMetaData::getBaselineDataKey(), std::string("BaselineData"));
    QCOMPARE(zeImageMetaData::getEXIFDataKey(), std::string("EXIFData"));
    const std::string key = zeImageMetaData::getAttachmentKey();
    QVERIFY(!key.empty());
    QVERIFY(key != "BaselineData" && key != "EXIFData");
}

void tst_zeImageMetaData::baselineLinesComeFromTheImageTags_data()
{
    QTest::addColumn<ImageFixtures::Tags>("tags");
    QTest::addColumn<QByteArray>("expected");

    const std::string samplesAndBits = JpegDecoderLines;
    QTest::newRow("make") << ImageFixtures::Tags{{"Exif.Image.Make", "Maker Co"}}
                          << QByteArray::fromStdString(samplesAndBits + "@MAKE Maker Co\n");
    QTest::newRow("model") << ImageFixtures::Tags{{"Exif.Image.Model", "Model 7"}}
                           << QByteArray::fromStdString(samplesAndBits + "@MODEL Model 7\n");
    QTest::newRow("software") << ImageFixtures::Tags{{"Exif.Image.Software", "Painter 2.1"}}
                              << QByteArray::fromStdString(samplesAndBits
                                                           + "@SOFTWARE Painter 2.1\n");
    QTest::newRow("artist") << ImageFixtures::Tags{{"Exif.Image.Artist", "A. Person"}}
                            << QByteArray::fromStdString(samplesAndBits + "@ARTIST A. Person\n");
    QTest::newRow("description")
        << ImageFixtures::Tags{{"Exif.Image.ImageDescription", "Red test card"}}
        << QByteArray::fromStdString(samplesAndBits + "@IMAGEDESCRIPTION Red test card\n");
    QTest::newRow("copyright") << ImageFixtures::Tags{{"Exif.Image.Copyright", "(c) 2024 Us"}}
                               << QByteArray::fromStdString(samplesAndBits
                                                            + "@COPYRIGHT (c) 2024 Us\n");
    QTest::newRow("all six in order")
        << ImageFixtures::Tags{{"Exif.Image.Copyright", "C"}, {"Exif.Image.Make", "M"},
                               {"Exif.Image.ImageDescription", "D"}, {"Exif.Image.Artist", "A"},
                               {"Exif.Image.Model", "O"}, {"Exif.Image.Software", "S"}}
        << QByteArray::fromStdString(samplesAndBits
                                     + "@MAKE M\n@MODEL O\n@SOFTWARE S\n@ARTIST A\n"
                                       "@IMAGEDESCRIPTION D\n@COPYRIGHT C\n");
    QTest::newRow("line breaks and outer blanks")
        << ImageFixtures::Tags{{"Exif.Image.Make", "  Maker\nCo\r  "}}
        << QByteArray::fromStdString(samplesAndBits + "@MAKE Maker Co\n");
    QTest::newRow("Latin-1 text becomes UTF-8")
        << ImageFixtures::Tags{{"Exif.Image.Artist", "Caf\xe9"}}
        << QByteArray::fromStdString(samplesAndBits + "@ARTIST Caf\xc3\xa9\n");
    QTest::newRow("UTF-8 text stays")
        << ImageFixtures::Tags{{"Exif.Image.Artist", "Jos\xc3\xa9"}}
        << QByteArray::fromStdString(samplesAndBits + "@ARTIST Jos\xc3\xa9\n");
    QTest::newRow("blank text has no line")
        << ImageFixtures::Tags{{"Exif.Image.Model", "   "}}
        << QByteArray::fromStdString(samplesAndBits);
    QTest::newRow("samples tag beats the decoder")
        << ImageFixtures::Tags{{"Exif.Image.SamplesPerPixel", "5"}}
        << QByteArray("@SAMPLES_PER_PIXEL 5\n@BITS_PER_SAMPLE 8\n");
    QTest::newRow("equal bits are one number")
        << ImageFixtures::Tags{{"Exif.Image.BitsPerSample", "12 12 12"}}
        << QByteArray("@SAMPLES_PER_PIXEL 3\n@BITS_PER_SAMPLE 12\n");
    QTest::newRow("unequal bits are listed")
        << ImageFixtures::Tags{{"Exif.Image.BitsPerSample", "5 6 5"}}
        << QByteArray("@SAMPLES_PER_PIXEL 3\n@BITS_PER_SAMPLE 5 6 5\n");
}

void tst_zeImageMetaData::baselineLinesComeFromTheImageTags()
{
    QFETCH(ImageFixtures::Tags, tags);
    QFETCH(QByteArray, expected);
    const Blocks blocks = load(taggedJpeg(QStringLiteral("baseline.jpg"), tags));
    QVERIFY(blocks.read);
    QCOMPARE(QByteArray::fromStdString(blocks.baseline), expected);
}

void tst_zeImageMetaData::samplesAndBitsFallBackToTheDecoder_data()
{
    QTest::addColumn<QImage>("image");
    QTest::addColumn<int>("samples");
    QTest::addColumn<int>("bits");

    // The counts of the PNG colour type and bit depth that QImageWriter
    // writes for each pixel format.
    const auto filled = [](QImage::Format format) {
        return ImageFixtures::filled(4, 3, format, QColor(10, 120, 230, 128));
    };
    QTest::newRow("RGB, 8 bits") << filled(QImage::Format_RGB32) << 3 << 8;
    QTest::newRow("RGBA, 8 bits") << filled(QImage::Format_ARGB32) << 4 << 8;
    QTest::newRow("grey, 8 bits") << filled(QImage::Format_Grayscale8) << 1 << 8;
    QTest::newRow("grey, 16 bits") << filled(QImage::Format_Grayscale16) << 1 << 16;
    QTest::newRow("RGBA, 16 bits") << filled(QImage::Format_RGBA64) << 4 << 16;
    QTest::newRow("palette") << filled(QImage::Format_Indexed8) << 1 << 8;
    QTest::newRow("bilevel") << filled(QImage::Format_Mono) << 1 << 1;
}

void tst_zeImageMetaData::samplesAndBitsFallBackToTheDecoder()
{
    QFETCH(QImage, image);
    QFETCH(int, samples);
    QFETCH(int, bits);
    const QString file = path(QStringLiteral("decoder.png"));
    QVERIFY(ImageFixtures::write(image, file));
    const Blocks blocks = load(file);
    QVERIFY(blocks.read);
    QCOMPARE(QByteArray::fromStdString(blocks.baseline),
             QByteArray("@SAMPLES_PER_PIXEL ") + QByteArray::number(samples)
                 + "\n@BITS_PER_SAMPLE " + QByteArray::number(bits) + "\n");
}

// In a TIFF the tags sit in the image's own directory; the RGBA file that
// QImageWriter writes says 4 samples of 8, 8, 8, 8 bits.
void tst_zeImageMetaData::tiffImageDirectoryTagsAreRead()
{
    const QString file = path(QStringLiteral("tagged.tif"));
    QVERIFY(ImageFixtures::write(ImageFixtures::filled(4, 3, QImage::Format_ARGB32, Qt::red), file,
                                 "tiff"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Image.Make", "Scanner Co"},
                                          {"Exif.Image.Copyright", "Archive"}}));
    const Blocks blocks = load(file);
    QVERIFY(blocks.read);
    QCOMPARE(QByteArray::fromStdString(blocks.baseline),
             QByteArray("@SAMPLES_PER_PIXEL 4\n@BITS_PER_SAMPLE 8\n@MAKE Scanner Co\n"
                        "@COPYRIGHT Archive\n"));
}

void tst_zeImageMetaData::exifLinesAreWrittenAsPhotographersReadThem_data()
{
    QTest::addColumn<QByteArray>("tag");
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("expected"); // the whole EXIF block

    struct Row
    {
        const char* name;
        const char* tag;
        const char* value;
        const char* line;
    };
    const Row rows[] = {
        {"exposure 1/100", "ExposureTime", "1/100", "@EXPOSURE_TIME 1/100"},
        {"exposure 10/1000 reduces", "ExposureTime", "10/1000", "@EXPOSURE_TIME 1/100"},
        {"exposure 1/3", "ExposureTime", "1/3", "@EXPOSURE_TIME 1/3"},
        {"exposure 3/10 as decimal", "ExposureTime", "3/10", "@EXPOSURE_TIME 0.3"},
        {"exposure 2 s", "ExposureTime", "2/1", "@EXPOSURE_TIME 2"},
        {"exposure 1.3 s", "ExposureTime", "13/10", "@EXPOSURE_TIME 1.3"},
        {"exposure zero is undefined", "ExposureTime", "0/1", nullptr},
        {"exposure over zero is undefined", "ExposureTime", "1/0", nullptr},
        {"f-number 5.6", "FNumber", "56/10", "@F_NUMBER 5.6"},
        {"f-number 8", "FNumber", "8/1", "@F_NUMBER 8"},
        {"f-number 7.1", "FNumber", "71/10", "@F_NUMBER 7.1"},
        {"f-number 1.4 from 7/5", "FNumber", "7/5", "@F_NUMBER 1.4"},
        {"shutter speed", "ShutterSpeedValue", "6643856/1000000", "@SHUTTER_SPEED 6.64"},
        {"shutter speed keeps two decimals", "ShutterSpeedValue", "5/1", "@SHUTTER_SPEED 5.00"},
        {"aperture", "ApertureValue", "497/100", "@APERTURE 4.97"},
        {"brightness negative", "BrightnessValue", "-7/3", "@BRIGHTNESS -2.33"},
        {"brightness near zero has no sign", "BrightnessValue", "-1/1000", "@BRIGHTNESS 0.00"},
        {"exposure bias -2/3", "ExposureBiasValue", "-2/3", "@EXPOSURE_BIAS -0.67"},
        {"exposure bias zero is a value", "ExposureBiasValue", "0/1", "@EXPOSURE_BIAS 0.00"},
        {"distance infinity code", "SubjectDistance", "4294967295/1", "@SUBJECT_DISTANCEInfinity"},
        {"distance 0 is unknown", "SubjectDistance", "0/1", "@SUBJECT_DISTANCEDistance unknown"},
        {"distance 3.5 m", "SubjectDistance", "35/10", "@SUBJECT_DISTANCE 3.5"},
        {"distance two decimals", "SubjectDistance", "1234/1000", "@SUBJECT_DISTANCE 1.23"},
        {"focal length 50", "FocalLength", "50/1", "@FOCAL_LENGTH 50"},
        {"focal length 4.3", "FocalLength", "43/10", "@FOCAL_LENGTH 4.3"},
        {"focal length 18.5", "FocalLength", "185/10", "@FOCAL_LENGTH 18.5"},
        {"35 mm focal length", "FocalLengthIn35mmFilm", "28", "@FOCAL_LENGTH_IN _35MM_FILM 28"},
        {"35 mm focal length 0 is unknown", "FocalLengthIn35mmFilm", "0", nullptr},
    };
    for (const Row& row : rows) {
        QTest::newRow(row.name) << QByteArray("Exif.Photo.") + row.tag << QByteArray(row.value)
                                << (row.line ? QByteArray(row.line) + '\n' : QByteArray());
    }
}

void tst_zeImageMetaData::exifLinesAreWrittenAsPhotographersReadThem()
{
    QFETCH(QByteArray, tag);
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, expected);
    const Blocks blocks =
        load(taggedJpeg(QStringLiteral("exif.jpg"), {{tag.toStdString(), value.toStdString()}}));
    QVERIFY(blocks.read);
    QCOMPARE(QByteArray::fromStdString(blocks.exif), expected);
}

void tst_zeImageMetaData::exifLinesKeepTheirOrderAndEachEndsWithALineFeed()
{
    const Blocks blocks = load(taggedJpeg(
        QStringLiteral("order.jpg"),
        {{"Exif.Photo.FocalLengthIn35mmFilm", "75"}, {"Exif.Photo.FocalLength", "50/1"},
         {"Exif.Photo.SubjectDistance", "4294967295/1"}, {"Exif.Photo.ExposureBiasValue", "1/3"},
         {"Exif.Photo.BrightnessValue", "5/2"}, {"Exif.Photo.ApertureValue", "4/1"},
         {"Exif.Photo.ShutterSpeedValue", "7/1"}, {"Exif.Photo.FNumber", "4/1"},
         {"Exif.Photo.ExposureTime", "1/125"}}));
    QVERIFY(blocks.read);
    QCOMPARE(QByteArray::fromStdString(blocks.exif),
             QByteArray("@EXPOSURE_TIME 1/125\n"
                        "@F_NUMBER 4\n"
                        "@SHUTTER_SPEED 7.00\n"
                        "@APERTURE 4.00\n"
                        "@BRIGHTNESS 2.50\n"
                        "@EXPOSURE_BIAS 0.33\n"
                        "@SUBJECT_DISTANCEInfinity\n"
                        "@FOCAL_LENGTH 50\n"
                        "@FOCAL_LENGTH_IN _35MM_FILM 75\n"));
}

void tst_zeImageMetaData::fileWithoutMetadataHasNoRecordAndNoExif()
{
    const Blocks blocks = load(plainFile(QStringLiteral("plain.jpg"), "jpeg"));
    QVERIFY(blocks.read);
    QCOMPARE(blocks.baseline, JpegDecoderLines);
    QCOMPARE(blocks.exif, std::string());
    QCOMPARE(blocks.record, std::string());
    const zeImageMetaData meta(blocks.image, true);
    QCOMPARE(meta.containedTALQSettings(), 0);
    std::string filename = "x", version = "x", date = "x";
    QVERIFY(!meta.getGeneralInformation(filename, version, date));
    QCOMPARE(filename + version + date, std::string());
    QVERIFY(!meta.containedEXIFDataWithinXMP());
}

// The TIFF header inside the EXIF segment points its first directory far
// past the end; the JPEG decoder does not care.
void tst_zeImageMetaData::corruptExifLeavesThePixelsReadable()
{
    const QString file =
        taggedJpeg(QStringLiteral("corrupt.jpg"), {{"Exif.Photo.ExposureTime", "1/100"}});
    QByteArray bytes = ImageFixtures::readFile(file);
    const int tiffHeader = bytes.indexOf(QByteArray("Exif\0\0", 6)) + 6;
    QVERIFY(tiffHeader > 6);
    const bool bigEndian = bytes.mid(tiffHeader, 2) == "MM";
    const QByteArray farAway = bigEndian ? QByteArray("\x7f\xff\xff\x00", 4)
                                         : QByteArray("\x00\xff\xff\x7f", 4);
    bytes.replace(tiffHeader + 4, 4, farAway);
    QVERIFY(ImageFixtures::writeFile(file, bytes));

    const Blocks blocks = load(file);
    QVERIFY(blocks.read);
    QCOMPARE(blocks.image->getWidth(), 8);
    QCOMPARE(blocks.exif, std::string());
    QCOMPARE(blocks.baseline, JpegDecoderLines);
}

void tst_zeImageMetaData::recordRoundTripsThroughEachFormat_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format");
    QTest::newRow("JPEG") << QStringLiteral("record.jpg") << QByteArray("jpeg");
    QTest::newRow("PNG") << QStringLiteral("record.png") << QByteArray("png");
    QTest::newRow("TIFF") << QStringLiteral("record.tif") << QByteArray("tiff");
    QTest::newRow("WebP") << QStringLiteral("record.webp") << QByteArray("webp");
}

void tst_zeImageMetaData::recordRoundTripsThroughEachFormat()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    const QString file = plainFile(name, format);
    const QImage before(file);
    QVERIFY(!before.isNull());

    QZE_CHECK(stamp(file, sampleRecord()));

    const Blocks blocks = load(file);
    QVERIFY(blocks.read);
    QVERIFY(blocks.image->getPixels() == before);
    const zeImageMetaData meta(blocks.image, false);
    QCOMPARE(meta.containedTALQSettings(), 1 | 8 | 64);
    std::string filename, version, date;
    QVERIFY(meta.getGeneralInformation(filename, version, date));
    QCOMPARE(filename, std::string("scenes/Showroom \xc3\x9c.scene"));
    QCOMPARE(version, std::string("2024.3"));
    QCOMPARE(date, std::string("2024-05-17T14:30:00"));

    const zeRenderSettings& read = meta.getRenderSettings();
    using Settings = std::vector<zeRenderSettings::Setting>;
    QVERIFY(read.getSettings(zeRenderSettings::CameraSettings)
            == Settings({{"Field of view", "45"}, {"Position", "1 2 3"}}));
    QVERIFY(read.getSettings(zeRenderSettings::ImageSettings)
            == Settings({{"Resolution", "1920 x 1080"}, {"Note", "a < b & \"c\"\nsecond line"}}));
    QVERIFY(read.getSettings(zeRenderSettings::RaytracingSettings).empty());
    QVERIFY(read == sampleRecord());
}

void tst_zeImageMetaData::groupMaskIsTheOrOfTheCarriedGroups_data()
{
    QTest::addColumn<int>("mask");
    QTest::newRow("none") << 0;
    for (int bit = 1; bit <= 128; bit <<= 1)
        QTest::addRow("bit %d", bit) << bit;
    QTest::newRow("camera and image") << (1 | 8);
    QTest::newRow("node visibilities and switch node states") << (2 | 4);
    QTest::newRow("all") << 255;
}

void tst_zeImageMetaData::groupMaskIsTheOrOfTheCarriedGroups()
{
    QFETCH(int, mask);
    const QString file = plainFile(QStringLiteral("mask.png"), "png");
    zeRenderSettings record;
    record.setSceneFile("scene");
    record.addGroups(mask);
    QZE_CHECK(stamp(file, record));
    const zeImageMetaData meta(load(file).image, false);
    QCOMPARE(meta.containedTALQSettings(), mask);
    for (int bit = 1; bit <= 128; bit <<= 1)
        QVERIFY(meta.getRenderSettings().getSettings(zeRenderSettings::Group(bit)).empty());
}

void tst_zeImageMetaData::generalInformationIsReportedWhenAnyPartIsSet_data()
{
    QTest::addColumn<QByteArray>("scene");
    QTest::addColumn<QByteArray>("version");
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<bool>("reported");
    QTest::newRow("scene only") << QByteArray("s.scene") << QByteArray() << QByteArray() << true;
    QTest::newRow("version only") << QByteArray() << QByteArray("1.0") << QByteArray() << true;
    QTest::newRow("date only") << QByteArray() << QByteArray() << QByteArray("2024-01-02") << true;
    QTest::newRow("none, groups only") << QByteArray() << QByteArray() << QByteArray() << false;
}

void tst_zeImageMetaData::generalInformationIsReportedWhenAnyPartIsSet()
{
    QFETCH(QByteArray, scene);
    QFETCH(QByteArray, version);
    QFETCH(QByteArray, date);
    QFETCH(bool, reported);
    zeRenderSettings record;
    record.setSceneFile(scene.toStdString());
    record.setApplicationVersion(version.toStdString());
    record.setRenderDate(date.toStdString());
    record.addGroups(zeRenderSettings::AnimationSettings);
    const QString file = plainFile(QStringLiteral("general.png"), "png");
    QZE_CHECK(stamp(file, record));
    const zeImageMetaData meta(load(file).image, false);
    std::string readScene, readVersion, readDate;
    QCOMPARE(meta.getGeneralInformation(readScene, readVersion, readDate), reported);
    QCOMPARE(QByteArray::fromStdString(readScene), scene);
    QCOMPARE(QByteArray::fromStdString(readVersion), version);
    QCOMPARE(QByteArray::fromStdString(readDate), date);
    QCOMPARE(meta.containedTALQSettings(), 16);
}

void tst_zeImageMetaData::restampingReplacesTheWholeRecord()
{
    const QString file = plainFile(QStringLiteral("restamp.jpg"), "jpeg");
    QZE_CHECK(stamp(file, sampleRecord()));
    zeRenderSettings second;
    second.setApplicationVersion("2.0");
    second.addSetting(zeRenderSettings::AnimationSettings, "Frames", "1-250");
    QZE_CHECK(stamp(file, second));
    const zeImageMetaData meta(load(file).image, false);
    QCOMPARE(meta.containedTALQSettings(), 16);
    QVERIFY(meta.getRenderSettings() == second);
    std::string scene, version, date;
    QVERIFY(meta.getGeneralInformation(scene, version, date));
    QCOMPARE(scene, std::string());
    QCOMPARE(version, std::string("2.0"));
}

void tst_zeImageMetaData::textsXmlCannotCarryBecomeReplacementCharacters()
{
    zeRenderSettings record;
    record.setSceneFile("a\x01" "b");
    record.addSetting(zeRenderSettings::CameraSettings, "k\xff", "tab\tline\nend");
    const QString file = plainFile(QStringLiteral("xmltext.png"), "png");
    QZE_CHECK(stamp(file, record));
    const zeRenderSettings read = zeImageMetaData(load(file).image, false).getRenderSettings();
    const std::string replacement = "\xef\xbf\xbd"; // U+FFFD in UTF-8
    QCOMPARE(read.getSceneFile(), "a" + replacement + "b");
    using Settings = std::vector<zeRenderSettings::Setting>;
    QVERIFY(read.getSettings(zeRenderSettings::CameraSettings)
            == Settings({{"k" + replacement, "tab\tline\nend"}}));
}

void tst_zeImageMetaData::emptyRecordRemovesTheRecord()
{
    const QString file = plainFile(QStringLiteral("unstamp.png"), "png");
    QZE_CHECK(stamp(file, sampleRecord()));
    QVERIFY(!load(file).record.empty());
    QZE_CHECK(stamp(file, zeRenderSettings()));
    const Blocks blocks = load(file);
    QCOMPARE(blocks.record, std::string());
    QCOMPARE(zeImageMetaData(blocks.image, true).containedTALQSettings(), 0);
}

// A packet written by another program, with its own prefix for our
// namespace, items in a different layout, an item without key and a
// property we do not know.
void tst_zeImageMetaData::recordIsReadByNamespaceWhateverThePrefix()
{
    const std::string packet = ImageFixtures::xmpPacket(
        "xmlns:rs=\"" + OurNamespace + "\" rs:SceneFile=\"a.scene\" rs:Future=\"later\"",
        "<rs:RenderDate>2023-12-24T18:00:00Z</rs:RenderDate>"
        "<rs:Camera><rdf:Seq>"
        "<rdf:li rdf:parseType=\"Resource\"><rs:Key>fov</rs:Key><rs:Value>45</rs:Value></rdf:li>"
        "<rdf:li rdf:parseType=\"Resource\"><rs:Value>orphan</rs:Value></rdf:li>"
        "<rdf:li rdf:parseType=\"Resource\">"
        "<rs:Value>2.8</rs:Value><rs:Key>aperture</rs:Key></rdf:li>"
        "</rdf:Seq></rs:Camera>"
        "<rs:Animation><rdf:Seq/></rs:Animation>");
    const QString file = plainFile(QStringLiteral("foreign.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(file, packet));

    const zeImageMetaData meta(load(file).image, false);
    QCOMPARE(meta.containedTALQSettings(), 1 | 16);
    std::string scene, version, date;
    QVERIFY(meta.getGeneralInformation(scene, version, date));
    QCOMPARE(scene, std::string("a.scene"));
    QCOMPARE(version, std::string());
    QCOMPARE(date, std::string("2023-12-24T18:00:00Z"));
    using Settings = std::vector<zeRenderSettings::Setting>;
    QVERIFY(meta.getRenderSettings().getSettings(zeRenderSettings::CameraSettings)
            == Settings({{"fov", "45"}, {"aperture", "2.8"}}));
}

void tst_zeImageMetaData::recordIsWrittenInTheStableNamespace()
{
    const QString file = plainFile(QStringLiteral("stable.png"), "png");
    QZE_CHECK(stamp(file, sampleRecord()));
    const std::string packet = load(file).record;
    QVERIFY(packet.find("xmlns:qtcRender=\"urn:qtcolor:render-settings:1.0/\"")
            != std::string::npos);
    QVERIFY(packet.find("ns.qtcolor.example") == std::string::npos);
}

void tst_zeImageMetaData::recordOfTheOldNamespaceIsRead()
{
    const QString file = plainFile(QStringLiteral("old-namespace.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(file, oldRecordPacket()));
    const zeImageMetaData meta(load(file).image, false);
    QCOMPARE(meta.containedTALQSettings(), 1 | 8);
    std::string scene, version, date;
    QVERIFY(meta.getGeneralInformation(scene, version, date));
    QCOMPARE(scene, std::string("old.scene"));
    QCOMPARE(version, std::string("1.0"));
    QCOMPARE(date, std::string("2024-01-02T03:04:05"));
    using Settings = std::vector<zeRenderSettings::Setting>;
    QVERIFY(meta.getRenderSettings().getSettings(zeRenderSettings::CameraSettings)
            == Settings({{"fov", "45"}}));
}

// The example of docs/render-settings-record.md, taken from the document.
void tst_zeImageMetaData::documentedExampleReadsAsDocumented()
{
    const QByteArray document = ImageFixtures::readFile(
        QDir::cleanPath(QStringLiteral(QTCOLOR_TEST_DATA "/../../docs/render-settings-record.md")));
    const int start = document.indexOf("```xml\n") + 7;
    const int end = document.indexOf("```", start);
    QVERIFY(start > 7 && end > start);
    const QString file = plainFile(QStringLiteral("documented.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(file, document.mid(start, end - start).toStdString()));
    const zeImageMetaData meta(load(file).image, false);
    QCOMPARE(meta.containedTALQSettings(), 65);
    std::string scene, version, date;
    QVERIFY(meta.getGeneralInformation(scene, version, date));
    QCOMPARE(scene, std::string("scenes/Showroom.scene"));
    QCOMPARE(version, std::string("2024.3"));
    QCOMPARE(date, std::string("2024-05-17T14:30:00"));
    using Settings = std::vector<zeRenderSettings::Setting>;
    QVERIFY(meta.getRenderSettings().getSettings(zeRenderSettings::CameraSettings)
            == Settings({{"Field of view", "45"}}));
}

void tst_zeImageMetaData::restampingAnOldRecordReplacesIt()
{
    const QString file = plainFile(QStringLiteral("old-restamped.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(file, oldRecordPacket()));
    QZE_CHECK(stamp(file, sampleRecord()));
    const Blocks blocks = load(file);
    QVERIFY(blocks.record.find(OldNamespace) == std::string::npos);
    QVERIFY(blocks.record.find(OurNamespace) != std::string::npos);
    QVERIFY(zeImageMetaData(blocks.image, false).getRenderSettings() == sampleRecord());
}

// exiv2 lets each packet rebind prefixes for the whole process; a file that
// binds "qtcRender" to another namespace must neither pass for a record nor
// make later stamps write into that namespace.
void tst_zeImageMetaData::ourPrefixBoundElsewhereIsNoRecordAndDoesNotStick()
{
    const std::string packet = ImageFixtures::xmpPacket(
        "xmlns:qtcRender=\"http://elsewhere.example/ns/\" qtcRender:SceneFile=\"fake.scene\"",
        "<qtcRender:Camera><rdf:Seq/></qtcRender:Camera>");
    const QString impostor = plainFile(QStringLiteral("impostor.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(impostor, packet));
    const zeImageMetaData impostorMeta(load(impostor).image, true);
    QCOMPARE(impostorMeta.containedTALQSettings(), 0);
    std::string scene, version, date;
    QVERIFY(!impostorMeta.getGeneralInformation(scene, version, date));

    const QString genuine = plainFile(QStringLiteral("genuine.png"), "png");
    QZE_CHECK(stamp(genuine, sampleRecord()));
    const Blocks blocks = load(genuine);
    QVERIFY(blocks.record.find("xmlns:qtcRender=\"" + OurNamespace + '"') != std::string::npos);
    QCOMPARE(zeImageMetaData(blocks.image, false).containedTALQSettings(), 1 | 8 | 64);

    std::string detail;
    QCOMPARE(
        zeImageMetaWriter::stamp(impostor.toUtf8().constData(), sampleRecord(), false, &detail),
        zeImageMetaWriter::CannotEncode);
    QVERIFY2(QByteArray::fromStdString(detail).contains("qtcRender"), detail.c_str());
}

void tst_zeImageMetaData::exifInsideXmpIsReadOnlyWhenAskedFor()
{
    const QString file = plainFile(QStringLiteral("xmpexif.png"), "png");
    QVERIFY(ImageFixtures::addTags(file, {{"Xmp.exif.FocalLengthIn35mmFilm", "35"},
                                          {"Xmp.exif.ExposureTime", "1/250"},
                                          {"Xmp.exif.SubjectDistance", "4294967295/1"},
                                          {"Xmp.exif.FNumber", "4/1"},
                                          {"Xmp.exif.ExposureBiasValue", "-1/3"}}));
    const Blocks blocks = load(file);
    QVERIFY(blocks.read);
    QCOMPARE(blocks.exif, std::string());
    QVERIFY(!blocks.record.empty());

    const zeImageMetaData withExif(blocks.image, true);
    QVERIFY(withExif.containedEXIFDataWithinXMP());
    std::string text;
    QVERIFY(withExif.getEXIFData(text));
    QCOMPARE(QByteArray::fromStdString(text), QByteArray("@EXPOSURE_TIME 1/250\n"
                                                         "@F_NUMBER 4\n"
                                                         "@EXPOSURE_BIAS -0.33\n"
                                                         "@SUBJECT_DISTANCEInfinity\n"
                                                         "@FOCAL_LENGTH_IN _35MM_FILM 35\n"));
    QCOMPARE(withExif.containedTALQSettings(), 0);

    const zeImageMetaData withoutExif(blocks.image, false);
    QVERIFY(!withoutExif.containedEXIFDataWithinXMP());
    text = "stale";
    QVERIFY(!withoutExif.getEXIFData(text));
    QCOMPARE(text, std::string());
}

void tst_zeImageMetaData::exifInsideXmpAcceptsDecimals()
{
    const QString file = plainFile(QStringLiteral("decimals.png"), "png");
    QVERIFY(ImageFixtures::addTags(file, {{"Xmp.exif.FNumber", "5.6"},
                                          {"Xmp.exif.FocalLength", "24.0"},
                                          {"Xmp.exif.BrightnessValue", "-1.257"}}));
    std::string text;
    zeImageMetaData(load(file).image, true).getEXIFData(text);
    QCOMPARE(QByteArray::fromStdString(text),
             QByteArray("@F_NUMBER 5.6\n@BRIGHTNESS -1.26\n@FOCAL_LENGTH 24\n"));
}

void tst_zeImageMetaData::stampCopiesTheFilesExifIntoXmp()
{
    const QString file = taggedJpeg(QStringLiteral("copy.jpg"),
                                    {{"Exif.Photo.ExposureTime", "1/60"},
                                     {"Exif.Photo.FNumber", "28/10"},
                                     {"Exif.Image.Make", "Maker"}});
    QZE_CHECK(stamp(file, sampleRecord(), true));
    const std::vector<std::string> keys = ImageFixtures::metadataKeys(file);
    QVERIFY(std::count(keys.begin(), keys.end(), "Xmp.exif.ExposureTime") == 1);
    QVERIFY(std::count(keys.begin(), keys.end(), "Xmp.exif.FNumber") == 1);

    const Blocks blocks = load(file);
    const zeImageMetaData meta(blocks.image, true);
    QVERIFY(meta.containedEXIFDataWithinXMP());
    std::string text;
    meta.getEXIFData(text);
    QCOMPARE(QByteArray::fromStdString(text), QByteArray("@EXPOSURE_TIME 1/60\n@F_NUMBER 2.8\n"));
    QCOMPARE(meta.containedTALQSettings(), 1 | 8 | 64);
}

void tst_zeImageMetaData::stampKeepsTheFilesExif()
{
    const QString file = taggedJpeg(QStringLiteral("keep.jpg"), {{"Exif.Photo.FNumber", "56/10"},
                                                                 {"Exif.Image.Artist", "Someone"}});
    QZE_CHECK(stamp(file, sampleRecord()));
    const Blocks blocks = load(file);
    QCOMPARE(QByteArray::fromStdString(blocks.exif), QByteArray("@F_NUMBER 5.6\n"));
    QCOMPARE(QByteArray::fromStdString(blocks.baseline),
             QByteArray::fromStdString(JpegDecoderLines + "@ARTIST Someone\n"));
    QVERIFY(!zeImageMetaData(blocks.image, true).containedEXIFDataWithinXMP());
}

void tst_zeImageMetaData::attachmentThatIsNoXmpHoldsNothing_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("not XML") << QByteArray("@EXPOSURE_TIME 1/100\n<<<");
    const std::string recordPacket =
        ImageFixtures::xmpPacket("xmlns:qtcRender=\"" + OurNamespace + "\" qtcRender:SceneFile=\"cut.scene\"", "");
    QTest::newRow("cut XMP")
        << QByteArray::fromStdString(recordPacket.substr(0, recordPacket.size() - 20));
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe<\x01", 5);
}

void tst_zeImageMetaData::attachmentThatIsNoXmpHoldsNothing()
{
    QFETCH(QByteArray, text);
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), text.toStdString());
    const zeImageMetaData meta(image, true);
    QCOMPARE(meta.containedTALQSettings(), 0);
    std::string scene, version, date, exif;
    QVERIFY(!meta.getGeneralInformation(scene, version, date));
    QVERIFY(!meta.containedEXIFDataWithinXMP());
    QVERIFY(!meta.getEXIFData(exif));
}

void tst_zeImageMetaData::nullImageHoldsNothing()
{
    const zeImageMetaData meta(osg::ImagePtr(), true);
    QCOMPARE(meta.containedTALQSettings(), 0);
    QVERIFY(!meta.containedEXIFDataWithinXMP());
    QVERIFY(meta.getRenderSettings().isEmpty());
}

void tst_zeImageMetaData::stampFailuresLeaveTheFileAlone_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("format"); // empty: the content column is written as it is
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<bool>("exifInXMP");
    QTest::addColumn<zeImageMetaWriter::Result>("result");

    QTest::newRow("missing") << QStringLiteral("missing.png") << QByteArray() << QByteArray()
                             << false << zeImageMetaWriter::CannotReadFile;
    QTest::newRow("text") << QStringLiteral("text.png") << QByteArray()
                          << QByteArray("just some words\n") << false
                          << zeImageMetaWriter::NotAnImage;
    QTest::newRow("empty") << QStringLiteral("empty.jpg") << QByteArray() << QByteArray("") << false
                           << zeImageMetaWriter::NotAnImage;
    QTest::newRow("BMP carries no XMP") << QStringLiteral("plain.bmp") << QByteArray("bmp")
                                        << QByteArray() << false
                                        << zeImageMetaWriter::UnsupportedFormat;
    QTest::newRow("no EXIF to copy") << QStringLiteral("noexif.png") << QByteArray("png")
                                     << QByteArray() << true << zeImageMetaWriter::NoEXIFToCopy;
}

void tst_zeImageMetaData::stampFailuresLeaveTheFileAlone()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, format);
    QFETCH(QByteArray, content);
    QFETCH(bool, exifInXMP);
    QFETCH(zeImageMetaWriter::Result, result);
    const QString file = path(name);
    if (!format.isEmpty())
        QVERIFY(ImageFixtures::writePlain(file, format));
    else if (!content.isNull())
        QVERIFY(ImageFixtures::writeFile(file, content));
    const QByteArray before = ImageFixtures::readFile(file);

    std::string detail;
    QCOMPARE(
        zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), exifInXMP, &detail),
        result);
    QVERIFY(!detail.empty());
    QCOMPARE(ImageFixtures::readFile(file), before);
    QCOMPARE(QFileInfo::exists(file), !content.isNull() || !format.isEmpty());
}

// A foreign schema whose structure fields are in our namespace under another
// prefix: exiv2 reads it but cannot write it back, and would drop the whole
// packet while saving.
void tst_zeImageMetaData::stampRefusesXmpExiv2CannotEncode()
{
    const std::string packet = ImageFixtures::xmpPacket(
        "xmlns:other=\"http://other.example/ns/\" xmlns:rs=\"" + OurNamespace + '"',
        "<other:List><rdf:Seq><rdf:li rdf:parseType=\"Resource\"><rs:Key>k</rs:Key></rdf:li>"
        "</rdf:Seq></other:List>");
    const QString file = plainFile(QStringLiteral("unencodable.jpg"), "jpeg");
    QVERIFY(ImageFixtures::setXmpPacket(file, packet));
    const QByteArray before = ImageFixtures::readFile(file);
    std::string detail;
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false, &detail),
             zeImageMetaWriter::CannotEncode);
    QVERIFY(!detail.empty());
    QCOMPARE(ImageFixtures::readFile(file), before);
}

// Structures nested a thousand deep are well-formed XML, but exiv2's parser
// gives up on them; exiv2 would then write the record in place of the
// packet.
void tst_zeImageMetaData::stampRefusesXmpExiv2CannotParse()
{
    const std::string packet = ImageFixtures::nestedXmpPacket(1000);
    QVERIFY(isWellFormedXml(packet));
    Exiv2::XmpData parsed;
    QVERIFY(Exiv2::XmpParser::decode(parsed, packet) != 0);
    const QString file = path(QStringLiteral("nested.jpg"));
    const QByteArray jpeg = ImageFixtures::readFile(plainFile(QStringLiteral("nested.jpg"), "jpeg"));
    QVERIFY(ImageFixtures::writeFile(
        file, ImageFixtures::jpegWithXmpSegment(jpeg, QByteArray::fromStdString(packet))));
    const QByteArray before = ImageFixtures::readFile(file);

    std::string detail;
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false, &detail),
             zeImageMetaWriter::UnreadableXMP);
    QVERIFY(!detail.empty());
    QCOMPARE(ImageFixtures::readFile(file), before);
}

void tst_zeImageMetaData::stampOnAFullDiskLeavesTheOriginal_data()
{
    QTest::addColumn<int>("side");
    QTest::addColumn<qint64>("limit");
    // About 12 KiB: the stamped copy waits in the write buffer, and only the
    // final flush meets the limit.
    QTest::newRow("small image") << 64 << qint64(4096);
    // About 750 KiB: the write itself meets the limit.
    QTest::newRow("large image") << 500 << qint64(65536);
}

void tst_zeImageMetaData::stampOnAFullDiskLeavesTheOriginal()
{
    QFETCH(int, side);
    QFETCH(qint64, limit);
    QTemporaryDir disk;
    const QString file = disk.filePath(QStringLiteral("full.png"));
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(side, side, 7), file));
    const QByteArray before = ImageFixtures::readFile(file);
    QVERIFY(before.size() > limit);

    const std::string fileTooLarge = std::strerror(EFBIG);
    const ChildResult child = runWithFileSizeLimit(limit, [&] {
        std::string detail;
        const zeImageMetaWriter::Result result =
            zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false, &detail);
        return result == zeImageMetaWriter::CannotWriteFile && detail == fileTooLarge ? 0 : 1;
    });
    QVERIFY(child.exited);
    QCOMPARE(child.exitCode, 0);
    QCOMPARE(ImageFixtures::readFile(file), before);
    QCOMPARE(filesIn(disk.path()), QStringList{QStringLiteral("full.png")});
}

// A small PNG carrying 16 MiB in a private chunk, which the stamp copies
// along: the kill lands while the copy is being written.
void tst_zeImageMetaData::stampKilledMidWriteLeavesTheOriginal()
{
    QTemporaryDir disk;
    const QString file = disk.filePath(QStringLiteral("large.png"));
    const QByteArray png = ImageFixtures::blackGreyPng(4, 4);
    const QByteArray end = ImageFixtures::pngChunk("IEND", QByteArray());
    const QByteArray bulk = ImageFixtures::pngChunk("qtCo", QByteArray(16 << 20, 'x'));
    QVERIFY(png.endsWith(end));
    QVERIFY(ImageFixtures::writeFile(file, png.left(png.size() - end.size()) + bulk + end));
    const QByteArray before = ImageFixtures::readFile(file);

    ChildWriteWatch copyBeingWritten(disk.path(), file);
    const ChildResult child = killChildDuringWrite(
        [&] { zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false); },
        copyBeingWritten);
    QVERIFY2(!child.exited, "the stamp finished before it could be killed");
    QCOMPARE(child.signal, SIGKILL);
    QCOMPARE(ImageFixtures::readFile(file), before);
}

void tst_zeImageMetaData::stampNamesWhyAFileCannotBeRead_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QByteArray>("reason");
    QTest::newRow("missing") << path(QStringLiteral("nowhere.png")) << QByteArray("no such file");
    QTest::newRow("directory") << _dir.path() << QByteArray("is a directory");
    QTest::newRow("device") << QStringLiteral("/dev/null")
                            << QByteArray("not a regular file (a device, a pipe or a socket)");
}

void tst_zeImageMetaData::stampNamesWhyAFileCannotBeRead()
{
    QFETCH(QString, file);
    QFETCH(QByteArray, reason);
    std::string detail;
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false, &detail),
             zeImageMetaWriter::CannotReadFile);
    QCOMPARE(QByteArray::fromStdString(detail), reason);
}

void tst_zeImageMetaData::stampRefusesFilesOverOneGiB()
{
    const QString file = plainFile(QStringLiteral("huge.png"), "png");
    const qint64 oneGiB = qint64(1) << 30;
    {
        QFile grow(file);
        QVERIFY(grow.resize(oneGiB + 1)); // sparse: the PNG followed by zeros
    }
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false),
             zeImageMetaWriter::FileTooLarge);
    QCOMPARE(QFileInfo(file).size(), oneGiB + 1);
    QFile::remove(file);
}

void tst_zeImageMetaData::stampReportsAFileItCannotReplace()
{
    QTemporaryDir locked;
    const QString file = locked.filePath(QStringLiteral("locked.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    const QFile::Permissions ownerMayWrite = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;
    QVERIFY(QFile::setPermissions(locked.path(), QFile::ReadOwner | QFile::ExeOwner));
    if (QFileInfo(locked.path()).isWritable()) {
        QFile::setPermissions(locked.path(), ownerMayWrite);
        QSKIP("the user may write into read-only directories (root)");
    }
    std::string detail;
    const zeImageMetaWriter::Result result =
        zeImageMetaWriter::stamp(file.toUtf8().constData(), sampleRecord(), false, &detail);
    QFile::setPermissions(locked.path(), ownerMayWrite);
    QCOMPARE(result, zeImageMetaWriter::CannotWriteFile);
    QVERIFY(!detail.empty());
}

QTEST_GUILESS_MAIN(tst_zeImageMetaData)
#include "tst_zeImageMetaData.moc"
