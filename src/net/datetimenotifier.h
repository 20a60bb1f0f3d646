#ifndef DATETIMENOTIFIER_H
#define DATETIMENOTIFIER_H

#include <QDateTime>

// The once-a-span gate of the periodic update check: the main window's timer
// ticks often, and acts only when the notifier is due.
class DateTimeNotifier
{
public:
    DateTimeNotifier(int months, int days, int hours, int minutes);
    virtual ~DateTimeNotifier();

    // False while paused or never started; otherwise whether the target time has passed.
    bool isDue() const;
    // Target becomes now plus the span, and the notifier runs.
    void restart();
    void pause();
    // Runs again with the target unchanged, so a check that fell due meanwhile comes at the next tick.
    void resume();

    bool isRunning() const { return m_running; }
    QDateTime getTargetTime() const { return m_targetTime; }

private:
    QDateTime spanFromNow() const;

    bool m_running = false;
    int m_months;
    int m_days;
    int m_hours;
    int m_minutes;
    QDateTime m_targetTime;
};

#endif // DATETIMENOTIFIER_H
