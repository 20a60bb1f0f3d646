#include "packagemanager.h"

#include "applinfo.h"
#include "applupdater.h"
#include "downloaddialog.h"
#include "processlauncher.h"
#include "screeninfo.h"
#include "updatehistorywidget.h"

#include <QMessageBox>
#include <QWidget>

namespace {

enum HistoryMode { UpdateMode = 1, InstallMode = 2, ShowOnlyMode = 3 };

} // namespace

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

int PackageManager::showUpdateHistoryDialog(int mode, const QString &applName, const QString &version)
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
    QString path;
    if (!m_launcher->getApplUpdater()->findDownloadInfo(version, applName, displayVersion, path, fileName)) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Failed to detect download url.\n\nPlease try again after a while."), QMessageBox::Ok);
        return false;
    }
    // The catalogue's installer address gets the server and the suffix here.
    url = m_launcher->getWebUrl(QStringLiteral("editor_installer_web"), path);
    return true;
}

bool PackageManager::downloadAndRun(const QString &url, const QString &fileName)
{
    DownloadDialog dialog(true, m_parentWidget);
    dialog.setProcessLauncher(m_launcher);
    // The dialog has told the user when the download does not start.
    if (!dialog.startDownload(url, fileName))
        return false;
    return dialog.exec() != 0;
}

void PackageManager::installEditor(const QString &version)
{
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
    if (!downloadAndRun(url, fileName))
        return;
    if (askFinished(tr("Are you finished to install %1 ver %2 ?").arg(applName, displayVersion)))
        emit m_launcher->getScreenInfo()->signalInstallationConfirmed();
}

void PackageManager::updateEditor()
{
    if (!networkAvailable(
            QStringLiteral("updateEditor"), tr("Network is not available.\nCannot update.\n\nCheck network settings.")))
        return;

    ApplUpdater *updater = m_launcher->getApplUpdater();
    const ApplUpdateInfo update = updater->findUpdateFor(m_editor);
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
    if (!downloadAndRun(url, fileName))
        return;

    // The old version goes after the new one is in. Without an uninstaller
    // the flow ends here, with no question and no refresh, though the new
    // version is installed: that is how it reads to the user.
    const QString oldName = m_editor.getApplName();
    const QString oldVersion = m_editor.getVersion();
    const QString uninstaller = m_editor.getUninstallerPath();
    if (uninstaller.isEmpty()) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Path not found: uninstaller of %1 ver %2").arg(oldName, oldVersion), QMessageBox::Ok);
        return;
    }
    m_launcher->writeLog(QStringLiteral("PackageManager::updateEditor: %1 ver %2 uninstaller_path: %3")
                             .arg(oldName, oldVersion, uninstaller));
    if (!updater->openUninstallerFile(uninstaller, true)) {
        // Only the log hears of it; the user is still asked below.
        m_launcher->writeLog(QStringLiteral(
            "PackageManager::updateEditor: failed in openUninstallerFile. %1 ver %2 uninstaller_path: %3")
                                 .arg(oldName, oldVersion, uninstaller));
    }
    if (askFinished(tr("Are you finished to update %1 ver %2 ?").arg(applName, displayVersion)))
        emit m_launcher->getScreenInfo()->signalInstallationConfirmed();
}

void PackageManager::uninstallEditor()
{
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
    if (!m_launcher->getApplUpdater()->openUninstallerFile(uninstaller, true)) {
        QMessageBox::critical(m_parentWidget, tr("Error"),
            tr("Failed to start uninstaller of %1 ver %2").arg(applName, version), QMessageBox::Ok);
        return;
    }
    if (askFinished(tr("Are you finished to uninstall %1 ver %2 ?").arg(applName, version)))
        emit m_launcher->getScreenInfo()->signalInstallationConfirmed();
}

void PackageManager::showUpdateHistories()
{
    showUpdateHistoryDialog(ShowOnlyMode, m_editor.getApplName(), m_editor.getDisplayVersion());
}
