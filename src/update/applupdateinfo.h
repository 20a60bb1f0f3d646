#ifndef APPLUPDATEINFO_H
#define APPLUPDATEINFO_H

#include "applversion.h"

#include <QHash>
#include <QJsonObject>

// One entry of the server's update catalogue: a version on offer with its
// installer location per target system. Its edition is always empty.
class ApplUpdateInfo : public ApplVersion
{
    Q_OBJECT

public:
    explicit ApplUpdateInfo(QObject *parent = nullptr);
    // From an update object; an entry without type, name or version becomes
    // an empty record that matches nothing, and a target with a missing field
    // is skipped.
    explicit ApplUpdateInfo(const QJsonObject &json, QObject *parent = nullptr);
    ApplUpdateInfo(const ApplUpdateInfo &other);
    ~ApplUpdateInfo() override;

    ApplUpdateInfo &operator=(const ApplUpdateInfo &other);

    // A catalogue entry is never "public" itself, so as the argument of a
    // comparison it never loses: the first qualifying entry of a search stays.
    bool isSameApplication(const ApplVersion &other) const override;
    bool isEmpty() const override;
    bool isPublicVersion() const override;
    // "major.minor" of the parsed numbers, or empty with fewer than two.
    virtual QString getSeries() const;

    QString getUrl(const QString &targetSystem) const { return m_urls.value(targetSystem); }
    QString getFileName(const QString &targetSystem) const { return m_fileNames.value(targetSystem); }
    // The installer's SHA-256 in hex when the catalogue names it; empty otherwise.
    QString getSha256(const QString &targetSystem) const { return m_sha256s.value(targetSystem); }

private:
    QHash<QString, QString> m_urls;
    QHash<QString, QString> m_fileNames;
    QHash<QString, QString> m_sha256s;
};

#endif // APPLUPDATEINFO_H
