#include "QZEColorButton.h"

#include "QZEColorDialog.h"
#include "QZEQtCompat.h"
#include "zePlatform.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QDragLeaveEvent>
#include <QDragMoveEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QMouseEvent>
#include <QPixmap>

namespace {

constexpr int DragPixmapWidth = 30;
constexpr int DragPixmapHeight = 20;

bool carriesColor(const QDropEvent* event)
{
    return event->mimeData() && event->mimeData()->hasColor();
}

// Accepts a drag that carries a colour, refuses any other.
void acceptColorOnly(QDropEvent* event)
{
    if (carriesColor(event))
        event->accept();
    else
        event->ignore();
}

} // namespace

QZEColorDialog* QZEColorButton::s_colorChooser = nullptr;

QZEColorButton::QZEColorButton(QWidget* parent, const char*) : QPushButton(parent)
{
    setObjectName(QStringLiteral("QZEColorButton"));
    setSizePolicy(QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred,
                              QSizePolicy::DefaultType));
    setFlat(true);
    setAcceptDrops(true);
    connect(this, SIGNAL(clicked(bool)), this, SLOT(buttonClicked(bool)));
    setColor(_color); // styles the initial light grey
}

void QZEColorButton::setColor(const QZEColor& color)
{
    _color = color;
    const QColor shown = _color.getGammaQColor();
    setStyleSheet(QString::asprintf("border: 1px solid rgb(127, 127, 127);border-radius: 3px;"
                                    "background: rgb(%i, %i, %i);",
                                    shown.red(), shown.green(), shown.blue()));
}

void QZEColorButton::setSpectrum(const osg::SpectrumPtr& spectrum, float maxValue,
                                 bool spectrumOnly)
{
    _spectrum = spectrum;
    _maxValue = maxValue;
    _spectrumOnly = spectrumOnly;
    // Active means the use-spectrum flag is set and all 40 bands are there.
    if (!_spectrumOnly || !_spectrum || !_spectrum->isActive())
        return;
    const QZESpectrum::RGB rgb = _spectrum->getRGB();
    setColor(QZEColor::fromRGB(rgb.r, rgb.g, rgb.b));
}

QSize QZEColorButton::sizeHint() const
{
    return QSize(zePlatform::getMediumIconSizeX(), zePlatform::getSmallIconSizeY());
}

// --- The shared colour dialog ----------------------------------------------

void QZEColorButton::buttonClicked(bool)
{
    emit colorButtonClicked();
    if (!_showColorDialog)
        return;
    QWidget* parent = dialogParent();
    // The dialog gets the colour as HSV of its own RGB: a grey with a hue
    // or a black with a saturation comes back with both at 0.
    float r, g, b;
    _color.getRGB(r, g, b);
    const QZEColor color = QZEColor::fromRGB(r, g, b);

    if (s_colorChooser) {
        // Whichever button opened the dialog last is its only listener.
        s_colorChooser->disconnect(SIGNAL(colorChanged(QZEColor)));
        s_colorChooser->disconnect(SIGNAL(accepted()));
        s_colorChooser->disconnect(SIGNAL(rejected()));
    } else {
        createColorChooser(color, parent);
    }
    listenToColorChooser();

    s_colorChooser->show();
    s_colorChooser->raise();
    s_colorChooser->reinit(color);
    s_colorChooser->initSpectrum(_spectrum, _maxValue, _spectrumOnly);
}

// A host groups the controls of one editor under a widget named "Module"; the
// dialog belongs to that editor, or else to the whole window.
QWidget* QZEColorButton::dialogParent()
{
    QWidget* topMost = this;
    for (QWidget* widget = this; widget; widget = widget->parentWidget()) {
        if (widget->objectName() == QLatin1String("Module"))
            return widget;
        topMost = widget;
    }
    return topMost;
}

void QZEColorButton::createColorChooser(const QZEColor& color, QWidget* parent)
{
    s_colorChooser = new QZEColorDialog(color, parent, nullptr);
    s_colorChooser->setWindowFlags(s_colorChooser->windowFlags() | Qt::WindowStaysOnTopHint);
    // The parent takes the dialog down with it. A functor, not a slot: the
    // static needs no place in the button's meta-object.
    connect(s_colorChooser, &QObject::destroyed, [] { s_colorChooser = nullptr; });
}

