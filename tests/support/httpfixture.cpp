#include "httpfixture.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QProcess>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

HttpFixture::HttpFixture(QObject *parent)
    : QObject(parent)
{
    connect(&m_server, SIGNAL(newConnection()), this, SLOT(acceptConnection()));
}

void HttpFixture::acceptConnection()
{
    while (QTcpSocket *socket = m_server.nextPendingConnection()) {
        connect(socket, SIGNAL(readyRead()), this, SLOT(readRequest()));
        connect(socket, SIGNAL(disconnected()), socket, SLOT(deleteLater()));
    }
}

void HttpFixture::readRequest()
{
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    // The head may come in pieces; GET requests carry no body, so the blank
    // line ends the request.
    const QByteArray request = socket->property("request").toByteArray() + socket->readAll();
    socket->setProperty("request", request);
    if (!request.contains("\r\n\r\n"))
        return;
    disconnect(socket, SIGNAL(readyRead()), this, SLOT(readRequest()));

    const QString path = QString::fromLatin1(request.left(request.indexOf("\r\n")).split(' ').value(1));
    m_requestCounts[path] += 1;
    const Answer scripted = m_answers.value(path, status(404, "Not Found", "no such page"));
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
    socket->write(head + "Connection: close\r\n\r\n" + answer.body);
    socket->disconnectFromHost();
}

bool FileStoreServer::start(int timeoutMs)
{
    stop();
    m_output.clear();
    m_process = new QProcess;
    m_process->setProcessChannelMode(QProcess::MergedChannels);
    // On port 0 the server binds a free port and names it once it listens.
    m_process->start(QStringLiteral("python3"),
        { QStringLiteral("-u"), QStringLiteral("-m"), QStringLiteral("http.server"), QStringLiteral("--bind"),
            QStringLiteral("127.0.0.1"), QStringLiteral("--directory"), m_directory, QStringLiteral("0") });
    const QRegularExpression serving(QStringLiteral(" port (\\d+) "));
    QElapsedTimer elapsed;
    elapsed.start();
    while (m_process->waitForReadyRead(int(qMax<qint64>(0, timeoutMs - elapsed.elapsed())))) {
        m_output += m_process->readAll();
        const QRegularExpressionMatch match = serving.match(QString::fromLocal8Bit(m_output));
        if (match.hasMatch()) {
            m_port = match.captured(1).toUShort();
            return true;
        }
    }
    return false;
}

void FileStoreServer::stop()
{
    if (m_process) {
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

QString FileStoreServer::output() const
{
    return QString::fromLocal8Bit(m_output + (m_process ? m_process->readAll() : QByteArray()));
}
