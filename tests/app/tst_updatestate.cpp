#include "applinfo.h"
#include "applupdateinfo.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"
#include "testfiles.h"
#include "testlog.h"

// The update catalogue from the server, the offline copy or nowhere, and what the launcher answers from it.
// The launcher runs with "/test", so it asks the test variant of every server address.
class TestUpdateState : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

public slots:
    void refreshed() { m_events.append(QStringLiteral("refresh")); }
    void noticed(bool news, bool howto) { m_events.append(QStringLiteral("news=%1 howto=%2").arg(news).arg(howto)); }

private:
    HttpFixture m_server;
    QTranslator m_translator;
    QStringList m_events;
    const QString m_cataloguePath = QStringLiteral("/Test/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");

    // Nothing to serve: the server is down.
    void serve(const QByteArray &catalogue)
    {
        m_server.setAnswer(m_cataloguePath,
            catalogue.isEmpty() ? HttpFixture::status(503, "Service Unavailable", QByteArray())
                                : HttpFixture::ok(catalogue));
    }
    QStringList installable() const { return CatalogueBuilder::versions(m_launcher->getInstallableVersions()); }

private slots:
    // The launcher 1.0.0.0 and the editor 2.1.0.7 are installed. The first
    // start finds neither the server nor an earlier copy: an empty catalogue.
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        m_profile->registerVersion("E0", "editor", "release", "2.1.0.7");
        serve(QByteArray());
        QVERIFY(m_launcher->initialize(m_translator));
        QVERIFY(!m_launcher->hasLauncherUpdate());
        QVERIFY(installable().isEmpty());
        connect(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()), SLOT(refreshed()));
        connect(m_launcher->getScreenInfo(), SIGNAL(signalUptodateWebVersionNoticed(bool, bool)),
            SLOT(noticed(bool, bool)));
    }

    void catalogueAnswers()
    {
        // A catalogue without page stamps lights no badge.
        serve(CatalogueBuilder().entries({ "launcher 1.0.0.0" }).bytes());
        m_launcher->refreshUpdateState();
        serve(
            R"({"1.0.0": {"app_versions": {"updates": [{"appl_type": "editor", "appl_name": "release", "version": "2.1.0.7"},
            {"appl_type": "editor", "appl_name": "release", "version": "2.2.0.1"}, {"appl_type": "editor", "appl_name": "release",
            "version": "2.1.0.5"}, {"appl_type": "launcher", "appl_name": "release", "version": "1.0.0.0"}]}, "web_versions": [
            {"type": "newsweb", "version": "1.0.0.0", "url": "/news.htm"}, {"type": "howtoweb", "version": "1.0.0.0", "url": "/a.htm"}]}})");
        QVERIFY(m_launcher->prepareApplUpdater());
        QVERIFY(!m_launcher->hasLauncherUpdate()); // the one on offer is the one installed
        QCOMPARE(installable(), QStringList { "2.2.0.1" });
        QVERIFY(m_launcher->setShowAllVersions(true));
        QCOMPARE(installable(), (QStringList { "2.2.0.1", "2.1.0.5" }));

        // Web stamps: none stored counts as 0.0.0.0, and fewer numbers make an older stamp.
        m_launcher->refreshUpdateState();
        m_launcher->saveWebVersion("newsweb");
        m_launcher->getApplInfo()->saveWebVersion("howtoweb", WebUpdateInfo("howtoweb", "1.0.0", "/old.htm"));
        m_launcher->refreshUpdateState();
        QCOMPARE(m_events,
            (QStringList { "refresh", "news=0 howto=0", "refresh", "news=1 howto=1", "refresh", "news=0 howto=1" }));
        QCOMPARE(m_launcher->getWebUrl("newsweb"), m_server.url("/Test/news.htm?t=pe1"));
    }

    void unreadableReply_data()
    {
        QTest::addColumn<QByteArray>("reply"); // empty: the server is down
        QTest::addColumn<QByteArray>("copy");
        QTest::addColumn<QString>("offered"); // what can be installed after the refresh
        const QByteArray portal = "<html><body>Maintenance</body></html>";
        const QByteArray copy = CatalogueBuilder().entries({ "editor 2.3.0.1" }).bytes();
        const QByteArray truncated = copy.left(copy.size() - 3);
        // clang-format off
        QTest::newRow("portal page, good copy") << portal << copy << "2.3.0.1";
        QTest::newRow("truncated, good copy") << truncated << copy << "2.3.0.1";
        QTest::newRow("portal page, truncated copy") << portal << truncated << "2.2.0.1";
        QTest::newRow("server down, portal copy") << QByteArray() << portal << "2.2.0.1";
        // clang-format on
    }

    // A reply that is no catalogue is not kept; the refresh goes on from the
    // offline copy, and without a usable copy the catalogue in use stays and
    // nothing is announced.
    void unreadableReply()
    {
        QFETCH(QByteArray, reply);
        QFETCH(QByteArray, copy);
        QFETCH(QString, offered);
        serve(CatalogueBuilder().entries({ "editor 2.2.0.1" }).bytes());
        QVERIFY(m_launcher->prepareApplUpdater());
        const QString copyFile = m_profile->launcherFolder(false) + "/00000001.html";
        QVERIFY(TestFiles::write(copyFile, copy));

        serve(reply);
        m_log.mark();
        m_events.clear();
        m_launcher->refreshUpdateState();
        const bool fromCopy = offered == "2.3.0.1";
        QCOMPARE(m_events.size(), fromCopy ? 2 : 0);
        QCOMPARE(m_launcher->prepareApplUpdater(), fromCopy);
        QCOMPARE(installable(), QStringList { offered });
        QCOMPARE(TestFiles::read(copyFile), copy);
        const QString url = m_server.url(m_cataloguePath);
        const QString prefix = "ProcessLauncher::prepareApplUpdater: ";
        const QStringList lines = m_log.newLines();
        QCOMPARE(lines.filter(prefix + "Reply from server is not a catalogue: [" + url + "] ").size(),
            reply.isEmpty() ? 0 : 2);
        QCOMPARE(lines.filter(prefix + "Offline copy is not a catalogue: [" + url + "] ").size(), fromCopy ? 0 : 2);
    }
};

int main(int argc, char *argv[])
{
    return runLauncherTest<TestUpdateState>(argc, argv, "/test");
}
#include "tst_updatestate.moc"
