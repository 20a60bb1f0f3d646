#ifndef SYSTEMSETTINGS_H
#define SYSTEMSETTINGS_H

#include <QByteArray>
#include <QSettings>
#include <QString>

#include <memory>
#include <vector>

// The machine-wide settings stores that installers and the user's Internet
// options write. On Windows these are registry keys; elsewhere INI files under
// the generic configuration folder stand in for them, laid out so that
// allKeys() yields "Subkey/Value" exactly as the registry does.
class SystemSettings
{
public:
    // The uninstall records, one group per installed application, in the
    // order they are read. Off Windows: the user's, which the installers
    // that the launcher runs write, then the launcher's own record that its
    // installation put below the prefix (a package installs for every user at
    // once, as the Windows installer writes the machine's key).
    static std::vector<std::unique_ptr<QSettings>> openUninstallRecords();
    // The current user's Internet settings, or null when this machine has no
    // such source (off Windows: when InternetSettings.ini does not exist).
    static std::unique_ptr<QSettings> openInternetSettings();

    // A cheap token that changes whenever the uninstall records change, so
    // that they are parsed again only then. Empty when no such token can be
    // trusted: on Windows, where a value written into a subkey leaves no
    // trace on the key above it, and while the file is younger than the
    // coarse clock that stamps files can tell apart from a second write.
    static QByteArray uninstallRecordsStamp();

    // Paths of the INI stand-ins; empty on Windows.
    static QString uninstallRecordsFile();
    // <prefix>/share/zanmir-launcher/UninstallRecords.ini, beside the
    // executable's <prefix>/bin.
    static QString installationRecordFile();
    static QString internetSettingsFile();
};

#endif // SYSTEMSETTINGS_H
