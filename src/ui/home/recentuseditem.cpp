#include "recentuseditem.h"

#include "editordocmanager.h"
#include "processlauncher.h"

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

    EditorDocManager document(m_launcher, history.getOpenFilePath());
    if (document.createDocument() && document.getThumbnail(m_thumbnail)) {
        m_thumbnail = m_thumbnail.scaled(kThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        return;
    }
    if (!m_thumbnail.load(QStringLiteral(":/thumbnails/default.png")))
        return;
    m_thumbnail = m_thumbnail.convertToFormat(QImage::Format_ARGB32)
                      .scaled(kThumbnailSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}
