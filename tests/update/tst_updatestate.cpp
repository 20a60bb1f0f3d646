#include "applinfo.h"
#include "applupdater.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testlog.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>

#include <memory>

using Entries = QList<QPair<int, QString>>;

namespace {

const QString kCataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");
const QString kLoadedLine
    = QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: [%1]");
const QString kFailedLine
    = QStringLiteral("ProcessLauncher::prepareApplUpdater: Failed to load ApplUpdateInfo from server: [%1]");
const QString kSetLine = QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo set.");

QStringList versions(const QList<ApplUpdateInfo> &updates)
{
    QStringList result;
    for (const ApplUpdateInfo &update : updates)
        result.append(update.getVersion());
    return result;
}

// "launcher 1.1.0.0", "editor 2.0.0.0" -> catalogue entries in that order
CatalogueBuilder catalogueOf(const QStringList &entries)
{
    CatalogueBuilder catalogue;
    for (const QString &entry : entries) {
        const QStringList parts = entry.split(QLatin1Char(' '));
        if (parts.at(0) == QLatin1String("launcher"))
            catalogue.launcher(parts.at(1));
        else
            catalogue.editor(parts.at(1));
    }
    return catalogue;
}

QString flag(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

QString webEvent(bool news, bool howto)
{
    return QStringLiteral("web news=%1 howto=%2").arg(flag(news), flag(howto));
}

} // namespace

// Everything the signal hub sends, in order, with its arguments.
class ScreenSignalRecorder : public QObject
{
    Q_OBJECT

public:
    explicit ScreenSignalRecorder(ScreenInfo *screenInfo)
    {
        connect(screenInfo, SIGNAL(signalRefreshButtonClicked()), this, SLOT(refreshButtonClicked()));
        connect(screenInfo, SIGNAL(signalInstallationConfirmed()), this, SLOT(installationConfirmed()));
        connect(screenInfo, SIGNAL(signalUptodateVersionNoticed(bool, bool)), this,
            SLOT(uptodateVersionNoticed(bool, bool)));
        connect(screenInfo, SIGNAL(signalUptodateWebVersionNoticed(bool, bool)), this,
            SLOT(uptodateWebVersionNoticed(bool, bool)));
    }

    QStringList events;

private slots:
    void refreshButtonClicked() { events.append(QStringLiteral("refresh")); }
    void installationConfirmed() { events.append(QStringLiteral("installation")); }
    void uptodateVersionNoticed(bool updating, bool recent)
    {
        events.append(QStringLiteral("version updating=%1 recent=%2").arg(flag(updating), flag(recent)));
    }
    void uptodateWebVersionNoticed(bool news, bool howto) { events.append(webEvent(news, howto)); }
};

// The update catalogue as start-up and the refresh get it: from the server,
// from the offline copy, or not at all, and what the launcher answers from it.
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
    // No catalogue loads for the C locale of the test environment, and none
    // would change a text that these cases look at.
    QTranslator m_translator;

    // Kept, since a closed server has no port any more.
    QString m_serverBase;

    QString catalogueUrl() const { return m_serverBase + kCataloguePath; }
    QString folder() const { return m_profile->launcherFolder(false); }
    QString pagePath(int serialNo) const
    {
        return folder() + QStringLiteral("/%1.html").arg(serialNo, 8, 10, QLatin1Char('0'));
    }
    QString serverBase() const { return m_serverBase; }
    ApplUpdater *updater() const { return m_launcher->getApplUpdater(); }

    void serve(const QByteArray &catalogue) { m_server->setAnswer(kCataloguePath, HttpFixture::ok(catalogue)); }

    bool start() { return m_launcher->initialize(m_translator); }

    Entries indexEntries() const
    {
        Entries entries;
        const QJsonArray array
            = TestFiles::readObject(folder() + QStringLiteral("/OfflineFiles.json")).value("offlinefiles").toArray();
        for (const QJsonValue &value : array)
            entries.append({ value.toObject().value("serial_no").toInt(-1), value.toObject().value("url").toString() });
        return entries;
    }

