#include "desktophandover.h"

#include "webaddress.h"

#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

DesktopHandOver::Opener &opener()
{
    static DesktopHandOver::Opener instance;
    return instance;
}

bool handOver(const QUrl &url)
{
    return opener() ? opener()(url) : QDesktopServices::openUrl(url);
}

} // namespace

bool DesktopHandOver::isAllowed(const QUrl &url)
{
    const QString scheme = url.scheme();
    if (scheme == QLatin1String("mailto"))
        return !url.path().isEmpty();
    return (scheme == QLatin1String("http") || scheme == QLatin1String("https")) && !url.host().isEmpty();
}

bool DesktopHandOver::open(const QUrl &url)
{
    return isAllowed(url) && handOver(url);
}

bool DesktopHandOver::showFolder(const QString &folderPath)
{
    // A folder, never a file: the desktop would start a file's program.
    const QFileInfo folder(folderPath);
    if (!folder.isAbsolute() || !folder.isDir())
        return false;
    return handOver(QUrl::fromLocalFile(QDir::cleanPath(folder.absoluteFilePath())));
}

QString DesktopHandOver::refusalText(const QUrl &url)
{
    return QStringLiteral("Refused to hand over [%1]: only http, https and mailto addresses go to the desktop")
        .arg(WebAddress::forLog(url.toString()));
}

void DesktopHandOver::setOpener(const Opener &replacement)
{
    opener() = replacement;
}
