#include "filedownload.h"

#include "binaryfilewriter.h"
#include "httpaccessutility.h"

#include <QDir>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QRegularExpression>
#include <QStorageInfo>

namespace {

// Large enough that a fast transfer costs few calls, small enough to stay in
// the processor's cache on its way from the network layer to the hash and
// the disk.
constexpr int kPieceBytes = 256 * 1024;
// What the network layer may hold that the main thread has not taken yet;
// when it is full the network thread stops reading until it is taken, so
// memory stays bounded however large the file and however slow the disk.
constexpr qint64 kReplyBufferBytes = 4 * 1024 * 1024;
// Time on the main thread per turn when hashing the bytes of an earlier try,
// so that the window stays alive while a long part is read back.
constexpr int kHashSliceMs = 20;
// Progress at about the rate a person can read it.
constexpr int kProgressIntervalMs = 100;
constexpr int kMaximumRedirects = 5;

int httpStatus(QNetworkReply *reply)
{
    return reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
}

// A validator that If-Range accepts: a strong ETag, else the date.
QByteArray validatorOf(QNetworkReply *reply)
{
    const QByteArray etag = reply->rawHeader("ETag");
    if (!etag.isEmpty() && !etag.startsWith("W/"))
        return etag;
    return reply->rawHeader("Last-Modified");
}

} // namespace

FileDownload::FileDownload(const QString &url, const QString &folder, const QString &fileName, const QByteArray &sha256,
    const LogFunction &log, QObject *parent)
    : QObject(parent)
    , m_url(url)
    , m_folder(folder)
    , m_fileName(fileName)
    , m_expectedSha256(sha256)
    , m_log(log)
    , m_part(folder, fileName)
{
    connect(&m_stallCheck, SIGNAL(timeout()), this, SLOT(checkStall()));
}

FileDownload::~FileDownload()
{
    if (m_state == State::Hashing || m_state == State::Transferring)
        cancel();
}

void FileDownload::start()
{
    if (m_state != State::Idle)
        return;
    m_state = State::Hashing;
    const QString refusal
        = m_fileName.isEmpty() ? QStringLiteral("File name is blank.") : BinaryFileWriter::refusalFor(m_fileName);
    if (!refusal.isEmpty()) {
        // Nothing is touched on disk, not even a part of that name.
        m_state = State::Ended;
        m_failure.kind = DownloadFailure::FileNameRefused;
        m_errorText = QStringLiteral("Failed to download: %1").arg(refusal);
        emit signalFinished(false);
        return;
    }
    // A folder that cannot be made shows when the part cannot be opened.
    if (!QDir(m_folder).exists())
        QDir().mkdir(m_folder);

    m_offset = m_part.inspect(m_url);
    if (!m_part.getInfoText().isEmpty())
        writeLog(QStringLiteral("FileDownload::start: %1").arg(m_part.getInfoText()));
    if (!m_part.getErrorText().isEmpty())
        writeLog(QStringLiteral("FileDownload::start: %1").arg(m_part.getErrorText()));
    m_buffer.resize(kPieceBytes);
    m_hash.reset();
    if (m_offset > 0 && !m_expectedSha256.isEmpty()) {
        // The digest covers the whole file, so the bytes of the earlier try
        // go into it first; they are read back a slice at a time.
        m_prefix.setFileName(m_part.getPartPath());
        if (m_prefix.open(QIODevice::ReadOnly)) {
            emit signalProgress(m_offset, m_part.getRecordedTotal());
            QMetaObject::invokeMethod(this, "hashNextPiece", Qt::QueuedConnection);
            return;
        }
        m_offset = 0;
    }
    sendRequest();
}

void FileDownload::hashNextPiece()
{
    if (m_state != State::Hashing)
        return;
    QElapsedTimer slice;
    slice.start();
    while (m_prefix.pos() < m_offset && slice.elapsed() < kHashSliceMs) {
        const qint64 read = m_prefix.read(m_buffer.data(), qMin<qint64>(m_buffer.size(), m_offset - m_prefix.pos()));
        if (read <= 0) {
            // Shorter than it was a moment ago: someone else's doing, so
            // nothing of it is trusted.
            writeLog(QStringLiteral("FileDownload::hashNextPiece: Failed to read back %1: %2")
                         .arg(m_prefix.fileName(), m_prefix.errorString()));
            m_prefix.close();
            m_part.discard();
            m_hash.reset();
            m_offset = 0;
            sendRequest();
            return;
        }
        m_hash.addData(m_buffer.constData(), read);
    }
    if (m_prefix.pos() < m_offset) {
        QMetaObject::invokeMethod(this, "hashNextPiece", Qt::QueuedConnection);
        return;
    }
    m_prefix.close();
    sendRequest();
}

