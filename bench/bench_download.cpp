// How fast and at what memory cost the launcher downloads a large installer.
// Prints ratios, so that runs on different machines compare:
//  - throughput of ApplUpdater on a 500 MiB file from a loopback file store,
//    relative to curl fetching the same file into a file (1.0: as fast);
//  - peak memory growth of the process during that download, per byte of the
//    file (the engine holds the whole file in memory by design, so >= 1.0).
#include "applupdater.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>

#include <sys/resource.h>

static long peakResidentKiB()
{
    rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

// Written in pieces, so that making the file costs this process no memory.
static bool writeFile(const QString &path, qint64 size)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        return false;
    QByteArray piece(1024 * 1024, Qt::Uninitialized);
    for (int i = 0; i < piece.size(); ++i)
        piece[i] = char(i * 31 + i / 7);
    for (qint64 written = 0; written < size; written += piece.size()) {
        if (file.write(piece.constData(), qMin<qint64>(piece.size(), size - written)) < 0)
            return false;
    }
    return true;
}

// "python3 -m http.server" on 127.0.0.1; the port it names once it listens.
static quint16 startServer(QProcess &server, const QString &folder)
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

static qint64 engineNanoseconds(const QString &url, const QString &fileName)
{
    ApplUpdater updater(QStringLiteral("win64"), LogFunction());
    QEventLoop loop;
    bool ok = false;
    QObject::connect(&updater, &ApplUpdater::signalDownloadFinished, &loop, [&](const QString &, bool b) {
        ok = b;
        loop.quit();
    });
    QElapsedTimer timer;
    timer.start();
    updater.startDownload(url, fileName);
    loop.exec();
    return ok ? timer.nsecsElapsed() : -1;
}

static qint64 curlNanoseconds(const QString &url, const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    const int status
        = QProcess::execute(QStringLiteral("curl"), { QStringLiteral("-sf"), QStringLiteral("-o"), path, url });
    return status == 0 ? timer.nsecsElapsed() : -1;
}

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QTextStream out(stdout);
    QTemporaryDir dir;
    // The engine saves into the home folder's "Downloads".
    qputenv("HOME", QFile::encodeName(dir.path()));
    QDir().mkpath(dir.filePath(QStringLiteral("store")));
    const qint64 size = 500LL * 1024 * 1024;
    if (!writeFile(dir.filePath(QStringLiteral("store/installer.bin")), size)) {
        out << "could not write the sample file\n";
        return 1;
    }
    QProcess server;
    const quint16 port = startServer(server, dir.filePath(QStringLiteral("store")));
    if (port == 0) {
        out << "could not start python3 -m http.server\n";
        return 1;
    }
    const QString url = QStringLiteral("http://127.0.0.1:%1/installer.bin").arg(port);

    // The engine first, while the process holds nothing else large.
    const long before = peakResidentKiB();
    qint64 engine = engineNanoseconds(url, QStringLiteral("installer.bin"));
    const double growth = double(peakResidentKiB() - before) * 1024.0;
    qint64 curl = curlNanoseconds(url, dir.filePath(QStringLiteral("curl.bin")));
    // Best of three each, alternating, so that a busy moment hurts neither alone.
    for (int round = 0; round < 2 && engine > 0 && curl > 0; ++round) {
        engine = qMin(engine, engineNanoseconds(url, QStringLiteral("installer.bin")));
        curl = qMin(curl, curlNanoseconds(url, dir.filePath(QStringLiteral("curl.bin"))));
    }
    server.kill();
    server.waitForFinished();
    if (engine <= 0 || curl <= 0 || QFileInfo(dir.filePath(QStringLiteral("Downloads/installer.bin"))).size() != size) {
        out << "a download failed\n";
        return 1;
    }

    const double mib = double(size) / (1024 * 1024);
    out << "500 MiB download on loopback: engine " << QString::number(mib / (engine / 1e9), 'f', 0) << " MiB/s, curl "
        << QString::number(mib / (curl / 1e9), 'f', 0) << " MiB/s\n";
    out << "500 MiB download: engine throughput / curl throughput = " << QString::number(double(curl) / engine, 'f', 2)
        << " (1.0: as fast as curl)\n";
    out << "500 MiB download: peak memory growth / file size = " << QString::number(growth / size, 'f', 2)
        << " (the whole file is held in memory: >= 1.0)\n";
    return 0;
}
