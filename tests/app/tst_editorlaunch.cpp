#include "applinfo.h"
#include "processlauncher.h"
#include "registry.h"
#include "systemsettings.h"
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

QJsonObject readObject(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QJsonObject();
    return QJsonDocument::fromJson(file.readAll()).object();
}

QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QJsonObject section(const QString &managerFile)
{
    return readObject(managerFile).value(QStringLiteral("1.0.0")).toObject();
}

QJsonObject shortForm(const QString &edition, const QString &version)
{
    return QJsonObject { { "appl_type", "editor" }, { "edition", edition }, { "version", version } };
}

EditorInfo editor(const QString &edition, const QString &version)
{
    return EditorInfo(QStringLiteral("editor"), edition, version);
}

// "release 2.1.0.5" -> an editor record
EditorInfo editor(const QString &editionAndVersion)
{
    const QStringList parts = editionAndVersion.split(QLatin1Char(' '));
    return editor(parts.at(0), parts.at(1));
}

QString describe(const ApplVersion &version)
{
    return QStringLiteral("%1 %2").arg(version.getEdition(), version.getVersion());
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
            m_profile.registerVersion(QStringLiteral("E%1").arg(i), QStringLiteral("editor"), parts.at(0), parts.at(1));
        }
    }

    QStringList historyFile() const
    {
        QStringList entries;
        const QJsonArray histories = section(managerFile()).value(QStringLiteral("histories")).toArray();
        for (const QJsonValue &element : histories) {
            const QJsonObject history = element.toObject();
            entries.append(QStringLiteral("%1 %2")
                               .arg(history.value(QStringLiteral("serial_no")).toInt())
                               .arg(history.value(QStringLiteral("openfilepath")).toString()));
        }
        entries.sort();
        return entries;
    }

    QStringList pinnedInFile() const
    {
        QStringList pins;
        const QJsonArray array = section(managerFile())
                                     .value(QStringLiteral("pinned_version"))
                                     .toObject()
                                     .value(QStringLiteral("editor"))
                                     .toArray();
        for (const QJsonValue &element : array) {
            const QJsonObject pin = element.toObject();
            pins.append(QStringLiteral("%1 %2").arg(
                pin.value(QStringLiteral("edition")).toString(), pin.value(QStringLiteral("version")).toString()));
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
        m_profile.registerVersion(
            QStringLiteral("E0"), QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.5"));
        QTranslator translator;
        QVERIFY(!m_launcher.initialize(translator));
        QCOMPARE(m_launcher.getExitStatus(), 1);

        const QStringList lines = newLogLines();
        QVERIFY2(inOrder(lines,
                     { QStringLiteral("ProcessLauncher::readApplInfo: ApplInfo file created: %1").arg(managerFile()),
                         QStringLiteral("ProcessLauncher::initialize: ApplInfo file loaded: %1").arg(managerFile()),
                         QStringLiteral("ProcessLauncher::readRegistry: TargetSystemName=win64, RegistryFileName=%1")
                             .arg(m_profile.catalogueFile()),
                         QStringLiteral("ProcessLauncher::initialize: Registry is read: %1")
                             .arg(m_profile.catalogueFile()) }),
            qPrintable(lines.join(QLatin1Char('\n'))));
        // Start-up ends right there.
        QCOMPARE(lines.last(), QStringLiteral("EditorLaunch::getLauncherVersion: No version info in registry."));
        QCOMPARE(section(managerFile()).value(QStringLiteral("launcher")).toObject().value(QStringLiteral("version")),
            QJsonValue(QString()));
    }

    void initializeTakesTheRegisteredLauncher()
    {
        m_profile.registerVersion(
            QStringLiteral("L0"), QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.2.0.0"));
        QTranslator translator;
        // Whether start-up finishes depends on the parts after this one.
        m_launcher.initialize(translator);

        const QStringList lines = newLogLines();
        QVERIFY2(
            inOrder(lines,
                { QStringLiteral("ProcessLauncher::initialize: Registry is read: %1").arg(m_profile.catalogueFile()),
                    QStringLiteral("EditorLaunch::getLauncherVersion: Current launcher Version 1.2.0.0: %1")
                        .arg(TestProfile::executablePath(QStringLiteral("L0"))),
                    QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }),
            qPrintable(lines.join(QLatin1Char('\n'))));
        QCOMPARE(section(managerFile()).value(QStringLiteral("launcher")).toObject(),
            (QJsonObject { { "applname", "Vorlix Zanmir Launcher" },
                { "path", TestProfile::executablePath(QStringLiteral("L0")) },
                { "uninstaller_path", TestProfile::uninstallerPath(QStringLiteral("L0")) },
                { "version", "1.2.0.0" } }));
    }

    void launcherVersionIsTheFirstEntry()
    {
        // Catalogue order follows the subkeys: the older one comes first.
        m_profile.registerVersion(QStringLiteral("A_Launcher"), QStringLiteral("launcher"), QStringLiteral("release"),
            QStringLiteral("1.0.0.0"));
        m_profile.registerVersion(QStringLiteral("B_Launcher"), QStringLiteral("launcher"), QStringLiteral("release"),
            QStringLiteral("2.0.0.0"));
        QVERIFY(start());
        QVERIFY(m_launcher.getLauncherVersion());
        QCOMPARE(newLogLines(),
            (QStringList { QStringLiteral("EditorLaunch::getLauncherVersion: Current launcher Version 1.0.0.0: %1")
                               .arg(TestProfile::executablePath(QStringLiteral("A_Launcher"))),
                QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        QString name;
        QString version;
        QVERIFY(m_launcher.getLauncherNameAndVersion(name, version));
        QCOMPARE(name, QStringLiteral("Vorlix Zanmir Launcher"));
        QCOMPARE(version, QStringLiteral("1.0.0.0"));

        // Once uninstalled, the record of the manager file stays as it was.
        m_profile.unregisterApplication(QStringLiteral("A_Launcher"));
        m_profile.unregisterApplication(QStringLiteral("B_Launcher"));
        QVERIFY(start());
        const QByteArray before = readFile(managerFile());
        QVERIFY(!m_launcher.getLauncherVersion());
        QVERIFY(m_launcher.getLauncherNameAndVersion(name, version));
        QCOMPARE(version, QStringLiteral("1.0.0.0"));
        QCOMPARE(readFile(managerFile()), before);
    }

    void currentEditorSelection()
    {
        install({ QStringLiteral("release 2.1.0.5"), QStringLiteral("release 3.0.0.0") });
        QVERIFY(start());
        const QString current
            = QStringLiteral("EditorLaunch::setCurrentEditorInfo: Current editor release Version 2.1.0.5: %1")
                  .arg(TestProfile::executablePath(QStringLiteral("E0")));

        m_launcher.setCurrentEditorInfo(editor(QStringLiteral("release 2.1.0.5")));
        QVERIFY(applInfo()->hasSelectedVersion());
        QVERIFY(applInfo()->isSelectedVersion(editor(QStringLiteral("release 2.1.0.5"))));
        QVERIFY(m_launcher.saveLauncherState());
        QCOMPARE(newLogLines(),
            (QStringList {
                current, QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        // The current editor takes the catalogue's name and paths.
        QCOMPARE(section(managerFile()).value(QStringLiteral("editor")).toObject(),
            (QJsonObject { { "appl_type", "editor" }, { "applname", "Vorlix Zanmir Editor" }, { "edition", "release" },
                { "path", TestProfile::executablePath(QStringLiteral("E0")) },
                { "uninstaller_path", TestProfile::uninstallerPath(QStringLiteral("E0")) },
                { "version", "2.1.0.5" } }));
        QCOMPARE(section(managerFile()).value(QStringLiteral("selected_version")).toObject(),
            (QJsonObject { { "editor", shortForm(QStringLiteral("release"), QStringLiteral("2.1.0.5")) } }));

        // A version that is not installed changes nothing.
        markLog();
        m_launcher.setCurrentEditorInfo(editor(QStringLiteral("beta 2.1.0.5")));
        QCOMPARE(newLogLines(), QStringList { current });
        QVERIFY(applInfo()->isSelectedVersion(editor(QStringLiteral("release 2.1.0.5"))));

        // The next start finds the selection again.
        QVERIFY(start());
        QVERIFY(applInfo()->isSelectedVersion(editor(QStringLiteral("release 2.1.0.5"))));
        QCOMPARE(applInfo()->getCurrentEditorInfo().getPath(), TestProfile::executablePath(QStringLiteral("E0")));

        m_launcher.unsetCurrentEditorInfo();
        QVERIFY(!applInfo()->hasSelectedVersion());
        QVERIFY(m_launcher.saveLauncherState());
        QCOMPARE(newLogLines().first(), QStringLiteral("EditorLaunch::unsetCurrentEditorInfo:"));
        QCOMPARE(section(managerFile()).value(QStringLiteral("editor")).toObject(),
            (QJsonObject { { "appl_type", "" }, { "applname", "" }, { "edition", "" }, { "path", "" },
                { "uninstaller_path", "" }, { "version", "" } }));
        QCOMPARE(section(managerFile()).value(QStringLiteral("selected_version")).toObject(),
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
        QTest::newRow("numbers count up")
            << QStringList { "+/p/a.zmr", "+/p/b.zmr", "+/p/c.xml" }
            << QStringList { "3 /p/c.xml", "2 /p/b.zmr", "1 /p/a.zmr" } << "HistoryInfo added: serial_no=3";
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
        QTest::newRow("deleting the only entry")
            << QStringList { "+/p/a.zmr", "-1" } << QStringList() << "HistoryInfo deleted: serial_no=1";
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
                format = QStringLiteral("ProcessLauncher::appendHistoryInfo: %1");
                QVERIFY(m_launcher.appendHistoryInfo(HistoryInfo(
                    QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.5"), step.mid(1))));
            } else {
                format = QStringLiteral("ProcessLauncher::deleteHistoryInfo: %1");
                HistoryInfo history;
                history.setSerialNo(step.mid(1).toInt());
                QVERIFY(m_launcher.deleteHistoryInfo(history));
            }
        }

        QStringList listed;
        for (const HistoryInfo &history : applInfo()->getHistories())
            listed.append(QStringLiteral("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed, histories);
        QStringList sorted = histories;
        sorted.sort();
        QCOMPARE(historyFile(), sorted);
        QCOMPARE(newLogLines(),
            (QStringList {
                format.arg(lastInfo), format.arg(QStringLiteral("ApplInfo file updated: %1").arg(managerFile())) }));

        // What was written is what the next start lists.
        QVERIFY(start());
        listed.clear();
        for (const HistoryInfo &history : applInfo()->getHistories())
            listed.append(QStringLiteral("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
        QCOMPARE(listed, histories);
    }

    void historyEntryAfterLaunch()
    {
        QVERIFY(start());
        const EditorInfo started(QStringLiteral("editor"), QStringLiteral("Vorlix Zanmir Editor"),
            QStringLiteral("beta"), QStringLiteral("3.0.0.0"), QStringLiteral("/opt/e/editor"),
            QStringLiteral("/opt/e/u"));

        // Without a project there is nothing to remember.
        const QByteArray before = readFile(managerFile());
        QVERIFY(m_launcher.addHistoryAfterLaunch(started, QString()));
        QVERIFY(applInfo()->getHistories().isEmpty());
        QCOMPARE(readFile(managerFile()), before);
        QVERIFY(newLogLines().isEmpty());

        const QDateTime opened = QDateTime::currentDateTime();
        QVERIFY(m_launcher.addHistoryAfterLaunch(started, QStringLiteral("/p/scene.zmr")));
        const QJsonArray histories = section(managerFile()).value(QStringLiteral("histories")).toArray();
        QCOMPARE(histories.size(), 1);
        QJsonObject entry = histories.at(0).toObject();
        const QDateTime stamp = QDateTime::fromString(
            entry.take(QStringLiteral("timestamp")).toString(), QStringLiteral("yyyy/MM/dd hh:mm:ss"));
        QVERIFY(stamp.isValid());
        QVERIFY(qAbs(stamp.secsTo(opened)) <= 2);
        QCOMPARE(entry,
            (QJsonObject { { "appl_type", "editor" }, { "applname", "" }, { "edition", "beta" },
                { "openfilepath", "/p/scene.zmr" }, { "serial_no", 1 }, { "version", "3.0.0.0" } }));
    }

    void findEditorForHistory()
    {
        install({ QStringLiteral("release 3.0.0.1"), QStringLiteral("beta 2.1.0.0") });
        QVERIFY(start());
        const HistoryInfo history(
            QStringLiteral("editor"), QStringLiteral("beta"), QStringLiteral("3.0.0.1"), QStringLiteral("/p/a.zmr"));
        const EditorInfo found = m_launcher.findEditorForHistory(history);
        QCOMPARE(describe(found), QStringLiteral("release 3.0.0.1"));
        QCOMPARE(found.getPath(), TestProfile::executablePath(QStringLiteral("E0")));
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
        QString format = QStringLiteral("ProcessLauncher::addPinnedVersionInfo: %1");
        for (const QString &pin : qAsConst(pins)) {
            markLog();
            QVERIFY(m_launcher.addPinnedVersionInfo(editor(pin)));
        }
        if (!unpin.isEmpty()) {
            markLog();
            format = QStringLiteral("ProcessLauncher::deletePinnedVersionInfo: %1");
            QVERIFY(m_launcher.deletePinnedVersionInfo(editor(unpin)));
        }

        QCOMPARE(pinnedInFile(), remaining);
        QCOMPARE(newLogLines(),
            (QStringList {
                format.arg(lastInfo), format.arg(QStringLiteral("ApplInfo file updated: %1").arg(managerFile())) }));
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
        QTest::newRow("a pin of what is not installed")
            << three << QStringList { "release 4.0.0.0" }
            << QStringList { "release 3.0.0.0", "release 2.9.0.0", "release 2.1.0.5" };
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
        QVERIFY(m_launcher.setLocale(QStringLiteral("ja_JP")));
        QVERIFY(m_launcher.setShowAllVersions(true));
        QCOMPARE(newLogLines(),
            (QStringList { QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()),
                QStringLiteral("EditorLaunch::saveSettings: ApplInfo file updated: %1").arg(managerFile()) }));
        QString locale;
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QStringLiteral("ja_JP"));
        bool showAll = false;
        QVERIFY(applInfo()->getShowAllVersions(showAll));
        QVERIFY(showAll);

        // The locale is kept, the show-all flag is not.
        QCOMPARE(section(managerFile()).value(QStringLiteral("locale")), QJsonValue(QStringLiteral("ja_JP")));
        QCOMPARE(section(managerFile()).keys().size(), 9);
        QVERIFY(start());
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QStringLiteral("ja_JP"));
        QVERIFY(applInfo()->getShowAllVersions(showAll));
        QVERIFY(!showAll);
    }

    void failedSaveKeepsTheChange()
    {
        QVERIFY(start());
        QVERIFY(QFile::remove(managerFile()));
        QVERIFY(QDir().mkpath(managerFile())); // cannot be replaced

        QVERIFY(!m_launcher.addPinnedVersionInfo(editor(QStringLiteral("release 2.1.0.5"))));
        QVERIFY(applInfo()->isPinnedVersion(editor(QStringLiteral("release 2.1.0.5"))));
        QVERIFY(!m_launcher.setLocale(QStringLiteral("de_DE")));
        QString locale;
        QVERIFY(m_launcher.getLocale(locale));
        QCOMPARE(locale, QStringLiteral("de_DE"));
        // The failure's words went to the info text; the error text logged is
        // the one left by the first load of this run.
        QCOMPARE(newLogLines(),
            (QStringList {
                QStringLiteral("ProcessLauncher::addPinnedVersionInfo: Version is pinned on: editor release 2.1.0.5"),
                QStringLiteral("ProcessLauncher::addPinnedVersionInfo: Failed to load ApplInfo file: "),
                QStringLiteral("EditorLaunch::saveSettings: Failed to load ApplInfo file: ") }));
        QCOMPARE(applInfo()->getInfoText(), QStringLiteral("Failed to update ApplInfo file: "));
    }

    void fileExists()
    {
        QVERIFY(start());
        QVERIFY(m_launcher.fileExists(managerFile()));
        const QString missing = m_profile.root() + QStringLiteral("/no such editor");
        QVERIFY(!m_launcher.fileExists(missing));
        QCOMPARE(newLogLines(),
            QStringList { QStringLiteral("ProcessLauncher::fileExists: File does not exist: %1").arg(missing) });
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
        const QString folder = m_profile.root() + QStringLiteral("/Program Files/Zanmir Editor 2.1");
        const QString application = folder + QStringLiteral("/zanmir editor");
        QVERIFY(QDir().mkpath(folder));
        if (!QFile::exists(application))
            QVERIFY(QFile::copy(QStringLiteral(ZANMIR_ARGRECORDER), application));
        const QString record = m_profile.root() + QStringLiteral("/arguments.jsonl");
        QFile::remove(record);
        qputenv("ZANMIR_ARGS_LOG", QFile::encodeName(record));

        const QString filePath = project.isEmpty() ? QString() : m_profile.root() + QLatin1Char('/') + project;
        QVERIFY(m_launcher.openFileByApplication(filePath, application));
        QTRY_VERIFY_WITH_TIMEOUT(readFile(record).endsWith('\n'), 10000);

        const QList<QByteArray> lines = readFile(record).split('\n');
        QCOMPARE(lines.size(), 2); // one start, one line end
        QCOMPARE(QJsonDocument::fromJson(lines.first()).array(), (QJsonArray { application, filePath }));
        QVERIFY(newLogLines().isEmpty());
    }

    void openFileByApplicationFailures()
    {
        const QString record = m_profile.root() + QStringLiteral("/failures.jsonl");
        QFile::remove(record);
        qputenv("ZANMIR_ARGS_LOG", QFile::encodeName(record));
        const QString project = QStringLiteral("/p/scene.zmr");

        // No application: false without a word.
        QVERIFY(!m_launcher.openFileByApplication(project, QString()));
        QVERIFY(!m_launcher.openFileByApplication(project, m_profile.root() + QStringLiteral("/missing editor")));
        QVERIFY(newLogLines().isEmpty());

        // A file that cannot be started is reported with the command.
        const QString notAProgram = m_profile.root() + QStringLiteral("/not a program");
        QFile file(notAProgram);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("text\n");
        file.close();
        QVERIFY(!m_launcher.openFileByApplication(QString(), notAProgram));
        QCOMPARE(newLogLines(),
            QStringList {
                QStringLiteral("ApplLauncher::openFileByApplication: Failed to open file(QProcess::startDetached): "
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
