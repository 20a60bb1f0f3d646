#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QtTest>

// The real launcher against a plain file store serving the update catalogue.
class TestCatalogueStartup : public QObject
{
    Q_OBJECT

    QTemporaryDir m_storeFolder;
    QScopedPointer<FileStoreServer> m_store;
    QScopedPointer<LauncherHarness> m_harness;

    // Publishes the catalogue and points the launcher at a store serving it.
    void serve(const QByteArray &catalogue)
    {
        const QString folder = m_storeFolder.path() + "/Zanmir/Launcher/UpdateInfo";
        QVERIFY(QDir().mkpath(folder) && TestFiles::write(folder + "/updateinfo.json", catalogue));
        m_store.reset(new FileStoreServer(m_storeFolder.path()));
        QVERIFY2(m_store->start(), qPrintable(m_store->output()));
        m_harness->setServerBase(m_store->url(QString()));
    }
    QString log() const { return m_harness->launcherLog(); }

private slots:
    void init()
    {
        m_harness.reset(new LauncherHarness);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.1.0.5" }));
    }

    void offlineCopyCarriesNextStart()
    {
        const QByteArray catalogue
            = R"({"1.0.0": {"web_versions": [{"type": "newsweb", "version": "1", "url": "/お知らせ.htm"}]}})";
        serve(catalogue);
        const QString url = m_harness->serverBase() + "/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        LauncherRun *first = m_harness->run({});
        QVERIFY2(first->exitedWith(0) && first->dialogs().isEmpty(), qPrintable(first->describe()));
        QVERIFY2(log().contains("ApplUpdateInfo is completely loaded from server: [" + url + "]"), qPrintable(log()));
        QCOMPARE(TestFiles::read(m_harness->profile().launcherFolder(false) + "/00000001.html"), catalogue);

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
        LauncherRun *run = m_harness->run({ m_harness->projectPath("first.zmr") });
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        QVERIFY2(log().contains("main: launcher update window is not available in this build"), qPrintable(log()));
        QVERIFY(m_harness->editorStarts().isEmpty());
    }

    void unreadableCatalogueWithoutCopy()
    {
        serve("<html>maintenance</html>");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(1) && run->dialogs().size() == 1, qPrintable(run->describe()));
        QCOMPARE(run->dialogs().at(0).text, QStringLiteral("Failed in initialize."));
    }
};

QTEST_GUILESS_MAIN(TestCatalogueStartup)
#include "tst_catalogue.moc"
