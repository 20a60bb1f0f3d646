#ifndef BINARYFILEWRITER_H
#define BINARYFILEWRITER_H

#include "baseobject.h"

#include <QByteArray>

// Writes raw bytes, such as a downloaded installer.
class BinaryFileWriter : public BaseObject
{
public:
    explicit BinaryFileWriter(const QString &filePath);

    // True when no file stands at the path any more.
    bool removeFile();
    bool writeNew(const QByteArray &bytes);
    bool replace(const QByteArray &bytes);

private:
    QString m_filePath;
};

#endif // BINARYFILEWRITER_H
