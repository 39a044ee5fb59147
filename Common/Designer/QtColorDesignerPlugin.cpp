#include "QtColorDesignerPlugin.h"

#include "QZEColorArray.h"
#include "QZEColorButton.h"
#include "QZEColorField.h"
#include "QZEColorManipulator.h"
#include "QZEColorSlider.h"
#include "QZEDesignerWidget.h"
#include "QZESpectrumPlotView.h"

namespace {

template <class Widget>
QWidget* create(QWidget* parent)
{
    return new Widget(parent);
}

} // namespace

QtColorDesignerPlugin::QtColorDesignerPlugin(QObject* parent) : QObject(parent)
{
    const QZEDesignerWidgetInfo infos[] = {
        {QStringLiteral("QZEColorSlider"), tr("Colour slider"),
         tr("A slider over one colour component (hue, saturation, value, red, green, blue, "
            "L*, a* or b*) painted with the colours it selects."),
         QStringLiteral(":/qtcolor/designer/colorslider.png"), {200, 24}, create<QZEColorSlider>},
        {QStringLiteral("QZEColorButton"), tr("Colour button"),
         tr("A colour swatch that opens the shared colour dialog on a click and takes "
            "colours by drag and drop."),
         QStringLiteral(":/qtcolor/designer/colorbutton.png"), {48, 24}, create<QZEColorButton>},
        {QStringLiteral("QZEColorManipulator"), tr("Colour manipulator"),
         tr("A colour button with a value slider beside it, for editing one material colour."),
         QStringLiteral(":/qtcolor/designer/colormanipulator.png"), {240, 24},
         create<QZEColorManipulator>},
        {QStringLiteral("QZESpectrumPlotView"), tr("Spectrum plot"),
         tr("An editable plot of a spectrum from 380 to 780 nm, in a view that keeps it "
            "filling the view."),
         QStringLiteral(":/qtcolor/designer/spectrumplot.png"), {320, 200},
         create<QZESpectrumPlotView>},
        {QStringLiteral("QZEColorField"), tr("Colour field"),
         tr("A two-dimensional colour field for picking the two components that the "
            "field's mode leaves free."),
         QStringLiteral(":/qtcolor/designer/colorfield.png"), {200, 200}, create<QZEColorField>},
        {QStringLiteral("QZEColorArray"), tr("Custom colours"),
         tr("Two rows of custom colour cells, optionally kept between runs."),
         QStringLiteral(":/qtcolor/designer/colorarray.png"), {200, 50}, create<QZEColorArray>},
    };
    for (const QZEDesignerWidgetInfo& info : infos)
        _widgets.append(new QZEDesignerWidget(info, this));
}
