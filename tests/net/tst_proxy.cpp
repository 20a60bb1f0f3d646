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

namespace {

const bool kEnv = ProxyHelper::Environment;
const bool kSettings = ProxyHelper::Settings;

// Settings with the proxy switched on, plus the given values.
QVariantMap enabledWith(const QVariantMap &values)
{
    QVariantMap settings = values;
    settings.insert(QStringLiteral("ProxyEnable"), 1);
    return settings;
}

QVariantMap server(const QString &proxyServer)
{
    return enabledWith({ { QStringLiteral("ProxyServer"), proxyServer } });
}

// An empty map means no settings file at all.
void writeSettings(const QVariantMap &values)
{
    const QString path = SystemSettings::internetSettingsFile();
    QFile::remove(path);
    if (values.isEmpty())
        return;
    QDir().mkpath(QFileInfo(path).path());
    QSettings settings(path, QSettings::IniFormat);
    // A value every real source has, so the file exists without the others.
    settings.setValue(QStringLiteral("MigrateProxy"), 1);
    for (auto it = values.constBegin(); it != values.constEnd(); ++it)
        settings.setValue(it.key(), it.value());
}

void setEnvironment(const char *name, const QByteArray &value)
{
    if (value.isEmpty())
        qunsetenv(name);
    else
        qputenv(name, value);
}

// The proxy as Qt and the licence client see it: "host:port user:password
// | HTTP_PROXY | HTTP_PROXY_CREDENTIALS", or "none" for Qt's part.
QString appliedProxy()
{
    const QNetworkProxy proxy = QNetworkProxy::applicationProxy();
    const QString qt = proxy.type() != QNetworkProxy::HttpProxy
        ? QStringLiteral("none")
        : QStringLiteral("%1:%2 %3:%4").arg(proxy.hostName()).arg(proxy.port()).arg(proxy.user(), proxy.password());
    return QStringList { qt, qgetenv("HTTP_PROXY"), qgetenv("HTTP_PROXY_CREDENTIALS") }.join(QStringLiteral(" | "));
}

void envRow(const char *name, const char *proxy, const char *credentials, int result, const char *found)
{
    // The settings would give a usable proxy; they must not be read.
    QTest::newRow(name) << kEnv << QByteArray(proxy) << QByteArray(credentials) << server(QStringLiteral("10.9.9.9:9"))
                        << result << QString::fromLatin1(found);
}

void settingsRow(const char *name, const QVariantMap &settings, int result, const char *found)
{
    QTest::newRow(name) << kSettings << QByteArray() << QByteArray() << settings << result
                        << QString::fromLatin1(found);
}

void startupRow(const char *name, const char *proxy, const char *credentials, const QVariantMap &settings, bool warning,
    const char *applied)
{
    QTest::newRow(name) << QByteArray(proxy) << QByteArray(credentials) << settings << warning
                        << QString::fromLatin1(applied);
}

} // namespace

// Proxy detection in the environment and in the Internet settings, the
// start-up rule that combines and applies both, and the stored proxy record.
class TestProxy : public QObject
{
    Q_OBJECT

public:
    TestProxy(TestProfile *, ProcessLauncher *launcher)
        : m_launcher(launcher)
    { }

private:
    ProcessLauncher *m_launcher;
    QNetworkProxy m_initialProxy = QNetworkProxy::applicationProxy();

private slots:
    void init()
    {
        qunsetenv("HTTP_PROXY");
        qunsetenv("HTTP_PROXY_CREDENTIALS");
    }

    void cleanup() { QNetworkProxy::setApplicationProxy(m_initialProxy); }

    void isIpAddress_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("result");

