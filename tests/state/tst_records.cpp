#include "editorinfo.h"
#include "historyinfo.h"
#include "launcherinfo.h"

#include <QJsonDocument>
#include <QtTest>

static EditorInfo editor(const QString &version, const QString &edition = QStringLiteral("release"),
                         const QString &type = QStringLiteral("editor"))
{
    return EditorInfo(type, edition, version);
}

static QJsonObject json(const char *text)
{
    return QJsonDocument::fromJson(QByteArray(text)).object();
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

        const QString e = QStringLiteral("editor");
        const QString l = QStringLiteral("launcher");
        QTest::newRow("trailing zero counts") << e << "2.1" << "2.1.0" << -1;
        QTest::newRow("four parts above three") << e << "2.1.0.0" << "2.1.0" << 1;
        QTest::newRow("numeric, not text") << e << "2.10.0" << "2.9.0" << 1;
        QTest::newRow("equal") << e << "2.1.0.5" << "2.1.0.5" << 0;
        QTest::newRow("0.5.12 above 0.5.1.1") << e << "0.5.12" << "0.5.1.1" << 1;
        QTest::newRow("0.5.12 equals 0.5.1.2") << e << "0.5.12" << "0.5.1.2" << 0;
        QTest::newRow("0.5.7 is 0.5.0.7") << e << "0.5.7" << "0.5.0.7" << 0;
        QTest::newRow("0.1.00 is 0.1.0.0") << e << "0.1.00" << "0.1.0.0" << 0;
        QTest::newRow("0.6.7 stays three numbers") << e << "0.6.7" << "0.6.7.0" << -1;
        QTest::newRow("1.5.12 stays, a is not 0") << e << "1.5.12" << "1.5.1.2" << 1;
        QTest::newRow("launcher 0.3.4 is 0.3.4.0") << l << "0.3.4" << "0.3.4.0" << 0;
        QTest::newRow("launcher 0.4.4 stays") << l << "0.4.4" << "0.4.4.0" << -1;
        QTest::newRow("bad part ends the list") << e << "1.2.x.4" << "1.2" << 0;
        QTest::newRow("empty part ends the list") << e << "1..3" << "1" << 0;
        QTest::newRow("empty text is least") << e << "" << "0" << -1;
        QTest::newRow("unsigned numbers") << e << "4294967295" << "1" << 1;
    }

    void compareVersion()
    {
        QFETCH(QString, type);
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, expected);

        const EditorInfo a(type, QStringLiteral("release"), left);
        const EditorInfo b(type, QStringLiteral("release"), right);
        bool ok = false;
        QCOMPARE(a.compareVersion(b, &ok), expected);
        QVERIFY(ok);
        QCOMPARE(b.compareVersion(a), -expected);
    }

    void normalisationKeepsTheText()
    {
        const EditorInfo twelve = editor(QStringLiteral("0.5.12"));
        const EditorInfo split = editor(QStringLiteral("0.5.1.2"));
        QCOMPARE(twelve.getVersionNumbers(), (QList<quint32>{0, 5, 1, 2}));
        QCOMPARE(twelve.getVersion(), QStringLiteral("0.5.12"));
        QCOMPARE(twelve.compareVersion(split), 0);
        QVERIFY(!twelve.isSameVersion(split));

        // The same text means different numbers for the two types, and no
        // normalisation at all for any other type.
        QCOMPARE(editor(QStringLiteral("0.3.4")).getVersionNumbers(), (QList<quint32>{0, 3, 0, 4}));
        QCOMPARE(editor(QStringLiteral("0.3.4"), QStringLiteral("release"), QStringLiteral("launcher")).getVersionNumbers(),
                 (QList<quint32>{0, 3, 4, 0}));
        QCOMPARE(editor(QStringLiteral("0.5.12"), QStringLiteral("release"), QString()).getVersionNumbers(),
                 (QList<quint32>{0, 5, 12}));
    }

    void majorMinorIsTextOrder()
    {
        QCOMPARE(majorMinorCompare(QStringLiteral("2.10.0"), QStringLiteral("2.9.0")), -1);
        QCOMPARE(majorMinorCompare(QStringLiteral("2.1.0.5"), QStringLiteral("2.1.7")), 0);
        QCOMPARE(majorMinorCompare(QStringLiteral("2.2"), QStringLiteral("2.1.9")), 1);
        QCOMPARE(majorMinorCompare(QStringLiteral("3"), QStringLiteral("3")), 0);
        QCOMPARE(majorMinorCompare(QStringLiteral("3"), QStringLiteral("3.0")), -1);
        QVERIFY(editor(QStringLiteral("2.9.0")).isNewerSeries(editor(QStringLiteral("2.10.0"))));
        QVERIFY(!editor(QStringLiteral("2.10.0")).isNewerSeries(editor(QStringLiteral("2.9.0"))));
    }

    void identityRules()
    {
        const EditorInfo release = editor(QStringLiteral("2.1.0.0"));
        const EditorInfo beta = editor(QStringLiteral("2.1.0.0"), QStringLiteral("beta"));
        QVERIFY(!release.isSameVersion(beta));
        QVERIFY(release.isSameVersionOtherEdition(beta));
        QVERIFY(!release.isSameVersionOtherEdition(release));
        QVERIFY(release.isSameVersion(EditorInfo(QStringLiteral("editor"), QStringLiteral("Some name"),
                                                 QStringLiteral("release"), QStringLiteral("2.1.0.0"),
                                                 QStringLiteral("/a"), QStringLiteral("/b"))));
        QVERIFY(!release.isSameApplication(editor(QStringLiteral("2.1.0.0"), QStringLiteral("release"),
                                                  QStringLiteral("launcher"))));

        const EditorInfo empty;
        QVERIFY(empty.isEmpty());
        QVERIFY(EditorInfo(QString(), QString(), QString(), QString(), QStringLiteral("/p"), QStringLiteral("/u")).isEmpty());
        QVERIFY(empty.isNewerThan(empty));
        QVERIFY(beta.isNewerThan(empty));
        QVERIFY(!beta.isNewerThan(release));
        QVERIFY(editor(QStringLiteral("2.1.0.1")).isNewerThan(release));
        QVERIFY(!release.isNewerThan(release));

        QVERIFY(!editor(QStringLiteral("2.1.0.5")).isNewerInSameSeries(empty));
        QVERIFY(editor(QStringLiteral("2.1.0.5")).isNewerInSameSeries(release));
        QVERIFY(!editor(QStringLiteral("2.2.0.0")).isNewerInSameSeries(release));
        QVERIFY(!editor(QStringLiteral("2.1.0.5"), QStringLiteral("beta")).isNewerInSameSeries(release));
    }

    void publicVersionAndDisplay()
    {
        QVERIFY(editor(QStringLiteral("1.0")).isPublicVersion());
        QVERIFY(!editor(QStringLiteral("1.0"), QStringLiteral("inhouse")).isPublicVersion());
        QVERIFY(editor(QStringLiteral("1.0"), QStringLiteral("inhouse"), QStringLiteral("launcher")).isPublicVersion());
        QVERIFY(!EditorInfo().isPublicVersion());

        QCOMPARE(editor(QStringLiteral("2.1.0.5"), QStringLiteral("inhouse")).getDisplayVersion(), QStringLiteral("2.1.0.5d"));
        QCOMPARE(editor(QStringLiteral("2.1.0.5"), QStringLiteral("beta")).getDisplayVersion(), QStringLiteral("2.1.0.5"));
        QCOMPARE(editor(QStringLiteral("2.1.0.5")).getDisplayVersion(), QStringLiteral("2.1.0.5"));
    }

    void copiesTakeFieldsNotParent()
    {
        QObject owner;
        EditorInfo original(QStringLiteral("editor"), QStringLiteral("Name"), QStringLiteral("release"),
                            QStringLiteral("0.5.12"), QStringLiteral("/bin/editor"), QStringLiteral("/bin/uninstall"),
                            &owner);
        const EditorInfo copy(original);
        QCOMPARE(copy.parent(), nullptr);
        QCOMPARE(copy.getPath(), QStringLiteral("/bin/editor"));
        QCOMPARE(copy.getUninstallerPath(), QStringLiteral("/bin/uninstall"));
        QCOMPARE(copy.getVersionNumbers(), original.getVersionNumbers());

        EditorInfo target(&owner);
        target = copy;
        QCOMPARE(target.parent(), &owner);
        QVERIFY(target.isSameVersion(original));
        QVERIFY(target.isValid());
    }

    void editorJson()
    {
        const EditorInfo full(QStringLiteral("editor"), QStringLiteral("Vorlix Zanmir Editor"), QStringLiteral("release"),
                              QStringLiteral("2.1.0.5"), QStringLiteral("/opt/e"), QStringLiteral("/opt/u"));
        const QJsonObject fullJson = full.toJson(false);
        QCOMPARE(fullJson.keys(), (QStringList{"appl_type", "applname", "edition", "path", "uninstaller_path", "version"}));
        QCOMPARE(full.toJson(true).keys(), (QStringList{"appl_type", "edition", "version"}));

        bool error = true;
        const EditorInfo back(false, fullJson, &error);
        QVERIFY(!error);
        QCOMPARE(back.toJson(false), fullJson);

        // The full form defaults the type to "editor"; the short form does not.
        error = true;
        const EditorInfo typeless(false, json(R"({"appl_type": "", "version": "1.0"})"), &error);
        QVERIFY(!error);
        QCOMPARE(typeless.getApplType(), QStringLiteral("editor"));
        const EditorInfo shortTypeless(true, json(R"({"version": "1.0", "applname": "ignored", "path": "/x"})"), &error);
        QVERIFY(shortTypeless.getApplType().isEmpty());
        QVERIFY(shortTypeless.getApplName().isEmpty());
        QVERIFY(shortTypeless.getPath().isEmpty());

        // Wrong JSON types read as defaults, and the reader never fails.
        error = true;
        const EditorInfo wrongTypes(false, json(R"({"appl_type": 3, "edition": true, "version": [1]})"), &error);
        QVERIFY(!error);
        QCOMPARE(wrongTypes.getApplType(), QStringLiteral("editor"));
        QVERIFY(wrongTypes.getEdition().isEmpty());
        QVERIFY(wrongTypes.getVersion().isEmpty());
    }

    void launcherJson()
    {
        bool error = true;
        const LauncherInfo launcher(json(R"({"appl_type": "editor", "edition": "inhouse", "applname": "L",
                                            "version": "0.3.4", "path": "/l", "uninstaller_path": "/u"})"),
                                    &error);
        QVERIFY(!error);
        QCOMPARE(launcher.getApplType(), QStringLiteral("launcher"));
        QCOMPARE(launcher.getEdition(), QStringLiteral("release"));
        QCOMPARE(launcher.getVersionNumbers(), (QList<quint32>{0, 3, 4, 0}));
        QCOMPARE(launcher.toJson().keys(), (QStringList{"applname", "path", "uninstaller_path", "version"}));

        const LauncherInfo empty{QJsonObject(), &error};
        QVERIFY(!error);
        QVERIFY(!empty.isEmpty()); // type and edition are fixed
        QCOMPARE(empty.toJson().value(QStringLiteral("version")).toString(), QString());
    }

    void historyJson_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("error");
        const QByteArray complete = R"({"serial_no": 4, "appl_type": "editor", "applname": "N", "edition": "release",
                                       "timestamp": "2026/11/21 10:00:00", "openfilepath": "/p/a.zmr", "version": "2.1.0.5"})";
        QTest::newRow("complete") << complete << false;
        QTest::newRow("no applname is fine") << QByteArray(complete).replace("\"applname\": \"N\",", "") << false;
        QTest::newRow("no timestamp") << QByteArray(complete).replace("\"timestamp\": \"2026/11/21 10:00:00\",", "") << true;
        QTest::newRow("empty path") << QByteArray(complete).replace("/p/a.zmr", "") << true;
        QTest::newRow("no edition") << QByteArray(complete).replace("\"edition\": \"release\",", "") << true;
        QTest::newRow("empty object") << QByteArray("{}") << true;
    }

    void historyJson()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, error);
        bool reported = !error;
        const HistoryInfo history(QJsonDocument::fromJson(text).object(), &reported);
        QCOMPARE(reported, error);
        if (text.contains("serial_no"))
            QCOMPARE(history.getSerialNo(), 4);
        if (text.contains("/p/a.zmr"))
            QCOMPARE(history.getOpenFilePath(), QStringLiteral("/p/a.zmr"));
    }

    void historyRoundTrip()
    {
        HistoryInfo history(QStringLiteral("editor"), QStringLiteral("release"), QStringLiteral("2.1.0.5"),
                            QStringLiteral("C:/projects/a.zmr"));
        QCOMPARE(history.getSerialNo(), 0);
        history.setSerialNo(7);
        history.setTimestamp(currentTimestamp());
        const QJsonObject out = history.toJson();
        QCOMPARE(out.keys(), (QStringList{"appl_type", "applname", "edition", "openfilepath", "serial_no", "timestamp", "version"}));
        QVERIFY(out.value(QStringLiteral("serial_no")).isDouble());

        bool error = true;
        const HistoryInfo back(out, &error);
        QVERIFY(!error);
        QCOMPARE(back.toJson(), out);
        QVERIFY(QDateTime::fromString(back.getTimestamp(), QStringLiteral("yyyy/MM/dd hh:mm:ss")).isValid());

        HistoryInfo copy(back);
        QCOMPARE(copy.getSerialNo(), 7);
        QCOMPARE(copy.getOpenFilePath(), QStringLiteral("C:/projects/a.zmr"));
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
