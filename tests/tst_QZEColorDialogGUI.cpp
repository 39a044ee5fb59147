// The library compiles the form and exports the generated header. Naming it
// through a macro keeps this target's AUTOUIC from looking for the form
// beside the test.
#define QZE_COLOR_DIALOG_FORM "ui_QZEColorDialogGUI.h"
#include QZE_COLOR_DIALOG_FORM

#include "QZEColorDialog.h"
#include "TestHelpers.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QDialog>
#include <QFrame>
#include <QGroupBox>
#include <QLayout>
#include <QProcess>
#include <QTabWidget>
#include <QTextDocument>
#include <QTranslator>
#include <QtTest>

#include <memory>

namespace {

// Marks every text of one context, so a test can tell which texts went through it.
class MarkingTranslator : public QTranslator
{
public:
    explicit MarkingTranslator(const char* context) : _context(context) {}

    bool isEmpty() const override { return false; }

    QString translate(const char* context, const char* sourceText, const char* = nullptr,
                      int = -1) const override
    {
        if (_context != context || !sourceText || !*sourceText)
            return {};
        return QStringLiteral("<%1>").arg(QString::fromUtf8(sourceText));
    }

private:
    QByteArray _context;
};

// The text a user reads on a widget: a group box's title, a button's or
// label's text.
QString shownText(const QWidget* widget)
{
    if (auto* group = qobject_cast<const QGroupBox*>(widget))
        return group->title();
    if (auto* button = qobject_cast<const QAbstractButton*>(widget))
        return button->text();
    if (auto* label = qobject_cast<const QLabel*>(widget))
        return label->text();
    return QStringLiteral("(no text)");
}

// Where the layout holds child (a widget or a nested layout): row, column,
// row span, column span; all -1 when it does not hold it directly.
QVector<int> gridPlace(QGridLayout* grid, QObject* child)
{
    for (int i = 0; i < grid->count(); ++i) {
        QLayoutItem* item = grid->itemAt(i);
        if (item->widget() == child || item->layout() == child) {
            int row, column, rowSpan, columnSpan;
            grid->getItemPosition(i, &row, &column, &rowSpan, &columnSpan);
            return {row, column, rowSpan, columnSpan};
        }
    }
    return {-1, -1, -1, -1};
}

bool layoutHolds(const QLayout* layout, const QObject* child)
{
    for (int i = 0; i < layout->count(); ++i) {
        QLayoutItem* item = layout->itemAt(i);
        if (item->widget() == child || item->layout() == child)
            return true;
    }
    return false;
}

// Every line of text wider than the room the widget gives it, as
// "name: text (needed > room)". Room is the contents width, less a label's
// margin and indent, and for a button with text or a checkable group box
// also the space its style keeps for the indicator or icon, which the minimum
// size hint includes; an icon-only button needs room for its icon.
QStringList clippedTexts(const QWidget* root)
{
    QStringList clipped;
    const auto check = [&clipped](const QWidget* widget, const QString& text, int room) {
        const QFontMetrics metrics = widget->fontMetrics();
        for (const QString& line : text.split(QLatin1Char('\n'))) {
            const int needed = metrics.horizontalAdvance(QString(line).remove(QLatin1Char('&')));
            if (needed > room)
                clipped << QStringLiteral("%1: %2 (%3 > %4)").arg(widget->objectName(), line).arg(needed).arg(room);
        }
    };
    for (const QWidget* widget : root->findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(root))
            continue;
        if (auto* label = qobject_cast<const QLabel*>(widget)) {
            if (!Qt::mightBeRichText(label->text()))
                check(label, label->text(), label->contentsRect().width() - 2 * label->margin()
                                                - qMax(0, label->indent()));
        } else if (auto* button = qobject_cast<const QAbstractButton*>(widget)) {
            check(button, button->text(), button->contentsRect().width());
            // An icon-only button may be sized to its icon; one with text
            // needs the room its style asks for beside the text.
            if (button->text().isEmpty() ? button->iconSize().width() > button->contentsRect().width()
                                         : button->width() < button->minimumSizeHint().width())
                clipped << QStringLiteral("%1: narrower than its text and decoration").arg(button->objectName());
        } else if (auto* group = qobject_cast<const QGroupBox*>(widget)) {
            check(group, group->title(), group->contentsRect().width());
            if (group->width() < group->minimumSizeHint().width())
                clipped << QStringLiteral("%1: narrower than its title").arg(group->objectName());
        }
    }
    return clipped;
}

const QString pipetteToolTip = QStringLiteral(
    "The pipette allows picking a color from screen.\n"
    "Activate the Pipette and left-click anywhere on the desktop.\n"
    "To abort picking click again the Pipette button or right-click anywhere.");

} // namespace

class tst_QZEColorDialogGUI : public QObject
{
    Q_OBJECT

private:
    QWidget* widget(const char* name) const;
    template <class T> T* child(const char* name) const;

    std::unique_ptr<QDialog> _dialog;
    Ui_QZEColorDialogGUI _ui;
    bool _savedUseGamma = true;

private slots:
    void init();
    void cleanup();

