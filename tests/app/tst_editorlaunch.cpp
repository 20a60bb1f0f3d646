#include "applinfo.h"
#include "launchertestmain.h"
#include "systemsettings.h"
#include "testfiles.h"

#include <QJsonArray>

// One row of text columns.
static void row(const char *name, std::initializer_list<const char *> values)
{
    QTestData &data = QTest::newRow(name);
    for (const char *value : values)
        data << QString(value);
}

// The current editor, the pins and the recent projects, on this process's
// launcher and real files; the manager file shared with other launcher
// processes, and brought back from damage.
class TestEditorLaunch : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    // The releases "2.1, 3.0" registered as E0, E1, ..., then the state as start-up reads it.
    bool start(const QString &versions = QString())
    {
        const QStringList list = versions.split(", ", Qt::SkipEmptyParts);
        for (int i = 0; i < list.size(); ++i)
            m_profile->registerVersion(QString("E%1").arg(i), "editor", "release", list[i]);
        return m_launcher->readApplInfo(false) && m_launcher->readRegistry();
    }
    QString managerFile() const { return m_profile->managerFile(); }
    QJsonObject written() const { return TestFiles::readObject(managerFile())["1.0.0"].toObject(); }
    // The recent projects in the file, sorted.
    QStringList writtenHistories() const
    {
        QStringList paths;
        for (const QJsonValue &history : written()["histories"].toArray())
            paths.append(history["openfilepath"].toString());
        paths.sort();
        return paths;
    }
    // A sound file with something of its own in every section that a damage can cost.
    static QJsonObject goodFile()
    {
        QTemporaryDir dir;
        ApplInfo info(dir.filePath("ZanmirManager.json"), false, nullptr);
        const EditorInfo editor("editor", "N", "release", "2.1.0.5", "/e", "/u");
        const LauncherInfo launcher("L", "1.2.0.0", "/l", "/lu");
        info.createFile();
        info.saveChange([&]() {
            info.setLocale("ja_JP");
            info.setCurrentEditorInfo(editor);
            info.mirrorEditorInfo(editor);
            info.setLauncherInfo(launcher);
            info.mirrorLauncherInfo(launcher);
            info.mirrorWebVersions(
                WebUpdateInfo("newsweb", "5.0.0.0", "/n.htm"), WebUpdateInfo("howtoweb", "3.0.0.0", "/h.htm"));
            for (const char *path : { "/a.zmr", "/b.zmr", "/c.zmr" })
                info.addHistoryInfo(HistoryInfo("editor", "release", "2.1.0.5", path));
        });
        return TestFiles::readObject(dir.filePath("ZanmirManager.json"));
    }
    QStringList backups() const
    {
        return QDir(m_profile->launcherFolder()).entryList({ "ZanmirManager.json.broken-*" }, QDir::Files, QDir::Name);
    }

