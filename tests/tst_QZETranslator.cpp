#include "QZETranslator.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QTranslator>
#include <QtTest>

#ifndef QTCOLOR_BUILD_TRANSLATIONS
#error "QTCOLOR_BUILD_TRANSLATIONS must name the folder the build puts the .qm files in"
#endif

namespace {

// Texts of the library and of the host kit with their German translations.
const char* const SliderContext = "QZEColorSlider";
const char* const SpectralText = "Disabled, using spectral data.";
const QString SpectralTextInGerman = QStringLiteral("Deaktiviert, Spektraldaten werden verwendet.");
const char* const FileContext = "zeFile";
const char* const CannotReadText = "Cannot Read File";
const QString CannotReadTextInGerman = QStringLiteral("Datei kann nicht gelesen werden");

const QString BuildTranslations = QStringLiteral(QTCOLOR_BUILD_TRANSLATIONS);

// The installation keeps the catalogues here, seen from its bin folder.
// ../share/QtColor/translations (QtColor6 for the Qt 6 build).
const QString InstalledFromPrograms = QStringLiteral(QTCOLOR_TRANSLATIONS_FROM_PROGRAMS);

QString canonical(const QString& path)
{
    return QFileInfo(path).canonicalFilePath();
}

bool copyFile(const QString& from, const QString& toFolder)
{
    return QDir().mkpath(toFolder)
           && QFile::copy(from, QDir(toFolder).filePath(QFileInfo(from).fileName()));
}

// The environment of a user whose locale settings are only the given ones.
QProcessEnvironment localeEnvironment(const QStringList& settings)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"})
        environment.remove(QString::fromLatin1(name));
    for (const QString& setting : settings)
        environment.insert(setting.section(QLatin1Char('='), 0, 0), setting.section(QLatin1Char('='), 1));
    return environment;
}

struct Output
{
    int exitCode = -1;
    QString out;
    QString err;
};

Output runProgram(const QString& program, const QStringList& arguments,
                  const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Output output;
    if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit)
        return output;
    output.exitCode = process.exitCode();
    output.out = QString::fromUtf8(process.readAllStandardOutput());
    output.err = QString::fromUtf8(process.readAllStandardError());
    return output;
}

} // namespace

class tst_QZETranslator : public QObject
{
    Q_OBJECT

private slots:
    void cleanup();

    void libraryCatalogueTranslatesLibraryAndHostTexts_data();
    void libraryCatalogueTranslatesLibraryAndHostTexts();
    void languageWithoutCatalogueInstallsNothing_data();
    void languageWithoutCatalogueInstallsNothing();
    void catalogueIsLookedForOnlyInTheGivenFolders();
    void firstFolderIsTheOneBesideTheProgram();

    void programsSpeakTheSystemLanguage_data();
    void programsSpeakTheSystemLanguage();
    void programsStayEnglishWithoutACatalogue_data();
    void programsStayEnglishWithoutACatalogue();
    void installedProgramFindsTheCataloguesBesideIt();

private:
    QTranslator* keep(QTranslator* translator);

    QList<QTranslator*> _installed;
};

QTranslator* tst_QZETranslator::keep(QTranslator* translator)
{
    if (translator)
        _installed.append(translator);
    return translator;
}

void tst_QZETranslator::cleanup()
{
    for (QTranslator* translator : qAsConst(_installed)) {
        QCoreApplication::removeTranslator(translator);
        delete translator;
    }
    _installed.clear();
}

// --- In this process -------------------------------------------------------------

void tst_QZETranslator::libraryCatalogueTranslatesLibraryAndHostTexts_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("German in Germany") << QLocale(QLocale::German, QLocale::Germany);
    QTest::newRow("German in Austria falls back to German") << QLocale(QLocale::German, QLocale::Austria);
}

void tst_QZETranslator::libraryCatalogueTranslatesLibraryAndHostTexts()
{
    QFETCH(QLocale, locale);
    QCOMPARE(QCoreApplication::translate(SliderContext, SpectralText), QString::fromLatin1(SpectralText));

    QTranslator* translator = keep(QZETranslator::install(QZETranslator::LibraryCatalogue, locale));

    QVERIFY(translator);
    QCOMPARE(translator->parent(), QCoreApplication::instance());
    QCOMPARE(QCoreApplication::translate(SliderContext, SpectralText), SpectralTextInGerman);
    QCOMPARE(QCoreApplication::translate(FileContext, CannotReadText), CannotReadTextInGerman);
}

