#include "cataloguebuilder.h"
#include "launcherharness.h"
#include "testfiles.h"

#include <QSettings>
#include <QtTest>

#include <functional>

namespace {

const QString kYellow = QStringLiteral(":/icons/appl_update_yellow.png");
const QString kRed = QStringLiteral(":/icons/appl_update_red.png");
const QString kPlain = QStringLiteral(":/icons/appl.png");

} // namespace

static QStringList lines(const QString &path)
{
    return QString::fromUtf8(TestFiles::read(path)).split('\n', Qt::SkipEmptyParts);
}

// The editor management page of the real program, with the sample
// installers served on loopback: installing, updating and uninstalling go
// through the uninstall records to the version rows and the home page's
// tiles, and the menu badge tells what the catalogue offers.
class TestManage : public QObject
{
    Q_OBJECT

    QScopedPointer<LauncherHarness> m_harness;

    QString root() const { return m_harness->profile().root(); }
    QString editorFolder(const QString &version) const
    {
        return root() + "/data/Vorlix/ZanmirEditor/" + version + "-release";
    }

    // A catalogue offering these editor versions, each installer the sample
    // one under its own address, with its digest.
    void publish(const QStringList &versions)
    {
        CatalogueBuilder catalogue;
        for (const QString &version : versions) {
            const QString url = "/Zanmir/Installer/" + version + "/setup.exe";
            const QByteArray digest = m_harness->publishInstaller(url);
            QVERIFY(!digest.isEmpty());
            catalogue.entries({ "editor " + version }).installer("ZanmirSetup_" + version + ".exe", url, digest);
        }
        QVERIFY(m_harness->publishCatalogue(catalogue.bytes()));
    }

    // Installs a version with the sample installer, as if it had been downloaded.
    void install(const QString &version)
    {
        const QString setup = root() + "/ZanmirSetup_" + version + ".exe";
        QVERIFY(QFile::copy(ZANMIR_SAMPLE_INSTALLER, setup));
        LauncherRun *run = m_harness->startProgram(setup, {}, false);
        QVERIFY2(run->waitForFinished(30000) && run->exitedWith(0), qPrintable(run->describe()));
    }

    // The editor versions in the uninstall records, newest first.
    QStringList recordedEditors() const
    {
        QSettings records(root() + "/config/Vorlix/UninstallRecords.ini", QSettings::IniFormat);
        QStringList versions;
        for (const QString &group : records.childGroups()) {
            if (records.value(group + "/AppType").toString() == "editor")
                versions.append(records.value(group + "/AppVersion").toString());
        }
        std::sort(versions.begin(), versions.end(), std::greater<QString>());
        return versions;
    }

