#include "launcherharness.h"

#include "testfiles.h"

#include <QDir>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QtTest>

namespace {

QList<QJsonDocument> readJsonLines(const QString &path)
{
    QList<QJsonDocument> documents;
    const QList<QByteArray> lines = TestFiles::read(path).split('\n');
    for (const QByteArray &line : lines) {
        if (!line.isEmpty())
            documents.append(QJsonDocument::fromJson(line));
    }
    return documents;
}

// A loopback port on which nothing listens right now.
quint16 unusedLoopbackPort()
{
    QTcpServer server;
    if (!server.listen(QHostAddress::LocalHost, 0))
        return 9;
    const quint16 port = server.serverPort();
    server.close();
    return port;
}

void appendOptions(QProcessEnvironment &environment, const QString &name, const QString &options)
{
    const QString present = environment.value(name);
    environment.insert(name, present.isEmpty() ? options : present + QLatin1Char(':') + options);
}

} // namespace

LauncherRun::LauncherRun(QObject *parent, const QString &dialogLog)
    : QObject(parent)
    , m_process(this)
    , m_dialogLog(dialogLog)
{ }

LauncherRun::~LauncherRun()
{
    kill();
}

void LauncherRun::kill()
{
    if (!isRunning())
        return;
    m_process.kill();
    m_process.waitForFinished(5000);
}

bool LauncherRun::waitForFinished(int msecs)
{
    if (!isRunning())
        return !m_timedOut;
    if (m_process.waitForFinished(msecs))
        return true;
    m_timedOut = true;
    kill();
    return false;
}

void LauncherRun::stop()
{
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(10000))
        kill();
}

QString LauncherRun::standardError()
{
    m_standardError.append(m_process.readAllStandardError());
    return QString::fromLocal8Bit(m_standardError);
}

QList<DialogRecord> LauncherRun::dialogs() const
{
    QList<DialogRecord> records;
    const QList<QJsonDocument> lines = readJsonLines(m_dialogLog);
    for (const QJsonDocument &line : lines) {
        const auto value = [&line](const char *key) { return line.object().value(QLatin1String(key)).toString(); };
        records.append({ value("icon"), value("title"), value("text"), value("button"), value("class") });
    }
    return records;
}

QString LauncherRun::describe()
{
    QString text = m_timedOut              ? QStringLiteral("timed out and killed")
        : crashed()                        ? QStringLiteral("crashed")
        : exitCode() == kSanitizerExitCode ? QStringLiteral("sanitizer report")
                                           : QStringLiteral("exit code %1").arg(exitCode());
    const QList<DialogRecord> records = dialogs();
    for (const DialogRecord &record : records)
        text += QStringLiteral("\n  dialog [%1] %2: %3").arg(record.icon, record.title, record.text);
    text += QStringLiteral("\n  stderr: ") + standardError().right(8000);
    return text;
}

LauncherHarness::LauncherHarness()
    : m_serverBase(QStringLiteral("http://127.0.0.1:%1").arg(unusedLoopbackPort()))
{
    QDir().mkpath(projectsFolder());
}

LauncherHarness::~LauncherHarness()
{
    // The runs go before the profile folder they work in.
    const QList<LauncherRun *> runs = findChildren<LauncherRun *>(QString(), Qt::FindDirectChildrenOnly);
    qDeleteAll(runs);
}

