#ifndef THUMBNAILREADER_H
#define THUMBNAILREADER_H

#include <QElapsedTimer>
#include <QHash>
#include <QImage>
#include <QObject>
#include <QSize>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

class QThreadPool;
class ThumbnailCache;

// Reads projects' pictures on threads of its own, so that whoever shows them
// never waits for a project file. Every project asked for is answered once
// by signalThumbnailRead, in no fixed order. A read that hangs (a project in
// an unreachable network folder) or takes long holds up no other: once it
// has run a while, another thread starts beside it, up to a limit. Pictures
// go through a ThumbnailCache, so a project that has not changed since it
// was last read is not opened. Memory stays bounded: the project reader
// limits the size of a picture and decodes only a few at a time.
class ThumbnailReader : public QObject
{
    Q_OBJECT

public:
    // An empty cache folder reads without a cache.
    ThumbnailReader(const QString &cacheFolder, const QSize &pictureSize, QObject *parent = nullptr);
    ~ThumbnailReader() override;

    // Reads these projects' pictures, in this order. Projects asked for
    // earlier and not yet begun are dropped; one that is being read is read
    // once more afterwards, so that the last answer for it is fresh.
    void read(const QStringList &paths);
    // Removes the cache entries of every project but these, off this thread.
    void pruneCache(const QStringList &keptPaths);
    // Every project asked for has been answered.
    bool isIdle() const;

    // What each read does, on the calling thread: the project's own picture
    // scaled into the size, from the cache while the project is unchanged.
    // False, with a null picture, when it has none that can be shown (none
    // at all, damaged, too large, no such file).
    static bool readThumbnail(const QString &path, const QSize &size, ThumbnailCache *cache, QImage &picture);

signals:
    // The picture is null when the project has none of its own.
    void signalThumbnailRead(const QString &path, const QImage &picture);
    void signalIdle();

private slots:
    void readFinished(const QString &path, const QImage &picture);
    void startReads();

private:
    struct Channel;
    int allowedReads() const;

    QString m_cacheFolder;
    QSize m_pictureSize;
    QThreadPool *m_pool;
    std::shared_ptr<Channel> m_channel;
    QStringList m_pending;
    QHash<QString, QElapsedTimer> m_running;
    QTimer m_stallTimer;
};

#endif // THUMBNAILREADER_H
