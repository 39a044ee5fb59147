#ifndef QZESCREENPICKER_H
#define QZESCREENPICKER_H

#include <QObject>

class QZEScreenPicker : public QObject
{
    Q_OBJECT
public:
    explicit QZEScreenPicker(QObject* parent = nullptr);
};

#endif // QZESCREENPICKER_H
