#include "testlog.h"

#include <QRegularExpression>

TestLog::TestLog(const QString &path)
    : m_path(path)
{ }

QStringList TestLog::newLines() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_mark))
        return QStringList();
    QStringList lines = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.replaceInStrings(QRegularExpression("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2} "), QString());
}

bool TestLog::inOrder(const QStringList &lines, const QStringList &expected)
{
    int next = 0;
    for (const QString &line : lines)
        next += next < expected.size() && line == expected.at(next);
    return next == expected.size();
}
