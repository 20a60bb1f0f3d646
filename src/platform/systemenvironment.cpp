#include "systemenvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#ifdef Q_OS_WIN
#include <qt_windows.h>
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
