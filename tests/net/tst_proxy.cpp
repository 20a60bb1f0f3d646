#include "deploymentconfig.h"
#include "launchertestmain.h"
#include "proxyhelper.h"
#include "proxyserverinfo.h"
#include "systemsettings.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonObject>
#include <QNetworkProxy>
#include <QSettings>

static const QString kUntouched = QStringLiteral("untouched");

// Settings with the proxy switched on, plus the given values.
static QVariantMap enabledWith(const QVariantMap &values)
{
    QVariantMap settings = values;
    settings.insert(QStringLiteral("ProxyEnable"), 1);
    return settings;
}

// Proxy detection in the environment and in the Internet settings, its
// application to Qt and to the environment, the start-up rule that combines
// both, and the stored proxy record.
class TestProxy : public QObject
{
    Q_OBJECT

public:
    TestProxy(TestProfile *profile, ProcessLauncher *launcher)
        : m_profile(profile)
        , m_launcher(launcher)
    { }

private:
    TestProfile *m_profile;
    ProcessLauncher *m_launcher;
    QNetworkProxy m_initialProxy;
    QByteArray m_savedProxy;
    QByteArray m_savedCredentials;

    // A null map means no settings file at all.
    static void writeSettings(const QVariantMap &values, bool exists = true)
    {
        const QString path = SystemSettings::internetSettingsFile();
        if (!exists) {
            QFile::remove(path);
            return;
        }
        QDir().mkpath(QFileInfo(path).path());
        QSettings settings(path, QSettings::IniFormat);
        settings.clear();
        // A value every real source has, so the file exists even without
        // any of the values that detection reads.
        settings.setValue(QStringLiteral("MigrateProxy"), 1);
        for (auto it = values.constBegin(); it != values.constEnd(); ++it)
            settings.setValue(it.key(), it.value());
        settings.sync();
        QCOMPARE(settings.status(), QSettings::NoError);
    }

