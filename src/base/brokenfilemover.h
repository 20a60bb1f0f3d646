#ifndef BROKENFILEMOVER_H
#define BROKENFILEMOVER_H

#include "baseobject.h"

#include <QString>

// Moves a state file that can be neither read nor replaced out of the way,
// under a dated name beside it, so that a new one can be made in its place
// while the old one stays for a look. Whatever stands at the path moves, a
// folder included.
class BrokenFileMover : public BaseObject
{
public:
    explicit BrokenFileMover(const QString &filePath);

    // "NAME.yyyyMMdd-hhmmss", with "-2", "-3"... when that name is taken.
    bool moveAside();
    QString getMovedPath() const { return m_movedPath; }

private:
    QString m_filePath;
    QString m_movedPath;
};

#endif // BROKENFILEMOVER_H
