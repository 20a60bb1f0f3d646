#include "logwriter.h"

#include <QDateTime>

LogWriter::LogWriter() = default;

LogWriter::~LogWriter() = default;

void LogWriter::setLogFile(const QString &folder, const QString &name)
{
    setFileName(QStringLiteral("%1/%2.log").arg(folder, name));
}

void LogWriter::writeLine(const QString &message)
{
    const QString date = QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss"));
    append(QStringLiteral("%1 %2\n").arg(date, message));
}
