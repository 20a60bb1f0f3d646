#include "editorinfo.h"
#include "historyinfo.h"
#include "launcherinfo.h"

#include <QJsonDocument>
#include <QtTest>

static EditorInfo editor(const QString &version, const QString &edition = "release", const QString &type = "editor")
{
    return EditorInfo(type, edition, version);
}

static void row(const char *name, const char *type, const char *left, const char *right, int expected)
{
    QTest::newRow(name) << QString(type) << QString(left) << QString(right) << expected;
}

static QJsonObject json(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

class TestRecords : public QObject
{
    Q_OBJECT

private slots:
    void compareVersion_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QString>("left");
        QTest::addColumn<QString>("right");
        QTest::addColumn<int>("expected");
        row("trailing zero counts", "editor", "2.1", "2.1.0", -1);
        row("four parts above three", "editor", "2.1.0.0", "2.1.0", 1);
        row("numeric, not text", "editor", "2.10.0", "2.9.0", 1);
        row("editor 0.5.12 is 0.5.1.2", "editor", "0.5.12", "0.5.1.2", 0);
        row("editor 0.3.4 is 0.3.0.4", "editor", "0.3.4", "0.3.0.4", 0);
        row("editor 0.6.7 stays", "editor", "0.6.7", "0.6.7.0", -1);
        row("editor 1.5.12 stays", "editor", "1.5.12", "1.5.1.2", 1);
        row("launcher 0.3.4 is 0.3.4.0", "launcher", "0.3.4", "0.3.4.0", 0);
        row("launcher 0.4.4 stays", "launcher", "0.4.4", "0.4.4.0", -1);
        row("no type, 0.5.12 stays", "", "0.5.12", "0.5.1.2", 1);
        row("bad part ends the list", "editor", "1.2.x.4", "1.2", 0);
        row("empty text is least", "editor", "", "0", -1);
        row("unsigned numbers", "editor", "4294967295", "1", 1);
    }

    void compareVersion()
    {
        QFETCH(QString, type);
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, expected);
        const EditorInfo a = editor(left, "release", type);
        QCOMPARE(a.compareVersion(editor(right, "release", type)), expected);
        QCOMPARE(editor(right, "release", type).compareVersion(a), -expected);
        QCOMPARE(a.getVersion(), left); // the text is never normalised
    }

    void identityRules()
    {
        const EditorInfo release = editor("2.1.0.0");
        const EditorInfo beta = editor("2.1.0.0", "beta");
        const EditorInfo empty;
        QVERIFY(!editor("0.5.12").isSameVersion(editor("0.5.1.2")));
        QVERIFY(!release.isSameVersion(beta));
        QVERIFY(release.isSameVersionOtherEdition(beta));
        QVERIFY(!release.isSameVersionOtherEdition(release));

        QVERIFY(empty.isNewerThan(empty));
        QVERIFY(!editor("3.0", "beta").isNewerThan(release));
        QVERIFY(editor("2.1.0.1").isNewerThan(release));
        QVERIFY(!release.isNewerThan(release));

        // Series compare as text.
        QCOMPARE(majorMinorCompare("2.10.0", "2.9.0"), -1);
        QVERIFY(editor("2.9.0").isNewerSeries(editor("2.10.0")));
        QVERIFY(!editor("2.1.0.5").isNewerInSameSeries(empty));
    }

    void publicVersionAndTexts()
    {
        QVERIFY(editor("1.0").isPublicVersion());
        QVERIFY(!editor("1.0", "inhouse").isPublicVersion());
        QVERIFY(editor("1.0", "inhouse", "launcher").isPublicVersion());
        QVERIFY(!EditorInfo().isPublicVersion());
        QCOMPARE(editor("2.1.0.5", "inhouse").getDisplayVersion(), QString("2.1.0.5d"));
        QCOMPARE(editor("2.1.0.5", "beta").getDisplayVersion(), QString("2.1.0.5"));
        QVERIFY(QDateTime::fromString(currentTimestamp(), "yyyy/MM/dd hh:mm:ss").isValid());
    }

    void jsonForms()
    {
        QObject owner;
        const QJsonObject fullJson = json(R"({"appl_type": "editor", "applname": "N", "edition": "release",
                                              "path": "/e", "uninstaller_path": "/u", "version": "2.1.0.5"})");
        bool error = true;
        const EditorInfo full(false, fullJson, &error, &owner);
        QVERIFY(!error);
        QCOMPARE(full.toJson(false), fullJson);
        QCOMPARE(full.toJson(true), json(R"({"appl_type": "editor", "edition": "release", "version": "2.1.0.5"})"));
        const EditorInfo copy(full);
        QCOMPARE(copy.parent(), nullptr);
        QCOMPARE(copy.toJson(false), fullJson);

        // Only the full form defaults the type, and the short form reads nothing else.
        const QJsonObject typeless = json(R"({"version": "1.0", "applname": "A", "path": "/x"})");
        QCOMPARE(EditorInfo(false, typeless, nullptr).getApplType(), QString("editor"));
        QCOMPARE(EditorInfo(true, typeless, nullptr).toJson(false),
            json(R"({"appl_type": "", "applname": "", "edition": "", "path": "", "uninstaller_path": "",
                     "version": "1.0"})"));

        // A launcher's type and edition are fixed, whatever the file says.
        const LauncherInfo launcher(json(R"({"appl_type": "editor", "edition": "inhouse", "applname": "L",
                                             "version": "0.3.4", "path": "/l", "uninstaller_path": "/u"})"),
            &error);
        QVERIFY(!error);
        QVERIFY(launcher.isSameVersion(EditorInfo("launcher", "release", "0.3.4")));
        QCOMPARE(launcher.toJson(),
            json(R"({"applname": "L", "path": "/l", "uninstaller_path": "/u", "version": "0.3.4"})"));
    }

    void historyJson()
    {
        const QJsonObject complete = json(R"({"serial_no": 4, "appl_type": "editor", "applname": "N",
            "edition": "beta", "timestamp": "2026/11/21 10:00:00", "openfilepath": "/a.zmr", "version": "2.1"})");
        bool error = true;
        QCOMPARE(HistoryInfo(HistoryInfo(complete, &error)).toJson(), complete);
        QVERIFY(!error);
        // Only the application name and the serial number may be missing.
        for (const QString &key : complete.keys()) {
            QJsonObject incomplete = complete;
            incomplete.remove(key);
            HistoryInfo(incomplete, &error);
            QVERIFY2(error == (key != "applname" && key != "serial_no"), qPrintable(key));
        }
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
