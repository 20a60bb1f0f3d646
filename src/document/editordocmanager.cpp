#include "editordocmanager.h"

#include "editordocument.h"
#include "editordocumentxml.h"
#include "editorinfo.h"

#include <QFileInfo>
#include <QImage>

EditorDocManager::EditorDocManager(QObject *parent, const QString &filePath)
    : QObject(parent)
    , m_filePath(filePath)
    , m_documentKind(documentKind(filePath))
{ }

EditorDocManager::~EditorDocManager()
{
    delete m_document;
}

qint32 EditorDocManager::documentKind(const QString &filePath)
{
    const QString suffix = QFileInfo(filePath).suffix().toLower();
    if (suffix == QLatin1String("zmr"))
        return CompressedDocument;
    if (suffix == QLatin1String("xml"))
        return XmlDocument;
    return UnsupportedDocument;
}

bool EditorDocManager::createDocument()
{
    delete m_document;
    m_document = nullptr;

    switch (m_documentKind) {
    case CompressedDocument:
        m_document = new EditorDocument(this, m_filePath);
        return true;
    case XmlDocument:
        m_document = new EditorDocumentXML(this, m_filePath);
        return true;
    default:
        return false;
    }
}

bool EditorDocManager::getEditorInfo(EditorInfo &editorInfo, QDateTime lastModified)
{
    if (!m_document)
        return false;

    EditorInfo info(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("0.1.00"));
    QString version = info.getVersion();
    QString edition = info.getEdition();
    // The document writes its modification time into this copy only; no
    // caller needs it, so it goes no further.
    QDateTime modified = lastModified;
    const bool result = m_document->getVersion(version, edition, modified);

    // Whatever the read gave: on failure the record carries the defaults.
    info.setVersionInfo(info.getApplType(), info.getApplName(), edition, version);
    editorInfo = info;
    return result;
}

bool EditorDocManager::getThumbnail(QImage &image)
{
    if (!m_document)
        return false;
    return m_document->getThumbnail(image);
}
