#include "editorinstallwidget.h"
#include "ui_editorinstallwidget.h"

#include "applupdateinfo.h"
#include "packagemanager.h"
#include "processlauncher.h"
#include "screeninfo.h"

EditorInstallWidget::EditorInstallWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::EditorInstallWidget)
{
    ui->setupUi(this);
}

EditorInstallWidget::~EditorInstallWidget()
{
    delete ui;
}

void EditorInstallWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    // Its editor record stays empty: it installs what the list offers.
    m_packageManager = new PackageManager(this);
    m_packageManager->setProcessLauncher(m_launcher);
    rebuildVersionCombo();
    connect(ui->editorInstallButton, SIGNAL(clicked()), this, SLOT(clicked()));
    connect(ui->versionSelectCombo, SIGNAL(activated(int)), this, SLOT(activated(int)));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalRefreshButtonClicked()), this, SLOT(refreshButtonClicked()));
    connect(m_launcher->getScreenInfo(), SIGNAL(signalInstallationConfirmed()), this, SLOT(installationConfirmed()));
}

void EditorInstallWidget::rebuildVersionCombo()
{
    ui->versionSelectCombo->hide();
    ui->versionSelectCombo->clear();
    ui->editorInstallButton->setEnabled(false);

    const QList<ApplUpdateInfo> versions = m_launcher->getInstallableVersions();
    if (versions.isEmpty())
        return;
    for (const ApplUpdateInfo &version : versions) {
        ui->versionSelectCombo->addItem(
            QStringLiteral("%1 %2").arg(version.getApplName(), version.getVersion()), version.getVersion());
    }
    ui->editorInstallButton->setEnabled(true);
}

void EditorInstallWidget::clicked()
{
    // The combo box stays hidden: the user sees the button and the list.
    ui->versionSelectCombo->activateWindow();
    ui->versionSelectCombo->showPopup();
}

void EditorInstallWidget::activated(int index)
{
    // activated, not currentIndexChanged: picking the current item again
    // still installs.
    ui->versionSelectCombo->hide();
    m_packageManager->installEditor(ui->versionSelectCombo->itemData(index, Qt::UserRole).toString());
}

void EditorInstallWidget::refreshButtonClicked()
{
    rebuildVersionCombo();
}

void EditorInstallWidget::installationConfirmed()
{
    rebuildVersionCombo();
}
