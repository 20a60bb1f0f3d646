#ifndef SYSTEMENVIRONMENT_H
#define SYSTEMENVIRONMENT_H

#include <QByteArray>
#include <QString>

// Process-level services of the operating system that the launcher hands work to.
class SystemEnvironment
{
public:
    // Sets "NAME=value" in this process's environment, where child processes
    // and in-process clients that read the C runtime's environment see it.
    static bool putVariable(const QByteArray &assignment);

    // Whether a command-line argument is a file to open before any option
    // rule applies. Where full paths begin with "/" (everywhere but Windows)
    // an argument naming an existing regular file is a file, whatever it
    // begins with; on Windows "/" and "-" always start an option.
    static bool isFileArgument(const QString &argument);

    // Whether the launcher answers --help and --version on standard output:
    // not on Windows, where it is a GUI program with no console to print to.
    static bool hasConsoleOptions();

    // Moves a file over another in one step, so that whoever opens the target
    // finds either the old file or the new one, never a mix or nothing. Both
    // lie in the same folder. On false errorText holds the system's reason.
    static bool replaceFile(const QString &from, const QString &to, QString &errorText);
};

#endif // SYSTEMENVIRONMENT_H
