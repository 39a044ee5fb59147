#ifndef QZECOLORDIALOG_H
#define QZECOLORDIALOG_H

#include <QDialog>

class QZEColorDialog : public QDialog
{
    Q_OBJECT
public:
    explicit QZEColorDialog(QWidget* parent = nullptr, const char* name = nullptr);
};

#endif // QZECOLORDIALOG_H
