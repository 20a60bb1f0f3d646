#ifndef TRANSFERRATE_H
#define TRANSFERRATE_H

#include <QVector>

// The speed of a transfer over its last few seconds: a stall shows soon, and
// a burst does not pass for the rule. Bytes that were there before the
// transfer began (a download that continues) are no speed.
class TransferRate
{
public:
    // Forgets everything, for a transfer that begins anew.
    void restart() { m_samples.clear(); }
    // The bytes done at that moment, in milliseconds from any fixed start.
    void addSample(qint64 msecs, qint64 bytes);
    // 0 until the samples span long enough to tell.
    double bytesPerSecond() const;

private:
    struct Sample
    {
        qint64 msecs;
        qint64 bytes;
    };
    QVector<Sample> m_samples;
};

#endif // TRANSFERRATE_H
