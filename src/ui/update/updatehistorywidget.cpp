#include "updatehistorywidget.h"
#include "ui_updatehistorywidget.h"

#include "processlauncher.h"
#include "webpage.h"

#include <QMessageBox>

UpdateHistoryWidget::UpdateHistoryWidget(QWidget *parent)
    : QDialog(parent)
    , ui(new Ui::UpdateHistoryWidget)
{
    ui->setupUi(this);
    m_historyPage = WebPage::makeInPlaceOf(ui->historyBrowser);
    ui->historyBrowser = m_historyPage;
}

UpdateHistoryWidget::~UpdateHistoryWidget()
{
    delete ui;
}

void UpdateHistoryWidget::setProcessLauncher(ProcessLauncher *launcher)
{
    m_launcher = launcher;
    m_historyPage->setProcessLauncher(m_launcher);
}

void UpdateHistoryWidget::setDialogMode(
    int mode, const QString &applicationName, const QString &version, const QString &url)
{
    m_applicationName = applicationName;
    m_version = version;
    m_historyPage->setUrl(url);

    if (mode == UpdateMode) {
        setWindowTitle(tr("Update editor (%1)").arg(version));
        ui->executeButton->setText(tr("update"));
        ui->closeButton->setText(tr("cancel"));
    } else if (mode == InstallMode) {
        setWindowTitle(tr("Install editor (%1)").arg(version));
        ui->executeButton->setText(tr("install"));
        ui->closeButton->setText(tr("cancel"));
    } else {
        setWindowTitle(tr("Show update histories (%1)").arg(version));
        ui->executeButton->hide();
        ui->closeButton->setText(tr("OK"));
    }
    connect(ui->executeButton, SIGNAL(clicked()), this, SLOT(clicked()));
    connect(ui->closeButton, SIGNAL(clicked()), this, SLOT(cancelClicked()));
}

void UpdateHistoryWidget::clicked()
{
    // "install" in update mode too: an update installs the new version.
    if (QMessageBox::question(this, tr("Confirm"),
            tr("Are you sure to install %1 ver %2 ?").arg(m_applicationName, m_version),
            QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::No)
        return;
    accept();
}

void UpdateHistoryWidget::cancelClicked()
{
    reject();
}
