#include "jsonfilereader.h"
#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QtTest>

namespace {

// The values an installer writes, for one uninstall subkey.
QJsonObject group(const QString &subkey, const QString &applType, const QString &edition, const QString &version)
{
    const QString product
        = applType == QLatin1String("launcher") ? QString("Vorlix Zanmir Launcher") : QString("Vorlix Zanmir Editor");
    return QJsonObject { { "subkey", subkey }, { "DisplayName", QString("%1 %2").arg(product, version) },
        { "AppType", applType }, { "AppName", product }, { "AppEdition", edition }, { "AppVersion", version },
        { "EditorPath", TestProfile::executablePath(subkey) },
        { "UninstallString", TestProfile::uninstallerPath(subkey) } };
}

QJsonObject changed(QJsonObject values, const QString &key, const QJsonValue &value)
{
    if (value.isUndefined())
        values.remove(key);
    else
        values.insert(key, value);
    return values;
}

// The catalogue's form of what group() registers.
QJsonObject entry(const QJsonObject &values)
{
    return QJsonObject { { "appl_type", values.value("AppType") }, { "applname", values.value("AppName") },
        { "edition", values.value("AppEdition") }, { "version", values.value("AppVersion") },
        { "path", values.value("EditorPath") }, { "uninstaller_path", values.value("UninstallString") } };
}

QJsonObject application(const QString &applType, const QJsonArray &versions)
{
    return QJsonObject { { "appl_type", applType }, { "versions", versions } };
}

void registerGroups(const TestProfile &profile, const QJsonArray &groups)
{
    for (const QJsonValue &element : groups) {
        const QJsonObject values = element.toObject();
        QHash<QString, QString> hash;
        for (auto it = values.begin(); it != values.end(); ++it) {
            if (it.key() != QLatin1String("subkey"))
                hash.insert(it.key(), it.value().toString());
        }
        profile.registerApplication(values.value("subkey").toString(), hash);
    }
}

// "editor release 2.1.0.5" for each entry, registered under E0, E1, ... so
// that the catalogue keeps the order of the list.
void installTriples(const TestProfile &profile, const QStringList &triples)
{
    for (int i = 0; i < triples.size(); ++i) {
        const QStringList parts = triples.at(i).split(QLatin1Char(' '));
        profile.registerVersion(QString("E%1").arg(i), parts.at(0), parts.at(1), parts.at(2));
    }
}

QString triple(const ApplVersion &version)
{
    if (version.isEmpty())
        return QString();
    return QString("%1 %2 %3").arg(version.getApplType(), version.getEdition(), version.getVersion());
}

EditorInfo record(const QString &text)
{
    const QStringList parts = text.split(QLatin1Char(' '));
    return EditorInfo(parts.at(0), parts.at(1), parts.at(2));
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private:
    // A catalogue in a fresh profile, its folder made as start-up would.
    static QString catalogueIn(const TestProfile &profile)
    {
        QDir().mkpath(profile.dataHome() + QString("/Vorlix"));
        return profile.catalogueFile();
    }

    // The query must return the installed entry, with the catalogue's paths.
    static void compareFound(const EditorInfo &found, const QString &expected, const QStringList &installed)
    {
        QCOMPARE(triple(found), expected);
        if (!expected.isEmpty())
            QCOMPARE(found.getPath(), TestProfile::executablePath(QString("E%1").arg(installed.indexOf(expected))));
    }

private slots:
    void scan_data()
    {
        QTest::addColumn<QJsonArray>("groups");
        QTest::addColumn<QJsonArray>("applications");

        const QJsonObject editor = group("A_Editor", "editor", "release", "2.1.0.5");
        const QJsonObject launcher = group("B_Launcher", "launcher", "release", "1.0.0.0");

        QTest::newRow("no records at all") << QJsonArray() << QJsonArray();
        QTest::newRow("both products") << QJsonArray { editor, launcher }
                                       << QJsonArray { application("editor", { entry(editor) }),
                                              application("launcher", { entry(launcher) }) };
        QTest::newRow("other products are ignored") << QJsonArray {
            changed(group("A_Other", "editor", "release", "9.0.0.0"), "DisplayName", "Other Editor 9"), launcher
        } << QJsonArray { application("launcher", { entry(launcher) }) };
        const QJsonObject wrapped
            = changed(editor, "DisplayName", "Setup of Vorlix Zanmir Editor 2.1.0.5 (64 bit) for all users");
        QTest::newRow("display name with words around it")
            << QJsonArray { wrapped } << QJsonArray { application("editor", { entry(wrapped) }) };
        QTest::newRow("display name in the wrong case")
            << QJsonArray { changed(editor, "DisplayName", "vorlix zanmir editor 2.1.0.5") } << QJsonArray();
        const QJsonObject legacyName = changed(
            changed(editor, "DisplayName", QJsonValue::Undefined), "DisplayNameLegacy", "Vorlix Zanmir Editor");
        QTest::newRow("any value whose name holds DisplayName")
            << QJsonArray { legacyName } << QJsonArray { application("editor", { entry(legacyName) }) };
        QTest::newRow("uninstaller missing")
            << QJsonArray { changed(editor, "UninstallString", QJsonValue::Undefined) } << QJsonArray();
        QTest::newRow("editor path missing")
            << QJsonArray { changed(editor, "EditorPath", QJsonValue::Undefined) } << QJsonArray();
        const QJsonObject noVersion = changed(editor, "AppVersion", QJsonValue::Undefined);
        QTest::newRow("version alone missing is accepted")
            << QJsonArray { noVersion }
            << QJsonArray { application("editor", { entry(changed(noVersion, "AppVersion", "")) }) };
        QTest::newRow("type, edition and version all missing") << QJsonArray { changed(
            changed(changed(editor, "AppType", QJsonValue::Undefined), "AppEdition", QJsonValue::Undefined),
            "AppVersion", QJsonValue::Undefined) } << QJsonArray();
        const QJsonObject noType = changed(editor, "AppType", QJsonValue::Undefined);
        QTest::newRow("type alone missing files it under an empty type")
            << QJsonArray { noType } << QJsonArray { application("", { entry(changed(noType, "AppType", "")) }) };
        const QJsonObject twin = group("B_Editor", "editor", "release", "2.1.0.5");
        QTest::newRow("same type, edition and version twice: the later subkey wins")
            << QJsonArray { editor, twin } << QJsonArray { application("editor", { entry(twin) }) };
        const QJsonObject beta = group("C_Editor", "editor", "beta", "2.1.0.5");
        const QJsonObject older = group("D_Editor", "editor", "release", "2.0.0.0");
        QTest::newRow("editions and versions side by side, good among bad")
            << QJsonArray { editor, launcher, beta, older,
                   changed(
                       group("E_Editor", "editor", "release", "3.0.0.0"), "UninstallString", QJsonValue::Undefined) }
            << QJsonArray { application("editor", { entry(editor), entry(beta), entry(older) }),
                   application("launcher", { entry(launcher) }) };
    }

    void scan()
    {
        QFETCH(QJsonArray, groups);
        QFETCH(QJsonArray, applications);

        TestProfile profile;
        registerGroups(profile, groups);
        const QString path = catalogueIn(profile);
        Registry registry(path);

        const QList<EditorInfo> editors = registry.getVersionList(QString("editor"));
        QCOMPARE(registry.getInfoText(), QString("Registry is updated: %1").arg(path));
        QCOMPARE(TestFiles::readObject(path), (QJsonObject { { "applications", applications } }));

        // The list is the file's "editor" entries, in file order.
        QJsonArray listed;
        for (const EditorInfo &editor : editors) {
            QCOMPARE(editor.getApplType(), QString("editor"));
            listed.append(editor.toJson(false));
        }
        QJsonArray filed;
        for (const QJsonValue &element : applications) {
            if (element.toObject().value("appl_type") == QLatin1String("editor"))
                filed = element.toObject().value("versions").toArray();
        }
        QCOMPARE(listed, filed);
    }

    void readRebuildsAnUnusableFile_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("contents");

        QTest::newRow("missing") << false << QByteArray();
        QTest::newRow("blank") << true << QByteArray();
        QTest::newRow("not JSON") << true << QByteArray("{\"applications\": [");
    }

