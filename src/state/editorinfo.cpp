#include "editorinfo.h"

EditorInfo::EditorInfo(QObject *parent)
    : ApplVersion(parent)
{ }

EditorInfo::EditorInfo(const QString &applType, const QString &edition, const QString &version, QObject *parent)
    : ApplVersion(applType, QString(), edition, version, parent)
{ }

EditorInfo::EditorInfo(const QString &applType, const QString &applName, const QString &edition, const QString &version,
    const QString &path, const QString &uninstallerPath, QObject *parent)
    : ApplVersion(applType, applName, edition, version, parent)
    , m_path(path)
    , m_uninstallerPath(uninstallerPath)
{ }

EditorInfo::EditorInfo(bool shortForm, const QJsonObject &json, bool *error, QObject *parent)
    : ApplVersion(parent)
{
    const QString edition = json.value(QStringLiteral("edition")).toString();
    const QString version = json.value(QStringLiteral("version")).toString();
    if (shortForm) {
        setVersionInfo(json.value(QStringLiteral("appl_type")).toString(), QString(), edition, version);
    } else {
        QString applType = json.value(QStringLiteral("appl_type")).toString();
        if (applType.isEmpty())
            applType = QStringLiteral("editor");
        m_path = json.value(QStringLiteral("path")).toString();
        m_uninstallerPath = json.value(QStringLiteral("uninstaller_path")).toString();
        setVersionInfo(applType, json.value(QStringLiteral("applname")).toString(), edition, version);
    }
    if (error)
        *error = false;
}

EditorInfo::EditorInfo(const EditorInfo &other)
    : ApplVersion(nullptr)
{
    *this = other;
}

EditorInfo::~EditorInfo() = default;

EditorInfo &EditorInfo::operator=(const EditorInfo &other)
{
    ApplVersion::operator=(other);
    m_path = other.m_path;
    m_uninstallerPath = other.m_uninstallerPath;
    return *this;
}

bool EditorInfo::isValid() const
{
    return !isEmpty() && !m_applName.isEmpty() && !m_path.isEmpty() && !m_uninstallerPath.isEmpty();
}

QJsonObject EditorInfo::toJson(bool shortForm) const
{
    QJsonObject json;
    json.insert(QStringLiteral("appl_type"), m_applType);
    json.insert(QStringLiteral("edition"), m_edition);
    json.insert(QStringLiteral("version"), m_version);
    if (!shortForm) {
        json.insert(QStringLiteral("applname"), m_applName);
        json.insert(QStringLiteral("path"), m_path);
        json.insert(QStringLiteral("uninstaller_path"), m_uninstallerPath);
    }
    return json;
}
