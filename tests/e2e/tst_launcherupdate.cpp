#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QtTest>

// The update catalogue in the real binary. One that offers a newer launcher
// puts the update window in place of the main window, and the sample
// installer served beside it is downloaded, checked and started.
class TestLauncherUpdate : public QObject
{
    Q_OBJECT

    QScopedPointer<LauncherHarness> m_harness;
    const QString m_fileName = QStringLiteral("ZanmirLauncherSetup_1.1.0.0.exe");

    QString downloaded() const { return m_harness->profile().root() + "/home/Downloads/" + m_fileName; }
    void publish()
    {
        const QString url = "/Zanmir/Installer/sample-installer";
        const QByteArray digest = m_harness->publishInstaller(url);
        QVERIFY(m_harness->publishCatalogue(
            CatalogueBuilder().entries({ "launcher 1.1.0.0" }).installer(m_fileName, url, digest).bytes()));
    }

private slots:
    void init()
    {
        m_harness.reset(new LauncherHarness);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.1.0.5" }) && m_harness->serveStore());
    }

    // The update window comes first, even before a project file given, and
    // Cancel ends the process with status 1 and nothing else happens.
    void cancelEndsTheProcess()
    {
        publish();
        QVERIFY(SampleProject::writeProject(m_harness->projectPath("first.zmr"), "2.1.0.5"));
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", "window Update Zanmir Launcher;click cancelButton");
        LauncherRun *run = m_harness->run({ m_harness->projectPath("first.zmr") });
        QVERIFY2(run->exitedWith(1) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        QCOMPARE(run->failedSteps(), QStringList());
        QVERIFY(!QFile::exists(downloaded()) && !QFile::exists(m_harness->installerLog()));
        QVERIFY(m_harness->editorStarts().isEmpty());
    }

    // Update, Yes: the installer arrives, is started and the process ends
    // with status 0; the installer records the new version, so the next
    // start opens the main window.
    void updateThenNextStart()
    {
        publish();
        m_harness->setEnvironmentValue(
            "ZANMIR_TEST_SCRIPT", "window Update Zanmir Launcher;click launcherUpdateButton");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().first().text, QString("Are you sure to download installer for Launcher ver 1.1.0.0?"));
        QCOMPARE(TestFiles::read(downloaded()), TestFiles::read(ZANMIR_SAMPLE_INSTALLER));
        // Started, not waited for: it may still be at work, and the file exists before its line.
        QJsonObject record;
        QVERIFY(QTest::qWaitFor(
            [&]() { return !(record = TestFiles::readObject(m_harness->installerLog())).isEmpty(); }, 10000));
        QCOMPARE(record["program"].toString(), downloaded());
        QCOMPARE(record["installed"].toString(), QString("launcher 1.1.0.0"));
        QVERIFY(m_harness->launcherLog().contains("ApplUpdater::downloadFinished: Download success: " + downloaded()));

        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", "window Zanmir Launcher;close");
        LauncherRun *next = m_harness->run({});
        QVERIFY2(next->exitedWith(0) && next->dialogs().isEmpty(), qPrintable(next->describe()));
        QCOMPARE(next->failedSteps(), QStringList());
    }

    // With no launcher update on offer: the server's answer is kept byte for
    // byte as the offline copy, and a server that takes the request and never
    // answers delays an open-with start by the deadline only, start-up going
    // on from that copy.
    void silentServerFallsBackToTheCopy()
    {
        HttpFixture server;
        QVERIFY(server.listen());
        const QString path = "/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1", url = server.url(path);
        const QByteArray catalogue
            = R"({"1.0.0": {"web_versions": [{"type": "newsweb", "version": "1", "url": "/お知らせ.htm"}]}})";
        server.setAnswer(path, HttpFixture::ok(catalogue));
        m_harness->setServerBase(server.url(QString()));
        m_harness->setEnvironmentValue("ZANMIR_HTTP_TIMEOUT_MS", "500");
        const QString project = m_harness->projectPath("scene.zmr");
        QVERIFY(SampleProject::writeProject(project, "2.1.0.5"));
        // The scripted server answers while this thread waits in an event loop.
        LauncherRun *first = m_harness->start({ project });
        QVERIFY(QTest::qWaitFor([first]() { return !first->isRunning(); }, LauncherHarness::kDefaultTimeout));
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QCOMPARE(server.requestCount(path), 1);
        QVERIFY(m_harness->launcherLog().contains("ApplUpdateInfo is completely loaded from server: [" + url + "]"));
        QCOMPARE(TestFiles::read(m_harness->profile().launcherFolder(false) + "/00000001.html"), catalogue);

        server.setAnswer(path, HttpFixture::silent());
        LauncherRun *second = m_harness->run({ project }, 10000);
        QVERIFY2(second->exitedWith(0) && second->dialogs().isEmpty(), qPrintable(second->describe()));
        QVERIFY(m_harness->waitForEditorStarts(2));
        QCOMPARE(m_harness->editorStarts().at(1).mid(1), QStringList { project });
        const QString log = m_harness->launcherLog();
        QVERIFY2(log.contains("Failed to load ApplUpdateInfo from server: [" + url + "]"), qPrintable(log));
        // The deadline ended the fetch, and nothing else did.
        QVERIFY2(
            log.contains("ProcessLauncher::prepareApplUpdater: HTTP access failed: no complete answer within 500 ms"),
            qPrintable(log));
        QVERIFY2(log.contains("Contents is read from offline file: URL[" + url + "]"), qPrintable(log));
    }
};

QTEST_GUILESS_MAIN(TestLauncherUpdate)
#include "tst_launcherupdate.moc"
