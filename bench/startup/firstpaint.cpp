// Preloaded (LD_PRELOAD) into a program by bench_startup: notes when the
// program's first window has been painted and ends the program there.
//
// The first time the window system exposes a top-level window, the probe
// lets the window handle that (it paints and puts its contents on the
// screen), then appends the monotonic clock in ns, the process's processor
// time in ns and the window's object name to the file that
// ZANMIR_BENCH_PAINT_LOG names, and quits the application.
#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QWidget>
#include <QWindow>

#include <chrono>
#include <ctime>

namespace {

class FirstPaint : public QObject
{
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *window = qobject_cast<QWindow *>(watched);
        if (m_seen || event->type() != QEvent::Expose || !window || !window->isTopLevel() || !window->isExposed())
            return false;
        QWidget *widget = nullptr;
        for (QWidget *topLevel : QApplication::topLevelWidgets()) {
            if (topLevel->windowHandle() == window)
                widget = topLevel;
        }
        if (!widget)
            return false;
        m_seen = true;
        // Handled here and now, so that the time is taken once the paint is over.
        static_cast<QObject *>(window)->event(event);
        // The same clock as the parent's, which started the program.
        const qint64 now
            = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now().time_since_epoch())
                  .count();
        // And the processor time of all of its threads so far, which the
        // load of other programs on the machine moves far less.
        timespec cpu {};
        clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &cpu);
        const qint64 cpuNs = qint64(cpu.tv_sec) * 1000000000 + cpu.tv_nsec;
        QFile log(qEnvironmentVariable("ZANMIR_BENCH_PAINT_LOG"));
        if (log.open(QIODevice::WriteOnly | QIODevice::Append))
            log.write(
                QByteArray::number(now) + ' ' + QByteArray::number(cpuNs) + ' ' + widget->objectName().toUtf8() + '\n');
        QMetaObject::invokeMethod(QCoreApplication::instance(), "quit", Qt::QueuedConnection);
        return true;
    }

private:
    bool m_seen = false;
};

void installFirstPaint()
{
    // Programs that this one starts must not inherit the preload.
    qunsetenv("LD_PRELOAD");
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        QCoreApplication::instance()->installEventFilter(new FirstPaint(QCoreApplication::instance()));
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(installFirstPaint)
