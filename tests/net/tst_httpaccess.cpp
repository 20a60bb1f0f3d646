#include "httpaccessutility.h"
#include "httpfixture.h"
#include "networkaccesshelper.h"

#include <QEventLoop>
#include <QFile>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTemporaryDir>
#include <QTimer>
#include <QtTest>

Q_DECLARE_METATYPE(HttpFixture::Answer)

static const QString kPrimeBody = QStringLiteral("body of an earlier answer");

// What Qt itself says about a failed fetch of the URL, to compare the
// utility's error text with.
static QString qtErrorText(const QString &url)
{
    QNetworkAccessManager manager;
    QNetworkReply *reply = manager.get(QNetworkRequest(QUrl(url)));
    QEventLoop loop;
    QObject::connect(reply, SIGNAL(finished()), &loop, SLOT(quit()));
    if (!reply->isFinished())
        loop.exec();
    const QString text = reply->errorString();
    delete reply;
    return text;
}

// The blocking fetch against a scripted server on 127.0.0.1, and the name
// lookup that tells whether the network is there.
class TestHttpAccess : public QObject
{
    Q_OBJECT

private:
    HttpFixture m_server;
    QByteArray m_savedPublicHost;

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        m_server.setAnswer(QStringLiteral("/prime"), HttpFixture::ok(kPrimeBody.toUtf8()));
        m_server.setAnswer(QStringLiteral("/target"), HttpFixture::ok("redirect target"));
        m_savedPublicHost = qgetenv("ZANMIR_PUBLIC_HOST");
    }

    void cleanupTestCase()
    {
        if (m_savedPublicHost.isEmpty())
            qunsetenv("ZANMIR_PUBLIC_HOST");
        else
            qputenv("ZANMIR_PUBLIC_HOST", m_savedPublicHost);
    }

    void get_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<HttpFixture::Answer>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("statusCode");
        QTest::addColumn<QString>("body");

        QTest::newRow("200 with a UTF-8 body") << QStringLiteral("/page")
                                               << HttpFixture::ok("Gr\xc3\xbc\xc3\x9f"
                                                                  "e\n{\"a\": 1}")
                                               << true << 200
                                               << QString::fromUtf8("Gr\xc3\xbc\xc3\x9f"
                                                                    "e\n{\"a\": 1}");
        QTest::newRow("200 without a body replaces the old body")
            << QStringLiteral("/empty") << HttpFixture::ok(QByteArray()) << true << 200 << QString();
        QTest::newRow("200 without a length ends at close")
            << QStringLiteral("/nolength") << HttpFixture::withoutLength("read until the server hangs up") << true
            << 200 << QStringLiteral("read until the server hangs up");
        HttpFixture::Answer slow = HttpFixture::ok("late but complete");
        slow.delayMs = 300;
        QTest::newRow("slow answer is waited for")
            << QStringLiteral("/late") << slow << true << 200 << QStringLiteral("late but complete");
        QTest::newRow("301 is not followed")
            << QStringLiteral("/moved") << HttpFixture::redirect(301, "/target", "moved for good") << true << 301
            << QStringLiteral("moved for good");
        QTest::newRow("302 is not followed")
            << QStringLiteral("/found") << HttpFixture::redirect(302, "/target", "moved for now") << true << 302
            << QStringLiteral("moved for now");
        QTest::newRow("404 fails and keeps its status")
            << QStringLiteral("/missing") << HttpFixture::status(404, "Not Found", "no such page") << false << 404
            << kPrimeBody;
        QTest::newRow("500 fails and keeps its status")
            << QStringLiteral("/broken") << HttpFixture::status(500, "Internal Server Error", "broken") << false << 500
            << kPrimeBody;
        QTest::newRow("connection closed without an answer")
            << QStringLiteral("/dropped") << HttpFixture::dropped() << false << 0 << kPrimeBody;
    }

    void get()
    {
        QFETCH(QString, path);
        QFETCH(HttpFixture::Answer, answer);
        QFETCH(bool, result);
        QFETCH(int, statusCode);
        QFETCH(QString, body);

        const QString url = m_server.url(path);
        m_server.setAnswer(path, answer);
        const int targetRequests = m_server.requestCount(QStringLiteral("/target"));

        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/prime"))));
        QCOMPARE(http.getBody(), kPrimeBody);

        QCOMPARE(http.get(url), result);
        QCOMPARE(http.getStatusCode(), statusCode);
        QCOMPARE(http.getBody(), body);
        if (result)
            QCOMPARE(http.getErrorText(), QString());
        else
            QCOMPARE(http.getErrorText(), QStringLiteral("HTTP access failed: %1").arg(qtErrorText(url)));
        QCOMPARE(m_server.requestCount(QStringLiteral("/target")), targetRequests);
    }

    void unreachableServer()
    {
        quint16 closedPort = 0;
        {
            HttpFixture gone;
            QVERIFY(gone.listen());
            closedPort = gone.port();
        }
        const QString url = QStringLiteral("http://127.0.0.1:%1/updateinfo.json").arg(closedPort);

        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/prime"))));
        QVERIFY(!http.get(url));
        QCOMPARE(http.getStatusCode(), 0);
        QCOMPARE(http.getBody(), kPrimeBody);
        const QString expected = QStringLiteral("HTTP access failed: %1").arg(qtErrorText(url));
        QCOMPARE(http.getErrorText(), expected);

        // A later success leaves the old error text in place.
        QVERIFY(http.get(m_server.url(QStringLiteral("/prime"))));
        QCOMPARE(http.getStatusCode(), 200);
        QCOMPARE(http.getErrorText(), expected);
    }

    void urlIsParsedTolerantly()
    {
        m_server.setAnswer(QStringLiteral("/with%20space"), HttpFixture::ok("found"));
        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/with space"))));
        QCOMPARE(http.getBody(), QStringLiteral("found"));
    }

    void deliversEventsWhileWaiting()
    {
        HttpFixture::Answer slow = HttpFixture::ok("slow");
        slow.delayMs = 400;
        m_server.setAnswer(QStringLiteral("/slow"), slow);
        bool fired = false;
        QTimer::singleShot(50, this, [&fired]() { fired = true; });

        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/slow"))));
        QVERIFY(fired);
    }

    void fileStoreServesFiles()
    {
        QTemporaryDir folder;
        QFile file(folder.filePath(QStringLiteral("updateinfo.json")));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("{\"launcher\": []}\n");
        file.close();

        FileStoreServer store(folder.path());
        QVERIFY2(store.start(), qPrintable(store.output()));
        HTTPAccessUtility http;
        QVERIFY(http.get(store.url(QStringLiteral("/updateinfo.json"))));
        QCOMPARE(http.getBody(), QStringLiteral("{\"launcher\": []}\n"));
        QVERIFY(!http.get(store.url(QStringLiteral("/missing.json"))));
        QCOMPARE(http.getStatusCode(), 404);

        store.stop();
        QVERIFY(!store.isRunning());
        QVERIFY(!http.get(store.url(QStringLiteral("/updateinfo.json"))));
        QCOMPARE(http.getStatusCode(), 0);
    }

    void availability_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("available");

        // Both answers come from this machine alone: "localhost" from the
        // hosts file, and a label longer than 63 characters is refused
        // before any query is sent.
        QTest::newRow("localhost resolves") << QStringLiteral("localhost") << true;
        QTest::newRow("name under .invalid does not")
            << QStringLiteral("%1.invalid").arg(QString(64, QLatin1Char('x'))) << false;
    }

    void availability()
    {
        QFETCH(QString, host);
        QFETCH(bool, available);

        qputenv("ZANMIR_PUBLIC_HOST", host.toUtf8());
        NetworkAccessHelper helper;
        QCOMPARE(helper.isAvailable(), available);
        // Nothing is cached: the next call looks up again.
        QCOMPARE(helper.isAvailable(), available);
    }
};

QTEST_GUILESS_MAIN(TestHttpAccess)
#include "tst_httpaccess.moc"
