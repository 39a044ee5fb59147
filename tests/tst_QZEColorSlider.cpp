#include "QZEColorSlider.h"
#include <QtTest>
class tst_QZEColorSlider : public QObject { Q_OBJECT private slots: void placeholder() { QVERIFY(true); } };
QTEST_APPLESS_MAIN(tst_QZEColorSlider)
#include "tst_QZEColorSlider.moc"
