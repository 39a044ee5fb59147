#include "zePlatform.h"

#include <QGuiApplication>
#include <QScreen>
#include <QtTest>

class tst_zePlatform : public QObject
{
    Q_OBJECT

private slots:
    void cleanup()
    {
        zePlatform::setDpiScale(0.0f, 0.0f);
        zePlatform::setBinDir(QString());
    }

    void scaleFollowsPrimaryScreenLogicalDpi()
    {
        const QScreen* screen = QGuiApplication::primaryScreen();
        QVERIFY(screen);
        QCOMPARE(zePlatform::getDpiScaleX(), float(screen->logicalDotsPerInchX() / 96.0));
        QCOMPARE(zePlatform::getDpiScaleY(), float(screen->logicalDotsPerInchY() / 96.0));
    }

    void setScaleOverridesAndNonPositiveRestores()
    {
        zePlatform::setDpiScale(2.0f, 1.5f);
        QCOMPARE(zePlatform::getDpiScaleX(), 2.0f);
        QCOMPARE(zePlatform::getDpiScaleY(), 1.5f);
        zePlatform::setDpiScale(0.0f, -1.0f);
        const QScreen* screen = QGuiApplication::primaryScreen();
        QCOMPARE(zePlatform::getDpiScaleX(), float(screen->logicalDotsPerInchX() / 96.0));
        QCOMPARE(zePlatform::getDpiScaleY(), float(screen->logicalDotsPerInchY() / 96.0));
    }

    void iconSizesScaleAndTruncate_data()
    {
        QTest::addColumn<float>("sx");
        QTest::addColumn<float>("sy");
        QTest::addColumn<int>("smallX");
        QTest::addColumn<int>("smallY");
        QTest::addColumn<int>("mediumX");
        QTest::addColumn<int>("mediumY");
        QTest::newRow("1x") << 1.0f << 1.0f << 16 << 16 << 32 << 32;
        QTest::newRow("2x") << 2.0f << 2.0f << 32 << 32 << 64 << 64;
        // 16 * 1.3 = 20.8 and 32 * 1.3 = 41.6 truncate; 16 * 1.55 = 24.8, 32 * 1.55 = 49.6.
        QTest::newRow("fractional") << 1.3f << 1.55f << 20 << 24 << 41 << 49;
    }

    void iconSizesScaleAndTruncate()
    {
        QFETCH(float, sx);
        QFETCH(float, sy);
        zePlatform::setDpiScale(sx, sy);
        QTEST(zePlatform::getSmallIconSizeX(), "smallX");
        QTEST(zePlatform::getSmallIconSizeY(), "smallY");
        QTEST(zePlatform::getMediumIconSizeX(), "mediumX");
        QTEST(zePlatform::getMediumIconSizeY(), "mediumY");
    }

    void binDirDefaultsToRunningProgramsDirectory()
    {
        QCOMPARE(zePlatform::getBinDir(), QCoreApplication::applicationDirPath());
        zePlatform::setBinDir("/opt/host/bin");
        QCOMPARE(zePlatform::getBinDir(), QString("/opt/host/bin"));
        zePlatform::setBinDir(QString());
        QCOMPARE(zePlatform::getBinDir(), QCoreApplication::applicationDirPath());
    }
};

QTEST_MAIN(tst_zePlatform)
#include "tst_zePlatform.moc"
