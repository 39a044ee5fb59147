#include <QtTest>

class tst_QZEScreenPicker : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_QZEScreenPicker)
#include "tst_QZEScreenPicker.moc"
