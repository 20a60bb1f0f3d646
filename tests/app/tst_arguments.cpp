#include "processlauncher.h"

#include <QtTest>

// Options switch test mode; the last existing file is the project to open.
class TestArguments : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        // Relative names, since a full path begins with "/" and counts as an option.
        QVERIFY(QDir::setCurrent(m_dir.path()) && QDir().mkdir("folder"));
        QVERIFY(QFile("first.zmr").open(QIODevice::WriteOnly) && QFile("second.xml").open(QIODevice::WriteOnly));
    }

    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("expected"); // test mode, then the file to open
        // clang-format off
        QTest::newRow("/TESTING") << QStringList { "/TESTING" } << "on ";
        QTest::newRow("-Test") << QStringList { "-Test" } << "on ";
        QTest::newRow("/test=1") << QStringList { "/test=1" } << "on ";
        QTest::newRow("--test") << QStringList { "--test" } << "off ";
        QTest::newRow("last existing file wins") << QStringList { "first.zmr", "second.xml" } << "off second.xml";
        QTest::newRow("missing second keeps the first") << QStringList { "first.zmr", "missing.zmr" } << "off first.zmr";
        QTest::newRow("a folder counts") << QStringList { "folder" } << "off folder";
        QTest::newRow("a full path is an option") << QStringList { m_dir.filePath("first.zmr") } << "off ";
        // clang-format on
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        QString openFilePath;
        const bool testMode = ProcessLauncher::parseArguments(arguments, openFilePath);
        QCOMPARE(QString(testMode ? "on " : "off ") + openFilePath, expected);
    }
};

QTEST_GUILESS_MAIN(TestArguments)
#include "tst_arguments.moc"
