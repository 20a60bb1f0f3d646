#include "launcherharness.h"

#include "testfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QtTest>

// The lines of a JSON-lines file, as the watchdog and the sample editor write.
static QList<QByteArray> jsonLines(const QString &path)
{
    QList<QByteArray> lines = TestFiles::read(path).split('\n');
    lines.removeAll(QByteArray());
    return lines;
}

LauncherRun::~LauncherRun()
{
    m_process.kill();
    m_process.waitForFinished(5000);
}

bool LauncherRun::waitForFinished(int msecs)
{
    if (!isRunning() || m_process.waitForFinished(msecs))
        return !m_timedOut;
    m_timedOut = true;
    m_process.kill();
    m_process.waitForFinished(5000);
    return false;
}

QList<DialogRecord> LauncherRun::dialogs() const
{
    QList<DialogRecord> records;
    for (const QByteArray &line : jsonLines(m_dialogLog)) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.contains("step"))
            continue;
        records.append({ record["icon"].toString(), record["title"].toString(), record["text"].toString(),
            record["button"].toString() });
    }
    return records;
}

QStringList LauncherRun::steps(bool ok) const
{
    QStringList steps;
    for (const QByteArray &line : jsonLines(m_dialogLog)) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.contains("step") && record["ok"].toBool() == ok)
            steps.append(record["step"].toString());
    }
    return steps;
}

QString LauncherRun::describe() const
{
    QString text = m_timedOut                           ? QStringLiteral("timed out and killed")
        : m_process.exitStatus() == QProcess::CrashExit ? QStringLiteral("crashed")
                                                        : QStringLiteral("exit code %1").arg(m_process.exitCode());
    for (const DialogRecord &record : dialogs())
        text += QStringLiteral("\n  dialog [%1] %2: %3").arg(record.icon, record.title, record.text);
    return text;
}

LauncherHarness::LauncherHarness()
{
    QTcpServer unused;
    unused.listen(QHostAddress::LocalHost, 0);
    m_serverBase = QStringLiteral("http://127.0.0.1:%1").arg(unused.serverPort());
    QDir().mkpath(projectPath(QString()));
}

QProcessEnvironment LauncherHarness::environment(const QString &dialogLog) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // This profile's folders, whatever another profile did to the test's own.
    for (const QString &entry : QStringList { "HOME=home", "XDG_DATA_HOME=data", "XDG_CONFIG_HOME=config",
             "XDG_RUNTIME_DIR=runtime", "XDG_CACHE_HOME=cache" })
        environment.insert(entry.section('=', 0, 0), m_profile.root() + '/' + entry.section('=', 1));
    // Only loopback traffic, and never through a proxy of the machine.
    for (const char *name : { "HTTP_PROXY", "HTTP_PROXY_CREDENTIALS", "http_proxy", "HTTPS_PROXY", "https_proxy",
             "ALL_PROXY", "all_proxy", "NO_PROXY", "no_proxy" })
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("ZANMIR_SERVER_BASE"), m_serverBase);
    environment.insert(QStringLiteral("ZANMIR_STORE_URL"), m_serverBase + QStringLiteral("/store"));
    environment.insert(QStringLiteral("ZANMIR_PUBLIC_HOST"), QStringLiteral("localhost"));
    // Under an X server the launcher shows real windows. Without one,
    // "offscreen" stands in (its screen, leaked at exit, is in the
    // sanitizer's suppressions).
    if (!environment.contains(QStringLiteral("DISPLAY")))
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
    environment.insert(
        QStringLiteral("ZANMIR_SAMPLE_EDITOR_LOG"), m_profile.root() + QStringLiteral("/sample-editor.log"));
    // The program that the sample installer installs as each editor version.
    environment.insert(QStringLiteral("ZANMIR_SAMPLE_EDITOR"), QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY));
    environment.insert(QStringLiteral("ZANMIR_TEST_DIALOG_LOG"), dialogLog);
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(ZANMIR_DIALOG_WATCHDOG_LIBRARY));
    // The preloaded watchdog comes ahead of the sanitizer runtime, which is
    // harmless; a sanitizer report gets an exit status of its own.
    const QString asan = QStringLiteral("ASAN_OPTIONS"), ubsan = QStringLiteral("UBSAN_OPTIONS");
    environment.insert(asan, environment.value(asan) + QStringLiteral(":verify_asan_link_order=0:exitcode=86"));
    environment.insert(ubsan, environment.value(ubsan) + QStringLiteral(":exitcode=86"));
    for (auto it = m_environment.constBegin(); it != m_environment.constEnd(); ++it) {
        if (it.value().isEmpty())
            environment.remove(it.key());
        else
            environment.insert(it.key(), it.value());
    }
    return environment;
}

