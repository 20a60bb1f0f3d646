#ifndef LAUNCHERHARNESS_H
#define LAUNCHERHARNESS_H

#include "testprofile.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>

// One message box or other modal dialog that the launcher showed, as the
// preloaded dialog watchdog recorded it before closing it.
struct DialogRecord
{
    QString icon; // "critical", "warning", "information", "question", "none"; empty for a non-box dialog
    QString title;
    QString text;
    QString button; // the button the watchdog clicked, such as "Ok"
    QString className; // set for dialogs that are no message box
};

// One process of the real launcher binary. It belongs to its harness; one
// that is still running when it goes is killed.
class LauncherRun : public QObject
{
    Q_OBJECT

public:
    // The exit status of a run that a sanitizer stopped or found leaking.
    static constexpr int kSanitizerExitCode = 86;

    ~LauncherRun() override;

    // False when the process did not end in time; it is then killed, so a
    // hung launcher fails the test instead of hanging it.
    bool waitForFinished(int msecs);
    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }
    // Ends a process that is meant to keep running, such as a window holding
    // the lock: terminate, then kill.
    void stop();

    qint64 processId() const { return m_process.processId(); }
    int exitCode() const { return m_process.exitCode(); }
    bool crashed() const { return m_process.exitStatus() == QProcess::CrashExit; }
    bool timedOut() const { return m_timedOut; }
    QString standardError();
    // The dialogs that this process showed, in order.
    QList<DialogRecord> dialogs() const;
    // True when the process ended by itself with this status.
    bool exitedWith(int code) const { return !m_timedOut && !crashed() && exitCode() == code; }
    // Exit status, dialogs and the end of stderr, for failure messages.
    QString describe();

private:
    friend class LauncherHarness;
    LauncherRun(QObject *parent, const QString &dialogLog);
    void kill();

    QProcess m_process;
    QString m_dialogLog;
    QByteArray m_standardError;
    bool m_timedOut = false;
};

// Runs the real ZanmirLauncher on a fresh profile of its own: HOME and XDG
// folders in a temporary folder, the update server on loopback, the sample
// editor as every installed editor, and a watchdog that records and closes
// message boxes. Project files are given by relative name, since a full path
// begins with "/" and counts as an option; they resolve in projectsFolder().
class LauncherHarness : public QObject
{
    Q_OBJECT

public:
    static constexpr int kDefaultTimeout = 60000;

    LauncherHarness();
    ~LauncherHarness() override;

    bool isValid() const { return m_profile.isValid(); }
    const TestProfile &profile() const { return m_profile; }
    // The launchers' working directory.
    QString projectsFolder() const { return m_profile.root() + QStringLiteral("/projects"); }
    QString projectPath(const QString &name) const { return projectsFolder() + QLatin1Char('/') + name; }

    // Default: a loopback port on which nothing listens.
    void setServerBase(const QString &url) { m_serverBase = url; }
    QString serverBase() const { return m_serverBase; }
    // Extra or changed variables for the launchers started from now on; an
    // empty value removes the variable.
    void setEnvironmentValue(const QString &name, const QString &value) { m_environment.insert(name, value); }
    QProcessEnvironment environment() const;

    // Registers editor versions ("2.1.0.5", "2.2.0.1:inhouse") and the
    // launcher in the profile's uninstall records, each editor a link to the
    // sample editor. Replaces what was registered before.
    bool registerVersions(const QStringList &versions, const QString &launcherVersion = QStringLiteral("1.0.0.0"),
        QString *errorText = nullptr);

    // Starts a launcher and returns at once; the run stays alive until
    // stopped, finished or the harness goes. Several may run at once.
    LauncherRun *start(const QStringList &arguments);
    // Starts a launcher and waits for it to end.
    LauncherRun *run(const QStringList &arguments, int msecs = kDefaultTimeout);

    // The launcher's log file, empty when there is none.
    QString launcherLog() const;
    bool waitForLog(const QString &text, int msecs = kDefaultTimeout) const;
    // One entry per start of the sample editor: program path, then arguments.
    QList<QStringList> editorStarts() const;
    // Editors are started detached and may log after the launcher has ended.
    bool waitForEditorStarts(int count, int msecs = 10000) const;

    static QString launcherBinary() { return QStringLiteral(ZANMIR_LAUNCHER_BINARY); }
    static QString sampleEditorBinary() { return QStringLiteral(ZANMIR_SAMPLE_EDITOR_BINARY); }
    static QString makeSampleProjectBinary() { return QStringLiteral(ZANMIR_MAKE_SAMPLE_PROJECT_BINARY); }
    static QString registerScript() { return QStringLiteral(ZANMIR_REGISTER_SCRIPT); }
    static QString watchdogLibrary() { return QStringLiteral(ZANMIR_DIALOG_WATCHDOG_LIBRARY); }

private:
    TestProfile m_profile;
    QString m_serverBase;
    QHash<QString, QString> m_environment;
    int m_runCount = 0;
};

#endif // LAUNCHERHARNESS_H
