#ifndef INSTALLEDEDITORWIDGET_H
#define INSTALLEDEDITORWIDGET_H

#include <QWidget>

class ProcessLauncher;

// The editor management page: one row per installed version.
class InstalledEditorWidget : public QWidget
{
    Q_OBJECT

public:
    explicit InstalledEditorWidget(QWidget *parent = nullptr);
    ~InstalledEditorWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void rebuildRows();

private:
    ProcessLauncher *m_launcher = nullptr;
};

#endif // INSTALLEDEDITORWIDGET_H
