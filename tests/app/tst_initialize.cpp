#include "cataloguebuilder.h"
#include "httpfixture.h"
#include "processlauncher.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testlog.h"
#include "testprofile.h"

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>
#include <QtTest>

#include <vector>

namespace {

const QString kCataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");

} // namespace

// The whole start-up sequence of a launcher started with "/test": every step
// in its order, the translator chosen by the stored locale, and the test
// variant of the server address.
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

    QString folder() const { return m_profile.launcherFolder(false); }

    static void setStoredLocale(const QString &managerFile, const QString &locale)
    {
        QJsonObject root = TestFiles::readObject(managerFile);
        QJsonObject state = root.value(QStringLiteral("1.0.0")).toObject();
        state.insert(QStringLiteral("locale"), locale);
        root.insert(QStringLiteral("1.0.0"), state);
        QVERIFY(TestFiles::write(managerFile, QJsonDocument(root).toJson()));
    }

private slots:
    void initTestCase()
    {
        QVERIFY(m_server.listen());
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        // The test variant of the store: the plain address must not be asked.
        m_server.setAnswer(QStringLiteral("/Test") + kCataloguePath,
            HttpFixture::ok(CatalogueBuilder().launcher(QStringLiteral("1.0.0.0")).bytes()));
    }

    void sequence_data()
    {
        QTest::addColumn<QString>("locale");
        QTest::addColumn<QString>("warning");

        QTest::newRow("ja_JP") << QStringLiteral("ja_JP") << QStringLiteral("警告");
        QTest::newRow("en_US") << QStringLiteral("en_US") << QStringLiteral("warning");
        QTest::newRow("no catalogue") << QStringLiteral("xx_XX") << QStringLiteral("warning");
    }

    void sequence()
    {
        QFETCH(QString, locale);
        QFETCH(QString, warning);

        QDir(m_profile.dataHome() + QStringLiteral("/Vorlix")).removeRecursively();
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_profile.registerVersion(
            QStringLiteral("L0"), QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.0.0.0"));
        const QString managerFile = m_profile.managerFile();
        const QString registryFile = m_profile.catalogueFile();
        const QString indexFile = folder() + QStringLiteral("/OfflineFiles.json");
        const QString catalogueUrl = m_server.url(QStringLiteral("/Test") + kCataloguePath);
        const int requests = m_server.requestCount(QStringLiteral("/Test") + kCataloguePath);

        // A first run makes every file; the locale is then the one stored.
        {
            QTranslator translator;
            m_log.mark();
            QVERIFY(m_launcher.initialize(translator));
            QVERIFY2(TestLog::inOrder(m_log.newLines(),
                         { QStringLiteral("ProcessLauncher::readApplInfo: ApplInfo file created: %1").arg(managerFile),
                             QStringLiteral("ProcessLauncher::initialize: ApplInfo file loaded: %1").arg(managerFile),
                             QStringLiteral("ProcessLauncher::readOfflineFileInfo: OfflineFileInfo is created: %1")
                                 .arg(indexFile),
                             QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo set.") }),
                qPrintable(m_log.newLines().join(QLatin1Char('\n'))));
        }
        setStoredLocale(managerFile, locale);

        // The translator has to outlive its installation: it goes, and with
        // it the translation, only after the checks.
        QTranslator translator;
        m_log.mark();
        QVERIFY(m_launcher.initialize(translator));
        QCOMPARE(m_launcher.getExitStatus(), 0);

        QStringList expected { QStringLiteral("ProcessLauncher::initialize: ApplInfo file loaded: %1").arg(managerFile),
            QStringLiteral("ProcessLauncher::readRegistry: TargetSystemName=win64, RegistryFileName=%1")
                .arg(registryFile),
            QStringLiteral("ProcessLauncher::initialize: Registry is read: %1").arg(registryFile),
            QStringLiteral("EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: %1")
                .arg(TestProfile::executablePath(QStringLiteral("L0"))),
            QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile),
            QStringLiteral("ProcessLauncher::initialize: OfflineFileInfo is read: %1").arg(indexFile),
            QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo is completely loaded from server: [%1]")
                .arg(catalogueUrl),
            QStringLiteral("ProcessLauncher::prepareApplUpdater: ApplUpdateInfo set.") };
        // The translator comes right after the manager file; English and a
        // locale without a catalogue leave no trace.
        const bool translated = locale == QLatin1String("ja_JP");
        if (translated)
            expected.insert(1, QStringLiteral("ProcessLauncher::installTranslator: loaded successfully"));
        const QStringList lines = m_log.newLines();
        QVERIFY2(lines == expected, qPrintable(lines.join(QLatin1Char('\n'))));

        QCOMPARE(translator.isEmpty(), !translated);
        QCOMPARE(QCoreApplication::translate("ProcessLauncher", "warning"), warning);
        QCOMPARE(m_server.requestCount(QStringLiteral("/Test") + kCataloguePath), requests + 2);
        QCOMPARE(m_server.requestCount(kCataloguePath), 0);
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

    // The launcher sees the test option on its command line; QtTest would
    // take it for the name of a test function, so it gets the line as given.
    QByteArray program(argv[0]);
    QByteArray option("/test");
    std::vector<char *> launcherArgv { program.data(), option.data(), nullptr };
    int launcherArgc = 2;
    ProcessLauncher launcher(launcherArgc, launcherArgv.data());
    TestInitialize test(profile, launcher);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_initialize.moc"
