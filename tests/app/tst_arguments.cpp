#include "processlauncher.h"

#include <QtTest>

// Options switch test mode; the last existing file is the project to open,
// handed on as a full path.
class TestArguments : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        QVERIFY(QDir::setCurrent(m_dir.path()) && QDir().mkdir("folder"));
        for (const char *name : { "first.zmr", "second.xml", "-Test" })
            QVERIFY(QFile(name).open(QIODevice::WriteOnly));
    }

    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments"); // "@" is the working folder
        QTest::addColumn<QString>("expected"); // test mode, then the file to open
        // clang-format off
        QTest::newRow("/TESTING") << QStringList { "/TESTING" } << "on ";
        QTest::newRow("/test=1") << QStringList { "/test=1" } << "on ";
        QTest::newRow("--test") << QStringList { "--test" } << "off ";
        QTest::newRow("unknown option") << QStringList { "/x", "-y" } << "off ";
        QTest::newRow("last existing file wins") << QStringList { "first.zmr", "second.xml" } << "off @/second.xml";
        QTest::newRow("a folder counts") << QStringList { "folder" } << "off @/folder";
        // Where full paths begin with "/", an existing file is no option.
        QTest::newRow("full path") << QStringList { "@/first.zmr", "/test" } << "on @/first.zmr";
        QTest::newRow("full path of a missing file") << QStringList { "first.zmr", "@/gone.zmr" } << "off @/first.zmr";
        QTest::newRow("full path of a folder") << QStringList { "@/folder" } << "off ";
        QTest::newRow("a file named like an option") << QStringList { "-Test" } << "off @/-Test";
        // clang-format on
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, expected);
        arguments.replaceInStrings("@", m_dir.path());
        QString openFilePath;
        const bool testMode = ProcessLauncher::parseArguments(arguments, openFilePath);
        QCOMPARE(QString(testMode ? "on " : "off ") + openFilePath, expected.replace("@", m_dir.path()));
    }
};

QTEST_GUILESS_MAIN(TestArguments)
#include "tst_arguments.moc"
