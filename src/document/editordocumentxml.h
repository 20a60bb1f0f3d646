#ifndef EDITORDOCUMENTXML_H
#define EDITORDOCUMENTXML_H

#include "editordocument.h"

// A project saved as plain XML. The header elements are searched for in a
// fixed order in one forward pass, so their order in the file is binding.
class EditorDocumentXML : public EditorDocument
{
    Q_OBJECT

public:
    EditorDocumentXML(QObject *parent, const QString &filePath);
    ~EditorDocumentXML() override;

    bool readDocument(QIODevice *device, const QString &unused) override;

protected:
    // The picture is a "thumbnail" element of the header, in base64.
    bool readThumbnailData(QByteArray &data) override;
};

#endif // EDITORDOCUMENTXML_H
