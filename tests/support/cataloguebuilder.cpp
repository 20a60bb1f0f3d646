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
    entry.insert(QStringLiteral("targets"), targets.isEmpty() ? winTarget(version) : targets);
    m_updates.append(entry);
    return *this;
}

CatalogueBuilder &CatalogueBuilder::editor(const QString &version, const QString &name)
{
    return update(QStringLiteral("editor"), name, version);
}

CatalogueBuilder &CatalogueBuilder::launcher(const QString &version)
{
    return update(QStringLiteral("launcher"), QStringLiteral("Vorlix Zanmir Launcher"), version);
}

CatalogueBuilder &CatalogueBuilder::web(const QString &type, const QString &version, const QString &url)
{
    m_web.append(QJsonObject { { "type", type }, { "version", version }, { "url", url } });
    return *this;
}

QJsonArray CatalogueBuilder::winTarget(const QString &version)
{
    return QJsonArray { QJsonObject { { "target", "win64" },
        { "url", QStringLiteral("/Zanmir/Installer/%1/setup.exe").arg(version) },
        { "filename", QStringLiteral("ZanmirSetup_%1.exe").arg(version) } } };
}

QString CatalogueBuilder::text() const
{
    return QString::fromUtf8(bytes());
}

QByteArray CatalogueBuilder::bytes() const
{
    const QJsonObject appVersions { { "update_date", "2026/11/01" }, { "updates", m_updates } };
    const QJsonObject root { { "1.0.0", QJsonObject { { "app_versions", appVersions }, { "web_versions", m_web } } } };
    return QJsonDocument(root).toJson();
}
