// A host application in miniature, built against the installed package only.
#include <QZEColor.h>
#include <QZEColorSlider.h>
#include <zePlatform.h>
#include <zeTextureMetaDataGUII.h>

#include <QApplication>
#include <cstdio>

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QZEColorSlider slider;
    slider.setRedMode(true);
    slider.setValue(1.0f, false);
    const QZEColor red = slider.getColor();
    const QColor shown = red.getQColor();
    // The dialog holds its generated form, installed beside the headers.
    auto* information = new zeTextureMetaDataGUII;
    const bool formBuilt = information->windowTitle() == "Image Information";
    delete information;
    const bool ok = shown == QColor(255, 0, 0) && slider.objectName() == "QZEColorSlider"
                    && zePlatform::getSmallIconSizeY() > 0 && formBuilt;
    std::printf("consumer: slider colour %s, %s\n", qPrintable(shown.name()), ok ? "ok" : "wrong");
    return ok ? 0 : 1;
}
