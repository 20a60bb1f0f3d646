#ifndef CATALOGUEBUILDER_H
#define CATALOGUEBUILDER_H

#include <QByteArray>
#include <QJsonArray>
#include <QString>

// Builds update catalogues in the server's format.
class CatalogueBuilder
{
public:
    // A null text leaves its key out, for incomplete entries. Without
    // targets the entry gets one "win64" installer.
    CatalogueBuilder &update(
        const QString &type, const QString &name, const QString &version, const QJsonArray &targets = QJsonArray());
    CatalogueBuilder &editor(const QString &version, const QString &name = QStringLiteral("release"));
    CatalogueBuilder &launcher(const QString &version);
    CatalogueBuilder &web(const QString &type, const QString &version, const QString &url);

    static QJsonArray winTarget(const QString &version);

    QString text() const;
    QByteArray bytes() const;

private:
    QJsonArray m_updates;
    QJsonArray m_web;
};

#endif // CATALOGUEBUILDER_H