    static void setEnvironment(const char *name, const QByteArray &value)
    {
        if (value.isEmpty())
            qunsetenv(name);
        else
            qputenv(name, value);
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_launcher);
        QCOMPARE(DeploymentConfig::serviceHosts().size(), 4);
        m_initialProxy = QNetworkProxy::applicationProxy();
        m_savedProxy = qgetenv("HTTP_PROXY");
        m_savedCredentials = qgetenv("HTTP_PROXY_CREDENTIALS");
    }

    void init()
    {
        qunsetenv("HTTP_PROXY");
        qunsetenv("HTTP_PROXY_CREDENTIALS");
        QFile::remove(SystemSettings::internetSettingsFile());
    }

    void cleanup()
    {
        QNetworkProxy::setApplicationProxy(m_initialProxy);
        qunsetenv("HTTP_PROXY");
        qunsetenv("HTTP_PROXY_CREDENTIALS");
    }

    void cleanupTestCase()
    {
        setEnvironment("HTTP_PROXY", m_savedProxy);
        setEnvironment("HTTP_PROXY_CREDENTIALS", m_savedCredentials);
    }

    void splitPair_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("result");
        QTest::addColumn<QString>("first");
        QTest::addColumn<QString>("second");

        QTest::newRow("host alone") << "10.0.0.1" << true << "10.0.0.1"
                                    << "";
        QTest::newRow("host and port") << "10.0.0.1:8080" << true << "10.0.0.1"
                                       << "8080";
        QTest::newRow("empty second part") << "user:" << true << "user"
                                           << "";
        QTest::newRow("empty first part") << ":8080" << false << kUntouched << kUntouched;
        QTest::newRow("empty text") << "" << false << kUntouched << kUntouched;
        QTest::newRow("three parts") << "a:b:c" << false << kUntouched << kUntouched;
        QTest::newRow("scheme") << "http://10.0.0.1:8080" << false << kUntouched << kUntouched;
    }

    void splitPair()
    {
        QFETCH(QString, text);
        QFETCH(bool, result);
        QFETCH(QString, first);
        QFETCH(QString, second);

        QString outFirst = kUntouched;
        QString outSecond = kUntouched;
        QCOMPARE(ProxyHelper().splitPair(text, outFirst, outSecond), result);
        QCOMPARE(outFirst, first);
        QCOMPARE(outSecond, second);
    }

    void isIpAddress_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("result");

        QTest::newRow("IPv4") << "10.0.0.1" << true;
        QTest::newRow("IPv4 top of range") << "255.255.255.255" << true;
        QTest::newRow("IPv4 leading zeros") << "010.000.000.001" << true;
        QTest::newRow("IPv4 part above 255") << "256.1.1.1" << false;
        QTest::newRow("IPv4 three parts") << "1.2.3" << false;
        QTest::newRow("IPv4 five parts") << "1.2.3.4.5" << false;
        QTest::newRow("IPv4 empty part") << "1..3.4" << false;
        QTest::newRow("IPv4 negative part") << "-1.2.3.4" << false;
        QTest::newRow("IPv4 network suffix ignored") << "1.2.3.4/8" << true;
        QTest::newRow("suffix only") << "/1.2.3.4" << false;
        QTest::newRow("dotted name") << "proxy.corp.example.com" << false;
        QTest::newRow("four labels") << "a.b.c.d" << false;
        QTest::newRow("eight groups") << "0:0:0:0:0:0:0:1" << true;
        QTest::newRow("eight groups up to FF") << "ff:FF:0a:1:2:3:4:5" << true;
        QTest::newRow("eight empty groups") << ":::::::" << true;
        QTest::newRow("group above FF") << "2001:db8:0:0:0:0:0:1" << false;
        QTest::newRow("group of 100") << "100:0:0:0:0:0:0:1" << false;
        QTest::newRow("group not hex") << "g:0:0:0:0:0:0:1" << false;
        QTest::newRow("compressed IPv6") << "fe80::1" << false;
        QTest::newRow("loopback compressed") << "::1" << false;
        QTest::newRow("empty") << "" << false;
    }

    void isIpAddress()
    {
        QFETCH(QString, host);
        QFETCH(bool, result);

        QCOMPARE(ProxyHelper().isIpAddress(host, QString()), result);
        // The port plays no part.
        QCOMPARE(ProxyHelper().isIpAddress(host, QStringLiteral("not a port")), result);
    }

    void detectFromEnvironment_data()
    {
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");

        const QString u = kUntouched;
        QTest::newRow("unset") << QByteArray() << QByteArray("a:b") << 1 << u << u << u << u;
        QTest::newRow("IPv4 and port") << QByteArray("10.0.0.1:8080") << QByteArray() << 5 << "10.0.0.1"
                                       << "8080" << u << u;
        QTest::newRow("IPv4 alone") << QByteArray("10.0.0.1") << QByteArray() << 5 << "10.0.0.1"
                                    << "" << u << u;
        QTest::newRow("host name and port") << QByteArray("proxy.corp:8080") << QByteArray() << 4 << "proxy.corp"
                                            << "8080" << u << u;
        QTest::newRow("IPv4 part above 255") << QByteArray("256.1.1.1:80") << QByteArray() << 4 << "256.1.1.1"
                                             << "80" << u << u;
        QTest::newRow("scheme") << QByteArray("http://10.0.0.1:8080") << QByteArray("a:b") << 1 << u << u << u << u;
        QTest::newRow("empty host") << QByteArray(":8080") << QByteArray() << 1 << u << u << u << u;
        QTest::newRow("eight groups cannot carry a port")
            << QByteArray("0:0:0:0:0:0:0:1") << QByteArray() << 1 << u << u << u << u;
        QTest::newRow("credentials") << QByteArray("10.0.0.1:8080") << QByteArray("alice:secret") << 5 << "10.0.0.1"
                                     << "8080"
                                     << "alice"
                                     << "secret";
        QTest::newRow("user without password") << QByteArray("10.0.0.1:8080") << QByteArray("alice") << 5 << "10.0.0.1"
                                               << "8080"
                                               << "alice"
                                               << "";
        QTest::newRow("credentials of three parts dropped")
            << QByteArray("10.0.0.1:8080") << QByteArray("alice:se:cret") << 5 << "10.0.0.1"
            << "8080" << u << u;
        QTest::newRow("credentials without user dropped")
            << QByteArray("10.0.0.1:8080") << QByteArray(":secret") << 5 << "10.0.0.1"
            << "8080" << u << u;
        QTest::newRow("credentials kept for a named proxy")
            << QByteArray("proxy.corp:8080") << QByteArray("alice:secret") << 4 << "proxy.corp"
            << "8080"
            << "alice"
            << "secret";
    }

    void detectFromEnvironment()
    {
        QFETCH(QByteArray, proxy);
        QFETCH(QByteArray, credentials);
        QFETCH(int, result);
        QFETCH(QString, host);
        QFETCH(QString, port);
        QFETCH(QString, user);
        QFETCH(QString, password);

        setEnvironment("HTTP_PROXY", proxy);
        setEnvironment("HTTP_PROXY_CREDENTIALS", credentials);
        // The settings would give a usable proxy; they must not be read.
        writeSettings(enabledWith({ { QStringLiteral("ProxyServer"), QStringLiteral("10.9.9.9:9") } }));

        QString outHost = kUntouched, outPort = kUntouched, outUser = kUntouched, outPassword = kUntouched;
        QCOMPARE(ProxyHelper().detectFromEnvironment(outHost, outPort, outUser, outPassword), result);
        QCOMPARE(outHost, host);
        QCOMPARE(outPort, port);
        QCOMPARE(outUser, user);
        QCOMPARE(outPassword, password);
        QCOMPARE(ProxyHelper().detectProxy(ProxyHelper::Environment), result);
    }

    void detectFromSettings_data()
    {
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QVariantMap>("values");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("host");
        QTest::addColumn<QString>("port");

        const QString proxyServer = QStringLiteral("ProxyServer");
        const QString override = QStringLiteral("ProxyOverride");
        const QString autoConfig = QStringLiteral("AutoConfigURL");
        const QString u = kUntouched;

        QTest::newRow("no settings source") << false << QVariantMap() << 1 << u << u;
        QTest::newRow("no ProxyEnable") << true << QVariantMap { { proxyServer, "10.0.0.1:8080" } } << 2 << u << u;
        QTest::newRow("ProxyEnable spelled otherwise")
            << true << QVariantMap { { "proxyenable", 1 }, { proxyServer, "10.0.0.1:8080" } } << 2 << u << u;
        QTest::newRow("ProxyEnable 0 ignores automatic configuration")
            << true << QVariantMap { { "ProxyEnable", 0 }, { autoConfig, "http://wpad/proxy.pac" } } << 1 << u << u;
        QTest::newRow("automatic configuration")
            << true << enabledWith({ { autoConfig, "http://wpad/proxy.pac" }, { proxyServer, "10.0.0.1:8080" } }) << 2
            << u << u;
        QTest::newRow("no ProxyServer") << true << enabledWith({}) << 1 << u << u;
        QTest::newRow("empty ProxyServer") << true << enabledWith({ { proxyServer, "" } }) << 1 << u << u;
        QTest::newRow("IPv4 and port") << true << enabledWith({ { proxyServer, "10.0.0.1:8080" } }) << 5 << "10.0.0.1"
                                       << "8080";
        QTest::newRow("IPv4 alone") << true << enabledWith({ { proxyServer, "10.0.0.1" } }) << 5 << "10.0.0.1"
                                    << "";
        QTest::newRow("host name") << true << enabledWith({ { proxyServer, "proxy.corp:3128" } }) << 4 << "proxy.corp"
                                   << "3128";
        QTest::newRow("scheme") << true << enabledWith({ { proxyServer, "http://10.0.0.1:8080" } }) << 1 << u << u;
        QTest::newRow("entries per scheme pick http")
            << true << enabledWith({ { proxyServer, "ftp=10.0.0.9:21;http=10.0.0.1:8080;https=10.0.0.2:443" } }) << 5
            << "10.0.0.1"
            << "8080";
        QTest::newRow("http entry with a host name")
            << true << enabledWith({ { proxyServer, "https=10.0.0.2:443;http=proxy.corp:3128" } }) << 4 << "proxy.corp"
            << "3128";
        QTest::newRow("no http entry") << true << enabledWith({ { proxyServer, "ftp=10.0.0.9:21;https=10.0.0.2:443" } })
                                       << 1 << u << u;
        QTest::newRow("scheme names are case-sensitive")
            << true << enabledWith({ { proxyServer, "HTTP=10.0.0.1:8080" } }) << 1 << u << u;
        QTest::newRow("an empty first entry ends the search")
            << true << enabledWith({ { proxyServer, ";10.0.0.1:8080" } }) << 1 << u << u;
        QTest::newRow("bypass list without service hosts")
            << true << enabledWith({ { override, "<local>;*.intranet" }, { proxyServer, "10.0.0.1:8080" } }) << 5
            << "10.0.0.1"
            << "8080";

        const QStringList serviceHosts = DeploymentConfig::serviceHosts();
        for (int i = 0; i < serviceHosts.size(); ++i) {
            const QString entry = QStringLiteral("<local>;*%1*;10.*").arg(serviceHosts.at(i));
            QTest::addRow("bypass list names service host %d", i)
                << true << enabledWith({ { override, entry }, { proxyServer, "10.0.0.1:8080" } }) << 3 << u << u;
        }
        QTest::newRow("bypass wins without a proxy server")
            << true << enabledWith({ { override, QStringLiteral("*") + serviceHosts.at(2) } }) << 3 << u << u;
        QTest::newRow("bypass hosts are compared case-sensitively")
            << true
            << enabledWith({ { override, QStringLiteral("*") + serviceHosts.at(2).toUpper() },
                   { proxyServer, "10.0.0.1:8080" } })
            << 5 << "10.0.0.1"
            << "8080";
    }

    void detectFromSettings()
    {
        QFETCH(bool, exists);
        QFETCH(QVariantMap, values);
        QFETCH(int, result);
        QFETCH(QString, host);
        QFETCH(QString, port);

        writeSettings(values, exists);
        QString outHost = kUntouched, outPort = kUntouched, outUser = kUntouched, outPassword = kUntouched;
        QCOMPARE(ProxyHelper().detectFromSettings(outHost, outPort, outUser, outPassword), result);
        QCOMPARE(outHost, host);
        QCOMPARE(outPort, port);
        // The settings carry no credentials: a found proxy clears them.
        const QString credential = result >= 4 ? QString() : kUntouched;
        QCOMPARE(outUser, credential);
        QCOMPARE(outPassword, credential);
        QCOMPARE(ProxyHelper().detectProxy(ProxyHelper::Settings), result);
    }

    void applyProxy_data()
    {
        QTest::addColumn<bool>("source");
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<QString>("server");
        QTest::addColumn<bool>("applied");
        QTest::addColumn<QString>("host");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QString>("password");
        QTest::addColumn<QByteArray>("proxyAfter");
        QTest::addColumn<QByteArray>("credentialsAfter");

        const bool env = ProxyHelper::Environment;
        const bool settings = ProxyHelper::Settings;
        QTest::newRow("environment address")
            << env << QByteArray("10.0.0.1:8080") << QByteArray() << QString() << true << "10.0.0.1" << 8080 << ""
            << "" << QByteArray("10.0.0.1:8080") << QByteArray();
        QTest::newRow("environment address without port")
            << env << QByteArray("10.0.0.1") << QByteArray() << QString() << true << "10.0.0.1" << 0 << ""
            << "" << QByteArray("10.0.0.1:") << QByteArray();
        QTest::newRow("environment with credentials")
            << env << QByteArray("10.0.0.1:3128") << QByteArray("alice:secret") << QString() << true << "10.0.0.1"
            << 3128 << "alice"
            << "secret" << QByteArray("10.0.0.1:3128") << QByteArray("alice:secret");
        QTest::newRow("port that is no number")
            << env << QByteArray("10.0.0.1:http") << QByteArray() << QString() << true << "10.0.0.1" << 0 << ""
            << "" << QByteArray("10.0.0.1:http") << QByteArray();
        QTest::newRow("port above 16 bits is cut")
            << env << QByteArray("10.0.0.1:70000") << QByteArray() << QString() << true << "10.0.0.1" << 4464 << ""
            << "" << QByteArray("10.0.0.1:70000") << QByteArray();
        QTest::newRow("environment host name")
            << env << QByteArray("proxy.corp:8080") << QByteArray() << QString() << false << "" << 0 << ""
            << "" << QByteArray("proxy.corp:8080") << QByteArray();
        QTest::newRow("settings address handed to the environment")
            << settings << QByteArray() << QByteArray() << "http=10.0.0.2:3128" << true << "10.0.0.2" << 3128 << ""
            << "" << QByteArray("10.0.0.2:3128") << QByteArray();
        QTest::newRow("settings proxy leaves foreign credentials")
            << settings << QByteArray() << QByteArray("bob:pw") << "10.0.0.2:3128" << true << "10.0.0.2" << 3128 << ""
            << "" << QByteArray("10.0.0.2:3128") << QByteArray("bob:pw");
        QTest::newRow("settings host name")
            << settings << QByteArray() << QByteArray() << "proxy.corp:3128" << false << "" << 0 << ""
            << "" << QByteArray() << QByteArray();
    }

    void applyProxy()
    {
        QFETCH(bool, source);
        QFETCH(QByteArray, proxy);
        QFETCH(QByteArray, credentials);
        QFETCH(QString, server);
        QFETCH(bool, applied);
        QFETCH(QString, host);
        QFETCH(int, port);
        QFETCH(QString, user);
        QFETCH(QString, password);
        QFETCH(QByteArray, proxyAfter);
        QFETCH(QByteArray, credentialsAfter);

        setEnvironment("HTTP_PROXY", proxy);
        setEnvironment("HTTP_PROXY_CREDENTIALS", credentials);
        writeSettings(enabledWith({ { QStringLiteral("ProxyServer"), server } }), !server.isEmpty());

        ProxyHelper().applyProxy(source);

        const QNetworkProxy current = QNetworkProxy::applicationProxy();
        if (applied) {
            QCOMPARE(current.type(), QNetworkProxy::HttpProxy);
            QCOMPARE(current.hostName(), host);
            QCOMPARE(int(current.port()), port);
            QCOMPARE(current.user(), user);
            QCOMPARE(current.password(), password);
        } else {
            QCOMPARE(current, m_initialProxy);
        }
        QCOMPARE(qgetenv("HTTP_PROXY"), proxyAfter);
        QCOMPARE(qgetenv("HTTP_PROXY_CREDENTIALS"), credentialsAfter);
    }

    void startupCheck_data()
    {
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<bool>("settingsExist");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<bool>("warning");
        QTest::addColumn<QString>("appliedHost");

        const QVariantMap unusable; // the file exists but has no "ProxyEnable": 2
        const QVariantMap byAddress
            = enabledWith({ { QStringLiteral("ProxyServer"), QStringLiteral("10.0.0.2:3128") } });
        const QVariantMap byName
            = enabledWith({ { QStringLiteral("ProxyServer"), QStringLiteral("proxy.corp:3128") } });
        const QVariantMap bypassed
            = enabledWith({ { QStringLiteral("ProxyOverride"), DeploymentConfig::serviceHosts().at(0) },
                { QStringLiteral("ProxyServer"), "proxy.corp:3128" } });

        QTest::newRow("E=5 R=2: environment applied, no warning")
            << QByteArray("10.0.0.1:8080") << true << unusable << false << "10.0.0.1";
        QTest::newRow("E=5 R=4: settings not consulted")
            << QByteArray("10.0.0.1:8080") << true << byName << false << "10.0.0.1";
        QTest::newRow("E=1 R=2: warning") << QByteArray() << true << unusable << true << "";
        QTest::newRow("E=4 R=5: settings applied and warning")
            << QByteArray("proxy.corp:8080") << true << byAddress << true << "10.0.0.2";
        QTest::newRow("E=1 R=5: settings applied") << QByteArray() << true << byAddress << false << "10.0.0.2";
        QTest::newRow("E=4 R=1: warning") << QByteArray("proxy.corp:8080") << false << QVariantMap() << true << "";
        QTest::newRow("E=1 R=4: warning") << QByteArray() << true << byName << true << "";
        QTest::newRow("E=1 R=3: silent") << QByteArray() << true << bypassed << false << "";
        QTest::newRow("E=1 R=1: silent") << QByteArray() << false << QVariantMap() << false << "";
    }

    void startupCheck()
    {
        QFETCH(QByteArray, proxy);
        QFETCH(bool, settingsExist);
        QFETCH(QVariantMap, settings);
        QFETCH(bool, warning);
        QFETCH(QString, appliedHost);

        setEnvironment("HTTP_PROXY", proxy);
        writeSettings(settings, settingsExist);

        QCOMPARE(m_launcher->applyStartupProxy(), warning);
        if (appliedHost.isEmpty())
            QCOMPARE(QNetworkProxy::applicationProxy(), m_initialProxy);
        else
            QCOMPARE(QNetworkProxy::applicationProxy().hostName(), appliedHost);
    }

    void storedRecord_data()
    {
        QTest::addColumn<QJsonObject>("json");
        QTest::addColumn<QString>("ip");
        QTest::addColumn<QString>("port");
        QTest::addColumn<bool>("incomplete");

        QTest::newRow("saved switched on") << ProxyServerInfo(true, "10.1.1.1", "3128").toJson() << "10.1.1.1"
                                           << "3128" << false;
        QTest::newRow("saved switched off") << ProxyServerInfo(false, "10.1.1.1", "3128").toJson() << "10.1.1.1"
                                            << "3128" << false;
        QTest::newRow("empty object") << QJsonObject() << "192.168.1.1"
                                      << "80" << true;
        QTest::newRow("switch as text") << QJsonObject { { "proxy_sw", "true" }, { "proxy_ip", "10.1.1.1" },
            { "proxy_port", "8080" } } << "10.1.1.1"
                                        << "8080" << true;
        QTest::newRow("empty address") << QJsonObject { { "proxy_sw", true }, { "proxy_ip", "" },
            { "proxy_port", "8080" } } << "192.168.1.1"
                                       << "8080" << true;
        QTest::newRow("port as number") << QJsonObject { { "proxy_sw", false }, { "proxy_ip", "10.1.1.1" },
            { "proxy_port", 8080 } } << "10.1.1.1"
                                        << "80" << true;
    }

    void storedRecord()
    {
        QFETCH(QJsonObject, json);
        QFETCH(QString, ip);
        QFETCH(QString, port);
        QFETCH(bool, incomplete);

        bool readIncomplete = !incomplete;
        const ProxyServerInfo record(json, &readIncomplete);
        bool enabled = true;
        QString readIp;
        QString readPort;
        record.getInfo(enabled, readIp, readPort);
        // Whatever the file holds, the switch reads back as off.
        QVERIFY(!enabled);
        QCOMPARE(readIp, ip);
        QCOMPARE(readPort, port);
        QCOMPARE(readIncomplete, incomplete);

        const QJsonObject written = record.toJson();
        QVERIFY(written.value("proxy_sw").isBool());
        QCOMPARE(written.value("proxy_ip").toString(), ip);
        QCOMPARE(written.value("proxy_port").toString(), port);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestProxy)
#include "tst_proxy.moc"
