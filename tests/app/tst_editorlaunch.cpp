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

// The current editor, the pins and the recent projects, on this process's launcher and real files.
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

private slots:
    void init()
    {
        // Every case starts from a first run: no state files, nothing installed.
        QDir(m_profile->managerFile()).removeRecursively();
        QFile::remove(m_profile->managerFile());
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_log.mark();
    }

    void launcherVersionFromTheRecords()
    {
        QVERIFY(start());
        QVERIFY(!m_launcher->getLauncherVersion());
        QCOMPARE(m_log.newLines().last(), QString("EditorLaunch::getLauncherVersion: No version info in registry."));

        // Catalogue order follows the subkeys: the older one comes first and is taken.
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        m_profile->registerVersion("L1", "launcher", "release", "2.0.0.0");
        QVERIFY(m_launcher->getLauncherVersion());
        QVERIFY(TestLog::inOrder(m_log.newLines(),
            { "EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: "
                    + TestProfile::executablePath("L0"),
                "EditorLaunch::saveSettings: ApplInfo file updated: " + m_profile->managerFile() }));
    }

    void currentEditorSelection()
    {
        QVERIFY(start("2.1.0.5, 3.0.0.0"));
        m_launcher->setCurrentEditorInfo(EditorInfo("editor", "release", "2.1.0.5"));
        // The current editor takes the catalogue's name and paths.
        const EditorInfo installed("editor", "Vorlix Zanmir Editor", "release", "2.1.0.5",
            TestProfile::executablePath("E0"), TestProfile::uninstallerPath("E0"));
        QCOMPARE(m_launcher->getApplInfo()->getCurrentEditorInfo().toJson(false), installed.toJson(false));

        // A version that is not installed changes neither.
        m_launcher->setCurrentEditorInfo(EditorInfo("editor", "beta", "2.1.0.5"));
        QVERIFY(m_launcher->getApplInfo()->isSelectedVersion(installed));
    }

    void historySerialNumbers_data()
    {
        // "+path" opens a project ("+" alone: none), "-" deletes the most recent entry.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected"); // most recent first
        row("first entry gets 1, no project none", { "+, +/a.zmr, +", "1 /a.zmr" });
        row("same path twice: one entry, the newest", { "+/a.zmr, +/b.zmr, +/a.zmr", "3 /a.zmr, 2 /b.zmr" });
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
        QStringList written, listed;
        const QJsonObject file = TestFiles::readObject(m_profile->managerFile());
        for (const QJsonValue &pin : file["1.0.0"]["pinned_version"]["editor"].toArray())
            written.append(pin["version"].toString());
        for (const EditorInfo &found : m_launcher->getInstalledEditors())
            listed.append(found.getVersion());
        QCOMPARE(written.join(", ") + " | " + listed.join(", "), expected);
    }

    void failedSaveKeepsTheChange()
    {
        QVERIFY(start());
        QVERIFY(
            QFile::remove(m_profile->managerFile()) && QDir().mkpath(m_profile->managerFile())); // cannot be replaced
        QVERIFY(!m_launcher->addPinnedVersionInfo(EditorInfo("editor", "release", "2.1.0.5")));
        QVERIFY(m_launcher->getApplInfo()->isPinnedVersion(EditorInfo("editor", "release", "2.1.0.5")));
    }

    void openFileByApplication_data()
    {
        QTest::addColumn<QString>("filePath");
        QTest::addColumn<QString>("application");
        row("blanks and quotes", { "/My Projects/the \"best\" scene.xml", ZANMIR_ARGRECORDER });
        row("no project is one empty argument", { "", ZANMIR_ARGRECORDER });
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
};

ZANMIR_LAUNCHER_TEST_MAIN(TestEditorLaunch)

#include "tst_editorlaunch.moc"