        QTest::newRow("IPv4") << "10.0.0.255" << true;
        QTest::newRow("IPv4 part above 255") << "256.1.1.1" << false;
        QTest::newRow("IPv4 three parts") << "1.2.3" << false;
        QTest::newRow("four labels") << "a.b.c.d" << false;
        QTest::newRow("IPv4 network suffix ignored") << "1.2.3.4/8" << true;
        QTest::newRow("eight groups") << "0:0:0:0:0:0:0:1" << true;
        QTest::newRow("eight groups up to FF") << "ff:FF:0a:1:2:3:4:5" << true;
        QTest::newRow("group above FF") << "2001:db8:0:0:0:0:0:1" << false;
        QTest::newRow("compressed IPv6") << "fe80::1" << false;
    }

    void isIpAddress()
    {
        QFETCH(QString, host);
        QFETCH(bool, result);
        QCOMPARE(ProxyHelper().isIpAddress(host, QStringLiteral("not a port")), result);
    }

    void detect_data()
    {
        QTest::addColumn<bool>("source");
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("found"); // host|port|user|password, "~" where left alone

        const char *untouched = "~|~|~|~";
        envRow("env unset", "", "a:b", 1, untouched);
        envRow("env IPv4 and port", "10.0.0.1:8080", "", 5, "10.0.0.1|8080|~|~");
        envRow("env IPv4 alone", "10.0.0.1", "", 5, "10.0.0.1||~|~");
        envRow("env host name and port", "proxy.corp:8080", "alice:secret", 4, "proxy.corp|8080|alice|secret");
        envRow("env scheme", "http://10.0.0.1:8080", "", 1, untouched);
        envRow("env credentials of three parts dropped", "10.0.0.1:8080", "alice:se:cret", 5, "10.0.0.1|8080|~|~");

        const QString proxyServer = QStringLiteral("ProxyServer");
        const QString bypass = QStringLiteral("ProxyOverride");
        const QString autoConfig = QStringLiteral("AutoConfigURL");
        settingsRow("no settings source", QVariantMap(), 1, untouched);
        settingsRow("no ProxyEnable", { { proxyServer, "10.0.0.1:80" } }, 2, untouched);
        settingsRow("ProxyEnable 0 ignores AutoConfigURL", { { "ProxyEnable", 0 }, { autoConfig, "http://wpad/a" } }, 1,
            untouched);
        settingsRow("AutoConfigURL", enabledWith({ { autoConfig, "http://wpad/a" }, { proxyServer, "10.0.0.1" } }), 2,
            untouched);
        settingsRow(
            "http picked", server("ftp=10.0.0.9:21;http=10.0.0.1:8080;https=10.0.0.2:443"), 5, "10.0.0.1|8080||");
        settingsRow("host name", server("https=10.0.0.2:443;http=proxy.corp:3128"), 4, "proxy.corp|3128||");
        settingsRow("no http entry", server("ftp=10.0.0.9:21"), 1, untouched);
        settingsRow("bypass list without service hosts",
            enabledWith({ { bypass, "<local>;*.intranet" }, { proxyServer, "10.0.0.1" } }), 5, "10.0.0.1|||");
        const QStringList serviceHosts = DeploymentConfig::serviceHosts();
        QCOMPARE(serviceHosts.size(), 4);
        for (const QString &host : serviceHosts) {
            const QString entry = QStringLiteral("<local>;*%1*;10.*").arg(host);
            settingsRow(qPrintable(QStringLiteral("bypass names ") + host),
                enabledWith({ { bypass, entry }, { proxyServer, "10.0.0.1:8080" } }), 3, untouched);
        }
    }

    void detect()
    {
        QFETCH(bool, source);
        QFETCH(QByteArray, proxy);
        QFETCH(QByteArray, credentials);
        QFETCH(QVariantMap, settings);
        QFETCH(int, result);
        QFETCH(QString, found);

        setEnvironment("HTTP_PROXY", proxy);
        setEnvironment("HTTP_PROXY_CREDENTIALS", credentials);
        writeSettings(settings);
        QString host = QStringLiteral("~"), port = host, user = host, password = host;
        ProxyHelper helper;
        QCOMPARE(source == kSettings ? helper.detectFromSettings(host, port, user, password)
                                     : helper.detectFromEnvironment(host, port, user, password),
            result);
        QCOMPARE(QStringList({ host, port, user, password }).join(QLatin1Char('|')), found);
        QCOMPARE(helper.detectProxy(source), result);
    }

    void startupCheck_data()
    {
        QTest::addColumn<QByteArray>("proxy");
        QTest::addColumn<QByteArray>("credentials");
        QTest::addColumn<QVariantMap>("settings");
        QTest::addColumn<bool>("warning");
        QTest::addColumn<QString>("applied");

        const QVariantMap unusable { { QStringLiteral("ProxyServer"), "10.0.0.2:3128" } };
        const QVariantMap byAddress = server(QStringLiteral("http=10.0.0.2:3128"));
        const QVariantMap byName = server(QStringLiteral("proxy.corp:3128"));
        const QVariantMap bypassed = enabledWith(
            { { QStringLiteral("ProxyOverride"), DeploymentConfig::serviceHosts().at(0) }, { "ProxyServer", "p:1" } });

        startupRow("E=5 R=2: environment applied, no warning", "10.0.0.1:8080", "alice:secret", unusable, false,
            "10.0.0.1:8080 alice:secret | 10.0.0.1:8080 | alice:secret");
        startupRow("E=5 R=4: settings not consulted", "10.0.0.1", "", byName, false, "10.0.0.1:0 : | 10.0.0.1: | ");
        startupRow("E=1 R=2: warning", "", "", unusable, true, "none |  | ");
        startupRow("E=4 R=5: settings applied and warning", "proxy.corp:8080", "", byAddress, true,
            "10.0.0.2:3128 : | 10.0.0.2:3128 | ");
        startupRow("E=1 R=5: bad port, foreign credentials left", "", "bob:pw", server("10.0.0.2:http"), false,
            "10.0.0.2:0 : | 10.0.0.2:http | bob:pw");
        startupRow("E=4 R=1: warning", "proxy.corp:8080", "", QVariantMap(), true, "none | proxy.corp:8080 | ");
        startupRow("E=1 R=4: warning", "", "", byName, true, "none |  | ");
        startupRow("E=1 R=3: silent", "", "", bypassed, false, "none |  | ");
        startupRow("E=1 R=1: silent", "", "", QVariantMap(), false, "none |  | ");
    }

    void startupCheck()
    {
        QFETCH(QByteArray, proxy);
        QFETCH(QByteArray, credentials);
        QFETCH(QVariantMap, settings);
        QFETCH(bool, warning);
        QFETCH(QString, applied);

        setEnvironment("HTTP_PROXY", proxy);
        setEnvironment("HTTP_PROXY_CREDENTIALS", credentials);
        writeSettings(settings);
        QCOMPARE(m_launcher->applyStartupProxy(), warning);
        QCOMPARE(appliedProxy(), applied);
    }

    void storedRecordReadsBackSwitchedOff()
    {
        bool incomplete = true;
        bool enabled = true;
        QString ip, port;
        ProxyServerInfo(ProxyServerInfo(true, "10.1.1.1", "3128").toJson(), &incomplete).getInfo(enabled, ip, port);
        QVERIFY(!enabled);
        QCOMPARE(ip + QLatin1Char(':') + port, QStringLiteral("10.1.1.1:3128"));
        QVERIFY(!incomplete);

        ProxyServerInfo(QJsonObject { { "proxy_sw", "true" } }, &incomplete).getInfo(enabled, ip, port);
        QVERIFY(!enabled);
        QCOMPARE(ip + QLatin1Char(':') + port, QStringLiteral("192.168.1.1:80"));
        QVERIFY(incomplete);
    }
};

ZANMIR_LAUNCHER_TEST_MAIN(TestProxy)
#include "tst_proxy.moc"
