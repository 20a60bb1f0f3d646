#include "processlauncher.h"

#include "applinfo.h"
#include "offlinefilemanager.h"
#include "registry.h"
#include "screeninfo.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTranslator>

ProcessLauncher::ProcessLauncher(int &argc, char **argv)
    : ApplLauncher(argc, argv)
    , m_httpAccess(this)
    , m_refreshTimer(this)
    , m_updateNotifier(0, 1, 0, 0)
{
    // Resources of a static library are registered by hand.
    Q_INIT_RESOURCE(launcher_i18n);

    // Taken from argv itself rather than arguments(), as plain narrow strings.
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromUtf8(argv[i]);
        m_arguments.append(argument);
        writeLog(QStringLiteral("ApplLauncher::ApplLauncher: Launcher arguments[%1]: %2").arg(i).arg(argument));
    }
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
        if (argument.startsWith(QLatin1Char('/')) || argument.startsWith(QLatin1Char('-'))) {
            // Options: "/test..." or "-test..." in any case switch test mode
            // on; everything else is ignored. A path that begins with "/" is
            // therefore an option too.
            if (argument.startsWith(QLatin1String("/test"), Qt::CaseInsensitive)
                || argument.startsWith(QLatin1String("-test"), Qt::CaseInsensitive))
                testMode = true;
            continue;
        }
        // The last existing file wins; a directory exists as well.
        if (QFile::exists(argument))
            openFilePath = argument;
    }
    return testMode;
}

QString ProcessLauncher::ensureFolder(const QString &folder) const
{
    if (!QDir(folder).exists())
        QDir().mkdir(folder);
    return folder;
}

bool ProcessLauncher::initialize(QTranslator &translator)
{
    const bool testMode = parseArguments(m_arguments, m_openFilePath);
    m_screenInfo = new ScreenInfo(this);
    m_exitStatus = 1;

    // One level at a time, since mkdir makes only the last one.
    ensureFolder(vorlixDataFolder());
    ensureFolder(launcherDataFolder());

    if (!readApplInfo(testMode)) {
        writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_applInfo->getErrorText()));
        return false;
    }
    writeLog(QStringLiteral("ProcessLauncher::initialize: %1").arg(m_applInfo->getInfoText()));
    installTranslator(translator);
    checkProxy();
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

void ProcessLauncher::installTranslator(QTranslator &translator)
{
    QString locale;
    getLocale(locale);
    // English is the source language: "en_US" loads nothing, and a locale
    // without a catalogue runs in English without a word.
    if (locale == QLatin1String("en_US"))
        return;
    const QString name = QStringLiteral(":/i18n/launcherapp_%1").arg(locale);
    if (translator.load(name, QString(), QString(), QString())) {
        QCoreApplication::installTranslator(&translator);
        writeLog(QStringLiteral("ProcessLauncher::installTranslator: loaded successfully"));
    }
}
