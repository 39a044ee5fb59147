#include "ColourArithmetic.h"
#include "DialogPart.h"
#include "QZEColorButton.h"
#include "QZEColorDialog.h"
#include "QZEColorSlider.h"
#include "QZESpectrumPlot.h"
#include "TestHelpers.h"
#include "osgChangeList.h"
#include "osgPThreadBase.h"
#include "zeFile.h"
#include "zePlatform.h"

#include <QCheckBox>
#include <QDir>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFile>
#include <QGraphicsView>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTextStream>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <map>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Spectrum = osg::Spectrum;


// One column of a reference CSV in Common/Libs/QtColor/data, by header name.
std::vector<double> csvColumn(const QString& file, const QString& column)
{
    QFile csv(QDir::cleanPath(QStringLiteral(QTCOLOR_TEST_DATA "/../../Common/Libs/QtColor/data/") + file));
    if (!csv.open(QIODevice::ReadOnly | QIODevice::Text))
        qFatal("cannot read %s", qPrintable(file));
    QTextStream in(&csv);
    const int index = in.readLine().split(QLatin1Char(',')).indexOf(column);
    std::vector<double> values;
    while (!in.atEnd())
        values.push_back(in.readLine().split(QLatin1Char(','))[index].toDouble());
    return values;
}

// Smits' combination for a grey: the white reflectance basis times the grey
// level, scaled by 0.94 and clamped to 0..1.
double smitsGrey(double level, double whiteBasis)
{
    return std::clamp(0.94 * level * whiteBasis, 0.0, 1.0);
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Text));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

// What the process writes to its standard error while one of these lives.
class StderrCapture
{
public:
    explicit StderrCapture(const QString& path)
        : _path(path), _saved(::dup(STDERR_FILENO))
    {
        std::fflush(stderr);
        const int file = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        ::dup2(file, STDERR_FILENO);
        ::close(file);
    }
    ~StderrCapture() { restore(); }

    QByteArray finish()
    {
        restore();
        QFile file(_path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

private:
    void restore()
    {
        if (_saved < 0)
            return;
        std::fflush(stderr);
        ::dup2(_saved, STDERR_FILENO);
        ::close(_saved);
        _saved = -1;
    }

    QString _path;
    int _saved;
};

// Planck's law up to a constant factor, wavelength in nm.
double planck(double wavelengthNm, double temperature)
{
    const double secondRadiation = 1.438776877e-2; // m K
    const double lambda = wavelengthNm * 1e-9;
    return 1.0 / (std::pow(lambda, 5.0) * std::expm1(secondRadiation / (lambda * temperature)));
}

// A uniform spectrum with the given values, its flag set and its bands made.
osg::SpectrumPtr uniformSpectrum(int start, int delta, const std::vector<float>& values)
{
    osg::SpectrumPtr spectrum = Spectrum::create();
    spectrum->set(0.0f, start, delta, int(values.size()));
    spectrum->editSourceValues() = values;
    spectrum->setUseSpectrum(true);
    spectrum->resample();
    return spectrum;
}

// The same samples moved to version 2, as a non-uniform spectrum.
osg::SpectrumPtr nonUniformSpectrum()
{
    osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    spectrum->setVersionID(2);
    return spectrum;
}

osg::BitVector changedMask(const osg::SpectrumPtr& spectrum)
{
    return osg::PThreadBase::getCurrentChangeList()->getChangedMask(spectrum);
}

Rgb rgbOfColour(const QZEColor& color) { return rgbOf(color); }

void compareRgb(const QZEColor& actual, float r, float g, float b, double tolerance)
{
    const Rgb rgb = rgbOf(actual);
    QZE_COMPARE_NEAR(rgb.r, r, tolerance);
    QZE_COMPARE_NEAR(rgb.g, g, tolerance);
    QZE_COMPARE_NEAR(rgb.b, b, tolerance);
}

void compareHsv(const QZEColor& actual, const QZEColor& expected, double tolerance)
{
    QZE_COMPARE_NEAR(actual.h, expected.h, tolerance);
    QZE_COMPARE_NEAR(actual.s, expected.s, tolerance);
    QZE_COMPARE_NEAR(actual.v, expected.v, tolerance);
}

QString chosenPath;
QStringList askedCaptions;
QString fakeChooser(QWidget*, const QString& caption, const QString&, const QString&, bool)
{
    askedCaptions << caption;
    return chosenPath;
}

QStringList reports;
void recordReport(const QString&, const QString& message) { reports << message; }

} // namespace

class tst_QZEColorDialogSpectrum : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    // Construction
    void presetLabelsReadExactlyWithDefaultOnFirstOnly();
    void samplingEditorStartsFromTheProcessWideState();
    void fileButtonsHaveHostIconsAndMediumIconSizePlusTwo();
    void spectrumSlidersHavePrimaryAndValueModesFromBlack();
    void analyticTabStartsOnDaylightWithTemperatureShown();
    void initSpectrumHasThreeMetaObjectForms();

    // initSpectrum
    void initSpectrumWithNullDoesNothing();
    void initSpectrumEnablesTabCopiesBackupAndTakesColour();
    void initSpectrumWithSpectrumOnlyMakesGroupNonCheckable();
    void plotIsCreatedOnceAndReaimedAtANewSpectrum();

    // updateSpectrumTab
    void updateSpectrumTabDisablesColourTabOnlyWhileFlagSet();
    void updateSpectrumTabStopsBeforeFileNameForUnsampledSpectrum();
    void updateSpectrumTabEnablesSamplingOnlyForUniformWithEditorOn();
    void updateSpectrumTabNeverUnchecksNonUniformSampling();
    void updateSpectrumTabShowsCurrentAndPreviousColourOnSwatches();
    void updateSpectrumTabFitsPlotToViewOnlyOnSpectrumTab();

    // use-spectrum switch
    void switchingOnEmptySpectrumBuildsItFromColourAtDefaultSampling();
    void switchingOnSampledSpectrumKeepsItsSampling();
    void switchingOffClearsFlagAndRecordsOnlyThatField();
    void switchingOnWithoutSpectrumCreatesOne();

    // sliders
    void rgbSliderBuildsSmitsSpectrumAndLeavesDraggedSliderAlone();
    void rgbSliderOnNonUniformSpectrumResetsSamplingToDefaultPreset();
    void scaleSliderZeroActsAsOneHundredth();
    void scaleSliderKeepsShapeAndShowsLargestValue();
    void scaleSliderDoesNothingForInactiveSpectrum();

    // analytic
    void analyticFunctionChangedShowsPeakOrTemperatureControls();
    void setWithBlackbodyPassesHiddenPeakValuesWithReplace();
    void addGaussAddsToTheSpectrumAtItsSamples();
    void analyticButtonsWithoutSpectrumDoNothing();

