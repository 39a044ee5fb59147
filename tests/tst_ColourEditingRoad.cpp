// The road of one colour edit through the library, as a host's material
// editor sees it: a colour swatch inside the editor's "Module" widget is
// clicked, the shared colour dialog opens over the module, the user drags the
// dialog's hue slider, then accepts or cancels. Every signal of the swatch
// (and of a manipulator wrapping one) is logged in order with its colour.

#include "ColourArithmetic.h"
#include "ColourChecks.h"
#include "QZEColorButton.h"
#include "QZEColorDialog.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "SignalOrder.h"
#include "SyntheticMouse.h"

#include <QPushButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

const QZEColor StartColour(10.0f, 0.5f, 0.75f); // linear (0.75, 0.4375, 0.375)

// Hue slider positions of the drag, as fractions of its width.
constexpr double DragFrom = 0.25;
constexpr double DragTo = 0.5;

// A host window with an editor module and, two levels further down, two
// swatches and a manipulator.
class Editor
{
public:
    Editor()
    {
        window.resize(400, 200);
        auto* module = new QWidget(&window);
        module->setObjectName(QStringLiteral("Module"));
        auto* panel = new QWidget(module);
        auto* layout = new QVBoxLayout(panel);
        button = new QZEColorButton(panel);
        other = new QZEColorButton(panel);
        manipulator = new QZEColorManipulator(panel, "diffuse");
        for (QWidget* widget : {static_cast<QWidget*>(button), static_cast<QWidget*>(other),
                                static_cast<QWidget*>(manipulator)})
            layout->addWidget(widget);
        (new QVBoxLayout(module))->addWidget(panel);
        (new QVBoxLayout(&window))->addWidget(module);
        this->module = module;
        button->setColor(StartColour);
        other->setColor(QZEColor(240.0f, 0.25f, 0.5f));
        manipulator->setColor(StartColour);
        window.show();
        shown = QTest::qWaitForWindowExposed(&window);
    }

    ~Editor() { delete QZEColorButton::s_colorChooser; }

    QWidget window;
    QWidget* module = nullptr;
    QZEColorButton* button = nullptr;
    QZEColorButton* other = nullptr;
    QZEColorManipulator* manipulator = nullptr;
    bool shown = false;
};

QZEColorDialog* dialog()
{
    return QZEColorButton::s_colorChooser;
}

template <typename T>
T* dialogChild(const char* name)
{
    return dialog() ? dialog()->findChild<T*>(QString::fromLatin1(name)) : nullptr;
}

void click(QWidget* widget)
{
    QTest::mouseClick(widget, Qt::LeftButton, Qt::NoModifier, widget->rect().center());
}

void sendToSlider(QZEColorSlider* slider, QEvent::Type type, int x, Qt::MouseButtons held)
{
    sendMouseEvent(slider, type, QPointF(x, slider->height() / 2), Qt::LeftButton, held);
}

// Drags the dialog's hue slider from DragFrom to DragTo of its width with the
// mouse; gives the two hues the dialog takes on the way, in degrees.
QList<float> dragHue()
{
    auto* hue = dialogChild<QZEColorSlider>("_hueSlider");
    if (!hue || !QTest::qWaitForWindowExposed(dialog()))
        return {};
    const int from = int(hue->width() * DragFrom);
    const int to = int(hue->width() * DragTo);
    sendToSlider(hue, QEvent::MouseButtonPress, from, Qt::LeftButton);
    sendToSlider(hue, QEvent::MouseMove, to, Qt::LeftButton);
    sendToSlider(hue, QEvent::MouseButtonRelease, to, Qt::NoButton);
    const float width = float(hue->width());
    return {float(from) / width * 359.99f, float(to) / width * 359.99f};
}

// The whole gesture: a click on swatch, the hue drag in the dialog, then a
// click on the dialog's button endButton ("_accept" or "_reject"). Gives the
// hues of the drag; empty when the dialog did not open.
QList<float> clickDragAndEnd(QWidget* swatch, const char* endButton)
{
    click(swatch);
    const QList<float> hues = dragHue();
    if (hues.size() == 2)
        click(dialogChild<QPushButton>(endButton));
    return hues;
}

// The start colour as the dialog gets it: through RGB and back.
QZEColor openedColour()
{
    const Rgb rgb = rgbOf(StartColour);
    return hsvOf(rgb.r, rgb.g, rgb.b);
}

