#ifndef PARTFILE_H
#define PARTFILE_H

#include "baseobject.h"

#include <QFile>
#include <QStringList>

// The hidden file beside an installer that collects its bytes as they
// arrive (".NAME.part"), and a small record beside it (".NAME.part.json")
// of where they came from and which version of the file the server said
// they belong to, so that a later try can continue where this one stopped.
// The installer's own name is touched only by commit(), in one rename, so it
// never holds a partial file.
class PartFile : public BaseObject
{
public:
    // The file name must already be known to stay inside the folder.
    PartFile(const QString &folder, const QString &fileName);

    QString getPartPath() const { return m_partPath; }
    QString getRecordPath() const { return m_partPath + QStringLiteral(".json"); }
    QString getTargetPath() const { return m_targetPath; }

    // Looks at what an earlier try left for this url and returns how many of
    // its bytes a request can continue from; 0 when nothing can be continued.
    // A left-over that cannot be continued is removed when it is ours and
    // moved aside when it may not be (a folder, unreadable, longer than the
    // whole file, no record of ours); the info text says what happened.
    qint64 inspect(const QString &url);
    // The server's ETag or Last-Modified for the bytes found by inspect().
    QByteArray getValidator() const { return m_validator; }
    // The whole length that the record names, -1 when unknown.
    qint64 getRecordedTotal() const { return m_recordedTotal; }

    // Opens the part for writing: after the bytes already there, or empty.
    bool open(bool append);
    bool write(const char *data, qint64 size);
    // Records the url, the server's validator and the whole length (-1 when
    // unknown) of the bytes being written.
    bool remember(const QString &url, const QByteArray &validator, qint64 total);
    // The system's words for the last failure to open or write, such as
    // "No space left on device", without the path the error text names.
    QString getReason() const { return m_reason; }
    // Whether what has been written can be continued later.
    bool isContinuable() const { return !m_validator.isEmpty(); }
    // Closes the part and keeps it with its record for a later try.
    void close() { m_file.close(); }
    // Closes the part and moves it over the installer's name.
    bool commit();
    // Closes and removes the part and its record.
    void discard();

    // Removes parts of ours (those with a record) and orphaned records in
    // the folder that nothing has touched for that many days; returns their
    // paths, and those that could not be removed in failures.
    static QStringList removeStale(const QString &folder, int days, QStringList *failures);

private:
    bool moveAside(const QString &reason);
    bool removeBoth(const QString &reason);

    QString m_partPath;
    QString m_targetPath;
    QFile m_file;
    QByteArray m_validator;
    qint64 m_recordedTotal = -1;
    QString m_reason;
};

#endif // PARTFILE_H
