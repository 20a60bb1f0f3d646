#include "applupdater.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "sha256.h"
#include "testfiles.h"
#include "testprivileges.h"
#include "testprofile.h"

#include <QSignalSpy>
#include <QtTest>

#include <csignal>
#include <sys/resource.h>

// Installers fetched from real servers on 127.0.0.1 into the profile's
// "Downloads": what takes the installer's name, what stays for the next try
// and what a user is told, for servers that behave and servers that do not.
class TestDownload : public QObject
{
    Q_OBJECT

    TestProfile m_profile;
    HttpFixture m_server;
    QStringList m_log;
    QScopedPointer<ApplUpdater> m_updater;
    int m_paths = 0;

    QString downloads() const { return m_profile.root() + "/home/Downloads"; }
    QString part(const QString &fileName = "setup.exe") const { return downloads() + "/." + fileName + ".part"; }
    // A fresh path on the scripted server, answered so.
    QString serve(const HttpFixture::Answer &answer)
    {
        const QString path = QStringLiteral("/installer/%1").arg(++m_paths);
        m_server.setAnswer(path, answer);
        return m_server.url(path);
    }
    static QString pathOf(const QString &url) { return QUrl(url).path(); }
    static QByteArray pattern(int size, int seed = 0)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = char((i * 7 + i / 251 + seed) & 0xff);
        return bytes;
    }
    static QByteArray sha256(const QByteArray &bytes)
    {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex();
    }
    // The catalogue names setup.exe, with that digest if any.
    void publish(const QByteArray &digest = QByteArray())
    {
        QVERIFY(m_updater->setUpdateInfo(
            CatalogueBuilder().entries({ "launcher 1.1.0.0" }).installer("setup.exe", "/x", digest).bytes()));
    }
    // Runs one download to its end; the finished signal's arguments.
    QList<QVariant> download(const QString &url, const QString &fileName = "setup.exe")
    {
        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        if (!m_updater->startDownload(url, fileName) || !finished.wait(20000))
            return {};
        return finished.takeFirst();
    }

