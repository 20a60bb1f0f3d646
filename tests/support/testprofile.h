#ifndef TESTPROFILE_H
#define TESTPROFILE_H

#include <QHash>
#include <QString>
#include <QTemporaryDir>

// A fresh user profile for one test: HOME and the XDG folders point into a
// temporary folder for the object's lifetime, so the launcher's state files,
// uninstall records and log land there and nowhere else. Of several profiles
// alive at once, the newest has the variables.
class TestProfile
{
public:
    TestProfile();
    ~TestProfile();

    // The folder is there and the variables point into it.
    bool isValid() const;
    QString root() const { return m_dir.path(); }
    QString dataHome() const { return root() + QStringLiteral("/data"); }
    // G + "/Vorlix/ZanmirLauncher", made on request.
    QString launcherFolder(bool create = true) const;
    QString managerFile() const { return launcherFolder() + QStringLiteral("/ZanmirManager.json"); }
    // G + "/Vorlix/ZanmirApplications.json", its folder made.
    QString catalogueFile() const;
    QString logFile(const QString &name) const { return launcherFolder(false) + '/' + name + QStringLiteral(".log"); }

    // Writes one group of the uninstall-records stand-in.
    void registerApplication(const QString &subkey, const QHash<QString, QString> &values) const;
    // Registers a version as its installer would, with paths made from the subkey.
    void registerVersion(
        const QString &subkey, const QString &type, const QString &edition, const QString &version) const
    {
        registerApplication(subkey, versionValues(subkey, type, edition, version));
    }
    // The values such an installer writes.
    static QHash<QString, QString> versionValues(
        const QString &subkey, const QString &applType, const QString &edition, const QString &version);
    static QString executablePath(const QString &subkey) { return "/opt/zanmir/" + subkey + "/bin/zanmir"; }
    static QString uninstallerPath(const QString &subkey) { return "/opt/zanmir/" + subkey + "/uninstall"; }

private:
    void pointEnvironmentHere() const;

    QTemporaryDir m_dir;
};

#endif // TESTPROFILE_H
