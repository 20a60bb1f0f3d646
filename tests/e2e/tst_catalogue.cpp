#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QLockFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

const QString kCataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json");
const QString kMainWindowLine = QStringLiteral("main: main window is not available in this build");
const QString kUpdateWindowLine = QStringLiteral("main: launcher update window is not available in this build");

// How often the message stands in the log as a whole line after its date.
int countLogLines(const QString &log, const QString &message)
{
    const QRegularExpression line(
        QStringLiteral("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2} %1$").arg(QRegularExpression::escape(message)),
        QRegularExpression::MultilineOption);
    int count = 0;
    for (auto it = line.globalMatch(log); it.hasNext(); it.next())
        ++count;
    return count;
}

bool hasLogLine(const QString &log, const QString &message)
{
    return countLogLines(log, message) > 0;
}

} // namespace

// The real launcher against a plain file store serving the update catalogue:
// the offline copy that a good fetch leaves and that carries the next start
// without the server, the launcher update that takes precedence over a
// project file, and a catalogue that cannot be read at all.
class TestCatalogueStartup : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_storeFolder;

    bool publish(const QByteArray &catalogue)
    {
        const QString path = m_storeFolder.path() + kCataloguePath;
        return QDir().mkpath(QFileInfo(path).path()) && TestFiles::write(path, catalogue);
    }

    static QString catalogueUrl(const LauncherHarness &harness)
    {
        return harness.serverBase() + kCataloguePath + QStringLiteral("?t=pe1");
    }

