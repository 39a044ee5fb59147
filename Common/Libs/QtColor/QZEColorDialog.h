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
///
/// Usage, as a host previews and takes a colour:
/// \code
/// auto* dialog = new QZEColorDialog(QZEColor(0.0f, 1.0f, 1.0f), mainWindow);
/// QObject::connect(dialog, SIGNAL(colorChanged(QZEColor)),
///                  viewport, SLOT(previewColor(QZEColor)));
/// if (dialog->exec() == QDialog::Accepted)
///     material->setDiffuse(dialog->getColor());
/// \endcode
class QZEColorDialog : public QDialog
{
    Q_OBJECT

public:
    /// A dialog over parent showing pure red (hue 0, saturation 1, value 1),
    /// which is also the previous colour; name, when given, becomes the
    /// object name.
    explicit QZEColorDialog(QWidget* parent = nullptr, const char* name = nullptr);
    /// The same, then reinit(color).
    QZEColorDialog(const QZEColor& color, QWidget* parent = nullptr, const char* name = nullptr);
    /// Frees the form.
    ~QZEColorDialog() override;

    /// Starts a new editing pass: shows color and remembers it as the colour
    /// that cancelling restores. Emits nothing.
    void reinit(const QZEColor& color);
    /// The current colour: linear while QZEColor::s_useGamma is set,
    /// sRGB-encoded while it is clear.
    QZEColor getColor() const;
    /// getColor() as an 8-bit QColor, clamped to [0, 255].
    QColor getQColor() const;
    /// Rewrites every slider and spin box from the current colour (signals blocked).
    void updateGUI();
    /// Kept for hosts that call it after a language change; does nothing.
    void languageChange();
    /// Closes the dialog keeping the last emitted colour.
    void accept() override;

    /// The colour of the screen pixel at position (global logical
    /// coordinates), stored through the sRGB decoding while
    /// QZEColor::s_useGamma is set.
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

    /// The sampling presets the spectrum tab offers, in list order.
    const std::vector<SamplingPreset>& getSamplingPresets() const { return _samplingPresetList; }
    /// The spectrum tab's plot; null until initSpectrum() first creates it.
    QZESpectrumPlot* getSpectrumPlot() const { return _plot; }
    /// The spectrum being edited; null before initSpectrum().
    osg::SpectrumPtr getSpectrum() const { return _spectrum; }

