#include "refreshhold.h"

#include "processlauncher.h"

RefreshHold::RefreshHold(ProcessLauncher *launcher)
    : m_launcher(launcher)
{
    m_launcher->holdRefresh();
}

RefreshHold::~RefreshHold()
{
    m_launcher->releaseRefresh();
}
