#include "editordocmanager.h"
#include "editorinfo.h"
#include "launcherharness.h"

#include <QSettings>
#include <QTemporaryDir>
#include <QtTest>

static int runTool(const QString &program, const QStringList &arguments)
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("LD_PRELOAD"));
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    if (!process.waitForFinished(30000) || process.exitStatus() != QProcess::NormalExit)
        return -1;
    return process.exitCode();
}

// The stand-ins that the end-to-end tests and the demo rely on: the sample
// editor, the registration script and the sample project writer.
class TestSampleTools : public QObject
{
    Q_OBJECT

private slots:
    void sampleEditorRecordsItsStart()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid());
        const QStringList arguments { QStringLiteral("my project.zmr"), QString(), QStringLiteral("\u00e9\"\\") };
        QProcess editor;
        editor.setProcessEnvironment(harness.environment());
        editor.start(LauncherHarness::sampleEditorBinary(), arguments);
        QVERIFY(editor.waitForFinished(30000));
        QCOMPARE(harness.editorStarts(),
            QList<QStringList>() << QStringList(LauncherHarness::sampleEditorBinary()) + arguments);
    }

    void registeredRecordsReadBack()
    {
        QTemporaryDir dir;
        const QString profile = dir.filePath(QStringLiteral("\u00e9t\u00e9 \u65e5\u672c"));
        const QString launcherPath = QStringLiteral("/opt/a b/\u00fcber");
        QVERIFY(QDir().mkpath(profile));
        QCOMPARE(runTool(QStringLiteral("python3"),
                     { LauncherHarness::registerScript(), QStringLiteral("--launcher-version"),
                         QStringLiteral("1.2.0.3"), QStringLiteral("--launcher-path"), launcherPath, profile,
                         LauncherHarness::sampleEditorBinary(), QStringLiteral("2.2.0.1:inhouse") }),
            0);

        QSettings records(profile + QStringLiteral("/config/Vorlix/UninstallRecords.ini"), QSettings::IniFormat);
        QStringList groups = records.childGroups();
        groups.sort();
        QCOMPARE(groups, QStringList({ "ZanmirEditor_2.2.0.1_inhouse", "ZanmirLauncher_1.2.0.3" }));
        records.beginGroup(QStringLiteral("ZanmirEditor_2.2.0.1_inhouse"));
        QCOMPARE(records.value("DisplayName").toString(), QStringLiteral("Vorlix Zanmir Editor 2.2.0.1"));
        QCOMPARE(records.value("AppType").toString(), QStringLiteral("editor"));
        QCOMPARE(records.value("AppEdition").toString(), QStringLiteral("inhouse"));
        QCOMPARE(records.value("AppVersion").toString(), QStringLiteral("2.2.0.1"));
        QCOMPARE(QFileInfo(records.value("EditorPath").toString()).canonicalFilePath(),
            QFileInfo(LauncherHarness::sampleEditorBinary()).canonicalFilePath());
        QVERIFY(records.value("EditorPath").toString().startsWith(profile));
        records.endGroup();
        QCOMPARE(records.value("ZanmirLauncher_1.2.0.3/EditorPath").toString(), launcherPath);
    }

    void sampleProjectTool_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("version");

        QTest::newRow("zmr") << QStringList { "2.1.0.5" } << "p.zmr"
                             << "2.1.00";
        QTest::newRow("xml") << QStringList { "0.4.9.3" } << "p.xml"
                             << "0.4.09";
        QTest::newRow("old format refused") << QStringList { "--corrupt", "old-format" } << "p.zmr"
                                            << "";
    }

    void sampleProjectTool()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, file);
        QFETCH(QString, version);

        QTemporaryDir dir;
        const QString path = dir.filePath(file);
        QCOMPARE(runTool(LauncherHarness::makeSampleProjectBinary(), QStringList(path) + arguments), 0);
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), !version.isEmpty());
        if (!version.isEmpty())
            QCOMPARE(info.getVersion(), version);
    }
};

QTEST_GUILESS_MAIN(TestSampleTools)
#include "tst_sampletools.moc"
