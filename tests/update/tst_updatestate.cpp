#include "applinfo.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testlog.h"

#include <QTranslator>

#include <memory>

static QString webEvent(bool news, bool howto)
{
    return QStringLiteral("web news=%1 howto=%2").arg(news).arg(howto);
}

// What a refresh tells the screen, in order.
class RefreshRecorder : public QObject
{
    Q_OBJECT

public:
    explicit RefreshRecorder(ScreenInfo *screenInfo)
    {
        connect(screenInfo, SIGNAL(signalRefreshButtonClicked()), this, SLOT(refreshButtonClicked()));
        connect(screenInfo, SIGNAL(signalUptodateWebVersionNoticed(bool, bool)), this,
            SLOT(uptodateWebVersionNoticed(bool, bool)));
    }

    QStringList events;

private slots:
    void refreshButtonClicked() { events.append(QStringLiteral("refresh")); }
    void uptodateWebVersionNoticed(bool news, bool howto) { events.append(webEvent(news, howto)); }
};

// The update catalogue as start-up and the refresh get it, from the server,
// from the offline copy or not at all, and what the launcher answers from it.
class TestUpdateState : public QObject
{
    Q_OBJECT

public:
    TestUpdateState(TestProfile *profile, ProcessLauncher *launcher)
        : m_profile(profile)
        , m_launcher(launcher)
        , m_log(profile->logFile(QCoreApplication::applicationName()))
    { }

private:
    TestProfile *m_profile;
    ProcessLauncher *m_launcher;
    TestLog m_log;
    std::unique_ptr<HttpFixture> m_server;
    QTranslator m_translator;
    QString m_catalogueUrl;
    const QString m_cataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");

    QString copyPath() const { return m_profile->launcherFolder(false) + "/00000001.html"; }
    void serve(const QByteArray &catalogue) { m_server->setAnswer(m_cataloguePath, HttpFixture::ok(catalogue)); }
    bool start() { return m_launcher->initialize(m_translator); }
    QStringList installable() const { return CatalogueBuilder::versions(m_launcher->getInstallableVersions()); }
    QString logLine(const QString &message) const
    {
        return "ProcessLauncher::prepareApplUpdater: " + message.arg(m_catalogueUrl);
    }
    void expectLog(const QStringList &lines) const
    {
        const QStringList logged = m_log.newLines();
        QVERIFY2(TestLog::inOrder(logged, lines), qPrintable(logged.join('\n')));
    }

private slots:
    // Every case is a first run against a loopback server of its own, with
    // the launcher 1.0.0.0 installed.
    void init()
    {
        qunsetenv("HTTP_PROXY");
        qunsetenv("HTTP_PROXY_CREDENTIALS");
        qputenv("ZANMIR_PUBLIC_HOST", "localhost");
        QDir(m_profile->dataHome() + "/Vorlix").removeRecursively();
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        m_server = std::make_unique<HttpFixture>();
        QVERIFY(m_server->listen());
        qputenv("ZANMIR_SERVER_BASE", m_server->url(QString()).toUtf8());
        m_catalogueUrl = m_server->url(m_cataloguePath);
        m_log.mark();
    }

    void catalogueSource_data()
    {
        QTest::addColumn<bool>("copy"); // an earlier start left one
        QTest::addColumn<bool>("serverUp");
        QTest::newRow("server answers") << false << true;
        QTest::newRow("server down, copy") << true << false;
        QTest::newRow("server down, no copy") << false << false;
    }

