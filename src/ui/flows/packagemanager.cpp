#include "packagemanager.h"

#include "applinfo.h"
#include "applupdater.h"
#include "downloaddialog.h"
#include "downloadtexts.h"
#include "processlauncher.h"
#include "recordschange.h"
#include "refreshhold.h"
#include "screeninfo.h"

#include <QMessageBox>
#include <QWidget>

PackageManager::PackageManager(QWidget *parent)
    : QObject(parent)
    , m_parentWidget(parent)
{ }

PackageManager::~PackageManager() = default;

void PackageManager::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
}

void PackageManager::setEditorInfo(const EditorInfo &editor)
{
    m_editor = editor;
}

bool PackageManager::isCurrentEditor() const
{
    return m_launcher->getApplInfo()->isSelectedVersion(m_editor);
}

bool PackageManager::isPinnedVersion() const
{
    return m_launcher->getApplInfo()->isPinnedVersion(m_editor);
}

void PackageManager::setCurrentEditor(bool on)
{
    if (on)
        m_launcher->setCurrentEditorInfo(m_editor);
    else
        m_launcher->unsetCurrentEditorInfo();
    // A failed save changes the state in memory but tells nobody.
    if (m_launcher->saveLauncherState())
        emit m_launcher->getApplInfo()->signalCurrentEditorInfoUpdated();
}

void PackageManager::setPinnedVersion(bool on)
{
    const EditorInfo editor(m_editor);
    const bool saved = on ? m_launcher->addPinnedVersionInfo(editor) : m_launcher->deletePinnedVersionInfo(editor);
    if (saved)
        emit m_launcher->getApplInfo()->signalPinnedVersionInfoUpdated();
}

bool PackageManager::networkAvailable(const QString &operation, const QString &cannot)
{
    if (m_launcher->getNetworkAccessHelper()->isAvailable())
        return true;
    m_launcher->writeLog(QStringLiteral("PackageManager::%1: network is not available.").arg(operation));
    // The lower-case title is how this box has always read.
    QMessageBox::critical(m_parentWidget, tr("error"), cannot, QMessageBox::Ok);
    return false;
}

bool PackageManager::askFinished(const QString &question)
{
    return QMessageBox::question(m_parentWidget, tr("Confirm"), question, QMessageBox::Yes | QMessageBox::No)
        != QMessageBox::No;
}

bool PackageManager::launcherCloses() const
{
    return m_launcher->isClosing() || m_launcher->getApplUpdater()->isLeftRunning();
}

int PackageManager::showUpdateHistoryDialog(HistoryMode mode, const QString &applName, const QString &version)
{
    // Two question marks on purpose: the page reads its parameters so, and
    // the version is the fragment it jumps to.
    const QString url = m_launcher->getWebUrl(QStringLiteral("editor_history_web")) + QStringLiteral("?p=t?i=a")
        + QStringLiteral("#") + version;
    UpdateHistoryWidget dialog(m_parentWidget);
    dialog.setProcessLauncher(m_launcher);
    dialog.setDialogMode(mode, applName, version, url);
    return dialog.exec();
}

bool PackageManager::findInstaller(
    const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName)
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    QString path;
    if (!updater->findDownloadInfo(version, applName, displayVersion, path, fileName)) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Failed to detect download url.\n\nPlease try again after a while."), QMessageBox::Ok);
        return false;
    }
    // The catalogue's installer address gets the server and the suffix here.
    url = m_launcher->getWebUrl(QStringLiteral("editor_installer_web"), path);
    // Refused before the user is asked to confirm a download that cannot be.
    if (!updater->checkInstallerSource(url, fileName)) {
        m_launcher->writeLog(QStringLiteral("PackageManager::findInstaller: %1").arg(updater->getErrorText()));
        QMessageBox::critical(
            m_parentWidget, tr("Error"), DownloadTexts::refusal(updater->getErrorText()), QMessageBox::Ok);
        return false;
    }
    return true;
}

bool PackageManager::downloadAndRun(
    const QString &url, const QString &fileName, const QString &applName, const QString &version)
{
    DownloadDialog dialog(true, m_parentWidget);
    dialog.setProcessLauncher(m_launcher);
    dialog.setPackage(applName, version);
    // The dialog has told the user when the download does not start.
    if (!dialog.startDownload(url, fileName))
        return false;
    return dialog.exec() != 0;
}

bool PackageManager::runUninstaller(const QString &applName, const QString &version, const QString &command)
{
    DownloadDialog dialog(true, m_parentWidget);
    dialog.setProcessLauncher(m_launcher);
    dialog.setPackage(applName, version);
    return dialog.runUninstaller(command);
}

QList<EditorInfo> PackageManager::readRecords() const
{
    return m_launcher->getInstalledEditors();
}

bool PackageManager::readOutcome(
    const QString &operation, const QList<EditorInfo> &before, const QString &question, RecordsChange &change)
{
    change = RecordsChange(before, readRecords());
    if (change.isEmpty() && !launcherCloses()) {
        m_launcher->writeLog(
            QStringLiteral("PackageManager::%1: no change in the uninstall records; the user is asked").arg(operation));
        if (!askFinished(question))
            return false;
        change = RecordsChange(before, readRecords());
    }
    m_launcher->writeLog(QStringLiteral("PackageManager::%1: %2").arg(operation, change.describe()));
    return !launcherCloses();
}

void PackageManager::announce(const RecordsChange &change)
{
    emit m_launcher->getScreenInfo()->signalInstallationNoted(change.getNote());
    emit m_launcher->getScreenInfo()->signalInstallationConfirmed();
}

