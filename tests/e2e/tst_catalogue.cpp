#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"
#include "testlog.h"

#include <QTemporaryDir>
#include <QtTest>

#include <memory>

// The real launcher against a plain file store serving the update catalogue.
class TestCatalogueStartup : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_storeFolder;
    std::unique_ptr<FileStoreServer> m_store;
    std::unique_ptr<LauncherHarness> m_harness;
    const QString m_mainWindowLine = QStringLiteral("main: main window is not available in this build");

    // Publishes the catalogue and points the launcher at a store serving it.
    void serve(const QByteArray &catalogue)
    {
        const QString folder = m_storeFolder.path() + "/Zanmir/Launcher/UpdateInfo";
        QVERIFY(QDir().mkpath(folder) && TestFiles::write(folder + "/updateinfo.json", catalogue));
        m_store = std::make_unique<FileStoreServer>(m_storeFolder.path());
        QVERIFY2(m_store->start(), qPrintable(m_store->output()));
        m_harness->setServerBase(m_store->url(QString()));
    }
    QStringList log() const { return TestLog::messages(m_harness->launcherLog()); }
    bool logged(const QStringList &lines) const
    {
        const bool found = TestLog::inOrder(log(), lines);
        if (!found)
            qWarning("%s", qPrintable(log().join('\n')));
        return found;
    }

private slots:
    void init()
    {
        m_harness = std::make_unique<LauncherHarness>();
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.1.0.5" }, "1.0.0.0"));
    }

    void cleanup()
    {
        m_store.reset();
        m_harness.reset();
    }

    void offlineCopyCarriesNextStart()
    {
        // Text beyond ASCII must come back from the copy as it was served.
        const QByteArray catalogue = CatalogueBuilder().web("newsweb", "1.0.0.0", "/Zanmir/お知らせ.htm").bytes();
        serve(catalogue);
        const QString url = m_harness->serverBase() + "/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        LauncherRun *first = m_harness->run({});
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QVERIFY(logged(
            { "ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: [" + url + "]" }));
        const QString copy = m_harness->profile().launcherFolder(false) + "/00000001.html";
        QCOMPARE(TestFiles::read(copy), catalogue);

        m_store->stop();
        LauncherRun *second = m_harness->run({});
        QVERIFY2(second->exitedWith(0) && second->dialogs().isEmpty(), qPrintable(second->describe()));
        QVERIFY(logged({ m_mainWindowLine,
            "ProcessLauncher::prepareApplUpdater: Failed to load ApplUpdateInfo from server: [" + url + "]",
            "OfflineFile::restoreOfflineFile: Contents is read from offline file: URL[" + url + "] file[" + copy + "]",
            m_mainWindowLine }));
        QCOMPARE(TestFiles::read(copy), catalogue);
    }

    void launcherUpdateComesFirst_data()
    {
        QTest::addColumn<QString>("offered");
        QTest::addColumn<bool>("update");
        // The launcher 1.0.0.0 is installed.
        QTest::newRow("newer launcher") << "1.0.0.1" << true;
        QTest::newRow("same launcher") << "1.0.0.0" << false;
    }

    void launcherUpdateComesFirst()
    {
        QFETCH(QString, offered);
        QFETCH(bool, update);
        QVERIFY(SampleProject::writeProject(m_harness->projectPath("first.zmr"), "2.1.0.5"));
        serve(CatalogueBuilder().entries({ "editor 2.1.0.5", "launcher " + offered }).bytes());

        LauncherRun *run = m_harness->run({ "first.zmr" });
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        QCOMPARE(log().contains("main: launcher update window is not available in this build"), update);
        QVERIFY(!log().contains(m_mainWindowLine));
        // The project file is opened only when no launcher update is on offer.
        QCOMPARE(m_harness->waitForEditorStarts(1, update ? 2000 : 10000), !update);
    }

    void unreadableCatalogueWithoutCopy()
    {
        serve("<html>maintenance</html>");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(1) && run->dialogs().size() == 1, qPrintable(run->describe()));
        QCOMPARE(run->dialogs().at(0).text, QStringLiteral("Failed in initialize."));
        // The reason is the last word of the run.
        QVERIFY(log().last().startsWith("ProcessLauncher::prepareApplUpdater: Failed to parse JSON document: code["));
    }
};

QTEST_GUILESS_MAIN(TestCatalogueStartup)
#include "tst_catalogue.moc"
