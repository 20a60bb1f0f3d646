#include "leftoverfilesweeper.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

LeftoverFileSweeper::LeftoverFileSweeper(const QString &folder, const QString &targetNames)
    : m_folder(folder)
    , m_pattern(QRegularExpression::anchoredPattern(QStringLiteral("(%1)\\.[A-Za-z]{6}").arg(targetNames)))
{ }

QStringList LeftoverFileSweeper::sweep(qint64 minimumAgeSecs, QStringList *failures) const
{
    QStringList removed;
    const QDateTime limit = QDateTime::currentDateTime().addSecs(-minimumAgeSecs);
    const QFileInfoList entries = QDir(m_folder).entryInfoList(QDir::Files | QDir::Hidden | QDir::System);
    for (const QFileInfo &entry : entries) {
        if (!m_pattern.match(entry.fileName()).hasMatch() || entry.lastModified() > limit)
            continue;
        if (QFile::remove(entry.filePath()))
            removed.append(entry.filePath());
        else if (failures)
            failures->append(entry.filePath());
    }
    return removed;
}
