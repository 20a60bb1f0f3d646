#include "binaryfilewriter.h"
#include "jsonfilereader.h"
#include "jsonrepair.h"
#include "logwriter.h"
#include "testfiles.h"
#include "textfilereader.h"
#include "textfilewriter.h"

#include <QtTest>

class TestFileUtils : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;
    QString path(const QString &name) const { return m_dir.filePath(name); }

private slots:
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

    void binaryWriter()
    {
        BinaryFileWriter blank { QString() };
        QCOMPARE(blank.writeNew("x") ? QString() : blank.getErrorText(), QString("File name is blank."));
        BinaryFileWriter writer(path("installer.bin"));
        QVERIFY(writer.removeFile() && writer.getInfoText().isEmpty() && writer.getErrorText().isEmpty());
        const QByteArray bytes("\x00\x01\r\n\xff", 5);
        QVERIFY(writer.writeNew(bytes) && TestFiles::read(path("installer.bin")) == bytes);
        QVERIFY(writer.replace("z") && TestFiles::read(path("installer.bin")) == "z");
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
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
