#ifndef PROCESSLAUNCHER_H
#define PROCESSLAUNCHER_H

#include "appllauncher.h"
#include "datetimenotifier.h"
#include "httpaccessutility.h"
#include "networkaccesshelper.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <functional>

class ApplInfo;
class ApplUpdateInfo;
class ApplUpdater;
class ApplVersion;
class EditorInfo;
class HistoryInfo;
class OfflineFileInfo;
class OfflineFileManager;
class QLockFile;
class QTranslator;
class QWidget;
class Registry;
class ScreenInfo;

// The root of the program: it runs the start-up sequence, owns every state
// object and carries the operations that touch more than one of them.
class ProcessLauncher : public ApplLauncher
{
    Q_OBJECT

public:
    ProcessLauncher(int &argc, char **argv);
    ~ProcessLauncher() override;

    // --- Start-up and launch modes ---------------------------------------
    // True when the process can go on; otherwise the exit status says why.
    bool initialize(QTranslator &translator);
    bool hasLauncherUpdate();
    // True when a project file on the command line was dealt with and the
    // process is to exit now.
    bool detectWhetherOpenWithFiles();
    // True when another launcher window holds the lock.
    bool lockManagerFile(QLockFile &lock);

    // --- Opening a project ----------------------------------------------------
    enum class ProjectStart { Started, Refused, StartFailed };
    // Opens a project as a double click in the file manager does, whether it
    // comes from there, a file dialog or a drop: the default version when
    // one is chosen, else the installed one that fits the version that saved
    // the project; a box for a file that cannot be opened so (Refused), none
    // when the editor does not start (StartFailed); a history entry once it
    // has started. The boxes belong to the parent, none for the windowless
    // run. The editor chosen is handed out whenever it was found.
    ProjectStart openProjectFile(
        const QString &filePath, QWidget *parent = nullptr, EditorInfo *chosenEditor = nullptr);
    // False, after the box for an unsupported file, when the suffix names no
    // project form.
    bool acceptProjectFile(const QString &filePath, QWidget *parent = nullptr);
    // The box for files that are no project, a path a line.
    void refuseUnsupportedFiles(const QStringList &filePaths, QWidget *parent = nullptr);

    bool readApplInfo(bool testMode);
    bool readRegistry();
    bool readOfflineFileInfo();
    bool prepareApplUpdater();
    // Reads the catalogue again and tells the pages; held while a flow runs.
    void refreshUpdateState();
    // While a modal flow runs (a package flow with its dialogs and the
    // programs it waits for), no refresh rebuilds the rows that own it: one
    // asked for meanwhile runs once the last hold is released. RefreshHold
    // takes and releases a hold for the length of a scope.
    void holdRefresh();
    void releaseRefresh();
    // The user closes the launcher while a flow runs: every event loop ends,
    // and no held refresh runs any more.
    void closeLauncher();
    bool isClosing() const { return m_closing; }
    // Tells the menu strip which web pages changed since last opened, by the
    // catalogue in hand; refreshUpdateState does so after reading it again.
    void noticeWebVersions();
    void saveWebVersion(const QString &webType);
    // Makes the change (none: only re-reads) on the manager file as it is on
    // disk, under its write lock, and writes it.
    bool saveApplInfo(const std::function<void()> &change = std::function<void()>());
    // Re-reads the manager file that other launcher processes may have
    // written; true when the recent-project list changed.
    bool reloadApplInfo();
    bool saveOfflineFileInfo();
    // The address of a page or installer; an address of the catalogue's that
    // is refused is logged, and the page's default comes in its place.
    QString getWebUrl(const QString &webType, const QString &defaultText = QString());
    bool getLocale(QString &locale) const;
    // Where the single-instance lock lies: beside the manager file.
    QString getLockFilePath() const;
    // After a save, beside its outcome: the copy kept of a manager file that
    // did not parse, and what became of the write lock when it was not taken.
    void logManagerFileNotes(const QString &format);
    QList<ApplUpdateInfo> getInstallableVersions();

