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
// editors: pinned versions first. For the keyboard the band is one stop of
// the Tab chain, between the two widgets given; the arrow keys move from
// tile to tile.
class LaunchButtonWidget : public QWidget
{
    Q_OBJECT

public:
    explicit LaunchButtonWidget(QWidget *parent = nullptr);
    ~LaunchButtonWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    void rebuildButtons();
    // Where the tiles stand in the Tab chain.
    void setTabNeighbours(QWidget *before, QWidget *after);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

public slots:
    void pinnedVersionInfoUpdated();
    void refreshButtonClicked();
    void installationConfirmed();
    void currentRowChanged(int row);

private:
    // The tile that Tab reaches: the one last focused, while it exists.
    void setTabStop(int index);

    Ui::LaunchButtonWidget *ui;
    QWidget *m_tabBefore = nullptr;
    QWidget *m_tabAfter = nullptr;
    ProcessLauncher *m_launcher = nullptr;
    QList<ApplLaunchWidget *> m_tiles;
};

#endif // LAUNCHBUTTONWIDGET_H
