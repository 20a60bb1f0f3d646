#include "applinfo.h"

#include "deploymentconfig.h"
#include "jsonfilereader.h"
#include "jsonrepair.h"
#include "textfilewriter.h"
#include "webaddress.h"

#include <QDateTime>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>
#include <QLockFile>
#include <QThread>
#include <QUrl>

#include <algorithm>
#include <limits>

namespace {

const QString kFormatVersion = QStringLiteral("1.0.0");
const QString kEditorType = QStringLiteral("editor");
const QString kNewsWeb = QStringLiteral("newsweb");
const QString kHowtoWeb = QStringLiteral("howtoweb");
const QString kHistoryEdited = QStringLiteral("Registory file is edit.");
const QString kBackupTimeFormat = QStringLiteral("yyyyMMdd-hhmmss");
// Failed writes leave these in the info text, so that a caller logging the
// error text after a failure logs the one from before.
const QString kCreateFailed = QStringLiteral("Failed to create ApplInfo file: %1");
const QString kUpdateFailed = QStringLiteral("Failed to update ApplInfo file: %1");
// A writer holds the lock for one read and one write of a small file.
const int kWriteLockStaleMsecs = 5000;
const int kWriteLockWaitMsecs = 5000;
const unsigned long kWriteLockPollMsecs = 20;
// Far beyond any page or installer address of the maker's; servers refuse
// request lines of this length anyway.
const int kMaxAddressLength = 8192;

bool higherSerialFirst(const HistoryInfo &a, const HistoryInfo &b)
{
    return a.getSerialNo() > b.getSerialNo();
}

} // namespace

ApplInfo::ApplInfo(const QString &filePath, bool testMode, QObject *parent)
    : QObject(parent)
    , m_selectedApplType(kEditorType)
    , m_filePath(filePath)
    , m_testMode(testMode)
    , m_newsWeb(kNewsWeb, QStringLiteral("0.0.0.0"), QString())
    , m_howtoWeb(kHowtoWeb, QStringLiteral("0.0.0.0"), QString())
    , m_locale(QLocale::system().name())
    , m_proxyInfo(false, QStringLiteral("192.168.1.1"), QStringLiteral("80"))
{
    m_serverBase = DeploymentConfig::serverBase();
    if (m_testMode)
        m_serverBase += QStringLiteral("/Test");
}

ApplInfo::~ApplInfo() = default;

bool ApplInfo::loadFile()
{
    JsonFileReader reader(m_filePath);
    if (!reader.parse()) {
        // The reader's reason is not taken over: a second failure in one run
        // wraps the first message.
        m_errorText = QStringLiteral("Failed to load ApplInfo file: %1").arg(m_errorText);
        return false;
    }
    m_infoText = QStringLiteral("ApplInfo file loaded: %1").arg(m_filePath);
    m_document = reader.getDocument();
    bool historyDropped = false;
    const bool complete = readSections(&historyDropped);
    if (historyDropped)
        m_infoText = kHistoryEdited;
    return complete;
}

