#ifndef TESTLOG_H
#define TESTLOG_H

#include <QFile>
#include <QStringList>

// The messages that a launcher log gains, without their date.
class TestLog
{
public:
    explicit TestLog(const QString &path);

    // After mark(), newLines() gives the lines written since, each without its "yyyy/MM/dd hh:mm:ss " stamp.
    void mark() { m_mark = QFile(m_path).size(); }
    QStringList newLines() const;
    // True when the expected lines stand among the lines in this order.
    static bool inOrder(const QStringList &lines, const QStringList &expected);

private:
    QString m_path;
    qint64 m_mark = 0;
};

#endif // TESTLOG_H
