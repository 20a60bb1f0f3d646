#ifndef UNTRUSTEDTLSSERVER_H
#define UNTRUSTEDTLSSERVER_H

#include <QTcpServer>

// A TLS server on 127.0.0.1 whose certificate no client trusts: it is
// self-signed. A client that checks certificates ends every request to it in
// the handshake, which is all this server is for; it never answers a request.
class UntrustedTlsServer : public QTcpServer
{
public:
    // Listens on a free port; false when it cannot, or when this Qt has no TLS.
    bool start();
    QString url(const QString &path) const
    {
        return QStringLiteral("https://127.0.0.1:%1%2").arg(serverPort()).arg(path);
    }
    // Connections that got as far as the handshake.
    int handshakes() const { return m_handshakes; }

protected:
    void incomingConnection(qintptr descriptor) override;

private:
    int m_handshakes = 0;
};

#endif // UNTRUSTEDTLSSERVER_H
