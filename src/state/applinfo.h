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

    QString getInfoText() const;
    QString getErrorText() const;
    QString getLockFilePath() const;

    QString getWebUrl(const QString &webType, const QString &defaultText) const;
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
    void mirror(const QString &key, const QJsonValue &value);
    void mirrorLocale();

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
};

#endif // APPLINFO_H
