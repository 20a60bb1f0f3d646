#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QJsonArray>
#include <QtTest>

#include <cstdio>

// "A|editor|beta|2.1|-AppVersion|DisplayName=Other": a subkey as its installer
// writes it, then values removed or changed. Groups are separated by ";".
// Returns the values of each group, in order.
static QList<QHash<QString, QString>> install(const TestProfile &profile, const QString &text)
{
    QList<QHash<QString, QString>> groups;
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
        groups.append(values);
    }
    return groups;
}

// The catalogue file as "editor:A,C launcher:B", each version by the subkey in its path.
static QString summary(const QString &file)
{
    QStringList applications;
    for (const QJsonValue &application : TestFiles::readObject(file).value("applications").toArray()) {
        QStringList subkeys;
        for (const QJsonValue &version : application["versions"].toArray())
            subkeys.append(version["path"].toString().section('/', 3, 3));
        applications.append(application["appl_type"].toString() + ':' + subkeys.join(','));
    }
    return applications.join(' ');
}

// Editor versions, "beta 2.1" names its edition.
static EditorInfo editor(const QString &text)
{
    return EditorInfo("editor", text.contains(' ') ? text.section(' ', 0, 0) : "release", text.section(' ', -1));
}

static QString describe(const EditorInfo &editor)
{
    return QString(editor.getEdition() + ' ' + editor.getVersion()).remove("release ").trimmed();
}

// Registers the editors "2.1, beta 3.0" under the subkeys 0, 1, ...
static void installEditors(const TestProfile &profile, const QString &versions)
{
    const QStringList list = versions.split(", ", Qt::SkipEmptyParts);
    for (int i = 0; i < list.size(); ++i)
        profile.registerVersion(QString::number(i), "editor", editor(list[i]).getEdition(), list[i].section(' ', -1));
}

class TestRegistry : public QObject
{
    Q_OBJECT

private slots:
    void scan_data()
    {
        QTest::addColumn<QString>("groups");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("words around the name") << "A|editor|release|2.1|DisplayName=Setup Vorlix Zanmir Editor x64" << "editor:A";
        QTest::newRow("name in the wrong case") << "A|editor|release|2.1|DisplayName=vorlix zanmir editor 2.1" << "";
        QTest::newRow("editor path missing") << "A|editor|release|2.1|-EditorPath" << "";
        QTest::newRow("application name missing") << "A|editor|release|2.1|-AppName" << "";
        QTest::newRow("type, edition and version missing") << "A|editor|release|2.1|-AppType|-AppEdition|-AppVersion" << "";
        QTest::newRow("type alone missing") << "A|editor|release|2.1|-AppType" << ":A";
        QTest::newRow("same triple twice: later subkey wins") << "A|editor|release|2.1;B|editor|release|2.1" << "editor:B";
        // clang-format on
    }

    void scan()
    {
        QFETCH(QString, groups);
        QFETCH(QString, expected);
        TestProfile profile;
        install(profile, groups);
        // A catalogue that is not JSON is rebuilt from the records.
        QVERIFY(TestFiles::write(profile.catalogueFile(), "{\"applications\": ["));
        QVERIFY(Registry(profile.catalogueFile()).read());
        QCOMPARE(summary(profile.catalogueFile()), expected);
    }

    // The scan builds in one pass what inserting each valid entry in turn
    // with updateVersion builds.
    void scanEqualsInsertWalk_data()
    {
        QTest::addColumn<QString>("groups"); // subkeys in alphabetical order, as the records list them
        // clang-format off
        QTest::newRow("duplicates") << "A|editor|release|2.1;B|launcher|release|1.0;C|editor|beta|2.1;D|editor|release|2.1|AppName=Later;E|launcher|release|1.0|EditorPath=/later";
        QTest::newRow("empty type") << "A|editor|release|2.1;B|editor|release|2.2|-AppType;C|editor|release|2.1|AppType=;D|editor|release|2.3";
        QTest::newRow("invalid entries") << "A|editor|release|2.1|-EditorPath;B|editor|release|2.2|-UninstallString;C|editor|release|2.1;D|tool|release|1|-AppType|-AppEdition|-AppVersion;E|launcher|release|1.0|-AppName";
        QTest::newRow("types interleaved") << "A|launcher|release|1.0;B|editor|release|2.1;C|launcher|inhouse|1.0;D|viewer|release|1;E|editor|release|2.1|AppEdition=beta;F|editor|release|2.1";
        // clang-format on
    }

