#include "cataloguebuilder.h"

#include <QJsonDocument>
#include <QJsonObject>

CatalogueBuilder &CatalogueBuilder::update(
    const QString &type, const QString &name, const QString &version, const QJsonArray &targets)
{
    QJsonObject entry;
    if (!type.isNull())
        entry.insert(QStringLiteral("appl_type"), type);
    if (!name.isNull())
        entry.insert(QStringLiteral("appl_name"), name);
    if (!version.isNull())
        entry.insert(QStringLiteral("version"), version);
    const QJsonArray winTarget { QJsonObject { { "target", "win64" },
        { "url", QStringLiteral("/Zanmir/Installer/%1/setup.exe").arg(version) },
        { "filename", QStringLiteral("ZanmirSetup_%1.exe").arg(version) } } };
    entry.insert(QStringLiteral("targets"), targets.isEmpty() ? winTarget : targets);
    m_updates.append(entry);
    return *this;
}

CatalogueBuilder &CatalogueBuilder::entries(const QStringList &entries)
{
    for (const QString &entry : entries) {
        const QStringList parts = entry.split(QLatin1Char(' '));
        if (parts.at(0) == QLatin1String("launcher"))
            update(parts.at(0), QStringLiteral("Vorlix Zanmir Launcher"), parts.at(1));
        else
            update(parts.at(0), parts.value(2, QStringLiteral("release")), parts.at(1));
    }
    return *this;
}

CatalogueBuilder &CatalogueBuilder::web(const QString &type, const QString &version, const QString &url)
{
    m_web.append(QJsonObject { { "type", type }, { "version", version }, { "url", url } });
    return *this;
}

QByteArray CatalogueBuilder::bytes() const
{
    const QJsonObject appVersions { { "update_date", "2026/11/01" }, { "updates", m_updates } };
    const QJsonObject root { { "1.0.0", QJsonObject { { "app_versions", appVersions }, { "web_versions", m_web } } } };
    return QJsonDocument(root).toJson();
}

QStringList CatalogueBuilder::versions(const QList<ApplUpdateInfo> &updates)
{
    QStringList result;
    for (const ApplUpdateInfo &update : updates)
        result.append(update.getVersion());
    return result;
}
