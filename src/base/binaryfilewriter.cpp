#include "binaryfilewriter.h"

#include <QFile>

BinaryFileWriter::BinaryFileWriter(const QString &filePath)
    : m_filePath(filePath)
{ }

BinaryFileWriter::BinaryFileWriter(const QString &folder, const QString &fileName)
    : m_filePath(fileName.isEmpty() ? QString() : QStringLiteral("%1/%2").arg(folder, fileName))
    , m_refusal(refusalFor(fileName))
{ }

QString BinaryFileWriter::refusalFor(const QString &fileName)
{
    if (fileName == QLatin1String(".") || fileName == QLatin1String("..") || fileName.contains(QLatin1Char('/'))
        || fileName.contains(QLatin1Char('\\')))
        return QStringLiteral("File name is not allowed: %1").arg(fileName);
    return QString();
}

bool BinaryFileWriter::isRefused()
{
    if (m_refusal.isEmpty())
        return false;
    m_errorText = m_refusal;
    return true;
}

bool BinaryFileWriter::removeFile()
{
    if (isRefused())
        return false;
    if (!QFile::exists(m_filePath))
        return true;
    if (!QFile::remove(m_filePath)) {
        m_errorText = QStringLiteral("Failed to remove file: %1").arg(m_filePath);
        return false;
    }
    m_infoText = QStringLiteral("File is removed: %1").arg(m_filePath);
    return true;
}

bool BinaryFileWriter::writeNew(const QByteArray &bytes)
{
    if (isRefused())
        return false;
    if (m_filePath.isEmpty()) {
        m_errorText = QStringLiteral("File name is blank.");
        return false;
    }
    QFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly)) {
        m_errorText = QStringLiteral("Failed to open new file: %1").arg(m_filePath);
        return false;
    }
    const qint64 written = file.write(bytes);
    file.close();
    // A short count is taken as success; only an outright failure is reported.
    if (written < 0) {
        m_errorText = QStringLiteral("Failed to write: %1").arg(m_filePath);
        return false;
    }
    return true;
}

bool BinaryFileWriter::replace(const QByteArray &bytes)
{
    return removeFile() && writeNew(bytes);
}
