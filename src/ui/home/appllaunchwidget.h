#ifndef APPLLAUNCHWIDGET_H
#define APPLLAUNCHWIDGET_H

#include "editorinfo.h"

#include <QString>
#include <QStringList>
#include <QWidget>

class ProcessLauncher;

namespace Ui {
class ApplLaunchWidget;
}

// One tile of the launch page: a press with the left button, or Enter while
// it has the keyboard focus, starts that editor version without a project.
// A project file dropped on it opens in this version.
class ApplLaunchWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ApplLaunchWidget(QWidget *parent = nullptr);
    ~ApplLaunchWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void setEditorInfo(const EditorInfo &editor);
    // What takes the keyboard focus: the frame, which shows it.
    QWidget *getFocusWidget() const;

public slots:
    // Opens the first project among the files in this version.
    void openFiles(const QStringList &files);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    // Starts this version with the project (none: empty); false after a box
    // that says why it did not start.
    bool startEditor(const QString &project);
    void showDropTarget(bool shown);

    Ui::ApplLaunchWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    EditorInfo m_editor;
    QString m_applName;
    QString m_displayVersion;
    QString m_path;
};

#endif // APPLLAUNCHWIDGET_H
