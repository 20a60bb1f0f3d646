#ifndef LAUNCHERMODULE_H
#define LAUNCHERMODULE_H

#include <QString>

class QLibrary;

// The modules that the launcher loads only when it needs them (off Windows:
// its windows, and the web pages behind them). They are looked for beside
// the executable, as in the build tree, and in the launcher's folder of the
// installed libraries.
namespace LauncherModule {

// Loads the module of that file name into library; on failure the library's
// error string says why.
bool load(QLibrary &library, const QString &fileName);

} // namespace LauncherModule

#endif // LAUNCHERMODULE_H
