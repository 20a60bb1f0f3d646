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

namespace {

// The value of a header in a block of header lines, empty when absent.
QByteArray headerValue(const QByteArray &lines, const QByteArray &name)
{
    const QRegularExpression pattern(QStringLiteral("(?:^|\r\n)%1: *([^\r]*)").arg(QString::fromLatin1(name)),
        QRegularExpression::CaseInsensitiveOption);
    return pattern.match(QString::fromLatin1(lines)).captured(1).toLatin1();
}

} // namespace

void HttpFixture::readRequest()
{
    auto *socket = qobject_cast<QTcpSocket *>(sender());
    // The head may come in pieces; the blank line ends it, as GET has no body.
    if (!socket->peek(socket->bytesAvailable()).contains("\r\n\r\n"))
        return;
    const QByteArray request = socket->readAll();
    const QString path = QString::fromLatin1(request.left(request.indexOf("\r\n")).split(' ').value(1));
    ++m_requests[path];
    m_lastRequests[path] = request.left(request.indexOf("\r\n\r\n"));
    socket->setProperty("path", path);
    connect(socket, SIGNAL(disconnected()), this, SLOT(countAbandoned()));
    Answer answer = m_answers.value(path, status(404, "Not Found", "no such page"));
    if (answer.status.isEmpty()) {
        if (!answer.stall) {
            socket->setProperty("answered", true);
            socket->abort();
        }
        return;
    }
    send(socket, wire(request, answer), answer);
}

QByteArray HttpFixture::wire(const QByteArray &request, Answer &answer)
{
    const qint64 size = answer.body.size();
    const QRegularExpressionMatch range = QRegularExpression(QStringLiteral("^bytes=(\\d+)-$"))
                                              .match(QString::fromLatin1(headerValue(request, "Range")));
    if (answer.ranges && range.hasMatch() && range.captured(1).toLongLong() < size) {
        const QByteArray ifRange = headerValue(request, "If-Range");
        QByteArray validator = headerValue(answer.headers, "ETag");
        if (validator.isEmpty())
            validator = headerValue(answer.headers, "Last-Modified");
        if (ifRange.isEmpty() || ifRange == validator) {
            const qint64 from = range.captured(1).toLongLong();
            answer.status = "206 Partial Content";
            answer.headers += "Content-Range: bytes " + QByteArray::number(from) + '-' + QByteArray::number(size - 1)
                + '/' + QByteArray::number(size) + "\r\n";
            answer.body = answer.body.mid(int(from));
        }
    }
    QByteArray head = "HTTP/1.1 " + answer.status + "\r\n" + answer.headers;
    if (answer.withLength)
        head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\n";
    if (answer.chunked) {
        head += "Transfer-Encoding: chunked\r\n";
        answer.body = QByteArray::number(answer.body.size(), 16) + "\r\n" + answer.body + "\r\n0\r\n\r\n";
    }
    return head + "Connection: close\r\n\r\n";
}

void HttpFixture::send(QTcpSocket *socket, const QByteArray &head, const Answer &answer)
{
    if (answer.stall) {
        socket->write(head + answer.body.left(answer.body.size() / 2));
        return;
    }
    if (answer.trickle) {
        socket->write(head);
        QPointer<QTcpSocket> guarded(socket);
        const int piece = (answer.body.size() + 4) / 5;
        for (int i = 0; i < 5; ++i) {
            QTimer::singleShot(150 * (i + 1), socket, [guarded, body = answer.body.mid(i * piece, piece), i]() {
                guarded->write(body);
                if (i == 4) {
                    guarded->setProperty("answered", true);
                    guarded->disconnectFromHost();
                }
            });
        }
        return;
    }
    // One request per connection keeps the scripted cases independent.
    socket->write(head + (answer.dropAt < 0 ? answer.body : answer.body.left(int(answer.dropAt))));
    socket->setProperty("answered", true);
    socket->disconnectFromHost();
}

void HttpFixture::countAbandoned()
{
    QObject *socket = sender();
    if (!socket->property("answered").toBool())
        ++m_abandoned[socket->property("path").toString()];
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
