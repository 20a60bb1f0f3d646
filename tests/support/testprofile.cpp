#include "testprofile.h"

#include "systemsettings.h"

#include <QDir>
#include <QSettings>

// Each variable and the folder under the profile that it points to.
static const char *const kVariables[][2] = { { "HOME", "home" }, { "XDG_DATA_HOME", "data" },
    { "XDG_CONFIG_HOME", "config" }, { "XDG_RUNTIME_DIR", "runtime" }, { "XDG_CACHE_HOME", "cache" } };

TestProfile::TestProfile()
{
    for (const auto &variable : kVariables) {
        m_saved.insert(variable[0], qgetenv(variable[0]));
        const QString folder = root() + '/' + QLatin1String(variable[1]);
        QDir().mkpath(folder);
        qputenv(variable[0], QFile::encodeName(folder));
    }
    // Qt refuses a runtime folder that others may enter.
    QFile::setPermissions(
        root() + "/runtime", QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

TestProfile::~TestProfile()
{
    for (auto it = m_saved.constBegin(); it != m_saved.constEnd(); ++it)
        it.value().isEmpty() ? qunsetenv(it.key().constData()) : qputenv(it.key().constData(), it.value());
}

QString TestProfile::launcherFolder(bool create) const
{
    const QString folder = dataHome() + QStringLiteral("/Vorlix/ZanmirLauncher");
    if (create)
        QDir().mkpath(folder);
    return folder;
}

QString TestProfile::catalogueFile() const
{
    QDir().mkpath(dataHome() + QStringLiteral("/Vorlix"));
    return dataHome() + QStringLiteral("/Vorlix/ZanmirApplications.json");
}

void TestProfile::registerApplication(const QString &subkey, const QHash<QString, QString> &values) const
{
    QSettings settings(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat);
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        settings.setValue(subkey + '/' + it.key(), it.value());
}

QHash<QString, QString> TestProfile::versionValues(
    const QString &subkey, const QString &applType, const QString &edition, const QString &version)
{
    const QString product = "Vorlix Zanmir " + QString(applType == "launcher" ? "Launcher" : "Editor");
    return { { "DisplayName", product + ' ' + version }, { "AppType", applType }, { "AppName", product },
        { "AppEdition", edition }, { "AppVersion", version }, { "EditorPath", executablePath(subkey) },
        { "UninstallString", uninstallerPath(subkey) } };
}