    // sampling editor
    void toggleSamplingEditorStoresProcessWideState();
    void samplingPresetFillsSpinBoxesAndIgnoresIndexPastEnd();
    void applyResamplesToSpinBoxSamplingAsVersionOne();
    void applyWithNonUniformCheckedGivesVersionTwo();
    void applyOnSpectrumWithoutValuesMakesZeros();
    void uniformModeRecordsOnlyTheVersionFieldAndKeepsTheValues();
    void cancelInNonUniformMessageBoxKeepsNonUniformSampling();
    void okInNonUniformMessageBoxLoadsDefaultPresetAndApplyMakesUniform();

    // reset, reject, plot edits
    void resetSpectrumMakesConstantWithColourLuminance();
    void cancelAfterSeveralEditsRestoresBackupAndEmitsPreviousColour();
    void plotEditReachesDialogResampled();

    // info labels
    void spectrumInfoShowsColourAndEqualEnergyXyz();

    // files
    void loadThroughFileDialogTakesSpectralFileAndShowsItsName();
    void loadFromLineEditReadsTwoColumnTextFile();
    void loadOfUnreadablePathLeavesSpectrumUnchanged();
    void loadOfDecreasingWavelengthsLeavesSpectrumUnchanged();
    void addThroughFileDialogAddsLoadedSpectrum();
    void saveThroughFileDialogWritesLoadableFile();
    void saveToUnwritablePathWritesNothing();
    void cancelledFileDialogChangesNothing();

private:
    std::unique_ptr<QZEColorDialog> makeDialog() const;

    std::vector<double> m_whiteBasis;
    QTemporaryDir m_dir;
    zeFile::Reporter m_previousReporter = nullptr;
};

void tst_QZEColorDialogSpectrum::initTestCase()
{
    QVERIFY(m_dir.isValid());
    m_whiteBasis = csvColumn(QStringLiteral("smits_rgb_to_spectrum_32.csv"),
                             QStringLiteral("refl_white"));
    QCOMPARE(m_whiteBasis.size(), size_t(32));
}

void tst_QZEColorDialogSpectrum::init()
{
    QZEColor::s_useGamma = true; // colours in and out are linear
    QZEColorDialog::_samplingEditorEnabled = true;
    QZEColorDialog::setSpectrumPathChooser(fakeChooser);
    m_previousReporter = zeFile::setReporter(recordReport);
    chosenPath.clear();
    askedCaptions.clear();
    reports.clear();
    osg::PThreadBase::getCurrentChangeList()->clear();
}

void tst_QZEColorDialogSpectrum::cleanup()
{
    QZEColor::s_useGamma = false;
    QZEColorDialog::_samplingEditorEnabled = false;
    QZEColorDialog::setSpectrumPathChooser(nullptr);
    zeFile::setReporter(m_previousReporter);
    osg::PThreadBase::getCurrentChangeList()->clear();
}

std::unique_ptr<QZEColorDialog> tst_QZEColorDialogSpectrum::makeDialog() const
{
    auto dialog = std::make_unique<QZEColorDialog>();
    dialog->reinit(hsvOf(0.5f, 0.5f, 0.5f));
    return dialog;
}

// --- Construction -----------------------------------------------------------------

void tst_QZEColorDialogSpectrum::presetLabelsReadExactlyWithDefaultOnFirstOnly()
{
    const auto dialog = makeDialog();
    const auto* combo = part<QComboBox>(*dialog, "_samplingPresets");
    QCOMPARE(combo->count(), 3);
    QCOMPARE(combo->itemText(0), QStringLiteral("Start: 380 / Delta: 5 / Num: / 81 (Default)"));
    QCOMPARE(combo->itemText(1), QStringLiteral("Start: 380 / Delta: 10 / Num: / 36"));
    QCOMPARE(combo->itemText(2), QStringLiteral("Start: 375 / Delta: 5 / Num: / 72"));
    const auto& presets = dialog->getSamplingPresets();
    QCOMPARE(presets.size(), size_t(3));
    const int expected[3][3] = {{380, 5, 81}, {380, 10, 36}, {375, 5, 72}};
    for (size_t i = 0; i < 3; ++i) {
        QCOMPARE(presets[i].start, expected[i][0]);
        QCOMPARE(presets[i].delta, expected[i][1]);
        QCOMPARE(presets[i].num, expected[i][2]);
        QCOMPARE(presets[i].label, combo->itemText(int(i)));
    }
    QCOMPARE(SamplingPreset(380, 5, 72).label, QStringLiteral("Start: 380 / Delta: 5 / Num: / 72"));
}

void tst_QZEColorDialogSpectrum::samplingEditorStartsFromTheProcessWideState()
{
    for (const bool enabled : {false, true}) {
        QZEColorDialog::_samplingEditorEnabled = enabled;
        const auto dialog = makeDialog();
        QCOMPARE(part<QGroupBox>(*dialog, "_enableSamplingEditor")->isChecked(), enabled);
    }
}

void tst_QZEColorDialogSpectrum::fileButtonsHaveHostIconsAndMediumIconSizePlusTwo()
{
    const auto dialog = makeDialog();
    const QSize icon(zePlatform::getMediumIconSizeX(), zePlatform::getMediumIconSizeY());
    for (const char* name : {"_load_spectrum_button", "_add_spectrum_button", "_save_spectrum_button"}) {
        const auto* button = part<QPushButton>(*dialog, name);
        QVERIFY2(!button->icon().isNull(), name);
        QCOMPARE(button->iconSize(), icon);
        QCOMPARE(button->minimumSize(), icon + QSize(2, 2));
        QCOMPARE(button->maximumSize(), icon + QSize(2, 2));
    }
}

void tst_QZEColorDialogSpectrum::spectrumSlidersHavePrimaryAndValueModesFromBlack()
{
    const auto dialog = makeDialog();
    const struct
    {
        const char* name;
        QZEColorSlider::Mode mode;
        QColor end;
    } sliders[] = {
        {"_redSlider_s", QZEColorSlider::Red, Qt::red},
        {"_greenSlider_s", QZEColorSlider::Green, Qt::green},
        {"_blueSlider_s", QZEColorSlider::Blue, Qt::blue},
        {"_scaleSlider", QZEColorSlider::Value, Qt::white},
    };
    for (const auto& expected : sliders) {
        auto* slider = part<QZEColorSlider>(*dialog, expected.name);
        QCOMPARE(slider->getMode(), expected.mode);
        QCOMPARE(slider->getMinColor().getQColor(), QColor(Qt::black));
        QCOMPARE(slider->getMaxColor().getQColor(), expected.end);
    }
}

void tst_QZEColorDialogSpectrum::analyticTabStartsOnDaylightWithTemperatureShown()
{
    const auto dialog = makeDialog();
    QCOMPARE(part<QComboBox>(*dialog, "_analytic_function")->currentIndex(), 1);
    for (const char* hidden : {"_analytic_peak_wavelength", "_analytic_peak_intensity", "_analytic_fwhm",
                               "label_analytic_peak_wavelength", "label_analytic_peak_intensity",
                               "label_analytic_fwhm"})
        QVERIFY2(part<QWidget>(*dialog, hidden)->isHidden(), hidden);
    QVERIFY(!part<QWidget>(*dialog, "_analytic_temperature")->isHidden());
    QVERIFY(!part<QWidget>(*dialog, "label_analytic_temperature")->isHidden());
}

