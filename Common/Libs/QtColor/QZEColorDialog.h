#ifndef QZECOLORDIALOG_H
#define QZECOLORDIALOG_H

#include "QZEColor.h"
#include "QZEColorSlider.h"
#include "QZESamplingPreset.h"
#include "osgSpectrum.h"

#include <QDialog>
#include <QPoint>
#include <QWidget>

#include <array>
#include <vector>

class QCloseEvent;
class QResizeEvent;
class QTimer;
class QZEColorButton;
class QZEDoubleSpiner;
class QZEScreenPicker;
class QZESpectrumPlot;
class Ui_QZEColorDialogGUI;

/// The colour chooser that every colour button opens.
///
/// The dialog works live: each edit of the colour field, a slider, a spin box,
/// a custom colour or the pipette emits colorChanged() at once, so that the host
/// previews the colour while the dialog is open. reinit() starts a new editing
/// pass and remembers the colour it was given; cancelling, closing the window
/// and Escape emit that colour again before the dialog goes away.
///
/// Inside, the colour is held linear. What comes in through setColor() and goes
/// out through getColor() and colorChanged() is linear too while
/// QZEColor::s_useGamma is set, and sRGB-encoded while it is clear. reject()
/// and closeEvent() emit the remembered colour as it is stored, unencoded.
///
/// Everything the dialog writes back into its own controls is written with
/// their signals blocked, so a refresh never runs a handler and never emits.
///
/// The pipette reads the screen where the platform allows it: a small,
/// almost transparent window follows the cursor outside the dialog and a left
/// release there picks the pixel under it. On a Wayland session the desktop
/// portal's colour picker does the picking; without either the pipette button
/// is disabled and says why.
///
/// The spectrum tab edits a spectrum the host lends through initSpectrum() in
/// place. Every field write is first recorded in the current thread's change
/// list, and every edit resamples the spectrum before its colour is taken, so
/// the colour, the labels and the plot always show the spectrum as it now is.
/// "Cancel" on that tab puts back the copy taken at initSpectrum().
class QZEColorDialog : public QDialog
{
    Q_OBJECT

public:
    explicit QZEColorDialog(QWidget* parent = nullptr, const char* name = nullptr);
    QZEColorDialog(const QZEColor& color, QWidget* parent = nullptr, const char* name = nullptr);
    ~QZEColorDialog() override;

    void reinit(const QZEColor& color);
    QZEColor getColor() const;
    QColor getQColor() const;
    void updateGUI();
    void languageChange();
    void accept() override;

    static QZEColor grabScreenColor(const QPoint& position);

    /// Asks the user for a spectrum file: an open-file dialog, or with
    /// forSaving a save-file dialog. Returns the chosen path, empty when the
    /// user cancels.
    using SpectrumPathChooser = QString (*)(QWidget* parent, const QString& caption,
                                            const QString& directory, const QString& filter,
                                            bool forSaving);
    /// Installs chooser (nullptr restores the file dialogs) and returns the
    /// previous one (nullptr for the file dialogs).
    static SpectrumPathChooser setSpectrumPathChooser(SpectrumPathChooser chooser);

    const std::vector<SamplingPreset>& getSamplingPresets() const { return _samplingPresetList; }
    QZESpectrumPlot* getSpectrumPlot() const { return _plot; }
    osg::SpectrumPtr getSpectrum() const { return _spectrum; }

