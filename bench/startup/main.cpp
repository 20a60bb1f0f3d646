// What a start of the launcher costs, and what its queries and its project
// reader cost on large inputs. Prints, in one run:
//  - an open-with start of the real ZanmirLauncher against a bare Qt program
//    that does only the work every open-with start must do
//    (bench_startup_bare), at 10 and at 1,000 uninstall groups of which the
//    launcher and three editors are of the family, and at 1,000 editor
//    versions: the median of the ratios of runs made in turn, and both
//    medians in ms;
//  - the time from the start to the first painted main window (three
//    editors, six recent projects with pictures) against a bare window with
//    a web view (bench_startup_window), measured alike in both by a probe
//    preloaded into them (bench_firstpaint), on the X server of DISPLAY when
//    there is one; and, since the launcher does without the GL driver, also
//    against the bare window told to do without it;
//  - the median time of one registry query at 1,000 and 5,000 groups;
//  - the time and the extra peak memory of reading a 200,000-entry archive
//    and a 200 MB XML project.
// Everything runs on a sandbox profile in a temporary folder, with the
// catalogue served on loopback and the sample editor as the installed one.
//
// Usage: bench_startup [RUNS] [PART...]
//   RUNS: runs per program and case, default 15; PART: openwith, firstpaint,
//   queries or read, to run only those parts (default: all of them).
#include "benchpicture.h"
#include "editordocmanager.h"
#include "editorinfo.h"
#include "processmemory.h"
#include "registry.h"
#include "sampleproject.h"
#include "systemsettings.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QProcess>
#include <QSet>
#include <QSettings>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QTextStream>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace {

const QString kCataloguePath = QStringLiteral("/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1");
const QByteArray kCatalogue = R"({"1.0.0": {"app_versions": {"update_date": "2024/01/01", "updates": []}}})";
const QByteArray kPage = "<html><body><h1>News</h1><p>Nothing new.</p></body></html>";
const QString kEditorVersion = QStringLiteral("2.1.0.5");