    void scanEqualsInsertWalk()
    {
        QFETCH(QString, groups);
        TestProfile profile;
        Registry walk(profile.root() + "/walk.json");
        walk.clearApplications();
        for (const QHash<QString, QString> &values : install(profile, groups)) {
            const EditorInfo info(values.value("AppType"), values.value("AppName"), values.value("AppEdition"),
                values.value("AppVersion"), values.value("EditorPath"), values.value("UninstallString"));
            if (info.isValid())
                walk.updateVersion("insert", info);
        }
        QVERIFY(walk.write());

        Registry registry(profile.catalogueFile());
        registry.scanInstalledApplications();
        const QJsonValue applications = TestFiles::readObject(profile.catalogueFile()).value("applications");
        QCOMPARE(applications, TestFiles::readObject(profile.root() + "/walk.json").value("applications"));
        QCOMPARE(registry.getInfoText(), QString("Registry is updated: " + profile.catalogueFile()));
    }

    // The records are parsed again only when they changed on disk: in size,
    // in time to the nanosecond, or by being replaced.
    void recordsAreParsedAgainWhenChanged()
    {
        TestProfile profile;
        installEditors(profile, "2.1.0.1");
        // Enough groups that QSettings keeps no parsed copy of the file itself.
        for (int i = 0; i < 60; ++i)
            profile.registerVersion(QString("T%1").arg(i), "tool", "release", QString("1.0.0.%1").arg(i));
        const QString records = SystemSettings::uninstallRecordsFile();
        // Written well before, on a whole second.
        const QDateTime past = QDateTime::fromSecsSinceEpoch(QDateTime::currentSecsSinceEpoch() - 3600);
        QVERIFY(TestFiles::setModified(records, past));
        Registry registry(profile.catalogueFile());
        const auto installed = [&registry]() { return registry.getVersionList("editor").value(0).getVersion(); };
        QCOMPARE(installed(), QString("2.1.0.1"));

        // Changed in place with size and time kept: nothing tells, so the
        // last scan stands, for a later start too.
        QByteArray text = TestFiles::read(records).replace("2.1.0.1", "2.1.0.2");
        QVERIFY(TestFiles::write(records, text) && TestFiles::setModified(records, past));
        QCOMPARE(installed(), QString("2.1.0.1"));
        Registry later(profile.catalogueFile());
        QVERIFY(later.read());
        QCOMPARE(later.getVersionList("editor").value(0).getVersion(), QString("2.1.0.1"));
        // The same size, later within the same second.
        QVERIFY(TestFiles::setModified(records, past.addMSecs(500)));
        QCOMPARE(installed(), QString("2.1.0.2"));
        // Replaced by another file of the same size, within the same second.
        const QString staged = profile.root() + "/staged.ini";
        QVERIFY(TestFiles::write(staged, text.replace("2.1.0.2", "2.1.0.3")));
        QVERIFY(TestFiles::setModified(staged, past.addMSecs(750)));
        QVERIFY(std::rename(QFile::encodeName(staged).constData(), QFile::encodeName(records).constData()) == 0);
        QCOMPARE(installed(), QString("2.1.0.3"));
        // Just written in place, twice: too fresh for its time to tell, so each query reads it.
        for (const char *version : { "2.1.0.4", "2.1.0.5" }) {
            QVERIFY(TestFiles::write(records, text.replace(text.indexOf("2.1.0."), 7, version)));
            QCOMPARE(installed(), QString(version));
        }
    }

