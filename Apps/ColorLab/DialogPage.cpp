#include "DialogPage.h"

#include "PageParts.h"
#include "QZEColorDialog.h"
#include "zePlatform.h"

#include <QFormLayout>
#include <QFrame>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

// A warm orange: far from the dialog's own red start, and its linear and
// encoded forms differ clearly.
const QZEColor InitialColor(30.0f, 0.9f, 0.8f);

// The linear and the sRGB-encoded channels of a colour sent in the form the
// switch gives.
void sentChannels(const QZEColor& sent, float linear[3], float encoded[3])
{
    QZEColor linearColor = sent;
    if (!QZEColor::s_useGamma) {
        float r, g, b;
        sent.getRGB(r, g, b);
        linearColor.setGammaRGB(r, g, b);
    }
    linearColor.getRGB(linear[0], linear[1], linear[2]);
    linearColor.getGammaRGB(encoded[0], encoded[1], encoded[2]);
}

} // namespace

using PageParts::triple;

DialogPage::DialogPage(QWidget* parent)
    : QWidget(parent), _dialog(new QZEColorDialog(InitialColor, this, nullptr))
{
    _open = new QPushButton(tr("Open the Colour Dialog…"));
    _open->setToolTip(tr("Opens the colour dialog beside this window; the page follows every edit"));
    connect(_open, SIGNAL(clicked()), this, SLOT(openDialog()));
    connect(_dialog, SIGNAL(colorChanged(QZEColor)), this, SLOT(showColor(QZEColor)));

    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(_open);
    top->addStretch(1);
    layout->addLayout(top);
    auto* body = new QHBoxLayout;
    body->addWidget(createSwatches(), 1);
    body->addWidget(createValues());
    layout->addLayout(body, 1);

    showColor(_dialog->getColor());
}

QColor DialogPage::screenColor() const
{
    // getGammaQColor encodes only while the switch is on, which is exactly
    // when the dialog sends linear values.
    return _received.getGammaQColor();
}

QColor DialogPage::unconvertedColor() const
{
    return _received.getQColor();
}

void DialogPage::openDialog()
{
    _dialog->show();
    _dialog->raise();
    _dialog->activateWindow();
}

void DialogPage::showColor(QZEColor color)
{
    _received = color;
    PageParts::showOnSwatch(_swatch, screenColor());
    PageParts::showOnSwatch(_unconverted, unconvertedColor());
    _form->setText(QZEColor::s_useGamma ? tr("linear (sRGB switch on)")
                                        : tr("sRGB-encoded (sRGB switch off)"));

    float sent[3], linear[3], encoded[3];
    color.getRGB(sent[0], sent[1], sent[2]);
    sentChannels(color, linear, encoded);
    const QString texts[] = {
        triple(color.h, color.s, color.v),
        triple(sent[0], sent[1], sent[2]),
        triple(linear[0], linear[1], linear[2]),
        triple(encoded[0], encoded[1], encoded[2]),
        screenColor().name(),
    };
    for (int i = 0; i < _values.size(); ++i)
        _values[i]->setText(texts[i]);
}

QWidget* DialogPage::createSwatches()
{
    auto* box = new QGroupBox(tr("Colour from the dialog"));
    auto* layout = new QVBoxLayout(box);
    _swatch = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 6, zePlatform::getMediumIconSizeY() * 4));
    _swatch->setToolTip(tr("The colour as the host shows it on screen"));
    layout->addWidget(_swatch, 1);
    layout->addWidget(new QLabel(tr("Sent values, unconverted:")));
    _unconverted = PageParts::swatchFrame(
        QSize(zePlatform::getMediumIconSizeX() * 6, zePlatform::getMediumIconSizeY()));
    layout->addWidget(_unconverted);
    return box;
}

QWidget* DialogPage::createValues()
{
    auto* box = new QGroupBox(tr("Values"));
    auto* forms = new QFormLayout(box);
    _form = new QLabel;
    forms->addRow(tr("Form sent"), _form);
    const char* const names[] = {
        QT_TR_NOOP("HSV as sent"),
        QT_TR_NOOP("RGB as sent"),
        QT_TR_NOOP("Linear RGB"),
        QT_TR_NOOP("sRGB-encoded RGB"),
        QT_TR_NOOP("Screen colour"),
    };
    for (const char* name : names) {
        QLabel* value = PageParts::numberLabel();
        forms->addRow(tr(name), value);
        _values.append(value);
    }
    return box;
}
