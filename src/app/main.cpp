#include "homeform.h"
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
            // SEAM(ui): the launcher update window is not built in yet.
            launcher.writeLog(QStringLiteral("main: launcher update window is not available in this build"));
            result = 0;
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