    // The catalogue is a cache, written when its text changes and not at
    // every query or start.
    void catalogueIsWrittenOnlyWhenItChanges()
    {
        TestProfile profile;
        installEditors(profile, "2.1");
        const QString catalogue = profile.catalogueFile();
        const QDateTime past = QDateTime::currentDateTime().addSecs(-3600);
        const auto written = [&catalogue, &past]() {
            const bool changed = QFileInfo(catalogue).lastModified() != past;
            return TestFiles::setModified(catalogue, past) && changed;
        };
        QCOMPARE(Registry(catalogue).getVersionList("editor").size(), 1);
        QVERIFY(written());

        // Records just written are parsed at every query; what they give
        // is what the file holds, and so is a group of another product.
        Registry registry(catalogue);
        QVERIFY(registry.read());
        QCOMPARE(registry.getVersionList("editor").size(), 1);
        profile.registerApplication("Other", { { "DisplayName", "Other Product" } });
        QCOMPARE(registry.getVersionList("editor").size(), 1);
        QVERIFY(!written());
        // Once they have settled, the file notes which records it shows...
        QVERIFY(TestFiles::setModified(SystemSettings::uninstallRecordsFile(), past));
        QCOMPARE(registry.getVersionList("editor").size(), 1);
        QVERIFY(written());
        // ...so that the next start takes it as it is.
        Registry next(catalogue);
        QVERIFY(next.read());
        QCOMPARE(next.getVersionList("editor").size(), 1);
        QVERIFY(!written());

        profile.registerVersion("1", "editor", "release", "2.2");
        QCOMPARE(next.getVersionList("editor").size(), 2);
        QVERIFY(written());
        QCOMPARE(summary(catalogue), QString("editor:0,1"));
    }

    void updateVersionTexts()
    {
        Registry registry { QString() }; // the document alone
        const QStringList steps { "insert 2.1 added: applType[editor] edition[release] version[2.1]",
            "insert 2.1 updated: applType[editor] edition[release] version[2.1]",
            "update 2.1 updated: applType[editor] edition[release] version[2.1]",
            "update 9.9 Version does not exist in registry: [editor][release][9.9]",
            "delete 2.1 deleted: applType[editor] edition[release] version[2.1]" };
        for (const QString &step : steps) {
            registry.updateVersion(step.section(' ', 0, 0), EditorInfo("editor", "release", step.section(' ', 1, 1)));
            QCOMPARE(registry.getInfoText(), step.section(' ', 2));
        }
    }

    void findVersionForDocument_data()
    {
        QTest::addColumn<QString>("installed"); // registered in this order
        QTest::addColumn<QString>("document");
        QTest::addColumn<QString>("expected");
        // clang-format off
        QTest::newRow("same version") << "3.0, 2.1, beta 2.1" << "2.1" << "2.1";
        QTest::newRow("other edition") << "beta 2.1.0.0, 3.0.0.1, 3.5.0.0" << "beta 3.0.0.1" << "3.0.0.1";
        QTest::newRow("newest in the document's edition") << "beta 3.5, 3.0, 3.5" << "4.0" << "3.5";
        QTest::newRow("nothing installed") << "" << "2.1" << "";
        // clang-format on
    }

    void findVersionForDocument()
    {
        QFETCH(QString, installed);
        QFETCH(QString, document);
        QFETCH(QString, expected);
        TestProfile profile;
        installEditors(profile, installed);
        Registry registry(profile.catalogueFile());
        QCOMPARE(describe(registry.findVersionForDocument(editor(document))), expected);
    }

    void otherQueries()
    {
        TestProfile profile;
        installEditors(profile, "2.1.0.5, 2.2.0.0, inhouse 3.1, 2.0, beta 3.5, 3.0.1");
        Registry registry(profile.catalogueFile());
        QCOMPARE(describe(registry.findUpdatedVersion(editor("2.1.0.0"))), QString("2.1.0.5"));
        // Editions are not compared: the first public one stays unless a newer one of its own edition follows.
        QCOMPARE(describe(registry.findRecentVersion("editor")), QString("3.0.1"));
        QStringList releases;
        for (const EditorInfo &release : registry.getReleaseVersions())
            releases.append(describe(release));
        QCOMPARE(releases.join(", "), QString("2.1.0.5, 2.2.0.0, 2.0, 3.0.1")); // in catalogue order
    }
};

QTEST_GUILESS_MAIN(TestRegistry)
#include "tst_registry.moc"
