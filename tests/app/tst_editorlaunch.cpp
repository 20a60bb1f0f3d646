#include "applinfo.h"
#include "processlauncher.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testlog.h"
#include "testprofile.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTranslator>
#include <QtTest>

namespace {

// One row of text columns.
void row(const char *name, std::initializer_list<const char *> values)
{
    QTestData &data = QTest::newRow(name);
    for (const char *value : values)
        data << QString(value);
}

// "2.1" is a release, "beta 3.0" names its edition.
EditorInfo editor(const QString &text)
{
    return EditorInfo("editor", text.contains(' ') ? text.section(' ', 0, 0) : "release", text.section(' ', -1));
}

QString name(const ApplVersion &version)
{
    const QString edition = version.getEdition();
    return edition == QLatin1String("release") ? version.getVersion() : edition + ' ' + version.getVersion();
}

QJsonObject section(const QString &managerFile)
{
    return TestFiles::readObject(managerFile).value("1.0.0").toObject();
}

} // namespace

// The operations on the current editor, the pins and the recent projects,
// run on the one application object of this process against real files.
class TestEditorLaunch : public QObject
{
    Q_OBJECT

public:
    TestEditorLaunch(const TestProfile &profile, ProcessLauncher &launcher)
        : m_profile(profile)
        , m_launcher(launcher)
        , m_log(profile.logFile(QCoreApplication::applicationName()))
    { }

private:
    const TestProfile &m_profile;
    ProcessLauncher &m_launcher;
    TestLog m_log;

    QString managerFile() const { return m_profile.managerFile(); }

    // The state objects as start-up makes them, then a fresh log mark.
    bool start()
    {
        const bool ok = m_launcher.readApplInfo(false) && m_launcher.readRegistry();
        m_log.mark();
        return ok;
    }

    // "2.1, beta 3.0" registered as E0, E1, ...
    void install(const QString &versions) const
    {
        const QStringList list = versions.split(", ");
        for (int i = 0; i < list.size(); ++i) {
            const EditorInfo version = editor(list.at(i));
            m_profile.registerVersion(QString("E%1").arg(i), "editor", version.getEdition(), version.getVersion());
        }
    }

private slots:
    void init()
    {
        // Every case starts from a first run: no state files, nothing installed.
        QDir(managerFile()).removeRecursively();
        QFile::remove(managerFile());
        QFile::remove(m_profile.catalogueFile());
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_log.mark();
    }

    void initializeNeedsARegisteredLauncher()
    {
        install("2.1.0.5");
        QTranslator translator;
        QVERIFY(!m_launcher.initialize(translator));
        QCOMPARE(m_launcher.getExitStatus(), 1);
        QCOMPARE(m_log.newLines().last(), QString("EditorLaunch::getLauncherVersion: No version info in registry."));

        // Catalogue order follows the subkeys: the older one comes first and is taken.
        m_profile.registerVersion("L0", "launcher", "release", "1.0.0.0");
        m_profile.registerVersion("L1", "launcher", "release", "2.0.0.0");
        m_log.mark();
        m_launcher.initialize(translator); // how far it gets now depends on the later parts
        const QStringList lines = m_log.newLines();
        const int taken = lines.indexOf(
            "EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: " + TestProfile::executablePath("L0"));
        QVERIFY2(taken >= 0, qPrintable(lines.join('\n')));
        QCOMPARE(lines.value(taken + 1), "EditorLaunch::saveSettings: ApplInfo file updated: " + managerFile());
    }

    void currentEditorSelection()
    {
        install("2.1.0.5, 3.0.0.0");
        QVERIFY(start());
        const QString current = "EditorLaunch::setCurrentEditorInfo: Current editor release Version 2.1.0.5: "
            + TestProfile::executablePath("E0");
        m_launcher.setCurrentEditorInfo(editor("2.1.0.5"));
        QVERIFY(m_launcher.saveLauncherState());
        // The current editor takes the catalogue's name and paths.
        const EditorInfo installed("editor", "Vorlix Zanmir Editor", "release", "2.1.0.5",
            TestProfile::executablePath("E0"), TestProfile::uninstallerPath("E0"));
        QCOMPARE(section(managerFile()).value("editor").toObject(), installed.toJson(false));
        QCOMPARE(section(managerFile()).value("selected_version").toObject(),
            (QJsonObject { { "editor", installed.toJson(true) } }));

        // A version that is not installed changes nothing.
        m_log.mark();
        m_launcher.setCurrentEditorInfo(editor("beta 2.1.0.5"));
        QCOMPARE(m_log.newLines(), QStringList { current });
        QVERIFY(m_launcher.getApplInfo()->isSelectedVersion(installed));
    }

