#include "applversion.h"

#include <QDateTime>
#include <QStringList>

namespace {

const QString kLauncherType = QStringLiteral("launcher");
const QString kEditorType = QStringLiteral("editor");
const QString kRelease = QStringLiteral("release");
const QString kInhouse = QStringLiteral("inhouse");

// Three-part versions of the early series are lined up with four-part ones so
// that they compare sensibly; the text itself is left as it was.
QList<quint32> normalised(const QString &applType, const QList<quint32> &numbers)
{
    if (numbers.size() != 3 || numbers.at(0) != 0)
        return numbers;
    const quint32 b = numbers.at(1);
    const quint32 c = numbers.at(2);
    if (applType == kLauncherType && b == 3)
        return { 0, 3, c, 0 };
    if (applType == kEditorType && b <= 5)
        return { 0, b, c / 10, c % 10 };
    return numbers;
}

} // namespace

ApplVersion::ApplVersion(QObject *parent)
    : QObject(parent)
{ }

ApplVersion::ApplVersion(
    const QString &applType, const QString &applName, const QString &edition, const QString &version, QObject *parent)
    : QObject(parent)
{
    setVersionInfo(applType, applName, edition, version);
}

ApplVersion::~ApplVersion() = default;

ApplVersion &ApplVersion::operator=(const ApplVersion &other)
{
    if (this != &other) {
        m_applType = other.m_applType;
        m_applName = other.m_applName;
        m_edition = other.m_edition;
        m_version = other.m_version;
        m_versionNumbers = other.m_versionNumbers;
    }
    return *this;
}

void ApplVersion::setVersionInfo(
    const QString &applType, const QString &applName, const QString &edition, const QString &version)
{
    m_applType = applType;
    m_applName = applName;
    m_edition = edition;
    m_version = version;

    m_versionNumbers = normalised(applType, parseVersionNumbers(version));
}

bool ApplVersion::isSameApplication(const ApplVersion &other) const
{
    return m_applType == other.getApplType() && m_edition == other.getEdition();
}

bool ApplVersion::isEmpty() const
{
    return m_applType.isEmpty() && m_edition.isEmpty() && m_version.isEmpty();
}

bool ApplVersion::isLauncher() const
{
    return m_applType == kLauncherType;
}

bool ApplVersion::isRelease() const
{
    return m_edition == kRelease;
}

bool ApplVersion::isPublicVersion() const
{
    if (isEmpty())
        return false;
    return m_applType == kLauncherType || m_edition == kRelease;
}

QString ApplVersion::getApplType() const
{
    return m_applType;
}

QString ApplVersion::getApplName() const
{
    return m_applName;
}

QString ApplVersion::getEdition() const
{
    return m_edition;
}

QString ApplVersion::getVersion() const
{
    return m_version;
}

QString ApplVersion::getDisplayVersion() const
{
    const QString suffix = m_edition == kInhouse ? QStringLiteral("d") : QString();
    return QStringLiteral("%1%2").arg(m_version, suffix);
}

int ApplVersion::compareVersion(const ApplVersion &other, bool *ok) const
{
    if (ok)
        *ok = true;
    return compareVersionNumbers(m_versionNumbers, other.m_versionNumbers);
}

bool ApplVersion::isSameApplType(const ApplVersion &other) const
{
    return m_applType == other.getApplType();
}

bool ApplVersion::isApplType(const QString &applType) const
{
    return m_applType == applType;
}

bool ApplVersion::isSameVersion(const ApplVersion &other) const
{
    return isSameApplication(other) && m_version == other.getVersion();
}

bool ApplVersion::isSameVersionOtherEdition(const ApplVersion &other) const
{
    return m_applType == other.getApplType() && m_version == other.getVersion() && m_edition != other.getEdition();
}

bool ApplVersion::isNewerThan(const ApplVersion &other) const
{
    if (other.isEmpty())
        return true;
    if (!isSameApplication(other))
        return false;
    return compareVersion(other) > 0;
}

bool ApplVersion::isNewerSeries(const ApplVersion &other) const
{
    if (!isSameApplication(other))
        return false;
    return majorMinorCompare(m_version, other.getVersion()) > 0;
}

bool ApplVersion::isNewerInSameSeries(const ApplVersion &other) const
{
    if (other.isEmpty())
        return false;
    if (!isSameApplication(other))
        return false;
    if (majorMinorCompare(m_version, other.getVersion()) != 0)
        return false;
    return isNewerThan(other);
}

QList<quint32> parseVersionNumbers(const QString &version)
{
    QList<quint32> numbers;
    const QStringList parts = version.split(QLatin1Char('.'), Qt::KeepEmptyParts, Qt::CaseSensitive);
    for (const QString &part : parts) {
        bool ok = false;
        const quint32 number = part.toUInt(&ok, 10);
        if (!ok)
            break; // the parts before the first bad one stay
        numbers.append(number);
    }
    return numbers;
}

int compareVersionNumbers(const QList<quint32> &left, const QList<quint32> &right)
{
    const int common = qMin(left.size(), right.size());
    for (int i = 0; i < common; ++i) {
        if (left.at(i) != right.at(i))
            return left.at(i) < right.at(i) ? -1 : 1;
    }
    if (left.size() == right.size())
        return 0;
    return left.size() > right.size() ? 1 : -1;
}

QString currentTimestamp()
{
    return QDateTime::currentDateTime().toString(QStringLiteral("yyyy/MM/dd hh:mm:ss"));
}

static QString majorMinor(const QString &version)
{
    const QStringList parts = version.split(QLatin1Char('.'));
    if (parts.size() < 2)
        return version;
    return QStringLiteral("%1.%2").arg(parts.at(0), parts.at(1));
}

int majorMinorCompare(const QString &a, const QString &b)
{
    const QString left = majorMinor(a);
    const QString right = majorMinor(b);
    if (left < right)
        return -1;
    if (left == right)
        return 0;
    return 1;
}
