// Manager file, applications catalogue, current editor, pins and recent projects.
#include "processlauncher.h"

#include "applinfo.h"
#include "editorinfo.h"
#include "historyinfo.h"
#include "launcherinfo.h"
#include "registry.h"

#include <QFile>

namespace {

const QString kEditorType = QStringLiteral("editor");
const QString kLauncherType = QStringLiteral("launcher");
const QString kMacFolder = QStringLiteral("/Library/Application Support/Vorlix");

// Every change to the recent list or the pins: make it on the file as it is
// now, log what ApplInfo reported about it, write, and log the outcome. A
// failed write leaves its words in the info text, so the error text logged
// here is the one from before; the in-memory change stands either way.
bool writeChange(
    ProcessLauncher &launcher, ApplInfo *applInfo, const QString &format, const std::function<void()> &change)
{
    const bool written = applInfo->saveChange([&launcher, applInfo, &format, &change]() {
        change();
        launcher.writeLog(format.arg(applInfo->getInfoText()));
    });
    launcher.logManagerFileNotes(format);
    launcher.writeLog(format.arg(written ? applInfo->getInfoText() : applInfo->getErrorText()));
    return written;
}

} // namespace

bool ProcessLauncher::readApplInfo(bool testMode)
{
    const QString folder
        = ensureFolder(getTargetSystemName() == QLatin1String("macosx") ? kMacFolder : launcherDataFolder());
    m_applInfo
        = new ApplInfo(QStringLiteral("%1/%2").arg(folder, QStringLiteral("ZanmirManager.json")), testMode, this);
    if (m_applInfo->loadFile())
        return true;

    // Missing, broken or incomplete: write what could be read, defaults for
    // the rest, and read that back.
    const bool created = m_applInfo->createFile();
    logManagerFileNotes(QStringLiteral("ProcessLauncher::readApplInfo: %1"));
    if (!created)
        return false;
    writeLog(QStringLiteral("ProcessLauncher::readApplInfo: %1").arg(m_applInfo->getInfoText()));
    return m_applInfo->loadFile();
}

bool ProcessLauncher::readRegistry()
{
    const QString folder
        = ensureFolder(getTargetSystemName() == QLatin1String("macosx") ? kMacFolder : vorlixDataFolder());
    const QString filePath = QStringLiteral("%1/%2").arg(folder, QStringLiteral("ZanmirApplications.json"));
    m_registry = new Registry(filePath, this);
    writeLog(QStringLiteral("ProcessLauncher::readRegistry: TargetSystemName=%1, RegistryFileName=%2")
                 .arg(getTargetSystemName(), filePath));
    if (m_registry->read())
        return true;

    // The catalogue is a cache of the uninstall records: the file is not
    // needed to open a project.
    writeLog(QStringLiteral("ProcessLauncher::readRegistry: %1").arg(m_registry->getErrorText()));
    setAsideStateFile(QStringLiteral("ProcessLauncher::readRegistry"), filePath, [this](QString &reason) {
        if (m_registry->read())
            return true;
        reason = m_registry->getErrorText();
        return false;
    });
    return true;
}

bool ProcessLauncher::saveApplInfo(const std::function<void()> &change)
{
    return m_applInfo->saveChange(change);
}

static QList<QJsonObject> historyForms(const QList<HistoryInfo> &histories)
{
    QList<QJsonObject> forms;
    for (const HistoryInfo &history : histories)
        forms.append(history.toJson());
    return forms;
}

bool ProcessLauncher::reloadApplInfo()
{
    const QList<QJsonObject> before = historyForms(m_applInfo->getHistories());
    if (!m_applInfo->reloadFile())
        return false;
    return historyForms(m_applInfo->getHistories()) != before;
}

void ProcessLauncher::logManagerFileNotes(const QString &format)
{
    for (const QString &note : { m_applInfo->getBackupText(), m_applInfo->getLockText() }) {
        if (!note.isEmpty())
            writeLog(format.arg(note));
    }
}

QString ProcessLauncher::getWebUrl(const QString &webType, const QString &defaultText)
{
    QString url;
    if (!m_applInfo->resolveWebUrl(webType, defaultText, url))
        writeLog(QStringLiteral("ProcessLauncher::getWebUrl: %1").arg(m_applInfo->getErrorText()));
    return url;
}

bool ProcessLauncher::getLocale(QString &locale) const
{
    return m_applInfo->getLocale(locale);
}

QString ProcessLauncher::getLockFilePath() const
{
    return m_applInfo->getLockFilePath();
}

bool ProcessLauncher::getLauncherVersion()
{
    const QList<EditorInfo> launchers = m_registry->getVersionList(kLauncherType);
    if (launchers.isEmpty()) {
        // The record keeps what the manager file held.
        writeLog(QStringLiteral("EditorLaunch::getLauncherVersion: No version info in registry."));
        return false;
    }

    // The first entry in catalogue order, not the newest.
    const EditorInfo &first = launchers.first();
    const LauncherInfo launcher(first.getApplName(), first.getVersion(), first.getPath(), first.getUninstallerPath());
    writeLog(QStringLiteral("EditorLaunch::getLauncherVersion: Current %1 Version %2: %3")
                 .arg(kLauncherType, launcher.getVersion(), launcher.getPath()));
    return saveSettings([this, &launcher]() {
        m_applInfo->setLauncherInfo(launcher);
        m_applInfo->mirrorLauncherInfo(launcher);
    });
}

