// Update catalogue and web page stamps.
#include "processlauncher.h"

#include "applinfo.h"
#include "applupdater.h"
#include "editorinfo.h"
#include "registry.h"
#include "screeninfo.h"

bool ProcessLauncher::prepareApplUpdater()
{
    const QString url = m_applInfo->getWebUrl(QStringLiteral("launcher_info_web"), QString());
    QString catalogue;
    if (m_httpAccess.get(url)) {
        writeLog(
            QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: [%1]")
                .arg(url));
        catalogue = m_httpAccess.getBody();
        saveOfflineFile(url, catalogue);
    } else {
        // A network failure is no start-up failure while an earlier run left a copy.
        writeLog(QStringLiteral("ProcessLauncher::prepareApplUpdater: Failed to load ApplUpdateInfo from server: [%1]")
                     .arg(url));
        catalogue = restoreOfflineFile(url);
    }

    if (!m_applUpdater)
        m_applUpdater = new ApplUpdater(
            getTargetSystemName(), [this](const QString &message) { writeLog(message); }, this);

    if (!m_applUpdater->setUpdateInfo(catalogue)) {
        writeLog(QStringLiteral("ProcessLauncher::prepareApplUpdater: %1").arg(m_applUpdater->getErrorText()));
        return false;
    }
    m_applUpdater->setRegistry(m_registry);
    writeLog(QStringLiteral("ProcessLauncher::prepareApplUpdater: %1").arg(m_applUpdater->getInfoText()));
    return true;
}

bool ProcessLauncher::hasLauncherUpdate()
{
    if (!m_applUpdater)
        return false;
    return !m_applUpdater->findLatestFor(QStringLiteral("launcher")).isEmpty();
}

void ProcessLauncher::refreshUpdateState()
{
    if (!prepareApplUpdater())
        return;
    emit m_screenInfo->signalRefreshButtonClicked();

    const WebUpdateInfo news = m_applUpdater->getWebUpdateInfo(QStringLiteral("newsweb"));
    const WebUpdateInfo howto = m_applUpdater->getWebUpdateInfo(QStringLiteral("howtoweb"));
    const bool updatedNewsWebFound = !m_applInfo->isWebVersionUpToDate(QStringLiteral("newsweb"), news);
    const bool updatedHowtoWebFound = !m_applInfo->isWebVersionUpToDate(QStringLiteral("howtoweb"), howto);
    emit m_screenInfo->signalUptodateWebVersionNoticed(updatedNewsWebFound, updatedHowtoWebFound);
}

void ProcessLauncher::saveWebVersion(const QString &webType)
{
    // The page counts as seen once opened; the badge follows at the next refresh.
    m_applInfo->saveWebVersion(webType, m_applUpdater->getWebUpdateInfo(webType));
    logManagerFileBackup(QStringLiteral("ProcessLauncher::saveWebVersion: %1"));
}

QList<ApplUpdateInfo> ProcessLauncher::getInstallableVersions()
{
    bool showAll = false;
    m_applInfo->getShowAllVersions(showAll);
    return m_applUpdater->getInstallableEditors(m_registry->getReleaseVersions(), showAll);
}