void tst_QZETranslator::languageWithoutCatalogueInstallsNothing_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("French") << QLocale(QLocale::French, QLocale::France);
    QTest::newRow("English") << QLocale(QLocale::English, QLocale::UnitedStates);
    QTest::newRow("C") << QLocale::c();
}

void tst_QZETranslator::languageWithoutCatalogueInstallsNothing()
{
    QFETCH(QLocale, locale);

    QVERIFY(!keep(QZETranslator::install(QZETranslator::LibraryCatalogue, locale)));

    QCOMPARE(QCoreApplication::translate(SliderContext, SpectralText), QString::fromLatin1(SpectralText));
}

void tst_QZETranslator::catalogueIsLookedForOnlyInTheGivenFolders()
{
    const QLocale german(QLocale::German, QLocale::Germany);
    QTemporaryDir empty;
    QTemporaryDir own;
    QVERIFY(empty.isValid() && own.isValid());
    QVERIFY(copyFile(QDir(BuildTranslations).filePath(QStringLiteral("QtColor_de.qm")), own.path()));

    QVERIFY(!keep(QZETranslator::install(QZETranslator::LibraryCatalogue, german, {empty.path()})));
    QCOMPARE(QCoreApplication::translate(SliderContext, SpectralText), QString::fromLatin1(SpectralText));

    QVERIFY(keep(QZETranslator::install(QZETranslator::LibraryCatalogue, german,
                                        {empty.path(), own.path()})));
    QCOMPARE(QCoreApplication::translate(SliderContext, SpectralText), SpectralTextInGerman);
}

// This test program lives with the other programs of the build tree.
void tst_QZETranslator::firstFolderIsTheOneBesideTheProgram()
{
    const QStringList folders = QZETranslator::getTranslationFolders();

    QVERIFY(folders.size() >= 1);
    QVERIFY(!canonical(BuildTranslations).isEmpty());
    QCOMPARE(canonical(folders.first()), canonical(BuildTranslations));
}

// --- The programs ------------------------------------------------------------------

void tst_QZETranslator::programsSpeakTheSystemLanguage_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QStringList>("locale");
    QTest::addColumn<QStringList>("german");

#if defined(QZESPECTRUM_PATH) && defined(ZEIMAGEMETA_PATH) && defined(COLORLAB_PROGRAM)
    const QString qzespectrum = QStringLiteral(QZESPECTRUM_PATH);
    const QStringList help = {QStringLiteral("--help")};
    // The help wraps option descriptions at word boundaries.
    const QStringList spectrumHelp = {QStringLiteral("\nBefehle:\n"),
                                      QStringLiteral("Gleichmäßiges Wellenlängenraster in nm")};
    QTest::newRow("qzespectrum --help, LANG")
        << qzespectrum << help << QStringList{QStringLiteral("LANG=de_DE.UTF-8")} << spectrumHelp;
    QTest::newRow("qzespectrum --help, LC_MESSAGES over LANG")
        << qzespectrum << help
        << QStringList{QStringLiteral("LANG=C.UTF-8"), QStringLiteral("LC_MESSAGES=de_AT.UTF-8")}
        << spectrumHelp;
    QTest::newRow("qzespectrum --help, LC_ALL over LANG")
        << qzespectrum << help
        << QStringList{QStringLiteral("LANG=en_GB.UTF-8"), QStringLiteral("LC_ALL=de_CH.UTF-8")}
        << spectrumHelp;
    QTest::newRow("qzespectrum usage error")
        << qzespectrum << QStringList() << QStringList{QStringLiteral("LANG=de_DE.UTF-8")}
        << QStringList{QStringLiteral("kein Befehl angegeben")};
    QTest::newRow("zeimagemeta --help")
        << QStringLiteral(ZEIMAGEMETA_PATH) << help << QStringList{QStringLiteral("LANG=de_DE.UTF-8")}
        << QStringList{QStringLiteral("Befehle:")};
    QTest::newRow("ColorLab --help")
        << QStringLiteral(COLORLAB_PROGRAM) << help << QStringList{QStringLiteral("LANG=de_DE.UTF-8")}
        << QStringList{QStringLiteral("Zeigt die QtColor-Widgets, eine Seite je Widget."),
                       QStringLiteral("Jede Seite als DIR/<Seite>.png rendern und beenden.")};
