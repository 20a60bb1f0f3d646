#include "sampleproject.h"
#include "testfiles.h"
#include "thumbnailcache.h"
#include "thumbnailreader.h"

#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const QSize kSize(150, 150);

QImage picture(const QColor &colour, int width = 300, int height = 200)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(colour);
    return image;
}

// As the cards show a project's picture.
QImage shown(const QImage &image)
{
    return image.convertToFormat(QImage::Format_ARGB32).scaled(kSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

// Lets a read that waits on the named pipe go on, with nothing to read.
void releasePipe(const QString &path)
{
    const int pipe = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_NONBLOCK);
    if (pipe >= 0)
        ::close(pipe);
}

} // namespace

// The pictures of the recent-project cards: a cache that spares unchanged
// projects a read and survives its own damage, and a reader that keeps a
// project that hangs from holding up the others.
class TestThumbnails : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    const QDateTime m_past = QDateTime::currentDateTime().addSecs(-3600);

    QString path(const QString &name) const { return m_dir.filePath(name); }
    QString cacheFolder() const { return path(QStringLiteral("cache")); }
    // A project saved a while ago, with that picture (none when null).
    bool writeProject(const QString &file, const QImage &image, const QDateTime &saved)
    {
        return SampleProject::writeProject(
                   file, QStringLiteral("2.1.5.0"), nullptr, image.isNull() ? QByteArray() : TestFiles::png(image))
            && TestFiles::setModified(file, saved);
    }
    QImage read(const QString &file, ThumbnailCache &cache)
    {
        QImage result;
        ThumbnailReader::readThumbnail(file, kSize, &cache, result);
        return result;
    }

