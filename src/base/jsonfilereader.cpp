#include "jsonfilereader.h"

#include <QJsonParseError>

JsonFileReader::JsonFileReader(const QString &filePath)
    : TextFileReader(filePath)
{ }

bool JsonFileReader::parse()
{
    if (!read())
        return false;

    QJsonParseError error;
    m_document = QJsonDocument::fromJson(m_contents.toUtf8(), &error);
    if (error.error == QJsonParseError::NoError)
        return true;

    m_errorText = QStringLiteral("Failed to parse JSON document: code[%1] message[%2]")
                      .arg(static_cast<int>(error.error))
                      .arg(error.errorString());
    return false;
}
