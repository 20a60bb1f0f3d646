#include "editordocument.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QStringList>
#include <QTextStream>

#include <quazip.h>
#include <quazipfile.h>

namespace {

// Header lines: "<n> serialization::archive <n>..." marks the archive; the
// next line of at least five words carries signature, format and version.
const QString kMarkerWord = QStringLiteral("serialization::archive");
const QString kSignature = QStringLiteral("zmr");
const int kHeaderLines = 6;
const int kMinimumFormatVer = 12;

} // namespace

EditorDocument::EditorDocument(QObject *parent, const QString &filePath)
    : QObject(parent)
    , m_filePath(filePath)
    , m_entryName(QStringLiteral("document.txt"))
{ }

EditorDocument::~EditorDocument() = default;

bool EditorDocument::getVersion(QString &version, QString &edition, QDateTime &lastModified)
{
    if (!load())
        return false;
    if (m_versionText.isEmpty())
        return false;
    version = m_versionText;
    // Projects do not record an edition.
    edition = QStringLiteral("release");
    lastModified = m_lastModified;
    return true;
}

bool EditorDocument::load()
{
    if (!QFileInfo(m_filePath).exists())
        return false;
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return false;
    const bool result = readDocument(&file, QString());
    file.close();
    if (!result)
        return false;
    m_lastModified = QFileInfo(m_filePath).lastModified();
    return true;
}

bool EditorDocument::getThumbnail(QImage &image)
{
    // Deliberately the bare name, resolved against the current directory:
    // projects carry no picture the launcher reads, and the recent-projects
    // list falls back to its own when this fails.
    QImage loaded(64, 64, QImage::Format_ARGB32);
    if (!loaded.load(QStringLiteral("thumbnail.png")))
        return false;
    if (image.width() != 0 && image.height() != 0)
        image = loaded.scaled(image.size(), Qt::KeepAspectRatio, Qt::FastTransformation);
    else
        image = loaded.convertToFormat(QImage::Format_ARGB32);
    return true;
}

bool EditorDocument::readDocument(QIODevice *device, const QString &)
{
    // Only the name is used: the archive is opened anew on it.
    const QFile *file = qobject_cast<const QFile *>(device);
    if (!file)
        return false;

    QuaZip zip(file->fileName());
    // A file that is no archive does not open and so has no entries.
    zip.open(QuaZip::mdUnzip);
    const QStringList names = zip.isOpen() ? zip.getFileNameList() : QStringList();
    if (names.isEmpty()) {
        zip.close();
        return false;
    }
    // A project without "document.txt" has its first entry read instead.
    if (!zip.setCurrentFile(m_entryName, QuaZip::csInsensitive))
        zip.goToFirstFile();

    QuaZipFile entry(&zip);
    entry.open(QIODevice::ReadOnly);
    // Only the first six lines can decide, so a bounded prefix of the entry
    // is enough; reading it whole would let a crafted archive that inflates
    // to gigabytes exhaust memory.
    QByteArray bytes;
    while (bytes.size() < kMaxEntryBytes) {
        const QByteArray chunk = entry.read(kMaxEntryBytes - bytes.size());
        if (chunk.isEmpty())
            break;
        bytes.append(chunk);
    }
    entry.close();
    zip.close();

    return parseDocumentText(bytes, QString());
}

bool EditorDocument::parseDocumentText(const QByteArray &text, const QString &)
{
    if (text.isEmpty())
        return false;
    QTextStream stream(text);
    stream.setCodec("UTF-8");
    if (stream.atEnd())
        return false;

    int lineCount = 0;
    bool markerFound = false;
    while (!stream.atEnd()) {
        // Marker and header must both lie within the first six lines.
        if (lineCount > kHeaderLines - 1)
            return false;
        // Single blanks separate words; two in a row give an empty word.
        const QStringList words = stream.readLine().split(QLatin1Char(' '));
        if (markerFound) {
            if (words.size() >= 5) {
                m_signature = words.at(2);
                m_formatVer = words.at(3);
                m_lastEditorVersion = words.at(4);
                break;
            }
        } else if (words.size() >= 2 && words.at(1) == kMarkerWord) {
            markerFound = true;
        }
        ++lineCount;
    }

    if (!markerFound || m_signature != kSignature || m_formatVer.isEmpty() || m_lastEditorVersion.isEmpty())
        return false;
    if (m_formatVer.toInt(nullptr, 10) < kMinimumFormatVer)
        return false;

    setVersionFields(true);
    return true;
}

void EditorDocument::setVersionFields(bool oldVersionRule)
{
    const quint64 packed = static_cast<quint64>(m_lastEditorVersion.toLongLong(nullptr, 10));
    const quint16 a = static_cast<quint16>(packed >> 48);
    quint16 b = static_cast<quint16>(packed >> 32);
    quint16 c = static_cast<quint16>(packed >> 16);
    quint16 d = static_cast<quint16>(packed);

    if (oldVersionRule && a == 0 && b < 5) {
        b = 5;
        c = 0;
        d = 0;
    }

    m_versionText = QStringLiteral("%1.%2.%3").arg(a).arg(b).arg(c, 2, 10, QLatin1Char('0'));
    m_buildText = QString::number(d);
}
