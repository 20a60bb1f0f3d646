#include "transferrate.h"

namespace {

// Long enough to smooth the bursts of a network, short enough to follow a
// change of speed within a few seconds.
constexpr qint64 kWindowMs = 3000;
// Below this a speed is mostly noise.
constexpr qint64 kShortestSpanMs = 500;

} // namespace

void TransferRate::addSample(qint64 msecs, qint64 bytes)
{
    m_samples.append({ msecs, bytes });
    // One sample older than the window stays, so that the span covers it whole.
    while (m_samples.size() > 2 && msecs - m_samples.at(1).msecs >= kWindowMs)
        m_samples.removeFirst();
}

double TransferRate::bytesPerSecond() const
{
    if (m_samples.size() < 2)
        return 0;
    const Sample &first = m_samples.constFirst();
    const Sample &last = m_samples.constLast();
    const qint64 span = last.msecs - first.msecs;
    if (span < kShortestSpanMs)
        return 0;
    return double(qMax<qint64>(0, last.bytes - first.bytes)) * 1000.0 / double(span);
}
