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

QByteArray CatalogueBuilder::bytes() const
{
    const QJsonObject schema { { "app_versions", QJsonObject { { "updates", m_updates } } } };
    return QJsonDocument(QJsonObject { { "1.0.0", schema } }).toJson();
}
