#include "consoleoptions.h"
#include "processlauncher.h"

#include <QGuiApplication>
#include <QLockFile>
#include <QMessageBox>
#include <QOpenGLContext>
#include <QTranslator>

#ifdef ZANMIR_WINDOW_MODULE
#include "launchermodule.h"

#include <QLibrary>
#else
#include "windowentry.h"
#endif

namespace {

using WindowEntry = int (*)(ProcessLauncher *);

// The windows are loaded only when a window is shown, and WebKit only once
// it has been painted: an open-with start, the launcher's daily use, stays
// as light as it can be.
class Windows
{
public:
    explicit Windows(ProcessLauncher &launcher)
        : m_launcher(launcher)
    { }

    int run(const char *entryName)
    {
#ifdef ZANMIR_WINDOW_MODULE
        // Its classes are global: the web pages' module, loaded after the
        // window's first paint, builds on them.
        m_module.setLoadHints(QLibrary::ExportExternalSymbolsHint);
        LauncherModule::load(m_module, QStringLiteral(ZANMIR_WINDOW_MODULE));
        const auto entry = reinterpret_cast<WindowEntry>(m_module.resolve(entryName));
        if (!entry) {
            m_launcher.writeLog(QStringLiteral("main: cannot load the windows: %1").arg(m_module.errorString()));
            QMessageBox::critical(nullptr, QCoreApplication::translate("main", "Error"),
                QCoreApplication::translate("main", "The launcher's window cannot be shown:\n%1")
                    .arg(m_module.errorString()),
                QMessageBox::Ok, QMessageBox::NoButton);
            return 1;
        }
#else
        const WindowEntry entry
            = qstrcmp(entryName, "zanmirRunMainWindow") == 0 ? zanmirRunMainWindow : zanmirRunLauncherUpdate;
#endif
        return entry(&m_launcher);
    }

private:
    ProcessLauncher &m_launcher;
#ifdef ZANMIR_WINDOW_MODULE
    QLibrary m_module;
#endif
};

} // namespace

int main(int argc, char *argv[])
{
    // Answered before the application object makes its log folder.
    const ConsoleOptions::Request request = ConsoleOptions::find(argc, argv);
    if (request != ConsoleOptions::Request::None)
        return ConsoleOptions::answer(request);

    // Sharp on a screen scaled beyond 100 %: sizes count in device-independent
    // pixels, and icons take their "@2x" pictures where the screen has the
    // pixels. Both must be set before the application object exists.
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);

    // The windows are drawn by the processor. Without this the first window
    // loads the OpenGL driver (behind a software driver, the whole of LLVM),
    // which nothing here uses, before it can paint. The editors and programs
    // started later do not inherit it, and a user's own choice stands.
    const char *const glIntegration = "QT_XCB_GL_INTEGRATION";
    const bool glChosen = qEnvironmentVariableIsSet(glIntegration);
    if (!glChosen)
        qputenv(glIntegration, "none");

    // The translator outlives the application object that uses it.
    QTranslator translator;
    int result = 0;
    {
        ProcessLauncher launcher(argc, argv);
        if (!glChosen) {
            // The X display connection reads it when first asked about
            // OpenGL; other platforms are not asked, which could load theirs.
            if (QGuiApplication::platformName() == QLatin1String("xcb"))
                QOpenGLContext::supportsThreadedOpenGL();
            qunsetenv(glIntegration);
        }
        Windows windows(launcher);

        if (!launcher.initialize(translator)) {
            // Deliberately untranslated: it may come before any catalogue is loaded.
            QMessageBox::critical(nullptr, QStringLiteral("Error"), QStringLiteral("Failed in initialize."),
                QMessageBox::Ok, QMessageBox::NoButton);
            result = launcher.getExitStatus();
        } else if (launcher.hasLauncherUpdate()) {
            // It stands in for the main window and ends the process itself; a
            // project on the command line is not opened, and no lock is taken.
            result = windows.run("zanmirRunLauncherUpdate");
        } else if (launcher.detectWhetherOpenWithFiles()) {
            result = launcher.getExitStatus();
        } else {
            QLockFile lock(launcher.getLockFilePath());
            if (launcher.lockManagerFile(lock)) {
                result = launcher.getExitStatus();
            } else {
                // The lock is held from before the window is made until
                // after it is gone.
                result = windows.run("zanmirRunMainWindow");
            }
        }
    }
    return result;
}
