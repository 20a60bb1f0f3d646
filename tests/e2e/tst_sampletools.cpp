#include "editordocmanager.h"
#include "editorinfo.h"
#include "launcherharness.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

namespace {

int runTool(const QString &program, const QStringList &arguments, const QProcessEnvironment &environment,
    QString *errors = nullptr)
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    if (errors)
        *errors = QString::fromLocal8Bit(process.readAllStandardError());
    return process.exitCode();
}

} // namespace

// The stand-ins that the end-to-end tests and the demo rely on: the sample
// editor, the registration script and the sample project writer.
class TestSampleTools : public QObject
{
    Q_OBJECT

private slots:
    void sampleEditorRecordsEachStart()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        const QString link = harness.profile().root() + QStringLiteral("/editor link");
        QVERIFY(QFile::link(LauncherHarness::sampleEditorBinary(), link));
        const QProcessEnvironment environment = harness.environment();

        QCOMPARE(
            runTool(link, { QStringLiteral("my project.zmr"), QString(), QStringLiteral("\u00e9\"\\") }, environment),
            0);
        QCOMPARE(runTool(LauncherHarness::sampleEditorBinary(), {}, environment), 0);

        const QList<QStringList> starts = harness.editorStarts();
        QCOMPARE(starts.size(), 2);
        QCOMPARE(starts.at(0),
            QStringList({ link, QStringLiteral("my project.zmr"), QString(), QStringLiteral("\u00e9\"\\") }));
        QCOMPARE(starts.at(1), QStringList { LauncherHarness::sampleEditorBinary() });
    }

    void registeredRecordsReadBack_data()
    {
        QTest::addColumn<QString>("folderName");
        QTest::addColumn<QString>("launcherPath");

        QTest::newRow("plain") << "profile"
                               << "/opt/zanmir/ZanmirLauncher";
        QTest::newRow("comma, semicolon, equals") << "a,b;c=d"
                                                  << "/x,y/z;w=v";
        QTest::newRow("quotes and backslashes") << "q\"u\\o"
                                                << "/a \"b\" \\c\\";
        QTest::newRow("blanks at the ends") << " lead and trail "
                                            << "/trail ";
        QTest::newRow("non-ASCII") << QStringLiteral("\u00e9t\u00e9 \u65e5\u672c")
                                   << QStringLiteral("/\u00fc/\U0001F600");
        QTest::newRow("control characters before hex digits") << "tab\there"
                                                              << "/x\x01"
                                                                 "a\tb\nc";
        QTest::newRow("at sign") << "@home"
                                 << "/@x";
    }

    void registeredRecordsReadBack()
    {
        QFETCH(QString, folderName);
        QFETCH(QString, launcherPath);

        QTemporaryDir dir;
        const QString profile = dir.filePath(folderName);
        QVERIFY(QDir().mkpath(profile));
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LD_PRELOAD"));
        const QString editor = LauncherHarness::sampleEditorBinary();
        QString errors;
        QCOMPARE(runTool(QStringLiteral("python3"),
                     { LauncherHarness::registerScript(), QStringLiteral("--launcher-version"),
                         QStringLiteral("1.2.0.3"), QStringLiteral("--launcher-path"), launcherPath, profile, editor,
                         QStringLiteral("2.1.0.5"), QStringLiteral("2.2.0.1:inhouse") },
                     environment, &errors),
            0);
        QVERIFY2(errors.isEmpty(), qPrintable(errors));

        QSettings records(profile + QStringLiteral("/config/Vorlix/UninstallRecords.ini"), QSettings::IniFormat);
        QCOMPARE(records.status(), QSettings::NoError);
        QStringList groups = records.childGroups();
        groups.sort();
        QCOMPARE(
            groups, QStringList({ "ZanmirEditor_2.1.0.5", "ZanmirEditor_2.2.0.1_inhouse", "ZanmirLauncher_1.2.0.3" }));
        QVERIFY(records.allKeys().contains(QStringLiteral("ZanmirEditor_2.1.0.5/DisplayName")));

        const struct
        {
            const char *group, *version, *edition, *folder;
        } editors[] = { { "ZanmirEditor_2.1.0.5", "2.1.0.5", "release", "2.1.0.5-release" },
            { "ZanmirEditor_2.2.0.1_inhouse", "2.2.0.1", "inhouse", "2.2.0.1-inhouse" } };
        for (const auto &expected : editors) {
            records.beginGroup(QString::fromLatin1(expected.group));
            const QString version = QString::fromLatin1(expected.version);
            const QString folder = profile + QStringLiteral("/editors/") + QString::fromLatin1(expected.folder);
            QCOMPARE(records.value("DisplayName").toString(), QStringLiteral("Vorlix Zanmir Editor ") + version);
            QCOMPARE(records.value("AppType").toString(), QStringLiteral("editor"));
            QCOMPARE(records.value("AppName").toString(), QStringLiteral("Vorlix Zanmir Editor"));
            QCOMPARE(records.value("AppEdition").toString(), QString::fromLatin1(expected.edition));
            QCOMPARE(records.value("AppVersion").toString(), version);
            QCOMPARE(records.value("EditorPath").toString(), folder + QStringLiteral("/ZanmirEditor"));
            QCOMPARE(records.value("UninstallString").toString(), folder + QStringLiteral("/uninstall"));
            QCOMPARE(QFileInfo(records.value("EditorPath").toString()).canonicalFilePath(),
                QFileInfo(editor).canonicalFilePath());
            QVERIFY(QFileInfo::exists(records.value("UninstallString").toString()));
            records.endGroup();
        }

        records.beginGroup(QStringLiteral("ZanmirLauncher_1.2.0.3"));
        QCOMPARE(records.value("DisplayName").toString(), QStringLiteral("Vorlix Zanmir Launcher 1.2.0.3"));
        QCOMPARE(records.value("AppType").toString(), QStringLiteral("launcher"));
        QCOMPARE(records.value("AppName").toString(), QStringLiteral("Vorlix Zanmir Launcher"));
        QCOMPARE(records.value("AppEdition").toString(), QStringLiteral("release"));
        QCOMPARE(records.value("AppVersion").toString(), QStringLiteral("1.2.0.3"));
        QCOMPARE(records.value("EditorPath").toString(), launcherPath);
        QCOMPARE(records.value("UninstallString").toString(), launcherPath);
        records.endGroup();
    }

    void registrationReplacesEarlierRecords()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        QString errors;
        QVERIFY2(harness.registerVersions(
                     { QStringLiteral("2.1.0.5"), QStringLiteral("2.2.0.1") }, QStringLiteral("1.0.0.0"), &errors),
            qPrintable(errors));
        QVERIFY2(harness.registerVersions({ QStringLiteral("3.0.0.0:beta") }, QStringLiteral("1.0.0.0"), &errors),
            qPrintable(errors));
        // The harness profile is the one that QSettings of this process reads.
        QSettings records(
            harness.profile().configHome() + QStringLiteral("/Vorlix/UninstallRecords.ini"), QSettings::IniFormat);
        QStringList groups = records.childGroups();
        groups.sort();
        QCOMPARE(groups, QStringList({ "ZanmirEditor_3.0.0.0_beta", "ZanmirLauncher_1.0.0.0" }));
        QCOMPARE(records.value("ZanmirLauncher_1.0.0.0/EditorPath").toString(), LauncherHarness::launcherBinary());
    }

    void registrationRefusesBadWords_data()
    {
        QTest::addColumn<QStringList>("words");
        QTest::newRow("letters in the version") << QStringList { "2.1.x" };
        QTest::newRow("blank in the edition") << QStringList { "2.1.0.5:in house" };
        QTest::newRow("empty version") << QStringList { ":release" };
        QTest::newRow("bad launcher version") << QStringList { "--launcher-version", "one", "2.1.0.5" };
    }

    void registrationRefusesBadWords()
    {
        QFETCH(QStringList, words);
        QTemporaryDir dir;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("LD_PRELOAD"));
        QVERIFY(runTool(QStringLiteral("python3"),
                    QStringList { LauncherHarness::registerScript(), dir.path(), LauncherHarness::sampleEditorBinary() }
                        + words,
                    environment)
            > 0);
        QVERIFY(!QFileInfo::exists(dir.filePath(QStringLiteral("config/Vorlix/UninstallRecords.ini"))));
    }

    void sampleProjectTool_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("file");
        QTest::addColumn<bool>("written");
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("version");

        QTest::newRow("zmr") << QStringList { "2.1.0.5" } << "p.zmr" << true << true << "2.1.00";
        QTest::newRow("default version") << QStringList {} << "p.zmr" << true << true << "2.1.00";
        QTest::newRow("xml") << QStringList { "0.4.9.3" } << "p.xml" << true << true << "0.4.09";
        QTest::newRow("garbage") << QStringList { "--corrupt", "garbage" } << "p.zmr" << true << false << "";
        QTest::newRow("no entries") << QStringList { "--corrupt", "no-entries" } << "p.zmr" << true << false << "";
        QTest::newRow("empty entry") << QStringList { "--corrupt", "empty-entry" } << "p.zmr" << true << false << "";
        QTest::newRow("bad signature xml")
            << QStringList { "--corrupt", "bad-signature" } << "p.xml" << true << false << "";
        QTest::newRow("old format zmr") << QStringList { "--corrupt", "old-format" } << "p.zmr" << true << false << "";
        QTest::newRow("old format xml") << QStringList { "--corrupt", "old-format" } << "p.xml" << true << false << "";
        QTest::newRow("unknown suffix") << QStringList {} << "p.txt" << false << false << "";
        QTest::newRow("three numbers") << QStringList { "1.2.3" } << "p.zmr" << false << false << "";
        QTest::newRow("unknown kind") << QStringList { "--corrupt", "nonsense" } << "p.zmr" << false << false << "";
        QTest::newRow("no-entries needs zmr")
            << QStringList { "--corrupt", "no-entries" } << "p.xml" << false << false << "";
    }

    void sampleProjectTool()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, file);
        QFETCH(bool, written);
        QFETCH(bool, accepted);
        QFETCH(QString, version);

        QTemporaryDir dir;
        const QString path = dir.filePath(file);
        // The file goes before the version; options anywhere.
        QStringList command = arguments;
        command.insert(arguments.value(0) == QLatin1String("--corrupt") ? 2 : 0, path);
        const int status
            = runTool(LauncherHarness::makeSampleProjectBinary(), command, QProcessEnvironment::systemEnvironment());
        QCOMPARE(status == 0, written);
        QCOMPARE(QFileInfo::exists(path), written);
        if (!written)
            return;

        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), accepted);
        if (accepted)
            QCOMPARE(info.getVersion(), version);
    }
};

QTEST_GUILESS_MAIN(TestSampleTools)
#include "tst_sampletools.moc"
