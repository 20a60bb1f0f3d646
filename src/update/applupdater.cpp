#include "applupdater.h"

#include "editorinfo.h"
#include "registry.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonParseError>
#include <QMap>

#include <algorithm>

namespace {

const QString kEditorType = QStringLiteral("editor");
const QString kLauncherType = QStringLiteral("launcher");

QByteArray emptyCatalogue()
{
    QJsonObject appVersions;
    appVersions.insert(QStringLiteral("update_date"), QString());
    appVersions.insert(QStringLiteral("updates"), QJsonArray());
    QJsonObject schema;
    schema.insert(QStringLiteral("app_versions"), appVersions);
    schema.insert(QStringLiteral("web_versions"), QJsonArray());
    QJsonObject root;
    root.insert(QStringLiteral("1.0.0"), schema);
    return QJsonDocument(root).toJson();
}

// On a parse error the document stays as it was and the message is set.
bool parseJson(const QByteArray &bytes, QJsonDocument &document, QString &errorText)
{
    QJsonParseError error;
    const QJsonDocument parsed = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError) {
        errorText = QStringLiteral("Failed to parse JSON document: code[%1] message[%2]")
                        .arg(static_cast<int>(error.error))
                        .arg(error.errorString());
        return false;
    }
    document = parsed;
    return true;
}

QJsonObject schemaObject(const QJsonDocument &document)
{
    return document.object().value(QStringLiteral("1.0.0")).toObject();
}

} // namespace

ApplUpdater::ApplUpdater(const QString &targetSystemName, const LogFunction &log, QObject *parent)
    : QObject(parent)
    , m_targetSystemName(targetSystemName)
    , m_log(log)
{ }

// A download still running goes with its parent, and with it what it wrote.
ApplUpdater::~ApplUpdater() = default;

void ApplUpdater::setRegistry(Registry *registry)
{
    m_registry = registry;
}

bool ApplUpdater::setUpdateInfo(const QString &text)
{
    if (!parseJson(text.isEmpty() ? emptyCatalogue() : text.toUtf8(), m_document, m_errorText))
        return false;
    m_webUpdates.clear();
    m_updates.clear();

    const QJsonObject schema = schemaObject(m_document);
    if (schema.isEmpty())
        return false;

    const QJsonArray webVersions = schema.value(QStringLiteral("web_versions")).toArray();
    for (const QJsonValue &value : webVersions) {
        const WebUpdateInfo web(QString(), value.toObject(), nullptr);
        if (!web.isEmpty())
            m_webUpdates.append(web);
    }

    // "update_date" beside the updates is carried by the file but drives nothing.
    const QJsonObject appVersions = schema.value(QStringLiteral("app_versions")).toObject();
    const QJsonArray updates = appVersions.value(QStringLiteral("updates")).toArray();
    for (const QJsonValue &value : updates)
        m_updates.append(ApplUpdateInfo(value.toObject()));

    m_infoText = QStringLiteral("ApplUpdateInfo set.");
    return true;
}

bool ApplUpdater::isCatalogue(const QString &text, QString *reason)
{
    QJsonDocument document;
    if (!parseJson(text.toUtf8(), document, *reason))
        return false;
    if (schemaObject(document).isEmpty()) {
        *reason = QStringLiteral("No catalogue object under \"1.0.0\"");
        return false;
    }
    return true;
}

QList<ApplUpdateInfo> ApplUpdater::getUpdates(const QString &applType) const
{
    QList<ApplUpdateInfo> result;
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.isApplType(applType))
            result.append(update);
    }
    return result;
}

// The walks below carry their best result as a catalogue entry. An entry is
// never a public version, so nothing later displaces the first qualifying
// one: the publisher's order decides, newest first.

ApplUpdateInfo ApplUpdater::findUpdateFor(const ApplVersion &installed) const
{
    ApplUpdateInfo result;
    if (installed.isApplType(kLauncherType) || !m_registry)
        return result;
    const EditorInfo newestInstalled = m_registry->findUpdatedVersion(installed);
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.isNewerInSameSeries(newestInstalled) && update.isNewerThan(result))
            result = update;
    }
    return result;
}

