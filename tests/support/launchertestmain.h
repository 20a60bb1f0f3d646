#ifndef LAUNCHERTESTMAIN_H
#define LAUNCHERTESTMAIN_H

#include "httpfixture.h"
#include "processlauncher.h"
#include "testlog.h"
#include "testprofile.h"

#include <QTranslator>
#include <QtTest>

// A test run on the launcher itself as the application object, with the
// profile it writes into and its log.
class LauncherTestCase : public QObject
{
public:
    LauncherTestCase(TestProfile *profile, ProcessLauncher *launcher)
        : m_profile(profile)
        , m_launcher(launcher)
        , m_log(profile->logFile(QCoreApplication::applicationName()))
    { }

protected:
    TestProfile *const m_profile;
    ProcessLauncher *const m_launcher;
    TestLog m_log;
};

// A launcher test against a scripted update server on loopback.
class ServedLauncherTestCase : public LauncherTestCase
{
public:
    using LauncherTestCase::LauncherTestCase;

protected:
    // Registers the launcher of that version and initializes it against the server.
    bool startLauncher(const QString &version = QStringLiteral("1.0.0.0"))
    {
        if (!m_server.listen())
            return false;
        qputenv("ZANMIR_SERVER_BASE", m_server.url(QString()).toUtf8());
        m_profile->registerVersion(
            QStringLiteral("L0"), QStringLiteral("launcher"), QStringLiteral("release"), version);
        return m_launcher->initialize(m_translator);
    }
    void serve(const QByteArray &catalogue) { m_server.setAnswer(m_cataloguePath, HttpFixture::ok(catalogue)); }

    const QString m_cataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");
    HttpFixture m_server;
    QTranslator m_translator;
};

// The profile is made first, so that the launcher's log and state files land
// in it, and outlives the launcher. The test object gets both. An option
// goes to the launcher alone, as QtTest would take it for a test function.
template<class TestClass> int runLauncherTest(int &argc, char *argv[], const char *launcherOption = nullptr)
{
    TestProfile profile;
    if (!profile.isValid())
        return 1;
    // Nothing a test starts may leave this machine: the servers default to a
    // loopback port with nothing behind it, and no proxy of the machine applies.
    qputenv("ZANMIR_SERVER_BASE", "http://127.0.0.1:9");
    qputenv("ZANMIR_STORE_URL", "http://127.0.0.1:9/store");
    qputenv("ZANMIR_PUBLIC_HOST", "localhost");
    qunsetenv("HTTP_PROXY");
    qunsetenv("HTTP_PROXY_CREDENTIALS");
    QByteArray option(launcherOption);
    char *optionArgv[] = { argv[0], option.data(), nullptr };
    int optionArgc = 2;
    ProcessLauncher launcher(launcherOption ? optionArgc : argc, launcherOption ? optionArgv : argv);
    TestClass test(&profile, &launcher);
    return QTest::qExec(&test, argc, argv);
}

#define ZANMIR_LAUNCHER_TEST_MAIN(TestClass)                                                                           \
    int main(int argc, char *argv[])                                                                                   \
    {                                                                                                                  \
        QTEST_SET_MAIN_SOURCE_PATH                                                                                     \
        return runLauncherTest<TestClass>(argc, argv);                                                                 \
    }

#endif // LAUNCHERTESTMAIN_H
