#include "ImageFixtures.h"
#include "TestHelpers.h"
#include "zeTextureMetaDataGUII.h"

#include <osgImage.h>
#include <zeLog.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QAbstractTextDocumentLayout>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <QPushButton>
#include <QSignalSpy>
#include <QStyle>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTranslator>
#include <QVBoxLayout>
#include <QtTest>

#include <map>
#include <utility>

namespace {

// The dialog with its line building open to blocks given as text.
class LinesDialog : public zeTextureMetaDataGUII
{
public:
    using zeTextureMetaDataGUII::showMetaDataLines;
};

// Translates each (context, source) pair it holds, nothing else.
class MapTranslator : public QTranslator
{
public:
    explicit MapTranslator(std::map<std::pair<QString, QString>, QString> texts)
        : _texts(std::move(texts))
    {
    }
    bool isEmpty() const override { return false; }
    QString translate(const char* context, const char* source, const char* = nullptr,
                      int = -1) const override
    {
        const auto found =
            _texts.find({QString::fromUtf8(context), QString::fromUtf8(source)});
        return found == _texts.end() ? QString() : found->second;
    }

private:
    std::map<std::pair<QString, QString>, QString> _texts;
};

QStringList s_warnings;

void collectWarning(const char* message)
{
    s_warnings.append(QString::fromUtf8(message));
}

QTextEdit* textBoxOf(const QWidget& dialog)
{
    return dialog.findChild<QTextEdit*>(QStringLiteral("_metadata"));
}

QStringList linesOf(const QWidget& dialog)
{
    return textBoxOf(dialog)->toPlainText().split(QLatin1Char('\n'));
}

QString fileNameOf(const QWidget& dialog)
{
    return dialog.findChild<QLabel*>(QStringLiteral("_filename"))->text();
}

// The four lines every image gets, for an image that was never read.
const QStringList UnreadImageLines = {QStringLiteral("Dimension:\t\t0 x 0 px"),
                                      QStringLiteral("Depth:\t\t0"),
                                      QStringLiteral("Color channel:\t\tNo"),
                                      QStringLiteral("Alpha channel:\t\tNo")};

// The lines a dialog shows for an unread image and the given blocks.
QStringList linesFor(const std::string& baseline, const std::string& exif)
{
    LinesDialog dialog;
    const osg::ImagePtr image = osg::Image::create();
    dialog.showMetaDataLines(*image, baseline, exif);
    return linesOf(dialog);
}

// The exposure lines alone: what follows the fixed lines and the EXIF
// separator line.
QStringList exposureLinesFor(const std::string& exif)
{
    return linesFor(std::string(), exif).mid(UnreadImageLines.size() + 1);
}

osg::ImagePtr imageNamed(const QString& path)
{
    const osg::ImagePtr image = osg::Image::create();
    image->setName(path.toUtf8().toStdString());
    return image;
}

// What exiv2 itself reads from the file for key, as the dialog's value
// (after the loader's blank).
QString tagAsWritten(const QString& path, const char* key)
{
    auto image = Exiv2::ImageFactory::open(path.toStdString());
    image->readMetadata();
    return QLatin1Char(' ') + QString::fromStdString(image->exifData()[key].toString());
}

// Exposure tags as a camera writes them. Exposure 1/100 s; f/5.6; Tv 6.64
// (log2 100); Av 4.97 (2 log2 5.6); bias -1/3 EV written as -0.33; a
// distance of 3.5 m; a 50 mm lens, 75 mm in 35 mm terms.
const ImageFixtures::Tags CameraTags = {
    {"Exif.Image.Make", "Maker"},
    {"Exif.Image.Model", "Model 7"},
    {"Exif.Photo.ExposureTime", "1/100"},
    {"Exif.Photo.FNumber", "56/10"},
    {"Exif.Photo.ShutterSpeedValue", "664/100"},
    {"Exif.Photo.ApertureValue", "497/100"},
    {"Exif.Photo.ExposureBiasValue", "-1/3"},
    {"Exif.Photo.SubjectDistance", "35/10"},
    {"Exif.Photo.FocalLength", "50/1"},
    {"Exif.Photo.FocalLengthIn35mmFilm", "75"},
};

// The lines for CameraTags after the baseline block's own lines.
const QStringList CameraLines = {
    QStringLiteral("Camera maker:\t\t Maker"),
    QStringLiteral("Camera model:\t\t Model 7"),
    QString(),
    QStringLiteral("Exposure time:\t\t 1/100\""),
    QStringLiteral("F number:\t\tF 5.6"),
    QStringLiteral("Shutter speed:\t\t 6.64 Tv( 1/100\")"),
    QStringLiteral("Aperture:\t\t 4.97 Av (F 5.6)"),
    QStringLiteral("Exposure bias:\t\t -0.33 EV"),
    QStringLiteral("Subject distance:\t 3.5 m"),
    QStringLiteral("Lens focal length:\t 50 mm"),
    QStringLiteral("Lens focal length in 35mm:\t 75 mm"),
};

// Blocks with every key, each listing its keys in an order other than the
// dialog's (the focal length before the 35 mm key, whose name it begins).
const std::string FullBaseline = "@COPYRIGHT (c) Someone\n@ARTIST Artist A\n"
                                 "@IMAGEDESCRIPTION A view\n@SOFTWARE Tool 2\n@MODEL Model 7\n"
                                 "@MAKE Maker\n@BITS_PER_SAMPLE 8\n@SAMPLES_PER_PIXEL 3\n";
const std::string FullExif = "@FOCAL_LENGTH 50\n@FOCAL_LENGTH_IN _35MM_FILM 75\n"
                             "@SUBJECT_DISTANCE 3.5\n@EXPOSURE_BIAS -0.33\n@BRIGHTNESS 5.25\n"
                             "@APERTURE 4.97\n@SHUTTER_SPEED 6.64\n@F_NUMBER 5.6\n"
                             "@EXPOSURE_TIME 1/100\n";

// Where, in the text box's document, the line's character at position
// starts (line is the layout line the character is on).
qreal documentX(const QTextBlock& block, int position)
{
    const QTextLayout* layout = block.layout();
    const QTextLine line = layout->lineForTextPosition(position);
    return layout->position().x() + line.cursorToX(position);
}

} // namespace

