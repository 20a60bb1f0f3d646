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

bool HTTPAccessUtility::get(const QString &url)
{
    m_certificateErrors.clear();
    QEventLoop loop;
    // A server may take the request and never finish its answer; the network
    // stack would wait for ever, and start-up with it.
    const int timeoutMs = DeploymentConfig::httpTimeoutMs();
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.setTimerType(Qt::PreciseTimer);
    connect(&deadline, SIGNAL(timeout()), &loop, SLOT(quit()));

    // No attribute is set, so a redirect comes back as the answer itself.
    QNetworkRequest request(QUrl(url, QUrl::TolerantMode));
    QNetworkReply *reply = m_manager.get(request);
    // Its own reply only: the window answers input while it waits, and a
    // Refresh pressed meanwhile fetches inside this wait.
    connect(reply, SIGNAL(finished()), &loop, SLOT(quit()));
    if (!reply->isFinished()) {
        deadline.start(timeoutMs);
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
