#include "sampleproject.h"
#include "testfiles.h"

#include <QImage>
#include <QTemporaryDir>
#include <QtTest>

#include <csignal>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>

extern char **environ;

namespace {

QByteArray png(int width, int height, const QColor &colour = Qt::darkMagenta)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return TestFiles::png(image);
}

quint32 crc32(const QByteArray &bytes)
{
    quint32 crc = 0xffffffffu;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int bit = 0; bit < 8; ++bit)
            crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

// A small PNG whose header claims a picture of 60000 pixels a side, some
// 13 GiB decoded.
QByteArray giantPng()
{
    QByteArray bytes = png(8, 8);
    const QByteArray side = QByteArray::fromHex("0000ea60");
    bytes.replace(16, 4, side).replace(20, 4, side);
    const quint32 crc = crc32(bytes.mid(12, 17));
    for (int i = 0; i < 4; ++i)
        bytes[29 + i] = char(crc >> (24 - 8 * i));
    return bytes;
}

// What one run of the program came to, as the kernel counted it.
struct Run
{
    int status = -1; // -1: it did not end by itself
    double cpuSeconds = 0;
    qint64 peakKiB = 0;
};

Run run(const QStringList &arguments)
{
    QList<QByteArray> bytes { QByteArrayLiteral(ZANMIR_THUMBNAILER) };
    for (const QString &argument : arguments)
        bytes.append(QFile::encodeName(argument));
    QVector<char *> argv;
    for (QByteArray &argument : bytes)
        argv.append(argument.data());
    argv.append(nullptr);
    Run result;
    pid_t child = 0;
    if (posix_spawn(&child, argv.first(), nullptr, nullptr, argv.data(), environ) != 0)
        return result;
    int status = 0;
    rusage usage {};
    if (wait4(child, &status, 0, &usage) != child)
        return result;
    if (WIFEXITED(status))
        result.status = WEXITSTATUS(status);
    result.cpuSeconds
        = usage.ru_utime.tv_sec + usage.ru_stime.tv_sec + (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    result.peakKiB = usage.ru_maxrss;
    return result;
}

} // namespace

// The file managers' thumbnailer as they run it: a PNG of the project's
// picture, or for anything else a failure that writes nothing, within a
// second of processor time and 64 MiB whatever the file holds.
class TestThumbnailer : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
        // A sanitized build keeps freed memory back to catch its use; that
        // is the sanitizer's memory, not the program's.
        qputenv("ASAN_OPTIONS", qgetenv("ASAN_OPTIONS") + ":quarantine_size_mb=0");
    }

    void thumbnailer_data()
    {
        QTest::addColumn<QString>("project");
        QTest::addColumn<QString>("size");
        QTest::addColumn<QString>("written"); // the PNG's size; empty: nothing, and a failure
        // clang-format off
        QTest::newRow("picture") << "picture.zmr" << "128" << "128x85";
        QTest::newRow("picture, XML form") << "picture.xml" << "256" << "256x170";
        QTest::newRow("largest picture read") << "largest.zmr" << "256" << "256x256";
        QTest::newRow("no picture") << "bare.zmr" << "128" << "";
        QTest::newRow("corrupt") << "corrupt.zmr" << "128" << "";
        QTest::newRow("picture too large") << "huge.zmr" << "128" << "";
        QTest::newRow("zip bomb") << "bomb.zmr" << "128" << "";
        QTest::newRow("no such file") << "missing.zmr" << "128" << "";
        QTest::newRow("a folder") << "folder.zmr" << "128" << "";
        // As a project in a network folder that stopped answering: the
        // program gives up after a few seconds.
        QTest::newRow("a pipe nobody writes") << "pipe.zmr" << "128" << "";
        QTest::newRow("size no number") << "picture.zmr" << "large" << "";
        QTest::newRow("size beyond any thumbnail") << "picture.zmr" << "100000" << "";
        // clang-format on
    }

    void thumbnailer()
    {
        QFETCH(QString, project);
        QFETCH(QString, size);
        QFETCH(QString, written);
        const QString path = m_dir.filePath(project);
        if (!QFileInfo::exists(path)) {
            if (project == "picture.zmr" || project == "picture.xml")
                QVERIFY(SampleProject::writeProject(path, "2.1.5.0", nullptr, png(300, 200)));
            else if (project == "largest.zmr")
                QVERIFY(SampleProject::writeProject(path, "2.1.5.0", nullptr, png(2048, 2048)));
            else if (project == "bare.zmr")
                QVERIFY(SampleProject::writeProject(path, "2.1.5.0"));
            else if (project == "corrupt.zmr")
                QVERIFY(TestFiles::write(path, "PK\x03\x04 damaged"));
            else if (project == "huge.zmr")
                QVERIFY(SampleProject::writeProject(path, "2.1.5.0", nullptr, giantPng()));
            else if (project == "bomb.zmr")
                // A picture entry that inflates from about 100 KiB to 100 MiB.
                QVERIFY(SampleProject::writePaddedArchive(
                    path, "thumbnail.png", png(8, 8).left(33), QByteArray(4096, '\0'), 100 * 1024 * 1024));
            else if (project == "folder.zmr")
                QVERIFY(QDir().mkpath(path));
            else if (project == "pipe.zmr")
                QVERIFY(::mkfifo(QFile::encodeName(path).constData(), 0600) == 0);
        }
        const QString output = m_dir.filePath(QTest::currentDataTag() + QString(".png"));

        const auto remove = qScopeGuard([&output]() { QFile::remove(output); });
        const Run result = run({ path, output, size });
        QCOMPARE(result.status, written.isEmpty() ? 1 : 0);
        QCOMPARE(QFileInfo::exists(output), !written.isEmpty());
        if (!written.isEmpty()) {
            const QImage image(output, "PNG");
            QCOMPARE(QString("%1x%2").arg(image.width()).arg(image.height()), written);
            QCOMPARE(image.pixelColor(image.width() / 2, image.height() / 2), QColor(Qt::darkMagenta));
        }
        QVERIFY2(result.cpuSeconds < 1.0, qPrintable(QString::number(result.cpuSeconds)));
        QVERIFY2(result.peakKiB < 64 * 1024, qPrintable(QString::number(result.peakKiB)));
        QCOMPARE(QDir(m_dir.path()).entryList({ "*.png*" }),
            written.isEmpty() ? QStringList() : QStringList { QFileInfo(output).fileName() });
    }
};

QTEST_GUILESS_MAIN(TestThumbnailer)
#include "tst_thumbnailer.moc"
