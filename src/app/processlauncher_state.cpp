// Manager file, applications catalogue, current editor, pins and recent projects.
#include "processlauncher.h"

#include "editorinfo.h"
#include "historyinfo.h"

// SEAM(state): the manager file and the applications catalogue are not built
// in yet. Each operation says so in the log and fails, so start-up stops
// instead of running on invented state.
static const QString kNoState = QStringLiteral("manager file and applications catalogue are not available in this build");

bool ProcessLauncher::readApplInfo(bool)
{
    writeLog(QStringLiteral("ProcessLauncher::readApplInfo: %1").arg(kNoState));
    return false;
}

bool ProcessLauncher::readRegistry()
{
    writeLog(QStringLiteral("ProcessLauncher::readRegistry: %1").arg(kNoState));
    return false;
}

bool ProcessLauncher::getLocale(QString &locale) const
{
    locale = QStringLiteral("en_US");
    return true;
}

bool ProcessLauncher::getLauncherVersion()
{
    writeLog(QStringLiteral("EditorLaunch::getLauncherVersion: %1").arg(kNoState));
    return false;
}

QString ProcessLauncher::getLockFilePath() const
{
    return QStringLiteral("%1/ZanmirManager.lock").arg(launcherDataFolder());
}
