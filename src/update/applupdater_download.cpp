// Downloading installers and starting them.
#include "applupdater.h"

#include "binaryfilewriter.h"
#include "replyreader.h"
#include "systemenvironment.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QStandardPaths>

QString ApplUpdater::findSha256(const QString &fileName) const
{
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.getFileName(m_targetSystemName) == fileName)
            return update.getSha256(m_targetSystemName);
    }
    return QString();
}

bool ApplUpdater::startDownload(const QString &url, const QString &fileName)
{
    if (!checkInstallerSource(url, fileName)) {
        writeLog(QStringLiteral("ApplUpdater::startDownload: %1").arg(m_errorText));
        return false;
    }
    m_certificateErrors.clear();
    m_downloadFolder = QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + QStringLiteral("/Downloads");
    // A folder that cannot be made is not reported here: the writer fails later.
    if (!QDir(m_downloadFolder).exists())
        QDir().mkdir(m_downloadFolder);
    m_downloadFileName = fileName;
    m_downloadPath = QStringLiteral("%1/%2").arg(m_downloadFolder, fileName);
    m_expectedSha256 = findSha256(fileName);

    startRequest(url);
    m_infoText = QStringLiteral("Downloading is started.\nPlease wait...");
    m_downloading = true;
    return true;
}

void ApplUpdater::startRequest(const QString &url)
{
    // A download still being drained reads a reply of the manager that goes now.
    stopWorker();
    delete m_networkManager;
    m_reply = nullptr;

    m_networkManager = new QNetworkAccessManager(this);
    connect(m_networkManager, SIGNAL(finished(QNetworkReply *)), this, SLOT(replyFinished(QNetworkReply *)));
    connect(m_networkManager, SIGNAL(sslErrors(QNetworkReply *, QList<QSslError>)), this,
        SLOT(noteCertificateErrors(QNetworkReply *, QList<QSslError>)));
    m_reply = m_networkManager->get(QNetworkRequest(QUrl(url, QUrl::TolerantMode)));
    connect(m_reply, SIGNAL(downloadProgress(qint64, qint64)), this, SLOT(emitSignalUpdateProgress(qint64, qint64)));
}

void ApplUpdater::emitSignalUpdateProgress(qint64 bytesRead, qint64 totalBytes)
{
    emit signalUpdateProgress(bytesRead, totalBytes);
}

namespace {

// Why the reply is no whole answer, or empty. A connection that closes before
// the announced length has arrived can end without an error: the network
// layer sends the request once more, and when the second answer breaks off
// too it reports the part it has as the body. Saved and started, that would
// be a truncated installer.
QString replyFailure(QNetworkReply *reply)
{
    if (reply->error() != QNetworkReply::NoError)
        return reply->errorString();
    const QVariant length = reply->header(QNetworkRequest::ContentLengthHeader);
    // A compressed body is unpacked on arrival and has another length.
    const bool packed = !reply->rawHeader("Content-Encoding").isEmpty()
        && reply->rawHeader("Content-Encoding").toLower() != QByteArrayLiteral("identity");
    if (length.isValid() && !packed && reply->bytesAvailable() != length.toLongLong()) {
        return QStringLiteral("Connection closed after %1 of %2 bytes")
            .arg(reply->bytesAvailable())
            .arg(length.toLongLong());
    }
    return QString();
}

} // namespace

bool ApplUpdater::replyFinished(QNetworkReply *reply)
{
    // An HTTP error status ends here too. Redirects are not followed, so a
    // redirect answer is a reply without error and its body is what is saved.
    const QString failure = replyFailure(reply);
    if (!failure.isEmpty()) {
        m_downloading = false;
        m_errorText = QStringLiteral("HTTP access failed: %1").arg(failure);
        writeLog(QStringLiteral("ApplUpdater::replyFinished: %1").arg(m_errorText));
        emit signalDownloadFinished(m_errorText, false);
        return false;
    }
    m_worker = new ReplyReader(reply, this);
    connect(m_worker, SIGNAL(signalWorkerComplete(qint64, qint64)), this, SLOT(readReplyFinished(qint64, qint64)));
    connect(
        m_worker, SIGNAL(signalProgressChanged(qint64, qint64)), this, SLOT(emitSignalUpdateProgress(qint64, qint64)));
    m_worker->start(QThread::InheritPriority);
    return true;
}

