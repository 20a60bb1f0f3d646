#include "networkaccesshelper.h"

#include "deploymentconfig.h"

#include <QHostInfo>
#include <QNetworkProxy>

NetworkAccessHelper::NetworkAccessHelper(QObject *parent)
    : QObject(parent)
    , m_hostName(DeploymentConfig::publicHost())
{ }

NetworkAccessHelper::~NetworkAccessHelper() = default;

bool NetworkAccessHelper::isAvailable() const
{
    // Through a proxy the machine may resolve no public name at all; the
    // proxy does that. Whether the server is reached, the download tells.
    if (QNetworkProxy::applicationProxy().type() != QNetworkProxy::NoProxy)
        return true;
    return QHostInfo::fromName(m_hostName).error() == QHostInfo::NoError;
}
