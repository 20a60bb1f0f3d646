#ifndef TIMERSTOPPER_H
#define TIMERSTOPPER_H

class DateTimeNotifier;

// Keeps the periodic check quiet for the length of a scope, such as a dialog
// that runs its own event loop.
class TimerStopper
{
public:
    explicit TimerStopper(DateTimeNotifier *notifier);
    virtual ~TimerStopper();

    TimerStopper(const TimerStopper &) = delete;
    TimerStopper &operator=(const TimerStopper &) = delete;

private:
    DateTimeNotifier *m_notifier;
};

#endif // TIMERSTOPPER_H
