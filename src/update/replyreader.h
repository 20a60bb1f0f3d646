#ifndef REPLYREADER_H
#define REPLYREADER_H

#include <QByteArray>
#include <QThread>

class QNetworkReply;

// Drains a finished download reply into memory, chunk by chunk, off the main
// thread. The reply belongs to the main thread, which leaves it alone until
// signalWorkerComplete; only then does it take the data.
class ReplyReader : public QThread
{
    Q_OBJECT

public:
    explicit ReplyReader(QNetworkReply *reply, QObject *parent = nullptr);

    const QByteArray &getData() const { return m_data; }

signals:
    void signalProgressChanged(qint64 bytesRead, qint64 totalBytes);
    void signalWorkerComplete(qint64 bytesRead, qint64 totalBytes);

protected:
    void run() override;

private:
    QByteArray m_data;
    const qint64 m_chunkSize = 102400;
    QNetworkReply *m_reply;
};

#endif // REPLYREADER_H
