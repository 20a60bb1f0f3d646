#ifndef RECENTUSEDWIDGET_H
#define RECENTUSEDWIDGET_H

#include <QModelIndex>
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

private:
    Ui::RecentUsedWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QStandardItemModel *m_model = nullptr;
    RecentUsedItemDelegate *m_delegate = nullptr;
};

#endif // RECENTUSEDWIDGET_H
