#ifndef WINDOWENTRY_H
#define WINDOWENTRY_H

#include <QtGlobal>

class ProcessLauncher;

// The two windows of the launcher, each shown and run until the application
// ends; the result is that of the event loop. Off Windows they live in a
// module of their own that the executable loads only when it shows a window,
// so an open-with start never loads WebKit and the libraries behind it.
extern "C" {
Q_DECL_EXPORT int zanmirRunMainWindow(ProcessLauncher *launcher);
Q_DECL_EXPORT int zanmirRunLauncherUpdate(ProcessLauncher *launcher);
}

#endif // WINDOWENTRY_H
