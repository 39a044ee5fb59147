#include "ChildProcess.h"
#include "ImageFixtures.h"

#include <osgImage.h>
#include <zeImageMetaData.h>
#include <zeImageMetaWriter.h>
#include <zeRenderSettings.h>

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/resource.h>

// Runs the built zeimagemeta program in a scratch directory and checks what
// it prints, the records it writes and its exit status.
class tst_zeimagemeta : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void helpDescribesEveryModeAndSucceeds();
    void versionPrintsTheProgramsVersion();
    void showPrintsTheBlocksAndTheDecodedRecord();
    void showOfAFileWithoutMetadataPrintsEmptyBlocksAndNoRecord();
    void showReadsARecordOfTheOldNamespace();
    void showOfADecompressionBombStaysSmall();
    void showOfAHugeJpegGivesItsSize();
    void showOfAJpegWithoutImageDataGivesItsMetadata();
    void showOfAnUnreadableFileNamesTheReason();
    void showPrintsPluginWarningsOnceBehindTheProgramsName();
    void showOfSeveralFilesHeadsEachReportAndSeparatesThem();
    void showOfSeveralFilesGoesOnPastAnUnreadableOneAndExitsOne();
    void showLoadsNoWidgetLibraryOfThePackage();
    void stampWritesARecordTheLibraryReads();
    void stampCanCopyTheExifIntoXmp();
    void stampOnAFullDiskExitsWithTheSystemsReason();
    void failuresExitNonZeroWithMessage_data();
    void failuresExitNonZeroWithMessage();

private:
    struct Result
    {
        int exitCode = -1;
        QByteArray out;
        QByteArray err;
    };

    Result runTool(const QStringList& arguments,
                   const QProcessEnvironment& environment =
                       QProcessEnvironment::systemEnvironment()) const;
    static QStringList stampOptions();
    QString path(const QString& name) const { return _dir.filePath(name); }
    static zeImageMetaData metaDataOf(const QString& file, bool withEXIF);

    QTemporaryDir _dir;
};

void tst_zeimagemeta::initTestCase()
{
    QVERIFY(_dir.isValid());
    QVERIFY(QFileInfo(QStringLiteral(ZEIMAGEMETA_PATH)).isExecutable());
    QVERIFY(ImageFixtures::writePlain(path(QStringLiteral("plain.png")), "png"));
    QVERIFY(ImageFixtures::writePlain(path(QStringLiteral("plain.bmp")), "bmp"));
    QVERIFY(ImageFixtures::writeFile(path(QStringLiteral("words.txt")), "no image here\n"));
    QVERIFY(QDir(_dir.path()).mkdir(QStringLiteral("folder.png")));
    const QString nested = path(QStringLiteral("nested.jpg"));
    QVERIFY(ImageFixtures::writePlain(nested, "jpeg"));
    QVERIFY(ImageFixtures::writeFile(
        nested, ImageFixtures::jpegWithXmpSegment(
                    ImageFixtures::readFile(nested),
                    QByteArray::fromStdString(ImageFixtures::nestedXmpPacket(1000)))));
}

QStringList tst_zeimagemeta::stampOptions()
{
    return {QStringLiteral("--scene"), QStringLiteral("s"), QStringLiteral("--render-version"),
            QStringLiteral("1"), QStringLiteral("--date"), QStringLiteral("2024-01-01T00:00:00"),
            QStringLiteral("--groups"), QStringLiteral("1")};
}

tst_zeimagemeta::Result tst_zeimagemeta::runTool(const QStringList& arguments,
                                                 const QProcessEnvironment& environment) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(_dir.path());
    process.start(QStringLiteral(ZEIMAGEMETA_PATH), arguments);
    Result result;
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = process.readAllStandardOutput();
    result.err = process.readAllStandardError();
    return result;
}

zeImageMetaData tst_zeimagemeta::metaDataOf(const QString& file, bool withEXIF)
{
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    image->read(file.toUtf8().constData());
    return zeImageMetaData(image, withEXIF);
}

