#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"
#include "testlog.h"

#include <QImage>
#include <QtTest>

// Start-up of the real binary: a launcher missing from the uninstall records
// does not start, and says so with a box and status 1; the main window; the
// questions a terminal asks of it.
class TestStartup : public QObject
{
    Q_OBJECT

    // Every file and folder below the folder, by relative path.
    static QStringList contents(const QString &folder)
    {
        QStringList paths;
        QDirIterator it(folder, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDirIterator::Subdirectories);
        while (it.hasNext())
            paths.append(QDir(folder).relativeFilePath(it.next()));
        paths.sort();
        return paths;
    }

private slots:
    void consoleOptions_data()
    {
        QTest::addColumn<QStringList>("arguments"); // "@" is a project that the launcher could open
        QTest::addColumn<QString>("output"); // the start of standard output
        const QString usage = "Usage: ZanmirLauncher [OPTION]... [PROJECT]\n";
        // clang-format off
        QTest::newRow("--help") << QStringList { "--help" } << usage;
        QTest::newRow("-h") << QStringList { "-h" } << usage;
        QTest::newRow("--version") << QStringList { "--version" } << "Zanmir Launcher " ZANMIR_VERSION "\n";
        QTest::newRow("--help with a project") << QStringList { "@", "--help" } << usage;
        QTest::newRow("the first of two") << QStringList { "--version", "-h" } << "Zanmir Launcher " ZANMIR_VERSION "\n";
        // clang-format on
    }

    // Answered on standard output with status 0, on a profile where the
    // launcher would otherwise open the project: no window or box, no
    // editor, and nothing written, not even the log lines of the arguments.
    void consoleOptions()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, output);
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        QVERIFY(!harness.profile().launcherFolder(true).isEmpty()); // left by an earlier run
        QVERIFY(SampleProject::writeProject(harness.projectPath("scene.zmr"), "2.1.5.0"));
        arguments.replaceInStrings("@", harness.projectPath("scene.zmr"));
        const QStringList before = contents(harness.profile().root());

        LauncherRun *run = harness.run(arguments);
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        const QString said = QString::fromLocal8Bit(run->readStandardOutput());
        QVERIFY2(said.startsWith(output), qPrintable(said));
        QCOMPARE(contents(harness.profile().root()), before);
        QVERIFY(harness.editorStarts().isEmpty());
    }

    // Any other option is ignored as before, however it is spelt.
    void unknownLongOptionIsIgnored()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        const QString project = harness.projectPath("scene.zmr");
        QVERIFY(SampleProject::writeProject(project, "2.1.5.0"));
        LauncherRun *run = harness.run({ "--frobnicate", project });
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        QVERIFY(run->readStandardOutput().isEmpty());
        QVERIFY(harness.waitForEditorStarts(1));
        QCOMPARE(harness.editorStarts().first().mid(1), QStringList { project });
    }

    void failedStart_data()
    {
        QTest::addColumn<bool>("logFolder"); // left by an earlier run
        QTest::addColumn<QString>("arguments"); // as logged
        const QString line = "ApplLauncher::ApplLauncher: Launcher arguments[%1]: %2";
        QTest::newRow("log folder there") << true << line.arg(1).arg("first.zmr") + '|' + line.arg(2).arg("-test");
        // The argument lines go before initialize() makes the log folder.
        QTest::newRow("first run") << false << QString();
    }

    void failedStart()
    {
        QFETCH(bool, logFolder);
        QFETCH(QString, arguments);
        LauncherHarness harness;
        QVERIFY(harness.isValid() && (!logFolder || QDir(harness.profile().launcherFolder(true)).exists()));
        LauncherRun *run = harness.run({ "first.zmr", "-test" });
        QVERIFY2(run->exitedWith(1) && run->dialogs().size() == 1, qPrintable(run->describe()));
        QCOMPARE(run->dialogs().at(0).text, QStringLiteral("Failed in initialize."));
        QVERIFY(QDir(harness.profile().launcherFolder(false)).exists());
        const QStringList log = TestLog(harness.profile().logFile("ZanmirLauncher")).newLines();
        QCOMPARE(log.filter("Launcher arguments[").join('|'), arguments);
        QVERIFY(log.contains("EditorLaunch::getLauncherVersion: No version info in registry."));
    }

    // The main window holds the single-instance lock while it is open: a
    // second start is refused and leaves the lock alone.
    void windowHoldsTheLockUntilClosed()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        const QString root = harness.profile().root();
        const QString lock = harness.profile().launcherFolder(false) + "/ZanmirManager.lock";
        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;grab HomeForm " + root + "/window.png;waitfile " + root + "/close;close");
        LauncherRun *window = harness.start({});
        QImage shown; // readable once the window has saved it whole
        QVERIFY(QTest::qWaitFor([&]() { return shown.load(root + "/window.png"); }, 30000));
        QVERIFY2(shown.width() >= 854 && shown.height() >= 593, qPrintable(QString::number(shown.width())));

        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT", QString());
        LauncherRun *second = harness.run({});
        QVERIFY2(second->exitedWith(1) && second->dialogs().size() == 1, qPrintable(second->describe()));
        const DialogRecord box = second->dialogs().first();
        QCOMPARE(box.title + ": " + box.text, QStringLiteral("warning: Zanmir Launcher is already launched."));
        QVERIFY(window->isRunning() && QFile::exists(lock));

        QVERIFY(QFile(root + "/close").open(QIODevice::WriteOnly));
        QVERIFY2(window->waitForFinished(30000) && window->exitedWith(0), qPrintable(window->describe()));
        QCOMPARE(window->failedSteps(), QStringList());
        QVERIFY(!QFile::exists(lock));
    }

#ifdef ZANMIR_WINDOW_MODULE_FILE
    // A launcher whose web pages' module is missing (a damaged install)
    // shows its window and works as usual: each page says that it cannot be
    // shown, the log says why, and the window closes with status 0.
    void windowWithoutTheWebPagesModule()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        const QString root = harness.profile().root();
        QTemporaryDir install;
        for (const QString &file :
            { QStringLiteral(ZANMIR_LAUNCHER_BINARY), QStringLiteral(ZANMIR_WINDOW_MODULE_FILE) })
            QVERIFY(QFile::copy(file, install.filePath(QFileInfo(file).fileName())));
        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;waitfile " + root + "/go;click buttonInfo;grab widgetInfo " + root
                + "/info.png;click buttonAppl;rows widgetInstalledEditor/listWidget " + root + "/rows.txt;close");
        LauncherRun *window = harness.startProgram(install.filePath("ZanmirLauncher"), {});
        const QString refused = "WebPage: cannot load the web pages: ";
        QVERIFY(QTest::qWaitFor(
            [&]() { return harness.launcherLog().count(refused) == 2 || !window->isRunning(); }, 30000));
        QVERIFY2(harness.launcherLog().count(refused) == 2, qPrintable(window->describe() + harness.launcherLog()));
        QVERIFY(TestFiles::write(root + "/go", ""));

        QVERIFY2(window->waitForFinished(30000) && window->exitedWith(0), qPrintable(window->describe()));
        QCOMPARE(window->failedSteps(), QStringList());
        QVERIFY(window->dialogs().isEmpty());
        QVERIFY(harness.launcherLog().contains(refused + "Cannot load library "));
        QVERIFY(!QImage(root + "/info.png").isNull());
        QCOMPARE(TestFiles::read(root + "/rows.txt").trimmed(), QByteArray("Vorlix Zanmir Editor 2.1.05"));
    }
#endif
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