void tst_QZEColorDialogSpectrum::initSpectrumHasThreeMetaObjectForms()
{
    const QMetaObject& meta = QZEColorDialog::staticMetaObject;
    for (const char* form : {"initSpectrum(osg::SpectrumPtr)", "initSpectrum(osg::SpectrumPtr,float)",
                             "initSpectrum(osg::SpectrumPtr,float,bool)"})
        QVERIFY2(meta.indexOfSlot(form) >= 0, form);
}

// --- initSpectrum -------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::initSpectrumWithNullDoesNothing()
{
    const auto dialog = makeDialog();
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    dialog->initSpectrum(osg::SpectrumPtr());
    QVERIFY(!part<QTabWidget>(*dialog, "tabWidget")->isTabEnabled(1));
    QVERIFY(!dialog->getSpectrumPlot());
    QCOMPARE(colours.count(), 0);
}

void tst_QZEColorDialogSpectrum::initSpectrumEnablesTabCopiesBackupAndTakesColour()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    dialog->initSpectrum(spectrum, 2.0f);
    QVERIFY(part<QTabWidget>(*dialog, "tabWidget")->isTabEnabled(1));
    QCOMPARE(dialog->getSpectrum(), osg::SpectrumPtr(spectrum));
    QCOMPARE(dialog->getSpectrumPlot()->getMaxValue(), 2.0f);
    QCOMPARE(colours.count(), 1);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    compareRgb(colours.last().first().value<QZEColor>(), rgb.r, rgb.g, rgb.b, 1e-5);
    // The backup is what cancel puts back: edit and cancel.
    spectrum->editSourceValues().assign(41, 0.75f);
    dialog->rejectSpectrum();
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(41, 0.25f));
    QCOMPARE(changedMask(spectrum) & Spectrum::SourceValuesFieldMask, Spectrum::SourceValuesFieldMask);
}

void tst_QZEColorDialogSpectrum::initSpectrumWithSpectrumOnlyMakesGroupNonCheckable()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    auto* group = part<QGroupBox>(*dialog, "_spectrum_input_group");
    dialog->initSpectrum(spectrum, 1.0f, true);
    QVERIFY(!group->isCheckable());
    spectrum->setUseSpectrum(false);
    dialog->initSpectrum(spectrum, 1.0f, false);
    QVERIFY(group->isCheckable());
    QVERIFY(!group->isChecked()); // becoming checkable did not switch the spectrum on
    QVERIFY(!spectrum->getUseSpectrum());
}

void tst_QZEColorDialogSpectrum::plotIsCreatedOnceAndReaimedAtANewSpectrum()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr first = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(first);
    QZESpectrumPlot* plot = dialog->getSpectrumPlot();
    QVERIFY(plot);
    QCOMPARE(part<QGraphicsView>(*dialog, "_spectrumPlot")->scene(), plot);
    dialog->initSpectrum(first, 3.0f);
    QCOMPARE(dialog->getSpectrumPlot(), plot);
    QCOMPARE(plot->getMaxValue(), 3.0f);

    const osg::SpectrumPtr second = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(second);
    QCOMPARE(dialog->getSpectrumPlot()->getSpectrum(), osg::SpectrumPtr(second));
    QCOMPARE(part<QGraphicsView>(*dialog, "_spectrumPlot")->scene(), dialog->getSpectrumPlot());
    // The new plot's edits reach the dialog.
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    emit dialog->getSpectrumPlot()->update();
    QCOMPARE(colours.count(), 1);
}

// --- updateSpectrumTab ---------------------------------------------------------------

void tst_QZEColorDialogSpectrum::updateSpectrumTabDisablesColourTabOnlyWhileFlagSet()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    auto* tabs = part<QTabWidget>(*dialog, "tabWidget");
    auto* view = part<QGraphicsView>(*dialog, "_spectrumPlot");
    dialog->initSpectrum(spectrum);
    QVERIFY(!tabs->isTabEnabled(0));
    QVERIFY(view->isEnabled());
    QVERIFY(part<QGroupBox>(*dialog, "_spectrum_input_group")->isChecked());
    dialog->setUseSpectrum(false);
    QVERIFY(tabs->isTabEnabled(0));
    QVERIFY(!view->isEnabled());
    QVERIFY(!part<QGroupBox>(*dialog, "_spectrum_input_group")->isChecked());
}

void tst_QZEColorDialogSpectrum::updateSpectrumTabStopsBeforeFileNameForUnsampledSpectrum()
{
    const auto dialog = makeDialog();
    auto* line = part<QLineEdit>(*dialog, "_load_spectrum_line");
    line->setText(QStringLiteral("typed"));
    const osg::SpectrumPtr unsampled = Spectrum::create();
    unsampled->setFileName("unsampled.spectral");
    dialog->initSpectrum(unsampled);
    // Steps 1 and 2 ran, the rest did not.
    QVERIFY(part<QTabWidget>(*dialog, "tabWidget")->isTabEnabled(0));
    QVERIFY(part<QLabel>(*dialog, "_X_label_s")->text().startsWith(QStringLiteral("X: ")));
    QCOMPARE(line->text(), QStringLiteral("typed"));

    const osg::SpectrumPtr sampled = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    sampled->setFileName("named.spectral");
    dialog->initSpectrum(sampled);
    QCOMPARE(line->text(), QStringLiteral("named.spectral"));
    QCOMPARE(part<QSpinBox>(*dialog, "_startWavelength")->value(), 380);
    QCOMPARE(part<QSpinBox>(*dialog, "_deltaWavelength")->value(), 10);
    QCOMPARE(part<QSpinBox>(*dialog, "_numSamples")->value(), 41);
    QCOMPARE(part<QLabel>(*dialog, "_spectrumScale")->text(), QStringLiteral("0.250"));
    QCOMPARE(part<QZEColorSlider>(*dialog, "_scaleSlider")->getValue(), 0.25f);
}

void tst_QZEColorDialogSpectrum::updateSpectrumTabEnablesSamplingOnlyForUniformWithEditorOn()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    const char* controls[] = {"_startWavelength", "_deltaWavelength", "_numSamples", "_resampleSpectrum"};
    for (const char* name : controls)
        QVERIFY2(part<QWidget>(*dialog, name)->isEnabled(), name);
    part<QGroupBox>(*dialog, "_enableSamplingEditor")->setChecked(false);
    for (const char* name : controls)
        QVERIFY2(!part<QWidget>(*dialog, name)->isEnabled(), name);
    part<QGroupBox>(*dialog, "_enableSamplingEditor")->setChecked(true);
    spectrum->setVersionID(2);
    dialog->updateSpectrum();
    QVERIFY(part<QCheckBox>(*dialog, "_nonUniformSampling")->isChecked());
    for (const char* name : controls)
        QVERIFY2(!part<QWidget>(*dialog, name)->isEnabled(), name);
}

