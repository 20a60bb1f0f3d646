#include "applinfo.h"
#include "processlauncher.h"
#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTranslator>
#include <QtTest>

namespace {

QJsonObject section(const QString &managerFile)
{
    return TestFiles::readObject(managerFile).value(QString("1.0.0")).toObject();
}

QJsonObject shortForm(const QString &edition, const QString &version)
{
    return QJsonObject { { "appl_type", "editor" }, { "edition", edition }, { "version", version } };
}

EditorInfo editor(const QString &edition, const QString &version)
{
    return EditorInfo(QString("editor"), edition, version);
}

// "release 2.1.0.5" -> an editor record
EditorInfo editor(const QString &editionAndVersion)
{
    const QStringList parts = editionAndVersion.split(QLatin1Char(' '));
    return editor(parts.at(0), parts.at(1));
}

QString describe(const ApplVersion &version)
{
    return QString("%1 %2").arg(version.getEdition(), version.getVersion());
}

} // namespace

// The operations on the current editor, the pins and the recent projects,
// run on the one application object of this process against real files.
class TestEditorLaunch : public QObject
{
    Q_OBJECT

public:
    TestEditorLaunch(const TestProfile &profile, ProcessLauncher &launcher)
        : m_profile(profile)
        , m_launcher(launcher)
    { }

private:
    const TestProfile &m_profile;
    ProcessLauncher &m_launcher;
    qint64 m_logMark = 0;

    QString logFile() const { return m_profile.logFile(QCoreApplication::applicationName()); }
    QString managerFile() const { return m_profile.managerFile(); }
    ApplInfo *applInfo() const { return m_launcher.getApplInfo(); }

    void markLog() { m_logMark = QFileInfo(logFile()).size(); }

    // Log lines written since the last mark, without their date.
    QStringList newLogLines() const
    {
        QFile file(logFile());
        if (!file.open(QIODevice::ReadOnly))
            return QStringList();
        file.seek(m_logMark);
        QStringList lines;
        const QStringList raw = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        for (const QString &line : raw)
            lines.append(line.mid(20)); // "yyyy/MM/dd hh:mm:ss "
        return lines;
    }

    // True when the expected lines stand in the log in this order, others between them allowed.
    static bool inOrder(const QStringList &lines, const QStringList &expected)
    {
        int next = 0;
        for (const QString &line : lines) {
            if (next < expected.size() && line == expected.at(next))
                ++next;
        }
        return next == expected.size();
    }

    // The state objects as start-up makes them, then a fresh log mark.
    bool start()
    {
        const bool ok = m_launcher.readApplInfo(false) && m_launcher.readRegistry();
        markLog();
        return ok;
    }

    void install(const QStringList &editionsAndVersions)
    {
        for (int i = 0; i < editionsAndVersions.size(); ++i) {
            const QStringList parts = editionsAndVersions.at(i).split(QLatin1Char(' '));
            m_profile.registerVersion(QString("E%1").arg(i), QString("editor"), parts.at(0), parts.at(1));
        }
    }

    QStringList historyFile() const
    {
        QStringList entries;
        const QJsonArray histories = section(managerFile()).value(QString("histories")).toArray();
        for (const QJsonValue &element : histories) {
            const QJsonObject history = element.toObject();
            entries.append(QString("%1 %2")
                               .arg(history.value(QString("serial_no")).toInt())
                               .arg(history.value(QString("openfilepath")).toString()));
        }
        entries.sort();
        return entries;
    }

    QStringList pinnedInFile() const
    {
        QStringList pins;
        const QJsonArray array
            = section(managerFile()).value(QString("pinned_version")).toObject().value(QString("editor")).toArray();
        for (const QJsonValue &element : array) {
            const QJsonObject pin = element.toObject();
            pins.append(QString("%1 %2").arg(
                pin.value(QString("edition")).toString(), pin.value(QString("version")).toString()));
        }
        return pins;
    }

private slots:
    void init()
    {
        // Every case starts from a first run: no state files, nothing installed.
        QDir(managerFile()).removeRecursively();
        QFile::remove(managerFile());
        QFile::remove(m_profile.catalogueFile());
        QFile::remove(SystemSettings::uninstallRecordsFile());
        markLog();
    }