void ProcessLauncher::setCurrentEditorInfo(const ApplVersion &version)
{
    // Only an installed version can become the default; the current editor
    // takes the catalogue's paths.
    const QList<EditorInfo> editors = m_registry->getVersionList(m_applInfo->getSelectedApplType());
    for (const EditorInfo &editor : editors) {
        if (editor.isSameVersion(version)) {
            EditorInfo selected;
            static_cast<ApplVersion &>(selected) = version;
            m_applInfo->setSelectedVersion(selected);
            m_applInfo->setCurrentEditorInfo(editor);
            break;
        }
    }

    const EditorInfo current = m_applInfo->getCurrentEditorInfo();
    writeLog(QStringLiteral("EditorLaunch::setCurrentEditorInfo: Current %1 %2 Version %3: %4")
                 .arg(current.getApplType(), current.getEdition(), current.getVersion(), current.getPath()));
}

void ProcessLauncher::unsetCurrentEditorInfo()
{
    m_applInfo->setSelectedVersion(EditorInfo());
    m_applInfo->setCurrentEditorInfo(EditorInfo());
    writeLog(QStringLiteral("EditorLaunch::unsetCurrentEditorInfo:"));
}

bool ProcessLauncher::saveLauncherState()
{
    // The default was chosen in memory; it goes onto the file as it is now,
    // whose pins and recent list may be newer than this process's.
    const EditorInfo current = m_applInfo->getCurrentEditorInfo();
    const EditorInfo selected = m_applInfo->getSelectedVersion();
    return saveSettings([this, &current, &selected]() {
        m_applInfo->setCurrentEditorInfo(current);
        m_applInfo->setSelectedVersion(selected);
        m_applInfo->mirrorEditorInfo(current);
        m_applInfo->mirrorSelection();
    });
}

bool ProcessLauncher::saveSettings(const std::function<void()> &change)
{
    const bool saved = m_applInfo->saveSetting(change);
    const QString format = QStringLiteral("EditorLaunch::saveSettings: %1");
    logManagerFileNotes(format);
    writeLog(format.arg(saved ? m_applInfo->getInfoText() : m_applInfo->getErrorText()));
    return saved;
}

QList<EditorInfo> ProcessLauncher::getInstalledEditors()
{
    QList<EditorInfo> editors = m_registry->getVersionList(kEditorType);
    Registry::sortNewestFirst(editors);

    // Pins only move versions to the front; they play no part in choosing one.
    QList<EditorInfo> pinned;
    QList<EditorInfo> others;
    for (const EditorInfo &editor : qAsConst(editors)) {
        if (m_applInfo->isPinnedVersion(editor))
            pinned.append(editor);
        else
            others.append(editor);
    }
    return pinned + others;
}

bool ProcessLauncher::getLauncherNameAndVersion(QString &applName, QString &version) const
{
    const LauncherInfo launcher = m_applInfo->getLauncherInfo();
    applName = launcher.getApplName();
    version = launcher.getVersion();
    return true;
}

bool ProcessLauncher::appendHistoryInfo(HistoryInfo history)
{
    return writeChange(*this, m_applInfo, QStringLiteral("ProcessLauncher::appendHistoryInfo: %1"),
        [this, &history]() { m_applInfo->addHistoryInfo(history); });
}

bool ProcessLauncher::deleteHistoryInfo(const HistoryInfo &history)
{
    return writeChange(*this, m_applInfo, QStringLiteral("ProcessLauncher::deleteHistoryInfo: %1"),
        [this, &history]() { m_applInfo->deleteHistoryInfo(history); });
}

bool ProcessLauncher::addPinnedVersionInfo(const EditorInfo &editor)
{
    return writeChange(*this, m_applInfo, QStringLiteral("ProcessLauncher::addPinnedVersionInfo: %1"),
        [this, &editor]() { m_applInfo->addPinnedVersionInfo(editor); });
}

bool ProcessLauncher::deletePinnedVersionInfo(const EditorInfo &editor)
{
    return writeChange(*this, m_applInfo, QStringLiteral("ProcessLauncher::deletePinnedVersionInfo: %1"),
        [this, &editor]() { m_applInfo->deletePinnedVersionInfo(editor); });
}

bool ProcessLauncher::addHistoryAfterLaunch(const EditorInfo &editor, const QString &filePath)
{
    // An editor started without a project leaves no trace in the list.
    if (filePath.isEmpty())
        return true;
    return appendHistoryInfo(HistoryInfo(editor.getApplType(), editor.getEdition(), editor.getVersion(), filePath));
}

EditorInfo ProcessLauncher::findEditorForHistory(const ApplVersion &version)
{
    const EditorInfo identity(version.getApplType(), version.getEdition(), version.getVersion());
    return m_registry->findVersionForDocument(identity);
}

bool ProcessLauncher::fileExists(const QString &path)
{
    if (!QFile::exists(path)) {
        writeLog(QStringLiteral("ProcessLauncher::fileExists: File does not exist: %1").arg(path));
        return false;
    }
    return true;
}

bool ProcessLauncher::setLocale(const QString &locale)
{
    // Takes effect at the next start, when the translator is chosen.
    return saveSettings([this, &locale]() { m_applInfo->setLocale(locale); });
}

bool ProcessLauncher::getShowAllVersions(bool &showAll) const
{
    return m_applInfo->getShowAllVersions(showAll);
}

bool ProcessLauncher::setShowAllVersions(bool showAll)
{
    // The flag lives in memory only; the file is left as it is.
    return saveSettings([this, showAll]() { m_applInfo->setShowAllVersions(showAll); });
}