private slots:
    void init()
    {
        // Every case starts from a first run: no state files, nothing installed.
        QDir(m_profile->managerFile()).removeRecursively();
        QFile::remove(m_profile->managerFile());
        for (const QString &backup : backups())
            QFile::remove(m_profile->launcherFolder() + '/' + backup);
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_log.mark();
    }

    void historySerialNumbers_data()
    {
        // "+path" opens a project ("+" alone: none), "-" deletes the most recent entry.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected"); // most recent first
        row("deleting the newest frees its number", { "+/a.zmr, +/b.zmr, -, +/c.zmr", "2 /c.zmr, 1 /a.zmr" });
        row("paths that differ in case are two", { "+/a.zmr, +/A.zmr", "2 /A.zmr, 1 /a.zmr" });
    }

    void historySerialNumbers()
    {
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        QVERIFY(start());
        const EditorInfo started("editor", "N", "release", "2.1.0.5", "/e", "/u");
        for (const QString &step : steps.split(", "))
            QVERIFY(step == "-" ? m_launcher->deleteHistoryInfo(m_launcher->getApplInfo()->getHistories().first())
                                : m_launcher->addHistoryAfterLaunch(started, step.mid(1)));
        QStringList listed;
        for (const HistoryInfo &history : m_launcher->getApplInfo()->getHistories())
            listed.append(QString("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed.join(", "), expected);
    }

    void pinsAndOrder_data()
    {
        QTest::addColumn<QString>("pins");
        QTest::addColumn<QString>("unpin"); // nothing when empty
        QTest::addColumn<QString>("expected"); // pins in the file | getInstalledEditors()
        row("pinned twice, above newer ones", { "2.1, 2.1", "", "2.1, 2.1 | 2.1, 3.0, 2.9" });
        row("unpinning twins removes one", { "2.1, 2.1", "2.1", "2.1 | 2.1, 3.0, 2.9" });
        row("two pinned, newest first", { "2.1, 2.9", "", "2.1, 2.9 | 2.9, 2.1, 3.0" });
    }

    void pinsAndOrder()
    {
        QFETCH(QString, pins);
        QFETCH(QString, unpin);
        QFETCH(QString, expected);
        QVERIFY(start("2.1, 3.0, 2.9"));
        for (const QString &pin : pins.split(", "))
            QVERIFY(m_launcher->addPinnedVersionInfo(EditorInfo("editor", "release", pin)));
        QVERIFY(unpin.isEmpty() || m_launcher->deletePinnedVersionInfo(EditorInfo("editor", "release", unpin)));
        QStringList pinned, listed;
        for (const QJsonValue &pin : written().value("pinned_version")["editor"].toArray())
            pinned.append(pin["version"].toString());
        for (const EditorInfo &found : m_launcher->getInstalledEditors())
            listed.append(found.getVersion());
        QCOMPARE(pinned.join(", ") + " | " + listed.join(", "), expected);
    }

    void openFileByApplication_data()
    {
        QTest::addColumn<QString>("filePath");
        QTest::addColumn<QString>("application");
        row("blanks and quotes", { "/My Projects/the \"best\" scene.xml", ZANMIR_ARGRECORDER });
        row("no application, no start", { "/scene.zmr", "/nonexistent/editor" });
    }

    void openFileByApplication()
    {
        QFETCH(QString, filePath);
        QFETCH(QString, application);
        const QString record = m_profile->root() + "/arguments.jsonl";
        QFile::remove(record);
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(record));

        const bool starts = QFile::exists(application);
        QCOMPARE(m_launcher->openFileByApplication(filePath, application), starts);
        const QByteArray started = QJsonDocument(QJsonArray { application, filePath }).toJson(QJsonDocument::Compact);
        QTRY_COMPARE_WITH_TIMEOUT(TestFiles::read(record), starts ? started + '\n' : QByteArray(), 10000);
    }

    void windowKeepsWhatOthersWrote_data()
    {
        QTest::addColumn<QString>("change");
        QTest::addColumn<QString>("key"); // where the change shows in the file, "a/b/0/c"; none when empty
        QTest::addColumn<QString>("value");
        QTest::addColumn<QStringList>("histories");
        const QStringList both { "/other.zmr", "/window.zmr" };
        // clang-format off
        QTest::newRow("unpin") << "unpin" << "pinned_version/editor/0" << "" << both;
        QTest::newRow("delete a project") << "delete" << "" << "" << QStringList { "/other.zmr" };
        QTest::newRow("default") << "default" << "selected_version/editor/version" << "2.1.0.5" << both;
        QTest::newRow("launcher record") << "launcher" << "launcher/version" << "1.0.0.0" << both;
        QTest::newRow("locale") << "locale" << "locale" << "ja_JP" << both;
        QTest::newRow("show all versions") << "show all" << "" << "" << both;
        QTest::newRow("page stamp") << "stamp" << "web_versions/newsweb/version" << "5.0.0.0" << both;
        // clang-format on
    }

    // The window read the file at its start; another process has added a project since.
    void windowKeepsWhatOthersWrote()
    {
        QFETCH(QString, change);
        QFETCH(QString, key);
        QFETCH(QString, value);
        QFETCH(QStringList, histories);
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        QVERIFY(start("2.1.0.5"));
        const EditorInfo editor("editor", "N", "release", "2.1.0.5", "/e", "/u");
        const EditorInfo version("editor", "release", "2.1.0.5");
        ApplInfo *window = m_launcher->getApplInfo();
        QVERIFY(m_launcher->addHistoryAfterLaunch(editor, "/window.zmr"));
        QVERIFY(m_launcher->addPinnedVersionInfo(version));
        window->setShowAllVersions(true);

        ApplInfo other(managerFile(), false, nullptr);
        QVERIFY(other.loadFile());
        QVERIFY(other.saveChange(
            [&other]() { other.addHistoryInfo(HistoryInfo("editor", "release", "2.1.0.5", "/other.zmr")); }));

        if (change == "unpin")
            QVERIFY(m_launcher->deletePinnedVersionInfo(version));
        else if (change == "delete")
            QVERIFY(m_launcher->deleteHistoryInfo(HistoryInfo(window->getHistories().constLast())));
        else if (change == "default") {
            // Only an installed version becomes the default, with the catalogue's name and paths.
            m_launcher->setCurrentEditorInfo(version);
            m_launcher->setCurrentEditorInfo(EditorInfo("editor", "beta", "2.1.0.5"));
            QCOMPARE(window->getCurrentEditorInfo().toJson(false),
                EditorInfo("editor", "Vorlix Zanmir Editor", "release", "2.1.0.5", TestProfile::executablePath("E0"),
                    TestProfile::uninstallerPath("E0"))
                    .toJson(false));
            QVERIFY(m_launcher->saveLauncherState());
        } else if (change == "launcher") {
            // Catalogue order follows the subkeys: the older one comes first and is taken.
            m_profile->registerVersion("L1", "launcher", "release", "2.0.0.0");
            QVERIFY(m_launcher->getLauncherVersion());
            QVERIFY(TestLog::inOrder(m_log.newLines(),
                { "EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: "
                        + TestProfile::executablePath("L0"),
                    "EditorLaunch::saveSettings: ApplInfo file updated: " + managerFile() }));
        } else if (change == "locale")
            QVERIFY(m_launcher->setLocale("ja_JP"));
        else if (change == "show all")
            QVERIFY(m_launcher->setShowAllVersions(true));
        else
            QVERIFY(window->saveWebVersion("newsweb", WebUpdateInfo("newsweb", "5.0.0.0", "/news.htm")));

        QCOMPARE(writtenHistories(), histories);
        QJsonValue found = written();
        for (const QString &step : key.split('/', Qt::SkipEmptyParts))
            found = found.isArray() ? found[step.toInt()] : found[step];
        QCOMPARE(found.isDouble() ? QString::number(found.toInt()) : found.toString(), value);
        bool showAll = false;
        QVERIFY(window->getShowAllVersions(showAll) && showAll); // in memory only, and kept
        QCOMPARE(window->getHistories().size(), histories.size());
    }

    // Another writer left the file broken after this process read it: the copy is kept, the
    // file is whole again from what this process holds.
    void damagedWhileRunning()
    {
        QVERIFY(start("2.1.0.5"));
        const QByteArray damaged = TestFiles::read(managerFile()).left(100);
        QVERIFY(TestFiles::write(managerFile(), damaged));
        QVERIFY(m_launcher->addPinnedVersionInfo(EditorInfo("editor", "release", "2.1.0.5")));
        QCOMPARE(backups().size(), 1);
        const QString backup = m_profile->launcherFolder() + '/' + backups().constFirst();
        QCOMPARE(TestFiles::read(backup), damaged);
        QVERIFY(TestLog::inOrder(m_log.newLines(),
            { "ProcessLauncher::addPinnedVersionInfo: Unreadable ApplInfo file kept as: " + backup,
                "ProcessLauncher::addPinnedVersionInfo: ApplInfo file updated: " + managerFile() }));
        QCOMPARE(written().value("pinned_version")["editor"][0]["version"].toString(), QString("2.1.0.5"));
        QCOMPARE(written().value("proxy_info")["proxy_port"].toString(), QString("80"));
    }

    void damagedFile_data()
    {
        QTest::addColumn<QJsonObject>("good");
        QTest::addColumn<QByteArray>("damaged");
        QTest::addColumn<QStringList>("histories"); // what survives
        QTest::addColumn<QStringList>("kept"); // the other sections that survive as they were
        const QJsonObject good = goodFile();
        const QByteArray text = QJsonDocument(good).toJson(); // the histories in the order b, a, c
        const int third = text.indexOf("/c.zmr");
        const int second = text.lastIndexOf('{', text.indexOf("/a.zmr"));
        const QStringList all { "/a.zmr", "/b.zmr", "/c.zmr" };
        // clang-format off
        QTest::newRow("trailing NULs") << good << text + QByteArray(4096, '\0') << all << QStringList { "editor", "launcher", "locale", "web_versions" };
        QTest::newRow("cut in the histories") << good << text.left(third) << QStringList { "/a.zmr", "/b.zmr" } << QStringList { "editor" };
        QTest::newRow("garbage in the middle") << good << QByteArray(text).insert(second, "\x01#!") << QStringList { "/b.zmr" } << QStringList { "editor" };
        // clang-format on
    }

    void damagedFile()
    {
        QFETCH(QJsonObject, good);
        QFETCH(QByteArray, damaged);
        QFETCH(QStringList, histories);
        QFETCH(QStringList, kept);
        QVERIFY(start("2.1.0.5"));
        // Twice, as a second damage within the same second would come: no copy replaces another.
        for (int run = 1; run <= 2; ++run) {
            QVERIFY(TestFiles::write(managerFile(), damaged));
            m_log.mark();
            QVERIFY(m_launcher->readApplInfo(false));
            QCOMPARE(backups().size(), run);
            const QString backup = m_profile->launcherFolder() + '/' + backups().constLast();
            QCOMPARE(TestFiles::read(m_profile->launcherFolder() + '/' + backups().constFirst()), damaged);
            QCOMPARE(TestFiles::read(backup), damaged);
            QCOMPARE(m_log.newLines(),
                QStringList({ "ProcessLauncher::readApplInfo: Unreadable ApplInfo file kept as: " + backup,
                    "ProcessLauncher::readApplInfo: ApplInfo file created: " + managerFile() }));
        }
        QVERIFY(QRegularExpression("^ZanmirManager\\.json\\.broken-\\d{8}-\\d{6}$")
                    .match(backups().constFirst())
                    .hasMatch());
        QCOMPARE(writtenHistories(), histories);
        for (const QString &key : kept)
            QVERIFY2(written()[key] == good.value("1.0.0")[key], qPrintable(key));
        QVERIFY(kept.contains("locale") || written()["locale"] == QLocale::system().name());
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestEditorLaunch)

#include "tst_editorlaunch.moc"
