#ifndef LAUNCHBUTTONWIDGET_H
#define LAUNCHBUTTONWIDGET_H

#include <QList>
#include <QWidget>

class ApplLaunchWidget;
class ProcessLauncher;

namespace Ui {
class LaunchButtonWidget;
}

// The band of tiles on the launch page, in the order of the installed
// editors: pinned versions first.
class LaunchButtonWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LaunchButtonWidget(QWidget *parent = nullptr);
    ~LaunchButtonWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void rebuildButtons();

public slots:
    void pinnedVersionInfoUpdated();
    void refreshButtonClicked();
    void installationConfirmed();
    void currentRowChanged(int row);

private:
    Ui::LaunchButtonWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QList<ApplLaunchWidget *> m_tiles;
};

#endif // LAUNCHBUTTONWIDGET_H
