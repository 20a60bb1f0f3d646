#include "historyinfo.h"

HistoryInfo::HistoryInfo(QObject *parent)
    : ApplVersion(parent)
{ }

HistoryInfo::HistoryInfo(const QString &applType, const QString &edition, const QString &version,
    const QString &openFilePath, QObject *parent)
    : ApplVersion(applType, QString(), edition, version, parent)
    , m_openFilePath(openFilePath)
{ }

HistoryInfo::HistoryInfo(const QJsonObject &json, bool *error, QObject *parent)
    : ApplVersion(parent)
{
    m_serialNo = json.value(QStringLiteral("serial_no")).toInt(0);
    m_timestamp = json.value(QStringLiteral("timestamp")).toString();
    m_openFilePath = json.value(QStringLiteral("openfilepath")).toString();
    setVersionInfo(json.value(QStringLiteral("appl_type")).toString(),
        json.value(QStringLiteral("applname")).toString(), json.value(QStringLiteral("edition")).toString(),
        json.value(QStringLiteral("version")).toString());
    if (error) {
        // The application name may be missing; nothing else may.
        *error = m_applType.isEmpty() || m_edition.isEmpty() || m_version.isEmpty() || m_timestamp.isEmpty()
            || m_openFilePath.isEmpty();
    }
}

HistoryInfo::HistoryInfo(const HistoryInfo &other)
    : ApplVersion(nullptr)
{
    *this = other;
}

HistoryInfo::~HistoryInfo() = default;

HistoryInfo &HistoryInfo::operator=(const HistoryInfo &other)
{
    ApplVersion::operator=(other);
    m_serialNo = other.m_serialNo;
    m_timestamp = other.m_timestamp;
    m_openFilePath = other.m_openFilePath;
    return *this;
}

QJsonObject HistoryInfo::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("serial_no"), m_serialNo);
    json.insert(QStringLiteral("appl_type"), m_applType);
    json.insert(QStringLiteral("applname"), m_applName);
    json.insert(QStringLiteral("edition"), m_edition);
    json.insert(QStringLiteral("timestamp"), m_timestamp);
    json.insert(QStringLiteral("openfilepath"), m_openFilePath);
    json.insert(QStringLiteral("version"), m_version);
    return json;
}