    void formIsNamedAndTitled();
    void everyObjectHasItsClassAndContainer_data();
    void everyObjectHasItsClassAndContainer();
    void everyObjectShowsItsTextAndToolTip_data();
    void everyObjectShowsItsTextAndToolTip();
    void gridsPlaceTheirItems_data();
    void gridsPlaceTheirItems();
    void rowsHoldTheirWidgets_data();
    void rowsHoldTheirWidgets();
    void doubleSpinBoxesHaveTheirRangeAndStep_data();
    void doubleSpinBoxesHaveTheirRangeAndStep();
    void samplingSpinBoxesRangeFromOneToThousand_data();
    void samplingSpinBoxesRangeFromOneToThousand();
    void analyticSpinBoxesHaveValueDecimalsSuffixAndWidth_data();
    void analyticSpinBoxesHaveValueDecimalsSuffixAndWidth();
    void analyticButtonsAreBetween64And130PixelsWide();
    void analyticFunctionsAreListedInOrder();
    void checkableObjectsStartInTheirState_data();
    void checkableObjectsStartInTheirState();
    void groupBoxesAndSwatchesAreFlatWhereListed_data();
    void groupBoxesAndSwatchesAreFlatWhereListed();
    void framesHaveTheirShape_data();
    void framesHaveTheirShape();
    void spectrumPlotViewGivesTheSceneItsWholeArea();
    void outputLabelsAreRightAlignedAndVerticallyCentred();
    void everyPushButtonHasAutoDefaultOff();
    void modeButtonsFormOneExclusiveGroupWithHueChecked();
    void tabsCarryTheirTexts();
    void fileButtonsShowIconsWithoutText();
    void customColorsHaveRichTextHelp();
    void swatchesAndPipetteHaveAccessibleNames();
    void tabOrderFollowsFieldThenSpinBoxesThenButtons();
    void retranslateUiTranslatesInTheFormContext();
    void outputLabelsStartWithPlaceholderTexts_data();
    void outputLabelsStartWithPlaceholderTexts();
    void valueAndRgbSpinBoxesAcceptAMillionEitherWayWithoutClamping_data();
    void valueAndRgbSpinBoxesAcceptAMillionEitherWayWithoutClamping();

    void dialogTextFitsAtTheProcessScale();
    void dialogTextFitsAtScaleFactorTwo();
};

QWidget* tst_QZEColorDialogGUI::widget(const char* name) const
{
    return _dialog->findChild<QWidget*>(QString::fromLatin1(name));
}

template <class T> T* tst_QZEColorDialogGUI::child(const char* name) const
{
    return _dialog->findChild<T*>(QString::fromLatin1(name));
}

void tst_QZEColorDialogGUI::init()
{
    _savedUseGamma = QZEColor::s_useGamma;
    _dialog = std::make_unique<QDialog>();
    _ui.setupUi(_dialog.get());
}

void tst_QZEColorDialogGUI::cleanup()
{
    _dialog.reset();
    QZEColor::s_useGamma = _savedUseGamma;
}

void tst_QZEColorDialogGUI::formIsNamedAndTitled()
{
    QCOMPARE(_dialog->objectName(), QStringLiteral("QZEColorDialogGUI"));
    QCOMPARE(_dialog->windowTitle(), QStringLiteral("Choose a Color"));
}

void tst_QZEColorDialogGUI::everyObjectHasItsClassAndContainer_data()
{
    QTest::addColumn<QString>("className");
    QTest::addColumn<QString>("container");

    const auto row = [](const char* name, const char* className, const char* container) {
        QTest::newRow(name) << QString::fromLatin1(className) << QString::fromLatin1(container);
    };
    row("tabWidget", "QTabWidget", "QZEColorDialogGUI");
    row("_color_tab", "QWidget", "tabWidget");
    row("_spectrum_tab", "QWidget", "tabWidget");

    row("groupBox_color", "QFrame", "_color_tab");
    row("frame", "QFrame", "groupBox_color");
    row("_colorField", "QZEColorField", "frame");
    row("frame_2", "QFrame", "groupBox_color");
    row("_colorFieldSlider", "QZEColorSlider", "frame_2");
    row("groupBox3", "QGroupBox", "_color_tab");
    row("_current_color", "QZEColorButton", "groupBox3");
    row("_previous_color", "QZEColorButton", "groupBox3");
    row("groupBox5", "QGroupBox", "_color_tab");
    for (const char* name : {"_r_label", "_g_label", "_b_label", "_h_label", "_s_label", "_v_label",
                             "_Lstar_label", "_astar_label", "_bstar_label"})
        row(name, "QLabel", "groupBox5");
    row("_store_custom_color", "QPushButton", "_color_tab");
    row("_custom_colors", "QZEColorArray", "_color_tab");
    row("_accept", "QPushButton", "_color_tab");
    row("_reject", "QPushButton", "_color_tab");
    row("_useGamma", "QCheckBox", "_color_tab");
    row("_pick_color", "QToolButton", "_color_tab");
    row("_color_slider_group", "QGroupBox", "_color_tab");
    row("frame_3", "QFrame", "_color_slider_group");
    for (const char* key : {"red", "green", "blue", "hue", "saturation", "value", "lstar", "astar", "bstar"}) {
        const QByteArray base = QByteArray("_") + key;
        row(base + "Button", "QRadioButton", "_color_slider_group");
        row(base + "Slider", "QZEColorSlider", "_color_slider_group");
        row(base + "Spiner", "QZEDoubleSpiner", "_color_slider_group");
    }

    row("groupBox_spectrum", "QGroupBox", "_spectrum_tab");
    row("_accept_s", "QPushButton", "groupBox_spectrum");
    row("_reject_s", "QPushButton", "groupBox_spectrum");
    row("groupBox_current_previous", "QGroupBox", "groupBox_spectrum");
    row("_current_color_s", "QZEColorButton", "groupBox_current_previous");
    row("_previous_color_s", "QZEColorButton", "groupBox_current_previous");
    row("groupBox_output", "QGroupBox", "groupBox_spectrum");
    for (const char* name : {"_h_label_s", "_s_label_s", "_v_label_s", "_r_label_s", "_g_label_s", "_b_label_s",
                             "_Lstar_label_s", "_astar_label_s", "_bstar_label_s", "_X_label_s", "_Y_label_s",
                             "_Z_label_s"})
        row(name, "QLabel", "groupBox_output");
    row("_spectrumPlot", "QGraphicsView", "groupBox_spectrum");
    row("_spectrum_input_group", "QGroupBox", "groupBox_spectrum");
    row("_enableSamplingEditor", "QGroupBox", "_spectrum_input_group");
    row("spectrum_input_tab", "QTabWidget", "_spectrum_input_group");

    for (const char* name : {"label_presets", "label_spacer_presets", "label_spacer_sampling", "label_sampling_start",
                             "label_sampling_delta", "label_sampling_number"})
        row(name, "QLabel", "_enableSamplingEditor");
    row("_samplingPresets", "QZEComboBox", "_enableSamplingEditor");
    row("_nonUniformSampling", "QCheckBox", "_enableSamplingEditor");
    row("_startWavelength", "QZESpiner", "_enableSamplingEditor");
    row("_deltaWavelength", "QZESpiner", "_enableSamplingEditor");
    row("_numSamples", "QZESpiner", "_enableSamplingEditor");
    row("_resampleSpectrum", "QPushButton", "_enableSamplingEditor");

    row("tab_input_rgb", "QWidget", "spectrum_input_tab");
    row("label_file", "QLabel", "tab_input_rgb");
    row("_load_spectrum_line", "QLineEdit", "tab_input_rgb");
    for (const char* name : {"_add_spectrum_button", "_load_spectrum_button", "_save_spectrum_button"})
        row(name, "QPushButton", "tab_input_rgb");
    for (const char* name : {"label_red_s", "label_green_s", "label_blue_s", "label_scale", "_spectrumRed",
                             "_spectrumGreen", "_spectrumBlue", "_spectrumScale"})
        row(name, "QLabel", "tab_input_rgb");
    for (const char* name : {"_redSlider_s", "_greenSlider_s", "_blueSlider_s", "_scaleSlider"})
        row(name, "QZEColorSlider", "tab_input_rgb");

    row("tab_input_analytic", "QWidget", "spectrum_input_tab");
    for (const char* name : {"label_analytic_function", "label_analytic_peak_wavelength",
                             "label_analytic_peak_intensity", "label_analytic_fwhm", "label_analytic_temperature"})
        row(name, "QLabel", "tab_input_analytic");
    row("_analytic_function", "QComboBox", "tab_input_analytic");
    for (const char* name : {"_analytic_peak_wavelength", "_analytic_peak_intensity", "_analytic_fwhm",
                             "_analytic_temperature"})
        row(name, "QDoubleSpinBox", "tab_input_analytic");
    row("_analytic_add", "QPushButton", "tab_input_analytic");
    row("_analytic_set", "QPushButton", "tab_input_analytic");
    row("frame_4", "QFrame", "tab_input_analytic");
}

