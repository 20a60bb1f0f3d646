#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QtTest>

// The real launcher's update catalogue at start-up: the server's answer is
// kept byte for byte as the offline copy, and a server that takes the
// request and never answers delays an open-with start by the deadline only,
// start-up going on from that copy.
class TestCatalogueStartup : public QObject
{
    Q_OBJECT

private slots:
    void silentServerFallsBackToTheCopy()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.0.5" }));
        HttpFixture server;
        QVERIFY(server.listen());
        const QString path = "/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1", url = server.url(path);
        const QByteArray catalogue
            = R"({"1.0.0": {"web_versions": [{"type": "newsweb", "version": "1", "url": "/お知らせ.htm"}]}})";
        server.setAnswer(path, HttpFixture::ok(catalogue));
        harness.setServerBase(server.url(QString()));
        harness.setEnvironmentValue("ZANMIR_HTTP_TIMEOUT_MS", "500");
        const QString project = harness.projectPath("scene.zmr");
        QVERIFY(SampleProject::writeProject(project, "2.1.0.5"));
        // The scripted server answers while this thread waits in an event loop.
        LauncherRun *first = harness.start({ project });
        QVERIFY(QTest::qWaitFor([first]() { return !first->isRunning(); }, LauncherHarness::kDefaultTimeout));
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QCOMPARE(server.requestCount(path), 1);
        QVERIFY(harness.launcherLog().contains("ApplUpdateInfo is completely loaded from server: [" + url + "]"));
        QCOMPARE(TestFiles::read(harness.profile().launcherFolder(false) + "/00000001.html"), catalogue);

        server.setAnswer(path, HttpFixture::silent());
        QElapsedTimer elapsed;
        elapsed.start();
        LauncherRun *second = harness.run({ project }, 10000);
        QVERIFY2(second->exitedWith(0) && second->dialogs().isEmpty(), qPrintable(second->describe()));
        QVERIFY2(elapsed.elapsed() >= 500, qPrintable(QString::number(elapsed.elapsed())));
        QVERIFY(harness.waitForEditorStarts(2));
        QCOMPARE(harness.editorStarts().at(1).mid(1), QStringList { project });
        const QString log = harness.launcherLog();
        QVERIFY2(log.contains("Failed to load ApplUpdateInfo from server: [" + url + "]"), qPrintable(log));
        QVERIFY2(log.contains("Contents is read from offline file: URL[" + url + "]"), qPrintable(log));
    }
};

QTEST_GUILESS_MAIN(TestCatalogueStartup)
#include "tst_catalogue.moc"
