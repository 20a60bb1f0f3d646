#ifndef SYSTEMSETTINGS_H
#define SYSTEMSETTINGS_H

#include <QSettings>
#include <QString>

#include <memory>

// The machine-wide settings stores that installers and the user's Internet
// options write. On Windows these are registry keys; elsewhere INI files under
// the generic configuration folder stand in for them, laid out so that
// allKeys() yields "Subkey/Value" exactly as the registry does.
class SystemSettings
{
public:
    // The uninstall records: one group per installed application.
    static std::unique_ptr<QSettings> openUninstallRecords();
    // The current user's Internet settings, or null when this machine has no
    // such source (off Windows: when InternetSettings.ini does not exist).
    static std::unique_ptr<QSettings> openInternetSettings();

    // Paths of the INI stand-ins; empty on Windows.
    static QString uninstallRecordsFile();
    static QString internetSettingsFile();
};

#endif // SYSTEMSETTINGS_H
