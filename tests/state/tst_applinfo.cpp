#include "applinfo.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QJsonArray>
#include <QLocale>
#include <QtTest>

namespace {

const char kServerBase[] = "http://127.0.0.1:8765/base";
const char kStoreUrl[] = "http://127.0.0.1:8766/store";

// Something in every section, plus keys that this program does not know.
const char kGoodFile[] = R"({"x_root": "kept", "1.0.0": {
    "editor": {"appl_type": "editor", "applname": "Vorlix Zanmir Editor", "edition": "release",
               "path": "/opt/z/2.1.0.5/editor", "uninstaller_path": "/opt/z/2.1.0.5/uninstall", "version": "2.1.0.5"},
    "histories": [
      {"appl_type": "editor", "applname": "", "edition": "release", "openfilepath": "/home/u/a.zmr",
       "serial_no": 3, "timestamp": "2024/01/02 03:04:05", "version": "2.1.0.5"},
      {"appl_type": "editor", "applname": "", "edition": "release", "openfilepath": "/home/u/b.xml",
       "serial_no": 7, "timestamp": "2024/01/03 03:04:05", "version": "2.1.0.5"},
      {"appl_type": "editor", "applname": "", "edition": "beta", "openfilepath": "/home/u/unsaved.zmr",
       "serial_no": 0, "timestamp": "2024/01/04 03:04:05", "version": "3.0.0.0"},
      {"appl_type": "launcher", "applname": "", "edition": "release", "openfilepath": "/home/u/other.zmr",
       "serial_no": 9, "timestamp": "2024/01/05 03:04:05", "version": "1.0.0.0"}],
    "launcher": {"applname": "Vorlix Zanmir Launcher", "path": "/opt/z/launcher",
                 "uninstaller_path": "/opt/z/launcher-uninstall", "version": "1.2.0.0"},
    "locale": "ja_JP",
    "pinned_version": {"editor": [{"appl_type": "editor", "edition": "release", "version": "2.0.0.0"}]},
    "proxy_info": {"proxy_ip": "10.0.0.1", "proxy_port": "8080", "proxy_sw": false},
    "selected_appl_type": "editor",
    "selected_version": {"editor": {"appl_type": "editor", "edition": "release", "version": "2.1.0.5"}},
    "web_versions": {"howtoweb": {"type": "howtoweb", "url": "/help/v3.htm", "version": "3.0.0.0"},
                     "newsweb": {"type": "newsweb", "url": "/news/v5.htm", "version": "5.0.0.0"}},
    "x_unknown": {"kept": true}}})";

// Values of the good file, by their path inside "1.0.0", that a rewrite after
// a bad section elsewhere must keep.
const char kSurvivors[] = R"({"editor/path": "/opt/z/2.1.0.5/editor", "launcher/version": "1.2.0.0",
    "locale": "ja_JP", "histories/1/serial_no": 7, "pinned_version/editor/0/version": "2.0.0.0",
    "selected_version/editor/version": "2.1.0.5", "proxy_info/proxy_port": "8080",
    "web_versions/newsweb/url": "/news/v5.htm", "x_unknown/kept": true})";

const char kDefaults[] = R"({
    "editor": {"appl_type": "", "applname": "", "edition": "", "path": "", "uninstaller_path": "", "version": ""},
    "histories": [],
    "launcher": {"applname": "", "path": "", "uninstaller_path": "", "version": ""},
    "locale": "@locale",
    "pinned_version": {"editor": []},
    "proxy_info": {"proxy_ip": "192.168.1.1", "proxy_port": "80", "proxy_sw": false},
    "selected_appl_type": "editor",
    "selected_version": {"editor": {"appl_type": "", "edition": "", "version": ""}},
    "web_versions": {"howtoweb": {"type": "howtoweb", "url": "", "version": "0.0.0.0"},
                     "newsweb": {"type": "newsweb", "url": "", "version": "0.0.0.0"}}})";

// Undefined for an empty text.
QJsonValue parse(QByteArray text)
{
    text.replace("@locale", QLocale::system().name().toUtf8());
    return QJsonDocument::fromJson("[" + text + "]").array().at(0);
}