void FileDownload::sendRequest()
{
    m_state = State::Transferring;
    if (!m_part.open(m_offset > 0)) {
        failToWrite(true);
        return;
    }
    QNetworkRequest request(QUrl(m_url, QUrl::TolerantMode));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(kMaximumRedirects);
    // The bytes as stored, so that lengths and ranges count what lands on disk.
    request.setRawHeader("Accept-Encoding", "identity");
    if (m_offset > 0) {
        request.setRawHeader("Range", "bytes=" + QByteArray::number(m_offset) + '-');
        // Only the same version of the file continues; any other comes whole.
        request.setRawHeader("If-Range", m_part.getValidator());
        writeLog(
            QStringLiteral("FileDownload::sendRequest: Asking %1 for the bytes after %2").arg(m_url).arg(m_offset));
    }
    // Made anew for each download, so that nothing of an earlier one lingers.
    m_manager = new QNetworkAccessManager(this);
    m_reply = m_manager->get(request);
    m_reply->setReadBufferSize(kReplyBufferBytes);
    connect(m_reply, SIGNAL(metaDataChanged()), this, SLOT(readAnswer()));
    connect(m_reply, SIGNAL(readyRead()), this, SLOT(readAnswer()));
    connect(m_reply, SIGNAL(finished()), this, SLOT(replyFinished()));
    connect(m_reply, SIGNAL(redirected(QUrl)), this, SLOT(logRedirect(QUrl)));
    connect(m_reply, SIGNAL(sslErrors(QList<QSslError>)), this, SLOT(noteCertificateErrors(QList<QSslError>)));
    m_certificateErrors.clear();
    m_sinceActivity.start();
    m_sinceProgress.start();
    m_stallCheck.start(qBound(10, m_stallLimitMs / 4, 1000));
}

void FileDownload::logRedirect(const QUrl &url)
{
    m_sinceActivity.restart();
    writeLog(QStringLiteral("FileDownload::logRedirect: Redirected to %1").arg(url.toString()));
}

void FileDownload::noteCertificateErrors(const QList<QSslError> &errors)
{
    // Never ignored: the reply ends in an error of its own, and the user is
    // told that the server could not be trusted.
    m_certificateErrors = HTTPAccessUtility::certificateErrorText(errors);
    writeLog(QStringLiteral("FileDownload::noteCertificateErrors: %1").arg(m_certificateErrors));
}

void FileDownload::checkStall()
{
    if (m_state != State::Transferring || m_sinceActivity.elapsed() < m_stallLimitMs)
        return;
    DownloadFailure failure = failureOf(DownloadFailure::Stalled);
    failure.stallSeconds = qMax(1, m_stallLimitMs / 1000);
    fail(failure,
        QStringLiteral("HTTP access failed: Nothing received for %1 ms from %2").arg(m_stallLimitMs).arg(m_url), true);
}

void FileDownload::readAnswer()
{
    if (m_state != State::Transferring)
        return;
    m_sinceActivity.restart();
    const int status = httpStatus(m_reply);
    // Until the answer is that of the file itself, nothing of it is stored:
    // the body of a redirect or of an error page is no installer.
    if (!m_answerAccepted) {
        if (status != 200 && status != 206) {
            m_reply->skip(m_reply->bytesAvailable());
            return;
        }
        if (!acceptAnswer())
            return;
    }
    if (storeBytes())
        emitProgress(false);
}

bool FileDownload::acceptAnswer()
{
    const QVariant length = m_reply->header(QNetworkRequest::ContentLengthHeader);
    m_expectedBody = length.isValid() ? length.toLongLong() : -1;
    if (!(httpStatus(m_reply) == 206 ? acceptRest() : acceptWhole()))
        return false;
    m_answerAccepted = true;
    writeLog(QStringLiteral("FileDownload::acceptAnswer: HTTP %1 from %2, %3 of %4 bytes to come")
                 .arg(httpStatus(m_reply))
                 .arg(m_reply->url().toString())
                 .arg(m_expectedBody)
                 .arg(m_total));
    const QByteArray validator = validatorOf(m_reply);
    if (!m_part.remember(m_url, validator.isEmpty() ? m_part.getValidator() : validator, m_total)) {
        failToWrite(false);
        return false;
    }
    if (!hasRoom())
        return false;
    emitProgress(true);
    return true;
}

