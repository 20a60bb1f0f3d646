#include "datetimenotifier.h"

DateTimeNotifier::DateTimeNotifier(int months, int days, int hours, int minutes)
    : m_months(months)
    , m_days(days)
    , m_hours(hours)
    , m_minutes(minutes)
    , m_targetTime(spanFromNow())
{ }

DateTimeNotifier::~DateTimeNotifier() = default;

QDateTime DateTimeNotifier::spanFromNow() const
{
    const qint64 seconds = (static_cast<qint64>(m_hours) * 60 + m_minutes) * 60;
    return QDateTime::currentDateTime().addMonths(m_months).addDays(m_days).addSecs(seconds);
}

bool DateTimeNotifier::isDue() const
{
    return m_running && m_targetTime < QDateTime::currentDateTime();
}

void DateTimeNotifier::restart()
{
    m_targetTime = spanFromNow();
    m_running = true;
}

void DateTimeNotifier::pause()
{
    m_running = false;
}

void DateTimeNotifier::resume()
{
    m_running = true;
}
