#include "applupdater.h"
#include "cataloguebuilder.h"
#include "registry.h"
#include "systemsettings.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QtTest>

// Incomplete entries (kept as empty records of no type), a target without a file name, a stamp without a url.
static const char kIncomplete[] = R"({"1.0.0": {"app_versions": {"updates": [{"appl_type": "editor", "appl_name": "x"},
    {"appl_type": "editor", "version": "3.0"}, {"appl_type": "editor", "appl_name": "release", "version": "2.1.0.5",
    "targets": [{"target": "win64", "url": "/1.exe", "filename": "1.exe"}, {"target": "macosx", "url": "/mac.dmg"},
    {"target": "win64", "url": "/2.exe", "filename": "2.exe"}]}]}, "web_versions": [{"type": "newsweb", "version": "1.0",
    "url": ""}, {"type": "newsweb", "version": "2.0", "url": "/2.htm"}, {"type": "newsweb", "version": "3.0", "url": "/3.htm"}]}})";

// The update catalogue and what it answers, and the programs started from
// the profile's "Downloads".
class TestUpdater : public QObject
{
    Q_OBJECT

    TestProfile m_profile;
    Registry m_registry { m_profile.catalogueFile() };
    QStringList m_log;
    QScopedPointer<ApplUpdater> m_updater;

    QStringList versions(const QString &type) const { return CatalogueBuilder::versions(m_updater->getUpdates(type)); }
    QString downloads() const { return m_profile.root() + "/home/Downloads"; }

private slots:
    void init()
    {
        QDir(downloads()).removeRecursively();
        m_log.clear();
        QFile::remove(SystemSettings::uninstallRecordsFile());
        m_updater.reset(new ApplUpdater("win64", [this](const QString &line) { m_log.append(line); }));
        m_updater->setRegistry(&m_registry);
    }

    void catalogueText()
    {
        QVERIFY(m_updater->setUpdateInfo(kIncomplete));
        QCOMPARE(versions("editor") + versions(QString()), (QStringList { "2.1.0.5", QString(), QString() }));
        const ApplUpdateInfo entry = m_updater->getUpdates("editor").first();
        QCOMPARE(entry.getUrl("win64") + entry.getFileName("win64") + entry.getUrl("macosx"), QString("/2.exe2.exe"));
        QCOMPARE(m_updater->getWebUpdateInfo("newsweb").getUrl(), QString("/2.htm")); // the first complete stamp

        QVERIFY(!m_updater->setUpdateInfo("{ not json"));
        const QString error = m_updater->getErrorText();
        QVERIFY2(error.startsWith("Failed to parse JSON document: code["), qPrintable(error));
        QCOMPARE(versions("editor"), QStringList { "2.1.0.5" }); // the previous catalogue stays in use
        // Without its schema object the document empties the catalogue, silently.
        QVERIFY(!m_updater->setUpdateInfo("{\"2.0.0\": {}}"));
        QCOMPARE(m_updater->getErrorText(), error);
        QCOMPARE(versions("editor") + versions(QString()), QStringList());
        QCOMPARE(m_updater->getWebUpdateInfo("newsweb").getVersion(), QString()); // no stamp of the type
        QVERIFY(m_updater->setUpdateInfo(kIncomplete) && m_updater->setUpdateInfo(QString()));
        QCOMPARE(versions("editor"), QStringList());
    }

