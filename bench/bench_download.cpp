// How fast and at what memory cost the launcher downloads a large installer.
// Prints ratios, so that runs on different machines compare:
//  - throughput of ApplUpdater on a 500 MiB installer from a loopback file
//    store relative to curl fetching the same file into a file (1.0: as
//    fast; target >= 0.9), and the same with the installer's SHA-256
//    published, which the engine then checks on the way and curl does not;
//  - the processor time of each, which a busy machine disturbs less than
//    the time on the clock;
//  - the growth of the process's peak memory during a 500 MiB and a 2 GiB
//    download over what it held just before (target: at most 32 MiB both).
#include "applupdater.h"
#include "cataloguebuilder.h"
#include "processmemory.h"
#include "sha256.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/resource.h>

namespace {

constexpr qint64 kMiB = 1024 * 1024;

// Processor time, user and system, of this process or of its ended children.
qint64 cpuMicroseconds(int who)
{
    rusage usage {};
    getrusage(who, &usage);
    return qint64(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) * 1000000 + usage.ru_utime.tv_usec
        + usage.ru_stime.tv_usec;
}

// Written in pieces, so that making the file costs this process no memory;
// returns its SHA-256.
QByteArray writeFile(const QString &path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return QByteArray();
    QByteArray piece(int(kMiB), Qt::Uninitialized);
    Sha256 hash;
    for (qint64 written = 0; written < size; written += piece.size()) {
        for (int i = 0; i < piece.size(); ++i)
            piece[i] = char((written + i) * 31 + (written + i) / 7);
        const qint64 length = qMin<qint64>(piece.size(), size - written);
        hash.addData(piece.constData(), length);
        if (file.write(piece.constData(), length) != length)
            return QByteArray();
    }
    return hash.resultHex();
}

// "python3 -m http.server" on 127.0.0.1; the port it names once it listens.
quint16 startServer(QProcess &server, const QString &folder)
{
    server.setProcessChannelMode(QProcess::MergedChannels);
    server.start(QStringLiteral("python3"),
        QStringLiteral("-u -m http.server --bind 127.0.0.1 --directory").split(' ') << folder << QStringLiteral("0"));
    QByteArray output;
    while (server.waitForReadyRead(15000)) {
        output += server.readAll();
        const QRegularExpressionMatch match
            = QRegularExpression(QStringLiteral(" port (\\d+) ")).match(QString::fromLatin1(output));
        if (match.hasMatch())
            return match.captured(1).toUShort();
    }
    return 0;
}

struct Run
{
    qint64 nanoseconds = -1; // -1: the download failed
    qint64 cpuMicroseconds = 0;
    qint64 peakGrowthKiB = 0;

