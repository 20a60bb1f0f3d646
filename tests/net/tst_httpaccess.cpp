#include "httpaccessutility.h"
#include "httpfixture.h"
#include "networkaccesshelper.h"

#include <QtTest>

Q_DECLARE_METATYPE(HttpFixture::Answer)

static const QString kPrimeBody = QStringLiteral("body of an earlier answer");

// The blocking fetch against a scripted server on 127.0.0.1, and the name
// lookup that tells whether the network is there.
class TestHttpAccess : public QObject
{
    Q_OBJECT

private:
    HttpFixture m_server;
    quint16 m_closedPort = 0;

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        m_server.setAnswer(QStringLiteral("/prime"), HttpFixture::ok(kPrimeBody.toUtf8()));
        m_server.setAnswer(QStringLiteral("/target"), HttpFixture::ok("redirect target"));
        HttpFixture gone;
        QVERIFY(gone.listen());
        m_closedPort = gone.port();
    }

    void get_data()
    {
        // A path of the scripted server, or a whole URL.
        QTest::addColumn<QString>("path");
        QTest::addColumn<HttpFixture::Answer>("answer");
        QTest::addColumn<bool>("result");
        QTest::addColumn<int>("statusCode");
        QTest::addColumn<QString>("body");

        const QString utf8 = QString::fromUtf8("Gr\xc3\xbc\xc3\x9f"
                                               "e");
        QTest::newRow("200 with a UTF-8 body") << "/page" << HttpFixture::ok(utf8.toUtf8()) << true << 200 << utf8;
        QTest::newRow("200 without a body") << "/empty" << HttpFixture::ok(QByteArray()) << true << 200 << "";
        QTest::newRow("200 without a length")
            << "/nolength" << HttpFixture::withoutLength("until the close") << true << 200 << "until the close";
        QTest::newRow("301 not followed")
            << "/moved" << HttpFixture::redirect(301, "/target", "moved") << true << 301 << "moved";
        QTest::newRow("302 not followed")
            << "/found" << HttpFixture::redirect(302, "/target", "found") << true << 302 << "found";
        QTest::newRow("404 keeps its status")
            << "/missing" << HttpFixture::status(404, "Not Found", "no") << false << 404 << kPrimeBody;
        QTest::newRow("connection closed") << "/dropped" << HttpFixture::dropped() << false << 0 << kPrimeBody;
        QTest::newRow("unreachable port") << QStringLiteral("http://127.0.0.1:%1/x").arg(m_closedPort)
                                          << HttpFixture::Answer() << false << 0 << kPrimeBody;
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
        // A failure keeps the body of the last success.
        QCOMPARE(http.getBody(), body);
        // A failure gives the prefix and Qt's reason.
        const QString prefix = QStringLiteral("HTTP access failed: ");
        QCOMPARE(http.getErrorText().left(prefix.size()), result ? QString() : prefix);
        QCOMPARE(http.getErrorText().size() > prefix.size(), !result);
    }

    void availability_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("available");

        // Both answers come from this machine alone: "localhost" from the
        // hosts file, and a label longer than 63 characters is refused
        // before any query is sent.
        QTest::newRow("localhost") << QStringLiteral("localhost") << true;
        QTest::newRow("label too long") << QStringLiteral("%1.invalid").arg(QString(64, QLatin1Char('x'))) << false;
    }

    void availability()
    {
        QFETCH(QString, host);
        QFETCH(bool, available);

        qputenv("ZANMIR_PUBLIC_HOST", host.toUtf8());
        QCOMPARE(NetworkAccessHelper().isAvailable(), available);
    }
};

QTEST_GUILESS_MAIN(TestHttpAccess)
#include "tst_httpaccess.moc"
