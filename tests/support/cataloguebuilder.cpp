#include "cataloguebuilder.h"

#include <QJsonDocument>
#include <QJsonObject>

CatalogueBuilder &CatalogueBuilder::entries(const QStringList &entries)
{
    for (const QString &entry : entries) {
        const QStringList parts = entry.split(QLatin1Char(' '));
        const QJsonObject target { { "target", parts.value(3, "win64") }, { "url", "/v/" + parts.at(1) },
            { "filename", parts.at(1) + ".exe" } };
        m_updates.append(QJsonObject { { "appl_type", parts.at(0) }, { "appl_name", parts.value(2, "release") },
            { "version", parts.at(1) }, { "targets", QJsonArray { target } } });
    }
    return *this;
}

CatalogueBuilder &CatalogueBuilder::installer(const QString &fileName, const QString &url, const QByteArray &sha256)
{
    QJsonObject target { { "target", "win64" }, { "url", url }, { "filename", fileName } };
    if (!sha256.isEmpty())
        target.insert("sha256", QString::fromLatin1(sha256));
    QJsonObject entry = m_updates.last().toObject();
    entry.insert("targets", QJsonArray { target });
    m_updates.replace(m_updates.size() - 1, entry);
    return *this;
}

QByteArray CatalogueBuilder::bytes() const
{
    const QJsonObject schema { { "app_versions", QJsonObject { { "updates", m_updates } } } };
    return QJsonDocument(QJsonObject { { "1.0.0", schema } }).toJson();
}
