#ifndef BINARYFILEWRITER_H
#define BINARYFILEWRITER_H

#include "baseobject.h"

#include <QByteArray>

// Writes raw bytes, such as a downloaded installer.
class BinaryFileWriter : public BaseObject
{
public:
    explicit BinaryFileWriter(const QString &filePath);
    // A file directly in the folder. A name that would reach outside it
    // ("..", a separator) is refused by every operation, so that a name
    // taken from a server cannot remove or write anything elsewhere.
    BinaryFileWriter(const QString &folder, const QString &fileName);

    // Why a name taken from a server may not be written in a folder: it
    // would reach outside it ("..", a separator). Empty when it may.
    static QString refusalFor(const QString &fileName);

    // True when no file stands at the path any more.
    bool removeFile();
    bool writeNew(const QByteArray &bytes);
    bool replace(const QByteArray &bytes);

private:
    bool isRefused();

    QString m_filePath;
    QString m_refusal;
};

#endif // BINARYFILEWRITER_H
