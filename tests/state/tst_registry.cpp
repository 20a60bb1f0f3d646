#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QJsonArray>
#include <QProcess>
#include <QtTest>

namespace {

using Groups = QHash<QString, QHash<QString, QString>>;

// "A|editor|beta|2.1|-AppVersion|DisplayName=Other": a subkey as its installer
// writes it, then values removed or changed. Groups are separated by ";".
Groups install(const TestProfile &profile, const QString &text)
{
    Groups groups;
    for (const QString &group : text.split(';', Qt::SkipEmptyParts)) {
        const QStringList parts = group.split('|');
        QHash<QString, QString> values = TestProfile::versionValues(parts.at(0), parts.at(1), parts.at(2), parts.at(3));
        for (const QString &change : parts.mid(4)) {
            if (change.startsWith('-'))
                values.remove(change.mid(1));
            else
                values.insert(change.section('=', 0, 0), change.section('=', 1));
        }
        profile.registerApplication(parts.at(0), values);
        groups.insert(parts.at(0), values);
    }
    return groups;
}

// "editor:A,C launcher:B": the catalogue holding those groups' entries.
QJsonObject catalogue(const QString &expected, const Groups &groups)
{
    QJsonArray applications;
    for (const QString &application : expected.split(' ', Qt::SkipEmptyParts)) {
        QJsonArray versions;
        for (const QString &subkey : application.section(':', 1).split(',')) {
            const QHash<QString, QString> values = groups.value(subkey);
            versions.append(
                QJsonObject { { "appl_type", values.value("AppType") }, { "applname", values.value("AppName") },
                    { "edition", values.value("AppEdition") }, { "version", values.value("AppVersion") },
                    { "path", values.value("EditorPath") }, { "uninstaller_path", values.value("UninstallString") } });
        }
        applications.append(QJsonObject { { "appl_type", application.section(':', 0, 0) }, { "versions", versions } });
    }
    return QJsonObject { { "applications", applications } };
}

// "2.1" is an editor release, "beta 2.1" another edition, "launcher release 1.0" names its type.
EditorInfo record(const QString &text)
{
    QStringList parts = text.split(' ');
    if (parts.size() == 1)
        parts.prepend("release");
    if (parts.size() == 2)
        parts.prepend("editor");
    return EditorInfo(parts.at(0), parts.at(1), parts.at(2));
}

QString describe(const EditorInfo &editor)
{
    QString text = editor.getVersion();
    if (!editor.isRelease() || editor.isLauncher())
        text.prepend(editor.getEdition() + ' ');
    return editor.isLauncher() ? "launcher " + text : text;
}

void scanRow(const char *name, const char *groups, const char *expected)
{
    QTest::newRow(name) << QString(groups) << QString(expected);
}

void queryRow(const char *query, const char *name, const char *installed, const char *argument, const char *expected)
{
    QTest::addRow("%s: %s", query, name) << QString(query) << QString(installed) << QString(argument)
                                         << QString(expected);
}

} // namespace

class TestRegistry : public QObject
{
    Q_OBJECT

private slots:
    void scan_data()
    {
        QTest::addColumn<QString>("groups");
        QTest::addColumn<QString>("expected");
        scanRow("nothing registered", "", "");
        scanRow("both products", "A|editor|release|2.1;B|launcher|release|1.0", "editor:A launcher:B");
        scanRow("other products", "A|editor|release|9.0|DisplayName=Other 9;B|launcher|release|1.0", "launcher:B");
        scanRow("words around the name", "A|editor|release|2.1|DisplayName=Setup Vorlix Zanmir Editor x64", "editor:A");
        scanRow("name in the wrong case", "A|editor|release|2.1|DisplayName=vorlix zanmir editor 2.1", "");
        scanRow(
            "key holds DisplayName", "A|editor|release|2.1|-DisplayName|DisplayNameX=Vorlix Zanmir Editor", "editor:A");
        scanRow("uninstaller missing", "A|editor|release|2.1|-UninstallString", "");
        scanRow("editor path missing", "A|editor|release|2.1|-EditorPath", "");
        scanRow("application name missing", "A|editor|release|2.1|-AppName", "");
        scanRow("version alone missing", "A|editor|release|2.1|-AppVersion", "editor:A");
        scanRow("type, edition and version missing", "A|editor|release|2.1|-AppType|-AppEdition|-AppVersion", "");
        scanRow("type alone missing", "A|editor|release|2.1|-AppType", ":A");
        scanRow("same triple twice: later subkey wins", "A|editor|release|2.1;B|editor|release|2.1", "editor:B");
        scanRow("good among bad",
            "A|editor|release|2.1;B|launcher|release|1.0;C|editor|beta|2.1;D|editor|release|3|-AppName",
            "editor:A,C launcher:B");
        scanRow("paths beyond ASCII", "Zänmirエディタ|editor|release|2.1", "editor:Zänmirエディタ");
    }

