#include "launcherupdatewidget.h"
#include "ui_launcherupdatewidget.h"

#include "applinfo.h"
#include "applupdater.h"
#include "downloaddialog.h"
#include "downloadtexts.h"
#include "processlauncher.h"
#include "stylesheet.h"
#include "webpage.h"

#include <QMessageBox>

#include <cstdlib>

LauncherUpdateWidget::LauncherUpdateWidget(QWidget *parent)
    : QWidget(parent)
    , ui(new Ui::LauncherUpdateWidget)
{
    ui->setupUi(this);
    m_historyPage = WebPage::makeInPlaceOf(ui->historyBrowser);
    ui->historyBrowser = m_historyPage;
    // A top-level window of its own, with no main window to inherit from.
    StyleSheet::applyTo(this);
}

LauncherUpdateWidget::~LauncherUpdateWidget()
{
    delete ui;
}

void LauncherUpdateWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    connect(ui->launcherUpdateButton, SIGNAL(clicked()), this, SLOT(clicked()));
    connect(ui->cancelButton, SIGNAL(clicked()), this, SLOT(cancelClicked()));
    m_historyPage->setProcessLauncher(m_launcher);

    const QString version = m_launcher->getApplUpdater()->findLatestFor(QStringLiteral("launcher")).getDisplayVersion();
    // No version on offer leaves only the window's close button.
    ui->launcherUpdateButton->setEnabled(!version.isEmpty());
    ui->cancelButton->setEnabled(!version.isEmpty());
    ui->descriptionLabel->setText(
        tr("A new version (%1) of Zanmir Launcher is ready.\nPlease click Update button for download installer and "
           "update Launcher.\nZanmir Launcher could not be launched until installation will be finished.")
            .arg(version));
    m_historyPage->setUrl(m_launcher->getWebUrl(QStringLiteral("launcher_history_web")));
}

void LauncherUpdateWidget::clicked()
{
    ApplUpdater *updater = m_launcher->getApplUpdater();
    const ApplUpdateInfo latest = updater->findLatestFor(QStringLiteral("launcher"));
    const QString target = m_launcher->getTargetSystemName();
    const QString fileName = latest.getFileName(target);
    const QString url = m_launcher->getWebUrl(QStringLiteral("launcher_installer_web"), latest.getUrl(target));
    // Refused before the user is asked to confirm a download that cannot be.
    if (!updater->checkInstallerSource(url, fileName)) {
        m_launcher->writeLog(QStringLiteral("LauncherUpdateWidget::clicked: %1").arg(updater->getErrorText()));
        QMessageBox::critical(this, tr("Error"), DownloadTexts::refusal(updater->getErrorText()), QMessageBox::Ok);
        return;
    }
    if (QMessageBox::question(this, tr("Confirm"),
            tr("Are you sure to download installer for %1 ver %2?").arg(tr("Launcher"), latest.getDisplayVersion()),
            QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;

    // The installer is started and not waited for: it replaces this program.
    DownloadDialog dialog(false, this);
    dialog.setProcessLauncher(m_launcher);
    if (dialog.startDownload(url, fileName) && dialog.exec() != 0)
        std::exit(0); // at once, with the installer running: nothing on the stack is destroyed
}

void LauncherUpdateWidget::cancelClicked()
{
    // The rule of the forced update: no main window while an update is on offer.
    std::exit(1);
}
