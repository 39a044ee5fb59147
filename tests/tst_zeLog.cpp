#include "zeLog.h"

#include <QtTest>

class tst_zeLog : public QObject
{
    Q_OBJECT

private slots:
    void cleanup() { zeLog::setWarningHandler(nullptr); }

    void warningFormatsPrintfStyleIntoInstalledHandler()
    {
        static QByteArray received;
        zeLog::setWarningHandler([](const char* message) { received = message; });
        zeLog::warning("Couldn't read image %s.", "/tmp/a b.png");
        QCOMPARE(received, QByteArray("Couldn't read image /tmp/a b.png."));
        zeLog::warning("%d of %.2f", 3, 1.5);
        QCOMPARE(received, QByteArray("3 of 1.50"));
    }

    void longMessagesAreNotTruncated()
    {
        static QByteArray received;
        zeLog::setWarningHandler([](const char* message) { received = message; });
        const QByteArray path(5000, 'x');
        zeLog::warning("[%s]", path.constData());
        QCOMPARE(received.size(), 5002);
        QVERIFY(received.startsWith("[xxx") && received.endsWith("xx]"));
    }

    void setWarningHandlerReturnsPreviousHandler()
    {
        const zeLog::Handler first = [](const char*) {};
        QVERIFY(zeLog::setWarningHandler(first) == nullptr);
        QVERIFY(zeLog::setWarningHandler(nullptr) == first);
    }

    void defaultHandlerGoesToQtWarning()
    {
        QTest::ignoreMessage(QtWarningMsg, "plain 42");
        zeLog::warning("plain %d", 42);
    }
};

QTEST_GUILESS_MAIN(tst_zeLog)
#include "tst_zeLog.moc"
