#include "thumbnailreader.h"

#include "editordocmanager.h"
#include "thumbnailcache.h"

#include <QList>
#include <QMutex>
#include <QMutexLocker>
#include <QRunnable>
#include <QThreadPool>

namespace {

// Reads at a time: decoding keeps two cores busy.
const int kReadThreads = 2;
// A read running longer than this is taken to be stuck and lets one more
// start beside it (a picture of the largest size decodes in far less)...
const int kStalledAfterMs = 250;
// ...up to this many stuck ones; past that the others wait.
const int kMaxStalledReads = 16;
// How long the reads under way get to end when the reader goes. One that
// hangs on an unreachable folder cannot be stopped; it is left to its thread
// rather than hang whoever closes the window.
const int kShutdownWaitMs = 500;

} // namespace

// How a read's answer reaches its reader, which may be gone by the time a
// read that hung returns.
struct ThumbnailReader::Channel
{
    QMutex mutex;
    ThumbnailReader *reader = nullptr;
};

ThumbnailReader::ThumbnailReader(const QString &cacheFolder, const QSize &pictureSize, QObject *parent)
    : QObject(parent)
    , m_cacheFolder(cacheFolder)
    , m_pictureSize(pictureSize)
    , m_pool(new QThreadPool)
    , m_channel(std::make_shared<Channel>())
{
    m_channel->reader = this;
    // The reads and one pruning of the cache.
    m_pool->setMaxThreadCount(kReadThreads + kMaxStalledReads + 1);
    m_stallTimer.setInterval(kStalledAfterMs);
    connect(&m_stallTimer, SIGNAL(timeout()), this, SLOT(startReads()));
}

ThumbnailReader::~ThumbnailReader()
{
    {
        const QMutexLocker lock(&m_channel->mutex);
        m_channel->reader = nullptr;
    }
    if (m_pool->waitForDone(kShutdownWaitMs)) {
        delete m_pool;
        return;
    }
    // Kept for the rest of the process: deleting it would wait for the
    // read that hangs.
    static QList<QThreadPool *> *const stuckPools = new QList<QThreadPool *>;
    stuckPools->append(m_pool);
}

bool ThumbnailReader::readThumbnail(const QString &path, const QSize &size, ThumbnailCache *cache, QImage &picture)
{
    picture = QImage();
    ThumbnailCache::Stamp stamp;
    if (!ThumbnailCache::stampOf(path, stamp))
        return false;
    if (cache && cache->find(stamp, picture))
        return !picture.isNull();

    // No parent: the manager lives on this thread, not on the launcher's.
    EditorDocManager document(nullptr, path);
    QImage loaded;
    if (document.createDocument() && document.getThumbnail(loaded)) {
        // Smooth scaling works on premultiplied pixels; converted in place
        // here, the largest picture is held once, not twice.
        if (loaded.format() == QImage::Format_ARGB32)
            loaded = std::move(loaded).convertToFormat(QImage::Format_ARGB32_Premultiplied);
        picture = loaded.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    if (cache)
        cache->store(stamp, picture);
    return !picture.isNull();
}

void ThumbnailReader::read(const QStringList &paths)
{
    m_pending = paths;
    m_pending.removeDuplicates();
    startReads();
    if (isIdle())
        emit signalIdle();
}

void ThumbnailReader::pruneCache(const QStringList &keptPaths)
{
    if (m_cacheFolder.isEmpty())
        return;
    const QString folder = m_cacheFolder;
    const QSize size = m_pictureSize;
    m_pool->start(QRunnable::create([folder, size, keptPaths]() { ThumbnailCache(folder, size).prune(keptPaths); }));
}

bool ThumbnailReader::isIdle() const
{
    return m_pending.isEmpty() && m_running.isEmpty();
}

int ThumbnailReader::allowedReads() const
{
    int stalled = 0;
    for (const QElapsedTimer &started : m_running) {
        if (started.hasExpired(kStalledAfterMs))
            ++stalled;
    }
    return kReadThreads + qMin(stalled, kMaxStalledReads);
}

void ThumbnailReader::startReads()
{
    const int allowed = allowedReads();
    for (int i = 0; i < m_pending.size() && m_running.size() < allowed;) {
        const QString path = m_pending.at(i);
        // Its read under way may have begun before the project changed: it
        // is read again when that one has ended.
        if (m_running.contains(path)) {
            ++i;
            continue;
        }
        m_pending.removeAt(i);
        m_running[path].start();

        const std::shared_ptr<Channel> channel = m_channel;
        const QString folder = m_cacheFolder;
        const QSize size = m_pictureSize;
        m_pool->start(QRunnable::create([channel, path, folder, size]() {
            QImage picture;
            ThumbnailCache cache(folder, size);
            readThumbnail(path, size, folder.isEmpty() ? nullptr : &cache, picture);
            const QMutexLocker lock(&channel->mutex);
            if (channel->reader)
                QMetaObject::invokeMethod(channel->reader, "readFinished", Qt::QueuedConnection, Q_ARG(QString, path),
                    Q_ARG(QImage, picture));
        }));
    }
    // Watches the reads under way for one that is stuck.
    if (m_running.isEmpty())
        m_stallTimer.stop();
    else if (!m_stallTimer.isActive())
        m_stallTimer.start();
}

void ThumbnailReader::readFinished(const QString &path, const QImage &picture)
{
    m_running.remove(path);
    startReads();
    emit signalThumbnailRead(path, picture);
    if (isIdle())
        emit signalIdle();
}