void tst_QZEColorDialogSpectrum::updateSpectrumTabNeverUnchecksNonUniformSampling()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    auto* nonUniform = part<QCheckBox>(*dialog, "_nonUniformSampling");
    nonUniform->setChecked(true); // the user's click on a uniform spectrum
    QCOMPARE(spectrum->getVersionID(), 1);
    QVERIFY(nonUniform->isChecked());
    QCOMPARE(changedMask(spectrum), Spectrum::VersionIDFieldMask);
    dialog->updateSpectrum();
    QVERIFY(nonUniform->isChecked());
    // Still uniform until "Apply", so the sampling stays editable.
    QVERIFY(part<QWidget>(*dialog, "_resampleSpectrum")->isEnabled());
}

void tst_QZEColorDialogSpectrum::updateSpectrumTabShowsCurrentAndPreviousColourOnSwatches()
{
    const auto dialog = makeDialog(); // previous colour: grey 0.5
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.02f));
    dialog->initSpectrum(spectrum);
    const auto swatchColour = [&](const char* name) {
        return part<QZEColorButton>(*dialog, name)->getColor().getQColor();
    };
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    const auto byte = [](float c) { return std::clamp(int(c * 255.0f), 0, 255); };
    const QColor current(byte(rgb.r), byte(rgb.g), byte(rgb.b));
    QCOMPARE(swatchColour("_current_color_s"), current);
    QCOMPARE(swatchColour("_previous_color_s"), QColor(127, 127, 127));
}

// With the flag clear the colour tab stays current; switching the spectrum
// on disables that tab, which makes the spectrum tab current.
void tst_QZEColorDialogSpectrum::updateSpectrumTabFitsPlotToViewOnlyOnSpectrumTab()
{
    const auto dialog = makeDialog();
    dialog->resize(900, 700);
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    spectrum->setUseSpectrum(false);
    dialog->initSpectrum(spectrum);
    dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(dialog.get()));
    auto* tabs = part<QTabWidget>(*dialog, "tabWidget");
    auto* view = part<QGraphicsView>(*dialog, "_spectrumPlot");
    QCOMPARE(tabs->currentIndex(), 0);
    view->setSceneRect(0.0, 0.0, 1.0, 1.0);
    dialog->updateSpectrum();
    QCOMPARE(view->sceneRect(), QRectF(0.0, 0.0, 1.0, 1.0));
    dialog->setUseSpectrum(true);
    QCOMPARE(tabs->currentIndex(), 1);
    QCOMPARE(view->sceneRect(), QRectF(0.0, 0.0, view->width(), view->height()));
    QCOMPARE(dialog->getSpectrumPlot()->getSamples().size(), size_t(41));
}

// --- use-spectrum switch -----------------------------------------------------------------

void tst_QZEColorDialogSpectrum::switchingOnEmptySpectrumBuildsItFromColourAtDefaultSampling()
{
    const auto dialog = makeDialog();
    dialog->reinit(hsvOf(0.4f, 0.4f, 0.4f)); // a grey: Smits uses the white basis alone
    const osg::SpectrumPtr spectrum = Spectrum::create();
    dialog->initSpectrum(spectrum);
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    part<QGroupBox>(*dialog, "_spectrum_input_group")->setChecked(true);
    QVERIFY(spectrum->getUseSpectrum());
    QCOMPARE(spectrum->getVersionID(), 1);
    QCOMPARE(spectrum->getStartWavelength(), 380);
    QCOMPARE(spectrum->getDeltaWavelength(), 5);
    QCOMPARE(spectrum->getNumSamples(), 81);
    QCOMPARE(spectrum->getSourceValues().size(), size_t(81));
    // 380 nm and 720 nm (sample 68) are the first and last rows of the table.
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[0], smitsGrey(0.4, m_whiteBasis.front()), 2e-6);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[68], smitsGrey(0.4, m_whiteBasis.back()), 2e-6);
    QVERIFY(spectrum->getSourceValues()[0] < 0.5f); // not the reset rule's ones
    QCOMPARE(spectrum->getSamples().size(), size_t(40));
    const osg::BitVector expected = Spectrum::UseSpectrumFieldMask | Spectrum::SourceValuesFieldMask
                                    | Spectrum::VersionIDFieldMask;
    QCOMPARE(changedMask(spectrum) & expected, expected);
    QCOMPARE(colours.count(), 1);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    compareRgb(colours.last().first().value<QZEColor>(), rgb.r, rgb.g, rgb.b, 1e-5);
    QVERIFY(!part<QTabWidget>(*dialog, "tabWidget")->isTabEnabled(0));
}

void tst_QZEColorDialogSpectrum::switchingOnSampledSpectrumKeepsItsSampling()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    spectrum->setUseSpectrum(false);
    dialog->initSpectrum(spectrum);
    dialog->setUseSpectrum(true);
    QVERIFY(spectrum->getUseSpectrum());
    QCOMPARE(spectrum->getStartWavelength(), 400);
    QCOMPARE(spectrum->getNumSamples(), 31);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
    QCOMPARE(changedMask(spectrum) & Spectrum::UseSpectrumFieldMask, Spectrum::UseSpectrumFieldMask);
}

void tst_QZEColorDialogSpectrum::switchingOffClearsFlagAndRecordsOnlyThatField()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    part<QGroupBox>(*dialog, "_spectrum_input_group")->setChecked(false);
    QVERIFY(!spectrum->getUseSpectrum());
    QCOMPARE(changedMask(spectrum), Spectrum::UseSpectrumFieldMask);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(41, 0.25f));
}

void tst_QZEColorDialogSpectrum::switchingOnWithoutSpectrumCreatesOne()
{
    const auto dialog = makeDialog();
    dialog->setUseSpectrum(true);
    QVERIFY(dialog->getSpectrum());
    QVERIFY(dialog->getSpectrum()->getUseSpectrum());
    QCOMPARE(dialog->getSpectrum()->getNumSamples(), 81);
}

// --- Sliders ---------------------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::rgbSliderBuildsSmitsSpectrumAndLeavesDraggedSliderAlone()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 5, std::vector<float>(81, 0.1f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    auto* red = part<QZEColorSlider>(*dialog, "_redSlider_s");
    part<QZEColorSlider>(*dialog, "_greenSlider_s")->setValue(0.3f, false);
    part<QZEColorSlider>(*dialog, "_blueSlider_s")->setValue(0.3f, false);
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    red->setValue(0.3f); // a grey 0.3 through the dragged slider
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[0], smitsGrey(0.3, m_whiteBasis.front()), 2e-6);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[68], smitsGrey(0.3, m_whiteBasis.back()), 2e-6);
    QCOMPARE(red->getValue(), 0.3f);
    QCOMPARE(part<QLabel>(*dialog, "_spectrumRed")->text(), QStringLiteral("0.300"));
    QCOMPARE(colours.count(), 1);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    compareRgb(colours.last().first().value<QZEColor>(), rgb.r, rgb.g, rgb.b, 1e-5);
    QCOMPARE(changedMask(spectrum) & Spectrum::SourceValuesFieldMask, Spectrum::SourceValuesFieldMask);
}

