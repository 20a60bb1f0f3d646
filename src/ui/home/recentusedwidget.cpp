#include "recentusedwidget.h"
#include "ui_recentusedwidget.h"

#include "applinfo.h"
#include "desktophandover.h"
#include "editorinfo.h"
#include "processlauncher.h"
#include "recentuseditem.h"
#include "recentuseditemdelegate.h"
#include "thumbnailcache.h"
#include "thumbnailreader.h"
#include "timerstopper.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QDir>
#include <QFileInfo>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMessageBox>
#include <QStandardItemModel>

namespace {

// Every card's project is read for its picture, so the cards are capped.
const int kMaximumCards = 100;
// A write shows as several changes of the file and its folder; one reload does.
const int kReloadDelay = 100;

} // namespace

RecentUsedWidget::RecentUsedWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::RecentUsedWidget)
    , m_reader(new ThumbnailReader(ThumbnailCache::defaultFolder(), RecentUsedItem::thumbnailSize(), this))
{
    qRegisterMetaType<RecentUsedItem>("RecentUsedItem");
    ui->setupUi(this);
    // The menu comes for the card under the pointer, or for the current
    // card from the keyboard; Enter and Delete act on the current card.
    ui->listView->installEventFilter(this);
    ui->listView->viewport()->installEventFilter(this);
    connect(m_reader, SIGNAL(signalThumbnailRead(QString, QImage)), this, SLOT(thumbnailRead(QString, QImage)));
}

RecentUsedWidget::~RecentUsedWidget()
{
    delete ui;
}

void RecentUsedWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->listView, SIGNAL(doubleClicked(QModelIndex)), this, SLOT(doubleClicked(QModelIndex)));
    connect(m_launcher->getApplInfo(), SIGNAL(signalHistoryInfoUpdated()), this, SLOT(historyInfoUpdated()));

    // The file is replaced whole by every writer, so the folder is watched
    // too: a watch on the replaced file itself ends with it.
    const QString file = m_launcher->getApplInfo()->getFilePath();
    m_watcher.addPath(QFileInfo(file).path());
    m_watcher.addPath(file);
    connect(&m_watcher, SIGNAL(fileChanged(QString)), this, SLOT(managerFileChanged()));
    connect(&m_watcher, SIGNAL(directoryChanged(QString)), this, SLOT(managerFileChanged()));
    m_reloadTimer.setSingleShot(true);
    m_reloadTimer.setInterval(kReloadDelay);
    connect(&m_reloadTimer, SIGNAL(timeout()), this, SLOT(reloadManagerFile()));
}

void RecentUsedWidget::managerFileChanged()
{
    m_reloadTimer.start();
}

void RecentUsedWidget::reloadManagerFile()
{
    const QString file = m_launcher->getApplInfo()->getFilePath();
    if (!m_watcher.files().contains(file) && QFile::exists(file))
        m_watcher.addPath(file);
    // Our own saves come back here too; only a changed list is rebuilt.
    if (m_launcher->reloadApplInfo())
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
}

void RecentUsedWidget::historyInfoUpdated()
{
    setFileDesc();
}

QWidget *RecentUsedWidget::getFocusWidget() const
{
    return ui->listView;
}

void RecentUsedWidget::setFilterText(const QString &text)
{
    if (text == m_filter)
        return;
    m_filter = text;
    if (m_launcher)
        rebuildCards(false);
}

bool RecentUsedWidget::matchesFilter(const HistoryInfo &history) const
{
    // Plain text, not a pattern: a name with brackets or dots is found as
    // typed. The whole path, so that a folder typed with its separator
    // matches too.
    return QDir::toNativeSeparators(history.getOpenFilePath())
        .contains(QDir::toNativeSeparators(m_filter), Qt::CaseInsensitive);
}

void RecentUsedWidget::setFileDesc()
{
    rebuildCards(true);
}

