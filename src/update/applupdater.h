#ifndef APPLUPDATER_H
#define APPLUPDATER_H

#include "applupdateinfo.h"
#include "baseobject.h"
#include "downloadfailure.h"
#include "logfunction.h"
#include "webupdateinfo.h"

#include <QJsonDocument>
#include <QList>
#include <QObject>

class EditorInfo;
class FileDownload;
class Registry;

// Holds the server's update catalogue and answers what can be updated,
// installed and downloaded; fetches one installer at a time into the home
// folder's "Downloads" and starts it. Made once and kept for the life of the
// process.
//
// A download streams to a hidden part file beside the installer (see
// FileDownload); the installer's name holds only a whole, checked file.
class ApplUpdater : public QObject, public BaseObject
{
    Q_OBJECT

public:
    // The target system name picks the installer of a catalogue entry; the
    // log function is the process log.
    ApplUpdater(const QString &targetSystemName, const LogFunction &log, QObject *parent = nullptr);
    ~ApplUpdater() override;

    void setRegistry(Registry *registry);

    // Takes in a catalogue text; an empty text is the empty catalogue. Text
    // that does not parse leaves the previous catalogue in use.
    bool setUpdateInfo(const QString &text);
    // True when the text is a catalogue: a JSON object with a non-empty object
    // under "1.0.0". Otherwise the reason says what is wrong with it.
    static bool isCatalogue(const QString &text, QString *reason);

    QList<ApplUpdateInfo> getUpdates(const QString &applType) const;
    // The first catalogue entry newer than the installed build of the record's series.
    ApplUpdateInfo findUpdateFor(const ApplVersion &installed) const;
    // The first catalogue entry of a series later than the newest installed release.
    ApplUpdateInfo findRecentFor(const ApplVersion &installed) const;
    // The first catalogue entry newer than the newest installed public version of that type.
    ApplUpdateInfo findLatestFor(const QString &applType) const;
    QList<ApplUpdateInfo> getInstallableEditors(const QList<EditorInfo> &installed, bool showAll) const;
    bool findDownloadInfo(
        const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName);
    WebUpdateInfo getWebUpdateInfo(const QString &webType) const;
    // The SHA-256 that the catalogue gives for an installer file name of this
    // target system (the first entry naming it); empty when it gives none.
    QString findSha256(const QString &fileName) const;

    // Where the catalogue in use came from: the server address it was
    // fetched from, also when its offline copy is in use. Empty, as before
    // the first call, for a catalogue from no server.
    void setCatalogueUrl(const QString &url);
    // Whether the installer may be fetched at all: only from an http or https
    // address, and, when it or the catalogue that names it comes over plain
    // http from another machine, only with a SHA-256 in the catalogue, since
    // anyone on the way could have swapped it. False with the reason in the
    // error text.
    bool checkInstallerSource(const QString &url, const QString &fileName);

    // False, with nothing fetched, when checkInstallerSource() refuses;
    // otherwise true, and failures arrive through signalDownloadFinished,
    // after the call has returned. When the catalogue names a SHA-256 for the
    // file name, the body must match it before it takes that name. A download
    // of the same address that broke off earlier is continued. A download
    // still running is dropped, as by cancelDownload.
    bool startDownload(const QString &url, const QString &fileName);
    // Stops the running download without a signal and removes its bytes.
    void cancelDownload();
    bool isDownloading() const { return m_download != nullptr; }
    // Why the last download failed, in figures that can be told to a user.
    DownloadFailure getDownloadFailure() const { return m_downloadFailure; }
    // How long a download may receive nothing before it is given up.
    void setStallLimit(int msecs) { m_stallLimitMs = msecs; }

    // The home folder's "Downloads", where installers are saved.
    static QString downloadFolder();
    // Removes what downloads that broke off left in "Downloads" and nothing
    // has touched for a week; returns the paths, failures those it could not.
    static QStringList removeStaleDownloads(QStringList *failures);

    // Start a file as the shell's "open" does; with wait true, return only
    // when it has ended, the event loop running meanwhile so that the windows
    // go on painting (a modal window in front keeps the user's input from the
    // rest). True means started (and waited for), whatever the program's own
    // outcome. A wait that the launcher's closing cuts short gives false and
    // isLeftRunning(): the program goes on alone.
    bool openExecutableFile(const QString &path, bool wait);
    bool openDownloadFile(bool wait);
    // command: an uninstall command as installers record it, a program
    // (quoted when need be) and its arguments. With unbalanced quotes
    // nothing is started.
    bool openUninstallerFile(const QString &command, bool wait);
    bool isLeftRunning() const { return m_leftRunning; }

signals:
    void signalDownloadFinished(const QString &message, bool b);
    // bytesTotal is -1 while the length is unknown.
    void signalUpdateProgress(qint64 bytesRead, qint64 totalBytes);

private slots:
    void downloadFinished(bool ok);

private:
    bool openProgram(const QString &path, const QStringList &arguments, bool wait);
    void dropDownload();
    void writeLog(const QString &message) const;

    QString m_targetSystemName;
    LogFunction m_log;
    Registry *m_registry = nullptr;
    QJsonDocument m_document;
    QList<WebUpdateInfo> m_webUpdates;
    QList<ApplUpdateInfo> m_updates;

    FileDownload *m_download = nullptr;
    QString m_downloadPath;
    QString m_catalogueUrl;
    DownloadFailure m_downloadFailure;
    int m_stallLimitMs = 0; // 0: FileDownload's own
    bool m_leftRunning = false;
};

#endif // APPLUPDATER_H
