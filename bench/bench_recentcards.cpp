// How long the home page takes to build its 100 recent-project cards from
// real projects: archives and XML files, most with a picture of their own.
// Prints the time per build and its ratio to the bare work of decoding and
// scaling the same pictures from memory, the part no reader can avoid.
#include "editorinfo.h"
#include "processlauncher.h"
#include "recentusedwidget.h"
#include "sampleproject.h"
#include "testfiles.h"
#include "testprofile.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QTextStream>
#include <QTranslator>

namespace {

const int kCards = 100;
const int kRounds = 5;

QByteArray picture(int index)
{
    // A scene with gradients, so the PNG is about as large as a real one.
    QImage image(640, 480, QImage::Format_RGB32);
    QPainter painter(&image);
    QLinearGradient sky(0, 0, 640, 480);
    sky.setColorAt(0, QColor::fromHsv(index * 37 % 360, 120, 230));
    sky.setColorAt(1, QColor::fromHsv(index * 53 % 360, 200, 90));
    painter.fillRect(image.rect(), sky);
    for (int i = 0; i < 40; ++i)
        painter.fillRect(QRect((i * 97 + index) % 600, (i * 61) % 440, 40, 40), QColor::fromHsv(i * 9, 180, 200));
    painter.end();
    return TestFiles::png(image);
}

} // namespace

int main(int argc, char *argv[])
{
    TestProfile profile;
    qputenv("ZANMIR_SERVER_BASE", "http://127.0.0.1:9");
    qputenv("ZANMIR_PUBLIC_HOST", "localhost");
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
    QList<QByteArray> pictures;
    for (int i = 0; i < kCards; ++i) {
        const QByteArray thumbnail = i % 4 == 3 ? QByteArray() : picture(i);
        if (!thumbnail.isEmpty())
            pictures.append(thumbnail);
        const QString path = profile.root() + QStringLiteral("/project-%1.%2").arg(i).arg(i % 3 == 0 ? "xml" : "zmr");
        if (!SampleProject::writeProject(path, QStringLiteral("2.1.5.0"), nullptr, thumbnail)
            || !launcher.addHistoryAfterLaunch(EditorInfo("editor", "release", "2.1.05"), path)) {
            out << "could not write project " << i << '\n';
            return 1;
        }
    }

    RecentUsedWidget widget;
    widget.setProcessLauncher(&launcher);
    QElapsedTimer timer;
    timer.start();
    for (int round = 0; round < kRounds; ++round)
        widget.setFileDesc();
    const double buildMs = timer.nsecsElapsed() / 1e6 / kRounds;

    timer.restart();
    for (int round = 0; round < kRounds; ++round) {
        for (const QByteArray &bytes : qAsConst(pictures))
            QImage::fromData(bytes).scaled(150, 150, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    const double bareMs = timer.nsecsElapsed() / 1e6 / kRounds;

    out << "recent cards: " << kCards << " cards (" << pictures.size() << " with a picture) in "
        << QString::number(buildMs, 'f', 1) << " ms; decoding and scaling the pictures alone "
        << QString::number(bareMs, 'f', 1) << " ms; ratio " << QString::number(buildMs / bareMs, 'f', 2) << '\n';
    return 0;
}
