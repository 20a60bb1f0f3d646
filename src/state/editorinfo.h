#ifndef EDITORINFO_H
#define EDITORINFO_H

#include "applversion.h"

#include <QJsonObject>

// An installed application: its identity plus where its executable and its
// uninstaller lie.
class EditorInfo : public ApplVersion
{
    Q_OBJECT

public:
    explicit EditorInfo(QObject *parent = nullptr);
    EditorInfo(const QString &applType, const QString &edition, const QString &version, QObject *parent = nullptr);
    EditorInfo(const QString &applType, const QString &applName, const QString &edition, const QString &version,
        const QString &path, const QString &uninstallerPath, QObject *parent = nullptr);
    // The short form holds the identity only (type, edition, version); the
    // full form adds name and paths. Reading never fails: error is set false.
    EditorInfo(bool shortForm, const QJsonObject &json, bool *error, QObject *parent = nullptr);
    // Copies without the parent.
    EditorInfo(const EditorInfo &other);
    ~EditorInfo() override;

    EditorInfo &operator=(const EditorInfo &other);

    QString getPath() const { return m_path; }
    QString getUninstallerPath() const { return m_uninstallerPath; }

    // Not empty, and name, path and uninstaller path all given.
    bool isValid() const;
    QJsonObject toJson(bool shortForm) const;

protected:
    QString m_path;
    QString m_uninstallerPath;
};

#endif // EDITORINFO_H