void tst_zeimagemeta::helpDescribesEveryModeAndSucceeds()
{
    const Result result = runTool({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.contains("show FILE..."));
    QVERIFY(result.out.simplified().contains("each report begins with a line \"==> FILE <==\""));
    QVERIFY(result.out.contains(
        "stamp FILE --scene NAME --render-version V --date ISO8601 --groups MASK [--exif-in-xmp]"));
    QVERIFY(result.out.contains("--render-version <V>"));
    QVERIFY(result.out.contains("--version"));
    QVERIFY(result.out.contains("--exif-in-xmp"));
    QVERIFY(result.out.contains("--gui FILE"));
    QVERIFY(result.out.simplified().contains("128 switch material states"));
    QVERIFY(result.err.isEmpty());
}

void tst_zeimagemeta::versionPrintsTheProgramsVersion()
{
    const Result result = runTool({QStringLiteral("--version")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("zeimagemeta " QTCOLOR_VERSION "\n"));
    QVERIFY(result.err.isEmpty());
}

void tst_zeimagemeta::showPrintsTheBlocksAndTheDecodedRecord()
{
    const QString file = path(QStringLiteral("shown.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Image.Make", "Maker"},
                                          {"Exif.Photo.FNumber", "56/10"}}));
    zeRenderSettings record;
    record.setSceneFile("shown.scene");
    record.setApplicationVersion("3.1");
    record.setRenderDate("2024-05-17T14:30:00");
    record.addSetting(zeRenderSettings::CameraSettings, "Field of view", "45");
    record.addSetting(zeRenderSettings::ImageSettings, "Note", "first\nsecond \\ end");
    record.addGroups(zeRenderSettings::RaytracingSettings);
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), record, true),
             zeImageMetaWriter::Stamped);

    const Result result = runTool({QStringLiteral("show"), QStringLiteral("shown.jpg")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("[Image]\n"
                                    "Dimensions: 8 x 6 px\n"
                                    "Depth: 1\n"
                                    "Color channel: yes\n"
                                    "Alpha channel: no\n"
                                    "[BaselineData]\n"
                                    "@SAMPLES_PER_PIXEL 3\n"
                                    "@BITS_PER_SAMPLE 8\n"
                                    "@MAKE Maker\n"
                                    "[EXIFData]\n"
                                    "@F_NUMBER 5.6\n"
                                    "[EXIFDataInXMP]\n"
                                    "@F_NUMBER 5.6\n"
                                    "[RenderSettings]\n"
                                    "Scene: shown.scene\n"
                                    "Version: 3.1\n"
                                    "Date: 2024-05-17T14:30:00\n"
                                    "Groups: Camera Settings, Image Settings, Raytracing Settings\n"
                                    "Camera Settings:\n"
                                    "  Field of view: 45\n"
                                    "Image Settings:\n"
                                    "  Note: first\\nsecond \\\\ end\n"));
    QVERIFY(result.err.isEmpty());
}

void tst_zeimagemeta::showOfAFileWithoutMetadataPrintsEmptyBlocksAndNoRecord()
{
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("plain.png")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("[Image]\n"
                                    "Dimensions: 8 x 6 px\n"
                                    "Depth: 1\n"
                                    "Color channel: yes\n"
                                    "Alpha channel: no\n"
                                    "[BaselineData]\n"
                                    "@SAMPLES_PER_PIXEL 3\n"
                                    "@BITS_PER_SAMPLE 8\n"
                                    "[EXIFData]\n"
                                    "[EXIFDataInXMP]\n"
                                    "[RenderSettings]\n"
                                    "(none)\n"));
}