private slots:
    void initTestCase() { QVERIFY(m_dir.isValid()); }

    // A project is opened again only when it changed; one just saved is
    // not kept, as it may change again unseen within its clock's tick.
    void cacheFollowsTheProject()
    {
        ThumbnailCache cache(cacheFolder(), kSize);
        const QString project = path(QStringLiteral("scene.zmr"));
        QVERIFY(writeProject(project, picture(Qt::darkMagenta), m_past));
        QCOMPARE(read(project, cache), shown(picture(Qt::darkMagenta)));

        // Garbage of the same size and time is not seen: the entry stands.
        const QByteArray saved = TestFiles::read(project);
        QVERIFY(TestFiles::write(project, QByteArray(saved.size(), 'x')) && TestFiles::setModified(project, m_past));
        QCOMPARE(read(project, cache), shown(picture(Qt::darkMagenta)));
        // A later time is: the project is read, and has no picture now.
        QVERIFY(TestFiles::setModified(project, m_past.addSecs(1)));
        QVERIFY(read(project, cache).isNull());
        QVERIFY(TestFiles::write(project, saved) && TestFiles::setModified(project, m_past.addSecs(1)));
        QVERIFY(read(project, cache).isNull()); // "none" was kept too

        // Just saved: read every time, never kept.
        QVERIFY(QFile::remove(cache.entryPath(project)));
        QVERIFY(writeProject(project, picture(Qt::darkGreen), QDateTime::currentDateTime()));
        QCOMPARE(read(project, cache), shown(picture(Qt::darkGreen)));
        QVERIFY(!QFile::exists(cache.entryPath(project)));

        // Pruning keeps the entries of the projects named.
        QVERIFY(TestFiles::setModified(project, m_past));
        const QString other = path(QStringLiteral("other.xml"));
        QVERIFY(writeProject(other, picture(Qt::darkCyan), m_past));
        QCOMPARE(read(project, cache), shown(picture(Qt::darkGreen)));
        QCOMPARE(read(other, cache), shown(picture(Qt::darkCyan)));
        cache.prune({ other });
        QVERIFY(!QFile::exists(cache.entryPath(project)) && QFile::exists(cache.entryPath(other)));
    }

    // An entry that is damaged, of another layout or made for another size
    // is passed over and replaced by what the project holds.
    void unusableEntriesAreReplaced_data()
    {
        QTest::addColumn<QString>("damage");
        QTest::addColumn<bool>("used");
        // clang-format off
        QTest::newRow("intact") << "" << true;
        QTest::newRow("garbage") << "garbage" << false;
        QTest::newRow("cut short") << "cut" << false;
        QTest::newRow("a pixel changed") << "pixel" << false;
        QTest::newRow("another layout") << "layout" << false;
        QTest::newRow("another size") << "size" << false;
        // clang-format on
    }

    void unusableEntriesAreReplaced()
    {
        QFETCH(QString, damage);
        QFETCH(bool, used);
        const QString project = path(QStringLiteral("damaged-%1.zmr").arg(damage));
        QVERIFY(writeProject(project, picture(Qt::darkBlue), m_past));
        ThumbnailCache::Stamp stamp;
        QVERIFY(ThumbnailCache::stampOf(project, stamp));
        // An entry that says the project shows yellow.
        ThumbnailCache cache(cacheFolder(), kSize);
        QVERIFY(ThumbnailCache(cacheFolder(), damage == "size" ? QSize(100, 100) : kSize)
                    .store(stamp, shown(picture(Qt::yellow))));
        const QString entry = cache.entryPath(project);
        QByteArray bytes = TestFiles::read(entry);
        if (damage == "garbage")
            bytes.fill('\x5a');
        else if (damage == "cut")
            bytes.chop(100);
        else if (damage == "pixel")
            bytes[bytes.size() - 40] = char(bytes.at(bytes.size() - 40) ^ 0x01);
        else if (damage == "layout")
            bytes[7] = char(bytes.at(7) + 1); // the layout version follows the 4-byte magic
        QVERIFY(TestFiles::write(entry, bytes));

        const QImage expected = shown(picture(used ? Qt::yellow : Qt::darkBlue));
        QCOMPARE(read(project, cache), expected);
        // Replaced: the entry now answers by itself.
        QImage stored;
        QVERIFY(cache.find(stamp, stored));
        QCOMPARE(stored, expected);
    }

    // Reads that hang (here on named pipes that nobody writes, as on an
    // unreachable network folder) hold up no other, however many there are;
    // each is answered once it ends.
    void hangingReadsHoldUpNoOther()
    {
        QStringList hanging, others;
        for (int i = 0; i < 3; ++i) {
            hanging.append(path(QStringLiteral("pipe-%1.zmr").arg(i)));
            QVERIFY(::mkfifo(QFile::encodeName(hanging.last()).constData(), 0600) == 0);
        }
        others << path(QStringLiteral("large.zmr")) << path(QStringLiteral("plain.xml"))
               << path(QStringLiteral("bare.zmr")) << path(QStringLiteral("missing.zmr"));
        QVERIFY(writeProject(others.at(0), picture(Qt::red, 2000, 2000), m_past));
        QVERIFY(writeProject(others.at(1), picture(Qt::green), m_past));
        QVERIFY(writeProject(others.at(2), QImage(), m_past));

        ThumbnailReader reader(cacheFolder(), kSize);
        QSignalSpy answers(&reader, SIGNAL(signalThumbnailRead(QString, QImage)));
        QSignalSpy idle(&reader, SIGNAL(signalIdle()));
        // The pipes first, so that they take every thread there is at first.
        reader.read(hanging + others);
        QHash<QString, QImage> answered;
        const auto collect = [&answers, &answered]() {
            while (!answers.isEmpty()) {
                const QList<QVariant> answer = answers.takeFirst();
                answered.insert(answer.at(0).toString(), answer.at(1).value<QImage>());
            }
            return answered.size();
        };
        QTRY_COMPARE_WITH_TIMEOUT(collect(), others.size(), 20000);
        QCOMPARE(answered.value(others.at(0)), shown(picture(Qt::red, 2000, 2000)));
        QCOMPARE(answered.value(others.at(1)), shown(picture(Qt::green)));
        QVERIFY(answered.contains(others.at(2)) && answered.value(others.at(2)).isNull());
        QVERIFY(answered.contains(others.at(3)) && answered.value(others.at(3)).isNull());
        QVERIFY(!reader.isIdle() && idle.isEmpty());

        // A reader that goes while a read hangs does not wait for it.
        auto *leaving = new ThumbnailReader(QString(), kSize);
        const QString alone = path(QStringLiteral("pipe-alone.zmr"));
        QVERIFY(::mkfifo(QFile::encodeName(alone).constData(), 0600) == 0);
        leaving->read({ alone });
        delete leaving;

        // A pipe may be opened more than once on the way.
        const auto releaseAll = [&hanging, &alone]() {
            for (const QString &pipe : hanging + QStringList { alone })
                releasePipe(pipe);
        };
        QTRY_VERIFY_WITH_TIMEOUT((releaseAll(), collect() == 7), 20000);
        for (const QString &pipe : qAsConst(hanging))
            QVERIFY(answered.value(pipe).isNull());
        QCOMPARE(idle.count(), 1);
        QVERIFY(reader.isIdle());
    }
};

QTEST_GUILESS_MAIN(TestThumbnails)
#include "tst_thumbnails.moc"
