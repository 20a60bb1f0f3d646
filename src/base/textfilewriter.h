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

    // Overwrites whatever is there, in one step: readers never see a
    // half-written file.
    bool writeNew(const QString &text);
    // As writeNew, for a file that is expected to exist; fails without words
    // when something other than a file stands at the path.
    bool replace(const QString &text);
    bool append(const QString &text);

protected:
    QString m_filePath;

private:
    bool commit(const QString &text);
};

#endif // TEXTFILEWRITER_H
