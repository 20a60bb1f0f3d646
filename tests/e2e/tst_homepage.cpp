#include "launcherharness.h"
#include "sampleproject.h"
#include "testfiles.h"

#include <QtTest>

// The launch page of the real program: a project opened by double click in
// the file manager while the window is open shows up as the first card, and
// the window's own later save keeps it.
class TestHomePage : public QObject
{
    Q_OBJECT

private slots:
    void dailyUse()
    {
        LauncherHarness harness;
        QVERIFY(harness.isValid() && harness.registerVersions({ "2.0.03", "2.1.05", "2.2.01" }));
        const QString root = harness.profile().root();
        const QString tower = harness.projectPath("tower.xml"), scene = harness.projectPath("scene.zmr");
        QVERIFY(SampleProject::writeProject(tower, "2.0.3.0") && SampleProject::writeProject(scene, "2.1.5.0"));
        QVERIFY(harness.run({ tower })->exitedWith(0));

        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT",
            "window Zanmir Launcher;waitfile " + root + "/opened;waitrow listView 0 " + scene + ";rows listView " + root
                + "/cards;click buttonAppl;press noPinIconView left;close");
        LauncherRun *window = harness.start({});
        QVERIFY(QTest::qWaitFor([&]() { return window->doneSteps().contains("window Zanmir Launcher"); }, 30000));

        // The file manager opens another project while the window is open.
        harness.setEnvironmentValue("ZANMIR_TEST_SCRIPT", QString());
        QVERIFY(harness.run({ scene })->exitedWith(0));
        QVERIFY(QFile(root + "/opened").open(QIODevice::WriteOnly));
        QVERIFY2(window->waitForFinished(60000) && window->exitedWith(0), qPrintable(window->describe()));
        QCOMPARE(window->failedSteps(), QStringList());

        // While the window was open it became the first card.
        QCOMPARE(QString::fromUtf8(TestFiles::read(root + "/cards")).split('\n', Qt::SkipEmptyParts),
            (QStringList { scene, tower }));
        // The pin that the window saved afterwards kept the project opened meanwhile.
        const QJsonObject state = TestFiles::readObject(harness.profile().managerFile())["1.0.0"].toObject();
        QCOMPARE(state["pinned_version"]["editor"][0]["version"].toString(), QString("2.2.01"));
        QStringList kept;
        for (const QJsonValue history : state["histories"].toArray())
            kept.append(history["openfilepath"].toString());
        QVERIFY2(kept.contains(scene), qPrintable(kept.join(' ')));
    }
};

QTEST_GUILESS_MAIN(TestHomePage)
#include "tst_homepage.moc"
