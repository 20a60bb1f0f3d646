#include "testlog.h"

#include <QFile>
#include <QFileInfo>

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
    if (!file.open(QIODevice::ReadOnly))
        return QStringList();
    file.seek(m_mark);
    QStringList lines;
    const QStringList raw = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : raw)
        lines.append(line.mid(QStringLiteral("yyyy/MM/dd hh:mm:ss ").size()));
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
