#include "QZEComboBox.h"

#include <QSignalSpy>
#include <QtTest>

class tst_QZEComboBox : public QObject
{
    Q_OBJECT

private slots:
    void objectNameIsTheClassName();
    void userChoiceEmitsActivatedWithTheIndex();
};

void tst_QZEComboBox::objectNameIsTheClassName()
{
    QZEComboBox combo(nullptr, "ignored");
    QCOMPARE(combo.objectName(), QStringLiteral("QZEComboBox"));
}

// The sampling presets' use: items inserted in order, "activated(int)" on a
// choice by the user only.
void tst_QZEComboBox::userChoiceEmitsActivatedWithTheIndex()
{
    QZEComboBox combo;
    combo.addItem(QStringLiteral("first"));
    combo.addItem(QStringLiteral("second"));
    QSignalSpy spy(&combo, SIGNAL(activated(int)));
    combo.setCurrentIndex(1);
    QCOMPARE(spy.count(), 0);
    QTest::keyClick(&combo, Qt::Key_Up);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.at(0).at(0).toInt(), 0);
}

QTEST_MAIN(tst_QZEComboBox)
#include "tst_QZEComboBox.moc"
