#ifndef RECENTUSEDWIDGET_H
#define RECENTUSEDWIDGET_H

#include <QFileSystemWatcher>
#include <QHash>
#include <QImage>
#include <QModelIndex>
#include <QMultiHash>
#include <QSet>
#include <QTimer>
#include <QWidget>

class EditorInfo;
class HistoryInfo;
class ProcessLauncher;
class QPoint;
class QStandardItem;
class QStandardItemModel;
class RecentUsedItemDelegate;
class ThumbnailReader;

namespace Ui {
class RecentUsedWidget;
}

// The recent projects as cards, most recently opened first. A double click
// (or Enter) opens the project again in the editor that last opened it; a
// card's menu (right click, or the menu key) opens it in any installed
// version, shows its folder, copies its path or removes it from the list,
// and Delete removes it too. A filter narrows the cards to the projects
// whose file name or folder holds its text. The cards show at once, with
// the picture they had or the default one; the projects' pictures are read
// off the main thread and each replaces its card's when it arrives, so that
// no project holds up the window.
class RecentUsedWidget : public QWidget
{
    Q_OBJECT

public:
    explicit RecentUsedWidget(QWidget *parent = nullptr);
    ~RecentUsedWidget() override;

    void setProcessLauncher(ProcessLauncher *launcher);
    // Rebuilds the cards from the recent-project list.
    void setFileDesc();
    // What takes the keyboard focus: the cards.
    QWidget *getFocusWidget() const;
    // While held, no picture is read and the cache is not pruned; the cards
    // show what they have. The window holds them until its first paint, so
    // that the reading threads do not compete with it for the processor.
    void setPicturesHeld(bool held);

public slots:
    void historyInfoUpdated();
    void doubleClicked(const QModelIndex &index);
    // Matched literally, in any letter case; empty shows every project.
    void setFilterText(const QString &text);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private slots:
    // Projects opened by double click elsewhere while the window is open
    // reach the manager file from their own processes.
    void managerFileChanged();
    void reloadManagerFile();
    void thumbnailRead(const QString &path, const QImage &picture);

private:
    // Opens the card's project in that editor (none: the one that last
    // opened it), with the boxes of a double click when something is gone.
    void openProject(const HistoryInfo &history, const EditorInfo *chosen);
    // False, after the box that says so and with the card removed, when the
    // project file is gone.
    bool projectExists(const HistoryInfo &history);
    void showMenu(const QModelIndex &index, const QPoint &globalPosition);
    void showInFolder(const HistoryInfo &history);
    void removeFromList(const HistoryInfo &history);
    bool matchesFilter(const HistoryInfo &history) const;
    // The cards of the projects that match the filter. readAgain: the list
    // changed, and every project is read again for its picture.
    void rebuildCards(bool readAgain);
    // Reads the pictures of those projects, and prunes the cache down to
    // the listed projects when there is a list; or keeps both for later
    // while the pictures are held.
    void readPictures(const QStringList &unread, const QStringList *listed);

    Ui::RecentUsedWidget *ui;
    ProcessLauncher *m_launcher = nullptr;
    QStandardItemModel *m_model = nullptr;
    RecentUsedItemDelegate *m_delegate = nullptr;
    ThumbnailReader *m_reader;
    QString m_filter;
    // The cards of the current model by project path, and the pictures last
    // read for the projects of the list (null: the project has none).
    QMultiHash<QString, QStandardItem *> m_cards;
    QHash<QString, QImage> m_pictures;
    // Projects whose pictures are to be read again when their cards show.
    QSet<QString> m_unread;
    bool m_picturesHeld = false;
    // The latest reads and prune asked for while held.
    QStringList m_heldUnread;
    QStringList m_heldListed;
    bool m_heldPrune = false;
    QFileSystemWatcher m_watcher;
    QTimer m_reloadTimer;
};

#endif // RECENTUSEDWIDGET_H