void tst_QZEColorDialogGUI::everyObjectHasItsClassAndContainer()
{
    QFETCH(QString, className);
    QFETCH(QString, container);

    QWidget* object = widget(QTest::currentDataTag());
    QVERIFY2(object, "no widget of that name");
    QCOMPARE(QString::fromLatin1(object->metaObject()->className()), className);
    QWidget* holder = container == _dialog->objectName() ? _dialog.get() : widget(qPrintable(container));
    QVERIFY2(holder, "no container of that name");
    QVERIFY2(holder->isAncestorOf(object), qPrintable(container + " does not hold it"));
}

void tst_QZEColorDialogGUI::everyObjectShowsItsTextAndToolTip_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("toolTip");

    const auto row = [](const char* name, const QString& text, const QString& toolTip = QString()) {
        QTest::newRow(name) << text << toolTip;
    };
    row("groupBox3", "Current");
    row("groupBox5", "Output Color");
    row("_store_custom_color", "Store Color", "add current color to custom colors");
    row("_accept", "Accept", "accept the current color");
    row("_reject", "Cancel", "close dialog and use the previous color");
    row("_useGamma", "Use sRGB Colors", "output gamma corrected color");
    row("_pick_color", "Pipette", pipetteToolTip);

    row("_redButton", "Red", "set color field to Qt::red mode");
    row("_greenButton", "Green", "set color field to Qt::green mode");
    row("_blueButton", "Blue", "set color field to Qt::blue mode");
    row("_hueButton", "Hue", "set color field to hue mode");
    row("_saturationButton", "Sat", "set color field to saturation mode");
    row("_valueButton", "Value", "set color field to value mode");
    row("_lstarButton", "L*");
    row("_astarButton", "a*");
    row("_bstarButton", "b*");

    const auto toolTipOnly = [](const char* name, const char* toolTip) {
        QTest::newRow(name) << QStringLiteral("(no text)") << QString::fromLatin1(toolTip);
    };
    toolTipOnly("_redSlider", "change red color component");
    toolTipOnly("_greenSlider", "change green color component");
    toolTipOnly("_blueSlider", "change blue color component");
    toolTipOnly("_hueSlider", "change hue");
    toolTipOnly("_saturationSlider", "change saturation");
    toolTipOnly("_valueSlider", "change value");
    toolTipOnly("_lstarSlider", "change lightness of the color");
    toolTipOnly("_astarSlider", "change balance between red/magenta and green");
    toolTipOnly("_bstarSlider", "change balance between yellow and blue");
    toolTipOnly("_redSpiner", "enter red color component");
    toolTipOnly("_greenSpiner", "enter green color component");
    toolTipOnly("_blueSpiner", "enter blue color component");
    toolTipOnly("_hueSpiner", "enter hue");
    toolTipOnly("_saturationSpiner", "enter saturation");
    toolTipOnly("_valueSpiner", "enter value");
    toolTipOnly("_lstarSpiner", "enter lightness of the color");
    toolTipOnly("_astarSpiner", "enter balance between red/magenta and green");
    toolTipOnly("_bstarSpiner", "enter balance between yellow and blue");

    row("_accept_s", "Accept");
    row("_reject_s", "Cancel");
    row("groupBox_current_previous", "Current");
    row("groupBox_output", "Output Color");
    row("_X_label_s", "X: 0.0");
    row("_Y_label_s", "Y: 1.0");
    row("_Z_label_s", "Z: 0.0");
    row("_enableSamplingEditor", "Edit Sample Distribution",
        "enable advanced tools to edit the sample placement of the current spectral distribution");
    row("label_presets", "Presets");
    toolTipOnly("_samplingPresets", "select sample distribution from presets");
    row("label_spacer_presets", "");
    row("label_spacer_sampling", "");
    row("_nonUniformSampling", "Allow Non-Uniform Sample Distribution",
        "enable editing of the wavelengths of the samples");
    row("label_sampling_start", "Start");
    toolTipOnly("_startWavelength", "enter the wavelength of the first sample");
    row("label_sampling_delta", "Delta");
    toolTipOnly("_deltaWavelength", "enter the sample spacing in the wavelength domain");
    row("label_sampling_number", "Number");
    toolTipOnly("_numSamples", "enter the total number of samples");
    row("_resampleSpectrum", "Apply");

    row("label_file", "File");
    toolTipOnly("_load_spectrum_line", "Enter path to select spectral input file.");
    row("_add_spectrum_button", "",
        "Browse file system to select a spectral input file and add it to the current spectral distribution.");
    row("_load_spectrum_button", "", "Browse file system to select a spectral input file.");
    row("_save_spectrum_button", "", "Save current spectral distribution to a file.");
    row("label_red_s", "Red");
    row("label_green_s", "Green");
    row("label_blue_s", "Blue");
    row("label_scale", "Scale");
    toolTipOnly("_scaleSlider", "scale current spectral distribution preserving the hue");
    row("_spectrumRed", "0");
    row("_spectrumGreen", "0");
    row("_spectrumBlue", "0");
    row("_spectrumScale", "0");

    row("label_analytic_function", "Function");
    toolTipOnly("_analytic_function", "Choose an analytic function.");
    row("label_analytic_peak_wavelength", "Peak Wavelength");
    toolTipOnly("_analytic_peak_wavelength", "enter the wavelength of the peak");
    row("label_analytic_peak_intensity", "Peak Intensity");
    toolTipOnly("_analytic_peak_intensity", "enter the intensity of the peak");
    row("label_analytic_fwhm", "FWHM");
    toolTipOnly("_analytic_fwhm", "enter the Full Width at Half Maximum");
    row("label_analytic_temperature", "Temperature");
    row("_analytic_add", "Add", "Add the analytic function to the current spectral distribution.");
    row("_analytic_set", "Set", "Set the analytic function as new spectral distribution.");
}

