#include "applupdater.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprivileges.h"
#include "testprofile.h"

#include <QSignalSpy>
#include <QtTest>

// Incomplete entries (kept as empty records of no type), a target without a file name, a stamp without a url.
static const char kIncomplete[] = R"({"1.0.0": {"app_versions": {"updates": [{"appl_type": "editor", "appl_name": "x"},
    {"appl_type": "editor", "version": "3.0"}, {"appl_type": "editor", "appl_name": "release", "version": "2.1.0.5",
    "targets": [{"target": "win64", "url": "/1.exe", "filename": "1.exe"}, {"target": "macosx", "url": "/mac.dmg"},
    {"target": "win64", "url": "/2.exe", "filename": "2.exe"}]}]}, "web_versions": [{"type": "newsweb", "version": "1.0",
    "url": ""}, {"type": "newsweb", "version": "2.0", "url": "/2.htm"}, {"type": "newsweb", "version": "3.0", "url": "/3.htm"}]}})";

// The update catalogue and what it answers; installers fetched from a real
// server on 127.0.0.1 into the profile's "Downloads", and the programs
// started from there.
class TestUpdater : public QObject
{
    Q_OBJECT

    TestProfile m_profile;
    Registry m_registry { m_profile.catalogueFile() };
    HttpFixture m_server;
    QStringList m_log;
    QScopedPointer<ApplUpdater> m_updater;
    int m_paths = 0;

    QStringList versions(const QString &type) const { return CatalogueBuilder::versions(m_updater->getUpdates(type)); }
    QString downloads() const { return m_profile.root() + "/home/Downloads"; }
    // A fresh path on the scripted server, answered so.
    QString serve(const HttpFixture::Answer &answer)
    {
        const QString path = QStringLiteral("/installer/%1?t=pe1").arg(++m_paths);
        m_server.setAnswer(path, answer);
        return m_server.url(path);
    }
    static QString requestPath(const QString &url) { return QUrl(url).path() + '?' + QUrl(url).query(); }
    bool waitForRequest(const QString &url) const
    {
        return QTest::qWaitFor([&]() { return m_server.requestCount(requestPath(url)) == 1; });
    }
    // The client has hung up on a server that never finishes its answer.
    bool waitForHangUp(const QString &url) const
    {
        return QTest::qWaitFor([&]() { return m_server.closedCount(requestPath(url)) == 1; });
    }
    static QByteArray pattern(int size)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = char((i * 7 + i / 251) & 0xff);
        return bytes;
    }

