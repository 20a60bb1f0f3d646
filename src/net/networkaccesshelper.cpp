#include "networkaccesshelper.h"

#include "deploymentconfig.h"

#include <QHostInfo>

NetworkAccessHelper::NetworkAccessHelper(QObject *parent)
    : QObject(parent)
    , m_hostName(DeploymentConfig::publicHost())
{ }

NetworkAccessHelper::~NetworkAccessHelper() = default;

bool NetworkAccessHelper::isAvailable() const
{
    return QHostInfo::fromName(m_hostName).error() == QHostInfo::NoError;
}
