#ifndef QZESPINER_H
#define QZESPINER_H

#include <QSpinBox>

/// The host's integer spin box: a QSpinBox named after its class.
class QZESpiner : public QSpinBox
{
    Q_OBJECT

public:
    /// A widget with parent; name, when given, becomes its object name
    /// (otherwise the class name does).
    explicit QZESpiner(QWidget* parent = nullptr, const char* name = nullptr);
};

#endif // QZESPINER_H
