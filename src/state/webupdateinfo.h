#ifndef WEBUPDATEINFO_H
#define WEBUPDATEINFO_H

#include "baseobject.h"

#include <QJsonObject>
#include <QList>
#include <QObject>
#include <QString>

// Version stamp of a web page (news or help). The catalogue holds the newest
// stamp; the manager file holds the stamp of the page the user last opened.
class WebUpdateInfo : public QObject, public BaseObject
{
    Q_OBJECT

public:
    WebUpdateInfo(const QString &defaultType, const QJsonObject &json, bool *error, QObject *parent = nullptr);
    WebUpdateInfo(const QString &type, const QString &version, const QString &url, QObject *parent = nullptr);
    WebUpdateInfo(const WebUpdateInfo &other);
    ~WebUpdateInfo() override;

    WebUpdateInfo &operator=(const WebUpdateInfo &other);

    // Empty when any of type, version text or url is empty.
    bool isEmpty() const;
    void setVersion(const QString &version);
    QJsonObject toJson() const;
    int compareVersion(const WebUpdateInfo &other, bool *ok = nullptr) const;

    QString getType() const { return m_type; }
    QString getVersion() const { return m_version; }
    QString getUrl() const { return m_url; }

private:
    QString m_type;
    QString m_version;
    QString m_url;
    QList<quint32> m_versionNumbers;
};

#endif // WEBUPDATEINFO_H
