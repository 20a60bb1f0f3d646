#ifndef REGISTRY_H
#define REGISTRY_H

#include "baseobject.h"
#include "editorinfo.h"

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>

// The catalogue of installed applications. The uninstall records that the
// installers write are the truth; the catalogue file is a cache that a list
// query rebuilds from them whenever they changed on disk, so a version
// removed by any means is gone at the next query. The file keeps the stamp
// of the records it was built from, so that a later start need not parse
// unchanged records again.
class Registry : public QObject, public BaseObject
{
    Q_OBJECT

public:
    Registry(const QString &filePath, QObject *parent = nullptr);
    ~Registry() override;

    // True when a catalogue was loaded; a missing or broken file is rebuilt
    // once from the uninstall records first.
    bool read();
    // Writes the catalogue file whatever it holds.
    bool write();
    // Rebuilds the catalogue from the uninstall records; the file is written
    // only when its text changes.
    void scanInstalledApplications();
    void clearApplications();
    // operation is "insert", "update" or "delete". Works on the document only.
    void updateVersion(const QString &operation, const EditorInfo &info);
    QJsonObject versionToJson(const EditorInfo &info) const;

    // Each query rescans the uninstall records when they changed since the
    // last scan.
    QList<EditorInfo> getVersionList(const QString &applType);
    // The installed entry of exactly that version, or an empty record.
    EditorInfo findVersion(const ApplVersion &version);
    // The editor to open a project saved by that version; empty only when no
    // editor is installed at all.
    EditorInfo findVersionForDocument(const ApplVersion &version);
    // The newest installed build of the version's major.minor series, the
    // version itself included.
    EditorInfo findUpdatedVersion(const ApplVersion &version);
    // The newest public version of that type.
    EditorInfo findRecentVersion(const QString &applType);
    QList<EditorInfo> getReleaseVersions();

    // Newest first by version number; the order of equal versions is not defined.
    static void sortNewestFirst(QList<EditorInfo> &editors);

private:
    // The document as the file holds it.
    QString fileText() const;

    QJsonDocument m_document;
    QString m_filePath;
    // What the file is known to hold: read from it or written to it.
    QString m_fileText;
    // The records as of the last scan; empty: scan at the next query.
    QByteArray m_recordsStamp;
};

#endif // REGISTRY_H
