#include "recentusedwidget.h"
#include "ui_recentusedwidget.h"

#include "applinfo.h"
#include "processlauncher.h"
#include "recentuseditem.h"
#include "recentuseditemdelegate.h"
#include "thumbnailcache.h"
#include "thumbnailreader.h"

#include <QFileInfo>
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

void RecentUsedWidget::setFileDesc()
{
    const QList<HistoryInfo> histories = m_launcher->getApplInfo()->getHistories();
    int count = histories.size();
    if (count < 1) {
        // The old model stays set, hidden; its pictures are no longer wanted.
        ui->labelNoHistory->setText(tr("Recent used project does not exist."));
        ui->labelNoHistory->show();
        ui->listView->hide();
        m_reader->read(QStringList());
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

    if (count > kMaximumCards) {
        // The placeholder is %2 and there is no %1: arg() fills the lowest one.
        m_launcher->writeLog(
            QStringLiteral("RecentUsedWidget::setFileDesc: Histories will be displayed 100 of %2").arg(count));
        count = kMaximumCards;
    }
    m_cards.clear();
    QHash<QString, QImage> known;
    QStringList paths;
    for (int i = 0; i < count; ++i) {
        const HistoryInfo &history = histories.at(i);
        const QString path = history.getOpenFilePath();
        RecentUsedItem card(m_launcher, history);
        // A card keeps the picture it had until its project has been read
        // again, so that a rebuild does not flash the default picture.
        const auto picture = m_pictures.constFind(path);
        if (picture != m_pictures.constEnd()) {
            known.insert(path, *picture);
            if (!picture->isNull())
                card.setThumbnail(*picture);
        }
        auto *item = new QStandardItem;
        item->setData(QVariant::fromValue(card), Qt::DisplayRole);
        item->setToolTip(path);
        item->setDragEnabled(false);
        m_model->appendRow(item);
        m_cards.insert(path, item);
        paths.append(path);
    }
    m_pictures = known;
    // Unchanged projects come from the cache; only changed ones are opened.
    m_reader->read(paths);
    m_reader->pruneCache(paths);
}

void RecentUsedWidget::thumbnailRead(const QString &path, const QImage &picture)
{
    if (!m_cards.contains(path))
        return;
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
    const RecentUsedItem item = index.data(Qt::DisplayRole).value<RecentUsedItem>();
    const HistoryInfo history = item.historyInfo();

    // The order matters: a record whose editor and project are both gone
    // takes the first branch and stays in the list.
    const EditorInfo editor = m_launcher->findEditorForHistory(history);
    if (!m_launcher->fileExists(editor.getPath())) {
        m_launcher->writeLog(QStringLiteral("RecentUsedWidget::clicked: editor does not exist: %1 %2 %3")
                                 .arg(editor.getApplType(), editor.getEdition(), editor.getVersion()));
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Application does not exist: %1\n(May be uninstalled)\n\nPlease install the editor of the displayed "
               "version again.")
                .arg(history.getVersion()),
            QMessageBox::Ok);
        return;
    }

    const QString path = history.getOpenFilePath();
    if (!m_launcher->fileExists(path)) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("File not found: %1\n(History will be removed)").arg(QFileInfo(path).fileName()), QMessageBox::Ok);
        m_launcher->deleteHistoryInfo(history);
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
        return;
    }

    if (!m_launcher->openFileByApplication(path, editor.getPath())) {
        QMessageBox::warning(this, QCoreApplication::applicationName(),
            tr("Failed to launch %1").arg(editor.getApplName()), QMessageBox::Ok);
        return;
    }
    // The card moves to the front.
    if (m_launcher->addHistoryAfterLaunch(editor, path))
        emit m_launcher->getApplInfo()->signalHistoryInfoUpdated();
}
