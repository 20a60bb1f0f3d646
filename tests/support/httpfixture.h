#ifndef HTTPFIXTURE_H
#define HTTPFIXTURE_H

#include <QHash>
#include <QProcess>
#include <QTcpServer>

// A scripted HTTP server on 127.0.0.1 for tests that need exact answers, or
// none. It runs in the test's own thread, so it answers only while that
// thread runs an event loop. Unknown paths get 404.
class HttpFixture : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        QByteArray status = "200 OK"; // empty: the connection is closed unanswered
        QByteArray headers; // whole lines, each ending in "\r\n"
        QByteArray body;
        bool withLength = true; // without, the body ends where the connection closes
        // The connection stays open and nothing more comes: after the head and
        // half the body, or, with an empty status, before any answer at all.
        bool stall = false;
        bool cut = false; // the connection closes after half the body, its length announced whole
        // The body comes in five pieces 150 ms apart, so that the client's
        // progress, which it reports at most every 100 ms, sees it arrive.
        bool trickle = false;
    };

    static Answer status(int code, const QByteArray &reason, const QByteArray &body)
    {
        return { QByteArray::number(code) + ' ' + reason, {}, body };
    }
    static Answer ok(const QByteArray &body) { return status(200, "OK", body); }
    static Answer redirect(int code, const QByteArray &location, const QByteArray &body)
    {
        return { QByteArray::number(code) + (code == 301 ? " Moved Permanently" : " Found"),
            "Location: " + location + "\r\n", body };
    }
    static Answer withoutLength(const QByteArray &body) { return { "200 OK", {}, body, false }; }
    static Answer dropped() { return { {}, {}, {} }; }
    static Answer silent() { return { {}, {}, {}, true, true }; }
    static Answer stalled(const QByteArray &body) { return { "200 OK", {}, body, true, true }; }
    static Answer cut(const QByteArray &body) { return { "200 OK", {}, body, true, false, true }; }
    static Answer trickled(const QByteArray &body, bool withLength = true)
    {
        return { "200 OK", {}, body, withLength, false, false, true };
    }

    // Listens on 127.0.0.1, on a free port unless one is given.
    bool listen(quint16 port = 0);
    void close() { m_server.close(); }
    quint16 port() const { return m_server.serverPort(); }
    QString url(const QString &path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path); }
    // The path is the request target as it arrives, query included.
    void setAnswer(const QString &path, const Answer &answer) { m_answers.insert(path, answer); }
    int requestCount(const QString &path) const { return m_requests.value(path); }

private slots:
    void acceptConnection();
    void readRequest();

private:
    QTcpServer m_server;
    QHash<QString, Answer> m_answers;
    QHash<QString, int> m_requests;
};

// A plain file store for the update catalogue and pages: "python3 -m
// http.server" serving a folder on 127.0.0.1 until the object goes.
class FileStoreServer
{
public:
    explicit FileStoreServer(const QString &directory)
        : m_directory(directory)
    { }
    ~FileStoreServer() { stop(); }

    // Starts the server and waits until it accepts connections.
    bool start();
    void stop() { m_process.close(); } // kills it and waits
    QString url(const QString &path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path); }
    // What the server printed, for a failed start.
    QString output() const { return QString::fromLocal8Bit(m_output); }

private:
    QString m_directory;
    quint16 m_port = 0;
    QProcess m_process;
    QByteArray m_output;
};

#endif // HTTPFIXTURE_H
