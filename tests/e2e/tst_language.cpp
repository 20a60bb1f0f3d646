#include "launcherharness.h"
#include "testfiles.h"

#include <QJsonObject>
#include <QtTest>

// The language chosen in the preferences is the one of the next start: the
// real binary reads it from the manager file and loads its catalogue.
class TestLanguage : public QObject
{
    Q_OBJECT

private:
    // Whether the preferences dialog, opened from the menu strip, shows this title.
    static bool preferencesTitled(LauncherHarness &harness, const QString &title)
    {
        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;click buttonPref;window " + title + ";click buttonCancel;close");
        LauncherRun *run = harness.run({}, 30000);
        return run->exitedWith(0) && run->failedSteps().isEmpty();
    }

private slots:
    void nextStartSpeaksTheStoredLanguage()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.1.05" }));
        QVERIFY(preferencesTitled(harness, "Preferences"));

        // What OK in the dialog stores; the window being closed, nothing else writes.
        const QString managerFile = harness.profile().managerFile();
        QJsonObject state = TestFiles::readObject(managerFile);
        QJsonObject launcher = state.value("1.0.0").toObject();
        QVERIFY(launcher.contains("locale")); // the system's until the user picks one
        launcher.insert("locale", "ja_JP");
        state.insert("1.0.0", launcher);
        QVERIFY(TestFiles::write(managerFile, QJsonDocument(state).toJson()));
        QVERIFY(preferencesTitled(harness, QStringLiteral("環境設定")));
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