    /// The sampling editor's last state, for the next dialog of the process.
    static bool _samplingEditorEnabled;

signals:
    /// The colour after every edit (encoded as getColor() says), and the
    /// previous colour again on cancel, close or Escape.
    void colorChanged(QZEColor color);

public slots:
    /// @{
    /// A slider of the colour tab moved: the channel takes the value (hue in
    /// degrees 0 to 360, saturation and value 0 to 1, red, green and blue 0 to
    /// 1 as shown, L* 0 to 100, a* and b* in +-QZEColor::s_LabRange / 2), the
    /// other controls follow and colorChanged() is emitted.
    void hueSliderChanged(float);
    void saturationSliderChanged(float);
    void valueSliderChanged(float);
    void redSliderChanged(float);
    void greenSliderChanged(float);
    void blueSliderChanged(float);
    void lstarSliderChanged(float);
    void astarSliderChanged(float);
    void bstarSliderChanged(float);
    /// @}
    /// The colour field picked a colour: it becomes the current colour; emits colorChanged().
    void colorFieldChanged(QZEColor);
    /// The slider beside the colour field moved (0 to 1): sets the channel
    /// the field does not show; emits colorChanged().
    void colorFieldSliderChanged(float);
    /// @{
    /// A mode button was toggled on: the colour field shows the plane of the
    /// other two channels and its slider this channel. Emits nothing.
    void setHueMode(bool);
    void setSaturationMode(bool);
    void setValueMode(bool);
    void setRedMode(bool);
    void setGreenMode(bool);
    void setBlueMode(bool);
    void setLstarMode(bool);
    void setAstarMode(bool);
    void setBstarMode(bool);
    /// @}
    /// @{
    /// A spin box of the colour tab changed: as the matching slider handler,
    /// with the value in the spin box's units (hue in degrees, red, green,
    /// blue, saturation and value 0 to 1, L* 0 to 100).
    void hueSpinerChanged(double);
    void saturationSpinerChanged(double);
    void valueSpinerChanged(double);
    void redSpinerChanged(double);
    void greenSpinerChanged(double);
    void blueSpinerChanged(double);
    void lstarSpinerChanged(double);
    void astarSpinerChanged(double);
    void bstarSpinerChanged(double);
    /// @}
    /// Stores the current colour in the next free custom colour cell.
    void addCustomColor();
    /// Takes the colour of custom cell index as the current colour and emits
    /// colorChanged(); a free cell does nothing.
    void getCustomColor(int index);
    /// Starts (enable) or ends picking a colour off the screen.
    void toggleColorPipette(bool enable);
    /// Takes the previous colour (that of the last reinit()) as the current
    /// colour and emits colorChanged().
    void restorePreviousColor();
    /// Sets the process-wide QZEColor::s_useGamma, redraws in the new encoding
    /// and emits colorChanged().
    void setUseGamma(bool);
    /// Sets the process-wide QZEColor::s_gamma; the same value again does nothing.
    void setGammaValue(double);
    /// Refreshes the tab that became current (0: colour, 1: spectrum). Emits nothing.
    void tabChanged(int);
    /// Switches the colour's source to the spectrum (creating one when the
    /// host lent none) or back to the colour controls.
    void setUseSpectrum(bool);
    /// Saves the spectrum to a file the user chooses (".spectral").
    void saveSpectrumButtonClicked();
    /// Return in the file line: loads the spectrum file named there.
    void loadSpectrumLineChanged();
    /// Loads a spectrum file the user chooses in place of the spectrum.
    void loadSpectrumButtonClicked();
    /// Adds a spectrum file the user chooses to the spectrum.
    void addSpectrumButtonClicked();
    /// Loads the spectrum file at the path (UTF-8) in place of the spectrum;
    /// an empty path, an unreadable file or a failed load changes nothing.
    void loadSpectrumFile(char*);
    /// As loadSpectrumFile(), adding the loaded spectrum to the spectrum.
    void addSpectrumFile(char*);
    /// Emits the previous colour, then closes the dialog as rejected.
    void reject() override;
    /// "Cancel" on the spectrum tab: restores the spectrum lent by
    /// initSpectrum() as it was then, then reject().
    void rejectSpectrum();
    /// @{
    /// Sampling mode radio buttons: uniform or non-uniform wavelength sampling.
    void setUniformMode(bool);
    void setNonUniformMode(bool);
    /// @}
    /// The plot edited the spectrum: recomputes the colour from it and emits colorChanged().
    void updateSpectrum();
    /// Replaces the spectrum by a flat one of the current colour's luminance.
    void resetSpectrum();
    /// Writes the sampling preset at index preset into the sampling spin boxes.
    void setSamplingPreset(int preset);
    /// Resamples the spectrum onto the grid of the sampling spin boxes.
    void resampleSpectrum();
    /// @{
    /// Sets the spectrum to, or adds to it, the analytic function chosen with
    /// its parameters, on the current sampling.
    void setAnalyticFunction();
    void addAnalyticFunction();
    /// @}
    /// Shows the parameters of analytic function index (temperature for the
    /// black body and daylight, peak, intensity and width for the others).
    void analyticFunctionChanged(int);
    /// One of the spectrum tab's RGB sliders moved (0 to 1): the spectrum is
    /// rebuilt from the three values by the RGB-to-spectrum conversion.
    void rgbSpectrumSliderChanged(float value);
    /// The scale slider moved: scales the spectrum so that its largest value
    /// becomes value (at least 0.01), keeping its hue.
    void scaleSpectrumSliderChanged(float value);
    /// Enables or disables the sampling editor, also for later dialogs.
    void toggleSamplingEditor(bool);
    /// Pipette timer tick: moves the click catcher under the cursor when the
    /// cursor is outside the dialog.
    void preGrabScreenColor();
    /// Lends the dialog spectrum to edit in place and keeps a copy for
    /// rejectSpectrum(). maxValue is the plot's upper bound; spectrumOnly
    /// keeps the spectrum from being switched off. A null spectrum does nothing.
    void initSpectrum(const osg::SpectrumPtr& spectrum, float maxValue = 1.0f,
                      bool spectrumOnly = false);
    /// Writes the spectrum tab's labels (R, G, B, H, S, V, L*, a*, b*, X, Y,
    /// Z with four decimals) for the colour.
    void setSpectrumInfo(QZEColor);
    /// Makes color the current colour (interpreted as getColor() says) and
    /// emits colorChanged() when it differs from the current one.
    void setColor(const QZEColor&);
    /// Writes the colour tab's output labels for the colour.
    void setColorInfo(const QZEColor&);

protected:
    /// Closing the window cancels: emits the previous colour first.
    void closeEvent(QCloseEvent* event) override;
    /// Refits the spectrum plot to its view.
    void resizeEvent(QResizeEvent* event) override;
    /// Handles the pipette's click catcher: a left release outside the
    /// dialog picks the pixel under the cursor; any release or key ends picking.
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
