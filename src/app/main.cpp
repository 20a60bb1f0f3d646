#include "homeform.h"
#include "launcherupdatewidget.h"
#include "processlauncher.h"

#include <QLockFile>
#include <QMessageBox>
#include <QTranslator>

int main(int argc, char *argv[])
{
    // The translator outlives the application object that uses it.
    QTranslator translator;
    int result = 0;
    {
        ProcessLauncher launcher(argc, argv);

        if (!launcher.initialize(translator)) {
            // Deliberately untranslated: it may come before any catalogue is loaded.
            QMessageBox::critical(nullptr, QStringLiteral("Error"), QStringLiteral("Failed in initialize."),
                QMessageBox::Ok, QMessageBox::NoButton);
            result = launcher.getExitStatus();
        } else if (launcher.hasLauncherUpdate()) {
            // It stands in for the main window and ends the process itself; a
            // project on the command line is not opened, and no lock is taken.
            LauncherUpdateWidget window;
            window.setProcessLauncher(&launcher);
            window.show();
            result = launcher.exec();
        } else if (launcher.detectWhetherOpenWithFiles()) {
            result = launcher.getExitStatus();
        } else {
            QLockFile lock(launcher.getLockFilePath());
            if (launcher.lockManagerFile(lock)) {
                result = launcher.getExitStatus();
            } else {
                // The lock is held from before the window is made until
                // after it is gone.
                HomeForm form;
                form.setProcessLauncher(&launcher);
                form.show();
                result = launcher.exec();
            }
        }
    }
    return result;
}
