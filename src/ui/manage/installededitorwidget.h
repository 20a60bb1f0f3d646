#ifndef INSTALLEDEDITORWIDGET_H
#define INSTALLEDEDITORWIDGET_H

#include "editorinfo.h"

#include <QList>
#include <QWidget>

class ApplUpdateInfo;
class ProcessLauncher;
class VersionDescWidget;

namespace Ui {
class InstalledEditorWidget;
}

// The editor management page: one row per installed version, a notice when
// a newer series is on offer, and the install control. Each rebuild of the
// rows also works out which update badge the menu strip shows.
class InstalledEditorWidget : public QWidget
{
    Q_OBJECT

public:
    explicit InstalledEditorWidget(QWidget *parent = nullptr);
    ~InstalledEditorWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void rebuildRows();
    void setVersionDesc(const QList<EditorInfo> &editors);
    // The two halves of the first rebuild, for a window that shows the menu
    // strip's badge before it makes the rows of this hidden page: the badge
    // and the notice, then the rows alone.
    void noticeVersions();
    void buildRows();

public slots:
    void currentRowChanged(int row);
    void currentEditorInfoUpdated();
    void pinnedVersionInfoUpdated();
    void refreshButtonClicked();
    void installationConfirmed();
    // What the last package flow changed, shown under the notice until the
    // next flow tells its own.
    void installationNoted(const QString &note);

private:
    void makeRows(const QList<EditorInfo> &editors);
    void showNotice(bool recentVersionFound, const ApplUpdateInfo &recent, bool noEditor);

    Ui::InstalledEditorWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QList<VersionDescWidget *> m_rows;
    QString m_note;
};

#endif // INSTALLEDEDITORWIDGET_H
