#include "deploymentconfig.h"
#include "proxyhelper.h"
#include "systemsettings.h"
#include "testprofile.h"

#include <QDir>
#include <QFileInfo>
#include <QNetworkProxy>
#include <QSettings>
#include <QtTest>

namespace {

// Writes the proxy sources: "HTTP_PROXY" and "HTTP_PROXY_CREDENTIALS" go to
// the environment, any other values to the Internet settings, which are
// absent when there are none.
void setSources(QVariantMap values)
{
    qputenv("HTTP_PROXY", values.take(QStringLiteral("HTTP_PROXY")).toByteArray());
    qputenv("HTTP_PROXY_CREDENTIALS", values.take(QStringLiteral("HTTP_PROXY_CREDENTIALS")).toByteArray());
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

} // namespace

// Proxy detection in the environment and in the Internet settings, the
// start-up rule that combines and applies both.
class TestProxy : public QObject
{
    Q_OBJECT

    TestProfile m_profile;

private slots:
    void isIpAddress_data()
    {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("result");
        QTest::newRow("IPv4 part above 255") << "256.1.1.1" << false;
        QTest::newRow("IPv4 three parts") << "1.2.3" << false;
        QTest::newRow("IPv4 network suffix ignored") << "1.2.3.4/8" << true;
        QTest::newRow("eight groups") << "0:0:0:0:0:0:0:1" << true;
        QTest::newRow("group above FF") << "2001:db8:0:0:0:0:0:1" << false;
        QTest::newRow("compressed IPv6") << "fe80::1" << false;
    }

    void isIpAddress()
    {
        QFETCH(QString, host);
        QFETCH(bool, result);
        QCOMPARE(ProxyHelper().isIpAddress(host, QStringLiteral("80")), result);
    }

    void detect_data()
    {
        QTest::addColumn<bool>("source");
        QTest::addColumn<QVariantMap>("sources");
        QTest::addColumn<int>("result");
        QTest::addColumn<QString>("found"); // host|port|user|password, "~" where left alone

        const bool env = ProxyHelper::Environment;
        const bool ini = ProxyHelper::Settings;
        const QString serviceHost = DeploymentConfig::serviceHosts().last();
        // clang-format off
        QTest::newRow("env IPv4 and port") << env << QVariantMap { { "HTTP_PROXY", "10.0.0.1:8080" } } << 5 << "10.0.0.1|8080|~|~";
        QTest::newRow("env host name and port") << env << QVariantMap { { "HTTP_PROXY", "proxy.corp:8080" }, { "HTTP_PROXY_CREDENTIALS", "al:pw" } } << 4 << "proxy.corp|8080|al|pw";
        QTest::newRow("env scheme") << env << QVariantMap { { "HTTP_PROXY", "http://10.0.0.1:8080" } } << 1 << "~|~|~|~";
        QTest::newRow("env credentials of three parts") << env << QVariantMap { { "HTTP_PROXY", "10.0.0.1:80" }, { "HTTP_PROXY_CREDENTIALS", "al:p:w" } } << 5 << "10.0.0.1|80|~|~";
        QTest::newRow("no settings file") << ini << QVariantMap() << 1 << "~|~|~|~";
        QTest::newRow("no ProxyEnable") << ini << QVariantMap { { "ProxyServer", "10.0.0.1:80" } } << 2 << "~|~|~|~";
        QTest::newRow("ProxyEnable 0 ignores AutoConfigURL") << ini << QVariantMap { { "ProxyEnable", 0 }, { "AutoConfigURL", "http://wpad/a" } } << 1 << "~|~|~|~";
        QTest::newRow("AutoConfigURL") << ini << QVariantMap { { "ProxyEnable", 1 }, { "AutoConfigURL", "http://wpad/a" }, { "ProxyServer", "10.0.0.1" } } << 2 << "~|~|~|~";
        QTest::newRow("bypass names a service host") << ini << QVariantMap { { "ProxyEnable", 1 }, { "ProxyOverride", "<local>;*" + serviceHost + "*" }, { "ProxyServer", "10.0.0.1" } } << 3 << "~|~|~|~";
        QTest::newRow("http entry picked") << ini << QVariantMap { { "ProxyEnable", 1 }, { "ProxyServer", "ftp=10.0.0.9:21;http=10.0.0.1:8080;https=10.0.0.2:443" } } << 5 << "10.0.0.1|8080||";
        // clang-format on
    }

    void detect()
    {
        QFETCH(bool, source);
        QFETCH(QVariantMap, sources);
        QFETCH(int, result);
        QFETCH(QString, found);

        setSources(sources);
        QString host = QStringLiteral("~"), port = host, user = host, password = host;
        ProxyHelper helper;
        QCOMPARE(source == ProxyHelper::Settings ? helper.detectFromSettings(host, port, user, password)
                                                 : helper.detectFromEnvironment(host, port, user, password),
            result);
        QCOMPARE(QStringList({ host, port, user, password }).join(QLatin1Char('|')), found);
    }

    void startupCheck_data()
    {
        QTest::addColumn<QVariantMap>("sources");
        QTest::addColumn<bool>("warning");
        QTest::addColumn<QString>("applied"); // Qt's proxy (":0" for none), then HTTP_PROXY

        // clang-format off
        QTest::newRow("E=5 (IPv4 alone) R=2: applied, no warning") << QVariantMap { { "HTTP_PROXY", "10.0.0.1" }, { "ProxyServer", "10.0.0.2:3128" } } << false << "10.0.0.1:0 | 10.0.0.1:";
        QTest::newRow("E=1 R=2: warning") << QVariantMap { { "ProxyServer", "10.0.0.2:3128" } } << true << ":0 | ";
        QTest::newRow("E=4 R=5: settings applied and warning") << QVariantMap { { "HTTP_PROXY", "proxy.corp:8080" }, { "ProxyEnable", 1 }, { "ProxyServer", "http=10.0.0.2:3128" } } << true << "10.0.0.2:3128 | 10.0.0.2:3128";
        QTest::newRow("E=1 R=5: bad port") << QVariantMap { { "ProxyEnable", 1 }, { "ProxyServer", "10.0.0.2:http" } } << false << "10.0.0.2:0 | 10.0.0.2:http";
        // clang-format on
    }

    void startupCheck()
    {
        QFETCH(QVariantMap, sources);
        QFETCH(bool, warning);
        QFETCH(QString, applied);

        setSources(sources);
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QCOMPARE(ProxyHelper::applyStartupProxy(), warning);
        const QNetworkProxy set = QNetworkProxy::applicationProxy();
        QCOMPARE(QStringLiteral("%1:%2 | ").arg(set.hostName()).arg(set.port()) + qEnvironmentVariable("HTTP_PROXY"),
            applied);
    }
};

QTEST_GUILESS_MAIN(TestProxy)
#include "tst_proxy.moc"
