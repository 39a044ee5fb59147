#ifndef QZESPINER_H
#define QZESPINER_H

#include <QSpinBox>

/// The host's integer spin box: a QSpinBox named after its class.
class QZESpiner : public QSpinBox
{
    Q_OBJECT

public:
    explicit QZESpiner(QWidget* parent = nullptr, const char* name = nullptr);
};

#endif // QZESPINER_H
