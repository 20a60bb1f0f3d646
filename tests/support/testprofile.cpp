#include "testprofile.h"

#include "systemsettings.h"

#include <QDir>
#include <QSettings>

namespace {

// Each variable and the folder under the profile that it points to.
const char *const kVariables[][2] = { { "HOME", "home" }, { "XDG_DATA_HOME", "data" }, { "XDG_CONFIG_HOME", "config" },
    { "XDG_RUNTIME_DIR", "runtime" }, { "XDG_CACHE_HOME", "cache" } };

// The profiles alive, oldest first. The variables point at the newest, and
// at what they were before the first once the last has gone, whatever order
// the profiles go in: a test that makes the next profile before the last one
// goes must not end up in the user's real folders or in a deleted profile.
QList<const TestProfile *> g_profiles;
QHash<QByteArray, QByteArray> g_before; // only the variables that were set

} // namespace

TestProfile::TestProfile()
{
    if (g_profiles.isEmpty()) {
        g_before.clear();
        for (const auto &variable : kVariables) {
            if (qEnvironmentVariableIsSet(variable[0]))
                g_before.insert(variable[0], qgetenv(variable[0]));
        }
    }
    g_profiles.append(this);
    for (const auto &variable : kVariables)
        QDir().mkpath(root() + '/' + QLatin1String(variable[1]));
    // Qt refuses a runtime folder that others may enter.
    QFile::setPermissions(
        root() + "/runtime", QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    pointEnvironmentHere();
}

TestProfile::~TestProfile()
{
    g_profiles.removeOne(this);
    if (!g_profiles.isEmpty()) {
        g_profiles.last()->pointEnvironmentHere();
        return;
    }
    for (const auto &variable : kVariables) {
        if (g_before.contains(variable[0]))
            qputenv(variable[0], g_before.value(variable[0]));
        else
            qunsetenv(variable[0]);
    }
}

bool TestProfile::isValid() const
{
    if (!m_dir.isValid())
        return false;
    for (const auto &variable : kVariables) {
        if (QFile::decodeName(qgetenv(variable[0])) != root() + '/' + QLatin1String(variable[1]))
            return false;
    }
    return true;
}

void TestProfile::pointEnvironmentHere() const
{
    for (const auto &variable : kVariables)
        qputenv(variable[0], QFile::encodeName(root() + '/' + QLatin1String(variable[1])));
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