    /// The sampling editor's last state, for the next dialog of the process.
    static bool _samplingEditorEnabled;

signals:
    void colorChanged(QZEColor color);

public slots:
    void hueSliderChanged(float);
    void saturationSliderChanged(float);
    void valueSliderChanged(float);
    void redSliderChanged(float);
    void greenSliderChanged(float);
    void blueSliderChanged(float);
    void lstarSliderChanged(float);
    void astarSliderChanged(float);
    void bstarSliderChanged(float);
    void colorFieldChanged(QZEColor);
    void colorFieldSliderChanged(float);
    void setHueMode(bool);
    void setSaturationMode(bool);
    void setValueMode(bool);
    void setRedMode(bool);
    void setGreenMode(bool);
    void setBlueMode(bool);
    void setLstarMode(bool);
    void setAstarMode(bool);
    void setBstarMode(bool);
    void hueSpinerChanged(double);
    void saturationSpinerChanged(double);
    void valueSpinerChanged(double);
    void redSpinerChanged(double);
    void greenSpinerChanged(double);
    void blueSpinerChanged(double);
    void lstarSpinerChanged(double);
    void astarSpinerChanged(double);
    void bstarSpinerChanged(double);
    void addCustomColor();
    void getCustomColor(int index);
    void toggleColorPipette(bool enable);
    void restorePreviousColor();
    void setUseGamma(bool);
    void setGammaValue(double);
    void tabChanged(int);
    void setUseSpectrum(bool);
    void saveSpectrumButtonClicked();
    void loadSpectrumLineChanged();
    void loadSpectrumButtonClicked();
    void addSpectrumButtonClicked();
    void loadSpectrumFile(char*);
    void addSpectrumFile(char*);
    void reject() override;
    void rejectSpectrum();
    void setUniformMode(bool);
    void setNonUniformMode(bool);
    void updateSpectrum();
    void resetSpectrum();
    void setSamplingPreset(int preset);
    void resampleSpectrum();
    void setAnalyticFunction();
    void addAnalyticFunction();
    void analyticFunctionChanged(int);
    void rgbSpectrumSliderChanged(float value);
    void scaleSpectrumSliderChanged(float value);
    void toggleSamplingEditor(bool);
    void preGrabScreenColor();
    void initSpectrum(const osg::SpectrumPtr& spectrum, float maxValue = 1.0f,
                      bool spectrumOnly = false);
    void setSpectrumInfo(QZEColor);
    void setColor(const QZEColor&);
    void setColorInfo(const QZEColor&);

protected:
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    /// One colour channel's slider and spin box.
    struct Channel
    {
        QZEColorSlider::Mode mode;
        QZEColorSlider* slider;
        QZEDoubleSpiner* spiner;
    };
    /// Red, green, blue, hue, saturation, value, L*, a*, b*.
    std::array<Channel, 9> channels() const;

    void init();
    void connectControls();
    void setUpSliders();
    void setUpSpinBoxes();
    void setUpPipette();
    void setUpSwatches();

    /// Slider units: hue 0..1 for 0..359.99 degrees, a* and b* centred on 0.5.
    void writeComponent(QZEColorSlider::Mode mode, float position);
    void writeLab(int component, float value);
    void editComponent(QZEColorSlider::Mode mode, float position);
    void editLab(int component, float value);
    void finishEdit();
    void updateSlider();
    void updateLineEdits();
    bool colorFieldHoldsCurrentColor() const;
    void showOnColorField(const float lab[3]);
    void refreshAfterGammaChange();
    void setFieldMode(bool on, QZEColorSlider::Mode mode);
    void updateSpectrumTab(bool updateRGB);
    void updateColorFromSpectrum(const osg::SpectrumPtr& spectrum);

    void setUpSpectrumTab();
    void connectSpectrumControls();
    void setUpFileButtons();
    void setUpSpectrumSliders();
    void setUpSamplingPresets();
    void showSpectrumPlot(float maxValue);
    void recordChange(osg::BitVector whichFields) const;
    void finishSpectrumEdit();
    void showSpectrumSliders(bool updateRGB);
    void showSampling();
    void enableSamplingControls();
    bool samplingIsUniform() const;
    void leaveNonUniformSampling(bool confirmed);
    void runAnalyticFunction(bool replace);
    QString chooseSpectrumPath(const QString& caption, const QString& directory,
                               const QString& filter, bool forSaving);
    osg::SpectrumPtr readSpectrumFile(const char* path) const;
    void readChosenSpectrumFile(const QString& caption, void (QZEColorDialog::*read)(char*));

    static void showOnSwatch(QZEColorButton* swatch, const QZEColor& color);
    static QZEColor fromScreenColor(const QColor& pixel);
    bool isOverDialog(const QPoint& globalPosition) const;
    void startScreenPicking();
    void startPortalPicking();
    void stopPicking();
    void pickUnderCursor();
    void takePortalColor(const QColor& pixel);

    Ui_QZEColorDialogGUI* _gui;
    QZEColor _previousColor;
    QZEColor _color;
    QTimer* _pipetteTimer = nullptr;
    QWidget _pipetteCatcher;
    QZEScreenPicker* _portalPicker = nullptr;
    osg::SpectrumPtr _spectrum;
    osg::SpectrumPtr _backupSpectrum;
    std::vector<SamplingPreset> _samplingPresetList;
    QZESpectrumPlot* _plot = nullptr;
};

#endif // QZECOLORDIALOG_H
