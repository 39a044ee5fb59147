// The "Getting started" program of the API reference: a colour button in a
// window, the colour the user settles on, and a spectrum file shown as the
// button's colour. Usage: GettingStarted [FILE.spectral|FILE.txt] [--quit]
#include <QZEColor.h>
#include <QZEColorButton.h>
#include <QZESpectrum.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QStringList>
#include <QWidget>

#include <cstdio>

namespace {

//! [spectrum]
// The colour of a spectrum file, scaled so that the flat spectrum of 1.0 is white.
bool colourOfSpectrumFile(const QString& path, QZEColor& colour)
{
    QZESpectrum spectrum;
    if (!spectrum.load(path)) // says why on standard error
        return false;
    spectrum.resample(); // a load fills the samples; the bands follow here
    QZESpectrum flat;
    flat.setOne();
    flat.resample();
    const QZESpectrum::RGB rgb = spectrum.getRGB();
    const QZESpectrum::RGB white = flat.getRGB();
    colour.setRGB(rgb.r / white.r, rgb.g / white.g, rgb.b / white.b);
    return true;
}
//! [spectrum]

} // namespace

int main(int argc, char** argv)
{
    QApplication app(argc, argv);
    QStringList files = app.arguments().mid(1);
    const bool quit = files.removeAll(QStringLiteral("--quit")) > 0;

    //! [button]
    QWidget window;
    auto* layout = new QHBoxLayout(&window);
    auto* label = new QLabel(QStringLiteral("Diffuse colour"), &window);
    auto* swatch = new QZEColorButton(&window);
    swatch->setColor(QZEColor(QColor(200, 40, 40)));
    layout->addWidget(label);
    layout->addWidget(swatch);
    //! [button]

    //! [final]
    // finalColorChosen() comes once the dialog closes (accepted or cancelled)
    // or a colour is dropped on the button; temporaryColorChosen() comes
    // while the user is still choosing.
    QObject::connect(swatch, &QZEColorButton::finalColorChosen, [](const QZEColor& colour) {
        std::printf("chosen %s\n", qPrintable(colour.getGammaQColor().name()));
    });
    //! [final]

    if (!files.isEmpty()) {
        QZEColor colour;
        if (!colourOfSpectrumFile(files.first(), colour))
            return 1;
        swatch->setColor(colour);
    }

    if (quit) {
        float r, g, b;
        swatch->getColor().getRGB(r, g, b);
        std::printf("button linear RGB %.3f %.3f %.3f\n", double(r), double(g), double(b));
        return 0;
    }
    window.show();
    return app.exec();
}
