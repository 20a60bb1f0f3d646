#include "sampleproject.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <quazip.h>
#include <quazipfile.h>
#include <quazipnewinfo.h>

QString SampleProject::packVersion(quint16 a, quint16 b, quint16 c, quint16 d)
{
    const quint64 packed = (quint64(a) << 48) | (quint64(b) << 32) | (quint64(c) << 16) | quint64(d);
    return QString::number(qint64(packed));
}

bool SampleProject::packVersionText(const QString &version, QString &packed)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    if (parts.size() != 4)
        return false;
    quint16 numbers[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        const uint number = parts.at(i).toUInt(&ok, 10);
        if (!ok || number > 0xFFFF)
            return false;
        numbers[i] = quint16(number);
    }
    packed = packVersion(numbers[0], numbers[1], numbers[2], numbers[3]);
    return true;
}

QByteArray SampleProject::documentText(
    const QString &lastEditorVersion, const QString &formatVer, const QString &signature)
{
    return QStringLiteral("22 serialization::archive 17\n0 0 %1 %2 %3\n1 0 0\n")
        .arg(signature, formatVer, lastEditorVersion)
        .toUtf8();
}

QByteArray SampleProject::xmlText(
    const QString &lastEditorVersion, const QString &formatVer, const QString &signature, const QByteArray &thumbnail)
{
    const QString picture = thumbnail.isEmpty()
        ? QString()
        : QStringLiteral("    <thumbnail>%1</thumbnail>\n").arg(QString::fromLatin1(thumbnail.toBase64()));
    return QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<project>\n"
                          "  <header>\n"
                          "    <signature>%1</signature>\n"
                          "    <formatVer>%2</formatVer>\n"
                          "    <m_lastEditorVersion>%3</m_lastEditorVersion>\n"
                          "%4"
                          "  </header>\n"
                          "  <body/>\n"
                          "</project>\n")
        .arg(signature, formatVer, lastEditorVersion, picture)
        .toUtf8();
}

bool SampleProject::writeArchive(const QString &path, const QList<Entry> &entries, bool compressed)
{
    // Built in memory and written once: the zip writer seeks back to every
    // local header, and a file flushes at each seek.
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QuaZip zip(&buffer);
    if (!zip.open(QuaZip::mdCreate))
        return false;
    bool ok = true;
    // One time stamp for all: taking the clock for each entry is slow.
    QuaZipNewInfo info { QString() };
    for (const Entry &entry : entries) {
        QuaZipFile file(&zip);
        info.name = entry.name;
        if (!file.open(QIODevice::WriteOnly, info, nullptr, 0, compressed ? Z_DEFLATED : 0,
                compressed ? Z_DEFAULT_COMPRESSION : 0)) {
            ok = false;
            break;
        }
        ok = file.write(entry.data) == entry.data.size();
        file.close();
        if (!ok || file.getZipError() != ZIP_OK)
            break;
    }
    zip.close();
    return ok && zip.getZipError() == ZIP_OK && writeFile(path, bytes);
}

bool SampleProject::writePaddedArchive(
    const QString &path, const QString &entryName, const QByteArray &head, const QByteArray &filler, qint64 fillerBytes)
{
    if (filler.isEmpty())
        return false;
    QuaZip zip(path);
    if (!zip.open(QuaZip::mdCreate))
        return false;
    QuaZipFile file(&zip);
    // The fastest level: the filler repeats, so it shrinks well anyway.
    if (!file.open(QIODevice::WriteOnly, QuaZipNewInfo(entryName), nullptr, 0, Z_DEFLATED, Z_BEST_SPEED)) {
        zip.close();
        return false;
    }
    bool ok = file.write(head) == head.size();

    // Written in chunks of about a MiB, so the writer never holds the whole entry.
    QByteArray chunk;
    while (chunk.size() < 1024 * 1024)
        chunk.append(filler);
    qint64 left = fillerBytes;
    while (ok && left > 0) {
        const qint64 size = qMin<qint64>(left, chunk.size());
        ok = file.write(chunk.constData(), size) == size;
        left -= size;
    }
    file.close();
    ok = ok && file.getZipError() == ZIP_OK;
    zip.close();
    return ok && zip.getZipError() == ZIP_OK;
}

bool SampleProject::writeFile(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    const bool ok = file.write(data) == data.size();
    file.close();
    return ok && file.error() == QFileDevice::NoError;
}

bool SampleProject::writeProject(
    const QString &path, const QString &version, QString *errorText, const QByteArray &thumbnail)
{
    QString packed;
    if (!packVersionText(version, packed)) {
        if (errorText)
            *errorText = QStringLiteral("Not a version of four numbers from 0 to 65535: %1").arg(version);
        return false;
    }
    const QString suffix = QFileInfo(path).suffix().toLower();
    bool ok = false;
    if (suffix == QLatin1String("zmr")) {
        QList<Entry> entries { { QStringLiteral("document.txt"), documentText(packed) } };
        if (!thumbnail.isEmpty())
            entries.append({ QStringLiteral("thumbnail.png"), thumbnail });
        ok = writeArchive(path, entries);
    } else if (suffix == QLatin1String("xml")) {
        ok = writeFile(path, xmlText(packed, QStringLiteral("1"), QStringLiteral("zmr"), thumbnail));
    } else if (errorText) {
        *errorText = QStringLiteral("Unknown project suffix, expected zmr or xml: %1").arg(path);
    }
    if (!ok && errorText && errorText->isEmpty())
        *errorText = QStringLiteral("Failed to write: %1").arg(path);
    return ok;
}
