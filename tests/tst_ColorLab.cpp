#include "ColorLabWindow.h"
#include "ColourArithmetic.h"
#include "ImageFixtures.h"
#include "ImagesPage.h"
#include "DialogPage.h"
#include "QZEColor.h"
#include "QZEColorButton.h"
#include "QZEColorDialog.h"
#include "QZEColorSlider.h"
#include "QZEImageFileDialog.h"
#include "QZESpectrumPlot.h"
#include "ScreenshotWriter.h"
#include "SampleRenders.h"
#include "SlidersPage.h"
#include "TestHelpers.h"
#include "osgImage.h"
#include "zeImageMetaData.h"
#include "zeTextureMetaDataGUII.h"

#include <QApplication>
#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QFileDialog>
#include <QFileSystemModel>
#include <QFrame>
#include <QGraphicsPathItem>
#include <QGraphicsView>
#include <QGridLayout>
#include <QImage>
#include <QLabel>
#include <QPointer>
#include <QLineEdit>
#include <QListView>
#include <QProcess>
#include <QPushButton>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTimer>
#include <QtTest>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <tuple>
#include <vector>

#ifndef COLORLAB_PROGRAM
#error "COLORLAB_PROGRAM must name the ColorLab executable"
#endif

namespace {

using Mode = QZEColorSlider::Mode;
using Channels = std::array<double, QZEColorSlider::Bstar + 1>; // indexed by Mode

const Mode AllModes[] = {QZEColorSlider::Hue,   QZEColorSlider::Saturation, QZEColorSlider::Value,
                         QZEColorSlider::Red,   QZEColorSlider::Green,      QZEColorSlider::Blue,
                         QZEColorSlider::Lstar, QZEColorSlider::Astar,      QZEColorSlider::Bstar};

// The fixed window size every screenshot is taken at.
const QSize ScreenshotSize(860, 620);

QString nameOf(Mode mode)
{
    return QString::fromLatin1(QMetaEnum::fromType<Mode>().valueToKey(mode));
}

// Linear RGB (0.4, 2/3, 0.8): sector 3 of the hue circle, f = 1/3, so
// p = 0.8 * 0.5 = 0.4, q = 0.8 * (1 - 0.5 / 3) = 2/3 and blue = v = 0.8.
const QZEColor SteelBlue(200.0f, 0.5f, 0.8f);

// Linear RGB (0.5, 0.25, 0.25). Bytes without encoding: 0.5 * 255 = 127.5 and
// 0.25 * 255 = 63.75, truncated to 127 and 63. sRGB-encoded: 1.055 * 0.5^(1/2.4)
// - 0.055 = 0.73536 (187.5 -> 187) and 1.055 * 0.25^(1/2.4) - 0.055 = 0.53710
// (136.96 -> 136).
const QZEColor DustyRed(0.0f, 0.5f, 0.5f);
const QColor DustyRedLinearBytes(127, 63, 63);
const QColor DustyRedScreenBytes(187, 136, 136);

// --- Independent colour arithmetic, in double precision --------------------

// CIE f(t), with the exact constants 216/24389 and 24389/27.
double labF(double t)
{
    return t > 216.0 / 24389.0 ? std::cbrt(t) : (24389.0 / 27.0 * t + 16.0) / 116.0;
}

// sRGB primaries with a D65 white, relative to the configured reference white.
void linearRgbToLab(const double rgb[3], double lab[3])
{
    const double toXyz[3][3] = {{0.4124564, 0.3575761, 0.1804375},
                                {0.2126729, 0.7151522, 0.0721750},
                                {0.0193339, 0.1191920, 0.9503041}};
    const double white[3] = {QZEColor::s_reference_white_X, QZEColor::s_reference_white_Y,
                             QZEColor::s_reference_white_Z};
    double f[3];
    for (int row = 0; row < 3; ++row) {
        const double xyz = toXyz[row][0] * rgb[0] + toXyz[row][1] * rgb[1] + toXyz[row][2] * rgb[2];
        f[row] = labF(xyz / white[row]);
    }
    lab[0] = 116.0 * f[1] - 16.0;
    lab[1] = 500.0 * (f[0] - f[1]);
    lab[2] = 200.0 * (f[1] - f[2]);
}

// The colour in every channel a slider can show, in the order of the modes.
Channels channelsOf(const QZEColor& color)
{
    Channels c;
    c[QZEColorSlider::Hue] = color.h;
    c[QZEColorSlider::Saturation] = color.s;
    c[QZEColorSlider::Value] = color.v;
    hsvToRgb(color.h, color.s, color.v, &c[QZEColorSlider::Red]);
    linearRgbToLab(&c[QZEColorSlider::Red], &c[QZEColorSlider::Lstar]);
    return c;
}

// What a slider position stands for in its channel's unit: hue in degrees up
// to 359.99, L* up to 100, a* and b* spread over the Lab range around 0.
double realValueAt(Mode mode, double position)
{
    switch (mode) {
    case QZEColorSlider::Hue:
        return position * 359.99;
    case QZEColorSlider::Lstar:
        return position * 100.0;
    case QZEColorSlider::Astar:
    case QZEColorSlider::Bstar:
        return (position - 0.5) * double(QZEColor::s_LabRange);
    default:
        return position;
    }
}

// The inverse of the affine realValueAt, kept on the strip.
double positionFor(Mode mode, double channel)
{
    const double low = realValueAt(mode, 0.0);
    const double high = realValueAt(mode, 1.0);
    return std::clamp((channel - low) / (high - low), 0.0, 1.0);
}

// The two channels of the same colour model (HSV, RGB or Lab) as mode.
std::array<Mode, 2> siblingsOf(Mode mode)
{
    const int first = mode / 3 * 3;
    std::array<Mode, 2> siblings{};
    int n = 0;
    for (int m = first; m < first + 3; ++m) {
        if (m != mode)
            siblings[n++] = Mode(m);
    }
    return siblings;
}

// --- Page inspection --------------------------------------------------------

bool shown(QWidget& page)
{
    page.resize(700, 520);
    page.show();
    return QTest::qWaitForWindowExposed(&page);
}

// The label in the given column of the slider's row (0: name, 2: read-out).
QLabel* rowLabel(QZEColorSlider* slider, int column)
{
    auto* grid = qobject_cast<QGridLayout*>(slider->parentWidget()->layout());
    if (!grid)
        return nullptr;
    int row, col, rowSpan, colSpan;
    grid->getItemPosition(grid->indexOf(slider), &row, &col, &rowSpan, &colSpan);
    QLayoutItem* item = grid->itemAtPosition(row, column);
    return item ? qobject_cast<QLabel*>(item->widget()) : nullptr;
}

// The value shown next to the row caption containing captionPart.
QString formValue(const QWidget& page, const QString& captionPart)
{
    for (const QLabel* caption : page.findChildren<QLabel*>()) {
        const auto* value = qobject_cast<QLabel*>(caption->buddy());
        if (value && caption->text().contains(captionPart))
            return value->text();
    }
    return QString();
}

// The plain frame painted in the colour (labels are frames too, hence the
// exact class).
QFrame* swatchOf(const QWidget& page)
{
    for (QFrame* frame : page.findChildren<QFrame*>()) {
        if (frame->metaObject() == &QFrame::staticMetaObject && frame->autoFillBackground())
            return frame;
    }
    return nullptr;
}

QColor swatchColor(const QWidget& page)
{
    const QFrame* swatch = swatchOf(page);
    return swatch ? swatch->palette().color(QPalette::Window) : QColor();
}

// Clicks the slider at a fraction of its width and returns the position such a
// click selects: the pixel column over the width.
float clickAt(QZEColorSlider* slider, double fraction)
{
    const int x = int(fraction * slider->width());
    QTest::mouseClick(slider, Qt::LeftButton, {}, QPoint(x, slider->height() / 2));
    return float(x) / float(slider->width());
}

// --- The program ------------------------------------------------------------

struct Run
{
    bool finished = false;
    QProcess::ExitStatus status = QProcess::CrashExit;
    int exitCode = -1;
    QString out;
    QString err;
};

Run runColorLab(const QStringList& arguments, const QProcessEnvironment& environment)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(COLORLAB_PROGRAM), arguments);
    Run run;
    run.finished = process.waitForFinished(60000);
    run.status = process.exitStatus();
    run.exitCode = process.exitCode();
    run.out = QString::fromLocal8Bit(process.readAllStandardOutput());
    run.err = QString::fromLocal8Bit(process.readAllStandardError());
    return run;
}

