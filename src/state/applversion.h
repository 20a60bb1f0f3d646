#ifndef APPLVERSION_H
#define APPLVERSION_H

#include "baseobject.h"

#include <QList>
#include <QObject>
#include <QString>

// Identity of one version of one application and the rules by which two
// versions compare. Records are copied by assignment; the copy takes the
// identity and the parsed numbers, never the parent or the texts.
class ApplVersion : public QObject, public BaseObject
{
    Q_OBJECT

public:
    explicit ApplVersion(QObject *parent = nullptr);
    ApplVersion(const QString &applType, const QString &applName, const QString &edition, const QString &version,
        QObject *parent = nullptr);
    ~ApplVersion() override;

    ApplVersion &operator=(const ApplVersion &other);

    void setVersionInfo(
        const QString &applType, const QString &applName, const QString &edition, const QString &version);

    // Type and edition are equal, as exact text.
    virtual bool isSameApplication(const ApplVersion &other) const;
    // Type, edition and version are all empty; name and paths do not count.
    virtual bool isEmpty() const;
    virtual bool isLauncher() const;
    virtual bool isRelease() const;
    virtual bool isPublicVersion() const;
    virtual QString getApplType() const;
    virtual QString getApplName() const;
    virtual QString getEdition() const;
    virtual QString getVersion() const;
    // The version text, with "d" behind it for an in-house build.
    virtual QString getDisplayVersion() const;

    // Numeric, element by element; a longer list wins a tie, so 1.2 < 1.2.0.
    int compareVersion(const ApplVersion &other, bool *ok = nullptr) const;
    bool isSameApplType(const ApplVersion &other) const;
    bool isApplType(const QString &applType) const;
    bool isSameVersion(const ApplVersion &other) const;
    bool isSameVersionOtherEdition(const ApplVersion &other) const;
    // Every record is newer than the empty record, an empty one included.
    bool isNewerThan(const ApplVersion &other) const;
    bool isNewerSeries(const ApplVersion &other) const;
    bool isNewerInSameSeries(const ApplVersion &other) const;

    QList<quint32> getVersionNumbers() const { return m_versionNumbers; }

protected:
    QString m_applType;
    QString m_applName;
    QString m_edition;
    QString m_version;
    QList<quint32> m_versionNumbers;
};

// Splits a version text at "." and reads decimal numbers up to the first part
// that is not one: "1.2.x.4" gives 1, 2.
QList<quint32> parseVersionNumbers(const QString &version);
// Element by element, unsigned; when one list ends first, the longer is greater.
int compareVersionNumbers(const QList<quint32> &left, const QList<quint32> &right);

// Current local time as "yyyy/MM/dd hh:mm:ss".
QString currentTimestamp();

// Compares the first two parts of two version texts as text, not as numbers:
// 1.10 orders before 1.9. Callers rely on this as a same-series test.
int majorMinorCompare(const QString &a, const QString &b);

#endif // APPLVERSION_H
