#include "deploymentconfig.h"

#include "deploymentdefaults.h"

#include <QtGlobal>

QString DeploymentConfig::value(const char *name, const char *builtIn)
{
    const QString fromEnvironment = qEnvironmentVariable(name);
    return fromEnvironment.isEmpty() ? QString::fromUtf8(builtIn) : fromEnvironment;
}

static QString withoutTrailingSlash(QString url)
{
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

QString DeploymentConfig::serverBase()
{
    return withoutTrailingSlash(value("ZANMIR_SERVER_BASE", ZANMIR_DEFAULT_SERVER_BASE));
}

QString DeploymentConfig::publicHost()
{
    return value("ZANMIR_PUBLIC_HOST", ZANMIR_DEFAULT_PUBLIC_HOST);
}

QString DeploymentConfig::storeUrl()
{
    return withoutTrailingSlash(value("ZANMIR_STORE_URL", ZANMIR_DEFAULT_STORE_URL));
}

QStringList DeploymentConfig::serviceHosts()
{
    return value("ZANMIR_SERVICE_HOSTS", ZANMIR_DEFAULT_SERVICE_HOSTS).split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

int DeploymentConfig::httpTimeoutMs()
{
    bool ok = false;
    const int fromEnvironment = qEnvironmentVariable("ZANMIR_HTTP_TIMEOUT_MS").toInt(&ok);
    return ok && fromEnvironment > 0 ? fromEnvironment : ZANMIR_DEFAULT_HTTP_TIMEOUT_MS;
}