QProcessEnvironment withoutDisplay()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        environment.remove(QString::fromLatin1(name));
    return environment;
}

QProcessEnvironment withoutDisplayBut(const QString& name, const QString& value)
{
    QProcessEnvironment environment = withoutDisplay();
    environment.insert(name, value);
    return environment;
}

// A start that stopped by itself with the status of a usage error and a
// message line of its own (after any warnings of the toolkit), without the
// toolkit's abort and its advice to reinstall.
void verifyRefusedToStart(const Run& run)
{
    QVERIFY(run.finished);
    QCOMPARE(run.status, QProcess::NormalExit);
    QVERIFY2(run.exitCode == 2, qPrintable(run.err));
    const QRegularExpression ownLine(QStringLiteral("^ColorLab: \\S"), QRegularExpression::MultilineOption);
    QVERIFY2(run.err.contains(ownLine), qPrintable(run.err));
    QVERIFY2(!run.err.contains(QStringLiteral("Reinstalling")), qPrintable(run.err));
    QVERIFY(run.out.isEmpty());
}

QProcessEnvironment offscreen()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    return environment;
}

// The shot of the Images page's information dialog, after the pages.
const QString DialogShot = QStringLiteral("image-information.png");

// One file per page of a fresh window, named after the page.
QStringList shotsOfEveryPage(const QString& directory)
{
    ColorLabWindow window;
    QStringList files;
    for (int i = 0; i < window.pageCount(); ++i)
        files.append(QDir(directory).filePath(window.page(i)->objectName() + QStringLiteral(".png")));
    return files;
}

// The size an information dialog takes when shown: its form's size, or more
// when the style asks for it.
QSize shownDialogSize()
{
    auto* dialog = new zeTextureMetaDataGUII;
    dialog->setAttribute(Qt::WA_DontShowOnScreen);
    dialog->show();
    const QSize size = dialog->size();
    delete dialog;
    return size;
}

// The information dialogs a page has open.
QList<zeTextureMetaDataGUII*> dialogsOf(const QWidget& page)
{
    return page.findChildren<zeTextureMetaDataGUII*>();
}

QString shownFileName(const zeTextureMetaDataGUII& dialog)
{
    return dialog.findChild<QLabel*>(QStringLiteral("_filename"))->text();
}

QStringList shownLines(const zeTextureMetaDataGUII& dialog)
{
    return dialog.findChild<QTextEdit*>(QStringLiteral("_metadata"))
        ->toPlainText()
        .split(QLatin1Char('\n'));
}

// Picks path in the file dialog that is about to run modally, once it runs.
void chooseInNextFileDialog(const QString& path)
{
    QTimer::singleShot(0, [path] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        if (!dialog)
            return;
        dialog->selectFile(path);
        QMetaObject::invokeMethod(dialog, "accept"); // protected in QFileDialog
    });
}

// The colour dialog's pictures, after the pages: device pixel ratio 1, then
// 2, then its spectrum tab.
QStringList dialogShots(const QString& directory)
{
    return {QDir(directory).filePath(QStringLiteral("colordialog.png")),
            QDir(directory).filePath(QStringLiteral("colordialog@2x.png")),
            QDir(directory).filePath(QStringLiteral("colordialog-spectrum.png"))};
}

// What --screenshot writes, in order: the pages, the colour dialog, the
// information dialog.
QStringList everyShot(const QString& directory)
{
    return shotsOfEveryPage(directory) + dialogShots(directory)
           + QStringList{QDir(directory).filePath(DialogShot),
                         QDir(directory).filePath(QStringLiteral("image-browser.png"))};
}

// Share of 2 x 2 pixel blocks of a ratio-2 picture whose four pixels are not
// all equal: zero for a picture scaled up from ratio 1 by pixel doubling.
double detailedBlockShare(const QImage& picture)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    int detailed = 0, blocks = 0;
    for (int y = 0; y + 1 < image.height(); y += 2) {
        for (int x = 0; x + 1 < image.width(); x += 2) {
            const QRgb corner = image.pixel(x, y);
            detailed += corner != image.pixel(x + 1, y) || corner != image.pixel(x, y + 1)
                        || corner != image.pixel(x + 1, y + 1);
            ++blocks;
        }
    }
    return blocks ? double(detailed) / blocks : 0.0;
}

// The page's swatches: the colour on screen, then the sent values
// unconverted, then the material's spectrum.
QVector<QColor> allSwatchColors(const DialogPage& page)
{
    QVector<QColor> colors;
    for (const QFrame* frame : page.findChildren<QFrame*>()) {
        if (frame->metaObject() == &QFrame::staticMetaObject && frame->autoFillBackground())
            colors.append(frame->palette().color(QPalette::Window));
    }
    return colors;
}

QVector<QColor> swatchColors(const DialogPage& page)
{
    return allSwatchColors(page).mid(0, 2);
}

QColor materialSwatchColor(const DialogPage& page)
{
    return allSwatchColors(page).value(2);
}

// CIE D65 relative to 1 at 560 nm (the CIE table: 117.812 at 460 nm, 100 at
// 560 nm), on the 380 to 780 nm grid in 5 nm steps.
constexpr int D65Index460 = (460 - 380) / 5;
constexpr int D65Index560 = (560 - 380) / 5;
constexpr float D65At460 = 1.17812f;

QStringList nonEmptyLines(const QString& text)
{
    return text.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

QString makeRegularFile(const QTemporaryDir& dir)
{
    const QString path = dir.filePath(QStringLiteral("plain-file"));
    QFile file(path);
    if (file.open(QIODevice::WriteOnly))
        file.write("not a directory");
    return path;
}


// The render-settings groups the host kit reads from the file at path, as
// the image browser asks for them.
int groupsReadFrom(const QString& path)
{
    const osg::ImagePtr image = osg::Image::create();
    image->setAttachmentField(zeImageMetaData::getAttachmentKey(), "");
    image->read(path.toUtf8().constData());
    return zeImageMetaData(image, false).containedTALQSettings();
}

bool hasPixelNear(const QImage& picture, const QColor& colour, int tolerance)
{
    const QImage image = picture.convertToFormat(QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (qAbs(qRed(pixel) - colour.red()) <= tolerance
                && qAbs(qGreen(pixel) - colour.green()) <= tolerance
                && qAbs(qBlue(pixel) - colour.blue()) <= tolerance)
                return true;
        }
    }
    return false;
}