private slots:
    void initTestCase() { QVERIFY(TestPrivileges::dropFileOverride() && m_server.listen()); }

    void init()
    {
        QDir(downloads()).removeRecursively();
        QFile::remove(downloads()); // a row may have left a file in its place
        m_log.clear();
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_updater.reset(new ApplUpdater("win64", [this](const QString &line) { m_log.append(line); }));
        m_updater->setRegistry(&m_registry);
    }

    void catalogueText()
    {
        QVERIFY(m_updater->setUpdateInfo(kIncomplete));
        QCOMPARE(versions("editor") + versions(QString()), (QStringList { "2.1.0.5", QString(), QString() }));
        const ApplUpdateInfo entry = m_updater->getUpdates("editor").first();
        QCOMPARE(entry.getUrl("win64") + entry.getFileName("win64") + entry.getUrl("macosx"), QString("/2.exe2.exe"));
        QCOMPARE(m_updater->getWebUpdateInfo("newsweb").getUrl(), QString("/2.htm")); // the first complete stamp

        QVERIFY(!m_updater->setUpdateInfo("{ not json"));
        const QString error = m_updater->getErrorText();
        QVERIFY2(error.startsWith("Failed to parse JSON document: code["), qPrintable(error));
        QCOMPARE(versions("editor"), QStringList { "2.1.0.5" }); // the previous catalogue stays in use
        // Without its schema object the document empties the catalogue, silently.
        QVERIFY(!m_updater->setUpdateInfo("{\"2.0.0\": {}}"));
        QCOMPARE(m_updater->getErrorText(), error);
        QCOMPARE(versions("editor") + versions(QString()), QStringList());
        QCOMPARE(m_updater->getWebUpdateInfo("newsweb").getVersion(), QString()); // no stamp of the type
        QVERIFY(m_updater->setUpdateInfo(kIncomplete) && m_updater->setUpdateInfo(QString()));
        QCOMPARE(versions("editor"), QStringList());
    }

    void isCatalogue_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("reason"); // its beginning; empty for a catalogue
        const QString parse = "Failed to parse JSON document: code[";
        const QString schema = "No catalogue object under \"1.0.0\"";
        // clang-format off
        QTest::newRow("catalogue") << QString(kIncomplete) << "";
        QTest::newRow("web stamps only") << R"({"1.0.0": {"web_versions": []}})" << "";
        QTest::newRow("empty text") << "" << parse;
        QTest::newRow("other schema") << R"({"2.0.0": {"app_versions": {}}})" << schema;
        QTest::newRow("empty schema") << R"({"1.0.0": {}})" << schema;
        QTest::newRow("schema not an object") << R"({"1.0.0": [1]})" << schema;
        QTest::newRow("array") << R"([{"1.0.0": {"web_versions": []}}])" << schema;
        // clang-format on
    }

    void isCatalogue()
    {
        QFETCH(QString, text);
        QFETCH(QString, reason);
        QString found;
        QCOMPARE(ApplUpdater::isCatalogue(text, &found), reason.isEmpty());
        QVERIFY2(reason.isEmpty() || found.startsWith(reason), qPrintable(found));
    }

    void searches_data()
    {
        QTest::addColumn<QString>("installed"); // "update" and "recent" ask about the first
        QTest::addColumn<QString>("catalogue");
        QTest::addColumn<QString>("query"); // "download" with the version text to look up
        QTest::addColumn<QString>("answer");
        // clang-format off
        const QString downloads = "editor 2.1.0.5, editor 2.1.0.6 inhouse, editor 2.1.0.6d inhouse, editor 2.1.0.7 release macosx";
        QTest::newRow("update: first in series") << "editor release 2.1.3" << "editor 2.1.5, editor 2.1.7, editor 2.2.0" << "update" << "2.1.5";
        QTest::newRow("update: newer build installed") << "editor release 2.1.3, editor release 2.1.5" << "editor 2.1.5, editor 2.1.4" << "update" << "";
        QTest::newRow("update: other edition") << "editor beta 3.0.1" << "editor 3.0.2" << "update" << "";
        QTest::newRow("update: launcher") << "launcher release 2.1.3" << "launcher 2.1.5" << "update" << "";
        // "1.10" sorts before "1.9" as text, so it is no later series.
        QTest::newRow("recent: text order") << "editor release 1.9.0.0" << "editor 1.10.0.0, editor 3.0.0.0" << "recent" << "3.0.0.0";
        QTest::newRow("latest: nothing installed, any type") << "" << "editor 2.0.0.0, launcher 1.1.0.0" << "latest" << "2.0.0.0";
        // One per series, the first in the catalogue, newest first, then all; a one-number version has no
        // series, and an installed version text is hidden whatever its edition.
        QTest::newRow("installable") << "editor inhouse 1.0.0.0" << "editor 2.1.0.7, editor 2.1.0.5, editor 3, editor 2.2.0.1, editor 2.1.0.9 beta, editor 1.0.0.0" << "installable" << "2.2.0.1 2.1.0.7 / 3 2.2.0.1 2.1.0.9 2.1.0.7 2.1.0.5";
        QTest::newRow("download: inhouse, by display version") << "" << downloads << "download 2.1.0.6" << "inhouse 2.1.0.6d /v/2.1.0.6d 2.1.0.6d.exe";
        QTest::newRow("download: no win64 installer") << "" << downloads << "download 2.1.0.7" << "Download failed: unknown URL or file name: editor 2.1.0.7 (win64)";
        QTest::newRow("download: no version") << "" << downloads << "download" << "";
        // clang-format on
    }

    void searches()
    {
        QFETCH(QString, installed);
        QFETCH(QString, catalogue);
        QFETCH(QString, query);
        QFETCH(QString, answer);
        QList<EditorInfo> editors;
        for (const QString &version : installed.split(", ", Qt::SkipEmptyParts)) {
            const QStringList parts = version.split(' ');
            m_profile.registerVersion(parts.join('_'), parts.at(0), parts.at(1), parts.at(2));
            editors.append(EditorInfo(parts.at(0), parts.at(1), parts.at(2)));
        }
        QVERIFY(m_updater->setUpdateInfo(CatalogueBuilder().entries(catalogue.split(", ")).bytes()));
        QStringList info { "", "", "", "" };
        const bool found = m_updater->findDownloadInfo(query.section(' ', 1), info[0], info[1], info[2], info[3]);
        const QHash<QString, QString> answers { { "update", m_updater->findUpdateFor(editors.value(0)).getVersion() },
            { "recent", m_updater->findRecentFor(editors.value(0)).getVersion() },
            { "latest", m_updater->findLatestFor("launcher").getVersion() },
            { "installable",
                CatalogueBuilder::versions(m_updater->getInstallableEditors(editors, false)).join(' ') + " / "
                    + CatalogueBuilder::versions(m_updater->getInstallableEditors(editors, true)).join(' ') },
            { "download", found ? info.join(' ') : m_updater->getErrorText() } };
        QCOMPARE(answers.value(query.section(' ', 0, 0)), answer);
    }
    void transfer_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("sha256"); // "right", "wrong" or none in the catalogue
        QTest::addColumn<QString>("setup"); // what is wrong with "Downloads"
        QTest::addColumn<QString>("failure"); // the beginning of the message; empty for success
        // clang-format off
        QTest::newRow("without length") << "no length" << "setup.exe" << "" << "" << "";
        QTest::newRow("empty body") << "empty" << "setup.exe" << "" << "" << "";
        QTest::newRow("redirect saves its body") << "redirect" << "setup.exe" << "" << "" << "";
        QTest::newRow("closed mid-body") << "cut" << "setup.exe" << "" << "" << "HTTP access failed: ";
        QTest::newRow("digest matches") << "length" << "setup.exe" << "right" << "" << "";
        QTest::newRow("digest differs") << "length" << "setup.exe" << "wrong" << "" << "Failed to download: SHA-256 checksum mismatch: setup.exe (expected ";
        QTest::newRow("digest of another file") << "length" << "other.exe" << "" << "" << "";
        QTest::newRow("parent folder") << "length" << "../outside.exe" << "" << "" << "Failed to download: File name is not allowed: ../outside.exe";
        QTest::newRow("sub-folder") << "length" << "sub/setup.exe" << "" << "" << "Failed to download: File name is not allowed: sub/setup.exe";
        QTest::newRow("dot dot") << "length" << ".." << "" << "" << "Failed to download: File name is not allowed: ..";
        QTest::newRow("Downloads is a file") << "length" << "setup.exe" << "" << "file" << "Failed to download: Failed to open new file: ";
        QTest::newRow("read-only Downloads") << "length" << "setup.exe" << "" << "read-only" << "Failed to download: Failed to remove file: ";
        // clang-format on
    }

    // Every download ends in one finished signal; only a success changes
    // what stands at the file's place, and the old file survives a failure.
    void transfer()
    {
        QFETCH(QString, answer);
        QFETCH(QString, fileName);
        QFETCH(QString, sha256);
        QFETCH(QString, setup);
        QFETCH(QString, failure);
        const QByteArray body = answer == "empty" ? QByteArray() : pattern(300000);
        const QHash<QString, HttpFixture::Answer> answers { { "length", HttpFixture::ok(body) },
            { "no length", HttpFixture::trickled(body, false) }, { "empty", HttpFixture::ok(body) },
            { "redirect", HttpFixture::redirect(302, "/elsewhere", body) },
            { "404", HttpFixture::status(404, "Not Found", body) }, { "cut", HttpFixture::cut(body) } };
        const QString url = serve(answers.value(answer));
        const QByteArray digest = QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex();
        const QByteArray published = sha256 == "right" ? digest : QByteArray(sha256 == "wrong" ? 64 : 0, 'a');
        const QString listed = fileName == "other.exe" ? "setup.exe" : fileName;
        CatalogueBuilder catalogue;
        QVERIFY(m_updater->setUpdateInfo(
            catalogue.entries({ "launcher 1.1.0.0" }).installer(listed, "/x", published).bytes()));

        // The old file stands where the name leads, inside "Downloads" or not.
        const QString target = QDir::cleanPath(downloads() + '/' + fileName);
        QVERIFY(QDir().mkpath(downloads()));
        const bool withOldFile = !QFileInfo(target).isDir();
        if (withOldFile)
            QVERIFY(QDir().mkpath(QFileInfo(target).path()) && TestFiles::write(target, "old installer"));
        if (setup == "file") {
            QVERIFY(QDir(downloads()).removeRecursively() && TestFiles::write(downloads(), "not a folder"));
        } else if (setup == "read-only") {
            QVERIFY(QFile::setPermissions(downloads(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        }

        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        QVERIFY(m_updater->startDownload(url, fileName));
        QVERIFY(m_updater->isDownloading());
        QVERIFY(finished.wait(10000));
        QFile::setPermissions(downloads(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        // Nothing more may come: not once every connection has ended and what
        // it sent has been dealt with.
        QVERIFY(QTest::qWaitFor(
            [&]() { return m_server.closedCount(requestPath(url)) == m_server.requestCount(requestPath(url)); }));
        QCoreApplication::sendPostedEvents();
        QCOMPARE(finished.count(), 1);
        QVERIFY(!m_updater->isDownloading());

        const QString message = finished.first().at(0).toString();
        const bool ok = finished.first().at(1).toBool();
        QVERIFY2(ok == failure.isEmpty() && message.startsWith(failure), qPrintable(message));
        QCOMPARE(message, ok ? m_updater->getInfoText() : m_updater->getErrorText());
        if (ok)
            QCOMPARE(message, "Download success: " + downloads() + '/' + fileName);
        QVERIFY2(m_log.last().startsWith("ApplUpdater::") && m_log.last().endsWith(": " + message),
            qPrintable(m_log.join('\n')));
        if (setup == "file")
            QCOMPARE(TestFiles::read(downloads()), QByteArray("not a folder"));
        else if (withOldFile)
            QCOMPARE(TestFiles::read(target), ok ? body : QByteArray("old installer"));
        else
            QCOMPARE(QFileInfo(target).isFile(), ok);

        // The total of a reply without a length reaches the listeners as it is, and
        // the body is drained in chunks of 102400 bytes with a progress signal per chunk.
        QSet<qint64> unknownTotal, steps;
        for (const QList<QVariant> &step : qAsConst(progress))
            (step.at(1).toLongLong() == -1 ? unknownTotal : steps).insert(step.at(0).toLongLong());
        QCOMPARE(unknownTotal.isEmpty(), answer != "no length");
        for (qint64 chunk = 102400; ok && chunk < body.size(); chunk += 102400)
            QVERIFY2(steps.contains(chunk), qPrintable(QString::number(chunk)));
        if (ok)
            QCOMPARE(progress.last(), (QList<QVariant> { qint64(body.size()), qint64(body.size()) }));
        QCOMPARE(m_server.requestCount("/elsewhere"), 0);
    }

    void installerSource_data()
    {
        QTest::addColumn<QString>("catalogue"); // where the catalogue came from
        QTest::addColumn<QString>("installer"); // its address; empty for the test's server on this machine
        QTest::addColumn<bool>("digest");
        QTest::addColumn<QString>("refusal"); // the end of the reason; empty when the download runs
        const QString plainCatalogue = "the catalogue that names it came over plain http from update.zanmir.example";
        // clang-format off
        QTest::newRow("catalogue over https") << "https://update.zanmir.example/u.json" << "" << false << "";
        QTest::newRow("catalogue from this machine") << "http://127.0.0.1:8/u.json" << "" << false << "";
        QTest::newRow("catalogue over plain http") << "http://update.zanmir.example/u.json" << "" << false << plainCatalogue;
        QTest::newRow("the same, mixed case") << "HTTP://Update.Zanmir.Example/u.json" << "" << false << plainCatalogue;
        QTest::newRow("the same, with digest") << "http://update.zanmir.example/u.json" << "" << true << "";
        QTest::newRow("installer over plain http") << "https://update.zanmir.example/u.json" << "http://dl.zanmir.example/setup.exe" << false << "it would come over plain http from dl.zanmir.example";
        QTest::newRow("local installer") << "https://update.zanmir.example/u.json" << "file:///bin/sh" << true << "is not at an http or https address: [file:///bin/sh]";
        // clang-format on
    }

    // An installer that came, or whose catalogue came, over plain http from
    // another machine is fetched only with its digest; one that is not at a
    // web address never. A refusal comes before any request.
    void installerSource()
    {
        QFETCH(QString, catalogue);
        QFETCH(QString, installer);
        QFETCH(bool, digest);
        QFETCH(QString, refusal);
        const QByteArray body = pattern(1000);
        const QByteArray sha256 = digest ? QCryptographicHash::hash(body, QCryptographicHash::Sha256).toHex() : "";
        QVERIFY(m_updater->setUpdateInfo(
            CatalogueBuilder().entries({ "launcher 1.1.0.0" }).installer("setup.exe", "/x", sha256).bytes()));
        m_updater->setCatalogueUrl(catalogue);
        const QString served = serve(HttpFixture::ok(body));
        const QString url = installer.isEmpty() ? served : installer;

        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        QCOMPARE(m_updater->startDownload(url, "setup.exe"), refusal.isEmpty());
        if (refusal.isEmpty()) {
            QVERIFY(finished.wait(10000));
            QVERIFY(finished.first().at(1).toBool());
            QCOMPARE(TestFiles::read(downloads() + "/setup.exe"), body);
            return;
        }
        const QString error = m_updater->getErrorText();
        QVERIFY2(error.startsWith("Download refused: setup.exe ") && error.endsWith(refusal), qPrintable(error));
        QCOMPARE(m_log.last(), "ApplUpdater::startDownload: " + error);
        // Refused on the spot: nothing was asked of any server.
        QVERIFY(!m_updater->isDownloading());
        QCOMPARE(finished.count(), 0);
        QVERIFY(!QFile::exists(downloads() + "/setup.exe"));
    }

    void cancel_data()
    {
        QTest::addColumn<QString>("server"); // what the server does when the cancel comes
        QTest::newRow("never answers") << "silent";
        QTest::newRow("nothing running") << "";
    }

    // A cancel ends a download at any point without a finished signal and
    // without touching a file; a later cancel finds nothing to do.
    void cancel()
    {
        QFETCH(QString, server);
        QVERIFY(QDir().mkpath(downloads()) && TestFiles::write(downloads() + "/setup.exe", "old installer"));
        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        const QString notStarted = "ApplUpdater::cancelDownload: Downloading not yet started";
        QString url;
        if (!server.isEmpty()) {
            url = serve(HttpFixture::silent());
            QVERIFY(m_updater->startDownload(url, "setup.exe"));
            QVERIFY(waitForRequest(url));
            QTest::qWait(200);
        }
        m_updater->cancelDownload();
        QCOMPARE(m_log.last(),
            server.isEmpty() ? notStarted
                             : "ApplUpdater::cancelDownload: Download canceled: " + downloads() + "/setup.exe");
        QVERIFY(!m_updater->isDownloading());
        // The connection ends from the client's side, since the server never
        // finishes; by then the end of the reply has been dealt with.
        if (!url.isEmpty())
            QVERIFY(waitForHangUp(url));
        QCOMPARE(finished.count(), 0);
        QCOMPARE(TestFiles::read(downloads() + "/setup.exe"), QByteArray("old installer"));
        m_updater->cancelDownload();
        QCOMPARE(m_log.last(), notStarted);
    }

    // A second start while the first still transfers drops the first.
    void secondStartDropsTheFirst()
    {
        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        const QString first = serve(HttpFixture::stalled(pattern(300000)));
        QVERIFY(m_updater->startDownload(first, "first.exe"));
        QVERIFY(waitForRequest(first));
        QTest::qWait(200);
        QVERIFY(m_updater->startDownload(serve(HttpFixture::ok("second")), "second.exe"));
        QVERIFY(finished.wait(10000));
        // The first one's connection is dropped, not left to finish some day.
        QVERIFY(waitForHangUp(first));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.first().at(0).toString(), "Download success: " + downloads() + "/second.exe");
        QVERIFY(!QFile::exists(downloads() + "/first.exe"));
    }

    void run_data()
    {
        QTest::addColumn<QString>("program"); // the file's text; none: no file
        QTest::addColumn<bool>("wait");
        QTest::addColumn<bool>("uninstaller"); // through openUninstallerFile, which logs
        QTest::addColumn<QString>("error"); // %1 the path; empty when it starts
        // The program leaves its mark half a second after "go" exists. For a
        // call that waits, "go" is there from the start, so the mark is there
        // when the call returns; for one that does not, the test makes it only
        // after the call, so the mark cannot be there yet. (A call that wrongly
        // waited would wait for ever: the program gives up after a minute.)
        const QString script = "#!/bin/sh\nfor i in $(seq 1200); do [ -e \"$HOME/go\" ] && break; sleep 0.05; done\n"
                               "sleep 0.5\necho ran >> \"$HOME/marker\"\nexit %1\n";
        QTest::newRow("missing file") << "" << true << false << "File not found: %1";
        QTest::newRow("waits for the end") << script.arg(0) << true << false << "";
        QTest::newRow("does not wait") << script.arg(0) << false << false << "";
        QTest::newRow("exits non-zero") << script.arg(3) << true << false << "";
        QTest::newRow("uninstaller") << script.arg(0) << true << true << "";
    }

    // A file arrives without the execute bit and starts all the same; the
    // wait covers the program's run, and its exit code plays no part.
    void run()
    {
        QFETCH(QString, program);
        QFETCH(bool, wait);
        QFETCH(bool, uninstaller);
        QFETCH(QString, error);
        const QString path = downloads() + "/setup.exe";
        const QString marker = m_profile.root() + "/home/marker", go = m_profile.root() + "/home/go";
        QFile::remove(marker);
        QFile::remove(go);
        QVERIFY(QDir().mkpath(downloads()));
        if (!program.isEmpty()) {
            QVERIFY(TestFiles::write(path, program.toUtf8()));
            QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        }
        if (wait)
            QVERIFY(TestFiles::write(go, ""));

        const bool started
            = uninstaller ? m_updater->openUninstallerFile(path, wait) : m_updater->openExecutableFile(path, wait);
        const QString text = started ? m_updater->getInfoText() : m_updater->getErrorText();
        QCOMPARE(started, error.isEmpty());
        QCOMPARE(text, error.isEmpty() ? "ApplUpdater::openExecutableFile: " + path : error.arg(path));
        if (uninstaller)
            QCOMPARE(m_log.last(), "ApplUpdater::openUninstallerFile: " + text);
        if (!started) {
            QVERIFY(!QFile::exists(marker));
            return;
        }
        QVERIFY(QFile::permissions(path) & QFileDevice::ExeOwner);
        QCOMPARE(QFile::exists(marker), wait);
        QVERIFY(TestFiles::write(go, ""));
        QVERIFY(QTest::qWaitFor([&]() { return QFile::exists(marker); }, 5000));
    }
};

QTEST_GUILESS_MAIN(TestUpdater)
#include "tst_updater.moc"
