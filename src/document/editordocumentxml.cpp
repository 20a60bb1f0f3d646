#include "editordocumentxml.h"

#include <QFile>
#include <QXmlStreamReader>

namespace {

// The first bytes of another device, read as they are asked for: what the
// XML reader may see of a project. It keeps the text of an element whole,
// so without a bound a huge element would cost memory to match.
class BoundedDevice : public QIODevice
{
public:
    BoundedDevice(QIODevice *source, qint64 limit)
        : m_source(source)
        , m_left(limit)
    {
        open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    }

    bool isSequential() const override { return true; }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        if (m_left <= 0)
            return -1;
        const qint64 count = m_source->read(data, qMin(maxSize, m_left));
        if (count > 0)
            m_left -= count;
        return count;
    }
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QIODevice *m_source;
    qint64 m_left;
};

// Moves forward to the next start tag of that name, at any depth. False at
// the end of the document or on any error; the reader does not go back, so
// an element before the current place is never found.
bool findElement(QXmlStreamReader &reader, const QString &name)
{
    while (!reader.atEnd() && !reader.hasError()) {
        if (reader.readNext() == QXmlStreamReader::StartElement && reader.name() == name)
            return true;
    }
    return false;
}

// The text of the next element of that name, or empty when there is none.
// An element with child elements ends the read in an error and gives no text.
QString readElement(QXmlStreamReader &reader, const QString &name)
{
    if (!findElement(reader, name))
        return QString();
    const QString text = reader.readElementText();
    return reader.hasError() ? QString() : text;
}

} // namespace

EditorDocumentXML::EditorDocumentXML(QObject *parent, const QString &filePath)
    : EditorDocument(parent, filePath)
{ }

EditorDocumentXML::~EditorDocumentXML() = default;

bool EditorDocumentXML::readDocument(QIODevice *device, const QString &)
{
    BoundedDevice bounded(device, kMaxEntryBytes);
    QXmlStreamReader reader(&bounded);
    if (!findElement(reader, QStringLiteral("header")))
        return false;

    m_signature = readElement(reader, QStringLiteral("signature"));
    if (m_signature.isEmpty() || m_signature != QLatin1String("zmr"))
        return false;

    // A comparison of text, not of numbers: "abc" passes, "0" does not.
    m_formatVer = readElement(reader, QStringLiteral("formatVer"));
    if (m_formatVer.isEmpty() || m_formatVer < QLatin1String("1"))
        return false;

    m_lastEditorVersion = readElement(reader, QStringLiteral("m_lastEditorVersion"));
    if (m_lastEditorVersion.isEmpty())
        return false;

    // No old-version rule for this form: the numbers stand as written.
    setVersionFields(false);
    return true;
}

bool EditorDocumentXML::readThumbnailData(QByteArray &data)
{
    QFile file(m_filePath);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    BoundedDevice bounded(&file, kMaxEntryBytes);
    QXmlStreamReader reader(&bounded);
    if (!findElement(reader, QStringLiteral("header")))
        return false;
    data = QByteArray::fromBase64(readElement(reader, QStringLiteral("thumbnail")).toLatin1());
    return !data.isEmpty() && data.size() <= kMaxThumbnailBytes;
}
