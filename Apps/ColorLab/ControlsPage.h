#ifndef CONTROLSPAGE_H
#define CONTROLSPAGE_H

#include "QZEColor.h"
#include "QZEColorField.h"

#include <QVector>
#include <QWidget>

class QButtonGroup;
class QFrame;
class QGridLayout;
class QLabel;
class QZEColorButton;
class QZEColorManipulator;
class QZEColorSlider;

// The colour controls at work on one linear colour: a colour field with its
// slider for the component the field's mode fixes, nine buttons that switch
// both to a mode, the colour as a colour button with a row of swatches to
// drag colours between, and the colour's values in every form.
//
// Beside them, a material's colours as a material editor shows them:
// diffuse, specular and emission, one colour manipulator each, with the
// colour it last reported and the name of the last signal it emitted.
//
// The field and its slider work in the field's form (display values in the
// HSV and RGB modes, linear ones in the L*a*b* modes); the page converts to
// and from its linear colour. Whatever moves, the other controls follow with
// their signals blocked.
class ControlsPage : public QWidget
{
    Q_OBJECT

public:
    explicit ControlsPage(QWidget* parent = nullptr);

    QZEColor color() const { return _color; }
    void setColor(const QZEColor& color);
    void setMode(QZEColorField::Mode mode);

    QZEColorField* colorField() const { return _field; }
    QZEColorButton* currentColorButton() const { return _swatch; }
    const QVector<QZEColorButton*>& swatches() const { return _swatches; }
    QZEColorSlider* fieldSlider() const { return _slider; }
    const QVector<QZEColorManipulator*>& materialManipulators() const { return _manipulators; }
    // The swatch and the signal label beside manipulator `row`.
    QFrame* materialSwatch(int row) const { return _materialSwatches.at(row); }
    QLabel* materialSignal(int row) const { return _materialSignals.at(row); }

private slots:
    void showManipulatorSignal();
    void showManipulatorColor(const QZEColor& color);

private:
    QWidget* createFieldBox();
    QWidget* createModeButtons();
    QWidget* createValues();
    QWidget* createSwatches();
    QWidget* createMaterial();
    void addMaterialRow(QGridLayout* grid, const char* name, const QZEColor& color);
    int materialRowOf(QObject* manipulator) const;
    void takeFieldColor(const QZEColor& picked);
    void takeSliderValue();
    void showColor(bool moveSlider);
    void showInField(const QZEColor& fieldColor);
    void showInSlider(const QZEColor& fieldColor, bool move);
    void showValues();

    QZEColor _color;
    QZEColorField* _field = nullptr;
    QZEColorSlider* _slider = nullptr;
    QButtonGroup* _modes = nullptr;
    QZEColorButton* _swatch = nullptr;
    QVector<QZEColorButton*> _swatches;
    QVector<QLabel*> _values;
    QVector<QZEColorManipulator*> _manipulators;
    QVector<QFrame*> _materialSwatches;
    QVector<QLabel*> _materialSignals;
};

#endif // CONTROLSPAGE_H
