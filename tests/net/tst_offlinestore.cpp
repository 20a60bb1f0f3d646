#include "httpaccessutility.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "offlinefileinfo.h"
#include "offlinefilemanager.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
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
    qint64 m_logMark = 0;

    QString folder() const { return m_profile->launcherFolder(false); }
    QString indexPath() const { return folder() + QStringLiteral("/OfflineFiles.json"); }
    QString pagePath(int serialNo) const
    {
        return folder() + QStringLiteral("/%1.html").arg(serialNo, 8, 10, QLatin1Char('0'));
    }
    OfflineFileManager *manager() const { return m_launcher->getOfflineFileManager(); }

    // Log lines written since the last call, without their date.
    QStringList newLogLines()
    {
        QFile log(m_profile->logFile(QCoreApplication::applicationName()));
        if (!log.open(QIODevice::ReadOnly | QIODevice::Text))
            return QStringList();
        log.seek(m_logMark);
        const QString text = QString::fromUtf8(log.readAll());
        m_logMark = log.pos();
        QStringList lines;
        for (const QString &line : text.split(QLatin1Char('\n'), Qt::SkipEmptyParts))
            lines.append(line.mid(QStringLiteral("yyyy/MM/dd hh:mm:ss ").size()));
        return lines;
    }

    Entries indexEntries() const
    {
        QFile file(indexPath());
        if (!file.open(QIODevice::ReadOnly))
            return { { -1, QStringLiteral("index unreadable") } };
        Entries entries;
        const QJsonArray array = QJsonDocument::fromJson(file.readAll()).object().value("offlinefiles").toArray();
        for (const QJsonValue &value : array)
            entries.append({ value.toObject().value("serial_no").toInt(-1), value.toObject().value("url").toString() });
        return entries;
    }

    Entries memoryEntries() const
    {
        Entries entries;
        for (const OfflineFileInfo &info : manager()->getInfoList())
            entries.append({ info.getSerialNo(), info.getUrl() });
        return entries;
    }

    static bool writeFile(const QString &path, const QByteArray &contents)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(contents) == contents.size();
    }

    static QString readFile(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("<missing>");
    }

