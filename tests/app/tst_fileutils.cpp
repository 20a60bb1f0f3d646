#include "binaryfilewriter.h"
#include "jsonfilereader.h"
#include "logwriter.h"
#include "testfiles.h"
#include "textfilereader.h"
#include "textfilewriter.h"

#include <QDir>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

class TestFileUtils : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString path(const QString &name) const { return m_dir.filePath(name); }

private slots:
    void readerFailures()
    {
        const QStringList files { path("missing.txt"), path("empty.txt"), path("a-folder") };
        QVERIFY(TestFiles::write(files.at(1), QByteArray()));
        QVERIFY(QDir().mkpath(files.at(2))); // exists, but no user can read it as a file
        const QStringList texts { "File does not exist: ", "Blank contents in file: ", "Failed to read from file: " };
        for (int i = 0; i < files.size(); ++i) {
            TextFileReader reader(files.at(i));
            QVERIFY(!reader.read());
            QCOMPARE(reader.getErrorText(), texts.at(i) + files.at(i));
        }
    }

    void jsonErrorText()
    {
        QVERIFY(TestFiles::write(path("doc.json"), "{\"a\": 1,}"));
        JsonFileReader reader(path("doc.json"));
        QVERIFY(!reader.parse());
        QVERIFY(reader.getDocument().isNull());
        const QRegularExpression text("^Failed to parse JSON document: code\\[([1-9]\\d*)\\] message\\[.+\\]$");
        QVERIFY2(text.match(reader.getErrorText()).hasMatch(), qPrintable(reader.getErrorText()));
    }

    void textWriter()
    {
        const QString file = path("state.json");
        TextFileWriter writer(file);
        QVERIFY(writer.writeNew("a much longer first text\n"));
        QVERIFY(writer.writeNew("short"));
        QCOMPARE(TestFiles::read(file), QByteArray("short"));
        TextFileWriter fresh(path("fresh.json"));
        QVERIFY(fresh.replace("new"));
        QCOMPARE(TestFiles::read(path("fresh.json")), QByteArray("new"));

        // A replace that cannot remove (a non-empty folder stops root too)
        // fails and leaves the error text of the previous failure.
        const QString nowhere = path("no/such/folder/x");
        TextFileWriter blocked(nowhere);
        QVERIFY(!blocked.writeNew("x"));
        QCOMPARE(blocked.getErrorText(), "Failed to open new file: " + nowhere);
        QVERIFY(QDir().mkpath(path("blocked/inside")));
        blocked.setFileName(path("blocked"));
        QVERIFY(!blocked.replace("new"));
        QCOMPARE(blocked.getErrorText(), "Failed to open new file: " + nowhere);
    }

    void logLinesAppendOnceFolderExists()
    {
        const QString folder = path("logs");
        LogWriter log;
        log.setLogFile(folder, "ZanmirLauncher");
        log.writeLine("lost");
        QVERIFY(QDir().mkpath(folder));
        log.writeLine("first");
        log.writeLine("second");
        const QString lines = QString::fromUtf8(TestFiles::read(folder + "/ZanmirLauncher.log"));
        const QRegularExpression format("^\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d first\\n"
                                        "\\d{4}/\\d\\d/\\d\\d \\d\\d:\\d\\d:\\d\\d second\\n$");
        QVERIFY2(format.match(lines).hasMatch(), qPrintable(lines));
    }

    void binaryWriter()
    {
        BinaryFileWriter blank { QString() };
        QVERIFY(!blank.writeNew("x"));
        QCOMPARE(blank.getErrorText(), QString("File name is blank."));

        const QString file = path("installer.bin");
        BinaryFileWriter writer(file);
        QVERIFY(writer.removeFile());
        QVERIFY(writer.getInfoText().isEmpty());
        QVERIFY(writer.getErrorText().isEmpty());
        const QByteArray bytes("\x00\x01\r\n\xff", 5);
        QVERIFY(writer.writeNew(bytes));
        QCOMPARE(TestFiles::read(file), bytes);
        QVERIFY(writer.replace("z"));
        QCOMPARE(writer.getInfoText(), "File is removed: " + file);
        QCOMPARE(TestFiles::read(file), QByteArray("z"));
    }
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
