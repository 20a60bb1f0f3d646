// Proxy check and offline page store.
#include "processlauncher.h"

#include "offlinefileinfo.h"
#include "offlinefilemanager.h"
#include "proxyhelper.h"
#include "textfilereader.h"
#include "textfilewriter.h"

#include <QMessageBox>

void ProcessLauncher::checkProxy()
{
    if (!ProxyHelper::applyStartupProxy())
        return;
    // The warning stops nothing; start-up goes on once it is closed.
    QMessageBox::critical(nullptr, tr("Error"),
        tr("An incompatible proxy setting was detected.\n"
           "This software may not operate properly, such as display of a web page or "
           "authentication of a license.\n\n"
           "The corresponding proxy settings are as follows.\n"
           "* A proxy server is manually specified.\n"
           "* The proxy is specified by the IP address(not the domain name).\n\n"
           "For details, refer to the online manual.\n"),
        QMessageBox::Ok, QMessageBox::NoButton);
}

// The folder of the index and of the page files.
static QString offlineFolder(const QString &targetSystemName)
{
    return targetSystemName == QLatin1String("macosx") ? QCoreApplication::applicationDirPath()
                                                       : ProcessLauncher::launcherDataFolder();
}

bool ProcessLauncher::readOfflineFileInfo()
{
    const QString folder = ensureFolder(offlineFolder(getTargetSystemName()));
    const QString path = QStringLiteral("%1/%2").arg(folder, QStringLiteral("OfflineFiles.json"));

    // Called once at start-up; a second call starts over from the file.
    delete m_offlineFiles;
    m_offlineFiles = new OfflineFileManager(path, this);
    if (m_offlineFiles->readIndexFile())
        return true;

    // An index that cannot be read is replaced; the old page files are then
    // overwritten as their numbers are given out again.
    const auto rebuild = [this]() {
        const bool created = m_offlineFiles->createIndexFile();
        writeLog(QStringLiteral("ProcessLauncher::readOfflineFileInfo: %1").arg(m_offlineFiles->getInfoText()));
        return created && m_offlineFiles->readIndexFile();
    };
    if (rebuild())
        return true;

    // Opening a project needs no offline copy.
    setAsideStateFile(QStringLiteral("ProcessLauncher::readOfflineFileInfo"), path, [this, &rebuild](QString &reason) {
        if (rebuild())
            return true;
        reason = m_offlineFiles->getInfoText();
        return false;
    });
    return true;
}

bool ProcessLauncher::saveOfflineFileInfo()
{
    return m_offlineFiles && m_offlineFiles->updateIndexFile();
}

OfflineFileInfo ProcessLauncher::getOfflineFileInfo(const QString &url)
{
    if (!m_offlineFiles)
        return OfflineFileInfo(0, url);
    return m_offlineFiles->findInfo(url);
}

OfflineFileInfo ProcessLauncher::createOfflineFileInfo(const QString &url)
{
    if (!m_offlineFiles)
        return OfflineFileInfo(0, url);

    OfflineFileInfo info = m_offlineFiles->addInfo(OfflineFileInfo(0, url));
    writeLog(QStringLiteral("OfflineFile::createOfflineFileInfo: %1").arg(m_offlineFiles->getInfoText()));
    if (saveOfflineFileInfo()) {
        writeLog(QStringLiteral("OfflineFile::createOfflineFileInfo: %1").arg(m_offlineFiles->getInfoText()));
    } else {
        writeLog(QStringLiteral("OfflineFile::createOfflineFileInfo: %1").arg(m_offlineFiles->getErrorText()));
        // The entry stays in memory and reaches the file with the next
        // successful write, but no page is written under a number the index
        // does not know yet.
        info.setSerialNo(0);
    }
    return info;
}

QString ProcessLauncher::getOfflineFileName(const OfflineFileInfo &info)
{
    if (info.getSerialNo() < 1) {
        writeLog(QStringLiteral("OfflineFile::getOfflineFileName: Failed to retrieve offline file name."));
        return QString();
    }
    return OfflineFileManager::pageFileName(ensureFolder(offlineFolder(getTargetSystemName())), info.getSerialNo());
}

bool ProcessLauncher::saveOfflineFile(const QString &url, const QString &contents)
{
    OfflineFileInfo info = getOfflineFileInfo(url);
    if (info.getSerialNo() < 1)
        info = createOfflineFileInfo(url);

    const QString fileName = getOfflineFileName(info);
    if (fileName.isEmpty())
        return false;
    // The catalogue is saved at every start, mostly as it was; a copy that
    // holds the text already is left as it is.
    TextFileReader current(fileName);
    if (current.read() && current.getContents() == contents)
        return true;
    TextFileWriter writer(fileName);
    if (writer.replace(contents))
        return true;
    writeLog(
        QStringLiteral("OfflineFile::saveOfflineFile: Failed to save contents: URL[%1] file[%2]").arg(url, fileName));
    return false;
}

QString ProcessLauncher::restoreOfflineFile(const QString &url)
{
    const OfflineFileInfo info = getOfflineFileInfo(url);
    if (info.getSerialNo() < 1) {
        writeLog(
            QStringLiteral("OfflineFile::restoreOfflineFile: Failed to retrieve OfflineFileInfo: URL[%1]").arg(url));
        return QString();
    }
    const QString fileName = getOfflineFileName(info);
    if (fileName.isEmpty())
        return QString();

    TextFileReader reader(fileName);
    if (!reader.read()) {
        writeLog(QStringLiteral(
            "OfflineFile::restoreOfflineFile: Failed to read contents from offline file: URL[%1] file[%2]")
                     .arg(url, fileName));
        return QString();
    }
    writeLog(QStringLiteral("OfflineFile::restoreOfflineFile: Contents is read from offline file: URL[%1] file[%2]")
                 .arg(url, fileName));
    return reader.getContents();
}
