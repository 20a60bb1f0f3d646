// The work that any open-with start cannot avoid, and nothing else: an
// application object, one GET of the catalogue, and the editor started
// detached with the project. bench_startup measures the launcher against it.
//
// Usage: bench_startup_bare URL EDITOR PROJECT
#include <QApplication>
#include <QEventLoop>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QProcess>
#include <QUrl>

int main(int argc, char *argv[])
{
    QApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4)
        return 2;

    QNetworkAccessManager manager;
    QNetworkReply *reply = manager.get(QNetworkRequest(QUrl(arguments.at(1))));
    QEventLoop loop;
    QObject::connect(reply, SIGNAL(finished()), &loop, SLOT(quit()));
    if (!reply->isFinished())
        loop.exec();
    const bool fetched = reply->error() == QNetworkReply::NoError && !reply->readAll().isEmpty();
    delete reply;

    return fetched && QProcess::startDetached(arguments.at(2), { arguments.at(3) }) ? 0 : 1;
}
