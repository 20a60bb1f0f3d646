#ifndef LEFTOVERFILESWEEPER_H
#define LEFTOVERFILESWEEPER_H

#include <QRegularExpression>
#include <QString>
#include <QStringList>

// Finds what interrupted writes left in a folder. State files are written
// through QSaveFile, which, where the system offers no unnamed file, writes
// "NAME.XXXXXX" (six letters) beside the target and renames it over the
// target at the end: a process killed in between leaves it behind.
class LeftoverFileSweeper
{
public:
    // targetNames: a pattern matching the whole names of the files whose
    // left-overs are looked for, such as "ZanmirManager\\.json|\\d{8,}\\.html".
    LeftoverFileSweeper(const QString &folder, const QString &targetNames);

    // Removes the left-overs last changed at least that many seconds ago,
    // younger ones may still be written. Returns the paths removed and, in
    // failures, those that could not be.
    QStringList sweep(qint64 minimumAgeSecs, QStringList *failures = nullptr) const;

private:
    QString m_folder;
    QRegularExpression m_pattern;
};

#endif // LEFTOVERFILESWEEPER_H
