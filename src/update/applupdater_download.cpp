// Downloading installers and starting them.
#include "applupdater.h"

#include "filedownload.h"
#include "partfile.h"
#include "startedprogram.h"

#include <QFile>
#include <QProcess>
#include <QStandardPaths>

namespace {

// Long enough for a user to come back to a download that broke off, short
// enough that forgotten ones do not pile up.
constexpr int kStaleDownloadDays = 7;

} // namespace

QString ApplUpdater::findSha256(const QString &fileName) const
{
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.getFileName(m_targetSystemName) == fileName)
            return update.getSha256(m_targetSystemName);
    }
    return QString();
}

QString ApplUpdater::downloadFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::HomeLocation) + QStringLiteral("/Downloads");
}

QStringList ApplUpdater::removeStaleDownloads(QStringList *failures)
{
    return PartFile::removeStale(downloadFolder(), kStaleDownloadDays, failures);
}

bool ApplUpdater::startDownload(const QString &url, const QString &fileName)
{
    if (!checkInstallerSource(url, fileName)) {
        writeLog(QStringLiteral("ApplUpdater::startDownload: %1").arg(m_errorText));
        return false;
    }
    dropDownload();
    const QString folder = downloadFolder();
    m_downloadPath = QStringLiteral("%1/%2").arg(folder, fileName);
    m_download = new FileDownload(url, folder, fileName, findSha256(fileName).toLatin1(), m_log, this);
    if (m_stallLimitMs > 0)
        m_download->setStallLimit(m_stallLimitMs);
    connect(m_download, SIGNAL(signalProgress(qint64, qint64)), this, SIGNAL(signalUpdateProgress(qint64, qint64)));
    connect(m_download, SIGNAL(signalFinished(bool)), this, SLOT(downloadFinished(bool)));
    // Started from the event loop, so that even a failure at once reaches
    // listeners that connect after this call.
    QMetaObject::invokeMethod(m_download, "start", Qt::QueuedConnection);
    m_infoText = QStringLiteral("Downloading is started.\nPlease wait...");
    return true;
}

void ApplUpdater::downloadFinished(bool ok)
{
    FileDownload *download = m_download;
    m_download = nullptr;
    download->deleteLater();
    if (ok) {
        m_infoText = QStringLiteral("Download success: %1").arg(m_downloadPath);
        writeLog(QStringLiteral("ApplUpdater::downloadFinished: %1").arg(m_infoText));
        emit signalDownloadFinished(m_infoText, true);
        return;
    }
    m_downloadFailure = download->getFailure();
    m_errorText = download->getErrorText();
    writeLog(QStringLiteral("ApplUpdater::downloadFinished: %1").arg(m_errorText));
    emit signalDownloadFinished(m_errorText, false);
}

void ApplUpdater::cancelDownload()
{
    if (!m_download) {
        writeLog(QStringLiteral("ApplUpdater::cancelDownload: Downloading not yet started"));
        return;
    }
    dropDownload();
    m_infoText = QStringLiteral("Download canceled: %1").arg(m_downloadPath);
    writeLog(QStringLiteral("ApplUpdater::cancelDownload: %1").arg(m_infoText));
}

void ApplUpdater::dropDownload()
{
    if (!m_download)
        return;
    m_download->disconnect(this);
    m_download->cancel();
    m_download->deleteLater();
    m_download = nullptr;
}

bool ApplUpdater::openExecutableFile(const QString &path, bool wait)
{
    return openProgram(path, QStringList(), wait);
}

bool ApplUpdater::openProgram(const QString &path, const QStringList &arguments, bool wait)
{
    m_leftRunning = false;
    if (!QFile::exists(path)) {
        m_errorText = QStringLiteral("File not found: %1").arg(path);
        return false;
    }
    if (m_targetSystemName == QLatin1String("macosx")) {
        // The wait plays no part here.
        const QStringList openArguments = QStringList { path }
            + (arguments.isEmpty() ? QStringList() : QStringList { QStringLiteral("--args") } + arguments);
        if (QProcess::execute(QStringLiteral("/usr/bin/open"), openArguments) != 0) {
            m_errorText = QStringLiteral("Failed to open file(QProcess::execute): %1").arg(path);
            return false;
        }
        m_infoText = QStringLiteral("File is opened(QProcess::execute): %1").arg(path);
        return true;
    }
    StartedProgram program;
    program.setProgram(path, arguments);
    if (!program.start()) {
        m_errorText = program.getErrorText();
        return false;
    }
    if (wait) {
        switch (program.waitForEnd()) {
        case StartedProgram::End::Ended:
            break;
        case StartedProgram::End::LeftRunning:
            m_leftRunning = true;
            m_errorText = QStringLiteral(
                "ApplUpdater::openExecutableFile: the launcher closes while %1 runs; it is left running")
                              .arg(path);
            return false;
        case StartedProgram::End::WaitFailed:
            m_errorText = program.getErrorText();
            return false;
        }
    }
    m_infoText = QStringLiteral("ApplUpdater::openExecutableFile: %1")
                     .arg((QStringList(path) + arguments).join(QLatin1Char(' ')));
    return true;
}

bool ApplUpdater::openDownloadFile(bool wait)
{
    const bool opened = openExecutableFile(m_downloadPath, wait);
    writeLog(QStringLiteral("ApplUpdater::openDownloadFile: %1").arg(opened ? m_infoText : m_errorText));
    return opened;
}

bool ApplUpdater::openUninstallerFile(const QString &command, bool wait)
{
    StartedProgram uninstaller;
    bool opened = uninstaller.setCommand(command);
    if (opened) {
        opened = openProgram(uninstaller.getProgram(), uninstaller.getArguments(), wait);
    } else {
        m_errorText = uninstaller.getErrorText();
        m_leftRunning = false;
    }
    writeLog(QStringLiteral("ApplUpdater::openUninstallerFile: %1").arg(opened ? m_infoText : m_errorText));
    return opened;
}

void ApplUpdater::writeLog(const QString &message) const
{
    if (m_log)
        m_log(message);
}