    // What the sample installers and uninstallers did, in order.
    QStringList installerRuns() const
    {
        QStringList runs;
        for (const QString &line : lines(m_harness->installerLog())) {
            const QJsonObject record = QJsonDocument::fromJson(line.toUtf8()).object();
            runs.append(record.contains("installed") ? "installed " + record["installed"].toString()
                                                     : "uninstalled " + record["uninstalled"].toString());
        }
        return runs;
    }

private slots:
    void init()
    {
        m_harness.reset(new LauncherHarness);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({}) && m_harness->serveStore());
    }

    // A sample installer held by a test that failed halfway is let go.
    void cleanup() { TestFiles::write(root() + "/go", ""); }

    void flows_data()
    {
        QTest::addColumn<QStringList>("installed"); // by the sample installer, before the start
        QTest::addColumn<QStringList>("offered");
        QTest::addColumn<QString>("outcome"); // of the sample installers the launcher starts
        QTest::addColumn<QString>("steps"); // on the management page
        QTest::addColumn<QStringList>("questions"); // each answered Yes
        QTest::addColumn<QStringList>("runs"); // of the sample installers, in order
        QTest::addColumn<QStringList>("after"); // the versions installed at the end, newest first

        // What the installers did is read from the records: no question at the end.
        // clang-format off
        QTest::newRow("install") << QStringList() << QStringList { "2.3.00", "2.2.02" } << "" << "click editorInstallButton;pick release 2.3.00;window Install editor (2.3.00);click executeButton" << QStringList { "Are you sure to install release ver 2.3.00 ?" } << QStringList { "installed editor 2.3.00" } << QStringList { "2.3.00" };
        // The new version's installer runs first, then the old one's uninstaller.
        QTest::newRow("update") << QStringList { "2.1.05", "2.2.01" } << QStringList { "2.2.02" } << "" << "press VersionDescWidget left;pick Update to recent version;window Update editor (2.2.02);click executeButton" << QStringList { "Are you sure to install release ver 2.2.02 ?" } << QStringList { "installed editor 2.2.02", "uninstalled editor 2.2.01" } << QStringList { "2.2.02", "2.1.05" };
        // Only a change in the records lets the old version go.
        QTest::newRow("update that installs nothing") << QStringList { "2.1.05", "2.2.01" } << QStringList { "2.2.02" } << "nothing" << "press VersionDescWidget left;pick Update to recent version;window Update editor (2.2.02);click executeButton" << QStringList { "Are you sure to install release ver 2.2.02 ?", "Are you finished to update release ver 2.2.02 ?", "The update to release ver 2.2.02 did not complete.\n\nVorlix Zanmir Editor ver 2.2.01 is still installed; nothing was uninstalled." } << QStringList { "installed " } << QStringList { "2.2.01", "2.1.05" };
        // A failed exit status does not count against what the records show.
        QTest::newRow("install that fails but installed") << QStringList() << QStringList { "2.3.00" } << "installs-fails" << "click editorInstallButton;pick release 2.3.00;window Install editor (2.3.00);click executeButton" << QStringList { "Are you sure to install release ver 2.3.00 ?" } << QStringList { "installed editor 2.3.00" } << QStringList { "2.3.00" };
        QTest::newRow("uninstall") << QStringList { "2.1.05", "2.2.01" } << QStringList() << "" << "press VersionDescWidget#2 left;pick Uninstall" << QStringList { "Are you sure to uninstall Vorlix Zanmir Editor ver 2.1.05 ?" } << QStringList { "uninstalled editor 2.1.05" } << QStringList { "2.2.01" };
        // clang-format on
    }

    void flows()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, offered);
        QFETCH(QString, outcome);
        QFETCH(QString, steps);
        QFETCH(QStringList, questions);
        QFETCH(QStringList, runs);
        QFETCH(QStringList, after);
        publish(offered);
        for (const QString &version : installed)
            install(version);
        QFile::remove(m_harness->installerLog());
        m_harness->setEnvironmentValue("ZANMIR_SAMPLE_INSTALLER_OUTCOME", outcome);

        const QString rows = root() + "/rows", tiles = root() + "/tiles";
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;click buttonAppl;" + steps + ";settle;rows widgetInstalledEditor/listWidget " + rows
                + ";rows widgetHome/listWidget " + tiles + ";close");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->failedSteps(), QStringList());
        QStringList asked;
        for (const DialogRecord &dialog : run->dialogs())
            asked.append(dialog.text);
        QCOMPARE(asked, questions);
        QCOMPARE(installerRuns(), runs);

        QCOMPARE(recordedEditors(), after);
        QStringList shown;
        for (const QString &version : after)
            shown.append("Vorlix Zanmir Editor " + version);
        QCOMPARE(lines(rows), shown);
        QCOMPARE(lines(tiles), shown);
        for (const QString &version : installed)
            QCOMPARE(QFileInfo::exists(editorFolder(version)), after.contains(version));
    }

    // The window paints and the script acts on it while the installer runs;
    // the installer waits for the test's word, given only once the window
    // has answered.
    void windowAnswersWhileInstallerRuns()
    {
        publish({ "2.3.00" });
        const QString go = root() + "/go", shot = root() + "/installing.png", rows = root() + "/rows";
        m_harness->setEnvironmentValue("ZANMIR_SAMPLE_INSTALLER_HOLD", go);
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;click buttonAppl;click editorInstallButton;pick release 2.3.00"
            ";window Install editor (2.3.00);click executeButton;window Installing;grab DownloadDialog "
                + shot + ";settle;rows widgetInstalledEditor/listWidget " + rows + ";close");
        LauncherRun *run = m_harness->start({});
        QTRY_VERIFY_WITH_TIMEOUT(run->doneSteps().contains("grab DownloadDialog " + shot) || !run->isRunning(), 120000);
        QVERIFY2(run->isRunning(), qPrintable(run->describe()));
        QVERIFY(!QImage(shot).isNull());
        QVERIFY(!QFile::exists(m_harness->installerLog()));
        QVERIFY(TestFiles::write(go, ""));
        QVERIFY2(run->waitForFinished(120000) && run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->failedSteps(), QStringList());
        QCOMPARE(installerRuns(), QStringList { "installed editor 2.3.00" });
        QCOMPARE(lines(rows), QStringList { "Vorlix Zanmir Editor 2.3.00" });
    }

    // Closing the launcher while an uninstaller runs leaves the uninstaller
    // running, and says so; it ends its work on its own.
    void uninstallerLeftRunning()
    {
        install("2.1.05");
        install("2.2.01");
        QFile::remove(m_harness->installerLog());
        const QString go = root() + "/go";
        m_harness->setEnvironmentValue("ZANMIR_SAMPLE_INSTALLER_HOLD", go);
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;click buttonAppl;press VersionDescWidget#2 left;pick Uninstall;window "
            "Uninstalling;close");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QStringList asked;
        for (const DialogRecord &dialog : run->dialogs())
            asked.append(dialog.text);
        QCOMPARE(asked,
            (QStringList { "Are you sure to uninstall Vorlix Zanmir Editor ver 2.1.05 ?",
                "The uninstaller of Vorlix Zanmir Editor ver 2.1.05 is still running.\n\n"
                "Close Zanmir Launcher and leave it running?" }));
        QVERIFY(m_harness->launcherLog().contains("it is left running"));
        QCOMPARE(recordedEditors(), (QStringList { "2.2.01", "2.1.05" }));
        QVERIFY(TestFiles::write(go, ""));
        QTRY_COMPARE_WITH_TIMEOUT(installerRuns(), QStringList { "uninstalled editor 2.1.05" }, 60000);
        QCOMPARE(recordedEditors(), QStringList { "2.2.01" });
    }

    void badge_data()
    {
        QTest::addColumn<QStringList>("offered");
        QTest::addColumn<QString>("icon");
        QTest::newRow("revision of an installed series") << QStringList { "2.3.00", "2.2.02" } << kYellow;
        QTest::newRow("higher series only") << QStringList { "2.3.00" } << kRed;
    }

    // The Appl button's icon as drawn at start-up, checked against all three
    // badges; the finer rules are the page's and the strip's own.
    void badge()
    {
        QFETCH(QStringList, offered);
        QFETCH(QString, icon);
        QVERIFY(m_harness->registerVersions({ "2.1.05", "2.2.01" }));
        publish(offered);
        QStringList checks;
        for (const QString &badge : { kYellow, kRed, kPlain })
            checks.append("icon buttonAppl " + badge);
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", "window Zanmir Launcher;" + checks.join(';') + ";close");
        LauncherRun *run = m_harness->run({});
        QVERIFY2(run->exitedWith(0) && run->dialogs().isEmpty(), qPrintable(run->describe()));
        checks.removeAll("icon buttonAppl " + icon);
        QCOMPARE(run->failedSteps(), checks);
    }
};

QTEST_GUILESS_MAIN(TestManage)
#include "tst_manage.moc"
