#ifndef APPLUPDATER_H
#define APPLUPDATER_H

#include "applupdateinfo.h"
#include "baseobject.h"
#include "logfunction.h"
#include "webupdateinfo.h"

#include <QJsonDocument>
#include <QList>
#include <QObject>

class EditorInfo;
class QNetworkAccessManager;
class QNetworkReply;
class QSslError;
class Registry;
class ReplyReader;

// Holds the server's update catalogue and answers what can be updated,
// installed and downloaded; fetches one installer at a time into the home
// folder's "Downloads" and starts it. Made once and kept for the life of the
// process.
//
// A download runs in the network layer's buffer until the reply has finished,
// is then drained by a ReplyReader thread and written in one go, so that no
// partial file ever exists and a cancel has nothing to delete.
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
    // otherwise true, and failures arrive through signalDownloadFinished.
    // When the catalogue names a SHA-256 for the file name, the body must
    // match it before anything is written.
    bool startDownload(const QString &url, const QString &fileName);
    // What was wrong with the certificate of the server that ended the last
    // download; empty when nothing was.
    QString getCertificateErrors() const { return m_certificateErrors; }
    void cancelDownload();
    bool isDownloading() const { return m_downloading; }

    // Start a file as the shell's "open" does; with wait true, return only
    // when it has ended. True means started (and waited for), whatever the
    // program's own outcome.
    bool openExecutableFile(const QString &path, bool wait);
    bool openDownloadFile(bool wait);
    bool openUninstallerFile(const QString &path, bool wait);

signals:
    void signalDownloadFinished(const QString &message, bool b);
    void signalUpdateProgress(qint64 bytesRead, qint64 totalBytes);
    void signalStartReadReply();

public slots:
    bool replyFinished(QNetworkReply *reply);
    void readReplyFinished(qint64 bytesRead, qint64 totalBytes);
    void emitSignalUpdateProgress(qint64 bytesRead, qint64 totalBytes);
    void noteCertificateErrors(QNetworkReply *reply, const QList<QSslError> &errors);

private:
    void startRequest(const QString &url);
    void stopWorker();
    void writeLog(const QString &message) const;

    QString m_targetSystemName;
    LogFunction m_log;
    Registry *m_registry = nullptr;
    QJsonDocument m_document;
    QList<WebUpdateInfo> m_webUpdates;
    QList<ApplUpdateInfo> m_updates;

    QNetworkAccessManager *m_networkManager = nullptr;
    QNetworkReply *m_reply = nullptr;
    ReplyReader *m_worker = nullptr;
    bool m_downloading = false;
    QString m_downloadFolder;
    QString m_downloadFileName;
    QString m_downloadPath;
    QString m_expectedSha256;
    QString m_catalogueUrl;
    QString m_certificateErrors;
};

#endif // APPLUPDATER_H
