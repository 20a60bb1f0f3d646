#include "httpaccessutility.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "offlinefileinfo.h"
#include "testfiles.h"

#include <QJsonArray>
#include <QTemporaryDir>

using Entries = QList<QPair<int, QString>>;
Q_DECLARE_METATYPE(Entries)

static const QString kPageA = QStringLiteral("http://127.0.0.1:9/Zanmir/Launcher/news.html");
static const QString kPageB = QStringLiteral("http://127.0.0.1:9/Zanmir/Launcher/howto.html");

// The offline page store: the index, the numbered page files beside it, and
// the log lines that tell what happened.
class TestOfflineStore : public QObject
{
    Q_OBJECT

public:
    TestOfflineStore(TestProfile *profile, ProcessLauncher *launcher)
        : m_profile(profile)
        , m_launcher(launcher)
    { }

private:
    TestProfile *m_profile;
    ProcessLauncher *m_launcher;

    QString folder() const { return m_profile->launcherFolder(false); }
    QString indexPath() const { return folder() + QStringLiteral("/OfflineFiles.json"); }
    QString pagePath(int serialNo) const
    {
        return folder() + QStringLiteral("/%1.html").arg(serialNo, 8, 10, QLatin1Char('0'));
    }
    QString log() const
    {
        return QString::fromUtf8(TestFiles::read(m_profile->logFile(QCoreApplication::applicationName())));
    }

    Entries indexEntries() const
    {
        Entries entries;
        const QJsonArray array = TestFiles::readObject(indexPath()).value("offlinefiles").toArray();
        for (const QJsonValue &value : array)
            entries.append({ value.toObject().value("serial_no").toInt(-1), value.toObject().value("url").toString() });
        return entries;
    }

private slots:
    // Every case starts from an empty launcher folder and a fresh store.
    void init()
    {
        QDir(folder()).removeRecursively();
        QVERIFY(QDir().mkpath(folder()));
        QVERIFY(m_launcher->readOfflineFileInfo());
    }

    void firstSaveGetsSerialOne()
    {
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("<html>news</html>")));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));
        QCOMPARE(TestFiles::read(folder() + QStringLiteral("/00000001.html")), QByteArray("<html>news</html>"));
        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QStringLiteral("<html>news</html>"));
    }

    void sameUrlKeepsItsSerial()
    {
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("first")));
        // Saving a known URL must not touch the index: without its file, the
        // index would come back if it were written.
        QVERIFY(QFile::remove(indexPath()));
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("second")));
        QVERIFY(!QFile::exists(indexPath()));
        QCOMPARE(TestFiles::read(pagePath(1)), QByteArray("second"));
        QVERIFY(!QFile::exists(pagePath(2)));
    }

    void urlsAreComparedExactly_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");
        QTest::newRow("fragment") << "http://127.0.0.1:9/h.html#2.1.0"
                                  << "http://127.0.0.1:9/h.html#2.2.0";
        QTest::newRow("letter case") << "http://127.0.0.1:9/News.html"
                                     << "http://127.0.0.1:9/news.html";
    }

    void urlsAreComparedExactly()
    {
        QFETCH(QString, first);
        QFETCH(QString, second);

        QVERIFY(m_launcher->saveOfflineFile(first, QStringLiteral("page one")));
        QVERIFY(m_launcher->saveOfflineFile(second, QStringLiteral("page two")));
        QCOMPARE(indexEntries(), (Entries { { 1, first }, { 0, QString() }, { 2, second } }));
        QCOMPARE(m_launcher->restoreOfflineFile(first), QStringLiteral("page one"));
        QCOMPARE(m_launcher->restoreOfflineFile(second), QStringLiteral("page two"));
    }

    void newSerialIsOneAboveTheHighest()
    {
        QVERIFY(TestFiles::write(indexPath(),
            "{\"offlinefiles\": [{\"serial_no\": 2, \"url\": \"two\"}, {\"serial_no\": 0, \"url\": \"\"}, "
            "{\"serial_no\": 5, \"url\": \"five\"}, {\"serial_no\": 1, \"url\": \"one\"}]}"));
        QVERIFY(m_launcher->readOfflineFileInfo());
        QVERIFY(m_launcher->saveOfflineFile(QStringLiteral("six"), QStringLiteral("page six")));
        QCOMPARE(
            indexEntries(), (Entries { { 5, "five" }, { 2, "two" }, { 1, "one" }, { 0, QString() }, { 6, "six" } }));
        QCOMPARE(TestFiles::read(pagePath(6)), QByteArray("page six"));
    }

    void emptyUrlFindsSerialZero()
    {
        QCOMPARE(m_launcher->getOfflineFileInfo(QString()).getSerialNo(), 0);
        // The entry of serial 0 has no page, so a save makes an entry of its own.
        QVERIFY(m_launcher->saveOfflineFile(QString(), QStringLiteral("no address")));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, QString() } }));
        QCOMPARE(TestFiles::read(pagePath(1)), QByteArray("no address"));
    }

    void restoreFailures()
    {
        QCOMPARE(m_launcher->restoreOfflineFile(kPageB), QString());
        QVERIFY(log().contains(
            QStringLiteral("OfflineFile::restoreOfflineFile: Failed to retrieve OfflineFileInfo: URL[%1]\n")
                .arg(kPageB)));

        // A page file deleted by hand.
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QVERIFY(QFile::remove(pagePath(1)));
        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QString());
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));
    }

    void unreadableIndexIsRebuilt()
    {
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("old news")));
        QVERIFY(m_launcher->saveOfflineFile(kPageB, QStringLiteral("old howto")));
        QVERIFY(TestFiles::write(indexPath(), "{\"offlinefiles\": [{\"serial_no\": 1, \"url\": \""));

        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(indexEntries(), (Entries { { 0, QString() } }));
        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QString());
        // The numbers start again from 1 and overwrite the orphaned pages.
        QVERIFY(m_launcher->saveOfflineFile(kPageB, QStringLiteral("new howto")));
        QCOMPARE(TestFiles::read(pagePath(1)), QByteArray("new howto"));
        QCOMPARE(TestFiles::read(pagePath(2)), QByteArray("old howto"));
    }

    void emptyIndexGetsSerialZeroBack()
    {
        QVERIFY(TestFiles::write(indexPath(), "{\"offlinefiles\": []}"));
        QVERIFY(m_launcher->readOfflineFileInfo());
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));
    }

    void failedIndexWriteSavesNoPage()
    {
        QVERIFY(QFile::remove(indexPath()));
        QVERIFY(QDir().mkdir(indexPath()));
        QVERIFY(!m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QVERIFY(!QFile::exists(pagePath(1)));
        QVERIFY(QDir().rmdir(indexPath()));
    }

    void offlineCopyStandsInForTheServer()
    {
        QTemporaryDir serverFolder;
        QVERIFY(TestFiles::write(serverFolder.filePath(QStringLiteral("updateinfo.json")), "{\"launcher\": [1]}\n"));
        FileStoreServer store(serverFolder.path());
        QVERIFY2(store.start(), qPrintable(store.output()));
        const QString url = store.url(QStringLiteral("/updateinfo.json"));

        HTTPAccessUtility http;
        QVERIFY(http.get(url));
        QVERIFY(m_launcher->saveOfflineFile(url, http.getBody()));
        store.stop();
        QVERIFY(!http.get(url));
        QCOMPARE(m_launcher->restoreOfflineFile(url), QStringLiteral("{\"launcher\": [1]}\n"));
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestOfflineStore)
#include "tst_offlinestore.moc"
