#include "httpaccessutility.h"

#include <QEventLoop>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>

HTTPAccessUtility::HTTPAccessUtility(QObject *parent)
    : QObject(parent)
    , m_manager(this)
{ }

HTTPAccessUtility::~HTTPAccessUtility() = default;

bool HTTPAccessUtility::get(const QString &url)
{
    QEventLoop loop;
    connect(&m_manager, SIGNAL(finished(QNetworkReply *)), &loop, SLOT(quit()));

    // No attribute is set, so a redirect comes back as the answer itself.
    QNetworkRequest request(QUrl(url, QUrl::TolerantMode));
    QNetworkReply *reply = m_manager.get(request);
    if (!reply->isFinished())
        loop.exec();

    m_statusCode = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError) {
        m_errorText = QStringLiteral("HTTP access failed: %1").arg(reply->errorString());
        reply->deleteLater();
        return false;
    }
    m_body = QString::fromUtf8(reply->readAll());
    reply->deleteLater();
    return true;
}
