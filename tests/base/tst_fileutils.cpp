#include "binaryfilewriter.h"
#include "brokenfilemover.h"
#include "jsonfilereader.h"
#include "jsonrepair.h"
#include "leftoverfilesweeper.h"
#include "logwriter.h"
#include "testfiles.h"
#include "testprivileges.h"
#include "textfilereader.h"
#include "textfilewriter.h"

#include <QtTest>

class TestFileUtils : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString path(const QString &name) const { return m_dir.filePath(name); }

private slots:
    void initTestCase() { QVERIFY(TestPrivileges::dropFileOverride()); }

    void readerFailures()
    {
        // "a" is missing, "b" blank, "c" a folder, which exists but reads as no file; "d" has a trailing comma.
        QVERIFY(TestFiles::write(path("b"), {}) && QDir().mkpath(path("c")) && TestFiles::write(path("d"), "[1,]"));
        const QStringList all { "File does not exist: a", "Blank contents in file: b", "Failed to read from file: c" };
        for (const QString &text : all) {
            TextFileReader reader(path(text.section(": ", 1)));
            QVERIFY(!reader.read());
            QCOMPARE(reader.getErrorText().remove(m_dir.path() + '/'), text);
        }
        JsonFileReader json(path("d"));
        QVERIFY(!json.parse() && json.getDocument().isNull());
        QVERIFY(json.getErrorText().contains(
            QRegularExpression("^Failed to parse JSON document: code\\[[1-9]\\d*\\] message\\[.+\\]$")));
    }

    void textWriter()
    {
        TextFileWriter writer(path("none/x"));
        QVERIFY(!writer.writeNew("x"));
        writer.setFileName(path("state.json"));
        QVERIFY(writer.writeNew("a much longer first text\n") && writer.writeNew("short"));
        QVERIFY(TestFiles::read(path("state.json")) == "short");
        writer.setFileName(path("fresh.json"));
        QVERIFY(writer.replace("new") && TestFiles::read(path("fresh.json")) == "new");
        // A replace that cannot remove (a folder) fails and leaves the text of the last failure.
        writer.setFileName(m_dir.path());
        QVERIFY(!writer.replace("new"));
        QCOMPARE(writer.getErrorText(), "Failed to open new file: " + path("none/x"));
    }

    void logLinesAppendOnceFolderExists()
    {
        LogWriter log;
        log.setLogFile(path("logs"), "ZanmirLauncher");
        log.writeLine("lost");
        QVERIFY(QDir().mkpath(path("logs")));
        log.writeLine("first");
        const QString text = QString::fromUtf8(TestFiles::read(path("logs/ZanmirLauncher.log")));
        QCOMPARE(QString(text).replace(QRegularExpression("\\d"), "0"), QString("0000/00/00 00:00:00 first\n"));
    }

    // Writing bytes over an old file is the installer download's work.
    void binaryWriterNeedsAName()
    {
        BinaryFileWriter blank { QString() };
        QCOMPARE(blank.writeNew("x") ? QString() : blank.getErrorText(), QString("File name is blank."));
    }

    void jsonRepair_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QByteArray>("expected"); // compact; empty when nothing can be saved
        // clang-format off
        QTest::newRow("sound") << QByteArray(R"({"a": [1, {"b": null}]})") << QByteArray(R"({"a":[1,{"b":null}]})");
        QTest::newRow("trailing NULs and blanks") << QByteArray("{\"a\": 1}\n\0\0\0 \t\0", 15) << QByteArray(R"({"a":1})");
        QTest::newRow("cut in a string") << QByteArray("{\"a\": {\"b\": 1}, \"c\": [{\"d\": 1}, {\"e\": \"te") << QByteArray(R"({"a":{"b":1},"c":[{"d":1}]})");
        QTest::newRow("cut after a comma") << QByteArray(R"([{"x": 1}, )") << QByteArray(R"([{"x":1}])");
        QTest::newRow("cut after a scalar") << QByteArray(R"({"a": [{"x": 1}], "b": 2)") << QByteArray(R"({"a":[{"x":1}]})");
        QTest::newRow("garbage in the middle") << QByteArray(R"({"a": [{"x": 1}, #!, {"y": 2}], "b": [3]})") << QByteArray(R"({"a":[{"x":1}]})");
        QTest::newRow("garbage after the end") << QByteArray(R"({"a": [1]}}x)") << QByteArray(R"({"a":[1]})");
        QTest::newRow("wrong closing bracket") << QByteArray(R"({"a": [1, {"b": 2}}, "c": [3]})") << QByteArray(R"({"a":[1,{"b":2}]})");
        QTest::newRow("brackets and quotes in strings") << QByteArray("{\"a\": [\"}]\", {\"b\": \"q\\\"{[\"}], \"c\": {\"d") << QByteArray("{\"a\":[\"}]\",{\"b\":\"q\\\"{[\"}]}");
        QTest::newRow("nothing complete") << QByteArray(R"({"a": 1, "b")") << QByteArray();
        QTest::newRow("only NULs") << QByteArray(4, '\0') << QByteArray();
        // clang-format on
    }

    void jsonRepair()
    {
        QFETCH(QByteArray, text);
        QFETCH(QByteArray, expected);
        const QJsonDocument repaired = JsonRepair::repair(text);
        QCOMPARE(repaired.isNull() ? QByteArray() : repaired.toJson(QJsonDocument::Compact), expected);
    }

    // Whatever stands at the path moves under a dated name, and a second
    // move does not take the first one's place.
    void moveAside()
    {
        QVERIFY(QDir().mkpath(path("aside/catalogue.json/x")));
        QStringList moved;
        for (const QString name : { "catalogue.json", "index.json", "index.json" }) {
            QVERIFY(name.startsWith("catalogue") || TestFiles::write(path("aside/" + name), name.toUtf8() + '1'));
            BrokenFileMover mover(path("aside/" + name));
            QVERIFY(mover.moveAside());
            QCOMPARE(mover.getInfoText(), "Moved aside: " + path("aside/" + name) + " to " + mover.getMovedPath());
            moved.append(mover.getMovedPath().remove(path("aside/")));
        }
        QVERIFY(QDir(path("aside")).entryList(QDir::NoDotAndDotDot | QDir::AllEntries) == moved);
        QVERIFY(moved.join(' ').contains(QRegularExpression(
            "^catalogue.json.\\d{8}-\\d{6} index.json.\\d{8}-\\d{6} index.json.\\d{8}-\\d{6}(-2)?$")));
        QVERIFY(moved[1] != moved[2] && QDir(path("aside/" + moved[0] + "/x")).exists());

        // A folder where nothing may be renamed keeps the file, and the words say why.
        QVERIFY(TestFiles::write(path("aside/index.json"), "{"));
        QVERIFY(QFile::setPermissions(path("aside"), QFile::ReadOwner | QFile::ExeOwner));
        BrokenFileMover stuck(path("aside/index.json"));
        const bool movedStuck = stuck.moveAside();
        QVERIFY(QFile::setPermissions(path("aside"), QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        QVERIFY(!movedStuck && QFile::exists(path("aside/index.json")));
        QVERIFY2(stuck.getErrorText().startsWith("Failed to move aside: " + path("aside/index.json") + ": ")
                && stuck.getErrorText().endsWith("Permission denied"),
            qPrintable(stuck.getErrorText()));
    }

    void leftoverFiles_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<int>("ageMinutes");
        QTest::addColumn<bool>("removed");
        QTest::newRow("left by a write") << "ZanmirManager.json.AbCdEf" << 61 << true;
        QTest::newRow("left by a page write") << "00000012.html.qwErTy" << 600 << true;
        QTest::newRow("maybe still written") << "ZanmirManager.json.AbCdEf" << 59 << false;
        QTest::newRow("the state file") << "ZanmirManager.json" << 600 << false;
        QTest::newRow("moved aside") << "ZanmirManager.json.20250101-101010" << 600 << false;
        QTest::newRow("five letters") << "ZanmirManager.json.AbCdE" << 600 << false;
        QTest::newRow("another program's") << "notes.txt.AbCdEf" << 600 << false;
    }

    void leftoverFiles()
    {
        QFETCH(QString, name);
        QFETCH(int, ageMinutes);
        QFETCH(bool, removed);
        const QString folder = path(QTest::currentDataTag());
        QVERIFY(QDir().mkpath(folder) && TestFiles::write(folder + '/' + name, "{"));
        QVERIFY(TestFiles::setModified(folder + '/' + name, QDateTime::currentDateTime().addSecs(-60 * ageMinutes)));
        const LeftoverFileSweeper sweeper(folder, "ZanmirManager\\.json|\\d{8,}\\.html");
        QCOMPARE(sweeper.sweep(3600), removed ? QStringList { folder + '/' + name } : QStringList());
        QCOMPARE(QFile::exists(folder + '/' + name), !removed);
    }
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