// Each sample's sphere colour shows in its thumbnail; the first sample is
// selected, so its thumbnail lies under the highlight and is not looked for.
void verifyBrowserShotShowsEveryThumbnail(const QImage& shot)
{
    QCOMPARE(shot.size(), ScreenshotWriter::BrowserSize);
    const QVector<SampleRenders::Sample>& samples = SampleRenders::samples();
    for (int i = 1; i < samples.size(); ++i)
        QVERIFY2(hasPixelNear(shot, samples.at(i).colour, 6), qPrintable(samples.at(i).fileName));
}

// Makes the file at path current in the image browser about to run modally
// (as a click would), lets it read the file's groups and accepts it.
void chooseInNextImageBrowser(const QString& path)
{
    QTimer::singleShot(0, [path] {
        auto* browser = qobject_cast<QZEImageFileDialog*>(QApplication::activeModalWidget());
        if (!browser)
            return;
        auto* list = browser->findChild<QListView*>(QStringLiteral("_list"));
        list->setCurrentIndex(qobject_cast<QFileSystemModel*>(list->model())->index(path));
        QTimer::singleShot(100, browser, &QDialog::accept);
    });
}

} // namespace

class tst_ColorLab : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void screenshotOptionWritesEveryPageAtTheWindowSize_data();
    void screenshotOptionWritesEveryPageAtTheWindowSize();
    void screenshotIntoAnUncreatableDirectoryFailsWithAMessage();
    void startWithoutADisplayPointsToTheScreenshotOption();
    void displayThatCannotBeOpenedPointsToTheScreenshotOption_data();
    void displayThatCannotBeOpenedPointsToTheScreenshotOption();
    void unknownOptionIsReportedBeforeAnyWindow_data();
    void unknownOptionIsReportedBeforeAnyWindow();
    void helpAndVersionNeedNoDisplay_data();
    void helpAndVersionNeedNoDisplay();
    void toolkitOptionsStillReachTheToolkit();
    void writerNamesOneFilePerPageAfterThePage();
    void writerReportsAnUncreatableDirectory();
    void writerStopsAtAFileItCannotWrite();
    void writerRendersTheDialogSharplyAtRatioTwo();
    void writerLeavesAHiddenDialogHidden();
    void writerRendersTheSpectrumTabWithTheDaylightSpectrum();

    void eachSliderIsLabelledWithItsChannel();
    void slidersShowHandWorkedPositions_data();
    void slidersShowHandWorkedPositions();
    void settingAColourMovesEverySliderToItsChannel_data();
    void settingAColourMovesEverySliderToItsChannel();
    void readoutsShowEachChannelWithThreeDecimals();
    void clickingASliderChangesOnlyItsChannel_data();
    void clickingASliderChangesOnlyItsChannel();
    void otherSlidersFollowAClickWithoutEmitting_data();
    void otherSlidersFollowAClickWithoutEmitting();
    void swatchAndTableShowTheColour();

    void gammaCheckBoxStartsAtTheSetting_data();
    void gammaCheckBoxStartsAtTheSetting();
    void gammaCheckBoxTogglesTheSetting();
    void gammaCheckBoxSwitchesTheScreenColour_data();
    void gammaCheckBoxSwitchesTheScreenColour();

    void imagesPageWritesACameraJpegTheDialogShows();
    void sampleButtonOpensTheDialogForTheSample();
    void informationButtonOpensTheDialogForTheChosenFile();
    void cancellingTheFileDialogOpensNothing();
    void unreadableFileOpensNoDialogAndSaysSo();
    void imagesPageWritesSampleRendersWithTheirGroupsStamped();
    void choiceShowsThePathAndTheNamedGroups();
    void browseButtonShowsTheFileAndGroupsChosenInTheBrowser();
    void pickerButtonShowsTheFileAndGroupsChosenInThePickerProgram();
    void dialogPageOpensTheDialogWithoutBlockingTheWindow();
    void dialogPageShowsEachColourTheDialogSends();
    void dialogPageFollowsAnEditInTheDialog();
    void dialogPageKeepsTheScreenColourWhenTheSrgbSwitchFlips();
    void dialogPageLendsItsDaylightSpectrumToTheDialogWhenOpening();
    void dialogPageShowsTheMaterialColourAfterAnRgbEditInTheSpectrumTab();
    void dialogPageShowsTheFileNameOfASpectrumLoadedInTheDialog();

private:
    static void clickData();

    bool _savedUseGamma = true;
};

void tst_ColorLab::init()
{
    _savedUseGamma = QZEColor::s_useGamma;
}

void tst_ColorLab::cleanup()
{
    QZEColor::s_useGamma = _savedUseGamma;
}

// --- Screenshots ----------------------------------------------------------------

void tst_ColorLab::screenshotOptionWritesEveryPageAtTheWindowSize_data()
{
    QTest::addColumn<bool>("platformChosen");
    QTest::newRow("offscreen platform chosen") << true;
    QTest::newRow("no platform and no display") << false;
}

void tst_ColorLab::screenshotOptionWritesEveryPageAtTheWindowSize()
{
    QFETCH(bool, platformChosen);
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString directory = tmp.filePath(QStringLiteral("shots"));

    const Run run = runColorLab({QStringLiteral("--screenshot"), directory},
                                platformChosen ? offscreen() : withoutDisplay());

    QVERIFY(run.finished);
    QCOMPARE(run.status, QProcess::NormalExit);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    const QStringList pages = shotsOfEveryPage(directory);
    QVERIFY(pages.contains(QDir(directory).filePath(QStringLiteral("sliders.png"))));
    QVERIFY(pages.contains(QDir(directory).filePath(QStringLiteral("dialog.png"))));
    const QString informationShot = QDir(directory).filePath(DialogShot);
    QCOMPARE(nonEmptyLines(run.out), everyShot(directory));
    for (const QString& file : pages) {
        const QImage shot(file);
        QVERIFY2(!shot.isNull(), qPrintable(file));
        QCOMPARE(shot.size(), ScreenshotSize);
    }
    QCOMPARE(QImage(informationShot).size(), shownDialogSize());
    const QImage single(dialogShots(directory).at(0));
    const QImage doubled(dialogShots(directory).at(1));
    QCOMPARE(single.size(), QZEColorDialog().size());
    QCOMPARE(doubled.size(), single.size() * 2);
    QZE_CHECK(verifyBrowserShotShowsEveryThumbnail(
        QImage(QDir(directory).filePath(QStringLiteral("image-browser.png")))));
}

void tst_ColorLab::screenshotIntoAnUncreatableDirectoryFailsWithAMessage()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString directory = makeRegularFile(tmp) + QStringLiteral("/shots");

    const Run run = runColorLab({QStringLiteral("--screenshot"), directory}, offscreen());

    QVERIFY(run.finished);
    QCOMPARE(run.status, QProcess::NormalExit);
    QVERIFY(run.exitCode != 0);
    QVERIFY2(run.err.contains(QStringLiteral("ColorLab: ")), qPrintable(run.err));
    QVERIFY2(run.err.contains(QDir::toNativeSeparators(directory)), qPrintable(run.err));
    QVERIFY(nonEmptyLines(run.out).isEmpty());
}