bool ApplInfo::readSections(bool *historyDropped)
{
    const QJsonObject root = m_document.object().value(kFormatVersion).toObject();
    if (root.isEmpty())
        return false;

    // Every section is read, even after a bad one, so that whatever is good
    // survives the rewrite that follows a failed load.
    bool bad = false;

    const QJsonObject launcher = root.value(QStringLiteral("launcher")).toObject();
    if (launcher.isEmpty())
        bad = true;
    else
        m_launcherInfo = LauncherInfo(launcher, nullptr);

    const QJsonObject editor = root.value(QStringLiteral("editor")).toObject();
    if (editor.isEmpty())
        bad = true;
    else
        m_currentEditor = EditorInfo(false, editor, nullptr);

    m_histories.clear();
    const QJsonArray histories = root.value(QStringLiteral("histories")).toArray();
    for (const QJsonValue &element : histories) {
        const QJsonObject object = element.toObject();
        bool error = object.isEmpty();
        if (!error) {
            const HistoryInfo history(object, &error);
            if (!error)
                m_histories.append(history);
        }
        if (error) {
            bad = true;
            if (historyDropped)
                *historyDropped = true;
        }
    }

    m_selectedApplType = root.value(QStringLiteral("selected_appl_type")).toString();
    if (m_selectedApplType.isEmpty()) {
        m_selectedApplType = kEditorType;
        bad = true;
    }

    const QJsonObject selected = root.value(QStringLiteral("selected_version")).toObject();
    m_selectedVersions[kEditorType] = EditorInfo(true, selected.value(kEditorType).toObject(), nullptr);

    QList<EditorInfo> &pinned = m_pinnedVersions[kEditorType];
    pinned.clear();
    const QJsonArray pins = root.value(QStringLiteral("pinned_version")).toObject().value(kEditorType).toArray();
    for (const QJsonValue &element : pins)
        pinned.append(EditorInfo(true, element.toObject(), nullptr));

    const QJsonObject webVersions = root.value(QStringLiteral("web_versions")).toObject();
    if (webVersions.isEmpty()) {
        bad = true;
    } else {
        bool error = false;
        m_howtoWeb = WebUpdateInfo(kHowtoWeb, webVersions.value(kHowtoWeb).toObject(), &error);
        bad = bad || error;
        m_newsWeb = WebUpdateInfo(kNewsWeb, webVersions.value(kNewsWeb).toObject(), &error);
        bad = bad || error;
    }

    const QJsonObject proxy = root.value(QStringLiteral("proxy_info")).toObject();
    if (proxy.isEmpty()) {
        bad = true;
    } else {
        bool incomplete = false;
        m_proxyInfo = ProxyServerInfo(proxy, &incomplete);
        bad = bad || incomplete;
    }

    m_locale = root.value(QStringLiteral("locale")).toString();
    const bool hasLocale = !m_locale.isEmpty();
    if (!hasLocale)
        m_locale = QLocale::system().name();

    return !bad && hasLocale;
}

bool ApplInfo::createFile()
{
    m_backupText.clear();
    QLockFile lock(getWriteLockFilePath());
    const WriteLock locked = takeWriteLock(lock);
    // The error text keeps what the failed load said, whatever happens here.
    if (locked == WriteLock::HeldElsewhere)
        return failForHeldLock(kCreateFailed);

    // Another process may have written the file since this one looked.
    QString text;
    const FileState state = readCurrentFile(&text);
    if (state == FileState::Complete) {
        m_infoText = QStringLiteral("ApplInfo file loaded: %1").arg(m_filePath);
        if (locked == WriteLock::Unavailable)
            noteSavedWithoutLock(true, false);
        return true;
    }
    if (state == FileState::Unparsable) {
        // What is still readable is carried over by the rules of a bad
        // section; the rest gets its defaults.
        const QJsonDocument repaired = JsonRepair::repair(text.toUtf8());
        if (repaired.isObject()) {
            m_document = repaired;
            readSections();
        }
    }
    mirrorAll();

    TextFileWriter writer(m_filePath);
    const bool created = writer.writeNew(QString::fromUtf8(m_document.toJson()));
    m_infoText = created ? QStringLiteral("ApplInfo file created: %1").arg(m_filePath)
                         : kCreateFailed.arg(writer.getErrorText());
    if (locked == WriteLock::Unavailable)
        noteSavedWithoutLock(created, true);
    return created;
}

bool ApplInfo::updateFile()
{
    TextFileWriter writer(m_filePath);
    if (!writer.replace(QString::fromUtf8(m_document.toJson()))) {
        m_infoText = kUpdateFailed.arg(writer.getErrorText());
        return false;
    }
    m_infoText = QStringLiteral("ApplInfo file updated: %1").arg(m_filePath);
    return true;
}

