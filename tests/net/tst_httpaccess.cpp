#include "deploymentconfig.h"
#include "httpaccessutility.h"
#include "httpfixture.h"
#include "networkaccesshelper.h"
#include "untrustedtlsserver.h"

#include <QNetworkProxy>
#include <QtTest>

#include <memory>

Q_DECLARE_METATYPE(HttpFixture::Answer)

// The blocking fetch against a scripted loopback server, and the network check.
class TestHttpAccess : public QObject
{
    Q_OBJECT

private:
    HttpFixture m_server;
    UntrustedTlsServer m_tls; // its certificate is not trusted

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.listen() && m_tls.start());
        m_server.setAnswer(QStringLiteral("/prime"), HttpFixture::ok("earlier"));
    }

    void get_data()
    {
        QTest::addColumn<QString>("path"); // on the scripted server, or a whole URL
        QTest::addColumn<HttpFixture::Answer>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("statusCode");
        QTest::addColumn<QString>("body");
        HttpFixture gone; // closed when this function returns
        QVERIFY(gone.listen());
        // clang-format off
        QTest::newRow("200 with a body") << "/page" << HttpFixture::ok("page") << true << 200 << "page";
        QTest::newRow("200 without a body") << "/empty" << HttpFixture::ok(QByteArray()) << true << 200 << "";
        QTest::newRow("200 without a length") << "/nolength" << HttpFixture::withoutLength("until the close") << true << 200 << "until the close";
        QTest::newRow("301 not followed") << "/moved" << HttpFixture::redirect(301, "/prime", "moved") << true << 301 << "moved";
        QTest::newRow("302 not followed") << "/found" << HttpFixture::redirect(302, "/prime", "found") << true << 302 << "found";
        QTest::newRow("404 keeps its status") << "/missing" << HttpFixture::status(404, "Not Found", "no") << false << 404 << "earlier";
        QTest::newRow("connection closed") << "/dropped" << HttpFixture::dropped() << false << 0 << "earlier";
        QTest::newRow("unreachable port") << gone.url("/x") << HttpFixture::Answer() << false << 0 << "earlier";
        QTest::newRow("certificate not trusted") << m_tls.url("/u.json") << HttpFixture::Answer() << false << 0 << "earlier";
        // clang-format on
    }

    void get()
    {
        QFETCH(QString, path);
        QFETCH(HttpFixture::Answer, answer);
        QFETCH(bool, result);
        QFETCH(int, statusCode);
        QFETCH(QString, body);

        m_server.setAnswer(path, answer);
        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/prime"))));
        QCOMPARE(http.get(path.startsWith(QLatin1Char('/')) ? m_server.url(path) : path), result);
        QCOMPARE(http.getStatusCode(), statusCode);
        // A failure keeps the body of the last success, and gives a prefix and
        // Qt's reason; for a certificate, what was wrong with it.
        QCOMPARE(http.getBody(), body);
        const QString error = http.getErrorText();
        QVERIFY2(error.startsWith(QStringLiteral("HTTP access failed: ")) == !result, qPrintable(error));
        QCOMPARE(error.contains(QStringLiteral(" (Certificate not trusted: ")), path.startsWith("https:"));
        QVERIFY(!path.startsWith("https:") || m_tls.handshakes() > 0);
    }

    // A server that stalls half-way through its answer ends the fetch at the
    // deadline, as any other failure. (One that never answers: the open-with
    // start of the real binary.)
    void deadline()
    {
        auto stalling = std::make_unique<HttpFixture>();
        QVERIFY(stalling->listen());
        stalling->setAnswer(QStringLiteral("/stall"), HttpFixture::stalled(QByteArray(4096, 'x')));
        // Closing the connection later ends a fetch that has no deadline of its own.
        QTimer guard;
        guard.setSingleShot(true);
        connect(&guard, &QTimer::timeout, [&stalling]() { stalling.reset(); });

        qputenv("ZANMIR_HTTP_TIMEOUT_MS", "300");
        HTTPAccessUtility http;
        QVERIFY(http.get(m_server.url(QStringLiteral("/prime"))));
        // Due after the deadline, however long the first fetch took.
        guard.start(5000);
        QElapsedTimer elapsed;
        elapsed.start();
        const bool result = http.get(stalling->url(QStringLiteral("/stall")));
        const qint64 msecs = elapsed.elapsed();
        qunsetenv("ZANMIR_HTTP_TIMEOUT_MS");

        QVERIFY(!result);
        QCOMPARE(http.getErrorText(), QStringLiteral("HTTP access failed: no complete answer within 300 ms"));
        QCOMPARE(http.getStatusCode(), 200);
        QCOMPARE(http.getBody(), QStringLiteral("earlier"));
        // Never sooner; how much later depends on the machine's load. That
        // the deadline and not the guard ended it, the text says.
        QVERIFY2(msecs >= 300, qPrintable(QString::number(msecs)));
    }

    // A fetch made while another waits (Refresh pressed while the window
    // reads the catalogue) does not end that wait: each ends with its own answer.
    void fetchWithinAFetch()
    {
        m_server.setAnswer(QStringLiteral("/slow"), HttpFixture::trickled("slow answer"));
        HTTPAccessUtility http;
        QString inner;
        QTimer::singleShot(0, [&http, &inner, this]() {
            inner = http.get(m_server.url(QStringLiteral("/prime"))) ? http.getBody() : QString();
        });
        QVERIFY(http.get(m_server.url(QStringLiteral("/slow"))));
        QCOMPARE(inner, QStringLiteral("earlier"));
        QCOMPARE(http.getBody(), QStringLiteral("slow answer"));
    }

    // A fetch sent ahead is the one that the next get() of its address waits
    // for; a get() of another address is not answered with it.
    void prefetch()
    {
        m_server.setAnswer(QStringLiteral("/ahead"), HttpFixture::ok("ahead"));
        m_server.setAnswer(QStringLiteral("/other"), HttpFixture::ok("other"));
        HTTPAccessUtility http;
        http.prefetch(m_server.url(QStringLiteral("/ahead")));
        // Asked before get() is called; get() asks no more.
        QTRY_COMPARE(m_server.requestCount(QStringLiteral("/ahead")), 1);
        QVERIFY(http.get(m_server.url(QStringLiteral("/ahead"))));
        QCOMPARE(http.getBody(), QStringLiteral("ahead"));
        QCOMPARE(m_server.requestCount(QStringLiteral("/ahead")), 1);

        http.prefetch(m_server.url(QStringLiteral("/ahead")));
        QVERIFY(http.get(m_server.url(QStringLiteral("/other"))));
        QCOMPARE(http.getBody(), QStringLiteral("other"));
        // Given up with the other fetch: the next get() asks again.
        const int asked = m_server.requestCount(QStringLiteral("/ahead"));
        QVERIFY(http.get(m_server.url(QStringLiteral("/ahead"))));
        QCOMPARE(m_server.requestCount(QStringLiteral("/ahead")), asked + 1);
    }

    // A value that cannot serve as a deadline gives way to the build default.
    void deadlineValue()
    {
        qunsetenv("ZANMIR_HTTP_TIMEOUT_MS");
        const int builtIn = DeploymentConfig::httpTimeoutMs();
        QVERIFY(builtIn > 0);
        for (const char *value : { "250", "abc", "0", "-5", "99999999999" }) {
            qputenv("ZANMIR_HTTP_TIMEOUT_MS", value);
            QCOMPARE(DeploymentConfig::httpTimeoutMs(), qstrcmp(value, "250") == 0 ? 250 : builtIn);
        }
        qunsetenv("ZANMIR_HTTP_TIMEOUT_MS");
    }

    void availability()
    {
        // Both answers come from this machine alone: "localhost" from the hosts file,
        // and a label longer than 63 characters is refused before any query is sent.
        qputenv("ZANMIR_PUBLIC_HOST", "localhost");
        QVERIFY(NetworkAccessHelper().isAvailable());
        qputenv("ZANMIR_PUBLIC_HOST", QByteArray(64, 'x') + ".invalid");
        QVERIFY(!NetworkAccessHelper().isAvailable());
        // Behind a proxy the name need not resolve here at all.
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::HttpProxy, "127.0.0.1", 9));
        QVERIFY(NetworkAccessHelper().isAvailable());
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    }
};

QTEST_GUILESS_MAIN(TestHttpAccess)
#include "tst_httpaccess.moc"
