#ifndef CATALOGUEBUILDER_H
#define CATALOGUEBUILDER_H

#include <QJsonArray>
#include <QStringList>

// Builds update catalogues in the server's format.
class CatalogueBuilder
{
public:
    // "editor 2.1.0.5" (a release), "editor 2.1.0.9 beta", "launcher 1.1.0.0", in order, each with
    // a "win64" installer; "editor 2.1.0.7 release macosx" has one for "macosx" instead.
    CatalogueBuilder &entries(const QStringList &entries);
    // Gives the last entry this one installer, checked by that digest when there is one.
    CatalogueBuilder &installer(const QString &fileName, const QString &url, const QByteArray &sha256 = QByteArray());
    QByteArray bytes() const;

    // The versions of catalogue entries or installed records, in their order.
    template<class Record> static QStringList versions(const QList<Record> &records)
    {
        QStringList result;
        for (const Record &record : records)
            result.append(record.getVersion());
        return result;
    }

private:
    QJsonArray m_updates;
};

#endif // CATALOGUEBUILDER_H
