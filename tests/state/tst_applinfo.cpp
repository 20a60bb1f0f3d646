#include "applinfo.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <QtTest>

namespace {

const char kServerBase[] = "http://127.0.0.1:8765/base";
const char kStoreUrl[] = "http://127.0.0.1:8766/store";

// A complete manager file with something in every section, plus keys that
// this program does not know.
const char kGoodFile[] = R"({
  "1.0.0": {
    "editor": {"appl_type": "editor", "applname": "Vorlix Zanmir Editor", "edition": "release",
               "path": "/opt/z/2.1.0.5/editor", "uninstaller_path": "/opt/z/2.1.0.5/uninstall", "version": "2.1.0.5"},
    "histories": [
      {"appl_type": "editor", "applname": "", "edition": "release", "openfilepath": "/home/u/a.zmr",
       "serial_no": 3, "timestamp": "2024/01/02 03:04:05", "version": "2.1.0.5"},
      {"appl_type": "editor", "applname": "", "edition": "release", "openfilepath": "/home/u/b.xml",
       "serial_no": 7, "timestamp": "2024/01/03 03:04:05", "version": "2.1.0.5"},
      {"appl_type": "editor", "edition": "beta", "openfilepath": "/home/u/unsaved.zmr",
       "serial_no": 0, "timestamp": "2024/01/04 03:04:05", "version": "3.0.0.0"},
      {"appl_type": "launcher", "applname": "", "edition": "release", "openfilepath": "/home/u/other.zmr",
       "serial_no": 9, "timestamp": "2024/01/05 03:04:05", "version": "1.0.0.0"}
    ],
    "launcher": {"applname": "Vorlix Zanmir Launcher", "path": "/opt/z/launcher",
                 "uninstaller_path": "/opt/z/launcher-uninstall", "version": "1.2.0.0"},
    "locale": "ja_JP",
    "pinned_version": {"editor": [{"appl_type": "editor", "edition": "release", "version": "2.0.0.0"}]},
    "proxy_info": {"proxy_ip": "10.0.0.1", "proxy_port": "8080", "proxy_sw": false},
    "selected_appl_type": "editor",
    "selected_version": {"editor": {"appl_type": "editor", "edition": "release", "version": "2.1.0.5"}},
    "web_versions": {"howtoweb": {"type": "howtoweb", "url": "/help/v3.htm", "version": "3.0.0.0"},
                     "newsweb": {"type": "newsweb", "url": "/news/v5.htm", "version": "5.0.0.0"}},
    "x_unknown": {"kept": true}
  },
  "x_root": "kept"
})";

QJsonObject parseObject(const QByteArray &text)
{
    return QJsonDocument::fromJson(text).object();
}

QJsonValue parseValue(const QByteArray &text)
{
    return QJsonDocument::fromJson("[" + text + "]").array().at(0);
}

// The good file with one value inside "1.0.0" replaced; "histories/0" or
// "proxy_info/proxy_sw" reach one level further down.
QByteArray goodFileWith(const QString &path, const QJsonValue &value)
{
    QJsonObject root = parseObject(kGoodFile);
    QJsonObject section = root.value(QString("1.0.0")).toObject();
    const QStringList keys = path.split(QLatin1Char('/'));
    QJsonValue replaced = value;
    if (keys.size() == 2) {
        const QJsonValue outer = section.value(keys.at(0));
        if (outer.isArray()) {
            QJsonArray array = outer.toArray();
            array.replace(keys.at(1).toInt(), value);
            replaced = array;
        } else {
            QJsonObject object = outer.toObject();
            object.insert(keys.at(1), value);
            replaced = object;
        }
    }
    section.insert(keys.at(0), replaced);
    root.insert(QString("1.0.0"), section);
    return QJsonDocument(root).toJson();
}