void tst_ColorLab::startWithoutADisplayPointsToTheScreenshotOption()
{
    const Run run = runColorLab({}, withoutDisplay());

    QZE_CHECK(verifyRefusedToStart(run));
    QVERIFY2(run.err.contains(QStringLiteral("DISPLAY")), qPrintable(run.err));
    QVERIFY2(run.err.contains(QStringLiteral("--screenshot DIR")), qPrintable(run.err));
}

void tst_ColorLab::displayThatCannotBeOpenedPointsToTheScreenshotOption_data()
{
    QTest::addColumn<QString>("variable");
    QTest::addColumn<QString>("value");
    QTest::newRow("X display not running") << QStringLiteral("DISPLAY") << QStringLiteral(":4711");
    QTest::newRow("unknown platform") << QStringLiteral("QT_QPA_PLATFORM") << QStringLiteral("no-such-platform");
}

void tst_ColorLab::displayThatCannotBeOpenedPointsToTheScreenshotOption()
{
    QFETCH(QString, variable);
    QFETCH(QString, value);

    const Run run = runColorLab({}, withoutDisplayBut(variable, value));

    QZE_CHECK(verifyRefusedToStart(run));
    QVERIFY2(run.err.contains(QStringLiteral("--screenshot DIR")), qPrintable(run.err));
}

void tst_ColorLab::unknownOptionIsReportedBeforeAnyWindow_data()
{
    QTest::addColumn<bool>("display");
    QTest::newRow("offscreen platform chosen") << true;
    QTest::newRow("no platform and no display") << false;
}

void tst_ColorLab::unknownOptionIsReportedBeforeAnyWindow()
{
    QFETCH(bool, display);

    const Run run = runColorLab({QStringLiteral("--bogus")}, display ? offscreen() : withoutDisplay());

    QZE_CHECK(verifyRefusedToStart(run));
    QVERIFY2(run.err.contains(QStringLiteral("'bogus'")), qPrintable(run.err));
    QVERIFY2(run.err.contains(QStringLiteral("ColorLab --help")), qPrintable(run.err));
}

void tst_ColorLab::helpAndVersionNeedNoDisplay_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("expected");
    QTest::newRow("help") << QStringLiteral("--help") << QStringLiteral("\\s--screenshot <DIR>\\s");
    QTest::newRow("version") << QStringLiteral("--version") << QStringLiteral("^ColorLab \\d+\\.\\d+\\.\\d+\n$");
}

void tst_ColorLab::helpAndVersionNeedNoDisplay()
{
    QFETCH(QString, option);
    QFETCH(QString, expected);

    const Run run = runColorLab({option}, withoutDisplay());

    QVERIFY(run.finished);
    QCOMPARE(run.status, QProcess::NormalExit);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QVERIFY2(run.out.contains(QRegularExpression(expected)), qPrintable(run.out));
}

// The toolkit takes its own options (here -platform) out of the arguments;
// they are not reported as unknown, and choose the platform.
void tst_ColorLab::toolkitOptionsStillReachTheToolkit()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString directory = tmp.filePath(QStringLiteral("shots"));

    const Run run = runColorLab({QStringLiteral("-platform"), QStringLiteral("offscreen"),
                                 QStringLiteral("--screenshot"), directory},
                                withoutDisplay());

    QVERIFY(run.finished);
    QCOMPARE(run.status, QProcess::NormalExit);
    QVERIFY2(run.exitCode == 0, qPrintable(run.err));
    QCOMPARE(nonEmptyLines(run.out), everyShot(directory));
}

void tst_ColorLab::writerNamesOneFilePerPageAfterThePage()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString directory = tmp.filePath(QStringLiteral("nested/shots"));
    ColorLabWindow window;
    ScreenshotWriter writer(directory);

    QVERIFY2(writer.write(window), qPrintable(writer.errorString()));

    QCOMPARE(window.page(0)->objectName(), QStringLiteral("sliders"));
    QCOMPARE(writer.files().size(), window.pageCount() + 5);
    QCOMPARE(writer.files().mid(window.pageCount(), 3), dialogShots(directory));
    for (int i = 0; i < window.pageCount(); ++i) {
        const QString file = QDir(directory).filePath(window.page(i)->objectName() + QStringLiteral(".png"));
        QCOMPARE(writer.files().at(i), file);
        QCOMPARE(QImage(file).size(), ScreenshotSize);
    }
    const QString dialogShot = QDir(directory).filePath(DialogShot);
    QCOMPARE(writer.files().at(writer.files().size() - 2), dialogShot);
    QCOMPARE(writer.files().last(), QDir(directory).filePath(QStringLiteral("image-browser.png")));
    QCOMPARE(QImage(dialogShot).size(), shownDialogSize());
    QVERIFY(writer.errorString().isEmpty());
}

void tst_ColorLab::writerReportsAnUncreatableDirectory()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString directory = makeRegularFile(tmp) + QStringLiteral("/shots");
    ColorLabWindow window;
    ScreenshotWriter writer(directory);

    QVERIFY(!writer.write(window));

    QVERIFY(writer.files().isEmpty());
    QVERIFY2(writer.errorString().contains(QDir::toNativeSeparators(directory)),
             qPrintable(writer.errorString()));
}

void tst_ColorLab::writerStopsAtAFileItCannotWrite()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString blocked = tmp.filePath(QStringLiteral("sliders.png"));
    QVERIFY(QDir().mkpath(blocked)); // a directory where the first shot should go
    ColorLabWindow window;
    ScreenshotWriter writer(tmp.path());

    QVERIFY(!writer.write(window));

    QVERIFY(writer.files().isEmpty());
    QVERIFY2(writer.errorString().contains(QDir::toNativeSeparators(blocked)),
             qPrintable(writer.errorString()));
}

void tst_ColorLab::writerRendersTheDialogSharplyAtRatioTwo()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    ColorLabWindow window;
    ScreenshotWriter writer(tmp.path());

    QVERIFY2(writer.write(window), qPrintable(writer.errorString()));

    const QImage single(dialogShots(tmp.path()).at(0));
    const QImage doubled(dialogShots(tmp.path()).at(1));
    QCOMPARE(single.size(), window.colorDialog()->size());
    QCOMPARE(doubled.size(), single.size() * 2);
    // Text edges and gradients drawn at twice the resolution leave many
    // blocks uneven; pixel doubling would leave none.
    const double share = detailedBlockShare(doubled);
    QVERIFY2(share > 0.02, qPrintable(QString::number(share)));
    // The same place holds the same colour in both: the current colour swatch.
    const QWidget* swatch = window.colorDialog()->findChild<QWidget*>(QStringLiteral("_current_color"));
    QVERIFY(swatch);
    const QPoint centre = swatch->mapTo(window.colorDialog(), swatch->rect().center());
    QCOMPARE(doubled.pixelColor(centre * 2), single.pixelColor(centre));
}