void tst_QZEColorDialogGUI::everyObjectShowsItsTextAndToolTip()
{
    QFETCH(QString, text);
    QFETCH(QString, toolTip);

    QWidget* object = widget(QTest::currentDataTag());
    QVERIFY2(object, "no widget of that name");
    QCOMPARE(shownText(object), text);
    QCOMPARE(object->toolTip(), toolTip);
}

void tst_QZEColorDialogGUI::gridsPlaceTheirItems_data()
{
    QTest::addColumn<QString>("grid");
    QTest::addColumn<QString>("item");
    QTest::addColumn<QVector<int>>("place");

    const auto row = [](const char* grid, const char* item, QVector<int> place) {
        QTest::addRow("%s in %s", item, grid) << QString::fromLatin1(grid) << QString::fromLatin1(item) << place;
    };
    row("gridLayout_5", "tabWidget", {0, 0, 1, 1});
    row("gridLayout_4", "groupBox_color", {0, 0, 1, 1});
    row("gridLayout_4", "_pick_color", {1, 0, 1, 1});
    row("gridLayout_4", "horizontalLayout", {1, 2, 1, 1});
    row("gridLayout_4", "HBoxLayout1", {2, 0, 1, 3});
    row("groupBox3Grid", "_current_color", {2, 0, 1, 1});
    row("groupBox3Grid", "_previous_color", {3, 0, 1, 1});

    const char* keys[] = {"red", "green", "blue", "hue", "saturation", "value", "lstar", "astar", "bstar"};
    const int rows[] = {0, 1, 2, 4, 5, 6, 8, 9, 10};
    for (int i = 0; i < 9; ++i) {
        const QByteArray base = QByteArray("_") + keys[i];
        row("gridLayout_11", base + "Button", {rows[i], 0, 1, 1});
        row("gridLayout_11", base + "Slider", {rows[i], 1, 1, 1});
        row("gridLayout_11", base + "Spiner", {rows[i], 2, 1, 1});
    }
    row("gridLayout_11", "frame_3", {11, 0, 1, 3});

    row("gridLayout_6", "groupBox_spectrum", {0, 0, 1, 1});
    row("gridLayout_7", "VBoxhLayout_spectrum_info", {0, 0, 1, 1});
    row("gridLayout_7", "_spectrumPlot", {0, 1, 1, 1});
    row("gridLayout_7", "HBoxLayout_accept_cancel", {1, 0, 1, 4});
    row("currentPreviousGrid_s", "_current_color_s", {0, 0, 2, 2});
    row("currentPreviousGrid_s", "_previous_color_s", {2, 0, 1, 1});
    row("gridLayout_9", "_enableSamplingEditor", {0, 0, 1, 1});

    row("gridLayout_8", "label_presets", {0, 0, 1, 1});
    row("gridLayout_8", "_samplingPresets", {0, 1, 1, 3});
    row("gridLayout_8", "label_spacer_presets", {0, 4, 1, 1});
    row("gridLayout_8", "label_spacer_sampling", {1, 0, 1, 1});
    row("gridLayout_8", "_nonUniformSampling", {1, 1, 1, 4});
    row("gridLayout_8", "label_sampling_start", {2, 0, 1, 1});
    row("gridLayout_8", "_startWavelength", {2, 1, 1, 1});
    row("gridLayout_8", "label_sampling_delta", {3, 0, 1, 1});
    row("gridLayout_8", "_deltaWavelength", {3, 1, 1, 1});
    row("gridLayout_8", "label_sampling_number", {4, 0, 1, 1});
    row("gridLayout_8", "_numSamples", {4, 1, 1, 1});
    row("gridLayout_8", "_resampleSpectrum", {4, 2, 1, 2});

    row("gridLayout_12", "label_file", {0, 0, 1, 1});
    row("gridLayout_12", "horizontalLayout_3", {0, 1, 1, 2});
    const char* basicRows[][3] = {{"label_red_s", "_redSlider_s", "_spectrumRed"},
                                  {"label_green_s", "_greenSlider_s", "_spectrumGreen"},
                                  {"label_blue_s", "_blueSlider_s", "_spectrumBlue"},
                                  {"label_scale", "_scaleSlider", "_spectrumScale"}};
    for (int i = 0; i < 4; ++i)
        for (int column = 0; column < 3; ++column)
            row("gridLayout_12", basicRows[i][column], {i + 1, column, 1, 1});

    const char* analyticRows[][2] = {{"label_analytic_function", "_analytic_function"},
                                     {"label_analytic_peak_wavelength", "_analytic_peak_wavelength"},
                                     {"label_analytic_peak_intensity", "_analytic_peak_intensity"},
                                     {"label_analytic_fwhm", "_analytic_fwhm"},
                                     {"label_analytic_temperature", "_analytic_temperature"}};
    for (int i = 0; i < 5; ++i)
        for (int column = 0; column < 2; ++column)
            row("gridLayout1", analyticRows[i][column], {i, column, 1, 1});
    row("gridLayout1", "horizontalLayout_2", {7, 1, 1, 1});
}

