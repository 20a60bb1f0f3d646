#ifndef STARTEDPROGRAM_H
#define STARTEDPROGRAM_H

#include <QString>
#include <QStringList>
#include <QtGlobal>

// A program started the way the shell's "open" action starts a file, which
// the launcher may wait for while its own event loop runs on, so that its
// windows keep painting. The launcher never owns the program: when the
// launcher ends first, the program goes on.
class StartedProgram
{
public:
    enum class End {
        Ended, // the program has ended; a child it handed over to may go on
        LeftRunning, // the application quits first; the program goes on alone
        WaitFailed // the system cannot watch the program
    };

    StartedProgram() = default;
    ~StartedProgram();

    StartedProgram(const StartedProgram &) = delete;
    StartedProgram &operator=(const StartedProgram &) = delete;

    // The program is an uninstall command as installers record it: a
    // program, quoted when its path holds blanks, then its arguments. A
    // command that is itself an existing file is that program alone, blanks
    // and all. Off Windows the rest is read as QProcess::splitCommand reads
    // it; on Windows the program by the system's rule, and the rest goes to
    // it untouched, as the one argument. False, with the reason, for an
    // empty command or unbalanced quotes.
    bool setCommand(const QString &command);
    void setProgram(const QString &path, const QStringList &arguments);
    QString getProgram() const { return m_path; }
    QStringList getArguments() const { return m_arguments; }

    // Starts the program; a regular file without the owner's execute bit
    // gets it first (a downloaded installer arrives so). False, with the
    // reason, when it cannot be started.
    bool start();
    // Runs a local event loop until the started program has ended. Only the
    // application's quitting ends that loop sooner, as it ends every loop.
    End waitForEnd();

    QString getErrorText() const { return m_errorText; }

private:
    QString m_path;
    QStringList m_arguments;
    QString m_errorText;
#ifdef Q_OS_WIN
    Qt::HANDLE m_process = nullptr;
#else
    qint64 m_pid = 0;
#endif
};

#endif // STARTEDPROGRAM_H
