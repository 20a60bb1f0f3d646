#ifndef PROCESSMEMORY_H
#define PROCESSMEMORY_H

#include <QByteArray>
#include <QFile>

// The memory of the running process as Linux counts it, for benchmarks that
// measure what one piece of work costs.
namespace ProcessMemory {

// A value of /proc/self/status in KiB, such as "VmRSS" (held now) or "VmHWM"
// (the peak); -1 when it cannot be read.
inline qint64 statusKiB(const QByteArray &field)
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith(field + ':'))
            return line.mid(field.size() + 1).trimmed().split(' ').value(0).toLongLong();
    }
    return -1;
}

// Lets the peak start again from what the process holds now, so that one
// process can measure several pieces of work one after the other.
inline bool resetPeak()
{
    QFile clear(QStringLiteral("/proc/self/clear_refs"));
    return clear.open(QIODevice::WriteOnly) && clear.write("5") == 1;
}

} // namespace ProcessMemory

#endif // PROCESSMEMORY_H
