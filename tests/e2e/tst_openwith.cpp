#include "launcherharness.h"
#include "sampleproject.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QtTest>

#include <memory>

namespace {

// Installed versions carry the text that the editor writes into its projects
// (A.B.CC), so that a project finds its exact editor.
const QStringList kInstalled{QStringLiteral("2.0.03"), QStringLiteral("2.1.05"), QStringLiteral("2.2.01")};

QJsonObject readManagerState(const TestProfile &profile)
{
    QFile file(profile.managerFile());
    if (!file.open(QIODevice::ReadOnly))
        return QJsonObject();
    return QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("1.0.0")).toObject();
}

bool writeManagerState(const TestProfile &profile, const QJsonObject &state)
{
    QFile file(profile.managerFile());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        return false;
    file.write(QJsonDocument(QJsonObject{{"1.0.0", state}}).toJson());
    return true;
}

// The version folder of the editor that a start came from: ".../editors/2.1.05-release/ZanmirEditor".
QString startedVersion(const QStringList &start)
{
    return start.isEmpty() ? QString() : QFileInfo(QFileInfo(start.first()).path()).fileName();
}

} // namespace

// The open-with road: a project file on the command line starts the editor
// that fits it, records it as a recent project and ends the process.
class TestOpenWith : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<LauncherHarness> m_harness;

    void project(const QString &name, const QString &savedBy)
    {
        QString error;
        QVERIFY2(SampleProject::writeProject(m_harness->projectPath(name), savedBy, &error), qPrintable(error));
    }

    LauncherRun *open(const QStringList &arguments)
    {
        LauncherRun *run = m_harness->run(arguments);
        return run;
    }

