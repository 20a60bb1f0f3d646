#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QtTest>

#include <memory>

// The open-with road: a project file on the command line starts the editor
// that fits it, records it as a recent project and ends the process.
class TestOpenWith : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LauncherHarness> m_harness;

    void project(const QString &name, const QString &savedBy)
    {
        QString error;
        QVERIFY2(SampleProject::writeProject(m_harness->projectPath(name), savedBy, &error), qPrintable(error));
    }
    // Exit status and number of boxes, with the run's account on a mismatch.
    static bool ended(LauncherRun *run, int exitCode, int dialogs)
    {
        const bool ok = run->exitedWith(exitCode) && run->dialogs().size() == dialogs;
        if (!ok)
            qWarning("%s", qPrintable(run->describe()));
        return ok;
    }
    static QString box(const DialogRecord &dialog) { return dialog.icon + '|' + dialog.title + '|' + dialog.text; }
    // "2.1.05 scene.zmr": the version folder of the editor that a start came
    // from (".../editors/2.1.05-release/ZanmirEditor"), then its arguments.
    QStringList startedEditors() const
    {
        QStringList starts;
        for (const QStringList &start : m_harness->editorStarts())
            starts.append(QFileInfo(start.value(0)).dir().dirName().section('-', 0, 0) + ' ' + start.mid(1).join(' '));
        starts.sort();
        return starts;
    }
    // The recent projects as "file serial_no version".
    QStringList histories() const
    {
        QStringList entries;
        const QJsonValue list = TestFiles::readObject(m_harness->profile().managerFile()).value("1.0.0")["histories"];
        for (const QJsonValue &entry : list.toArray())
            entries.append(entry["openfilepath"].toString() + ' ' + QString::number(entry["serial_no"].toInt()) + ' '
                + entry["version"].toString());
        entries.sort();
        return entries;
    }
    // A first plain run makes the manager file that keeps the default.
    void setDefaultVersion(const QString &version)
    {
        QVERIFY(ended(m_harness->run({}), 0, 0));
        QJsonObject root = TestFiles::readObject(m_harness->profile().managerFile());
        QJsonObject state = root.value("1.0.0").toObject();
        state.insert("selected_version",
            QJsonObject { { "editor",
                QJsonObject { { "appl_type", "editor" }, { "edition", "release" }, { "version", version } } } });
        root.insert("1.0.0", state);
        QVERIFY(TestFiles::write(m_harness->profile().managerFile(), QJsonDocument(root).toJson()));
    }

