#ifndef TESTFILES_H
#define TESTFILES_H

#include <QBuffer>
#include <QDateTime>
#include <QFile>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>

// Raw file access for tests, past the launcher's own readers and writers.
class TestFiles
{
public:
    // The bytes of the file, empty when it cannot be read.
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool write(const QString &path, const QByteArray &contents)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(contents) == contents.size();
    }
    // Sets the modification time without touching the contents.
    static bool setModified(const QString &path, const QDateTime &time)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) && file.setFileTime(time, QFileDevice::FileModificationTime);
    }
    // The picture encoded as PNG, as a project or a server carries it.
    static QByteArray png(const QImage &image)
    {
        QByteArray bytes;
        QBuffer buffer(&bytes);
        return buffer.open(QIODevice::WriteOnly) && image.save(&buffer, "PNG") ? bytes : QByteArray();
    }
    // The root object of a JSON file, empty when there is none.
    static QJsonObject readObject(const QString &path) { return QJsonDocument::fromJson(read(path)).object(); }
};

#endif // TESTFILES_H
