#ifndef APPLINFO_H
#define APPLINFO_H

#include "editorinfo.h"
#include "historyinfo.h"
#include "launcherinfo.h"
#include "proxyserverinfo.h"
#include "webupdateinfo.h"

#include <QHash>
#include <QJsonDocument>
#include <QJsonValue>
#include <QList>
#include <QObject>
#include <QString>

#include <functional>

class QLockFile;

// The launcher's own state and the manager file that keeps it. The state is
// held twice: in the typed members, which every reader uses, and in the JSON
// document, which is what gets written. A change goes to the member first and
// is then mirrored, so keys of the file that this program does not know
// survive every rewrite.
class ApplInfo : public QObject
{
    Q_OBJECT

public:
    ApplInfo(const QString &filePath, bool testMode, QObject *parent = nullptr);
    ~ApplInfo() override;

    // True only when the file is complete and correct. Bad sections fall back
    // to their defaults in the members, so that createFile() writes a whole
    // file again with the good parts kept.
    bool loadFile();
    bool createFile();
    // Writes the document as it stands; nothing is mirrored here.
    bool updateFile();
    // Applies one change to the file as it is on disk now, so that what
    // other launcher processes wrote meanwhile survives: under the write
    // lock the file is read again into the members and the document, the
    // change alters the members and mirrors them, and the file is written
    // (not at all when that would not change it). While another process
    // holds the lock the change is made in memory only; where no lock can be
    // made at all (a read-only folder), the write goes ahead without it.
    // Either way a failure leaves its words in the info text, as
    // updateFile() does, and getLockText() tells what became of the lock.
    bool saveChange(const std::function<void()> &change);
    // The same for a change that may be made twice and logs nothing, as a
    // setting is: a file that holds it already, read without the lock, is
    // left alone, and no lock is taken for it.
    bool saveSetting(const std::function<void()> &change);
    // Takes in what other launcher processes wrote since: the file as it is
    // now replaces the members and the document. A file that does not parse
    // at this moment is left for the next save to deal with; false then.
    bool reloadFile();

    QString getInfoText() const;
    QString getErrorText() const;
    QString getLockFilePath() const;
    QString getFilePath() const { return m_filePath; }
    // The lock that keeps writers of the file apart; the single-instance
    // lock above is another.
    QString getWriteLockFilePath() const;
    // Words on the copy that the last createFile() or saveChange() kept of a
    // file that did not parse, before writing over it; empty when none.
    QString getBackupText() const;
    // Words on the write lock of the last createFile() or saveChange(), for
    // the log beside the outcome: why it could not be taken, and whether the
    // file was saved all the same; empty when it was taken.
    QString getLockText() const;

    // The full address of a page or installer. An address that the catalogue
    // gave (a page record, an installer) is used only when it is an http or
    // https address or a path on the update server, without credentials, and
    // for a page not plain http to another machine unless the deployment
    // named that server. Otherwise a page gets its default address and an
    // installer the empty text.
    QString getWebUrl(const QString &webType, const QString &defaultText) const;
    // The same; false when an address was refused, the error text saying which and why.
    bool resolveWebUrl(const QString &webType, const QString &defaultText, QString &url);
    bool isWebVersionUpToDate(const QString &webType, const WebUpdateInfo &remote) const;
    bool saveWebVersion(const QString &webType, const WebUpdateInfo &record);

    bool getLocale(QString &locale) const;
    bool setLocale(const QString &locale);
    bool getShowAllVersions(bool &showAll) const;
    // In memory only: the flag is off at every start.
    bool setShowAllVersions(bool showAll);

    QString getSelectedApplType() const;
    bool hasSelectedVersion() const;
    EditorInfo getSelectedVersion() const;
    void setSelectedVersion(const EditorInfo &version);
    bool isSelectedVersion(const ApplVersion &version) const;
    bool isPinnedVersion(const ApplVersion &version) const;
    EditorInfo getCurrentEditorInfo() const;
    void setCurrentEditorInfo(const EditorInfo &editor);
    LauncherInfo getLauncherInfo() const;
    void setLauncherInfo(const LauncherInfo &launcher);

    void addHistoryInfo(HistoryInfo history);
    void deleteHistoryInfo(const HistoryInfo &history);
    // The selected type's entries, most recently opened first.
    QList<HistoryInfo> getHistories() const;

    void addPinnedVersionInfo(const EditorInfo &editor);
    void deletePinnedVersionInfo(const EditorInfo &editor);

    void mirrorLauncherInfo(const LauncherInfo &launcher);
    void mirrorEditorInfo(const EditorInfo &editor);
    void mirrorHistories();
    void mirrorPinnedVersions();
    void mirrorSelection();
    void mirrorProxyInfo(const ProxyServerInfo &proxy);
    void mirrorWebVersions(const WebUpdateInfo &newsWeb, const WebUpdateInfo &howtoWeb);

signals:
    void signalHistoryInfoUpdated();
    void signalCurrentEditorInfoUpdated();
    void signalPinnedVersionInfoUpdated();

private:
    enum class FileState { Missing, Unparsable, Incomplete, Complete };
    // Taken; held by another process; or not to be made, as in a folder that
    // cannot be written.
    enum class WriteLock { Taken, HeldElsewhere, Unavailable };

    // Reads the sections of the document into the members by the recovery
    // rules of loadFile(); true when all were there and sound.
    bool readSections(bool *historyDropped = nullptr);
    // Reads the file as it is now into the document and the members, and
    // gives its text. A file that does not parse is copied aside first.
    FileState readCurrentFile(QString *text);
    void keepBackup();
    WriteLock takeWriteLock(QLockFile &lock);
    bool failForHeldLock(const QString &failureFormat);
    void noteSavedWithoutLock(bool saved, bool written);
    void mirrorAll();
    void mirror(const QString &key, const QJsonValue &value);
    void mirrorLocale();
    QString webUrl(const QString &webType, const QString &defaultText, QString &refusal) const;
    // Why an address from the catalogue may not be used; empty when it may.
    static QString refusalOf(const QString &text, bool page);

    EditorInfo m_currentEditor;
    LauncherInfo m_launcherInfo;
    QList<HistoryInfo> m_histories;
    QString m_selectedApplType;
    QHash<QString, EditorInfo> m_selectedVersions;
    QHash<QString, QList<EditorInfo>> m_pinnedVersions;
    QString m_errorText;
    QString m_infoText;
    QJsonDocument m_document;
    QString m_filePath;
    bool m_testMode;
    QString m_serverBase;
    WebUpdateInfo m_newsWeb;
    WebUpdateInfo m_howtoWeb;
    QString m_locale;
    ProxyServerInfo m_proxyInfo;
    bool m_showAllVersions = false;
    QString m_backupText;
    QString m_lockText;
};

#endif // APPLINFO_H
