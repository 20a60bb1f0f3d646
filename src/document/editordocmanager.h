#ifndef EDITORDOCMANAGER_H
#define EDITORDOCMANAGER_H

#include <QDateTime>
#include <QObject>
#include <QString>

class EditorDocument;
class EditorInfo;
class QImage;

// Tells a project file's form by its suffix and answers, through the matching
// document object, which editor version saved it. Built anew for each file.
class EditorDocManager : public QObject
{
    Q_OBJECT

public:
    enum DocumentKind { CompressedDocument = 0, XmlDocument = 1, UnsupportedDocument = 2 };

    EditorDocManager(QObject *parent, const QString &filePath);
    ~EditorDocManager() override;

    // The suffix after the last dot, in any letter case: "zmr" gives 0,
    // "xml" 1, anything else (no suffix included) 2.
    static qint32 documentKind(const QString &filePath);

    // Replaces the document object by one for this file's form; false, with
    // no document, for an unsupported suffix. Opens nothing.
    bool createDocument();
    // Fills the record with the version that saved the file, edition
    // "release". On a failed read the record still gets the defaults
    // "0.1.00"/"release" and the result is false: test the result, not the
    // record. The date is taken by value and never written back.
    bool getEditorInfo(EditorInfo &editorInfo, QDateTime lastModified);
    bool getThumbnail(QImage &image);

    QString getFilePath() const { return m_filePath; }
    qint32 getDocumentKind() const { return m_documentKind; }
    EditorDocument *getDocument() const { return m_document; }

private:
    QString m_filePath;
    qint32 m_documentKind;
    EditorDocument *m_document = nullptr;
};

#endif // EDITORDOCMANAGER_H