void tst_QZEColorDialogGUI::gridsPlaceTheirItems()
{
    QFETCH(QString, grid);
    QFETCH(QString, item);
    QFETCH(QVector<int>, place);

    // The current/previous grid of the colour tab has no name of its own in
    // the listing: it is the layout of groupBox3.
    QGridLayout* layout = grid == QLatin1String("groupBox3Grid")
                              ? qobject_cast<QGridLayout*>(_ui.groupBox3->layout())
                              : _dialog->findChild<QGridLayout*>(grid);
    QVERIFY2(layout, "no grid of that name");
    QObject* placed = _dialog->findChild<QObject*>(item);
    QVERIFY2(placed, "no item of that name");
    QCOMPARE(gridPlace(layout, placed), place);
}

void tst_QZEColorDialogGUI::rowsHoldTheirWidgets_data()
{
    QTest::addColumn<QString>("layout");
    QTest::addColumn<QStringList>("items");

    const auto row = [](const char* layout, QStringList items) {
        QTest::newRow(layout) << QString::fromLatin1(layout) << items;
    };
    row("verticalLayout", {"frame", "frame_2"});
    row("HBoxLayout1", {"_store_custom_color", "_custom_colors", "_accept", "_reject"});
    row("horizontalLayout", {"_useGamma"});
    row("RGBGrid", {"_r_label", "_g_label", "_b_label"});
    row("HSVGrid", {"_h_label", "_s_label", "_v_label"});
    row("LABGrid", {"_Lstar_label", "_astar_label", "_bstar_label"});
    row("HBoxLayout_accept_cancel", {"_accept_s", "_reject_s"});
    row("VBoxhLayout_spectrum_info", {"groupBox_current_previous", "groupBox_output"});
    row("HSVGrid_s", {"_h_label_s", "_s_label_s", "_v_label_s"});
    row("RGBGrid_s", {"_r_label_s", "_g_label_s", "_b_label_s"});
    row("LABGrid_s", {"_Lstar_label_s", "_astar_label_s", "_bstar_label_s"});
    row("XYZGrid_s", {"_X_label_s", "_Y_label_s", "_Z_label_s"});
    row("gridLayout_9", {"_enableSamplingEditor", "spectrum_input_tab"});
    row("horizontalLayout_3", {"_load_spectrum_line", "_add_spectrum_button", "_load_spectrum_button",
                               "_save_spectrum_button"});
    row("horizontalLayout_2", {"_analytic_add", "_analytic_set"});
    row("gridLayout1", {"frame_4"});
}

void tst_QZEColorDialogGUI::rowsHoldTheirWidgets()
{
    QFETCH(QString, layout);
    QFETCH(QStringList, items);

    auto* holder = _dialog->findChild<QLayout*>(layout);
    QVERIFY2(holder, "no layout of that name");
    for (const QString& name : items)
        QVERIFY2(layoutHolds(holder, widget(qPrintable(name))), qPrintable(name + " is not in it"));
}

void tst_QZEColorDialogGUI::doubleSpinBoxesHaveTheirRangeAndStep_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("step");

    QTest::newRow("_redSpiner") << -1e6 << 1e6 << 0.001;
    QTest::newRow("_greenSpiner") << -1e6 << 1e6 << 0.001;
    QTest::newRow("_blueSpiner") << -1e6 << 1e6 << 0.001;
    QTest::newRow("_hueSpiner") << 0.0 << 359.99 << 0.5;
    QTest::newRow("_saturationSpiner") << 0.0 << 1.0 << 0.001;
    QTest::newRow("_valueSpiner") << -1e6 << 1e6 << 0.001;
    QTest::newRow("_lstarSpiner") << 0.0 << 100.0 << 0.1;
    QTest::newRow("_astarSpiner") << 0.0 << 1.0 << 0.1;
    QTest::newRow("_bstarSpiner") << 0.0 << 1.0 << 0.1;
    QTest::newRow("_analytic_peak_wavelength") << 0.0 << 1000.0 << 1.0;
    QTest::newRow("_analytic_peak_intensity") << 0.0 << 1.0 << 0.01;
    QTest::newRow("_analytic_fwhm") << 0.0 << 500.0 << 1.0;
    QTest::newRow("_analytic_temperature") << 1000.0 << 15000.0 << 1.0;
}

void tst_QZEColorDialogGUI::doubleSpinBoxesHaveTheirRangeAndStep()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, step);

    auto* spinBox = child<QDoubleSpinBox>(QTest::currentDataTag());
    QVERIFY(spinBox);
    QCOMPARE(spinBox->minimum(), minimum);
    QCOMPARE(spinBox->maximum(), maximum);
    QCOMPARE(spinBox->singleStep(), step);
}

void tst_QZEColorDialogGUI::samplingSpinBoxesRangeFromOneToThousand_data()
{
    QTest::addColumn<int>("unused");
    for (const char* name : {"_startWavelength", "_deltaWavelength", "_numSamples"})
        QTest::newRow(name) << 0;
}

void tst_QZEColorDialogGUI::samplingSpinBoxesRangeFromOneToThousand()
{
    auto* spinBox = child<QSpinBox>(QTest::currentDataTag());
    QVERIFY(spinBox);
    QCOMPARE(spinBox->minimum(), 1);
    QCOMPARE(spinBox->maximum(), 1000);
}