void RecentUsedWidget::rebuildCards(bool readAgain)
{
    const QList<HistoryInfo> histories = m_launcher->getApplInfo()->getHistories();
    QList<HistoryInfo> matching;
    QStringList listed;
    for (const HistoryInfo &history : histories) {
        listed.append(history.getOpenFilePath());
        if (matchesFilter(history))
            matching.append(history);
    }
    // After a change of the list every project is read again, those that
    // the filter hides once it shows them.
    if (readAgain)
        m_unread = QSet<QString>(listed.cbegin(), listed.cend());
    int count = matching.size();
    if (count < 1) {
        // The old model stays set, hidden; its pictures are no longer wanted.
        ui->labelNoHistory->setText(histories.isEmpty() ? tr("Recent used project does not exist.")
                                                        : tr("No recent project matches \"%1\".").arg(m_filter));
        ui->labelNoHistory->show();
        ui->listView->hide();
        m_cards.clear();
        readPictures(QStringList(), nullptr);
        return;
    }
    ui->labelNoHistory->hide();
    ui->listView->show();

    if (m_model) {
        m_model->clear();
        // Later: a double click that led here is still running in the view.
        m_model->deleteLater();
        m_model = nullptr;
    }
    m_model = new QStandardItemModel(this);
    if (!m_delegate)
        m_delegate = new RecentUsedItemDelegate(this);
    ui->listView->setItemDelegate(m_delegate);
    ui->listView->setModel(m_model);

    // The cap counts the cards that match the filter.
    if (count > kMaximumCards) {
        // The placeholder is %2 and there is no %1: arg() fills the lowest one.
        if (readAgain)
            m_launcher->writeLog(
                QStringLiteral("RecentUsedWidget::setFileDesc: Histories will be displayed 100 of %2").arg(count));
        count = kMaximumCards;
    }
    m_cards.clear();
    QStringList unread;
    for (int i = 0; i < count; ++i) {
        const HistoryInfo &history = matching.at(i);
        const QString path = history.getOpenFilePath();
        RecentUsedItem card(m_launcher, history);
        // A card keeps the picture it had until its project has been read
        // again, so that a rebuild does not flash the default picture.
        const auto picture = m_pictures.constFind(path);
        if (picture != m_pictures.constEnd() && !picture->isNull())
            card.setThumbnail(*picture);
        if (picture == m_pictures.constEnd() || m_unread.contains(path))
            unread.append(path);
        auto *item = new QStandardItem;
        item->setData(QVariant::fromValue(card), Qt::DisplayRole);
        item->setData(
            tr("%1, last opened %2, version %3").arg(card.fileName(), card.timestamp(), card.getSpokenVersion()),
            Qt::AccessibleTextRole);
        item->setData(QDir::toNativeSeparators(path), Qt::AccessibleDescriptionRole);
        item->setToolTip(path);
        item->setDragEnabled(false);
        m_model->appendRow(item);
        m_cards.insert(path, item);
    }
    // The pictures of the projects that the filter hides now are kept for
    // when it shows them again.
    const QSet<QString> kept(listed.cbegin(), listed.cend());
    for (auto it = m_pictures.begin(); it != m_pictures.end();) {
        if (kept.contains(it.key()))
            ++it;
        else
            it = m_pictures.erase(it);
    }
    // Unchanged projects come from the cache; only changed ones are opened.
    readPictures(unread, readAgain ? &listed : nullptr);
}

void RecentUsedWidget::readPictures(const QStringList &unread, const QStringList *listed)
{
    if (m_picturesHeld) {
        // A later read replaces an earlier one that has not begun, as in the reader.
        m_heldUnread = unread;
        if (listed) {
            m_heldListed = *listed;
            m_heldPrune = true;
        }
        return;
    }
    m_reader->read(unread);
    if (listed)
        m_reader->pruneCache(*listed);
}

void RecentUsedWidget::setPicturesHeld(bool held)
{
    if (held == m_picturesHeld)
        return;
    m_picturesHeld = held;
    if (held)
        return;
    readPictures(m_heldUnread, m_heldPrune ? &m_heldListed : nullptr);
    m_heldUnread.clear();
    m_heldListed.clear();
    m_heldPrune = false;
}

void RecentUsedWidget::thumbnailRead(const QString &path, const QImage &picture)
{
    if (!m_cards.contains(path))
        return;
    m_unread.remove(path);
    m_pictures.insert(path, picture);
    const QImage thumbnail = picture.isNull() ? RecentUsedItem::defaultThumbnail() : picture;
    for (auto it = m_cards.constFind(path); it != m_cards.constEnd() && it.key() == path; ++it) {
        RecentUsedItem card = it.value()->data(Qt::DisplayRole).value<RecentUsedItem>();
        card.setThumbnail(thumbnail);
        it.value()->setData(QVariant::fromValue(card), Qt::DisplayRole);
    }
}

void RecentUsedWidget::doubleClicked(const QModelIndex &index)
{
    openProject(index.data(Qt::DisplayRole).value<RecentUsedItem>().historyInfo(), nullptr);
}

void RecentUsedWidget::openProject(const HistoryInfo &history, const EditorInfo *chosen)
{
    // The order matters: a record whose editor and project are both gone
    // takes the first branch and stays in the list.
    const EditorInfo editor = chosen ? *chosen : m_launcher->findEditorForHistory(history);
    if (!m_launcher->fileExists(editor.getPath())) {
        m_launcher->writeLog(QStringLiteral("RecentUsedWidget::clicked: editor does not exist: %1 %2 %3")
                                 .arg(editor.getApplType(), editor.getEdition(), editor.getVersion()));
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Application does not exist: %1\n(May be uninstalled)\n\nPlease install the editor of the displayed "
               "version again.")
                .arg(chosen ? chosen->getDisplayVersion() : history.getVersion()),
            QMessageBox::Ok);
        return;
    }
    if (!projectExists(history))
        return;

    const QString path = history.getOpenFilePath();
    if (!m_launcher->openFileByApplication(path, editor.getPath())) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Failed to launch %1").arg(editor.getApplName()), QMessageBox::Ok);
        return;
    }
    // The card moves to the front.
    if (m_launcher->addHistoryAfterLaunch(editor, path))
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
}