qint64 steadyNs()
{
    return std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QTextStream &out()
{
    static QTextStream stream(stdout);
    return stream;
}

template<class T> T median(QVector<T> values)
{
    std::sort(values.begin(), values.end());
    return values.isEmpty() ? T() : values.at(values.size() / 2);
}

// Answers every request with the catalogue; listens on loopback only and
// works while this thread runs an event loop.
class CatalogueServer : public QObject
{
    Q_OBJECT

public:
    bool listen()
    {
        connect(&m_server, SIGNAL(newConnection()), this, SLOT(accept()));
        return m_server.listen(QHostAddress::LocalHost, 0);
    }
    QString base() const { return QStringLiteral("http://127.0.0.1:%1").arg(m_server.serverPort()); }

private slots:
    void accept()
    {
        while (QTcpSocket *socket = m_server.nextPendingConnection()) {
            connect(socket, SIGNAL(readyRead()), this, SLOT(answer()));
            connect(socket, SIGNAL(disconnected()), socket, SLOT(deleteLater()));
        }
    }
    void answer()
    {
        QTcpSocket *socket = qobject_cast<QTcpSocket *>(sender());
        QByteArray &request = m_requests[socket];
        request += socket->readAll();
        if (!request.contains("\r\n\r\n"))
            return;
        // The catalogue, and a small page for the window's news and help.
        const bool catalogue = request.startsWith("GET /Zanmir/Launcher/UpdateInfo/");
        m_requests.remove(socket);
        const QByteArray body = catalogue ? kCatalogue : kPage;
        socket->write(QByteArrayLiteral("HTTP/1.1 200 OK\r\nContent-Type: ")
            + (catalogue ? "application/json" : "text/html")
            + "\r\nConnection: close\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body);
        socket->disconnectFromHost();
    }

private:
    QTcpServer m_server;
    QHash<QTcpSocket *, QByteArray> m_requests;
};

// A throw-away user profile, as the tests make them.
class Profile
{
public:
    bool isValid() const { return m_dir.isValid(); }
    QString path(const QString &name) const { return m_dir.path() + QLatin1Char('/') + name; }
    QString recordsFile() const { return path(QStringLiteral("config/Vorlix/UninstallRecords.ini")); }
    QString project() const { return path(QStringLiteral("projects/scene.zmr")); }
    QString editorLog() const { return path(QStringLiteral("editor.log")); }

    bool make()
    {
        for (const char *folder : { "home", "data", "config/Vorlix", "runtime", "cache", "projects" })
            QDir().mkpath(path(QLatin1String(folder)));
        QFile::setPermissions(path(QStringLiteral("runtime")), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return SampleProject::writeProject(project(), kEditorVersion);
    }

    QProcessEnvironment environment(const QString &serverBase) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *name : { "HTTP_PROXY", "HTTP_PROXY_CREDENTIALS", "http_proxy", "HTTPS_PROXY", "https_proxy",
                 "ALL_PROXY", "all_proxy", "no_proxy", "NO_PROXY", "LD_PRELOAD" })
            environment.remove(QLatin1String(name));
        environment.insert(QStringLiteral("HOME"), path(QStringLiteral("home")));
        environment.insert(QStringLiteral("XDG_DATA_HOME"), path(QStringLiteral("data")));
        environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path(QStringLiteral("config")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), path(QStringLiteral("runtime")));
        environment.insert(QStringLiteral("XDG_CACHE_HOME"), path(QStringLiteral("cache")));
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        environment.insert(QStringLiteral("ZANMIR_SERVER_BASE"), serverBase);
        environment.insert(QStringLiteral("ZANMIR_STORE_URL"), serverBase + QStringLiteral("/store"));
        environment.insert(QStringLiteral("ZANMIR_PUBLIC_HOST"), QStringLiteral("localhost"));
        environment.insert(QStringLiteral("ZANMIR_SAMPLE_EDITOR_LOG"), editorLog());
        return environment;
    }

    // That many groups: the launcher, the sample editor as the one version
    // that fits the project, more editor versions of the family up to
    // familyGroups, and other products' groups of ten values each. Written
    // well before the start, as by an installer.
    bool writeRecords(int groups, int familyGroups) const
    {
        QFile::remove(recordsFile());
        {
            QSettings records(recordsFile(), QSettings::IniFormat);
            const auto add = [&records](const QString &subkey, const QString &type, const QString &version,
                                 const QString &program) {
                const QString product = type == QLatin1String("launcher") ? QStringLiteral("Vorlix Zanmir Launcher")
                                                                          : QStringLiteral("Vorlix Zanmir Editor");
                records.beginGroup(subkey);
                records.setValue(QStringLiteral("DisplayName"), product + QLatin1Char(' ') + version);
                records.setValue(QStringLiteral("AppType"), type);
                records.setValue(QStringLiteral("AppName"), product);
                records.setValue(QStringLiteral("AppEdition"), QStringLiteral("release"));
                records.setValue(QStringLiteral("AppVersion"), version);
                records.setValue(QStringLiteral("EditorPath"), program);
                records.setValue(QStringLiteral("UninstallString"), program + QStringLiteral(".uninstall"));
                records.endGroup();
            };
            add(QStringLiteral("ZanmirLauncher"), QStringLiteral("launcher"), QStringLiteral("1.0.0.0"),
                QStringLiteral(ZANMIR_LAUNCHER_BINARY));
            add(QStringLiteral("ZanmirEditor_") + kEditorVersion, QStringLiteral("editor"), kEditorVersion,
                QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY));
            for (int i = 2; i < familyGroups; ++i) {
                const QString version = QStringLiteral("1.%1.%2.0").arg(i / 100).arg(i % 100);
                add(QStringLiteral("ZanmirEditor_") + version, QStringLiteral("editor"), version,
                    QStringLiteral("/opt/zanmir/%1/zanmir-editor").arg(version));
            }
            for (int i = familyGroups; i < groups; ++i) {
                records.beginGroup(QStringLiteral("{%1-0000-4000-8000-000000000000}").arg(i, 8, 16, QLatin1Char('0')));
                const QString folder = QStringLiteral("/opt/product-%1").arg(i);
                records.setValue(QStringLiteral("DisplayName"), QStringLiteral("Some Product %1").arg(i));
                records.setValue(QStringLiteral("DisplayVersion"), QStringLiteral("%1.0.%2").arg(i % 7).arg(i));
                records.setValue(QStringLiteral("Publisher"), QStringLiteral("Some Maker %1").arg(i % 13));
                records.setValue(QStringLiteral("InstallLocation"), folder);
                records.setValue(QStringLiteral("InstallDate"), QStringLiteral("20240101"));
                records.setValue(QStringLiteral("UninstallString"), folder + QStringLiteral("/uninstall"));
                records.setValue(QStringLiteral("DisplayIcon"), folder + QStringLiteral("/icon.png"));
                records.setValue(QStringLiteral("EstimatedSize"), 1000 + i);
                records.setValue(QStringLiteral("NoModify"), 1);
                records.setValue(QStringLiteral("URLInfoAbout"), QStringLiteral("https://maker%1.example").arg(i % 13));
                records.endGroup();
            }
            records.sync();
            if (records.status() != QSettings::NoError)
                return false;
        }
        QFile file(recordsFile());
        return file.open(QIODevice::ReadOnly)
            && file.setFileTime(QDateTime::currentDateTime().addDays(-1), QFileDevice::FileModificationTime);
    }

