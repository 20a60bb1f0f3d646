// Which installers may be fetched, and from where.
#include "applupdater.h"

#include "webaddress.h"

#include <QUrl>

void ApplUpdater::setCatalogueUrl(const QString &url)
{
    m_catalogueUrl = url;
}

bool ApplUpdater::checkInstallerSource(const QString &url, const QString &fileName)
{
    if (!WebAddress::isWebAddress(url)) {
        m_errorText = QStringLiteral("Download refused: %1 is not at an http or https address: [%2]")
                          .arg(fileName, WebAddress::forLog(url));
        return false;
    }
    if (!findSha256(fileName).isEmpty())
        return true;
    // The installer is started as it came: over plain http from another
    // machine, nothing tells the maker's file from one swapped on the way.
    const QUrl installer(url, QUrl::TolerantMode);
    const QUrl catalogue(m_catalogueUrl, QUrl::TolerantMode);
    QString exposed;
    if (WebAddress::isExposed(installer))
        exposed = QStringLiteral("it would come over plain http from %1").arg(installer.host());
    else if (WebAddress::isExposed(catalogue))
        exposed = QStringLiteral("the catalogue that names it came over plain http from %1").arg(catalogue.host());
    if (exposed.isEmpty())
        return true;
    m_errorText = QStringLiteral("Download refused: %1 has no SHA-256 in the catalogue, and %2").arg(fileName, exposed);
    return false;
}
