#include "thumbnailcache.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSet>
#include <QStandardPaths>
#include <QTemporaryFile>
#include <QtEndian>

namespace {

// The first words of an entry; an entry of another layout is not read.
const quint32 kMagic = 0x5A4C5443;
const quint32 kLayoutVersion = 1;
const QString kSuffix = QStringLiteral(".thumbnail");
// A file written again within this span may keep its size and time on a
// file system with a coarse clock, so its entry could never tell.
const qint64 kSettleMs = 2000;
// The pixels are stored as they are, so that a picture from the cache is
// exactly the one that was read; the limit is that of one picture plus room
// for the path.
const int kBytesPerPixel = 4;
const qint64 kEntryOverheadBytes = 64 * 1024;

bool isStoredFormat(int format)
{
    return format == QImage::Format_ARGB32_Premultiplied || format == QImage::Format_ARGB32
        || format == QImage::Format_RGB32;
}

QByteArray digestOf(const QByteArray &bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Sha1);
}

} // namespace

ThumbnailCache::ThumbnailCache(const QString &folder, const QSize &pictureSize)
    : m_folder(folder)
    , m_pictureSize(pictureSize)
{ }

QString ThumbnailCache::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) + QStringLiteral("/thumbnails");
}

bool ThumbnailCache::stampOf(const QString &path, Stamp &stamp)
{
    const QFileInfo info(path);
    if (!info.exists())
        return false;
    stamp.path = path;
    stamp.size = info.size();
    stamp.modifiedMs = info.lastModified().toMSecsSinceEpoch();
    return true;
}

QString ThumbnailCache::entryPath(const QString &projectPath) const
{
    const QByteArray name = QCryptographicHash::hash(projectPath.toUtf8(), QCryptographicHash::Sha1).toHex();
    return QStringLiteral("%1/%2%3").arg(m_folder, QString::fromLatin1(name), kSuffix);
}

bool ThumbnailCache::find(const Stamp &stamp, QImage &picture) const
{
    const qint64 limit = qint64(m_pictureSize.width()) * m_pictureSize.height() * kBytesPerPixel + kEntryOverheadBytes;
    QFile file(entryPath(stamp.path));
    if (!file.open(QIODevice::ReadOnly) || file.size() > limit)
        return false;
    QDataStream stream(file.readAll());
    stream.setVersion(QDataStream::Qt_5_15);

    quint32 magic = 0, layout = 0;
    QString path;
    qint64 size = 0, modifiedMs = 0;
    qint32 width = 0, height = 0;
    bool hasPicture = false;
    stream >> magic >> layout;
    if (stream.status() != QDataStream::Ok || magic != kMagic || layout != kLayoutVersion)
        return false;
    stream >> path >> size >> modifiedMs >> width >> height >> hasPicture;
    if (stream.status() != QDataStream::Ok || path != stamp.path || size != stamp.size || modifiedMs != stamp.modifiedMs
        || QSize(width, height) != m_pictureSize)
        return false;
    if (!hasPicture) {
        picture = QImage();
        return true;
    }

    qint32 pictureWidth = 0, pictureHeight = 0, format = 0;
    QByteArray compressed, digest;
    stream >> pictureWidth >> pictureHeight >> format >> compressed >> digest;
    if (stream.status() != QDataStream::Ok || pictureWidth < 1 || pictureHeight < 1
        || pictureWidth > m_pictureSize.width() || pictureHeight > m_pictureSize.height() || !isStoredFormat(format)
        || digest != digestOf(compressed))
        return false;
    QImage stored(pictureWidth, pictureHeight, QImage::Format(format));
    // The length that the compressed data announces is checked before it is
    // unpacked, so that it allocates no more than the picture.
    const qsizetype expected = stored.sizeInBytes();
    if (compressed.size() < 4 || qFromBigEndian<quint32>(compressed.constData()) != quint32(expected))
        return false;
    const QByteArray pixels = qUncompress(compressed);
    if (pixels.size() != expected)
        return false;
    memcpy(stored.bits(), pixels.constData(), size_t(expected));
    picture = stored;
    return true;
}

bool ThumbnailCache::store(const Stamp &stamp, const QImage &picture)
{
    if (QDateTime::currentMSecsSinceEpoch() - stamp.modifiedMs < kSettleMs) {
        m_errorText = QStringLiteral("Changed too lately to be kept: %1").arg(stamp.path);
        return false;
    }
    QImage stored = picture;
    if (!stored.isNull() && !isStoredFormat(stored.format()))
        stored = stored.convertToFormat(QImage::Format_ARGB32_Premultiplied);

    QByteArray entry;
    QDataStream stream(&entry, QIODevice::WriteOnly);
    stream.setVersion(QDataStream::Qt_5_15);
    stream << kMagic << kLayoutVersion << stamp.path << stamp.size << stamp.modifiedMs << qint32(m_pictureSize.width())
           << qint32(m_pictureSize.height()) << !stored.isNull();
    if (!stored.isNull()) {
        const QByteArray compressed = qCompress(
            QByteArray::fromRawData(reinterpret_cast<const char *>(stored.constBits()), int(stored.sizeInBytes())));
        stream << qint32(stored.width()) << qint32(stored.height()) << qint32(stored.format()) << compressed
               << digestOf(compressed);
    }

    // Written beside the entry and put in its place whole, so that a reader
    // in another thread or process never sees half an entry. Not synced to
    // the disk: an entry that a crash loses or cuts short is passed over.
    QDir().mkpath(m_folder);
    const QString target = entryPath(stamp.path);
    QTemporaryFile file(target + QStringLiteral(".XXXXXX"));
    if (!file.open() || file.write(entry) != entry.size() || !file.flush()) {
        m_errorText = QStringLiteral("Failed to write thumbnail: %1: %2").arg(target, file.errorString());
        return false;
    }
    QFile::remove(target);
    if (!file.rename(target)) {
        m_errorText = QStringLiteral("Failed to write thumbnail: %1: %2").arg(target, file.errorString());
        return false;
    }
    // Renamed, it is the entry: no longer to be removed with the object.
    file.setAutoRemove(false);
    return true;
}

void ThumbnailCache::prune(const QStringList &keptPaths)
{
    QSet<QString> kept;
    for (const QString &path : keptPaths)
        kept.insert(QFileInfo(entryPath(path)).fileName());
    // The folder is the cache's own: what a write cut short left goes too.
    QDir folder(m_folder);
    const QStringList files = folder.entryList(QDir::Files | QDir::Hidden);
    for (const QString &file : files) {
        if (!kept.contains(file))
            folder.remove(file);
    }
}
