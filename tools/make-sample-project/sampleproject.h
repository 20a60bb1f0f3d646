#ifndef SAMPLEPROJECT_H
#define SAMPLEPROJECT_H

#include <QByteArray>
#include <QList>
#include <QString>

// Writes project files as the editor saves them, healthy or broken, for the
// tests and the demo: a zip archive with a "document.txt" header entry, or
// the XML form.
class SampleProject
{
public:
    struct Entry
    {
        QString name;
        QByteArray data;
    };

    // The editor's version word: A, B, C and D in four 16-bit fields of one
    // 64-bit number, given as decimal text.
    static QString packVersion(quint16 a, quint16 b, quint16 c, quint16 d);
    // "2.1.0.5" to its version word; false unless four numbers of 0 to 65535.
    static bool packVersionText(const QString &version, QString &packed);

    // Marker line and header line of the compressed form's text entry.
    static QByteArray documentText(const QString &lastEditorVersion, const QString &formatVer = QStringLiteral("12"),
        const QString &signature = QStringLiteral("zmr"));
    // A thumbnail, when given, is a "thumbnail" element of the header in base64.
    static QByteArray xmlText(const QString &lastEditorVersion, const QString &formatVer = QStringLiteral("1"),
        const QString &signature = QStringLiteral("zmr"), const QByteArray &thumbnail = QByteArray());

    // A zip archive holding the entries in this order; none gives an
    // archive without entries. Stored entries are much quicker to write.
    static bool writeArchive(const QString &path, const QList<Entry> &entries, bool compressed = true);
    // One entry: the head, then the filler repeated until fillerBytes more
    // bytes are written. Highly repetitive filler keeps the file small.
    static bool writePaddedArchive(const QString &path, const QString &entryName, const QByteArray &head,
        const QByteArray &filler, qint64 fillerBytes);
    static bool writeFile(const QString &path, const QByteArray &data);

    // A healthy project saved by the version "A.B.C.D", in the form that the
    // suffix names ("zmr" or "xml", any case).
    // A thumbnail (encoded picture bytes) is stored as the editor stores it:
    // a "thumbnail.png" entry after the header, or an element of the XML header.
    static bool writeProject(const QString &path, const QString &version, QString *errorText = nullptr,
        const QByteArray &thumbnail = QByteArray());
};

#endif // SAMPLEPROJECT_H
