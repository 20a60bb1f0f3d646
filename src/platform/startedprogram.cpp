#include "startedprogram.h"

#include <QEventLoop>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <QWinEventNotifier>
#include <qt_windows.h>
#include <shellapi.h>
#else
#include <QProcess>
#include <QSocketNotifier>

#include <cerrno>
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN
// ShellExecuteExW reports a failure to start by an hInstApp of 32 or less.
constexpr qintptr kLastShellExecuteError = 32;
#endif

QString startFailure(const QString &path)
{
    return QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx %1").arg(path);
}

QString waitFailure(const QString &path)
{
    return QStringLiteral("ApplUpdater::openExecutableFile: failed waiting signal %1").arg(path);
}

#ifndef Q_OS_WIN
// As QProcess::splitCommand reads quotes: a run of them gives one literal
// quote per three, and what is left over opens or closes a quoted part when
// it is one quote, and does neither when it is two.
bool quotesBalanced(const QString &command)
{
    bool open = false;
    for (int i = 0; i < command.size();) {
        int run = 0;
        while (i < command.size() && command.at(i) == QLatin1Char('"')) {
            ++run;
            ++i;
        }
        if (run % 3 == 1)
            open = !open;
        if (run == 0)
            ++i;
    }
    return !open;
}
#endif

} // namespace

void StartedProgram::setProgram(const QString &path, const QStringList &arguments)
{
    m_path = path;
    m_arguments = arguments;
}

bool StartedProgram::setCommand(const QString &command)
{
    // Installers that do not quote a path with blanks in it are common enough.
    if (QFileInfo(command).isFile()) {
        setProgram(command, QStringList());
        return true;
    }
    QString program;
    QStringList arguments;
    const QString trimmed = command.trimmed();
#ifdef Q_OS_WIN
    // The system reads the program up to the closing quote, or else up to
    // the first blank, and leaves the rest to the program's own parser.
    int end = 0;
    if (trimmed.startsWith(QLatin1Char('"'))) {
        end = trimmed.indexOf(QLatin1Char('"'), 1);
        if (end < 0) {
            m_errorText = QStringLiteral("Unbalanced quotes in the command: [%1]").arg(command);
            return false;
        }
        program = trimmed.mid(1, end - 1);
        ++end;
    } else {
        while (end < trimmed.size() && !trimmed.at(end).isSpace())
            ++end;
        program = trimmed.left(end);
    }
    const QString rest = trimmed.mid(end).trimmed();
    arguments = rest.isEmpty() ? QStringList() : QStringList { rest };
#else
    if (!quotesBalanced(trimmed)) {
        m_errorText = QStringLiteral("Unbalanced quotes in the command: [%1]").arg(command);
        return false;
    }
    arguments = QProcess::splitCommand(trimmed);
    program = arguments.isEmpty() ? QString() : arguments.takeFirst();
#endif
    if (program.isEmpty()) {
        m_errorText = QStringLiteral("No program in the command: [%1]").arg(command);
        return false;
    }
    setProgram(program, arguments);
    return true;
}

#ifdef Q_OS_WIN

StartedProgram::~StartedProgram()
{
    if (m_process)
        CloseHandle(m_process);
}

bool StartedProgram::start()
{
    const std::wstring file = m_path.toStdWString();
    const std::wstring parameters = m_arguments.join(QLatin1Char(' ')).toStdWString();
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.hwnd = nullptr;
    info.lpVerb = L"open";
    info.lpFile = file.c_str();
    info.lpParameters = parameters.c_str();
    info.lpDirectory = nullptr;
    info.nShow = SW_SHOW;
    if (!ShellExecuteExW(&info)) {
        m_errorText = startFailure(m_path);
        return false;
    }
    const qintptr instance = reinterpret_cast<qintptr>(info.hInstApp);
    if (instance <= kLastShellExecuteError) {
        m_errorText = QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx (hInstApp %2)%1")
                          .arg(m_path)
                          .arg(instance);
        return false;
    }
    m_process = info.hProcess;
    return true;
}

StartedProgram::End StartedProgram::waitForEnd()
{
    // No process: the shell handed the file to a program that was running already.
    if (!m_process)
        return End::Ended;
    // A process handle is no event; the call stays as a fixed step of the
    // sequence all the same.
    ResetEvent(m_process);
    const DWORD state = WaitForSingleObject(m_process, 0);
    if (state == WAIT_FAILED) {
        m_errorText = waitFailure(m_path);
        return End::WaitFailed;
    }
    if (state == WAIT_OBJECT_0)
        return End::Ended;
    QWinEventNotifier notifier(m_process);
    QEventLoop loop;
    QObject::connect(&notifier, SIGNAL(activated(HANDLE)), &loop, SLOT(quit()));
    loop.exec();
    return WaitForSingleObject(m_process, 0) == WAIT_OBJECT_0 ? End::Ended : End::LeftRunning;
}

#else

StartedProgram::~StartedProgram() = default;

bool StartedProgram::start()
{
    if (QFileInfo(m_path).isFile() && !(QFile::permissions(m_path) & QFileDevice::ExeOwner))
        QFile::setPermissions(m_path, QFile::permissions(m_path) | QFileDevice::ExeOwner);
    // Detached, as the shell starts it: a QProcess would own the program and
    // kill it when the launcher ends first.
    QProcess process;
    process.setProgram(m_path);
    process.setArguments(m_arguments);
    if (!process.startDetached(&m_pid)) {
        m_errorText = startFailure(m_path);
        return false;
    }
    return true;
}

StartedProgram::End StartedProgram::waitForEnd()
{
    // A process descriptor stands in for the Windows process handle: it
    // turns readable when the program ends, whoever reaps it.
    const int descriptor = int(syscall(SYS_pidfd_open, pid_t(m_pid), 0));
    if (descriptor < 0) {
        // Gone, and reaped, before the look.
        if (errno == ESRCH)
            return End::Ended;
        m_errorText = waitFailure(m_path);
        return End::WaitFailed;
    }
    const auto ended = [descriptor]() {
        pollfd state { descriptor, POLLIN, 0 };
        return ::poll(&state, 1, 0) > 0;
    };
    End end = End::Ended;
    if (!ended()) {
        QSocketNotifier notifier(descriptor, QSocketNotifier::Read);
        QEventLoop loop;
        QObject::connect(&notifier, SIGNAL(activated(int)), &loop, SLOT(quit()));
        loop.exec();
        end = ended() ? End::Ended : End::LeftRunning;
    }
    ::close(descriptor);
    return end;
}

#endif
