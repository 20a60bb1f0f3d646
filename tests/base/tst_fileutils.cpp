#include "binaryfilewriter.h"
#include "jsonfilereader.h"
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
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