QZEColor withHue(const QZEColor& colour, float hue)
{
    return QZEColor(hue, colour.s, colour.v);
}

void compareColourAt(const SignalOrder& log, int index, const QZEColor& expected)
{
    QVERIFY2(index < log.emissions.size(), "too few signals");
    compareColours(log.emissions.at(index).arguments.at(0).value<QZEColor>(), expected, 1e-5);
}

const QStringList FourColorForms = {"colorChanged()", "colorChanged(QZEColor)",
                                    "colorChanged(float,float,float)", "colorChanged(int,int,int)"};
const QStringList FourDialogForms = {"dialogColorChanged()", "dialogColorChanged(QZEColor)",
                                     "dialogColorChanged(float,float,float)",
                                     "dialogColorChanged(int,int,int)"};

} // namespace

class tst_ColourEditingRoad : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void clickOpensSharedDialogOverTheModule();
    void acceptRoadOnTheSwatch();
    void cancelRoadOnTheSwatch();
    void acceptRoadOnAManipulator();
    void cancelRoadOnAManipulator();
    void onlyTheLastClickedOfTwoSwatchesHearsTheDialog();

private:
    bool _useGamma = true;
};

void tst_ColourEditingRoad::initTestCase()
{
    qRegisterMetaType<QZEColor>();
    _useGamma = QZEColor::s_useGamma;
}

// With the switch on, the dialog's colours are linear both inside and out,
// so its cancel re-emits exactly the colour it was opened with.
void tst_ColourEditingRoad::init()
{
    QZEColor::s_useGamma = true;
}

void tst_ColourEditingRoad::cleanup()
{
    QZEColor::s_useGamma = _useGamma;
}