    void initializeStopsWithoutRegisteredLauncher()
    {
        m_profile.registerVersion(QString("E0"), QString("editor"), QString("release"), QString("2.1.0.5"));
        QTranslator translator;
        QVERIFY(!m_launcher.initialize(translator));
        QCOMPARE(m_launcher.getExitStatus(), 1);

        const QStringList lines = newLogLines();
        QVERIFY2(inOrder(lines,
                     { QString("ProcessLauncher::readApplInfo: ApplInfo file created: %1").arg(managerFile()),
                         QString("ProcessLauncher::initialize: ApplInfo file loaded: %1").arg(managerFile()),
                         QString("ProcessLauncher::readRegistry: TargetSystemName=win64, RegistryFileName=%1")
                             .arg(m_profile.catalogueFile()),
                         QString("ProcessLauncher::initialize: Registry is read: %1").arg(m_profile.catalogueFile()) }),
            qPrintable(lines.join(QLatin1Char('\n'))));
        // Start-up ends right there.
        QCOMPARE(lines.last(), QString("EditorLaunch::getLauncherVersion: No version info in registry."));
        QCOMPARE(section(managerFile()).value(QString("launcher")).toObject().value(QString("version")),
            QJsonValue(QString()));
    }

    void initializeTakesTheRegisteredLauncher()
    {
        m_profile.registerVersion(QString("L0"), QString("launcher"), QString("release"), QString("1.2.0.0"));
        QTranslator translator;
        // Whether start-up finishes depends on the parts after this one.
        m_launcher.initialize(translator);

        const QStringList lines = newLogLines();
        QVERIFY2(inOrder(lines,
                     { QString("ProcessLauncher::initialize: Registry is read: %1").arg(m_profile.catalogueFile()),
                         QString("EditorLaunch::getLauncherVersion: Current launcher Version 1.2.0.0: %1")
                             .arg(TestProfile::executablePath(QString("L0"))),
                         QString("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }),
            qPrintable(lines.join(QLatin1Char('\n'))));
        QCOMPARE(section(managerFile()).value(QString("launcher")).toObject(),
            (QJsonObject { { "applname", "Vorlix Zanmir Launcher" },
                { "path", TestProfile::executablePath(QString("L0")) },
                { "uninstaller_path", TestProfile::uninstallerPath(QString("L0")) }, { "version", "1.2.0.0" } }));
    }

    void launcherVersionIsTheFirstEntry()
    {
        // Catalogue order follows the subkeys: the older one comes first.
        m_profile.registerVersion(QString("A_Launcher"), QString("launcher"), QString("release"), QString("1.0.0.0"));
        m_profile.registerVersion(QString("B_Launcher"), QString("launcher"), QString("release"), QString("2.0.0.0"));
        QVERIFY(start());
        QVERIFY(m_launcher.getLauncherVersion());
        QCOMPARE(newLogLines(),
            (QStringList { QString("EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: %1")
                               .arg(TestProfile::executablePath(QString("A_Launcher"))),
                QString("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        QString name;
        QString version;
        QVERIFY(m_launcher.getLauncherNameAndVersion(name, version));
        QCOMPARE(name, QString("Vorlix Zanmir Launcher"));
        QCOMPARE(version, QString("1.0.0.0"));

        // Once uninstalled, the record of the manager file stays as it was.
        m_profile.unregisterApplication(QString("A_Launcher"));
        m_profile.unregisterApplication(QString("B_Launcher"));
        QVERIFY(start());
        const QByteArray before = TestFiles::read(managerFile());
        QVERIFY(!m_launcher.getLauncherVersion());
        QVERIFY(m_launcher.getLauncherNameAndVersion(name, version));
        QCOMPARE(version, QString("1.0.0.0"));
        QCOMPARE(TestFiles::read(managerFile()), before);
    }

    void currentEditorSelection()
    {
        install({ QString("release 2.1.0.5"), QString("release 3.0.0.0") });
        QVERIFY(start());
        const QString current
            = QString("EditorLaunch::setCurrentEditorInfo: Current editor release Version 2.1.0.5: %1")
                  .arg(TestProfile::executablePath(QString("E0")));

        m_launcher.setCurrentEditorInfo(editor(QString("release 2.1.0.5")));
        QVERIFY(applInfo()->hasSelectedVersion());
        QVERIFY(applInfo()->isSelectedVersion(editor(QString("release 2.1.0.5"))));
        QVERIFY(m_launcher.saveLauncherState());
        QCOMPARE(newLogLines(),
            (QStringList {
                current, QString("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        // The current editor takes the catalogue's name and paths.
        QCOMPARE(section(managerFile()).value(QString("editor")).toObject(),
            (QJsonObject { { "appl_type", "editor" }, { "applname", "Vorlix Zanmir Editor" }, { "edition", "release" },
                { "path", TestProfile::executablePath(QString("E0")) },
                { "uninstaller_path", TestProfile::uninstallerPath(QString("E0")) }, { "version", "2.1.0.5" } }));
        QCOMPARE(section(managerFile()).value(QString("selected_version")).toObject(),
            (QJsonObject { { "editor", shortForm(QString("release"), QString("2.1.0.5")) } }));

        // A version that is not installed changes nothing.
        markLog();
        m_launcher.setCurrentEditorInfo(editor(QString("beta 2.1.0.5")));
        QCOMPARE(newLogLines(), QStringList { current });
        QVERIFY(applInfo()->isSelectedVersion(editor(QString("release 2.1.0.5"))));

        // The next start finds the selection again.
        QVERIFY(start());
        QVERIFY(applInfo()->isSelectedVersion(editor(QString("release 2.1.0.5"))));
        QCOMPARE(applInfo()->getCurrentEditorInfo().getPath(), TestProfile::executablePath(QString("E0")));

        m_launcher.unsetCurrentEditorInfo();
        QVERIFY(!applInfo()->hasSelectedVersion());
        QVERIFY(m_launcher.saveLauncherState());
        QCOMPARE(newLogLines().first(), QString("EditorLaunch::unsetCurrentEditorInfo:"));
        QCOMPARE(section(managerFile()).value(QString("editor")).toObject(),
            (QJsonObject { { "appl_type", "" }, { "applname", "" }, { "edition", "" }, { "path", "" },
                { "uninstaller_path", "" }, { "version", "" } }));
        QCOMPARE(section(managerFile()).value(QString("selected_version")).toObject(),
            (QJsonObject { { "editor", QJsonObject { { "appl_type", "" }, { "edition", "" }, { "version", "" } } } }));
    }

    void historySerialNumbers_data()
    {
        // "+path" opens a project, "-n" deletes the entry with that number.
        QTest::addColumn<QStringList>("steps");
        QTest::addColumn<QStringList>("histories"); // most recent first
        QTest::addColumn<QString>("lastInfo");

        QTest::newRow("first entry gets 1")
            << QStringList { "+/p/a.zmr" } << QStringList { "1 /p/a.zmr" } << "HistoryInfo added: serial_no=1";
        QTest::newRow("same path twice: one entry, now the newest")
            << QStringList { "+/p/a.zmr", "+/p/b.zmr", "+/p/a.zmr" } << QStringList { "3 /p/a.zmr", "2 /p/b.zmr" }
            << "HistoryInfo added: serial_no=3";
        QTest::newRow("the newest again gets its number back")
            << QStringList { "+/p/a.zmr", "+/p/b.zmr", "+/p/b.zmr" } << QStringList { "2 /p/b.zmr", "1 /p/a.zmr" }
            << "HistoryInfo added: serial_no=2";
        QTest::newRow("deleting the newest frees its number")
            << QStringList { "+/p/a.zmr", "+/p/b.zmr", "-2", "+/p/c.zmr" } << QStringList { "2 /p/c.zmr", "1 /p/a.zmr" }
            << "HistoryInfo added: serial_no=2";
        QTest::newRow("deleting an older one leaves a gap")
            << QStringList { "+/p/a.zmr", "+/p/b.zmr", "+/p/c.zmr", "-1", "+/p/d.zmr" }
            << QStringList { "4 /p/d.zmr", "3 /p/c.zmr", "2 /p/b.zmr" } << "HistoryInfo added: serial_no=4";
        QTest::newRow("deleting an unknown number changes nothing")
            << QStringList { "+/p/a.zmr", "-5" } << QStringList { "1 /p/a.zmr" } << "ApplInfo file updated: %1";
        QTest::newRow("paths that differ in case are two projects")
            << QStringList { "+/p/a.zmr", "+/p/A.zmr", "+/P/a.zmr" }
            << QStringList { "3 /P/a.zmr", "2 /p/A.zmr", "1 /p/a.zmr" } << "HistoryInfo added: serial_no=3";
    }

    void historySerialNumbers()
    {
        QFETCH(QStringList, steps);
        QFETCH(QStringList, histories);
        QFETCH(QString, lastInfo);
        // Without a change the text of the previous write is logged again.
        if (lastInfo.contains(QLatin1String("%1")))
            lastInfo = lastInfo.arg(managerFile());

        QVERIFY(start());
        QString format;
        for (const QString &step : qAsConst(steps)) {
            markLog();
            if (step.startsWith(QLatin1Char('+'))) {
                format = QString("ProcessLauncher::appendHistoryInfo: %1");
                QVERIFY(m_launcher.appendHistoryInfo(
                    HistoryInfo(QString("editor"), QString("release"), QString("2.1.0.5"), step.mid(1))));
            } else {
                format = QString("ProcessLauncher::deleteHistoryInfo: %1");
                HistoryInfo history;
                history.setSerialNo(step.mid(1).toInt());
                QVERIFY(m_launcher.deleteHistoryInfo(history));
            }
        }

        QStringList listed;
        for (const HistoryInfo &history : applInfo()->getHistories())
            listed.append(QString("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed, histories);
        QStringList sorted = histories;
        sorted.sort();
        QCOMPARE(historyFile(), sorted);
        QCOMPARE(newLogLines(),
            (QStringList {
                format.arg(lastInfo), format.arg(QString("ApplInfo file updated: %1").arg(managerFile())) }));

        // What was written is what the next start lists.
        QVERIFY(start());
        listed.clear();
        for (const HistoryInfo &history : applInfo()->getHistories())
            listed.append(QString("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed, histories);
    }

    void historyEntryAfterLaunch()
    {
        QVERIFY(start());
        const EditorInfo started(QString("editor"), QString("Vorlix Zanmir Editor"), QString("beta"),
            QString("3.0.0.0"), QString("/opt/e/editor"), QString("/opt/e/u"));

        // Without a project there is nothing to remember.
        const QByteArray before = TestFiles::read(managerFile());
        QVERIFY(m_launcher.addHistoryAfterLaunch(started, QString()));
        QVERIFY(applInfo()->getHistories().isEmpty());
        QCOMPARE(TestFiles::read(managerFile()), before);
        QVERIFY(newLogLines().isEmpty());

        const QDateTime opened = QDateTime::currentDateTime();
        QVERIFY(m_launcher.addHistoryAfterLaunch(started, QString("/p/scene.zmr")));
        const QJsonArray histories = section(managerFile()).value(QString("histories")).toArray();
        QCOMPARE(histories.size(), 1);
        QJsonObject entry = histories.at(0).toObject();
        const QDateTime stamp
            = QDateTime::fromString(entry.take(QString("timestamp")).toString(), QString("yyyy/MM/dd hh:mm:ss"));
        QVERIFY(stamp.isValid());
        QVERIFY(qAbs(stamp.secsTo(opened)) <= 2);
        QCOMPARE(entry,
            (QJsonObject { { "appl_type", "editor" }, { "applname", "" }, { "edition", "beta" },
                { "openfilepath", "/p/scene.zmr" }, { "serial_no", 1 }, { "version", "3.0.0.0" } }));
    }

    void findEditorForHistory()
    {
        install({ QString("release 3.0.0.1"), QString("beta 2.1.0.0") });
        QVERIFY(start());
        const HistoryInfo history(QString("editor"), QString("beta"), QString("3.0.0.1"), QString("/p/a.zmr"));
        const EditorInfo found = m_launcher.findEditorForHistory(history);
        QCOMPARE(describe(found), QString("release 3.0.0.1"));
        QCOMPARE(found.getPath(), TestProfile::executablePath(QString("E0")));
    }

    void pins_data()
    {
        QTest::addColumn<QStringList>("pins");
        QTest::addColumn<QString>("unpin"); // nothing when empty
        QTest::addColumn<QStringList>("remaining");
        QTest::addColumn<QString>("lastInfo");

        QTest::newRow("pinning twice gives two entries")
            << QStringList { "release 2.1.0.5", "release 2.1.0.5" } << QString()
            << QStringList { "release 2.1.0.5", "release 2.1.0.5" } << "Version is pinned on: editor release 2.1.0.5";
        QTest::newRow("of twins side by side one stays")
            << QStringList { "release 2.1.0.5", "release 2.1.0.5" } << "release 2.1.0.5"
            << QStringList { "release 2.1.0.5" } << "Version is pinned off: editor release 2.1.0.5";
        QTest::newRow("of three in a row the middle one stays")
            << QStringList { "release 2.1.0.5", "release 2.1.0.5", "release 2.1.0.5" } << "release 2.1.0.5"
            << QStringList { "release 2.1.0.5" } << "Version is pinned off: editor release 2.1.0.5";
        QTest::newRow("twins apart both go")
            << QStringList { "release 2.1.0.5", "release 3.0.0.0", "release 2.1.0.5" } << "release 2.1.0.5"
            << QStringList { "release 3.0.0.0" } << "Version is pinned off: editor release 2.1.0.5";
        QTest::newRow("another edition is another version")
            << QStringList { "release 2.1.0.5" } << "beta 2.1.0.5" << QStringList { "release 2.1.0.5" }
            << "ApplInfo file updated: %1";
    }

    void pins()
    {
        QFETCH(QStringList, pins);
        QFETCH(QString, unpin);
        QFETCH(QStringList, remaining);
        QFETCH(QString, lastInfo);
        // Without a change the text of the previous write is logged again.
        if (lastInfo.contains(QLatin1String("%1")))
            lastInfo = lastInfo.arg(managerFile());

        QVERIFY(start());
        QString format = QString("ProcessLauncher::addPinnedVersionInfo: %1");
        for (const QString &pin : qAsConst(pins)) {
            markLog();
            QVERIFY(m_launcher.addPinnedVersionInfo(editor(pin)));
        }
        if (!unpin.isEmpty()) {
            markLog();
            format = QString("ProcessLauncher::deletePinnedVersionInfo: %1");
            QVERIFY(m_launcher.deletePinnedVersionInfo(editor(unpin)));
        }

        QCOMPARE(pinnedInFile(), remaining);
        QCOMPARE(newLogLines(),
            (QStringList {
                format.arg(lastInfo), format.arg(QString("ApplInfo file updated: %1").arg(managerFile())) }));
        for (const QString &pin : qAsConst(pins))
            QCOMPARE(applInfo()->isPinnedVersion(editor(pin)), remaining.contains(pin));
    }

    void installedEditorsOrder_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QStringList>("pins");
        QTest::addColumn<QStringList>("expected");

        const QStringList three { "release 2.1.0.5", "release 3.0.0.0", "release 2.9.0.0" };
        QTest::newRow("newest first") << three << QStringList()
                                      << QStringList { "release 3.0.0.0", "release 2.9.0.0", "release 2.1.0.5" };
        QTest::newRow("a pinned old version above newer ones")
            << three << QStringList { "release 2.1.0.5" }
            << QStringList { "release 2.1.0.5", "release 3.0.0.0", "release 2.9.0.0" };
        QTest::newRow("two pinned versions newest first")
            << three << QStringList { "release 2.1.0.5", "release 2.9.0.0" }
            << QStringList { "release 2.9.0.0", "release 2.1.0.5", "release 3.0.0.0" };
        QTest::newRow("a pin holds for its edition only")
            << QStringList { "release 2.0.0.0", "beta 3.0.0.0" } << QStringList { "release 3.0.0.0" }
            << QStringList { "beta 3.0.0.0", "release 2.0.0.0" };
    }

    void installedEditorsOrder()
    {
        QFETCH(QStringList, installed);
        QFETCH(QStringList, pins);
        QFETCH(QStringList, expected);

        install(installed);
        QVERIFY(start());
        for (const QString &pin : qAsConst(pins))
            QVERIFY(m_launcher.addPinnedVersionInfo(editor(pin)));
        QStringList order;
        for (const EditorInfo &found : m_launcher.getInstalledEditors())
            order.append(describe(found));
        QCOMPARE(order, expected);
    }

    void preferences()
    {
        QVERIFY(start());
        QVERIFY(m_launcher.setLocale(QString("ja_JP")));
        QVERIFY(m_launcher.setShowAllVersions(true));
        QCOMPARE(newLogLines(),
            (QStringList { QString("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()),
                QString("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        QString locale;
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QString("ja_JP"));
        bool showAll = false;
        QVERIFY(applInfo()->getShowAllVersions(showAll));
        QVERIFY(showAll);

        // The locale is kept, the show-all flag is not.
        QCOMPARE(section(managerFile()).value(QString("locale")), QJsonValue(QString("ja_JP")));
        QCOMPARE(section(managerFile()).keys().size(), 9);
        QVERIFY(start());
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QString("ja_JP"));
        QVERIFY(applInfo()->getShowAllVersions(showAll));
        QVERIFY(!showAll);
    }

    void failedSaveKeepsTheChange()
    {
        QVERIFY(start());
        QVERIFY(QFile::remove(managerFile()));
        QVERIFY(QDir().mkpath(managerFile())); // cannot be replaced

        QVERIFY(!m_launcher.addPinnedVersionInfo(editor(QString("release 2.1.0.5"))));
        QVERIFY(applInfo()->isPinnedVersion(editor(QString("release 2.1.0.5"))));
        QVERIFY(!m_launcher.setLocale(QString("de_DE")));
        QString locale;
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QString("de_DE"));
        // The failure's words went to the info text; the error text logged is
        // the one left by the first load of this run.
        QCOMPARE(newLogLines(),
            (QStringList {
                QString("ProcessLauncher::addPinnedVersionInfo: Version is pinned on: editor release 2.1.0.5"),
                QString("ProcessLauncher::addPinnedVersionInfo: Failed to load ApplInfo file: "),
                QString("EditorLaunch::saveSettings: Failed to load ApplInfo file: ") }));
        QCOMPARE(applInfo()->getInfoText(), QString("Failed to update ApplInfo file: "));
    }

    void fileExists()
    {
        QVERIFY(start());
        QVERIFY(m_launcher.fileExists(managerFile()));
        const QString missing = m_profile.root() + QString("/no such editor");
        QVERIFY(!m_launcher.fileExists(missing));
        QCOMPARE(newLogLines(),
            QStringList { QString("ProcessLauncher::fileExists: File does not exist: %1").arg(missing) });
    }

    void openFileByApplication_data()
    {
        QTest::addColumn<QString>("project"); // under the profile; nothing when empty

        QTest::newRow("path with blanks") << "My Projects/scene one.zmr";
        QTest::newRow("no project is one empty argument") << QString();
        QTest::newRow("path beyond ASCII") << "Projekte/Szene ä エディタ.zmr";
        QTest::newRow("quote in the name") << "My Projects/the \"best\" scene.xml";
    }

    void openFileByApplication()
    {
        QFETCH(QString, project);

        // The editor stand-in lies under a folder with blanks, as on Windows.
        const QString folder = m_profile.root() + QString("/Program Files/Zanmir Editor 2.1");
        const QString application = folder + QString("/zanmir editor");
        QVERIFY(QDir().mkpath(folder));
        if (!QFile::exists(application))
            QVERIFY(QFile::copy(QString(ZANMIR_ARGRECORDER), application));
        const QString record = m_profile.root() + QString("/arguments.jsonl");
        QFile::remove(record);
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(record));

        const QString filePath = project.isEmpty() ? QString() : m_profile.root() + QLatin1Char('/') + project;
        QVERIFY(m_launcher.openFileByApplication(filePath, application));
        QTRY_VERIFY_WITH_TIMEOUT(TestFiles::read(record).endsWith('\n'), 10000);

        const QList<QByteArray> lines = TestFiles::read(record).split('\n');
        QCOMPARE(lines.size(), 2); // one start, one line end
        QCOMPARE(QJsonDocument::fromJson(lines.first()).array(), (QJsonArray { application, filePath }));
        QVERIFY(newLogLines().isEmpty());
    }

    void openFileByApplicationFailures()
    {
        const QString record = m_profile.root() + QString("/failures.jsonl");
        QFile::remove(record);
        qputenv("ZANMIR_SAMPLE_EDITOR_LOG", QFile::encodeName(record));
        const QString project = QString("/p/scene.zmr");

        // No application: false without a word.
        QVERIFY(!m_launcher.openFileByApplication(project, QString()));
        QVERIFY(!m_launcher.openFileByApplication(project, m_profile.root() + QString("/missing editor")));
        QVERIFY(newLogLines().isEmpty());

        // A file that cannot be started is reported with the command.
        const QString notAProgram = m_profile.root() + QString("/not a program");
        QFile file(notAProgram);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text\n");
        file.close();
        QVERIFY(!m_launcher.openFileByApplication(QString(), notAProgram));
        QCOMPARE(newLogLines(),
            QStringList { QString("ApplLauncher::openFileByApplication: Failed to open file(QProcess::startDetached): "
                                  "\"%1\" \"\"")
                              .arg(notAProgram) });
        QVERIFY(!QFile::exists(record));
    }
};

int main(int argc, char *argv[])
{
    // The profile comes first, so that the application object's log and every
    // state file land in it; no traffic may leave this machine.
    TestProfile profile;
    profile.launcherFolder(true);
    qputenv("ZANMIR_SERVER_BASE", "http://127.0.0.1:9");
    qunsetenv("HTTP_PROXY");
    qunsetenv("HTTP_PROXY_CREDENTIALS");
    // Nothing here shows a window, and the offscreen platform of Qt 5.15
    // never frees its screen, which the leak checker would report.
    qputenv("QT_QPA_PLATFORM", "minimal");

    ProcessLauncher launcher(argc, argv);
    TestEditorLaunch test(profile, launcher);
    return QTest::qExec(&test, argc, argv);
}

#include "tst_editorlaunch.moc"
