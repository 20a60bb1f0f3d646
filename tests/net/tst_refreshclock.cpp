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
    void targetIsNowPlusTheSpan_data()
    {
        QTest::addColumn<int>("months");
        QTest::addColumn<int>("days");
        QTest::addColumn<int>("hours");
        QTest::addColumn<int>("minutes");

        QTest::newRow("one day") << 0 << 1 << 0 << 0;
        QTest::newRow("one month") << 1 << 0 << 0 << 0;
        QTest::newRow("hours and minutes") << 0 << 0 << 2 << 30;
        QTest::newRow("all four") << 1 << 2 << 3 << 4;
    }

    void targetIsNowPlusTheSpan()
    {
        QFETCH(int, months);
        QFETCH(int, days);
        QFETCH(int, hours);
        QFETCH(int, minutes);

        const auto span = [=](const QDateTime &from) {
            return from.addMonths(months).addDays(days).addSecs((hours * 60 + minutes) * 60);
        };

        QDateTime before = QDateTime::currentDateTime();
        DateTimeNotifier notifier(months, days, hours, minutes);
        QDateTime after = QDateTime::currentDateTime();
        QVERIFY(notifier.getTargetTime() >= span(before));
        QVERIFY(notifier.getTargetTime() <= span(after));

        letTimePass();
        before = QDateTime::currentDateTime();
        notifier.restart();
        after = QDateTime::currentDateTime();
        QVERIFY(notifier.getTargetTime() >= span(before));
        QVERIFY(notifier.getTargetTime() <= span(after));
        QVERIFY(notifier.isRunning());
        QVERIFY(!notifier.isDue());
    }

    void notDueBeforeRestart()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        letTimePass();
        QVERIFY(!notifier.isRunning());
        QVERIFY(!notifier.isDue());

        notifier.restart();
        letTimePass();
        QVERIFY(notifier.isDue());
    }

    void pauseAndResumeKeepTheTarget()
    {
        DateTimeNotifier notifier(0, 1, 0, 0);
        notifier.restart();
        const QDateTime target = notifier.getTargetTime();

        notifier.pause();
        QVERIFY(!notifier.isRunning());
        QVERIFY(!notifier.isDue());
        QCOMPARE(notifier.getTargetTime(), target);

        letTimePass();
        notifier.resume();
        QVERIFY(notifier.isRunning());
        QCOMPARE(notifier.getTargetTime(), target);
        QVERIFY(!notifier.isDue());
    }

    void stopperHoldsBackAndReleasesADueCheck()
    {
        DateTimeNotifier notifier(0, 0, 0, 0);
        notifier.restart();
        const QDateTime target = notifier.getTargetTime();
        {
            TimerStopper stopper(&notifier);
            QVERIFY(!notifier.isRunning());
            letTimePass();
            // Due by the clock, but held back for as long as the action runs.
            QVERIFY(!notifier.isDue());
        }
        // Due at once when the action ends, with the target unmoved.
        QVERIFY(notifier.isRunning());
        QVERIFY(notifier.isDue());
        QCOMPARE(notifier.getTargetTime(), target);
    }
};

QTEST_APPLESS_MAIN(TestRefreshClock)
#include "tst_refreshclock.moc"