class tst_zeTextureMetaDataGUII : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void formHoldsEveryObjectWithItsSettings();
    void formTextsAreTranslatedInTheFormContext();
    void okButtonIsTheDefaultAndAccepts();
    void dialogIsNonModalWithoutFlags();
    void dialogDeletesItselfOnClose();
    void declaresNoSignalsOrSlotsOfItsOwn();

    void getKeyValueFailsOnEmptyText();
    void getKeyValueFailsWithoutTheKeyAndLeavesTheValue();
    void getKeyValueTakesTheRestOfTheLineVerbatim_data();
    void getKeyValueTakesTheRestOfTheLineVerbatim();
    void getKeyValueKeyHoldingALineFeedGivesAnEmptyValue();

    void shutterSpeedLineAppendsTheExposureTimeInParentheses();
    void subjectDistanceGetsTheMetreUnitUnlessItIsAWord_data();
    void subjectDistanceGetsTheMetreUnitUnlessItIsAWord();
    void focalLengthTakesTheRemainderOfThe35mmKeyWhenThatComesFirst();
    void samplesPerPixelOnlyInTheExifBlockIsShown();
    void baselineWithoutDescriptiveTagsStillGivesItsSeparatorLine();
    void emptyBlocksGiveOnlyTheFourFixedLines();
    void baselineCountsWinOverTheExifBlock();
    void descriptiveTagsAreLookedUpInTheBaselineOnly();
    void exposureTagsAreLookedUpInTheExifOnly();
    void fullBlocksGiveEveryLineInOrder();
    void apexValuesStandAloneWithoutTheirPlainValues();
    void labelsAndUnitsAreTranslatedInTheDialogContext();
    void markupInATagValueIsShownAsPlainText();
    void valuesStartInOneColumnPastEveryLabel();
    void textBoxShowsTheFirstLinesAfterFilling();

    void jpegWithExifShowsItsTagsWithUnits();
    void tiffWithExifShowsItsBaselineAndExposureTags();
    void cameraDistancesReadAsWordsOrMetres_data();
    void cameraDistancesReadAsWordsOrMetres();
    void exifInsideXmpIsShownAfterTheExifBlock();
    void pngWithoutMetadataShowsOnlyWhatTheDecoderKnows();
    void unreadableFileWarnsKeepsTheTextAndFails();
    void nullImageFailsAndChangesNothing();
    void secondSuccessReplacesTheText();
    void secondFailureKeepsTheTextAndShowsTheNewName();

private:
    QString path(const QString& name) const { return _dir.filePath(name); }
    QString cameraFile(const QString& name, const QByteArray& format) const;

    QTemporaryDir _dir;
    zeLog::Handler _previousHandler = nullptr;
};

void tst_zeTextureMetaDataGUII::initTestCase()
{
    QVERIFY(_dir.isValid());
}

void tst_zeTextureMetaDataGUII::init()
{
    s_warnings.clear();
    _previousHandler = zeLog::setWarningHandler(collectWarning);
}

void tst_zeTextureMetaDataGUII::cleanup()
{
    zeLog::setWarningHandler(_previousHandler);
}

QString tst_zeTextureMetaDataGUII::cameraFile(const QString& name, const QByteArray& format) const
{
    const QString file = path(name);
    if (!ImageFixtures::writePlain(file, format) || !ImageFixtures::addTags(file, CameraTags))
        return QString();
    return file;
}

// --- The form -----------------------------------------------------------------

