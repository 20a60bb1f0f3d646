#ifndef FILEDOWNLOAD_H
#define FILEDOWNLOAD_H

#include "baseobject.h"
#include "downloadfailure.h"
#include "logfunction.h"
#include "partfile.h"
#include "sha256.h"

#include <QElapsedTimer>
#include <QFile>
#include <QList>
#include <QObject>
#include <QSslError>
#include <QTimer>
#include <QUrl>

class QNetworkAccessManager;
class QNetworkReply;

// One installer on its way from a server into a folder. The bytes go to
// disk as they arrive, through a PartFile, and are hashed on the way; only a
// whole body that matched takes the installer's name. A try that breaks off
// keeps its bytes so that the next one asks only for the rest (Range with
// If-Range), and a server that sends nothing for the stall limit is given up.
// Redirects are followed, five at most and never from https to http.
//
// Ends in exactly one signalFinished, unless cancelled; the error text then
// holds the technical reason and getFailure() its figures.
class FileDownload : public QObject, public BaseObject
{
    Q_OBJECT

public:
    // Long enough for a busy server to answer, short enough that a user
    // does not wait for a connection that will never deliver again.
    static constexpr int kStallLimitMs = 30000;

    // The SHA-256 is lower-case hex; empty when the installer is published
    // without one.
    FileDownload(const QString &url, const QString &folder, const QString &fileName, const QByteArray &sha256,
        const LogFunction &log, QObject *parent = nullptr);
    ~FileDownload() override;

    void setStallLimit(int msecs) { m_stallLimitMs = msecs; }
    QString getTargetPath() const { return m_part.getTargetPath(); }
    DownloadFailure getFailure() const { return m_failure; }

public slots:
    void start();
    // Stops at once without a signal and removes what was written.
    void cancel();

signals:
    // bytesTotal is -1 while the length is unknown.
    void signalProgress(qint64 bytesDone, qint64 bytesTotal);
    void signalFinished(bool ok);

private slots:
    void hashNextPiece();
    void readAnswer();
    void replyFinished();
    void checkStall();
    void logRedirect(const QUrl &url);
    void noteCertificateErrors(const QList<QSslError> &errors);

private:
    enum class State { Idle, Hashing, Transferring, Ended };

    void sendRequest();
    // Whether the answer's head fits the request; only then is its body stored.
    bool acceptAnswer();
    bool acceptRest();
    bool acceptWhole();
    bool hasRoom();
    bool storeBytes();
    void finishWithError();
    void emitProgress(bool always);
    void succeed();
    // keepPart: the bytes can be continued by a later try, when the server
    // gave a validator for them.
    void fail(const DownloadFailure &failure, const QString &errorText, bool keepPart);
    void failToWrite(bool keepPart);
    void failOnAnswer(const QString &what);
    // A failure of that kind with the figures of where the download stands.
    DownloadFailure failureOf(DownloadFailure::Kind kind) const;
    void dropReply();
    void writeLog(const QString &message) const;
    qint64 bytesDone() const { return m_offset + m_received; }

    const QString m_url;
    const QString m_folder;
    const QString m_fileName;
    const QByteArray m_expectedSha256;
    const LogFunction m_log;
    int m_stallLimitMs = kStallLimitMs;

    State m_state = State::Idle;
    PartFile m_part;
    Sha256 m_hash;
    QFile m_prefix; // the bytes of an earlier try, hashed before the rest is asked for
    QByteArray m_buffer;
    QNetworkAccessManager *m_manager = nullptr;
    QNetworkReply *m_reply = nullptr;
    bool m_answerAccepted = false;
    qint64 m_offset = 0; // bytes already on disk when the request went out
    qint64 m_received = 0; // bytes of this answer's body
    qint64 m_expectedBody = -1; // what the answer announced, -1 when nothing
    qint64 m_total = -1; // the whole file
    QTimer m_stallCheck;
    QElapsedTimer m_sinceActivity;
    QElapsedTimer m_sinceProgress;
    DownloadFailure m_failure;
    QString m_certificateErrors; // of this try's server, empty when it was trusted
};

#endif // FILEDOWNLOAD_H
