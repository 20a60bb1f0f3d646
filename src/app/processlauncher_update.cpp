// Update catalogue and web page stamps.
#include "processlauncher.h"

// SEAM(update): the update catalogue is not built in yet.
bool ProcessLauncher::prepareApplUpdater()
{
    writeLog(QStringLiteral("ProcessLauncher::prepareApplUpdater: update catalogue is not available in this build"));
    return false;
}

bool ProcessLauncher::hasLauncherUpdate()
{
    return false;
}
