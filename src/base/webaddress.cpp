#include "webaddress.h"

#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace {

// Enough of an address to recognise it in the log.
const int kLoggedLength = 300;

} // namespace

bool WebAddress::isWebAddress(const QString &text)
{
    return text.startsWith(QLatin1String("http://"), Qt::CaseInsensitive)
        || text.startsWith(QLatin1String("https://"), Qt::CaseInsensitive);
}

bool WebAddress::isLoopbackHost(const QString &host)
{
    if (host.compare(QLatin1String("localhost"), Qt::CaseInsensitive) == 0 || host == QLatin1String("::1"))
        return true;
    // Four decimal parts, the first 127: "127.0.0.1.example" is a name.
    const QStringList parts = host.split(QLatin1Char('.'));
    if (parts.size() != 4 || parts.first() != QLatin1String("127"))
        return false;
    return std::all_of(parts.cbegin(), parts.cend(), [](const QString &part) {
        const bool digits = !part.isEmpty() && part.size() <= 3 && std::all_of(part.cbegin(), part.cend(), [](QChar c) {
            return c >= QLatin1Char('0') && c <= QLatin1Char('9');
        });
        return digits && part.toInt() <= 255;
    });
}

bool WebAddress::isExposed(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") && !isLoopbackHost(url.host());
}

QString WebAddress::forLog(const QString &text)
{
    const QUrl url(text, QUrl::TolerantMode);
    QString shown = url.password().isEmpty() ? text : url.toString(QUrl::RemovePassword);
    if (shown.size() > kLoggedLength)
        shown = QStringLiteral("%1... (%2 characters)").arg(shown.left(kLoggedLength)).arg(text.size());
    return shown;
}
