#ifndef HOMEWIDGET_H
#define HOMEWIDGET_H

#include <QWidget>

class ProcessLauncher;

namespace Ui {
class HomeWidget;
}

// The launch page: a band of tiles, one per installed editor, above the
// recent projects.
class HomeWidget : public QWidget
{
    Q_OBJECT

public:
    explicit HomeWidget(QWidget *parent = nullptr);
    ~HomeWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void refreshRecentProjects();

private:
    Ui::HomeWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
};

#endif // HOMEWIDGET_H
