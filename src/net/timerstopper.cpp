#include "timerstopper.h"

#include "datetimenotifier.h"

TimerStopper::TimerStopper(DateTimeNotifier *notifier)
    : m_notifier(notifier)
{
    m_notifier->pause();
}

TimerStopper::~TimerStopper()
{
    m_notifier->resume();
}
