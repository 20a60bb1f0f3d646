#ifndef TESTLOG_H
#define TESTLOG_H

#include <QString>
#include <QStringList>

// The messages of a launcher log, without their date.
class TestLog
{
public:
    explicit TestLog(const QString &path);

    // From here on: what is in the log now no longer counts as new.
    void mark();
    QStringList newLines() const;

    // Each line after its "yyyy/MM/dd hh:mm:ss " stamp; one without stays whole.
    static QStringList messages(const QString &logText);
    // True when the expected lines stand among the lines in this order.
    static bool inOrder(const QStringList &lines, const QStringList &expected);

private:
    QString m_path;
    qint64 m_mark = 0;
};

#endif // TESTLOG_H