    // The best of two runs: the fastest, and the largest memory growth.
    void keepBest(const Run &other)
    {
        if (nanoseconds < 0 || other.nanoseconds < 0) {
            nanoseconds = -1;
            return;
        }
        nanoseconds = qMin(nanoseconds, other.nanoseconds);
        cpuMicroseconds = qMin(cpuMicroseconds, other.cpuMicroseconds);
        peakGrowthKiB = qMax(peakGrowthKiB, other.peakGrowthKiB);
    }
};

// One download through the launcher's engine; with a digest published it
// is checked against it.
Run engineRun(const QString &url, const QString &fileName, const QByteArray &sha256)
{
    ApplUpdater updater(QStringLiteral("win64"), LogFunction());
    updater.setUpdateInfo(QString::fromUtf8(
        CatalogueBuilder().entries({ QStringLiteral("launcher 1.1.0.0") }).installer(fileName, url, sha256).bytes()));
    QEventLoop loop;
    bool ok = false;
    QObject::connect(&updater, &ApplUpdater::signalDownloadFinished, &loop, [&](const QString &, bool b) {
        ok = b;
        loop.quit();
    });
    Run run;
    const qint64 before = ProcessMemory::statusKiB("VmRSS");
    ProcessMemory::resetPeak();
    const qint64 cpu = cpuMicroseconds(RUSAGE_SELF);
    QElapsedTimer timer;
    timer.start();
    updater.startDownload(url, fileName);
    loop.exec();
    if (ok)
        run.nanoseconds = timer.nsecsElapsed();
    run.cpuMicroseconds = cpuMicroseconds(RUSAGE_SELF) - cpu;
    run.peakGrowthKiB = ProcessMemory::statusKiB("VmHWM") - before;
    QFile::remove(ApplUpdater::downloadFolder() + '/' + fileName);
    return run;
}

Run curlRun(const QString &url, const QString &path)
{
    Run run;
    const qint64 cpu = cpuMicroseconds(RUSAGE_CHILDREN);
    QElapsedTimer timer;
    timer.start();
    const int status
        = QProcess::execute(QStringLiteral("curl"), { QStringLiteral("-sf"), QStringLiteral("-o"), path, url });
    if (status == 0)
        run.nanoseconds = timer.nsecsElapsed();
    run.cpuMicroseconds = cpuMicroseconds(RUSAGE_CHILDREN) - cpu;
    QFile::remove(path);
    return run;
}

QString mibPerSecond(qint64 size, const Run &run)
{
    return QString::number(double(size) / kMiB / (double(run.nanoseconds) / 1e9), 'f', 0);
}

QString ratio(double value)
{
    return QString::number(value, 'f', 2);
}

QString growth(const Run &run, qint64 size)
{
    return QStringLiteral("%1 MiB = %2 of the file")
        .arg(QString::number(double(run.peakGrowthKiB) / 1024, 'f', 1),
            QString::number(double(run.peakGrowthKiB) * 1024 / double(size), 'f', 4));
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    // The engine saves into the home folder's "Downloads".
    qputenv("HOME", QFile::encodeName(dir.path()));
    QDir().mkpath(dir.filePath(QStringLiteral("store")));
    const qint64 size = 500 * kMiB;
    const qint64 bigSize = 2048 * kMiB;
    const QByteArray digest = writeFile(dir.filePath(QStringLiteral("store/installer.bin")), size);
    const QByteArray bigDigest = writeFile(dir.filePath(QStringLiteral("store/big.bin")), bigSize);
    if (digest.isEmpty() || bigDigest.isEmpty()) {
        out << "could not write the sample files (" << (size + bigSize) / kMiB << " MiB needed in " << QDir::tempPath()
            << ")\n";
        return 1;
    }
    QProcess server;
    const quint16 port = startServer(server, dir.filePath(QStringLiteral("store")));
    if (port == 0) {
        out << "could not start python3 -m http.server\n";
        return 1;
    }
    const QString url = QStringLiteral("http://127.0.0.1:%1/installer.bin").arg(port);
    const QString curlFile = dir.filePath(QStringLiteral("curl.bin"));
    const QString fileName = QStringLiteral("installer.bin");

    // Best of three each, alternating, so that a busy moment hurts none alone.
    Run plain = engineRun(url, fileName, QByteArray());
    Run checked = engineRun(url, fileName, digest);
    Run curl = curlRun(url, curlFile);
    for (int round = 0; round < 2; ++round) {
        plain.keepBest(engineRun(url, fileName, QByteArray()));
        checked.keepBest(engineRun(url, fileName, digest));
        curl.keepBest(curlRun(url, curlFile));
    }
    const Run big = engineRun(QStringLiteral("http://127.0.0.1:%1/big.bin").arg(port), "big.bin", bigDigest);
    server.kill();
    server.waitForFinished();
    if (plain.nanoseconds < 0 || checked.nanoseconds < 0 || curl.nanoseconds < 0 || big.nanoseconds < 0) {
        out << "a download failed\n";
        return 1;
    }

    out << "500 MiB download on loopback: engine " << mibPerSecond(size, plain) << " MiB/s, with SHA-256 checked "
        << mibPerSecond(size, checked) << " MiB/s; curl " << mibPerSecond(size, curl) << " MiB/s\n";
    out << "500 MiB download: engine throughput / curl throughput = "
        << ratio(double(curl.nanoseconds) / double(plain.nanoseconds)) << " (target >= 0.90); with SHA-256 checked "
        << ratio(double(curl.nanoseconds) / double(checked.nanoseconds)) << '\n';
    out << "500 MiB download: engine processor time / curl processor time = "
        << ratio(double(plain.cpuMicroseconds) / double(curl.cpuMicroseconds)) << "; with SHA-256 checked "
        << ratio(double(checked.cpuMicroseconds) / double(curl.cpuMicroseconds)) << '\n';
    plain.keepBest(checked);
    out << "500 MiB download: peak memory growth " << growth(plain, size) << " (target <= 32 MiB)\n";
    out << "2 GiB download, SHA-256 checked: engine " << mibPerSecond(bigSize, big) << " MiB/s, peak memory growth "
        << growth(big, bigSize) << " (target <= 32 MiB)\n";
    return 0;
}
