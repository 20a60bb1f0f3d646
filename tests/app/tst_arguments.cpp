#include "processlauncher.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

// The command line: options switch test mode, existing files become the
// project to open, the last one winning.
class TestArguments : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    QString m_previousDir;

private slots:
    void initTestCase()
    {
        // Relative names, since on this system a full path begins with "/"
        // and counts as an option.
        m_previousDir = QDir::currentPath();
        QVERIFY(QDir::setCurrent(m_dir.path()));
        for (const char *name : { "first.zmr", "second.xml" }) {
            QFile file(QString::fromLatin1(name));
            QVERIFY(file.open(QIODevice::WriteOnly));
        }
        QVERIFY(QDir().mkdir(QStringLiteral("folder")));
    }

    void cleanupTestCase() { QDir::setCurrent(m_previousDir); }

    void parse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<bool>("testMode");
        QTest::addColumn<QString>("openFile");

        QTest::newRow("nothing") << QStringList() << false << QString();
        QTest::newRow("/test") << QStringList { "/test" } << true << QString();
        QTest::newRow("/TESTING") << QStringList { "/TESTING" } << true << QString();
        QTest::newRow("-Test") << QStringList { "-Test" } << true << QString();
        QTest::newRow("/test=1") << QStringList { "/test=1" } << true << QString();
        QTest::newRow("--test is no test option") << QStringList { "--test" } << false << QString();
        QTest::newRow("other options ignored") << QStringList { "/verbose", "-x" } << false << QString();
        QTest::newRow("test word without prefix is a file name") << QStringList { "test" } << false << QString();
        QTest::newRow("existing file") << QStringList { "first.zmr" } << false << QStringLiteral("first.zmr");
        QTest::newRow("last existing file wins")
            << QStringList { "first.zmr", "second.xml" } << false << QStringLiteral("second.xml");
        QTest::newRow("missing second keeps the first")
            << QStringList { "first.zmr", "missing.zmr" } << false << QStringLiteral("first.zmr");
        QTest::newRow("folder counts as a file") << QStringList { "folder" } << false << QStringLiteral("folder");
        QTest::newRow("full path is an option here")
            << QStringList { QDir::current().absoluteFilePath(QStringLiteral("first.zmr")) } << false << QString();
        QTest::newRow("options and file mixed")
            << QStringList { "-testing", "second.xml", "/x" } << true << QStringLiteral("second.xml");
    }

    void parse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(bool, testMode);
        QFETCH(QString, openFile);

        QString openFilePath;
        QCOMPARE(ProcessLauncher::parseArguments(arguments, openFilePath), testMode);
        QCOMPARE(openFilePath, openFile);
    }
};

QTEST_GUILESS_MAIN(TestArguments)
#include "tst_arguments.moc"