void tst_zeTextureMetaDataGUII::formHoldsEveryObjectWithItsSettings()
{
    zeTextureMetaDataGUII dialog;

    QCOMPARE(dialog.objectName(), QStringLiteral("zeTextureMetaDataGUI"));
    QCOMPARE(dialog.windowTitle(), QStringLiteral("Image Information"));
    QCOMPARE(dialog.size(), QSize(420, 420));
    QCOMPARE(dialog.sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(dialog.sizePolicy().verticalPolicy(), QSizePolicy::Fixed);

    auto* vertical = qobject_cast<QVBoxLayout*>(dialog.layout());
    QVERIFY(vertical);
    QCOMPARE(vertical->objectName(), QStringLiteral("verticalLayout"));
    QCOMPARE(vertical->count(), 3);
    // The style's margins for a window, but 12 on the right.
    const QStyle* style = dialog.style();
    const QMargins margins = vertical->contentsMargins();
    QCOMPARE(margins.left(), style->pixelMetric(QStyle::PM_LayoutLeftMargin, nullptr, &dialog));
    QCOMPARE(margins.top(), style->pixelMetric(QStyle::PM_LayoutTopMargin, nullptr, &dialog));
    QCOMPARE(margins.right(), 12);
    QCOMPARE(margins.bottom(), style->pixelMetric(QStyle::PM_LayoutBottomMargin, nullptr, &dialog));
    QCOMPARE(vertical->stretch(0), 0);
    QCOMPARE(vertical->stretch(1), 1);
    QCOMPARE(vertical->stretch(2), 0);

    auto* top = qobject_cast<QHBoxLayout*>(vertical->itemAt(0)->layout());
    QVERIFY(top);
    QCOMPARE(top->objectName(), QStringLiteral("horizontalLayout_2"));
    QCOMPARE(top->count(), 1);
    auto* filename = qobject_cast<QLabel*>(top->itemAt(0)->widget());
    QVERIFY(filename);
    QCOMPARE(filename->objectName(), QStringLiteral("_filename"));
    QCOMPARE(filename->text(), QStringLiteral("<filename>"));
    QCOMPARE(filename->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(filename->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(filename->minimumSize(), QSize(230, 0));
    QVERIFY(filename->wordWrap());

    auto* text = qobject_cast<QTextEdit*>(vertical->itemAt(1)->widget());
    QVERIFY(text);
    QCOMPARE(text->objectName(), QStringLiteral("_metadata"));
    QCOMPARE(text->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
    QCOMPARE(text->sizePolicy().verticalPolicy(), QSizePolicy::Expanding);
    QCOMPARE(text->minimumSize(), QSize(360, 280));
    QVERIFY(text->tabChangesFocus());
    QVERIFY(text->isReadOnly());
    QVERIFY(text->toPlainText().isEmpty());
    QCOMPARE(text->document()->blockCount(), 1);
    QVERIFY(text->toHtml().contains(QStringLiteral("<p")));

    auto* bottom = qobject_cast<QHBoxLayout*>(vertical->itemAt(2)->layout());
    QVERIFY(bottom);
    QCOMPARE(bottom->objectName(), QStringLiteral("horizontalLayout"));
    QCOMPARE(bottom->count(), 2);
    QVERIFY(bottom->itemAt(0)->spacerItem());
    QCOMPARE(bottom->itemAt(0)->spacerItem()->sizePolicy().horizontalPolicy(),
             QSizePolicy::Expanding);
    auto* ok = qobject_cast<QPushButton*>(bottom->itemAt(1)->widget());
    QVERIFY(ok);
    QCOMPARE(ok->objectName(), QStringLiteral("_ok"));
    QCOMPARE(ok->text(), QStringLiteral("Ok"));
}

void tst_zeTextureMetaDataGUII::formTextsAreTranslatedInTheFormContext()
{
    MapTranslator translator({
        {{QStringLiteral("zeTextureMetaDataGUI"), QStringLiteral("Image Information")},
         QStringLiteral("Bildinformation")},
        {{QStringLiteral("zeTextureMetaDataGUI"), QStringLiteral("Ok")}, QStringLiteral("OK!")},
    });
    QVERIFY(QCoreApplication::installTranslator(&translator));
    zeTextureMetaDataGUII dialog;
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(dialog.windowTitle(), QStringLiteral("Bildinformation"));
    QCOMPARE(dialog.findChild<QPushButton*>(QStringLiteral("_ok"))->text(), QStringLiteral("OK!"));
}

void tst_zeTextureMetaDataGUII::okButtonIsTheDefaultAndAccepts()
{
    QPointer<zeTextureMetaDataGUII> dialog = new zeTextureMetaDataGUII;
    auto* ok = dialog->findChild<QPushButton*>(QStringLiteral("_ok"));
    QVERIFY(ok->isDefault());
    QSignalSpy accepted(dialog.data(), SIGNAL(accepted()));
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.data()));

    QTest::keyClick(dialog.data(), Qt::Key_Return);

    QCOMPARE(accepted.count(), 1);
    QCOMPARE(dialog->result(), int(QDialog::Accepted));
    delete dialog.data();
}

void tst_zeTextureMetaDataGUII::dialogIsNonModalWithoutFlags()
{
    QWidget parent;
    zeTextureMetaDataGUII dialog(&parent);

    QCOMPARE(dialog.parentWidget(), &parent);
    QCOMPARE(dialog.windowModality(), Qt::NonModal);
    QVERIFY(!dialog.isModal());
    QCOMPARE(dialog.windowType(), Qt::Dialog);
    QVERIFY(dialog.testAttribute(Qt::WA_DeleteOnClose));
}

void tst_zeTextureMetaDataGUII::dialogDeletesItselfOnClose()
{
    QPointer<zeTextureMetaDataGUII> dialog = new zeTextureMetaDataGUII;
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.data()));

    dialog->findChild<QPushButton*>(QStringLiteral("_ok"))->click();

    QTRY_VERIFY(dialog.isNull());
}

