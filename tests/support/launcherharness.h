#ifndef LAUNCHERHARNESS_H
#define LAUNCHERHARNESS_H

#include "httpfixture.h"
#include "testprofile.h"

#include <QHash>
#include <QProcess>
#include <QStringList>

#include <list>
#include <memory>

// A message box or other modal dialog, as the preloaded watchdog recorded it before closing it.
struct DialogRecord
{
    QString icon; // "critical", "warning", "information", "question", "none"; empty for a non-box dialog
    QString title;
    QString text;
    QString button; // the button the watchdog clicked, such as "Ok"
};

// One process of the real launcher binary, killed if it still runs when it goes.
class LauncherRun
{
public:
    explicit LauncherRun(const QString &dialogLog)
        : m_dialogLog(dialogLog)
    { }
    ~LauncherRun();

    // False when the process did not start, or did not end in time; it is
    // then killed, so a hang fails the test.
    bool waitForFinished(int msecs);
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    // True when the process started and ended by itself with this status.
    // (Qt reports status 0 for a program that never started.)
    bool exitedWith(int code) const
    {
        return m_started && !m_timedOut && m_process.exitStatus() == QProcess::NormalExit
            && m_process.exitCode() == code;
    }
    QList<DialogRecord> dialogs() const;
    // The steps of the run's ZANMIR_TEST_SCRIPT that have not succeeded:
    // those that failed and those never reached, in the script's order.
    QStringList failedSteps() const;
    // The steps that have succeeded so far, in the order they ended.
    QStringList doneSteps() const;
    // Exit status, dialogs and missing steps, for failure messages; stderr goes to the test's own.
    QString describe() const;
    // What the process wrote to standard output since the last call.
    QByteArray readStandardOutput() { return m_process.readAllStandardOutput(); }

private:
    friend class LauncherHarness;

    QProcess m_process;
    QString m_dialogLog;
    QStringList m_script;
    bool m_started = false;
    bool m_timedOut = false;
};

// Runs the real ZanmirLauncher on a fresh profile of its own, with the update server on
// loopback, the sample editor as every installed editor, and a watchdog that records and
// closes message boxes. Project files are handed over by full path, as a file manager does,
// from a working folder of their own elsewhere in the profile.
class LauncherHarness
{
public:
    static constexpr int kDefaultTimeout = 60000;

    LauncherHarness();

    bool isValid() const { return m_profile.isValid(); }
    const TestProfile &profile() const { return m_profile; }
    QString projectPath(const QString &name) const { return m_profile.root() + QStringLiteral("/projects/") + name; }

    // Default: a loopback port on which nothing listens.
    void setServerBase(const QString &url) { m_serverBase = url; }
    QString serverBase() const { return m_serverBase; }
    // For the launchers started from now on; an empty value removes the variable.
    void setEnvironmentValue(const QString &name, const QString &value) { m_environment.insert(name, value); }

    // Serves the store folder as the update server, the sample installers logging into
    // installerLog() and the watchdog answering Yes to each question.
    bool serveStore();
    QString installerLog() const { return m_profile.root() + QStringLiteral("/installer.log"); }
    // Puts the sample installer at that address of the store; gives its digest, empty on failure.
    QByteArray publishInstaller(const QString &url) const;
    bool publishCatalogue(const QByteArray &catalogue) const;

    // Registers editor versions ("2.1.0.5", "2.2.0.1:inhouse") and the launcher in the
    // uninstall records, anew, each editor a link to the sample editor.
    bool registerVersions(const QStringList &versions, const QString &launcherVersion = QStringLiteral("1.0.0.0"));

    // Starts a launcher and returns at once; several may run at once.
    LauncherRun *start(const QStringList &arguments) { return startProgram(ZANMIR_LAUNCHER_BINARY, arguments); }
    // Starts another program in the launcher's environment, such as the desktop's opener;
    // a script must not get the watchdog preloaded.
    LauncherRun *startProgram(const QString &program, const QStringList &arguments, bool watchdog = true)
    {
        return launch({}, program, arguments, watchdog);
    }
    // Starts a launcher as a user whom permissions bind. The suite may run
    // as root, who writes anywhere: root's launcher runs as "nobody", to whom
    // the profile then belongs, with the modes it has (null when it cannot).
    LauncherRun *startUnprivileged(const QStringList &arguments);
    // Starts a launcher and waits for it to end.
    LauncherRun *run(const QStringList &arguments, int msecs = kDefaultTimeout);

    // The launcher's log file, empty when there is none.
    QString launcherLog() const;
    // One entry per start of the sample editor: program path, then arguments.
    QList<QStringList> editorStarts() const;
    // Editors are started detached and may log after the launcher has ended.
    bool waitForEditorStarts(int count, int msecs = 10000) const;

private:
    QProcessEnvironment environment(const QString &dialogLog) const;
    // Runs the program behind the helper command, if any (such as setpriv).
    // With the watchdog the run follows ZANMIR_TEST_SCRIPT, and the program
    // gets the preloads: in its environment or, behind a helper, through env,
    // so that the helper itself runs without them.
    LauncherRun *launch(const QStringList &helper, const QString &program, const QStringList &arguments, bool watchdog);

    TestProfile m_profile;
    QString storePath(const QString &url) const { return m_profile.root() + QStringLiteral("/store") + url; }

    QString m_serverBase;
    QHash<QString, QString> m_environment;
    std::unique_ptr<FileStoreServer> m_store;
    // After the profile, so that the runs end before its folder goes.
    std::list<LauncherRun> m_runs;
};

#endif // LAUNCHERHARNESS_H