private slots:
    void init()
    {
        m_harness = std::make_unique<LauncherHarness>();
        QVERIFY(m_harness->isValid());
        QString error;
        QVERIFY2(m_harness->registerVersions(kInstalled, QStringLiteral("1.0.0.0"), &error), qPrintable(error));
    }

    void cleanup() { m_harness.reset(); }

    void projectOpensInTheEditorThatSavedIt_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("savedBy");
        QTest::addColumn<QString>("expectedEditor");
        QTest::newRow("zmr by 2.1") << "scene.zmr" << "2.1.5.0" << "2.1.05-release";
        QTest::newRow("xml by 2.0") << "scene.xml" << "2.0.3.0" << "2.0.03-release";
        QTest::newRow("capital suffix") << "SCENE.ZMR" << "2.2.1.0" << "2.2.01-release";
        // Newer than anything installed: the newest release, without a word.
        QTest::newRow("newer than installed") << "future.zmr" << "3.0.0.0" << "2.2.01-release";
        // An old build that the launcher does not know: the newest again.
        QTest::newRow("not installed") << "old.xml" << "1.0.0.0" << "2.2.01-release";
    }

    void projectOpensInTheEditorThatSavedIt()
    {
        QFETCH(QString, file);
        QFETCH(QString, savedBy);
        QFETCH(QString, expectedEditor);
        project(file, savedBy);

        LauncherRun *run = open({file});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QVERIFY2(run->dialogs().isEmpty(), qPrintable(run->describe()));
        QVERIFY(m_harness->waitForEditorStarts(1));
        const QList<QStringList> starts = m_harness->editorStarts();
        QCOMPARE(starts.size(), 1);
        QCOMPARE(startedVersion(starts.first()), expectedEditor);
        QCOMPARE(starts.first().mid(1), QStringList{file});

        const QJsonArray histories = readManagerState(m_harness->profile()).value(QStringLiteral("histories")).toArray();
        QCOMPARE(histories.size(), 1);
        const QJsonObject entry = histories.first().toObject();
        QCOMPARE(entry.value(QStringLiteral("openfilepath")).toString(), file);
        QCOMPARE(entry.value(QStringLiteral("serial_no")).toInt(), 1);
        QCOMPARE(entry.value(QStringLiteral("version")).toString(), expectedEditor.section(QLatin1Char('-'), 0, 0));
    }

    void reopeningReplacesTheHistoryEntry()
    {
        project(QStringLiteral("a.zmr"), QStringLiteral("2.1.5.0"));
        project(QStringLiteral("b.xml"), QStringLiteral("2.0.3.0"));
        for (const QString &file : {QStringLiteral("a.zmr"), QStringLiteral("b.xml"), QStringLiteral("a.zmr")}) {
            LauncherRun *run = open({file});
            QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        }
        QVERIFY(m_harness->waitForEditorStarts(3));

        const QJsonArray histories = readManagerState(m_harness->profile()).value(QStringLiteral("histories")).toArray();
        QCOMPARE(histories.size(), 2);
        QHash<QString, int> serials;
        for (const QJsonValue &value : histories)
            serials.insert(value.toObject().value(QStringLiteral("openfilepath")).toString(),
                           value.toObject().value(QStringLiteral("serial_no")).toInt());
        QCOMPARE(serials.value(QStringLiteral("b.xml")), 2);
        QCOMPARE(serials.value(QStringLiteral("a.zmr")), 3);
    }

    void lastExistingFileOnTheCommandLineIsOpened()
    {
        project(QStringLiteral("first.zmr"), QStringLiteral("2.0.3.0"));
        project(QStringLiteral("second.zmr"), QStringLiteral("2.1.5.0"));
        LauncherRun *run = open({QStringLiteral("first.zmr"), QStringLiteral("second.zmr"), QStringLiteral("gone.zmr")});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QVERIFY(m_harness->waitForEditorStarts(1));
        QTest::qWait(300);
        QCOMPARE(m_harness->editorStarts().size(), 1);
        QCOMPARE(m_harness->editorStarts().first().mid(1), QStringList{"second.zmr"});
    }

    void defaultVersionWinsOverTheDocument()
    {
        project(QStringLiteral("scene.zmr"), QStringLiteral("2.2.1.0"));
        // A corrupt project still opens: the default version does not read it.
        QVERIFY(SampleProject::writeFile(m_harness->projectPath(QStringLiteral("broken.zmr")), "not an archive"));

        LauncherRun *first = open({});
        QVERIFY2(first->exitedWith(0), qPrintable(first->describe()));
        QJsonObject state = readManagerState(m_harness->profile());
        QVERIFY(!state.isEmpty());
        state.insert(QStringLiteral("selected_version"),
                     QJsonObject{{"editor", QJsonObject{{"appl_type", "editor"}, {"edition", "release"}, {"version", "2.0.03"}}}});
        QVERIFY(writeManagerState(m_harness->profile(), state));

        for (const QString &file : {QStringLiteral("scene.zmr"), QStringLiteral("broken.zmr")}) {
            LauncherRun *run = open({file});
            QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
            QVERIFY2(run->dialogs().isEmpty(), qPrintable(run->describe()));
        }
        QVERIFY(m_harness->waitForEditorStarts(2));
        for (const QStringList &start : m_harness->editorStarts())
            QCOMPARE(startedVersion(start), QStringLiteral("2.0.03-release"));
    }

    void uninstalledDefaultVersionIsAnError()
    {
        project(QStringLiteral("scene.zmr"), QStringLiteral("2.1.5.0"));
        LauncherRun *first = open({});
        QVERIFY2(first->exitedWith(0), qPrintable(first->describe()));
        QJsonObject state = readManagerState(m_harness->profile());
        state.insert(QStringLiteral("selected_version"),
                     QJsonObject{{"editor", QJsonObject{{"appl_type", "editor"}, {"edition", "release"}, {"version", "1.9.09"}}}});
        QVERIFY(writeManagerState(m_harness->profile(), state));

        // Other editors are installed, yet there is no fall-back.
        LauncherRun *run = open({QStringLiteral("scene.zmr")});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().first().icon, QStringLiteral("critical"));
        QCOMPARE(run->dialogs().first().title, QStringLiteral("Error"));
        QCOMPARE(run->dialogs().first().text,
                 QStringLiteral("Failed to launch default editor.\nPlease launch Zanmir Launcher, and confirm the "
                                "installation by 'Manage Zanmir Editor'."));
        QTest::qWait(300);
        QVERIFY(m_harness->editorStarts().isEmpty());
    }

    void badProjectsGetTheirMessage_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<QString>("text");
        const QString corrupt = QStringLiteral("Failed to open project file.\n\nPlease confirm the file is not corrupted.");
        QTest::newRow("no archive") << "garbage.zmr" << QByteArray("PK but not really") << corrupt;
        QTest::newRow("xml syntax error") << "broken.xml" << QByteArray("<header><signature>zmr</sig") << corrupt;
        QTest::newRow("wrong signature")
            << "other.xml"
            << QByteArray("<r><header/><signature>abc</signature><formatVer>1</formatVer><m_lastEditorVersion>1</m_lastEditorVersion></r>")
            << corrupt;
        QTest::newRow("unsupported suffix") << "notes.txt" << QByteArray("text")
                                            << QStringLiteral("This file has unsupported extension.\nnotes.txt");
        QTest::newRow("second suffix after zmr") << "scene.zmr.bak" << QByteArray("x")
                                                 << QStringLiteral("This file has unsupported extension.\nscene.zmr.bak");
    }

    void badProjectsGetTheirMessage()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, contents);
        QFETCH(QString, text);
        QVERIFY(SampleProject::writeFile(m_harness->projectPath(file), contents));

        LauncherRun *run = open({file});
        // The start-up itself succeeded, so a refused file still ends with 0.
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().first().icon, QStringLiteral("critical"));
        QCOMPARE(run->dialogs().first().title, QStringLiteral("Error"));
        QCOMPARE(run->dialogs().first().text, text);
        QTest::qWait(300);
        QVERIFY(m_harness->editorStarts().isEmpty());
        QVERIFY(readManagerState(m_harness->profile()).value(QStringLiteral("histories")).toArray().isEmpty());
    }

    void noEditorInstalled()
    {
        QVERIFY(m_harness->registerVersions({}, QStringLiteral("1.0.0.0")));
        project(QStringLiteral("scene.zmr"), QStringLiteral("2.1.5.0"));
        LauncherRun *run = open({QStringLiteral("scene.zmr")});
        QVERIFY2(run->exitedWith(0), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().first().text,
                 QStringLiteral("Failed to launch editor.\nPlease launch Zanmir Launcher, and confirm the installation "
                                "by 'Manage Zanmir Editor'."));
    }

    void editorThatCannotStartGivesStatusOne()
    {
        project(QStringLiteral("scene.zmr"), QStringLiteral("2.2.1.0"));
        // The newest editor's program is gone: nothing starts, nothing is said.
        QVERIFY(QFile::remove(m_harness->profile().root() + QStringLiteral("/editors/2.2.01-release/ZanmirEditor")));
        LauncherRun *run = open({QStringLiteral("scene.zmr")});
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        QVERIFY(run->dialogs().isEmpty());
        QVERIFY(readManagerState(m_harness->profile()).value(QStringLiteral("histories")).toArray().isEmpty());
    }

    void secondLauncherIsRefusedWhileTheLockIsHeld()
    {
        // Stands in for an open main window: it holds the lock beside the manager file.
        QLockFile window(m_harness->profile().launcherFolder() + QStringLiteral("/ZanmirManager.lock"));
        QVERIFY(window.tryLock(0));

        LauncherRun *run = open({});
        QVERIFY2(run->exitedWith(1), qPrintable(run->describe()));
        QCOMPARE(run->dialogs().size(), 1);
        QCOMPARE(run->dialogs().first().icon, QStringLiteral("warning"));
        QCOMPARE(run->dialogs().first().title, QStringLiteral("warning"));
        QCOMPARE(run->dialogs().first().text, QStringLiteral("Zanmir Launcher is already launched."));
        QVERIFY(window.isLocked());
        qint64 pid = 0;
        QString host, application;
        QVERIFY(window.getLockInfo(&pid, &host, &application));
        QCOMPARE(pid, QCoreApplication::applicationPid());

        // A file that does not exist counts as no file at all.
        LauncherRun *missing = open({QStringLiteral("missing.zmr")});
        QVERIFY2(missing->exitedWith(1), qPrintable(missing->describe()));
        QCOMPARE(missing->dialogs().size(), 1);

        window.unlock();
        LauncherRun *free = open({});
        QVERIFY2(free->exitedWith(0), qPrintable(free->describe()));
        QVERIFY(free->dialogs().isEmpty());
    }

    void openWithTakesNoLock()
    {
        project(QStringLiteral("a.zmr"), QStringLiteral("2.0.3.0"));
        project(QStringLiteral("b.xml"), QStringLiteral("2.1.5.0"));
        QLockFile window(m_harness->profile().launcherFolder() + QStringLiteral("/ZanmirManager.lock"));
        QVERIFY(window.tryLock(0));

        LauncherRun *first = m_harness->start({QStringLiteral("a.zmr")});
        LauncherRun *second = m_harness->start({QStringLiteral("b.xml")});
        QVERIFY(first->waitForFinished(LauncherHarness::kDefaultTimeout));
        QVERIFY(second->waitForFinished(LauncherHarness::kDefaultTimeout));
        QVERIFY2(first->exitedWith(0), qPrintable(first->describe()));
        QVERIFY2(second->exitedWith(0), qPrintable(second->describe()));
        QVERIFY(first->dialogs().isEmpty());
        QVERIFY(second->dialogs().isEmpty());

        QVERIFY(m_harness->waitForEditorStarts(2));
        QStringList opened;
        for (const QStringList &start : m_harness->editorStarts())
            opened.append(startedVersion(start) + QLatin1Char(' ') + start.value(1));
        opened.sort();
        QCOMPARE(opened, (QStringList{"2.0.03-release a.zmr", "2.1.05-release b.xml"}));
        QVERIFY(window.isLocked());
    }
};

QTEST_GUILESS_MAIN(TestOpenWith)
#include "tst_openwith.moc"