void tst_zeTextureMetaDataGUII::declaresNoSignalsOrSlotsOfItsOwn()
{
    const QMetaObject& meta = zeTextureMetaDataGUII::staticMetaObject;
    QCOMPARE(meta.superClass(), &QDialog::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 0);
}

// --- Key lookup -----------------------------------------------------------------

void tst_zeTextureMetaDataGUII::getKeyValueFailsOnEmptyText()
{
    zeTextureMetaDataGUII dialog;
    std::string value = "kept";
    QVERIFY(!dialog.getKeyValue("@MAKE", "", value));
    QVERIFY(!dialog.getKeyValue("", "", value));
    QCOMPARE(value, std::string("kept"));
}

void tst_zeTextureMetaDataGUII::getKeyValueFailsWithoutTheKeyAndLeavesTheValue()
{
    zeTextureMetaDataGUII dialog;
    std::string value = "kept";
    QVERIFY(!dialog.getKeyValue("@MODEL", "@MAKE Maker\n@MODE L\n", value));
    QCOMPARE(value, std::string("kept"));
}

void tst_zeTextureMetaDataGUII::getKeyValueTakesTheRestOfTheLineVerbatim_data()
{
    QTest::addColumn<QByteArray>("key");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QByteArray>("value");

    QTest::newRow("blank separator kept") << QByteArray("@MAKE") << QByteArray("@MAKE Maker\n")
                                          << QByteArray(" Maker");
    QTest::newRow("no separator") << QByteArray("@MAKE") << QByteArray("@MAKEMaker\n")
                                  << QByteArray("Maker");
    QTest::newRow("trailing blanks and CR kept") << QByteArray("@MAKE")
                                                 << QByteArray("@MAKE\tA b  \r\n@MODEL M\n")
                                                 << QByteArray("\tA b  \r");
    QTest::newRow("last line without line feed") << QByteArray("@MODEL")
                                                 << QByteArray("@MAKE A\n@MODEL M 2")
                                                 << QByteArray(" M 2");
    QTest::newRow("key at the very end") << QByteArray("@MODEL") << QByteArray("@MAKE A\n@MODEL")
                                         << QByteArray();
    QTest::newRow("key right before the line feed") << QByteArray("@MAKE")
                                                    << QByteArray("@MAKE\n@MODEL M\n")
                                                    << QByteArray();
    QTest::newRow("first occurrence wins") << QByteArray("@MAKE")
                                           << QByteArray("@MAKE first\n@MAKE second\n")
                                           << QByteArray(" first");
    QTest::newRow("inside a word, mid-line") << QByteArray("@MAKE")
                                             << QByteArray("x @MAKEUP artist\n")
                                             << QByteArray("UP artist");
    QTest::newRow("prefix of a longer key") << QByteArray("@FOCAL_LENGTH")
                                            << QByteArray("@FOCAL_LENGTH_IN _35MM_FILM 75\n"
                                                          "@FOCAL_LENGTH 50\n")
                                            << QByteArray("_IN _35MM_FILM 75");
    QTest::newRow("UTF-8 bytes untouched") << QByteArray("@ARTIST")
                                           << QByteArray("@ARTIST J\xc3\xbcrgen\n")
                                           << QByteArray(" J\xc3\xbcrgen");
}

void tst_zeTextureMetaDataGUII::getKeyValueTakesTheRestOfTheLineVerbatim()
{
    QFETCH(QByteArray, key);
    QFETCH(QByteArray, text);
    QFETCH(QByteArray, value);
    zeTextureMetaDataGUII dialog;
    std::string found = "before";

    QVERIFY(dialog.getKeyValue(key.toStdString(), text.toStdString(), found));

    QCOMPARE(QByteArray::fromStdString(found), value);
}

void tst_zeTextureMetaDataGUII::getKeyValueKeyHoldingALineFeedGivesAnEmptyValue()
{
    zeTextureMetaDataGUII dialog;
    std::string value = "before";
    QVERIFY(dialog.getKeyValue("@A\n", "@A\nvalue\n", value));
    QCOMPARE(value, std::string());
}

// --- Lines from blocks given as text ------------------------------------------------

void tst_zeTextureMetaDataGUII::shutterSpeedLineAppendsTheExposureTimeInParentheses()
{
    const QStringList lines = exposureLinesFor("@SHUTTER_SPEED 6.64\n@EXPOSURE_TIME 1/100\n");

    QCOMPARE(lines, QStringList({QStringLiteral("Exposure time:\t\t 1/100\""),
                                 QStringLiteral("Shutter speed:\t\t") + QStringLiteral(" 6.64")
                                     + QStringLiteral(" Tv") + QStringLiteral("(")
                                     + QStringLiteral(" 1/100") + QStringLiteral("\"")
                                     + QStringLiteral(")")}));
}

