#include "testprofile.h"

#include "systemsettings.h"

#include <QDir>
#include <QSettings>

static const char *const kVariables[]
    = { "HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_RUNTIME_DIR", "XDG_CACHE_HOME" };

TestProfile::TestProfile()
{
    for (const char *name : kVariables)
        m_saved.insert(name, qgetenv(name));
    const QString base = m_dir.path();
    const QStringList folders { QStringLiteral("home"), QStringLiteral("data"), QStringLiteral("config"),
        QStringLiteral("runtime"), QStringLiteral("cache") };
    for (const QString &folder : folders)
        QDir(base).mkpath(folder);
    QFile::setPermissions(
        base + QStringLiteral("/runtime"), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    qputenv("HOME", QFile::encodeName(base + QStringLiteral("/home")));
    qputenv("XDG_DATA_HOME", QFile::encodeName(base + QStringLiteral("/data")));
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(base + QStringLiteral("/config")));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(base + QStringLiteral("/runtime")));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(base + QStringLiteral("/cache")));
}

TestProfile::~TestProfile()
{
    for (auto it = m_saved.constBegin(); it != m_saved.constEnd(); ++it) {
        if (it.value().isEmpty())
            qunsetenv(it.key().constData());
        else
            qputenv(it.key().constData(), it.value());
    }
}

QString TestProfile::dataHome() const
{
    return root() + QStringLiteral("/data");
}

QString TestProfile::configHome() const
{
    return root() + QStringLiteral("/config");
}

QString TestProfile::launcherFolder(bool create) const
{
    const QString folder = dataHome() + QStringLiteral("/Vorlix/ZanmirLauncher");
    if (create)
        QDir().mkpath(folder);
    return folder;
}

QString TestProfile::managerFile() const
{
    return launcherFolder() + QStringLiteral("/ZanmirManager.json");
}

QString TestProfile::catalogueFile() const
{
    QDir().mkpath(dataHome() + QStringLiteral("/Vorlix"));
    return dataHome() + QStringLiteral("/Vorlix/ZanmirApplications.json");
}

QString TestProfile::logFile(const QString &executableName) const
{
    return launcherFolder(false) + QStringLiteral("/%1.log").arg(executableName);
}

void TestProfile::registerApplication(const QString &subkey, const QHash<QString, QString> &values) const
{
    QSettings settings(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat);
    settings.beginGroup(subkey);
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        settings.setValue(it.key(), it.value());
    settings.endGroup();
    settings.sync();
}

void TestProfile::unregisterApplication(const QString &subkey) const
{
    QSettings settings(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat);
    settings.remove(subkey);
    settings.sync();
}

void TestProfile::registerVersion(
    const QString &subkey, const QString &applType, const QString &edition, const QString &version) const
{
    registerApplication(subkey, versionValues(subkey, applType, edition, version));
}

QHash<QString, QString> TestProfile::versionValues(
    const QString &subkey, const QString &applType, const QString &edition, const QString &version)
{
    const QString product = applType == QLatin1String("launcher") ? QStringLiteral("Vorlix Zanmir Launcher")
                                                                  : QStringLiteral("Vorlix Zanmir Editor");
    return { { QStringLiteral("DisplayName"), QStringLiteral("%1 %2").arg(product, version) },
        { QStringLiteral("AppType"), applType }, { QStringLiteral("AppName"), product },
        { QStringLiteral("AppEdition"), edition }, { QStringLiteral("AppVersion"), version },
        { QStringLiteral("EditorPath"), executablePath(subkey) },
        { QStringLiteral("UninstallString"), uninstallerPath(subkey) } };
}

QString TestProfile::executablePath(const QString &subkey)
{
    return QStringLiteral("/opt/zanmir/%1/bin/zanmir").arg(subkey);
}

QString TestProfile::uninstallerPath(const QString &subkey)
{
    return QStringLiteral("/opt/zanmir/%1/uninstall").arg(subkey);
}
