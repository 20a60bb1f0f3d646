#ifndef DOWNLOADTEXTS_H
#define DOWNLOADTEXTS_H

#include "downloadfailure.h"

#include <QCoreApplication>

// The figures and the failures of a download in the words that the download
// dialog shows. Sizes count in units of 1024, as a file manager does, with
// one decimal below ten units.
class DownloadTexts
{
    Q_DECLARE_TR_FUNCTIONS(DownloadDialog)

public:
    // "480 MB"
    static QString size(qint64 bytes);
    // "120 of 480 MB", both in the unit of the whole.
    static QString sizeOf(qint64 done, qint64 total);
    // "120 of 480 MB, 12 MB/s, 30 s left"; without a total, what has come so
    // far; without a speed (0), only the sizes.
    static QString progress(qint64 done, qint64 total, double bytesPerSecond);
    static QString timeLeft(qint64 seconds);
    // Why a download stopped, for a user: the cause, with the figures that
    // tell where it stood.
    static QString failure(const DownloadFailure &failure);
    // Why an installer is not fetched at all, with the updater's reason.
    static QString refusal(const QString &reason);
};

#endif // DOWNLOADTEXTS_H