void tst_QZEColorDialogSpectrum::rgbSliderOnNonUniformSpectrumResetsSamplingToDefaultPreset()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = nonUniformSpectrum();
    dialog->initSpectrum(spectrum);
    auto* presets = part<QComboBox>(*dialog, "_samplingPresets");
    presets->setCurrentIndex(2);
    QCOMPARE(part<QSpinBox>(*dialog, "_startWavelength")->value(), 400);
    part<QZEColorSlider>(*dialog, "_greenSlider_s")->setValue(0.6f, false);
    part<QZEColorSlider>(*dialog, "_blueSlider_s")->setValue(0.6f, false);
    part<QZEColorSlider>(*dialog, "_redSlider_s")->setValue(0.6f);
    QCOMPARE(presets->currentIndex(), 0);
    QCOMPARE(spectrum->getStartWavelength(), 380);
    QCOMPARE(spectrum->getDeltaWavelength(), 5);
    QCOMPARE(spectrum->getNumSamples(), 81);
    QCOMPARE(spectrum->getVersionID(), 1);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[68], smitsGrey(0.6, m_whiteBasis.back()), 2e-6);
}

void tst_QZEColorDialogSpectrum::scaleSliderZeroActsAsOneHundredth()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, {0.2f, 0.8f, 0.4f, 0.8f, 0.2f});
    spectrum->set(0.0f, 380, 10, 41);
    std::vector<float> values(41, 0.2f);
    values[10] = 0.8f;
    spectrum->editSourceValues() = values;
    spectrum->resample();
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    part<QZEColorSlider>(*dialog, "_scaleSlider")->setValue(0.0f);
    QZE_COMPARE_NEAR(spectrum->getMaxValue(), 0.01, 1e-8);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[0], 0.0025, 1e-8);
    QCOMPARE(changedMask(spectrum) & Spectrum::SourceValuesFieldMask, Spectrum::SourceValuesFieldMask);
    QCOMPARE(part<QLabel>(*dialog, "_spectrumScale")->text(), QStringLiteral("0.010"));
}

void tst_QZEColorDialogSpectrum::scaleSliderKeepsShapeAndShowsLargestValue()
{
    const auto dialog = makeDialog();
    std::vector<float> values(41, 0.1f);
    values[20] = 0.4f;
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, values);
    dialog->initSpectrum(spectrum);
    const QZEColor before = dialog->getColor();
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    dialog->scaleSpectrumSliderChanged(0.8f);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[20], 0.8, 1e-6);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[0], 0.2, 1e-6);
    QCOMPARE(colours.count(), 1);
    const QZEColor after = colours.last().first().value<QZEColor>();
    QZE_COMPARE_NEAR(after.h, before.h, 1e-2);
    QZE_COMPARE_NEAR(after.s, before.s, 1e-4);
    QZE_COMPARE_NEAR(after.v, 2.0 * before.v, 1e-4); // the bands were resampled
    QCOMPARE(part<QZEColorSlider>(*dialog, "_scaleSlider")->getValue(), spectrum->getMaxValue());
}

void tst_QZEColorDialogSpectrum::scaleSliderDoesNothingForInactiveSpectrum()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    spectrum->setUseSpectrum(false);
    osg::PThreadBase::getCurrentChangeList()->clear();
    dialog->scaleSpectrumSliderChanged(0.5f);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(41, 0.25f));
    QCOMPARE(changedMask(spectrum), osg::BitVector(0));
}

// --- Analytic functions -----------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::analyticFunctionChangedShowsPeakOrTemperatureControls()
{
    const auto dialog = makeDialog();
    auto* function = part<QComboBox>(*dialog, "_analytic_function");
    for (int i = 0; i < function->count(); ++i) {
        function->setCurrentIndex(i);
        const bool byTemperature = i <= 1;
        QCOMPARE(part<QWidget>(*dialog, "_analytic_peak_wavelength")->isHidden(), byTemperature);
        QCOMPARE(part<QWidget>(*dialog, "_analytic_peak_intensity")->isHidden(), byTemperature);
        QCOMPARE(part<QWidget>(*dialog, "_analytic_fwhm")->isHidden(), byTemperature);
        QCOMPARE(part<QWidget>(*dialog, "label_analytic_fwhm")->isHidden(), byTemperature);
        QCOMPARE(part<QWidget>(*dialog, "_analytic_temperature")->isHidden(), !byTemperature);
        QCOMPARE(part<QWidget>(*dialog, "label_analytic_temperature")->isHidden(), !byTemperature);
    }
}

void tst_QZEColorDialogSpectrum::setWithBlackbodyPassesHiddenPeakValuesWithReplace()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    part<QComboBox>(*dialog, "_analytic_function")->setCurrentIndex(0);
    auto* peak = part<QDoubleSpinBox>(*dialog, "_analytic_peak_wavelength");
    auto* intensity = part<QDoubleSpinBox>(*dialog, "_analytic_peak_intensity");
    auto* fwhm = part<QDoubleSpinBox>(*dialog, "_analytic_fwhm");
    peak->setValue(550.0);
    intensity->setValue(0.5);
    fwhm->setValue(40.0);
    part<QDoubleSpinBox>(*dialog, "_analytic_temperature")->setValue(3000.0);
    part<QSpinBox>(*dialog, "_startWavelength")->setValue(400);
    part<QSpinBox>(*dialog, "_deltaWavelength")->setValue(20);
    part<QSpinBox>(*dialog, "_numSamples")->setValue(16);
    osg::PThreadBase::getCurrentChangeList()->clear();
    part<QPushButton>(*dialog, "_analytic_set")->click();
    // Replaced: the black body alone on the spin boxes' grid.
    QCOMPARE(spectrum->getStartWavelength(), 400);
    QCOMPARE(spectrum->getDeltaWavelength(), 20);
    QCOMPARE(spectrum->getNumSamples(), 16);
    const auto& values = spectrum->getSourceValues();
    QCOMPARE(values.size(), size_t(16));
    for (int k : {0, 5, 15}) {
        const double ratio = planck(400.0 + 20.0 * k, 3000.0) / planck(500.0, 3000.0);
        QZE_COMPARE_NEAR_IN(values[size_t(k)] / values[5], ratio, 1e-4 * ratio, QString::number(k));
    }
    // The hidden peak controls kept their values and went along unchanged.
    QVERIFY(peak->isHidden());
    QCOMPARE(peak->value(), 550.0);
    QCOMPARE(intensity->value(), 0.5);
    QCOMPARE(fwhm->value(), 40.0);
    QCOMPARE(changedMask(spectrum) & Spectrum::SourceValuesFieldMask, Spectrum::SourceValuesFieldMask);
}

