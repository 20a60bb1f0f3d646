#include "testlog.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

TestLog::TestLog(const QString &path)
    : m_path(path)
{ }

void TestLog::mark()
{
    m_mark = QFileInfo(m_path).size();
}

QStringList TestLog::newLines() const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly) || !file.seek(m_mark))
        return QStringList();
    return messages(QString::fromUtf8(file.readAll()));
}

QStringList TestLog::messages(const QString &logText)
{
    static const QRegularExpression stamp(QStringLiteral("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2} "));
    QStringList lines = logText.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (QString &line : lines)
        line.remove(stamp);
    return lines;
}

bool TestLog::inOrder(const QStringList &lines, const QStringList &expected)
{
    int next = 0;
    for (const QString &line : lines) {
        if (next < expected.size() && line == expected.at(next))
            ++next;
    }
    return next == expected.size();
}
