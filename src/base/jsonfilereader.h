#ifndef JSONFILEREADER_H
#define JSONFILEREADER_H

#include "textfilereader.h"

#include <QJsonDocument>

class JsonFileReader : public TextFileReader
{
public:
    explicit JsonFileReader(const QString &filePath);

    // True when the file was read and holds valid JSON. On a parse error the
    // document is the null document that the parser gave.
    bool parse();
    QJsonDocument getDocument() const { return m_document; }

private:
    QJsonDocument m_document;
};

#endif // JSONFILEREADER_H
