#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"

#include <QSignalSpy>
#include <QTranslator>

// A launcher started with "/test": the test variant of the server address, the
// translator chosen by the locale, and the signal hub made once per process.
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
        QTranslator translator;
        QVERIFY(m_launcher->initialize(translator));
        QCOMPARE(m_server.requestCount(path), 1);
        QVERIFY(m_launcher->getScreenInfo());
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
        QTranslator translator; // removed from the application when it goes
        QCOMPARE(ProcessLauncher::loadTranslator(translator, locale), locale == "ja_JP");
        QCOMPARE(QCoreApplication::translate("ProcessLauncher", "warning"), warning);
    }

    // The refresh tells the pages in this order: lists first, then the web badges.
    void refreshAnnouncesToTheHub()
    {
        QSignalSpy refreshed(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()));
        QSignalSpy web(m_launcher->getScreenInfo(), SIGNAL(signalUptodateWebVersionNoticed(bool, bool)));
        m_launcher->refreshUpdateState();
        QCOMPARE(refreshed.count(), 1);
        QCOMPARE(web.count(), 1);
        QCOMPARE(web.first(), (QVariantList { false, false })); // no page stamps in this catalogue
    }
};

int main(int argc, char *argv[])
{
    return runLauncherTest<TestInitialize>(argc, argv, "/test");
}

#include "tst_initialize.moc"