    void scan()
    {
        QFETCH(QString, groups);
        QFETCH(QString, expected);
        TestProfile profile;
        const QJsonObject file = catalogue(expected, install(profile, groups));
        const QString path = profile.catalogueFile();
        Registry registry(path);

        registry.getVersionList("editor");
        QCOMPARE(registry.getInfoText(), "Registry is updated: " + path);
        QCOMPARE(TestFiles::readObject(path), file);
    }

    void readRebuildsOnlyAnUnusableFile_data()
    {
        QTest::addColumn<QByteArray>("contents"); // no file when null
        QTest::addColumn<bool>("rebuilt");
        QTest::newRow("missing") << QByteArray() << true;
        QTest::newRow("not JSON") << QByteArray("{\"applications\": [") << true;
        QTest::newRow("parsable, if stale") << QByteArray("{\"applications\": []}") << false;
    }

    void readRebuildsOnlyAnUnusableFile()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, rebuilt);
        TestProfile profile;
        const Groups groups = install(profile, "A|editor|release|2.1");
        const QString path = profile.catalogueFile();
        QVERIFY(contents.isNull() || TestFiles::write(path, contents));
        Registry registry(path);
        QVERIFY(registry.read());
        QCOMPARE(registry.getInfoText(), "Registry is read: " + path);
        QCOMPARE(TestFiles::readObject(path), catalogue(rebuilt ? "editor:A" : "", groups));
    }

    void unwritableCatalogue()
    {
        TestProfile profile;
        install(profile, "A|editor|release|2.1");
        const QString path = profile.root() + "/missing-folder/ZanmirApplications.json";
        Registry registry(path);
        QVERIFY(!registry.read());
        QCOMPARE(registry.getErrorText(), "Failed to read registry: File does not exist: " + path);
        // Queries still answer from the records.
        QCOMPARE(registry.getVersionList("editor").size(), 1);
        QCOMPARE(registry.getErrorText(), "Failed to update registry: Failed to open new file: " + path);
    }

    void updateVersionTexts()
    {
        TestProfile profile;
        const QString path = profile.catalogueFile();
        Registry registry(path);
        const auto entry = [](const QString &text, const QString &where) {
            const EditorInfo identity = record(text);
            return EditorInfo(identity.getApplType(), "N", identity.getEdition(), identity.getVersion(), where, "/u");
        };
        const struct
        {
            const char *operation, *version, *path, *info;
        } steps[] = {
            { "insert", "release 2.1", "/a", "added: applType[editor] edition[release] version[2.1]" },
            { "insert", "beta 2.1", "/b", "added: applType[editor] edition[beta] version[2.1]" },
            { "insert", "release 2.1", "/c", "updated: applType[editor] edition[release] version[2.1]" },
            { "update", "beta 2.1", "/d", "updated: applType[editor] edition[beta] version[2.1]" },
            { "update", "release 9.9", "/e", "Version does not exist in registry: [editor][release][9.9]" },
            { "delete", "launcher release 2.1", "", "Version does not exist in registry: [launcher][release][2.1]" },
            { "replace", "release 7.0", "/f", "Version does not exist in registry: [launcher][release][2.1]" },
            { "delete", "beta 2.1", "", "deleted: applType[editor] edition[beta] version[2.1]" },
        };
        for (const auto &step : steps) {
            registry.updateVersion(step.operation, entry(step.version, step.path));
            QCOMPARE(registry.getInfoText(), QString(step.info));
        }
        QVERIFY(registry.write());
        const QJsonArray versions { entry("release 2.1", "/c").toJson(false) };
        QCOMPARE(TestFiles::readObject(path).value("applications"),
            (QJsonArray { QJsonObject { { "appl_type", "editor" }, { "versions", versions } } }));
    }

    void installerInAnotherProcess()
    {
        TestProfile profile;
        const Groups groups = install(profile, "A|editor|release|2.1");
        const QString records = SystemSettings::uninstallRecordsFile();
        const QByteArray before = TestFiles::read(records);
        const QString path = profile.catalogueFile();
        Registry registry(path);
        QCOMPARE(registry.getVersionList("editor").size(), 1);

        // Another process writes the records, as an installer or uninstaller does.
        const QString staged = profile.root() + "/staged.ini";
        const auto writeFromOutside = [&](const QByteArray &contents) {
            QVERIFY(TestFiles::write(staged, contents));
            QCOMPARE(QProcess::execute("cp", { staged, records }), 0);
        };
        writeFromOutside(before
            + "\n[B]\nDisplayName=Vorlix Zanmir Editor 3.0\nAppType=editor\nAppName=N\nAppEdition=release\n"
              "AppVersion=3.0\nEditorPath=/other/editor\nUninstallString=/other/u\n");
        QCOMPARE(registry.getVersionList("editor").size(), 2);
        QVERIFY(TestFiles::read(path).contains("/other/editor"));
        writeFromOutside(before);
        QCOMPARE(registry.getVersionList("editor").size(), 1);
        QCOMPARE(TestFiles::readObject(path), catalogue("editor:A", groups));
    }

    void queries_data()
    {
        QTest::addColumn<QString>("query");
        QTest::addColumn<QString>("installed"); // registered in this order
        QTest::addColumn<QString>("argument");
        QTest::addColumn<QString>("expected");

        const char *const three = "3.0, 2.1, beta 2.1";
        queryRow("document", "same version", three, "2.1", "2.1");
        queryRow("document", "exact edition first", "3.0.0.1, beta 3.0.0.1", "beta 3.0.0.1", "beta 3.0.0.1");
        queryRow("document", "other edition", "beta 2.1.0.0, 3.0.0.1, 3.5.0.0", "beta 3.0.0.1", "3.0.0.1");
        queryRow("document", "newest", "2.1, 3.0, 2.9", "4.0", "3.0");
        queryRow("document", "newest by number", "2.10, 2.9", "5.0", "2.10");
        queryRow("document", "own edition", "beta 3.5, 3.0, 3.5", "4.0", "3.5");
        queryRow("document", "newest, other edition", "inhouse 3.5, 3.0", "4.0", "inhouse 3.5");
        queryRow("document", "only editors open projects", three, "launcher release 2.1", "3.0");
        queryRow("document", "nothing installed", "", "2.1", "");
        queryRow("updated", "series", "2.1.0.5, 2.2.0.0", "2.1.0.0", "2.1.0.5");
        queryRow("updated", "several builds", "2.1.1, 2.1.9, 2.1.5", "2.1", "2.1.9");
        queryRow("updated", "itself when newest", "2.1.5, 2.2.0", "2.1.5", "2.1.5");
        queryRow("updated", "older builds do not count", "2.1.0", "2.1.5", "");
        queryRow("updated", "other editions do not count", "beta 2.1.9", "2.1.0", "");
        queryRow("updated", "series compare as text", "2.10.0", "2.1.0", "");
        queryRow(
            "updated", "own type", "1.0.5, launcher release 1.0.3", "launcher release 1.0", "launcher release 1.0.3");
        const char *const mixed = "3.0, inhouse 3.1, 2.0, beta 3.5, 3.0.1";
        queryRow("recent", "newest public editor", mixed, "editor", "3.0.1");
        // Editions are not compared: the first public one stays unless a newer one of its own edition follows.
        queryRow(
            "recent", "launcher", "launcher inhouse 1.1, launcher release 1.2", "launcher", "launcher inhouse 1.1");
        queryRow("recent", "nothing public", "inhouse 4.0", "editor", "");
        queryRow("releases", "in catalogue order", mixed, "", "3.0, 2.0, 3.0.1");
        queryRow("version", "exact", three, "beta 2.1", "beta 2.1");
        queryRow("version", "no other edition", three, "inhouse 2.1", "");
    }

    void queries()
    {
        QFETCH(QString, query);
        QFETCH(QString, installed);
        QFETCH(QString, argument);
        QFETCH(QString, expected);
        TestProfile profile;
        const QStringList versions = installed.split(", ", Qt::SkipEmptyParts);
        for (int i = 0; i < versions.size(); ++i) {
            const EditorInfo version = record(versions.at(i));
            profile.registerVersion(
                QString("E%1").arg(i), version.getApplType(), version.getEdition(), version.getVersion());
        }
        Registry registry(profile.catalogueFile());

        QList<EditorInfo> found;
        if (query == "document")
            found = { registry.findVersionForDocument(record(argument)) };
        else if (query == "updated")
            found = { registry.findUpdatedVersion(record(argument)) };
        else if (query == "recent")
            found = { registry.findRecentVersion(argument) };
        else if (query == "version")
            found = { registry.findVersion(record(argument)) };
        else
            found = registry.getReleaseVersions();
        QStringList texts;
        for (const EditorInfo &editor : qAsConst(found)) {
            if (editor.isEmpty())
                continue;
            texts.append(describe(editor));
            // With the catalogue's paths.
            QCOMPARE(editor.getPath(), TestProfile::executablePath(QString("E%1").arg(versions.indexOf(texts.last()))));
        }
        QCOMPARE(texts.join(", "), expected);
    }
};

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
