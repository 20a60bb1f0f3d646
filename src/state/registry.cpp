#include "registry.h"

#include "jsonfilereader.h"
#include "systemsettings.h"
#include "textfilewriter.h"

#include <QHash>
#include <QJsonArray>
#include <QPair>
#include <QSettings>
#include <QStringList>

#include <algorithm>

namespace {

const QString kApplications = QStringLiteral("applications");
const QString kRecordsStamp = QStringLiteral("records_stamp");
const QString kApplType = QStringLiteral("appl_type");
const QString kVersions = QStringLiteral("versions");
const QString kEdition = QStringLiteral("edition");
const QString kVersion = QStringLiteral("version");

QString describe(const EditorInfo &info)
{
    return QStringLiteral("applType[%1] edition[%2] version[%3]")
        .arg(info.getApplType(), info.getEdition(), info.getVersion());
}

// The valid entries of one store of uninstall records, in its order.
QList<EditorInfo> readEntries(const QSettings &records)
{
    // Both tests are substring tests on purpose: the key path only has to
    // contain "DisplayName", and the name only has to contain one of the
    // two product names, in this exact case.
    QStringList subkeys;
    const QStringList keys = records.allKeys();
    for (const QString &key : keys) {
        if (!key.contains(QLatin1String("DisplayName")))
            continue;
        const QString displayName = records.value(key).toString();
        if (displayName.contains(QLatin1String("Vorlix Zanmir Launcher"))
            || displayName.contains(QLatin1String("Vorlix Zanmir Editor")))
            subkeys.append(key.split(QLatin1Char('/'), Qt::KeepEmptyParts).first());
    }

    QList<EditorInfo> entries;
    for (const QString &subkey : qAsConst(subkeys)) {
        const auto value = [&records, &subkey](const char *name) {
            return records.value(QStringLiteral("%1/%2").arg(subkey, QLatin1String(name)), QString()).toString();
        };
        const EditorInfo info(value("AppType"), value("AppName"), value("AppEdition"), value("AppVersion"),
            value("EditorPath"), value("UninstallString"));
        // Half-written entries are skipped without a word.
        if (info.isValid())
            entries.append(info);
    }
    return entries;
}

} // namespace

Registry::Registry(const QString &filePath, QObject *parent)
    : QObject(parent)
    , m_filePath(filePath)
{ }

Registry::~Registry() = default;

bool Registry::read()
{
    JsonFileReader reader(m_filePath);
    if (!reader.parse()) {
        scanInstalledApplications();
        if (!reader.parse()) {
            m_errorText = QStringLiteral("Failed to read registry: %1").arg(reader.getErrorText());
            return false;
        }
    }
    // A file that parses is taken as it stands. It names the state of the
    // records that it was built from: while they stay so, no query parses
    // them again, in this process or a later one.
    m_infoText = QStringLiteral("Registry is read: %1").arg(m_filePath);
    m_document = reader.getDocument();
    m_fileText = reader.getContents();
    const QByteArray builtFrom = m_document.object().value(kRecordsStamp).toString().toLatin1();
    if (!builtFrom.isEmpty() && builtFrom == SystemSettings::uninstallRecordsStamp())
        m_recordsStamp = builtFrom;
    return true;
}

QString Registry::fileText() const
{
    QByteArray json = m_document.toJson();
    const int end = json.indexOf('\0');
    if (end >= 0)
        json.truncate(end);
    return QString::fromUtf8(json);
}

bool Registry::write()
{
    const QString text = fileText();
    TextFileWriter writer(m_filePath);
    if (!writer.writeNew(text)) {
        m_errorText = QStringLiteral("Failed to update registry: %1").arg(writer.getErrorText());
        return false;
    }
    m_fileText = text;
    m_infoText = QStringLiteral("Registry is updated: %1").arg(m_filePath);
    return true;
}