private:
    QTemporaryDir m_dir;
};

// Runs a program to its end, a minute at most, while this thread's event
// loop turns (the catalogue server lives here). False when it failed;
// started and ended are the clock's ns around it.
bool runProgram(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
    const Profile &profile, qint64 &started, qint64 &ended)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(profile.path(QStringLiteral("home")));
    process.setStandardOutputFile(QProcess::nullDevice());
    process.setStandardErrorFile(QProcess::nullDevice());
    QEventLoop loop;
    QObject::connect(&process, SIGNAL(finished(int, QProcess::ExitStatus)), &loop, SLOT(quit()));
    QObject::connect(&process, SIGNAL(errorOccurred(QProcess::ProcessError)), &loop, SLOT(quit()));
    QTimer deadline;
    QObject::connect(&deadline, SIGNAL(timeout()), &loop, SLOT(quit()));
    deadline.start(60000);
    started = steadyNs();
    process.start(program, arguments);
    loop.exec();
    ended = steadyNs();
    if (process.state() != QProcess::NotRunning) {
        process.kill();
        process.waitForFinished();
        return false;
    }
    return process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

// The wall time of a run in ns, -1 when it failed.
qint64 runTimed(const QString &program, const QStringList &arguments, const Profile &profile, const QString &server)
{
    qint64 started = 0, ended = 0;
    return runProgram(program, arguments, profile.environment(server), profile, started, ended) ? ended - started : -1;
}

// Runs a program with the first-paint probe preloaded, which ends it after
// its first window was painted: the ns from the start to that paint, -1 when
// it failed. The window's object name goes to window, the processor time of
// the program until then to cpuNs.
qint64 runToFirstPaint(const QString &program, const Profile &profile, const QString &server, QString &window,
    qint64 &cpuNs, bool withoutGl = false)
{
    const QString log = profile.path(QStringLiteral("first-paint.log"));
    QFile::remove(log);
    QProcessEnvironment environment = profile.environment(server);
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(ZANMIR_FIRST_PAINT_PROBE));
    environment.insert(QStringLiteral("ZANMIR_BENCH_PAINT_LOG"), log);
    // A real X server when there is one (bench/run starts Xvfb), as a user's window is.
    if (!environment.value(QStringLiteral("DISPLAY")).isEmpty())
        environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
    // The launcher does without the GL driver that any Qt window on X loads
    // by default; this asks the bare window to do without it too.
    if (withoutGl)
        environment.insert(QStringLiteral("QT_XCB_GL_INTEGRATION"), QStringLiteral("none"));
    qint64 started = 0, ended = 0;
    if (!runProgram(program, QStringList(), environment, profile, started, ended))
        return -1;
    const QList<QByteArray> painted = readFile(log).trimmed().split(' ');
    if (painted.size() != 3)
        return -1;
    cpuNs = painted.at(1).toLongLong();
    window = QString::fromUtf8(painted.at(2));
    return painted.at(0).toLongLong() - started;
}

