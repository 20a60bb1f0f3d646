#ifndef RECENTUSEDWIDGET_H
#define RECENTUSEDWIDGET_H

#include <QFileSystemWatcher>
#include <QHash>
#include <QImage>
#include <QModelIndex>
#include <QMultiHash>
#include <QTimer>
#include <QWidget>

class ProcessLauncher;
class QStandardItem;
class QStandardItemModel;
class RecentUsedItemDelegate;
class ThumbnailReader;

namespace Ui {
class RecentUsedWidget;
}

// The recent projects as cards, most recently opened first. A double click
// opens the project again in the editor that last opened it. The cards show
// at once, with the picture they had or the default one; the projects'
// pictures are read off the main thread and each replaces its card's when
// it arrives, so that no project holds up the window.
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
    void thumbnailRead(const QString &path, const QImage &picture);

private:
    Ui::RecentUsedWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QStandardItemModel *m_model = nullptr;
    RecentUsedItemDelegate *m_delegate = nullptr;
    ThumbnailReader *m_reader;
    // The cards of the current model by project path, and the pictures last
    // read for them (null: the project has none).
    QMultiHash<QString, QStandardItem *> m_cards;
    QHash<QString, QImage> m_pictures;
    QFileSystemWatcher m_watcher;
    QTimer m_reloadTimer;
};

#endif // RECENTUSEDWIDGET_H
