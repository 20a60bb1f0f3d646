#include "applupdater.h"
#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QSignalSpy>
#include <QtTest>

#include <unistd.h>

// Installers fetched from a real server on 127.0.0.1 into the profile's
// "Downloads", and the programs started from there.
class TestDownload : public QObject
{
    Q_OBJECT

    TestProfile m_profile;
    HttpFixture m_server;
    QStringList m_log;
    QScopedPointer<ApplUpdater> m_updater;
    int m_paths = 0;

    QString downloads() const { return m_profile.root() + "/home/Downloads"; }
    // A fresh path on the scripted server, answered so.
    QString serve(const HttpFixture::Answer &answer)
    {
        const QString path = QStringLiteral("/installer/%1?t=pe1").arg(++m_paths);
        m_server.setAnswer(path, answer);
        return m_server.url(path);
    }
    bool waitForRequest(const QString &url) const
    {
        const QString path = QUrl(url).path() + '?' + QUrl(url).query();
        return QTest::qWaitFor([&]() { return m_server.requestCount(path) == 1; });
    }
    static QByteArray pattern(int size)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = char((i * 7 + i / 251) & 0xff);
        return bytes;
    }

private slots:
    void initTestCase() { QVERIFY(m_server.listen()); }

    void init()
    {
        QDir(downloads()).removeRecursively();
        QFile::remove(downloads()); // a row may have left a file in its place
        m_log.clear();
        m_updater.reset(new ApplUpdater("win64", [this](const QString &line) { m_log.append(line); }));
    }

    void transfer_data()
    {
        QTest::addColumn<QString>("answer");
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("sha256"); // "right", "wrong" or none in the catalogue
        QTest::addColumn<QString>("setup"); // what is wrong with "Downloads"
        QTest::addColumn<QString>("failure"); // the beginning of the message; empty for success
        // clang-format off
        QTest::newRow("with length") << "length" << "setup.exe" << "" << "" << "";
        QTest::newRow("without length") << "no length" << "setup.exe" << "" << "" << "";
        QTest::newRow("empty body") << "empty" << "setup.exe" << "" << "" << "";
        QTest::newRow("redirect saves its body") << "redirect" << "setup.exe" << "" << "" << "";
        QTest::newRow("404") << "404" << "setup.exe" << "" << "" << "HTTP access failed: ";
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
        const QByteArray published = sha256 == "right" ? digest
            : sha256 == "wrong"                        ? QByteArray(64, 'a')
                                                       : QByteArray();
        QVERIFY(
            m_updater->setUpdateInfo(CatalogueBuilder()
                                         .entries({ "launcher 1.1.0.0" })
                                         .installer(fileName == "other.exe" ? "setup.exe" : fileName, "/x", published)
                                         .bytes()));

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
            if (::geteuid() == 0)
                QSKIP("permissions do not stop the superuser");
        }

        QSignalSpy finished(m_updater.data(), SIGNAL(signalDownloadFinished(QString, bool)));
        QSignalSpy progress(m_updater.data(), SIGNAL(signalUpdateProgress(qint64, qint64)));
        QVERIFY(m_updater->startDownload(url, fileName));
        QVERIFY(m_updater->isDownloading());
        QVERIFY(finished.wait(10000));
        QFile::setPermissions(downloads(), QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        QTest::qWait(50); // nothing more may come
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

    void cancel_data()
    {
        QTest::addColumn<QString>("server"); // what the server does when the cancel comes
        QTest::newRow("never answers") << "silent";
        QTest::newRow("stalls mid-body") << "stalled";
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
        if (!server.isEmpty()) {
            const QString url
                = serve(server == "silent" ? HttpFixture::silent() : HttpFixture::stalled(pattern(300000)));
            QVERIFY(m_updater->startDownload(url, "setup.exe"));
            QVERIFY(waitForRequest(url));
            QTest::qWait(200);
        }
        m_updater->cancelDownload();
        QCOMPARE(m_log.last(),
            server.isEmpty() ? notStarted
                             : "ApplUpdater::cancelDownload: Download canceled: " + downloads() + "/setup.exe");
        QVERIFY(!m_updater->isDownloading());
        QTest::qWait(300);
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
        QTest::qWait(300);
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
        const QString script = "#!/bin/sh\nsleep 0.5\necho ran >> \"$HOME/marker\"\nexit %1\n";
        QTest::newRow("missing file") << "" << true << false << "File not found: %1";
        QTest::newRow("waits for the end") << script.arg(0) << true << false << "";
        QTest::newRow("does not wait") << script.arg(0) << false << false << "";
        QTest::newRow("exits non-zero") << script.arg(3) << true << false << "";
        QTest::newRow("uninstaller") << script.arg(0) << true << true << "";
        QTest::newRow("missing uninstaller") << "" << false << true << "File not found: %1";
        QTest::newRow("not a program, waiting")
            << "plain text" << true << false << "ApplUpdater::openExecutableFile: failed ShellExecuteEx %1";
        QTest::newRow("not a program, detached")
            << "plain text" << false << false << "ApplUpdater::openExecutableFile: failed ShellExecuteEx %1";
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
        const QString marker = m_profile.root() + "/home/marker";
        QFile::remove(marker);
        QVERIFY(QDir().mkpath(downloads()));
        if (!program.isEmpty()) {
            QVERIFY(TestFiles::write(path, program.toUtf8()));
            QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        }

        QElapsedTimer elapsed;
        elapsed.start();
        const bool started
            = uninstaller ? m_updater->openUninstallerFile(path, wait) : m_updater->openExecutableFile(path, wait);
        const qint64 took = elapsed.elapsed();
        const QString text = started ? m_updater->getInfoText() : m_updater->getErrorText();
        QCOMPARE(started, error.isEmpty());
        QCOMPARE(text, error.isEmpty() ? "ApplUpdater::openExecutableFile: " + path : error.arg(path));
        if (uninstaller)
            QCOMPARE(m_log.last(), "ApplUpdater::openUninstallerFile: " + text);
        if (!started) {
            QTest::qWait(700);
            QVERIFY(!QFile::exists(marker));
            return;
        }
        QVERIFY(QFile::permissions(path) & QFileDevice::ExeOwner);
        QVERIFY2(wait ? took >= 500 : took < 500, qPrintable(QString::number(took)));
        QCOMPARE(QFile::exists(marker), wait);
        QVERIFY(QTest::qWaitFor([&]() { return QFile::exists(marker); }, 5000));
    }
};

QTEST_GUILESS_MAIN(TestDownload)
#include "tst_download.moc"
