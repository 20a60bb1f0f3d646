// Update catalogue and web page stamps.
#include "processlauncher.h"

#include "applinfo.h"
#include "applupdater.h"
#include "editorinfo.h"
#include "registry.h"
#include "screeninfo.h"

bool ProcessLauncher::prepareApplUpdater()
{
    const QString prefix = QStringLiteral("ProcessLauncher::prepareApplUpdater: ");
    const QString url = m_applInfo->getWebUrl(QStringLiteral("launcher_info_web"), QString());
    QString catalogue;
    QString reason;
    bool found = false;
    if (m_httpAccess.get(url)) {
        writeLog(prefix + QStringLiteral("ApplUpdateInfo is completely loaded from server: [%1]").arg(url));
        // A captive portal or a broken transfer answers too; only a catalogue
        // may replace the offline copy.
        found = ApplUpdater::isCatalogue(m_httpAccess.getBody(), &reason);
        if (found) {
            catalogue = m_httpAccess.getBody();
            saveOfflineFile(url, catalogue);
        } else {
            writeLog(prefix + QStringLiteral("Reply from server is not a catalogue: [%1] %2").arg(url, reason));
        }
    } else {
        writeLog(prefix + QStringLiteral("Failed to load ApplUpdateInfo from server: [%1]").arg(url));
        writeLog(prefix + m_httpAccess.getErrorText());
    }

    if (!found) {
        // A network failure is no start-up failure while an earlier run left a copy.
        const QString copy = restoreOfflineFile(url);
        found = !copy.isEmpty() && ApplUpdater::isCatalogue(copy, &reason);
        if (found)
            catalogue = copy;
        else if (!copy.isEmpty())
            writeLog(prefix + QStringLiteral("Offline copy is not a catalogue: [%1] %2").arg(url, reason));
    }

    // With neither, start-up goes on from the empty catalogue, while a later
    // refresh keeps the catalogue in use.
    if (!m_applUpdater) {
        m_applUpdater = new ApplUpdater(
            getTargetSystemName(), [this](const QString &message) { writeLog(message); }, this);
    } else if (!found) {
        writeLog(
            prefix + QStringLiteral("No catalogue from server or offline copy; the one in use is kept: [%1]").arg(url));
        return false;
    }

    if (!m_applUpdater->setUpdateInfo(catalogue)) {
        writeLog(prefix + m_applUpdater->getErrorText());
        return false;
    }
    m_applUpdater->setRegistry(m_registry);
    m_applUpdater->setCatalogueUrl(url);
    writeLog(prefix + m_applUpdater->getInfoText());
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
    if (m_closing)
        return;
    if (m_refreshHolds > 0) {
        if (!m_refreshPending)
            writeLog(QStringLiteral("ProcessLauncher::refreshUpdateState: held until the running flow has ended"));
        m_refreshPending = true;
        return;
    }
    if (!prepareApplUpdater())
        return;
    emit m_screenInfo->signalRefreshButtonClicked();
    noticeWebVersions();
}

void ProcessLauncher::noticeWebVersions()
{
    const WebUpdateInfo news = m_applUpdater->getWebUpdateInfo(QStringLiteral("newsweb"));
    const WebUpdateInfo howto = m_applUpdater->getWebUpdateInfo(QStringLiteral("howtoweb"));
    const bool updatedNewsWebFound = !m_applInfo->isWebVersionUpToDate(QStringLiteral("newsweb"), news);
    const bool updatedHowtoWebFound = !m_applInfo->isWebVersionUpToDate(QStringLiteral("howtoweb"), howto);
    emit m_screenInfo->signalUptodateWebVersionNoticed(updatedNewsWebFound, updatedHowtoWebFound);
}

void ProcessLauncher::holdRefresh()
{
    ++m_refreshHolds;
}

void ProcessLauncher::releaseRefresh()
{
    if (--m_refreshHolds > 0 || !m_refreshPending)
        return;
    m_refreshPending = false;
    refreshUpdateState();
}

void ProcessLauncher::closeLauncher()
{
    m_closing = true;
    quit();
}

void ProcessLauncher::lastWindowClosed()
{
    // The main window is gone and the event loops end; a flow that waited
    // in one of them unwinds.
    m_closing = true;
}

void ProcessLauncher::saveWebVersion(const QString &webType)
{
    // The page counts as seen once opened; the badge follows at the next refresh.
    m_applInfo->saveWebVersion(webType, m_applUpdater->getWebUpdateInfo(webType));
    logManagerFileNotes(QStringLiteral("ProcessLauncher::saveWebVersion: %1"));
}

QList<ApplUpdateInfo> ProcessLauncher::getInstallableVersions()
{
    bool showAll = false;
    m_applInfo->getShowAllVersions(showAll);
    return m_applUpdater->getInstallableEditors(m_registry->getReleaseVersions(), showAll);
}
