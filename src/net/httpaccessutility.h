#ifndef HTTPACCESSUTILITY_H
#define HTTPACCESSUTILITY_H

#include <QDeadlineTimer>
#include <QList>
#include <QNetworkAccessManager>
#include <QObject>
#include <QPointer>
#include <QSslError>
#include <QString>

// Fetches one URL into a string and waits for it, in a nested event loop.
// Redirects are not followed. A transfer that has not finished within the
// deployment's HTTP time-out is ended as a failure, and so is one to a server
// whose certificate cannot be trusted.
class HTTPAccessUtility : public QObject
{
    Q_OBJECT

public:
    explicit HTTPAccessUtility(QObject *parent = nullptr);
    ~HTTPAccessUtility() override;

    // True when the transfer ended without a network error; the body then
    // holds the answer. On false the body keeps what it had.
    bool get(const QString &url);
    // Sends the request for url now, while the caller does other work; the
    // next get() of the same address waits for this answer instead of asking
    // again, and the time-out counts from here.
    void prefetch(const QString &url);

    QString getBody() const { return m_body; }
    int getStatusCode() const { return m_statusCode; }
    QString getErrorText() const { return m_errorText; }

    // What was wrong with a server's certificate, in one line for the log.
    // No certificate error is ever ignored: the request fails.
    static QString certificateErrorText(const QList<QSslError> &errors);

private slots:
    void noteCertificateErrors(QNetworkReply *reply, const QList<QSslError> &errors);

private:
    QNetworkReply *send(const QString &url);

    QNetworkAccessManager m_manager;
    QPointer<QNetworkReply> m_prefetched;
    QString m_prefetchedUrl;
    QDeadlineTimer m_prefetchDeadline;
    QString m_body;
    int m_statusCode = 0;
    QString m_errorText;
    QString m_certificateErrors;
};

#endif // HTTPACCESSUTILITY_H
