#include "launcherharness.h"
#include "sampleproject.h"

#include <QDir>
#include <QRegularExpression>
#include <QtTest>

namespace {

// A log line: local date and time, one blank, the message.
bool hasLogLine(const QString &log, const QString &message)
{
    const QRegularExpression line(
        QStringLiteral("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2} %1$").arg(QRegularExpression::escape(message)),
        QRegularExpression::MultilineOption);
    return line.match(log).hasMatch();
}

} // namespace

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
        QVERIFY(
            SampleProject::writeProject(harness.projectPath(QStringLiteral("first.zmr")), QStringLiteral("2.1.0.5")));

        LauncherRun *run = harness.run({ QStringLiteral("first.zmr"), QStringLiteral("-test") });
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));

        const QList<DialogRecord> dialogs = run->dialogs();
        QCOMPARE(dialogs.size(), 1);
        QCOMPARE(dialogs.at(0).icon, QStringLiteral("critical"));
        QCOMPARE(dialogs.at(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.at(0).text, QStringLiteral("Failed in initialize."));
        QCOMPARE(dialogs.at(0).button, QStringLiteral("Ok"));

        const QString log = harness.launcherLog();
        QVERIFY2(hasLogLine(log, QStringLiteral("ApplLauncher::ApplLauncher: Launcher arguments[1]: first.zmr")),
            qPrintable(log));
        QVERIFY2(hasLogLine(log, QStringLiteral("ApplLauncher::ApplLauncher: Launcher arguments[2]: -test")),
            qPrintable(log));
        QVERIFY(harness.editorStarts().isEmpty());
        // Nothing is registered: a launcher missing from the uninstall records does not start.
        QVERIFY2(hasLogLine(log, QStringLiteral("EditorLaunch::getLauncherVersion: No version info in registry.")),
            qPrintable(log));
    }

    void firstRunLosesArgumentLines()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        const QString folder = harness.profile().launcherFolder(false);
        QVERIFY(!QDir(harness.profile().dataHome() + QStringLiteral("/Vorlix")).exists());

        LauncherRun *run = harness.run({ QStringLiteral("one"), QStringLiteral("two") });
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().at(0).text, QStringLiteral("Failed in initialize."));

        // The log folder is made one level at a time by initialize(), after
        // the argument lines were written and dropped.
        QVERIFY(QDir(folder).exists());
        QVERIFY(!harness.launcherLog().contains(QStringLiteral("Launcher arguments")));
    }

    void concurrentRunsKeepTheirRecordsApart()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        harness.profile().launcherFolder(true);

        QList<LauncherRun *> runs;
        for (int i = 0; i < 3; ++i)
            runs.append(harness.start({ QStringLiteral("run%1").arg(i) }));
        for (LauncherRun *run : runs) {
            run->waitForFinished(LauncherHarness::kDefaultTimeout);
            QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
            QCOMPARE(run->dialogs().size(), 1);
        }
        const QString log = harness.launcherLog();
        for (int i = 0; i < 3; ++i)
            QVERIFY(hasLogLine(log, QStringLiteral("ApplLauncher::ApplLauncher: Launcher arguments[1]: run%1").arg(i)));
    }

    void boxWithoutWatchdogTimesOut()
    {
        // Without the watchdog the box waits for a user: the harness must
        // give up and kill the process rather than hang.
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        harness.setEnvironmentValue(QStringLiteral("LD_PRELOAD"), QString());
        LauncherRun *run = harness.start({});
        QVERIFY(run->isRunning());
        QVERIFY(!run->waitForFinished(5000));
        QVERIFY(run->timedOut());
        QVERIFY(!run->isRunning());
        QVERIFY(run->dialogs().isEmpty());
    }
};

QTEST_GUILESS_MAIN(TestStartup)
#include "tst_startup.moc"
