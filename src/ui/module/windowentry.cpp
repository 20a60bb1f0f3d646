#include "windowentry.h"

#include "homeform.h"
#include "launcherupdatewidget.h"
#include "processlauncher.h"

int zanmirRunMainWindow(ProcessLauncher *launcher)
{
    HomeForm form;
    form.setProcessLauncher(launcher);
    form.show();
    return launcher->exec();
}

int zanmirRunLauncherUpdate(ProcessLauncher *launcher)
{
    LauncherUpdateWidget window;
    window.setProcessLauncher(launcher);
    window.show();
    return launcher->exec();
}