bool ApplInfo::saveChange(const std::function<void()> &change)
{
    m_backupText.clear();
    QLockFile lock(getWriteLockFilePath());
    const WriteLock locked = takeWriteLock(lock);
    if (locked == WriteLock::HeldElsewhere) {
        // As after a failed write, the change holds in memory.
        if (change)
            change();
        return failForHeldLock(kUpdateFailed);
    }

    QString onDisk;
    if (readCurrentFile(&onDisk) != FileState::Complete)
        mirrorAll();
    if (change)
        change();
    const QString text = QString::fromUtf8(m_document.toJson());
    // Nothing to write when the file says it already, and no flush to wait for.
    const bool needsWrite = text != onDisk;
    bool saved = true;
    if (needsWrite)
        saved = updateFile();
    else
        m_infoText = QStringLiteral("ApplInfo file updated: %1").arg(m_filePath);
    if (locked == WriteLock::Unavailable)
        noteSavedWithoutLock(saved, needsWrite);
    return saved;
}

bool ApplInfo::saveSetting(const std::function<void()> &change)
{
    // Most settings are saved as the file holds them already (the launcher's
    // own record at every start), and the lock file is made, flushed to disk
    // and removed each time. In a folder that cannot be written the lock's
    // words belong in the log, so that case goes the way of any other change.
    if (change && QFileInfo(QFileInfo(m_filePath).path()).isWritable()) {
        JsonFileReader reader(m_filePath);
        if (reader.parse()) {
            m_document = reader.getDocument();
            if (readSections()) {
                change();
                if (QString::fromUtf8(m_document.toJson()) == reader.getContents()) {
                    m_backupText.clear();
                    m_lockText.clear();
                    m_infoText = QStringLiteral("ApplInfo file updated: %1").arg(m_filePath);
                    return true;
                }
            }
        }
    }
    return saveChange(change);
}

bool ApplInfo::reloadFile()
{
    JsonFileReader reader(m_filePath);
    if (!reader.parse())
        return false;
    m_document = reader.getDocument();
    readSections();
    return true;
}

ApplInfo::FileState ApplInfo::readCurrentFile(QString *text)
{
    JsonFileReader reader(m_filePath);
    const bool parsed = reader.parse();
    *text = reader.getContents();
    if (!parsed) {
        // Missing, blank or unreadable, there is nothing to keep.
        if (text->isEmpty())
            return FileState::Missing;
        keepBackup();
        return FileState::Unparsable;
    }
    m_document = reader.getDocument();
    return readSections() ? FileState::Complete : FileState::Incomplete;
}

void ApplInfo::keepBackup()
{
    // Never over an earlier copy: a second damage in the same second gets a
    // numbered name.
    const QString stem
        = QStringLiteral("%1.broken-%2").arg(m_filePath, QDateTime::currentDateTime().toString(kBackupTimeFormat));
    QString backup = stem;
    for (int i = 2; QFile::exists(backup); ++i)
        backup = QStringLiteral("%1-%2").arg(stem).arg(i);
    if (QFile::copy(m_filePath, backup))
        m_backupText = QStringLiteral("Unreadable ApplInfo file kept as: %1").arg(backup);
    else
        m_backupText = QStringLiteral("Failed to keep unreadable ApplInfo file as: %1").arg(backup);
}