void tst_zeTextureMetaDataGUII::subjectDistanceGetsTheMetreUnitUnlessItIsAWord_data()
{
    QTest::addColumn<QByteArray>("exif");
    QTest::addColumn<QString>("line");

    QTest::newRow("Infinity right after the key")
        << QByteArray("@SUBJECT_DISTANCEInfinity\n") << QStringLiteral("Subject distance:\tInfinity");
    QTest::newRow("unknown right after the key")
        << QByteArray("@SUBJECT_DISTANCEDistance unknown\n")
        << QStringLiteral("Subject distance:\tDistance unknown");
    QTest::newRow("Infinity after a blank") << QByteArray("@SUBJECT_DISTANCE Infinity\n")
                                            << QStringLiteral("Subject distance:\t Infinity m");
    QTest::newRow("unknown after a blank")
        << QByteArray("@SUBJECT_DISTANCE Distance unknown\n")
        << QStringLiteral("Subject distance:\t Distance unknown m");
    QTest::newRow("Infinity with a trailing blank") << QByteArray("@SUBJECT_DISTANCEInfinity \n")
                                                    << QStringLiteral("Subject distance:\tInfinity  m");
    QTest::newRow("metres") << QByteArray("@SUBJECT_DISTANCE 3.5\n")
                            << QStringLiteral("Subject distance:\t 3.5 m");
}

void tst_zeTextureMetaDataGUII::subjectDistanceGetsTheMetreUnitUnlessItIsAWord()
{
    QFETCH(QByteArray, exif);
    QFETCH(QString, line);
    QCOMPARE(exposureLinesFor(exif.toStdString()), QStringList{line});
}

void tst_zeTextureMetaDataGUII::focalLengthTakesTheRemainderOfThe35mmKeyWhenThatComesFirst()
{
    const QStringList lines =
        exposureLinesFor("@FOCAL_LENGTH_IN _35MM_FILM 75\n@FOCAL_LENGTH 50\n");

    QCOMPARE(lines, QStringList({QStringLiteral("Lens focal length:\t_IN _35MM_FILM 75 mm"),
                                 QStringLiteral("Lens focal length in 35mm:\t 75 mm")}));
}

void tst_zeTextureMetaDataGUII::samplesPerPixelOnlyInTheExifBlockIsShown()
{
    const QStringList lines = linesFor("", "@SAMPLES_PER_PIXEL 4\n");

    QCOMPARE(lines, UnreadImageLines
                        + QStringList({QStringLiteral("Samples per pixel:\t 4"), QString()}));
}

void tst_zeTextureMetaDataGUII::baselineWithoutDescriptiveTagsStillGivesItsSeparatorLine()
{
    const QStringList lines = linesFor("@ORIENTATION 1\n", "");

    QCOMPARE(lines, UnreadImageLines + QStringList{QString()});
}

void tst_zeTextureMetaDataGUII::emptyBlocksGiveOnlyTheFourFixedLines()
{
    QCOMPARE(linesFor("", ""), UnreadImageLines);
}

void tst_zeTextureMetaDataGUII::baselineCountsWinOverTheExifBlock()
{
    const QStringList lines = linesFor("@SAMPLES_PER_PIXEL 3\n", "@SAMPLES_PER_PIXEL 4\n"
                                                                 "@BITS_PER_SAMPLE 16\n");

    QCOMPARE(lines, UnreadImageLines
                        + QStringList({QStringLiteral("Samples per pixel:\t 3"),
                                       QStringLiteral("Bits per sample:\t\t 16"), QString(),
                                       QString()}));
}

void tst_zeTextureMetaDataGUII::descriptiveTagsAreLookedUpInTheBaselineOnly()
{
    const QStringList lines = linesFor("", "@MAKE Maker\n@COPYRIGHT Someone\n");

    QCOMPARE(lines, UnreadImageLines + QStringList{QString()});
}

void tst_zeTextureMetaDataGUII::exposureTagsAreLookedUpInTheExifOnly()
{
    const QStringList lines = linesFor("@EXPOSURE_TIME 1/100\n@F_NUMBER 8\n", "");

    QCOMPARE(lines, UnreadImageLines + QStringList{QString()});
}

void tst_zeTextureMetaDataGUII::fullBlocksGiveEveryLineInOrder()
{
    const QStringList lines = linesFor(FullBaseline, FullExif);

    QCOMPARE(lines, UnreadImageLines + QStringList({
                        QStringLiteral("Samples per pixel:\t 3"),
                        QStringLiteral("Bits per sample:\t\t 8"),
                        QString(),
                        QStringLiteral("Camera maker:\t\t Maker"),
                        QStringLiteral("Camera model:\t\t Model 7"),
                        QStringLiteral("Software:\t\t Tool 2"),
                        QStringLiteral("Artist:\t\t Artist A"),
                        QStringLiteral("Image description:\t A view"),
                        QStringLiteral("Copyright:\t\t (c) Someone"),
                        QString(),
                        QStringLiteral("Exposure time:\t\t 1/100\""),
                        QStringLiteral("F number:\t\tF 5.6"),
                        QStringLiteral("Shutter speed:\t\t 6.64 Tv( 1/100\")"),
                        QStringLiteral("Aperture:\t\t 4.97 Av (F 5.6)"),
                        QStringLiteral("Brightness:\t\t 5.25"),
                        QStringLiteral("Exposure bias:\t\t -0.33 EV"),
                        QStringLiteral("Subject distance:\t 3.5 m"),
                        QStringLiteral("Lens focal length:\t 50 mm"),
                        QStringLiteral("Lens focal length in 35mm:\t 75 mm"),
                    }));
}