    void readRebuildsAnUnusableFile()
    {
        QFETCH(bool, exists);
        QFETCH(QByteArray, contents);

        TestProfile profile;
        profile.registerVersion(QString("A_Editor"), QString("editor"), QString("release"), QString("2.1.0.5"));
        const QString path = catalogueIn(profile);
        if (exists)
            QVERIFY(TestFiles::write(path, contents));

        Registry registry(path);
        QVERIFY(registry.read());
        QCOMPARE(registry.getInfoText(), QString("Registry is read: %1").arg(path));
        QVERIFY(registry.getErrorText().isEmpty());
        const QJsonObject rebuilt = TestFiles::readObject(path);
        QCOMPARE(rebuilt.value("applications").toArray().size(), 1);
        QCOMPARE(rebuilt.value("applications")
                     .toArray()
                     .at(0)
                     .toObject()
                     .value("versions")
                     .toArray()
                     .at(0)
                     .toObject()
                     .value("path"),
            QJsonValue(TestProfile::executablePath(QString("A_Editor"))));
    }

    void readTakesAParsableFileAsItIs()
    {
        TestProfile profile;
        profile.registerVersion(QString("A_Editor"), QString("editor"), QString("release"), QString("2.1.0.5"));
        const QString path = catalogueIn(profile);
        const QByteArray stale = R"({"applications": [{"appl_type": "editor", "versions": [
            {"appl_type": "editor", "applname": "Gone", "edition": "release", "path": "/gone", "version": "1.0.0.0"}]}]})";
        QVERIFY(TestFiles::write(path, stale));

        Registry registry(path);
        QVERIFY(registry.read());
        QCOMPARE(TestFiles::read(path), stale);

        // The first query rescans: what was uninstalled meanwhile is gone.
        const QList<EditorInfo> editors = registry.getVersionList(QString("editor"));
        QCOMPARE(editors.size(), 1);
        QCOMPARE(triple(editors.first()), QString("editor release 2.1.0.5"));
        QVERIFY(TestFiles::read(path) != stale);
    }

    void readFailsWhenNoFileCanBeMade()
    {
        TestProfile profile;
        const QString path = profile.root() + QString("/missing-folder/ZanmirApplications.json");
        Registry registry(path);
        QVERIFY(!registry.read());
        QCOMPARE(registry.getErrorText(), QString("Failed to read registry: File does not exist: %1").arg(path));
    }

    void failedWriteKeepsQueriesWorking()
    {
        TestProfile profile;
        profile.registerVersion(QString("A_Editor"), QString("editor"), QString("release"), QString("2.1.0.5"));
        const QString path = catalogueIn(profile);
        QVERIFY(QDir().mkpath(path)); // a folder where the file should be

        Registry registry(path);
        const QList<EditorInfo> editors = registry.getVersionList(QString("editor"));
        QCOMPARE(editors.size(), 1);
        QCOMPARE(registry.getErrorText(), QString("Failed to update registry: Failed to open new file: %1").arg(path));
    }

    void updateVersionOperations()
    {
        TestProfile profile;
        const QString path = catalogueIn(profile);
        Registry registry(path);
        const auto info = [](const char *edition, const char *version, const char *where) {
            return EditorInfo(QString("editor"), QString("Vorlix Zanmir Editor"), QLatin1String(edition),
                QLatin1String(version), QLatin1String(where), QString("/u"));
        };

        registry.updateVersion(QString("insert"), info("release", "2.1", "/a"));
        QCOMPARE(registry.getInfoText(), QString("added: applType[editor] edition[release] version[2.1]"));
        registry.updateVersion(QString("insert"), info("beta", "2.1", "/b"));
        QCOMPARE(registry.getInfoText(), QString("added: applType[editor] edition[beta] version[2.1]"));
        registry.updateVersion(QString("insert"), info("release", "2.1", "/c"));
        QCOMPARE(registry.getInfoText(), QString("updated: applType[editor] edition[release] version[2.1]"));
        registry.updateVersion(QString("update"), info("beta", "2.1", "/d"));
        QCOMPARE(registry.getInfoText(), QString("updated: applType[editor] edition[beta] version[2.1]"));
        registry.updateVersion(QString("update"), info("release", "9.9", "/e"));
        QCOMPARE(registry.getInfoText(), QString("Version does not exist in registry: [editor][release][9.9]"));
        registry.updateVersion(QString("delete"), EditorInfo(QString("launcher"), QString("release"), QString("2.1")));
        QCOMPARE(registry.getInfoText(), QString("Version does not exist in registry: [launcher][release][2.1]"));
        registry.updateVersion(QString("replace"), info("release", "2.1", "/f"));
        registry.updateVersion(QString("replace"), info("release", "7.0", "/g"));
        QCOMPARE(registry.getInfoText(), QString("Version does not exist in registry: [launcher][release][2.1]"));

        QVERIFY(registry.write());
        QCOMPARE(registry.getInfoText(), QString("Registry is updated: %1").arg(path));
        QCOMPARE(TestFiles::readObject(path),
            (QJsonObject { { "applications",
                QJsonArray { application("editor",
                    { info("release", "2.1", "/c").toJson(false), info("beta", "2.1", "/d").toJson(false) }) } } }));

        registry.updateVersion(QString("delete"), info("release", "2.1", ""));
        QCOMPARE(registry.getInfoText(), QString("deleted: applType[editor] edition[release] version[2.1]"));
        registry.updateVersion(QString("delete"), info("beta", "2.1", ""));
        QVERIFY(registry.write());
        // The application stays, with nothing in it.
        QCOMPARE(TestFiles::readObject(path),
            (QJsonObject { { "applications", QJsonArray { application("editor", {}) } } }));
    }

    void nonAsciiPathsSurviveTheFile()
    {
        TestProfile profile;
        const QString folder = QString("/opt/Zänmir エディタ 2.1/");
        profile.registerApplication(QString("A_Editor"),
            { { QString("DisplayName"), QString("Vorlix Zanmir Editor 2.1") },
                { QString("AppType"), QString("editor") }, { QString("AppName"), QString("Vorlix Zanmir Editor") },
                { QString("AppEdition"), QString("release") }, { QString("AppVersion"), QString("2.1") },
                { QString("EditorPath"), folder + QString("editor") },
                { QString("UninstallString"), folder + QString("uninstall") } });
        const QString path = catalogueIn(profile);
        Registry registry(path);
        const QList<EditorInfo> editors = registry.getVersionList(QString("editor"));
        QCOMPARE(editors.size(), 1);
        QCOMPARE(editors.first().getPath(), folder + QString("editor"));

        // Read back the way the launcher reads its files.
        QVERIFY(TestFiles::read(path).contains((folder + QString("uninstall")).toUtf8()));
        Registry again(path);
        QVERIFY(again.read());
        JsonFileReader reader(path);
        QVERIFY(reader.parse());
        const QJsonObject version = reader.getDocument()
                                        .object()
                                        .value("applications")
                                        .toArray()
                                        .at(0)
                                        .toObject()
                                        .value("versions")
                                        .toArray()
                                        .at(0)
                                        .toObject();
        QCOMPARE(version.value("path").toString(), folder + QString("editor"));
    }

    void installerInAnotherProcess()
    {
        TestProfile profile;
        profile.registerVersion(QString("A_Editor"), QString("editor"), QString("release"), QString("2.1.0.5"));
        const QString ini = SystemSettings::uninstallRecordsFile();
        const QString path = catalogueIn(profile);
        Registry registry(path);
        QCOMPARE(registry.getVersionList(QString("editor")).size(), 1);

        // What an installer and an uninstaller do to the records, from outside.
        const QString install = QString(
            "printf '\\n[%s]\\nDisplayName=Vorlix Zanmir Editor %s\\nAppType=editor\\nAppName=Vorlix Zanmir Editor\\n"
            "AppEdition=release\\nAppVersion=%s\\nEditorPath=/opt/other/%s/editor\\nUninstallString=/opt/other/%s/u\\n'"
            " \"$2\" \"$3\" \"$3\" \"$3\" \"$3\" >> \"$1\"");
        const QString uninstall = QString("awk -v g=\"[$2]\" '$0 == g { skip = 1; next } /^\\[/ { skip = 0 } "
                                          "!skip' \"$1\" > \"$1.new\" && mv \"$1.new\" "
                                          "\"$1\"");
        const auto run = [&ini](const QString &script, const QString &subkey) {
            return QProcess::execute(
                QString("/bin/sh"), { QString("-c"), script, QString("sh"), ini, subkey, QString("3.0.0.0") });
        };

        QCOMPARE(run(install, QString("B_Editor")), 0);
        QList<EditorInfo> editors = registry.getVersionList(QString("editor"));
        QCOMPARE(editors.size(), 2);
        QCOMPARE(triple(editors.at(1)), QString("editor release 3.0.0.0"));
        QCOMPARE(editors.at(1).getPath(), QString("/opt/other/3.0.0.0/editor"));
        QVERIFY(TestFiles::read(path).contains("/opt/other/3.0.0.0/editor"));

        QCOMPARE(run(uninstall, QString("B_Editor")), 0);
        editors = registry.getVersionList(QString("editor"));
        QCOMPARE(editors.size(), 1);
        QCOMPARE(triple(editors.at(0)), QString("editor release 2.1.0.5"));
        QVERIFY(!TestFiles::read(path).contains("/opt/other/"));

        QCOMPARE(run(uninstall, QString("A_Editor")), 0);
        QVERIFY(registry.getVersionList(QString("editor")).isEmpty());
        QCOMPARE(TestFiles::readObject(path), (QJsonObject { { "applications", QJsonArray() } }));
    }

    void findVersionForDocument_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("expected");

        QTest::newRow("same version") << QStringList { "editor release 3.0.0.0", "editor release 2.1.0.5",
            "editor beta 2.1.0.5" } << "editor release 2.1.0.5"
                                      << "editor release 2.1.0.5";
        QTest::newRow("exact edition before another edition")
            << QStringList { "editor release 3.0.0.1", "editor beta 3.0.0.1" } << "editor beta 3.0.0.1"
            << "editor beta 3.0.0.1";
        QTest::newRow("same version, other edition, before the newest")
            << QStringList { "editor beta 2.1.0.0", "editor release 3.0.0.1", "editor release 3.5.0.0" }
            << "editor beta 3.0.0.1"
            << "editor release 3.0.0.1";
        QTest::newRow("newest for a newer document")
            << QStringList { "editor release 2.1.0.5", "editor release 3.0.0.0", "editor release 2.9.0.0" }
            << "editor release 4.0.0.0"
            << "editor release 3.0.0.0";
        QTest::newRow("newest for an older document")
            << QStringList { "editor release 2.1.0.5", "editor release 3.0.0.0" } << "editor release 1.0.0.0"
            << "editor release 3.0.0.0";
        QTest::newRow("newest by number, not by text")
            << QStringList { "editor release 2.10.0.0", "editor release 2.9.0.0" } << "editor release 5.0.0.0"
            << "editor release 2.10.0.0";
        QTest::newRow("newest version in the document's edition")
            << QStringList { "editor beta 3.5.0.0", "editor release 3.0.0.0", "editor release 3.5.0.0" }
            << "editor release 4.0.0.0"
            << "editor release 3.5.0.0";
        QTest::newRow("newest of another edition when that is all")
            << QStringList { "editor inhouse 3.5.0.0", "editor release 3.0.0.0" } << "editor release 4.0.0.0"
            << "editor inhouse 3.5.0.0";
        QTest::newRow("the record's type is not used for the list")
            << QStringList { "editor release 2.1.0.5", "editor release 3.0.0.0" } << "launcher release 2.1.0.5"
            << "editor release 3.0.0.0";
        QTest::newRow("nothing installed") << QStringList() << "editor release 2.1.0.5" << QString();
    }

    void findVersionForDocument()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, document);
        QFETCH(QString, expected);

        TestProfile profile;
        installTriples(profile, installed);
        Registry registry(catalogueIn(profile));
        compareFound(registry.findVersionForDocument(record(document)), expected, installed);
    }

    void findUpdatedVersion_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("expected");

        QTest::newRow("newer build of the series, not the next series")
            << QStringList { "editor release 2.1.0.5", "editor release 2.2.0.0" } << "editor release 2.1.0.0"
            << "editor release 2.1.0.5";
        QTest::newRow("newest of several builds")
            << QStringList { "editor release 2.1.0.1", "editor release 2.1.0.9", "editor release 2.1.0.5" }
            << "editor release 2.1.0.0"
            << "editor release 2.1.0.9";
        QTest::newRow("itself when it is the newest build")
            << QStringList { "editor release 2.1.0.5", "editor release 2.2.0.0" } << "editor release 2.1.0.5"
            << "editor release 2.1.0.5";
        QTest::newRow("older builds do not count")
            << QStringList { "editor release 2.1.0.0" } << "editor release 2.1.0.5" << QString();
        QTest::newRow("other editions do not count")
            << QStringList { "editor beta 2.1.0.9" } << "editor release 2.1.0.0" << QString();
        QTest::newRow("series are compared as text")
            << QStringList { "editor release 2.10.0.0" } << "editor release 2.1.0.0" << QString();
        QTest::newRow("launchers by their own type")
            << QStringList { "editor release 1.0.0.5", "launcher release 1.0.0.3" } << "launcher release 1.0.0.0"
            << "launcher release 1.0.0.3";
    }

    void findUpdatedVersion()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, version);
        QFETCH(QString, expected);

        TestProfile profile;
        installTriples(profile, installed);
        Registry registry(catalogueIn(profile));
        compareFound(registry.findUpdatedVersion(record(version)), expected, installed);
    }

    void otherQueries_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("recentEditor");
        QTest::addColumn<QString>("recentLauncher");
        QTest::addColumn<QStringList>("releases");

        QTest::newRow("nothing") << QStringList() << QString() << QString() << QStringList();
        QTest::newRow("mixed editions") << QStringList { "editor release 3.0.0.0", "editor inhouse 3.1.0.0",
            "editor release 2.0.0.0", "editor beta 3.5.0.0", "editor release 3.0.1.0" }
                                        << "editor release 3.0.1.0" << QString()
                                        << QStringList { "editor release 3.0.0.0", "editor release 2.0.0.0",
                                               "editor release 3.0.1.0" };
        // Editions are not compared with each other: the first public one
        // stays unless a newer one of its own edition follows.
        QTest::newRow("any launcher edition is public")
            << QStringList { "launcher inhouse 1.1.0.0", "launcher release 1.2.0.0", "editor inhouse 4.0.0.0" }
            << QString() << "launcher inhouse 1.1.0.0" << QStringList();
    }

    void otherQueries()
    {
        QFETCH(QStringList, installed);
        QFETCH(QString, recentEditor);
        QFETCH(QString, recentLauncher);
        QFETCH(QStringList, releases);

        TestProfile profile;
        installTriples(profile, installed);
        Registry registry(catalogueIn(profile));
        compareFound(registry.findRecentVersion(QString("editor")), recentEditor, installed);
        compareFound(registry.findRecentVersion(QString("launcher")), recentLauncher, installed);
        QStringList found;
        for (const EditorInfo &editor : registry.getReleaseVersions())
            found.append(triple(editor));
        QCOMPARE(found, releases);
    }

    void findVersion()
    {
        TestProfile profile;
        const QStringList installed { "editor release 2.1.0.5", "editor beta 2.1.0.5", "launcher release 2.1.0.5" };
        installTriples(profile, installed);
        Registry registry(catalogueIn(profile));
        compareFound(registry.findVersion(record("editor beta 2.1.0.5")), "editor beta 2.1.0.5", installed);
        compareFound(registry.findVersion(record("launcher release 2.1.0.5")), "launcher release 2.1.0.5", installed);
        compareFound(registry.findVersion(record("editor inhouse 2.1.0.5")), QString(), installed);
        compareFound(registry.findVersion(record("editor release 2.1.0.6")), QString(), installed);
    }
};

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
