#include "brokenfilemover.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>

BrokenFileMover::BrokenFileMover(const QString &filePath)
    : m_filePath(filePath)
{ }

bool BrokenFileMover::moveAside()
{
    const QString dated = QStringLiteral("%1.%2").arg(
        m_filePath, QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-hhmmss")));
    QString target = dated;
    for (int count = 2; QFileInfo::exists(target); ++count)
        target = QStringLiteral("%1-%2").arg(dated).arg(count);

    // QFile renames folders too, and says why when it cannot.
    QFile file(m_filePath);
    if (!file.rename(target)) {
        m_errorText = QStringLiteral("Failed to move aside: %1: %2").arg(m_filePath, file.errorString());
        return false;
    }
    m_movedPath = target;
    m_infoText = QStringLiteral("Moved aside: %1 to %2").arg(m_filePath, target);
    return true;
}
