#ifndef COLORLABWINDOW_H
#define COLORLABWINDOW_H

#include <QMainWindow>

class QTabWidget;

// The main window: one tab per page, each page showing one widget of the
// library. A page's object name is its short name ("sliders"), used for its
// screenshot file; its tab shows the translated title.
class ColorLabWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ColorLabWindow(QWidget* parent = nullptr);

    int pageCount() const;
    QWidget* page(int index) const;
    void showPage(int index);

private:
    void addPage(QWidget* page, const QString& name, const QString& title);

    QTabWidget* _pages;
};

#endif // COLORLABWINDOW_H
