#ifndef PACKAGEMANAGER_H
#define PACKAGEMANAGER_H

#include "editorinfo.h"
#include "updatehistorywidget.h"

#include <QList>
#include <QObject>
#include <QString>

class ProcessLauncher;
class QWidget;
class RecordsChange;

// The user's conversation around installing, updating and uninstalling an
// editor version: it checks the network, asks the catalogue what to fetch,
// shows the history for consent, and runs the download dialog, the
// installer and the uninstaller. What they did it reads from the uninstall
// records before and after: the lists refresh at once when the records
// changed, with a note of what changed, and only when they did not is the
// user asked whether the outside program has really finished. An update
// removes the old version only once the new one is in the records.
//
// Each flow holds the refresh of the lists from its start to its end, so
// that the row that owns it is not rebuilt under its dialogs.
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
    int showUpdateHistoryDialog(HistoryMode mode, const QString &applName, const QString &version);
    // Where the installer of a catalogue version lies, and that it may be
    // fetched at all, or a box saying why not.
    bool findInstaller(
        const QString &version, QString &applName, QString &displayVersion, QString &url, QString &fileName);
    // The download dialog from start to end; true when the installer ran to
    // its end.
    bool downloadAndRun(const QString &url, const QString &fileName, const QString &applName, const QString &version);
    // The uninstaller with the dialog in front; true when it ran to its end.
    bool runUninstaller(const QString &applName, const QString &version, const QString &command);
    // The old version goes once the new one is in; the lists refresh either way.
    void removeReplacedVersion(const QList<EditorInfo> &before);
    bool networkAvailable(const QString &operation, const QString &cannot);
    bool askFinished(const QString &question);
    // When the launcher closes during a flow, the flow ends without a word.
    bool launcherCloses() const;

    // The installed editors as the uninstall records list them now.
    QList<EditorInfo> readRecords() const;
    // What the records show against those before. When they show no
    // change, the question is asked (the program may have handed its work
    // over and ended), and a yes reads them again. False on No.
    bool readOutcome(
        const QString &operation, const QList<EditorInfo> &before, const QString &question, RecordsChange &change);
    // Tells the pages to refresh, with a note of what changed.
    void announce(const RecordsChange &change);

    QWidget *m_parentWidget;
    ProcessLauncher *m_launcher = nullptr;
    EditorInfo m_editor;
};

#endif // PACKAGEMANAGER_H
