#ifndef RECENTUSEDITEM_H
#define RECENTUSEDITEM_H

#include "historyinfo.h"

#include <QImage>
#include <QMetaType>
#include <QSize>
#include <QString>

class ProcessLauncher;

// The value behind one card of the recent projects: the project's record,
// its picture and the texts the card shows. Travels in a QVariant. It is
// made with the default picture; the project's own is read elsewhere, off
// the main thread, and set when it has arrived.
class RecentUsedItem
{
public:
    RecentUsedItem() = default;
    RecentUsedItem(ProcessLauncher *launcher, const HistoryInfo &history);
    virtual ~RecentUsedItem() = default;

    QImage getThumbnail() const { return m_thumbnail; }
    void setThumbnail(const QImage &thumbnail) { m_thumbnail = thumbnail; }
    QString fileName() const { return m_fileName; }
    QString timestamp() const { return m_timestamp; }
    QString versionText() const { return m_versionText; }
    // The version as a screen reader says it: the number, and an in-house
    // edition named.
    QString getSpokenVersion() const { return m_spokenVersion; }
    HistoryInfo historyInfo() const { return m_history; }

    // The picture of a card whose project has none of its own, at the size
    // of the cards; null when the resource cannot be read.
    static QImage defaultThumbnail();
    static QSize thumbnailSize();

private:
    QImage m_thumbnail;
    ProcessLauncher *m_launcher = nullptr;
    HistoryInfo m_history;
    QString m_fileName;
    QString m_timestamp;
    QString m_versionText;
    QString m_spokenVersion;
};

Q_DECLARE_METATYPE(RecentUsedItem)

#endif // RECENTUSEDITEM_H