void tst_ColorLab::writerLeavesAHiddenDialogHidden()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    ColorLabWindow window;
    ScreenshotWriter writer(tmp.path());

    QVERIFY2(writer.write(window), qPrintable(writer.errorString()));

    QVERIFY(!window.colorDialog()->isVisible());
    QVERIFY(!window.colorDialog()->testAttribute(Qt::WA_DontShowOnScreen));
}

void tst_ColorLab::writerRendersTheSpectrumTabWithTheDaylightSpectrum()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    ColorLabWindow window;
    QZEColorDialog* dialog = window.colorDialog();
    auto* tabs = dialog->findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    auto* plotView = dialog->findChild<QGraphicsView*>(QStringLiteral("_spectrumPlot"));
    QVERIFY(tabs && plotView);
    QWidget* spectrumTab = dialog->findChild<QWidget*>(QStringLiteral("_spectrum_tab"));
    QVERIFY(tabs->currentWidget() != spectrumTab);
    ScreenshotWriter writer(tmp.path());

    QVERIFY2(writer.write(window), qPrintable(writer.errorString()));

    auto* page = window.findChild<DialogPage*>();
    QVERIFY(page);
    QCOMPARE(dialog->getSpectrum(), page->materialSpectrum());
    QCOMPARE(tabs->currentWidget(), spectrumTab);
    const QImage colourShot(dialogShots(tmp.path()).at(0));
    const QImage spectrumShot(dialogShots(tmp.path()).at(2));
    QCOMPARE(spectrumShot.size(), dialog->size());
    // Where the plot sits on the spectrum tab the colour tab shows something
    // else; the plot's white curve leaves pure white pixels there.
    const QRect plotArea(plotView->mapTo(dialog, QPoint(0, 0)), plotView->size());
    QVERIFY(!plotArea.isEmpty());
    QVERIFY(spectrumShot.copy(plotArea) != colourShot.copy(plotArea));
    int white = 0;
    for (int y = plotArea.top(); y <= plotArea.bottom(); ++y) {
        for (int x = plotArea.left(); x <= plotArea.right(); ++x)
            white += spectrumShot.pixel(x, y) == qRgb(255, 255, 255);
    }
    QVERIFY2(white > 20, qPrintable(QString::number(white)));
}

// --- Slider linking ---------------------------------------------------------------

void tst_ColorLab::eachSliderIsLabelledWithItsChannel()
{
    const char* const names[] = {"Hue", "Saturation", "Value", "Red", "Green", "Blue",
                                 "L*",  "a*",         "b*"};
    SlidersPage page;
    for (Mode mode : AllModes) {
        QZEColorSlider* slider = page.slider(mode);
        QVERIFY(slider);
        QCOMPARE(slider->getMode(), mode);
        const QLabel* name = rowLabel(slider, 0);
        QVERIFY(name);
        QCOMPARE(name->text(), QString::fromLatin1(names[mode]));
    }
}

void tst_ColorLab::slidersShowHandWorkedPositions_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<double>("position");

    QTest::newRow("hue 200 degrees") << SteelBlue << QZEColorSlider::Hue << 200.0 / 359.99;
    QTest::newRow("saturation") << SteelBlue << QZEColorSlider::Saturation << 0.5;
    QTest::newRow("red is p") << SteelBlue << QZEColorSlider::Red << 0.4;
    QTest::newRow("green is q") << SteelBlue << QZEColorSlider::Green << 2.0 / 3.0;
    QTest::newRow("blue is v") << SteelBlue << QZEColorSlider::Blue << 0.8;
    // Linear white is the reference white: L* 100, a* and b* 0, the strips' middle.
    const QZEColor white(0.0f, 0.0f, 1.0f);
    QTest::newRow("white L*") << white << QZEColorSlider::Lstar << 1.0;
    QTest::newRow("white a*") << white << QZEColorSlider::Astar << 0.5;
    QTest::newRow("white b*") << white << QZEColorSlider::Bstar << 0.5;
    // Linear RGB (2, 1, 1): beyond the strips, so kept at their ends.
    const QZEColor brightRed(0.0f, 0.5f, 2.0f);
    QTest::newRow("HDR value") << brightRed << QZEColorSlider::Value << 1.0;
    QTest::newRow("HDR red") << brightRed << QZEColorSlider::Red << 1.0;
    QTest::newRow("HDR L*") << brightRed << QZEColorSlider::Lstar << 1.0;
    QTest::newRow("grey keeps its hue") << QZEColor(90.0f, 0.0f, 0.5f) << QZEColorSlider::Hue
                                        << 90.0 / 359.99;
}

void tst_ColorLab::slidersShowHandWorkedPositions()
{
    QFETCH(QZEColor, color);
    QFETCH(Mode, mode);
    QFETCH(double, position);
    SlidersPage page;

    page.setColor(color);

    QZE_COMPARE_NEAR_IN(page.slider(mode)->getValue(), position, 1e-5, nameOf(mode));
}

void tst_ColorLab::settingAColourMovesEverySliderToItsChannel_data()
{
    QTest::addColumn<QZEColor>("color");
    QTest::newRow("steel blue") << SteelBlue;
    QTest::newRow("warm orange") << QZEColor(20.0f, 0.9f, 0.75f);
    QTest::newRow("dusty red") << DustyRed;
    QTest::newRow("grey with a hue") << QZEColor(123.0f, 0.0f, 0.5f);
    QTest::newRow("black") << QZEColor(0.0f, 0.0f, 0.0f);
    QTest::newRow("HDR red") << QZEColor(0.0f, 0.5f, 2.0f);
    QTest::newRow("saturated violet") << QZEColor(290.0f, 1.0f, 1.0f);
}

void tst_ColorLab::settingAColourMovesEverySliderToItsChannel()
{
    QFETCH(QZEColor, color);
    SlidersPage page;

    page.setColor(color);

    QCOMPARE(page.color(), color);
    const Channels channels = channelsOf(color);
    for (Mode mode : AllModes) {
        QZE_COMPARE_NEAR_IN(page.slider(mode)->getValue(), positionFor(mode, channels[mode]),
                            1e-4, nameOf(mode));
    }
}

void tst_ColorLab::readoutsShowEachChannelWithThreeDecimals()
{
    const QRegularExpression threeDecimals(QStringLiteral("^-?\\d+\\.\\d{3}$"));
    SlidersPage page;

    page.setColor(SteelBlue);

    const Channels channels = channelsOf(SteelBlue);
    for (Mode mode : AllModes) {
        const QLabel* readout = rowLabel(page.slider(mode), 2);
        QVERIFY(readout);
        QVERIFY2(threeDecimals.match(readout->text()).hasMatch(), qPrintable(readout->text()));
        QZE_COMPARE_NEAR_IN(readout->text().toDouble(), channels[mode], 0.0006, nameOf(mode));
    }
}

void tst_ColorLab::clickData()
{
    QTest::addColumn<Mode>("mode");
    QTest::addColumn<double>("fraction");
    QTest::addColumn<double>("tolerance");

    // Fractions near the steel blue's own L*a*b* (82.9, -10.2, -13.5) keep
    // the new colour inside the RGB cube.
    QTest::newRow("hue") << QZEColorSlider::Hue << 0.25 << 1e-3;
    QTest::newRow("saturation") << QZEColorSlider::Saturation << 0.75 << 1e-5;
    QTest::newRow("value") << QZEColorSlider::Value << 0.3 << 1e-5;
    QTest::newRow("red") << QZEColorSlider::Red << 0.6 << 1e-5;
    QTest::newRow("green") << QZEColorSlider::Green << 0.2 << 1e-5;
    QTest::newRow("blue") << QZEColorSlider::Blue << 0.5 << 1e-5;
    QTest::newRow("L*") << QZEColorSlider::Lstar << 0.7 << 1e-2;
    QTest::newRow("a*") << QZEColorSlider::Astar << 0.45 << 1e-2;
    QTest::newRow("b*") << QZEColorSlider::Bstar << 0.55 << 1e-2;
}

