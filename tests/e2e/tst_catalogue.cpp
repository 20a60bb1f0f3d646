#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QJsonArray>
#include <QtTest>

// Shows that the launcher update window came up in place of the main window;
// a run that shows the other window never gets to close it and times out.
static const char kUpdateWindow[] = "window Update Zanmir Launcher;close";

// The real launcher against a plain file store serving the update catalogue.
class TestCatalogueStartup : public QObject
{
    Q_OBJECT

    QTemporaryDir m_storeFolder;
    QScopedPointer<FileStoreServer> m_store;
    QScopedPointer<LauncherHarness> m_harness;

    static QString cataloguePath() { return QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json"); }
    void publish(const QByteArray &catalogue)
    {
        const QString file = m_storeFolder.path() + cataloguePath();
        QVERIFY(QDir().mkpath(QFileInfo(file).path()) && TestFiles::write(file, catalogue));
    }
    // Publishes the catalogue and points the launcher at a store serving it.
    void serve(const QByteArray &catalogue)
    {
        publish(catalogue);
        m_store.reset(new FileStoreServer(m_storeFolder.path()));
        QVERIFY2(m_store->start(), qPrintable(m_store->output()));
        m_harness->setServerBase(m_store->url(QString()));
    }
    QString log() const { return m_harness->launcherLog(); }
    // The page file that keeps the catalogue's copy, empty when the store has none.
    QString offlineCopy() const
    {
        const QString folder = m_harness->profile().launcherFolder(false);
        const QString url = m_harness->serverBase() + cataloguePath() + "?t=pe1";
        for (const QJsonValue entry : TestFiles::readObject(folder + "/OfflineFiles.json")["offlinefiles"].toArray()) {
            if (entry["url"].toString() == url)
                return QStringLiteral("%1/%2.html").arg(folder).arg(entry["serial_no"].toInt(), 8, 10, QChar('0'));
        }
        return QString();
    }

private slots:
    void init()
    {
        m_harness.reset(new LauncherHarness);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.1.0.5" }));
        // A start without a project shows the main window; it closes once shown.
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", "window Zanmir Launcher;close");
    }

    void offlineCopyCarriesNextStart()
    {
        const QByteArray catalogue
            = R"({"1.0.0": {"web_versions": [{"type": "newsweb", "version": "1", "url": "/お知らせ.htm"}]}})";
        serve(catalogue);
        const QString url = m_harness->serverBase() + cataloguePath() + "?t=pe1";
        LauncherRun *first = m_harness->run({});
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QVERIFY2(log().contains("ApplUpdateInfo is completely loaded from server: [" + url + "]"), qPrintable(log()));
        QCOMPARE(TestFiles::read(offlineCopy()), catalogue);

        m_store->stop();
        LauncherRun *second = m_harness->run({});
        QVERIFY2(second->exitedWith(0) && second->dialogs().isEmpty(), qPrintable(second->describe()));
        QVERIFY2(log().contains("Contents is read from offline file: URL[" + url + "]"), qPrintable(log()));
    }

    // The project file is not opened while a launcher update is on offer.
    void launcherUpdateComesFirst()
    {
        QVERIFY(SampleProject::writeProject(m_harness->projectPath("first.zmr"), "2.1.0.5"));
        serve(CatalogueBuilder().entries({ "launcher 1.0.0.1" }).bytes());
        // The update window's close button ends the process with no update.
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", kUpdateWindow);
        LauncherRun *run = m_harness->run({ m_harness->projectPath("first.zmr") });
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        QCOMPARE(run->failedSteps(), QStringList());
        QVERIFY(m_harness->editorStarts().isEmpty());
    }

    void captivePortal_data()
    {
        QTest::addColumn<bool>("withCopy"); // left by an earlier start, offering a launcher update
        QTest::newRow("with copy") << true;
        QTest::newRow("without copy") << false;
    }

    // A login page in place of the catalogue never replaces the offline copy,
    // and the start goes on from the copy, or from the empty catalogue.
    void captivePortal()
    {
        QFETCH(bool, withCopy);
        const QByteArray good = CatalogueBuilder().entries({ "launcher 1.0.0.1" }).bytes();
        serve(good);
        // With the copy the update is still on offer: its window shows, not the main window.
        if (withCopy) {
            m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", kUpdateWindow);
            LauncherRun *first = m_harness->run({});
            QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
            QCOMPARE(first->failedSteps(), QStringList());
        }

        publish("<html><body><form action=/login>Sign in to use the Wi-Fi</form></body></html>");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        const QString url = m_harness->serverBase() + cataloguePath() + "?t=pe1";
        QVERIFY2(
            log().contains("ProcessLauncher::prepareApplUpdater: Reply from server is not a catalogue: [" + url + "] "),
            qPrintable(log()));
        QCOMPARE(!offlineCopy().isEmpty(), withCopy);
        if (withCopy)
            QCOMPARE(TestFiles::read(offlineCopy()), good);
        QCOMPARE(run->failedSteps(), QStringList());
    }

    // A server that takes the request and never answers delays an open-with
    // start by the deadline only, and start-up goes on from the offline copy.
    void silentServer()
    {
        HttpFixture server;
        QVERIFY(server.listen());
        const QString path = cataloguePath() + "?t=pe1";
        server.setAnswer(path, HttpFixture::ok(CatalogueBuilder().entries({ "editor 2.2.0.1" }).bytes()));
        m_harness->setServerBase(server.url(QString()));
        m_harness->setEnvironmentValue("ZANMIR_HTTP_TIMEOUT_MS", "500");
        const QString project = m_harness->projectPath("scene.zmr");
        QVERIFY(SampleProject::writeProject(project, "2.1.0.5"));
        // The scripted server answers while this thread waits in an event loop.
        LauncherRun *first = m_harness->start({ project });
        QVERIFY(QTest::qWaitFor([first]() { return !first->isRunning(); }, LauncherHarness::kDefaultTimeout));
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QCOMPARE(server.requestCount(path), 1);

        server.setAnswer(path, HttpFixture::silent());
        QElapsedTimer elapsed;
        elapsed.start();
        LauncherRun *second = m_harness->run({ project }, 10000);
        QVERIFY2(second->exitedWith(0) && second->dialogs().isEmpty(), qPrintable(second->describe()));
        QVERIFY2(elapsed.elapsed() >= 500, qPrintable(QString::number(elapsed.elapsed())));
        QVERIFY(m_harness->waitForEditorStarts(2));
        QCOMPARE(m_harness->editorStarts().at(1).mid(1), QStringList { project });
        const QString url = server.url(path);
        QVERIFY2(log().contains("Failed to load ApplUpdateInfo from server: [" + url + "]"), qPrintable(log()));
        QVERIFY2(log().contains("Contents is read from offline file: URL[" + url + "]"), qPrintable(log()));
    }
};

QTEST_GUILESS_MAIN(TestCatalogueStartup)
#include "tst_catalogue.moc"
