#include "ControlsPage.h"
#include "QZEColorButton.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "SyntheticMouse.h"
#include "zePlatform.h"

#include <QFrame>
#include <QLabel>
#include <QtTest>

#include <algorithm>

namespace {

QColor swatchColour(const ControlsPage& page, int row)
{
    return page.materialSwatch(row)->palette().color(QPalette::Window);
}

QString lastSignal(const ControlsPage& page, int row)
{
    return page.materialSignal(row)->text();
}

void pressAndRelease(QZEColorSlider* slider, int x)
{
    const QPointF at(x, slider->height() / 2);
    sendMouseEvent(slider, QEvent::MouseButtonPress, at, Qt::LeftButton, Qt::LeftButton);
    sendMouseEvent(slider, QEvent::MouseButtonRelease, at, Qt::LeftButton, Qt::NoButton);
}

} // namespace

class tst_ControlsPage : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void materialColumnHoldsDiffuseSpecularAndEmission();
    void sliderStepShowsNewColourAndLastSignal();
    void dialogColourShowsOnSwatchOnly();
    void cancelShowsOldColourAndCancelled();
};

void tst_ControlsPage::initTestCase()
{
    qRegisterMetaType<QZEColor>();
    zePlatform::setDpiScale(1.0f, 1.0f);
}

void tst_ControlsPage::materialColumnHoldsDiffuseSpecularAndEmission()
{
    ControlsPage page;
    const QVector<QZEColorManipulator*>& manipulators = page.materialManipulators();
    QCOMPARE(manipulators.size(), 3);
    const QStringList names = {"Diffuse", "Specular", "Emission"};
    const QZEColor colours[] = {{20.0f, 0.8f, 0.6f}, {0.0f, 0.0f, 0.9f}, {200.0f, 0.7f, 0.15f}};
    const QList<QLabel*> labels = page.findChildren<QLabel*>();
    for (int row = 0; row < 3; ++row) {
        QCOMPARE(manipulators[row]->objectName(), names[row]);
        QCOMPARE(manipulators[row]->getColor(), colours[row]);
        QCOMPARE(swatchColour(page, row), colours[row].getGammaQColor());
        QCOMPARE(lastSignal(page, row), QStringLiteral("(no signal yet)"));
        QVERIFY(std::any_of(labels.cbegin(), labels.cend(),
                            [&](const QLabel* label) { return label->text() == names[row]; }));
    }
}

void tst_ControlsPage::sliderStepShowsNewColourAndLastSignal()
{
    ControlsPage page;
    page.resize(900, 600);
    page.show();
    QVERIFY(QTest::qWaitForWindowExposed(&page));
    QZEColorManipulator* specular = page.materialManipulators().at(1);
    auto* slider = specular->findChild<QZEColorSlider*>();

    pressAndRelease(slider, 0); // all the way down: black

    QCOMPARE(specular->getColor().v, 0.0f);
    QCOMPARE(swatchColour(page, 1), QColor(0, 0, 0));
    QCOMPARE(lastSignal(page, 1), QStringLiteral("sliderReleased"));
    QCOMPARE(lastSignal(page, 0), QStringLiteral("(no signal yet)"));
}

void tst_ControlsPage::dialogColourShowsOnSwatchOnly()
{
    ControlsPage page;
    QZEColorManipulator* emission = page.materialManipulators().at(2);
    const QZEColor before = emission->getColor();
    const QZEColor live(60.0f, 1.0f, 1.0f);

    emit emission->findChild<QZEColorButton*>()->temporaryColorChosen(live);

    QCOMPARE(swatchColour(page, 2), live.getGammaQColor());
    QCOMPARE(lastSignal(page, 2), QStringLiteral("dialogColorChanged"));
    QCOMPARE(emission->getColor(), before);
}

void tst_ControlsPage::cancelShowsOldColourAndCancelled()
{
    ControlsPage page;
    QZEColorManipulator* diffuse = page.materialManipulators().at(0);
    auto* button = diffuse->findChild<QZEColorButton*>();
    emit button->temporaryColorChosen(QZEColor(60.0f, 1.0f, 1.0f));

    button->rejected(); // what the dialog's cancel reaches

    QCOMPARE(swatchColour(page, 0), QZEColor(20.0f, 0.8f, 0.6f).getGammaQColor());
    QCOMPARE(lastSignal(page, 0), QStringLiteral("cancelled"));
}

QTEST_MAIN(tst_ControlsPage)
#include "tst_ControlsPage.moc"
