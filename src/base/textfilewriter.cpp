#include "textfilewriter.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTextStream>

TextFileWriter::TextFileWriter() = default;

TextFileWriter::TextFileWriter(const QString &filePath)
    : m_filePath(filePath)
{ }

TextFileWriter::~TextFileWriter() = default;

void TextFileWriter::setFileName(const QString &filePath)
{
    m_filePath = filePath;
}

bool TextFileWriter::writeNew(const QString &text)
{
    if (m_filePath.isEmpty())
        return false;
    return commit(text);
}

bool TextFileWriter::replace(const QString &text)
{
    // Something that is no file (a folder) cannot be replaced; like a failed
    // removal this leaves no words of its own, so the caller's text then
    // describes an earlier state.
    if (QFile::exists(m_filePath) && !QFileInfo(m_filePath).isFile())
        return false;
    return writeNew(text);
}

bool TextFileWriter::commit(const QString &text)
{
    // Written beside the target and renamed over it: another launcher
    // process reading the state file meanwhile sees the old text or the new
    // one, never an empty or half-written file, and a crash leaves the old
    // file in place. Where no file can be made beside it, the text is written
    // in place instead.
    QSaveFile file(m_filePath);
    file.setDirectWriteFallback(true);
    if (file.open(QIODevice::WriteOnly | QIODevice::Text)) {
        QTextStream stream(&file);
        stream << text;
        stream.flush();
        if (file.commit())
            return true;
    }
    m_errorText = QStringLiteral("Failed to open new file: %1").arg(m_filePath);
    return false;
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
