#ifndef APPLUPDATER_H
#define APPLUPDATER_H

#include "applupdateinfo.h"
#include "baseobject.h"
#include "logfunction.h"
#include "webupdateinfo.h"

#include <QJsonDocument>
#include <QList>
#include <QObject>

class EditorInfo;
class Registry;

// Holds the server's update catalogue and answers what can be updated,
// installed and downloaded. Made once and kept for the life of the process.
class ApplUpdater : public QObject, public BaseObject
{
    Q_OBJECT

public:
    // The target system name picks the installer of a catalogue entry; the
    // log function is the process log.
    ApplUpdater(const QString &targetSystemName, const LogFunction &log, QObject *parent = nullptr);
    ~ApplUpdater() override;

    void setRegistry(Registry *registry);

    // Takes in a catalogue text; an empty text is the empty catalogue. Text
    // that does not parse leaves the previous catalogue in use.
    bool setUpdateInfo(const QString &text);
    // True when the text is a catalogue: a JSON object with a non-empty object
    // under "1.0.0". Otherwise the reason says what is wrong with it.
    static bool isCatalogue(const QString &text, QString *reason);

    QList<ApplUpdateInfo> getUpdates(const QString &applType) const;
    // The first catalogue entry newer than the installed build of the record's series.
    ApplUpdateInfo findUpdateFor(const ApplVersion &installed) const;
    // The first catalogue entry of a series later than the newest installed release.
    ApplUpdateInfo findRecentFor(const ApplVersion &installed) const;
    // The first catalogue entry newer than the newest installed public version of that type.
    ApplUpdateInfo findLatestFor(const QString &applType) const;
    QList<ApplUpdateInfo> getInstallableEditors(const QList<EditorInfo> &installed, bool showAll) const;
    bool findDownloadInfo(
        const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName);
    WebUpdateInfo getWebUpdateInfo(const QString &webType) const;

private:
    QString m_targetSystemName;
    LogFunction m_log;
    Registry *m_registry = nullptr;
    QJsonDocument m_document;
    QList<WebUpdateInfo> m_webUpdates;
    QList<ApplUpdateInfo> m_updates;
};

#endif // APPLUPDATER_H
