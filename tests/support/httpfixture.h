#ifndef HTTPFIXTURE_H
#define HTTPFIXTURE_H

#include <QHash>
#include <QProcess>
#include <QTcpServer>

class QTcpSocket;

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
        // The connection closes after this many bytes of the body, its length
        // announced whole; -1: the body comes whole.
        qint64 dropAt = -1;
        // The body comes in five pieces 150 ms apart, so that the client's
        // progress, which it reports at most every 100 ms, sees it arrive.
        bool trickle = false;
        // "Range: bytes=N-" is answered with 206 and the rest from N, unless
        // "If-Range" names another validator than the ETag or Last-Modified
        // among the headers; then, as without ranges, the whole body comes.
        bool ranges = false;
        // The body comes in chunks, the length the headers announce aside.
        bool chunked = false;
    };

    static Answer status(int code, const QByteArray &reason, const QByteArray &body)
    {
        Answer answer;
        answer.status = QByteArray::number(code) + ' ' + reason;
        answer.body = body;
        return answer;
    }
    static Answer ok(const QByteArray &body) { return status(200, "OK", body); }
    static Answer redirect(int code, const QByteArray &location, const QByteArray &body)
    {
        Answer answer = status(code, code == 301 ? "Moved Permanently" : "Found", body);
        answer.headers = "Location: " + location + "\r\n";
        return answer;
    }
    static Answer withoutLength(const QByteArray &body)
    {
        Answer answer = ok(body);
        answer.withLength = false;
        return answer;
    }
    static Answer dropped()
    {
        Answer answer;
        answer.status.clear();
        return answer;
    }
    static Answer silent()
    {
        Answer answer = dropped();
        answer.stall = true;
        return answer;
    }
    static Answer stalled(const QByteArray &body)
    {
        Answer answer = ok(body);
        answer.stall = true;
        return answer;
    }
    static Answer cut(const QByteArray &body)
    {
        Answer answer = ok(body);
        answer.dropAt = body.size() / 2;
        return answer;
    }
    static Answer trickled(const QByteArray &body, bool withLength = true)
    {
        Answer answer = ok(body);
        answer.withLength = withLength;
        answer.trickle = true;
        return answer;
    }
    // A file that a client can continue: its ETag is the validator, and
    // ranges are answered.
    static Answer resumable(const QByteArray &body, const QByteArray &etag)
    {
        Answer answer = ok(body);
        answer.headers = "ETag: " + etag + "\r\n";
        answer.ranges = true;
        return answer;
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
    // The head of the last request for that path, request line included.
    QByteArray lastRequest(const QString &path) const { return m_lastRequests.value(path); }
    // Connections for that path that the client closed before the answer was
    // whole: a client that gave up or was stopped.
    int abandonedCount(const QString &path) const { return m_abandoned.value(path); }

private slots:
    void acceptConnection();
    void readRequest();
    void countAbandoned();

private:
    // The answer as it goes out: ranges applied, head and body in one.
    static QByteArray wire(const QByteArray &request, Answer &answer);
    void send(QTcpSocket *socket, const QByteArray &head, const Answer &answer);

    quint16 m_port = 0;
    QHash<QString, Answer> m_answers;
    QHash<QString, int> m_requests;
    QHash<QString, QByteArray> m_lastRequests;
    QHash<QString, int> m_abandoned;
    // Last, so that it goes first: its connections, closing as they go,
    // still find the counts above.
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