// Written by exiv2 directly, as the placeholder namespace had it.
void tst_zeimagemeta::showReadsARecordOfTheOldNamespace()
{
    const QString file = path(QStringLiteral("old.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    QVERIFY(ImageFixtures::setXmpPacket(
        file, ImageFixtures::xmpPacket("xmlns:qzeRender=\"http://ns.qtcolor.example/"
                                       "render-settings/1.0/\" qzeRender:SceneFile=\"old.scene\"",
                                       "<qzeRender:Animation><rdf:Seq/></qzeRender:Animation>")));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("old.png")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.endsWith("[RenderSettings]\n"
                                 "Scene: old.scene\n"
                                 "Version: \n"
                                 "Date: \n"
                                 "Groups: Animation Settings\n"),
             result.out.constData());
}

// 30000 x 30000 grey pixels, 900 MB once inflated, from a file of under
// 6 MB; the largest child's peak memory shows whether they were inflated.
void tst_zeimagemeta::showOfADecompressionBombStaysSmall()
{
    QVERIFY(ImageFixtures::writeFile(path(QStringLiteral("bomb.png")),
                                     ImageFixtures::blackGreyPng(30000, 30000)));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("bomb.png")});
    QFile::remove(path(QStringLiteral("bomb.png")));
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.startsWith("[Image]\nDimensions: 30000 x 30000 px\n"));
    rusage children{};
    QCOMPARE(getrusage(RUSAGE_CHILDREN, &children), 0);
    const long peakKiB = children.ru_maxrss;
    QVERIFY2(peakKiB < 300 * 1024, qPrintable(QString::number(peakKiB)));
}

// Its pixels would take over 1 GiB to decode.
void tst_zeimagemeta::showOfAHugeJpegGivesItsSize()
{
    const QString file = path(QStringLiteral("huge.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::writeFile(
        file, ImageFixtures::jpegClaimingSize(ImageFixtures::readFile(file), 17000, 17000)));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("huge.jpg")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY2(result.out.startsWith("[Image]\nDimensions: 17000 x 17000 px\nDepth: 1\n"),
             result.out.constData());
}

void tst_zeimagemeta::showOfAJpegWithoutImageDataGivesItsMetadata()
{
    const QString file = path(QStringLiteral("exif-only.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Image.Model", "Model 7"},
                                          {"Exif.Photo.ExposureTime", "1/250"}}));
    QVERIFY(ImageFixtures::writeFile(
        file, ImageFixtures::jpegWithoutImageData(ImageFixtures::readFile(file))));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("exif-only.jpg")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("[Image]\n"
                                    "Dimensions: unknown\n"
                                    "Depth: 0\n"
                                    "Color channel: unknown\n"
                                    "Alpha channel: unknown\n"
                                    "[BaselineData]\n"
                                    "@MODEL Model 7\n"
                                    "[EXIFData]\n"
                                    "@EXPOSURE_TIME 1/250\n"
                                    "[EXIFDataInXMP]\n"
                                    "[RenderSettings]\n"
                                    "(none)\n"));
}

void tst_zeimagemeta::showOfAnUnreadableFileNamesTheReason()
{
    const QString file = path(QStringLiteral("locked.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    QVERIFY(QFile::setPermissions(file, QFile::WriteOwner));
    if (QFile(file).open(QIODevice::ReadOnly)) {
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
        QSKIP("the user may read files without read permission (root)");
    }
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("locked.png")});
    QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner);
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.err, QByteArray("zeimagemeta: cannot read locked.png: Permission denied\n"));
}

void tst_zeimagemeta::showOfSeveralFilesHeadsEachReportAndSeparatesThem()
{
    const Result png = runTool({QStringLiteral("show"), QStringLiteral("plain.png")});
    const Result bmp = runTool({QStringLiteral("show"), QStringLiteral("plain.bmp")});
    QVERIFY(png.out.startsWith("[Image]\n"));
    QVERIFY(bmp.out.startsWith("[Image]\n"));

    const Result both = runTool(
        {QStringLiteral("show"), QStringLiteral("plain.png"), QStringLiteral("plain.bmp")});
    QCOMPARE(both.exitCode, 0);
    QCOMPARE(both.out, "==> plain.png <==\n" + png.out + "\n==> plain.bmp <==\n" + bmp.out);
    QVERIFY(both.err.isEmpty());
}

