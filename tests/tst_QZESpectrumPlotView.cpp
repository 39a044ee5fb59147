#include "QZESpectrumPlot.h"
#include "QZESpectrumPlotView.h"

#include <QPointer>
#include <QSignalSpy>
#include <QtTest>

#include <vector>

namespace {

// An active spectrum of 81 samples on 380, 5, 81 with up-to-date bands.
osg::SpectrumPtr makeFlatSpectrum(float value)
{
    osg::SpectrumPtr spectrum = osg::Spectrum::create();
    spectrum->setVersionID(1);
    spectrum->setStartWavelength(380);
    spectrum->setDeltaWavelength(5);
    spectrum->setNumSamples(81);
    std::vector<float> wavelengths;
    for (int k = 0; k < 81; ++k)
        wavelengths.push_back(float(380 + 5 * k));
    spectrum->editWavelengths() = wavelengths;
    spectrum->editSourceValues() = std::vector<float>(81, value);
    spectrum->resample();
    spectrum->setUseSpectrum(true);
    return spectrum;
}

} // namespace

class tst_QZESpectrumPlotView : public QObject
{
    Q_OBJECT

private slots:
    void startsWithoutPlotOrScene();
    void setSpectrumShowsAPlotOfThatSpectrum();
    void setSpectrumReplacesAndDeletesThePreviousPlot();
    void nullSpectrumEmptiesTheView();
    void resizeRebuildsThePlotAtTheViewportSize();
    void editInThePlotResamplesRebuildsAndEmitsSpectrumEdited();
};

void tst_QZESpectrumPlotView::startsWithoutPlotOrScene()
{
    QZESpectrumPlotView view;
    QVERIFY(!view.getPlot());
    QVERIFY(!view.scene());
}

void tst_QZESpectrumPlotView::setSpectrumShowsAPlotOfThatSpectrum()
{
    QZESpectrumPlotView view;
    const osg::SpectrumPtr spectrum = makeFlatSpectrum(0.5f);
    view.setSpectrum(spectrum, 2.0f);
    QVERIFY(view.getPlot());
    QCOMPARE(view.scene(), view.getPlot());
    QVERIFY(view.getPlot()->getSpectrum() == spectrum);
    QCOMPARE(view.getPlot()->getMaxValue(), 2.0f);
}

void tst_QZESpectrumPlotView::setSpectrumReplacesAndDeletesThePreviousPlot()
{
    QZESpectrumPlotView view;
    view.setSpectrum(makeFlatSpectrum(0.5f), 1.0f);
    QPointer<QZESpectrumPlot> first = view.getPlot();
    const osg::SpectrumPtr second = makeFlatSpectrum(0.25f);
    view.setSpectrum(second, 1.0f);
    QVERIFY(!first);
    QVERIFY(view.getPlot()->getSpectrum() == second);
}

void tst_QZESpectrumPlotView::nullSpectrumEmptiesTheView()
{
    QZESpectrumPlotView view;
    view.setSpectrum(makeFlatSpectrum(0.5f), 1.0f);
    QPointer<QZESpectrumPlot> plot = view.getPlot();
    view.setSpectrum(osg::SpectrumPtr(), 1.0f);
    QVERIFY(!plot);
    QVERIFY(!view.getPlot());
    QVERIFY(!view.scene());
}

void tst_QZESpectrumPlotView::resizeRebuildsThePlotAtTheViewportSize()
{
    QZESpectrumPlotView view;
    view.setSpectrum(makeFlatSpectrum(0.5f), 1.0f);
    view.resize(420, 260);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));
    const QSize frame(2 * view.frameWidth(), 2 * view.frameWidth());
    QCOMPARE(view.getPlot()->sceneRect(), QRectF(QPointF(0, 0), QSizeF(QSize(420, 260) - frame)));

    view.resize(300, 180);
    QCOMPARE(view.getPlot()->sceneRect(), QRectF(QPointF(0, 0), QSizeF(QSize(300, 180) - frame)));
}

// An edit changes source values only; the view brings the bands up to date
// before it rebuilds the plot and tells the host.
void tst_QZESpectrumPlotView::editInThePlotResamplesRebuildsAndEmitsSpectrumEdited()
{
    QZESpectrumPlotView view;
    const osg::SpectrumPtr spectrum = makeFlatSpectrum(0.5f);
    view.setSpectrum(spectrum, 1.0f);
    QSignalSpy edited(&view, SIGNAL(spectrumEdited()));
    spectrum->editSourceValues() = std::vector<float>(81, 0.25f);
    QVERIFY(spectrum->getSamples().front() > 0.4f);

    emit view.getPlot()->update();

    QCOMPARE(edited.count(), 1);
    for (float band : spectrum->getSamples())
        QVERIFY2(qAbs(band - 0.25f) < 1e-6f, qPrintable(QString::number(double(band))));
}

QTEST_MAIN(tst_QZESpectrumPlotView)
#include "tst_QZESpectrumPlotView.moc"
