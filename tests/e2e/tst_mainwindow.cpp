#include "launcherharness.h"

#include <QImage>
#include <QtTest>

// The real binary in normal mode: the main window appears, holds the single
// instance lock while it is open, and ends the process when it is closed.
class TestMainWindow : public QObject
{
    Q_OBJECT

private slots:
    void windowHoldsTheLockUntilClosed()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        const QString root = harness.profile().root();
        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;grab HomeForm " + root + "/window.png;waitfile " + root + "/close;close");
        LauncherRun *window = harness.start({});
        QImage shown; // readable once the window has saved it whole
        QVERIFY(QTest::qWaitFor([&]() { return shown.load(root + "/window.png"); }, 30000));
        QVERIFY2(shown.width() >= 854 && shown.height() >= 593, qPrintable(QString::number(shown.width())));

        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT", QString());
        LauncherRun *second = harness.run({});
        QVERIFY2(second->exitedWith(1) && second->dialogs().size() == 1, qPrintable(second->describe()));
        QCOMPARE(second->dialogs().first().text, QStringLiteral("Zanmir Launcher is already launched."));
        QVERIFY(window->isRunning());

        QVERIFY(QFile(root + "/close").open(QIODevice::WriteOnly));
        QVERIFY2(window->waitForFinished(30000) && window->exitedWith(0), qPrintable(window->describe()));
        QCOMPARE(window->failedSteps(), QStringList());
        QVERIFY(!QFile::exists(harness.profile().launcherFolder(false) + "/ZanmirManager.lock"));
    }
};

QTEST_GUILESS_MAIN(TestMainWindow)
#include "tst_mainwindow.moc"
