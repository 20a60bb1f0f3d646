#include "launcherharness.h"
#include "testlog.h"

#include <QtTest>

// Start-up of the real binary with nothing registered: a launcher missing from
// the uninstall records does not start, and says so with a box and status 1.
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
        QVERIFY(harness.isValid() && (!logFolder || !harness.profile().launcherFolder(true).isEmpty()));
        LauncherRun *run = harness.run({ "first.zmr", "-test" });
        QVERIFY2(run->exitedWith(1) && run->dialogs().size() == 1, qPrintable(run->describe()));
        QCOMPARE(run->dialogs().at(0).text, QStringLiteral("Failed in initialize."));
        QVERIFY(QDir(harness.profile().launcherFolder(false)).exists());
        const QStringList log = TestLog(harness.profile().logFile("ZanmirLauncher")).newLines();
        QCOMPARE(log.filter("Launcher arguments[").join('|'), arguments);
        QVERIFY(log.contains("EditorLaunch::getLauncherVersion: No version info in registry."));
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