    void catalogueSource()
    {
        QFETCH(bool, copy);
        QFETCH(bool, serverUp);
        const QByteArray catalogue = CatalogueBuilder().entries({ "editor 2.1.0.5", "launcher 1.1.0.0" }).bytes();
        serve(catalogue);
        if (copy)
            QVERIFY(start());
        if (!serverUp)
            m_server->close();
        m_log.mark();

        QVERIFY(start());
        QCOMPARE(m_launcher->getExitStatus(), 0);
        QStringList expected { logLine(serverUp ? "ApplUpdateInfo is completely loaded from server: [%1]"
                                                : "Failed to load ApplUpdateInfo from server: [%1]"),
            logLine("ApplUpdateInfo set.") };
        if (copy)
            expected.insert(1,
                "OfflineFile::restoreOfflineFile: Contents is read from offline file: URL[" + m_catalogueUrl + "] file["
                    + copyPath() + "]");
        expectLog(expected);
        const bool available = copy || serverUp;
        QCOMPARE(m_launcher->hasLauncherUpdate(), available);
        QCOMPARE(installable(), available ? QStringList { "2.1.0.5" } : QStringList());
        QCOMPARE(TestFiles::read(copyPath()), available ? catalogue : QByteArray());
    }

    void badCatalogueKeepsThePrevious()
    {
        serve(CatalogueBuilder().entries({ "launcher 1.1.0.0", "editor 2.2.0.1" }).bytes());
        QVERIFY(start());
        serve("<html><body>Maintenance</body></html>");
        m_log.mark();

        RefreshRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        QVERIFY(recorder.events.isEmpty());
        QVERIFY(!m_launcher->prepareApplUpdater());
        const QString last = m_log.newLines().last();
        QVERIFY2(last.startsWith(logLine("Failed to parse JSON document: code[")), qPrintable(last));
        QVERIFY(m_launcher->hasLauncherUpdate());
        QCOMPARE(installable(), QStringList { "2.2.0.1" });
    }

    // Stamps stored by an earlier start against those of the catalogue.
    void webPageBadges()
    {
        serve(CatalogueBuilder()
                  .web("newsweb", "1.0.0.0", "/Zanmir/News/2026.htm")
                  .web("howtoweb", "1.0.0.0", "/help/support.htm")
                  .bytes());
        QVERIFY(start());
        RefreshRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        m_launcher->saveWebVersion("newsweb");
        m_launcher->refreshUpdateState();
        QCOMPARE(recorder.events, (QStringList { "refresh", webEvent(1, 1), "refresh", webEvent(0, 1) }));

        const QJsonValue stored = TestFiles::readObject(m_profile->managerFile()).value("1.0.0")["web_versions"];
        QCOMPARE(stored["newsweb"].toObject(),
            (QJsonObject { { "type", "newsweb" }, { "version", "1.0.0.0" }, { "url", "/Zanmir/News/2026.htm" } }));
        QCOMPARE(m_launcher->getWebUrl("newsweb"), m_server->url("/Zanmir/News/2026.htm?t=pe1"));

        // Read back at the next start; fewer numbers make an older stamp.
        m_launcher->getApplInfo()->saveWebVersion("howtoweb", WebUpdateInfo("howtoweb", "1.0.0", "/old.htm"));
        QVERIFY(start());
        RefreshRecorder afterRestart(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        QCOMPARE(afterRestart.events, (QStringList { "refresh", webEvent(0, 1) }));
    }

    void installableVersions()
    {
        m_profile->registerVersion("E0", "editor", "release", "2.1.0.7");
        // Only installed releases hide a version.
        m_profile->registerVersion("E1", "editor", "inhouse", "3.0.0.0");
        serve(CatalogueBuilder()
                  .entries({ "editor 2.1.0.7", "editor 2.2.0.1", "editor 4", "editor 2.1.0.5", "editor 3.0.0.0",
                      "launcher 1.0.0.0" })
                  .bytes());
        QVERIFY(start());
        QVERIFY(!m_launcher->hasLauncherUpdate()); // the one on offer is the one installed
        // 2.1.0.7 stands for its series and is installed, so that series offers nothing.
        QCOMPARE(installable(), (QStringList { "3.0.0.0", "2.2.0.1" }));
        QVERIFY(m_launcher->setShowAllVersions(true));
        QCOMPARE(installable(), (QStringList { "4", "3.0.0.0", "2.2.0.1", "2.1.0.5" }));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestUpdateState)
#include "tst_updatestate.moc"
