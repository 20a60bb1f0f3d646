#include "editorinfo.h"
#include "historyinfo.h"
#include "launcherinfo.h"
#include "proxyserverinfo.h"

#include <QJsonDocument>
#include <QtTest>

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
        // clang-format off
        QTest::newRow("trailing zero counts") << "editor" << "2.1" << "2.1.0" << -1;
        QTest::newRow("four parts above three") << "editor" << "2.1.0.0" << "2.1.0" << 1;
        QTest::newRow("numeric, not text") << "editor" << "2.10.0" << "2.9.0" << 1;
        QTest::newRow("editor 0.5.12 is 0.5.1.2") << "editor" << "0.5.12" << "0.5.1.2" << 0;
        QTest::newRow("editor 0.3.4 is 0.3.0.4") << "editor" << "0.3.4" << "0.3.0.4" << 0;
        QTest::newRow("launcher 0.3.4 is 0.3.4.0") << "launcher" << "0.3.4" << "0.3.4.0" << 0;
        QTest::newRow("editor 1.5.12 stays") << "editor" << "1.5.12" << "1.5.1.2" << 1;
        QTest::newRow("no type, 0.5.12 stays") << "" << "0.5.12" << "0.5.1.2" << 1;
        // clang-format on
    }

    void compareVersion()
    {
        QFETCH(QString, type);
        QFETCH(QString, left);
        QFETCH(QString, right);
        QFETCH(int, expected);
        const EditorInfo a(type, "release", left);
        QCOMPARE(a.compareVersion(EditorInfo(type, "release", right)), expected);
        QCOMPARE(a.getVersion(), left); // the text is never normalised
    }

    void identityRules()
    {
        const EditorInfo release("editor", "release", "2.1.0.0");
        const EditorInfo beta("editor", "beta", "2.1.0.0");
        QVERIFY(!EditorInfo("editor", "release", "0.5.12").isSameVersion(EditorInfo("editor", "release", "0.5.1.2")));
        QVERIFY(!release.isSameVersion(beta) && release.isSameVersionOtherEdition(beta));
        QVERIFY(EditorInfo().isNewerThan(EditorInfo()));
        QVERIFY(!EditorInfo("editor", "inhouse", "1.0").isPublicVersion());
        QVERIFY(EditorInfo("launcher", "inhouse", "1.0").isPublicVersion());
    }

    // The full forms written back whole are checked by the state file's round trip.
    void jsonForms()
    {
        // The short form reads only the identity.
        const QJsonObject full = json(R"({"appl_type": "editor", "applname": "N", "edition": "release",
                                          "path": "/e", "uninstaller_path": "/u", "version": "2.1.0.5"})");
        QCOMPARE(EditorInfo(true, full, nullptr).toJson(false),
            json(R"({"appl_type": "editor", "applname": "", "edition": "release", "path": "",
                     "uninstaller_path": "", "version": "2.1.0.5"})"));
        // A launcher's type and edition are fixed, whatever the file says.
        const LauncherInfo launcher(
            json(R"({"appl_type": "editor", "edition": "inhouse", "version": "0.3.4"})"), nullptr);
        QVERIFY(launcher.isSameVersion(EditorInfo("launcher", "release", "0.3.4")));
        // Of a history entry, the application name may be missing.
        bool error = true;
        HistoryInfo(json(R"({"serial_no": 4, "appl_type": "editor", "edition": "beta",
                             "timestamp": "2026/11/21 10:00:00", "openfilepath": "/a.zmr", "version": "2.1"})"),
            &error);
        QVERIFY(!error);
    }

    void storedRecordReadsBackSwitchedOff()
    {
        bool incomplete = true, enabled = true;
        QString ip, port;
        ProxyServerInfo(ProxyServerInfo(true, "10.1.1.1", "3128").toJson(), &incomplete).getInfo(enabled, ip, port);
        QVERIFY(!enabled && !incomplete);
        QCOMPARE(ip + QLatin1Char(':') + port, QStringLiteral("10.1.1.1:3128"));
    }
};

QTEST_GUILESS_MAIN(TestRecords)
#include "tst_records.moc"