bool FileDownload::acceptRest()
{
    // Only the rest that was asked for continues the bytes on disk.
    const QString range = QString::fromLatin1(m_reply->rawHeader("Content-Range"));
    const QRegularExpressionMatch match
        = QRegularExpression(QStringLiteral("^bytes (\\d+)-(\\d+)/(\\d+|\\*)$")).match(range);
    if (m_offset == 0 || !match.hasMatch() || match.captured(1).toLongLong() != m_offset
        || match.captured(2).toLongLong() < m_offset) {
        failOnAnswer(QStringLiteral("A part that was not asked for (Content-Range \"%1\" for %2 bytes on disk)")
                         .arg(range)
                         .arg(m_offset));
        return false;
    }
    const qint64 rangeLength = match.captured(2).toLongLong() - m_offset + 1;
    if (m_expectedBody >= 0 && m_expectedBody != rangeLength) {
        failOnAnswer(QStringLiteral("Content-Range \"%1\" with %2 bytes announced").arg(range).arg(m_expectedBody));
        return false;
    }
    m_expectedBody = rangeLength;
    m_total = match.captured(3) == QLatin1String("*") ? -1 : match.captured(3).toLongLong();
    // The same validator for a file of another length: the rest would not fit.
    if (m_total >= 0 && m_part.getRecordedTotal() >= 0 && m_total != m_part.getRecordedTotal()) {
        failOnAnswer(QStringLiteral("The rest of a file of %1 bytes to continue one of %2")
                         .arg(m_total)
                         .arg(m_part.getRecordedTotal()));
        return false;
    }
    return true;
}

bool FileDownload::acceptWhole()
{
    m_total = m_expectedBody;
    if (m_offset == 0)
        return true;
    // The file changed, or the server does not do ranges: from zero.
    writeLog(QStringLiteral("FileDownload::acceptWhole: The whole file comes again; the %1 bytes on disk are dropped")
                 .arg(m_offset));
    m_part.close();
    m_offset = 0;
    m_hash.reset();
    if (!m_part.open(false)) {
        failToWrite(false);
        return false;
    }
    return true;
}

bool FileDownload::hasRoom()
{
    // Checked before the transfer, so that a user is not told of a full disk
    // after waiting for most of the file.
    const qint64 needed = m_total >= 0 ? m_total - m_offset : m_expectedBody;
    const qint64 free = QStorageInfo(m_folder).bytesAvailable();
    if (needed <= 0 || free < 0 || needed <= free)
        return true;
    DownloadFailure failure = failureOf(DownloadFailure::NoSpace);
    failure.bytesNeeded = needed;
    failure.bytesFree = free;
    fail(failure,
        QStringLiteral("Failed to download: Not enough free space in %1: %2 bytes needed, %3 bytes free")
            .arg(m_folder)
            .arg(needed)
            .arg(free),
        true);
    return false;
}

void FileDownload::failOnAnswer(const QString &what)
{
    // Bytes that came with such an answer are not trusted for a later try.
    fail(failureOf(DownloadFailure::BadAnswer),
        QStringLiteral("HTTP access failed: %1 from %2").arg(what, m_reply->url().toString()), false);
}

bool FileDownload::storeBytes()
{
    qint64 read;
    while ((read = m_reply->read(m_buffer.data(), m_buffer.size())) > 0) {
        if (m_expectedBody >= 0 && m_received + read > m_expectedBody) {
            failOnAnswer(QStringLiteral("More than the %1 bytes announced").arg(m_expectedBody));
            return false;
        }
        if (!m_expectedSha256.isEmpty())
            m_hash.addData(m_buffer.constData(), read);
        if (!m_part.write(m_buffer.constData(), read)) {
            failToWrite(true);
            return false;
        }
        m_received += read;
    }
    return true;
}

void FileDownload::emitProgress(bool always)
{
    if (!always && m_sinceProgress.elapsed() < kProgressIntervalMs)
        return;
    m_sinceProgress.restart();
    emit signalProgress(bytesDone(), m_total);
}

void FileDownload::replyFinished()
{
    if (m_state != State::Transferring)
        return;
    // What is still buffered belongs to the answer.
    readAnswer();
    if (m_state != State::Transferring)
        return;
    if (m_reply->error() != QNetworkReply::NoError) {
        finishWithError();
        return;
    }
    if (!m_answerAccepted) {
        // An empty body, or an answer that is no file at all, such as a
        // redirect without a target.
        const int status = httpStatus(m_reply);
        if (status != 200 && status != 206) {
            failOnAnswer(QStringLiteral("Unexpected answer HTTP %1").arg(status));
            return;
        }
        if (!acceptAnswer())
            return;
    }
    // The network layer can end a body that broke off without an error.
    if (m_expectedBody >= 0 && m_received < m_expectedBody) {
        fail(failureOf(DownloadFailure::ConnectionLost),
            QStringLiteral("HTTP access failed: Connection closed after %1 of %2 bytes")
                .arg(m_received)
                .arg(m_expectedBody),
            true);
        return;
    }
    succeed();
}