void tst_ColorLab::clickingASliderChangesOnlyItsChannel_data()
{
    clickData();
}

void tst_ColorLab::clickingASliderChangesOnlyItsChannel()
{
    QFETCH(Mode, mode);
    QFETCH(double, fraction);
    QFETCH(double, tolerance);
    SlidersPage page;
    page.setColor(SteelBlue);
    QVERIFY(shown(page));
    const Channels before = channelsOf(page.color());

    const float position = clickAt(page.slider(mode), fraction);

    const Channels after = channelsOf(page.color());
    QZE_COMPARE_NEAR_IN(after[mode], realValueAt(mode, position), tolerance, nameOf(mode));
    for (Mode sibling : siblingsOf(mode))
        QZE_COMPARE_NEAR_IN(after[sibling], before[sibling], tolerance, nameOf(sibling));
}

void tst_ColorLab::otherSlidersFollowAClickWithoutEmitting_data()
{
    clickData();
}

void tst_ColorLab::otherSlidersFollowAClickWithoutEmitting()
{
    QFETCH(Mode, mode);
    QFETCH(double, fraction);
    SlidersPage page;
    page.setColor(SteelBlue);
    QVERIFY(shown(page));
    std::vector<std::unique_ptr<QSignalSpy>> spies;
    for (Mode other : AllModes) {
        if (other == mode)
            continue;
        QZEColorSlider* slider = page.slider(other);
        spies.push_back(std::make_unique<QSignalSpy>(
            slider, qOverload<float>(&QZEColorSlider::valueChanged)));
        spies.push_back(std::make_unique<QSignalSpy>(slider, &QZEColorSlider::colorChanged));
        spies.push_back(std::make_unique<QSignalSpy>(slider, &QZEColorSlider::minColorChanged));
        spies.push_back(std::make_unique<QSignalSpy>(slider, &QZEColorSlider::maxColorChanged));
    }
    QSignalSpy clicked(page.slider(mode), qOverload<float>(&QZEColorSlider::valueChanged));

    const float position = clickAt(page.slider(mode), fraction);

    QCOMPARE(clicked.count(), 1);
    for (const auto& spy : spies)
        QCOMPARE(spy->count(), 0);
    QCOMPARE(page.slider(mode)->getValue(), position);
    const Channels channels = channelsOf(page.color());
    for (Mode other : AllModes) {
        QZE_COMPARE_NEAR_IN(page.slider(other)->getValue(),
                            positionFor(other, channels[other]), 1e-4, nameOf(other));
    }
}

void tst_ColorLab::swatchAndTableShowTheColour()
{
    QZEColor::s_useGamma = true;
    SlidersPage page;

    page.setColor(DustyRed);

    QCOMPARE(swatchColor(page), DustyRedScreenBytes);
    QVERIFY2(formValue(page, QStringLiteral("(getGammaQColor)")).endsWith(DustyRedScreenBytes.name()),
             qPrintable(formValue(page, QStringLiteral("(getGammaQColor)"))));
    QVERIFY2(formValue(page, QStringLiteral("(getQColor)")).endsWith(DustyRedLinearBytes.name()),
             qPrintable(formValue(page, QStringLiteral("(getQColor)"))));
}

// --- Gamma switch -------------------------------------------------------------------

void tst_ColorLab::gammaCheckBoxStartsAtTheSetting_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void tst_ColorLab::gammaCheckBoxStartsAtTheSetting()
{
    QFETCH(bool, useGamma);
    QZEColor::s_useGamma = useGamma;

    SlidersPage page;

    const auto* box = page.findChild<QCheckBox*>();
    QVERIFY(box);
    QCOMPARE(box->isChecked(), useGamma);
}

void tst_ColorLab::gammaCheckBoxTogglesTheSetting()
{
    QZEColor::s_useGamma = true;
    SlidersPage page;
    auto* box = page.findChild<QCheckBox*>();
    QVERIFY(box);

    box->click();
    QCOMPARE(QZEColor::s_useGamma, false);
    box->click();
    QCOMPARE(QZEColor::s_useGamma, true);
}

void tst_ColorLab::gammaCheckBoxSwitchesTheScreenColour_data()
{
    QTest::addColumn<bool>("useGamma");
    QTest::addColumn<QColor>("screenBytes");
    QTest::newRow("on to off") << true << DustyRedLinearBytes;
    QTest::newRow("off to on") << false << DustyRedScreenBytes;
}

void tst_ColorLab::gammaCheckBoxSwitchesTheScreenColour()
{
    QFETCH(bool, useGamma);
    QFETCH(QColor, screenBytes);
    QZEColor::s_useGamma = useGamma;
    SlidersPage page;
    page.setColor(DustyRed);
    auto* box = page.findChild<QCheckBox*>();
    QVERIFY(box);

    box->click();

    QCOMPARE(swatchColor(page), screenBytes);
    const QString screen = formValue(page, QStringLiteral("(getGammaQColor)"));
    QVERIFY2(screen.endsWith(screenBytes.name()), qPrintable(screen));
}

// --- Images page ---------------------------------------------------------------------

void tst_ColorLab::imagesPageWritesACameraJpegTheDialogShows()
{
    ImagesPage page;
    QVERIFY(QFileInfo(page.sampleFile()).isFile());
    QVERIFY(page.sampleFile().endsWith(QStringLiteral(".jpg")));
    QVERIFY(page.sampleButton()->isEnabled());

    QPointer<zeTextureMetaDataGUII> dialog = page.openInformation(page.sampleFile());

    QVERIFY(dialog);
    QVERIFY(!dialog->isVisible());
    // The tags ColorLab writes: a camera's maker and model; 1/100 s at f/5.6
    // (Tv log2(100) = 6.64, Av 2 log2(5.6) = 4.97); focused at infinity.
    const QStringList lines = shownLines(*dialog);
    for (const QString& line : {QStringLiteral("Dimension:\t\t480 x 320 px"),
                                QStringLiteral("Camera maker:\t\t QtColor"),
                                QStringLiteral("Camera model:\t\t ColorLab Sample Camera"),
                                QStringLiteral("Exposure time:\t\t 1/100\""),
                                QStringLiteral("F number:\t\tF 5.6"),
                                QStringLiteral("Shutter speed:\t\t 6.64 Tv( 1/100\")"),
                                QStringLiteral("Aperture:\t\t 4.97 Av (F 5.6)"),
                                QStringLiteral("Exposure bias:\t\t -0.33 EV"),
                                QStringLiteral("Subject distance:\tInfinity"),
                                QStringLiteral("Lens focal length:\t 50 mm"),
                                QStringLiteral("Lens focal length in 35mm:\t 75 mm")})
        QVERIFY2(lines.contains(line), qPrintable(line));
    delete dialog.data();
}