    // --- Current editor, pins and recent projects -------------------------
    bool getLauncherVersion();
    void setCurrentEditorInfo(const ApplVersion &version);
    void unsetCurrentEditorInfo();
    bool saveLauncherState();
    bool saveSettings(const std::function<void()> &change = std::function<void()>());
    // Installed editors, newest first, pinned ones ahead of the others.
    QList<EditorInfo> getInstalledEditors();
    bool getLauncherNameAndVersion(QString &applName, QString &version) const;
    bool appendHistoryInfo(HistoryInfo history);
    bool deleteHistoryInfo(const HistoryInfo &history);
    bool addPinnedVersionInfo(const EditorInfo &editor);
    bool deletePinnedVersionInfo(const EditorInfo &editor);
    bool addHistoryAfterLaunch(const EditorInfo &editor, const QString &filePath);
    EditorInfo findEditorForHistory(const ApplVersion &version);
    bool fileExists(const QString &path);
    bool setLocale(const QString &locale);
    bool setShowAllVersions(bool showAll);
    bool getShowAllVersions(bool &showAll) const;

    // --- Offline page store -------------------------------------------------
    OfflineFileInfo getOfflineFileInfo(const QString &url);
    OfflineFileInfo createOfflineFileInfo(const QString &url);
    QString getOfflineFileName(const OfflineFileInfo &info);
    bool saveOfflineFile(const QString &url, const QString &contents);
    QString restoreOfflineFile(const QString &url);

    // Reads the command line: returns whether test mode is on and sets the
    // project file to open, the last existing file named.
    static bool parseArguments(const QStringList &arguments, QString &openFilePath);
    // Loads and installs the catalogue of a locale; false for English, the
    // source language, and for a locale without a catalogue.
    static bool loadTranslator(QTranslator &translator, const QString &locale);

    // --- Accessors -----------------------------------------------------------
    ApplInfo *getApplInfo() const { return m_applInfo; }
    Registry *getRegistry() const { return m_registry; }
    ApplUpdater *getApplUpdater() const { return m_applUpdater; }
    OfflineFileManager *getOfflineFileManager() const { return m_offlineFiles; }
    ScreenInfo *getScreenInfo() const { return m_screenInfo; }
    NetworkAccessHelper *getNetworkAccessHelper() { return &m_networkHelper; }
    QTimer *getRefreshTimer() { return &m_refreshTimer; }
    DateTimeNotifier *getUpdateNotifier() { return &m_updateNotifier; }
    int getExitStatus() const { return m_exitStatus; }
    QStringList getArguments() const { return m_arguments; }
    QString getOpenFilePath() const { return m_openFilePath; }

private slots:
    void lastWindowClosed();

private:
    void installTranslator(QTranslator &translator);
    void removeLeftoverFiles();
    // Moves a state file that can be neither read nor replaced aside and
    // calls rebuild; when either fails, logs that the file is skipped for
    // this run, naming the path and the reason.
    void setAsideStateFile(
        const QString &operation, const QString &path, const std::function<bool(QString &reason)> &rebuild);
    void checkProxy();
    QString ensureFolder(const QString &folder) const;

    HTTPAccessUtility m_httpAccess;
    Registry *m_registry = nullptr;
    ApplInfo *m_applInfo = nullptr;
    ApplUpdater *m_applUpdater = nullptr;
    NetworkAccessHelper m_networkHelper;
    OfflineFileManager *m_offlineFiles = nullptr;
    ScreenInfo *m_screenInfo = nullptr;
    QTimer m_refreshTimer;
    DateTimeNotifier m_updateNotifier;
    int m_exitStatus = 1;
    QStringList m_arguments;
    QString m_openFilePath;
    bool m_initialized = false;
    int m_refreshHolds = 0;
    bool m_refreshPending = false;
    bool m_closing = false;
};

#endif // PROCESSLAUNCHER_H
