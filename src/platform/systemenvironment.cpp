#include "systemenvironment.h"

#include <QFile>
#include <QFileInfo>
#include <QProcess>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#include <shellapi.h>
#include <stdlib.h>
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

bool SystemEnvironment::openFile(const QString &path, bool wait, QString &errorText)
{
    if (!QFile::exists(path)) {
        errorText = QStringLiteral("File not found: %1").arg(path);
        return false;
    }
    const QString failure = QStringLiteral("ApplUpdater::openExecutableFile: failed ShellExecuteEx %1").arg(path);
#ifdef Q_OS_WIN
    std::wstring file = path.toStdWString();
    SHELLEXECUTEINFOW info = {};
    info.cbSize = sizeof(info);
    info.fMask = SEE_MASK_NOCLOSEPROCESS;
    info.lpVerb = L"open";
    info.lpFile = file.c_str();
    info.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&info)) {
        errorText = failure;
        return false;
    }
    if (info.hProcess) {
        if (wait) {
            ResetEvent(info.hProcess);
            WaitForSingleObject(info.hProcess, INFINITE);
        }
        CloseHandle(info.hProcess);
    }
    return true;
#else
    // A downloaded installer arrives without the execute bit.
    QFileInfo info(path);
    if (info.isFile() && !(QFile::permissions(path) & QFileDevice::ExeOwner))
        QFile::setPermissions(path, QFile::permissions(path) | QFileDevice::ExeOwner);

    if (!wait) {
        if (!QProcess::startDetached(path, QStringList())) {
            errorText = failure;
            return false;
        }
        return true;
    }
    QProcess process;
    process.start(path, QStringList());
    if (!process.waitForStarted(-1)) {
        errorText = failure;
        return false;
    }
    process.waitForFinished(-1);
    return true;
#endif
}
