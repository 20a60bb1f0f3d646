#ifndef RECENTUSEDITEM_H
#define RECENTUSEDITEM_H

#include "historyinfo.h"

#include <QImage>
#include <QMetaType>
#include <QString>

class ProcessLauncher;

// The value behind one card of the recent projects: the project's record,
// its picture and the texts the card shows. Travels in a QVariant.
class RecentUsedItem
{
public:
    RecentUsedItem() = default;
    RecentUsedItem(ProcessLauncher *launcher, const HistoryInfo &history);
    virtual ~RecentUsedItem() = default;

    QImage thumbnail() const { return m_thumbnail; }
    QString fileName() const { return m_fileName; }
    QString timestamp() const { return m_timestamp; }
    QString versionText() const { return m_versionText; }
    HistoryInfo historyInfo() const { return m_history; }

private:
    QImage m_thumbnail;
    ProcessLauncher *m_launcher = nullptr;
    HistoryInfo m_history;
    QString m_fileName;
    QString m_timestamp;
    QString m_versionText;
};

Q_DECLARE_METATYPE(RecentUsedItem)

#endif // RECENTUSEDITEM_H
