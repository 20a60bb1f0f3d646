#ifndef EDITORDOCUMENT_H
#define EDITORDOCUMENT_H

#include <QByteArray>
#include <QDateTime>
#include <QObject>
#include <QString>

class QImage;
class QIODevice;

// A compressed project: a zip archive whose "document.txt" entry begins with
// a text archive header naming the editor version that saved the project.
// Reads only; every failure is a false result with no message.
class EditorDocument : public QObject
{
    Q_OBJECT

public:
    EditorDocument(QObject *parent, const QString &filePath);
    ~EditorDocument() override;

    // Re-reads the file. On success hands out the version text (A.B.CC), the
    // edition "release" and the file's modification time.
    virtual bool getVersion(QString &version, QString &edition, QDateTime &lastModified);
    // The project's own picture, as the editor saved it with the project. An
    // image of non-zero size is replaced by the picture scaled into it;
    // otherwise by the picture itself. False, leaving the image as it was,
    // when the project has none or it is damaged or too large.
    virtual bool getThumbnail(QImage &image);
    // Fills the fields from the header lines of the entry text. The second
    // argument is not used.
    virtual bool parseDocumentText(const QByteArray &text, const QString &unused);
    // Fills the fields from the open project file. The second argument is not used.
    virtual bool readDocument(QIODevice *device, const QString &unused);

    QString getFilePath() const { return m_filePath; }
    QString getSignature() const { return m_signature; }
    QString getFormatVer() const { return m_formatVer; }
    QString getLastEditorVersion() const { return m_lastEditorVersion; }
    QString getVersionText() const { return m_versionText; }
    QString getBuildText() const { return m_buildText; }
    QDateTime getLastModified() const { return m_lastModified; }
    QString getEntryName() const { return m_entryName; }

    // The most of a project that is read: of the archive's header entry, or
    // of an XML project.
    static constexpr qint64 kMaxEntryBytes = 4 * 1024 * 1024;

protected:
    // The picture's encoded bytes, read from the project within bounds.
    virtual bool readThumbnailData(QByteArray &data);

    // The most of a picture that is read, and the largest side it may have.
    static constexpr qint64 kMaxThumbnailBytes = 2 * 1024 * 1024;
    static constexpr int kMaxThumbnailSide = 2048;

    // Unpacks the 64-bit version word (A.B.C.D in four 16-bit fields, text
    // that is no number counting as 0) into the version and build texts. Old
    // compressed projects, A = 0 and B < 5, all count as 0.5.00 build 0.
    void setVersionFields(bool oldVersionRule);

    QString m_filePath;
    QString m_signature;
    QString m_formatVer;
    QString m_lastEditorVersion;
    QString m_versionText;
    QString m_buildText;
    QDateTime m_lastModified;
    QString m_entryName;

private:
    bool load();
};

#endif // EDITORDOCUMENT_H