    QJsonObject storedWebVersions() const
    {
        return TestFiles::readObject(m_profile->managerFile())
            .value("1.0.0")
            .toObject()
            .value("web_versions")
            .toObject();
    }

    QString logText() const { return m_log.newLines().join(QLatin1Char('\n')); }

private slots:
    void initTestCase()
    {
        // No proxy of the machine may take part, and no traffic may leave it.
        qunsetenv("HTTP_PROXY");
        qunsetenv("HTTP_PROXY_CREDENTIALS");
        qputenv("ZANMIR_PUBLIC_HOST", "localhost");
    }

    // Every case is a first run against a server of its own, with the
    // launcher 1.0.0.0 installed.
    void init()
    {
        QDir(m_profile->dataHome() + QStringLiteral("/Vorlix")).removeRecursively();
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_profile->registerVersion(
            QStringLiteral("L0"), QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.0.0.0"));
        m_server = std::make_unique<HttpFixture>();
        QVERIFY(m_server->listen());
        m_serverBase = m_server->url(QString());
        qputenv("ZANMIR_SERVER_BASE", m_serverBase.toUtf8());
        m_log.mark();
    }

    void cleanup() { m_server.reset(); }

    void catalogueFromServerLeavesCopy()
    {
        const CatalogueBuilder catalogue = CatalogueBuilder()
                                               .launcher(QStringLiteral("1.0.0.0"))
                                               .editor(QStringLiteral("2.2.0.1"))
                                               .editor(QStringLiteral("2.1.0.5"));
        serve(catalogue.bytes());
        QVERIFY(start());
        QCOMPARE(m_launcher->getExitStatus(), 0);
        const QStringList lines = m_log.newLines();
        // Fetching the catalogue is the last step of start-up; its copy is
        // the first page of the store.
        const QStringList expected { kLoadedLine.arg(catalogueUrl()),
            QStringLiteral("OfflineFile::createOfflineFileInfo: OfflineFileInfo is created: serial_no=1"),
            QStringLiteral("OfflineFile::createOfflineFileInfo: OfflineFileInfo is updated: %1")
                .arg(folder() + QStringLiteral("/OfflineFiles.json")),
            kSetLine };
        QVERIFY2(lines.mid(lines.size() - expected.size()) == expected, qPrintable(lines.join(QLatin1Char('\n'))));
        QCOMPARE(m_server->requestCount(kCataloguePath), 1);

        QCOMPARE(TestFiles::read(pagePath(1)), catalogue.bytes());
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, catalogueUrl() } }));
        QVERIFY(!m_launcher->hasLauncherUpdate());
        QCOMPARE(versions(m_launcher->getInstallableVersions()), (QStringList { "2.2.0.1", "2.1.0.5" }));

        // The next start takes the server's new text and replaces the copy
        // under the same number.
        const CatalogueBuilder newer = CatalogueBuilder().launcher(QStringLiteral("1.0.0.1"));
        serve(newer.bytes());
        m_log.mark();
        QVERIFY(start());
        QVERIFY2(
            TestLog::inOrder(m_log.newLines(), { kLoadedLine.arg(catalogueUrl()), kSetLine }), qPrintable(logText()));
        QCOMPARE(TestFiles::read(pagePath(1)), newer.bytes());
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, catalogueUrl() } }));
        QVERIFY(m_launcher->hasLauncherUpdate());
        QVERIFY(m_launcher->getInstallableVersions().isEmpty());
    }

    void serverFailureUsesCopy_data()
    {
        QTest::addColumn<QString>("failure");
        QTest::newRow("not found") << QStringLiteral("404");
        QTest::newRow("server error") << QStringLiteral("500");
        QTest::newRow("connection dropped") << QStringLiteral("dropped");
        QTest::newRow("nothing listening") << QStringLiteral("closed");
    }

    void serverFailureUsesCopy()
    {
        QFETCH(QString, failure);
        const CatalogueBuilder catalogue
            = CatalogueBuilder().editor(QStringLiteral("2.1.0.5")).launcher(QStringLiteral("1.1.0.0"));
        serve(catalogue.bytes());
        QVERIFY(start());

        if (failure == QLatin1String("404"))
            m_server->setAnswer(kCataloguePath, HttpFixture::status(404, "Not Found", "gone"));
        else if (failure == QLatin1String("500"))
            m_server->setAnswer(kCataloguePath, HttpFixture::status(500, "Internal Server Error", "{}"));
        else if (failure == QLatin1String("dropped"))
            m_server->setAnswer(kCataloguePath, HttpFixture::dropped());
        else
            m_server->close();
        m_log.mark();

        QVERIFY(start());
        QCOMPARE(m_launcher->getExitStatus(), 0);
        QVERIFY2(TestLog::inOrder(m_log.newLines(),
                     { kFailedLine.arg(catalogueUrl()),
                         QStringLiteral(
                             "OfflineFile::restoreOfflineFile: Contents is read from offline file: URL[%1] file[%2]")
                             .arg(catalogueUrl(), pagePath(1)),
                         kSetLine }),
            qPrintable(logText()));
        // The copy is what the launcher now answers from, and stays as it was.
        QVERIFY(m_launcher->hasLauncherUpdate());
        QCOMPARE(updater()->findLatestFor(QStringLiteral("launcher")).getVersion(), QStringLiteral("1.1.0.0"));
        QCOMPARE(versions(m_launcher->getInstallableVersions()), QStringList { "2.1.0.5" });
        QCOMPARE(TestFiles::read(pagePath(1)), catalogue.bytes());
    }

    void noServerNoCopyGivesEmptyCatalogue()
    {
        m_server->close();
        QVERIFY(start());
        QCOMPARE(m_launcher->getExitStatus(), 0);
        QVERIFY2(TestLog::inOrder(m_log.newLines(),
                     { kFailedLine.arg(catalogueUrl()),
                         QStringLiteral("OfflineFile::restoreOfflineFile: Failed to retrieve OfflineFileInfo: URL[%1]")
                             .arg(catalogueUrl()),
                         kSetLine }),
            qPrintable(logText()));
        QVERIFY(!m_launcher->hasLauncherUpdate());
        QVERIFY(m_launcher->getInstallableVersions().isEmpty());
        QCOMPARE(indexEntries(), (Entries { { 0, QString() } }));
        QVERIFY(!QFile::exists(pagePath(1)));

        // Without page stamps nothing is announced as new.
        ScreenSignalRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        QCOMPARE(recorder.events, (QStringList { "refresh", webEvent(false, false) }));
    }

    void badCatalogue_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("keepsPrevious");

        const QByteArray good = CatalogueBuilder().launcher(QStringLiteral("1.0.0.0")).bytes();
        QTest::newRow("not JSON") << QByteArray("{ not json") << true;
        QTest::newRow("cut short") << good.left(good.size() / 2) << true;
        QTest::newRow("HTML error page") << QByteArray("<html><body>Maintenance</body></html>") << true;
        QJsonObject other = QJsonDocument::fromJson(good).object();
        other.insert(QStringLiteral("2.0.0"), other.take(QStringLiteral("1.0.0")));
        QTest::newRow("no 1.0.0") << QJsonDocument(other).toJson() << false;
        QTest::newRow("1.0.0 empty") << QByteArray("{\"1.0.0\": {}}") << false;
        QTest::newRow("array") << QByteArray("[{\"1.0.0\": {}}]") << false;
    }

    void badCatalogue()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, keepsPrevious);

        serve(CatalogueBuilder().launcher(QStringLiteral("1.1.0.0")).editor(QStringLiteral("2.2.0.1")).bytes());
        QVERIFY(start());
        QVERIFY(m_launcher->hasLauncherUpdate());

        // The refresh reads the bad text, announces nothing and logs why.
        const QString previousError = updater()->getErrorText();
        serve(text);
        m_log.mark();
        ScreenSignalRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        QVERIFY(recorder.events.isEmpty());
        QCOMPARE(m_launcher->prepareApplUpdater(), false);

        // Without the schema object the updater adds no words of its own.
        QString reason = previousError;
        if (keepsPrevious) {
            QJsonParseError error;
            QJsonDocument::fromJson(text, &error);
            reason = QStringLiteral("Failed to parse JSON document: code[%1] message[%2]")
                         .arg(static_cast<int>(error.error))
                         .arg(error.errorString());
        }
        QCOMPARE(m_log.newLines().last(), QStringLiteral("ProcessLauncher::prepareApplUpdater: %1").arg(reason));

        // Text that does not parse leaves the previous catalogue in use; a
        // document without the schema object empties it.
        QCOMPARE(m_launcher->hasLauncherUpdate(), keepsPrevious);
        QCOMPARE(
            versions(m_launcher->getInstallableVersions()), keepsPrevious ? QStringList { "2.2.0.1" } : QStringList());

        // The text came from the server in good order, so it is the copy now:
        // a new start fails, with the server or without it.
        QCOMPARE(TestFiles::read(pagePath(1)), text);
        QVERIFY(!start());
        QCOMPARE(m_launcher->getExitStatus(), 1);
        m_server->close();
        m_log.mark();
        QVERIFY(!start());
        QCOMPARE(m_launcher->getExitStatus(), 1);
        QVERIFY2(m_log.newLines().contains(kFailedLine.arg(catalogueUrl())), qPrintable(logText()));
    }

    void incompleteEntriesAreIgnored()
    {
        const QJsonArray withoutFileName { QJsonObject {
            { "target", "win64" }, { "url", "/Zanmir/Installer/2.2.0.1/setup.exe" } } };
        serve(
            CatalogueBuilder()
                .update(QStringLiteral("launcher"), QString(), QStringLiteral("9.0.0.0"))
                .update(QString(), QStringLiteral("release"), QStringLiteral("2.3.0.0"))
                .update(QStringLiteral("editor"), QStringLiteral("release"), QString())
                .update(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.2.0.1"), withoutFileName)
                .editor(QStringLiteral("2.1.0.5"))
                .bytes());
        QVERIFY(start());
        QCOMPARE(m_log.newLines().last(), kSetLine);

        // A launcher entry without its name is no update.
        QVERIFY(!m_launcher->hasLauncherUpdate());
        m_launcher->setShowAllVersions(true);
        QCOMPARE(versions(m_launcher->getInstallableVersions()), (QStringList { "2.2.0.1", "2.1.0.5" }));
        m_launcher->setShowAllVersions(false);

        // An entry whose only target lacks a field is on offer, with no installer.
        QString name, display, url, fileName;
        QVERIFY(!updater()->findDownloadInfo(QStringLiteral("2.2.0.1"), name, display, url, fileName));
        QCOMPARE(updater()->getErrorText(),
            QStringLiteral("Download failed: unknown URL or file name: editor 2.2.0.1 (win64)"));
        QVERIFY(updater()->findDownloadInfo(QStringLiteral("2.1.0.5"), name, display, url, fileName));
        QCOMPARE(fileName, QStringLiteral("ZanmirSetup_2.1.0.5.exe"));
    }

    void launcherUpdate_data()
    {
        QTest::addColumn<QStringList>("catalogue");
        QTest::addColumn<QString>("latest");

        // The launcher 1.0.0.0 is installed.
        QTest::newRow("newer") << QStringList { "launcher 1.0.0.1" } << QStringLiteral("1.0.0.1");
        QTest::newRow("same") << QStringList { "launcher 1.0.0.0" } << QString();
        QTest::newRow("same with fewer numbers") << QStringList { "launcher 1.0" } << QString();
        QTest::newRow("older") << QStringList { "launcher 0.9.9.9" } << QString();
        QTest::newRow("editors only") << QStringList { "editor 9.0.0.0" } << QString();
        QTest::newRow("one number") << QStringList { "launcher 2" } << QStringLiteral("2");
        QTest::newRow("first newer entry wins")
            << QStringList { "launcher 0.9.0.0", "editor 9.0.0.0", "launcher 1.1.0.0", "launcher 1.2.0.0" }
            << QStringLiteral("1.1.0.0");
    }

    void launcherUpdate()
    {
        QFETCH(QStringList, catalogue);
        QFETCH(QString, latest);
        serve(catalogueOf(catalogue).bytes());
        QVERIFY(start());
        QCOMPARE(m_launcher->hasLauncherUpdate(), !latest.isEmpty());
        QCOMPARE(updater()->findLatestFor(QStringLiteral("launcher")).getVersion(), latest);
    }

    void webVersionNotice_data()
    {
        // Stamps stored from an earlier run, and those of the catalogue; an
        // empty text is no stamp.
        QTest::addColumn<QString>("storedNews");
        QTest::addColumn<QString>("storedHowto");
        QTest::addColumn<QString>("catalogueNews");
        QTest::addColumn<QString>("catalogueHowto");
        QTest::addColumn<bool>("newsBadge");
        QTest::addColumn<bool>("howtoBadge");

        QTest::newRow("fresh profile") << QString() << QString() << "1.0.0.0"
                                       << "1.0.0.0" << true << true;
        QTest::newRow("no stamps in catalogue") << QString() << QString() << QString() << QString() << false << false;
        QTest::newRow("stored equal") << "1.0.0.0"
                                      << "2.0.0.0"
                                      << "1.0.0.0"
                                      << "2.0.0.0" << false << false;
        QTest::newRow("stored with fewer numbers") << "1.0.0" << QString() << "1.0.0.0" << QString() << true << false;
        QTest::newRow("stored with more numbers") << "1.0.0.0" << QString() << "1.0.0" << QString() << false << false;
        QTest::newRow("numbers, not text") << "1.9.0.0"
                                           << "1.10.0.0"
                                           << "1.10.0.0"
                                           << "1.9.0.0" << true << false;
    }

    void webVersionNotice()
    {
        QFETCH(QString, storedNews);
        QFETCH(QString, storedHowto);
        QFETCH(QString, catalogueNews);
        QFETCH(QString, catalogueHowto);
        QFETCH(bool, newsBadge);
        QFETCH(bool, howtoBadge);

        CatalogueBuilder catalogue;
        if (!catalogueNews.isEmpty())
            catalogue.web(QStringLiteral("newsweb"), catalogueNews, QStringLiteral("/news.htm"));
        if (!catalogueHowto.isEmpty())
            catalogue.web(QStringLiteral("howtoweb"), catalogueHowto, QStringLiteral("/support.htm"));
        serve(catalogue.bytes());
        QVERIFY(start());
        if (!storedNews.isEmpty()) {
            m_launcher->getApplInfo()->saveWebVersion(
                QStringLiteral("newsweb"), WebUpdateInfo(QStringLiteral("newsweb"), storedNews, "/old-news.htm"));
        }
        if (!storedHowto.isEmpty()) {
            m_launcher->getApplInfo()->saveWebVersion(
                QStringLiteral("howtoweb"), WebUpdateInfo(QStringLiteral("howtoweb"), storedHowto, "/old-help.htm"));
        }

        // A later start reads the stamps back from the manager file.
        QVERIFY(start());
        const int requests = m_server->requestCount(kCataloguePath);
        ScreenSignalRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        QCOMPARE(recorder.events, (QStringList { "refresh", webEvent(newsBadge, howtoBadge) }));
        QCOMPARE(m_server->requestCount(kCataloguePath), requests + 1);
    }

    void openedPageLosesItsBadge()
    {
        CatalogueBuilder catalogue;
        catalogue.web(QStringLiteral("newsweb"), QStringLiteral("1.0.0.0"), QStringLiteral("/Zanmir/News/2026.htm"))
            .web(QStringLiteral("howtoweb"), QStringLiteral("3.0.0.0"),
                QStringLiteral("http://127.0.0.1:9/help/support.htm"));
        serve(catalogue.bytes());
        QVERIFY(start());
        QString locale;
        QVERIFY(m_launcher->getLocale(locale));
        QCOMPARE(m_launcher->getWebUrl(QStringLiteral("newsweb")),
            serverBase() + QStringLiteral("/Zanmir/Launcher/%1/NewsWeb/news.htm?t=pe1").arg(locale));

        ScreenSignalRecorder recorder(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        m_launcher->saveWebVersion(QStringLiteral("newsweb"));
        QCOMPARE(storedWebVersions().value("newsweb").toObject(),
            (QJsonObject { { "type", "newsweb" }, { "version", "1.0.0.0" }, { "url", "/Zanmir/News/2026.htm" } }));
        QCOMPARE(
            storedWebVersions().value("howtoweb").toObject().value("version").toString(), QStringLiteral("0.0.0.0"));
        // The news stamp decides for both pages, and no help stamp has a url yet.
        QCOMPARE(m_launcher->getWebUrl(QStringLiteral("newsweb")),
            serverBase() + QStringLiteral("/Zanmir/News/2026.htm?t=pe1"));
        QCOMPARE(m_launcher->getWebUrl(QStringLiteral("howtoweb")), serverBase() + QStringLiteral("?t=pe1"));

        m_launcher->refreshUpdateState();
        m_launcher->saveWebVersion(QStringLiteral("howtoweb"));
        QCOMPARE(m_launcher->getWebUrl(QStringLiteral("howtoweb")),
            QStringLiteral("http://127.0.0.1:9/help/support.htm?t=pe1"));
        m_launcher->refreshUpdateState();
        QCOMPARE(recorder.events,
            (QStringList { "refresh", webEvent(true, true), "refresh", webEvent(false, true), "refresh",
                webEvent(false, false) }));

        // Stamps hold across starts; a new stamp on the server brings the
        // badge back at the next refresh.
        const QByteArray before = TestFiles::read(m_profile->managerFile());
        m_launcher->saveWebVersion(QStringLiteral("footprintweb"));
        QCOMPARE(TestFiles::read(m_profile->managerFile()), before);
        QVERIFY(start());
        ScreenSignalRecorder afterRestart(m_launcher->getScreenInfo());
        m_launcher->refreshUpdateState();
        serve(CatalogueBuilder()
                  .web(QStringLiteral("newsweb"), QStringLiteral("1.0.0.1"), QStringLiteral("/Zanmir/News/2027.htm"))
                  .web(QStringLiteral("howtoweb"), QStringLiteral("3.0.0.0"), QStringLiteral("/help.htm"))
                  .bytes());
        m_launcher->refreshUpdateState();
        QCOMPARE(
            afterRestart.events, (QStringList { "refresh", webEvent(false, false), "refresh", webEvent(true, false) }));
    }

    void installableVersions_data()
    {
        QTest::addColumn<bool>("showAll");
        QTest::addColumn<QStringList>("expected");
        // One per series, the first in the catalogue: 2.1.0.7 stands for its
        // series and is installed, so that series offers nothing.
        QTest::newRow("one per series") << false << QStringList { "3.0.0.0", "2.2.0.1" };
        QTest::newRow("show all") << true << QStringList { "4", "3.0.0.0", "2.2.0.1", "2.1.0.5" };
    }

    void installableVersions()
    {
        QFETCH(bool, showAll);
        QFETCH(QStringList, expected);
        m_profile->registerVersion(
            QStringLiteral("E0"), QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.7"));
        // Only installed releases hide a version.
        m_profile->registerVersion(
            QStringLiteral("E1"), QStringLiteral("editor"), QStringLiteral("inhouse"), QStringLiteral("3.0.0.0"));
        serve(CatalogueBuilder()
                  .editor(QStringLiteral("2.1.0.7"))
                  .editor(QStringLiteral("2.2.0.1"))
                  .editor(QStringLiteral("4"))
                  .editor(QStringLiteral("2.1.0.5"))
                  .editor(QStringLiteral("3.0.0.0"))
                  .launcher(QStringLiteral("1.0.0.0"))
                  .bytes());
        QVERIFY(start());
        QVERIFY(m_launcher->setShowAllVersions(showAll));
        QCOMPARE(versions(m_launcher->getInstallableVersions()), expected);
        m_launcher->setShowAllVersions(false);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestUpdateState)
#include "tst_updatestate.moc"
