#include "QZEPushButton.h"

#include <QSignalSpy>
#include <QtTest>

class tst_QZEPushButton : public QObject
{
    Q_OBJECT

private slots:
    void beforeAnyReleaseTheLastButtonIsTheLeftOne();
    void objectNameIsTheClassName();
    void everyMouseButtonClicksAndIsRecordedBeforeClicked_data();
    void everyMouseButtonClicksAndIsRecordedBeforeClicked();
    void releaseOutsideTheButtonIsRecordedWithoutAClick();
    void keyboardClickLeavesTheLastButtonAlone();
};

// Runs first: no QZEPushButton has seen a release yet.
void tst_QZEPushButton::beforeAnyReleaseTheLastButtonIsTheLeftOne()
{
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), Qt::LeftButton);
}

void tst_QZEPushButton::objectNameIsTheClassName()
{
    QZEPushButton button(QStringLiteral("Browse"), nullptr, "ignored");
    QCOMPARE(button.objectName(), QStringLiteral("QZEPushButton"));
    QCOMPARE(button.text(), QStringLiteral("Browse"));
}

void tst_QZEPushButton::everyMouseButtonClicksAndIsRecordedBeforeClicked_data()
{
    QTest::addColumn<int>("button");
    QTest::newRow("right") << int(Qt::RightButton);
    QTest::newRow("middle") << int(Qt::MiddleButton);
    QTest::newRow("left") << int(Qt::LeftButton);
}

void tst_QZEPushButton::everyMouseButtonClicksAndIsRecordedBeforeClicked()
{
    QFETCH(int, button);
    QZEPushButton pushButton(QStringLiteral("Open"));
    pushButton.resize(80, 24);
    QList<Qt::MouseButton> seenInClicked;
    connect(&pushButton, &QPushButton::clicked, this,
            [&seenInClicked] { seenInClicked.append(QZEPushButton::getLastMouseReleaseButton()); });

    QTest::mouseClick(&pushButton, Qt::MouseButton(button), {}, QPoint(40, 12));

    QCOMPARE(seenInClicked, QList<Qt::MouseButton>{Qt::MouseButton(button)});
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), Qt::MouseButton(button));
    QVERIFY(!pushButton.isDown());
}

void tst_QZEPushButton::releaseOutsideTheButtonIsRecordedWithoutAClick()
{
    QZEPushButton pushButton(QStringLiteral("Open"));
    pushButton.resize(80, 24);
    QSignalSpy spy(&pushButton, &QPushButton::clicked);
    QTest::mousePress(&pushButton, Qt::MiddleButton, {}, QPoint(40, 12));
    QTest::mouseRelease(&pushButton, Qt::MiddleButton, {}, QPoint(200, 12));
    QCOMPARE(spy.count(), 0);
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), Qt::MiddleButton);
}

void tst_QZEPushButton::keyboardClickLeavesTheLastButtonAlone()
{
    QZEPushButton pushButton(QStringLiteral("Open"));
    QTest::mouseClick(&pushButton, Qt::RightButton, {}, QPoint(5, 5));
    QSignalSpy spy(&pushButton, &QPushButton::clicked);
    QTest::keyClick(&pushButton, Qt::Key_Space);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(QZEPushButton::getLastMouseReleaseButton(), Qt::RightButton);
}

QTEST_MAIN(tst_QZEPushButton)
#include "tst_QZEPushButton.moc"
