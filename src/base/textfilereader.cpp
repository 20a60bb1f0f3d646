#include "textfilereader.h"

#include <QFile>
#include <QTextStream>

TextFileReader::TextFileReader(const QString &filePath)
    : m_filePath(filePath)
{ }

bool TextFileReader::fileExists()
{
    if (!QFile::exists(m_filePath)) {
        m_errorText = QStringLiteral("File does not exist: %1").arg(m_filePath);
        return false;
    }
    return true;
}

bool TextFileReader::read()
{
    if (!fileExists())
        return false;

    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_errorText = QStringLiteral("Failed to read from file: %1").arg(m_filePath);
        return false;
    }
    QTextStream stream(&file);
    m_contents = stream.readAll();
    if (m_contents.isEmpty()) {
        m_errorText = QStringLiteral("Blank contents in file: %1").arg(m_filePath);
        return false;
    }
    file.close();
    return true;
}
