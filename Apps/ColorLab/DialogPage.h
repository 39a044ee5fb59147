#ifndef DIALOGPAGE_H
#define DIALOGPAGE_H

#include "QZEColor.h"
#include "osgSpectrum.h"

#include <QVector>
#include <QWidget>

class QFrame;
class QGraphicsView;
class QLabel;
class QPushButton;
class QZEColorDialog;
class QZESpectrumPlot;

// The colour dialog as a host uses it: a button opens it beside the window
// without blocking it, and every colour the dialog sends while the user edits
// shows at once in a big swatch with its values.
//
// The dialog sends linear colours while its "Use sRGB Colors" switch (the
// process-wide QZEColor::s_useGamma) is on and sRGB-encoded ones while it is
// off. The page reads the switch to know which form arrived: the big swatch
// keeps showing the same colour when the switch flips, while the values as
// sent, and a second swatch that shows them unconverted, change.
//
// Beside it stands a material as a host keeps one: a spectrum (daylight D65
// to begin with) that the button lends to the dialog's spectrum tab. The
// dialog edits it in place, so its colour, its plot and its file name are
// shown again whenever the dialog reports a change.
class DialogPage : public QWidget
{
    Q_OBJECT

public:
    explicit DialogPage(QWidget* parent = nullptr);

    QZEColorDialog* dialog() const { return _dialog; }
    QPushButton* openButton() const { return _open; }
    QZEColor receivedColor() const { return _received; }
    QColor screenColor() const;
    QColor unconvertedColor() const;
    osg::SpectrumPtr materialSpectrum() const { return _material.spectrum; }
    QColor materialColor() const;
    QZESpectrumPlot* materialPlot() const { return _plot; }
    QLabel* materialFileLabel() const { return _fileName; }

    // Hands the material's spectrum to the dialog's spectrum tab, which from
    // then on edits it in place.
    void lendSpectrumToDialog();

public slots:
    void openDialog();
    void showColor(QZEColor color);
    void showMaterial();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // What a host's material holds for the dialog: its name and the spectrum
    // it reflects.
    struct Material
    {
        QString name;
        osg::SpectrumPtr spectrum;
    };

    QWidget* createSwatches();
    QWidget* createValues();
    QWidget* createMaterial();
    void rebuildPlot();

    QZEColorDialog* _dialog = nullptr;
    QPushButton* _open = nullptr;
    QZEColor _received;
    QFrame* _swatch = nullptr;
    QFrame* _unconverted = nullptr;
    QLabel* _form = nullptr;
    QVector<QLabel*> _values;
    Material _material;
    QFrame* _materialSwatch = nullptr;
    QZESpectrumPlot* _plot = nullptr;
    QGraphicsView* _plotView = nullptr;
    QLabel* _fileName = nullptr;
};

#endif // DIALOGPAGE_H
