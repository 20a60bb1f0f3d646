#ifndef THUMBNAILCACHE_H
#define THUMBNAILCACHE_H

#include "baseobject.h"

#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>

// Projects' pictures as they were last read, scaled for showing, kept on disk
// between runs so that a project that has not changed is not opened again.
// One file per project; each entry names the project's path, size and
// modification time and the picture size it was made for, and counts only
// while all of them still hold. An entry that is damaged or was written in
// another layout is treated as missing, and the next store replaces it.
// Safe to use from several threads at once: an entry is replaced whole.
class ThumbnailCache : public BaseObject
{
public:
    // What a project file looked like when its picture was read.
    struct Stamp
    {
        QString path;
        qint64 size = -1;
        qint64 modifiedMs = 0;
    };

    ThumbnailCache(const QString &folder, const QSize &pictureSize);

    // The pictures' folder in the user's cache location.
    static QString defaultFolder();
    // False when there is no such file. Taken before the project is read, so
    // that a change during the read shows at the next look-up.
    static bool stampOf(const QString &path, Stamp &stamp);

    // True when an entry for the project as the stamp describes it exists;
    // the picture is then the one stored, null for a project without one.
    bool find(const Stamp &stamp, QImage &picture) const;
    // Stores the picture (null: the project has none). A project written
    // so lately that a second write could keep its size and time is not
    // stored: it is read again next time.
    bool store(const Stamp &stamp, const QImage &picture);
    // Removes the entries of every project but these.
    void prune(const QStringList &keptPaths);

    QString entryPath(const QString &projectPath) const;

private:
    QString m_folder;
    QSize m_pictureSize;
};

#endif // THUMBNAILCACHE_H
