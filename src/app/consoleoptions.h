#ifndef CONSOLEOPTIONS_H
#define CONSOLEOPTIONS_H

#include <QString>

// -h, --help and --version: answered on standard output before the
// application object exists, so that asking shows no window and neither reads
// nor writes any state. Every other argument is left to ProcessLauncher.
class ConsoleOptions
{
public:
    enum class Request { None, Help, Version };

    // The first of those options among argv[1..]. An argument that names an
    // existing file is a project, as ProcessLauncher reads it, whatever it
    // looks like. None where the launcher has no console to answer on.
    static Request find(int argc, char **argv);
    // Prints the answer and gives the exit status: 0, or 1 when standard
    // output could not take it.
    static int answer(Request request);

    static QString usage();
    // "Zanmir Launcher <version>".
    static QString versionText();
};

#endif // CONSOLEOPTIONS_H
