#ifndef TESTLOG_H
#define TESTLOG_H

#include <QString>
#include <QStringList>

// The messages of a launcher log without their date, so that tests compare
// whole messages.
class TestLog
{
public:
    explicit TestLog(const QString &path);

    // From here on: what is in the log now no longer counts as new.
    void mark();
    QStringList newLines() const;

    // The message of each line after its "yyyy/MM/dd hh:mm:ss " stamp; a
    // line without the stamp stays whole, so it matches no message.
    static QStringList messages(const QString &logText);
    // True when the expected lines stand among the lines in this order,
    // others between them allowed.
    static bool inOrder(const QStringList &lines, const QStringList &expected);

private:
    QString m_path;
    qint64 m_mark = 0;
};

#endif // TESTLOG_H
