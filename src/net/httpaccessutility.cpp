#include "httpaccessutility.h"

#include "deploymentconfig.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QStringList>
#include <QTimer>
#include <QUrl>

HTTPAccessUtility::HTTPAccessUtility(QObject *parent)
    : QObject(parent)
    , m_manager(this)
{
    connect(&m_manager, SIGNAL(sslErrors(QNetworkReply *, QList<QSslError>)), this,
        SLOT(noteCertificateErrors(QNetworkReply *, QList<QSslError>)));
}

HTTPAccessUtility::~HTTPAccessUtility() = default;

QNetworkReply *HTTPAccessUtility::send(const QString &url)
{
    m_certificateErrors.clear();
    // No attribute is set, so a redirect comes back as the answer itself.
    return m_manager.get(QNetworkRequest(QUrl(url, QUrl::TolerantMode)));
}

void HTTPAccessUtility::prefetch(const QString &url)
{
    delete m_prefetched;
    m_prefetched = send(url);
    m_prefetchedUrl = url;
    m_prefetchDeadline.setRemainingTime(DeploymentConfig::httpTimeoutMs());
}

bool HTTPAccessUtility::get(const QString &url)
{
    // A server may take the request and never finish its answer; the network
    // stack would wait for ever, and start-up with it.
    const int timeoutMs = DeploymentConfig::httpTimeoutMs();
    QNetworkReply *reply = nullptr;
    qint64 remainingMs = timeoutMs;
    if (m_prefetched && m_prefetchedUrl == url) {
        reply = m_prefetched;
        remainingMs = m_prefetchDeadline.remainingTime();
    } else {
        delete m_prefetched;
        reply = send(url);
    }
    m_prefetched = nullptr;

    QEventLoop loop;
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.setTimerType(Qt::PreciseTimer);
    connect(&deadline, SIGNAL(timeout()), &loop, SLOT(quit()));
    // Its own reply only: the window answers input while it waits, and a
    // Refresh pressed meanwhile fetches inside this wait.
    connect(reply, SIGNAL(finished()), &loop, SLOT(quit()));
    if (!reply->isFinished()) {
        // An answer that came in while the caller was busy reaches the reply
        // only here, and still counts when its deadline has passed meanwhile.
        deadline.start(int(qMax<qint64>(remainingMs, 0)));
        loop.exec();
    }
    const bool timedOut = !reply->isFinished();
    if (timedOut)
        reply->abort();

    m_statusCode = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (timedOut || reply->error() != QNetworkReply::NoError) {
        QString reason
            = timedOut ? QStringLiteral("no complete answer within %1 ms").arg(timeoutMs) : reply->errorString();
        if (!m_certificateErrors.isEmpty())
            reason += QStringLiteral(" (%1)").arg(m_certificateErrors);
        m_errorText = QStringLiteral("HTTP access failed: %1").arg(reason);
        reply->deleteLater();
        return false;
    }
    m_body = QString::fromUtf8(reply->readAll());
    reply->deleteLater();
    return true;
}

QString HTTPAccessUtility::certificateErrorText(const QList<QSslError> &errors)
{
    QStringList texts;
    for (const QSslError &error : errors)
        texts.append(error.errorString());
    return QStringLiteral("Certificate not trusted: %1").arg(texts.join(QStringLiteral("; ")));
}

void HTTPAccessUtility::noteCertificateErrors(QNetworkReply *, const QList<QSslError> &errors)
{
    m_certificateErrors = certificateErrorText(errors);
}
