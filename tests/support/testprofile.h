#ifndef TESTPROFILE_H
#define TESTPROFILE_H

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QTemporaryDir>

// A fresh user profile for one test: HOME and the XDG folders point into a
// temporary folder for the object's lifetime, so the launcher's state files,
// uninstall records and log land there and nowhere else.
class TestProfile
{
public:
    TestProfile();
    ~TestProfile();

    TestProfile(const TestProfile &) = delete;
    TestProfile &operator=(const TestProfile &) = delete;

    bool isValid() const { return m_dir.isValid(); }
    QString root() const { return m_dir.path(); }
    QString dataHome() const;
    QString configHome() const;
    // G + "/Vorlix/ZanmirLauncher", made on request.
    QString launcherFolder(bool create = true) const;
    QString managerFile() const;
    // G + "/Vorlix/ZanmirApplications.json", its folder made.
    QString catalogueFile() const;
    QString logFile(const QString &executableName) const;

    // Writes one group of the uninstall-records stand-in.
    void registerApplication(const QString &subkey, const QHash<QString, QString> &values) const;
    void unregisterApplication(const QString &subkey) const;
    // Registers a version of the editor or the launcher the way its
    // installer would, with paths made from the subkey.
    void registerVersion(
        const QString &subkey, const QString &applType, const QString &edition, const QString &version) const;
    // The values such an installer writes.
    static QHash<QString, QString> versionValues(
        const QString &subkey, const QString &applType, const QString &edition, const QString &version);
    static QString executablePath(const QString &subkey);
    static QString uninstallerPath(const QString &subkey);

private:
    QTemporaryDir m_dir;
    QHash<QByteArray, QByteArray> m_saved;
};

#endif // TESTPROFILE_H
