#include "datetimenotifier.h"
#include "timerstopper.h"

#include <QtTest>

// Let the clock move past a target of "now" (millisecond resolution).
static void letTimePass()
{
    QTest::qSleep(20);
}

// The once-a-day gate of the periodic update check and the scope object
// that holds it back during long actions.
class TestRefreshClock : public QObject
{
    Q_OBJECT

private slots:
    void notDueBeforeRestart()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        letTimePass();
        QVERIFY(!notifier.isDue());
        notifier.restart();
        letTimePass();
        QVERIFY(notifier.isDue());
    }

    void pauseAndResumeKeepTheTarget()
    {
        DateTimeNotifier notifier(1, 2, 3, 4);
        const QDateTime before = QDateTime::currentDateTime();
        notifier.restart();
        const QDateTime target = notifier.getTargetTime();
        QVERIFY(target >= before.addMonths(1).addDays(2).addSecs(3 * 3600 + 4 * 60));
        QVERIFY(target <= QDateTime::currentDateTime().addMonths(1).addDays(2).addSecs(3 * 3600 + 4 * 60));

        notifier.pause();
        letTimePass();
        notifier.resume();
        QCOMPARE(notifier.getTargetTime(), target);
        QVERIFY(!notifier.isDue());
    }

    void dueAfterPauseFiresAtOnce()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        notifier.restart();
        const QDateTime target = notifier.getTargetTime();
        {
            TimerStopper stopper(&notifier);
            letTimePass();
            // Due by the clock, but held back for as long as the action runs.
            QVERIFY(!notifier.isDue());
        }
        QVERIFY(notifier.isDue());
        QCOMPARE(notifier.getTargetTime(), target);
    }
};

QTEST_APPLESS_MAIN(TestRefreshClock)
#include "tst_refreshclock.moc"
