#include "ImageFixtures.h"

#include <osgImage.h>
#include <zeImageMetaData.h>
#include <zeImageMetaWriter.h>
#include <zeRenderSettings.h>

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// Runs the built zeimagemeta program in a scratch directory and checks what
// it prints, the records it writes and its exit status.
class tst_zeimagemeta : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void helpDescribesBothCommandsAndSucceeds();
    void showPrintsTheThreeBlocksUnderTheirNames();
    void showOfAFileWithoutMetadataPrintsEmptyBlocks();
    void stampWritesARecordTheLibraryReads();
    void stampCanCopyTheExifIntoXmp();
    void failuresExitNonZeroWithMessage_data();
    void failuresExitNonZeroWithMessage();

private:
    struct Result
    {
        int exitCode = -1;
        QByteArray out;
        QByteArray err;
    };

    Result runTool(const QStringList& arguments) const;
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
}

tst_zeimagemeta::Result tst_zeimagemeta::runTool(const QStringList& arguments) const
{
    QProcess process;
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

void tst_zeimagemeta::helpDescribesBothCommandsAndSucceeds()
{
    const Result result = runTool({QStringLiteral("--help")});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.out.contains("show FILE"));
    QVERIFY(result.out.contains(
        "stamp FILE --scene NAME --version V --date ISO8601 --groups MASK [--exif-in-xmp]"));
    QVERIFY(result.out.contains("--exif-in-xmp"));
    QVERIFY(result.out.simplified().contains("128 switch material states"));
    QVERIFY(result.err.isEmpty());
}

void tst_zeimagemeta::showPrintsTheThreeBlocksUnderTheirNames()
{
    const QString file = path(QStringLiteral("shown.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Image.Make", "Maker"},
                                          {"Exif.Photo.FNumber", "56/10"}}));
    zeRenderSettings record;
    record.setSceneFile("shown.scene");
    record.addGroups(zeRenderSettings::CameraSettings);
    QCOMPARE(zeImageMetaWriter::stamp(file.toUtf8().constData(), record, false),
             zeImageMetaWriter::Stamped);

    const Result result = runTool({QStringLiteral("show"), QStringLiteral("shown.jpg")});
    QCOMPARE(result.exitCode, 0);
    const QByteArray head = "[BaselineData]\n"
                            "@SAMPLES_PER_PIXEL 3\n"
                            "@BITS_PER_SAMPLE 8\n"
                            "@MAKE Maker\n"
                            "[EXIFData]\n"
                            "@F_NUMBER 5.6\n"
                            "[RenderSettingsXMP]\n";
    QVERIFY2(result.out.startsWith(head), result.out.constData());
    const QByteArray packet = result.out.mid(head.size());
    QVERIFY(packet.contains("http://ns.qtcolor.example/render-settings/1.0/"));
    QVERIFY(packet.contains("shown.scene"));
    QVERIFY(packet.endsWith('\n'));
    QVERIFY(result.err.isEmpty());
}

void tst_zeimagemeta::showOfAFileWithoutMetadataPrintsEmptyBlocks()
{
    const Result result = runTool({QStringLiteral("show"), QStringLiteral("plain.png")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.out, QByteArray("[BaselineData]\n"
                                    "@SAMPLES_PER_PIXEL 3\n"
                                    "@BITS_PER_SAMPLE 8\n"
                                    "[EXIFData]\n"
                                    "[RenderSettingsXMP]\n"));
}

void tst_zeimagemeta::stampWritesARecordTheLibraryReads()
{
    const QString file = path(QStringLiteral("stamped.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    const Result result = runTool({QStringLiteral("stamp"), QStringLiteral("stamped.png"),
                                   QStringLiteral("--scene"),
                                   QString::fromUtf8("Hall \xc3\x9c.scene"),
                                   QStringLiteral("--version"), QStringLiteral("3.1"),
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
                                   QStringLiteral("--version"), QStringLiteral("1"),
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

void tst_zeimagemeta::failuresExitNonZeroWithMessage_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("message");

    const QStringList complete = {QStringLiteral("--scene"), QStringLiteral("s"),
                                  QStringLiteral("--version"), QStringLiteral("1"),
                                  QStringLiteral("--date"), QStringLiteral("2024-01-01T00:00:00"),
                                  QStringLiteral("--groups"), QStringLiteral("1")};
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
                                       << QByteArray("show takes exactly one FILE");
    QTest::newRow("show two files") << QStringList{"show", "plain.png", "plain.bmp"} << 2
                                    << QByteArray("show takes exactly one FILE");
    QTest::newRow("show with stamp option") << QStringList{"show", "plain.png", "--scene", "s"} << 2
                                            << QByteArray("show takes no --scene option");
    QTest::newRow("show missing") << QStringList{"show", "missing.png"} << 1
                                  << QByteArray("cannot read missing.png: no such file");
    QTest::newRow("show not an image") << QStringList{"show", "words.txt"} << 1
                                       << QByteArray("cannot read words.txt");
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
