#include "offlinefileinfo.h"

OfflineFileInfo::OfflineFileInfo(int serialNo, const QString &url)
    : m_serialNo(serialNo)
    , m_url(url)
{ }
