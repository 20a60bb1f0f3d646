#include "editordocument.h"

#include <QBuffer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QImageReader>
#include <QSemaphore>
#include <QStringList>
#include <QTextStream>

#include <quazip.h>
#include <quazipfile.h>
#include <unzip.h>

#include <cstring>
#include <limits>

namespace {

// Header lines: "<n> serialization::archive <n>..." marks the archive; the
// next line of at least five words carries signature, format and version.
const QString kMarkerWord = QStringLiteral("serialization::archive");
const QString kSignature = QStringLiteral("zmr");
const int kHeaderLines = 6;
const int kMinimumFormatVer = 12;
const qint64 kReadChunk = 4096;
const int kCaseInsensitive = 2;
// The editor stores the picture among the first entries; the search stops
// there, so that a huge archive costs no more than a small one.
const int kThumbnailSearchEntries = 16;
const QString kThumbnailEntry = QStringLiteral("thumbnail.png");
// Pictures decoded at the same time, in all threads together.
const int kConcurrentDecodes = 2;

// minizip reads an archive's directory a few bytes at a time and seeks
// before each entry. Through QFile, whose buffer every seek throws away,
// walking the names of 200,000 entries took seconds; served from a mapping
// of the file it takes a tenth of a second.
struct MappedArchive
{
    const uchar *data = nullptr;
    quint64 size = 0;
    quint64 position = 0;
};

MappedArchive *mappedArchive(voidpf stream)
{
    return static_cast<MappedArchive *>(stream);
}

voidpf ZCALLBACK openMapped(voidpf opaque, voidpf, int)
{
    return opaque;
}

uLong ZCALLBACK readMapped(voidpf, voidpf stream, void *buffer, uLong size)
{
    MappedArchive *archive = mappedArchive(stream);
    const quint64 count
        = archive->position < archive->size ? qMin<quint64>(size, archive->size - archive->position) : 0;
    std::memcpy(buffer, archive->data + archive->position, count);
    archive->position += count;
    return static_cast<uLong>(count);
}

uLong ZCALLBACK writeMapped(voidpf, voidpf, const void *, uLong)
{
    return 0;
}

uLong ZCALLBACK tellMapped(voidpf, voidpf stream)
{
    return static_cast<uLong>(mappedArchive(stream)->position);
}

int ZCALLBACK seekMapped(voidpf, voidpf stream, uLong offset, int origin)
{
    MappedArchive *archive = mappedArchive(stream);
    const quint64 base = origin == ZLIB_FILEFUNC_SEEK_CUR ? archive->position
        : origin == ZLIB_FILEFUNC_SEEK_END                ? archive->size
                                                          : 0;
    if (offset > archive->size - base)
        return -1;
    archive->position = base + offset;
    return 0;
}

int ZCALLBACK closeMapped(voidpf, voidpf)
{
    return 0;
}

int ZCALLBACK errorMapped(voidpf, voidpf)
{
    return 0;
}

// Maps the archive and returns the functions that read it from there. With
// no mapping (a file that cannot be mapped, or one past what minizip's
// offsets reach here) data stays null and QuaZip reads the file itself.
zlib_filefunc_def mapArchive(QFile &archive, MappedArchive &mapped)
{
    if (archive.open(QIODevice::ReadOnly) && archive.size() > 0
        && quint64(archive.size()) <= std::numeric_limits<uLong>::max()) {
        mapped.data = archive.map(0, archive.size());
        mapped.size = quint64(archive.size());
    }
    return { openMapped, readMapped, writeMapped, tellMapped, seekMapped, closeMapped, errorMapped, &mapped };
}

// A project's archive, opened for reading from a mapping where it can be.
class ProjectArchive
{
public:
    explicit ProjectArchive(const QString &path)
        : m_file(path)
        , m_api(mapArchive(m_file, m_mapped))
        , m_zip(path)
    {
        // A file that is no archive does not open and so has no entries. The
        // count comes from the end of the archive, without listing its entries.
        m_zip.open(QuaZip::mdUnzip, m_mapped.data ? &m_api : nullptr);
    }
    ~ProjectArchive() { m_zip.close(); }

    bool hasEntries() { return m_zip.isOpen() && m_zip.getEntriesCount() > 0; }
    QuaZip *zip() { return &m_zip; }

private:
    QFile m_file;
    MappedArchive m_mapped;
    zlib_filefunc_def m_api;
    QuaZip m_zip;
};

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
    QByteArray data;
    if (!readThumbnailData(data))
        return false;
    // The size is known before decoding: a picture whose pixels would not
    // fit a bounded amount of memory is refused unread.
    QBuffer buffer(&data);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > kMaxThumbnailSide || size.height() > kMaxThumbnailSide)
        return false;
    // Projects may be read on several threads at once; their pictures are
    // decoded a few at a time, so that memory stays bounded however many
    // reads are waiting for their files.
    static QSemaphore decodes(kConcurrentDecodes);
    decodes.acquire();
    const QSemaphoreReleaser decoded(decodes);
    QImage loaded;
    if (!reader.read(&loaded))
        return false;
    if (image.width() != 0 && image.height() != 0)
        image = loaded.scaled(image.size(), Qt::KeepAspectRatio, Qt::FastTransformation);
    else
        image = loaded.convertToFormat(QImage::Format_ARGB32);
    return true;
}

bool EditorDocument::readThumbnailData(QByteArray &data)
{
    ProjectArchive archive(m_filePath);
    if (!archive.hasEntries())
        return false;
    QuaZip *zip = archive.zip();
    int checked = 0;
    for (bool more = zip->goToFirstFile(); more && checked < kThumbnailSearchEntries; more = zip->goToNextFile()) {
        ++checked;
        if (zip->getCurrentFileName().compare(kThumbnailEntry, Qt::CaseInsensitive) != 0)
            continue;
        QuaZipFile entry(zip);
        if (!entry.open(QIODevice::ReadOnly))
            return false;
        // One byte more than allowed tells a picture that is too large.
        data = entry.read(kMaxThumbnailBytes + 1);
        return !data.isEmpty() && data.size() <= kMaxThumbnailBytes;
    }
    return false;
}

bool EditorDocument::readDocument(QIODevice *device, const QString &)
{
    // Only the name is used: the archive is opened anew on it.
    const QFile *file = qobject_cast<const QFile *>(device);
    if (!file)
        return false;

    ProjectArchive archive(file->fileName());
    if (!archive.hasEntries())
        return false;
    QuaZip &zip = *archive.zip();
    // A project without "document.txt" has its first entry read instead.
    // minizip's own search compares the raw names, with ASCII letters in
    // any case, which for this ASCII name is the same test as QuaZip's but
    // does not decode and index every name on the way.
    zip.goToFirstFile();
    if (unzLocateFile(zip.getUnzFile(), m_entryName.toUtf8().constData(), kCaseInsensitive) != UNZ_OK)
        zip.goToFirstFile();

    QuaZipFile entry(&zip);
    entry.open(QIODevice::ReadOnly);
    // Only the first six lines can decide, so reading stops after the sixth
    // line end, and in any case after a bounded prefix: a crafted entry that
    // inflates to gigabytes must not exhaust memory.
    QByteArray bytes;
    int lineEnds = 0;
    while (bytes.size() < kMaxEntryBytes && lineEnds < kHeaderLines) {
        const QByteArray chunk = entry.read(qMin<qint64>(kReadChunk, kMaxEntryBytes - bytes.size()));
        if (chunk.isEmpty())
            break;
        lineEnds += chunk.count('\n');
        bytes.append(chunk);
    }
    entry.close();
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
