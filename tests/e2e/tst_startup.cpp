#include "launcherharness.h"
#include "testlog.h"

#include <QImage>
#include <QtTest>

// Start-up of the real binary: a launcher missing from the uninstall records
// does not start, and says so with a box and status 1; the main window.
class TestStartup : public QObject
{
    Q_OBJECT

private slots:
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
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
