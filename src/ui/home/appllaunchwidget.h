#ifndef APPLLAUNCHWIDGET_H
#define APPLLAUNCHWIDGET_H

#include "editorinfo.h"

#include <QString>
#include <QWidget>

class ProcessLauncher;

namespace Ui {
class ApplLaunchWidget;
}

// One tile of the launch page: a press with the left button starts that
// editor version without a project.
class ApplLaunchWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ApplLaunchWidget(QWidget *parent = nullptr);
    ~ApplLaunchWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void setEditorInfo(const EditorInfo &editor);

protected:
    void mousePressEvent(QMouseEvent *event) override;

private:
    Ui::ApplLaunchWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QString m_applName;
    QString m_displayVersion;
    QString m_path;
};

#endif // APPLLAUNCHWIDGET_H
