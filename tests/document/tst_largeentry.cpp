#include "editordocmanager.h"
#include "editorinfo.h"
#include "sampleproject.h"

#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/resource.h>

// Highest resident set size of this process so far, in KiB.
static long peakResidentKiB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// A crafted archive whose header entry inflates far beyond what the header
// rule can use must be read without holding the whole entry in memory.
class TestLargeEntry : public QObject
{
    Q_OBJECT

private slots:
    void boundedRead_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("filler");
        QTest::addColumn<bool>("accepted");

        const QString version = SampleProject::packVersion(2, 3, 4, 5);
        QTest::newRow("header on top of 192 MiB of lines")
            << SampleProject::documentText(version) << QByteArray("1 0 0 some more data\n") << true;
        QTest::newRow("header line 192 MiB long")
            << QStringLiteral("22 serialization::archive 17\n0 0 zmr 12 %1 ").arg(version).toUtf8() << QByteArray("x")
            << true;
        QTest::newRow("first line 192 MiB long") << QByteArray() << QByteArray("y") << false;
    }

    void boundedRead()
    {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, filler);
        QFETCH(bool, accepted);

        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("large.zmr"));
        QVERIFY(SampleProject::writePaddedArchive(path, QStringLiteral("document.txt"), head, filler, 192 << 20));
        QVERIFY(QFileInfo(path).size() < 2 * 1024 * 1024);

        const long before = peakResidentKiB();
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QCOMPARE(manager.getEditorInfo(info, QDateTime()), accepted);
        const long grown = peakResidentKiB() - before;
        QCOMPARE(info.getVersion(), accepted ? QStringLiteral("2.3.04") : QStringLiteral("0.1.00"));
        // Reading the entry whole would take at least its 192 MiB.
        QVERIFY2(grown < 128 * 1024, qPrintable(QStringLiteral("peak memory grew by %1 KiB").arg(grown)));
    }
};

QTEST_GUILESS_MAIN(TestLargeEntry)
#include "tst_largeentry.moc"
