#ifndef RECENTUSEDWIDGET_H
#define RECENTUSEDWIDGET_H

#include <QFileSystemWatcher>
#include <QModelIndex>
#include <QTimer>
#include <QWidget>

class ProcessLauncher;
class QStandardItemModel;
class RecentUsedItemDelegate;

namespace Ui {
class RecentUsedWidget;
}

// The recent projects as cards, most recently opened first. A double click
// opens the project again in the editor that last opened it.
class RecentUsedWidget : public QWidget
{
    Q_OBJECT

public:
    explicit RecentUsedWidget(QWidget *parent = nullptr);
    ~RecentUsedWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    // Rebuilds the cards from the recent-project list.
    void setFileDesc();

public slots:
    void historyInfoUpdated();
    void doubleClicked(const QModelIndex &index);

private slots:
    // Projects opened by double click elsewhere while the window is open
    // reach the manager file from their own processes.
    void managerFileChanged();
    void reloadManagerFile();

private:
    Ui::RecentUsedWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QStandardItemModel *m_model = nullptr;
    RecentUsedItemDelegate *m_delegate = nullptr;
    QFileSystemWatcher m_watcher;
    QTimer m_reloadTimer;
};

#endif // RECENTUSEDWIDGET_H
