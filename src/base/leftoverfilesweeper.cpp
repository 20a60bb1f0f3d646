#include "leftoverfilesweeper.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

// The dot and six letters that QSaveFile puts after a name. Most names lack
// them, and the pattern, compiled at its first match, is then not needed.
bool hasTemporarySuffix(const QString &name)
{
    if (name.size() < 8 || name.at(name.size() - 7) != QLatin1Char('.'))
        return false;
    for (int i = name.size() - 6; i < name.size(); ++i) {
        const char16_t c = name.at(i).unicode();
        if (!((c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z')))
            return false;
    }
    return true;
}

} // namespace

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
        const QString name = entry.fileName();
        if (!hasTemporarySuffix(name) || !m_pattern.match(name).hasMatch() || entry.lastModified() > limit)
            continue;
        if (QFile::remove(entry.filePath()))
            removed.append(entry.filePath());
        else if (failures)
            failures->append(entry.filePath());
    }
    return removed;
}
