#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"

#include <QTranslator>

// A launcher started with "/test": the test variant of the server address,
// and the translator chosen by the stored locale.
class TestInitialize : public LauncherTestCase
{
    Q_OBJECT
    HttpFixture m_server;

public:
    using LauncherTestCase::LauncherTestCase;

private slots:
    void initTestCase()
    {
        m_profile->registerVersion("L0", "launcher", "release", "1.0.0.0");
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        // Only the test variant of the catalogue's address is served.
        const QString path = "/Test/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        m_server.setAnswer(path, HttpFixture::ok(CatalogueBuilder().entries({ "launcher 1.0.0.0" }).bytes()));
        QTranslator firstRun;
        QVERIFY(m_launcher->initialize(firstRun));
        QCOMPARE(m_server.requestCount(path), 1);
    }

    void translator_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("warning");
        QTest::newRow("ja_JP") << "ja_JP" << QStringLiteral("警告");
        QTest::newRow("en_US") << "en_US" << QStringLiteral("warning");
        QTest::newRow("no catalogue") << "xx_XX" << QStringLiteral("warning");
    }

    void translator()
    {
        QFETCH(QString, locale);
        QFETCH(QString, warning);
        QVERIFY(m_launcher->setLocale(locale));
        QTranslator translator; // outlives its installation until the checks are done
        m_log.mark();
        QVERIFY(m_launcher->initialize(translator));
        const bool loaded = m_log.newLines().contains("ProcessLauncher::installTranslator: loaded successfully");
        QCOMPARE(loaded, locale == "ja_JP");
        QCOMPARE(QCoreApplication::translate("ProcessLauncher", "warning"), warning);
    }
};

int main(int argc, char *argv[])
{
    return runLauncherTest<TestInitialize>(argc, argv, "/test");
}

#include "tst_initialize.moc"