ApplInfo::WriteLock ApplInfo::takeWriteLock(QLockFile &lock)
{
    // Held only for a read and a write. Short polls rather than the growing
    // sleeps of a single tryLock(), so that a crowd of processes started
    // together gets through in turn; a lock whose process has died is
    // taken over by QLockFile at once.
    m_lockText.clear();
    lock.setStaleLockTime(kWriteLockStaleMsecs);
    QDeadlineTimer deadline(kWriteLockWaitMsecs);
    while (!lock.tryLock(0)) {
        if (lock.error() == QLockFile::LockFailedError && !deadline.hasExpired()) {
            QThread::msleep(kWriteLockPollMsecs);
            continue;
        }
        const QString lockText = QStringLiteral("Failed to lock ApplInfo file: %1 (%2)");
        if (lock.error() == QLockFile::LockFailedError) {
            m_lockText = lockText.arg(getWriteLockFilePath(), QStringLiteral("held by another process"));
            return WriteLock::HeldElsewhere;
        }
        // Where this process cannot make the lock, the user's other launcher
        // processes cannot either, so it would guard nothing: the write goes
        // ahead without it and ends as it would have with it. A read-only
        // data folder does not stop a project from opening.
        const QFileInfo folder(QFileInfo(m_filePath).path());
        const QString reason = !folder.exists() ? QStringLiteral("its folder is missing")
            : !folder.isWritable()              ? QStringLiteral("its folder cannot be written")
                                                : QStringLiteral("it cannot be created");
        m_lockText = lockText.arg(getWriteLockFilePath(), reason);
        return WriteLock::Unavailable;
    }
    return WriteLock::Taken;
}

bool ApplInfo::failForHeldLock(const QString &failureFormat)
{
    // The lock stands in for the writer, whose words it leaves.
    m_infoText = failureFormat.arg(m_lockText);
    m_lockText += QStringLiteral("; nothing saved");
    return false;
}

void ApplInfo::noteSavedWithoutLock(bool saved, bool written)
{
    if (!saved)
        m_lockText += QStringLiteral("; nothing saved: %1").arg(m_infoText);
    else
        m_lockText += written ? QStringLiteral("; written without it") : QStringLiteral("; nothing to write");
}

void ApplInfo::mirrorAll()
{
    mirrorLauncherInfo(m_launcherInfo);
    mirrorEditorInfo(m_currentEditor);
    mirrorHistories();
    mirrorSelection();
    mirrorLocale();
    mirrorProxyInfo(m_proxyInfo);
    mirrorWebVersions(m_newsWeb, m_howtoWeb);
}

QString ApplInfo::getInfoText() const
{
    return m_infoText;
}

QString ApplInfo::getErrorText() const
{
    return m_errorText;
}

QString ApplInfo::getLockFilePath() const
{
    return QStringLiteral("%1/%2").arg(QFileInfo(m_filePath).dir().path(), QStringLiteral("ZanmirManager.lock"));
}

QString ApplInfo::getWriteLockFilePath() const
{
    return QStringLiteral("%1/%2").arg(QFileInfo(m_filePath).dir().path(), QStringLiteral("ZanmirManager.write.lock"));
}

QString ApplInfo::getBackupText() const
{
    return m_backupText;
}

QString ApplInfo::getLockText() const
{
    return m_lockText;
}

QString ApplInfo::getWebUrl(const QString &webType, const QString &defaultText) const
{
    QString refusal;
    return webUrl(webType, defaultText, refusal);
}

bool ApplInfo::resolveWebUrl(const QString &webType, const QString &defaultText, QString &url)
{
    QString refusal;
    url = webUrl(webType, defaultText, refusal);
    if (refusal.isEmpty())
        return true;
    m_errorText = refusal;
    return false;
}

