// Open-with flow and the single-instance lock.
#include "processlauncher.h"

#include <QLockFile>

// SEAM(open-with): project files are not opened yet.
bool ProcessLauncher::detectWhetherOpenWithFiles()
{
    return false;
}

bool ProcessLauncher::lockManagerFile(QLockFile &lock)
{
    if (lock.tryLock(100))
        return false;
    m_exitStatus = 1;
    return true;
}
