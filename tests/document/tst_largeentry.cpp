#include "editordocmanager.h"
#include "editorinfo.h"
#include "sampleproject.h"

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
    void headerLineOf192MiB()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("large.zmr"));
        const QByteArray head = QStringLiteral("22 serialization::archive 17\n0 0 zmr 12 %1 ")
                                    .arg(SampleProject::packVersion(2, 3, 4, 5))
                                    .toUtf8();
        QVERIFY(SampleProject::writePaddedArchive(path, QStringLiteral("document.txt"), head, "x", 192 << 20));

        const long before = peakResidentKiB();
        EditorDocManager manager(nullptr, path);
        QVERIFY(manager.createDocument());
        EditorInfo info;
        QVERIFY(manager.getEditorInfo(info, QDateTime()));
        const long grown = peakResidentKiB() - before;
        QCOMPARE(info.getVersion(), QStringLiteral("2.3.04"));
        // Reading the entry whole would take at least its 192 MiB.
        QVERIFY2(grown < 128 * 1024, qPrintable(QStringLiteral("peak memory grew by %1 KiB").arg(grown)));
    }
};

QTEST_GUILESS_MAIN(TestLargeEntry)
#include "tst_largeentry.moc"