bool RecentUsedWidget::projectExists(const HistoryInfo &history)
{
    const QString path = history.getOpenFilePath();
    if (m_launcher->fileExists(path))
        return true;
    QMessageBox::warning(this, QCoreApplication::applicationName(),
        tr("File not found: %1\n(History will be removed)").arg(QFileInfo(path).fileName()), QMessageBox::Ok);
    m_launcher->deleteHistoryInfo(history);
    emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
    return false;
}

bool RecentUsedWidget::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::ContextMenu) {
        // The pointer's card for a click, the current one for the menu key.
        const auto *request = static_cast<QContextMenuEvent *>(event);
        const bool byPointer = watched == ui->listView->viewport() && request->reason() != QContextMenuEvent::Keyboard;
        const QModelIndex index = byPointer ? ui->listView->indexAt(request->pos()) : ui->listView->currentIndex();
        if (index.isValid()) {
            ui->listView->setCurrentIndex(index);
            const QPoint at = byPointer
                ? request->globalPos()
                : ui->listView->viewport()->mapToGlobal(ui->listView->visualRect(index).center());
            showMenu(index, at);
        }
        return true;
    }
    if (event->type() == QEvent::KeyPress && watched == ui->listView) {
        const QModelIndex index = ui->listView->currentIndex();
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (index.isValid() && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            doubleClicked(index);
            return true;
        }
        if (index.isValid() && key == Qt::Key_Delete) {
            removeFromList(index.data(Qt::DisplayRole).value<RecentUsedItem>().historyInfo());
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void RecentUsedWidget::showMenu(const QModelIndex &index, const QPoint &globalPosition)
{
    // The daily check must not fall inside the menu's loop or a box's.
    const TimerStopper stopper(m_launcher->getUpdateNotifier());
    // A copy: the list may be rebuilt while the menu is open.
    const HistoryInfo history = index.data(Qt::DisplayRole).value<RecentUsedItem>().historyInfo();
    const QList<EditorInfo> editors = m_launcher->getInstalledEditors();

    QMenu menu(this);
    QAction *open = menu.addAction(tr("Open"));
    menu.setDefaultAction(open);
    QMenu *openWith = menu.addMenu(tr("Open with"));
    for (int i = 0; i < editors.size(); ++i) {
        const EditorInfo &editor = editors.at(i);
        openWith->addAction(QStringLiteral("%1 %2").arg(editor.getApplName(), editor.getDisplayVersion()))->setData(i);
    }
    openWith->setEnabled(!editors.isEmpty());
    menu.addSeparator();
    QAction *showFolder = menu.addAction(tr("Show in folder"));
    QAction *copyPath = menu.addAction(tr("Copy path"));
    menu.addSeparator();
    QAction *remove = menu.addAction(tr("Remove from list"));

    const QAction *chosen = menu.exec(globalPosition);
    if (!chosen)
        return;
    if (chosen == open)
        openProject(history, nullptr);
    else if (chosen == showFolder)
        showInFolder(history);
    else if (chosen == copyPath)
        QGuiApplication::clipboard()->setText(QDir::toNativeSeparators(history.getOpenFilePath()));
    else if (chosen == remove)
        removeFromList(history);
    else
        openProject(history, &editors.at(chosen->data().toInt()));
}

void RecentUsedWidget::showInFolder(const HistoryInfo &history)
{
    if (!projectExists(history))
        return;
    const QString folder = QFileInfo(history.getOpenFilePath()).absolutePath();
    if (DesktopHandOver::showFolder(folder))
        return;
    m_launcher->writeLog(QStringLiteral("RecentUsedWidget::showInFolder: The desktop did not show %1").arg(folder));
    QMessageBox::warning(this, QCoreApplication::applicationName(),
        tr("The folder could not be shown:\n%1").arg(QDir::toNativeSeparators(folder)), QMessageBox::Ok);
}

void RecentUsedWidget::removeFromList(const HistoryInfo &history)
{
    const TimerStopper stopper(m_launcher->getUpdateNotifier());
    // Only the entry goes; the project file is never touched.
    if (QMessageBox::question(this, tr("Confirm"),
            tr("Remove %1 from the recent projects?\n\nThe project file itself stays where it is.")
                .arg(QFileInfo(history.getOpenFilePath()).fileName()),
            QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;
    m_launcher->deleteHistoryInfo(history);
    emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
}
