#include "binaryfilewriter.h"
#include "jsonfilereader.h"
#include "logwriter.h"
#include "textfilereader.h"
#include "textfilewriter.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

class TestFileUtils : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;

    QString path(const QString &name) const { return m_dir.filePath(name); }

    static void writeBytes(const QString &file, const QByteArray &bytes)
    {
        QFile out(file);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(bytes);
    }

    static QByteArray readBytes(const QString &file)
    {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }

private slots:
    void readerFailures()
    {
        const QString missing = path(QStringLiteral("missing.txt"));
        TextFileReader missingReader(missing);
        QVERIFY(!missingReader.read());
        QCOMPARE(missingReader.getErrorText(), QStringLiteral("File does not exist: %1").arg(missing));

        const QString empty = path(QStringLiteral("empty.txt"));
        writeBytes(empty, QByteArray());
        TextFileReader emptyReader(empty);
        QVERIFY(!emptyReader.read());
        QCOMPARE(emptyReader.getErrorText(), QStringLiteral("Blank contents in file: %1").arg(empty));

        // White space is contents, not blank.
        const QString blanks = path(QStringLiteral("blanks.txt"));
        writeBytes(blanks, "  \n");
        TextFileReader blankReader(blanks);
        QVERIFY(blankReader.read());
        QCOMPARE(blankReader.getContents(), QStringLiteral("  \n"));

        // A folder exists but cannot be opened as a text file, even by root.
        const QString folder = path(QStringLiteral("a-folder"));
        QVERIFY(QDir().mkpath(folder));
        TextFileReader folderReader(folder);
        QVERIFY(!folderReader.read());
        QCOMPARE(folderReader.getErrorText(), QStringLiteral("Failed to read from file: %1").arg(folder));
    }

    void jsonParsing_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("valid");
        QTest::newRow("object") << QByteArray("{\"a\": 1}") << true;
        QTest::newRow("trailing comma") << QByteArray("{\"a\": 1,}") << false;
        QTest::newRow("not json") << QByteArray("hello") << false;
        QTest::newRow("truncated") << QByteArray("{\"a\": [1, 2") << false;
    }

    void jsonParsing()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, valid);
        const QString file = path(QStringLiteral("doc.json"));
        writeBytes(file, bytes);
        JsonFileReader reader(file);
        QCOMPARE(reader.parse(), valid);
        if (valid) {
            QCOMPARE(reader.getDocument().object().value(QStringLiteral("a")).toInt(), 1);
        } else {
            QVERIFY(reader.getDocument().isNull());
            const QRegularExpression pattern(QStringLiteral("^Failed to parse JSON document: code\\[(\\d+)\\] message\\[(.+)\\]$"));
            const QRegularExpressionMatch match = pattern.match(reader.getErrorText());
            QVERIFY2(match.hasMatch(), qPrintable(reader.getErrorText()));
            QVERIFY(match.captured(1).toInt() > 0);
        }
    }

    void jsonWithByteOrderMark()
    {
        // A state file saved by an editor that writes a UTF-8 byte-order mark
        // still loads: neither the UTF-8 text codec nor the JSON parser keeps it.
        const QString file = path(QStringLiteral("bom.json"));
        writeBytes(file, QByteArray("\xEF\xBB\xBF{\"a\": 1}"));
        JsonFileReader reader(file);
        QVERIFY2(reader.parse(), qPrintable(reader.getErrorText()));
        QCOMPARE(reader.getDocument().object().value(QStringLiteral("a")).toInt(), 1);
    }

    void writerOverwritesAndReplaces()
    {
        const QString file = path(QStringLiteral("state.json"));
        TextFileWriter writer(file);
        QVERIFY(writer.writeNew(QStringLiteral("a much longer first text\n")));
        QVERIFY(writer.writeNew(QStringLiteral("short")));
        QCOMPARE(readBytes(file), QByteArray("short"));

        const QString fresh = path(QStringLiteral("fresh.json"));
        TextFileWriter freshWriter(fresh);
        QVERIFY(freshWriter.replace(QStringLiteral("new")));
        QCOMPARE(readBytes(fresh), QByteArray("new"));
        QVERIFY(freshWriter.replace(QStringLiteral("newer")));
        QCOMPARE(readBytes(fresh), QByteArray("newer"));

        TextFileWriter unnamed;
        QVERIFY(!unnamed.writeNew(QStringLiteral("x")));
        QVERIFY(!unnamed.append(QStringLiteral("x")));
        QVERIFY(unnamed.getErrorText().isEmpty());
        unnamed.setFileName(path(QStringLiteral("named.txt")));
        QVERIFY(unnamed.writeNew(QStringLiteral("x")));
    }

    void replaceThatCannotRemoveLeavesTextsAlone()
    {
        // Something that exists and cannot be removed as a file (here a
        // non-empty folder, which stops root as well as a user): replace
        // fails and keeps the error text of the previous failure.
        const QString blocked = path(QStringLiteral("blocked"));
        QVERIFY(QDir().mkpath(blocked + QStringLiteral("/inside")));

        TextFileWriter writer(path(QStringLiteral("no/such/folder/x")));
        QVERIFY(!writer.writeNew(QStringLiteral("x")));
        const QString previous = writer.getErrorText();
        QVERIFY(!previous.isEmpty());

        writer.setFileName(blocked);
        QVERIFY(!writer.replace(QStringLiteral("new")));
        QCOMPARE(writer.getErrorText(), previous);
        QVERIFY(QFileInfo(blocked).isDir());
    }

    void writeNewIntoMissingFolderFails()
    {
        const QString file = path(QStringLiteral("no/such/folder/state.json"));
        TextFileWriter writer(file);
        QVERIFY(!writer.writeNew(QStringLiteral("x")));
        QCOMPARE(writer.getErrorText(), QStringLiteral("Failed to open new file: %1").arg(file));
    }

    void logLinesAppendOnceFolderExists()
    {
        const QString folder = path(QStringLiteral("logs"));
        LogWriter log;
        log.setLogFile(folder, QStringLiteral("ZanmirLauncher"));
        log.writeLine(QStringLiteral("lost"));
        QVERIFY(!QFile::exists(folder + QStringLiteral("/ZanmirLauncher.log")));

        QVERIFY(QDir().mkpath(folder));
        log.writeLine(QStringLiteral("first"));
        log.writeLine(QStringLiteral("second"));
        const QList<QByteArray> lines = readBytes(folder + QStringLiteral("/ZanmirLauncher.log")).split('\n');
        QCOMPARE(lines.size(), 3);
        QVERIFY(lines.at(2).isEmpty());
        const QRegularExpression pattern(QStringLiteral("^\\d{4}/\\d{2}/\\d{2} \\d{2}:\\d{2}:\\d{2} (first|second)$"));
        QVERIFY(pattern.match(QString::fromUtf8(lines.at(0))).hasMatch());
        QVERIFY(lines.at(0).endsWith(" first"));
        QVERIFY(lines.at(1).endsWith(" second"));
    }

    void binaryWriter()
    {
        BinaryFileWriter blank{QString()};
        QVERIFY(!blank.writeNew("x"));
        QCOMPARE(blank.getErrorText(), QStringLiteral("File name is blank."));

        const QString file = path(QStringLiteral("installer.bin"));
        BinaryFileWriter writer(file);
        QVERIFY(writer.removeFile());
        QVERIFY(writer.getInfoText().isEmpty());
        QVERIFY(writer.getErrorText().isEmpty());

        const QByteArray bytes("\x00\x01\r\n\xff", 5);
        QVERIFY(writer.writeNew(bytes));
        QCOMPARE(readBytes(file), bytes);
        QVERIFY(writer.replace(QByteArray("z")));
        QCOMPARE(writer.getInfoText(), QStringLiteral("File is removed: %1").arg(file));
        QCOMPARE(readBytes(file), QByteArray("z"));

        const QString missingFolder = path(QStringLiteral("none/installer.bin"));
        BinaryFileWriter nowhere(missingFolder);
        QVERIFY(!nowhere.writeNew("x"));
        QCOMPARE(nowhere.getErrorText(), QStringLiteral("Failed to open new file: %1").arg(missingFolder));
    }
};

QTEST_GUILESS_MAIN(TestFileUtils)
#include "tst_fileutils.moc"
