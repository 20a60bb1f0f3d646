#include "editordocumentxml.h"

#include <QXmlStreamReader>

namespace {

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
    QXmlStreamReader reader(device);
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
