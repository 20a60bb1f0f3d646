#include "appllauncher.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>

ApplLauncher::ApplLauncher(int &argc, char **argv)
    : QApplication(argc, argv)
{
    // The build for Windows x86-64: the second assignment is the one in force.
    m_targetSystemName = QStringLiteral("win32");
    m_targetSystemName = QStringLiteral("win64");

    const QString logFolder
        = m_targetSystemName == QLatin1String("macosx") ? QCoreApplication::applicationDirPath() : launcherDataFolder();
    // mkdir makes one level only: on the very first run "/Vorlix" is missing
    // and this fails quietly; initialize() makes both levels afterwards.
    if (!QDir(logFolder).exists())
        QDir().mkdir(logFolder);
    m_logWriter.setLogFile(logFolder, QCoreApplication::applicationName());
}

ApplLauncher::~ApplLauncher() = default;

QString ApplLauncher::getTargetSystemName() const
{
    return m_targetSystemName;
}

void ApplLauncher::writeLog(const QString &message)
{
    m_logWriter.writeLine(message);
}

QString ApplLauncher::vorlixDataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Vorlix");
}

QString ApplLauncher::launcherDataFolder()
{
    return vorlixDataFolder() + QStringLiteral("/ZanmirLauncher");
}

bool ApplLauncher::openFileByApplication(const QString &filePath, const QString &applicationPath)
{
    if (applicationPath.isEmpty() || !QFile::exists(applicationPath))
        return false;

    if (m_targetSystemName == QLatin1String("macosx")) {
        const QString program = QStringLiteral("/usr/bin/open");
        QStringList arguments { QStringLiteral("-a"), applicationPath };
        if (!filePath.isEmpty())
            arguments.append(filePath);
        const QString joined = arguments.join(QLatin1Char(' '));
        if (QProcess::execute(program, arguments) != 0) {
            m_logWriter.writeLine(
                QStringLiteral("ApplLauncher::openFileByApplication: Failed to execute command[%1 %2]")
                    .arg(program, joined));
            return false;
        }
        m_logWriter.writeLine(
            QStringLiteral("ApplLauncher::openFileByApplication: Command[%1 %2]").arg(program, joined));
        return true;
    }

    // The command line quotes both parts even for an empty file path, so the
    // editor always receives exactly one argument, an empty one meaning "no
    // project". The arguments are handed over as a list so that no shell-style
    // splitting can drop that empty argument or break a path at its blanks.
    const QString command = QStringLiteral("\"%1\" \"%2\"").arg(applicationPath, filePath);
    if (!QProcess::startDetached(applicationPath, QStringList { filePath })) {
        m_logWriter.writeLine(
            QStringLiteral("ApplLauncher::openFileByApplication: Failed to open file(QProcess::startDetached): %1")
                .arg(command));
        return false;
    }
    return true;
}
