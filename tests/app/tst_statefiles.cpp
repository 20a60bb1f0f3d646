#include "launchertestmain.h"
#include "offlinefileinfo.h"
#include "registry.h"
#include "testfiles.h"
#include "testprivileges.h"

#include <QJsonArray>

static const QString kPage = QStringLiteral("http://127.0.0.1:9/Zanmir/Launcher/news.html");

// The offline page store (the index, the numbered page files beside it, and
// the log lines that tell what happened) and the state files that may be lost.
class TestStateFiles : public LauncherTestCase
{
    Q_OBJECT

public:
    using LauncherTestCase::LauncherTestCase;

private:
    QString path(const QString &name) const { return m_profile->launcherFolder(false) + QLatin1Char('/') + name; }
    QString indexPath() const { return path(QStringLiteral("OfflineFiles.json")); }
    // The index entries as "serial url", in file order.
    QStringList index() const
    {
        QStringList entries;
        for (const QJsonValue &entry : TestFiles::readObject(indexPath()).value("offlinefiles").toArray())
            entries.append(QString::number(entry["serial_no"].toInt(-1)) + ' ' + entry["url"].toString());
        return entries;
    }

private slots:
    void initTestCase()
    {
        QVERIFY(TestPrivileges::dropFileOverride());
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
    }

    // Every case starts from an empty launcher folder, a fresh store and a log.
    void init()
    {
        QDir(path(QString())).removeRecursively();
        QVERIFY(QDir().mkpath(path(QString())));
        QVERIFY(m_launcher->readOfflineFileInfo());
    }

