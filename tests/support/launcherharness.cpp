#include "launcherharness.h"

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QtTest>

namespace {

QString readFile(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readAll());
}

QList<QJsonValue> readJsonLines(const QString &path)
{
    QList<QJsonValue> values;
    const QStringList lines = readFile(path).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    for (const QString &line : lines) {
        const QJsonDocument document = QJsonDocument::fromJson(line.toUtf8());
        values.append(document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object()));
    }
    return values;
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
    if (isRunning()) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

bool LauncherRun::waitForFinished(int msecs)
{
    if (!isRunning())
        return !m_timedOut;
    if (m_process.waitForFinished(msecs))
        return true;
    m_timedOut = true;
    m_process.kill();
    m_process.waitForFinished(5000);
    return false;
}

bool LauncherRun::isRunning() const
{
    return m_process.state() != QProcess::NotRunning;
}

void LauncherRun::stop()
{
    if (!isRunning())
        return;
    m_process.terminate();
    if (!m_process.waitForFinished(10000)) {
        m_process.kill();
        m_process.waitForFinished(5000);
    }
}

QString LauncherRun::standardError()
{
    m_standardError.append(m_process.readAllStandardError());
    return QString::fromLocal8Bit(m_standardError);
}

QList<DialogRecord> LauncherRun::dialogs() const
{
    QList<DialogRecord> records;
    const QList<QJsonValue> lines = readJsonLines(m_dialogLog);
    for (const QJsonValue &line : lines) {
        const QJsonObject object = line.toObject();
        DialogRecord record;
        record.icon = object.value(QStringLiteral("icon")).toString();
        record.title = object.value(QStringLiteral("title")).toString();
        record.text = object.value(QStringLiteral("text")).toString();
        record.button = object.value(QStringLiteral("button")).toString();
        record.className = object.value(QStringLiteral("class")).toString();
        records.append(record);
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

QString LauncherHarness::projectsFolder() const
{
    return m_profile.root() + QStringLiteral("/projects");
}

QString LauncherHarness::projectPath(const QString &name) const
{
    return projectsFolder() + QLatin1Char('/') + name;
}

void LauncherHarness::setEnvironmentValue(const QString &name, const QString &value)
{
    m_environment.insert(name, value);
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
    // "minimal" rather than "offscreen": the latter leaks its screen at exit,
    // which a sanitizer build would report as a failure of every run.
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("minimal"));
    environment.insert(QStringLiteral("ZANMIR_SAMPLE_EDITOR_LOG"), root + QStringLiteral("/sample-editor.log"));
    environment.insert(QStringLiteral("LD_PRELOAD"), watchdogLibrary());
    // In a sanitizer build the preloaded watchdog comes ahead of the
    // sanitizer runtime, which is harmless here. A sanitizer report ends the
    // process with an exit status of its own, never mistaken for the
    // launcher's 0 or 1.
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
    return readFile(m_profile.logFile(QStringLiteral("ZanmirLauncher")));
}

bool LauncherHarness::waitForLog(const QString &text, int msecs) const
{
    return QTest::qWaitFor([&]() { return launcherLog().contains(text); }, msecs);
}

QList<QStringList> LauncherHarness::editorStarts() const
{
    QList<QStringList> starts;
    const QList<QJsonValue> lines = readJsonLines(m_profile.root() + QStringLiteral("/sample-editor.log"));
    for (const QJsonValue &line : lines) {
        QStringList start;
        const QJsonArray array = line.toArray();
        for (const QJsonValue &word : array)
            start.append(word.toString());
        starts.append(start);
    }
    return starts;
}

bool LauncherHarness::waitForEditorStarts(int count, int msecs) const
{
    return QTest::qWaitFor([&]() { return editorStarts().size() >= count; }, msecs);
}

QString LauncherHarness::launcherBinary()
{
    return QStringLiteral(ZANMIR_LAUNCHER_BINARY);
}

QString LauncherHarness::sampleEditorBinary()
{
    return QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY);
}

QString LauncherHarness::makeSampleProjectBinary()
{
    return QStringLiteral(ZANMIR_MAKE_SAMPLE_PROJECT_BINARY);
}

QString LauncherHarness::registerScript()
{
    return QStringLiteral(ZANMIR_REGISTER_SCRIPT);
}

QString LauncherHarness::watchdogLibrary()
{
    return QStringLiteral(ZANMIR_DIALOG_WATCHDOG_LIBRARY);
}
