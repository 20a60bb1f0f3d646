#include "downloadtexts.h"

#include <QtMath>

namespace {

const char *const kUnits[] = { "B", "KB", "MB", "GB", "TB" };
constexpr int kUnitCount = int(sizeof(kUnits) / sizeof(kUnits[0]));

// The unit in which a size reads as at least one.
int unitOf(qint64 bytes)
{
    int unit = 0;
    for (double value = double(bytes); value >= 1024 && unit < kUnitCount - 1; value /= 1024)
        ++unit;
    return unit;
}

// The number in that unit, with a decimal while it is below ten, so that
// "1.5 GB" does not read as "2 GB".
QString number(qint64 bytes, int unit, bool withDecimal)
{
    const double value = double(bytes) / qPow(1024, unit);
    return QString::number(value, 'f', withDecimal ? 1 : 0);
}

bool needsDecimal(qint64 bytes, int unit)
{
    return unit > 0 && double(bytes) / qPow(1024, unit) < 9.95;
}

} // namespace

QString DownloadTexts::size(qint64 bytes)
{
    const int unit = unitOf(bytes);
    return QStringLiteral("%1 %2").arg(number(bytes, unit, needsDecimal(bytes, unit)), QLatin1String(kUnits[unit]));
}

QString DownloadTexts::sizeOf(qint64 done, qint64 total)
{
    const int unit = unitOf(total);
    const bool decimal = needsDecimal(total, unit);
    return tr("%1 of %2 %3")
        .arg(number(done, unit, decimal), number(total, unit, decimal), QLatin1String(kUnits[unit]));
}

QString DownloadTexts::timeLeft(qint64 seconds)
{
    if (seconds < 60)
        return tr("%1 s left").arg(seconds);
    if (seconds < 3600)
        return tr("%1 min %2 s left").arg(seconds / 60).arg(seconds % 60);
    return tr("%1 h %2 min left").arg(seconds / 3600).arg(seconds % 3600 / 60);
}

QString DownloadTexts::progress(qint64 done, qint64 total, double bytesPerSecond)
{
    if (total < 0) {
        const QString soFar = tr("%1 so far").arg(size(done));
        return bytesPerSecond > 0 ? tr("%1, %2/s").arg(soFar, size(qint64(bytesPerSecond))) : soFar;
    }
    if (bytesPerSecond <= 0)
        return sizeOf(done, total);
    const qint64 seconds = qint64(qCeil(double(qMax<qint64>(0, total - done)) / bytesPerSecond));
    return tr("%1, %2/s, %3").arg(sizeOf(done, total), size(qint64(bytesPerSecond)), timeLeft(seconds));
}

QString DownloadTexts::failure(const DownloadFailure &failure)
{
    switch (failure.kind) {
    case DownloadFailure::None:
        break;
    case DownloadFailure::FileNameRefused:
        return tr("The server gives the installer a name under which it cannot be saved.");
    case DownloadFailure::HttpStatus:
        if (failure.httpStatus == 404 || failure.httpStatus == 410)
            return tr("The installer was not found on the server (HTTP %1).").arg(failure.httpStatus);
        return tr("The server could not send the installer (HTTP %1).").arg(failure.httpStatus);
    case DownloadFailure::Unreachable:
        return tr("The server could not be reached. Please check that the network is connected.");
    case DownloadFailure::ConnectionLost:
        if (failure.bytesDone <= 0)
            return tr("The connection to the server was lost.");
        return tr("The connection was lost after %1.")
            .arg(failure.bytesTotal > 0 ? sizeOf(failure.bytesDone, failure.bytesTotal) : size(failure.bytesDone));
    case DownloadFailure::Stalled:
        return tr("The server sent nothing for %1 seconds, so the download was stopped.").arg(failure.stallSeconds);
    case DownloadFailure::TooManyRedirects:
        return tr("The server redirected the download too many times.");
    case DownloadFailure::InsecureRedirect:
        return tr("The server redirected the download to an address that is not secure, so it was stopped.");
    case DownloadFailure::BadAnswer:
        return tr("The server sent an answer that does not fit the request, so nothing was saved.");
    case DownloadFailure::NoSpace:
        return tr("Not enough free space in Downloads: %1 needed, %2 free.")
            .arg(size(failure.bytesNeeded), size(failure.bytesFree));
    case DownloadFailure::WriteFailed:
        return tr("The installer could not be saved in Downloads: %1").arg(failure.detail);
    case DownloadFailure::ChecksumMismatch:
        return tr("The downloaded file is not the installer that was published (its checksum differs).");
    case DownloadFailure::SecureConnection:
        return tr("A secure connection to the server could not be made.");
    case DownloadFailure::UntrustedCertificate:
        return tr("The server's certificate could not be verified, so the download was stopped.");
    case DownloadFailure::Other:
        break;
    }
    return tr("The download failed: %1").arg(failure.detail);
}

QString DownloadTexts::refusal(const QString &reason)
{
    return tr("The installer was not downloaded: it, or the update catalogue that names it, comes over an "
              "unencrypted connection (plain http), and the catalogue gives no checksum to show that it is the "
              "maker's file.\n\n%1")
        .arg(reason);
}
