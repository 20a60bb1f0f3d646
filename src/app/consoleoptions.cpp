#include "consoleoptions.h"

#include "systemenvironment.h"

#include <QByteArray>

#include <cstdio>

ConsoleOptions::Request ConsoleOptions::find(int argc, char **argv)
{
    if (!SystemEnvironment::hasConsoleOptions())
        return Request::None;
    for (int i = 1; i < argc; ++i) {
        const QString argument = QString::fromLocal8Bit(argv[i]);
        if (SystemEnvironment::isFileArgument(argument))
            continue;
        if (argument == QLatin1String("--help") || argument == QLatin1String("-h"))
            return Request::Help;
        if (argument == QLatin1String("--version"))
            return Request::Version;
    }
    return Request::None;
}

int ConsoleOptions::answer(Request request)
{
    const QByteArray text = (request == Request::Version ? versionText() : usage()).toLocal8Bit() + '\n';
    // A full disk or a closed pipe must not pass for an answer given.
    if (std::fwrite(text.constData(), 1, size_t(text.size()), stdout) != size_t(text.size())
        || std::fflush(stdout) != 0) {
        std::fputs("ZanmirLauncher: cannot write to standard output\n", stderr);
        return 1;
    }
    return 0;
}

// Not translated: the language is a choice kept in the manager file, which
// these answers must not read.
QString ConsoleOptions::usage()
{
    return QStringLiteral("Usage: ZanmirLauncher [OPTION]... [PROJECT]\n"
                          "\n"
                          "Starts the Vorlix Zanmir Editor version for PROJECT (a .zmr or .xml project\n"
                          "file): the default version if one is set, otherwise the version that saved\n"
                          "it; then ends. Without PROJECT, opens the launcher's window.\n"
                          "\n"
                          "Options:\n"
                          "  -h, --help     show this help and exit\n"
                          "      --version  show the launcher's version and exit\n"
                          "  /test, -test   use the test area of the update server\n"
                          "\n"
                          "Other options are ignored. The manual page ZanmirLauncher(1) lists the\n"
                          "files the launcher keeps and the environment variables it reads.");
}

QString ConsoleOptions::versionText()
{
    return QStringLiteral("Zanmir Launcher " ZANMIR_LAUNCHER_VERSION);
}
