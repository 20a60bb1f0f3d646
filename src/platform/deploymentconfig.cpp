#include "deploymentconfig.h"

#include "deploymentdefaults.h"
#include "webaddress.h"

#include <QUrl>
#include <QtGlobal>

namespace {

struct ServerAddress
{
    const char *name;
    const char *builtIn;
};

const ServerAddress kServerAddresses[] = {
    { "ZANMIR_SERVER_BASE", ZANMIR_DEFAULT_SERVER_BASE },
    { "ZANMIR_STORE_URL", ZANMIR_DEFAULT_STORE_URL },
};

QString withoutTrailingSlash(QString url)
{
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

// A server is reached by http or https at a host. Anything else, such as a
// folder given as "file://", would have the launcher take local files for the
// maker's pages.
bool isServerAddress(const QString &text)
{
    return WebAddress::isWebAddress(text) && !QUrl(text, QUrl::StrictMode).host().isEmpty();
}

bool sameServer(const QUrl &a, const QUrl &b)
{
    return a.scheme() == b.scheme() && a.host() == b.host() && a.port(80) == b.port(80);
}

} // namespace

QString DeploymentConfig::value(const char *name, const char *builtIn)
{
    const QString fromEnvironment = qEnvironmentVariable(name);
    return fromEnvironment.isEmpty() ? QString::fromUtf8(builtIn) : fromEnvironment;
}

QString DeploymentConfig::serverAddress(const char *name, const char *builtIn)
{
    // The build checks its own values; an environment value that is not a
    // server address gives way to them, and addressNotes() says so.
    const QString fromEnvironment = qEnvironmentVariable(name);
    return withoutTrailingSlash(isServerAddress(fromEnvironment) ? fromEnvironment : QString::fromUtf8(builtIn));
}

QString DeploymentConfig::serverBase()
{
    return serverAddress("ZANMIR_SERVER_BASE", ZANMIR_DEFAULT_SERVER_BASE);
}

QString DeploymentConfig::publicHost()
{
    return value("ZANMIR_PUBLIC_HOST", ZANMIR_DEFAULT_PUBLIC_HOST);
}

QString DeploymentConfig::storeUrl()
{
    return serverAddress("ZANMIR_STORE_URL", ZANMIR_DEFAULT_STORE_URL);
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

bool DeploymentConfig::isNamedPlainHttp(const QUrl &url)
{
    if (url.scheme() != QLatin1String("http"))
        return false;
    for (const ServerAddress &address : kServerAddresses) {
        if (sameServer(url, QUrl(serverAddress(address.name, address.builtIn))))
            return true;
    }
    return false;
}

QStringList DeploymentConfig::addressNotes()
{
    QStringList notes;
    for (const ServerAddress &address : kServerAddresses) {
        const QString fromEnvironment = qEnvironmentVariable(address.name);
        const bool ignored = !fromEnvironment.isEmpty() && !isServerAddress(fromEnvironment);
        if (ignored) {
            notes.append(QStringLiteral("%1 of the environment is not an http or https address and is ignored: [%2]")
                             .arg(QLatin1String(address.name), WebAddress::forLog(fromEnvironment)));
        }
        const QString inUse = serverAddress(address.name, address.builtIn);
        const QUrl url(inUse);
        if (url.scheme() != QLatin1String("http"))
            continue;
        const QString namedBy = WebAddress::isLoopbackHost(url.host())
            ? QStringLiteral("on this machine")
            : (fromEnvironment.isEmpty() || ignored ? QStringLiteral("named by the build")
                                                    : QStringLiteral("named by the environment"));
        notes.append(QStringLiteral("Plain http in use for %1 (%2): %3")
                         .arg(QLatin1String(address.name), namedBy, WebAddress::forLog(inUse)));
    }
    return notes;
}
