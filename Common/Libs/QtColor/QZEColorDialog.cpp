#include "QZEColorDialog.h"

#include "ui_QZEColorDialogGUI.h"

QZEColorDialog::QZEColorDialog(QWidget* parent, const char* name)
    : QDialog(parent)
{
    if (name)
        setObjectName(QString::fromLatin1(name));
}
