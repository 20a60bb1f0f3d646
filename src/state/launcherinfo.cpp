#include "launcherinfo.h"

static const QString kLauncherType = QStringLiteral("launcher");
static const QString kReleaseEdition = QStringLiteral("release");

LauncherInfo::LauncherInfo(QObject *parent)
    : EditorInfo(parent)
{ }

LauncherInfo::LauncherInfo(const QString &applName, const QString &version, const QString &path,
    const QString &uninstallerPath, QObject *parent)
    : EditorInfo(kLauncherType, applName, kReleaseEdition, version, path, uninstallerPath, parent)
{ }

LauncherInfo::LauncherInfo(const QJsonObject &json, bool *error, QObject *parent)
    : EditorInfo(parent)
{
    m_path = json.value(QStringLiteral("path")).toString();
    m_uninstallerPath = json.value(QStringLiteral("uninstaller_path")).toString();
    setVersionInfo(kLauncherType, json.value(QStringLiteral("applname")).toString(), kReleaseEdition,
        json.value(QStringLiteral("version")).toString());
    if (error)
        *error = false;
}

LauncherInfo::LauncherInfo(const LauncherInfo &other)
    : EditorInfo(other)
{ }

LauncherInfo::~LauncherInfo() = default;

LauncherInfo &LauncherInfo::operator=(const LauncherInfo &other)
{
    EditorInfo::operator=(other);
    return *this;
}

QJsonObject LauncherInfo::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("applname"), m_applName);
    json.insert(QStringLiteral("version"), m_version);
    json.insert(QStringLiteral("path"), m_path);
    json.insert(QStringLiteral("uninstaller_path"), m_uninstallerPath);
    return json;
}