    void historySerialNumbers_data()
    {
        // "+path" opens a project ("+" alone an editor without one), "-n"
        // deletes the entry with that number.
        QTest::addColumn<QString>("steps");
        QTest::addColumn<QString>("expected"); // most recent first
        row("first entry gets 1, no project none", { "+, +/a.zmr, +", "1 /a.zmr" });
        row("same path twice: one entry, the newest", { "+/a.zmr, +/b.zmr, +/a.zmr", "3 /a.zmr, 2 /b.zmr" });
        row("the newest again keeps its number", { "+/a.zmr, +/b.zmr, +/b.zmr", "2 /b.zmr, 1 /a.zmr" });
        row("deleting the newest frees its number", { "+/a.zmr, +/b.zmr, -2, +/c.zmr", "2 /c.zmr, 1 /a.zmr" });
        row("paths that differ in case are two", { "+/a.zmr, +/A.zmr", "2 /A.zmr, 1 /a.zmr" });
    }

    void historySerialNumbers()
    {
        QFETCH(QString, steps);
        QFETCH(QString, expected);
        QVERIFY(start());
        const EditorInfo started("editor", "N", "release", "2.1.0.5", "/e", "/u");
        for (const QString &step : steps.split(", ")) {
            HistoryInfo entry;
            entry.setSerialNo(step.mid(1).toInt());
            if (step.startsWith('+'))
                QVERIFY(m_launcher.addHistoryAfterLaunch(started, step.mid(1)));
            else
                QVERIFY(m_launcher.deleteHistoryInfo(entry));
        }
        QStringList listed;
        for (const HistoryInfo &history : m_launcher.getApplInfo()->getHistories())
            listed.append(QString("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed.join(", "), expected);
        QStringList written;
        for (const QJsonValue &entry : section(managerFile()).value("histories").toArray())
            written.append(QString("%1 %2").arg(entry["serial_no"].toInt()).arg(entry["openfilepath"].toString()));
        std::sort(written.begin(), written.end(), std::greater<QString>());
        QCOMPARE(written.join(", "), expected);
    }

    void pinsAndOrder_data()
    {
        QTest::addColumn<QString>("installed");
        QTest::addColumn<QString>("pins");
        QTest::addColumn<QString>("unpin"); // nothing when empty
        QTest::addColumn<QString>("inFile");
        QTest::addColumn<QString>("order"); // of getInstalledEditors()
        row("pinned twice, above newer ones", { "2.1, 3.0, 2.9", "2.1, 2.1", "", "2.1, 2.1", "2.1, 3.0, 2.9" });
        row("of twins side by side one stays", { "2.1, 3.0, 2.9", "2.1, 2.1", "2.1", "2.1", "2.1, 3.0, 2.9" });
        row("twins apart both go", { "2.1, 3.0, 2.9", "2.1, 3.0, 2.1", "2.1", "3.0", "3.0, 2.9, 2.1" });
        row("two pinned, newest first", { "2.1, 3.0, 2.9", "2.1, 2.9", "", "2.1, 2.9", "2.9, 2.1, 3.0" });
        row("a pin holds for its edition only", { "2.0, beta 3.0", "3.0", "beta 3.0", "3.0", "beta 3.0, 2.0" });
    }

    void pinsAndOrder()
    {
        QFETCH(QString, installed);
        QFETCH(QString, pins);
        QFETCH(QString, unpin);
        QFETCH(QString, inFile);
        QFETCH(QString, order);
        install(installed);
        QVERIFY(start());
        for (const QString &pin : pins.split(", "))
            QVERIFY(m_launcher.addPinnedVersionInfo(editor(pin)));
        if (!unpin.isEmpty())
            QVERIFY(m_launcher.deletePinnedVersionInfo(editor(unpin)));
        QStringList written;
        for (const QJsonValue &pin : section(managerFile()).value("pinned_version")["editor"].toArray())
            written.append(name(EditorInfo(true, pin.toObject(), nullptr)));
        QCOMPARE(written.join(", "), inFile);
        QStringList listed;
        for (const EditorInfo &found : m_launcher.getInstalledEditors())
            listed.append(name(found));
        QCOMPARE(listed.join(", "), order);
    }

    void failedSaveKeepsTheChange()
    {
        QVERIFY(start());
        QVERIFY(QFile::remove(managerFile()));
        QVERIFY(QDir().mkpath(managerFile())); // cannot be replaced

        QVERIFY(!m_launcher.addPinnedVersionInfo(editor("2.1.0.5")));
        QVERIFY(m_launcher.getApplInfo()->isPinnedVersion(editor("2.1.0.5")));
        // The failure's words went to the info text; the error text logged is
        // the one left by the first load of this run.
        QCOMPARE(m_log.newLines(),
            (QStringList { "ProcessLauncher::addPinnedVersionInfo: Version is pinned on: editor release 2.1.0.5",
                "ProcessLauncher::addPinnedVersionInfo: Failed to load ApplInfo file: " }));
        QCOMPARE(m_launcher.getApplInfo()->getInfoText(), QString("Failed to update ApplInfo file: "));
    }

    void openFileByApplication_data()
    {
        QTest::addColumn<QString>("project"); // under the profile; nothing when empty
        row("path with blanks", { "My Projects/scene one.zmr" });
        row("no project is one empty argument", { "" });
        row("path beyond ASCII", { "Projekte/Szene ä エディタ.zmr" });
        row("quote in the name", { "My Projects/the \"best\" scene.xml" });
    }

    void openFileByApplication()
    {
        QFETCH(QString, project);
        // The argument recorder lies under a folder with blanks, as on Windows.
        const QString folder = m_profile.root() + "/Program Files/Zanmir Editor 2.1";
        const QString application = folder + "/zanmir editor";
        QVERIFY(QDir().mkpath(folder));
        QVERIFY(QFile::exists(application) || QFile::copy(ZANMIR_ARGRECORDER, application));
        const QString record = m_profile.root() + "/arguments.jsonl";
        QFile::remove(record);
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(record));

        const QString filePath = project.isEmpty() ? QString() : m_profile.root() + '/' + project;
        QVERIFY(m_launcher.openFileByApplication(filePath, application));
        QTRY_VERIFY_WITH_TIMEOUT(TestFiles::read(record).endsWith('\n'), 10000);
        const QList<QByteArray> lines = TestFiles::read(record).split('\n');
        QCOMPARE(lines.size(), 2); // one start, one line end
        QCOMPARE(QJsonDocument::fromJson(lines.first()).array(), (QJsonArray { application, filePath }));
        QVERIFY(m_log.newLines().isEmpty());
    }

    void openFileByApplicationWithoutApplication()
    {
        // False without a word: nothing is started.
        QVERIFY(!m_launcher.openFileByApplication("/p/scene.zmr", QString()));
        QVERIFY(!m_launcher.openFileByApplication("/p/scene.zmr", m_profile.root() + "/missing editor"));
        QVERIFY(m_log.newLines().isEmpty());
    }
};

int main(int argc, char *argv[])
{
    // The profile comes first, so that the application object's log and every
    // state file land in it; no traffic may leave this machine.
    TestProfile profile;
    profile.launcherFolder(true);
    qputenv("ZANMIR_SERVER_BASE", "http://127.0.0.1:9");
    qunsetenv("HTTP_PROXY");
    qunsetenv("HTTP_PROXY_CREDENTIALS");
    // Nothing here shows a window, and the offscreen platform of Qt 5.15
    // never frees its screen, which the leak checker would report.
    qputenv("QT_QPA_PLATFORM", "minimal");

    ProcessLauncher launcher(argc, argv);
    TestEditorLaunch test(profile, launcher);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_editorlaunch.moc"