QString ApplInfo::webUrl(const QString &webType, const QString &defaultText, QString &refusal) const
{
    const bool installer
        = webType == QLatin1String("launcher_installer_web") || webType == QLatin1String("editor_installer_web");
    QString text;
    // An address that the catalogue gave, now or at an earlier start.
    QString given;
    if (webType == QLatin1String("launcher_info_web")) {
        text = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json");
    } else if (webType == kNewsWeb) {
        text = QStringLiteral("/Zanmir/Launcher/%1/NewsWeb/news.htm");
        if (!m_newsWeb.isEmpty())
            given = m_newsWeb.getUrl();
    } else if (webType == kHowtoWeb) {
        // Decided by the news stamp, not by the help page's own: both stamps
        // arrive together from the catalogue.
        text = QStringLiteral("/Zanmir/Launcher/%1/HowtoWeb/support.htm");
        if (!m_newsWeb.isEmpty())
            given = m_howtoWeb.getUrl();
    } else if (webType == QLatin1String("launcher_history_web")) {
        text = QStringLiteral("/Zanmir/Launcher/%1/History/Launcher.htm");
    } else if (webType == QLatin1String("editor_history_web")) {
        text = QStringLiteral("/Zanmir/Launcher/%1/History/Editor.htm");
    } else if (installer) {
        given = defaultText;
    } else if (webType == QLatin1String("footprintweb")) {
        text = QStringLiteral("/Zanmir/Launcher/%1/History/index.html");
    } else if (webType == QLatin1String("onlinestrore")) {
        const QString language = m_locale == QLatin1String("en_US") ? QStringLiteral("/en/") : QStringLiteral("/jp/");
        text = DeploymentConfig::storeUrl() + language;
    }

    if (!given.isEmpty() || installer) {
        const QString reason = refusalOf(given, !installer);
        if (reason.isEmpty()) {
            text = given;
        } else {
            refusal = QStringLiteral("Refused address of %1: [%2] %3; %4")
                          .arg(webType, WebAddress::forLog(given), reason,
                              installer ? QStringLiteral("nothing is downloaded from it")
                                        : QStringLiteral("the default address is used"));
            if (installer)
                return QString();
        }
    }

    if (text.contains(QLatin1String("%1")))
        text = text.arg(m_locale);

    // Every address carries the suffix, installer addresses from the
    // catalogue included.
    const QString suffix = QStringLiteral("?t=pe1");
    if (WebAddress::isWebAddress(text))
        return text + suffix;
    return m_serverBase + text + suffix;
}

QString ApplInfo::refusalOf(const QString &text, bool page)
{
    if (text.size() > kMaxAddressLength)
        return QStringLiteral("is longer than %1 characters").arg(kMaxAddressLength);
    // A path on the update server.
    if (text.startsWith(QLatin1Char('/')))
        return QString();
    // A local file shown as a page could read the user's files, and a
    // program's own scheme would start that program.
    if (!WebAddress::isWebAddress(text))
        return QStringLiteral("is neither an http or https address nor a path on the update server");
    const QUrl url(text, QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty())
        return QStringLiteral("is not a valid address");
    // The maker's pages need none; kept, they would end up in the manager file and the log.
    if (!url.userInfo().isEmpty())
        return QStringLiteral("carries a user name or password");
    // An installer over plain http is checked by its digest when it is downloaded.
    if (page && WebAddress::isExposed(url) && !DeploymentConfig::isNamedPlainHttp(url))
        return QStringLiteral("is plain http to a host that neither the build nor the environment names");
    return QString();
}

bool ApplInfo::isWebVersionUpToDate(const QString &webType, const WebUpdateInfo &remote) const
{
    if (webType == kNewsWeb)
        return m_newsWeb.compareVersion(remote) >= 0;
    if (webType == kHowtoWeb)
        return m_howtoWeb.compareVersion(remote) >= 0;
    return false;
}

bool ApplInfo::saveWebVersion(const QString &webType, const WebUpdateInfo &record)
{
    if (webType != kNewsWeb && webType != kHowtoWeb)
        return false;
    const WebUpdateInfo stamp(record.getType(), record.getVersion(), record.getUrl());
    // The stamp holds in memory whether or not the file could be written.
    saveChange([this, &webType, &stamp]() {
        if (webType == kNewsWeb) {
            mirrorWebVersions(stamp, m_howtoWeb);
            m_newsWeb = stamp;
        } else {
            mirrorWebVersions(m_newsWeb, stamp);
            m_howtoWeb = stamp;
        }
    });
    return true;
}

