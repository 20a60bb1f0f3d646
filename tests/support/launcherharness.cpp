#include "launcherharness.h"

#include "testfiles.h"

#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTcpServer>
#include <QtTest>

#include <unistd.h>

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
    if (!m_started)
        return false;
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

QStringList LauncherRun::doneSteps() const
{
    QStringList steps;
    for (const QByteArray &line : jsonLines(m_dialogLog)) {
        const QJsonObject record = QJsonDocument::fromJson(line).object();
        if (record.contains("step") && record["ok"].toBool())
            steps.append(record["step"].toString());
    }
    return steps;
}

QStringList LauncherRun::failedSteps() const
{
    // A step that never ran leaves no line, so the whole script is the measure.
    QStringList done = doneSteps();
    QStringList failed;
    for (const QString &step : m_script) {
        if (!done.removeOne(step))
            failed.append(step);
    }
    return failed;
}

QString LauncherRun::describe() const
{
    QString text = !m_started                           ? "did not start: " + m_process.errorString()
        : m_timedOut                                    ? QStringLiteral("timed out and killed")
        : m_process.exitStatus() == QProcess::CrashExit ? QStringLiteral("crashed")
                                                        : QStringLiteral("exit code %1").arg(m_process.exitCode());
    for (const DialogRecord &record : dialogs())
        text += QStringLiteral("\n  dialog [%1] %2: %3").arg(record.icon, record.title, record.text);
    const QStringList failed = failedSteps();
    if (!failed.isEmpty())
        text += "\n  steps not done: " + failed.join("; ");
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
    // Made from nothing, so that no part of the desktop the test runs on (its
    // session bus, desktop name, data folders, Qt settings or deployment
    // values) reaches the launcher. Of the test's own environment it gets
    // the tools, the X server and the settings of this run of the suite.
    const QProcessEnvironment own = QProcessEnvironment::systemEnvironment();
    QProcessEnvironment environment;
    for (const char *name : { "PATH", "DISPLAY", "ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "QT_FATAL_WARNINGS",
             "QT_LOGGING_RULES" }) {
        if (own.contains(QLatin1String(name)))
            environment.insert(QLatin1String(name), own.value(QLatin1String(name)));
    }
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    // This profile's folders, and the system's for the rest.
    for (const QString &entry : QStringList { "HOME=home", "XDG_DATA_HOME=data", "XDG_CONFIG_HOME=config",
             "XDG_RUNTIME_DIR=runtime", "XDG_CACHE_HOME=cache" })
        environment.insert(entry.section('=', 0, 0), m_profile.root() + '/' + entry.section('=', 1));
    environment.insert(QStringLiteral("XDG_DATA_DIRS"), QStringLiteral("/usr/local/share:/usr/share"));
    environment.insert(QStringLiteral("XDG_CONFIG_DIRS"), QStringLiteral("/etc/xdg"));
    // Only loopback traffic: no proxy of the machine is passed on.
    environment.insert(QStringLiteral("ZANMIR_SERVER_BASE"), m_serverBase);
    environment.insert(QStringLiteral("ZANMIR_STORE_URL"), m_serverBase + QStringLiteral("/store"));
    environment.insert(QStringLiteral("ZANMIR_PUBLIC_HOST"), QStringLiteral("localhost"));
    // Under an X server the launcher shows real windows. Without one,
    // "offscreen" stands in (its screen, leaked at exit, is in the
    // sanitizer's suppressions).
    environment.insert(QStringLiteral("QT_QPA_PLATFORM"),
        environment.contains(QStringLiteral("DISPLAY")) ? QStringLiteral("xcb") : QStringLiteral("offscreen"));
    environment.insert(
        QStringLiteral("ZANMIR_SAMPLE_EDITOR_LOG"), m_profile.root() + QStringLiteral("/sample-editor.log"));
    // The program that the sample installer installs as each editor version.
    environment.insert(QStringLiteral("ZANMIR_SAMPLE_EDITOR"), QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY));
    environment.insert(QStringLiteral("ZANMIR_TEST_DIALOG_LOG"), dialogLog);
    // A sanitizer report gets an exit status of its own.
    const QString asan = QStringLiteral("ASAN_OPTIONS"), ubsan = QStringLiteral("UBSAN_OPTIONS");
    environment.insert(asan, environment.value(asan) + QStringLiteral(":exitcode=86"));
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

LauncherRun *LauncherHarness::launch(
    const QStringList &helper, const QString &program, const QStringList &arguments, bool watchdog)
{
    const QString dialogLog = m_profile.root() + QStringLiteral("/dialogs-%1.jsonl").arg(m_runs.size() + 1);
    LauncherRun *run = &m_runs.emplace_back(dialogLog);
    QProcessEnvironment environment = this->environment(dialogLog);
    QStringList command = helper;
    if (watchdog) {
        // A sanitizer build's runtime comes first, so that its checks hold,
        // then the library that keeps every module mapped until the leak check.
        const QString sanitizer = QStringLiteral(ZANMIR_SANITIZER_PRELOAD);
        const QString preload
            = (sanitizer.isEmpty() ? QString() : sanitizer + ':') + QStringLiteral(ZANMIR_DIALOG_WATCHDOG_LIBRARY);
        if (helper.isEmpty())
            environment.insert(QStringLiteral("LD_PRELOAD"), preload);
        else
            command << QStringLiteral("env") << "LD_PRELOAD=" + preload;
        for (const QString &step :
            environment.value(QStringLiteral("ZANMIR_TEST_SCRIPT")).split(';', Qt::SkipEmptyParts))
            run->m_script.append(step.trimmed());
    }
    command << program << arguments;
    run->m_process.setProcessEnvironment(environment);
    run->m_process.setWorkingDirectory(m_profile.root() + QStringLiteral("/home"));
    run->m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    run->m_process.start(command.takeFirst(), command);
    // Without a time limit: starting ends either way, and at once.
    run->m_started = run->m_process.waitForStarted(-1);
    return run;
}

LauncherRun *LauncherHarness::startUnprivileged(const QStringList &arguments)
{
    if (geteuid() != 0)
        return start(arguments);
    // The user's own profile, as a user who owns it but may not write where its modes say no.
    const uid_t nobody = 65534;
    QDirIterator it(m_profile.root(), QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
        QDirIterator::Subdirectories);
    bool owned = lchown(QFile::encodeName(m_profile.root()).constData(), nobody, nobody) == 0;
    while (it.hasNext())
        owned = lchown(QFile::encodeName(it.next()).constData(), nobody, nobody) == 0 && owned;
    if (!owned)
        return nullptr;
    return launch({ QStringLiteral("setpriv"), QStringLiteral("--reuid=%1").arg(nobody),
                      QStringLiteral("--regid=%1").arg(nobody), QStringLiteral("--clear-groups") },
        QStringLiteral(ZANMIR_LAUNCHER_BINARY), arguments, true);
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
