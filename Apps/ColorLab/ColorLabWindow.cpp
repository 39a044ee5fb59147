#include "ColorLabWindow.h"

#include "ControlsPage.h"
#include "DialogPage.h"
#include "ImagesPage.h"
#include "SlidersPage.h"
#include "SpectrumPage.h"

#include <QTabWidget>

ColorLabWindow::ColorLabWindow(QWidget* parent)
    : QMainWindow(parent), _pages(new QTabWidget(this)), _dialogPage(new DialogPage)
{
    setWindowTitle(tr("ColorLab"));
    setCentralWidget(_pages);
    addPage(new SlidersPage, QStringLiteral("sliders"), tr("Sliders"));
    addPage(new ControlsPage, QStringLiteral("controls"), tr("Controls"));
    addPage(new SpectrumPage, QStringLiteral("spectrum"), tr("Spectrum"));
    addPage(_dialogPage, QStringLiteral("dialog"), tr("Dialog"));
    addPage(new ImagesPage, QStringLiteral("images"), tr("Images"));
}

int ColorLabWindow::pageCount() const
{
    return _pages->count();
}

QWidget* ColorLabWindow::page(int index) const
{
    return _pages->widget(index);
}

void ColorLabWindow::showPage(int index)
{
    _pages->setCurrentIndex(index);
}

QZEColorDialog* ColorLabWindow::colorDialog() const
{
    return _dialogPage->dialog();
}

void ColorLabWindow::addPage(QWidget* page, const QString& name, const QString& title)
{
    page->setObjectName(name);
    _pages->addTab(page, title);
}
