#ifndef CATALOGUEBUILDER_H
#define CATALOGUEBUILDER_H

#include "applupdateinfo.h"

#include <QJsonArray>
#include <QStringList>

// Builds update catalogues in the server's format.
class CatalogueBuilder
{
public:
    // A null text leaves its key out, for incomplete entries. Without
    // targets the entry gets one "win64" installer.
    CatalogueBuilder &update(
        const QString &type, const QString &name, const QString &version, const QJsonArray &targets = QJsonArray());
    // "editor 2.1.0.5" (a release), "editor 2.1.0.9 beta", "launcher 1.1.0.0", in order.
    CatalogueBuilder &entries(const QStringList &entries);
    CatalogueBuilder &web(const QString &type, const QString &version, const QString &url);
    QByteArray bytes() const;

    // The versions of the entries, in their order.
    static QStringList versions(const QList<ApplUpdateInfo> &updates);

private:
    QJsonArray m_updates;
    QJsonArray m_web;
};

#endif // CATALOGUEBUILDER_H