void tst_zeimagemeta::showOfSeveralFilesGoesOnPastAnUnreadableOneAndExitsOne()
{
    const Result png = runTool({QStringLiteral("show"), QStringLiteral("plain.png")});
    const Result bmp = runTool({QStringLiteral("show"), QStringLiteral("plain.bmp")});

    const Result result = runTool({QStringLiteral("show"), QStringLiteral("missing.png"),
                                   QStringLiteral("plain.png"), QStringLiteral("words.txt"),
                                   QStringLiteral("plain.bmp")});
    QCOMPARE(result.exitCode, 1);
    QCOMPARE(result.out, "==> plain.png <==\n" + png.out + "\n==> plain.bmp <==\n" + bmp.out);
    QCOMPARE(result.err, QByteArray("zeimagemeta: cannot read missing.png: no such file\n"
                                    "zeimagemeta: cannot read words.txt: not an image format "
                                    "this program reads\n"));
}

// libpng warns about a colour profile chunk too short to hold a profile;
// it reads the header all the same.
// The window mode is a program of its own, so that the commands start
// without loading the package's widget library and what it pulls in (with
// Qt 5, the D-Bus module and its libraries).
void tst_zeimagemeta::showLoadsNoWidgetLibraryOfThePackage()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LD_DEBUG"), QStringLiteral("files"));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("plain.png")}, environment);
    QCOMPARE(result.exitCode, 0);
    const QString loaded = QString::fromLocal8Bit(result.err);
    QVERIFY2(loaded.contains(QRegularExpression(QStringLiteral("file=libQtColor6?Host\\.so"))),
             qPrintable(loaded.left(2000)));
    QVERIFY2(!loaded.contains(QRegularExpression(QStringLiteral("file=libQtColor6?\\.so"))),
             qPrintable(loaded.left(2000)));
}

void tst_zeimagemeta::showPrintsPluginWarningsOnceBehindTheProgramsName()
{
    const QByteArray png = ImageFixtures::blackGreyPng(4, 4);
    const int afterHeader = 8 + 12 + 13; // signature, IHDR chunk
    const QByteArray profile = ImageFixtures::pngChunk("iCCP", QByteArray("bad\0\0", 5));
    QVERIFY(ImageFixtures::writeFile(path(QStringLiteral("profile.png")),
                                     png.left(afterHeader) + profile + png.mid(afterHeader)));
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("profile.png")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.startsWith("[Image]\nDimensions: 4 x 4 px\n"));
    QVERIFY2(result.err.contains("iCCP"), result.err.constData());
    QStringList lines = QString::fromUtf8(result.err).split(QLatin1Char('\n'));
    QCOMPARE(lines.takeLast(), QString());
    for (const QString& line : lines)
        QVERIFY2(line.startsWith(QLatin1String("zeimagemeta: warning: ")), qPrintable(line));
    QCOMPARE(lines.removeDuplicates(), 0);
}

