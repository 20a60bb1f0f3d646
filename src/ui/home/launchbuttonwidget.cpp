#include "launchbuttonwidget.h"
#include "ui_launchbuttonwidget.h"

#include "applinfo.h"
#include "appllaunchwidget.h"
#include "processlauncher.h"
#include "screeninfo.h"

#include <QKeyEvent>

LaunchButtonWidget::LaunchButtonWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::LaunchButtonWidget)
{
    ui->setupUi(this);
    // The tiles take the focus themselves; a list that kept it would show a
    // current row, which a tile never has.
    ui->listWidget->setFocusPolicy(Qt::NoFocus);
}

LaunchButtonWidget::~LaunchButtonWidget()
{
    delete ui;
}

void LaunchButtonWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    // A new default moves no tile, so that signal is not heard here.
    connect(
        m_launcher->getApplInfo(), SIGNAL(signalPinnedVersionInfoUpdated()), this, SLOT(pinnedVersionInfoUpdated()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()), this, SLOT(refreshButtonClicked()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalInstallationConfirmed()), this, SLOT(installationConfirmed()));
    connect(ui->listWidget, SIGNAL(currentRowChanged(int)), this, SLOT(currentRowChanged(int)));
}

void LaunchButtonWidget::rebuildButtons()
{
    ui->listWidget->hide();
    ui->listWidget->clear();
    // Later, not now: the tile that caused this rebuild may still be in its
    // own handler, behind a message box.
    for (ApplLaunchWidget *tile : qAsConst(m_tiles))
        tile->deleteLater();
    m_tiles.clear();

    const QList<EditorInfo> editors = m_launcher->getInstalledEditors();
    if (editors.size() < 1) {
        ui->labelNoEditor->setText(
            tr("Installed editor does not exist.\nPlease install any editor using Application Management."));
        ui->labelNoEditor->show();
        return;
    }

    ui->labelNoEditor->hide();
    for (const EditorInfo &editor : editors) {
        auto *item = new QListWidgetItem(ui->listWidget);
        auto *tile = new ApplLaunchWidget(ui->listWidget);
        tile->setProcessLauncher(m_launcher);
        tile->setEditorInfo(editor);
        item->setSizeHint(tile->maximumSize());
        ui->listWidget->setItemWidget(item, tile);
        tile->getFocusWidget()->installEventFilter(this);
        m_tiles.append(tile);
    }
    ui->listWidget->show();

    QWidget *previous = m_tabBefore;
    for (ApplLaunchWidget *tile : qAsConst(m_tiles)) {
        if (previous)
            QWidget::setTabOrder(previous, tile->getFocusWidget());
        previous = tile->getFocusWidget();
    }
    if (m_tabAfter)
        QWidget::setTabOrder(previous, m_tabAfter);
    setTabStop(0);
}

void LaunchButtonWidget::setTabNeighbours(QWidget *before, QWidget *after)
{
    m_tabBefore = before;
    m_tabAfter = after;
}

void LaunchButtonWidget::setTabStop(int index)
{
    for (int i = 0; i < m_tiles.size(); ++i)
        m_tiles.at(i)->getFocusWidget()->setFocusPolicy(i == index ? Qt::StrongFocus : Qt::ClickFocus);
}

bool LaunchButtonWidget::eventFilter(QObject *watched, QEvent *event)
{
    int index = -1;
    for (int i = 0; i < m_tiles.size() && index < 0; ++i) {
        if (m_tiles.at(i)->getFocusWidget() == watched)
            index = i;
    }
    if (index < 0)
        return QWidget::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn) {
        setTabStop(index);
        ui->listWidget->scrollToItem(ui->listWidget->item(index));
    } else if (event->type() == QEvent::KeyPress) {
        // One row of tiles: either pair of arrows moves along it.
        const int key = static_cast<QKeyEvent *>(event)->key();
        const int step = key == Qt::Key_Left || key == Qt::Key_Up ? -1
            : key == Qt::Key_Right || key == Qt::Key_Down         ? 1
                                                                  : 0;
        if (step != 0) {
            if (index + step >= 0 && index + step < m_tiles.size())
                m_tiles.at(index + step)->getFocusWidget()->setFocus(Qt::OtherFocusReason);
            return true;
        }
    }
    return QWidget::eventFilter(watched, event);
}

void LaunchButtonWidget::pinnedVersionInfoUpdated()
{
    rebuildButtons();
}

void LaunchButtonWidget::refreshButtonClicked()
{
    rebuildButtons();
}

void LaunchButtonWidget::installationConfirmed()
{
    rebuildButtons();
}

void LaunchButtonWidget::currentRowChanged(int row)
{
    // A tile never stays selected.
    if (row >= 0)
        ui->listWidget->setCurrentRow(-1);
}
