#ifndef TEXTFILEWRITER_H
#define TEXTFILEWRITER_H

#include "baseobject.h"

// Writes text files in the system's 8-bit encoding. No file stays open
// between two calls.
class TextFileWriter : public BaseObject
{
public:
    TextFileWriter();
    explicit TextFileWriter(const QString &filePath);
    virtual ~TextFileWriter();

    void setFileName(const QString &filePath);

    // Overwrites whatever is there.
    bool writeNew(const QString &text);
    // Removes the old file, then writes. Not atomic: the state files that use
    // it are rebuilt at the next start when a crash leaves none.
    bool replace(const QString &text);
    bool append(const QString &text);

protected:
    QString m_filePath;
};

#endif // TEXTFILEWRITER_H
