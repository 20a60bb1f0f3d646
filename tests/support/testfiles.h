#ifndef TESTFILES_H
#define TESTFILES_H

#include <QByteArray>
#include <QJsonObject>
#include <QString>

// Raw file access for tests, past the launcher's own readers and writers.
class TestFiles
{
public:
    // The bytes of the file, empty when it cannot be read.
    static QByteArray read(const QString &path);
    static bool write(const QString &path, const QByteArray &contents);
    // The root object of a JSON file, empty when there is none.
    static QJsonObject readObject(const QString &path);
};

#endif // TESTFILES_H
