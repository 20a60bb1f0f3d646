// The least a launcher window costs: an application object showing a window
// of the main window's size with a web view in it, the web engine's
// libraries loaded. bench_startup measures the time to its first paint.
//
// Usage: bench_startup_window
#include <QApplication>
#include <QVBoxLayout>
#include <QWebView>
#include <QWidget>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    QWidget window;
    window.setObjectName(QStringLiteral("BareWindow"));
    window.resize(854, 593);
    auto *layout = new QVBoxLayout(&window);
    layout->addWidget(new QWebView(&window));
    window.show();
    return app.exec();
}