private slots:
    // Installed versions carry the text that the editor writes into its
    // projects (A.B.CC), so that a project finds its exact editor.
    void init()
    {
        m_harness = std::make_unique<LauncherHarness>();
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.0.03", "2.1.05", "2.2.01" }, "1.0.0.0"));
        project("scene.zmr", "2.1.5.0");
        project("scene.xml", "2.0.3.0");
        project("SCENE.ZMR", "2.2.1.0");
        project("future.zmr", "3.0.0.0");
        project("old.xml", "1.0.0.0");
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("bad.zmr"), "PK but not really"));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("bad.xml"), "<header><signature>zmr</sig"));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("notes.txt"), "text"));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("scene.zmr.bak"), "x"));
    }

    void openWith_data()
    {
        // setup: "default <version>" stores a default editor, "no editors"
        // uninstalls them all, "no program" removes the newest editor's program.
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<QString>("opened");
        QTest::addColumn<QString>("message");
        const QString corrupt = "Failed to open project file.\n\nPlease confirm the file is not corrupted.";
        const QString manage
            = "\nPlease launch Zanmir Launcher, and confirm the installation by 'Manage Zanmir Editor'.";
        const QString unsupported = "This file has unsupported extension.\n";
        // clang-format off
        QTest::newRow("zmr by 2.1") << QStringList { "scene.zmr" } << "" << "2.1.05 scene.zmr" << "";
        QTest::newRow("xml by 2.0") << QStringList { "scene.xml" } << "" << "2.0.03 scene.xml" << "";
        QTest::newRow("capital suffix") << QStringList { "SCENE.ZMR" } << "" << "2.2.01 SCENE.ZMR" << "";
        // Newer than anything installed, or an old build unknown here: the newest release.
        QTest::newRow("newer than installed") << QStringList { "future.zmr" } << "" << "2.2.01 future.zmr" << "";
        QTest::newRow("not installed") << QStringList { "old.xml" } << "" << "2.2.01 old.xml" << "";
        QTest::newRow("last existing file") << QStringList { "scene.xml", "scene.zmr", "gone.zmr" } << "" << "2.1.05 scene.zmr" << "";
        // The default version wins outright: the project is not even read.
        QTest::newRow("default") << QStringList { "SCENE.ZMR" } << "default 2.0.03" << "2.0.03 SCENE.ZMR" << "";
        QTest::newRow("default, corrupt file") << QStringList { "bad.zmr" } << "default 2.0.03" << "2.0.03 bad.zmr" << "";
        // Other editors are installed, yet there is no fall-back.
        QTest::newRow("default not installed") << QStringList { "scene.zmr" } << "default 1.9.09" << "" << "Failed to launch default editor." + manage;
        QTest::newRow("no editor installed") << QStringList { "scene.zmr" } << "no editors" << "" << "Failed to launch editor." + manage;
        QTest::newRow("corrupt zmr") << QStringList { "bad.zmr" } << "" << "" << corrupt;
        QTest::newRow("xml syntax error") << QStringList { "bad.xml" } << "" << "" << corrupt;
        QTest::newRow("unsupported suffix") << QStringList { "notes.txt" } << "" << "" << unsupported + "notes.txt";
        // The editor cannot start: nothing is said, the status is 1.
        QTest::newRow("editor program missing") << QStringList { "SCENE.ZMR" } << "no program" << "" << "";
        QTest::newRow("second suffix after zmr") << QStringList { "scene.zmr.bak" } << "" << "" << unsupported + "scene.zmr.bak";
        // clang-format on
    }

    void openWith()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, setup);
        QFETCH(QString, opened);
        QFETCH(QString, message);
        const bool noProgram = setup == QLatin1String("no program");
        if (noProgram)
            QVERIFY(QFile::remove(m_harness->profile().root() + "/editors/2.2.01-release/ZanmirEditor"));
        else if (setup == QLatin1String("no editors"))
            QVERIFY(m_harness->registerVersions({}, "1.0.0.0"));
        else if (!setup.isEmpty())
            setDefaultVersion(setup.section(' ', 1));

        // The start-up itself succeeded, so a refused file still ends with 0.
        LauncherRun *run = m_harness->run(arguments);
        QVERIFY(ended(run, noProgram ? 1 : 0, message.isEmpty() ? 0 : 1));
        if (!message.isEmpty())
            QCOMPARE(box(run->dialogs().first()), "critical|Error|" + message);
        m_harness->waitForEditorStarts(1, opened.isEmpty() ? 300 : 10000);
        QTest::qWait(300);
        QCOMPARE(startedEditors(), opened.isEmpty() ? QStringList() : QStringList { opened });
        const QString file = opened.section(' ', 1), version = opened.section(' ', 0, 0);
        QCOMPARE(histories(), opened.isEmpty() ? QStringList() : QStringList { file + " 1 " + version });
    }

    void reopeningReplacesTheHistoryEntry()
    {
        for (const char *file : { "scene.zmr", "scene.xml", "scene.zmr" })
            QVERIFY(ended(m_harness->run({ file }), 0, 0));
        QVERIFY(m_harness->waitForEditorStarts(3));
        QCOMPARE(histories(), (QStringList { "scene.xml 2 2.0.03", "scene.zmr 3 2.1.05" }));
    }

    void heldLockRefusesOnlyTheMainWindow()
    {
        // Stands in for an open main window.
        QLockFile window(m_harness->profile().launcherFolder() + "/ZanmirManager.lock");
        QVERIFY(window.tryLock(0));
        // Open-with takes no lock: two at once both start their editors while it is held.
        LauncherRun *first = m_harness->start({ "scene.xml" });
        LauncherRun *second = m_harness->start({ "scene.zmr" });
        QVERIFY(first->waitForFinished(LauncherHarness::kDefaultTimeout) && ended(first, 0, 0));
        QVERIFY(second->waitForFinished(LauncherHarness::kDefaultTimeout) && ended(second, 0, 0));
        QVERIFY(m_harness->waitForEditorStarts(2));
        QCOMPARE(startedEditors(), (QStringList { "2.0.03 scene.xml", "2.1.05 scene.zmr" }));

        LauncherRun *plain = m_harness->run({});
        QVERIFY(ended(plain, 1, 1));
        QCOMPARE(box(plain->dialogs().first()), QStringLiteral("warning|warning|Zanmir Launcher is already launched."));
        qint64 pid = 0;
        QString host, application;
        QVERIFY(window.getLockInfo(&pid, &host, &application) && pid == QCoreApplication::applicationPid());
    }
};

QTEST_GUILESS_MAIN(TestOpenWith)
#include "tst_openwith.moc"
