#ifndef TEXTFILEREADER_H
#define TEXTFILEREADER_H

#include "baseobject.h"

// Reads a whole text file in the system's 8-bit encoding.
class TextFileReader : public BaseObject
{
public:
    explicit TextFileReader(const QString &filePath);

    bool fileExists();
    // True when the contents were read and are not the empty string.
    bool read();
    QString getContents() const { return m_contents; }

protected:
    QString m_filePath;
    QString m_contents;
};

#endif // TEXTFILEREADER_H
