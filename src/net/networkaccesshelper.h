#ifndef NETWORKACCESSHELPER_H
#define NETWORKACCESSHELPER_H

#include <QObject>
#include <QString>

// Says whether the network can be tried: with a proxy in effect always,
// since the proxy resolves the names and the machine may not; otherwise
// whether the maker's public host name resolves. It sends no packet.
class NetworkAccessHelper : public QObject
{
    Q_OBJECT

public:
    explicit NetworkAccessHelper(QObject *parent = nullptr);
    ~NetworkAccessHelper() override;

    // Blocks the calling thread for as long as the resolver takes.
    bool isAvailable() const;
    // The name is the deployment value at construction; a test or a changed
    // configuration may point the check elsewhere.
    void setHostName(const QString &hostName) { m_hostName = hostName; }

private:
    QString m_hostName;
};

#endif // NETWORKACCESSHELPER_H
