#include "launcherharness.h"
#include "testlog.h"

#include <QDir>
#include <QtTest>

// Start-up of the real binary: arguments logged, folders made, and a failed
// start answered with its message box and exit status 1.
class TestStartup : public QObject
{
    Q_OBJECT

private slots:
    void failedStartWithLogFolder()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        harness.profile().launcherFolder(true);

        LauncherRun *run = harness.run({ "first.zmr", "-test" });
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        const DialogRecord box = run->dialogs().at(0);
        QCOMPARE(QStringList({ box.icon, box.title, box.text, box.button }),
            QStringList({ "critical", "Error", "Failed in initialize.", "Ok" }));
        // Nothing is registered, and a launcher missing from the uninstall records does not start.
        const QStringList log = TestLog::messages(harness.launcherLog());
        QVERIFY2(TestLog::inOrder(log,
                     { "ApplLauncher::ApplLauncher: Launcher arguments[1]: first.zmr",
                         "ApplLauncher::ApplLauncher: Launcher arguments[2]: -test",
                         "EditorLaunch::getLauncherVersion: No version info in registry." }),
            qPrintable(log.join('\n')));
    }

    void firstRunLosesArgumentLines()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        LauncherRun *run = harness.run({ "one", "two" });
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        // The argument lines go before initialize() makes the log folder.
        QVERIFY(QDir(harness.profile().launcherFolder(false)).exists());
        QVERIFY(!harness.launcherLog().contains("Launcher arguments"));
    }

    void boxWithoutWatchdogTimesOut()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        harness.setEnvironmentValue("LD_PRELOAD", QString());
        LauncherRun *run = harness.start({});
        QVERIFY(!run->waitForFinished(3000));
        QVERIFY(run->timedOut());
        QVERIFY(!run->isRunning());
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