void tst_QZEColorDialogGUI::analyticSpinBoxesHaveValueDecimalsSuffixAndWidth_data()
{
    QTest::addColumn<double>("value");
    QTest::addColumn<int>("decimals");
    QTest::addColumn<QString>("suffix");

    // Qt's default is two decimals where the form states none.
    QTest::newRow("_analytic_peak_wavelength") << 555.0 << 2 << QString();
    QTest::newRow("_analytic_peak_intensity") << 1.0 << 2 << QString();
    QTest::newRow("_analytic_fwhm") << 25.0 << 2 << QString();
    QTest::newRow("_analytic_temperature") << 6504.0 << 0 << QStringLiteral(" Kelvin");
}

void tst_QZEColorDialogGUI::analyticSpinBoxesHaveValueDecimalsSuffixAndWidth()
{
    QFETCH(double, value);
    QFETCH(int, decimals);
    QFETCH(QString, suffix);

    auto* spinBox = child<QDoubleSpinBox>(QTest::currentDataTag());
    QVERIFY(spinBox);
    QCOMPARE(spinBox->value(), value);
    QCOMPARE(spinBox->decimals(), decimals);
    QCOMPARE(spinBox->suffix(), suffix);
    QCOMPARE(spinBox->minimumWidth(), 64);
    QCOMPARE(spinBox->maximumWidth(), 130);
}

void tst_QZEColorDialogGUI::analyticButtonsAreBetween64And130PixelsWide()
{
    for (QPushButton* button : {_ui._analytic_add, _ui._analytic_set}) {
        QCOMPARE(button->minimumWidth(), 64);
        QCOMPARE(button->maximumWidth(), 130);
    }
}

void tst_QZEColorDialogGUI::analyticFunctionsAreListedInOrder()
{
    const QStringList expected = {"Blackbody", "CIE D",   "Gauss",   "Cosine",     "Bartlett", "Blackman",
                                  "Connes",    "Hamming", "Hanning", "Lorentzian", "Welch"};
    QStringList found;
    for (int i = 0; i < _ui._analytic_function->count(); ++i)
        found << _ui._analytic_function->itemText(i);
    QCOMPARE(found, expected);
    QCOMPARE(_ui._samplingPresets->count(), 0);
}

void tst_QZEColorDialogGUI::checkableObjectsStartInTheirState_data()
{
    QTest::addColumn<bool>("checkable");
    QTest::addColumn<bool>("checked");

    QTest::newRow("_pick_color") << true << false;
    QTest::newRow("_useGamma") << true << false;
    QTest::newRow("_hueButton") << true << true;
    for (const char* name : {"_redButton", "_greenButton", "_blueButton", "_saturationButton", "_valueButton",
                             "_lstarButton", "_astarButton", "_bstarButton"})
        QTest::newRow(name) << true << false;
    QTest::newRow("_spectrum_input_group") << true << false;
    QTest::newRow("_enableSamplingEditor") << true << false;
    QTest::newRow("_nonUniformSampling") << true << false;
    QTest::newRow("_accept") << false << false;
    QTest::newRow("_color_slider_group") << false << false;
}

void tst_QZEColorDialogGUI::checkableObjectsStartInTheirState()
{
    QFETCH(bool, checkable);
    QFETCH(bool, checked);

    QWidget* object = widget(QTest::currentDataTag());
    QVERIFY(object);
    QCOMPARE(object->property("checkable").toBool(), checkable);
    QCOMPARE(object->property("checked").toBool(), checked);
}

void tst_QZEColorDialogGUI::groupBoxesAndSwatchesAreFlatWhereListed_data()
{
    QTest::addColumn<bool>("flat");
    for (const char* name : {"groupBox3", "groupBox5", "groupBox_current_previous", "groupBox_output",
                             "_current_color", "_previous_color", "_current_color_s", "_previous_color_s"})
        QTest::newRow(name) << true;
    QTest::newRow("_enableSamplingEditor") << false;
}

void tst_QZEColorDialogGUI::groupBoxesAndSwatchesAreFlatWhereListed()
{
    QFETCH(bool, flat);
    QWidget* object = widget(QTest::currentDataTag());
    QVERIFY(object);
    QCOMPARE(object->property("flat").toBool(), flat);
}

void tst_QZEColorDialogGUI::framesHaveTheirShape_data()
{
    QTest::addColumn<int>("shape");
    QTest::newRow("frame") << int(QFrame::Box);
    QTest::newRow("frame_2") << int(QFrame::Box);
    QTest::newRow("frame_3") << int(QFrame::NoFrame);
    QTest::newRow("frame_4") << int(QFrame::NoFrame);
}

void tst_QZEColorDialogGUI::framesHaveTheirShape()
{
    QFETCH(int, shape);
    auto* frame = child<QFrame>(QTest::currentDataTag());
    QVERIFY(frame);
    QCOMPARE(int(frame->frameShape()), shape);
}