bool ApplInfo::getLocale(QString &locale) const
{
    locale = m_locale;
    return true;
}

bool ApplInfo::setLocale(const QString &locale)
{
    m_locale = locale;
    mirrorLocale();
    return true;
}

bool ApplInfo::getShowAllVersions(bool &showAll) const
{
    showAll = m_showAllVersions;
    return true;
}

bool ApplInfo::setShowAllVersions(bool showAll)
{
    m_showAllVersions = showAll;
    return true;
}

QString ApplInfo::getSelectedApplType() const
{
    return m_selectedApplType;
}

bool ApplInfo::hasSelectedVersion() const
{
    return !m_selectedVersions.value(m_selectedApplType).isEmpty();
}

EditorInfo ApplInfo::getSelectedVersion() const
{
    return m_selectedVersions.value(m_selectedApplType);
}

void ApplInfo::setSelectedVersion(const EditorInfo &version)
{
    m_selectedVersions[m_selectedApplType] = version;
}

bool ApplInfo::isSelectedVersion(const ApplVersion &version) const
{
    return m_selectedVersions.value(m_selectedApplType).isSameVersion(version);
}

bool ApplInfo::isPinnedVersion(const ApplVersion &version) const
{
    const QList<EditorInfo> pinned = m_pinnedVersions.value(m_selectedApplType);
    return std::any_of(
        pinned.cbegin(), pinned.cend(), [&version](const EditorInfo &pin) { return pin.isSameVersion(version); });
}

EditorInfo ApplInfo::getCurrentEditorInfo() const
{
    return m_currentEditor;
}

void ApplInfo::setCurrentEditorInfo(const EditorInfo &editor)
{
    m_currentEditor = editor;
}

LauncherInfo ApplInfo::getLauncherInfo() const
{
    return m_launcherInfo;
}

void ApplInfo::setLauncherInfo(const LauncherInfo &launcher)
{
    m_launcherInfo = launcher;
}

void ApplInfo::addHistoryInfo(HistoryInfo history)
{
    // One entry per project file: an earlier one of the same path goes first.
    const auto same = std::find_if(m_histories.cbegin(), m_histories.cend(),
        [&history](const HistoryInfo &entry) { return entry.getOpenFilePath() == history.getOpenFilePath(); });
    if (same != m_histories.cend()) {
        const HistoryInfo previous = *same;
        deleteHistoryInfo(previous);
    }

    // The serial number is a logical clock: one above the highest in use.
    // When the clock has run out, the list is numbered anew from 1, oldest
    // first, which keeps its order.
    std::sort(m_histories.begin(), m_histories.end(), higherSerialFirst);
    int serialNo = 1;
    if (!m_histories.isEmpty()) {
        if (m_histories.first().getSerialNo() == std::numeric_limits<int>::max()) {
            for (int i = 0; i < m_histories.size(); ++i)
                m_histories[i].setSerialNo(m_histories.size() - i);
        }
        serialNo = m_histories.first().getSerialNo() + 1;
    }
    history.setSerialNo(serialNo);
    history.setTimestamp(currentTimestamp());
    m_histories.append(history);
    mirrorHistories();
    m_infoText = QStringLiteral("HistoryInfo added: serial_no=%1").arg(history.getSerialNo());
}

void ApplInfo::deleteHistoryInfo(const HistoryInfo &history)
{
    const int serialNo = history.getSerialNo();
    for (int i = 0; i < m_histories.size(); ++i) {
        if (m_histories.at(i).getSerialNo() == serialNo) {
            m_histories.removeAt(i);
            mirrorHistories();
            m_infoText = QStringLiteral("HistoryInfo deleted: serial_no=%1").arg(serialNo);
            return;
        }
    }
}

