#include "ImageFixtures.h"

#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

// zeimagemeta's window mode, run as a program on the offscreen platform; the
// dialog prints what it shows and closes at once when the tests ask.
class tst_ImageMetaGui : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void guiShowsTheInformationDialogForTheFile_data();
    void guiShowsTheInformationDialogForTheFile();
    void guiOfAnUnreadableFileFailsWithTheWarning();
    void guiUsageErrorsExitWithTwo_data();
    void guiUsageErrorsExitWithTwo();
    void guiWithoutADisplaySaysSoAndExitsWithTwo();
    void guiWithoutItsProgramSaysWhyAndExitsWithTwo();

private:
    struct Result
    {
        int exitCode = -1;
        QString out;
        QString err;
    };

    Result runTool(const QStringList& arguments, QProcessEnvironment environment = offscreen(),
                   const QString& program = QStringLiteral(ZEIMAGEMETA_PATH)) const;
    static QProcessEnvironment offscreen();
    QString path(const QString& name) const { return _dir.filePath(name); }

    QTemporaryDir _dir;
};

void tst_ImageMetaGui::initTestCase()
{
    QVERIFY(_dir.isValid());
    QVERIFY(QFileInfo(QStringLiteral(ZEIMAGEMETA_PATH)).isExecutable());
    const QString camera = path(QStringLiteral("camera.jpg"));
    QVERIFY(ImageFixtures::writePlain(camera, "jpeg"));
    QVERIFY(ImageFixtures::addTags(camera, {{"Exif.Image.Make", "Maker"},
                                            {"Exif.Photo.FNumber", "56/10"}}));
    QVERIFY(ImageFixtures::writeFile(path(QStringLiteral("words.txt")), "no image here\n"));
}

QProcessEnvironment tst_ImageMetaGui::offscreen()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

tst_ImageMetaGui::Result tst_ImageMetaGui::runTool(const QStringList& arguments,
                                                   QProcessEnvironment environment,
                                                   const QString& program) const
{
    environment.insert(QStringLiteral("ZEIMAGEMETA_CLOSE_AT_ONCE"), QStringLiteral("1"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(_dir.path());
    process.start(program, arguments);
    Result result;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return result;
    result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.err = QString::fromUtf8(process.readAllStandardError());
    return result;
}

void tst_ImageMetaGui::guiShowsTheInformationDialogForTheFile_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("option then file") << QStringList{"--gui", "camera.jpg"};
    QTest::newRow("option with equals") << QStringList{"--gui=camera.jpg"};
}

void tst_ImageMetaGui::guiShowsTheInformationDialogForTheFile()
{
    QFETCH(QStringList, arguments);

    const Result result = runTool(arguments);

    QVERIFY2(result.exitCode == 0, qPrintable(result.err));
    QCOMPARE(result.out, QStringLiteral("Image Information\n"
                                        "camera.jpg\n"
                                        "Dimension:\t\t8 x 6 px\n"
                                        "Depth:\t\t1\n"
                                        "Color channel:\t\tYes\n"
                                        "Alpha channel:\t\tNo\n"
                                        "Samples per pixel:\t 3\n"
                                        "Bits per sample:\t\t 8\n"
                                        "\n"
                                        "Camera maker:\t\t Maker\n"
                                        "\n"
                                        "F number:\t\tF 5.6\n"));
}

void tst_ImageMetaGui::guiOfAnUnreadableFileFailsWithTheWarning()
{
    const Result result = runTool({QStringLiteral("--gui"), QStringLiteral("words.txt")});

    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(result.err.contains(QStringLiteral("Couldn't read image words.txt.")),
             qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("zeimagemeta: cannot read words.txt")),
             qPrintable(result.err));
}

void tst_ImageMetaGui::guiUsageErrorsExitWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("message");
    QTest::newRow("no file") << QStringList{"--gui"} << QStringLiteral("Missing value after '--gui'");
    QTest::newRow("a second file") << QStringList{"--gui", "camera.jpg", "words.txt"}
                                   << QStringLiteral("--gui takes exactly one FILE");
    QTest::newRow("with a command") << QStringList{"show", "--gui", "camera.jpg"}
                                    << QStringLiteral("--gui takes exactly one FILE");
    QTest::newRow("unknown option") << QStringList{"--gui", "camera.jpg", "--bogus"}
                                    << QStringLiteral("Unknown option 'bogus'");
}

void tst_ImageMetaGui::guiUsageErrorsExitWithTwo()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, message);

    const Result result = runTool(arguments);

    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(result.err.contains(QStringLiteral("zeimagemeta: ") + message), qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("Run 'zeimagemeta --help' for usage.")),
             qPrintable(result.err));
}

// Without a display the toolkit would abort with the advice to reinstall.
void tst_ImageMetaGui::guiWithoutADisplaySaysSoAndExitsWithTwo()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));

    const Result result = runTool({QStringLiteral("--gui"), QStringLiteral("camera.jpg")}, environment);

    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.out.isEmpty());
    QVERIFY2(result.err.contains(QStringLiteral("zeimagemeta: no display to show the dialog on")),
             qPrintable(result.err));
    QVERIFY2(result.err.contains(QStringLiteral("'zeimagemeta show FILE'")), qPrintable(result.err));
    QVERIFY2(!result.err.contains(QStringLiteral("Reinstalling")), qPrintable(result.err));
}

// zeimagemeta alone in the bin folder of an installation that lacks the
// window-mode program names the program it could not start.
void tst_ImageMetaGui::guiWithoutItsProgramSaysWhyAndExitsWithTwo()
{
    QTemporaryDir prefix;
    QVERIFY(prefix.isValid());
    const QFileInfo built(QStringLiteral(ZEIMAGEMETA_PATH));
    const QString bin = prefix.filePath(QStringLiteral("bin"));
    QVERIFY(QDir().mkpath(bin));
    const QString program = QDir(bin).filePath(built.fileName());
    QVERIFY(QFile::copy(built.filePath(), program));
    const QString libraries = prefix.filePath(QStringLiteral(QTCOLOR_INSTALL_LIBDIR));
    QVERIFY(QDir().mkpath(QFileInfo(libraries).path()));
    QVERIFY(QFile::link(QStringLiteral(QTCOLOR_LIBRARY_DIR), libraries));
    const QString missing = QDir::cleanPath(QDir(QFileInfo(bin).canonicalFilePath())
                                                .filePath(built.dir().relativeFilePath(
                                                    QStringLiteral(ZEIMAGEMETA_GUI_PATH))));

    const Result result =
        runTool({QStringLiteral("--gui"), QStringLiteral("camera.jpg")}, offscreen(), program);

    QCOMPARE(result.exitCode, 2);
    QVERIFY(result.out.isEmpty());
    QCOMPARE(result.err, QStringLiteral("zeimagemeta: cannot start the window mode (%1): "
                                        "No such file or directory\n")
                             .arg(missing));
}

QTEST_GUILESS_MAIN(tst_ImageMetaGui)
#include "tst_ImageMetaGui.moc"
