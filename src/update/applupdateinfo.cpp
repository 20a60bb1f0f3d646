#include "applupdateinfo.h"

#include <QJsonArray>

ApplUpdateInfo::ApplUpdateInfo(QObject *parent)
    : ApplVersion(parent)
{ }

ApplUpdateInfo::ApplUpdateInfo(const QJsonObject &json, QObject *parent)
    : ApplVersion(parent)
{
    const QString applType = json.value(QStringLiteral("appl_type")).toString();
    const QString applName = json.value(QStringLiteral("appl_name")).toString();
    const QString version = json.value(QStringLiteral("version")).toString();
    if (applType.isEmpty() || applName.isEmpty() || version.isEmpty())
        return;

    setVersionInfo(applType, applName, QString(), version);
    const QJsonArray targets = json.value(QStringLiteral("targets")).toArray();
    for (const QJsonValue &value : targets) {
        const QJsonObject target = value.toObject();
        const QString name = target.value(QStringLiteral("target")).toString();
        const QString url = target.value(QStringLiteral("url")).toString();
        const QString fileName = target.value(QStringLiteral("filename")).toString();
        if (name.isEmpty() || url.isEmpty() || fileName.isEmpty())
            continue;
        m_urls.insert(name, url);
        m_fileNames.insert(name, fileName);
        // Optional: a target without it downloads unchecked, as before.
        const QString sha256 = target.value(QStringLiteral("sha256")).toString();
        if (sha256.isEmpty())
            m_sha256s.remove(name);
        else
            m_sha256s.insert(name, sha256.toLower());
    }
}

ApplUpdateInfo::ApplUpdateInfo(const ApplUpdateInfo &other)
    : ApplVersion(nullptr)
{
    *this = other;
}

ApplUpdateInfo::~ApplUpdateInfo() = default;

ApplUpdateInfo &ApplUpdateInfo::operator=(const ApplUpdateInfo &other)
{
    ApplVersion::operator=(other);
    m_urls = other.m_urls;
    m_fileNames = other.m_fileNames;
    m_sha256s = other.m_sha256s;
    return *this;
}

bool ApplUpdateInfo::isSameApplication(const ApplVersion &other) const
{
    return other.isPublicVersion() && m_applType == other.getApplType();
}

bool ApplUpdateInfo::isEmpty() const
{
    return m_applType.isEmpty() && m_version.isEmpty();
}

bool ApplUpdateInfo::isPublicVersion() const
{
    return false;
}

QString ApplUpdateInfo::getSeries() const
{
    if (m_versionNumbers.size() < 2)
        return QString();
    return QStringLiteral("%1.%2").arg(m_versionNumbers.at(0)).arg(m_versionNumbers.at(1));
}
