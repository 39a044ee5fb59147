#include "QZEColor.h"
#include <QtTest>
class tst_QZEColor : public QObject { Q_OBJECT private slots: void placeholder() { QVERIFY(true); } };
QTEST_APPLESS_MAIN(tst_QZEColor)
#include "tst_QZEColor.moc"
