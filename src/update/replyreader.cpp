#include "replyreader.h"

#include <QNetworkReply>

#include <limits>

ReplyReader::ReplyReader(QNetworkReply *reply, QObject *parent)
    : QThread(parent)
    , m_reply(reply)
{ }

void ReplyReader::run()
{
    if (!m_reply)
        return;
    const qint64 total = m_reply->bytesAvailable();
    if (total > 0) {
        // Room for the whole body at once: growing by appends would, for a
        // large installer, hold up to twice its size for a moment.
        m_data.reserve(int(qMin<qint64>(total, std::numeric_limits<int>::max())));
        for (;;) {
            const int before = m_data.size();
            m_data.append(m_reply->read(qMin(m_chunkSize, total - before)));
            emit signalProgressChanged(m_data.size(), total);
            // A cancel does not wait for the rest of a large body.
            if (m_data.size() == before || m_data.size() >= total || isInterruptionRequested())
                break;
        }
    }
    emit signalWorkerComplete(m_data.size(), total);
}