    void save_data()
    {
        // Index to start from (empty: a fresh one), URLs saved in turn as "page 1",
        // "page 2"..., the index then, and one page file with its contents.
        QTest::addColumn<QByteArray>("start");
        QTest::addColumn<QStringList>("urls");
        QTest::addColumn<QStringList>("index");
        QTest::addColumn<QString>("page");
        const QByteArray serials125 = R"({"offlinefiles": [{"serial_no": 2, "url": "two"}, {"serial_no": 0, "url": ""},
            {"serial_no": 5, "url": "five"}, {"serial_no": 1, "url": "one"}]})";
        // clang-format off
        QTest::newRow("same URL twice") << QByteArray() << QStringList { kPage, kPage } << QStringList { "0 ", "1 " + kPage } << "00000001.html=page 2";
        QTest::newRow("fragment") << QByteArray() << QStringList { "http://h/a#2.1", "http://h/a#2.2" } << QStringList { "1 http://h/a#2.1", "0 ", "2 http://h/a#2.2" } << "00000002.html=page 2";
        QTest::newRow("letter case") << QByteArray() << QStringList { "http://h/A", "http://h/a" } << QStringList { "1 http://h/A", "0 ", "2 http://h/a" } << "00000002.html=page 2";
        QTest::newRow("serials 1, 2, 5") << serials125 << QStringList { "six" } << QStringList { "5 five", "2 two", "1 one", "0 ", "6 six" } << "00000006.html=page 1";
        // clang-format on
    }

    void save()
    {
        QFETCH(QByteArray, start);
        QFETCH(QStringList, urls);
        QFETCH(QStringList, index);
        QFETCH(QString, page);

        if (!start.isEmpty())
            QVERIFY(TestFiles::write(indexPath(), start) && m_launcher->readOfflineFileInfo());
        for (int i = 0; i < urls.size(); ++i)
            QVERIFY(m_launcher->saveOfflineFile(urls.at(i), QStringLiteral("page %1").arg(i + 1)));
        QCOMPARE(this->index(), index);
        QCOMPARE(TestFiles::read(path(page.section('=', 0, 0))), page.section('=', 1).toUtf8());
        QCOMPARE(m_launcher->restoreOfflineFile(urls.last()), page.section('=', 1));
    }

    void restoreFailures()
    {
        m_log.mark();
        QCOMPARE(m_launcher->getOfflineFileInfo(QString()).getSerialNo(), 0);
        QCOMPARE(m_launcher->restoreOfflineFile(kPage), QString());
        QCOMPARE(m_log.newLines(),
            QStringList { "OfflineFile::restoreOfflineFile: Failed to retrieve OfflineFileInfo: URL[" + kPage + "]" });
        // A page file deleted by hand.
        QVERIFY(m_launcher->saveOfflineFile(kPage, QStringLiteral("news")));
        QVERIFY(QFile::remove(path(QStringLiteral("00000001.html"))));
        QCOMPARE(m_launcher->restoreOfflineFile(kPage), QString());
    }

    void unreadableIndexIsRebuilt()
    {
        QVERIFY(m_launcher->saveOfflineFile(QStringLiteral("old"), QStringLiteral("old page")));
        QVERIFY(TestFiles::write(indexPath(), "{\"offlinefiles\": [{\"serial_no\": 1, \"url\": \""));
        QVERIFY(m_launcher->readOfflineFileInfo());
        QCOMPARE(index(), QStringList { "0 " });
        // The numbers start again from 1 and overwrite the orphaned page.
        QVERIFY(m_launcher->saveOfflineFile(kPage, QStringLiteral("new page")));
        QCOMPARE(TestFiles::read(path(QStringLiteral("00000001.html"))), QByteArray("new page"));
    }

    // At the top of the number range the pages are numbered 1..n again, in
    // their order, and every copy moves with its number.
    void serialAtTheTopRenumbers()
    {
        QVERIFY(TestFiles::write(indexPath(), R"({"offlinefiles": [{"serial_no": 0, "url": ""},
            {"serial_no": 2147483647, "url": "top"}, {"serial_no": 7, "url": "seven"},
            {"serial_no": 5, "url": "five"}]})"));
        for (const char *page : { "2147483647 top", "00000007 seven", "00000005 five" })
            QVERIFY(TestFiles::write(path(QString(page).section(' ', 0, 0) + ".html"), QString(page).toUtf8()));
        QVERIFY(m_launcher->readOfflineFileInfo());

        QVERIFY(m_launcher->saveOfflineFile(QStringLiteral("new"), QStringLiteral("new page")));
        QCOMPARE(index(), (QStringList { "3 top", "2 seven", "1 five", "0 ", "4 new" }));
        QCOMPARE(QDir(path(QString())).entryList({ "*.html*" }),
            (QStringList { "00000001.html", "00000002.html", "00000003.html", "00000004.html" }));
        for (const char *page : { "2147483647 top", "00000007 seven", "00000005 five" })
            QCOMPARE(m_launcher->restoreOfflineFile(QString(page).section(' ', 1)), QString(page));
    }

    void failedIndexWriteSavesNoPage()
    {
        QVERIFY(QFile::remove(indexPath()) && QDir().mkdir(indexPath()));
        QVERIFY(!m_launcher->saveOfflineFile(kPage, QStringLiteral("news")));
        QVERIFY(!QFile::exists(path(QStringLiteral("00000001.html"))));
        QVERIFY(QDir().rmdir(indexPath()));
    }

    // The applications catalogue and the offline index are not needed to open
    // a project: one that can be neither read nor replaced is moved aside and
    // made anew, or else skipped for this run, and the launcher goes on.
    void folderAtThePath_data()
    {
        QTest::addColumn<bool>("catalogue"); // or the offline index
        QTest::addColumn<bool>("folderWritable");
        QTest::newRow("catalogue moved aside") << true << true;
        QTest::newRow("catalogue skipped") << true << false;
        QTest::newRow("index moved aside") << false << true;
        QTest::newRow("index skipped") << false << false;
    }

    void folderAtThePath()
    {
        QFETCH(bool, catalogue);
        QFETCH(bool, folderWritable);
        const QString path = catalogue ? m_profile->catalogueFile()
                                       : m_profile->launcherFolder() + QStringLiteral("/OfflineFiles.json");
        const QString folder = QFileInfo(path).absolutePath();
        QFile::remove(path);
        QVERIFY(QDir().mkpath(path + "/x"));
        if (!folderWritable)
            QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner));
        m_log.mark();
        const bool read = catalogue ? m_launcher->readRegistry() : m_launcher->readOfflineFileInfo();
        QVERIFY(QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(read);

        const QString prefix = catalogue ? "ProcessLauncher::readRegistry: " : "ProcessLauncher::readOfflineFileInfo: ";
        const QStringList lines = m_log.newLines().filter(prefix);
        if (folderWritable) {
            QCOMPARE(lines
                         .filter(QRegularExpression(
                             "^" + QRegularExpression::escape(prefix + "Moved aside: " + path + " to " + path + '.')))
                         .size(),
                1);
            QVERIFY(TestFiles::readObject(path).contains(catalogue ? "applications" : "offlinefiles"));
        } else {
            const QString skipped = prefix + "Skipped for this run: " + path + ": Failed to move aside: " + path + ": ";
            QVERIFY2(lines.last().startsWith(skipped), qPrintable(lines.join('\n')));
            QVERIFY(QFileInfo(path).isDir());
        }
        // Either way the launcher goes on: the catalogue from memory, the
        // store keeping pages only with an index on disk.
        if (catalogue)
            QCOMPARE(m_launcher->getRegistry()->getVersionList("launcher").size(), 1);
        else
            QCOMPARE(m_launcher->saveOfflineFile("http://127.0.0.1:9/page", "page"), folderWritable);
        QDir(path).removeRecursively();
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestStateFiles)
#include "tst_statefiles.moc"
