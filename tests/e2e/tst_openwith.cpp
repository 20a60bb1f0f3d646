#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QLockFile>
#include <QtTest>

// Open-with: a project file on the command line starts the editor that fits it, and becomes a recent project.
class TestOpenWith : public QObject
{
    Q_OBJECT

    QScopedPointer<LauncherHarness> m_harness;

    static bool ended(LauncherRun *run, int exitCode, int dialogs)
    {
        const bool ok = run->exitedWith(exitCode) && run->dialogs().size() == dialogs;
        if (!ok)
            qInfo("%s", qPrintable(run->describe()));
        return ok;
    }
    // The recent projects as "serial_no version file", the file relative to the projects' folder.
    QStringList histories() const
    {
        QStringList entries;
        const QJsonValue list = TestFiles::readObject(m_harness->profile().managerFile()).value("1.0.0")["histories"];
        for (const QJsonValue &e : list.toArray())
            entries.append(QString::number(e["serial_no"].toInt()) + ' ' + e["version"].toString() + ' '
                + QString(e["openfilepath"].toString()).replace(m_harness->projectPath(QString()), QString()));
        entries.sort();
        return entries;
    }

    // Project names as full paths into the projects' folder, as a file manager hands them over.
    QStringList paths(QStringList names) const
    {
        return names.replaceInStrings(QRegularExpression("^"), m_harness->projectPath(QString()));
    }

private slots:
    // Installed versions carry the text that the editor writes into its projects (A.B.CC).
    void init()
    {
        m_harness.reset(new LauncherHarness);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.0.03", "2.1.05", "2.2.01" }));
        for (const char *project : { "scene.zmr 2.1.5.0", "scene.xml 2.0.3.0", "future.zmr 3.0.0.0" })
            QVERIFY(SampleProject::writeProject(
                m_harness->projectPath(QString(project).section(' ', 0, 0)), QString(project).section(' ', 1)));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("bad.zmr"), "PK but not really"));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("bad.xml"), "<header><signature>zmr</sig"));
        QVERIFY(SampleProject::writeFile(m_harness->projectPath("notes.txt"), "text"));
    }

    void openWith_data()
    {
        // "default <version>" stores a default, "no editors" uninstalls all, "no program" removes 2.1.05's program.
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("setup");
        QTest::addColumn<int>("exitCode");
        QTest::addColumn<QString>("opened"); // by the editor of that version, with the file as the only argument
        QTest::addColumn<QString>("message");
        const QString corrupt = "Failed to open project file.\n\nPlease confirm the file is not corrupted.";
        const QString manage
            = "\nPlease launch Zanmir Launcher, and confirm the installation by 'Manage Zanmir Editor'.";
        // clang-format off
        QTest::newRow("zmr by 2.1") << QStringList { "scene.zmr" } << "" << 0 << "2.1.05 scene.zmr" << "";
        QTest::newRow("newer than installed") << QStringList { "future.zmr" } << "" << 0 << "2.2.01 future.zmr" << "";
        QTest::newRow("last existing file") << QStringList { "scene.zmr", "scene.xml", "gone.zmr" } << "" << 0 << "2.0.03 scene.xml" << "";
        // The default version wins outright: the project is not even read.
        QTest::newRow("default") << QStringList { "scene.zmr" } << "default 2.0.03" << 0 << "2.0.03 scene.zmr" << "";
        QTest::newRow("default, corrupt file") << QStringList { "bad.zmr" } << "default 2.0.03" << 0 << "2.0.03 bad.zmr" << "";
        // Other editors are installed, yet there is no fall-back. A refused file still ends with 0.
        QTest::newRow("default not installed") << QStringList { "scene.zmr" } << "default 1.9.09" << 0 << "" << "Failed to launch default editor." + manage;
        QTest::newRow("no editor installed") << QStringList { "scene.zmr" } << "no editors" << 0 << "" << "Failed to launch editor." + manage;
        QTest::newRow("corrupt zmr") << QStringList { "bad.zmr" } << "" << 0 << "" << corrupt;
        QTest::newRow("xml syntax error") << QStringList { "bad.xml" } << "" << 0 << "" << corrupt;
        QTest::newRow("unsupported suffix") << QStringList { "notes.txt" } << "" << 0 << "" << "This file has unsupported extension.\n@notes.txt";
        QTest::newRow("editor program missing") << QStringList { "scene.zmr" } << "no program" << 1 << "" << ""; // and nothing said
        // clang-format on
    }

    void openWith()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, setup);
        QFETCH(int, exitCode);
        QFETCH(QString, opened);
        QFETCH(QString, message);
        const QString editors = m_harness->profile().root() + "/editors/";
        const QString selected = R"({"1.0.0": {"selected_version": {"editor": {"appl_type": "editor",
            "edition": "release", "version": "%1"}}}})";
        if (setup == QLatin1String("no program"))
            QVERIFY(QFile::remove(editors + "2.1.05-release/ZanmirEditor"));
        else if (setup == QLatin1String("no editors"))
            QVERIFY(m_harness->registerVersions({}));
        else if (!setup.isEmpty())
            QVERIFY(TestFiles::write(m_harness->profile().managerFile(), selected.arg(setup.section(' ', 1)).toUtf8()));

        LauncherRun *run = m_harness->run(paths(arguments));
        QVERIFY(ended(run, exitCode, message.isEmpty() ? 0 : 1));
        QCOMPARE(run->dialogs().value(0).text, message.replace("@", m_harness->projectPath(QString())));
        // The launcher has ended, so any editor it started is running.
        if (!opened.isEmpty())
            QVERIFY(m_harness->waitForEditorStarts(1));
        const QStringList start { editors + opened.section(' ', 0, 0) + "-release/ZanmirEditor",
            m_harness->projectPath(opened.section(' ', 1)) };
        QCOMPARE(m_harness->editorStarts(), opened.isEmpty() ? QList<QStringList>() : QList<QStringList> { start });
        QCOMPARE(histories(), opened.isEmpty() ? QStringList() : QStringList { "1 " + opened });
    }

    // A temporary file of an interrupted write, an hour old, and a download
    // that broke off a week ago go at start.
    void leftOverIsRemoved()
    {
        const QString path = m_harness->profile().launcherFolder() + "/ZanmirManager.json.qWeRty";
        const QString part = m_harness->profile().root() + "/home/Downloads/.ZanmirSetup_2.3.01.exe.part";
        QVERIFY(QDir().mkpath(QFileInfo(part).path()));
        for (const QString &file : { path, part, part + ".json" }) {
            QVERIFY(TestFiles::write(file, "{\"histories\": [")
                && TestFiles::setModified(file, QDateTime::currentDateTime().addDays(-8)));
        }
        QVERIFY(ended(m_harness->run(paths({ "scene.zmr" })), 0, 0));
        QCOMPARE(histories(), QStringList { "1 2.1.05 scene.zmr" });
        for (const QString &file : { path, part, part + ".json" }) {
            QVERIFY(!QFile::exists(file));
            QVERIFY(m_harness->launcherLog().contains(
                "ProcessLauncher::removeLeftoverFiles: Removed left-over temporary file: " + file + '\n'));
        }
    }

    void twentyAtOnceAllReachTheRecentList()
    {
        // Every process reads the manager file at its start and writes it near its end: without
        // re-reading under a lock the last writer's list replaces everyone else's.
        QStringList expected;
        QList<LauncherRun *> runs;
        for (int i = 1; i <= 20; ++i) {
            expected.append(QString("p%1.zmr").arg(i, 2, 10, QChar('0')));
            QVERIFY(SampleProject::writeProject(m_harness->projectPath(expected.last()), "2.1.5.0"));
        }
        for (const QString &name : qAsConst(expected))
            runs.append(m_harness->start(paths({ name })));
        for (LauncherRun *run : qAsConst(runs))
            QVERIFY(run->waitForFinished(3 * LauncherHarness::kDefaultTimeout) && ended(run, 0, 0));
        QVERIFY(m_harness->waitForEditorStarts(20));
        QCOMPARE(m_harness->editorStarts().size(), 20);
        // Every file once, and the serial numbers 1 to 20 in some order.
        const QStringList entries = histories();
        QStringList files;
        for (int i = 1; i <= 20; ++i) {
            QCOMPARE(entries.filter(QRegularExpression(QString("^%1 ").arg(i))).size(), 1);
            files.append(entries.value(i - 1).section(' ', 2));
        }
        files.sort();
        QCOMPARE(entries.size(), 20);
        QCOMPARE(files, expected);
    }

    // A data folder that the user may not write (the manager file readable, nothing else):
    // the project opens all the same, and the log says that nothing was saved and why.
    void readOnlyDataFolder()
    {
        QVERIFY(ended(m_harness->run(paths({ "scene.xml" })), 0, 0));
        const QString folder = m_harness->profile().launcherFolder(false);
        const QString managerFile = m_harness->profile().managerFile();
        const QByteArray before = TestFiles::read(managerFile);
        const QFileDevice::Permissions readable
            = QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther;
        const QFileDevice::Permissions browsable
            = readable | QFileDevice::ExeOwner | QFileDevice::ExeGroup | QFileDevice::ExeOther;
        QVERIFY(QFile::setPermissions(managerFile, readable) && QFile::setPermissions(folder, browsable));
        LauncherRun *run = m_harness->startUnprivileged(paths({ "scene.zmr" }));
        const bool done = run && run->waitForFinished(LauncherHarness::kDefaultTimeout);
        QVERIFY(QFile::setPermissions(folder, browsable | QFileDevice::WriteOwner));
        QVERIFY(done && ended(run, 0, 0));
        QVERIFY(m_harness->waitForEditorStarts(2));
        QCOMPARE(m_harness->editorStarts().at(1),
            (QStringList { m_harness->profile().root() + "/editors/2.1.05-release/ZanmirEditor",
                m_harness->projectPath("scene.zmr") }));
        QCOMPARE(TestFiles::read(managerFile), before);
        const QString lock
            = "Failed to lock ApplInfo file: " + folder + "/ZanmirManager.write.lock (its folder cannot be written)";
        const QString log = m_harness->launcherLog();
        QVERIFY2(log.contains("EditorLaunch::saveSettings: " + lock + "; nothing to write\n"), qPrintable(log));
        QVERIFY2(
            log.contains("ProcessLauncher::appendHistoryInfo: " + lock
                + "; nothing saved: Failed to update ApplInfo file: Failed to open new file: " + managerFile + '\n'),
            qPrintable(log));
    }

    // Open-with takes no lock: with a main window open, two at once both start their editors.
    void openWithTakesNoLock()
    {
        QLockFile window(m_harness->profile().launcherFolder() + "/ZanmirManager.lock");
        QVERIFY(window.tryLock(0));
        const QList<LauncherRun *> runs { m_harness->start(paths({ "scene.xml" })),
            m_harness->start(paths({ "scene.zmr" })) };
        for (LauncherRun *run : runs)
            QVERIFY(run->waitForFinished(LauncherHarness::kDefaultTimeout) && ended(run, 0, 0));
        QVERIFY(m_harness->waitForEditorStarts(2));
        qint64 pid = 0;
        QVERIFY(window.getLockInfo(&pid, nullptr, nullptr) && pid == QCoreApplication::applicationPid());
    }

    // The launcher draws without the GL driver, but the editor it starts must
    // get the environment the user gave, with or without a GL choice of its own.
    void editorKeepsTheUsersGlChoice_data()
    {
        QTest::addColumn<QString>("choice"); // empty: none set
        QTest::newRow("none chosen") << QString();
        QTest::newRow("user's choice") << "xcb_egl";
    }
    void editorKeepsTheUsersGlChoice()
    {
        QFETCH(QString, choice);
        const QString environmentLog = m_harness->profile().root() + "/sample-editor-environment.log";
        m_harness->setEnvironmentValue("ZANMIR_SAMPLE_EDITOR_ENV_LOG", environmentLog);
        m_harness->setEnvironmentValue("QT_XCB_GL_INTEGRATION", choice);
        QVERIFY(ended(m_harness->run(paths({ "scene.zmr" })), 0, 0) && m_harness->waitForEditorStarts(1));
        const QStringList seen = QJsonDocument::fromJson(TestFiles::read(environmentLog))
                                     .toVariant()
                                     .toStringList()
                                     .filter(QRegularExpression("^QT_XCB_GL_INTEGRATION="));
        QCOMPARE(seen, choice.isEmpty() ? QStringList() : QStringList { "QT_XCB_GL_INTEGRATION=" + choice });
    }
};

QTEST_GUILESS_MAIN(TestOpenWith)
#include "tst_openwith.moc"
