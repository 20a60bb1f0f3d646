#include "systemsettings.h"

#include <QFile>
#include <QStandardPaths>

static QString vorlixConfigFile(const QString &name)
{
    return QStringLiteral("%1/Vorlix/%2")
        .arg(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation), name);
}

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

std::unique_ptr<QSettings> SystemSettings::openUninstallRecords()
{
#ifdef Q_OS_WIN
    return std::make_unique<QSettings>(
        QStringLiteral("HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"),
        QSettings::NativeFormat);
#else
    // A missing file reads as an empty key: nothing installed.
    return std::make_unique<QSettings>(uninstallRecordsFile(), QSettings::IniFormat);
#endif
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
