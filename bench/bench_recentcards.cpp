// How the home page's 100 recent-project cards follow a change of the
// recent-project list, from real projects: archives and XML files, most with
// a picture of their own. Prints, for a first build (no picture read yet)
// and for a rebuild after one project changed:
//  - the time from the change to the card grid showing every picture, and
//    its ratio to the bare work of decoding and scaling the same pictures
//    from memory, the part that no reader can avoid;
//  - the longest time the main thread was blocked meanwhile (a window
//    answers input only between two such blocks; one frame is 16.7 ms).
// The median of several rounds each.
#include "applinfo.h"
#include "benchpicture.h"
#include "editorinfo.h"
#include "processlauncher.h"
#include "recentusedwidget.h"
#include "sampleproject.h"
#include "testfiles.h"
#include "testprofile.h"
#include "thumbnailcache.h"
#include "thumbnailreader.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QSignalSpy>
#include <QTest>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>

#include <algorithm>
#include <ctime>

namespace {

const int kCards = 100;
const int kRounds = 7;

double median(QVector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

// The longest gap between two turns of the main thread's event loop, less
// the timer's own period: how long input would have waited at worst. Beside
// it, the most processor time the main thread used within one gap: the part
// of a gap that was its own work, the rest being other threads and
// processes that the system ran in its place.
class BlockWatch : public QObject
{
public:
    struct Result
    {
        double wallMs;
        double ownMs;
    };

    BlockWatch()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(1);
        connect(&m_timer, &QTimer::timeout, this, [this]() { tick(); });
    }
    void start()
    {
        m_result = { 0, 0 };
        m_sinceLast.start();
        m_cpuAtLast = threadCpuMs();
        m_timer.start();
    }
    Result stop()
    {
        m_timer.stop();
        tick();
        return m_result;
    }

private:
    static double threadCpuMs()
    {
        timespec now {};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
        return now.tv_sec * 1e3 + now.tv_nsec / 1e6;
    }
    void tick()
    {
        const double cpu = threadCpuMs();
        m_result.wallMs = qMax(m_result.wallMs, m_sinceLast.nsecsElapsed() / 1e6 - m_timer.interval());
        m_result.ownMs = qMax(m_result.ownMs, cpu - m_cpuAtLast);
        m_sinceLast.restart();
        m_cpuAtLast = cpu;
    }

    QTimer m_timer;
    QElapsedTimer m_sinceLast;
    double m_cpuAtLast = 0;
    Result m_result { 0, 0 };
};

struct Round
{
    double rebuiltMs; // the cards made, with the pictures known so far
    double updatedMs;
    BlockWatch::Result blocked;
};

} // namespace

