#include "datetimenotifier.h"
#include "timerstopper.h"

#include <QtTest>

// The once-a-day gate of the update check and the stopper that holds it back.
// A span of zero makes the target "now"; 20 ms of sleep let the clock pass it.
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

    void pauseKeepsTheTarget()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        notifier.restart();
        const QDateTime target = notifier.getTargetTime();
        {
            TimerStopper stopper(&notifier);
            QTest::qSleep(20);
            QVERIFY(!notifier.isDue());
        }
        // Resuming keeps the target, so a check that fell due comes at once.
        QCOMPARE(notifier.getTargetTime(), target);
        QVERIFY(notifier.isDue());
    }
};

QTEST_APPLESS_MAIN(TestRefreshClock)
#include "tst_refreshclock.moc"
