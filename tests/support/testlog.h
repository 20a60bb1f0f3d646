#ifndef TESTLOG_H
#define TESTLOG_H

#include <QString>
#include <QStringList>

// The lines a launcher appended to its log since a mark, without their date,
// so that tests compare whole messages.
class TestLog
{
public:
    explicit TestLog(const QString &path);

    QString path() const { return m_path; }
    // From here on: what is in the log now no longer counts as new.
    void mark();
    QStringList newLines() const;

    // True when the expected lines stand among the lines in this order,
    // others between them allowed.
    static bool inOrder(const QStringList &lines, const QStringList &expected);

private:
    QString m_path;
    qint64 m_mark = 0;
};

#endif // TESTLOG_H