void tst_QZEColorDialogSpectrum::addGaussAddsToTheSpectrumAtItsSamples()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    part<QComboBox>(*dialog, "_analytic_function")->setCurrentIndex(2);
    part<QDoubleSpinBox>(*dialog, "_analytic_peak_wavelength")->setValue(550.0);
    part<QDoubleSpinBox>(*dialog, "_analytic_peak_intensity")->setValue(0.5);
    part<QDoubleSpinBox>(*dialog, "_analytic_fwhm")->setValue(40.0);
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    part<QPushButton>(*dialog, "_analytic_add")->click();
    const auto& values = spectrum->getSourceValues();
    QCOMPARE(values.size(), size_t(41));
    // Gauss: intensity * exp(-ln 2 * (2 (lambda - peak) / fwhm)^2).
    for (int k : {0, 15, 17, 19}) {
        const double u = 2.0 * (380.0 + 10.0 * k - 550.0) / 40.0;
        const double expected = 0.25 + 0.5 * std::exp(-std::log(2.0) * u * u);
        QZE_COMPARE_NEAR_IN(values[size_t(k)], expected, 1e-5, QString::number(k));
    }
    QCOMPARE(colours.count(), 1);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    compareRgb(colours.last().first().value<QZEColor>(), rgb.r, rgb.g, rgb.b, 1e-5);
}

void tst_QZEColorDialogSpectrum::analyticButtonsWithoutSpectrumDoNothing()
{
    const auto dialog = makeDialog();
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    dialog->addAnalyticFunction();
    dialog->setAnalyticFunction();
    dialog->resampleSpectrum();
    dialog->resetSpectrum();
    dialog->rgbSpectrumSliderChanged(0.5f);
    dialog->scaleSpectrumSliderChanged(0.5f);
    QCOMPARE(colours.count(), 0);
    QVERIFY(!dialog->getSpectrum());
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());
}

// --- Sampling editor --------------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::toggleSamplingEditorStoresProcessWideState()
{
    const auto dialog = makeDialog();
    part<QGroupBox>(*dialog, "_enableSamplingEditor")->setChecked(false);
    QVERIFY(!QZEColorDialog::_samplingEditorEnabled);
    const auto next = makeDialog();
    QVERIFY(!part<QGroupBox>(*next, "_enableSamplingEditor")->isChecked());
    part<QGroupBox>(*dialog, "_enableSamplingEditor")->setChecked(true);
    QVERIFY(QZEColorDialog::_samplingEditorEnabled);
}

void tst_QZEColorDialogSpectrum::samplingPresetFillsSpinBoxesAndIgnoresIndexPastEnd()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    dialog->setSamplingPreset(2);
    QCOMPARE(part<QSpinBox>(*dialog, "_startWavelength")->value(), 375);
    QCOMPARE(part<QSpinBox>(*dialog, "_deltaWavelength")->value(), 5);
    QCOMPARE(part<QSpinBox>(*dialog, "_numSamples")->value(), 72);
    dialog->setSamplingPreset(3);
    QCOMPARE(part<QSpinBox>(*dialog, "_startWavelength")->value(), 375);
    QCOMPARE(spectrum->getStartWavelength(), 400); // only the spin boxes change
}

void tst_QZEColorDialogSpectrum::applyResamplesToSpinBoxSamplingAsVersionOne()
{
    const auto dialog = makeDialog();
    std::vector<float> ramp;
    for (int k = 0; k < 41; ++k)
        ramp.push_back(0.01f * float(k));
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, ramp);
    dialog->initSpectrum(spectrum);
    dialog->setSamplingPreset(2); // 375, 5, 72
    osg::PThreadBase::getCurrentChangeList()->clear();
    part<QPushButton>(*dialog, "_resampleSpectrum")->click();
    QCOMPARE(spectrum->getVersionID(), 1);
    QCOMPARE(spectrum->getStartWavelength(), 375);
    QCOMPARE(spectrum->getNumSamples(), 72);
    // The ramp value at 385 nm and 400 nm, linear between the 10 nm samples.
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[2], 0.005, 1e-6);
    QZE_COMPARE_NEAR(spectrum->getSourceValues()[5], 0.02, 1e-6);
    const osg::BitVector expected = Spectrum::VersionIDFieldMask | Spectrum::SourceValuesFieldMask;
    QCOMPARE(changedMask(spectrum) & expected, expected);
}

void tst_QZEColorDialogSpectrum::applyWithNonUniformCheckedGivesVersionTwo()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    part<QCheckBox>(*dialog, "_nonUniformSampling")->setChecked(true);
    part<QPushButton>(*dialog, "_resampleSpectrum")->click();
    QCOMPARE(spectrum->getVersionID(), 2);
    QVERIFY(!part<QWidget>(*dialog, "_resampleSpectrum")->isEnabled());
}

void tst_QZEColorDialogSpectrum::applyOnSpectrumWithoutValuesMakesZeros()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = Spectrum::create();
    spectrum->setVersionID(1);
    dialog->initSpectrum(spectrum);
    dialog->setSamplingPreset(1);
    dialog->resampleSpectrum();
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(36, 0.0f));
    QCOMPARE(spectrum->getDeltaWavelength(), 10);
}

void tst_QZEColorDialogSpectrum::uniformModeRecordsOnlyTheVersionFieldAndKeepsTheValues()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    dialog->setUniformMode(false);
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());
    dialog->setUniformMode(true);
    QCOMPARE(changedMask(spectrum), Spectrum::VersionIDFieldMask);
    QCOMPARE(spectrum->getVersionID(), 1);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
}

void tst_QZEColorDialogSpectrum::cancelInNonUniformMessageBoxKeepsNonUniformSampling()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = nonUniformSpectrum();
    dialog->initSpectrum(spectrum);
    auto* nonUniform = part<QCheckBox>(*dialog, "_nonUniformSampling");
    QVERIFY(nonUniform->isChecked());
    nonUniform->setChecked(false);
    auto* box = dialog->findChild<QMessageBox*>();
    QVERIFY(box);
    QCOMPARE(box->windowTitle(), QStringLiteral("Disable Non-Uniform Sampling"));
    QCOMPARE(box->text(), QStringLiteral("To disable non-uniform sampling, please select the preferred "
                                         "uniform sampling distribution and press \"Apply\".\nWarning! "
                                         "Your original sampling will be changed and non-uniform "
                                         "samples are lost!"));
    QCOMPARE(box->icon(), QMessageBox::Warning);
    QCOMPARE(box->buttons().size(), 2);
    QAbstractButton* cancel = box->buttons()[box->buttonRole(box->buttons()[0]) == QMessageBox::RejectRole ? 0 : 1];
    QCOMPARE(cancel->text(), QStringLiteral("Cancel"));
    cancel->click();
    QVERIFY(nonUniform->isChecked());
    QCOMPARE(spectrum->getVersionID(), 2);
    QVERIFY(!part<QWidget>(*dialog, "_resampleSpectrum")->isEnabled());
}