bool LauncherHarness::registerVersions(const QStringList &versions, const QString &launcherVersion)
{
    QProcess script;
    script.setProcessChannelMode(QProcess::ForwardedErrorChannel); // complaints go to the test's output
    script.start(QStringLiteral("python3"),
        QStringList { QStringLiteral(ZANMIR_REGISTER_SCRIPT), QStringLiteral("--launcher-version"), launcherVersion,
            QStringLiteral("--launcher-path"), QStringLiteral(ZANMIR_LAUNCHER_BINARY), m_profile.root(),
            QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY) }
            + versions);
    return script.waitForFinished(30000) && script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0;
}

bool LauncherHarness::serveStore()
{
    m_store.reset(new FileStoreServer(storePath(QString())));
    if (!QDir().mkpath(storePath(QString())) || !m_store->start()) {
        qInfo("%s", qPrintable(m_store->output()));
        return false;
    }
    m_serverBase = m_store->url(QString());
    setEnvironmentValue(QStringLiteral("ZANMIR_SAMPLE_INSTALLER_LOG"), installerLog());
    setEnvironmentValue(QStringLiteral("ZANMIR_TEST_DIALOG_BUTTON"), QStringLiteral("Yes"));
    return true;
}

QByteArray LauncherHarness::publishInstaller(const QString &url) const
{
    const QByteArray installer = TestFiles::read(QStringLiteral(ZANMIR_SAMPLE_INSTALLER));
    if (installer.isEmpty() || !QDir().mkpath(QFileInfo(storePath(url)).path())
        || !TestFiles::write(storePath(url), installer))
        return QByteArray();
    return QCryptographicHash::hash(installer, QCryptographicHash::Sha256).toHex();
}

bool LauncherHarness::publishCatalogue(const QByteArray &catalogue) const
{
    const QString path = storePath(QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json"));
    return QDir().mkpath(QFileInfo(path).path()) && TestFiles::write(path, catalogue);
}

LauncherRun *LauncherHarness::startProgram(const QString &program, const QStringList &arguments, bool watchdog)
{
    const QString dialogLog = m_profile.root() + QStringLiteral("/dialogs-%1.jsonl").arg(m_runs.size() + 1);
    LauncherRun *run = &m_runs.emplace_back(dialogLog);
    QProcessEnvironment environment = this->environment(dialogLog);
    if (!watchdog)
        environment.remove(QStringLiteral("LD_PRELOAD"));
    run->m_process.setProcessEnvironment(environment);
    run->m_process.setWorkingDirectory(m_profile.root() + QStringLiteral("/home"));
    run->m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    run->m_process.start(program, arguments);
    run->m_process.waitForStarted(10000);
    return run;
}

LauncherRun *LauncherHarness::run(const QStringList &arguments, int msecs)
{
    LauncherRun *run = start(arguments);
    run->waitForFinished(msecs);
    return run;
}

QString LauncherHarness::launcherLog() const
{
    return QString::fromUtf8(TestFiles::read(m_profile.logFile(QStringLiteral("ZanmirLauncher"))));
}

QList<QStringList> LauncherHarness::editorStarts() const
{
    QList<QStringList> starts;
    for (const QByteArray &line : jsonLines(m_profile.root() + QStringLiteral("/sample-editor.log")))
        starts.append(QJsonDocument::fromJson(line).toVariant().toStringList());
    return starts;
}

bool LauncherHarness::waitForEditorStarts(int count, int msecs) const
{
    return QTest::qWaitFor([&]() { return editorStarts().size() >= count; }, msecs);
}