void tst_zeTextureMetaDataGUII::apexValuesStandAloneWithoutTheirPlainValues()
{
    const QStringList lines = exposureLinesFor("@APERTURE 4.97\n@SHUTTER_SPEED 6.64\n");

    QCOMPARE(lines, QStringList({QStringLiteral("Shutter speed:\t\t 6.64 Tv"),
                                 QStringLiteral("Aperture:\t\t 4.97 Av")}));
}

void tst_zeTextureMetaDataGUII::labelsAndUnitsAreTranslatedInTheDialogContext()
{
    const QString context = QStringLiteral("zeTextureMetaDataGUII");
    MapTranslator translator({
        {{context, QStringLiteral("Color channel:\t\t")}, QStringLiteral("Farbe:\t")},
        {{context, QStringLiteral("Yes")}, QStringLiteral("Ja")},
        {{context, QStringLiteral("No")}, QStringLiteral("Nein")},
        {{context, QStringLiteral(" Tv")}, QStringLiteral(" TV")},
        {{context, QStringLiteral(" Av")}, QStringLiteral(" AV")},
        {{context, QStringLiteral(" (F")}, QStringLiteral(" (Blende ")},
        {{context, QStringLiteral(" EV")}, QStringLiteral(" LW")},
        {{context, QStringLiteral("Lens focal length:\t")}, QStringLiteral("Brennweite:\t")},
        // Units that are not translated: a translation is never asked for.
        {{context, QStringLiteral(" mm")}, QStringLiteral(" Millimeter")},
        {{context, QStringLiteral(" m")}, QStringLiteral(" Meter")},
    });
    QVERIFY(QCoreApplication::installTranslator(&translator));
    LinesDialog dialog;
    const osg::ImagePtr image = osg::Image::create();
    dialog.showMetaDataLines(*image, "",
                             "@EXPOSURE_TIME 1/100\n@F_NUMBER 5.6\n@SHUTTER_SPEED 6.64\n"
                             "@APERTURE 4.97\n@EXPOSURE_BIAS 0.00\n@SUBJECT_DISTANCE 2\n"
                             "@FOCAL_LENGTH 50\n");
    QCoreApplication::removeTranslator(&translator);

    const QStringList lines = linesOf(dialog);
    QCOMPARE(lines.at(2), QStringLiteral("Farbe:\tNein"));
    QCOMPARE(lines.at(3), QStringLiteral("Alpha channel:\t\tNein"));
    QCOMPARE(lines.mid(5), QStringList({
                               QStringLiteral("Exposure time:\t\t 1/100\""),
                               QStringLiteral("F number:\t\tF 5.6"),
                               QStringLiteral("Shutter speed:\t\t 6.64 TV( 1/100\")"),
                               QStringLiteral("Aperture:\t\t 4.97 AV (Blende  5.6)"),
                               QStringLiteral("Exposure bias:\t\t 0.00 LW"),
                               QStringLiteral("Subject distance:\t 2 m"),
                               QStringLiteral("Brennweite:\t 50 mm"),
                           }));
}

void tst_zeTextureMetaDataGUII::markupInATagValueIsShownAsPlainText()
{
    const QString description = QStringLiteral(" <img src=\"/dev/zero\"> <b>bold</b> &lt;");
    LinesDialog dialog;
    const osg::ImagePtr image = osg::Image::create();

    dialog.showMetaDataLines(*image, "@IMAGEDESCRIPTION" + description.toStdString() + "\n", "");

    QCOMPARE(linesOf(dialog).last(), QStringLiteral("Image description:\t") + description);
}

void tst_zeTextureMetaDataGUII::valuesStartInOneColumnPastEveryLabel()
{
    LinesDialog dialog;
    const osg::ImagePtr image = osg::Image::create();
    dialog.showMetaDataLines(*image, FullBaseline, FullExif);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));

    const QTextDocument* document = textBoxOf(dialog)->document();
    const QFontMetricsF metrics(document->defaultFont());
    QList<qreal> valueStarts;
    qreal widestLabel = 0.0;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        const QString line = block.text();
        const int firstTab = line.indexOf(QLatin1Char('\t'));
        if (firstTab < 0)
            continue;
        int value = firstTab;
        while (line.at(value) == QLatin1Char('\t'))
            ++value;
        widestLabel = std::max(widestLabel, metrics.horizontalAdvance(line.left(firstTab)));
        valueStarts.append(documentX(block, value));
    }
    QCOMPARE(valueStarts.size(), 4 + 2 + 6 + 9); // fixed, counts, descriptive, exposure
    for (qreal x : valueStarts)
        QZE_COMPARE_NEAR(x, valueStarts.first(), 0.5);
    QVERIFY2(valueStarts.first() > documentX(document->begin(), 0) + widestLabel,
             qPrintable(QString::number(valueStarts.first())));
}

