#include "httpfixture.h"

#include <QElapsedTimer>
#include <QHostAddress>
#include <QPointer>
#include <QProcess>
#include <QTcpServer>
#include <QTcpSocket>
#include <QThread>
#include <QTimer>

HttpFixture::Answer HttpFixture::ok(const QByteArray &body)
{
    Answer answer;
    answer.body = body;
    return answer;
}

HttpFixture::Answer HttpFixture::status(int status, const QByteArray &reason, const QByteArray &body)
{
    Answer answer;
    answer.status = status;
    answer.reason = reason;
    answer.body = body;
    return answer;
}

HttpFixture::Answer HttpFixture::redirect(int status, const QByteArray &location, const QByteArray &body)
{
    Answer answer = HttpFixture::status(status, status == 301 ? "Moved Permanently" : "Found", body);
    answer.headers.append(qMakePair(QByteArray("Location"), location));
    return answer;
}

HttpFixture::Answer HttpFixture::withoutLength(const QByteArray &body)
{
    Answer answer = ok(body);
    answer.withLength = false;
    return answer;
}

HttpFixture::Answer HttpFixture::dropped()
{
    Answer answer;
    answer.dropConnection = true;
    return answer;
}

HttpFixture::HttpFixture(QObject *parent)
    : QObject(parent)
    , m_server(new QTcpServer(this))
{
    connect(m_server, SIGNAL(newConnection()), this, SLOT(acceptConnection()));
}

HttpFixture::~HttpFixture() = default;

bool HttpFixture::listen()
{
    return m_server->listen(QHostAddress::LocalHost, 0);
}

void HttpFixture::close()
{
    m_server->close();
}

quint16 HttpFixture::port() const
{
    return m_server->serverPort();
}

QString HttpFixture::url(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(port()).arg(path);
}

void HttpFixture::setAnswer(const QString &path, const Answer &answer)
{
    m_answers.insert(path, answer);
}

int HttpFixture::requestCount(const QString &path) const
{
    return m_requestCounts.value(path);
}

void HttpFixture::acceptConnection()
{
    while (QTcpSocket *socket = m_server->nextPendingConnection()) {
        connect(socket, SIGNAL(readyRead()), this, SLOT(readRequest()));
        connect(socket, SIGNAL(disconnected()), socket, SLOT(deleteLater()));
    }
}

void HttpFixture::readRequest()
{
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    if (!socket)
        return;
    // The head may come in pieces; GET requests carry no body, so the blank
    // line ends the request.
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (!request.contains("\r\n\r\n"))
        return;
    disconnect(socket, SIGNAL(readyRead()), this, SLOT(readRequest()));

    const QList<QByteArray> requestLine = request.left(request.indexOf("\r\n")).split(' ');
    const QString path = requestLine.size() >= 2 ? QString::fromLatin1(requestLine.at(1)) : QString();
    m_requestCounts[path] += 1;

    const Answer scripted = m_answers.value(path, status(404, "Not Found", "no such page"));
    if (scripted.delayMs <= 0) {
        answer(socket, scripted);
        return;
    }
    QPointer<QTcpSocket> guarded(socket);
    QTimer::singleShot(scripted.delayMs, this, [this, guarded, scripted]() {
        if (guarded)
            answer(guarded, scripted);
    });
}

void HttpFixture::answer(QTcpSocket *socket, const Answer &answer)
{
    if (answer.dropConnection) {
        socket->abort();
        socket->deleteLater();
        return;
    }
    QByteArray head = "HTTP/1.1 " + QByteArray::number(answer.status) + ' ' + answer.reason + "\r\n";
    for (const auto &header : answer.headers)
        head += header.first + ": " + header.second + "\r\n";
    if (answer.withLength)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    // One request per connection keeps the scripted cases independent.
    head += "Connection: close\r\n\r\n";
    socket->write(head + answer.body);
    socket->disconnectFromHost();
}

FileStoreServer::FileStoreServer(const QString &directory)
    : m_directory(directory)
{ }

FileStoreServer::~FileStoreServer()
{
    stop();
}

bool FileStoreServer::start(int timeoutMs)
{
    stop();
    // A port that was free a moment ago; the server binds it right away.
    {
        QTcpServer probe;
        if (!probe.listen(QHostAddress::LocalHost, 0))
            return false;
        m_port = probe.serverPort();
    }

    m_process = new QProcess;
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    m_process->start(QStringLiteral("python3"),
        { QStringLiteral("-m"), QStringLiteral("http.server"), QStringLiteral("--bind"), QStringLiteral("127.0.0.1"),
            QString::number(m_port), QStringLiteral("--directory"), m_directory });
    if (!m_process->waitForStarted(timeoutMs))
        return false;

    QElapsedTimer elapsed;
    elapsed.start();
    while (elapsed.elapsed() < timeoutMs) {
        if (m_process->state() != QProcess::Running)
            return false;
        QTcpSocket socket;
        socket.connectToHost(QHostAddress::LocalHost, m_port);
        if (socket.waitForConnected(500)) {
            socket.disconnectFromHost();
            return true;
        }
        QThread::msleep(100);
    }
    return false;
}

void FileStoreServer::stop()
{
    if (!m_process)
        return;
    if (m_process->state() != QProcess::NotRunning) {
        m_process->kill();
        m_process->waitForFinished(5000);
    }
    delete m_process;
    m_process = nullptr;
}

bool FileStoreServer::isRunning() const
{
    return m_process && m_process->state() == QProcess::Running;
}

QString FileStoreServer::url(const QString &path) const
{
    return QStringLiteral("http://127.0.0.1:%1%2").arg(m_port).arg(path);
}

QString FileStoreServer::output() const
{
    return m_process ? QString::fromLocal8Bit(m_process->readAll()) : QString();
}
