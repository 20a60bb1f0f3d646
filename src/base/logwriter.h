#ifndef LOGWRITER_H
#define LOGWRITER_H

#include "textfilewriter.h"

// The process log: "yyyy/MM/dd hh:mm:ss message" lines appended to one file
// that every launcher process shares. No levels, no rotation.
class LogWriter : public TextFileWriter
{
public:
    LogWriter();
    ~LogWriter() override;

    void setLogFile(const QString &folder, const QString &name);
    // A line that cannot be appended is lost without a word.
    void writeLine(const QString &message);
};

#endif // LOGWRITER_H