// The dialog fits the plot's scene to the view's size: without a frame and
// scroll bars the viewport is exactly that size, so nothing scrolls or is cut.
void tst_QZEColorDialogGUI::spectrumPlotViewGivesTheSceneItsWholeArea()
{
    QGraphicsView* view = _ui._spectrumPlot;
    QCOMPARE(int(view->frameShape()), int(QFrame::NoFrame));
    QCOMPARE(view->horizontalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    QCOMPARE(view->verticalScrollBarPolicy(), Qt::ScrollBarAlwaysOff);
    view->resize(300, 200);
    QCOMPARE(view->contentsRect(), view->rect());
}

void tst_QZEColorDialogGUI::outputLabelsAreRightAlignedAndVerticallyCentred()
{
    const QList<QLabel*> labels = {_ui._r_label, _ui._g_label, _ui._b_label, _ui._h_label, _ui._s_label,
                                   _ui._v_label, _ui._Lstar_label, _ui._astar_label, _ui._bstar_label};
    for (QLabel* label : labels)
        QCOMPARE(label->alignment(), Qt::AlignRight | Qt::AlignVCenter);
}

void tst_QZEColorDialogGUI::everyPushButtonHasAutoDefaultOff()
{
    const QList<QPushButton*> buttons = _dialog->findChildren<QPushButton*>();
    // Store, Accept, Cancel, four swatches, Apply, three file buttons, Add,
    // Set, and the spectrum tab's Accept and Cancel.
    QCOMPARE(buttons.size(), 15);
    for (QPushButton* button : buttons) {
        QVERIFY2(!button->autoDefault(), qPrintable(button->objectName()));
        QVERIFY2(!button->isDefault(), qPrintable(button->objectName()));
    }
}

void tst_QZEColorDialogGUI::modeButtonsFormOneExclusiveGroupWithHueChecked()
{
    QButtonGroup* group = _ui._hueButton->group();
    QVERIFY(group);
    QVERIFY(group->exclusive());
    const QList<QRadioButton*> modeButtons = {_ui._redButton,        _ui._greenButton, _ui._blueButton,
                                              _ui._hueButton,        _ui._saturationButton,
                                              _ui._valueButton,      _ui._lstarButton, _ui._astarButton,
                                              _ui._bstarButton};
    QCOMPARE(group->buttons().size(), modeButtons.size());
    for (QRadioButton* button : modeButtons)
        QCOMPARE(button->group(), group);
    QCOMPARE(group->checkedButton(), _ui._hueButton);

    _dialog->show();
    QVERIFY(QTest::qWaitForWindowExposed(_dialog.get()));
    QTest::mouseClick(_ui._astarButton, Qt::LeftButton);
    QCOMPARE(group->checkedButton(), _ui._astarButton);
    QVERIFY(!_ui._hueButton->isChecked());
    // A click on the checked button of an exclusive group leaves it checked.
    QTest::mouseClick(_ui._astarButton, Qt::LeftButton);
    QVERIFY(_ui._astarButton->isChecked());
}

void tst_QZEColorDialogGUI::tabsCarryTheirTexts()
{
    QCOMPARE(_ui.tabWidget->count(), 2);
    QCOMPARE(_ui.tabWidget->widget(0), _ui._color_tab);
    QCOMPARE(_ui.tabWidget->widget(1), _ui._spectrum_tab);
    QCOMPARE(_ui.tabWidget->tabText(0), QStringLiteral("Color"));
    QCOMPARE(_ui.tabWidget->tabText(1), QStringLiteral("Spectrum"));
    QCOMPARE(_ui.tabWidget->currentIndex(), 0);
    // Whether the spectrum tab may be used is the dialog's decision.
    QVERIFY(_ui.tabWidget->isTabEnabled(1));

    QCOMPARE(_ui.spectrum_input_tab->count(), 2);
    QCOMPARE(_ui.spectrum_input_tab->widget(0), _ui.tab_input_rgb);
    QCOMPARE(_ui.spectrum_input_tab->widget(1), _ui.tab_input_analytic);
    QCOMPARE(_ui.spectrum_input_tab->tabText(0), QStringLiteral("Basic"));
    QCOMPARE(_ui.spectrum_input_tab->tabText(1), QStringLiteral("Analytic"));
}

void tst_QZEColorDialogGUI::fileButtonsShowIconsWithoutText()
{
    for (QPushButton* button : {_ui._add_spectrum_button, _ui._load_spectrum_button, _ui._save_spectrum_button}) {
        QVERIFY2(!button->icon().isNull(), qPrintable(button->objectName()));
        QVERIFY2(!button->icon().pixmap(16, 16).isNull(), qPrintable(button->objectName()));
        QVERIFY(button->text().isEmpty());
        QVERIFY2(!button->accessibleName().isEmpty(), qPrintable(button->objectName()));
    }
}

void tst_QZEColorDialogGUI::customColorsHaveRichTextHelp()
{
    const QString help = _ui._custom_colors->whatsThis();
    QVERIFY(Qt::mightBeRichText(help));
    QTextDocument document;
    document.setHtml(help);
    QVERIFY(document.toPlainText().contains(QStringLiteral("Store Color")));
}

void tst_QZEColorDialogGUI::swatchesAndPipetteHaveAccessibleNames()
{
    QCOMPARE(_ui._current_color->accessibleName(), QStringLiteral("Current color"));
    QCOMPARE(_ui._previous_color->accessibleName(), QStringLiteral("Previous color"));
    QCOMPARE(_ui._current_color_s->accessibleName(), QStringLiteral("Current color"));
    QCOMPARE(_ui._previous_color_s->accessibleName(), QStringLiteral("Previous color"));
    QCOMPARE(_ui._pick_color->accessibleName(), QStringLiteral("Pick a color from the screen"));
}

void tst_QZEColorDialogGUI::tabOrderFollowsFieldThenSpinBoxesThenButtons()
{
    const QList<QWidget*> expected = {
        _ui._colorField,        _ui._redSpiner,      _ui._greenSpiner,    _ui._blueSpiner,
        _ui._hueSpiner,         _ui._saturationSpiner, _ui._valueSpiner,  _ui._lstarSpiner,
        _ui._astarSpiner,       _ui._bstarSpiner,    _ui._redButton,      _ui._greenButton,
        _ui._blueButton,        _ui._hueButton,      _ui._saturationButton, _ui._valueButton,
        _ui._lstarButton,       _ui._astarButton,    _ui._bstarButton,    _ui._current_color,
        _ui._previous_color,    _ui._pick_color,     _ui._useGamma,       _ui._store_custom_color,
        _ui._custom_colors,     _ui._accept,         _ui._reject};

    // Walk the focus chain once round from the colour field and keep the
    // widgets of the colour tab that take the keyboard focus by Tab.
    QList<QWidget*> found;
    QWidget* current = _ui._colorField;
    do {
        if (expected.contains(current) && (current->focusPolicy() & Qt::TabFocus))
            found << current;
        current = current->nextInFocusChain();
    } while (current != _ui._colorField);

    QStringList expectedNames, foundNames;
    for (QWidget* w : expected)
        expectedNames << w->objectName();
    for (QWidget* w : found)
        foundNames << w->objectName();
    QCOMPARE(foundNames, expectedNames);
}

void tst_QZEColorDialogGUI::retranslateUiTranslatesInTheFormContext()
{
    MarkingTranslator translator("QZEColorDialogGUI");
    QVERIFY(QCoreApplication::installTranslator(&translator));
    _ui.retranslateUi(_dialog.get());
    QCoreApplication::removeTranslator(&translator);

    QCOMPARE(_dialog->windowTitle(), QStringLiteral("<Choose a Color>"));
    QCOMPARE(_ui.tabWidget->tabText(0), QStringLiteral("<Color>"));
    QCOMPARE(_ui.tabWidget->tabText(1), QStringLiteral("<Spectrum>"));
    QCOMPARE(_ui.spectrum_input_tab->tabText(1), QStringLiteral("<Analytic>"));
    QCOMPARE(_ui._accept->text(), QStringLiteral("<Accept>"));
    QCOMPARE(_ui._accept->toolTip(), QStringLiteral("<accept the current color>"));
    QCOMPARE(_ui.groupBox5->title(), QStringLiteral("<Output Color>"));
    QCOMPARE(_ui._r_label->text(), QStringLiteral("<R: 1.0>"));
    QCOMPARE(_ui._pick_color->toolTip(), "<" + pipetteToolTip + ">");
    QCOMPARE(_ui._current_color->accessibleName(), QStringLiteral("<Current color>"));
    QCOMPARE(_ui._analytic_temperature->suffix(), QStringLiteral("< Kelvin>"));
    QCOMPARE(_ui._analytic_function->itemText(0), QStringLiteral("<Blackbody>"));
    QVERIFY(_ui._custom_colors->whatsThis().startsWith(QLatin1Char('<')));

    // Without the translator the texts come back as written.
    _ui.retranslateUi(_dialog.get());
    QCOMPARE(_dialog->windowTitle(), QStringLiteral("Choose a Color"));
    QCOMPARE(_ui._analytic_function->itemText(0), QStringLiteral("Blackbody"));
}

void tst_QZEColorDialogGUI::outputLabelsStartWithPlaceholderTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("_r_label") << "R: 1.0";
    QTest::newRow("_g_label") << "G: 0.0";
    QTest::newRow("_b_label") << "B: 0.0";
    QTest::newRow("_h_label") << "H: 0.0";
    QTest::newRow("_s_label") << "S: 1.0";
    QTest::newRow("_v_label") << "V: 0.0";
    QTest::newRow("_Lstar_label") << "L*: 0.0";
    QTest::newRow("_astar_label") << "a*: 1.0";
    QTest::newRow("_bstar_label") << "b*: 0.0";
    QTest::newRow("_X_label_s") << "X: 0.0";
    QTest::newRow("_Y_label_s") << "Y: 1.0";
    QTest::newRow("_Z_label_s") << "Z: 0.0";
}