void tst_ColorLab::sampleButtonOpensTheDialogForTheSample()
{
    ImagesPage page;
    QVERIFY(dialogsOf(page).isEmpty());

    page.sampleButton()->click();

    QCOMPARE(dialogsOf(page).size(), 1);
    QPointer<zeTextureMetaDataGUII> dialog = dialogsOf(page).first();
    QVERIFY(dialog->isVisible());
    QCOMPARE(shownFileName(*dialog), page.sampleFile());
    dialog->close();
    QTRY_VERIFY(dialog.isNull());
}

void tst_ColorLab::informationButtonOpensTheDialogForTheChosenFile()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString file = tmp.filePath(QStringLiteral("chosen.png"));
    QVERIFY(ImageFixtures::write(ImageFixtures::filled(7, 5, QImage::Format_RGB32, Qt::red), file,
                                 "png"));
    ImagesPage page;

    chooseInNextFileDialog(file);
    page.informationButton()->click();

    QCOMPARE(dialogsOf(page).size(), 1);
    const zeTextureMetaDataGUII* dialog = dialogsOf(page).first();
    QVERIFY(dialog->isVisible());
    QCOMPARE(shownFileName(*dialog), file);
    QCOMPARE(shownLines(*dialog).first(), QStringLiteral("Dimension:\t\t7 x 5 px"));
}

void tst_ColorLab::cancellingTheFileDialogOpensNothing()
{
    ImagesPage page;
    QTimer::singleShot(0, [] {
        if (QWidget* dialog = QApplication::activeModalWidget())
            dialog->close();
    });

    page.informationButton()->click();

    QVERIFY(dialogsOf(page).isEmpty());
}

void tst_ColorLab::unreadableFileOpensNoDialogAndSaysSo()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString file = tmp.filePath(QStringLiteral("words.jpg"));
    QVERIFY(ImageFixtures::writeFile(file, "no image here\n"));
    ImagesPage page;
    QTest::ignoreMessage(QtWarningMsg, qPrintable(QStringLiteral("Couldn't read image %1.").arg(file)));

    QVERIFY(!page.showInformation(file));

    QVERIFY(dialogsOf(page).isEmpty());
    bool said = false;
    for (const QLabel* label : page.findChildren<QLabel*>())
        said = said || label->text().contains(QDir::toNativeSeparators(file));
    QVERIFY(said);
}

// --- Dialog page -------------------------------------------------------------------

void tst_ColorLab::imagesPageWritesSampleRendersWithTheirGroupsStamped()
{
    ImagesPage page;
    const QDir folder(page.sampleRendersFolder());
    QVERIFY(!page.sampleRendersFolder().isEmpty());
    // File, leading bytes of its format, and its groups: 1 camera, 2 node
    // visibilities, 4 switch nodes, 8 image, 16 animation, 32 render
    // passes, 64 ray tracing, 128 switch materials.
    const QVector<std::tuple<QString, QByteArray, int>> expected = {
        {QStringLiteral("atrium-camera.png"), QByteArray("\x89PNG", 4), 1 | 8},
        {QStringLiteral("atrium-animation.jpg"), QByteArray("\xff\xd8", 2), 8 | 16 | 32},
        {QStringLiteral("showroom-variants.tif"), QByteArray("II*\0", 4), 1 | 2 | 4 | 128},
        {QStringLiteral("studio-raytraced.png"), QByteArray("\x89PNG", 4), 1 | 8 | 64},
        {QStringLiteral("sky-unstamped.jpg"), QByteArray("\xff\xd8", 2), 0}};
    QCOMPARE(folder.entryList(QDir::Files).size(), expected.size());
    for (const auto& file : expected) {
        const QString path = folder.filePath(std::get<0>(file));
        QVERIFY2(ImageFixtures::readFile(path).startsWith(std::get<1>(file)), qPrintable(path));
        QCOMPARE(groupsReadFrom(path), std::get<2>(file));
    }
}

void tst_ColorLab::choiceShowsThePathAndTheNamedGroups()
{
    ImagesPage page;
    QCOMPARE(page.choiceLabel()->text(), QStringLiteral("Chosen file: none"));

    page.showChoice(QStringLiteral("/renders/hall.png"), 1 | 8 | 128);

    QCOMPARE(page.choiceLabel()->text(), QStringLiteral("Chosen file: /renders/hall.png"));
    QCOMPARE(page.groupsLabel()->text(),
             QStringLiteral("Render-settings groups: Camera Settings, Image Settings, "
                            "Switch Material States (mask 137)"));
    page.showChoice(QStringLiteral("/renders/plain.png"), 0);
    QCOMPARE(page.groupsLabel()->text(), QStringLiteral("Render-settings groups: none (mask 0)"));
}

void tst_ColorLab::browseButtonShowsTheFileAndGroupsChosenInTheBrowser()
{
    ImagesPage page;
    const QString chosen = QDir(page.sampleRendersFolder()).filePath(QStringLiteral("atrium-camera.png"));

    chooseInNextImageBrowser(chosen);
    page.browseButton()->click();

    QCOMPARE(page.choiceLabel()->text(), QStringLiteral("Chosen file: ") + chosen);
    QCOMPARE(page.groupsLabel()->text(),
             QStringLiteral("Render-settings groups: Camera Settings, Image Settings (mask 9)"));
}

// The picker program beside the test program (the build's bin folder)
// chooses through its test mode.
void tst_ColorLab::pickerButtonShowsTheFileAndGroupsChosenInThePickerProgram()
{
    QTemporaryDir cache;
    QVERIFY(cache.isValid());
    qputenv("XDG_CACHE_HOME", QFile::encodeName(cache.path()));
    ImagesPage page;
    const QString chosen =
        QDir(page.sampleRendersFolder()).filePath(QStringLiteral("showroom-variants.tif"));
    qputenv("QTCOLOR_PICKER_ACCEPT", QFile::encodeName(chosen));

    page.pickerButton()->click();
    qunsetenv("QTCOLOR_PICKER_ACCEPT");
    qunsetenv("XDG_CACHE_HOME");

    QCOMPARE(page.choiceLabel()->text(), QStringLiteral("Chosen file: ") + chosen);
    QCOMPARE(page.groupsLabel()->text(),
             QStringLiteral("Render-settings groups: Camera Settings, Node Visibilities, "
                            "Switch Node States, Switch Material States (mask 135)"));
}

void tst_ColorLab::dialogPageOpensTheDialogWithoutBlockingTheWindow()
{
    DialogPage page;
    QVERIFY(shown(page));
    QVERIFY(!page.dialog()->isVisible());

    QTest::mouseClick(page.openButton(), Qt::LeftButton);

    QVERIFY(page.dialog()->isVisible());
    QVERIFY(!page.dialog()->isModal());
    QCOMPARE(QApplication::activeModalWidget(), nullptr);
    QVERIFY(page.dialog()->isWindow());
    page.dialog()->close();
}

