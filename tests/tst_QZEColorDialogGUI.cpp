#include <QtTest>

class tst_QZEColorDialogGUI : public QObject
{
    Q_OBJECT
private slots:
    void placeholder() { QVERIFY(true); }
};

QTEST_MAIN(tst_QZEColorDialogGUI)
#include "tst_QZEColorDialogGUI.moc"