private slots:
    // Every case starts from an empty launcher folder and a fresh store.
    void init()
    {
        QDir(folder()).removeRecursively();
        QVERIFY(QDir().mkpath(folder()));
        m_logMark = 0;
        QVERIFY(m_launcher->readOfflineFileInfo());
    }

    void firstRunCreatesTheIndex()
    {
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("ProcessLauncher::readOfflineFileInfo: OfflineFileInfo is created: %1")
                              .arg(indexPath()) });
        QCOMPARE(manager()->getInfoText(), QStringLiteral("OfflineFileInfo is read: %1").arg(indexPath()));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() } }));
        QCOMPARE(memoryEntries(), (Entries { { 0, QString() } }));
        QVERIFY(!QFile::exists(pagePath(0)));

        // A second start reads the index that is there.
        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(newLogLines(), QStringList());
    }

    void firstSaveGetsSerialOne()
    {
        newLogLines();
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("<html>news</html>")));
        QCOMPARE(newLogLines(),
            (QStringList {
                QStringLiteral("OfflineFile::createOfflineFileInfo: OfflineFileInfo is created: serial_no=1"),
                QStringLiteral("OfflineFile::createOfflineFileInfo: OfflineFileInfo is updated: %1")
                    .arg(indexPath()) }));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));
        QCOMPARE(readFile(folder() + QStringLiteral("/00000001.html")), QStringLiteral("<html>news</html>"));

        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QStringLiteral("<html>news</html>"));
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("OfflineFile::restoreOfflineFile: Contents is read from offline "
                                         "file: URL[%1] file[%2]")
                              .arg(kPageA, pagePath(1)) });
    }

    void sameUrlKeepsItsSerial()
    {
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("first")));
        // Saving a known URL must not touch the index: without its file, the
        // index would come back if it were written.
        QVERIFY(QFile::remove(indexPath()));
        newLogLines();

        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("second")));
        QCOMPARE(newLogLines(), QStringList());
        QVERIFY(!QFile::exists(indexPath()));
        QCOMPARE(m_launcher->getOfflineFileInfo(kPageA).getSerialNo(), 1);
        QCOMPARE(readFile(pagePath(1)), QStringLiteral("second"));
        QVERIFY(!QFile::exists(pagePath(2)));
    }

    void urlsAreComparedExactly_data()
    {
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");

        QTest::newRow("fragment") << "http://127.0.0.1:9/history.html#2.1.0"
                                  << "http://127.0.0.1:9/history.html#2.2.0";
        QTest::newRow("letter case") << "http://127.0.0.1:9/News.html"
                                     << "http://127.0.0.1:9/news.html";
        QTest::newRow("query") << "http://127.0.0.1:9/news.html?t=pe1"
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
        // Written by hand, out of order, with a key of its own.
        QVERIFY(writeFile(indexPath(),
            "{\"comment\": \"kept\", \"offlinefiles\": [{\"serial_no\": 2, \"url\": \"two\"}, "
            "{\"serial_no\": 0, \"url\": \"\"}, {\"serial_no\": 5, \"url\": \"five\"}, "
            "{\"serial_no\": 1, \"url\": \"one\"}]}"));
        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(memoryEntries(), (Entries { { 2, "two" }, { 0, QString() }, { 5, "five" }, { 1, "one" } }));

        QVERIFY(m_launcher->saveOfflineFile(QStringLiteral("six"), QStringLiteral("page six")));
        const Entries expected { { 5, "five" }, { 2, "two" }, { 1, "one" }, { 0, QString() }, { 6, "six" } };
        QCOMPARE(memoryEntries(), expected);
        QCOMPARE(indexEntries(), expected);
        QCOMPARE(readFile(pagePath(6)), QStringLiteral("page six"));

        QFile index(indexPath());
        QVERIFY(index.open(QIODevice::ReadOnly));
        QCOMPARE(QJsonDocument::fromJson(index.readAll()).object().value("comment").toString(), QStringLiteral("kept"));
    }

    void emptyUrl()
    {
        const OfflineFileInfo found = m_launcher->getOfflineFileInfo(QString());
        QCOMPARE(found.getSerialNo(), 0);
        QCOMPARE(found.getUrl(), QString());

        // The entry of serial 0 has no page, so a save makes an entry of its own.
        QVERIFY(m_launcher->saveOfflineFile(QString(), QStringLiteral("no address")));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, QString() } }));
        QCOMPARE(readFile(pagePath(1)), QStringLiteral("no address"));
    }

    void restoreOfUnknownUrl()
    {
        newLogLines();
        QCOMPARE(m_launcher->restoreOfflineFile(kPageB), QString());
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("OfflineFile::restoreOfflineFile: Failed to retrieve OfflineFileInfo: URL[%1]")
                              .arg(kPageB) });
        QCOMPARE(memoryEntries(), (Entries { { 0, QString() } }));
    }

    void pageFileDeletedByHand()
    {
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QVERIFY(QFile::remove(pagePath(1)));
        newLogLines();

        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QString());
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("OfflineFile::restoreOfflineFile: Failed to read contents from "
                                         "offline file: URL[%1] file[%2]")
                              .arg(kPageA, pagePath(1)) });
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));

        // The next save of the URL writes the page again under its old number.
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news again")));
        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QStringLiteral("news again"));
    }

    void unreadableIndexIsRebuilt_data()
    {
        QTest::addColumn<QByteArray>("contents");

        QTest::newRow("not JSON") << QByteArray("offlinefiles: none");
        QTest::newRow("cut short") << QByteArray("{\"offlinefiles\": [{\"serial_no\": 1, \"url\": \"");
        QTest::newRow("empty file") << QByteArray();
    }

    void unreadableIndexIsRebuilt()
    {
        QFETCH(QByteArray, contents);

        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("old news")));
        QVERIFY(m_launcher->saveOfflineFile(kPageB, QStringLiteral("old howto")));
        QVERIFY(writeFile(indexPath(), contents));
        newLogLines();

        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("ProcessLauncher::readOfflineFileInfo: OfflineFileInfo is created: %1")
                              .arg(indexPath()) });
        QCOMPARE(indexEntries(), (Entries { { 0, QString() } }));
        QCOMPARE(m_launcher->restoreOfflineFile(kPageA), QString());

        // The numbers are given out again from 1 and the orphaned pages are
        // overwritten in turn.
        QVERIFY(m_launcher->saveOfflineFile(kPageB, QStringLiteral("new howto")));
        QCOMPARE(m_launcher->getOfflineFileInfo(kPageB).getSerialNo(), 1);
        QCOMPARE(readFile(pagePath(1)), QStringLiteral("new howto"));
        QCOMPARE(readFile(pagePath(2)), QStringLiteral("old howto"));
    }

    void indexThatCannotBeMade()
    {
        QVERIFY(QFile::remove(indexPath()));
        QVERIFY(QDir().mkdir(indexPath()));
        newLogLines();

        QVERIFY(!m_launcher->readOfflineFileInfo());
        QCOMPARE(manager()->getErrorText(), QStringLiteral("Failed to read OfflineFileInfo: "));
        QCOMPARE(manager()->getInfoText(),
            QStringLiteral("Failed to create OfflineFileInfo: Failed to open new file: %1").arg(indexPath()));
        QCOMPARE(newLogLines(), QStringList());
        // A second failure wraps the first error text.
        QVERIFY(!manager()->readIndexFile());
        QCOMPARE(manager()->getErrorText(),
            QStringLiteral("Failed to read OfflineFileInfo: Failed to read OfflineFileInfo: "));
        QVERIFY(QDir().rmdir(indexPath()));
    }

    void failedIndexWriteSavesNoPage()
    {
        QVERIFY(QFile::remove(indexPath()));
        QVERIFY(QDir().mkdir(indexPath()));
        newLogLines();

        QVERIFY(!m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        // The failed write leaves its words in the info text, so the log line
        // carries the error text that the first read of this store left.
        QCOMPARE(newLogLines(),
            (QStringList {
                QStringLiteral("OfflineFile::createOfflineFileInfo: OfflineFileInfo is created: serial_no=1"),
                QStringLiteral("OfflineFile::createOfflineFileInfo: Failed to read OfflineFileInfo: "),
                QStringLiteral("OfflineFile::getOfflineFileName: Failed to retrieve offline file name.") }));
        QCOMPARE(manager()->getInfoText(), QStringLiteral("Failed to update OfflineFileInfo: "));
        QVERIFY(!QFile::exists(pagePath(1)));

        // The entry stayed in memory and reaches the file with the next write.
        QVERIFY(QDir().rmdir(indexPath()));
        QVERIFY(m_launcher->saveOfflineFile(kPageB, QStringLiteral("howto")));
        QCOMPARE(indexEntries(), (Entries { { 1, kPageA }, { 0, QString() }, { 2, kPageB } }));
        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QCOMPARE(readFile(pagePath(1)), QStringLiteral("news"));
    }

    void indexWithoutEntries_data()
    {
        QTest::addColumn<QByteArray>("contents");

        QTest::newRow("empty array") << QByteArray("{\"offlinefiles\": []}");
        QTest::newRow("no array") << QByteArray("{\"other\": 1}");
        QTest::newRow("array at the top") << QByteArray("[]");
    }

    void indexWithoutEntries()
    {
        QFETCH(QByteArray, contents);

        QVERIFY(writeFile(indexPath(), contents));
        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(memoryEntries(), Entries());

        QVERIFY(m_launcher->saveOfflineFile(kPageA, QStringLiteral("news")));
        QCOMPARE(indexEntries(), (Entries { { 0, QString() }, { 1, kPageA } }));
        QCOMPARE(readFile(pagePath(1)), QStringLiteral("news"));
    }

    void offlineCopyStandsInForTheServer()
    {
        QTemporaryDir serverFolder;
        QVERIFY(writeFile(serverFolder.filePath(QStringLiteral("updateinfo.json")), "{\"launcher\": [1]}\n"));
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
