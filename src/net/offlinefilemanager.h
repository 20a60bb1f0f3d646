#ifndef OFFLINEFILEMANAGER_H
#define OFFLINEFILEMANAGER_H

#include "baseobject.h"
#include "offlinefileinfo.h"

#include <QJsonDocument>
#include <QList>
#include <QObject>
#include <QString>

// The index of the offline page store ("OfflineFiles.json"): which URL is
// kept in which numbered page file. The list and the document in memory are
// the truth between writes; the file is written only on request.
class OfflineFileManager : public QObject, public BaseObject
{
    Q_OBJECT

public:
    OfflineFileManager(const QString &indexFilePath, QObject *parent = nullptr);
    ~OfflineFileManager() override;

    // Writes a new index holding only the entry of serial 0.
    bool createIndexFile();
    // Loads the index into memory.
    bool readIndexFile();
    // Writes the in-memory index back to its file.
    bool updateIndexFile();

    // The first entry whose URL matches exactly, or a record of that URL with
    // serial 0 when there is none. Nothing is added.
    OfflineFileInfo findInfo(const QString &url) const;
    // Stores a copy of the record under the next free serial number and
    // returns that copy. Reorders the list, highest serial first.
    OfflineFileInfo addInfo(const OfflineFileInfo &info);

    QList<OfflineFileInfo> getInfoList() const { return m_infoList; }
    QString getIndexFilePath() const { return m_indexFilePath; }

    // The page file of a serial number in that folder: eight digits at least.
    static QString pageFileName(const QString &folder, int serialNo);

private:
    // Closes the numbers of the pages up to 1..n in their order, the page
    // files beside the index moving with them.
    void renumber();

    QList<OfflineFileInfo> m_infoList;
    QJsonDocument m_document;
    QString m_indexFilePath;
};

#endif // OFFLINEFILEMANAGER_H
