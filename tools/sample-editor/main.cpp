// A stand-in for an installed editor: records how it was started and exits.
//
// Each start appends one line to the file that ZANMIR_SAMPLE_EDITOR_LOG names:
// a JSON array of the program path as started (argv[0], so a link per
// version tells the versions apart) followed by the arguments. When
// ZANMIR_SAMPLE_EDITOR_ENV_LOG names a file, each start also appends its
// environment there, as a JSON array of "NAME=value" texts.
#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcessEnvironment>

namespace {

void appendLine(const QString &path, const QJsonArray &line)
{
    // Unbuffered append: one write per line, so concurrent starts do not interleave.
    QFile log(path);
    if (log.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        log.write(QJsonDocument(line).toJson(QJsonDocument::Compact) + '\n');
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QString environmentLog = qEnvironmentVariable("ZANMIR_SAMPLE_EDITOR_ENV_LOG");
    if (!environmentLog.isEmpty())
        appendLine(environmentLog, QJsonArray::fromStringList(QProcessEnvironment::systemEnvironment().toStringList()));
    const QString logPath = qEnvironmentVariable("ZANMIR_SAMPLE_EDITOR_LOG");
    if (logPath.isEmpty())
        return 0;

    appendLine(logPath, QJsonArray::fromStringList(QCoreApplication::arguments()));
    return 0;
}