// Walks "a/b/0/c" through objects and arrays.
QJsonValue valueAt(const QJsonObject &root, const QString &path)
{
    QJsonValue value = root;
    const QStringList keys = path.split(QLatin1Char('/'));
    for (const QString &key : keys) {
        if (value.isArray())
            value = value.toArray().at(key.toInt());
        else
            value = value.toObject().value(key);
    }
    return value;
}

QString show(const QJsonValue &value)
{
    return QString::fromUtf8(QJsonDocument(QJsonArray { value }).toJson(QJsonDocument::Compact));
}

QStringList serialsAndPaths(const QList<HistoryInfo> &histories)
{
    QStringList result;
    for (const HistoryInfo &history : histories)
        result.append(QString("%1 %2").arg(history.getSerialNo()).arg(history.getOpenFilePath()));
    return result;
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

    void newFileHoldsTheDefaults()
    {
        TestProfile profile;
        const QString path = profile.managerFile();
        ApplInfo info(path, false, nullptr);

        QVERIFY(!info.loadFile());
        QCOMPARE(info.getErrorText(), QString("Failed to load ApplInfo file: "));
        QVERIFY(info.createFile());
        QCOMPARE(info.getInfoText(), QString("ApplInfo file created: %1").arg(path));

        const QJsonObject expected = parseObject(QByteArray(R"({
            "editor": {"appl_type": "", "applname": "", "edition": "", "path": "", "uninstaller_path": "", "version": ""},
            "histories": [],
            "launcher": {"applname": "", "path": "", "uninstaller_path": "", "version": ""},
            "locale": "@LOCALE@",
            "pinned_version": {"editor": []},
            "proxy_info": {"proxy_ip": "192.168.1.1", "proxy_port": "80", "proxy_sw": false},
            "selected_appl_type": "editor",
            "selected_version": {"editor": {"appl_type": "", "edition": "", "version": ""}},
            "web_versions": {"howtoweb": {"type": "howtoweb", "url": "", "version": "0.0.0.0"},
                             "newsweb": {"type": "newsweb", "url": "", "version": "0.0.0.0"}}
        })")
                                                     .replace("@LOCALE@", QLocale::system().name().toUtf8()));
        const QJsonObject root = TestFiles::readObject(path);
        QCOMPARE(root.keys(), QStringList { QString("1.0.0") });
        QCOMPARE(root.value(QString("1.0.0")).toObject(), expected);

        // Empty records and empty page addresses are no error once written.
        ApplInfo again(path, false, nullptr);
        QVERIFY(again.loadFile());
        QCOMPARE(again.getInfoText(), QString("ApplInfo file loaded: %1").arg(path));
        QVERIFY(!again.hasSelectedVersion());
        QVERIFY(again.getHistories().isEmpty());
        QCOMPARE(again.getLockFilePath(), profile.launcherFolder() + QString("/ZanmirManager.lock"));
    }

    void goodFileIsReadIntoTheMembers()
    {
        TestProfile profile;
        const QString path = profile.managerFile();
        QVERIFY(TestFiles::write(path, kGoodFile));
        ApplInfo info(path, false, nullptr);
        QVERIFY(info.loadFile());

        // Only stored entries of the selected type, most recent first.
        QCOMPARE(serialsAndPaths(info.getHistories()),
            (QStringList { QString("7 /home/u/b.xml"), QString("3 /home/u/a.zmr") }));
        QVERIFY(info.hasSelectedVersion());
        QCOMPARE(info.getSelectedVersion().getVersion(), QString("2.1.0.5"));
        QVERIFY(info.isSelectedVersion(EditorInfo(QString("editor"), QString("release"), QString("2.1.0.5"))));
        QVERIFY(!info.isSelectedVersion(EditorInfo(QString("editor"), QString("beta"), QString("2.1.0.5"))));
        QVERIFY(info.isPinnedVersion(EditorInfo(QString("editor"), QString("release"), QString("2.0.0.0"))));
        QCOMPARE(info.getCurrentEditorInfo().getPath(), QString("/opt/z/2.1.0.5/editor"));
        QCOMPARE(info.getLauncherInfo().getVersion(), QString("1.2.0.0"));
        QString locale;
        QVERIFY(info.getLocale(locale));
        QCOMPARE(locale, QString("ja_JP"));
        QCOMPARE(info.getWebUrl(QString("newsweb"), QString()),
            QString("%1/news/v5.htm?t=pe1").arg(QLatin1String(kServerBase)));
    }

    void recovery_data()
    {
        QTest::addColumn<QByteArray>("contents");
        QTest::addColumn<bool>("loads");
        QTest::addColumn<QString>("errorText");
        QTest::addColumn<QString>("infoText");
        QTest::addColumn<int>("historyCount");
        // Slash paths into the file after recovery, with the value expected there.
        QTest::addColumn<QJsonObject>("expected");

        const QString loaded = QString("ApplInfo file loaded: %1");
        const QString edited = QString("Registory file is edit.");
        const QJsonValue systemLocale = QLocale::system().name();
        // What survives a bad section elsewhere: the good sections and unknown keys.
        const QJsonObject survivors = parseObject(R"({
            "1.0.0/editor/path": "/opt/z/2.1.0.5/editor",
            "1.0.0/launcher/version": "1.2.0.0",
            "1.0.0/locale": "ja_JP",
            "1.0.0/selected_version/editor/version": "2.1.0.5",
            "1.0.0/pinned_version/editor/0/version": "2.0.0.0",
            "1.0.0/web_versions/newsweb/url": "/news/v5.htm",
            "1.0.0/proxy_info/proxy_port": "8080",
            "1.0.0/x_unknown/kept": true,
            "x_root": "kept"
        })");
        const auto with = [&survivors](const QJsonObject &changes) {
            // A changed section replaces whatever was expected inside it.
            QJsonObject result = survivors;
            for (auto it = changes.begin(); it != changes.end(); ++it) {
                const QStringList inside = result.keys().filter(
                    QRegularExpression(QString("^%1/").arg(QRegularExpression::escape(it.key()))));
                for (const QString &key : inside)
                    result.remove(key);
                result.insert(it.key(), it.value());
            }
            return result;
        };

        QTest::newRow("not JSON") << QByteArray("{ \"1.0.0\": ") << false << QString("Failed to load ApplInfo file: ")
                                  << QString() << 0
                                  << QJsonObject { { "1.0.0/locale", systemLocale }, { "1.0.0/editor/version", "" },
                                         { "1.0.0/selected_appl_type", "editor" },
                                         { "1.0.0/web_versions/newsweb/version", "0.0.0.0" },
                                         { "1.0.0/proxy_info/proxy_ip", "192.168.1.1" } };
        QTest::newRow("format version missing")
            << QByteArray(R"({"x_root": "kept", "2.0.0": {"locale": "de_DE"}})") << false << QString() << loaded << 0
            << QJsonObject { { "x_root", "kept" }, { "2.0.0/locale", "de_DE" }, { "1.0.0/locale", systemLocale },
                   { "1.0.0/histories", QJsonArray() } };
        QTest::newRow("launcher of the wrong type")
            << goodFileWith(QString("launcher"), QString("1.2.0.0")) << false << QString() << loaded << 2
            << with({ { "1.0.0/launcher",
                          parseValue(R"({"applname": "", "path": "", "uninstaller_path": "", "version": ""})") },
                   { "1.0.0/histories/1/serial_no", 7 } });
        QTest::newRow("editor empty") << goodFileWith(QString("editor"), QJsonObject()) << false << QString() << loaded
                                      << 2
                                      << with({ { "1.0.0/editor",
                                             parseValue(R"({"appl_type": "", "applname": "", "edition": "", "path": "",
                                                     "uninstaller_path": "", "version": ""})") } });
        QTest::newRow("history without timestamp")
            << goodFileWith(QString("histories/0"),
                   parseValue(R"({"appl_type": "editor", "edition": "release", "openfilepath": "/home/u/a.zmr",
                                          "serial_no": 3, "version": "2.1.0.5"})"))
            << false << QString() << edited << 1
            << with({ { "1.0.0/histories/0/serial_no", 7 }, { "1.0.0/histories/0/openfilepath", "/home/u/b.xml" },
                   { "1.0.0/histories/1/serial_no", 0 } });
        QTest::newRow("history element empty")
            << goodFileWith(QString("histories/1"), QJsonObject()) << false << QString() << edited << 1
            << with({ { "1.0.0/histories/0/openfilepath", "/home/u/a.zmr" } });
        QTest::newRow("selected type empty")
            << goodFileWith(QString("selected_appl_type"), QString()) << false << QString() << loaded << 2
            << with({ { "1.0.0/selected_appl_type", "editor" } });
        QTest::newRow("web element without type")
            << goodFileWith(QString("web_versions/newsweb"), parseValue(R"({"url": "/n.htm", "version": "9"})"))
            << false << QString() << loaded << 2
            << with({ { "1.0.0/web_versions/newsweb",
                          parseValue(R"({"type": "newsweb", "url": "", "version": "0.0.0.0"})") },
                   { "1.0.0/web_versions/howtoweb/url", "/help/v3.htm" } });
        QTest::newRow("web element without version is fine")
            << goodFileWith(QString("web_versions/newsweb"), parseValue(R"({"type": "newsweb", "url": "/n.htm"})"))
            << true << QString() << loaded << 2 << QJsonObject();
        QTest::newRow("proxy switch as a string")
            << goodFileWith(QString("proxy_info/proxy_sw"), QString("true")) << false << QString() << loaded << 2
            << with({ { "1.0.0/proxy_info",
                   parseValue(R"({"proxy_ip": "10.0.0.1", "proxy_port": "8080", "proxy_sw": false})") } });
        QTest::newRow("locale empty") << goodFileWith(QString("locale"), QString()) << false << QString() << loaded << 2
                                      << with({ { "1.0.0/locale", systemLocale } });
        QTest::newRow("several bad sections at once")
            << goodFileWith(QString("editor"), QJsonObject())
                   .replace("\"ja_JP\"", "\"\"")
                   .replace("\"proxy_sw\": false", "\"proxy_sw\": 1")
            << false << QString() << loaded << 2
            << QJsonObject { { "1.0.0/locale", systemLocale }, { "1.0.0/editor/path", "" },
                   { "1.0.0/proxy_info/proxy_sw", false }, { "1.0.0/launcher/version", "1.2.0.0" },
                   { "1.0.0/histories/1/serial_no", 7 } };
    }

    void recovery()
    {
        QFETCH(QByteArray, contents);
        QFETCH(bool, loads);
        QFETCH(QString, errorText);
        QFETCH(QString, infoText);
        QFETCH(int, historyCount);
        QFETCH(QJsonObject, expected);

        TestProfile profile;
        const QString path = profile.managerFile();
        QVERIFY(TestFiles::write(path, contents));

        // The start-up sequence: load, and on failure create and load again.
        ApplInfo info(path, false, nullptr);
        QCOMPARE(info.loadFile(), loads);
        QCOMPARE(info.getErrorText(), errorText);
        QCOMPARE(info.getInfoText(), infoText.contains(QLatin1String("%1")) ? infoText.arg(path) : infoText);
        if (loads) {
            QCOMPARE(TestFiles::read(path), contents);
        } else {
            QVERIFY(info.createFile());
            QVERIFY(info.loadFile());
        }
        QCOMPARE(info.getHistories().size(), historyCount);

        const QJsonObject written = TestFiles::readObject(path);
        QVERIFY(!written.isEmpty());
        for (auto it = expected.begin(); it != expected.end(); ++it) {
            const QJsonValue actual = valueAt(written, it.key());
            QVERIFY2(actual == it.value(),
                qPrintable(QString("%1: %2 instead of %3").arg(it.key(), show(actual), show(it.value()))));
        }
    }

    void secondLoadFailureWrapsTheFirst()
    {
        TestProfile profile;
        QVERIFY(TestFiles::write(profile.managerFile(), "not json"));
        ApplInfo info(profile.managerFile(), false, nullptr);
        QVERIFY(!info.loadFile());
        QVERIFY(!info.loadFile());
        QCOMPARE(info.getErrorText(), QString("Failed to load ApplInfo file: Failed to load ApplInfo file: "));
    }

    void writeFailuresLeaveTheirWordsInTheInfoText()
    {
        TestProfile profile;
        const QString nowhere = profile.root() + QString("/missing-folder/ZanmirManager.json");
        ApplInfo lost(nowhere, false, nullptr);
        QVERIFY(!lost.createFile());
        QCOMPARE(
            lost.getInfoText(), QString("Failed to create ApplInfo file: Failed to open new file: %1").arg(nowhere));
        QVERIFY(lost.getErrorText().isEmpty());

        // A folder where the file should be cannot be removed for the rewrite.
        const QString blocked = profile.managerFile();
        QVERIFY(QDir().mkpath(blocked));
        ApplInfo info(blocked, false, nullptr);
        QVERIFY(!info.updateFile());
        QCOMPARE(info.getInfoText(), QString("Failed to update ApplInfo file: "));
        QVERIFY(info.getErrorText().isEmpty());
    }

    void unknownKeysSurviveUpdates()
    {
        TestProfile profile;
        const QString path = profile.managerFile();
        QVERIFY(TestFiles::write(path, kGoodFile));
        ApplInfo info(path, false, nullptr);
        QVERIFY(info.loadFile());
        QVERIFY(info.setLocale(QString("de_DE")));
        QVERIFY(info.setShowAllVersions(true));
        QVERIFY(info.updateFile());
        QCOMPARE(info.getInfoText(), QString("ApplInfo file updated: %1").arg(path));

        // Only the locale changed; the show-all flag never reaches the file.
        QJsonObject expected = parseObject(kGoodFile);
        QJsonObject section = expected.value(QString("1.0.0")).toObject();
        section.insert(QString("locale"), QString("de_DE"));
        expected.insert(QString("1.0.0"), section);
        QCOMPARE(TestFiles::readObject(path), expected);

        ApplInfo again(path, false, nullptr);
        QVERIFY(again.loadFile());
        bool showAll = true;
        QVERIFY(again.getShowAllVersions(showAll));
        QVERIFY(!showAll);
    }

    void webUrl_data()
    {
        QTest::addColumn<QString>("webType");
        QTest::addColumn<QString>("defaultText");
        QTest::addColumn<QString>("newsUrl"); // stored stamp, none when empty
        QTest::addColumn<QString>("howtoUrl");
        QTest::addColumn<QString>("locale");
        QTest::addColumn<bool>("testMode");
        QTest::addColumn<QString>("expected"); // "@" stands for the server base without "/Test"

        const QString none;
        QTest::newRow("catalogue") << "launcher_info_web" << none << none << none << "en_US" << false
                                   << "@/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        QTest::newRow("catalogue in test mode") << "launcher_info_web" << none << none << none << "en_US" << true
                                                << "@/Test/Zanmir/Launcher/UpdateInfo/updateinfo.json?t=pe1";
        QTest::newRow("news without stamp") << "newsweb" << none << none << none << "ja_JP" << false
                                            << "@/Zanmir/Launcher/ja_JP/NewsWeb/news.htm?t=pe1";
        QTest::newRow("news stamp, server path") << "newsweb" << none << "/Zanmir/News/v5/news.htm" << none << "en_US"
                                                 << false << "@/Zanmir/News/v5/news.htm?t=pe1";
        QTest::newRow("news stamp, full address with a query")
            << "newsweb" << none << "http://127.0.0.1:9/news.htm?v=5" << none << "en_US" << true
            << "http://127.0.0.1:9/news.htm?v=5?t=pe1";
        QTest::newRow("news stamp, file address")
            << "newsweb" << none << "file:///srv/news.htm" << none << "en_US" << false << "file:///srv/news.htm?t=pe1";
        QTest::newRow("news stamp, https is not recognised")
            << "newsweb" << none << "https://127.0.0.1/news.htm" << none << "en_US" << false
            << "@https://127.0.0.1/news.htm?t=pe1";
        QTest::newRow("help without stamps") << "howtoweb" << none << none << none << "ja_JP" << false
                                             << "@/Zanmir/Launcher/ja_JP/HowtoWeb/support.htm?t=pe1";
        QTest::newRow("help stamp alone is not used")
            << "howtoweb" << none << none << "/help/v3.htm"
            << "en_US" << false << "@/Zanmir/Launcher/en_US/HowtoWeb/support.htm?t=pe1";
        QTest::newRow("help after a news stamp, no help stamp")
            << "howtoweb" << none << "/news/v5.htm" << none << "en_US" << false << "@?t=pe1";
        QTest::newRow("help with both stamps") << "howtoweb" << none << "/news/v5.htm"
                                               << "http://127.0.0.1/help.htm"
                                               << "en_US" << false << "http://127.0.0.1/help.htm?t=pe1";
        QTest::newRow("launcher history") << "launcher_history_web" << none << "/news/v5.htm" << none << "ja_JP"
                                          << false << "@/Zanmir/Launcher/ja_JP/History/Launcher.htm?t=pe1";
        QTest::newRow("editor history") << "editor_history_web" << none << none << none << "en_US" << true
                                        << "@/Test/Zanmir/Launcher/en_US/History/Editor.htm?t=pe1";
        QTest::newRow("footprint") << "footprintweb" << none << none << none << "ja_JP" << false
                                   << "@/Zanmir/Launcher/ja_JP/History/index.html?t=pe1";
        QTest::newRow("launcher installer, full address")
            << "launcher_installer_web"
            << "http://127.0.0.1/setup.exe" << none << none << "en_US" << false << "http://127.0.0.1/setup.exe?t=pe1";
        QTest::newRow("editor installer, server path")
            << "editor_installer_web"
            << "/Zanmir/Editor/setup.exe" << none << none << "en_US" << true << "@/Test/Zanmir/Editor/setup.exe?t=pe1";
        QTest::newRow("store in English") << "onlinestrore" << none << none << none << "en_US" << true
                                          << QString("%1/en/?t=pe1").arg(QLatin1String(kStoreUrl));
        QTest::newRow("store in any other language") << "onlinestrore" << none << none << none << "de_DE" << false
                                                     << QString("%1/jp/?t=pe1").arg(QLatin1String(kStoreUrl));
        QTest::newRow("unknown page") << "onlinestore"
                                      << "http://127.0.0.1/x" << none << none << "en_US" << false << "@?t=pe1";
    }

    void webUrl()
    {
        QFETCH(QString, webType);
        QFETCH(QString, defaultText);
        QFETCH(QString, newsUrl);
        QFETCH(QString, howtoUrl);
        QFETCH(QString, locale);
        QFETCH(bool, testMode);
        QFETCH(QString, expected);

        // The stamps and the locale go through the file, as between two runs.
        TestProfile profile;
        const QString path = profile.managerFile();
        {
            ApplInfo writer(path, false, nullptr);
            QVERIFY(writer.createFile());
            if (!newsUrl.isEmpty())
                QVERIFY(writer.saveWebVersion(
                    QString("newsweb"), WebUpdateInfo(QString("newsweb"), QString("5.0.0.0"), newsUrl)));
            if (!howtoUrl.isEmpty())
                QVERIFY(writer.saveWebVersion(
                    QString("howtoweb"), WebUpdateInfo(QString("howtoweb"), QString("3.0.0.0"), howtoUrl)));
            QVERIFY(writer.setLocale(locale));
            QVERIFY(writer.updateFile());
        }
        ApplInfo info(path, testMode, nullptr);
        QVERIFY(info.loadFile());
        const QString base = QLatin1String(kServerBase);
        QCOMPARE(info.getWebUrl(webType, defaultText), QString(expected).replace(QLatin1Char('@'), base));
    }

    void webVersionUpToDate_data()
    {
        QTest::addColumn<QString>("webType");
        QTest::addColumn<QString>("stored"); // saved stamp, none when empty
        QTest::addColumn<QString>("remote");
        QTest::addColumn<bool>("upToDate");

        QTest::newRow("fresh install, news on offer") << "newsweb"
                                                      << ""
                                                      << "1.0.0.0" << false;
        QTest::newRow("same stamp") << "newsweb"
                                    << "1.0.0.0"
                                    << "1.0.0.0" << true;
        QTest::newRow("shorter stored stamp is older") << "newsweb"
                                                       << "1.0.0"
                                                       << "1.0.0.0" << false;
        QTest::newRow("longer stored stamp is newer") << "newsweb"
                                                      << "1.0.0.0"
                                                      << "1.0.0" << true;
        QTest::newRow("catalogue without stamp") << "howtoweb"
                                                 << ""
                                                 << "" << true;
        QTest::newRow("other page types never are") << "launcher_info_web"
                                                    << ""
                                                    << "0" << false;
    }

    void webVersionUpToDate()
    {
        QFETCH(QString, webType);
        QFETCH(QString, stored);
        QFETCH(QString, remote);
        QFETCH(bool, upToDate);

        TestProfile profile;
        ApplInfo info(profile.managerFile(), false, nullptr);
        QVERIFY(info.createFile());
        if (!stored.isEmpty())
            QVERIFY(info.saveWebVersion(webType, WebUpdateInfo(webType, stored, QString("/page.htm"))));
        QCOMPARE(info.isWebVersionUpToDate(webType, WebUpdateInfo(webType, remote, QString("/page.htm"))), upToDate);
    }

    void saveWebVersionWritesOnlyKnownPages()
    {
        TestProfile profile;
        const QString path = profile.managerFile();
        QVERIFY(TestFiles::write(path, kGoodFile));
        ApplInfo info(path, false, nullptr);
        QVERIFY(info.loadFile());

        const QByteArray before = TestFiles::read(path);
        QVERIFY(!info.saveWebVersion(
            QString("launcher_info_web"), WebUpdateInfo(QString("newsweb"), QString("9.0.0.0"), QString("/x"))));
        QCOMPARE(TestFiles::read(path), before);

        QVERIFY(info.saveWebVersion(
            QString("howtoweb"), WebUpdateInfo(QString("howtoweb"), QString("4.0.0.0"), QString("/help/v4.htm"))));
        const QJsonObject written = TestFiles::readObject(path);
        QCOMPARE(valueAt(written, QString("1.0.0/web_versions/howtoweb")),
            parseValue(R"({"type": "howtoweb", "url": "/help/v4.htm", "version": "4.0.0.0"})"));
        QCOMPARE(valueAt(written, QString("1.0.0/web_versions/newsweb")),
            parseValue(R"({"type": "newsweb", "url": "/news/v5.htm", "version": "5.0.0.0"})"));
        QCOMPARE(info.getWebUrl(QString("howtoweb"), QString()),
            QString("%1/help/v4.htm?t=pe1").arg(QLatin1String(kServerBase)));
        QVERIFY(info.isWebVersionUpToDate(
            QString("howtoweb"), WebUpdateInfo(QString("howtoweb"), QString("4.0.0.0"), QString())));
    }
};

QTEST_GUILESS_MAIN(TestApplInfo)
#include "tst_applinfo.moc"