void ApplUpdater::readReplyFinished(qint64 bytesRead, qint64 totalBytes)
{
    emit signalUpdateProgress(bytesRead, totalBytes);
    // A cancel can get here first.
    if (!m_worker)
        return;
    m_worker->quit();
    // The worker has sent its last signal; the wait only lets run() return,
    // as a thread must not be destroyed while it runs.
    m_worker->wait();
    const QByteArray data = m_worker->getData();
    delete m_worker;
    m_worker = nullptr;
    m_downloading = false;

    // The check comes before anything on disk changes, so a tampered
    // installer neither replaces an old file nor gets started.
    QString failure;
    if (!m_expectedSha256.isEmpty()) {
        const QString received
            = QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha256).toHex());
        if (received != m_expectedSha256) {
            failure = QStringLiteral("SHA-256 checksum mismatch: %1 (expected %2, received %3)")
                          .arg(m_downloadFileName, m_expectedSha256, received);
        }
    }
    if (failure.isEmpty()) {
        BinaryFileWriter writer(m_downloadFolder, m_downloadFileName);
        if (!writer.replace(data))
            failure = writer.getErrorText();
    }

    if (failure.isEmpty()) {
        m_infoText = QStringLiteral("Download success: %1").arg(m_downloadPath);
        writeLog(QStringLiteral("ApplUpdater::readReplyFinished: %1").arg(m_infoText));
        emit signalDownloadFinished(m_infoText, true);
    } else {
        m_errorText = QStringLiteral("Failed to download: %1").arg(failure);
        writeLog(QStringLiteral("ApplUpdater::readReplyFinished: %1").arg(m_errorText));
        emit signalDownloadFinished(m_errorText, false);
    }
}

void ApplUpdater::cancelDownload()
{
    stopWorker();
    if (!m_downloading) {
        writeLog(QStringLiteral("ApplUpdater::cancelDownload: Downloading not yet started"));
        return;
    }
    if (!m_reply) {
        writeLog(QStringLiteral("ApplUpdater::cancelDownload: HTTP access not yet started"));
        return;
    }
    // Nothing of this download may arrive any more, the finished signal that
    // abort() sends included.
    disconnect(m_networkManager, SIGNAL(finished(QNetworkReply *)), this, SLOT(replyFinished(QNetworkReply *)));
    disconnect(m_reply, SIGNAL(downloadProgress(qint64, qint64)), this, SLOT(emitSignalUpdateProgress(qint64, qint64)));
    m_reply->abort();
    m_downloading = false;
    m_infoText = QStringLiteral("Download canceled: %1").arg(m_downloadPath);
    writeLog(QStringLiteral("ApplUpdater::cancelDownload: %1").arg(m_infoText));
}

void ApplUpdater::stopWorker()
{
    if (!m_worker)
        return;
    m_worker->requestInterruption();
    m_worker->quit();
    m_worker->wait();
    delete m_worker;
    m_worker = nullptr;
}

bool ApplUpdater::openExecutableFile(const QString &path, bool wait)
{
    if (!QFile::exists(path)) {
        m_errorText = QStringLiteral("File not found: %1").arg(path);
        return false;
    }
    if (m_targetSystemName == QLatin1String("macosx")) {
        // The wait plays no part here.
        if (QProcess::execute(QStringLiteral("/usr/bin/open"), QStringList { path }) != 0) {
            m_errorText = QStringLiteral("Failed to open file(QProcess::execute): %1").arg(path);
            return false;
        }
        m_infoText = QStringLiteral("File is opened(QProcess::execute): %1").arg(path);
        return true;
    }
    QString error;
    if (!SystemEnvironment::openFile(path, wait, error)) {
        m_errorText = error;
        return false;
    }
    m_infoText = QStringLiteral("ApplUpdater::openExecutableFile: %1").arg(path);
    return true;
}

bool ApplUpdater::openDownloadFile(bool wait)
{
    const bool opened = openExecutableFile(m_downloadPath, wait);
    writeLog(QStringLiteral("ApplUpdater::openDownloadFile: %1").arg(opened ? m_infoText : m_errorText));
    return opened;
}

bool ApplUpdater::openUninstallerFile(const QString &path, bool wait)
{
    const bool opened = openExecutableFile(path, wait);
    writeLog(QStringLiteral("ApplUpdater::openUninstallerFile: %1").arg(opened ? m_infoText : m_errorText));
    return opened;
}

void ApplUpdater::writeLog(const QString &message) const
{
    if (m_log)
        m_log(message);
}