void Registry::scanInstalledApplications()
{
    // Taken before the read: a change while reading shows at the next query.
    const QByteArray stamp = SystemSettings::uninstallRecordsStamp();
    // Fresh settings objects each time, so that what an installer wrote
    // since the last scan is seen. (QSettings keeps small files parsed,
    // keyed on size and time to the millisecond; a change that keeps both
    // is not seen before one of them changes.)
    QList<EditorInfo> entries;
    for (const std::unique_ptr<QSettings> &records : SystemSettings::openUninstallRecords())
        entries += readEntries(*records);

    // The same catalogue as clearing it and inserting each valid entry with
    // updateVersion, built in one pass: types in order of first appearance,
    // and a later entry of a known type, edition and version overwriting the
    // earlier one in its place.
    struct Application
    {
        QString type;
        QList<QJsonObject> versions;
        QHash<QPair<QString, QString>, int> positions;
    };
    QList<Application> applications;
    QHash<QString, int> typePositions;
    for (const EditorInfo &info : qAsConst(entries)) {
        auto type = typePositions.find(info.getApplType());
        if (type == typePositions.end()) {
            type = typePositions.insert(info.getApplType(), applications.size());
            applications.append({ info.getApplType(), {}, {} });
        }
        Application &application = applications[*type];
        const QPair<QString, QString> identity(info.getEdition(), info.getVersion());
        const auto known = application.positions.constFind(identity);
        if (known != application.positions.constEnd()) {
            application.versions[*known] = versionToJson(info);
            m_infoText = QStringLiteral("updated: %1").arg(describe(info));
        } else {
            application.positions.insert(identity, application.versions.size());
            application.versions.append(versionToJson(info));
            m_infoText = QStringLiteral("added: %1").arg(describe(info));
        }
    }

    QJsonArray array;
    for (const Application &application : qAsConst(applications)) {
        QJsonArray versions;
        for (const QJsonObject &version : application.versions)
            versions.append(version);
        QJsonObject object;
        object.insert(kApplType, application.type);
        object.insert(kVersions, versions);
        array.append(object);
    }
    QJsonObject root = m_document.object();
    root.insert(kApplications, array);
    if (stamp.isEmpty())
        root.remove(kRecordsStamp);
    else
        root.insert(kRecordsStamp, QString::fromLatin1(stamp));
    m_document.setObject(root);
    m_recordsStamp = stamp;

    // The file is a cache: written when what it would hold differs from
    // what it holds, and a failed write is left for the next change.
    if (fileText() != m_fileText)
        write();
}

void Registry::clearApplications()
{
    QJsonObject root = m_document.object();
    QJsonArray applications = root.value(kApplications).toArray();
    while (!applications.isEmpty())
        applications.removeLast();
    root.insert(kApplications, applications);
    m_document.setObject(root);
}

void Registry::updateVersion(const QString &operation, const EditorInfo &info)
{
    const bool insert = operation == QLatin1String("insert");
    const bool update = operation == QLatin1String("update");
    const bool remove = operation == QLatin1String("delete");

    QJsonObject root = m_document.object();
    QJsonArray applications = root.value(kApplications).toArray();
    bool done = false;

    for (int a = 0; a < applications.size(); ++a) {
        QJsonObject application = applications.at(a).toObject();
        if (application.value(kApplType).toString() != info.getApplType())
            continue;

        QJsonArray versions = application.value(kVersions).toArray();
        bool changed = false;
        int match = -1;
        for (int v = 0; v < versions.size(); ++v) {
            const QJsonObject version = versions.at(v).toObject();
            if (version.value(kEdition).toString() == info.getEdition()
                && version.value(kVersion).toString() == info.getVersion()) {
                match = v;
                break;
            }
        }

        if (match >= 0) {
            if (insert || update) {
                // A second entry of the same triple overwrites the first, so
                // the catalogue never holds a triple twice.
                versions.replace(match, versionToJson(info));
                m_infoText = QStringLiteral("updated: %1").arg(describe(info));
                changed = true;
            } else if (remove) {
                // The application object stays, with an empty list if need be.
                versions.removeAt(match);
                m_infoText = QStringLiteral("deleted: %1").arg(describe(info));
                changed = true;
            }
            done = true;
        } else if (insert) {
            versions.append(versionToJson(info));
            m_infoText = QStringLiteral("added: %1").arg(describe(info));
            changed = true;
            done = true;
        }

        if (changed) {
            application.insert(kVersions, versions);
            applications.replace(a, application);
        }
        break;
    }

    if (!done) {
        if (insert) {
            QJsonObject application;
            application.insert(kApplType, info.getApplType());
            application.insert(kVersions, QJsonArray { versionToJson(info) });
            applications.append(application);
            m_infoText = QStringLiteral("added: %1").arg(describe(info));
        } else if (update || remove) {
            m_infoText = QStringLiteral("Version does not exist in registry: [%1][%2][%3]")
                             .arg(info.getApplType(), info.getEdition(), info.getVersion());
            return;
        } else {
            return;
        }
    }

    root.insert(kApplications, applications);
    m_document.setObject(root);
}