ApplUpdateInfo ApplUpdater::findRecentFor(const ApplVersion &installed) const
{
    ApplUpdateInfo result;
    if (installed.isApplType(kLauncherType) || !m_registry)
        return result;
    const EditorInfo newestRelease = m_registry->findRecentVersion(installed.getApplType());
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.isNewerSeries(newestRelease) && update.isNewerThan(result))
            result = update;
    }
    return result;
}

ApplUpdateInfo ApplUpdater::findLatestFor(const QString &applType) const
{
    ApplUpdateInfo result;
    if (!m_registry)
        return result;
    const EditorInfo newestInstalled = m_registry->findRecentVersion(applType);
    // Entries of every type are walked: with nothing installed, the first
    // entry of the catalogue qualifies whatever its type.
    for (const ApplUpdateInfo &update : m_updates) {
        if (update.isNewerThan(newestInstalled) && update.isNewerThan(result))
            result = update;
    }
    return result;
}

QList<ApplUpdateInfo> ApplUpdater::getInstallableEditors(const QList<EditorInfo> &installed, bool showAll) const
{
    const QList<ApplUpdateInfo> editors = getUpdates(kEditorType);
    QList<ApplUpdateInfo> candidates;
    if (showAll) {
        candidates = editors;
    } else {
        // One entry per series: the one that stands first in the catalogue.
        QMap<QString, QList<int>> groups;
        for (int i = 0; i < editors.size(); ++i) {
            const QString series = editors.at(i).getSeries();
            if (!series.isEmpty())
                groups[series].append(i);
        }
        for (const QList<int> &group : qAsConst(groups)) {
            int kept = -1;
            for (int j = group.size() - 1; j >= 0; --j) {
                const int index = group.at(j);
                if (kept < 0 || majorMinorCompare(editors.at(index).getVersion(), editors.at(kept).getVersion()) == 0)
                    kept = index;
            }
            candidates.append(editors.at(kept));
        }
    }

    QList<ApplUpdateInfo> result;
    for (const ApplUpdateInfo &candidate : qAsConst(candidates)) {
        const bool isInstalled = std::any_of(installed.cbegin(), installed.cend(),
            [&candidate](const EditorInfo &editor) { return editor.getVersion() == candidate.getVersion(); });
        if (!isInstalled)
            result.append(candidate);
    }
    std::sort(result.begin(), result.end(),
        [](const ApplUpdateInfo &a, const ApplUpdateInfo &b) { return a.compareVersion(b) > 0; });
    return result;
}

bool ApplUpdater::findDownloadInfo(
    const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName)
{
    // For editor entries the catalogue's application name doubles as the edition.
    ApplVersion wanted;
    wanted.setVersionInfo(QString(), QString(), QString(), version);
    for (const ApplUpdateInfo &update : qAsConst(m_updates)) {
        if (update.isApplType(kEditorType) && update.getVersion() == version) {
            wanted.setVersionInfo(kEditorType, QString(), update.getApplName(), version);
            break;
        }
    }
    if (wanted.isEmpty())
        return false;

    const QString &targetSystem = m_targetSystemName;
    QString foundName;
    QString foundVersion;
    QString foundUrl;
    QString foundFileName;
    for (const ApplUpdateInfo &update : qAsConst(m_updates)) {
        if (update.getApplType() == wanted.getApplType() && update.getVersion() == wanted.getDisplayVersion()) {
            foundName = update.getApplName();
            foundVersion = update.getDisplayVersion();
            foundUrl = update.getUrl(targetSystem);
            foundFileName = update.getFileName(targetSystem);
            break;
        }
    }
    if (foundUrl.isEmpty() || foundFileName.isEmpty()) {
        m_errorText = QStringLiteral("Download failed: unknown URL or file name: %1 %2 (%3)")
                          .arg(wanted.getApplType(), foundVersion, targetSystem);
        return false;
    }
    applName = foundName;
    displayVersion = foundVersion;
    url = foundUrl;
    fileName = foundFileName;
    return true;
}

WebUpdateInfo ApplUpdater::getWebUpdateInfo(const QString &webType) const
{
    for (const WebUpdateInfo &web : m_webUpdates) {
        if (!web.isEmpty() && web.getType() == webType)
            return web;
    }
    return WebUpdateInfo(webType, QString(), QString());
}
