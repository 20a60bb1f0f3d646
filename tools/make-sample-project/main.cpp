// Writes a sample project file, healthy or broken, for the demo and manual tests.
#include "sampleproject.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTextStream>

namespace {

int fail(const QString &message)
{
    QTextStream(stderr) << "make-sample-project: " << message << '\n';
    return 2;
}

bool writeCorrupt(const QString &path, const QString &kind, const QString &packed, bool xml)
{
    if (kind == QLatin1String("garbage"))
        return SampleProject::writeFile(path, QByteArrayLiteral("\x01\x02 this is neither an archive nor XML\n"));
    if (kind == QLatin1String("no-entries"))
        return SampleProject::writeArchive(path, {});
    if (kind == QLatin1String("empty-entry"))
        return SampleProject::writeArchive(path, { { QStringLiteral("document.txt"), QByteArray() } });
    if (kind == QLatin1String("bad-signature")) {
        const QString signature = QStringLiteral("xyz");
        return xml ? SampleProject::writeFile(path, SampleProject::xmlText(packed, QStringLiteral("1"), signature))
                   : SampleProject::writeArchive(path,
                       { { QStringLiteral("document.txt"),
                           SampleProject::documentText(packed, QStringLiteral("12"), signature) } });
    }
    if (kind == QLatin1String("old-format")) {
        return xml
            ? SampleProject::writeFile(path, SampleProject::xmlText(packed, QStringLiteral("0")))
            : SampleProject::writeArchive(path,
                { { QStringLiteral("document.txt"), SampleProject::documentText(packed, QStringLiteral("11")) } });
    }
    return false;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Writes a project file saved by VERSION (A.B.C.D, default 2.1.0.5) in the form that the\n"
                       "suffix of FILE names: .zmr (zip archive) or .xml.\n"
                       "--corrupt writes a broken file instead; KIND is one of:\n"
                       "  garbage        neither a zip archive nor XML (any suffix)\n"
                       "  no-entries     a zip archive without entries\n"
                       "  empty-entry    a zip archive whose document.txt is empty\n"
                       "  bad-signature  a header whose signature is not \"zmr\"\n"
                       "  old-format     a format version below the bar (11 in .zmr, 0 in .xml)"));
    parser.addHelpOption();
    const QCommandLineOption corruptOption(
        QStringLiteral("corrupt"), QStringLiteral("Write a broken file of KIND."), QStringLiteral("KIND"));
    parser.addOption(corruptOption);
    const QCommandLineOption thumbnailOption(QStringLiteral("thumbnail"),
        QStringLiteral("Store the picture in PNG (an image file) with the project, as the editor does."),
        QStringLiteral("PNG"));
    parser.addOption(thumbnailOption);
    parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The project file to write."));
    parser.addPositionalArgument(
        QStringLiteral("VERSION"), QStringLiteral("The editor version that saved it."), QStringLiteral("[VERSION]"));
    parser.process(app);

    const QStringList positional = parser.positionalArguments();
    if (positional.isEmpty() || positional.size() > 2)
        return fail(QStringLiteral("expected FILE and an optional VERSION; see --help"));
    const QString path = positional.at(0);
    const QString version = positional.size() > 1 ? positional.at(1) : QStringLiteral("2.1.0.5");

    if (!parser.isSet(corruptOption)) {
        QByteArray thumbnail;
        if (parser.isSet(thumbnailOption)) {
            QFile picture(parser.value(thumbnailOption));
            if (!picture.open(QIODevice::ReadOnly))
                return fail(QStringLiteral("cannot read the picture: %1").arg(picture.fileName()));
            thumbnail = picture.readAll();
        }
        QString errorText;
        return SampleProject::writeProject(path, version, &errorText, thumbnail) ? 0 : fail(errorText);
    }

    QString packed;
    if (!SampleProject::packVersionText(version, packed))
        return fail(QStringLiteral("not a version of four numbers from 0 to 65535: %1").arg(version));
    const QString suffix = QFileInfo(path).suffix().toLower();
    const QString kind = parser.value(corruptOption);
    if (kind != QLatin1String("garbage") && suffix != QLatin1String("zmr") && suffix != QLatin1String("xml"))
        return fail(QStringLiteral("unknown project suffix, expected zmr or xml: %1").arg(path));
    if ((kind == QLatin1String("no-entries") || kind == QLatin1String("empty-entry")) && suffix != QLatin1String("zmr"))
        return fail(QStringLiteral("%1 needs a .zmr file").arg(kind));
    if (!writeCorrupt(path, kind, packed, suffix == QLatin1String("xml")))
        return fail(QStringLiteral("unknown kind or failed to write: %1 %2").arg(kind, path));
    return 0;
}
