#include "datetimenotifier.h"

#include <QtTest>

// The once-a-day gate of the update check; a span of zero makes the target
// "now", and 20 ms of sleep let the clock pass it.
class TestRefreshClock : public QObject
{
    Q_OBJECT

private slots:
    void notDueBeforeRestart()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        QTest::qSleep(20);
        QVERIFY(!notifier.isDue());
        notifier.restart();
        QTest::qSleep(20);
        QVERIFY(notifier.isDue());
    }
};

QTEST_APPLESS_MAIN(TestRefreshClock)
#include "tst_refreshclock.moc"