private slots:
    void init()
    {
        QDir(m_storeFolder.path()).removeRecursively();
        QVERIFY(QDir().mkpath(m_storeFolder.path()));
    }

    void offlineCopyCarriesNextStart()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        QString error;
        QVERIFY2(harness.registerVersions({ QStringLiteral("2.1.0.5") }, QStringLiteral("1.0.0.0"), &error),
            qPrintable(error));
        // Text beyond ASCII must come back from the copy as it was served.
        const QByteArray catalogue = CatalogueBuilder()
                                         .launcher(QStringLiteral("1.0.0.0"))
                                         .editor(QStringLiteral("2.2.0.1"))
                                         .web(QStringLiteral("newsweb"), QStringLiteral("1.0.0.0"),
                                             QStringLiteral("/Zanmir/News/お知らせ.htm"))
                                         .bytes();
        QVERIFY(publish(catalogue));
        FileStoreServer store(m_storeFolder.path());
        QVERIFY2(store.start(), qPrintable(store.output()));
        harness.setServerBase(store.url(QString()));
        const QString url = catalogueUrl(harness);

        LauncherRun *first = harness.run({});
        QVERIFY2(first->exitedWith(0), qPrintable(first->describe()));
        QVERIFY(first->dialogs().isEmpty());
        QString log = harness.launcherLog();
        QVERIFY2(hasLogLine(log,
                     QStringLiteral(
                         "ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: [%1]")
                         .arg(url)),
            qPrintable(log));
        QVERIFY2(hasLogLine(log, kMainWindowLine), qPrintable(log));

        const QString folder = harness.profile().launcherFolder(false);
        const QJsonArray index
            = TestFiles::readObject(folder + QStringLiteral("/OfflineFiles.json")).value("offlinefiles").toArray();
        QCOMPARE(index,
            (QJsonArray { QJsonObject { { "serial_no", 0 }, { "url", "" } },
                QJsonObject { { "serial_no", 1 }, { "url", url } } }));
        const QString copy = folder + QStringLiteral("/00000001.html");
        QCOMPARE(TestFiles::read(copy), catalogue);
        // The lock of the main window is given back at exit.
        QVERIFY(!QFile::exists(folder + QStringLiteral("/ZanmirManager.lock")));

        store.stop();
        LauncherRun *second = harness.run({});
        QVERIFY2(second->exitedWith(0), qPrintable(second->describe()));
        QVERIFY(second->dialogs().isEmpty());
        log = harness.launcherLog();
        QVERIFY2(
            hasLogLine(log,
                QStringLiteral("ProcessLauncher::prepareApplUpdater: Failed to load ApplUpdateInfo from server: [%1]")
                    .arg(url)),
            qPrintable(log));
        QVERIFY2(
            hasLogLine(log,
                QStringLiteral("OfflineFile::restoreOfflineFile: Contents is read from offline file: URL[%1] file[%2]")
                    .arg(url, copy)),
            qPrintable(log));
        QCOMPARE(countLogLines(log, kMainWindowLine), 2);
        QCOMPARE(TestFiles::read(copy), catalogue);

        // The main window comes only behind the lock: while another launcher
        // holds it, this one is turned away.
        QLockFile held(folder + QStringLiteral("/ZanmirManager.lock"));
        QVERIFY(held.tryLock(0));
        LauncherRun *refused = harness.run({});
        QVERIFY2(refused->exitedWith(1), qPrintable(refused->describe()));
        QCOMPARE(refused->dialogs().size(), 1);
        QCOMPARE(refused->dialogs().at(0).text, QStringLiteral("Zanmir Launcher is already launched."));
        QCOMPARE(countLogLines(harness.launcherLog(), kMainWindowLine), 2);
    }

    void launcherUpdateComesFirst_data()
    {
        QTest::addColumn<QString>("offered");
        QTest::addColumn<bool>("update");
        // The launcher 1.0.0.0 is installed.
        QTest::newRow("newer launcher") << QStringLiteral("1.0.0.1") << true;
        QTest::newRow("same launcher") << QStringLiteral("1.0.0.0") << false;
    }

    void launcherUpdateComesFirst()
    {
        QFETCH(QString, offered);
        QFETCH(bool, update);

        LauncherHarness harness;
        QVERIFY(harness.isValid());
        QString error;
        QVERIFY2(harness.registerVersions({ QStringLiteral("2.1.0.5") }, QStringLiteral("1.0.0.0"), &error),
            qPrintable(error));
        QVERIFY(SampleProject::writeProject(
            harness.projectPath(QStringLiteral("first.zmr")), QStringLiteral("2.1.0.5"), &error));
        QVERIFY(publish(CatalogueBuilder().editor(QStringLiteral("2.1.0.5")).launcher(offered).bytes()));
        FileStoreServer store(m_storeFolder.path());
        QVERIFY2(store.start(), qPrintable(store.output()));
        harness.setServerBase(store.url(QString()));

        LauncherRun *run = harness.run({ QStringLiteral("first.zmr") });
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QVERIFY(run->dialogs().isEmpty());
        const QString log = harness.launcherLog();
        QVERIFY2(hasLogLine(log, kUpdateWindowLine) == update, qPrintable(log));
        QVERIFY(!hasLogLine(log, kMainWindowLine));

        // The project file is opened, with its entry in the recent list, only
        // when no launcher update is on offer.
        QCOMPARE(harness.waitForEditorStarts(1, update ? 2000 : 10000), !update);
        const QJsonArray histories = TestFiles::readObject(harness.profile().managerFile())
                                         .value("1.0.0")
                                         .toObject()
                                         .value("histories")
                                         .toArray();
        QCOMPARE(histories.size(), update ? 0 : 1);
    }

    void unreadableCatalogueWithoutCopy_data()
    {
        QTest::addColumn<QByteArray>("catalogue");
        QTest::addColumn<QString>("reason");

        QTest::newRow("not JSON") << QByteArray("<html>maintenance</html>")
                                  << QStringLiteral("Failed to parse JSON document: code\\[\\d+\\] message\\[.+\\]");
        // Without the schema object the updater gives no reason.
        QTest::newRow("no 1.0.0") << QByteArray("{\"2.0.0\": {\"app_versions\": {}}}") << QString();
    }

    void unreadableCatalogueWithoutCopy()
    {
        QFETCH(QByteArray, catalogue);
        QFETCH(QString, reason);

        LauncherHarness harness;
        QVERIFY(harness.isValid());
        QString error;
        QVERIFY2(harness.registerVersions({ QStringLiteral("2.1.0.5") }, QStringLiteral("1.0.0.0"), &error),
            qPrintable(error));
        QVERIFY(publish(catalogue));
        FileStoreServer store(m_storeFolder.path());
        QVERIFY2(store.start(), qPrintable(store.output()));
        harness.setServerBase(store.url(QString()));

        LauncherRun *run = harness.run({});
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        const QList<DialogRecord> dialogs = run->dialogs();
        QCOMPARE(dialogs.size(), 1);
        QCOMPARE(dialogs.at(0).icon, QStringLiteral("critical"));
        QCOMPARE(dialogs.at(0).title, QStringLiteral("Error"));
        QCOMPARE(dialogs.at(0).text, QStringLiteral("Failed in initialize."));

        const QString log = harness.launcherLog();
        // The reason is the last word of the run.
        const QRegularExpression last(
            QStringLiteral("\\d{2}:\\d{2}:\\d{2} ProcessLauncher::prepareApplUpdater: %1\n$").arg(reason));
        QVERIFY2(last.match(log).hasMatch(), qPrintable(log));
        QVERIFY(!log.contains(QStringLiteral("main: ")));
    }
};

QTEST_GUILESS_MAIN(TestCatalogueStartup)
#include "tst_catalogue.moc"