void PackageManager::installEditor(const QString &version)
{
    const RefreshHold hold(m_launcher);
    if (!networkAvailable(QStringLiteral("installEditor"),
            tr("Network is not available.\nCannot install.\n\nCheck network settings.")))
        return;

    QString applName;
    QString displayVersion;
    QString url;
    QString fileName;
    if (!findInstaller(version, applName, displayVersion, url, fileName))
        return;
    if (showUpdateHistoryDialog(InstallMode, applName, displayVersion) == 0)
        return;
    const QList<EditorInfo> before = readRecords();
    if (!downloadAndRun(url, fileName, applName, displayVersion))
        return;
    RecordsChange change;
    if (readOutcome(QStringLiteral("installEditor"), before,
            tr("Are you finished to install %1 ver %2 ?").arg(applName, displayVersion), change))
        announce(change);
}

void PackageManager::updateEditor()
{
    const RefreshHold hold(m_launcher);
    if (!networkAvailable(
            QStringLiteral("updateEditor"), tr("Network is not available.\nCannot update.\n\nCheck network settings.")))
        return;

    const ApplUpdateInfo update = m_launcher->getApplUpdater()->findUpdateFor(m_editor);
    if (update.getApplType().isEmpty() && update.getVersion().isEmpty()) {
        QMessageBox::information(
            m_parentWidget, tr("Information"), tr("This is recent release version."), QMessageBox::Ok);
        return;
    }

    QString applName;
    QString displayVersion;
    QString url;
    QString fileName;
    if (!findInstaller(update.getVersion(), applName, displayVersion, url, fileName))
        return;
    if (showUpdateHistoryDialog(UpdateMode, applName, displayVersion) == 0)
        return;
    const QList<EditorInfo> before = readRecords();
    if (!downloadAndRun(url, fileName, applName, displayVersion))
        return;

    RecordsChange change;
    const bool finished = readOutcome(QStringLiteral("updateEditor"), before,
        tr("Are you finished to update %1 ver %2 ?").arg(applName, displayVersion), change);
    if (launcherCloses())
        return;
    // For editor entries the catalogue's application name is the edition.
    if (!change.hasAdded(EditorInfo(update.getApplType(), applName, update.getVersion()))) {
        // The old version is the one that works: it stays.
        QMessageBox::information(m_parentWidget, tr("Information"),
            tr("The update to %1 ver %2 did not complete.\n\n%3 ver %4 is still installed; nothing was uninstalled.")
                .arg(applName, displayVersion, m_editor.getApplName(), m_editor.getDisplayVersion()),
            QMessageBox::Ok);
        if (finished)
            announce(change);
        return;
    }
    removeReplacedVersion(before);
}

void PackageManager::removeReplacedVersion(const QList<EditorInfo> &before)
{
    // Without an uninstaller the old version stays beside the new one.
    const QString oldName = m_editor.getApplName();
    const QString oldVersion = m_editor.getVersion();
    const QString uninstaller = m_editor.getUninstallerPath();
    if (uninstaller.isEmpty()) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Path not found: uninstaller of %1 ver %2").arg(oldName, oldVersion), QMessageBox::Ok);
    } else {
        m_launcher->writeLog(QStringLiteral("PackageManager::updateEditor: %1 ver %2 uninstaller_path: %3")
                                 .arg(oldName, oldVersion, uninstaller));
        if (!runUninstaller(oldName, oldVersion, uninstaller)) {
            if (launcherCloses())
                return;
            // Only the log hears of it; the note tells what the records show.
            m_launcher->writeLog(QStringLiteral(
                "PackageManager::updateEditor: failed in openUninstallerFile. %1 ver %2 uninstaller_path: %3")
                                     .arg(oldName, oldVersion, uninstaller));
        }
    }
    const RecordsChange change(before, readRecords());
    m_launcher->writeLog(QStringLiteral("PackageManager::updateEditor: %1").arg(change.describe()));
    announce(change);
}

void PackageManager::uninstallEditor()
{
    const RefreshHold hold(m_launcher);
    const QString applName = m_editor.getApplName();
    const QString version = m_editor.getVersion();
    const QString uninstaller = m_editor.getUninstallerPath();
    if (uninstaller.isEmpty()) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Path not found: uninstaller of %1 ver %2").arg(applName, version), QMessageBox::Ok);
        return;
    }
    // Written here, under the name of the row that asked for it.
    m_launcher->writeLog(QStringLiteral("VersionDescWidget::actionUninstall: %1 ver %2 uninstaller_path: %3")
                             .arg(applName, version, uninstaller));
    if (QMessageBox::question(m_parentWidget, tr("Confirm"),
            tr("Are you sure to uninstall %1 ver %2 ?").arg(applName, version), QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;
    const QList<EditorInfo> before = readRecords();
    if (!runUninstaller(applName, version, uninstaller)) {
        if (launcherCloses())
            return;
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Failed to start uninstaller of %1 ver %2").arg(applName, version) + QStringLiteral("\n\n")
                + m_launcher->getApplUpdater()->getErrorText(),
            QMessageBox::Ok);
        return;
    }
    RecordsChange change;
    if (readOutcome(QStringLiteral("uninstallEditor"), before,
            tr("Are you finished to uninstall %1 ver %2 ?").arg(applName, version), change))
        announce(change);
}

void PackageManager::showUpdateHistories()
{
    const RefreshHold hold(m_launcher);
    showUpdateHistoryDialog(ShowOnlyMode, m_editor.getApplName(), m_editor.getDisplayVersion());
}
