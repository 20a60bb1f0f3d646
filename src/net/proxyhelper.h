#ifndef PROXYHELPER_H
#define PROXYHELPER_H

#include <QObject>
#include <QString>

// Finds the HTTP proxy that this machine wants, in the environment or in the
// user's Internet settings, decides whether the launcher can use it, and sets
// it for the whole process. Made on the stack for one call; it keeps nothing.
class ProxyHelper : public QObject
{
    Q_OBJECT

public:
    // Detection results. The numbers are part of the start-up rule.
    enum Result {
        NoProxy = 1,
        UnusableSource = 2, // no "ProxyEnable", or automatic configuration
        ServiceHostBypassed = 3, // the bypass list names one of our service hosts
        ProxyByName = 4, // a proxy named by a host name: not usable here
        ProxyByAddress = 5 // a proxy named by its IP address: usable
    };

    // Source false is the environment, true the user's Internet settings.
    static constexpr bool Environment = false;
    static constexpr bool Settings = true;

    explicit ProxyHelper(QObject *parent = nullptr);
    ~ProxyHelper() override;

    // The start-up rule: a usable proxy in the environment settles it;
    // otherwise the Internet settings are applied when usable. True when the
    // user is to be warned, because either source named a proxy the launcher
    // cannot use (UnusableSource or ProxyByName).
    static bool applyStartupProxy();

    int detectProxy(bool source);
    // Detects again and, on ProxyByAddress, sets the proxy for Qt and hands it
    // to the licence client through the environment.
    void applyProxy(bool source);

    int detectFromEnvironment(QString &host, QString &port, QString &user, QString &password);
    int detectFromSettings(QString &host, QString &port, QString &user, QString &password);

    // "first:second" or "first"; false for an empty first part or more than
    // one colon, so an address with a scheme is refused.
    bool splitPair(const QString &text, QString &first, QString &second) const;
    // Whether the host is a dotted IPv4 address or a full eight-group address
    // whose groups are all at most FF. The port is not looked at.
    bool isIpAddress(const QString &host, const QString &port) const;

private:
    void applyProxy(const QString &host, const QString &port, const QString &user, const QString &password);
};

#endif // PROXYHELPER_H