void tst_zeTextureMetaDataGUII::textBoxShowsTheFirstLinesAfterFilling()
{
    LinesDialog dialog;
    // At its smallest the box holds fewer lines than the dialog writes, with
    // the line height of whatever font and Qt version the test runs on.
    dialog.resize(dialog.minimumSizeHint());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    const osg::ImagePtr image = osg::Image::create();

    dialog.showMetaDataLines(*image, FullBaseline, FullExif);
    QCoreApplication::processEvents();

    const QTextEdit* box = textBoxOf(dialog);
    QVERIFY(box->document()->size().height() > box->viewport()->height());
    const QScrollBar* scroll = box->verticalScrollBar();
    QVERIFY(scroll->maximum() > 0);
    QCOMPARE(scroll->value(), 0);
    QCOMPARE(textBoxOf(dialog)->textCursor().position(), 0);
}

// --- Real files -------------------------------------------------------------------

void tst_zeTextureMetaDataGUII::jpegWithExifShowsItsTagsWithUnits()
{
    const QString file = cameraFile(QStringLiteral("camera.jpg"), "jpeg");
    QVERIFY(!file.isEmpty());
    auto* dialog = new zeTextureMetaDataGUII;

    QVERIFY(dialog->showMetaDataInfo(imageNamed(file)));

    // An 8 x 6 colour image without alpha: JPEG stores three 8-bit samples.
    const QStringList expected = QStringList({QStringLiteral("Dimension:\t\t8 x 6 px"),
                                              QStringLiteral("Depth:\t\t1"),
                                              QStringLiteral("Color channel:\t\tYes"),
                                              QStringLiteral("Alpha channel:\t\tNo"),
                                              QStringLiteral("Samples per pixel:\t 3"),
                                              QStringLiteral("Bits per sample:\t\t 8"),
                                              QString()})
                                 + CameraLines;
    QCOMPARE(linesOf(*dialog), expected);
    QCOMPARE(fileNameOf(*dialog), file);
    QVERIFY(s_warnings.isEmpty());
    delete dialog;
}

void tst_zeTextureMetaDataGUII::tiffWithExifShowsItsBaselineAndExposureTags()
{
    const QString file = cameraFile(QStringLiteral("camera.tif"), "tiff");
    QVERIFY(!file.isEmpty());
    auto* dialog = new zeTextureMetaDataGUII;

    QVERIFY(dialog->showMetaDataInfo(imageNamed(file)));

    // The TIFF's own samples tag, as exiv2 reads it; 8 bits in each sample.
    const QStringList lines = linesOf(*dialog);
    QCOMPARE(lines.mid(0, 4), QStringList({QStringLiteral("Dimension:\t\t8 x 6 px"),
                                           QStringLiteral("Depth:\t\t1"),
                                           QStringLiteral("Color channel:\t\tYes"),
                                           QStringLiteral("Alpha channel:\t\tNo")}));
    QCOMPARE(lines.mid(4), QStringList({QStringLiteral("Samples per pixel:\t")
                                            + tagAsWritten(file, "Exif.Image.SamplesPerPixel"),
                                        QStringLiteral("Bits per sample:\t\t 8"), QString()})
                               + CameraLines);
    delete dialog;
}

void tst_zeTextureMetaDataGUII::cameraDistancesReadAsWordsOrMetres_data()
{
    QTest::addColumn<QByteArray>("distance");
    QTest::addColumn<QString>("line");

    // EXIF codes a numerator of 0xFFFFFFFF as infinity and 0 as unknown.
    QTest::newRow("infinity") << QByteArray("4294967295/1")
                              << QStringLiteral("Subject distance:\tInfinity");
    QTest::newRow("unknown") << QByteArray("0/1")
                             << QStringLiteral("Subject distance:\tDistance unknown");
    QTest::newRow("1.25 m") << QByteArray("125/100") << QStringLiteral("Subject distance:\t 1.25 m");
}

void tst_zeTextureMetaDataGUII::cameraDistancesReadAsWordsOrMetres()
{
    QFETCH(QByteArray, distance);
    QFETCH(QString, line);
    const QString file = path(QStringLiteral("distance.jpg"));
    QVERIFY(ImageFixtures::writePlain(file, "jpeg"));
    QVERIFY(ImageFixtures::addTags(file, {{"Exif.Photo.SubjectDistance", distance.toStdString()}}));
    auto* dialog = new zeTextureMetaDataGUII;

    QVERIFY(dialog->showMetaDataInfo(imageNamed(file)));

    QCOMPARE(linesOf(*dialog).last(), line);
    delete dialog;
}

