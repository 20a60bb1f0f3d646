#include "launchbuttonwidget.h"
#include "ui_launchbuttonwidget.h"

#include "applinfo.h"
#include "appllaunchwidget.h"
#include "processlauncher.h"
#include "screeninfo.h"

LaunchButtonWidget::LaunchButtonWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::LaunchButtonWidget)
{
    ui->setupUi(this);
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
        m_tiles.append(tile);
    }
    ui->listWidget->show();
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
