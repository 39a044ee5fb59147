#include "QZESpiner.h"

#include <QSignalSpy>
#include <QtTest>

class tst_QZESpiner : public QObject
{
    Q_OBJECT

private slots:
    void objectNameIsTheClassName();
    void behavesAsAnIntegerSpinBox();
};

void tst_QZESpiner::objectNameIsTheClassName()
{
    QZESpiner spiner(nullptr, "ignored");
    QCOMPARE(spiner.objectName(), QStringLiteral("QZESpiner"));
}

// The sampling editor's use: a 1..1000 range, values set in code, steps by key.
void tst_QZESpiner::behavesAsAnIntegerSpinBox()
{
    QZESpiner spiner;
    spiner.setRange(1, 1000);
    spiner.setValue(380);
    QSignalSpy spy(&spiner, qOverload<int>(&QSpinBox::valueChanged));
    QTest::keyClick(&spiner, Qt::Key_Up);
    QCOMPARE(spiner.value(), 381);
    QCOMPARE(spy.count(), 1);
    spiner.setValue(5000);
    QCOMPARE(spiner.value(), 1000);
}

QTEST_MAIN(tst_QZESpiner)
#include "tst_QZESpiner.moc"