QList<HistoryInfo> ApplInfo::getHistories() const
{
    QList<HistoryInfo> sorted = m_histories;
    std::sort(sorted.begin(), sorted.end(), higherSerialFirst);
    QList<HistoryInfo> result;
    for (const HistoryInfo &history : qAsConst(sorted)) {
        if (history.getSerialNo() >= 1 && history.getApplType() == m_selectedApplType)
            result.append(history);
    }
    return result;
}

void ApplInfo::addPinnedVersionInfo(const EditorInfo &editor)
{
    // No test for a duplicate: pinning twice gives two entries.
    m_pinnedVersions[m_selectedApplType].append(editor);
    m_infoText = QStringLiteral("Version is pinned on: %1 %2 %3")
                     .arg(m_selectedApplType, editor.getEdition(), editor.getVersion());
    mirrorPinnedVersions();
}

void ApplInfo::deletePinnedVersionInfo(const EditorInfo &editor)
{
    QList<EditorInfo> &pinned = m_pinnedVersions[m_selectedApplType];
    // The index moves on after a removal too, so an entry right behind a
    // removed one is not looked at: of two neighbouring twins one stays.
    for (int i = 0; i < pinned.size(); ++i) {
        if (pinned.at(i).isSameVersion(editor)) {
            pinned.removeAt(i);
            m_infoText = QStringLiteral("Version is pinned off: %1 %2 %3")
                             .arg(m_selectedApplType, editor.getEdition(), editor.getVersion());
        }
    }
    mirrorPinnedVersions();
}

void ApplInfo::mirror(const QString &key, const QJsonValue &value)
{
    QJsonObject root = m_document.object();
    QJsonObject section = root.value(kFormatVersion).toObject();
    section.insert(key, value);
    root.insert(kFormatVersion, section);
    m_document.setObject(root);
}

void ApplInfo::mirrorLauncherInfo(const LauncherInfo &launcher)
{
    mirror(QStringLiteral("launcher"), launcher.toJson());
}

void ApplInfo::mirrorEditorInfo(const EditorInfo &editor)
{
    mirror(QStringLiteral("editor"), editor.toJson(false));
}

void ApplInfo::mirrorHistories()
{
    QJsonArray histories;
    for (const HistoryInfo &history : qAsConst(m_histories))
        histories.append(history.toJson());
    mirror(QStringLiteral("histories"), histories);
}

static QJsonArray shortForms(const QList<EditorInfo> &editors)
{
    QJsonArray array;
    for (const EditorInfo &editor : editors)
        array.append(editor.toJson(true));
    return array;
}

void ApplInfo::mirrorPinnedVersions()
{
    QJsonObject pinned;
    pinned.insert(m_selectedApplType, shortForms(m_pinnedVersions.value(m_selectedApplType)));
    mirror(QStringLiteral("pinned_version"), pinned);
}

void ApplInfo::mirrorSelection()
{
    // Only "editor" is ever read back, whatever type is selected.
    mirror(QStringLiteral("selected_appl_type"), m_selectedApplType);
    QJsonObject selected;
    selected.insert(kEditorType, m_selectedVersions.value(kEditorType).toJson(true));
    mirror(QStringLiteral("selected_version"), selected);
    QJsonObject pinned;
    pinned.insert(kEditorType, shortForms(m_pinnedVersions.value(kEditorType)));
    mirror(QStringLiteral("pinned_version"), pinned);
}

void ApplInfo::mirrorProxyInfo(const ProxyServerInfo &proxy)
{
    mirror(QStringLiteral("proxy_info"), proxy.toJson());
}

void ApplInfo::mirrorWebVersions(const WebUpdateInfo &newsWeb, const WebUpdateInfo &howtoWeb)
{
    QJsonObject webVersions;
    webVersions.insert(kNewsWeb, newsWeb.toJson());
    webVersions.insert(kHowtoWeb, howtoWeb.toJson());
    mirror(QStringLiteral("web_versions"), webVersions);
}

void ApplInfo::mirrorLocale()
{
    mirror(QStringLiteral("locale"), m_locale);
}