int editorStarts(const Profile &profile)
{
    QFile log(profile.editorLog());
    return log.open(QIODevice::ReadOnly) ? log.readAll().count('\n') : 0;
}

bool compareOpenWith(const Profile &profile, const CatalogueServer &server, int groups, int familyGroups, int runs)
{
    if (!profile.writeRecords(groups, familyGroups))
        return false;
    const QString launcher = QStringLiteral(ZANMIR_LAUNCHER_BINARY);
    const QString bare = QStringLiteral(ZANMIR_BARE_BINARY);
    const QStringList bareArguments { server.base() + kCataloguePath, QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY),
        profile.project() };

    // Turn about, so that a change in the machine's load hits both alike.
    // The first round warms the caches and writes the state files.
    QVector<qint64> launcherNs, bareNs;
    QVector<double> ratios;
    const int startsBefore = editorStarts(profile);
    for (int round = 0; round <= runs; ++round) {
        const qint64 a = runTimed(launcher, { profile.project() }, profile, server.base());
        const qint64 b = runTimed(bare, bareArguments, profile, server.base());
        if (a < 0 || b < 0)
            return false;
        if (round > 0) {
            launcherNs.append(a);
            bareNs.append(b);
            ratios.append(double(a) / double(b));
        }
    }
    // Editors are started detached; give the last ones a moment to log.
    QElapsedTimer wait;
    wait.start();
    while (editorStarts(profile) < startsBefore + 2 * (runs + 1) && wait.elapsed() < 5000)
        QThread::msleep(20);
    if (editorStarts(profile) != startsBefore + 2 * (runs + 1))
        out() << "  (not every run started the editor)\n";

    // The ratio is the median of the rounds' own ratios, which a change of
    // load between rounds moves less than the ratio of the medians.
    const double launcherMs = median(launcherNs) / 1e6, bareMs = median(bareNs) / 1e6;
    out() << QStringLiteral("  %1 groups, %2 of the family: %3x (medians: launcher %4 ms, bare program %5 ms)")
                 .arg(groups, 5)
                 .arg(familyGroups, 4)
                 .arg(median(ratios), 0, 'f', 2)
                 .arg(launcherMs, 0, 'f', 1)
                 .arg(bareMs, 0, 'f', 1)
          << '\n';
    return true;
}

// The main window of a profile with three editors and six recent projects,
// each with its picture, against a bare window with a web view.
bool compareFirstWindow(const Profile &profile, const CatalogueServer &server, int runs)
{
    const QString launcher = QStringLiteral(ZANMIR_LAUNCHER_BINARY);
    if (!profile.writeRecords(4, 4))
        return false;
    // Opened from the file manager, as a user would have.
    for (int i = 0; i < 6; ++i) {
        const QString project = profile.path(QStringLiteral("projects/recent-%1.zmr").arg(i));
        if (!SampleProject::writeProject(project, kEditorVersion, nullptr, benchPicture(i))
            || runTimed(launcher, { project }, profile, server.base()) < 0)
            return false;
    }

    QVector<qint64> launcherNs, bareNs, launcherCpuNs, bareCpuNs, bareNoGlNs;
    QVector<double> ratios, cpuRatios, noGlRatios;
    const QString bare = QStringLiteral(ZANMIR_BARE_WINDOW_BINARY);
    for (int round = 0; round <= runs; ++round) {
        QString launcherWindow, bareWindow, bareNoGlWindow;
        qint64 launcherCpu = 0, bareCpu = 0, bareNoGlCpu = 0;
        const qint64 a = runToFirstPaint(launcher, profile, server.base(), launcherWindow, launcherCpu);
        const qint64 b = runToFirstPaint(bare, profile, server.base(), bareWindow, bareCpu);
        const qint64 c = runToFirstPaint(bare, profile, server.base(), bareNoGlWindow, bareNoGlCpu, true);
        if (a < 0 || b < 0 || c < 0 || launcherWindow != QLatin1String("HomeForm") || launcherCpu <= 0 || bareCpu <= 0)
            return false;
        if (round > 0) {
            launcherNs.append(a);
            bareNs.append(b);
            bareNoGlNs.append(c);
            ratios.append(double(a) / double(b));
            noGlRatios.append(double(a) / double(c));
            launcherCpuNs.append(launcherCpu);
            bareCpuNs.append(bareCpu);
            cpuRatios.append(double(launcherCpu) / double(bareCpu));
        }
    }
    out() << QStringLiteral("  %1x (medians: launcher %2 ms, bare window %3 ms; spread of the ratios %4-%5x)")
                 .arg(median(ratios), 0, 'f', 2)
                 .arg(median(launcherNs) / 1e6, 0, 'f', 1)
                 .arg(median(bareNs) / 1e6, 0, 'f', 1)
                 .arg(*std::min_element(ratios.begin(), ratios.end()), 0, 'f', 2)
                 .arg(*std::max_element(ratios.begin(), ratios.end()), 0, 'f', 2)
          << '\n';
    // All threads' processor time until the paint, which a busy machine moves less.
    out() << QStringLiteral("  processor time until then: %1x (medians: launcher %2 ms, bare window %3 ms)")
                 .arg(median(cpuRatios), 0, 'f', 2)
                 .arg(median(launcherCpuNs) / 1e6, 0, 'f', 1)
                 .arg(median(bareCpuNs) / 1e6, 0, 'f', 1)
          << '\n';
    // The launcher's own work before its paint, with the GL driver out of both.
    out() << QStringLiteral("  against the bare window without the GL driver either: %1x (medians: bare window %2 ms)")
                 .arg(median(noGlRatios), 0, 'f', 2)
                 .arg(median(bareNoGlNs) / 1e6, 0, 'f', 1)
          << '\n';
    return true;
}

