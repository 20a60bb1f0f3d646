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
    // The port of the last listen(), also while closed, so that the server
    // comes back where its clients look for it.
    quint16 port() const { return m_port; }
    QString url(const QString &path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path); }
    // The path is the request target as it arrives, query included.
    void setAnswer(const QString &path, const Answer &answer) { m_answers.insert(path, answer); }
    int requestCount(const QString &path) const { return m_requests.value(path); }
    // Connections whose request was for that path and that have closed since;
    // with an answer that never ends, each is the client giving up.
    int closedCount(const QString &path) const { return m_closed.value(path); }

private slots:
    void acceptConnection();
    void readRequest();

private:
    quint16 m_port = 0;
    QHash<QString, Answer> m_answers;
    QHash<QString, int> m_requests;
    QHash<QString, int> m_closed;
    // Last, so that it goes first: its connections, closing as it goes, are still counted.
    QTcpServer m_server;
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
    // What the server printed, for a failed start: its address, and its
    // complaints and the requests it served in a file beside the folder.
    QString output() const;

private:
    QString m_directory;
    quint16 m_port = 0;
    QProcess m_process;
    QByteArray m_output;
};

#endif // HTTPFIXTURE_H
