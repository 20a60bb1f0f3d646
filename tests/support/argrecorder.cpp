// Stands in for an editor in tests: each start appends one line to the file
// named by ZANMIR_ARGS_LOG, a JSON array of argv with the program itself first.
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

int main(int argc, char *argv[])
{
    const QByteArray logName = qgetenv("ZANMIR_ARGS_LOG");
    if (logName.isEmpty())
        return 2;

    QJsonArray arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));

    QFile log(QFile::decodeName(logName));
    if (!log.open(QIODevice::WriteOnly | QIODevice::Append))
        return 1;
    log.write(QJsonDocument(arguments).toJson(QJsonDocument::Compact) + '\n');
    return 0;
}