private slots:
    void initTestCase() { QVERIFY(TestPrivileges::dropFileOverride() && m_server.listen()); }

    void init()
    {
        QFile::setPermissions(part(), QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        QDir(downloads()).removeRecursively();
        QFile::remove(downloads()); // a row may have left a file in its place
        QVERIFY(QDir().mkpath(downloads()));
        m_log.clear();
        m_updater.reset(new ApplUpdater("win64", [this](const QString &line) { m_log.append(line); }));
        publish();
    }

    void transfer_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("setup"); // the digest published, or what is wrong with "Downloads"
        QTest::addColumn<QString>("failure"); // the beginning of the message; empty for success
        QTest::addColumn<int>("kind"); // DownloadFailure::Kind
        QTest::addColumn<bool>("kept"); // the bytes stay for the next try
        using F = DownloadFailure;
        // clang-format off
        QTest::newRow("without length") << "no length" << "setup.exe" << "" << "" << 0 << false;
        QTest::newRow("empty body") << "empty" << "setup.exe" << "" << "" << 0 << false;
        QTest::newRow("digest matches") << "whole" << "setup.exe" << "right digest" << "" << 0 << false;
        QTest::newRow("digest of another file") << "whole" << "other.exe" << "wrong digest" << "" << 0 << false;
        QTest::newRow("redirects followed") << "redirect" << "setup.exe" << "" << "" << 0 << false;
        QTest::newRow("redirect loop") << "loop" << "setup.exe" << "" << "HTTP access failed: " << int(F::TooManyRedirects) << false;
        QTest::newRow("not found") << "404" << "setup.exe" << "" << "HTTP access failed: " << int(F::HttpStatus) << false;
        QTest::newRow("closed mid-body") << "cut" << "setup.exe" << "" << "HTTP access failed: " << int(F::ConnectionLost) << true;
        // Given up after the stall limit, with the bytes kept for the next try.
        QTest::newRow("stalled") << "stalled" << "setup.exe" << "" << "HTTP access failed: Nothing received for 300 ms from " << int(F::Stalled) << true;
        QTest::newRow("closed, no validator") << "cut, no validator" << "setup.exe" << "" << "HTTP access failed: " << int(F::ConnectionLost) << false;
        QTest::newRow("digest differs") << "whole" << "setup.exe" << "wrong digest" << "Failed to download: SHA-256 checksum mismatch: setup.exe (expected " << int(F::ChecksumMismatch) << false;
        QTest::newRow("more than announced") << "too long" << "setup.exe" << "" << "HTTP access failed: More than the 1000 bytes announced" << int(F::BadAnswer) << false;
        QTest::newRow("206 not asked for") << "unasked 206" << "setup.exe" << "" << "HTTP access failed: A part that was not asked for" << int(F::BadAnswer) << false;
        QTest::newRow("parent folder") << "whole" << "../outside.exe" << "" << "Failed to download: File name is not allowed: ../outside.exe" << int(F::FileNameRefused) << false;
        QTest::newRow("sub-folder") << "whole" << "sub/setup.exe" << "" << "Failed to download: File name is not allowed: sub/setup.exe" << int(F::FileNameRefused) << false;
        QTest::newRow("dot dot") << "whole" << ".." << "" << "Failed to download: File name is not allowed: .." << int(F::FileNameRefused) << false;
        QTest::newRow("Downloads is a file") << "whole" << "setup.exe" << "file" << "Failed to download: Failed to open new file: " << int(F::WriteFailed) << false;
        QTest::newRow("read-only Downloads") << "whole" << "setup.exe" << "read-only" << "Failed to download: Failed to open new file: " << int(F::WriteFailed) << false;
        QTest::newRow("disk full mid-body") << "cut, no validator" << "setup.exe" << "file size limit" << "Failed to download: Failed to write: " << int(F::WriteFailed) << false;
        QTest::newRow("no room for the length") << "huge" << "setup.exe" << "" << "Failed to download: Not enough free space in " << int(F::NoSpace) << false;
        // clang-format on
    }

    // Every download ends in one finished signal; only a success changes
    // what stands at the file's name, an old file survives any failure, and
    // only a break that the server's validator lets continue keeps its bytes.
    void transfer()
    {
        QFETCH(QString, answer);
        QFETCH(QString, fileName);
        QFETCH(QString, setup);
        QFETCH(QString, failure);
        QFETCH(int, kind);
        QFETCH(bool, kept);
        const QByteArray body = answer == "empty" ? QByteArray() : pattern(300000);
        HttpFixture::Answer unasked = HttpFixture::ok(body);
        unasked.status = "206 Partial Content";
        unasked.headers = "Content-Range: bytes 0-299999/300000\r\n";
        HttpFixture::Answer tooLong = HttpFixture::ok(body);
        tooLong.withLength = false;
        tooLong.headers = "Content-Length: 1000\r\n";
        tooLong.chunked = true;
        HttpFixture::Answer huge = HttpFixture::stalled({});
        huge.withLength = false;
        huge.headers = "Content-Length: 1125899906842624\r\n"; // a petabyte
        HttpFixture::Answer cut = HttpFixture::cut(body);
        cut.headers = "Last-Modified: Tue, 03 Nov 2026 10:00:00 GMT\r\n";
        HttpFixture::Answer stalled = HttpFixture::stalled(body);
        stalled.headers = "ETag: \"s\"\r\n";
        m_server.setAnswer("/loop", HttpFixture::redirect(302, "/loop", "loop body"));
        m_server.setAnswer("/hop", HttpFixture::redirect(301, serve(HttpFixture::ok(body)).toLatin1(), "hop body"));
        const QHash<QString, HttpFixture::Answer> answers { { "whole", HttpFixture::ok(body) },
            { "no length", HttpFixture::trickled(body, false) }, { "empty", HttpFixture::ok(body) },
            { "redirect", HttpFixture::redirect(302, "/hop", "redirect body") },
            { "loop", HttpFixture::redirect(302, "/loop", "loop body") },
            { "404", HttpFixture::status(404, "Not Found", "no such installer") }, { "cut", cut },
            { "cut, no validator", HttpFixture::cut(body) }, { "too long", tooLong }, { "unasked 206", unasked },
            { "huge", huge }, { "stalled", stalled } };
        const QString url = serve(answers.value(answer));
        publish(setup.endsWith(" digest") ? (setup == "right digest" ? sha256(body) : QByteArray(64, 'a')) : "");

        // The old file stands where the name leads, inside "Downloads" or not.
        const QString target = QDir::cleanPath(downloads() + '/' + fileName);
        const bool withOldFile = !QFileInfo(target).isDir();
        if (withOldFile)
            QVERIFY(QDir().mkpath(QFileInfo(target).path()) && TestFiles::write(target, "old installer"));
        if (setup == "file")
            QVERIFY(QDir(downloads()).removeRecursively() && TestFiles::write(downloads(), "not a folder"));
        else if (setup == "read-only")
            QVERIFY(QFile::setPermissions(downloads(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        // A write past this size fails as on a full disk, for root too.
        rlimit limit {};
        getrlimit(RLIMIT_FSIZE, &limit);
        const rlimit saved = limit;
        if (setup == "file size limit") {
            std::signal(SIGXFSZ, SIG_IGN);
            limit.rlim_cur = 100000;
            QVERIFY(setrlimit(RLIMIT_FSIZE, &limit) == 0);
        }

        if (answer == "stalled")
            m_updater->setStallLimit(300);
        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        const QList<QVariant> finished = download(url, fileName);
        setrlimit(RLIMIT_FSIZE, &saved);
        QFile::setPermissions(downloads(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QVERIFY(!finished.isEmpty());
        QVERIFY(!m_updater->isDownloading());

        const QString message = finished.at(0).toString();
        const bool ok = finished.at(1).toBool();
        QVERIFY2(ok == failure.isEmpty() && message.startsWith(failure), qPrintable(message));
        QCOMPARE(message, ok ? m_updater->getInfoText() : m_updater->getErrorText());
        QCOMPARE(message, ok ? "Download success: " + downloads() + '/' + fileName : message);
        QCOMPARE(m_log.last(), "ApplUpdater::downloadFinished: " + message);
        if (!ok)
            QCOMPARE(int(m_updater->getDownloadFailure().kind), kind);
        if (setup == "file")
            QCOMPARE(TestFiles::read(downloads()), QByteArray("not a folder"));
        else if (withOldFile)
            QCOMPARE(TestFiles::read(target), ok ? body : QByteArray("old installer"));
        else
            QCOMPARE(QFileInfo(target).isFile(), ok);
        QCOMPARE(QFile::exists(part()), kept);
        QCOMPARE(QFile::exists(part() + ".json"), kept);
        QCOMPARE(
            QDir(downloads()).entryList(QDir::AllEntries | QDir::Hidden).filter(QRegularExpression("\\.part\\.\\d")),
            QStringList()); // nothing moved aside

        // A total without a length reaches the listeners as -1; the last
        // progress of a success is the whole.
        bool unknownTotal = false;
        for (const QList<QVariant> &step : qAsConst(progress))
            unknownTotal |= step.at(1).toLongLong() == -1;
        QCOMPARE(unknownTotal, answer == "no length");
        if (ok)
            QCOMPARE(progress.last(), (QList<QVariant> { qint64(body.size()), qint64(body.size()) }));
        if (answer == "redirect")
            QVERIFY2(m_log.filter("FileDownload::logRedirect: Redirected to ").size() == 2
                    && !m_log.filter(" bytes from " + m_server.url("/installer/")).isEmpty(),
                qPrintable(m_log.join('\n')));
        if (answer == "loop")
            QCOMPARE(m_server.requestCount("/loop"), 5); // five redirects followed, the sixth not
        if (answer == "stalled") {
            QCOMPARE(m_updater->getDownloadFailure().bytesDone, 150000);
            QCOMPARE(TestFiles::read(part()).size(), 150000);
            QVERIFY(QTest::qWaitFor([&]() { return m_server.abandonedCount(pathOf(url)) == 1; }));
        }
    }

    void resume_data()
    {
        QTest::addColumn<QString>("second"); // how the server answers the second try
        QTest::addColumn<bool>("withDigest");
        QTest::addColumn<QString>("failure"); // the second try's message; empty for success
        // clang-format off
        QTest::newRow("continued") << "same file" << false << "";
        QTest::newRow("continued, digest over both") << "same file" << true << "";
        QTest::newRow("the file changed") << "new version" << true << "";
        QTest::newRow("no ranges") << "no ranges" << false << "";
        QTest::newRow("digest fails after resume") << "wrong tail" << true << "Failed to download: SHA-256 checksum mismatch: ";
        QTest::newRow("server error") << "503" << false << "HTTP access failed: ";
        // clang-format on
    }

    // A try that broke off keeps its bytes with the server's validator; the
    // next asks for the rest only while the server still has that version,
    // and its result is the whole file either way. A digest that fails after
    // a resume leaves nothing, so the try after starts from zero.
    void resume()
    {
        QFETCH(QString, second);
        QFETCH(bool, withDigest);
        QFETCH(QString, failure);
        const QByteArray body = pattern(300000);
        const QByteArray newBody = pattern(250000, 1);
        const QByteArray wanted = second == "new version" ? newBody : body;
        if (withDigest)
            publish(sha256(wanted));

        // The first try breaks off after 120000 bytes.
        HttpFixture::Answer first = HttpFixture::resumable(body, "\"v1\"");
        first.dropAt = 120000;
        const QString path = pathOf(serve(first));
        QList<QVariant> finished = download(m_server.url(path));
        QCOMPARE(finished.value(1).toBool(), false);
        const DownloadFailure lost = m_updater->getDownloadFailure();
        QCOMPARE(int(lost.kind), int(DownloadFailure::ConnectionLost));
        QCOMPARE(lost.bytesDone, 120000);
        QCOMPARE(lost.bytesTotal, body.size());
        QCOMPARE(TestFiles::read(part()), body.left(120000));

        QByteArray tail = body.mid(120000);
        tail[1000] = char(tail.at(1000) ^ 1);
        QByteArray lying = body.left(120000) + tail;
        const QHash<QString, HttpFixture::Answer> answers { { "same file", HttpFixture::resumable(body, "\"v1\"") },
            { "new version", HttpFixture::resumable(newBody, "\"v2\"") }, { "no ranges", HttpFixture::ok(body) },
            { "wrong tail", HttpFixture::resumable(lying, "\"v1\"") },
            { "503", HttpFixture::status(503, "Service Unavailable", "busy") } };
        m_server.setAnswer(path, answers.value(second));
        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        finished = download(m_server.url(path));
        QVERIFY(!finished.isEmpty());
        const QByteArray request = m_server.lastRequest(path);
        QVERIFY2(request.contains("\r\nRange: bytes=120000-\r\n") && request.contains("\r\nIf-Range: \"v1\"\r\n"),
            request.constData());
        QVERIFY2(finished.at(0).toString().startsWith(failure), qPrintable(finished.at(0).toString()));
        if (failure.isEmpty()) {
            QCOMPARE(TestFiles::read(downloads() + "/setup.exe"), wanted);
            // A continued download reports from where it stands, not from zero.
            qint64 lowest = wanted.size();
            for (const QList<QVariant> &step : qAsConst(progress))
                lowest = qMin(lowest, step.at(0).toLongLong());
            QCOMPARE(lowest >= 120000, second == "same file");
        }
        QCOMPARE(QFile::exists(part()), second == "503");
        if (second == "wrong tail") {
            // Nothing is left to continue: the next try asks for the whole.
            m_server.setAnswer(path, HttpFixture::resumable(body, "\"v1\""));
            QCOMPARE(download(m_server.url(path)).value(1).toBool(), true);
            QVERIFY(!m_server.lastRequest(path).contains("Range:"));
        }
    }

    void leftOverPart_data()
    {
        QTest::addColumn<QString>("leftOver");
        QTest::addColumn<QString>("fate"); // "continued", "moved aside" or "removed"
        // clang-format off
        QTest::newRow("ours") << "ours" << "continued";
        QTest::newRow("longer than the whole file") << "longer" << "moved aside";
        QTest::newRow("a folder") << "folder" << "moved aside";
        QTest::newRow("unreadable") << "unreadable" << "moved aside";
        QTest::newRow("no record") << "no record" << "moved aside";
        QTest::newRow("from another address") << "other address" << "removed";
        // clang-format on
    }

    // A part file is continued only when its record says it is ours, for
    // this address, and no longer than the file; anything else is never
    // written into, and what may not be ours is kept aside for a look.
    void leftOverPart()
    {
        QFETCH(QString, leftOver);
        QFETCH(QString, fate);
        const QByteArray body = pattern(200000);
        const QString url = serve(HttpFixture::resumable(body, "\"v1\""));
        const QJsonObject record { { "url", leftOver == "other address" ? url + "x" : url }, { "validator", "\"v1\"" },
            { "length", leftOver == "longer" ? 50000 : 200000 } };
        if (leftOver == "folder") {
            QVERIFY(QDir().mkpath(part() + "/inside"));
        } else {
            QVERIFY(TestFiles::write(part(), body.left(80000)));
            if (leftOver == "unreadable")
                QVERIFY(QFile::setPermissions(part(), QFileDevice::WriteOwner));
        }
        if (leftOver != "no record")
            QVERIFY(TestFiles::write(part() + ".json", QJsonDocument(record).toJson()));

        QCOMPARE(download(url).value(1).toBool(), true);
        QCOMPARE(TestFiles::read(downloads() + "/setup.exe"), body);
        const QString path = pathOf(url);
        QCOMPARE(m_server.lastRequest(path).contains("Range: bytes=80000-"), fate == "continued");
        const QStringList aside = QDir(downloads()).entryList({ ".setup.exe.part.*" }, QDir::AllEntries | QDir::Hidden);
        QCOMPARE(aside.filter(QRegularExpression("\\.\\d{8}-\\d{6}$")).size(), fate == "moved aside" ? 1 : 0);
        QVERIFY(!QFile::exists(part()) && !QFile::exists(part() + ".json"));
        if (fate != "continued")
            QVERIFY2(!m_log.filter(fate == "removed" ? "Removed partial file: " : "Moved aside: ").isEmpty(),
                qPrintable(m_log.join('\n')));
    }

    // Sizes are 64-bit from the server's headers to the progress: the last
    // bytes of a 5 GiB installer continue a part (sparse, so it costs no disk).
    void largerThanFourGiB()
    {
        const qint64 total = 5LL * 1024 * 1024 * 1024;
        const QByteArray tail = pattern(100000);
        const qint64 offset = total - tail.size();
        HttpFixture::Answer answer = HttpFixture::ok(tail);
        answer.status = "206 Partial Content";
        answer.headers = QStringLiteral("ETag: \"big\"\r\nContent-Range: bytes %1-%2/%3\r\n")
                             .arg(offset)
                             .arg(total - 1)
                             .arg(total)
                             .toLatin1();
        const QString url = serve(answer);
        QFile sparse(part());
        QVERIFY(sparse.open(QIODevice::WriteOnly) && sparse.resize(offset));
        sparse.close();
        const QJsonObject record { { "url", url }, { "validator", "\"big\"" }, { "length", double(total) } };
        QVERIFY(TestFiles::write(part() + ".json", QJsonDocument(record).toJson()));

        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        const QList<QVariant> finished = download(url);
        const QString target = downloads() + "/setup.exe";
        const qint64 size = QFileInfo(target).size();
        QFile file(target);
        const bool tailMatches = file.open(QIODevice::ReadOnly) && file.seek(offset) && file.readAll() == tail;
        QFile::remove(target);
        QCOMPARE(finished.value(1).toBool(), true);
        QCOMPARE(size, total);
        QVERIFY(tailMatches);
        QCOMPARE(progress.last(), (QList<QVariant> { total, total }));
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
        publish(digest ? sha256(body) : QByteArray());
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

    // A cancel stops the transfer at once (the server sees the connection
    // close), removes what was written and sends no finished signal; a
    // second start drops the first download the same way. What arrives
    // until a later download has ended shows that nothing of the first came.
    void cancelAndReplace_data()
    {
        QTest::addColumn<bool>("replace");
        QTest::newRow("cancel") << false;
        QTest::newRow("second start") << true;
    }

    void cancelAndReplace()
    {
        QFETCH(bool, replace);
        QVERIFY(TestFiles::write(downloads() + "/first.exe", "old installer"));
        HttpFixture::Answer stalled = HttpFixture::stalled(pattern(300000));
        stalled.headers = "ETag: \"f\"\r\n";
        const QString first = serve(stalled);
        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        QVERIFY(m_updater->startDownload(first, "first.exe"));
        QVERIFY(QTest::qWaitFor([&]() { return QFile(part("first.exe")).size() == 150000; }));

        const QString second = serve(HttpFixture::ok("second"));
        if (replace) {
            QVERIFY(m_updater->startDownload(second, "second.exe"));
        } else {
            m_updater->cancelDownload();
            QCOMPARE(m_log.last(), "ApplUpdater::cancelDownload: Download canceled: " + downloads() + "/first.exe");
            QVERIFY(!m_updater->isDownloading());
            m_updater->cancelDownload();
            QCOMPARE(m_log.last(), QString("ApplUpdater::cancelDownload: Downloading not yet started"));
        }
        QVERIFY(!QFile::exists(part("first.exe")) && !QFile::exists(part("first.exe") + ".json"));
        QVERIFY(QTest::qWaitFor([&]() { return m_server.abandonedCount(pathOf(first)) == 1; }));
        progress.clear();
        if (!replace)
            QVERIFY(m_updater->startDownload(second, "second.exe"));
        QVERIFY(finished.wait(10000));
        QCOMPARE(finished.count(), 1);
        QCOMPARE(finished.first().at(0).toString(), "Download success: " + downloads() + "/second.exe");
        for (const QList<QVariant> &step : qAsConst(progress))
            QCOMPARE(step.at(1).toLongLong(), 6); // the first one's 300000 never again
        QCOMPARE(TestFiles::read(downloads() + "/first.exe"), QByteArray("old installer"));
    }

    // What downloads that broke off leave behind goes after a week
    // untouched; a part without a record of ours is not ours to remove.
    void staleParts()
    {
        const QDateTime old = QDateTime::currentDateTime().addDays(-8);
        const QStringList files { ".old.exe.part", ".old.exe.part.json", ".orphan.exe.part.json", ".fresh.exe.part",
            ".fresh.exe.part.json", ".foreign.part", "setup.exe" };
        for (const QString &name : files) {
            QVERIFY(TestFiles::write(downloads() + '/' + name, "x"));
            if (!name.startsWith(".fresh.exe.part"))
                QVERIFY(TestFiles::setModified(downloads() + '/' + name, old));
        }
        // A part still written today keeps its record, however old that is.
        QVERIFY(TestFiles::setModified(downloads() + "/.fresh.exe.part.json", old));
        QStringList failures;
        QStringList removed = ApplUpdater::removeStaleDownloads(&failures);
        removed.sort();
        QCOMPARE(removed,
            (QStringList { downloads() + "/.old.exe.part", downloads() + "/.old.exe.part.json",
                downloads() + "/.orphan.exe.part.json" }));
        QCOMPARE(failures, QStringList());
    }

    // The digest that downloads check comes from the crypto library, loaded
    // by the first hash: the same as Qt's however the bytes are cut, and
    // each result starts the next hash from nothing.
    void hashInPieces()
    {
        const QByteArray bytes = pattern(300000);
        Sha256 hash;
        QVERIFY(hash.isAccelerated());
        for (int cut : { 1, 4096, 262144 }) {
            for (int at = 0; at < bytes.size(); at += cut)
                hash.addData(bytes.constData() + at, qMin(cut, bytes.size() - at));
            QCOMPARE(hash.resultHex(), sha256(bytes));
        }
        QCOMPARE(hash.resultHex(), sha256(QByteArray()));
    }
};

QTEST_GUILESS_MAIN(TestDownload)
#include "tst_download.moc"