bool measureQueries(const Profile &profile, int groups)
{
    if (!profile.writeRecords(groups, groups))
        return false;
    QElapsedTimer timer;
    timer.start();
    Registry registry(profile.path(QStringLiteral("data/queries-%1.json").arg(groups)));
    registry.read();
    const int count = registry.getVersionList(QStringLiteral("editor")).size();
    const qint64 firstNs = timer.nsecsElapsed();
    QVector<qint64> times;
    for (int i = 0; i < 101; ++i) {
        timer.restart();
        registry.getVersionList(QStringLiteral("editor"));
        times.append(timer.nsecsElapsed());
    }
    out() << QStringLiteral(
        "  %1 groups: %2 ms (%3 editors; reading the catalogue and the first query, which parses the records: %4 ms)")
                 .arg(groups, 5)
                 .arg(median(times) / 1e6, 0, 'f', 2)
                 .arg(count)
                 .arg(firstNs / 1e6, 0, 'f', 1)
          << '\n';
    return count == groups - 1;
}

// In a process of its own, so that the peak memory is this read's: prints
// the result, the time in ns and the growth of the peak resident set in KiB.
int readProject(const QString &path)
{
    const qint64 before = ProcessMemory::statusKiB("VmRSS");
    QElapsedTimer timer;
    timer.start();
    EditorDocManager manager(nullptr, path);
    manager.createDocument();
    EditorInfo info;
    const bool read = manager.getEditorInfo(info, QDateTime());
    const qint64 elapsed = timer.nsecsElapsed();
    out() << (read ? info.getVersion() : QStringLiteral("refused")) << ' ' << elapsed << ' '
          << ProcessMemory::statusKiB("VmHWM") - before << '\n';
    return 0;
}

bool measureRead(const QString &what, const QString &path)
{
    QProcess child;
    child.start(QCoreApplication::applicationFilePath(), { QStringLiteral("--read"), path });
    if (!child.waitForFinished(600000) || child.exitCode() != 0)
        return false;
    const QStringList result = QString::fromUtf8(child.readAllStandardOutput()).trimmed().split(QLatin1Char(' '));
    if (result.size() != 3)
        return false;
    out() << QStringLiteral("  %1: %2 s, %3 MB extra peak memory (read as: %4)")
                 .arg(what)
                 .arg(result.at(1).toLongLong() / 1e9, 0, 'f', 3)
                 .arg(result.at(2).toLongLong() / 1024.0, 0, 'f', 1)
                 .arg(result.at(0))
          << '\n';
    return true;
}

