#ifndef DIALOGPAGE_H
#define DIALOGPAGE_H

#include "QZEColor.h"

#include <QVector>
#include <QWidget>

class QFrame;
class QLabel;
class QPushButton;
class QZEColorDialog;

// The colour dialog as a host uses it: a button opens it beside the window
// without blocking it, and every colour the dialog sends while the user edits
// shows at once in a big swatch with its values.
//
// The dialog sends linear colours while its "Use sRGB Colors" switch (the
// process-wide QZEColor::s_useGamma) is on and sRGB-encoded ones while it is
// off. The page reads the switch to know which form arrived: the big swatch
// keeps showing the same colour when the switch flips, while the values as
// sent, and a second swatch that shows them unconverted, change.
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

public slots:
    void openDialog();
    void showColor(QZEColor color);

private:
    QWidget* createSwatches();
    QWidget* createValues();

    QZEColorDialog* _dialog = nullptr;
    QPushButton* _open = nullptr;
    QZEColor _received;
    QFrame* _swatch = nullptr;
    QFrame* _unconverted = nullptr;
    QLabel* _form = nullptr;
    QVector<QLabel*> _values;
};

#endif // DIALOGPAGE_H
