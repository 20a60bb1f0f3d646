#include "webupdateinfo.h"

#include "applversion.h"

static const QString kNewsWeb = QStringLiteral("newsweb");
static const QString kHowtoWeb = QStringLiteral("howtoweb");
static const QString kZeroVersion = QStringLiteral("0.0.0.0");

WebUpdateInfo::WebUpdateInfo(const QString &defaultType, const QJsonObject &json, bool *error, QObject *parent)
    : QObject(parent)
{
    m_type = json.value(QStringLiteral("type")).toString();
    m_url = json.value(QStringLiteral("url")).toString();
    setVersion(json.value(QStringLiteral("version")).toString());

    const bool typeMissing = m_type.isEmpty();
    if (typeMissing) {
        // Without a type the element is unusable: it becomes an empty record.
        m_type = (defaultType == kNewsWeb || defaultType == kHowtoWeb) ? defaultType : kNewsWeb;
        m_version = kZeroVersion;
        m_url.clear();
    } else if (m_version.isEmpty()) {
        // The numbers stay empty, so any stored stamp compares as up to date.
        m_version = kZeroVersion;
    }
    // An empty url is no error: a fresh manager file stores stamps without one.
    if (error)
        *error = typeMissing;
}

WebUpdateInfo::WebUpdateInfo(const QString &type, const QString &version, const QString &url, QObject *parent)
    : QObject(parent)
    , m_type(type)
    , m_url(url)
{
    setVersion(version);
}

WebUpdateInfo::WebUpdateInfo(const WebUpdateInfo &other)
    : QObject(nullptr)
{
    *this = other;
}

WebUpdateInfo::~WebUpdateInfo() = default;

WebUpdateInfo &WebUpdateInfo::operator=(const WebUpdateInfo &other)
{
    if (this != &other) {
        m_type = other.m_type;
        m_version = other.m_version;
        m_url = other.m_url;
        m_versionNumbers = other.m_versionNumbers;
    }
    return *this;
}

bool WebUpdateInfo::isEmpty() const
{
    return m_type.isEmpty() || m_version.isEmpty() || m_url.isEmpty();
}

void WebUpdateInfo::setVersion(const QString &version)
{
    m_version = version;
    m_versionNumbers = parseVersionNumbers(version);
}

QJsonObject WebUpdateInfo::toJson() const
{
    QJsonObject json;
    json.insert(QStringLiteral("type"), m_type);
    json.insert(QStringLiteral("url"), m_url);
    json.insert(QStringLiteral("version"), m_version);
    return json;
}

int WebUpdateInfo::compareVersion(const WebUpdateInfo &other, bool *ok) const
{
    if (ok)
        *ok = true;
    return compareVersionNumbers(m_versionNumbers, other.m_versionNumbers);
}
