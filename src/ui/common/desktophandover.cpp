#include "desktophandover.h"

#include "webaddress.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

DesktopHandOver::Opener &opener()
{
    static DesktopHandOver::Opener instance;
    return instance;
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
    if (!isAllowed(url))
        return false;
    return opener() ? opener()(url) : QDesktopServices::openUrl(url);
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