void FileDownload::finishWithError()
{
    DownloadFailure failure = failureOf(DownloadFailure::Other);
    failure.detail = m_reply->errorString();
    const int status = httpStatus(m_reply);
    switch (m_reply->error()) {
    case QNetworkReply::TooManyRedirectsError:
        failure.kind = DownloadFailure::TooManyRedirects;
        break;
    case QNetworkReply::InsecureRedirectError:
        failure.kind = DownloadFailure::InsecureRedirect;
        break;
    case QNetworkReply::SslHandshakeFailedError:
        if (m_certificateErrors.isEmpty()) {
            failure.kind = DownloadFailure::SecureConnection;
        } else {
            failure.kind = DownloadFailure::UntrustedCertificate;
            failure.detail = m_certificateErrors;
        }
        break;
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::TimeoutError:
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyNotFoundError:
    case QNetworkReply::ProxyTimeoutError:
        failure.kind = DownloadFailure::Unreachable;
        break;
    default:
        if (status >= 400) {
            failure.kind = DownloadFailure::HttpStatus;
            failure.httpStatus = status;
        } else {
            // Once connected, any other break is a lost connection.
            failure.kind = m_reply->error() == QNetworkReply::RemoteHostClosedError || m_answerAccepted
                ? DownloadFailure::ConnectionLost
                : DownloadFailure::Other;
        }
    }
    // A server that finds nothing left to send after the bytes on disk would
    // say so to every later try as well.
    const bool rangeRefused = status == 416;
    fail(failure, QStringLiteral("HTTP access failed: %1").arg(m_reply->errorString()), !rangeRefused);
}

void FileDownload::succeed()
{
    const QUrl from = m_reply->url();
    if (!m_expectedSha256.isEmpty()) {
        const QByteArray received = m_hash.resultHex();
        if (received != m_expectedSha256) {
            // From zero next time: which of the bytes are wrong cannot be known.
            fail(failureOf(DownloadFailure::ChecksumMismatch),
                QStringLiteral("Failed to download: SHA-256 checksum mismatch: %1 (expected %2, received %3)")
                    .arg(m_fileName, QString::fromLatin1(m_expectedSha256), QString::fromLatin1(received)),
                false);
            return;
        }
    }
    dropReply();
    if (!m_part.commit()) {
        failToWrite(false);
        return;
    }
    m_state = State::Ended;
    writeLog(QStringLiteral("FileDownload::succeed: %1 bytes from %2").arg(bytesDone()).arg(from.toString()));
    emit signalProgress(bytesDone(), bytesDone());
    emit signalFinished(true);
}

void FileDownload::fail(const DownloadFailure &failure, const QString &errorText, bool keepPart)
{
    dropReply();
    m_prefix.close();
    m_state = State::Ended;
    if (keepPart && m_part.isContinuable() && bytesDone() > 0) {
        m_part.close();
        writeLog(QStringLiteral("FileDownload::fail: Kept %1 bytes in %2 for the next try")
                     .arg(bytesDone())
                     .arg(m_part.getPartPath()));
    } else {
        m_part.discard();
    }
    m_failure = failure;
    m_errorText = errorText;
    // Where it stopped, which the last progress, sent at most every so
    // often, may not have told yet.
    if (m_answerAccepted)
        emit signalProgress(bytesDone(), m_total);
    emit signalFinished(false);
}

void FileDownload::cancel()
{
    if (m_state == State::Ended)
        return;
    dropReply();
    m_prefix.close();
    m_state = State::Ended;
    m_part.discard();
}

void FileDownload::dropReply()
{
    m_stallCheck.stop();
    if (!m_reply)
        return;
    // Nothing of this reply may arrive any more. Its end stops the transfer
    // and closes the connection; abort() would do the same, but races with a
    // failure that the network thread may already have sent on its way.
    m_reply->disconnect(this);
    m_reply->deleteLater();
    m_reply = nullptr;
}

DownloadFailure FileDownload::failureOf(DownloadFailure::Kind kind) const
{
    DownloadFailure failure;
    failure.kind = kind;
    failure.bytesDone = bytesDone();
    failure.bytesTotal = m_total;
    return failure;
}

void FileDownload::failToWrite(bool keepPart)
{
    DownloadFailure failure = failureOf(DownloadFailure::WriteFailed);
    failure.detail = m_part.getReason();
    fail(failure, QStringLiteral("Failed to download: %1").arg(m_part.getErrorText()), keepPart);
}

void FileDownload::writeLog(const QString &message) const
{
    if (m_log)
        m_log(message);
}
