#include "partfile.h"

#include "brokenfilemover.h"
#include "systemenvironment.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>

namespace {

const QString kUrlKey = QStringLiteral("url");
const QString kValidatorKey = QStringLiteral("validator");
const QString kLengthKey = QStringLiteral("length");

// Something stands at the path, a dangling link included.
bool isTaken(const QFileInfo &info)
{
    return info.exists() || info.isSymLink();
}

} // namespace

PartFile::PartFile(const QString &folder, const QString &fileName)
    : m_partPath(QStringLiteral("%1/.%2.part").arg(folder, fileName))
    , m_targetPath(QStringLiteral("%1/%2").arg(folder, fileName))
    , m_file(m_partPath)
{ }

qint64 PartFile::inspect(const QString &url)
{
    m_validator.clear();
    m_recordedTotal = -1;
    const QFileInfo part(m_partPath);
    if (!isTaken(part)) {
        QFile::remove(getRecordPath());
        return 0;
    }
    // Bytes that might be someone else's are kept for a look, never written into.
    if (part.isSymLink() || !part.isFile()) {
        moveAside(QStringLiteral("not a plain file"));
        return 0;
    }
    QFile probe(m_partPath);
    if (!probe.open(QIODevice::ReadOnly)) {
        moveAside(QStringLiteral("unreadable: %1").arg(probe.errorString()));
        return 0;
    }
    const qint64 size = probe.size();
    probe.close();

    QFile recordFile(getRecordPath());
    const QJsonObject record
        = recordFile.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(recordFile.readAll()).object() : QJsonObject();
    if (record.isEmpty()) {
        // An empty part is what a try leaves that stopped before any answer.
        if (size == 0) {
            removeBoth(QStringLiteral("empty"));
            return 0;
        }
        moveAside(QStringLiteral("no record of where it came from"));
        return 0;
    }
    const qint64 total = qint64(record.value(kLengthKey).toDouble(-1));
    if (total >= 0 && size > total) {
        moveAside(QStringLiteral("%1 bytes, longer than the whole file of %2").arg(size).arg(total));
        return 0;
    }
    const QByteArray validator = record.value(kValidatorKey).toString().toLatin1();
    if (record.value(kUrlKey).toString() != url) {
        removeBoth(QStringLiteral("from another address"));
        return 0;
    }
    if (validator.isEmpty() || size == 0) {
        removeBoth(QStringLiteral("nothing to continue from"));
        return 0;
    }
    if (size == total) {
        removeBoth(QStringLiteral("complete but never checked"));
        return 0;
    }
    m_validator = validator;
    m_recordedTotal = total;
    m_infoText = QStringLiteral("Continuing %1 after %2 bytes").arg(m_partPath).arg(size);
    return size;
}

bool PartFile::moveAside(const QString &reason)
{
    BrokenFileMover mover(m_partPath);
    const bool moved = mover.moveAside();
    if (moved)
        m_infoText = QStringLiteral("%1 (%2)").arg(mover.getInfoText(), reason);
    else
        m_errorText = QStringLiteral("%1 (%2)").arg(mover.getErrorText(), reason);
    QFile::remove(getRecordPath());
    return moved;
}

bool PartFile::removeBoth(const QString &reason)
{
    QFile::remove(getRecordPath());
    if (!QFile::remove(m_partPath)) {
        m_errorText = QStringLiteral("Failed to remove partial file: %1 (%2)").arg(m_partPath, reason);
        return false;
    }
    m_infoText = QStringLiteral("Removed partial file: %1 (%2)").arg(m_partPath, reason);
    return true;
}

bool PartFile::open(bool append)
{
    // Unbuffered: every piece goes straight to the system, with no copy in
    // between, and a failed write is seen at once.
    const QIODevice::OpenMode mode
        = QIODevice::WriteOnly | QIODevice::Unbuffered | (append ? QIODevice::Append : QIODevice::Truncate);
    if (!m_file.open(mode)) {
        m_reason = m_file.errorString();
        m_errorText = QStringLiteral("Failed to open new file: %1: %2").arg(m_partPath, m_file.errorString());
        return false;
    }
    if (!append)
        m_validator.clear();
    return true;
}

bool PartFile::write(const char *data, qint64 size)
{
    if (m_file.write(data, size) == size)
        return true;
    m_reason = m_file.errorString();
    m_errorText = QStringLiteral("Failed to write: %1: %2").arg(m_partPath, m_file.errorString());
    return false;
}

bool PartFile::remember(const QString &url, const QByteArray &validator, qint64 total)
{
    m_validator = validator;
    const QJsonObject record { { kUrlKey, url }, { kValidatorKey, QString::fromLatin1(validator) },
        { kLengthKey, double(total) } };
    QSaveFile file(getRecordPath());
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(record).toJson()) < 0 || !file.commit()) {
        m_reason = file.errorString();
        m_errorText = QStringLiteral("Failed to write: %1: %2").arg(getRecordPath(), file.errorString());
        return false;
    }
    return true;
}

bool PartFile::commit()
{
    m_file.close();
    if (m_file.error() != QFileDevice::NoError) {
        m_reason = m_file.errorString();
        m_errorText = QStringLiteral("Failed to write: %1: %2").arg(m_partPath, m_file.errorString());
        return false;
    }
    QString reason;
    if (!SystemEnvironment::replaceFile(m_partPath, m_targetPath, reason)) {
        m_reason = reason;
        m_errorText = QStringLiteral("Failed to replace %1: %2").arg(m_targetPath, reason);
        return false;
    }
    QFile::remove(getRecordPath());
    return true;
}

void PartFile::discard()
{
    m_file.close();
    QFile::remove(m_partPath);
    QFile::remove(getRecordPath());
}

QStringList PartFile::removeStale(const QString &folder, int days, QStringList *failures)
{
    static const QRegularExpression record(QStringLiteral("^\\..+\\.part\\.json$"));
    const QDateTime limit = QDateTime::currentDateTime().addDays(-days);
    QStringList removed;
    const QFileInfoList entries = QDir(folder).entryInfoList(QDir::Files | QDir::Hidden);
    for (const QFileInfo &entry : entries) {
        if (!record.match(entry.fileName()).hasMatch())
            continue;
        // A part still being written, or one the user may still continue, is
        // newer than its record.
        const QFileInfo part(entry.filePath().chopped(5));
        QDateTime touched = entry.lastModified();
        if (part.exists() && part.lastModified() > touched)
            touched = part.lastModified();
        if (touched > limit)
            continue;
        for (const QFileInfo &file : { part, entry }) {
            if (!isTaken(file))
                continue;
            if (QFile::remove(file.filePath()))
                removed.append(file.filePath());
            else if (failures)
                failures->append(file.filePath());
        }
    }
    return removed;
}