void tst_zeTextureMetaDataGUII::exifInsideXmpIsShownAfterTheExifBlock()
{
    const QString file = path(QStringLiteral("xmp-exif.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    QVERIFY(ImageFixtures::addTags(file, {{"Xmp.exif.FNumber", "28/10"}}));
    auto* dialog = new zeTextureMetaDataGUII;

    QVERIFY(dialog->showMetaDataInfo(imageNamed(file)));

    QCOMPARE(linesOf(*dialog).mid(7), QStringList({QString(), QStringLiteral("F number:\t\tF 2.8")}));
    delete dialog;
}

void tst_zeTextureMetaDataGUII::pngWithoutMetadataShowsOnlyWhatTheDecoderKnows()
{
    const QString file = path(QStringLiteral("plain.png"));
    QVERIFY(ImageFixtures::writePlain(file, "png"));
    QVERIFY(ImageFixtures::metadataKeys(file).empty());
    auto* dialog = new zeTextureMetaDataGUII;

    QVERIFY(dialog->showMetaDataInfo(imageNamed(file)));

    // No tags at all: the four fixed lines, then the loader's baseline block
    // holds only the decoder's three 8-bit samples; no EXIF block.
    QCOMPARE(linesOf(*dialog), QStringList({QStringLiteral("Dimension:\t\t8 x 6 px"),
                                             QStringLiteral("Depth:\t\t1"),
                                             QStringLiteral("Color channel:\t\tYes"),
                                             QStringLiteral("Alpha channel:\t\tNo"),
                                             QStringLiteral("Samples per pixel:\t 3"),
                                             QStringLiteral("Bits per sample:\t\t 8"),
                                             QString()}));
    delete dialog;
}

void tst_zeTextureMetaDataGUII::unreadableFileWarnsKeepsTheTextAndFails()
{
    const QString file = path(QStringLiteral("words.jpg"));
    QVERIFY(ImageFixtures::writeFile(file, "no image here\n"));
    auto* dialog = new zeTextureMetaDataGUII;
    textBoxOf(*dialog)->setPlainText(QStringLiteral("earlier text"));

    QVERIFY(!dialog->showMetaDataInfo(imageNamed(file)));

    QCOMPARE(s_warnings, QStringList{QStringLiteral("Couldn't read image ") + file + QLatin1Char('.')});
    QCOMPARE(textBoxOf(*dialog)->toPlainText(), QStringLiteral("earlier text"));
    QCOMPARE(fileNameOf(*dialog), file);
    delete dialog;
}

void tst_zeTextureMetaDataGUII::nullImageFailsAndChangesNothing()
{
    auto* dialog = new zeTextureMetaDataGUII;
    textBoxOf(*dialog)->setPlainText(QStringLiteral("earlier text"));

    QVERIFY(!dialog->showMetaDataInfo(osg::ImagePtr()));

    QCOMPARE(textBoxOf(*dialog)->toPlainText(), QStringLiteral("earlier text"));
    QCOMPARE(fileNameOf(*dialog), QStringLiteral("<filename>"));
    QVERIFY(s_warnings.isEmpty());
    delete dialog;
}

void tst_zeTextureMetaDataGUII::secondSuccessReplacesTheText()
{
    const QString camera = cameraFile(QStringLiteral("first.jpg"), "jpeg");
    QVERIFY(!camera.isEmpty());
    const QString plain = path(QStringLiteral("second.png"));
    QVERIFY(ImageFixtures::write(ImageFixtures::filled(5, 4, QImage::Format_ARGB32,
                                                       QColor(10, 20, 30, 128)),
                                 plain, "png"));
    auto* dialog = new zeTextureMetaDataGUII;
    QVERIFY(dialog->showMetaDataInfo(imageNamed(camera)));

    QVERIFY(dialog->showMetaDataInfo(imageNamed(plain)));

    QCOMPARE(linesOf(*dialog), QStringList({QStringLiteral("Dimension:\t\t5 x 4 px"),
                                             QStringLiteral("Depth:\t\t1"),
                                             QStringLiteral("Color channel:\t\tYes"),
                                             QStringLiteral("Alpha channel:\t\tYes"),
                                             QStringLiteral("Samples per pixel:\t 4"),
                                             QStringLiteral("Bits per sample:\t\t 8"),
                                             QString()}));
    QCOMPARE(fileNameOf(*dialog), plain);
    delete dialog;
}

void tst_zeTextureMetaDataGUII::secondFailureKeepsTheTextAndShowsTheNewName()
{
    const QString camera = cameraFile(QStringLiteral("kept.jpg"), "jpeg");
    QVERIFY(!camera.isEmpty());
    const QString missing = path(QStringLiteral("missing.jpg"));
    auto* dialog = new zeTextureMetaDataGUII;
    QVERIFY(dialog->showMetaDataInfo(imageNamed(camera)));
    const QString before = textBoxOf(*dialog)->toPlainText();

    QVERIFY(!dialog->showMetaDataInfo(imageNamed(missing)));

    QCOMPARE(textBoxOf(*dialog)->toPlainText(), before);
    QVERIFY(before.contains(QStringLiteral("Camera maker:\t\t Maker")));
    QCOMPARE(fileNameOf(*dialog), missing);
    QCOMPARE(s_warnings, QStringList{QStringLiteral("Couldn't read image ") + missing + QLatin1Char('.')});
    delete dialog;
}

QTEST_MAIN(tst_zeTextureMetaDataGUII)
#include "tst_zeTextureMetaDataGUII.moc"
