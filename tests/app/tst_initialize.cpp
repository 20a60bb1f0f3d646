#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "launchertestmain.h"
#include "screeninfo.h"

#include <QSignalSpy>
#include <QTranslator>

// A launcher started with "/test" asks the test variant of the server address.
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

    // A catalogue without page stamps lights no badge.
    void refreshWithoutStamps()
    {
        QSignalSpy web(m_launcher->getScreenInfo(), SIGNAL(signalUptodateWebVersionNoticed(bool, bool)));
        m_launcher->refreshUpdateState();
        QCOMPARE(web.count(), 1);
        QCOMPARE(web.first(), (QVariantList { false, false }));
    }
};

int main(int argc, char *argv[])
{
    return runLauncherTest<TestInitialize>(argc, argv, "/test");
}

#include "tst_initialize.moc"