void tst_QZEColorDialogGUI::outputLabelsStartWithPlaceholderTexts()
{
    QFETCH(QString, text);
    auto* label = child<QLabel>(QTest::currentDataTag());
    QVERIFY(label);
    QCOMPARE(label->text(), text);
}

void tst_QZEColorDialogGUI::valueAndRgbSpinBoxesAcceptAMillionEitherWayWithoutClamping_data()
{
    QTest::addColumn<int>("unused");
    for (const char* name : {"_redSpiner", "_greenSpiner", "_blueSpiner", "_valueSpiner"})
        QTest::newRow(name) << 0;
}

void tst_QZEColorDialogGUI::valueAndRgbSpinBoxesAcceptAMillionEitherWayWithoutClamping()
{
    auto* spinBox = child<QDoubleSpinBox>(QTest::currentDataTag());
    QVERIFY(spinBox);
    for (const double entry : {-1e6, -2.5, 1.75, 654321.125, 1e6}) {
        spinBox->setValue(entry);
        QCOMPARE(spinBox->value(), entry);
    }
    // Past a million the widget's own range is the limit.
    spinBox->setValue(2e6);
    QCOMPARE(spinBox->value(), 1e6);
    spinBox->setValue(-2e6);
    QCOMPARE(spinBox->value(), -1e6);
}

// Run as it is at device pixel ratio 1, and by the test below in a child
// process at ratio 2 (QZE_EXPECTED_PIXEL_RATIO says which). The dialog shows
// pure green: its labels carry the longest numbers (H: 120.0000, a*: -86.xxx).
void tst_QZEColorDialogGUI::dialogTextFitsAtTheProcessScale()
{
    const qreal expectedRatio = qEnvironmentVariableIsSet("QZE_EXPECTED_PIXEL_RATIO")
                                    ? qgetenv("QZE_EXPECTED_PIXEL_RATIO").toDouble()
                                    : 1.0;
    QZEColor::s_useGamma = true;
    QZEColorDialog dialog(QZEColor(120.0f, 1.0f, 1.0f), nullptr, nullptr);
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QCOMPARE(dialog.devicePixelRatioF(), expectedRatio);

    auto* tabs = dialog.findChild<QTabWidget*>(QStringLiteral("tabWidget"));
    QVERIFY(tabs);
    for (int tab = 0; tab < tabs->count(); ++tab) {
        tabs->setCurrentIndex(tab);
        QCoreApplication::processEvents();
        const QImage shot = dialog.grab().toImage();
        QCOMPARE(shot.size(), dialog.size() * expectedRatio);
        const QStringList clipped = clippedTexts(&dialog);
        QVERIFY2(clipped.isEmpty(), qPrintable(tabs->tabText(tab) + ": " + clipped.join(QStringLiteral("; "))));
    }
}

void tst_QZEColorDialogGUI::dialogTextFitsAtScaleFactorTwo()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2"));
    environment.insert(QStringLiteral("QZE_EXPECTED_PIXEL_RATIO"), QStringLiteral("2"));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("dialogTextFitsAtTheProcessScale")});
    QVERIFY(child.waitForFinished(60000));
    const QByteArray output = child.readAll();
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QVERIFY2(child.exitCode() == 0, output.constData());
    QVERIFY2(output.contains("PASS   : tst_QZEColorDialogGUI::dialogTextFitsAtTheProcessScale()"), output.constData());
}

QTEST_MAIN(tst_QZEColorDialogGUI)
#include "tst_QZEColorDialogGUI.moc"