void tst_QZEColorDialogSpectrum::okInNonUniformMessageBoxLoadsDefaultPresetAndApplyMakesUniform()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = nonUniformSpectrum();
    dialog->initSpectrum(spectrum);
    part<QCheckBox>(*dialog, "_nonUniformSampling")->setChecked(false);
    auto* box = dialog->findChild<QMessageBox*>();
    QVERIFY(box);
    QAbstractButton* ok = nullptr;
    for (QAbstractButton* button : box->buttons())
        if (box->buttonRole(button) == QMessageBox::AcceptRole)
            ok = button;
    QVERIFY(ok);
    QCOMPARE(ok->text(), QStringLiteral("Ok"));
    ok->click();
    QVERIFY(!part<QCheckBox>(*dialog, "_nonUniformSampling")->isChecked());
    QCOMPARE(part<QSpinBox>(*dialog, "_startWavelength")->value(), 380);
    QCOMPARE(part<QSpinBox>(*dialog, "_deltaWavelength")->value(), 5);
    QCOMPARE(part<QSpinBox>(*dialog, "_numSamples")->value(), 81);
    QCOMPARE(spectrum->getVersionID(), 2); // nothing changes before "Apply"
    auto* apply = part<QPushButton>(*dialog, "_resampleSpectrum");
    QVERIFY(apply->isEnabled());
    apply->click();
    QCOMPARE(spectrum->getVersionID(), 1);
    QCOMPARE(spectrum->getNumSamples(), 81);
    QCOMPARE(spectrum->getSourceValues()[10], 0.5f);
}

// --- Reset, cancel, plot edits -----------------------------------------------------------------

void tst_QZEColorDialogSpectrum::resetSpectrumMakesConstantWithColourLuminance()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    const QZEColor colour = hsvOf(0.6f, 0.3f, 0.2f);
    dialog->setColor(colour);
    const Rgb rgb = rgbOfColour(colour);
    const double luminance = 0.22285376 * rgb.r + 0.70867276 * rgb.g + 0.06847366 * rgb.b;
    dialog->resetSpectrum();
    QCOMPARE(spectrum->getNumSamples(), 81);
    const auto& values = spectrum->getSourceValues();
    QVERIFY(std::all_of(values.begin(), values.end(), [&](float v) { return v == values[0]; }));
    // The photometric value of the ones is the sum of their 40 squared bands,
    // 40, and setPhotometricValue scales by the wanted value over it.
    QZE_COMPARE_NEAR(values[0], luminance / 40.0, 1e-7);
}

void tst_QZEColorDialogSpectrum::cancelAfterSeveralEditsRestoresBackupAndEmitsPreviousColour()
{
    const auto dialog = makeDialog();
    const QZEColor previous = dialog->getColor();
    std::vector<float> values(41, 0.1f);
    values[7] = 0.9f;
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, values);
    spectrum->setFileName("original.spectral");
    const QZESpectrum::Options before = spectrum->getModel().getOptions();
    dialog->initSpectrum(spectrum);
    dialog->scaleSpectrumSliderChanged(0.5f);
    part<QZEColorSlider>(*dialog, "_redSlider_s")->setValue(0.8f);
    dialog->setSamplingPreset(2);
    dialog->resampleSpectrum();
    dialog->resetSpectrum();
    QVERIFY(spectrum->getModel().getOptions() != before);
    osg::PThreadBase::getCurrentChangeList()->clear();
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    part<QPushButton>(*dialog, "_reject_s")->click();
    QVERIFY(spectrum->getModel().getOptions() == before);
    QCOMPARE(colours.count(), 1);
    compareHsv(colours.last().first().value<QZEColor>(), previous, 0.0);
    QCOMPARE(dialog->result(), int(QDialog::Rejected));
    const osg::BitVector expected = Spectrum::UseSpectrumFieldMask | Spectrum::VersionIDFieldMask
                                    | Spectrum::SourceValuesFieldMask;
    QCOMPARE(changedMask(spectrum) & expected, expected);
}

void tst_QZEColorDialogSpectrum::plotEditReachesDialogResampled()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.25f));
    dialog->initSpectrum(spectrum);
    spectrum->editSourceValues().assign(41, 0.5f); // an edit the bands do not know yet
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    emit dialog->getSpectrumPlot()->update();
    QCOMPARE(colours.count(), 1);
    QZE_COMPARE_NEAR(spectrum->getSamples()[0], 0.5, 1e-6);
    const QZESpectrum::RGB rgb = spectrum->getRGB();
    compareRgb(colours.last().first().value<QZEColor>(), rgb.r, rgb.g, rgb.b, 1e-5);
    QCOMPARE(part<QLabel>(*dialog, "_spectrumScale")->text(), QStringLiteral("0.500"));
}

// --- Info labels --------------------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::spectrumInfoShowsColourAndEqualEnergyXyz()
{
    const auto dialog = makeDialog();
    const QZEColor colour = hsvOf(0.2f, 0.5f, 0.8f);
    dialog->setSpectrumInfo(colour);
    const Rgb c = rgbOfColour(colour);
    const auto text = [&](const char* name) { return part<QLabel>(*dialog, name)->text(); };
    const auto fixed = [](double v) { return QString::number(v, 'f', 4); };
    QCOMPARE(text("_r_label_s"), QStringLiteral("R: ") + fixed(c.r));
    QCOMPARE(text("_g_label_s"), QStringLiteral("G: ") + fixed(c.g));
    QCOMPARE(text("_b_label_s"), QStringLiteral("B: ") + fixed(c.b));
    QCOMPARE(text("_h_label_s"), QStringLiteral("H: ") + fixed(double(colour.h)));
    QCOMPARE(text("_s_label_s"), QStringLiteral("S: ") + fixed(double(colour.s)));
    QCOMPARE(text("_v_label_s"), QStringLiteral("V: ") + fixed(double(colour.v)));
    QVERIFY(text("_Lstar_label_s").startsWith(QStringLiteral("L*: ")));
    QCOMPARE(text("_Lstar_label_s").section(QLatin1Char('.'), 1).size(), 4);
    QVERIFY(text("_astar_label_s").startsWith(QStringLiteral("a*: ")));
    QVERIFY(text("_bstar_label_s").startsWith(QStringLiteral("b*: ")));
    QCOMPARE(text("_X_label_s"),
             QStringLiteral("X: ") + fixed(0.4384958 * c.r + 0.3921402 * c.g + 0.16936402 * c.b));
    QCOMPARE(text("_Y_label_s"),
             QStringLiteral("Y: ") + fixed(0.22285376 * c.r + 0.70867276 * c.g + 0.06847366 * c.b));
    QCOMPARE(text("_Z_label_s"),
             QStringLiteral("Z: ") + fixed(0.01732081 * c.r + 0.11046009 * c.g + 0.8722191 * c.b));
}

// --- Files ----------------------------------------------------------------------------------------

