#include "recentuseditem.h"

#include <QFileInfo>

namespace {

const QSize kThumbnailSize(150, 150);

} // namespace

RecentUsedItem::RecentUsedItem(ProcessLauncher *launcher, const HistoryInfo &history)
    : m_launcher(launcher)
    , m_history(history)
    , m_fileName(QFileInfo(history.getOpenFilePath()).fileName())
    , m_timestamp(history.getTimestamp())
{
    // Only an in-house build names its edition; the blank before the closing
    // bracket stays for every other edition.
    const QString edition = history.getEdition() == QLatin1String("inhouse") ? history.getEdition() : QString();
    m_versionText = QStringLiteral("(Ver. %1 %2)").arg(history.getVersion(), edition);
    m_spokenVersion = QStringLiteral("%1 %2").arg(history.getVersion(), edition).trimmed();
    m_thumbnail = defaultThumbnail();
}

QImage RecentUsedItem::defaultThumbnail()
{
    // Made once: every card without a picture of its own shares it.
    static const QImage picture = []() {
        QImage image;
        if (!image.load(QStringLiteral(":/thumbnails/default.png")))
            return image;
        return image.convertToFormat(QImage::Format_ARGB32)
            .scaled(kThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }();
    return picture;
}

QSize RecentUsedItem::thumbnailSize()
{
    return kThumbnailSize;
}
