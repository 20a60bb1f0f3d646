// zanmir-thumbnailer INPUT OUTPUT SIZE
//
// Writes a project's own picture as a PNG of at most SIZE pixels a side, for
// file managers that run thumbnailers named by a ".thumbnailer" entry. The
// project is read by the same bounded reader as the launcher's cards. Exits
// with 1, writing nothing, for a project without a picture or one that cannot
// be read within the bounds; a file manager then shows its generic icon.
#include "thumbnailreader.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QImage>
#include <QSaveFile>
#include <QTextStream>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// A file manager asks for 128, 256 or 512 pixels; anything far larger is no
// thumbnail.
const int kMaxSize = 1024;
// The program is started for every project a folder shows, so a hostile
// file must not cost more than this. The reader's own bounds keep a good
// run far below both.
const rlim_t kCpuSeconds = 1;
const rlim_t kMemoryBytes = 64 * 1024 * 1024;
// A project in a network folder that stopped answering: the read cannot be
// broken off, so the process ends.
const unsigned kHangSeconds = 5;

// Past either bound the program ends as for any project it cannot read.
void giveUp(int)
{
    _exit(1);
}

void limitResources()
{
    std::signal(SIGXCPU, giveUp);
    std::signal(SIGALRM, giveUp);
    const rlimit cpu = { kCpuSeconds, kCpuSeconds + 1 };
    setrlimit(RLIMIT_CPU, &cpu);
#if !defined(__SANITIZE_ADDRESS__)
    // The address-space bound leaves the sanitizers' shadow memory no room,
    // so a sanitized build relies on the reader's bounds alone.
    const rlimit memory = { kMemoryBytes, kMemoryBytes };
    setrlimit(RLIMIT_DATA, &memory);
#endif
    alarm(kHangSeconds);
}

int fail(const QString &text)
{
    QTextStream(stderr) << "zanmir-thumbnailer: " << text << '\n';
    return 1;
}

} // namespace

int main(int argc, char *argv[])
{
    limitResources();
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return fail(QStringLiteral("usage: zanmir-thumbnailer INPUT OUTPUT SIZE"));
    const QString input = arguments.at(1);
    const QString output = arguments.at(2);
    bool isNumber = false;
    const int size = arguments.at(3).toInt(&isNumber);
    if (!isNumber || size < 1 || size > kMaxSize)
        return fail(QStringLiteral("SIZE must be a number of pixels from 1 to %1").arg(kMaxSize));

    QImage picture;
    if (!ThumbnailReader::readThumbnail(input, QSize(size, size), nullptr, picture))
        return fail(QStringLiteral("%1 has no picture that can be shown").arg(input));

    // Encoded first, so that nothing is written unless all of it can be.
    QByteArray png;
    QBuffer buffer(&png);
    if (!buffer.open(QIODevice::WriteOnly) || !picture.save(&buffer, "PNG"))
        return fail(QStringLiteral("cannot encode the picture of %1").arg(input));
    QSaveFile file(output);
    if (!file.open(QIODevice::WriteOnly) || file.write(png) != png.size() || !file.commit())
        return fail(QStringLiteral("cannot write %1: %2").arg(output, file.errorString()));
    return 0;
}
