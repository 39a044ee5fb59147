#ifndef QZECOMBOBOX_H
#define QZECOMBOBOX_H

#include <QComboBox>

/// The host's combo box: a QComboBox named after its class.
class QZEComboBox : public QComboBox
{
    Q_OBJECT

public:
    /// A widget with parent; name, when given, becomes its object name
    /// (otherwise the class name does).
    explicit QZEComboBox(QWidget* parent = nullptr, const char* name = nullptr);
};

#endif // QZECOMBOBOX_H