QJsonObject Registry::versionToJson(const EditorInfo &info) const
{
    return info.toJson(false);
}

QList<EditorInfo> Registry::getVersionList(const QString &applType)
{
    if (m_recordsStamp.isEmpty() || SystemSettings::uninstallRecordsStamp() != m_recordsStamp)
        scanInstalledApplications();

    QList<EditorInfo> list;
    const QJsonArray applications = m_document.object().value(kApplications).toArray();
    for (const QJsonValue &element : applications) {
        const QJsonObject application = element.toObject();
        const QString type = application.value(kApplType).toString();
        if (type != applType)
            continue;
        const QJsonArray versions = application.value(kVersions).toArray();
        for (const QJsonValue &versionElement : versions) {
            const QJsonObject version = versionElement.toObject();
            list.append(EditorInfo(type, version.value(QStringLiteral("applname")).toString(),
                version.value(kEdition).toString(), version.value(kVersion).toString(),
                version.value(QStringLiteral("path")).toString(),
                version.value(QStringLiteral("uninstaller_path")).toString()));
        }
    }
    return list;
}

EditorInfo Registry::findVersion(const ApplVersion &version)
{
    EditorInfo result;
    const QList<EditorInfo> list = getVersionList(version.getApplType());
    for (const EditorInfo &editor : list) {
        if (editor.isSameVersion(version))
            result = editor;
    }
    return result;
}

EditorInfo Registry::findVersionForDocument(const ApplVersion &version)
{
    // Only editors open projects, whatever type the record names.
    QList<EditorInfo> list = getVersionList(QStringLiteral("editor"));
    sortNewestFirst(list);
    if (list.isEmpty())
        return EditorInfo();

    for (const EditorInfo &editor : qAsConst(list)) {
        if (editor.isSameVersion(version))
            return editor;
    }
    for (const EditorInfo &editor : qAsConst(list)) {
        if (editor.isSameVersionOtherEdition(version))
            return editor;
    }
    const EditorInfo newest = list.first();
    if (newest.isSameApplication(version))
        return newest;
    // The newest version in another edition than the newest entry's, which
    // may be the record's own edition.
    for (const EditorInfo &editor : qAsConst(list)) {
        if (editor.isSameVersionOtherEdition(newest))
            return editor;
    }
    return newest;
}

EditorInfo Registry::findUpdatedVersion(const ApplVersion &version)
{
    EditorInfo result;
    const QList<EditorInfo> list = getVersionList(version.getApplType());
    for (const EditorInfo &editor : list) {
        if ((editor.isNewerInSameSeries(version) || editor.isSameVersion(version)) && editor.isNewerThan(result))
            result = editor;
    }
    return result;
}

EditorInfo Registry::findRecentVersion(const QString &applType)
{
    EditorInfo result;
    const QList<EditorInfo> list = getVersionList(applType);
    for (const EditorInfo &editor : list) {
        if (editor.isPublicVersion() && editor.isNewerThan(result))
            result = editor;
    }
    return result;
}

QList<EditorInfo> Registry::getReleaseVersions()
{
    QList<EditorInfo> releases;
    const QList<EditorInfo> list = getVersionList(QStringLiteral("editor"));
    for (const EditorInfo &editor : list) {
        if (editor.isRelease())
            releases.append(editor);
    }
    return releases;
}

void Registry::sortNewestFirst(QList<EditorInfo> &editors)
{
    std::sort(editors.begin(), editors.end(),
        [](const EditorInfo &a, const EditorInfo &b) { return a.compareVersion(b) > 0; });
}
