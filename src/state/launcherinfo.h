#ifndef LAUNCHERINFO_H
#define LAUNCHERINFO_H

#include "editorinfo.h"

// This launcher's installed version. Type and edition are fixed, so its JSON
// form carries neither.
class LauncherInfo : public EditorInfo
{
    Q_OBJECT

public:
    explicit LauncherInfo(QObject *parent = nullptr);
    LauncherInfo(const QString &applName, const QString &version, const QString &path, const QString &uninstallerPath,
        QObject *parent = nullptr);
    LauncherInfo(const QJsonObject &json, bool *error, QObject *parent = nullptr);
    // Copies without the parent.
    LauncherInfo(const LauncherInfo &other);
    ~LauncherInfo() override;

    LauncherInfo &operator=(const LauncherInfo &other);

    QJsonObject toJson() const;
};

#endif // LAUNCHERINFO_H