void tst_zeimagemeta::stampWritesARecordTheLibraryReads()
{
    const QString file = path(QStringLiteral("stamped.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    const Result result = runTool({QStringLiteral("stamp"), QStringLiteral("stamped.png"),
                                   QStringLiteral("--scene"),
                                   QString::fromUtf8("Hall \xc3\x9c.scene"),
                                   QStringLiteral("--render-version"), QStringLiteral("3.1"),
                                   QStringLiteral("--date"), QStringLiteral("2024-05-17T14:30:00"),
                                   QStringLiteral("--groups"), QStringLiteral("9")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.isEmpty());
    QVERIFY(result.err.isEmpty());

    const zeImageMetaData meta = metaDataOf(file, true);
    QCOMPARE(meta.containedTALQSettings(), 9);
    std::string scene, version, date;
    QVERIFY(meta.getGeneralInformation(scene, version, date));
    QCOMPARE(scene, std::string("Hall \xc3\x9c.scene"));
    QCOMPARE(version, std::string("3.1"));
    QCOMPARE(date, std::string("2024-05-17T14:30:00"));
    QVERIFY(!meta.containedEXIFDataWithinXMP());
}

void tst_zeimagemeta::stampCanCopyTheExifIntoXmp()
{
    const QString file = path(QStringLiteral("exif.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Photo.ExposureTime", "1/60"}}));
    const Result result = runTool({QStringLiteral("stamp"), QStringLiteral("exif.jpg"),
                                   QStringLiteral("--scene"), QStringLiteral("s"),
                                   QStringLiteral("--render-version"), QStringLiteral("1"),
                                   QStringLiteral("--date"), QStringLiteral("2024-01-01"),
                                   QStringLiteral("--groups"), QStringLiteral("0"),
                                   QStringLiteral("--exif-in-xmp")});
    QCOMPARE(result.exitCode, 0);
    const zeImageMetaData meta = metaDataOf(file, true);
    std::string text;
    QVERIFY(meta.getEXIFData(text));
    QCOMPARE(text, std::string("@EXPOSURE_TIME 1/60\n"));
    QCOMPARE(meta.containedTALQSettings(), 0);
}