// A project whose version element holds that many bytes.
bool writeHugeXml(const QString &path, qint64 versionBytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    bool ok = file.write("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<project>\n  <header>\n"
                         "    <signature>zmr</signature>\n    <formatVer>1</formatVer>\n"
                         "    <m_lastEditorVersion>")
        > 0;
    const QByteArray chunk(1024 * 1024, '7');
    for (qint64 left = versionBytes; ok && left > 0; left -= chunk.size())
        ok = file.write(chunk.constData(), qMin<qint64>(left, chunk.size())) > 0;
    return ok && file.write("</m_lastEditorVersion>\n  </header>\n</project>\n") > 0;
}

} // namespace

int main(int argc, char *argv[])
{
    // A GUI application for the pictures, on no screen.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    if (argc == 3 && QByteArray(argv[1]) == "--read")
        return readProject(QString::fromLocal8Bit(argv[2]));
    const int runs = argc > 1 ? qMax(1, QByteArray(argv[1]).toInt()) : 15;
    QSet<QByteArray> parts;
    for (int i = 2; i < argc; ++i)
        parts.insert(argv[i]);
    const auto wanted = [&parts](const char *part) { return parts.isEmpty() || parts.contains(part); };

    Profile profile;
    CatalogueServer server;
    if (!profile.isValid() || !profile.make() || !server.listen()) {
        out() << "cannot set up the sandbox profile or the catalogue server\n";
        return 1;
    }
    // The queries below run in this process, on the same profile.
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(profile.path(QStringLiteral("config"))));

    if (wanted("openwith")) {
        out() << "open-with start of ZanmirLauncher / bare Qt program, median of " << runs
              << " runs each (targets: 1.1x at 10 groups, 1.2x at 1,000):\n";
        out().flush();
        // Groups of other products beside the launcher and three editors, and,
        // beyond the targets, a thousand editor versions: the catalogue the
        // launcher reads at every start then lists them all.
        for (const QPair<int, int> &groups : { qMakePair(10, 4), qMakePair(1000, 4), qMakePair(1000, 1000) }) {
            if (!compareOpenWith(profile, server, groups.first, groups.second, runs)) {
                out() << "  " << groups.first << " groups: a run failed\n";
                return 1;
            }
            out().flush();
        }
    }

    if (wanted("firstpaint")) {
        out() << "start to the first painted main window, ZanmirLauncher / bare window with a web view, median of "
              << runs << " runs each (target: 1.1x):\n";
        out().flush();
        if (!compareFirstWindow(profile, server, runs)) {
            out() << "  a run failed\n";
            return 1;
        }
    }

    if (wanted("queries")) {
        out() << "one registry query, Registry::getVersionList, median of 101 (target: under 5 ms at 1,000 groups):\n";
        for (int groups : { 1000, 5000 }) {
            if (!measureQueries(profile, groups))
                return 1;
            out().flush();
        }
    }

    if (!wanted("read"))
        return 0;
    out()
        << "reading a project with EditorDocManager (targets: the archive under 0.2 s, the XML project under 64 MB):\n";
    out().flush();
    QList<SampleProject::Entry> entries { { QStringLiteral("header.dat"),
        SampleProject::documentText(SampleProject::packVersion(2, 1, 5, 0)) } };
    for (int i = 1; i < 200000; ++i)
        entries.append({ QStringLiteral("assets/%1.bin").arg(i), QByteArrayLiteral("asset") });
    const QString archive = profile.path(QStringLiteral("projects/many.zmr"));
    const QString xml = profile.path(QStringLiteral("projects/huge.xml"));
    if (!SampleProject::writeArchive(archive, entries, false) || !writeHugeXml(xml, 200LL * 1024 * 1024)) {
        out() << "cannot write the large projects\n";
        return 1;
    }
    entries.clear();
    if (!measureRead(QStringLiteral("200,000-entry archive without \"document.txt\""), archive)
        || !measureRead(QStringLiteral("XML project with a 200 MB version element"), xml)) {
        out() << "  a read failed\n";
        return 1;
    }
    return 0;
}

#include "main.moc"
