#include "launcherharness.h"
#include "sampleproject.h"
#include "systemsettings.h"
#include "testfiles.h"

#include <QtTest>

// The install rules and the desktop's file associations: everything lands
// below the prefix, the installation registers the launcher it installs, and
// after the usual database refresh the desktop hands a project of either
// form, and nothing else, to the launcher.
class TestInstall : public QObject
{
    Q_OBJECT

    QTemporaryDir m_prefix;
    QScopedPointer<LauncherHarness> m_harness;

    // Runs a tool to its end; its output goes to the test's own on failure. A
    // tool that is missing, hangs or crashes gives -1 and says why. (Qt reports
    // status 0 for a program that never started.)
    static QString runTool(const QString &program, const QStringList &arguments, int *exitCode = nullptr)
    {
        QProcess process;
        process.start(program, arguments);
        const bool ended = process.waitForStarted(-1) && process.waitForFinished(60000)
            && process.exitStatus() == QProcess::NormalExit;
        if (exitCode)
            *exitCode = ended ? process.exitCode() : -1;
        const QString output
            = QString::fromLocal8Bit(process.readAllStandardOutput() + process.readAllStandardError()).trimmed();
        return ended ? output : program + ": " + process.errorString() + '\n' + output;
    }
    QString share(const QString &path) const { return m_prefix.path() + "/share/" + path; }

private slots:
    void initTestCase()
    {
        int status = -1;
        const QString output
            = runTool(ZANMIR_CMAKE, { "--install", ZANMIR_BUILD_DIR, "--prefix", m_prefix.path() }, &status);
        QVERIFY2(status == 0, qPrintable(output));
        // What a package's post-install step does for the system's folders.
        for (const QStringList &refresh : { QStringList { "update-mime-database", share("mime") },
                 QStringList { "update-desktop-database", share("applications") } }) {
            const QString said = runTool(refresh.first(), refresh.mid(1), &status);
            QVERIFY2(status == 0, qPrintable(said));
        }
        // A desktop session that has the prefix among its data folders, for the tools and launchers started.
        const QString dataDirs = m_prefix.path() + "/share:/usr/share";
        qputenv("XDG_DATA_DIRS", QFile::encodeName(dataDirs));
        m_harness.reset(new LauncherHarness);
        m_harness->setEnvironmentValue("XDG_DATA_DIRS", dataDirs);
        QVERIFY(m_harness->isValid() && m_harness->registerVersions({ "2.0.03", "2.1.05" }));
        // The user's records hold the editors only, as after installing the launcher's package.
        QSettings records(SystemSettings::uninstallRecordsFile(), QSettings::IniFormat);
        for (const QString &group : records.childGroups()) {
            if (records.value(group + "/AppType").toString() == QLatin1String("launcher"))
                records.remove(group);
        }
    }

    void installsOnlyBelowThePrefix()
    {
        QStringList installed = QString::fromLocal8Bit(TestFiles::read(ZANMIR_BUILD_DIR "/install_manifest.txt"))
                                    .split('\n', Qt::SkipEmptyParts);
        installed.replaceInStrings(m_prefix.path() + '/', QString());
        installed.sort();
        QCOMPARE(installed,
            (QStringList { "bin/ZanmirLauncher", "lib/zanmir-launcher/zanmir-launcher-ui.so",
                "lib/zanmir-launcher/zanmir-launcher-web.so", "libexec/zanmir-thumbnailer",
                "share/applications/zanmir-launcher.desktop", "share/doc/zanmir-launcher/changelog.gz",
                "share/doc/zanmir-launcher/copyright", "share/icons/hicolor/256x256/apps/zanmir-launcher.png",
                "share/icons/hicolor/256x256@2/apps/zanmir-launcher.png", "share/man/man1/ZanmirLauncher.1.gz",
                "share/man/man1/zanmir-thumbnailer.1.gz", "share/metainfo/example.zanmir.launcher.metainfo.xml",
                "share/mime/packages/zanmir-launcher.xml", "share/thumbnailers/zanmir-launcher.thumbnailer",
                "share/zanmir-launcher/UninstallRecords.ini" }));
        QVERIFY(QFileInfo(m_prefix.path() + "/bin/ZanmirLauncher").isExecutable());
        QCOMPARE(QImage(share("icons/hicolor/256x256/apps/zanmir-launcher.png")).size(), QSize(256, 256));
        QCOMPARE(QImage(share("icons/hicolor/256x256@2/apps/zanmir-launcher.png")).size(), QSize(512, 512));
        for (const QStringList &validate :
            { QStringList { "desktop-file-validate", share("applications/zanmir-launcher.desktop") },
                QStringList { "appstreamcli", "validate", "--no-net", "--no-color",
                    share("metainfo/example.zanmir.launcher.metainfo.xml") } }) {
            int status = -1;
            const QString said = runTool(validate.first(), validate.mid(1), &status);
            // The desktop entry without so much as a hint; the metadata may carry infos.
            QVERIFY2(status == 0 && (validate.first() == "appstreamcli" || said.isEmpty()), qPrintable(said));
        }

        // The installed launcher is registered by its installation and finds
        // its windows below the prefix, and their web pages, which it loads
        // once the window has been painted.
        const QString go = m_prefix.path() + "/go";
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", "window Zanmir Launcher;waitfile " + go + ";close");
        LauncherRun *window = m_harness->startProgram(m_prefix.path() + "/bin/ZanmirLauncher", {});
        const auto pagesMade = [this]() {
            const QString log = m_harness->launcherLog();
            return log.count("WebBrowserWidget::loadFinished: ") >= 2 || log.contains("WebPage: ");
        };
        QVERIFY(QTest::qWaitFor([&]() { return pagesMade() || !window->isRunning(); }, 30000));
        QVERIFY(TestFiles::write(go, ""));
        QVERIFY2(window->waitForFinished(30000) && window->exitedWith(0), qPrintable(window->describe()));
        QVERIFY(window->failedSteps().isEmpty() && window->doneSteps().contains("window Zanmir Launcher"));
        QVERIFY2(pagesMade() && !m_harness->launcherLog().contains("WebPage: "), qPrintable(m_harness->launcherLog()));
        m_harness->setEnvironmentValue("ZANMIR_TEST_SCRIPT", QString());
        QVERIFY2(m_harness->launcherLog().contains(
                     "EditorLaunch::getLauncherVersion: Current launcher Version " ZANMIR_VERSION ": " + m_prefix.path()
                     + "/bin/ZanmirLauncher\n"),
            qPrintable(m_harness->launcherLog()));
    }

