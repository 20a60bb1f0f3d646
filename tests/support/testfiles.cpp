#include "testfiles.h"

#include <QFile>
#include <QJsonDocument>

QByteArray TestFiles::read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool TestFiles::write(const QString &path, const QByteArray &contents)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(contents) == contents.size();
}

QJsonObject TestFiles::readObject(const QString &path)
{
    return QJsonDocument::fromJson(read(path)).object();
}