int main(int argc, char *argv[])
{
    TestProfile profile;
    qputenv("ZANMIR_SERVER_BASE", "http://127.0.0.1:9");
    qputenv("ZANMIR_PUBLIC_HOST", "localhost");
    // On the X server that bench/run starts, else on none.
    if (qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    ProcessLauncher launcher(argc, argv);
    QTextStream out(stdout);
    profile.registerVersion(
        QStringLiteral("L0"), QStringLiteral("launcher"), QStringLiteral("release"), QStringLiteral("1.3.0.2"));
    QTranslator translator;
    if (!profile.isValid() || !launcher.initialize(translator)) {
        out << "could not set up the launcher on a fresh profile\n";
        return 1;
    }

    // Three in four projects carry a picture; one in three is the XML form.
    // Saved a while ago, as projects on the list are.
    QList<QByteArray> pictures;
    QStringList paths;
    const QDateTime saved = QDateTime::currentDateTime().addSecs(-3600);
    for (int i = 0; i < kCards; ++i) {
        const QByteArray thumbnail = i % 4 == 3 ? QByteArray() : benchPicture(i);
        if (!thumbnail.isEmpty())
            pictures.append(thumbnail);
        paths.append(profile.root() + QStringLiteral("/project-%1.%2").arg(i).arg(i % 3 == 0 ? "xml" : "zmr"));
        if (!SampleProject::writeProject(paths.last(), QStringLiteral("2.1.5.0"), nullptr, thumbnail)
            || !TestFiles::setModified(paths.last(), saved)
            || !launcher.addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), paths.last())) {
            out << "could not write project " << i << '\n';
            return 1;
        }
    }

    RecentUsedWidget widget;
    widget.setProcessLauncher(&launcher);
    widget.resize(900, 700);
    widget.show();
    if (!QTest::qWaitForWindowExposed(&widget)) {
        out << "the cards' window was not shown\n";
        return 1;
    }
    auto *reader = widget.findChild<ThumbnailReader *>();
    BlockWatch watch;
    // A change of the list, as the window sees it, until every picture is there.
    const auto change = [&]() -> Round {
        QSignalSpy idle(reader, SIGNAL(signalIdle()));
        watch.start();
        QElapsedTimer timer;
        timer.start();
        emit launcher.getApplInfo()->signalHistoryInfoUpdated();
        const double rebuilt = timer.nsecsElapsed() / 1e6;
        if (!idle.wait(60000))
            return { -1, -1, { -1, -1 } };
        const double updated = timer.nsecsElapsed() / 1e6;
        // The last pictures reach the screen with the next paint.
        QTest::qWait(20);
        return { rebuilt, updated, watch.stop() };
    };
    QVector<double> rebuiltMs;
    QVector<Round> firsts, changes;
    for (int round = 0; round < kRounds; ++round) {
        // Nothing read yet: every project is opened.
        QDir(ThumbnailCache::defaultFolder()).removeRecursively();
        const Round first = change();
        // One project saved again since.
        const int changed = (round * 7) % kCards;
        if (!TestFiles::setModified(paths.at(changed), saved.addSecs(round + 1)))
            return 1;
        const Round again = change();
        if (first.updatedMs < 0 || again.updatedMs < 0) {
            out << "the cards did not get their pictures\n";
            return 1;
        }
        firsts.append(first);
        changes.append(again);
        rebuiltMs << first.rebuiltMs << again.rebuiltMs;
    }

    QElapsedTimer timer;
    QVector<double> bareMs;
    for (int round = 0; round < kRounds; ++round) {
        timer.start();
        for (const QByteArray &bytes : qAsConst(pictures))
            QImage::fromData(bytes).scaled(150, 150, Qt::KeepAspectRatio, Qt::SmoothTransformation);
        bareMs.append(timer.nsecsElapsed() / 1e6);
    }

    const double bare = median(bareMs);
    const auto number = [](double value) { return QString::number(value, 'f', 1); };
    const auto summary = [&number](const QVector<Round> &rounds) {
        QVector<double> updated, wall, own;
        for (const Round &round : rounds) {
            updated.append(round.updatedMs);
            wall.append(round.blocked.wallMs);
            own.append(round.blocked.ownMs);
        }
        return QStringLiteral("all pictures in %1 ms; longest main-thread block %2 ms (worst %3 ms), of which its "
                              "own work %4 ms (worst %5 ms)")
            .arg(number(median(updated)), number(median(wall)), number(*std::max_element(wall.begin(), wall.end())),
                number(median(own)), number(*std::max_element(own.begin(), own.end())));
    };
    QVector<double> firstMs;
    for (const Round &round : qAsConst(firsts))
        firstMs.append(round.updatedMs);
    out << "recent cards: " << kCards << " cards (" << pictures.size() << " with a picture), median of " << kRounds
        << " rounds (target: no block over 50 ms):\n"
        << "  first build, every project read: " << summary(firsts) << "; "
        << QString::number(median(firstMs) / bare, 'f', 2) << "x the bare decoding and scaling (" << number(bare)
        << " ms)\n"
        << "  rebuild after one project changed: " << summary(changes) << '\n'
        << "  making the cards themselves, on the main thread at each change: " << number(median(rebuiltMs)) << " ms\n";
    return 0;
}