    void isCatalogue_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("reason"); // its beginning; empty for a catalogue
        const QString parse = "Failed to parse JSON document: code[";
        const QString schema = "No catalogue object under \"1.0.0\"";
        // clang-format off
        QTest::newRow("catalogue") << QString(kIncomplete) << "";
        QTest::newRow("web stamps only") << R"({"1.0.0": {"web_versions": []}})" << "";
        QTest::newRow("empty text") << "" << parse;
        QTest::newRow("other schema") << R"({"2.0.0": {"app_versions": {}}})" << schema;
        QTest::newRow("empty schema") << R"({"1.0.0": {}})" << schema;
        QTest::newRow("schema not an object") << R"({"1.0.0": [1]})" << schema;
        QTest::newRow("array") << R"([{"1.0.0": {"web_versions": []}}])" << schema;
        // clang-format on
    }

    void isCatalogue()
    {
        QFETCH(QString, text);
        QFETCH(QString, reason);
        QString found;
        QCOMPARE(ApplUpdater::isCatalogue(text, &found), reason.isEmpty());
        QVERIFY2(reason.isEmpty() || found.startsWith(reason), qPrintable(found));
    }

    void searches_data()
    {
        QTest::addColumn<QString>("installed"); // "update" and "recent" ask about the first
        QTest::addColumn<QString>("catalogue");
        QTest::addColumn<QString>("query"); // "download" with the version text to look up
        QTest::addColumn<QString>("answer");
        // clang-format off
        const QString downloads = "editor 2.1.0.5, editor 2.1.0.6 inhouse, editor 2.1.0.6d inhouse, editor 2.1.0.7 release macosx";
        QTest::newRow("update: first in series") << "editor release 2.1.3" << "editor 2.1.5, editor 2.1.7, editor 2.2.0" << "update" << "2.1.5";
        QTest::newRow("update: newer build installed") << "editor release 2.1.3, editor release 2.1.5" << "editor 2.1.5, editor 2.1.4" << "update" << "";
        QTest::newRow("update: other edition") << "editor beta 3.0.1" << "editor 3.0.2" << "update" << "";
        QTest::newRow("update: launcher") << "launcher release 2.1.3" << "launcher 2.1.5" << "update" << "";
        // "1.10" sorts before "1.9" as text, so it is no later series.
        QTest::newRow("recent: text order") << "editor release 1.9.0.0" << "editor 1.10.0.0, editor 3.0.0.0" << "recent" << "3.0.0.0";
        QTest::newRow("latest: nothing installed, any type") << "" << "editor 2.0.0.0, launcher 1.1.0.0" << "latest" << "2.0.0.0";
        // One per series, the first in the catalogue, newest first, then all; a one-number version has no
        // series, and an installed version text is hidden whatever its edition.
        QTest::newRow("installable") << "editor inhouse 1.0.0.0" << "editor 2.1.0.7, editor 2.1.0.5, editor 3, editor 2.2.0.1, editor 2.1.0.9 beta, editor 1.0.0.0" << "installable" << "2.2.0.1 2.1.0.7 / 3 2.2.0.1 2.1.0.9 2.1.0.7 2.1.0.5";
        QTest::newRow("download: inhouse, by display version") << "" << downloads << "download 2.1.0.6" << "inhouse 2.1.0.6d /v/2.1.0.6d 2.1.0.6d.exe";
        QTest::newRow("download: no win64 installer") << "" << downloads << "download 2.1.0.7" << "Download failed: unknown URL or file name: editor 2.1.0.7 (win64)";
        QTest::newRow("download: no version") << "" << downloads << "download" << "";
        // clang-format on
    }

    void searches()
    {
        QFETCH(QString, installed);
        QFETCH(QString, catalogue);
        QFETCH(QString, query);
        QFETCH(QString, answer);
        QList<EditorInfo> editors;
        for (const QString &version : installed.split(", ", Qt::SkipEmptyParts)) {
            const QStringList parts = version.split(' ');
            m_profile.registerVersion(parts.join('_'), parts.at(0), parts.at(1), parts.at(2));
            editors.append(EditorInfo(parts.at(0), parts.at(1), parts.at(2)));
        }
        QVERIFY(m_updater->setUpdateInfo(CatalogueBuilder().entries(catalogue.split(", ")).bytes()));
        QStringList info { "", "", "", "" };
        const bool found = m_updater->findDownloadInfo(query.section(' ', 1), info[0], info[1], info[2], info[3]);
        const QHash<QString, QString> answers { { "update", m_updater->findUpdateFor(editors.value(0)).getVersion() },
            { "recent", m_updater->findRecentFor(editors.value(0)).getVersion() },
            { "latest", m_updater->findLatestFor("launcher").getVersion() },
            { "installable",
                CatalogueBuilder::versions(m_updater->getInstallableEditors(editors, false)).join(' ') + " / "
                    + CatalogueBuilder::versions(m_updater->getInstallableEditors(editors, true)).join(' ') },
            { "download", found ? info.join(' ') : m_updater->getErrorText() } };
        QCOMPARE(answers.value(query.section(' ', 0, 0)), answer);
    }
    void run_data()
    {
        QTest::addColumn<QString>("program"); // the file's text; none: no file
        QTest::addColumn<bool>("wait");
        QTest::addColumn<bool>("uninstaller"); // through openUninstallerFile, which logs
        QTest::addColumn<bool>("goWhileWaiting"); // else only after the call
        QTest::addColumn<QString>("error"); // %1 the path; empty when it starts
        // The program leaves its mark once "go" exists, and none if it gives
        // up after a minute. The test makes "go" from a timer, which can fire
        // during a call only if the call lets the event loop run while it
        // waits: the mark is then there when the call returns.
        const QString waitForGo = "for i in $(seq 1200); do [ -e \"$HOME/go\" ] && break; sleep 0.05; done\n"
                                  "[ -e \"$HOME/go\" ] && echo ran >> \"$HOME/marker\"\n";
        const QString script = "#!/bin/sh\n" + waitForGo + "exit %1\n";
        // clang-format off
        QTest::newRow("missing file") << "" << true << false << false << "File not found: %1";
        QTest::newRow("waits for the end") << script.arg(0) << true << false << true << "";
        QTest::newRow("does not wait") << script.arg(0) << false << false << false << "";
        QTest::newRow("exits non-zero") << script.arg(3) << true << false << true << "";
        QTest::newRow("uninstaller") << script.arg(0) << true << true << true << "";
        // The wait ends with the program started, though its child goes on.
        QTest::newRow("hands over to a child and exits") << "#!/bin/sh\n(\n" + waitForGo + ") &\nexit 0\n" << true << false << false << "";
        // clang-format on
    }

    // A file arrives without the execute bit and starts all the same; the
    // wait covers the program's run, the event loop running on, and its exit
    // code plays no part.
    void run()
    {
        QFETCH(QString, program);
        QFETCH(bool, wait);
        QFETCH(bool, uninstaller);
        QFETCH(bool, goWhileWaiting);
        QFETCH(QString, error);
        const QString path = downloads() + "/setup.exe";
        const QString marker = m_profile.root() + "/home/marker", go = m_profile.root() + "/home/go";
        QFile::remove(marker);
        QFile::remove(go);
        QVERIFY(QDir().mkpath(downloads()));
        if (!program.isEmpty()) {
            QVERIFY(TestFiles::write(path, program.toUtf8()));
            QVERIFY(QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner));
        }
        if (goWhileWaiting)
            QTimer::singleShot(0, this, [&go]() { TestFiles::write(go, ""); });

        const bool started
            = uninstaller ? m_updater->openUninstallerFile(path, wait) : m_updater->openExecutableFile(path, wait);
        const QString text = started ? m_updater->getInfoText() : m_updater->getErrorText();
        QCOMPARE(started, error.isEmpty());
        QCOMPARE(text, error.isEmpty() ? "ApplUpdater::openExecutableFile: " + path : error.arg(path));
        if (uninstaller)
            QCOMPARE(m_log.last(), "ApplUpdater::openUninstallerFile: " + text);
        if (!started) {
            QVERIFY(!QFile::exists(marker));
            return;
        }
        QVERIFY(QFile::permissions(path) & QFileDevice::ExeOwner);
        QCOMPARE(QFile::exists(marker), goWhileWaiting);
        QVERIFY(TestFiles::write(go, ""));
        QVERIFY(QTest::qWaitFor([&]() { return QFile::exists(marker); }, 5000));
    }

    void uninstallCommand_data()
    {
        QTest::addColumn<QString>("command"); // %1: the uninstaller, in a folder with a blank in its name
        QTest::addColumn<QString>("arguments"); // as the program got them, each in brackets; or the error
        // clang-format off
        QTest::newRow("path alone, unquoted") << "%1" << "";
        QTest::newRow("quoted, with arguments") << "\"%1\" /S --mode=quiet" << "[/S][--mode=quiet]";
        QTest::newRow("argument with blanks") << "\"%1\"  \"C:\\Program Files\\Vorlix\"  /x" << "[C:\\Program Files\\Vorlix][/x]";
        QTest::newRow("three quotes are one") << "\"%1\" \"say \"\"\"hi\"\"\"\"" << "[say \"hi\"]";
        QTest::newRow("empty quotes") << "\"%1\" \"\" /S" << "[/S]";
        QTest::newRow("unbalanced") << "\"%1\" \"/S" << "Unbalanced quotes in the command: [\"%1\" \"/S]";
        QTest::newRow("unquoted path with arguments") << "%1 /S" << "File not found: " + m_profile.root() + "/home/un";
        QTest::newRow("blank") << "  " << "No program in the command: [  ]";
        // clang-format on
    }

    // Uninstall commands as installers record them: a quoted program and its
    // arguments. What cannot be read starts nothing.
    void uninstallCommand()
    {
        QFETCH(QString, command);
        QFETCH(QString, arguments);
        const QString program = m_profile.root() + "/home/un install/uninstall";
        const QString marker = m_profile.root() + "/home/arguments";
        QFile::remove(marker);
        QVERIFY(QDir().mkpath(QFileInfo(program).path()));
        QVERIFY(TestFiles::write(
            program, "#!/bin/sh\nfor a in \"$@\"; do printf '[%s]' \"$a\"; done > \"$HOME/arguments\"\n"));
        command.replace("%1", program);
        arguments.replace("%1", program);
        const bool started = m_updater->openUninstallerFile(command, true);
        QCOMPARE(started ? QString::fromUtf8(TestFiles::read(marker)) : m_updater->getErrorText(), arguments);
        QCOMPARE(QFile::exists(marker), started);
        QVERIFY(m_log.last().startsWith("ApplUpdater::openUninstallerFile: "));
    }
};

QTEST_GUILESS_MAIN(TestUpdater)
#include "tst_updater.moc"
