// How much memory and time the open-with flow spends reading a project file.
// Prints ratios, so that runs on different machines compare:
//  - peak memory growth while reading a crafted archive, per byte of its
//    inflated header entry (a whole-entry read would be >= 1.0);
//  - time to read a 1 GiB crafted entry relative to a normal project.
#include "editordocmanager.h"
#include "editorinfo.h"
#include "sampleproject.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/resource.h>

static long peakResidentKiB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

static qint64 readNanoseconds(const QString &path, int rounds)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < rounds; ++i) {
        EditorDocManager manager(nullptr, path);
        manager.createDocument();
        EditorInfo info;
        manager.getEditorInfo(info, QDateTime());
    }
    return timer.nsecsElapsed() / rounds;
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;

    const QString normal = dir.filePath(QStringLiteral("normal.zmr"));
    const QString xml = dir.filePath(QStringLiteral("normal.xml"));
    const QString crafted = dir.filePath(QStringLiteral("crafted.zmr"));
    const qint64 inflated = 1024LL * 1024 * 1024;
    if (!SampleProject::writeProject(normal, QStringLiteral("2.1.5.0"))
        || !SampleProject::writeProject(xml, QStringLiteral("2.1.5.0"))
        || !SampleProject::writePaddedArchive(crafted, QStringLiteral("document.txt"),
            SampleProject::documentText(SampleProject::packVersion(2, 1, 5, 0)),
            QByteArrayLiteral("1 0 0 filler line of the archive\n"), inflated)) {
        out << "could not write the sample projects\n";
        return 1;
    }

    const qint64 normalNs = readNanoseconds(normal, 200);
    const qint64 xmlNs = readNanoseconds(xml, 200);
    const long before = peakResidentKiB();
    const qint64 craftedNs = readNanoseconds(crafted, 1);
    const double growth = double(peakResidentKiB() - before) * 1024.0;

    out << "normal .zmr read: " << normalNs / 1000 << " us; .xml read: " << xmlNs / 1000 << " us\n";
    out << "crafted 1 GiB entry: peak memory growth / entry size = " << QString::number(growth / inflated, 'f', 4)
        << " (whole-entry read >= 1.0)\n";
    out << "crafted 1 GiB entry: read time / normal read time = "
        << QString::number(double(craftedNs) / normalNs, 'f', 1) << "\n";
    return 0;
}