void QZEColorButton::listenToColorChooser()
{
    connect(s_colorChooser, SIGNAL(colorChanged(QZEColor)), this, SLOT(colorChanged(QZEColor)));
    connect(s_colorChooser, SIGNAL(accepted()), this, SLOT(accepted()));
    connect(s_colorChooser, SIGNAL(rejected()), this, SLOT(rejected()));
}

// The button's own colour stays as it was while the dialog is open.
void QZEColorButton::colorChanged(QZEColor color)
{
    emit temporaryColorChosen(color);
}

void QZEColorButton::accepted()
{
    if (!s_colorChooser)
        return; // nothing to take the colour from
    s_colorChooser->hide();
    setColor(s_colorChooser->getColor());
    emit finalColorChosen(_color);
    emit userAccepted();
}

// Listeners undo any temporary colour with the unchanged one.
void QZEColorButton::rejected()
{
    if (s_colorChooser)
        s_colorChooser->hide();
    emit finalColorChosen(_color);
    emit userSkipped();
}

// --- Mouse: click or drag ----------------------------------------------------
// The QPushButton handlers are left out on purpose: the swatch shows no
// sunken state, and a press only becomes a click or a drag once the mouse
// has told which one it is.

void QZEColorButton::mousePressEvent(QMouseEvent* event)
{
    _dragPending = true;
    _pressPos = roundedPosition(event);
}

void QZEColorButton::mouseMoveEvent(QMouseEvent* event)
{
    if (!_dragPending)
        return;
    if ((_pressPos - roundedPosition(event)).manhattanLength() > QApplication::startDragDistance())
        startColorDrag();
}

void QZEColorButton::mouseReleaseEvent(QMouseEvent*)
{
    if (!_dragPending)
        return;
    _dragPending = false;
    emit clicked(true);
}

QPoint QZEColorButton::roundedPosition(const QMouseEvent* event)
{
    return QPoint(qRound(QZEQtCompat::position(*event).x()), qRound(QZEQtCompat::position(*event).y()));
}

// The drag data hold the linear colour, clamped to what a QColor can carry;
// the pixmap under the cursor shows it as the swatch does.
void QZEColorButton::startColorDrag()
{
    // Consumed before exec(): the release that ends the drag must not click,
    // and exec() may run a nested event loop in which the button is deleted.
    _dragPending = false;

    auto* mimeData = new QMimeData;
    mimeData->setColorData(QVariant(_color.getClampedQColor()));
    QPixmap pixmap(DragPixmapWidth, DragPixmapHeight);
    pixmap.fill(_color.getGammaQColor());

    auto* drag = new QDrag(this);
    drag->setMimeData(mimeData);
    drag->setPixmap(pixmap);
    drag->exec(Qt::CopyAction);
}

// --- Drop target -------------------------------------------------------------

void QZEColorButton::dragEnterEvent(QDragEnterEvent* event)
{
    setFocus(Qt::OtherFocusReason);
    acceptColorOnly(event);
}

void QZEColorButton::dragMoveEvent(QDragMoveEvent* event)
{
    acceptColorOnly(event);
}

void QZEColorButton::dragLeaveEvent(QDragLeaveEvent*)
{
    if (hasFocus() && parentWidget())
        parentWidget()->setFocus(Qt::OtherFocusReason);
}

void QZEColorButton::dropEvent(QDropEvent* event)
{
    if (!carriesColor(event)) {
        event->ignore();
        return;
    }
    // Colour data that do not convert give an invalid QColor, whose channels
    // read as 0: the drop then gives black.
    const QColor dropped = qvariant_cast<QColor>(event->mimeData()->colorData());
    const QZEColor color =
        QZEColor::fromRGB(float(dropped.redF()), float(dropped.greenF()), float(dropped.blueF()));
    setColor(color);
    emit finalColorChosen(color);
    event->accept();
}