void tst_ColorLab::dialogPageShowsEachColourTheDialogSends()
{
    QZEColor::s_useGamma = true;
    DialogPage page;

    page.dialog()->setColor(DustyRed); // sent back linear while the switch is on

    QCOMPARE(page.receivedColor().h, DustyRed.h);
    QCOMPARE(page.receivedColor().s, DustyRed.s);
    QCOMPARE(page.receivedColor().v, DustyRed.v);
    QCOMPARE(swatchColors(page), (QVector<QColor>{DustyRedScreenBytes, DustyRedLinearBytes}));
    QCOMPARE(formValue(page, QStringLiteral("RGB as sent")), QStringLiteral("0.500, 0.250, 0.250"));
    QCOMPARE(formValue(page, QStringLiteral("Linear RGB")), QStringLiteral("0.500, 0.250, 0.250"));
    // 0.73536 and 0.53710, worked out beside DustyRed.
    QCOMPARE(formValue(page, QStringLiteral("sRGB-encoded RGB")), QStringLiteral("0.735, 0.537, 0.537"));
    QCOMPARE(formValue(page, QStringLiteral("Screen colour")), QStringLiteral("#bb8888"));
    QVERIFY(formValue(page, QStringLiteral("Form sent")).startsWith(QStringLiteral("linear")));
}

void tst_ColorLab::dialogPageFollowsAnEditInTheDialog()
{
    QZEColor::s_useGamma = true;
    DialogPage page;
    page.dialog()->setColor(DustyRed);
    auto* hue = page.dialog()->findChild<QDoubleSpinBox*>(QStringLiteral("_hueSpiner"));
    QVERIFY(hue);

    hue->setValue(120.0); // as if typed: the dialog's handler runs and emits

    QCOMPARE(page.receivedColor().h, 120.0f);
    QCOMPARE(page.receivedColor().s, DustyRed.s);
    QCOMPARE(page.receivedColor().v, DustyRed.v);
    // Linear (0.25, 0.5, 0.25): the red and green bytes of DustyRed swap.
    QCOMPARE(swatchColors(page).value(0), QColor(136, 187, 136));
}

void tst_ColorLab::dialogPageKeepsTheScreenColourWhenTheSrgbSwitchFlips()
{
    QZEColor::s_useGamma = true;
    DialogPage page;
    page.dialog()->setColor(DustyRed);
    auto* useGamma = page.dialog()->findChild<QCheckBox*>(QStringLiteral("_useGamma"));
    QVERIFY(useGamma);
    QVERIFY(useGamma->isChecked());

    useGamma->click(); // the dialog now sends sRGB-encoded values

    QCOMPARE(QZEColor::s_useGamma, false);
    QVERIFY(formValue(page, QStringLiteral("Form sent")).startsWith(QStringLiteral("sRGB-encoded")));
    QCOMPARE(formValue(page, QStringLiteral("RGB as sent")), QStringLiteral("0.735, 0.537, 0.537"));
    QCOMPARE(formValue(page, QStringLiteral("Linear RGB")), QStringLiteral("0.500, 0.250, 0.250"));
    // On screen nothing changes; the unconverted values now are the screen bytes.
    QCOMPARE(swatchColors(page), (QVector<QColor>{DustyRedScreenBytes, DustyRedScreenBytes}));

    useGamma->click();

    QCOMPARE(QZEColor::s_useGamma, true);
    QCOMPARE(swatchColors(page), (QVector<QColor>{DustyRedScreenBytes, DustyRedLinearBytes}));
}

void tst_ColorLab::dialogPageLendsItsDaylightSpectrumToTheDialogWhenOpening()
{
    DialogPage page;
    const osg::SpectrumPtr material = page.materialSpectrum();
    QVERIFY(material);
    QVERIFY(page.dialog()->getSpectrum() != material);
    QCOMPARE(material->getStartWavelength(), 380);
    QCOMPARE(material->getDeltaWavelength(), 5);
    QCOMPARE(material->getNumSamples(), 81);
    QVERIFY(std::abs(material->getSourceValues(D65Index560) - 1.0f) < 0.02f);
    QVERIFY(std::abs(material->getSourceValues(D65Index460) - D65At460) < 0.03f);

    QTest::mouseClick(page.openButton(), Qt::LeftButton);

    QCOMPARE(page.dialog()->getSpectrum(), material);
    QCOMPARE(page.dialog()->getSpectrumPlot()->getSpectrum(), material);
    auto* tabs = page.dialog()->findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    QVERIFY(tabs);
    QVERIFY(tabs->isTabEnabled(tabs->indexOf(page.dialog()->findChild<QWidget*>(QStringLiteral("_spectrum_tab")))));
    page.dialog()->close();
}

void tst_ColorLab::dialogPageShowsTheMaterialColourAfterAnRgbEditInTheSpectrumTab()
{
    QZEColor::s_useGamma = true;
    DialogPage page;
    QVERIFY(shown(page));
    page.openDialog();
    const QPainterPath daylightCurve = page.materialPlot()->getCurve()->path();
    const float rgb[3] = {0.6f, 0.3f, 0.1f};
    const char* const sliders[3] = {"_redSlider_s", "_greenSlider_s", "_blueSlider_s"};
    for (int i = 0; i < 3; ++i) {
        auto* slider = page.dialog()->findChild<QZEColorSlider*>(QString::fromLatin1(sliders[i]));
        QVERIFY(slider);
        slider->setValue(rgb[i]);
    }

    page.dialog()->rgbSpectrumSliderChanged(rgb[0]);

    // The spectrum now reflects about linear (0.6, 0.3, 0.1) times its
    // brightness, shown with its brightest channel at 1: (1, 0.5, 0.167),
    // whose sRGB encoding is (1, 0.735, 0.445), bytes (255, 188, 113). A
    // spectrum built from RGB gives its colour back only closely, hence the
    // margin.
    const QColor onSwatch = materialSwatchColor(page);
    const QColor expected(255, 188, 113);
    QVERIFY2(std::abs(onSwatch.red() - expected.red()) <= 6 && std::abs(onSwatch.green() - expected.green()) <= 6
                 && std::abs(onSwatch.blue() - expected.blue()) <= 6,
             qPrintable(onSwatch.name()));
    QCOMPARE(page.materialColor(), onSwatch);
    QVERIFY(page.materialPlot()->getCurve()->path() != daylightCurve);
    page.dialog()->close();
}

void tst_ColorLab::dialogPageShowsTheFileNameOfASpectrumLoadedInTheDialog()
{
    QTemporaryDir tmp;
    QVERIFY(tmp.isValid());
    const QString path = tmp.filePath(QStringLiteral("leaf.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QByteArray columns("400 0.25\n500 0.5\n600 0.75\n700 1.0\n");
    QCOMPARE(file.write(columns), qint64(columns.size()));
    file.close();
    DialogPage page;
    page.openDialog();
    QVERIFY(page.materialFileLabel()->text() != QStringLiteral("leaf.txt"));
    auto* line = page.dialog()->findChild<QLineEdit*>(QStringLiteral("_load_spectrum_line"));
    QVERIFY(line);

    line->setText(path);
    QTest::keyClick(line, Qt::Key_Return);

    QCOMPARE(page.materialSpectrum()->getSourceValues(), (std::vector<float>{0.25f, 0.5f, 0.75f, 1.0f}));
    QCOMPARE(page.materialFileLabel()->text(), QStringLiteral("leaf.txt"));
    QCOMPARE(page.materialFileLabel()->toolTip(), QDir::toNativeSeparators(path));
    page.dialog()->close();
}

QTEST_MAIN(tst_ColorLab)
#include "tst_ColorLab.moc"
