#ifndef COLORLABWINDOW_H
#define COLORLABWINDOW_H

#include <QMainWindow>

class DialogPage;
class QTabWidget;
class QZEColorDialog;

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
    // The colour dialog of the dialog page; hidden until that page opens it.
    QZEColorDialog* colorDialog() const;

private:
    void addPage(QWidget* page, const QString& name, const QString& title);

    QTabWidget* _pages;
    DialogPage* _dialogPage;
};

#endif // COLORLABWINDOW_H
