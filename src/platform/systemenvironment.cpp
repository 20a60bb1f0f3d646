#include "systemenvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#include <shellapi.h>
#include <stdlib.h>
#else
#include <cerrno>
#include <cstdio>
#include <cstring>
#endif

bool SystemEnvironment::putVariable(const QByteArray &assignment)
{
#ifdef Q_OS_WIN
    return _putenv(assignment.constData()) == 0;
#else
    const int equals = assignment.indexOf('=');
    if (equals <= 0)
        return false;
    return qputenv(assignment.left(equals).constData(), assignment.mid(equals + 1));
#endif
}

bool SystemEnvironment::isFileArgument(const QString &argument)
{
#ifdef Q_OS_WIN
    Q_UNUSED(argument)
    return false;
#else
    return QFileInfo(argument).isFile();
#endif
}

bool SystemEnvironment::hasConsoleOptions()
{
#ifdef Q_OS_WIN
    return false;
#else
    return true;
#endif
}

bool SystemEnvironment::openFile(const QString &path, bool wait, QString &errorText)
{
    if (!QFile::exists(path)) {
        errorText = QStringLiteral("File not found: %1").arg(path);
        return false;
    }
#ifdef Q_OS_WIN
    const std::wstring file = path.toStdWString();
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.hwnd = nullptr;
    info.lpVerb = L"open";
    info.lpFile = file.c_str();
    info.lpParameters = L"";
    info.lpDirectory = nullptr;
    info.nShow = SW_SHOW;
    if (!ShellExecuteExW(&info)) {
        errorText = QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx %1").arg(path);
        return false;
    }
    const qintptr instance = reinterpret_cast<qintptr>(info.hInstApp);
    if (instance < 33) {
        errorText = QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx (hInstApp %2)%1")
                        .arg(path)
                        .arg(instance);
        return false;
    }
    if (wait) {
        // A process handle is no event; the call stays as a fixed step of the
        // sequence all the same. The handle is left open, as the wait is the
        // only use the launcher has for it.
        ResetEvent(info.hProcess);
        if (WaitForSingleObject(info.hProcess, INFINITE) == WAIT_FAILED) {
            errorText = QStringLiteral("ApplUpdater::openExecutableFile: failed waiting signal %1").arg(path);
            return false;
        }
    }
    return true;
#else
    const QString failure = QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx %1").arg(path);
    // A downloaded installer arrives without the execute bit.
    if (QFileInfo(path).isFile() && !(QFile::permissions(path) & QFileDevice::ExeOwner))
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);

    if (!wait) {
        if (!QProcess::startDetached(path, QStringList())) {
            errorText = failure;
            return false;
        }
        return true;
    }
    // The program shares the launcher's terminal, as a detached one does, and
    // the wait ends when it exits, even if a child of it goes on.
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedChannels);
    process.setInputChannelMode(QProcess::ForwardedInputChannel);
    process.start(path, QStringList());
    if (!process.waitForStarted(-1)) {
        errorText = failure;
        return false;
    }
    process.waitForFinished(-1);
    return true;
#endif
}

bool SystemEnvironment::replaceFile(const QString &from, const QString &to, QString &errorText)
{
#ifdef Q_OS_WIN
    if (MoveFileExW(reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(from).utf16()),
            reinterpret_cast<const wchar_t *>(QDir::toNativeSeparators(to).utf16()),
            MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
        return true;
    errorText = qt_error_string(int(GetLastError()));
    return false;
#else
    // QFile::rename refuses an existing target; rename(2) replaces it atomically.
    if (std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0)
        return true;
    errorText = QString::fromLocal8Bit(std::strerror(errno));
    return false;
#endif
}
