#include "textfilewriter.h"

#include <QFile>
#include <QTextStream>

TextFileWriter::TextFileWriter() = default;

TextFileWriter::TextFileWriter(const QString &filePath)
    : m_filePath(filePath)
{
}

TextFileWriter::~TextFileWriter() = default;

void TextFileWriter::setFileName(const QString &filePath)
{
    m_filePath = filePath;
}

bool TextFileWriter::writeNew(const QString &text)
{
    if (m_filePath.isEmpty())
        return false;

    QFile file(m_filePath);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        m_errorText = QStringLiteral("Failed to open new file: %1").arg(m_filePath);
        return false;
    }
    QTextStream stream(&file);
    stream << text;
    stream.flush();
    file.close();
    return true;
}

bool TextFileWriter::replace(const QString &text)
{
    // A failed removal leaves no words of its own; the caller's text then
    // describes an earlier state.
    if (QFile::exists(m_filePath) && !QFile::remove(m_filePath))
        return false;
    return writeNew(text);
}

bool TextFileWriter::append(const QString &text)
{
    if (m_filePath.isEmpty())
        return false;

    QFile file(m_filePath);
    if (!file.open(QIODevice::Append | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    stream << text;
    stream.flush();
    file.close();
    return true;
}
