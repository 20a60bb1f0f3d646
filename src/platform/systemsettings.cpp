#include "systemsettings.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#endif

namespace {

QString vorlixConfigFile(const QString &name)
{
    return QStringLiteral("%1/Vorlix/%2")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), name);
}

#ifndef Q_OS_WIN
// Size, time and file of one records file; "absent" when it is missing, and
// empty while it is too young to be told apart from a second write.
QByteArray fileStamp(const QString &path)
{
    struct stat status
    {
    };
    if (::stat(QFile::encodeName(path).constData(), &status) != 0)
        return QByteArrayLiteral("absent");
    // A file rewritten in place within one tick of the file system's clock
    // keeps size, time and inode, so a file changed so lately gets no stamp.
    const qint64 modifiedNs = qint64(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    const qint64 nowNs = QDateTime::currentMSecsSinceEpoch() * 1000000;
    if (nowNs - modifiedNs < 2000000000LL)
        return QByteArray();
    return QByteArray::number(qint64(status.st_size)) + ' ' + QByteArray::number(modifiedNs) + ' '
        + QByteArray::number(quint64(status.st_ino)) + ' ' + QByteArray::number(quint64(status.st_dev));
}
#endif

} // namespace

QString SystemSettings::uninstallRecordsFile()
{
#ifdef Q_OS_WIN
    return QString();
#else
    return vorlixConfigFile(QStringLiteral("UninstallRecords.ini"));
#endif
}

QString SystemSettings::internetSettingsFile()
{
#ifdef Q_OS_WIN
    return QString();
#else
    return vorlixConfigFile(QStringLiteral("InternetSettings.ini"));
#endif
}

QString SystemSettings::installationRecordFile()
{
#ifdef Q_OS_WIN
    return QString();
#else
    return QDir::cleanPath(
        QCoreApplication::applicationDirPath() + QStringLiteral("/../share/zanmir-launcher/UninstallRecords.ini"));
#endif
}

QByteArray SystemSettings::uninstallRecordsStamp()
{
#ifdef Q_OS_WIN
    return QByteArray();
#else
    const QByteArray user = fileStamp(uninstallRecordsFile());
    const QByteArray installation = fileStamp(installationRecordFile());
    if (user.isEmpty() || installation.isEmpty())
        return QByteArray();
    return user + " | " + installation;
#endif
}

std::vector<std::unique_ptr<QSettings>> SystemSettings::openUninstallRecords()
{
    std::vector<std::unique_ptr<QSettings>> records;
#ifdef Q_OS_WIN
    records.push_back(std::make_unique<QSettings>(
        QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"),
        QSettings::NativeFormat));
#else
    // A missing file reads as an empty key: nothing installed.
    for (const QString &path : { uninstallRecordsFile(), installationRecordFile() })
        records.push_back(std::make_unique<QSettings>(path, QSettings::IniFormat));
#endif
    return records;
}

std::unique_ptr<QSettings> SystemSettings::openInternetSettings()
{
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Internet Settings\\"),
        QSettings::NativeFormat);
#else
    // Without the file there is no such source at all, which is not the same as
    // a source without "ProxyEnable": a Linux desktop must not be warned at every start.
    const QString path = internetSettingsFile();
    if (!QFile::exists(path))
        return nullptr;
    return std::make_unique<QSettings>(path, QSettings::IniFormat);
#endif
}