QProcessEnvironment LauncherHarness::environment() const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString root = m_profile.root();
    environment.insert(QStringLiteral("HOME"), root + QStringLiteral("/home"));
    environment.insert(QStringLiteral("XDG_DATA_HOME"), root + QStringLiteral("/data"));
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), root + QStringLiteral("/config"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), root + QStringLiteral("/runtime"));
    environment.insert(QStringLiteral("XDG_CACHE_HOME"), root + QStringLiteral("/cache"));
    // Only loopback traffic, and never through a proxy of the machine.
    for (const char *name : { "HTTP_PROXY", "HTTP_PROXY_CREDENTIALS", "http_proxy", "HTTPS_PROXY", "https_proxy",
             "ALL_PROXY", "all_proxy", "NO_PROXY", "no_proxy" })
        environment.remove(QString::fromLatin1(name));
    environment.insert(QStringLiteral("ZANMIR_SERVER_BASE"), m_serverBase);
    environment.insert(QStringLiteral("ZANMIR_STORE_URL"), m_serverBase + QStringLiteral("/store"));
    environment.insert(QStringLiteral("ZANMIR_PUBLIC_HOST"), QStringLiteral("localhost"));
    // "offscreen" leaks its screen at exit, which a sanitizer build reports.
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("minimal"));
    environment.insert(QStringLiteral("ZANMIR_SAMPLE_EDITOR_LOG"), root + QStringLiteral("/sample-editor.log"));
    environment.insert(QStringLiteral("LD_PRELOAD"), watchdogLibrary());
    // The preloaded watchdog comes ahead of the sanitizer runtime, which is
    // harmless; a sanitizer report gets an exit status of its own.
    const QString exitCode = QStringLiteral("exitcode=%1").arg(LauncherRun::kSanitizerExitCode);
    appendOptions(environment, QStringLiteral("ASAN_OPTIONS"), QStringLiteral("verify_asan_link_order=0:") + exitCode);
    appendOptions(environment, QStringLiteral("UBSAN_OPTIONS"), exitCode);

    for (auto it = m_environment.constBegin(); it != m_environment.constEnd(); ++it) {
        if (it.value().isEmpty())
            environment.remove(it.key());
        else
            environment.insert(it.key(), it.value());
    }
    return environment;
}

bool LauncherHarness::registerVersions(const QStringList &versions, const QString &launcherVersion, QString *errorText)
{
    QProcess script;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    script.setProcessEnvironment(environment);
    const QStringList arguments = QStringList { registerScript(), QStringLiteral("--launcher-version"), launcherVersion,
        QStringLiteral("--launcher-path"), launcherBinary(), m_profile.root(), sampleEditorBinary() }
        + versions;
    script.start(QStringLiteral("python3"), arguments);
    const bool ok
        = script.waitForFinished(30000) && script.exitStatus() == QProcess::NormalExit && script.exitCode() == 0;
    if (!ok && errorText)
        *errorText = QString::fromLocal8Bit(script.readAllStandardError()) + script.errorString();
    return ok;
}

LauncherRun *LauncherHarness::start(const QStringList &arguments)
{
    const QString dialogLog = m_profile.root() + QStringLiteral("/dialogs-%1.jsonl").arg(++m_runCount);
    QProcessEnvironment environment = this->environment();
    environment.insert(QStringLiteral("ZANMIR_TEST_DIALOG_LOG"), dialogLog);

    auto *run = new LauncherRun(this, dialogLog);
    run->m_process.setProcessEnvironment(environment);
    run->m_process.setWorkingDirectory(projectsFolder());
    run->m_process.setProgram(launcherBinary());
    run->m_process.setArguments(arguments);
    run->m_process.setProcessChannelMode(QProcess::ForwardedOutputChannel);
    run->m_process.start();
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

bool LauncherHarness::waitForLog(const QString &text, int msecs) const
{
    return QTest::qWaitFor([&]() { return launcherLog().contains(text); }, msecs);
}

QList<QStringList> LauncherHarness::editorStarts() const
{
    QList<QStringList> starts;
    const QList<QJsonDocument> lines = readJsonLines(m_profile.root() + QStringLiteral("/sample-editor.log"));
    for (const QJsonDocument &line : lines)
        starts.append(line.toVariant().toStringList());
    return starts;
}

bool LauncherHarness::waitForEditorStarts(int count, int msecs) const
{
    return QTest::qWaitFor([&]() { return editorStarts().size() >= count; }, msecs);
}
