#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "processlauncher.h"
#include "testlog.h"
#include "testprofile.h"

#include <QTranslator>
#include <QtTest>

// A launcher started with "/test": the test variant of the server address,
// and the translator chosen by the stored locale.
class TestInitialize : public QObject
{
    Q_OBJECT

public:
    TestInitialize(const TestProfile &profile, ProcessLauncher &launcher)
        : m_profile(profile)
        , m_launcher(launcher)
        , m_log(profile.logFile(QCoreApplication::applicationName()))
    { }

private:
    const TestProfile &m_profile;
    ProcessLauncher &m_launcher;
    TestLog m_log;
    HttpFixture m_server;

private slots:
    void initTestCase()
    {
        m_profile.registerVersion("L0", "launcher", "release", "1.0.0.0");
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        const QString path = "/Test/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        m_server.setAnswer(path, HttpFixture::ok(CatalogueBuilder().entries({ "launcher 1.0.0.0" }).bytes()));
        QTranslator firstRun;
        QVERIFY(m_launcher.initialize(firstRun));
        const QStringList lines = m_log.newLines();
        QVERIFY2(
            lines.contains("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: ["
                + m_server.url(path) + "]"),
            qPrintable(lines.join('\n')));
    }

    void translator_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("warning");
        // clang-format off
        QTest::newRow("ja_JP") << "ja_JP" << QStringLiteral("警告");
        QTest::newRow("en_US") << "en_US" << "warning";
        QTest::newRow("no catalogue") << "xx_XX" << "warning";
        // clang-format on
    }

    void translator()
    {
        QFETCH(QString, locale);
        QFETCH(QString, warning);
        QVERIFY(m_launcher.setLocale(locale));
        // The translator has to outlive its installation, so it goes only after the checks.
        QTranslator translator;
        m_log.mark();
        QVERIFY(m_launcher.initialize(translator));
        const bool translated = locale == QLatin1String("ja_JP");
        // Right after the manager file, and only when a catalogue was loaded.
        const QStringList lines = m_log.newLines();
        QCOMPARE(lines.indexOf("ProcessLauncher::installTranslator: loaded successfully"), translated ? 1 : -1);
        QCOMPARE(translator.isEmpty(), !translated);
        QCOMPARE(QCoreApplication::translate("ProcessLauncher", "warning"), warning);
    }
};

int main(int argc, char *argv[])
{
    TestProfile profile;
    if (!profile.isValid())
        return 1;
    qunsetenv("HTTP_PROXY");
    qunsetenv("HTTP_PROXY_CREDENTIALS");
    qputenv("ZANMIR_PUBLIC_HOST", "localhost");

    // QtTest would take the launcher's option for the name of a test
    // function, so the launcher gets a command line of its own.
    char option[] = "/test";
    char *launcherArgv[] = { argv[0], option, nullptr };
    int launcherArgc = 2;
    ProcessLauncher launcher(launcherArgc, launcherArgv);
    TestInitialize test(profile, launcher);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_initialize.moc"
