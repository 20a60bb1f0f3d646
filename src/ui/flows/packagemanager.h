#ifndef PACKAGEMANAGER_H
#define PACKAGEMANAGER_H

#include "editorinfo.h"

#include <QObject>
#include <QString>

class ProcessLauncher;
class QWidget;

// The user's conversation around installing, updating and uninstalling an
// editor version: it checks the network, asks the catalogue what to fetch,
// shows the history for consent, runs the download dialog and the
// uninstaller, and asks at the end whether the outside installer has really
// finished. Only a yes to that tells the pages to refresh.
class PackageManager : public QObject
{
    Q_OBJECT

public:
    // The widget is the parent of every box and dialog shown here.
    explicit PackageManager(QWidget *parent);
    ~PackageManager() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void setEditorInfo(const EditorInfo &editor);

    bool isCurrentEditor() const;
    bool isPinnedVersion() const;
    void setCurrentEditor(bool on);
    void setPinnedVersion(bool on);

    // version: the version text of the catalogue entry the user picked.
    void installEditor(const QString &version);
    void updateEditor();
    void uninstallEditor();
    void showUpdateHistories();

private:
    // 1 update, 2 install, 3 show only; the dialog's result.
    int showUpdateHistoryDialog(int mode, const QString &applName, const QString &version);
    // Where the installer of a catalogue version lies, or a box saying that
    // it is not known.
    bool findInstaller(
        const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName);
    // The download dialog from start to end; true when the installer ran.
    bool downloadAndRun(const QString &url, const QString &fileName);
    bool networkAvailable(const QString &operation, const QString &cannot);
    bool askFinished(const QString &question);

    QWidget *m_parentWidget;
    ProcessLauncher *m_launcher = nullptr;
    EditorInfo m_editor;
};

#endif // PACKAGEMANAGER_H
