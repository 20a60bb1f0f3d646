#include "processlauncher.h"

#include "applinfo.h"
#include "applupdater.h"
#include "brokenfilemover.h"
#include "deploymentconfig.h"
#include "leftoverfilesweeper.h"
#include "offlinefilemanager.h"
#include "registry.h"
#include "screeninfo.h"
#include "systemenvironment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPair>
#include <QStandardPaths>
#include <QTranslator>

namespace {

// Temporary files of writes that a killed launcher never finished are
// removed once this old: far longer than any write of another launcher
// still running.
const qint64 kLeftoverAgeSecs = 3600;

} // namespace

ProcessLauncher::ProcessLauncher(int &argc, char **argv)
    : ApplLauncher(argc, argv)
    , m_httpAccess(this)
    , m_refreshTimer(this)
    , m_updateNotifier(0, 1, 0, 0)
{
    // Taken from argv itself rather than arguments(), as plain narrow strings.
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromUtf8(argv[i]);
        m_arguments.append(argument);
        writeLog(QStringLiteral("ApplLauncher::ApplLauncher: Launcher arguments[%1]: %2").arg(i).arg(argument));
    }
    connect(this, SIGNAL(lastWindowClosed()), this, SLOT(lastWindowClosed()));
}

ProcessLauncher::~ProcessLauncher()
{
    m_refreshTimer.stop();
    m_updateNotifier.pause();
    // The state objects are children and go with the QObject tree.
}

bool ProcessLauncher::parseArguments(const QStringList &arguments, QString &openFilePath)
{
    bool testMode = false;
    for (const QString &argument : arguments) {
        // Where full paths begin with "/", a project handed over by a file
        // manager would otherwise read as an option and be dropped.
        if (SystemEnvironment::isFileArgument(argument)) {
            openFilePath = QFileInfo(argument).absoluteFilePath();
            continue;
        }
        if (argument.startsWith(QLatin1Char('/')) || argument.startsWith(QLatin1Char('-'))) {
            // Options: "/test..." or "-test..." in any case switch test mode
            // on; everything else is ignored. A path that begins with "/" is
            // therefore an option too.
            if (argument.startsWith(QLatin1String("/test"), Qt::CaseInsensitive)
                || argument.startsWith(QLatin1String("-test"), Qt::CaseInsensitive))
                testMode = true;
            continue;
        }
        // The last existing file wins; a directory exists as well. The editor
        // and the recent list get the full path, so that the project can be
        // reopened from any working folder.
        if (QFile::exists(argument))
            openFilePath = QFileInfo(argument).absoluteFilePath();
    }
    return testMode;
}

QString ProcessLauncher::ensureFolder(const QString &folder) const
{
    if (!QDir(folder).exists())
        QDir().mkdir(folder);
    return folder;
}

void ProcessLauncher::setAsideStateFile(
    const QString &operation, const QString &path, const std::function<bool(QString &reason)> &rebuild)
{
    // Only the manager file and the uninstall records are needed to open a
    // project. Another state file that can be neither read nor replaced is
    // moved aside and made anew; failing that, the launcher goes on with it
    // in memory for this run.
    BrokenFileMover mover(path);
    QString reason;
    if (mover.moveAside()) {
        writeLog(QStringLiteral("%1: %2").arg(operation, mover.getInfoText()));
        if (rebuild(reason))
            return;
    } else {
        reason = mover.getErrorText();
    }
    writeLog(QStringLiteral("%1: Skipped for this run: %2: %3").arg(operation, path, reason));
}

bool ProcessLauncher::initialize(QTranslator &translator)
{
    // Once per process: the widgets connect to the state objects made here,
    // and a second set would leave them listening to the first.
    Q_ASSERT_X(!m_initialized, "ProcessLauncher::initialize", "called twice");
    m_initialized = true;
    const bool testMode = parseArguments(m_arguments, m_openFilePath);
    m_screenInfo = new ScreenInfo(this);
    m_exitStatus = 1;

    // One level at a time, since mkdir makes only the last one.
    ensureFolder(vorlixDataFolder());
    ensureFolder(launcherDataFolder());
    removeLeftoverFiles();
    // Whoever reads the log of a run against a plain http server learns it here.
    for (const QString &note : DeploymentConfig::addressNotes())
        writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(note));

    if (!readApplInfo(testMode)) {
        writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_applInfo->getErrorText()));
        return false;
    }
    writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_applInfo->getInfoText()));
    installTranslator(translator);
    checkProxy();
    // The catalogue's address and the proxy are known now: its answer comes
    // in while the records and the offline index are read.
    m_httpAccess.prefetch(m_applInfo->getWebUrl(QStringLiteral("launcher_info_web"), QString()));
    if (!readRegistry()) {
        writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_registry->getErrorText()));
        return false;
    }
    writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_registry->getInfoText()));
    if (!getLauncherVersion())
        return false;
    if (!readOfflineFileInfo()) {
        writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_offlineFiles->getErrorText()));
        return false;
    }
    writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_offlineFiles->getInfoText()));
    if (!prepareApplUpdater())
        return false;

    m_exitStatus = 0;
    return true;
}

void ProcessLauncher::removeLeftoverFiles()
{
    const QList<QPair<QString, QString>> folders {
        { vorlixDataFolder(), QStringLiteral("ZanmirApplications\\.json") },
        { launcherDataFolder(), QStringLiteral("ZanmirManager\\.json|OfflineFiles\\.json|\\d{8,}\\.html") },
    };
    QStringList removed;
    QStringList failures;
    for (const auto &folder : folders)
        removed += LeftoverFileSweeper(folder.first, folder.second).sweep(kLeftoverAgeSecs, &failures);
    // And the bytes of installer downloads that broke off long ago.
    removed += ApplUpdater::removeStaleDownloads(&failures);
    for (const QString &path : qAsConst(removed))
        writeLog(
            QStringLiteral("ProcessLauncher::removeLeftoverFiles: Removed left-over temporary file: %1").arg(path));
    for (const QString &path : qAsConst(failures))
        writeLog(QStringLiteral("ProcessLauncher::removeLeftoverFiles: Failed to remove left-over temporary file: %1")
                     .arg(path));
}

void ProcessLauncher::installTranslator(QTranslator &translator)
{
    QString locale;
    getLocale(locale);
    if (loadTranslator(translator, locale))
        writeLog(QStringLiteral("ProcessLauncher::installTranslator: loaded successfully"));
}

bool ProcessLauncher::loadTranslator(QTranslator &translator, const QString &locale)
{
    // English is the source language: "en_US" loads nothing, and a locale
    // without a catalogue runs in English without a word.
    if (locale == QLatin1String("en_US"))
        return false;
    const QString name = QStringLiteral(":/i18n/launcherapp_%1").arg(locale);
    if (!translator.load(name, QString(), QString(), QString()))
        return false;
    QCoreApplication::installTranslator(&translator);
    return true;
}
