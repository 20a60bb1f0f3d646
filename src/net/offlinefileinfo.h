#ifndef OFFLINEFILEINFO_H
#define OFFLINEFILEINFO_H

#include "baseobject.h"

#include <QString>

// One entry of the offline page index: which numbered page file holds the
// copy of a URL. A serial number below 1 means there is no page file.
class OfflineFileInfo : public BaseObject
{
public:
    explicit OfflineFileInfo(int serialNo = 0, const QString &url = QString());

    int getSerialNo() const { return m_serialNo; }
    void setSerialNo(int serialNo) { m_serialNo = serialNo; }
    QString getUrl() const { return m_url; }
    void setUrl(const QString &url) { m_url = url; }

private:
    int m_serialNo;
    QString m_url;
};

#endif // OFFLINEFILEINFO_H
