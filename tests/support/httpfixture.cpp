#include "httpfixture.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QPointer>
#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

bool HttpFixture::listen(quint16 port)
{
    connect(&m_server, SIGNAL(newConnection()), this, SLOT(acceptConnection()), Qt::UniqueConnection);
    if (!m_server.listen(QHostAddress::LocalHost, port))
        return false;
    m_port = m_server.serverPort();
    return true;
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
    // The head may come in pieces; the blank line ends it, as GET has no body.
    if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n"))
        return;
    const QByteArray request = socket->readAll();
    const QString path = QString::fromLatin1(request.left(request.indexOf("\r\n")).split(' ').value(1));
    ++m_requests[path];
    connect(socket, &QTcpSocket::disconnected, this, [this, path]() { ++m_closed[path]; });
    const Answer answer = m_answers.value(path, status(404, "Not Found", "no such page"));
    if (answer.status.isEmpty()) {
        if (!answer.stall)
            socket->abort();
        return;
    }
    QByteArray head = "HTTP/1.1 " + answer.status + "\r\n" + answer.headers;
    if (answer.withLength)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    head += "Connection: close\r\n\r\n";
    if (answer.stall || answer.cut) {
        socket->write(head + answer.body.left(answer.body.size() / 2));
        if (answer.cut)
            socket->disconnectFromHost();
        return;
    }
    if (answer.trickle) {
        socket->write(head);
        QPointer<QTcpSocket> guarded(socket);
        const int piece = (answer.body.size() + 4) / 5;
        for (int i = 0; i < 5; ++i) {
            QTimer::singleShot(150 * (i + 1), socket, [guarded, body = answer.body.mid(i * piece, piece), i]() {
                guarded->write(body);
                if (i == 4)
                    guarded->disconnectFromHost();
            });
        }
        return;
    }
    // One request per connection keeps the scripted cases independent.
    socket->write(head + answer.body);
    socket->disconnectFromHost();
}

bool FileStoreServer::start()
{
    // The server logs every request, and nothing reads its output while a
    // test waits for a launcher: into a pipe, a full one would stop it. So
    // only its address comes through the pipe; the rest goes to a file.
    m_process.setStandardErrorFile(m_directory + QStringLiteral(".log"));
    // On port 0 the server binds a free port and names it once it listens.
    m_process.start(QStringLiteral("python3"),
        QStringLiteral("-u -m http.server --bind 127.0.0.1 --directory").split(' ') << m_directory << "0");
    const QDeadlineTimer deadline(15000);
    while (m_process.waitForReadyRead(int(deadline.remainingTime()))) {
        m_output += m_process.readAllStandardOutput();
        const QRegularExpressionMatch match
            = QRegularExpression(QStringLiteral(" port (\\d+) ")).match(QString::fromLocal8Bit(m_output));
        if (match.hasMatch()) {
            m_port = match.captured(1).toUShort();
            return true;
        }
    }
    return false;
}

QString FileStoreServer::output() const
{
    QFile log(m_directory + QStringLiteral(".log"));
    return QString::fromLocal8Bit(m_output + (log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray()));
}