void tst_QZEColorDialogSpectrum::loadThroughFileDialogTakesSpectralFileAndShowsItsName()
{
    const QString path = m_dir.filePath(QStringLiteral("ramp.spectral"));
    std::vector<float> ramp;
    for (int k = 0; k < 41; ++k)
        ramp.push_back(0.02f * float(k));
    QVERIFY(uniformSpectrum(380, 10, ramp)->save(path.toUtf8().constData()));

    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    chosenPath = path;
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    part<QPushButton>(*dialog, "_load_spectrum_button")->click();
    QCOMPARE(askedCaptions, QStringList{QStringLiteral("Load Spectrum File")});
    QCOMPARE(spectrum->getStartWavelength(), 380);
    QCOMPARE(spectrum->getNumSamples(), 41);
    for (size_t k = 0; k < ramp.size(); ++k)
        QZE_COMPARE_NEAR_IN(spectrum->getSourceValues()[k], ramp[k], 1e-6, QString::number(k));
    QCOMPARE(part<QLineEdit>(*dialog, "_load_spectrum_line")->text(), path);
    QCOMPARE(colours.count(), 1);
    QVERIFY(changedMask(spectrum) & Spectrum::SourceValuesFieldMask);
}

void tst_QZEColorDialogSpectrum::loadFromLineEditReadsTwoColumnTextFile()
{
    const QString path = m_dir.filePath(QStringLiteral("two.txt"));
    QZE_CHECK(writeFile(path, "400 0.25\n500 0.5\n600 0.75\n700 1.0\n"));
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.1f));
    dialog->initSpectrum(spectrum);
    auto* line = part<QLineEdit>(*dialog, "_load_spectrum_line");
    line->setText(path);
    QTest::keyClick(line, Qt::Key_Return);
    QCOMPARE(spectrum->getSourceValues(), (std::vector<float>{0.25f, 0.5f, 0.75f, 1.0f}));
    QCOMPARE(spectrum->getWavelengths(), (std::vector<float>{400.0f, 500.0f, 600.0f, 700.0f}));
    QCOMPARE(line->text(), path);
    QVERIFY(askedCaptions.isEmpty());
}

// A missing file, a folder and, where the rights allow it, a file without
// read permission: each stops at the check, which reports by itself.
void tst_QZEColorDialogSpectrum::loadOfUnreadablePathLeavesSpectrumUnchanged()
{
    QStringList unreadable{m_dir.filePath(QStringLiteral("missing.spectral")), m_dir.path()};
    const QString locked = m_dir.filePath(QStringLiteral("locked.spectral"));
    QVERIFY(uniformSpectrum(380, 10, std::vector<float>(41, 0.9f))->save(locked.toUtf8().constData()));
    QVERIFY(::chmod(QFile::encodeName(locked).constData(), 0) == 0);
    if (::access(QFile::encodeName(locked).constData(), R_OK) != 0)
        unreadable << locked;
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    QSignalSpy colours(dialog.get(), SIGNAL(colorChanged(QZEColor)));
    for (const QString& path : unreadable) {
        chosenPath = path;
        part<QPushButton>(*dialog, "_load_spectrum_button")->click();
        part<QPushButton>(*dialog, "_add_spectrum_button")->click();
    }
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
    QCOMPARE(colours.count(), 0);
    QCOMPARE(reports.size(), 2 * unreadable.size());
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());
}

void tst_QZEColorDialogSpectrum::loadOfDecreasingWavelengthsLeavesSpectrumUnchanged()
{
    const QString path = m_dir.filePath(QStringLiteral("decreasing.txt"));
    QZE_CHECK(writeFile(path, "600 0.25\n500 0.5\n400 0.75\n"));
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    spectrum->setFileName("kept.spectral");
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    QByteArray utf8 = path.toUtf8();
    StderrCapture capture(m_dir.filePath(QStringLiteral("stderr.log")));
    dialog->loadSpectrumFile(utf8.data());
    dialog->addSpectrumFile(utf8.data());
    const QByteArray errors = capture.finish();
    QCOMPARE(errors.count("ERROR Spectrum: Wavelengths not monotonically increasing."), 2);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
    QCOMPARE(spectrum->getFileName(), std::string("kept.spectral"));
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());
    dialog->loadSpectrumFile(nullptr);
    QByteArray empty;
    dialog->loadSpectrumFile(empty.data());
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
}

void tst_QZEColorDialogSpectrum::addThroughFileDialogAddsLoadedSpectrum()
{
    const QString path = m_dir.filePath(QStringLiteral("quarter.spectral"));
    QVERIFY(uniformSpectrum(380, 10, std::vector<float>(41, 0.25f))->save(path.toUtf8().constData()));
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(380, 10, std::vector<float>(41, 0.5f));
    dialog->initSpectrum(spectrum);
    chosenPath = path;
    part<QPushButton>(*dialog, "_add_spectrum_button")->click();
    QCOMPARE(askedCaptions, QStringList{QStringLiteral("Add Spectrum File")});
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(41, 0.75f));
}

void tst_QZEColorDialogSpectrum::saveThroughFileDialogWritesLoadableFile()
{
    const QString path = m_dir.filePath(QStringLiteral("saved.spectral"));
    const auto dialog = makeDialog();
    std::vector<float> values(31, 0.5f);
    values[3] = 0.125f;
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, values);
    dialog->initSpectrum(spectrum);
    chosenPath = path;
    part<QPushButton>(*dialog, "_save_spectrum_button")->click();
    QCOMPARE(askedCaptions, QStringList{QStringLiteral("Save Spectrum File")});
    const osg::SpectrumPtr reread = Spectrum::create();
    QVERIFY(reread->load(path.toUtf8().constData()));
    QCOMPARE(reread->getSourceValues(), values);
    QCOMPARE(reread->getStartWavelength(), 400);
}

void tst_QZEColorDialogSpectrum::saveToUnwritablePathWritesNothing()
{
    const auto dialog = makeDialog();
    dialog->initSpectrum(uniformSpectrum(400, 10, std::vector<float>(31, 0.5f)));
    chosenPath = m_dir.filePath(QStringLiteral("missing/folder/saved.spectral"));
    part<QPushButton>(*dialog, "_save_spectrum_button")->click();
    QCOMPARE(reports.size(), 1);
    QVERIFY(!QFile::exists(chosenPath));
}

void tst_QZEColorDialogSpectrum::cancelledFileDialogChangesNothing()
{
    const auto dialog = makeDialog();
    const osg::SpectrumPtr spectrum = uniformSpectrum(400, 10, std::vector<float>(31, 0.5f));
    dialog->initSpectrum(spectrum);
    osg::PThreadBase::getCurrentChangeList()->clear();
    chosenPath.clear();
    for (const char* button : {"_load_spectrum_button", "_add_spectrum_button", "_save_spectrum_button"})
        part<QPushButton>(*dialog, button)->click();
    QCOMPARE(askedCaptions.size(), 3);
    QCOMPARE(spectrum->getSourceValues(), std::vector<float>(31, 0.5f));
    QVERIFY(osg::PThreadBase::getCurrentChangeList()->empty());
    QVERIFY(reports.isEmpty());
}

QTEST_MAIN(tst_QZEColorDialogSpectrum)
#include "tst_QZEColorDialogSpectrum.moc"
