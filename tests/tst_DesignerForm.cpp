// A form made in Qt Designer with every widget of the plugin, compiled by
// uic: the generated code builds the widgets and applies the properties set
// in the property editor.
#include "QZEColorArray.h"
#include "QZEColorButton.h"
#include "QZEColorField.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "QZESpectrumPlotView.h"
#include "ui_DesignerForm.h"

#include <QtTest>

class tst_DesignerForm : public QObject
{
    Q_OBJECT

private slots:
    void formHoldsEveryWidgetByObjectNameAndClass_data();
    void formHoldsEveryWidgetByObjectNameAndClass();
    void formAppliesThePropertiesSetInDesigner();
};

void tst_DesignerForm::formHoldsEveryWidgetByObjectNameAndClass_data()
{
    QTest::addColumn<QString>("objectName");
    QTest::addColumn<QString>("className");
    QTest::newRow("slider") << "colorSlider" << "QZEColorSlider";
    QTest::newRow("button") << "colorButton" << "QZEColorButton";
    QTest::newRow("manipulator") << "colorManipulator" << "QZEColorManipulator";
    QTest::newRow("plot") << "spectrumPlotView" << "QZESpectrumPlotView";
    QTest::newRow("field") << "colorField" << "QZEColorField";
    QTest::newRow("array") << "colorArray" << "QZEColorArray";
}

void tst_DesignerForm::formHoldsEveryWidgetByObjectNameAndClass()
{
    QFETCH(QString, objectName);
    QFETCH(QString, className);
    QWidget form;
    Ui::DesignerForm ui;
    ui.setupUi(&form);
    form.show();
    QVERIFY(QTest::qWaitForWindowExposed(&form));
    // The form's own children only: the manipulator holds a button and a
    // slider of its own.
    QWidget* widget = form.findChild<QWidget*>(objectName, Qt::FindDirectChildrenOnly);
    QVERIFY(widget);
    QCOMPARE(QString::fromLatin1(widget->metaObject()->className()), className);
    QVERIFY(widget->isVisible());
}

void tst_DesignerForm::formAppliesThePropertiesSetInDesigner()
{
    QWidget form;
    Ui::DesignerForm ui;
    ui.setupUi(&form);
    QCOMPARE(ui.colorSlider->getMode(), QZEColorSlider::Saturation);
    QCOMPARE(ui.colorSlider->orientation(), Qt::Vertical);
    QCOMPARE(ui.colorSlider->property("tracking"), QVariant(false));
    QVERIFY(!ui.colorButton->showColorDialog());
    QVERIFY(!ui.colorManipulator->isSliderVisible());
    QCOMPARE(ui.colorField->getMode(), QZEColorField::Blue);
    QVERIFY(!ui.spectrumPlotView->getPlot());
    QVERIFY(ui.colorArray->isFreeCell(0));
}

QTEST_MAIN(tst_DesignerForm)
#include "tst_DesignerForm.moc"
