#include "proxyserverinfo.h"

#include <QVariant>

ProxyServerInfo::ProxyServerInfo(bool enabled, const QString &ip, const QString &port, QObject *parent)
    : QObject(parent)
    , m_enabled(enabled)
    , m_ip(ip)
    , m_port(port)
{ }

ProxyServerInfo::ProxyServerInfo(const QJsonObject &json, bool *incomplete, QObject *parent)
    : QObject(parent)
{
    const QJsonValue sw = json.value(QStringLiteral("proxy_sw"));
    const QJsonValue ip = json.value(QStringLiteral("proxy_ip"));
    const QJsonValue port = json.value(QStringLiteral("proxy_port"));

    // The text test comes first: a JSON boolean reads as no text and a string
    // reads as no boolean, so the switch always comes back off. The stored
    // record never drives traffic, and it is kept that way.
    m_enabled = !sw.toString().isEmpty() ? sw.toBool(false) : false;
    m_ip = !ip.toString().isEmpty() ? ip.toString() : QStringLiteral("192.168.1.1");
    m_port = !port.toString().isEmpty() ? port.toString() : QStringLiteral("80");

    if (incomplete)
        *incomplete = !sw.isBool() || ip.toString().isEmpty() || port.toString().isEmpty();
}

ProxyServerInfo::~ProxyServerInfo() = default;

ProxyServerInfo &ProxyServerInfo::operator=(const ProxyServerInfo &other)
{
    if (this != &other) {
        m_enabled = other.m_enabled;
        m_ip = other.m_ip;
        m_port = other.m_port;
    }
    return *this;
}

void ProxyServerInfo::getInfo(bool &enabled, QString &ip, QString &port) const
{
    enabled = m_enabled;
    ip = m_ip;
    port = m_port;
}

QJsonObject ProxyServerInfo::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("proxy_sw"), m_enabled);
    json.insert(QStringLiteral("proxy_ip"), m_ip);
    json.insert(QStringLiteral("proxy_port"), m_port);
    return json;
}
