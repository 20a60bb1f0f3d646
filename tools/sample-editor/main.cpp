// A stand-in for an installed editor: records how it was started and exits.
//
// Each start appends one line to the file that ZANMIR_SAMPLE_EDITOR_LOG names:
// a JSON array of the program path as started (argv[0], so a link per
// version tells the versions apart) followed by the arguments.
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString logPath = qEnvironmentVariable("ZANMIR_SAMPLE_EDITOR_LOG");
    if (logPath.isEmpty())
        return 0;

    const QJsonArray line = QJsonArray::fromStringList(QCoreApplication::arguments());
    // Unbuffered append: one write per line, so concurrent starts do not interleave.
    QFile log(logPath);
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        return 0;
    log.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
    return 0;
}
