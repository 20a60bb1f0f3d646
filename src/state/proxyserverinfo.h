#ifndef PROXYSERVERINFO_H
#define PROXYSERVERINFO_H

#include <QJsonObject>
#include <QObject>
#include <QString>

// The proxy record kept in the manager file. It is read and written back and
// has no influence on the program's traffic.
class ProxyServerInfo : public QObject
{
    Q_OBJECT

public:
    ProxyServerInfo(bool enabled, const QString &ip, const QString &port, QObject *parent = nullptr);
    // incomplete is false only when "proxy_sw" is a JSON boolean and
    // "proxy_ip" and "proxy_port" are non-empty strings.
    ProxyServerInfo(const QJsonObject &json, bool *incomplete, QObject *parent = nullptr);
    ~ProxyServerInfo() override;

    ProxyServerInfo &operator=(const ProxyServerInfo &other);

    void getInfo(bool &enabled, QString &ip, QString &port) const;
    QJsonObject toJson() const;

private:
    bool m_enabled = false;
    QString m_ip;
    QString m_port;
};

#endif // PROXYSERVERINFO_H
