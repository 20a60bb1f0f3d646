// Proxy check and offline page store.
#include "processlauncher.h"

// SEAM(network): proxy detection and the offline store are not built in yet.
void ProcessLauncher::checkProxy()
{
    writeLog(QStringLiteral("ProcessLauncher::checkProxy: proxy detection is not available in this build"));
}

bool ProcessLauncher::readOfflineFileInfo()
{
    writeLog(QStringLiteral("ProcessLauncher::readOfflineFileInfo: offline store is not available in this build"));
    return false;
}
