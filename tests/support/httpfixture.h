#ifndef HTTPFIXTURE_H
#define HTTPFIXTURE_H

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QObject>
#include <QPair>
#include <QString>
#include <QTcpServer>

class QProcess;
class QTcpSocket;

// A scripted HTTP server on 127.0.0.1 for tests that need exact answers:
// each path gets its status line, headers and body, with or without a
// length, a delay, or no answer at all. It runs in the test's own thread, so
// it answers only while that thread runs an event loop. Unknown paths get 404.
class HttpFixture : public QObject
{
    Q_OBJECT

public:
    struct Answer
    {
        int status = 200;
        QByteArray reason = "OK";
        QList<QPair<QByteArray, QByteArray>> headers;
        QByteArray body;
        // Without a length the body ends where the connection closes.
        bool withLength = true;
        // Close the connection as soon as the request is in, without a word.
        bool dropConnection = false;
        int delayMs = 0;
    };

    static Answer status(int status, const QByteArray &reason, const QByteArray &body)
    {
        return { status, reason, {}, body };
    }
    static Answer ok(const QByteArray &body) { return status(200, "OK", body); }
    static Answer redirect(int status, const QByteArray &location, const QByteArray &body)
    {
        return { status, status == 301 ? "Moved Permanently" : "Found", { { "Location", location } }, body };
    }
    static Answer withoutLength(const QByteArray &body) { return { 200, "OK", {}, body, false }; }
    static Answer dropped() { return { 200, "OK", {}, {}, true, true }; }

    explicit HttpFixture(QObject *parent = nullptr);

    // Listens on 127.0.0.1 on a free port.
    bool listen() { return m_server.listen(QHostAddress::LocalHost, 0); }
    void close() { m_server.close(); }
    quint16 port() const { return m_server.serverPort(); }
    // "http://127.0.0.1:<port>" followed by the path.
    QString url(const QString &path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path); }

    // The path is the request target as it arrives, query included.
    void setAnswer(const QString &path, const Answer &answer) { m_answers.insert(path, answer); }
    // How many requests asked for the path so far.
    int requestCount(const QString &path) const { return m_requestCounts.value(path); }

private slots:
    void acceptConnection();
    void readRequest();

private:
    void answer(QTcpSocket *socket, const Answer &answer);

    QTcpServer m_server;
    QHash<QString, Answer> m_answers;
    QHash<QString, int> m_requestCounts;
};

// A plain file store: "python3 -m http.server" serving a folder on
// 127.0.0.1, for the update catalogue and pages. It is stopped when the
// object goes.
class FileStoreServer
{
public:
    explicit FileStoreServer(const QString &directory)
        : m_directory(directory)
    { }
    ~FileStoreServer() { stop(); }

    FileStoreServer(const FileStoreServer &) = delete;
    FileStoreServer &operator=(const FileStoreServer &) = delete;

    // Starts the server and waits until it accepts connections.
    bool start(int timeoutMs = 15000);
    void stop();
    bool isRunning() const;
    quint16 port() const { return m_port; }
    QString url(const QString &path) const { return QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path); }
    // What the server printed, for a failed start.
    QString output() const;

private:
    QString m_directory;
    quint16 m_port = 0;
    QProcess *m_process = nullptr;
    QByteArray m_output;
};

#endif // HTTPFIXTURE_H
