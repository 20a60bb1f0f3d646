#include "applinfo.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"
#include "testfiles.h"
#include "testlog.h"

// The update catalogue from the server, the offline copy or nowhere, and what the launcher answers from it.
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
    const QString m_cataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");

    void serve(const QByteArray &catalogue) { m_server.setAnswer(m_cataloguePath, HttpFixture::ok(catalogue)); }
    bool start() { return m_launcher->initialize(m_translator); }
    QStringList installable() const { return CatalogueBuilder::versions(m_launcher->getInstallableVersions()); }

private slots:
    // Each case is a first run against a loopback server, with the launcher 1.0.0.0 installed.
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
    }
    void init() { QDir(m_profile->dataHome() + "/Vorlix").removeRecursively(); }

    void catalogueSource_data()
    {
        QTest::addColumn<bool>("copy"); // an earlier start left one
        QTest::addColumn<bool>("serverUp");
        QTest::addColumn<QString>("logged");
        QTest::addColumn<bool>("catalogue"); // one is in use afterwards
        QTest::newRow("server answers") << false << true << "ApplUpdateInfo is completely loaded from server" << true;
        QTest::newRow("server down, copy") << true << false << "Failed to load ApplUpdateInfo from server" << true;
        QTest::newRow("server down, no copy") << false << false << "Failed to load ApplUpdateInfo from server" << false;
    }

    void catalogueSource()
    {
        QFETCH(bool, copy);
        QFETCH(bool, serverUp);
        QFETCH(QString, logged);
        QFETCH(bool, catalogue);
        const QByteArray text = CatalogueBuilder().entries({ "launcher 1.1.0.0" }).bytes();
        serve(text);
        QVERIFY(!copy || start());
        if (!serverUp)
            m_server.setAnswer(m_cataloguePath, HttpFixture::status(503, "Service Unavailable", QByteArray()));
        m_log.mark();
        QVERIFY(start());
        QVERIFY(m_log.newLines().contains(
            QString("ProcessLauncher::prepareApplUpdater: %1: [%2]").arg(logged, m_server.url(m_cataloguePath))));
        QCOMPARE(m_launcher->hasLauncherUpdate(), catalogue);
        QCOMPARE(TestFiles::read(m_profile->launcherFolder(false) + "/00000001.html"), catalogue ? text : QByteArray());
    }

    void catalogueAnswers()
    {
        m_profile->registerVersion("E0", "editor", "release", "2.1.0.7");
        serve(
            R"({"1.0.0": {"app_versions": {"updates": [{"appl_type": "editor", "appl_name": "release", "version": "2.1.0.7"},
            {"appl_type": "editor", "appl_name": "release", "version": "2.2.0.1"}, {"appl_type": "editor", "appl_name": "release",
            "version": "2.1.0.5"}, {"appl_type": "launcher", "appl_name": "release", "version": "1.0.0.0"}]}, "web_versions": [
            {"type": "newsweb", "version": "1.0.0.0", "url": "/news.htm"}, {"type": "howtoweb", "version": "1.0.0.0", "url": "/a.htm"}]}})");
        QVERIFY(start());
        QVERIFY(!m_launcher->hasLauncherUpdate()); // the one on offer is the one installed
        QCOMPARE(installable(), QStringList { "2.2.0.1" });
        QVERIFY(m_launcher->setShowAllVersions(true));
        QCOMPARE(installable(), (QStringList { "2.2.0.1", "2.1.0.5" }));

        // Web stamps: none stored counts as 0.0.0.0, and fewer numbers make an older stamp.
        connect(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()), SLOT(refreshed()));
        connect(m_launcher->getScreenInfo(), SIGNAL(signalUptodateWebVersionNoticed(bool, bool)),
            SLOT(noticed(bool, bool)));
        m_launcher->refreshUpdateState();
        m_launcher->saveWebVersion("newsweb");
        m_launcher->getApplInfo()->saveWebVersion("howtoweb", WebUpdateInfo("howtoweb", "1.0.0", "/old.htm"));
        m_launcher->refreshUpdateState();
        QCOMPARE(m_events, (QStringList { "refresh", "news=1 howto=1", "refresh", "news=0 howto=1" }));
        const QJsonObject state = TestFiles::readObject(m_profile->managerFile()).value("1.0.0").toObject();
        QCOMPARE(state["web_versions"]["newsweb"]["version"].toString(), QString("1.0.0.0"));
        QCOMPARE(m_launcher->getWebUrl("newsweb"), m_server.url("/news.htm?t=pe1"));

        // A catalogue that does not parse leaves the previous one in use, and a refresh does nothing.
        serve("<html><body>Maintenance</body></html>");
        m_log.mark();
        m_events.clear();
        m_launcher->refreshUpdateState();
        QVERIFY(m_events.isEmpty());
        QVERIFY(!m_launcher->prepareApplUpdater());
        QVERIFY(m_log.newLines().last().startsWith(
            "ProcessLauncher::prepareApplUpdater: Failed to parse JSON document: code["));
        QCOMPARE(installable(), (QStringList { "2.2.0.1", "2.1.0.5" }));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestUpdateState)
#include "tst_updatestate.moc"