#else
    QSKIP("the programs are not built");
#endif
}

void tst_QZETranslator::programsSpeakTheSystemLanguage()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QStringList, locale);
    QFETCH(QStringList, german);

    const Output output = runProgram(program, arguments, localeEnvironment(locale));

    QVERIFY2(output.exitCode >= 0, qPrintable(program));
    const QString text = output.out + output.err;
    for (const QString& line : german)
        QVERIFY2(text.contains(line), qPrintable(text));
}

void tst_QZETranslator::programsStayEnglishWithoutACatalogue_data()
{
    QTest::addColumn<QStringList>("locale");
    QTest::newRow("C") << QStringList{QStringLiteral("LANG=C.UTF-8")};
    QTest::newRow("French") << QStringList{QStringLiteral("LANG=fr_FR.UTF-8")};
    QTest::newRow("nothing set") << QStringList();
}

void tst_QZETranslator::programsStayEnglishWithoutACatalogue()
{
#ifdef QZESPECTRUM_PATH
    QFETCH(QStringList, locale);

    const Output output = runProgram(QStringLiteral(QZESPECTRUM_PATH), {QStringLiteral("--help")},
                                     localeEnvironment(locale));

    QCOMPARE(output.exitCode, 0);
    QVERIFY2(output.out.contains(QStringLiteral("\nCommands:\n")), qPrintable(output.out));
    QVERIFY2(!output.out.contains(QStringLiteral("Befehle")), qPrintable(output.out));
#else
    QSKIP("the programs are not built");
#endif
}

// A copy of the program in a bin folder of its own finds the catalogues in
// ../share/QtColor/translations, as in an installation, and nowhere else.
void tst_QZETranslator::installedProgramFindsTheCataloguesBesideIt()
{
#ifdef QZESPECTRUM_PATH
    QTemporaryDir prefix;
    QVERIFY(prefix.isValid());
    const QString bin = prefix.filePath(QStringLiteral("bin"));
    QVERIFY(copyFile(QStringLiteral(QZESPECTRUM_PATH), bin));
    // The program finds its libraries where they are installed beside it.
    const QString libraries = prefix.filePath(QStringLiteral(QTCOLOR_INSTALL_LIBDIR));
    QVERIFY(QDir().mkpath(QFileInfo(libraries).path()));
    QVERIFY(QFile::link(QStringLiteral(QTCOLOR_LIBRARY_DIR), libraries));
    const QString program = QDir(bin).filePath(QFileInfo(QStringLiteral(QZESPECTRUM_PATH)).fileName());
    const QProcessEnvironment german = localeEnvironment({QStringLiteral("LANG=de_DE.UTF-8")});

    const Output alone = runProgram(program, {QStringLiteral("--help")}, german);
    QCOMPARE(alone.exitCode, 0);
    QVERIFY2(alone.out.contains(QStringLiteral("\nCommands:\n")), qPrintable(alone.out));

    const QString translations = QDir(bin).filePath(InstalledFromPrograms);
    for (const char* catalogue : {"QtColor_de.qm", "QtColorApps_de.qm"})
        QVERIFY(copyFile(QDir(BuildTranslations).filePath(QString::fromLatin1(catalogue)), translations));
    const Output installed = runProgram(program, {QStringLiteral("--help")}, german);
    QCOMPARE(installed.exitCode, 0);
    QVERIFY2(installed.out.contains(QStringLiteral("\nBefehle:\n")), qPrintable(installed.out));
#else
    QSKIP("the programs are not built");
#endif
}

QTEST_GUILESS_MAIN(tst_QZETranslator)
#include "tst_QZETranslator.moc"