    // A file manager runs the program that the thumbnailer entry names, as
    // it names it, for either project type.
    void thumbnailerEntry()
    {
        QHash<QString, QString> entry;
        const QList<QByteArray> lines = TestFiles::read(share("thumbnailers/zanmir-launcher.thumbnailer")).split('\n');
        QCOMPARE(lines.value(0), QByteArray("[Thumbnailer Entry]"));
        for (const QByteArray &line : lines.mid(1)) {
            if (!line.isEmpty())
                entry.insert(QString::fromUtf8(line.left(line.indexOf('='))),
                    QString::fromUtf8(line.mid(line.indexOf('=') + 1)));
        }
        QCOMPARE(entry.value("MimeType").split(';', Qt::SkipEmptyParts),
            (QStringList { "application/x-zanmir-project", "application/x-zanmir-project+xml" }));
        const QString program = entry.value("TryExec");
        QVERIFY2(program.startsWith(m_prefix.path() + '/') && QFileInfo(program).isExecutable(), qPrintable(program));

        QImage picture(300, 150, QImage::Format_ARGB32);
        picture.fill(Qt::darkCyan);
        const QString project = m_harness->projectPath("pictured.xml");
        QVERIFY(SampleProject::writeProject(project, "2.1.5.0", nullptr, TestFiles::png(picture)));
        const QString output = m_harness->projectPath("pictured.png");
        QStringList command = entry.value("Exec").split(' ');
        command.replaceInStrings("%i", project).replaceInStrings("%o", output).replaceInStrings("%s", "128");
        QCOMPARE(command.first(), program);
        int status = -1;
        const QString said = runTool(command.first(), command.mid(1), &status);
        QVERIFY2(status == 0, qPrintable(said));
        QCOMPARE(QImage(output).size(), QSize(128, 64));
    }

    void projectTypes_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("type");
        // clang-format off
        QTest::newRow("zip form") << "scene.zmr" << "application/x-zanmir-project";
        QTest::newRow("XML form") << "scene.xml" << "application/x-zanmir-project+xml";
        // Told by its content, whatever the name says.
        QTest::newRow("XML form, other suffix") << "scene.data" << "application/x-zanmir-project+xml";
        QTest::newRow("unrelated XML") << "other.xml" << "application/xml";
        QTest::newRow("zip form named .zip") << "scene.zip" << "application/zip";
        // clang-format on
    }

    void projectTypes()
    {
        QFETCH(QString, file);
        QFETCH(QString, type);
        const QString path = m_harness->projectPath(file);
        if (file == QLatin1String("other.xml"))
            QVERIFY(TestFiles::write(path, "<?xml version=\"1.0\"?>\n<settings><header/></settings>\n"));
        else if (file.endsWith(QLatin1String(".data")))
            QVERIFY(TestFiles::write(path, SampleProject::xmlText(SampleProject::packVersion(2, 1, 5, 0))));
        else if (file.endsWith(QLatin1String(".zip")))
            QVERIFY(SampleProject::writeArchive(path, { { "document.txt", "22 serialization::archive 17\n" } }));
        else
            QVERIFY(SampleProject::writeProject(path, "2.1.5.0"));
        QCOMPARE(runTool("xdg-mime", { "query", "filetype", path }), type);
    }

    // The desktop's opener finds the launcher through the entry and starts
    // the editor that saved the project, with the full path.
    void xdgOpenStartsTheEditor()
    {
        const QString project = m_harness->projectPath("opened.xml");
        QVERIFY(SampleProject::writeProject(project, "2.0.3.0"));

        m_harness->setEnvironmentValue("PATH", m_prefix.path() + "/bin:" + qEnvironmentVariable("PATH"));
        LauncherRun *run = m_harness->startProgram("xdg-open", { project }, false);
        QVERIFY2(
            run->waitForFinished(LauncherHarness::kDefaultTimeout) && run->exitedWith(0), qPrintable(run->describe()));
        QVERIFY(m_harness->waitForEditorStarts(1));
        QCOMPARE(m_harness->editorStarts().first(),
            (QStringList { m_harness->profile().root() + "/editors/2.0.03-release/ZanmirEditor", project }));
    }
};

QTEST_GUILESS_MAIN(TestInstall)
#include "tst_install.moc"