void tst_ColourEditingRoad::clickOpensSharedDialogOverTheModule()
{
    Editor editor;
    QVERIFY(editor.shown);
    click(editor.button);

    QVERIFY(dialog());
    QCOMPARE(dialog()->parentWidget(), editor.module);
    QVERIFY(dialog()->isVisible());
    QVERIFY(dialog()->windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    QZE_CHECK(compareColours(dialog()->getColor(), openedColour(), 1e-6));
}

void tst_ColourEditingRoad::acceptRoadOnTheSwatch()
{
    Editor editor;
    QVERIFY(editor.shown);
    SignalOrder log(editor.button);

    const QList<float> hues = clickDragAndEnd(editor.button, "_accept");
    QCOMPARE(hues.size(), 2);

    QCOMPARE(log.signatures(),
             (QStringList{"colorButtonClicked()", "temporaryColorChosen(QZEColor)",
                          "temporaryColorChosen(QZEColor)", "finalColorChosen(QZEColor)",
                          "userAccepted()"}));
    const QZEColor last = withHue(openedColour(), hues.at(1));
    QZE_CHECK(compareColourAt(log, 1, withHue(openedColour(), hues.at(0))));
    QZE_CHECK(compareColourAt(log, 2, last));
    QZE_CHECK(compareColourAt(log, 3, last));
    QZE_CHECK(compareColours(editor.button->getColor(), last, 1e-5));
    QVERIFY(!dialog()->isVisible());
}

void tst_ColourEditingRoad::cancelRoadOnTheSwatch()
{
    Editor editor;
    QVERIFY(editor.shown);
    SignalOrder log(editor.button);

    const QList<float> hues = clickDragAndEnd(editor.button, "_reject");
    QCOMPARE(hues.size(), 2);

    // The dialog's cancel first takes the live colour back to the one it was
    // opened with; then the swatch reports its own, unchanged colour.
    QCOMPARE(log.signatures(),
             (QStringList{"colorButtonClicked()", "temporaryColorChosen(QZEColor)",
                          "temporaryColorChosen(QZEColor)", "temporaryColorChosen(QZEColor)",
                          "finalColorChosen(QZEColor)", "userSkipped()"}));
    QZE_CHECK(compareColourAt(log, 1, withHue(openedColour(), hues.at(0))));
    QZE_CHECK(compareColourAt(log, 2, withHue(openedColour(), hues.at(1))));
    QZE_CHECK(compareColourAt(log, 3, openedColour()));
    QCOMPARE(log.emissions.at(4).arguments.at(0).value<QZEColor>(), StartColour);
    QCOMPARE(editor.button->getColor(), StartColour);
    QVERIFY(!dialog()->isVisible());
}

void tst_ColourEditingRoad::acceptRoadOnAManipulator()
{
    Editor editor;
    QVERIFY(editor.shown);
    QZEColorButton* inner = editor.manipulator->findChild<QZEColorButton*>();
    SignalOrder log(editor.manipulator);

    const QList<float> hues = clickDragAndEnd(inner, "_accept");
    QCOMPARE(hues.size(), 2);
    QCOMPARE(dialog()->parentWidget(), editor.module);

    QCOMPARE(log.signatures(), QStringList{"buttonPressed()"} + FourDialogForms + FourDialogForms
                                   + FourColorForms + QStringList{"finalColorSet(QZEColor)"});
    const QZEColor last = withHue(openedColour(), hues.at(1));
    QZE_CHECK(compareColourAt(log, 2, withHue(openedColour(), hues.at(0))));
    QZE_CHECK(compareColourAt(log, 6, last));
    QZE_CHECK(compareColourAt(log, 10, last));
    QZE_CHECK(compareColourAt(log, 13, last));
    QZE_CHECK(compareColours(editor.manipulator->getColor(), last, 1e-5));
    // The slider follows the final colour: its handle at the encoded brightness.
    const Rgb rgb = rgbOf(last);
    const double brightest = srgbEncoded(std::max({rgb.r, rgb.g, rgb.b}));
    QZE_COMPARE_NEAR(editor.manipulator->findChild<QZEColorSlider*>()->getValue(), brightest, 1e-5);
}

void tst_ColourEditingRoad::cancelRoadOnAManipulator()
{
    Editor editor;
    QVERIFY(editor.shown);
    QZEColorButton* inner = editor.manipulator->findChild<QZEColorButton*>();
    SignalOrder log(editor.manipulator);

    const QList<float> hues = clickDragAndEnd(inner, "_reject");
    QCOMPARE(hues.size(), 2);

    QCOMPARE(log.signatures(), (QStringList{"buttonPressed()"} + FourDialogForms + FourDialogForms
                                   + FourDialogForms + FourColorForms
                                   + QStringList{"finalColorSet(QZEColor)", "cancelled()"}));
    QZE_CHECK(compareColourAt(log, 2, withHue(openedColour(), hues.at(0))));
    QZE_CHECK(compareColourAt(log, 6, withHue(openedColour(), hues.at(1))));
    QZE_CHECK(compareColourAt(log, 10, openedColour()));
    QCOMPARE(log.emissions.at(14).arguments.at(0).value<QZEColor>(), StartColour);
    QCOMPARE(log.emissions.at(17).arguments.at(0).value<QZEColor>(), StartColour);
    QCOMPARE(editor.manipulator->getColor(), StartColour);
}

void tst_ColourEditingRoad::onlyTheLastClickedOfTwoSwatchesHearsTheDialog()
{
    Editor editor;
    QVERIFY(editor.shown);
    SignalOrder first(editor.button);
    SignalOrder second(editor.other);

    click(editor.button);
    QZEColorDialog* opened = dialog();
    click(editor.other); // while the dialog is open
    QCOMPARE(dialog(), opened);
    const QList<float> hues = dragHue();
    QCOMPARE(hues.size(), 2);
    click(dialogChild<QPushButton>("_accept"));

    QCOMPARE(first.signatures(), QStringList{"colorButtonClicked()"});
    QCOMPARE(editor.button->getColor(), StartColour);
    // Re-aiming the open dialog at the second swatch's colour is its first
    // live change.
    QCOMPARE(second.signatures(),
             (QStringList{"colorButtonClicked()", "temporaryColorChosen(QZEColor)",
                          "temporaryColorChosen(QZEColor)", "temporaryColorChosen(QZEColor)",
                          "finalColorChosen(QZEColor)", "userAccepted()"}));
    const QZEColor otherColour(240.0f, 0.25f, 0.5f);
    QZE_CHECK(compareColourAt(second, 1, otherColour));
    QZE_CHECK(compareColourAt(second, 3, withHue(otherColour, hues.at(1))));
    QZE_CHECK(compareColours(editor.other->getColor(), withHue(otherColour, hues.at(1)), 1e-5));
}

QTEST_MAIN(tst_ColourEditingRoad)
#include "tst_ColourEditingRoad.moc"