// About 12 KiB of noise: the stamped copy would sit in a write buffer
// until the final flush, which is where a full disk refuses it.
void tst_zeimagemeta::stampOnAFullDiskExitsWithTheSystemsReason()
{
    const QString file = path(QStringLiteral("full.png"));
    QVERIFY(ImageFixtures::write(ImageFixtures::noise(64, 64, 11), file));
    const QByteArray before = ImageFixtures::readFile(file);
    const QByteArray errors = QFile::encodeName(path(QStringLiteral("full-disk-errors.txt")));
    QList<QByteArray> arguments = {"zeimagemeta", "stamp", QFile::encodeName(file)};
    for (const QString& option : stampOptions())
        arguments << option.toUtf8();
    std::vector<char*> argv;
    for (QByteArray& argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);

    const ChildResult child = runWithFileSizeLimit(4096, [&] {
        const int err = ::open(errors.constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        if (err < 0 || dup2(err, STDERR_FILENO) < 0)
            return 126;
        execv(ZEIMAGEMETA_PATH, argv.data());
        return 127;
    });
    QVERIFY(child.exited);
    QCOMPARE(child.exitCode, 1);
    const QByteArray expected = QByteArray("zeimagemeta: cannot save ") + QFile::encodeName(file)
        + ": " + QByteArray(std::strerror(EFBIG)) + "; the file is left as it was\n";
    QCOMPARE(ImageFixtures::readFile(QFile::decodeName(errors)), expected);
    QCOMPARE(ImageFixtures::readFile(file), before);
}

void tst_zeimagemeta::failuresExitNonZeroWithMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");

    const QStringList complete = stampOptions();
    const auto stamp = [&](const QString& file, const QStringList& extra = {}) {
        return QStringList{QStringLiteral("stamp"), file} + complete + extra;
    };
    const auto replaced = [&](const QString& option, const QString& value) {
        QStringList arguments = stamp(QStringLiteral("plain.png"));
        arguments[arguments.indexOf(option) + 1] = value;
        return arguments;
    };
    const auto without = [&](const QString& option) {
        QStringList arguments = stamp(QStringLiteral("plain.png"));
        arguments.removeAt(arguments.indexOf(option) + 1);
        arguments.removeOne(option);
        return arguments;
    };

    QTest::newRow("no command") << QStringList() << 2 << QByteArray("no command given");
    QTest::newRow("unknown command") << QStringList{"frobnicate", "plain.png"} << 2
                                     << QByteArray("unknown command 'frobnicate'");
    QTest::newRow("unknown option") << QStringList{"show", "plain.png", "--bogus"} << 2
                                    << QByteArray("bogus");
    QTest::newRow("show without file") << QStringList{"show"} << 2
                                       << QByteArray("show needs at least one FILE");
    QTest::newRow("stamp two files") << QStringList{"stamp", "plain.png", "plain.bmp"} + stampOptions()
                                     << 2 << QByteArray("stamp takes exactly one FILE");
    QTest::newRow("show with stamp option") << QStringList{"show", "plain.png", "--scene", "s"} << 2
                                            << QByteArray("show takes no --scene option");
    QTest::newRow("show missing") << QStringList{"show", "missing.png"} << 1
                                  << QByteArray("cannot read missing.png: no such file");
    QTest::newRow("show not an image")
        << QStringList{"show", "words.txt"} << 1
        << QByteArray("cannot read words.txt: not an image format this program reads");
    QTest::newRow("show directory") << QStringList{"show", "folder.png"} << 1
                                    << QByteArray("cannot read folder.png: is a directory\n");
    QTest::newRow("show device")
        << QStringList{"show", "/dev/null"} << 1
        << QByteArray("cannot read /dev/null: not a regular file (a device, a pipe or a socket)\n");
    QTest::newRow("stamp directory") << stamp(QStringLiteral("folder.png")) << 1
                                     << QByteArray("cannot read folder.png: is a directory\n");
    QTest::newRow("stamp unparsable XMP")
        << stamp(QStringLiteral("nested.jpg")) << 1
        << QByteArray("cannot write a record into nested.jpg: exiv2 cannot parse the XMP "
                      "metadata already in it");
    QTest::newRow("stamp without options") << QStringList{"stamp", "plain.png"} << 2
                                           << QByteArray("stamp needs the --scene option");
    QTest::newRow("stamp without groups") << without(QStringLiteral("--groups")) << 2
                                          << QByteArray("stamp needs the --groups option");
    QTest::newRow("stamp without date") << without(QStringLiteral("--date")) << 2
                                        << QByteArray("stamp needs the --date option");
    QTest::newRow("date not ISO 8601") << replaced(QStringLiteral("--date"), "yesterday") << 2
                                       << QByteArray("invalid date 'yesterday'");
    QTest::newRow("mask too big") << replaced(QStringLiteral("--groups"), "256") << 2
                                  << QByteArray("invalid group mask '256'");
    QTest::newRow("mask not a number") << replaced(QStringLiteral("--groups"), "x1") << 2
                                       << QByteArray("invalid group mask 'x1'");
    QTest::newRow("stamp missing") << stamp(QStringLiteral("missing.png")) << 1
                                   << QByteArray("cannot read missing.png: no such file");
    QTest::newRow("stamp not an image")
        << stamp(QStringLiteral("words.txt")) << 1
        << QByteArray("words.txt is not an image whose metadata can be read");
    QTest::newRow("stamp BMP") << stamp(QStringLiteral("plain.bmp")) << 1
                               << QByteArray("its format carries no XMP metadata");
    QTest::newRow("stamp EXIF that is not there")
        << stamp(QStringLiteral("plain.png"), {QStringLiteral("--exif-in-xmp")}) << 1
        << QByteArray("plain.png has no EXIF data to copy into XMP");
}

void tst_zeimagemeta::failuresExitNonZeroWithMessage()
{
    QFETCH(QStringList, arguments);
    QFETCH(int, exitCode);
    QFETCH(QByteArray, message);
    const QByteArray before = ImageFixtures::readFile(path(QStringLiteral("plain.png")));
    const Result result = runTool(arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(result.err.startsWith("zeimagemeta: "), result.err.constData());
    QVERIFY2(result.err.contains(message), result.err.constData());
    QCOMPARE(ImageFixtures::readFile(path(QStringLiteral("plain.png"))), before);
}

QTEST_GUILESS_MAIN(tst_zeimagemeta)
#include "tst_zeimagemeta.moc"
