#include "proxyhelper.h"

#include "deploymentconfig.h"
#include "systemenvironment.h"
#include "systemsettings.h"

#include <QNetworkProxy>
#include <QStringList>

ProxyHelper::ProxyHelper(QObject *parent)
    : QObject(parent)
{ }

ProxyHelper::~ProxyHelper() = default;

int ProxyHelper::detectProxy(bool source)
{
    QString host;
    QString port;
    QString user;
    QString password;
    return source == Settings ? detectFromSettings(host, port, user, password)
                              : detectFromEnvironment(host, port, user, password);
}

void ProxyHelper::applyProxy(bool source)
{
    QString host;
    QString port;
    QString user;
    QString password;
    const int result = source == Settings ? detectFromSettings(host, port, user, password)
                                          : detectFromEnvironment(host, port, user, password);
    if (result == ProxyByAddress)
        applyProxy(host, port, user, password);
}

void ProxyHelper::applyProxy(const QString &host, const QString &port, const QString &user, const QString &password)
{
    // An empty or unreadable port gives 0; a larger number is cut to 16 bits.
    const auto portNumber = static_cast<quint16>(port.toInt());
    QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, host, portNumber, user, password));

    // The licence client reads its proxy from the process environment.
    SystemEnvironment::putVariable(QStringLiteral("HTTP_PROXY=%1:%2").arg(host, port).toLocal8Bit());
    if (!user.isEmpty() || !password.isEmpty())
        SystemEnvironment::putVariable(
            QStringLiteral("HTTP_PROXY_CREDENTIALS=%1:%2").arg(user, password).toLocal8Bit());
}

int ProxyHelper::detectFromEnvironment(QString &host, QString &port, QString &user, QString &password)
{
    const QString proxy = qEnvironmentVariable("HTTP_PROXY");
    QString credentials;
    if (!proxy.isEmpty())
        credentials = qEnvironmentVariable("HTTP_PROXY_CREDENTIALS");
    if (proxy.isEmpty())
        return NoProxy;

    // splitPair leaves the out arguments alone when it fails.
    if (!splitPair(proxy, host, port))
        return NoProxy;
    const bool byAddress = isIpAddress(host, port);

    // Credentials that do not split are dropped without changing the result.
    QString credentialUser;
    QString credentialPassword;
    if (!credentials.isEmpty() && splitPair(credentials, credentialUser, credentialPassword)) {
        user = credentialUser;
        password = credentialPassword;
    }
    return byAddress ? ProxyByAddress : ProxyByName;
}

int ProxyHelper::detectFromSettings(QString &host, QString &port, QString &user, QString &password)
{
    const std::unique_ptr<QSettings> settings = SystemSettings::openInternetSettings();
    if (!settings)
        return NoProxy;

    // The order of these tests is the rule: a source without "ProxyEnable" is
    // unusable even though no proxy is then in use, and a bypass entry for
    // one of our service hosts wins over any proxy server.
    const QStringList keys = settings->allKeys();
    if (!keys.contains(QStringLiteral("ProxyEnable")))
        return UnusableSource;
    if (!settings->value(QStringLiteral("ProxyEnable"), 0).toBool())
        return NoProxy;
    if (!settings->value(QStringLiteral("AutoConfigURL"), QString()).toString().isEmpty())
        return UnusableSource;

    const QString bypass = settings->value(QStringLiteral("ProxyOverride"), QString()).toString();
    if (!bypass.isEmpty()) {
        const QStringList serviceHosts = DeploymentConfig::serviceHosts();
        const QStringList entries = bypass.split(QLatin1Char(';'), Qt::KeepEmptyParts);
        for (const QString &entry : entries) {
            for (const QString &serviceHost : serviceHosts) {
                if (entry.contains(serviceHost, Qt::CaseSensitive))
                    return ServiceHostBypassed;
            }
        }
    }

    if (!keys.contains(QStringLiteral("ProxyServer")))
        return NoProxy;
    const QString server = settings->value(QStringLiteral("ProxyServer"), QString()).toString();
    if (server.isEmpty())
        return NoProxy;

    // Either one address for all schemes, or "scheme=address" entries of
    // which only the one for http counts.
    QString address;
    const QStringList entries = server.split(QLatin1Char(';'), Qt::KeepEmptyParts);
    for (const QString &entry : entries) {
        const QStringList parts = entry.split(QLatin1Char('='), Qt::KeepEmptyParts);
        if (parts.size() == 1) {
            address = parts.at(0);
            break;
        }
        if (parts.size() == 2 && parts.at(0) == QLatin1String("http")) {
            address = parts.at(1);
            break;
        }
    }
    if (address.isEmpty())
        return NoProxy;

    if (!splitPair(address, host, port))
        return NoProxy;
    user = QString();
    password = QString();
    return isIpAddress(host, port) ? ProxyByAddress : ProxyByName;
}

bool ProxyHelper::splitPair(const QString &text, QString &first, QString &second) const
{
    const QStringList parts = text.split(QLatin1Char(':'), Qt::KeepEmptyParts);
    if (parts.size() == 1 && !parts.at(0).isEmpty()) {
        first = parts.at(0);
        second = QString();
        return true;
    }
    if (parts.size() == 2 && !parts.at(0).isEmpty()) {
        first = parts.at(0);
        second = parts.at(1);
        return true;
    }
    return false;
}

bool ProxyHelper::isIpAddress(const QString &host, const QString &port) const
{
    Q_UNUSED(port)

    // A network suffix such as "/24" does not count.
    const QString address = host.split(QLatin1Char('/'), Qt::KeepEmptyParts).first();
    const QStringList dotted = address.split(QLatin1Char('.'), Qt::KeepEmptyParts);
    const QStringList grouped = address.split(QLatin1Char(':'), Qt::KeepEmptyParts);

    if (dotted.size() == 4) {
        for (const QString &part : dotted) {
            bool ok = false;
            if (part.toUInt(&ok, 10) > 255 || !ok)
                return false;
        }
        return true;
    }
    if (grouped.size() == 8) {
        // Groups above FF are refused on purpose: such an address counts as
        // a name. The compressed form ("fe80::1") has fewer groups and never
        // gets here.
        for (const QString &part : grouped) {
            const QString number = part.isEmpty() ? QStringLiteral("0x0") : QStringLiteral("0x") + part;
            bool ok = false;
            if (number.toUInt(&ok, 16) > 255 || !ok)
                return false;
        }
        return true;
    }
    return false;
}

static bool isWarningResult(int result)
{
    return result == ProxyHelper::UnusableSource || result == ProxyHelper::ProxyByName;
}

bool ProxyHelper::applyStartupProxy()
{
    // A usable proxy in the environment settles it: the Internet settings are
    // not even looked at, so they cannot cause a warning either.
    const int fromEnvironment = ProxyHelper().detectProxy(ProxyHelper::Environment);
    if (fromEnvironment == ProxyHelper::ProxyByAddress) {
        ProxyHelper().applyProxy(ProxyHelper::Environment);
        return false;
    }
    const int fromSettings = ProxyHelper().detectProxy(ProxyHelper::Settings);
    if (fromSettings == ProxyHelper::ProxyByAddress)
        ProxyHelper().applyProxy(ProxyHelper::Settings);
    return isWarningResult(fromEnvironment) || isWarningResult(fromSettings);
}