QJsonValue valueAt(QJsonValue node, const QString &path)
{
    for (const QString &key : path.split('/'))
        node = node.isArray() ? node.toArray().at(key.toInt()) : node.toObject().value(key);
    return node;
}

void recoveryRow(const char *name, const QByteArray &from, const QByteArray &to, bool loads, const QByteArray &changed,
    const QString &histories = "7 3", const QString &info = "ApplInfo file loaded: %1")
{
    QTest::newRow(name) << from << to << loads << parse(changed).toObject() << histories << info;
}

// "locale" or "locale test" for a run in test mode.
void urlRow(const char *name, const char *type, const char *run, const char *expected, const char *news = "",
    const char *howto = "", const char *defaultText = "")
{
    QTest::newRow(name) << QString(type) << QString(run) << QString(expected) << QString(news) << QString(howto)
                        << QString(defaultText);
}

} // namespace

class TestApplInfo : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase()
    {
        qputenv("ZANMIR_SERVER_BASE", kServerBase);
        qputenv("ZANMIR_STORE_URL", kStoreUrl);
    }

    void unusableFileGetsTheDefaults_data()
    {
        QTest::addColumn<QByteArray>("contents"); // no file when null
        QTest::addColumn<bool>("parses");
        QTest::newRow("missing") << QByteArray() << false;
        QTest::newRow("not JSON") << QByteArray("{ \"1.0.0\": ") << false;
        QTest::newRow("format version missing")
            << QByteArray(R"({"x_root": "kept", "2.0.0": {"locale": "de"}})") << true;
    }

    void unusableFileGetsTheDefaults()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, parses);
        TestProfile profile;
        const QString path = profile.managerFile();
        QVERIFY(contents.isNull() || TestFiles::write(path, contents));

        // The start-up sequence: load, and on failure create and load again.
        ApplInfo info(path, false, nullptr);
        QVERIFY(!info.loadFile());
        QCOMPARE(info.getErrorText(), parses ? QString() : QString("Failed to load ApplInfo file: "));
        QCOMPARE(info.getInfoText(), parses ? "ApplInfo file loaded: " + path : QString());
        QVERIFY(info.setShowAllVersions(true)); // in memory only
        QVERIFY(info.createFile());
        QCOMPARE(info.getInfoText(), "ApplInfo file created: " + path);
        QJsonObject root = TestFiles::readObject(path);
        QCOMPARE(root.take("1.0.0"), parse(kDefaults));
        QCOMPARE(root, parses ? QJsonDocument::fromJson(contents).object() : QJsonObject());
        QVERIFY(info.loadFile());
        QCOMPARE(info.getLockFilePath(), profile.launcherFolder() + "/ZanmirManager.lock");
    }

    void recovery_data()
    {
        // Each row changes the good file's text; renaming a key to "x_..." removes it.
        QTest::addColumn<QByteArray>("from");
        QTest::addColumn<QByteArray>("to");
        QTest::addColumn<bool>("loads");
        // Values by their path inside "1.0.0" after the rewrite; "@default" is a fresh file's value.
        QTest::addColumn<QJsonObject>("changed");
        QTest::addColumn<QString>("histories"); // serial numbers as listed
        QTest::addColumn<QString>("info");

        recoveryRow("good file", "", "", true, "{}");
        recoveryRow("launcher of the wrong type", "\"launcher\": {", "\"launcher\": 1, \"x_launcher\": {", false,
            R"({"launcher": "@default"})");
        recoveryRow("editor empty", "\"editor\": {\"appl_type\": \"editor\", \"applname\"",
            "\"editor\": {}, \"x_editor\": {\"applname\"", false, R"({"editor": "@default"})");
        recoveryRow("history without timestamp", "\"timestamp\": \"2024/01/02", "\"x_timestamp\": \"2024/01/02", false,
            R"({"histories/0/serial_no": 7, "histories/1/serial_no": 0, "histories/2/serial_no": 9})", "7",
            "Registory file is edit.");
        recoveryRow("selected type empty", "\"selected_appl_type\": \"editor\"", "\"selected_appl_type\": \"\"", false,
            R"({"selected_appl_type": "editor"})");
        recoveryRow("web element without type", "{\"type\": \"newsweb\"", "{\"x_type\": \"newsweb\"", false,
            R"({"web_versions/newsweb": "@default", "web_versions/howtoweb/url": "/help/v3.htm"})");
        recoveryRow("web element without version", "\"version\": \"5.0.0.0\"", "\"x_version\": \"5.0.0.0\"", true,
            R"({"web_versions/newsweb/version": "0.0.0.0", "web_versions/newsweb/url": "/news/v5.htm"})");
        recoveryRow("proxy switch as a string", "\"proxy_sw\": false", "\"proxy_sw\": \"true\"", false,
            R"({"proxy_info/proxy_sw": false, "proxy_info/proxy_ip": "10.0.0.1"})");
        recoveryRow("locale empty", "\"locale\": \"ja_JP\"", "\"locale\": \"\"", false, R"({"locale": "@locale"})");
    }

    void recovery()
    {
        QFETCH(QByteArray, from);
        QFETCH(QByteArray, to);
        QFETCH(bool, loads);
        QFETCH(QJsonObject, changed);
        QFETCH(QString, histories);
        QFETCH(QString, info);

        TestProfile profile;
        const QString path = profile.managerFile();
        const QByteArray contents = QByteArray(kGoodFile).replace(from, to);
        QVERIFY(from.isEmpty() || contents.contains(to));
        QVERIFY(TestFiles::write(path, contents));
        ApplInfo applInfo(path, false, nullptr);
        QCOMPARE(applInfo.loadFile(), loads);
        QCOMPARE(applInfo.getInfoText(), info.contains("%1") ? info.arg(path) : info);
        QVERIFY(applInfo.getErrorText().isEmpty());
        // Rewritten from what was read, as start-up does after a failed load.
        QVERIFY(applInfo.createFile());
        QVERIFY(applInfo.loadFile());
        QStringList listed; // only stored entries of the selected type, most recent first
        for (const HistoryInfo &history : applInfo.getHistories())
            listed.append(QString::number(history.getSerialNo()));
        QCOMPARE(listed.join(' '), histories);

        const QJsonObject written = TestFiles::readObject(path);
        QCOMPARE(written.value("x_root"), QJsonValue("kept"));
        QJsonObject expected = parse(kSurvivors).toObject();
        for (auto it = changed.begin(); it != changed.end(); ++it) {
            for (const QString &survivor : expected.keys()) {
                if (survivor.section('/', 0, 0) == it.key().section('/', 0, 0))
                    expected.remove(survivor);
            }
        }
        for (auto it = changed.begin(); it != changed.end(); ++it)
            expected.insert(it.key(), it.value() == "@default" ? valueAt(parse(kDefaults), it.key()) : it.value());
        for (auto it = expected.begin(); it != expected.end(); ++it)
            QVERIFY2(valueAt(written.value("1.0.0"), it.key()) == it.value(), qPrintable(it.key()));
    }

    void webUrl_data()
    {
        QTest::addColumn<QString>("webType");
        QTest::addColumn<QString>("run");
        QTest::addColumn<QString>("expected"); // "@" stands for the server base without "/Test"
        QTest::addColumn<QString>("newsUrl"); // stored stamps, none when empty
        QTest::addColumn<QString>("howtoUrl");
        QTest::addColumn<QString>("defaultText");

        urlRow("catalogue, test mode", "launcher_info_web", "en_US test",
            "@/Test/Zanmir/Launcher/UpdateInfo/updateinfo.json");
        urlRow("news without stamp", "newsweb", "ja_JP", "@/Zanmir/Launcher/ja_JP/NewsWeb/news.htm");
        urlRow("news stamp, server path", "newsweb", "en_US", "@/News/v5.htm", "/News/v5.htm");
        urlRow("news stamp with a query", "newsweb", "en_US test", "http://h:9/n.htm?v=5", "http://h:9/n.htm?v=5");
        urlRow("news stamp, file address", "newsweb", "en_US", "file:///srv/n.htm", "file:///srv/n.htm");
        urlRow("help without stamps", "howtoweb", "ja_JP", "@/Zanmir/Launcher/ja_JP/HowtoWeb/support.htm");
        urlRow("help stamp alone is not used", "howtoweb", "en_US", "@/Zanmir/Launcher/en_US/HowtoWeb/support.htm", "",
            "/help/v3.htm");
        urlRow("help after a news stamp alone", "howtoweb", "en_US", "@", "/news/v5.htm");
        urlRow("help with both stamps", "howtoweb", "en_US", "http://h/help.htm", "/news/v5.htm", "http://h/help.htm");
        urlRow("launcher history", "launcher_history_web", "ja_JP", "@/Zanmir/Launcher/ja_JP/History/Launcher.htm");
        urlRow("editor history", "editor_history_web", "en_US test", "@/Test/Zanmir/Launcher/en_US/History/Editor.htm");
        urlRow("footprint", "footprintweb", "ja_JP", "@/Zanmir/Launcher/ja_JP/History/index.html");
        urlRow("launcher installer", "launcher_installer_web", "en_US", "http://h/setup.exe", "", "",
            "http://h/setup.exe");
        urlRow(
            "editor installer", "editor_installer_web", "en_US test", "@/Test/Ed/setup.exe", "", "", "/Ed/setup.exe");
        urlRow("store in English", "onlinestrore", "en_US test", "http://127.0.0.1:8766/store/en/");
        urlRow("store in any other language", "onlinestrore", "de_DE", "http://127.0.0.1:8766/store/jp/");
        urlRow("unknown page", "onlinestore", "en_US", "@", "", "", "http://h/x");
    }

    void webUrl()
    {
        QFETCH(QString, webType);
        QFETCH(QString, run);
        QFETCH(QString, expected);
        QFETCH(QString, newsUrl);
        QFETCH(QString, howtoUrl);
        QFETCH(QString, defaultText);

        TestProfile profile;
        ApplInfo info(profile.managerFile(), run.endsWith(" test"), nullptr);
        QVERIFY(info.createFile());
        if (!newsUrl.isEmpty())
            QVERIFY(info.saveWebVersion("newsweb", WebUpdateInfo("newsweb", "5.0.0.0", newsUrl)));
        if (!howtoUrl.isEmpty())
            QVERIFY(info.saveWebVersion("howtoweb", WebUpdateInfo("howtoweb", "3.0.0.0", howtoUrl)));
        QVERIFY(info.setLocale(run.section(' ', 0, 0)));
        // Every address ends in the same suffix, even one with a query of its own.
        QCOMPARE(info.getWebUrl(webType, defaultText), expected.replace('@', kServerBase) + "?t=pe1");
    }

    void webVersions()
    {
        TestProfile profile;
        const QString path = profile.managerFile();
        ApplInfo info(path, false, nullptr);
        QVERIFY(info.createFile());
        const auto upToDate = [&info](const QString &type, const QString &remote) {
            return info.isWebVersionUpToDate(type, WebUpdateInfo(type, remote, "/p.htm"));
        };
        QVERIFY(!upToDate("newsweb", "1.0.0.0")); // a fresh file's stamps are older than any offer
        QVERIFY(info.setLocale("de_DE")); // written with the next change
        QVERIFY(info.saveWebVersion("newsweb", WebUpdateInfo("newsweb", "1.0.0", "/news/v1.htm")));
        QVERIFY(info.saveWebVersion("howtoweb", WebUpdateInfo("howtoweb", "1.0.0.0", "/help/v1.htm")));
        QVERIFY(!info.saveWebVersion("launcher_info_web", WebUpdateInfo("newsweb", "9.0.0.0", "/x")));
        QCOMPARE(valueAt(TestFiles::readObject(path), "1.0.0/web_versions"),
            parse(R"({"howtoweb": {"type": "howtoweb", "url": "/help/v1.htm", "version": "1.0.0.0"},
                      "newsweb": {"type": "newsweb", "url": "/news/v1.htm", "version": "1.0.0"}})"));
        QCOMPARE(valueAt(TestFiles::readObject(path), "1.0.0/locale"), QJsonValue("de_DE"));
        QVERIFY(!upToDate("newsweb", "1.0.0.0")); // a shorter stamp is older
        QVERIFY(upToDate("howtoweb", "1.0.0.0"));
        QVERIFY(upToDate("howtoweb", "1.0.0"));
        QVERIFY(!upToDate("launcher_info_web", "0"));
    }
};

QTEST_GUILESS_MAIN(TestApplInfo)
#include "tst_applinfo.moc"
